"""Configuration and grid files for the tests.   systems.py FOLDER DATUM_FOLDER

first.ini has the published systems of examples/ and those below, second.ini a section of its own and one that first.ini has.
"""
import pathlib, struct, sys

WGS84 = "SemiMajorAxis=6378137\nFlattening=298.257223563\n"
UTM31 = f"Projection=UTM\n{WGS84}ScaleFactor=0.9996\nCentralMeridian=3\nFalseEasting=500000\n"
SECTIONS = {
    "Utm31": UTM31,
    "Shifted": UTM31 + "DynDatum=two.dat\n",
    "Cut": UTM31 + "DynDatum=cut.dat\n",
    "Heights": UTM31 + "VertUnit=0.5\nGeoid=geoid.dat\nDynDatum=two.dat\n",
    "CutGeoid": UTM31 + "Geoid=cutgeoid.dat\n",
    "Constant": UTM31 + "OrthoHCorr=45.5\n",
    "Feet": UTM31.replace("500000", "0").replace("UTM", "TME") + "Unit=0.3048\n",
    "NoGrid": UTM31 + "DynDatum=absent.dat\n",
    "NoGeoid": UTM31 + "Geoid=absent.dat\n",
    "Escape": UTM31 + "DynDatum=../secret.dat\n",
    "Absolute": UTM31 + "DynDatum=/etc/hosts\n",
    "Comma": UTM31.replace("0.9996", "0,9996"),
    "Unknown": UTM31.replace("UTM", "Globe"),
    "Cone": "Projection=ALA\n" + WGS84 + "NorthParallel=60\nSouthParallel=50\n",
    "Grüße": UTM31,
}
SECTIONS |= {f"Many{i}": UTM31.replace("500000", str(500000 + i)) + "DynDatum=two.dat\n" for i in range(40)}


def grid(values, south=40.0, west=-2.0, rows=41, columns=41, step=0.25):
    """The bytes of a grid file, 40 to 50 degrees north and 2 west to 8 east, with the same values at all nodes."""
    size = columns * len(values) * 4 + 4
    header = b"for tests".ljust(64) + struct.pack("<3i4f", columns, rows, len(values), west, step, south, step)
    row = struct.pack("<f", 0) + struct.pack(f"<{len(values)}f", *values) * columns
    return header.ljust(size, b"\0") + row * rows


def write(folder, datum):
    root = pathlib.Path(__file__).parents[2]
    examples = "\n".join(path.read_text() for path in sorted(root.glob("examples/*.ini")))
    tables = "".join(f"[{name}]\n{keys}\n" for name, keys in SECTIONS.items())
    (folder / "first.ini").write_text(examples + "\n" + tables)
    (folder / "second.ini").write_text(f"[Second]\n{UTM31}\n[nationalgrid]\n{UTM31}")
    (datum / "two.dat").write_bytes(grid([1.5, -2.5]))
    (datum / "geoid.dat").write_bytes(grid([45.5]))
    for name, values in ("cut.dat", [1.5, -2.5]), ("cutgeoid.dat", [45.5]):
        (datum / name).write_bytes(grid(values)[: 20 * (41 * len(values) * 4 + 4)])  # the header and 19 rows
    (datum.parent / "secret.dat").write_bytes(grid([0, 0]))


if __name__ == "__main__":
    write(*map(pathlib.Path, sys.argv[1:3]))
