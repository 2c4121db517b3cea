# SPDX-License-Identifier: MIT
"""Prints the measurements of the benchmarks as tables, each goal beside what was measured.

usage: bench_table.py [--report <directory>] <JSON file of kv_bench_NAME>...

With --report, performance.md in that directory is written too, with plots in its folder images.

The tables of kv_bench_NAME are in bench_NAME.py. All figures are medians over the repetitions. The exit status is 1
if a goal is missed or a benchmark failed.
"""

import argparse
import importlib
import json
import pathlib
import re
import sys
from typing import NamedTuple

import bench_report


class Comparison(NamedTuple):
    what: str
    peer: str
    ours: float
    theirs: float
    unit: str
    most: float | None


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
        self.comparisons = []

    def note(self, what, peer, ours, theirs, unit, most):
        """For the report: two figures, and the most that ours may be of the other, or None."""
        self.comparisons.append(Comparison(what, peer, ours, theirs, unit, most))

    def nanoseconds(self, name):
        """Per item, of the time that the benchmark measures."""
        return 1e9 / self.medians[name]["items_per_second"]

    def judge(self, met):
        self.missed += not met
        return "met" if met else "MISSED"


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--report", type=pathlib.Path)
    parser.add_argument("results", nargs="+")
    arguments = parser.parse_args()
    missed = 0
    everything = {}
    for path in arguments.results:
        medians, failed = read_medians(path)
        if failed:
            sys.exit("failed: " + ", ".join(failed))
        measurements = Measurements(medians)
        name = pathlib.Path(path).stem.removeprefix("kv_bench_")
        importlib.import_module(f"bench_{name}").print_tables(measurements)
        missed += measurements.missed
        everything[name] = measurements
    if arguments.report is not None:
        bench_report.write(arguments.report, everything)
    print(f"\n{missed} goals missed" if missed else "\nall goals met")
    return 1 if missed else 0


if __name__ == "__main__":
    sys.exit(main())
