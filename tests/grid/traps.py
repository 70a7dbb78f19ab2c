"""Grids with a trap each, made here, go through latigo-grid and say what they said.   traps.py LATIGO-GRID

Each source holds functions of latitude and longitude that tell rows from columns, east from west and north from south.
They are linear in each, so that bilinear interpolation is exact and a coarse tolerance holds everywhere.
"""
import math, os, re, struct, subprocess, sys, tempfile

program, here = os.path.realpath(sys.argv[1]), os.path.dirname(os.path.realpath(__file__))
scratch = tempfile.TemporaryDirectory()
os.chdir(scratch.name)


def run(*arguments):
    done = subprocess.run([program, *map(str, arguments)], capture_output=True, text=True)
    return done.returncode, done.stdout, done.stderr


def make(source, *arguments):
    rough = [] if "--tolerance" in arguments else ["--tolerance", "30mm"]
    return run("make", source, "-o", "made.dat", *rough, *arguments)


def gdal(*arguments):
    subprocess.run(arguments, check=True, capture_output=True)


def write(name, content):
    open(name, "wb").write(content if isinstance(content, bytes) else content.encode())
    return name


def lattice(south, west, lat_step, lon_step, rows, cols):
    """Rows of (latitude, longitude) from the south."""
    return [[(south + r * lat_step, west + c * lon_step) for c in range(cols)] for r in range(rows)]


def near(lat, lon):
    return 40 + 0.2 * lat + 0.1 * lon


def around(lat, lon):
    return 30 + 0.1 * lat + 5 * math.cos(math.radians(lon))


def gtx(name, south, west, lat_step, lon_step, rows, cols, value=near):
    head = struct.pack(">4d2i", south, west, lat_step, lon_step, rows, cols)
    return write(name, head + b"".join(struct.pack(">f", value(*at)) for row in lattice(south, west, lat_step, lon_step, rows, cols) for at in row))


def asc(name, south, west, step, rows, cols, value=near, corner=False, none=None):
    grid = lattice(south, west, step, step, rows, cols)
    place = f"xllcorner {west - step / 2}\nyllcorner {south - step / 2}" if corner else f"xllcenter {west}\nyllcenter {south}"
    lines = [" ".join(repr(-999.0 if (r, c) == none else float(value(*at))) for c, at in enumerate(row)) for r, row in reversed([*enumerate(grid)])]
    return write(name, f"ncols {cols}\nnrows {rows}\n{place}\ncellsize {step}\nNODATA_value -999\n" + "\n".join(lines) + "\n")


def vrt(name, bands, grid, items="", crs="EPSG:4267"):
    """Bands of (values, description, unit, positive direction) on one lattice, as a VRT over files of text."""
    south, west, step, rows, cols = grid
    text = f'<VRTDataset rasterXSize="{cols}" rasterYSize="{rows}"><SRS>{crs}</SRS><GeoTransform>{west - step / 2},{step},0,{south + step * (rows - .5)},0,{-step}</GeoTransform><Metadata>{items}</Metadata>'
    for i, (value, description, unit, positive) in enumerate(bands):
        asc(f"{name}{i}.asc", *grid, value)
        text += (f'<VRTRasterBand dataType="Float32" band="{i + 1}"><Metadata><MDI key="positive_value">{positive}</MDI></Metadata><Description>{description}</Description><UnitType>{unit}</UnitType>'
                 f'<SimpleSource><SourceFilename relativeToVRT="1">{name}{i}.asc</SourceFilename><SourceBand>1</SourceBand></SimpleSource></VRTRasterBand>')
    return write(name + ".vrt", text + "</VRTDataset>")


def item(**items):
    return "".join(f'<MDI key="{key}">{value}</MDI>' for key, value in items.items())


def gtg(name, bands, grid, *options, **items):
    gdal("gdal_translate", "-q", *options, vrt(name, bands, grid, item(**items)), name + ".tif")
    return name + ".tif"


