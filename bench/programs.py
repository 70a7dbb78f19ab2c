"""Compares whole runs of the command-line programs on the same points.   programs.py LATIGO [POINTS [ROUNDS]]

latigo, proj and cs2cs read the points from a file and write to /dev/null, one after the other, in alternating order;
medians are compared. Their output is compared first.
"""
import os
import random
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

SPEED_TARGET = 3       # times the rows per second of either peer
JOBS = 2

SYSTEMS = {
    "Lambert": {
        "section": "Projection=LCC\nSemiMajorAxis=6378137\nFlattening=298.257222101\nCentralMeridian=3\n"
                   "RefLatitude=46.5\nNorthParallel=49\nSouthParallel=44\nFalseEasting=700000\n"
                   "FalseNorthing=6600000\n",
        "proj": "+proj=lcc +a=6378137 +rf=298.257222101 +lon_0=3 +lat_0=46.5 +lat_1=49 +lat_2=44 +x_0=700000 "
                "+y_0=6600000",
        "base": "+proj=longlat +a=6378137 +rf=298.257222101",
        "area": ((41, 52), (-6, 11)),
    },
    "Transverse Mercator": {
        "section": "Projection=UTM\nSemiMajorAxis=6378137\nFlattening=298.257223563\nCentralMeridian=3\n"
                   "ScaleFactor=0.9996\nFalseEasting=500000\n",
        "proj": "+proj=tmerc +a=6378137 +rf=298.257223563 +lon_0=3 +lat_0=0 +k_0=0.9996 +x_0=500000 +y_0=0",
        "base": "+proj=longlat +a=6378137 +rf=298.257223563",
        "area": ((-80, 80), (0, 6)),
    },
}
# How far the texts may differ, metres and degrees: rounding, and the series of the transverse Mercator.
METRES = 2e-3
DEGREES = 2e-7


# A file with columns, as survey offices have it, must convert at least this many times as fast as cs2cs the bare points.
CSV_TARGET = 2


def write_csv(path, pairs):
    with open(path, "w", encoding="ascii") as file:
        file.write("Point;Lat;Lon;Code\n")
        file.writelines(f"P{i};{first:.9f};{second:.9f};tree\n" for i, (first, second) in enumerate(pairs))


class Program:
    """A command line, and the columns of x and y (or latitude and longitude) in its output."""

    def __init__(self, name, command, points, order=(0, 1)):
        self.name = name
        self.command = command + [points]
        self.order = order

    def pairs(self):
        text = subprocess.run(self.command, check=True, capture_output=True, text=True).stdout
        first, second = self.order
        return [(float(fields[first]), float(fields[second])) for fields in map(str.split, text.splitlines())]

    def seconds(self):
        start = time.perf_counter()
        subprocess.run(self.command, check=True, stdout=subprocess.DEVNULL)
        return time.perf_counter() - start


def write_points(path, pairs, digits):
    with open(path, "w", encoding="ascii") as file:
        file.writelines(f"{first:.{digits}f} {second:.{digits}f}\n" for first, second in pairs)


def differ(programs, tolerance):
    """The name of the first program whose results differ from the first one's, or None."""
    expected = programs[0].pairs()
    for program in programs[1:]:
        given = program.pairs()
        if len(given) != len(expected) or any(abs(a - c) > tolerance or abs(b - d) > tolerance
                                              for (a, b), (c, d) in zip(expected, given)):
            return program.name
    return None


def measure(programs, rounds):
    """{name: seconds}, medians."""
    seconds = {program.name: [] for program in programs}
    for turn in range(rounds):
        for program in programs if turn % 2 == 0 else reversed(programs):
            seconds[program.name].append(program.seconds())
    return {name: statistics.median(values) for name, values in seconds.items()}


