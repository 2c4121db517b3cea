# SPDX-License-Identifier: MIT
"""The tables of kv_bench_cpp: the C++ layer beside the C interface that it stands for."""

from bench_goals import print_group

# What two equal programs differ by on a shared machine.
NOISE = 1.05


def print_tables(measured):
    for group, title in {"get": "kv.hpp: a real number got by section and path",
                         "elements": "kv.hpp: an element of a range over a block",
                         "keys": "kv.hpp: a key of a section",
                         "rows": "kv.hpp: a row of a range over a table",
                         "tokens": "kv.hpp: a token of a range over a text"}.items():
        print_group(measured, title, group, {"C": NOISE})
