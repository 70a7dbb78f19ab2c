"""Public grids go through latigo-grid, and latigo with the new files agrees with cs2cs within their certificates.

    real_grids.py BUILD [PAGE]   prints the table of docs/grid-files.md, or checks it
"""
import os, random, re, subprocess, sys, tempfile

build, here = os.path.realpath(sys.argv[1]), os.path.dirname(os.path.realpath(__file__))
page = open(sys.argv[2], encoding="utf-8").read() if len(sys.argv) > 2 else None
PROJ = "/usr/share/proj/"
# Grid, area or all of it, tolerance.
ROWS = [
    ("egm96_15.gtx", "", "20cm"), ("egm96_15.gtx", "45,5,48,11", "1cm"), ("egm96_15.gtx", "46,7,46.5,8", "1mm"),
    ("ntf_r93.gsb", "", "1cm"), ("ntf_r93.gsb", "48,1,50,4", "1mm"), ("BETA2007.gsb", "", "1cm"), ("BETA2007.gsb", "50,8,51,9", "2mm"),
    ("CHENYX06.gsb", "", "2cm"), ("CHENYX06_etrs.gsb", "", "2cm"), ("CHENYX06a.gsb", "46,7,47,8", "2mm"),
    ("nzgd2kgrid0005.gsb", "", "5cm"), ("nzgd2kgrid0005.gsb", "-41.5,174.5,-41,175.5", "1mm"),
    ("stgeorge.las", "", "5mm"),
]


def run(*command, text=""):
    done = subprocess.run(list(map(str, command)), input=text, capture_output=True, text=True)
    assert done.returncode == 0, (command, done.stdout, done.stderr)
    return done.stdout


def metres(text):
    number, unit = text.split()
    return float(number) * {"mm": 0.001, "cm": 0.01, "m": 1}[unit]


def make(source, output, tolerance, area):
    certificate = run(f"{build}/latigo-grid", "make", source, "-o", output, "--tolerance", tolerance, *(["--area", area] if area else []))
    limits = [float(number) for number in re.findall(r"(\S+) to (\S+) north, (\S+) to (\S+) east", certificate)[-1]]
    steps, size = re.search(rf'{re.escape(output)}: .* nodes, (.*), (.*)\n', certificate).groups()
    found = re.findall(r"rms (.*?), 99 % within (.*?), maximum (.*?) at", certificate)
    worst = max(found[:2], key=lambda of: metres(of[2]))[2]
    return limits, steps, size, found[0], worst, found[2][2] if len(found) > 2 else "", certificate


def columns(text, count):
    return [[float(field) for field in line.split()[:count]] for line in text.splitlines()]


def compare(name, output, limits, worst, other, certificate):
    """Positions by latigo and by cs2cs: the largest difference may be that of the certificate, and what is cut by printing."""
    printing = 5e-5
    chance = random.Random(name)
    south, north, west, east = limits
    points = [(chance.uniform(south + .01, north - .01), chance.uniform(west + .01, east - .01)) for _ in range(500)]
    lat_lon = "".join(f"{lat:.9f} {lon:.9f} 0\n" for lat, lon in points)
    lon_lat = "".join(f"{lon:.9f} {lat:.9f} 0\n" for lat, lon in points)
    a, rf = re.findall(r"SemiMajorAxis=(\S+), Flattening=(\S+)", certificate)[0] if "SemiMajorAxis" in certificate else (6378137, 298.257223563)
    keys = f"[Geodesy]\nProjection=Mercator\nSemiMajorAxis={a}\nFlattening={rf}\n"
    open("system.ini", "w").write(keys + certificate.split("keys: ")[1].split(",")[0].strip() + "\n")
    wgs84 = "+proj=longlat +datum=WGS84"
    if name.endswith(".gtx"):
        ours = columns(run(f"{build}/latigo", "undulation", "system.ini", "--precision", 5, text=lat_lon), 1)
        theirs = columns(run("cs2cs", "-f", "%.9f", "EPSG:4979", "EPSG:4326+5773", text=lat_lon), 3)  # by that grid
        differences = [abs(one[0] + other[2]) for one, other in zip(ours, theirs)]
        assert max(differences) < metres(worst) + printing, (name, max(differences), worst)
        return
    grid = f"+proj=merc +a={a} +rf={rf} +nadgrids={name}".split()
    ours = columns(run(f"{build}/latigo", "forward", "system.ini", "--wgs84", "--no-height", "--precision", 6, text=lat_lon), 2)
    theirs = columns(run("cs2cs", "-f", "%.9f", *wgs84.split(), "+to", *grid, text=lon_lat), 2)
    from math import cos, hypot, radians
    shrink = [cos(radians(lat)) for lat, _ in points]  # of Mercator
    forward = max(k * hypot(o[0] - t[0], o[1] - t[1]) for k, o, t in zip(shrink, ours, theirs))
    assert forward < metres(other) + printing, (name, forward, other)
    xy = "".join(f"{x} {y}\n" for x, y in theirs)
    back = columns(run(f"{build}/latigo", "inverse", "system.ini", "--wgs84", "--precision", 11, text=xy), 2)
    positions = columns(run("cs2cs", "-f", "%.11f", *grid, "+to", *wgs84.split(), text=xy), 2)
    inverse = max(111320 * hypot(o[0] - t[1], (o[1] - t[0]) * k) for k, o, t in zip(shrink, back, positions))
    assert inverse < metres(worst) + printing, (name, inverse, worst)


table = "| Grid | area | at the source's density | tolerance | nodes | size | rms | 99 % within | maximum | from WGS-84 |\n|---|---|---|---|---|---|---|---|---|---|\n"
with tempfile.TemporaryDirectory() as folder:
    os.environ["TWI_BATHYX"] = folder
    os.makedirs(folder + "/datum")
    os.chdir(folder)
    for name, area, tolerance in ROWS:
        source, output = (here + "/" if name.endswith(".las") else PROJ) + name, "datum/made.dat"
        straight = make(source, output, "1000m", area)[4]
        limits, steps, size, (rms, percent, _), worst, other, certificate = make(source, output, tolerance, area)
        table += f"| {name} | {area or 'all'} | {straight} | {tolerance} | {steps} | {size} | {rms} | {percent} | {worst} | {other} |\n"
        if not name.endswith(".las"):  # cs2cs does not read the pair
            compare(name, output, limits, worst, other, certificate)
if page is None:
    print(table, end="")
elif table not in page:
    sys.exit(f"docs/grid-files.md has another table than\n{table}")
else:
    print(len(ROWS), "files from public grids agree with cs2cs, and the table of docs/grid-files.md is theirs")
