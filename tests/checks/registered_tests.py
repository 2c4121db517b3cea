# SPDX-License-Identifier: MIT
"""Checks that every test and fuzz source is named in its folder's CMakeLists.txt and holds something to run.

usage: registered_tests.py <project directory>
"""

import pathlib
import re
import sys

root = pathlib.Path(sys.argv[1])
failures = []
count = 0
for folder in ("tests", "fuzz"):
    for source in sorted([*(root / folder).rglob("*.cpp"), *(root / folder).rglob("*.c")]):
        if "consumers" in source.parts:  # the applications of install.sh
            continue
        lists = [parent / "CMakeLists.txt" for parent in source.parents if (parent / "CMakeLists.txt").exists()]
        if not re.search(rf"\b{re.escape(source.name)}\b", lists[0].read_text()):
            failures.append(f"{source.relative_to(root)} is not registered")
        text = source.read_text(errors="replace")
        count += len(re.findall(r"^(?:TEST|TEST_F|TEST_P)\(", text, re.M))
        # A test may only say, when it runs, what its machine does not let it do.
        if re.search(r"\bDISABLED_|\bGTEST_SKIP\(\)(?!\s*<<)", text):
            failures.append(f"{source.relative_to(root)} leaves a test out")
if count == 0:
    failures.append("there are no tests")
print("\n".join(failures) or f"{count} test cases, all registered")
sys.exit(1 if failures else 0)
