# SPDX-License-Identifier: MIT
"""A table of this library beside its peers, with goals as shares of a peer's time."""


def print_group(measurements, title, ours, peers, suffix=""):
    """peers: {name: the most that our time may be of its time, or None}."""
    own = measurements.nanoseconds(f"{ours}/kv{suffix}")
    print(f"\n{title}: {own:.1f} ns")
    for name, most in peers.items():
        theirs = measurements.nanoseconds(f"{ours}/{name}{suffix}")
        measurements.note(title, name, own, theirs, "ns", most)
        line = f"  {name:28}{theirs:12.1f} ns   ours is {own / theirs:6.3f} of it"
        if most is not None:
            line += f"   goal <= {most:.3f}  {measurements.judge(own <= theirs * most)}"
        print(line)
