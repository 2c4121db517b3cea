# SPDX-License-Identifier: MIT
"""The tables of kv_bench_env: the environment tree."""

PEERS = ["GKeyFile", "libconfig", "PropertyTree"]

# Of each group: title, and this library's own variants. The first is the one that is compared.
GROUPS = {
    "parse": ("Parse from memory, per leaf", ["kv", "kv callback", "kv file"]),
    "write": ("Write to memory, per leaf", ["kv"]),
    "lookup": ("Random lookup of a double by its path", ["kv"]),
    "iterate": ("Visit everything, per element", ["kv", "kv sections", "kv leafs"]),
    "edit": ("One value changed in a file of 1 MB and saved, flushed to the disk (time of the clock)", ["kv", "kv tree"]),
    "heap": ("Heap after parsing", ["kv", "kv after lookups"]),
}

# At least so many times as fast; for the heap, at most so much of it.
PEER_GOALS = {
    ("parse", "GKeyFile"): 2.0,
    ("parse", "libconfig"): 4.0,
    ("write", "GKeyFile"): 2.0,
    ("lookup", "GKeyFile"): 2.0,
    ("edit", "GKeyFile"): 2.0,
    ("heap", "libconfig"): 1.0,
}

SCALING = [
    "parse",
    "write",
    "random lookup",
    "random lookup by index",
    "first lookup",
    "iteration step",
    "leaf visited",
    "leaf visited, one name",
    "random get_pos",
    "insert_before and delete",
    "append by put",
]
GROWTH_GOALS = {
    "iteration step": 2.0,
    "leaf visited": 2.0,
    "leaf visited, one name": 2.0,
    "random lookup": 4.0,
    "random lookup by index": 4.0,
}
SIZES = [1000, 10000, 100000]


def megabytes(entry):
    return f"{entry['bytes_per_second'] / 1e6:8.0f}" if "bytes_per_second" in entry else " " * 8


def figure(measured, group, who):
    name = f"{group}/{who}"
    return measured.medians[name]["heap_per_leaf"] if group == "heap" else measured.nanoseconds(name)


def print_group(measured, group):
    title, own = GROUPS[group]
    unit = "bytes/leaf" if group == "heap" else "ns each"
    print(f"\n{title}")
    print(f"  {'':18}{unit:>10}  {'MB/s':>8}   {'kv is':<22}goal")
    ours = figure(measured, group, own[0])
    for who in own + [peer for peer in PEERS if f"{group}/{peer}" in measured.medians]:
        rate = megabytes(measured.medians[f"{group}/{who}"])
        line = f"  {who:18}{figure(measured, group, who):10.1f}  {rate}   "
        if who in PEERS:
            line += compare(measured, group, who, ours)
        print(line.rstrip())


def compare(measured, group, who, ours):
    theirs = figure(measured, group, who)
    limit = PEER_GOALS.get((group, who))
    unit = "bytes" if group == "heap" else "ns"
    most = None if limit is None else limit if group == "heap" else 1 / limit
    measured.note(GROUPS[group][0], who, ours, theirs, unit, most)
    if group == "heap":
        text, goal, met = f"{ours / theirs:.2f} of its heap", "<=", ours <= theirs * (limit or 0)
    else:
        text, goal, met = f"{theirs / ours:.2f} times as fast", ">=", theirs >= ours * (limit or 0)
    return text if limit is None else f"{text:<22}{goal} {limit:g}  {measured.judge(met)}"


def print_growth(measured):
    print("\nOne block of so many elements: ns per element or operation, and the growth from first to last")
    print(f"  {'':26}" + "".join(f"{size:>9,}" for size in SIZES) + f"   {'growth':<9}goal")
    for name in SCALING:
        times = [measured.nanoseconds(f"scaling/{name}/{size}") for size in SIZES]
        growth = times[-1] / times[0]
        line = f"  {name:26}" + "".join(f"{time:9.1f}" for time in times) + f"   {growth:<9.2f}"
        if name in GROWTH_GOALS:
            measured.note(f"One block of 100,000 elements: {name}", "1,000 elements", times[-1], times[0], "ns",
                          GROWTH_GOALS[name])
            line += f"< {GROWTH_GOALS[name]:g}  {measured.judge(growth < GROWTH_GOALS[name])}"
        print(line.rstrip())


def print_tables(measured):
    print("\nEnvironment tree. Processor time; 10,000 leaves in 100 sections; each library with its own text of them.")
    for group in GROUPS:
        print_group(measured, group)
    print_growth(measured)