def ntv2(name, grids, source=(6378388, 6356911.946), target=(6378137, 6356752.314)):
    """Sub-grids of (name, parent, lattice, shift of latitude, shift of longitude positive east), by GDAL."""
    axes = [part for end, pair in (("F", source), ("T", target)) for key, axis in zip(("MAJOR", "MINOR"), pair) for part in ("-mo", f"{key}_{end}={axis}")]
    for i, (sub, parent, grid, lat, lon) in enumerate(grids):
        zero = (lambda *_: 0, "", "", "")
        bands = vrt(f"{name}{i}", [(lat, "", "", ""), (lambda *at: -lon(*at), "", "", ""), zero, zero], grid)
        options = ["-co", "APPEND_SUBDATASET=YES"] if i else []
        gdal("gdal_translate", "-q", "-of", "NTv2", *options, "-mo", f"SUB_NAME={sub}", "-mo", f"PARENT={parent}", *axes, bands, name)
    return name


def pgm(name, rows, cols, value=around, offset=-20.0, scale=0.002):
    numbers = b"".join(struct.pack(">H", round((value(90 - 180 * r / (rows - 1), 360 * c / cols) - offset) / scale)) for r in range(rows) for c in range(cols))
    return write(name, f"P5\n# Geoid file\n# Offset {offset}\n# Scale {scale}\n# Origin 90N 0E\n{cols} {rows}\n65535\n".encode() + numbers)


def isg(name, *fields, factor=1, grid=(50, 3, 0.5, 0.5, 4, 6)):
    rows = "\n".join(" ".join(f"{near(*at) / factor:.5f}" for at in row) for row in reversed(lattice(*grid)))
    head = "Remarks\nbegin_of_head ====\nmodel name : x\n" + "\n".join(fields) + f"\nnrows : {grid[4]}\nncols : {grid[5]}\n"
    return write(name, f"{head}nodata = -9999.0000\nend_of_head ====\n{rows}\n")


def nadcon(name, south, west, step, rows, cols):
    for end, value in (("las", D_LAT), ("los", lambda *at: -D_LON(*at))):
        nodes = b"".join(struct.pack(f"<i{cols}f", 0, *[value(*at) for at in row]) for row in lattice(south, west, step, step, rows, cols))
        head = struct.pack("<56s8s3i5f", b"NADCON EXTRACTED REGION", b"NADGRD", cols, rows, 1, west, step, south, step, 0)
        write(f"{name}.{end}", head.ljust(4 * cols + 4, b"\0") + nodes)
    return name + ".las"


EDGES = ("lat min : 49.75", "lat max : 51.75", "lon min : 2.75", "lon max : 5.75", "delta lat : 0.5", "delta lon : 0.5")
NODES = ("lat min = 50°00'00\"", "lat max = 51°30'00\"", "lon min = 3°00'00\"", "lon max = 5°30'00\"", "delta lat = 0°30'00\"", "delta lon = 0°30'00\"", "coord units : dms")


def byn(name):
    gdal("gdal_translate", "-q", "-of", "BYN", "-ot", "Int32", "-a_scale", "0.001", gtx("byn.gtx", 50, 3, 0.5, 0.5, 5, 8, lambda *at: 1000 * near(*at)), name)
    return name


D_LAT = lambda lat, lon: 1 + 0.02 * lat + 0.01 * lon
D_LON = lambda lat, lon: -4 + 0.01 * lat - 0.02 * lon
X, Y, Z = lambda *at: -170 + near(*at) / 10, lambda *at: -60 - near(*at) / 10, lambda *at: 320 + near(*at) / 20
SHIFT = [(D_LAT, "latitude_offset", "arc-second", ""), (D_LON, "longitude_offset", "arc-second", "east")]
G = (50, 3, 0.25, 5, 9)  # south, west, step, rows, columns

