# SPDX-License-Identifier: MIT
"""Checks the headers as Microsoft's compilers see them, for 32 and 64 bit: functions and the types of callbacks are __cdecl,
whatever an application takes by default.

usage: calling_convention.py <source directory> <clang>
"""

import pathlib
import re
import subprocess
import sys
import tempfile

root, clang = pathlib.Path(sys.argv[1]), sys.argv[2]
functions = re.findall(r"^ +(\w+)$", (root / "cmake/kv.def").read_text(), re.M)
headers = "".join(path.read_text() for path in (root / "include").rglob("*.h"))
callbacks = re.findall(r"^typedef [^;(]*\([\w ]*\*(\w+)\)\(", headers, re.M)
failures = [] if functions and callbacks else ["nothing was found in the headers"]
if re.search(r"\(\*\w*\)\(", headers):
    failures.append("a pointer to a function has no KV_CALL")

users = {
    "user.c": "const void *const all[] = {" + ", ".join(f"(const void *){name}" for name in functions) + "};\n",
    # Of a type with another convention there is no partial specialisation.
    "user.cpp": "template <typename> struct Is;\n"
    + "template <typename R, typename... A> struct Is<R(__cdecl *)(A...)> { static const bool cdecl_ = true; };\n"
    + "".join(f"static_assert(Is<{name}>::cdecl_);\n" for name in callbacks),
}
with tempfile.TemporaryDirectory() as work:
    (pathlib.Path(work) / "stdio.h").write_text("typedef struct _iobuf FILE;\n")
    for name, text in users.items():
        source = pathlib.Path(work) / name
        source.write_text(f'#include "kv.h"\n{text}')
        for machine, default in (("i686", ["-mrtd"]), ("i686", []), ("x86_64", [])):
            options = [f"--target={machine}-pc-windows-msvc", *default, "-ffreestanding", f"-I{work}", f"-I{root}/include"]
            language = ["-std=c++20"] if name.endswith("pp") else ["-std=c11", "-Wno-microsoft-cast"]
            command = [clang, *options, *language, "-Wall", "-Werror", "-S", "-o", "-", str(source)]
            result = subprocess.run(command, capture_output=True, text=True)
            other = re.findall(r"\b_?(\w+)@\d+", result.stdout)
            if result.returncode != 0 or other:
                failures.append(f"{name}, {' '.join(options[:2])}: {result.stderr}{other}")

print("\n".join(failures) or f"{len(functions)} functions and {len(callbacks)} callback types are __cdecl")
sys.exit(1 if failures else 0)
