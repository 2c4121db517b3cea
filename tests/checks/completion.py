# SPDX-License-Identifier: MIT
"""Completes command lines of kv in real shells, each at a terminal of its own, and compares the words that the shell
makes of what stands there then. A shell that is not installed is passed over, with a message.

usage: completion.py <program kv> <directory of the completions> <examples directory>
"""

import os
import pathlib
import pty
import re
import select
import shutil
import sys
import tempfile
import time

program, completions, examples = [pathlib.Path(word).resolve() for word in sys.argv[1:]]

# What is typed before the tab, and the words that come of it.
CASES = [
    ("kv en", "kv env"),
    ("kv env ge", "kv env get"),
    ("kv help env che", "kv help env check"),
    ("kv env get press.e", "kv env get press.env"),
    ("kv env get press.env mac", "kv env get press.env machine"),
    ("kv env get press.env machine axis@2@li", "kv env get press.env machine axis@2@limits"),
    ("kv env get --delimiter / press.env machine axis/2/li", "kv env get --delimiter / press.env machine axis/2/limits"),
    ("kv env get press.env press brake@stopping", "kv env get press.env press|brake@stopping time"),
    ("kv env get --ty", "kv env get --type"),
    ("kv env get -t dou", "kv env get -t double"),
    ("kv env merge --mode=up", "kv env merge --mode=update"),
    ("kv ini --file crane.i", "kv ini --file crane.ini"),
    ("kv ini get crane.ini Sys", "kv ini get crane.ini System"),
    ("kv ini --file=crane.ini get System Pro", "kv ini --file=crane.ini get System Profile"),
    ("kv ini get Pfade Da", "kv ini get Pfade Daten"),
    ("kv profile list --dir prof", "kv profile list --dir profiles"),
    ("kv profile get --dir profiles IPE\\ 40", "kv profile get --dir profiles|IPE 400"),
]

SHELLS = {
    "bash": (["bash", "--norc", "--noprofile", "-i"], "source {}/kv.bash"),
    "zsh": (["zsh", "-f", "-i"], "fpath=({0}/zsh $fpath); autoload -Uz compinit; compinit -u -D; bindkey -e; unsetopt zle_bracketed_paste"),
    "fish": (["fish", "--no-config", "--private", "-i"], "set fish_autosuggestion_enabled 0; source {}/kv.fish"),
}
ESCAPES = re.compile(rb"\x1b\[[0-9;?<>=]*[a-zA-Z]|\x1b[()][A-Z0-9]|\x1b\][^\x07]*\x07|\x1b[=>78]")


class Terminal:
    """A shell at a pseudo-terminal."""

    def __init__(self, command, directory):
        self.child, self.terminal = pty.fork()
        if self.child == 0:
            os.chdir(directory)
            kept = {name: os.environ[name] for name in ("LANG",) if name in os.environ}
            os.execvpe(command[0], command, kept | {
                "PATH": f"{program.parent}:{os.environ['PATH']}", "HOME": directory, "TERM": "dumb", "LC_ALL": "C.UTF-8",
                "PS1": "$ ", "KV_DRIVE_C": directory})

    def type(self, keys):
        os.write(self.terminal, keys.encode())

    def read_until(self, mark, patience=30):
        """What is shown up to the mark."""
        shown = b""
        end = time.monotonic() + patience
        while mark not in ESCAPES.sub(b"", shown):
            ready, _, _ = select.select([self.terminal], [], [], max(0, end - time.monotonic()))
            if not ready:
                raise TimeoutError(f"{mark.decode()} is not shown, but:\n{shown.decode(errors='replace')}")
            shown += os.read(self.terminal, 4096)
        return ESCAPES.sub(b"", shown).decode(errors="replace")

    def read_until_quiet(self, seconds):
        while select.select([self.terminal], [], [], seconds)[0]:
            os.read(self.terminal, 4096)

    def close(self):
        os.close(self.terminal)
        os.waitpid(self.child, 0)


def words_after_tab(terminal, typed):
    terminal.type(typed + "\t")
    terminal.read_until_quiet(0.4)
    terminal.type("\x01printf '<%s>' \x05\n")  # to the line's beginning, and to its end
    terminal.type("printf '%s\\n' '@@''end'\n")
    shown = terminal.read_until(b"@@end")
    found = re.findall(r"(?:^|\n|\r)((?:<[^<>\r\n]*>)+)", shown)
    return found[-1][1:-1].removesuffix("/").split("><") if found else shown


failures = []
for shell, (command, setup) in SHELLS.items():
    if shutil.which(shell) is None:
        print(f"{shell} is not installed here: its completion is not tested")
        continue
    with tempfile.TemporaryDirectory() as work:
        start = pathlib.Path(work) / "examples"
        shutil.copytree(examples, start)
        (start / "zsh").mkdir()
        shutil.copy(completions / "kv.zsh", start / "zsh/_kv")
        terminal = Terminal(command, str(start))
        terminal.read_until_quiet(1)
        terminal.type(setup.format(completions if shell != "zsh" else start) + "; printf '%s\\n' '@@''ready'\n")
        terminal.read_until(b"@@ready")
        terminal.read_until_quiet(0.4)
        for typed, expected in CASES:
            wanted = re.split(r"[ ]", expected) if "|" not in expected else \
                expected.split("|")[0].split(" ") + [expected.split("|")[1]]
            words = words_after_tab(terminal, typed)
            if words != wanted:
                failures.append(f"{shell}: {typed}<TAB> gives {words!r}, not {wanted!r}")
        terminal.close()
print("\n".join(failures) or f"{len(CASES)} lines are completed as they should")
sys.exit(1 if failures else 0)