# Name, source, arguments, functions that the new file follows, positions, and what make prints.
GOOD = [
    ("rows from the south, big-endian", lambda: gtx("a.gtx", 50, 3, 0.25, 0.5, 5, 7), [], [near], [(50, 3), (50.9, 5.3), (51, 6)], "GTX"),
    ("rows from the north", lambda: asc("a.asc", *G), [], [near], [(50, 3), (50.9, 4.7), (50.9999, 4.9999)], "AAIGrid"),
    ("corners instead of centres", lambda: asc("c.asc", *G, corner=True), [], [near], [(50, 3), (50.9, 4.7)], "50 to 51 north, 3 to 5 east"),
    ("no value in a corner", lambda: asc("n.asc", *G, none=(0, 0)), ["--cut"], [near], [(50, 3.3), (51, 3.3)], "50 to 51 north, 3.25 to 5 east"),
    ("an area that the step does not fit", lambda: gtx("w.gtx", 50, 3, 0.25, 0.25, 5, 9), ["--area", "50.11,3:10,50.6,4"], [near], [(50.11, 3.17), (50.6, 4)], "east"),
    ("steps of 3.6 and 4.5 seconds", lambda: gtx("f.gtx", 50, 3, 0.001, 0.00125, 101, 121), [], [near], [(50.05, 3.1)], ""),
    ("an origin that float32 rounds", lambda: gtx("o.gtx", 49.1, 177.3, 0.25, 0.25, 5, 9), [], [near], [(49.6, 178.9), (49.37, 177.31)], ""),
    ("beyond 180 east", lambda: gtx("e.gtx", 50, 175, 0.5, 0.5, 5, 21), [], [lambda lat, lon: near(lat, lon % 360)], [(51, 176), (51.3, -175.8)], "175 to 185 east"),
    ("longitudes from 0 to 360", lambda: gtx("g.gtx", 50, 350, 0.5, 0.5, 5, 9), [], [lambda lat, lon: near(lat, lon % 360)], [(51, -9), (51.3, -6.1)], "-10 to -6 east"),
    ("all around from 0, closed at 180", lambda: pgm("world.pgm", 19, 36), ["--tolerance", "12cm"], [around], [(0, 180), (0, -180), (90, 5), (-90, 0), (45, 179.9), (45, -179.9)], "-180 to 180 east"),
    ("all around with a closing column", lambda: gtx("closed.gtx", -90, 0, 10, 10, 19, 37, around), ["--tolerance", "12cm"], [around], [(0, 180), (45, 179.9), (10, -0.2)], "-180 to 180 east"),
    ("all around from -170", lambda: gtx("turn.gtx", -90, -170, 10, 10, 19, 36, around), ["--tolerance", "12cm"], [around], [(0, -175), (45, -165), (45, 175)], "-180 to 180 east"),
    ("all around at a step whose multiples round beyond 180", lambda: gtx("ulp.gtx", -90, -180, 0.9, 0.9, 201, 400, around), ["--tolerance", "12cm"], [around], [(45, -100), (45, 100)], "-180 to 180 east"),
    ("an area across 180 of a grid from 0", lambda: "world.pgm", ["--tolerance", "12cm", "--area", "0,170,20,-170"], [around], [(10, 175), (10, -175)], "170 to 190 east"),
    ("an offset and a scale in comments", lambda: pgm("scaled.pgm", 19, 36, offset=-100, scale=0.005), ["--tolerance", "12cm"], [around], [(0, 0)], "PGM"),
    ("ISG", lambda: isg("a.isg", "units : meters", *EDGES), [], [near], [(50.2, 3.7), (51.5, 5.5)], "ISG"),
    ("ISG in feet, minutes and seconds", lambda: isg("f.isg", "data units : feet", "data ordering : N-to-S, W-to-E", *NODES, factor=0.3048), ["--area", "50.1,3.1,51,5"], [near], [(50.2, 3.7), (50.1, 4)], "ISG"),
    ("ISG with nodes so close that edges fit the steps as well", lambda: isg("n.isg", "lat min : 0", "lat max : 60", "lon min : 3", "lon max : 63", "delta lat : 0.5", "delta lon : 0.5", grid=(0, 3, 0.5, 0.5, 121, 121)), [], [near], [(50.2, 3.7)], "0 to 60 north, 3 to 63 east, 121 x 121 nodes, 1800"),
    ("ISG of many cells, steps of few digits", lambda: isg("m.isg", "lat min : 49.991667", "lat max : 60.008333", "lon min : 2.991667", "lon max : 5.008333", "delta lat : 0.0167", "delta lon : 0.0167", grid=(50, 3, 1 / 60, 1 / 60, 601, 121)), [], [near], [(50.2, 3.7)], "601 x 121 nodes, 60\" x 60\""),
    ("BYN", lambda: byn("a.byn"), [], [near], [(50.2, 3.7), (51.9999, 6.4999)], "BYN"),
    ("text in any order", lambda: write("a.txt", "# lat lon N\n" + "\n".join(f"{lat}, {lon}; {near(lat, lon)}" for row in lattice(50, 3, 0.5, 0.25, 4, 9)[::-1] for lat, lon in row[::-1])), [], [near], [(50.2, 3.7)], "text"),
    ("text, longitude first", lambda: write("b.txt", "\n".join(f"{lon} {lat} {near(lat, lon)}" for row in lattice(50, 3, 0.5, 0.25, 4, 9) for lat, lon in row)), ["--lonlat"], [near], [(50.2, 3.7)], "text"),
    ("NTv2: west positive, two sub-grids", lambda: ntv2("two.gsb", [("COARSE", "NONE", (48, 2, 0.5, 9, 13), D_LAT, D_LON), ("FINE", "COARSE", G, lambda *at: D_LAT(*at) + 1, D_LON)]), ["--sub-grid", "COARSE"], [D_LAT, D_LON], [(48.2, 2.3), (50.5, 4)], "sub-grid COARSE"),
    ("NTv2: the finer one chosen", lambda: "two.gsb", ["--sub-grid", "FINE"], [lambda *at: D_LAT(*at) + 1, D_LON], [(50.1, 3.3)], "50 to 51 north, 3 to 5 east"),
    ("NTv2: both, from WGS-84", lambda: ntv2("same.gsb", [("COARSE", "NONE", (48, 2, 0.5, 9, 13), D_LAT, D_LON), ("FINE", "COARSE", G, D_LAT, D_LON)]), ["--exact", "from"], [D_LAT, D_LON], [(48.2, 2.3), (50.5, 4)], "sub-grid FINE"),
    ("NADCON: west positive", lambda: f"{here}/stgeorge.las", [], None, [(56.5, -170)], "60\" x 60\""),
    ("NADCON: steps of 7.5 seconds", lambda: nadcon("h", 40, -100, 7.5 / 3600, 61, 41), [], [D_LAT, D_LON], [(40.1, -99.95)], "40 to 40.125 north, -100 to -99.916667 east"),
    ("NTv2 from WGS-84", lambda: ntv2("from.gsb", [("A", "NONE", G, D_LAT, D_LON)], (6378137, 6356752.314), (6378388, 6356911.946)), [], [lambda *at: -D_LAT(*at), lambda *at: -D_LON(*at)], [(50.1, 3.3)], "SemiMajorAxis=6378388"),
    ("NTv2 from WGS-84, and so it is said", lambda: "from.gsb", ["--reverse"], [lambda *at: -D_LAT(*at), lambda *at: -D_LON(*at)], [(50.1, 3.3)], "SemiMajorAxis=6378388"),
    ("GeoTIFF of pixels", lambda: gtg("p", SHIFT, G, TYPE="HORIZONTAL_OFFSET", AREA_OR_POINT="Area"), [], [D_LAT, D_LON], [(50, 3), (50.9, 4.7)], "50 to 51 north, 3 to 5 east"),
    ("GeoTIFF of points", lambda: gtg("q", SHIFT, G, TYPE="HORIZONTAL_OFFSET", AREA_OR_POINT="Point"), [], [D_LAT, D_LON], [(50, 3), (50.9, 4.7)], "50 to 51 north, 3 to 5 east"),
    ("GeoTIFF: bands changed, degrees, west positive", lambda: gtg("u", [(lambda *at: -D_LON(*at) / 3600, "longitude_offset", "degree", "west"), SHIFT[0]], G, TYPE="HORIZONTAL_OFFSET"), [], [D_LAT, D_LON], [(50, 3), (50.9, 4.7)], "GeoTIFF"),
    ("GeoTIFF: undulations in feet", lambda: gtg("v", [(lambda *at: near(*at) / 0.3048, "geoid_undulation", "foot", "")], G, TYPE="VERTICAL_OFFSET_GEOGRAPHIC_TO_VERTICAL"), [], [near], [(50.9, 4.7)], "GeoTIFF"),
    ("GeoTIFF: translations to WGS-84", lambda: gtg("x", [(X, "x_translation", "metre", ""), (Y, "y_translation", "metre", ""), (Z, "z_translation", "metre", "")], G, TYPE="GEOCENTRIC_TRANSLATION"), [], [lambda *at: -X(*at), lambda *at: -Y(*at), lambda *at: -Z(*at)], [(50, 3), (50.9, 4.7)], "translation"),
    ("GeoTIFF: translations from WGS-84", lambda: "x.tif", ["--reverse"], [X, Y, Z], [(50.9, 4.7)], "translation"),
    ("shifts from WGS-84", lambda: "p.tif", ["--reverse"], [lambda *at: -D_LAT(*at), lambda *at: -D_LON(*at)], [(50.9, 4.7)], ""),
    ("shifts from WGS-84 to a datum that the file names", lambda: gtg("z", SHIFT, G, TYPE="HORIZONTAL_OFFSET", source_crs_epsg_code=4326, target_crs_epsg_code=4277), ["--reverse"], [lambda *at: -D_LAT(*at), lambda *at: -D_LON(*at)], [(50.9, 4.7)], "SemiMajorAxis=6377563.396"),
    ("smooth interpolation", lambda: "a.gtx", ["--interpolation", "bicubic"], [near], [(50.9, 5.3)], ""),
]
for name, source, arguments, functions, positions, printed in GOOD:
    path = source()
    status, output, message = make(path, *arguments, "--points", 2000)
    assert status == 0 and printed in output, (name, output, message)
    functions = functions or [lambda *_: 3.614798, lambda *_: -8.778362]  # stgeorge.las and .los at their middle node
    for lat, lon in positions:
        values = [float(value) for value in run("at", "made.dat", lat, lon)[1].split()]
        metres = 31 if len(values) == 2 else 1
        slack = 0.15 if functions == [around] else 0.031  # bilinear between cosines 10 degrees apart
        assert len(values) == len(functions) and all(abs(v - f(lat, lon)) * metres < slack for v, f in zip(values, functions)), (name, lat, lon, values, [f(lat, lon) for f in functions])
    assert sorted(set(os.listdir()) & {"made.dat", "made.dat.txt"}) == ["made.dat", "made.dat.txt"], name
    assert "max" in run("info", "made.dat")[1].split("description:")[1].split("\n")[0], name
    os.remove("made.dat"), os.remove("made.dat.txt")

