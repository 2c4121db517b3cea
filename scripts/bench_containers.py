# SPDX-License-Identifier: MIT
"""Tables of kv_bench_containers."""

from bench_goals import print_group


def print_tables(measurements):
    for operation in ("put", "get"):
        for count in (100, 100000):
            print_group(measurements, f"Hash table, {operation}, {count:,} keys", f"hash {operation}",
                        {"GHashTable": 1.0, "unordered_map": None}, f"/{count}")
        print(f"  with the sum of the bytes, 100 keys: {measurements.nanoseconds(f'hash {operation}/kv, byte sum/100'):.1f} ns")
    for count in (100, 100000):
        print(f"\nHash table, a key that is not there, {count:,} keys: {measurements.nanoseconds(f'hash miss/kv/{count}'):.1f} ns")
    print_group(measurements, "Pool, a piece", "pool piece",
                {"monotonic_buffer_resource": 1.0, "the same, inlined": None, "apr_palloc": None, "talloc pool": None})
    for numbers in ("doubles", "integers"):
        print_group(measurements, f"1,000,000 {numbers} sorted, each", f"sort {numbers}", {"std::sort": 1 / 3, "qsort": None})
    for count in (5000, 500000):
        print_group(measurements, f"List of {count:,} records sorted, each", "sort list",
                    {"std::list::sort": 1.2, "g_list_sort": None}, f"/{count}")