def main():
    latigo = sys.argv[1]
    count = int(sys.argv[2]) if len(sys.argv) > 2 else 1000000
    rounds = int(sys.argv[3]) if len(sys.argv) > 3 else 5
    if shutil.which("proj") is None or shutil.which("cs2cs") is None:
        print("proj and cs2cs are not installed: their comparison is left out")
        return 0
    has_jobs = "--jobs" in subprocess.run([latigo, "forward", "--help"], capture_output=True, text=True).stdout
    one_thread = ["--jobs", "1"] if has_jobs else []

    random.seed(20260101)
    failed = 0
    lines = []
    with tempfile.TemporaryDirectory() as folder:
        def file(name):
            return os.path.join(folder, name)

        for name, system in SYSTEMS.items():
            with open(file("system.ini"), "w", encoding="ascii") as out:
                out.write("[Geodesy]\n" + system["section"])
            (south, north), (west, east) = system["area"]
            positions = [(random.uniform(south, north), random.uniform(west, east)) for _ in range(count)]
            write_points(file("latlon"), positions, 9)
            write_points(file("lonlat"), [(lon, lat) for lat, lon in positions], 9)
            proj = system["proj"].split()
            forward = [latigo, "forward", file("system.ini"), "--precision", "4"]
            write_points(file("grid"), Program("", forward, file("latlon")).pairs(), 4)
            inverse = [latigo, "inverse", file("system.ini"), "--precision", "9"]
            directions = {
                "forward": ([
                    Program("latigo", forward + one_thread, file("latlon")),
                    Program("proj", ["proj", "-f", "%.4f"] + proj, file("lonlat")),
                    Program("cs2cs", ["cs2cs", "-f", "%.4f"] + system["base"].split() + ["+to"] + proj, file("lonlat")),
                ], METRES, forward, "latlon"),
                "inverse": ([
                    Program("latigo", inverse + one_thread, file("grid")),
                    Program("proj", ["proj", "-I", "-f", "%.9f"] + proj, file("grid"), (1, 0)),
                    Program("cs2cs", ["cs2cs", "-I", "-f", "%.9f"] + system["base"].split() + ["+to"] + proj,
                            file("grid"), (1, 0)),
                ], DEGREES, inverse, "grid"),
            }
            for direction, (programs, tolerance, command, points) in directions.items():
                row = f"latigo {direction}, {name}"
                if has_jobs:
                    programs.append(Program("jobs", command + ["--jobs", str(JOBS)], file(points)))
                other = differ(programs, tolerance)
                if other is not None:
                    print(f"{row}: latigo and {other} disagree", file=sys.stderr)
                    failed = 1
                    continue
                seconds = measure(programs, rounds)
                ours = seconds["latigo"]
                speeds = [seconds["proj"] / ours, seconds["cs2cs"] / ours]
                lines.append([row, f"{count / ours / 1e6:.2f}", f"{speeds[0]:.2f}", f"{speeds[1]:.2f}",
                              f"{ours / seconds['jobs']:.2f}" if has_jobs else "",
                              "" if min(speeds) >= SPEED_TARGET else "below 3"])
            write_csv(file("points.csv"), positions)
            cs2cs = directions["forward"][0][2]
            columns = Program("latigo", forward + ["--columns", "Lat,Lon"], file("points.csv"))
            seconds = measure([columns, cs2cs], rounds)
            speed = seconds["cs2cs"] / seconds["latigo"]
            lines.append([f"latigo forward, CSV, {name}", f"{count / seconds['latigo'] / 1e6:.2f}", "", f"{speed:.2f}", "",
                          "" if speed >= CSV_TARGET else f"below {CSV_TARGET}"])
    heads = ["whole process", "million rows/s", "x proj", "x cs2cs", f"--jobs {JOBS}", ""]
    widths = [max(len(line[i]) for line in [heads] + lines) for i in range(len(heads))]
    for line in [heads, ["-" * width for width in widths]] + lines:
        print("| " + " | ".join(cell.ljust(width) if i == 0 else cell.rjust(width)
                                for i, (cell, width) in enumerate(zip(line, widths))) + " |")
    print(f"\n{count} rows, medians of {rounds}. Target: {SPEED_TARGET} times the rows per second of proj and of cs2cs.")
    return failed


sys.exit(main())
