# SPDX-License-Identifier: MIT
"""The tables of kv_bench_config: INI files."""

# Of each group: title, its rows with this library's own first, and what it may take at most, as a multiple of
# what others take.
GROUPS = {
    "read": (
        "One value read from a file that is opened for it, 50 sections of 20 entries, the value in the middle",
        ["kv", "kv double", "fgets", "GKeyFile", "iniparser", "inih", "SimpleIni"],
        {"fgets": 1.5},
    ),
    "save": (
        "One value changed in that file and saved, flushed to the disk (time of the clock)",
        ["kv", "GKeyFile", "GKeyFile save", "iniparser", "SimpleIni"],
        {"GKeyFile": 1.0},
    ),
    "get": (
        "One value of that file got from memory, in random order",
        ["kv", "GKeyFile", "iniparser", "SimpleIni"],
        {"GKeyFile": 0.75},
    ),
    "growth": (
        "One value got from a section of 100,000 entries, in random order, and from one of 100",
        ["kv 100000", "100 entries"],
        {"100 entries": 4.0},
    ),
    "load": (
        "A file of 900 sections of 60 entries (1 MB) loaded, one value got, freed",
        ["kv", "GKeyFile", "iniparser", "SimpleIni"],
        {"GKeyFile": 1 / 1.5},
    ),
}


def print_group(measured, group):
    title, rows, goals = GROUPS[group]
    print(f"\n{title}")
    print(f"  {'':18}{'us each':>10}   {'kv takes':<22}goal")
    ours = measured.nanoseconds(f"{group}/{rows[0]}")
    for who in rows:
        theirs = measured.nanoseconds(f"{group}/{who}")
        line = f"  {who:18}{theirs / 1e3:10.3f}   "
        if not who.startswith("kv"):
            measured.note(title, who, ours, theirs, "ns", goals.get(who))
            line += f"{f'{ours / theirs:.2f} of its time':<22}"
        if who in goals:
            line += f"<= {goals[who]:.3g}  {measured.judge(ours <= theirs * goals[who])}"
        print(line.rstrip())


def print_tables(measured):
    print("\nINI files. Processor time where nothing else is said.")
    for group in GROUPS:
        print_group(measured, group)
