# SPDX-License-Identifier: MIT
"""Checks that exported = listed = declared = documented = tested, that the layer for C++ is tested, and that the
documents name no function that is not there. What is missing is named.

usage: exports.py <project directory> <shared library or DLL> [<objdump>]
"""

import pathlib
import re
import subprocess
import sys

root = pathlib.Path(sys.argv[1])
library = sys.argv[2]
objdump = sys.argv[3] if len(sys.argv) > 3 else "objdump"
failures = []


def compare(what, names, others_what, others):
    for name in sorted(names - others):
        failures.append(f"{name}: {what}, but not {others_what}")


def output(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def exported_by(library):
    if library.endswith(".dll"):
        headers = output(objdump, "-p", library)
        table = headers[headers.index("[Ordinal/Name Pointer] Table") :].split("\n\n")[0]
        return {line.split()[-1] for line in table.splitlines() if line.startswith("\t[")}
    names = {line.split()[-1] for line in output("nm", "-D", "--defined-only", library).splitlines()}
    # What the sanitizers and the coverage add to a library.
    added = re.compile(r"(__(asan|sancov|odr_asan|start|stop|gcov|llvm)|_edata|_end)")
    return {name for name in names if not added.match(name)}


def sources(folder, *patterns):
    files = (path for pattern in patterns for path in (root / folder).rglob(pattern))
    return "\n".join(path.read_text(errors="replace") for path in sorted(files))


exported = exported_by(library)
listed = set(re.findall(r"^ +([A-Za-z_]\w*)$", (root / "cmake/kv.def").read_text(), re.M))
declared = set()
documented = set()
for declaration in re.finditer(r"(\*/\s*|;\s*|\n)KV_API\s[^;(]*?\b(\w+)\(", sources("include", "*.h")):
    declared.add(declaration[2])
    if declaration[1].startswith("*/"):
        documented.add(declaration[2])
# The tests run the fuzz targets' models, too.
used_by_tests = set(re.findall(r"\w+", sources("tests", "*.[ch]*") + sources("fuzz", "*.[ch]*")))

compare("exported", exported, "listed in kv.def", listed)
compare("listed in kv.def", listed, "exported", exported)
compare("exported", exported, "declared in include/", declared)
compare("declared in include/", declared, "exported", exported)
compare("declared", declared, "documented", documented)
compare("exported", exported, "used by any test", used_by_tests)
if not exported:
    failures.append("the library exports nothing")

# The public functions of the classes in kv.hpp. `of` and `failed` make the results of all others.
layer = set()
public = False
for line in (root / "include/kv.hpp").read_text().splitlines():
    public = "public:" in line or public and not re.match(r"};| *private:", line)
    function = re.match(r"    (?:[\w:&<>*,]+ )+[&*]?(\w+)\(", line)
    if public and function and not re.match(r" *return ", line):
        layer.add(function[1])
layer -= {"of", "failed", "operator", "bool"}
compare("in kv.hpp", layer, "used by tests/cpp", set(re.findall(r"\w+", sources("tests/cpp", "*.cpp"))))
if not layer:
    failures.append("kv.hpp has no functions")

# Functions that the documents speak of, the library's own ones too.
folders = {path.parent.name for path in root.glob("*/CMakeLists.txt")} | {"include", "tools"}
words = {word for folder in folders for word in re.findall(r"\w+", sources(folder, "*.h", "*.hpp", "*.cpp"))}
for page in [*root.glob("*.md"), *(root / "docs").glob("*.md")]:
    compare(f"in {page.name}", set(re.findall(r"`(\w+)\(\)`", page.read_text())), "in any source", words)

print(
    "\n".join(failures)
    or f"{len(exported)} names are exported, listed, declared, documented and tested, "
    f"and {len(layer)} of kv.hpp are tested"
)
sys.exit(1 if failures else 0)
