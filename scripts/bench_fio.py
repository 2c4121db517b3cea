# SPDX-License-Identifier: MIT
"""The tables of kv_bench_fio: record files and lines."""

# Of each group: title, its rows with this library's own first, and how fast it has to be at least, as a part of
# the speed of others.
GROUPS = {
    "write values": ("A double and a long written, 20,000 in a file", ["kv", "stdio"], {"stdio": 0.9}),
    "read values": ("A double and a long read", ["kv", "stdio"], {"stdio": 0.9}),
    "write fields": ("A double, a long and a field of 12 characters written", ["kv", "stdio"], {"stdio": 0.9}),
    "read lines": ("A line of 37 characters read", ["kv", "kv binary", "stdio"], {}),
}


def print_group(measured, group):
    title, rows, goals = GROUPS[group]
    print(f"\n{title}")
    print(f"  {'':18}{'ns each':>10}   {'kv is':<22}goal")
    ours = measured.nanoseconds(f"{group}/{rows[0]}")
    for who in rows:
        theirs = measured.nanoseconds(f"{group}/{who}")
        line = f"  {who:18}{theirs:10.1f}   "
        if not who.startswith("kv"):
            measured.note(title, who, ours, theirs, "ns", 1 / goals[who] if who in goals else None)
            line += f"{f'{theirs / ours:.2f} times as fast':<22}"
        if who in goals:
            line += f">= {goals[who]:g}  {measured.judge(theirs >= ours * goals[who])}"
        print(line.rstrip())


def print_tables(measured):
    print("\nRecord files and lines; the peers are fwrite(), fread() and fgets().")
    for group in GROUPS:
        print_group(measured, group)
