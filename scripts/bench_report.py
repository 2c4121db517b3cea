# SPDX-License-Identifier: MIT
"""Writes what the benchmarks have measured as a page, with plots of how the times grow."""

import datetime
import os
import pathlib
import platform
import re
import subprocess

HEAD = """# Performance

Written by `scripts/bench` on {date}: {machine}. {compiler}, Release.

Each line sets what this library takes beside what a peer takes for the same work in the same run; the share is the first figure by
the second, so that less is better. A goal is the most that the share may be. Figures are medians of nine repetitions in random
order, of processor time where nothing else is said; [bench/README.md](../bench/README.md) says what is measured and how much to
trust it.
"""

PLOTS = {
    "growth-lookup": ("Looking things up in one block of the environment tree",
                      ["random lookup", "random lookup by index", "random get_pos", "first lookup"]),
    "growth-change": ("Making and changing one block of the environment tree",
                      ["parse", "write", "append by put", "insert_before and delete"]),
    "growth-iteration": ("Going through one block of the environment tree",
                         ["iteration step", "leaf visited", "leaf visited, one name"]),
}


def first_line(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout.splitlines()[0]


def machine():
    processor = re.search(r"model name\s*: (.*)", pathlib.Path("/proc/cpuinfo").read_text())
    name = processor[1] if processor else platform.machine()
    system = re.search(r'PRETTY_NAME="(.*)"', pathlib.Path("/etc/os-release").read_text())
    return f"{os.cpu_count()} cores of {name}, {system[1] if system else platform.system()}"


def figure(value, unit):
    if unit == "ns" and value >= 10_000:
        return f"{value / 1000:,.1f} us"
    return f"{value:,.1f} {unit}"


def table(comparisons):
    lines = ["| what | kv | peer | its figure | share | goal |", "|---|---:|---|---:|---:|---:|"]
    before = None
    for row in comparisons:
        what = row.what if row.what != before else ""
        ours = figure(row.ours, row.unit) if row.what != before else ""
        goal = f"{row.most:.3g}" if row.most is not None else ""
        if row.most is not None and row.ours > row.theirs * row.most:
            goal += ", missed"
        lines.append(f"| {what} | {ours} | {row.peer} | {figure(row.theirs, row.unit)} | {row.ours / row.theirs:.3f} | {goal} |")
        before = row.what
    return "\n".join(lines) + "\n"


def growth(measured, name):
    """(size, nanoseconds) in ascending order."""
    prefix = f"scaling/{name}/"
    sizes = sorted(int(entry.removeprefix(prefix)) for entry in measured.medians
                   if entry.startswith(prefix) and entry.removeprefix(prefix).isdigit())
    return [(size, measured.nanoseconds(f"{prefix}{size}")) for size in sizes]


def plot(path, title, curves):
    script = [
        "set terminal svg size 640,400 font 'sans-serif,13' noenhanced background 'white'",
        f"set title '{title}, by its elements'",
        "set logscale xy", "set grid", "set key below samplen 2",
        "set ylabel 'ns each'",
        "set format x '%.0f'", "set xrange [800:125000]", "set yrange [1:*]",
    ]
    names = []
    for i, (name, points) in enumerate(curves.items()):
        script += [f"$data{i} << END", *(f"{size} {time:.2f}" for size, time in points), "END"]
        names.append(f"$data{i} with linespoints linewidth 2 pointtype 7 pointsize 0.6 title '{name}'")
    script.append("plot " + ", ".join(names))
    drawn = subprocess.run(["gnuplot"], input="\n".join(script), check=True, capture_output=True, text=True).stdout
    path.write_text("\n".join(line.rstrip() for line in drawn.splitlines()) + "\n")


def write(directory, everything):
    date = datetime.date.today().isoformat()
    text = HEAD.format(date=date, machine=machine(), compiler=first_line("g++", "--version"))
    comparisons = [row for measured in everything.values() for row in measured.comparisons]
    text += "\n## Beside the peers\n\n" + table(comparisons)
    if "env" in everything:
        images = directory / "images"
        images.mkdir(exist_ok=True)
        text += "\n## Growth\n\nTime for each element or operation, in one block of 1,000 to 100,000 elements.\n"
        for name, (title, curves) in PLOTS.items():
            plot(images / f"{name}.svg", title, {curve: growth(everything["env"], curve) for curve in curves})
            text += f"\n![{title}](images/{name}.svg)\n"
    (directory / "performance.md").write_text(text)
