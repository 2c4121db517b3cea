# SPDX-License-Identifier: MIT
"""Packs the build for Windows and looks into the archive: the DLL, the program, and what applications are built with.

usage: package_zip.py <cpack> <build directory> <version> <objdump>
"""

import pathlib
import re
import subprocess
import sys
import tempfile
import zipfile

cpack, build, version, objdump = sys.argv[1:]
build = pathlib.Path(build).resolve()
failures = []


def output(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True, errors="replace").stdout


with tempfile.TemporaryDirectory() as work:
    output(cpack, "-G", "ZIP", "--config", str(build / "CPackConfig.cmake"), "-B", work)
    archives = list(pathlib.Path(work).glob("*.zip"))
    if len(archives) != 1 or not re.fullmatch(rf"kv-{re.escape(version)}-win(32|64)\.zip", archives[0].name):
        failures.append(f"the archives are {[archive.name for archive in archives]}")
    with zipfile.ZipFile(archives[0]) as archive:
        archive.extractall(work)
    root = pathlib.Path(work) / archives[0].stem
    files = sorted(path for path in root.rglob("*") if path.is_file())
    names = {str(path.relative_to(root)) for path in files}

    wanted = ["bin/kv.dll", "bin/kv.exe", "include/kv.h", "include/kv.hpp"]
    wanted += [f"lib/{name}" for name in ("libkv.dll.a", "libkv.a", "kv.def", "cmake/kv/kvConfig.cmake")]
    wanted += [f"share/doc/kv/{name}" for name in ("README.md", "LICENSE", "docs/windows.md", "examples/limits.c")]
    failures += [f"{name} is missing" for name in wanted if name not in names]
    failures += [f"{name} is no file for Windows" for name in names if re.search(r"\.so\b|(?<!site_report)\.cpp$|CMakeLists", name)]
    own = str(build).encode()
    failures += [f"{path} names the directory of the build" for path in files if own in path.read_bytes()]

    # The import library leads to the DLL beside it, and both are of the width that the archive's name says.
    width = "pei-x86-64" if archives[0].stem.endswith("win64") else "pei-i386"
    for name in ("bin/kv.dll", "bin/kv.exe"):
        if name in names and f"file format {width}" not in output(objdump, "-f", str(root / name)):
            failures.append(f"{name} is not {width}")
    if not re.fullmatch(rb"LIBRARY kv\r\nEXPORTS\r\n( +\w+\r\n){300,}", (root / "lib/kv.def").read_bytes()):
        failures.append("kv.def is not what Microsoft's tools write")
    if "lib/libkv.dll.a" in names and b"kv.dll" not in (root / "lib/libkv.dll.a").read_bytes():
        failures.append("the import library does not lead to kv.dll")

print("\n".join(failures) or f"{archives[0].name}: {len(names)} files")
sys.exit(1 if failures else 0)
