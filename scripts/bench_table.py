"""Prints the measurements of the benchmarks as tables, each goal beside what was measured.

usage: bench_table.py <JSON file of kv_bench_NAME>...

The tables of kv_bench_NAME are in bench_NAME.py. All figures are medians over the repetitions. The exit status is 1
if a goal is missed or a benchmark failed.
"""

import importlib
import json
import pathlib
import re
import sys


def read_medians(path):
    """{benchmark: its median figures}, in the order of the file; and the benchmarks that failed."""
    with open(path, encoding="utf-8") as file:
        entries = json.load(file)["benchmarks"]
    failed = sorted({entry["name"] for entry in entries if entry.get("error_occurred")})
    medians = {
        re.sub("(/repeats:[0-9]+|/iterations:1|/real_time|/manual_time)+$", "", entry["run_name"]): entry
        for entry in entries
        if entry.get("aggregate_name") == "median"
    }
    return medians, failed


class Measurements:
    def __init__(self, medians):
        self.medians = medians
        self.missed = 0

    def nanoseconds(self, name):
        """Per item, of the time that the benchmark measures."""
        return 1e9 / self.medians[name]["items_per_second"]

    def judge(self, met):
        self.missed += not met
        return "met" if met else "MISSED"


def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    missed = 0
    for path in sys.argv[1:]:
        medians, failed = read_medians(path)
        if failed:
            sys.exit("failed: " + ", ".join(failed))
        measurements = Measurements(medians)
        name = pathlib.Path(path).stem.removeprefix("kv_bench_")
        importlib.import_module(f"bench_{name}").print_tables(measurements)
        missed += measurements.missed
    print(f"\n{missed} goals missed" if missed else "\nall goals met")
    return 1 if missed else 0


if __name__ == "__main__":
    sys.exit(main())
