# SPDX-License-Identifier: MIT
"""The tables of kv_bench_profiles: searching and walking tables of profiles."""

from bench_goals import print_group


def print_tables(measured):
    print_group(measured, "The last of 10,000 entries found by name and condition, each entry", "search",
                {"by hand": 1.0, "SQLite": None, "awk": None, "awk start": None})
    ours = measured.nanoseconds("search/kv")
    awk = measured.nanoseconds("search/awk") - measured.nanoseconds("search/awk start")
    measured.note("The last of 10,000 entries found by name and condition, each entry", "awk without its start", ours, awk,
                  "ns", 1 / 5)
    print(f"  {'awk without its start':28}{awk:12.1f} ns   ours is {ours / awk:6.3f} of it   "
          f"goal <= {1 / 5:.3f}  {measured.judge(ours <= awk / 5)}")
    forwards = measured.nanoseconds("walk/next")
    back = measured.nanoseconds("walk/prev")
    measured.note("All of 100,000 entries read one by one backwards, each", "forwards", back, forwards, "ns", 3)
    print(f"\nAll of 100,000 entries read one by one: forwards {forwards:.1f} ns each, backwards {back:.1f} ns, "
          f"{back / forwards:.2f} of it   goal <= 3  {measured.judge(back <= 3 * forwards)}")
