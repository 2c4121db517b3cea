# SPDX-License-Identifier: MIT
"""Tables of kv_bench_scan."""

from bench_goals import print_group


def print_tables(measurements):
    print_group(measurements, "Scanner, a character of 1 MB", "scan", {"flex": 1.0, "re2c": None, "GScanner": None})
