"""Checks the tables of examples/profiles: what follows from the dimensions is computed anew, so that no figure is
mistyped.

usage: profile_tables.py <directory of the tables>

Area and moments of inertia of the I-sections come from the nominal dimensions, fillets included; the areas of
channels and angles too. Section moduli and radii of gyration have to follow from what is beside them.
"""

import math
import pathlib
import sys

directory = pathlib.Path(sys.argv[1])
failures = []
compared = 0

SPANDREL = 1 - math.pi / 4  # between a square and the quarter of a circle in it, for the side 1
SPANDREL_CENTROID = (10 - 3 * math.pi) / (12 - 3 * math.pi)  # from the square's corner
SPANDREL_INERTIA = 1 / 3 - math.pi / 16 - 1 / (36 - 9 * math.pi)  # about its centroid


def read(name):
    """The entries of a table, as dictionaries of its columns."""
    raw = (directory / name).read_bytes()
    if raw.count(b"\n") != raw.count(b"\r\n") or not raw.endswith(b"\r\n"):
        failures.append(f"{name}: not all lines end in CR LF")
    header, *lines = raw.decode("ascii").splitlines()
    columns = header.split()
    entries = []
    for line in lines:
        fields = line.split()
        if len(fields) != len(columns) or line != line.rstrip():
            failures.append(f"{name}: '{line}' has {len(fields)} fields of {len(columns)}, or blanks at its end")
            continue
        entry = {column: float(field) for column, field in zip(columns[2:], fields[2:])}
        entries.append(entry | {"name": f"{fields[0]} {fields[1]}"})
    return entries


def compare(entry, column, computed, tolerance=0.005):
    global compared
    compared += 1
    if abs(entry[column] - computed) > tolerance * computed:
        failures.append(f"{entry['name']}: {column} is {entry[column]:g}, computed {computed:.5g}")


def check_moduli(entry, distance_y, distance_z, tolerance):
    compare(entry, "Wy", entry["Iy"] / distance_y, tolerance)
    compare(entry, "Wz", entry["Iz"] / distance_z, tolerance)
    compare(entry, "iy", math.sqrt(entry["Iy"] / entry["A"]), tolerance)
    compare(entry, "iz", math.sqrt(entry["Iz"] / entry["A"]), tolerance)


def check_i_section(entry):
    h, b, s, t, r = (entry[column] / 10 for column in "hbstr")  # cm
    spandrel = SPANDREL * r**2
    own = SPANDREL_INERTIA * r**4
    from_y = h / 2 - t - SPANDREL_CENTROID * r
    from_z = s / 2 + SPANDREL_CENTROID * r
    compare(entry, "A", 2 * b * t + (h - 2 * t) * s + 4 * spandrel)
    compare(entry, "Iy", (b * h**3 - (b - s) * (h - 2 * t) ** 3) / 12 + 4 * (own + spandrel * from_y**2))
    compare(entry, "Iz", (2 * t * b**3 + (h - 2 * t) * s**3) / 12 + 4 * (own + spandrel * from_z**2))
    check_moduli(entry, h / 2, b / 2, 0.005)


def check_channel(entry):
    h, b, s, t, r, r1 = (entry[column] / 10 for column in ("h", "b", "s", "t", "r", "r1"))
    # The flanges' inner faces slope; t is their thickness at one place, and what counts is that in the middle.
    slope, place = (0.08, b / 2) if h <= 30 else (0.05, (b + s) / 2)
    mean = t + slope * (place - (b + s) / 2)
    compare(entry, "A", h * s + 2 * (b - s) * mean + 2 * SPANDREL * (r**2 - r1**2), 0.01)
    check_moduli(entry, h / 2, b - entry["ez"], 0.01)


def check_angle(entry):
    a, t, r, r1 = (entry[column] / 10 for column in ("h", "t", "r", "r1"))
    if entry["name"] != f"L {entry['h']:g}x{entry['t']:g}" or entry["b"] != entry["h"] or entry["s"] != entry["t"]:
        failures.append(f"{entry['name']}: the dimensions are not those of the name")
    compare(entry, "A", t * (2 * a - t) + SPANDREL * (r**2 - 2 * r1**2))
    check_moduli(entry, a - entry["ez"], a - entry["ez"], 0.01)


def check_mat(entry):
    for area, diameter, spacing in (("A", "D", "a"), ("AQ", "s", "b")):
        compare(entry, area, math.pi * (entry[diameter] / 10) ** 2 / 4 * 1000 / entry[spacing])


TABLES = {
    "hea.pro": (check_i_section, 24),
    "heb.pro": (check_i_section, 24),
    "hem.pro": (check_i_section, 24),
    "ipe.pro": (check_i_section, 18),
    "upn.pro": (check_channel, 18),
    "l.pro": (check_angle, 44),
    "matten.mtt": (check_mat, 11),
}

for name, (check, count) in TABLES.items():
    entries = read(name)
    if len(entries) != count:
        failures.append(f"{name}: {len(entries)} entries instead of {count}")
    for entry in entries:
        check(entry)

print("\n".join(failures) or f"{compared} figures agree with the dimensions")
sys.exit(1 if failures else 0)
