"""Prints the measurements of kv_bench_env as tables, each goal beside what was measured.

usage: bench_table.py <JSON file of kv_bench_env>

All figures are medians over the repetitions, of processor time. The exit status is 1 if a goal is missed or a
benchmark failed.
"""

import json
import sys

PEERS = ["GKeyFile", "libconfig", "PropertyTree"]

# Of each group: title, and this library's own variants. The first is the one that is compared.
GROUPS = {
    "parse": ("Parse from memory, per leaf", ["kv", "kv callback", "kv file"]),
    "write": ("Write to memory, per leaf", ["kv"]),
    "lookup": ("Random lookup of a double by its path", ["kv"]),
    "iterate": ("Visit everything, per element", ["kv", "kv sections", "kv leafs"]),
    "heap": ("Heap after parsing", ["kv", "kv after lookups"]),
}

# At least so many times as fast; for the heap, at most so much of it.
PEER_GOALS = {
    ("parse", "GKeyFile"): 2.0,
    ("parse", "libconfig"): 4.0,
    ("write", "GKeyFile"): 2.0,
    ("lookup", "GKeyFile"): 2.0,
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


def read_medians(path):
    """{benchmark: its median figures}, in the order of the file; and the benchmarks that failed."""
    with open(path, encoding="utf-8") as file:
        entries = json.load(file)["benchmarks"]
    failed = sorted({entry["name"] for entry in entries if entry.get("error_occurred")})
    medians = {
        entry["run_name"].removesuffix("/repeats:3").removesuffix("/iterations:1"): entry
        for entry in entries
        if entry.get("aggregate_name") == "median"
    }
    return medians, failed


def nanoseconds(entry):
    return 1e9 / entry["items_per_second"]


def megabytes(entry):
    return f"{entry['bytes_per_second'] / 1e6:8.0f}" if "bytes_per_second" in entry else " " * 8


def figure(medians, group, who):
    entry = medians[f"{group}/{who}"]
    return entry["heap_per_leaf"] if group == "heap" else nanoseconds(entry)


class Table:
    def __init__(self, medians):
        self.medians = medians
        self.missed = 0

    def judge(self, met):
        self.missed += not met
        return "met" if met else "MISSED"

    def print_group(self, group):
        title, own = GROUPS[group]
        unit = "bytes/leaf" if group == "heap" else "ns each"
        print(f"\n{title}")
        print(f"  {'':18}{unit:>10}  {'MB/s':>8}   {'kv is':<22}goal")
        ours = figure(self.medians, group, own[0])
        for who in own + PEERS:
            line = f"  {who:18}{figure(self.medians, group, who):10.1f}  {megabytes(self.medians[f'{group}/{who}'])}   "
            if who in PEERS:
                line += self.compare(group, who, ours)
            print(line.rstrip())

    def compare(self, group, who, ours):
        theirs = figure(self.medians, group, who)
        limit = PEER_GOALS.get((group, who))
        if group == "heap":
            text, goal, met = f"{ours / theirs:.2f} of its heap", "<=", ours <= theirs * (limit or 0)
        else:
            text, goal, met = f"{theirs / ours:.2f} times as fast", ">=", theirs >= ours * (limit or 0)
        return text if limit is None else f"{text:<22}{goal} {limit:g}  {self.judge(met)}"

    def print_growth(self):
        print("\nOne block of so many elements: ns per element or operation, and the growth from first to last")
        print(f"  {'':26}" + "".join(f"{size:>9,}" for size in SIZES) + f"   {'growth':<9}goal")
        for name in SCALING:
            times = [nanoseconds(self.medians[f"scaling/{name}/{size}"]) for size in SIZES]
            growth = times[-1] / times[0]
            line = f"  {name:26}" + "".join(f"{time:9.1f}" for time in times) + f"   {growth:<9.2f}"
            if name in GROWTH_GOALS:
                line += f"< {GROWTH_GOALS[name]:g}  {self.judge(growth < GROWTH_GOALS[name])}"
            print(line.rstrip())


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    medians, failed = read_medians(sys.argv[1])
    if failed:
        sys.exit("failed: " + ", ".join(failed))
    table = Table(medians)
    print("Medians of processor time. 10,000 leaves in 100 sections; each library with its own text of them.")
    for group in GROUPS:
        table.print_group(group)
    table.print_growth()
    print(f"\n{table.missed} goals missed" if table.missed else "\nall goals met")
    return 1 if table.missed else 0


if __name__ == "__main__":
    sys.exit(main())
