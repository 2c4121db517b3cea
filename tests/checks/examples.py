# SPDX-License-Identifier: MIT
"""Runs the programs of examples/ with the files there, and compares what they print and write.

usage: examples.py <directory of the programs> <examples directory> [<emulator of another system>...]
"""

import os
import pathlib
import shutil
import struct
import subprocess
import sys
import tempfile

programs = pathlib.Path(sys.argv[1])
examples = pathlib.Path(sys.argv[2])
emulator = sys.argv[3:]
suffix = ".exe" if (programs / "limits.exe").exists() else ""
failures = []

STROKE = "dldd12s"  # in the orders that struct calls < and >, without gaps


def run(*words):
    """The exit code and what a program prints, in its own order of the streams."""
    program, *arguments = words
    result = subprocess.run(
        [*emulator, str(programs / f"{program}{suffix}"), *arguments],
        stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=120,
    )
    return result.returncode, result.stdout.decode("latin-1").replace("\r\n", "\n")


def expect(code, text, *words):
    outcome = run(*words)
    if outcome != (code, text):
        failures.append(f"{' '.join(words)}: exit code {outcome[0]}, not {code}\n{outcome[1]}--- expected:\n{text}")


def strokes(name, order):
    content = pathlib.Path(name).read_bytes()
    return [values for values in struct.iter_unpack(order + STROKE, content[16:])]


work = tempfile.mkdtemp()
os.environ["HOME"] = work
os.environ["KV_DRIVE_C"] = os.path.join(work, "drive_c")
os.chdir(work)
for name in ("press.env", "site.env", "press2.rec", "press4.rec", "crane.env"):
    shutil.copy(examples / name, work)
shutil.copy(examples / "crane.ini", "kv3.ini")
shutil.copytree(examples / "profiles", "profiles")

# Defaults.
expect(
    0,
    "X      -50.00 (machine) to   1985.50 (site) mm\n"
    "Y        0.00 (machine) to    420.00 (machine) mm\n"
    "Z        0.00 (machine) to    285.00 (site) mm\n"
    "V        0.00 (machine) to    180.00 (machine) mm\n"
    "K        0.00 (machine) to    260.00 (machine) mm\n"
    "W      -10.00 (machine) to  99999.90 (machine) mm\n",
    "limits", "press.env", "site.env",
)
pathlib.Path("bad.env").write_bytes(b"[machine]\r\n axis ={\r\n  limits ={\r\n   min =low\r\n  }\r\n }\r\n")
expect(1, 'axis 1: no number for the limit "min"\n', "limits", "bad.env")
expect(1, "none.env cannot be read\n", "limits", "press.env", "none.env")

# Byte orders: there and back again.
big, little = strokes("press2.rec", ">"), strokes("press4.rec", "<")
expect(0, f"{len(big)} strokes, little-endian: a.rec\n", "byte_order", "little", "press2.rec", "a.rec")
expect(0, f"{len(little)} strokes, big-endian: b.rec\n", "byte_order", "big", "press4.rec", "b.rec")
if strokes("a.rec", "<") != big or strokes("b.rec", ">") != little:
    failures.append("byte_order: the records are others")
run("byte_order", "big", "a.rec", "press2again.rec")
run("byte_order", "little", "b.rec", "press4again.rec")
for name in ("press2", "press4"):
    if pathlib.Path(f"{name}.rec").read_bytes() != pathlib.Path(f"{name}again.rec").read_bytes():
        failures.append(f"byte_order: {name}.rec does not come back")
pathlib.Path("cut.rec").write_bytes(pathlib.Path("press4.rec").read_bytes()[:-1])
expect(1, "byte_order: not all strokes could be copied: cut.rec\n", "byte_order", "big", "cut.rec", "c.rec")
if pathlib.Path("c.rec").exists():
    failures.append("byte_order: half a file is left")

# The check of a beam.
expect(
    0,
    "Brueckenkran Halle 7\n"
    "  design moment 165.8 kNm\n"
    "  profile IPE 400 (table ipe), 400 mm high, 66.3 kg/m\n"
    "  Wy   required      705.5   there     1156.0 cm3   used  61.0 %\n"
    "  Iy   required    16685.7   there    23130.0 cm4   used  72.1 %\n",
    "beam_check", "crane.env",
)
crane = pathlib.Path("crane.env").read_bytes()
pathlib.Path("long.env").write_bytes(crane.replace(b"span =9.6", b"span =96"))
expect(1, "beam_check: no profile is enough for: Brueckenkran Halle 7\n", "beam_check", "long.env")
pathlib.Path("nospan.env").write_bytes(crane.replace(b"span =9.6", b"width =9.6"))
expect(1, "beam_check: no number in the machine's file: girder@span\n", "beam_check", "nospan.env")

# The layer for C++.
expect(
    0,
    "machine, name: Presse 4 / Halle 7\n"
    "network, host: h7-presse4\n"
    "network, address: 192.168.7.24\n"
    "network, gateway: 192.168.7.1\n"
    "network, time servers: 192.168.7.1\n"
    "panel, language: en\n"
    "two HEB 200: 11392 cm4\n",
    "site_report", "press.env", "site.env", "profiles/heb.pro", "results.ini",
)

os.chdir("/")
shutil.rmtree(work, ignore_errors=True)
print("\n".join(failures) or "the examples print and write what they should")
sys.exit(1 if failures else 0)
