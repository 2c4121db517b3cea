# SPDX-License-Identifier: MIT
"""Checks that every room includes only what docs/architecture.md allows it, and that the system is known in platform/ alone.

usage: includes.py <project directory>
"""

import pathlib
import re
import sys

root = pathlib.Path(sys.argv[1])
FAMILIES = "frame memory strings containers scan calc env fio config profiles clock serial".split()
SHARED = {"memory/owned.hpp", "memory/failpoint.hpp"}
# What the program takes of the library's own, beside platform/: where elements and entries stand in a file.
PROGRAM = {"config/ini_lines.hpp", "env/handle.hpp", "env/numbers.hpp", "env/reader.hpp", "env/state.hpp"}
SYSTEM = re.compile(r"(unistd|windows|fcntl|termios|io|dirent|pwd|poll|dlfcn|shlobj|pthread|sys/\w+)\.h")
failures = []


def check(folder, allowed):
    for path in sorted((root / folder).rglob("*.[ch]pp")):
        text = path.read_text(errors="replace")
        name = path.relative_to(root)
        for header in re.findall(r'^#include "(.+?)"', text, re.M):
            if not re.match(r"kv(\.h|/)", header) and not allowed(header):
                failures.append(f"{name} includes {header}")
        if folder != "platform":
            failures.extend(f"{name} includes <{header}>" for header in re.findall(r"^#include <(.+?)>", text, re.M) if SYSTEM.fullmatch(header))
            if re.search(r"^#.*\b_WIN32\b", text, re.M):
                failures.append(f"{name} asks for the system")


for family in FAMILIES:
    check(family, lambda header: header.startswith((family + "/", "platform/")) and "/posix/" not in header and "/win32/" not in header or header in SHARED)
check("platform", lambda header: header.startswith("platform/") or header in SHARED)
check("tools", lambda header: header.startswith(("tools/kv/", "platform/")) and header.count("/") < 4 or header in PROGRAM)
print("\n".join(failures) or "every room includes only what it may")
sys.exit(bool(failures))
