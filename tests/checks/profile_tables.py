# SPDX-License-Identifier: MIT
"""Checks the tables of examples/profiles: what follows from the dimensions is computed anew, so that no figure is
mistyped.

usage: profile_tables.py <directory of the tables>

Area, centroid and moments of inertia come from the nominal outline, with its slopes and roundings; moduli and radii of
gyration from them.
"""

import math
import pathlib
import sys

CHORDS = 16  # for each rounding


def rounded(corners):
    """The points of a closed line, counter-clockwise, whose corners (x, y, radius) are rounded."""
    points = []
    for (ax, ay, _), (x, y, r), (bx, by, _) in zip(corners[-1:] + corners, corners, corners[1:] + corners):
        start, end = math.atan2(y - ay, x - ax), math.atan2(by - y, bx - x)  # directions to the corner and on
        turn = (end - start + math.pi) % (2 * math.pi) - math.pi
        side, back = math.copysign(r, turn), r * math.tan(abs(turn) / 2)
        cx = x - back * math.cos(start) - side * math.sin(start)
        cy = y - back * math.sin(start) + side * math.cos(start)
        angles = [start + turn * i / CHORDS for i in range(CHORDS + 1 if r else 1)]
        points += [(cx + side * math.sin(a), cy - side * math.cos(a)) for a in angles]
    return points


def moments(points):
    """Area, and first and second moments about the axes of coordinates: A, Sy, Sz, Iy, Iz."""
    sums = [0] * 5
    for (x0, y0), (x1, y1) in zip(points, points[1:] + points[:1]):
        c = x0 * y1 - x1 * y0
        parts = 1 / 2, (y0 + y1) / 6, (x0 + x1) / 6, (y0**2 + y0 * y1 + y1**2) / 12, (x0**2 + x0 * x1 + x1**2) / 12
        sums = [total + c * part for total, part in zip(sums, parts)]
    return sums


def up(corners, h):  # and its mirror image above
    return corners + [(x, h - y, r) for x, y, r in reversed(corners)]


def left(corners, b):
    return corners + [(b - x, y, r) for x, y, r in reversed(corners)]


def beam(h, b, s, t, r, r1=0, slope=0):
    edge, root = t - slope * b / 4, t + slope * (b / 4 - s / 2)  # t is measured at b/4
    return [left(up([(b, 0, 0), (b, edge, r1), ((b + s) / 2, root, r)], h), b)]


def channel(h, b, s, t, r, r1=0, slopes=(0, 0)):
    slope, place = (slopes[0], b / 2) if h <= 30 else (slopes[1], (b - s) / 2)
    return [up([(0, 0, 0), (b, 0, 0), (b, t - slope * place, r1), (s, t + slope * (b - s - place), r)], h)]


def angle(h, b, s, t, r, r1):
    return [[(0, 0, 0), (b, 0, 0), (b, t, r1), (s, t, r), (s, h, r1), (0, h, 0)]]


def tee(h, b, s, t, r, r1, slope=0.02):
    """Upside down; t is measured at b/4, s at h/2."""
    end = (b + s) / 2 - slope * h / 2
    x = (end + slope * (h - t - slope * b * 3 / 4)) / (1 - slope**2)
    return [left([(b, 0, 0), (b, t - slope * b / 4, r1), (x, t + slope * (b * 3 / 4 - x), r), (end, h, r1 / 2)], b)]


def box(h, b, t, r, r1):
    return [left(up([(b - inwards, inwards, radius)], h), b) for inwards, radius in ((0, r), (t, r1))]


def pipe(D, t):
    return box(D, D, t, D / 2, D / 2 - t)


def torsion(h, b, t, r, r1):
    """It and Wt of a box, as EN 10210-2 has them."""
    middle = (r + r1) / 2
    line = 2 * (b + h - 2 * t) - 2 * middle * (4 - math.pi)
    k = 2 * t / line * ((b - t) * (h - t) - middle**2 * (4 - math.pi))
    it = t**3 * line / 3 + k**2 * line / t
    return {"It": it, "Wt": it / (t + k / t)}


