"""Compares the module with pyproj on the same points.   python.py PACKAGE [POINTS [ROUNDS]]

A row is one direction of one system. All contestants convert the same points, one after the other, in alternating order;
results are compared first. A ratio is the median over the rounds of the times of one round.
"""
import statistics
import sys
import time

import numpy as np
import pyproj

sys.path.insert(0, sys.argv[1])
import latigo  # noqa: E402

COUNT = int(sys.argv[2]) if len(sys.argv) > 2 else 200000
ROUNDS = int(sys.argv[3]) if len(sys.argv) > 3 else 9
SINGLE = 2000  # calls of a single point in a round
TARGET = 3     # times the points per second of pyproj, for arrays
WGS84 = {"semi_major_axis": 6378137, "inverse_flattening": 298.257223563}
BASE = "+a=6378137 +rf=298.257223563"

# Name, parameters, PROJ string, area (south, north, west, east), and how far results may differ, metres.
SYSTEMS = [
    ("Transverse Mercator", {"kind": "UTM", "central_meridian": 3, "scale_factor": .9996, "false_easting": 500000},
     "+proj=tmerc +lon_0=3 +k_0=0.9996 +x_0=500000", (-80, 80, 0, 6), 2e-3),
    ("Lambert", {"kind": "LCC", "central_meridian": 3, "ref_latitude": 46.5, "north_parallel": 49, "south_parallel": 44},
     "+proj=lcc +lon_0=3 +lat_0=46.5 +lat_1=49 +lat_2=44", (41, 52, -6, 11), 1e-3),
    ("Mercator", {"kind": "MER"}, "+proj=merc", (-70, 70, -179, 179), 1e-3),
    ("Albers", {"kind": "ALA", "central_meridian": 3, "ref_latitude": 46.5, "north_parallel": 49, "south_parallel": 44},
     "+proj=aea +lon_0=3 +lat_0=46.5 +lat_1=49 +lat_2=44", (41, 52, -6, 11), 1e-3),
    ("Oblique stereographic", {"kind": "OST", "central_meridian": 5.4, "ref_latitude": 52.2, "scale_factor": .9999079},
     "+proj=sterea +lon_0=5.4 +lat_0=52.2 +k=0.9999079", (50, 54, 3, 8), 1e-3),
]


def medians(calls):
    """{name: median over the rounds of the time beside that of the first}, and the first's seconds.

    Times are those of the processor, which other programs of a busy machine change least; those of two threads, and of the
    first beside them, are those of a clock.
    """
    ratios = {name: [] for name in calls}
    seconds = []
    for turn in range(ROUNDS):
        took = {}
        for name in list(calls)[::1 if turn % 2 == 0 else -1]:
            clock, start = time.perf_counter(), time.thread_time()
            calls[name]()
            took[name] = time.thread_time() - start, time.perf_counter() - clock
        first = took[next(iter(calls))]
        seconds.append(first[0])
        for name, value in took.items():
            which = 1 if name == "threads=2" else 0
            ratios[name].append(value[which] / first[which])
    return {name: statistics.median(values) for name, values in ratios.items()}, statistics.median(seconds)


def repeated(call):
    def loop():
        for _ in range(SINGLE):
            call()
    return loop


def main():
    random = np.random.default_rng(20260101)
    lines = []
    for name, parameters, proj_string, (south, north, west, east), tolerance in SYSTEMS:
        latitude, longitude = random.uniform(south, north, COUNT), random.uniform(west, east, COUNT)
        system = latigo.Geodesy.from_params(**parameters, **WGS84)
        proj = pyproj.Proj(f"{proj_string} {BASE}")
        transformer = pyproj.Transformer.from_crs(f"+proj=longlat {BASE} +type=crs",
                                                  f"{proj_string} {BASE} +type=crs", always_xy=True)
        x, y = system.forward(latitude, longitude)
        degrees = tolerance / 111000
        for other in proj(longitude, latitude), transformer.transform(longitude, latitude):
            assert max(abs(other[0] - x).max(), abs(other[1] - y).max()) < tolerance, name
        back = system.inverse(x, y)
        assert abs(proj(x, y, inverse=True)[1] - back[0]).max() < degrees, name
        a, b, c, d = (float(array[0]) for array in (latitude, longitude, x, y))
        rows = {
            "forward": {"latigo": lambda: system.forward(latitude, longitude),
                        "Proj": lambda: proj(longitude, latitude),
                        "Transformer": lambda: transformer.transform(longitude, latitude),
                        "threads=2": lambda: system.forward(latitude, longitude, threads=2)},
            "inverse": {"latigo": lambda: system.inverse(x, y),
                        "Proj": lambda: proj(x, y, inverse=True),
                        "Transformer": lambda: transformer.transform(x, y, direction="INVERSE"),
                        "threads=2": lambda: system.inverse(x, y, threads=2)},
            "forward, one point": {"latigo": repeated(lambda: system.forward(a, b)),
                                   "Proj": repeated(lambda: proj(b, a)),
                                   "Transformer": repeated(lambda: transformer.transform(b, a))},
            "inverse, one point": {"latigo": repeated(lambda: system.inverse(c, d)),
                                   "Proj": repeated(lambda: proj(c, d, inverse=True)),
                                   "Transformer": repeated(lambda: transformer.transform(c, d, direction="INVERSE"))},
        }
        for direction, calls in rows.items():
            ratios, seconds = medians(calls)
            single = "point" in direction
            target = 1 if single else TARGET
            worst = min(ratios["Proj"], ratios["Transformer"])
            lines.append([f"{name} {direction}", f"{seconds / (SINGLE if single else COUNT) * 1e9:.0f}",
                          f"{ratios['Proj']:.1f}", f"{ratios['Transformer']:.1f}",
                          "" if single else f"{1 / ratios['threads=2']:.2f}", "" if worst >= target else f"below {target}"])
    heads = ["module", "ns/point", "x Proj", "x Transformer", "threads=2", ""]
    widths = [max(len(line[i]) for line in [heads] + lines) for i in range(len(heads))]
    for line in [heads, ["-" * width for width in widths]] + lines:
        print("| " + " | ".join(cell.ljust(width) if i == 0 else cell.rjust(width)
                                for i, (cell, width) in enumerate(zip(line, widths))) + " |")
    print(f"\npyproj {pyproj.__version__}, PROJ {pyproj.proj_version_str}; {COUNT} points, medians of {ROUNDS} rounds.")


main()