# Three values, beside PROJ: from WGS-84 to Clarke's ellipsoid, with the file of translations that lead to WGS-84.
os.mkdir("datum")
assert run("make", "x.tif", "-o", "datum/x.dat", "--tolerance", "1mm")[0] == 0
write("system.ini", "[Geodesy]\nProjection=Mercator\nSemiMajorAxis=6378206.4\nFlattening=294.9786982\nDynDatum=x.dat\n")
pipeline = ("+proj=pipeline +step +proj=unitconvert +xy_in=deg +xy_out=rad +step +proj=cart +ellps=WGS84 +step +inv +proj=xyzgridshift +grids=./x.tif "
            "+grid_ref=output_crs +step +inv +proj=cart +ellps=clrk66 +step +proj=merc +ellps=clrk66").split()
ours, theirs = [[float(number) for number in subprocess.run(command, input=text, capture_output=True, text=True, env={**os.environ, "TWI_BATHYX": "."}).stdout.split()[:3]]
                for command, text in (([os.path.dirname(program) + "/latigo", "forward", "system.ini", "--wgs84"], "50.6 4.3 10.0\n"), (["cct", "-d", "4", *pipeline], "4.3 50.6 10 0\n"))]
assert len(ours) == 3 and math.dist(ours, theirs) < 2e-3, (ours, theirs)

