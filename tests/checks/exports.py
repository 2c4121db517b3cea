"""Checks that exported = listed = declared = documented = tested.

usage: exports.py <project directory> <shared library> [<objdump>, for a DLL]
"""

import pathlib
import re
import subprocess
import sys

root = pathlib.Path(sys.argv[1])
failures = []


def compare(what, names, others_what, others):
    for name in sorted(names - others):
        failures.append(f"{name}: {what}, but not {others_what}")


definition = (root / "cmake/kv.def").read_text()
listed = set(re.findall(r"^ +([A-Za-z_]\w*)$", definition, re.M))



def output(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


if sys.argv[2].endswith(".dll"):
    headers = output(sys.argv[3], "-p", sys.argv[2])
    table = headers[headers.index("[Ordinal/Name Pointer] Table") :].split("\n\n")[0]
    exported = {line.split()[-1] for line in table.splitlines() if line.startswith("\t[")}
else:
    exported = {line.split()[-1] for line in output("nm", "-D", "--defined-only", sys.argv[2]).splitlines()}
# What the sanitizers and the coverage add to a library.
exported = {name for name in exported if not re.match(r"(__(asan|sancov|odr_asan|start|stop|gcov|llvm)|_edata|_end)", name)}

declared = set()
documented = set()
for header in sorted((root / "include").rglob("*.h")):
    text = header.read_text()
    for declaration in re.finditer(r"(\*/\s*|;\s*|\n)KV_API\s[^;(]*?\b(\w+)\(", text):
        declared.add(declaration[2])
        if declaration[1].startswith("*/"):
            documented.add(declaration[2])

tests = "\n".join(path.read_text(errors="replace") for path in (root / "tests").rglob("*.c*"))
tested = {name for name in declared if re.search(rf"\b{name}\b", tests)}

compare("exported", exported, "listed in kv.def", listed)
compare("listed in kv.def", listed, "exported", exported)
compare("exported", exported, "declared in include/", declared)
compare("declared in include/", declared, "exported", exported)
compare("declared", declared, "documented", documented)
compare("exported", exported, "used by any test", tested)
if not exported:
    failures.append("the library exports nothing")

print("\n".join(failures) or f"{len(exported)} names are exported, listed, declared, documented and tested")
sys.exit(1 if failures else 0)
