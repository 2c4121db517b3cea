# SPDX-License-Identifier: MIT
"""Follows a document as its reader does: writes the files that it shows, types its commands into one shell, with an empty
home, and compares what comes with what is shown.

usage: documents.py <document> <build directory> [<examples directory> <program kv>]

A block "```console" holds commands behind "$ " and what they print; a block with a file's name behind its language is
that file. A command has to succeed. The commands begin in an empty directory, from which build/mine is the build
directory; or in a copy of the examples, with kv at hand. A picture that they make is compared with the one of its name in
images/ beside the document or in docs/.
"""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

path = pathlib.Path(sys.argv[1]).resolve()
document = path.read_text()
build = pathlib.Path(sys.argv[2]).resolve()
examples, program = [pathlib.Path(word).resolve() for word in sys.argv[3:]] or (None, None)
MARK = "@@@ end of command"

script = ["exec 2>&1"]
steps = []  # the command and what it has to print
for language, name, content in re.findall(r"^```(\w*) ?(\S*)\n(.*?)^```$", document, re.M | re.S):
    if name:
        script.append(f"cat >{name} <<'@@@'\n{content}@@@")
    elif language == "console":
        if not content.startswith("$ "):
            sys.exit(f"a block begins with no command:\n{content}")
        for command, output in re.findall(r"^\$ (.*)\n((?:(?!\$ ).*\n)*)", content, re.M):
            script += [command, f'printf "{MARK} %d\\n" $?']
            steps.append((command, output))

with tempfile.TemporaryDirectory() as work:
    home = pathlib.Path(work) / "home"
    start = pathlib.Path(work) / "project"
    home.mkdir()
    if examples:
        shutil.copytree(examples, start)
    else:
        (start / "build").mkdir(parents=True)
        (start / "build/mine").symlink_to(build)
    # Nothing of the developer's own settings, but for the compilers.
    kept = {name: value for name, value in os.environ.items() if name in ("PATH", "CC", "CXX", "LANG", "TERM")}
    kept |= {"HOME": str(home), "LC_ALL": "C.UTF-8"}
    if program:
        kept["PATH"] = f"{program.parent}:{kept['PATH']}"
    (pathlib.Path(work) / "script").write_text("\n".join(script) + "\n")
    shell = subprocess.run(["bash", f"{work}/script"], cwd=start, env=kept, text=True, stdin=subprocess.DEVNULL,
                           stdout=subprocess.PIPE, timeout=300)
    failures = [
        f"{made.name} is another picture than {shown}"
        for made in start.glob("*.svg")
        for shown in [*path.parent.glob(f"images/{made.name}"), *path.parent.glob(f"docs/images/{made.name}")]
        if made.read_bytes() != shown.read_bytes()
    ]

outcomes = re.findall(rf"(.*?)^{MARK} (\d+)\n", shell.stdout, re.M | re.S)
for (command, expected), (printed, code) in zip(steps, outcomes):
    if printed != expected or code != "0":
        failures.append(f"$ {command}\n{printed}--- exit code {code}; what is shown is:\n{expected}")
if len(outcomes) != len(steps) or not steps:
    failures.append(f"{len(steps)} commands are shown, {len(outcomes)} came to an end\n{shell.stdout}")
print("\n".join(failures) or f"{len(steps)} commands print what is shown")
sys.exit(1 if failures else 0)
