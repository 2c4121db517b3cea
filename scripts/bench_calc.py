# SPDX-License-Identifier: MIT
"""Tables of kv_bench_calc."""

from bench_goals import print_group


def print_tables(measurements):
    for number, title in enumerate(("An expression of functions", "An expression of operators")):
        print_group(measurements, title, "expression", {"muParser": 1 / 30, "SQLite": 1 / 15}, f"/{number}")