gsb = open("same.gsb", "rb").read()
border = ntv2("border0.gsb", [("COARSE", "NONE", (48, 2, 1, 11, 11), D_LAT, D_LON), ("FINE", "COARSE", (50, 3, 1 / 120, 3, 3), lambda *at: D_LAT(*at) + 0.3, D_LON)])
for system in (4807, 32632):
    gdal("gdal_translate", "-q", "-a_srs", f"EPSG:{system}", "a.asc", f"in{system}.tif")
las = open(f"{here}/stgeorge.las", "rb").read()
# Name, content, arguments, part of the one line.
BAD = [
    ("cut.gtx", open("a.gtx", "rb").read()[:-9], [], "size is not"),
    ("head.gtx", open("a.gtx", "rb").read()[:30], [], "no grid format"),
    ("huge.gtx", struct.pack(">4d2i", 0, 0, 1e-3, 1e-3, 90000, 180000) + bytes(100), [], "size is not"),
    ("huge2.gtx", struct.pack(">4d2i", 0, 0, 1e-3, 1e-3, 9000, 18000) + bytes(100), [], ""),
    ("nanstep.gtx", struct.pack(">4d2i", 50, 3, math.nan, 1, 5, 5) + bytes(100), [], ""),
    ("poles.gtx", struct.pack(">4d2i", 85, 3, 2, 1, 5, 5) + bytes(100), [], "beyond the poles"),
    ("mark.gtx", struct.pack(">4d2i25f", 50, 3, 1, 1, 5, 5, *[0] * 24, 99999), [], "--nodata"),
    ("nan.gtx", struct.pack(">4d2i25f", 50, 3, 1, 1, 5, 5, *[0] * 24, math.nan), [], "no value at 54 6.1666667; --cut, or --area 50,3,53,7,"),
    ("allnan.gtx", struct.pack(">4d2i25f", 50, 3, 1, 1, 5, 5, *[math.nan] * 25), [], ""),
    ("lost.gtx", struct.pack(">4d2i", 0, -20, 1, 10, 3, 22) + bytes(4 * 66), [], "loses longitudes"),
    ("cut.gsb", gsb[:-40], [], ""), ("cut2.gsb", gsb[:400], [], ""), ("cut3.gsb", gsb[:100], [], ""),
    ("minutes.gsb", gsb.replace(b"SECONDS ", b"MINUTES "), [], "MINUTES"),
    ("sub.gsb", gsb, ["--sub-grid", "NAME"], "FINE"),
    ("alone.las", las, [], "alone.los, cannot be read"),
    ("other.las", las, [], "is another"),
    ("cut.las", las[:20000], [], ""),
    ("cut.tif", open("p.tif", "rb").read()[:200], [], ""),
    ("cut.pgm", open("world.pgm", "rb").read()[:-1], [], "instead of"),
    ("plain.pgm", open("world.pgm", "rb").read().replace(b"# Scale", b"# Stale"), [], "no Offset and Scale"),
    ("cubits.isg", open("a.isg", "rb").read().replace(b"meters", b"cubits"), [], "cubits"),
    ("order.isg", open("f.isg", "rb").read().replace(b"N-to-S", b"S-to-N"), [], "only N-to-S"), ("cut.isg", open("f.isg", "rb").read()[:-20], [], "row"),
    ("head.isg", open("f.isg", "rb").read()[:90], [], "no end"), ("limits.isg", open("a.isg", "rb").read().replace(b"49.75", b"48.25"), [], "contradict"),
    ("words.txt", "one two three\n", [], "line 1"), ("empty.txt", "\n", [], "no line of numbers"), ("none", "", [], "cannot be read"), ("noise", bytes(range(256)), [], "no grid format"),
    ("twice.txt", "50 3 1\n50 4 1\n51 3 1\n51 3 2\n", [], "two lines"), ("one.txt", "50 3 1\n51 3 1\n", [], "only one longitude"),
    ("uneven.txt", "50 3 1\n50.1 3.3 1\n50.17 4 1\n", [], "no lattice"), ("four.txt", "50 3 1 2 3 4\n", [], "line 1"),
    ("fine.gtx", open("a.gtx", "rb").read(), ["--tolerance", "0.001mm"], "--tolerance"),
    ("small.gtx", open("a.gtx", "rb").read(), ["--tolerance", "1mm", "--max-size", "2kB"], "1 mm takes"),
    ("away.gtx", open("a.gtx", "rb").read(), ["--area", "10,10,11,11"], "nothing of the source"),
    ("area.gtx", open("a.gtx", "rb").read(), ["--area", "51,3,50,4"], "S less than N"),
    ("narrow.gtx", struct.pack(">4d2i25f", 50, 3, 1, 1, 5, 4, *range(25)), [], "size is not that of 20 values"),
    ("narrow.asc", b"ncols 4\nnrows 2\nxllcenter 3\nyllcenter 50\ncellsize 1\nNODATA_value -9\n1 2 3 4 5\n6 7 8 9 nan\n", [], "size is not that of 8 values"),
    ("more.isg", open("a.isg", "rb").read() + b"1\n", [], "more values than"), ("east.isg", open("a.isg", "rb").read().replace(b"5.75", b"365.75"), [], "its lon max 365.75: "),
    ("turned.pgm", open("world.pgm", "rb").read().replace(b"90N 0E", b"90N 180W"), [], "its Origin is 90N 180W"),
    ("nines.gtx", struct.pack(">4d2i25f", 50, 3, 1, 1, 5, 5, *[0] * 24, -9999), [], "--nodata -9999"),
    ("border.gsb", open(border, "rb").read(), ["--points", "1000"], "difference would be 9."),
    ("grads.tif", open("in4807.tif", "rb").read(), [], "NTF (Paris), and not of latitudes"), ("map.tif", open("in32632.tif", "rb").read(), [], "zone 32N, and not of latitudes"),
    ("unit.gtx", open("a.gtx", "rb").read(), ["--tolerance", "3 miles"], "no length"),
]
write("other.los", open(f"{here}/stgeorge.los", "rb").read().replace(struct.pack("<f", 56), struct.pack("<f", 55), 1))
write("cut.los", open(f"{here}/stgeorge.los", "rb").read())
for name, content, arguments, part in BAD:
    before = set(os.listdir()) | {name}
    status, output, message = make(write(name, content), *arguments)
    assert status == 2 and part in message and message.count("\n") == 1 and message.startswith("latigo-grid: "), (name, status, output, message)
    assert set(os.listdir()) == before, (name, set(os.listdir()) - before)