def figures(outlines):
    """What the columns of a section have to be."""
    outlines = [rounded(corners) for corners in outlines]
    outer, *hollow = map(moments, outlines)
    a, sy, sz, iy, iz = (value - sum(inner[i] for inner in hollow) for i, value in enumerate(outer))
    z, y = sz / a, sy / a  # the centroid
    iy, iz = iy - a * y**2, iz - a * z**2
    across, along = (max(max(values) - at, at) for values, at in zip(zip(*outlines[0]), (z, y)))
    return {"A": a, "Iy": iy, "Iz": iz, "Wy": iy / along, "Wz": iz / across, "iy": math.sqrt(iy / a),
            "iz": math.sqrt(iz / a), "ey": y, "ez": z, "It": iy + iz, "Wt": (iy + iz) / across}


def section(outline, **more):
    def check(entry):
        sizes = {column: entry[column] / 10 for column in ("h", "b", "s", "t", "r", "r1", "D") if column in entry}
        return figures(outline(**sizes, **more)) | (torsion(**sizes) if outline is box else {})
    return check


def mat(entry):
    return {area: math.pi * (entry[diameter] / 10) ** 2 / 4 * 1000 / entry[spacing]
            for area, diameter, spacing in (("A", "D", "a"), ("AQ", "s", "b"))}


TABLES = {  # what computes the figures, how many entries there are, and how sizes follow from dimensions
    "hea.pro": (section(beam), 24, ""),
    "heb.pro": (section(beam), 24, ""),
    "hem.pro": (section(beam), 24, ""),
    "ipe.pro": (section(beam), 18, "{h:g}"),
    "ipn.pro": (section(beam, slope=0.14), 21, "{h:g}"),
    "upn.pro": (section(channel, slopes=(0.08, 0.05)), 18, "{h:g}"),
    "upe.pro": (section(channel), 14, "{h:g}"),
    "l.pro": (section(angle), 44, "{h:g}x{t:g}"),
    "lu.pro": (section(angle), 46, "{h:g}x{b:g}x{t:g}"),
    "t.pro": (section(tee), 10, "{h:g}"),
    "rhs.pro": (section(box), 103, "{h:g}x{b:g}x{t:g}"),
    "shs.pro": (section(box), 91, "{h:g}x{b:g}x{t:g}"),
    "chs.pro": (section(pipe), 120, "{D:g}x{t:g}"),
    "matten.mtt": (mat, 11, ""),
}
TOLERANCES = {"upn.pro": 0.011}  # its standard computes a little otherwise

failures = []
compared = 0
for name, (check, count, size) in TABLES.items():
    raw = (pathlib.Path(sys.argv[1]) / name).read_bytes()
    if raw.count(b"\n") != raw.count(b"\r\n") or not raw.endswith(b"\r\n"):
        failures.append(f"{name}: not all lines end in CR LF")
    (_, _, *columns), *lines = (line.split() for line in raw.decode("ascii").splitlines())
    if len(lines) != count or any(len(fields) != len(columns) + 2 for fields in lines) or b" \r" in raw:
        failures.append(f"{name}: not {count} entries of {len(columns)} columns, or blanks at an end of a line")
    for kind, of_size, *fields in lines:
        entry = dict(zip(columns, map(float, fields)))
        if size and of_size != size.format(**entry):
            failures.append(f"{kind} {of_size}: the dimensions are not those of the name")
        for column, value in check(entry).items():
            if column not in entry:
                continue
            compared += 1
            if abs(entry[column] - value) > TOLERANCES.get(name, 0.006) * value:
                failures.append(f"{kind} {of_size}: {column} is {entry[column]:g}, computed {value:.5g}")

print("\n".join(failures) or f"{compared} figures agree with the dimensions")
sys.exit(1 if failures else 0)
