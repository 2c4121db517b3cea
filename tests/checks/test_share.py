# SPDX-License-Identifier: MIT
"""Checks that the tests do not outgrow the code: their lines in C and C++ without the blank ones, by those of everything else.

usage: test_share.py <project directory>

A share that has fallen is to be kept: lower MOST then.
"""

import pathlib
import sys

MOST = 36.8  # per cent

root = pathlib.Path(sys.argv[1])
lines = {"tests": 0, "other": 0}
for folder in root.iterdir():
    if not folder.is_dir() or folder.name == "build" or folder.name.startswith("."):
        continue
    for path in folder.rglob("*"):
        if path.suffix in (".c", ".cpp", ".h", ".hpp"):
            text = path.read_text(errors="replace")
            lines["tests" if folder.name == "tests" else "other"] += sum(bool(line.strip()) for line in text.splitlines())
share = 100 * lines["tests"] / lines["other"]
print(f"{lines['tests']} lines of tests by {lines['other']} of everything else: {share:.1f} %, of at most {MOST:.1f} %")
sys.exit(share > MOST)
