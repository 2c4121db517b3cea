# SPDX-License-Identifier: MIT
"""Checks what kv.dll wants of the machine it is put on: libraries of the system and no others, and that it tells its
version.

usage: dll.py <objdump> <kv.dll> <version>
"""

import re
import subprocess
import sys

SYSTEM = {"advapi32.dll", "kernel32.dll", "msvcrt.dll", "shell32.dll", "user32.dll"}

objdump, library, version = sys.argv[1:]
failures = []
headers = subprocess.run([objdump, "-p", library], check=True, capture_output=True, text=True).stdout
wanted = {name.lower() for name in re.findall(r"DLL Name: (\S+)", headers)}
for name in sorted(wanted - SYSTEM):
    failures.append(f"{name} is wanted, which is no part of the system")
if "kernel32.dll" not in wanted:
    failures.append("no imports were found")

content = open(library, "rb").read()
for text in ("VS_VERSION_INFO", "ProductVersion", version):
    if text.encode("utf-16-le") not in content:
        failures.append(f"the version resource lacks {text}")

print("\n".join(failures) or f"wants {', '.join(sorted(wanted))}; version {version}")
sys.exit(1 if failures else 0)