status, output, message = run("make", gtx("wide.gtx", 0, 0, 2 / 3600, 1 / 3600, 3, 40), "-o", "no/such/folder.dat")
assert status == 2 and "No such file" in message, message
for arguments, reason in (((), "a command is required"), (("mkae", "a.gtx"), "latigo-grid: mkae: no such command"), (("info", "a.gtx", "x"), "not expected: x")):
    status, output, message = run(*arguments)
    assert status == 2 and output == "" and reason in message, (arguments, message)
assert "within 2.147 GB" in run("make", "world.pgm", "-o", "made.dat", "--max-size", "9GB", "--tolerance", "0.1mm")[2]

# What a file of ours says of itself, and files that are none.
row = struct.pack("<24f", *range(24))
write("ours.dat", struct.pack("<64s3i5f", b"a grid", 23, 3, 1, -171, 0.01667, 56, 0.01667, 0) + bytes(0) + row * 3)
status, output, message = run("info", "ours.dat")
assert status == 0 and "read as 60\"" in output and "value 1: 1 to 23" in output, (output, message)
assert run("at", "ours.dat", 56, -171)[1] == "1.0000\n" and run("at", "ours.dat", 58, -171)[0] == 2
write("cut.dat", open("ours.dat", "rb").read()[:-1])
assert "and its header takes 384" in run("info", "cut.dat")[2]
assert run("info", "a.gtx", "--svg", "a.svg")[0] == 0
svg = open("a.svg").read()
assert svg.count("<rect") > 1000 and svg.index('fill="#fff"/>') < svg.index("<text") < svg.index("crispEdges"), svg[:400]
status, output, message = run("compare", "a.gtx", "a.asc")
assert status == 0 and float(re.search(r"maximum (\S+) mm", output)[1]) < 0.01 and "in one of the two only" in output, (output, message)
assert run("compare", "a.gtx", "p.tif")[0] == 2
print(len(GOOD), "sources with traps,", len(BAD), "refused")
