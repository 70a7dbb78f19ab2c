"""Grid files and systems for the tests. TWI_BATHYX is set before the first object, as in a program."""
import os
import pathlib
import struct
import subprocess
import tempfile

import numpy as np
import pytest

ROOT = pathlib.Path(__file__).resolve().parents[2]
EXAMPLES = ROOT / "examples"
BUILD = pathlib.Path(os.environ.get("LATIGO_BUILD", ROOT / "build/python"))
PROGRAM = ROOT / "build/release/latigo"

_folder = tempfile.TemporaryDirectory()
FOLDER = pathlib.Path(_folder.name)
os.environ["TWI_BATHYX"] = str(FOLDER)


def write_grid(path, depth, value, rows=9, columns=25, kept=None):
    """A grid file of docs/grid-files.md from 48 to 56 north and 4 west to 8 east; `kept` rows of it are there."""
    length = columns * depth * 4 + 4
    header = struct.pack("<64s3i4f4x", b"test", columns, rows, depth, -4, 0.5, 48, 1)
    with open(path, "wb") as file:
        file.write(header.ljust(length, b"\0"))
        for row in range(rows if kept is None else kept):
            nodes = [value(row, column, i) for column in range(columns) for i in range(depth)]
            file.write(b"lead" + struct.pack(f"<{len(nodes)}f", *nodes))


UTM = """Projection=UTM
SemiMajorAxis=6378388
Flattening=297
CentralMeridian=3
ScaleFactor=0.9996
FalseEasting=500000
"""
(FOLDER / "datum").mkdir()
write_grid(FOLDER / "datum/d.dat", 3, lambda row, column, i: (-87, -98, -121)[i] + row / 100 + column / 100)
write_grid(FOLDER / "datum/g.dat", 1, lambda row, column, i: 40 + row / 10 + column / 10)
write_grid(FOLDER / "datum/flat.dat", 2, lambda *_: 0)
write_grid(FOLDER / "datum/cut.dat", 3, lambda *_: 1, kept=4)
(FOLDER / "systems.ini").write_text(
    f"[Plain]\n{UTM}[Grids]\n{UTM}DynDatum=d.dat\nGeoid=g.dat\nVertUnit=0.5\n[Cut]\n{UTM}DynDatum=cut.dat\n"
    f"[Local]\n{UTM}AdjustType=1\nAdjustRotation=30\nAdjustScale=2\nAdjustX=1000\nReverseX=on\nDeltaX=10\nDeltaRX=-1.5\n"
    f"[Constant]\n{UTM}DeltaX=-87\nDeltaY=-98\nDeltaZ=-121\nOrthoHCorr=45.5\n"
    # East of 1 degree the inverse gives longitudes a turn less.
    f"[Turned]\n{UTM.replace('UTM', 'PST').replace('=3', '=-179')}RefLatitude=90\nDynDatum=d.dat\nGeoid=g.dat\n"
    f"[Flat]\n{UTM}DynDatum=flat.dat\nGeoid=g.dat\n")
SYSTEMS = FOLDER / "systems.ini"

import hypothesis  # noqa: E402

import latigo  # noqa: E402

hypothesis.settings.register_profile("tests", database=None, print_blob=True)  # a failure prints how to repeat it
hypothesis.settings.load_profile("tests")


def pytest_configure(config):
    """Random points are often far from an origin; tests of warnings see them still."""
    config.addinivalue_line("filterwarnings", "ignore::latigo.GeodesyWarning")


@pytest.fixture
def national():
    with latigo.Geodesy(EXAMPLES / "national_grid.ini", "NationalGrid") as system:
        yield system


@pytest.fixture
def grids():
    with latigo.Geodesy(SYSTEMS, "Grids") as system:
        yield system


def positions(count, seed=1):
    """Latitudes and longitudes within the grid files and the projections' areas."""
    random = np.random.default_rng(seed)
    return random.uniform(48.0, 56.0, count), random.uniform(-4.0, 8.0, count)


def program(*arguments, text):
    """Lines of the command-line program's output, as numbers, and its messages."""
    done = subprocess.run([PROGRAM, *map(str, arguments), "--precision", "9"], input=text, capture_output=True, text=True)
    return [[float(field) for field in line.split()] for line in done.stdout.splitlines() if "*" not in line], done.stderr
