"""Reads the maps of the program as a person does: colours at positions, legends, lines and names.   map_test.py [EMULATOR...] PROGRAM"""
import math, os, re, struct, subprocess, sys, tempfile
import xml.etree.ElementTree as xml

program = [*sys.argv[1:-1], os.path.realpath(sys.argv[-1])]
os.chdir(os.path.join(os.path.dirname(os.path.realpath(__file__)), "transcripts"))
folder = tempfile.TemporaryDirectory()
os.environ["TWI_BATHYX"] = folder.name
os.mkdir(folder.name + "/datum")
CELL, COLUMNS = 4, 72


# The largest or smallest scale factor of Albers' projection, whichever is farther from 1, by pyproj 3.7.
FARTHER = {29.5: 1.00002205, 45.5: 1.00002736, 35: 1.00850883, 40: 1.00911987, 47: 1.0045867}


def run(*arguments, text=b""):
    done = subprocess.run([*program, "map", *arguments], input=text, capture_output=True)
    return done.returncode, done.stdout.decode(), done.stderr.decode().replace("\r\n", "\n")


class Map:
    def __init__(self, *arguments, text=b"", messages=0, status=0):
        code, self.svg, errors = run(*arguments, text=text)
        assert code == status and len(errors.splitlines()) == messages, (arguments, code, errors)
        assert "nan" not in self.svg.lower().replace("nan'", "") and "inf" not in self.svg, self.svg[:300]
        root = xml.fromstring(self.svg)
        _, _, self.width, self.height = (float(v) for v in root.get("viewBox").split())
        elements = [(e.tag.split("}")[1], e) for e in root]
        names = [tag for tag, _ in elements]
        assert names.index("rect") < names.index("text") and elements[names.index("rect")][1].get("fill") == "#fff"
        self.texts = [e.text for tag, e in elements if tag == "text"]
        over = next(e for e in root.iter() if e.get("id") == "over")
        self.circles = [(float(e.get("cx")), float(e.get("cy"))) for e in over.iter() if e.tag.endswith("circle")]
        self.lines = [tuple(float(v) for v in pair) for e in over if e.tag.endswith("path")
                      for pair in re.findall(r"([-\d.]+) ([-\d.]+)", e.get("d"))]
        self.names = {e.text: (float(e.get("x")), float(e.get("y"))) for e in over.iter() if e.tag.endswith("text")}
        self.panels, self.classes, cells, words = {}, {}, {}, {}
        title = None
        for tag, e in elements:
            if tag == "text" and e.get("font-weight") and e.get("font-size") is None:
                title = e.text
                cells, words = {}, {}
                self.panels[title], self.classes[title] = cells, words
            elif tag == "path" and e.get("stroke-width") == str(CELL):
                for x, y, length in re.findall(r"M(\d+) (\d+)h(\d+)", e.get("d")):
                    for i in range(int(length) // CELL):
                        cells[int(x) + i * CELL, int(y) - CELL // 2] = e.get("stroke")
            elif tag == "rect" and title:
                fill = e.get("fill")
            elif tag == "text" and title and e.get("text-anchor") is None and e.get("font-weight") is None and e.get("transform") is None:
                words[fill] = e.text
        cells = [cell for each in self.panels.values() for cell in each]
        assert len(cells) == len(set(cells)) and max(y for _, y in cells) + CELL < self.height, "panels overlap"
        heads = [(float(e.get("x")), float(e.get("y"))) for tag, e in elements if tag == "text" and float(e.get("y") or 99) < 90]
        assert heads == [(16, 26), (16, 46), (16, 64)], heads
        corners = [(min(x for x, _ in cells), min(y for _, y in cells)) for cells in self.panels.values()]
        rows = self.rows = len(cells) // len(self.panels) // COLUMNS
        lefts = self.lefts = [corners[0][0], corners[1][0]]
        assert lefts[0] >= 62 and lefts[1] >= lefts[0] + 482 and self.width >= lefts[1] + 470, (lefts, self.width)
        assert corners == [(lefts[i % 2], 108 + i // 2 * (rows * CELL + 84)) for i in range(len(corners))], corners
        assert self.height == corners[-1][1] + rows * CELL + 50
        self.clear([e for tag, e in elements if tag == "text"], 6.9, 0, self.width)
        self.clear([e for e in over.iter() if e.tag.endswith("text")], 5.6, lefts[0], lefts[0] + CELL * COLUMNS)
        used = [(float(e.get("x")) + lefts[0], float(e.get("y")) + 108) for tag, e in elements if tag == "use"]
        assert used == corners, used
        limits = [float(v.replace("−", "-")) for v in re.findall(r"([−\d.]+)°", self.texts[1])]
        self.south, self.north, self.west, self.east = limits

    @staticmethod
    def clear(texts, letter, left, right):
        """No text is beyond the limits or covers another one; the width of a letter is about that of a font without serifs."""
        boxes = []
        for e in texts:
            if e.get("transform"):
                x, y = map(int, re.findall(r"\d+", e.get("transform"))[:2])
                boxes.append((x - 9, y - 24, x + 3, y + 24, e.text))
                continue
            x, y, width = float(e.get("x")), float(e.get("y")), len(e.text) * letter
            x -= {"middle": width / 2, "end": width}.get(e.get("text-anchor"), 0)
            boxes.append((x, y - 9, x + width, y + 2, e.text))
        for i, a in enumerate(boxes):
            assert a[0] >= left and a[2] <= right, (a, left, right)
            for b in boxes[:i]:
                assert a[0] >= b[2] or b[0] >= a[2] or a[1] >= b[3] or b[1] >= a[3], (a, b)

    def panel(self, begin):
        return next(title for title in self.panels if title.startswith(begin))

    def said(self, begin, latitude, longitude):
        """The words of the legend for the colour at a position."""
        title = self.panel(begin)
        cells = self.panels[title]
        left, top = min(x for x, _ in cells), min(y for _, y in cells)
        rows = (max(y for _, y in cells) - top) // CELL + 1
        assert len(cells) == rows * COLUMNS, (title, len(cells), rows)
        column = int((longitude - self.west) / (self.east - self.west) * COLUMNS)
        row = int((self.north - latitude) / (self.north - self.south) * rows)
        return self.classes[title][cells[left + column * CELL, top + row * CELL]]

    def holds(self, begin, latitude, longitude, value):
        low, high = (float(v.replace("−", "-").replace(" ", "")) for v in self.said(begin, latitude, longitude).split(" to "))
        slack = (high - low) / 10  # half a cell beside the position
        assert low - slack <= value <= high + slack, (begin, latitude, longitude, value, low, high)

    def pixel(self, latitude, longitude):
        cells = self.panels[self.panel("Closure")]
        left, top = min(x for x, _ in cells), min(y for _, y in cells)
        height = max(y for _, y in cells) - top + CELL
        return (left + (longitude - self.west) / (self.east - self.west) * COLUMNS * CELL,
                top + (self.north - latitude) / (self.north - self.south) * height)


# UTM: k is 0.9996 (1 + x^2 / (2 R^2)), 42 and 212 km from the central meridian; the sign of the convergence; the central
# meridian as a grid line.
utm = Map("factors.ini", "-s", "UTM18", "--area", "30,-78,50,-72")
utm.holds("Point scale", 40.5, -74.5, -378)
utm.holds("Point scale", 40.5, -72.5, 151)
assert utm.rows == 100 and len(utm.panels) == 3
utm.holds("Convergence", 40.5, -73.5, 0.9743)
utm.holds("Convergence", 48, -77.5, -1.858)
south = Map("factors.ini", "-s", "MGA55", "--area", "-40,142,-30,152")
south.holds("Convergence", -37.951, 144.4248, 1.584)
south.holds("Point scale", -37.951, 144.4248, 230.6)
assert utm.said("Closure", 40, -75) == "below 0.001 mm" and utm.said("Closure", 40, -72.1) in ("below 1 mm", "below 10 mm")
utm = Map("factors.ini", "-s", "UTM18", "--area", "30,-76.5,50,-73.5")
x, _ = utm.pixel(40, -75)
assert sum(abs(each - x) < 0.2 for each, _ in utm.lines) > 50 and "500\u2009000 E" in utm.names, "the line of 500 000"
assert utm.texts[2] == "Grid lines: every 100\u2009000 m of easting, 500\u2009000 m of northing.", utm.texts[2]
# Cells about square on the ground, within limits: 8 degrees of latitude are as long as 16 of longitude at 60 degrees.
for area, rows in ("56,11,64,27", 72), ("84,4,90,34", 72), ("0,0,1,20", 48):
    assert Map("factors.ini", "-s", "Plain", "--area", area).rows == rows, area
# Longitudes count from the central meridian, on both sides of 180 degrees.
far = Map("convert.ini", "-s", "Far", "--area", "35,175,50,190")
far.holds("Convergence", 45.1, 185.5, 2.5 * math.sin(math.radians(45.1)))
far.holds("Convergence", 45.1, 178.5, -4.5 * math.sin(math.radians(45.1)))
far.holds("Point scale", 45.1, 178.5, -400 + 5e5 * (4.5 * math.pi / 180 * math.cos(math.radians(45.1))) ** 2)
# A range of values that is less than the last digit is one class: here a millionth of a degree and a thousandth of a part per
# million. By algebra: the convergence is dlambda sin phi, and k is 0.9996 (1 + (dlambda cos phi)^2 / 2).
for theme, area in ("Convergence", "-0.006,-75.006,0.006,-74.994"), ("Point scale", "50,-75.0051,50.012,-74.9949"):
    small = Map("factors.ini", "-s", "UTM18", "--area", area)
    assert len(small.classes[small.panel(theme)]) > 1, small.classes
# Powers of ten where scales differ by more than four percent, but not where all are large: (dlambda cos phi)^2 / 2 again.
system = "[Geodesy]\nProjection=TME\nSemiMajorAxis=6378137\nFlattening=298.257\n"
open(folder.name + "/large.ini", "w").write(system + "ScaleFactor=1.0200005\n")
Map(folder.name + "/large.ini", "--area", "0,-0.02,0.04,0.02").holds("Point scale", 0.02, 0.01, 20000.515)
assert Map(folder.name + "/large.ini", "--area", "0,0,1,20").said("Point scale", 0.5, 18) == "10 000 to 100 000"
# A local grid turned by 90 degrees: its easting is the northing, 5 763 343.55 m at 52 degrees, and has its values at the right edge.
# Its scale is that of feet, which the section does not name.
turned = "ScaleFactor=1\nCentralMeridian=9\nAdjustType=1\nAdjustRotation=90\n"
open(folder.name + "/large.ini", "w").write(system + turned)
turned = Map(folder.name + "/large.ini", "--area", "51.9,8.9,52.1,9.1")
value, edge = turned.names["5\u2009765\u2009000 E"], turned.pixel(52 + 1656.45 / 111267, 9.1)
assert math.dist(value, edge) < 7 and 100 < turned.names["0 N"][1] < 125, turned.names
open(folder.name + "/large.ini", "a").write("AdjustScale=3.28\n")
turned = Map(folder.name + "/large.ini", "--area", "51.9,8.9,52.1,9.1")
assert turned.texts[2] == "Grid lines: every 20\u2009000 units of easting, 10\u2009000 units of northing.", turned.texts[2]
turned.holds("Point scale", 52, 8.9, 2.28e6 + 3.28 * 5e5 * (0.1 * math.pi / 180 * math.cos(math.radians(52))) ** 2)
open(folder.name + "/large.ini", "w").write(system + "Unit=1000\n")
assert "every 1 units of easting, 1 units of northing" in Map(folder.name + "/large.ini", "--area", "0,0,0.04,0.04").texts[2]
# Steps below a unit have their decimals: 0.0002 degrees are 22 m. A side of 0.0002 degrees is one also with rounding errors.
small = Map(folder.name + "/large.ini", "--area", "0,-9,0.0002,-8.9998")
assert "every 0.005 units of easting, 0.005 units of northing" in small.texts[2] and "0.005 N" in small.names, (small.texts[2], small.names)
assert small.texts[1].startswith("0° to 0.0002° north, −9° to −8.9998° east") and "−8.99990°" in small.texts, small.texts
# Wide labels of latitudes widen the margin; those of longitudes are at larger steps.
small = Map("factors.ini", "-s", "MGA55", "--area", "-37.02,144.42,-37,144.44")
assert small.lefts[0] > 80 and {"−37.005°", "144.425°"} <= set(small.texts) and "144.422°" not in small.texts, small.texts
for section, limits in ("UTM18", (0, 84, -78.5, -71.5)), ("MGA55", (-80, 0, 143.5, 150.5)):
    default = Map("factors.ini", "-s", section)
    assert (default.south, default.north, default.west, default.east) == limits, default.texts[1]
open(folder.name + "/conic.ini", "w").write("[Geodesy]\nProjection=LCC\nSemiMajorAxis=6378137\nFlattening=298.257\nCentralMeridian=3\n"
                                            "NorthParallel=49\nSouthParallel=44\n")
conic = Map(folder.name + "/conic.ini")  # as much beyond the parallels as lies between them, and three times as wide
assert (conic.south, conic.north) == (41.5, 51.5) and abs(conic.east - 3 - 7.5 / math.cos(math.radians(46.5))) < 0.01, conic.texts[1]
heights = [b for a, b in utm.lines if abs(a - x) < 0.2]
assert min(heights) == utm.pixel(50, -75)[1] and max(heights) == utm.pixel(30, -75)[1], (min(heights), max(heights))
assert abs(utm.names["500\u2009000 E"][0] - x) < 1
# The meridian arc to 40.6556 degrees is 4 502 116 m and the northing 4 500 315 m: there is the line of 4 500 000.
_, y = utm.pixel(40.6556, -75)
assert any(abs(a - x) < CELL and abs(b - y) < 2.5 for a, b in utm.lines) and utm.lines, y

# Kinds without a Scale of their own; constant convergence is one class; longitudes across 180 degrees.
assert Map("factors.ini", "-s", "Swiss").said("Point scale", 46.95, 7.44).startswith("0 to ")
# Equal areas: at 38 degrees k is less than 1 by 12 200 parts per million and h more, as in factors.txt; both are near 1 on the parallels.
open(folder.name + "/albers.ini", "w").write("[A]\nProjection=ALA\nSemiMajorAxis=6378206.4\nFlattening=294.9786982\nRefLatitude=23\n"
                                             "CentralMeridian=-96\nNorthParallel=29.5\nSouthParallel=45.5\n")
albers = Map(folder.name + "/albers.ini", "--area", "28,-100,47,-90")
assert albers.panel("Extreme scale a or b").endswith("parts per million")
for latitude in (29.5, 45.5, 35, 40, 47):
    albers.holds("Extreme scale", latitude - 0.01, -95, 1e6 * (FARTHER[latitude] - 1))
# Azimuthal equidistant: by pyproj the largest scale is 1.00088384, which is that of neither meridian nor parallel: 1.000448, 1.000436.
open(folder.name + "/yap.ini", "w").write("[A]\nProjection=AZD\nSemiMajorAxis=6378206.4\nFlattening=294.9786982\n"
                                          "RefLatitude=9.546708333333333\nCentralMeridian=138.168744444444444\n")
Map(folder.name + "/yap.ini", "--area", "11,139,14,142").holds("Extreme scale", 12.5, 141.17, 883.8)
mercator = Map("factors.ini", "-s", "Mercator", "--area", "-60,170,60,190")
assert list(mercator.classes[mercator.panel("Convergence")].values()) == ["about 0.000000"]
assert "−170°" in mercator.texts and "180°" in mercator.texts, mercator.texts

across = Map("factors.ini", "-s", "Mercator", "--points", "-", text=b"10 179.5 A\n12 -179.5 B\n")
assert abs(across.south - 9.714) < 0.01 and abs(across.west - 179.2) < 0.1 and abs(across.east - 180.8) < 0.1 and len(across.circles) == 2, across.texts[1]

# A point alone; points at the poles; the whole earth; the smallest side.
alone = Map("factors.ini", "-s", "Mercator", "--points", "-", text=b"52 9 A\n")
assert (alone.south, alone.north, alone.west, alone.east) == (51.98, 52.02, 8.96751, 9.03249), alone.texts[1]
# A building site; points around the pole, of which a degree of longitude is short.
site = Map("factors.ini", "-s", "Mercator", "--points", "-", text=b"47 14 A\n47.0009 14.0016 B\n")
margin = 0.0016 * math.cos(math.radians(47)) / 7
assert abs(site.south - (47 - margin)) < 2e-6 and abs(site.east - (14.0016 + 0.0016 / 7)) < 2e-6, site.texts[1]
open(folder.name + "/pole.ini", "w").write("[A]\nProjection=PST\nSemiMajorAxis=6378137\nFlattening=298.257\nRefLatitude=90\n")
pole = Map(folder.name + "/pole.ini", "--points", "-", text=b"89.95 0 A\n89.92 120 B\n89.99 -100 C\n")
assert 89.87 < pole.south < 89.92 and len(pole.circles) == 3, pole.texts[1]
poles = Map("factors.ini", "-s", "Mercator", "--points", "-", text=b"-89.9 0\n89.9 1\n")
assert (poles.south, poles.north) == (-90, 90) and Map("factors.ini", "-s", "Mercator", "--area", "-60,-180,60,180").west == -180

# Beyond the domain there are gaps with their reason; nowhere a value, a refusal.
wide = Map("factors.ini", "-s", "UTM18", "--area", "-80,-165,80,15")
assert all(wide.said(theme, 70, -160) == "code 10" for theme in ("Closure", "Point scale", "Convergence")) and wide.said("Closure", 0, -75) == "below 0.001 mm"
code, svg, errors = run("factors.ini", "-s", "UTM18", "--area", "5,10,15,14")
assert code == 2 and not svg and "no position of the area" in errors, errors

# Points: circles at their positions, names that are safe in XML, and those outside are counted.
points = "# stations\n52.5 13.25 Berlin\n53:33:00N 10:00:00E <Hamburg & 'H'>\n48.1 11.6 7\n50.1 8.7 Frank\u00adfurt\n".encode() + b"51 7 K\xf6ln\n"
system = "[Geodesy]\nProjection=TME\nSemiMajorAxis=6378137\nFlattening=298.257\nCentralMeridian=9\n; Area: somewhere; 47.27 N to 55.09 N, 5.87 E to 15.04 E\n"
open(folder.name + "/german.ini", "w").write(system)
german = Map(folder.name + "/german.ini", "--points", "-", text=points)
assert "around the points" in german.texts[1] and len(german.circles) == 5
assert abs(german.west - (7 - 5.45 / 7 / math.cos(math.radians(50.825)))) < 0.01 and abs(german.north - (53.55 + 5.45 / 7)) < 0.01, german.texts[1]
for place, (latitude, longitude) in zip(german.circles, [(52.5, 13.25), (53.55, 10), (48.1, 11.6)]):
    assert all(abs(a - b) < 1 for a, b in zip(place, german.pixel(latitude, longitude))), (place, latitude, longitude)
assert {"Berlin", "<Hamburg & 'H'>", "7", "K?ln"} <= german.names.keys(), german.names
german = Map(folder.name + "/german.ini", "--area", "52,12,54,14", "--points", "-", text=points, messages=2)
assert len(german.circles) == 1 and "Berlin" in german.names
german = Map(folder.name + "/german.ini", "--points", "-", text=b"52.5 13.25 A\nno point\n", messages=1, status=1)
assert len(german.circles) == 1
outside = [folder.name + "/german.ini", "--area", "52,12,54,14", "--points", "-"]
messages = "latigo: standard input:3: {}outside the area: \"<Hamburg & 'H'>\"\nlatigo: 4 points: outside the area\n"
assert run(*outside, text=points)[::2] == (0, messages.format("warning: "))
assert run(*outside, "--strict", text=points)[::2] == (1, messages.format(""))
# Names stay inside the frame, off the numbers of grid lines, and are counted if there is no room.
crowd = b"".join(b"52.%d 12.99 Station %d\n" % (i, i) for i in range(50, 90))
drawn = [name for name in Map(*outside, text=crowd, messages=1).names if name.startswith("Station")]
assert 5 < len(drawn) < 40, drawn
assert run(*outside, text=crowd)[::2] == (0, f"latigo: there is no room for {40 - len(drawn)} names\n"), run(*outside, text=crowd)[2]
crowd = Map(*outside, text=b"53.9 12.05 At the north-west corner\n52.01 13.98 At the south-east corner of the picture, far away\n")
far = "At the south-east corner of the picture…"
left, right = (crowd.pixel(53, longitude)[0] for longitude in (12, 14))
assert all(left < crowd.names[name][0] < right for name in ("At the north-west corner", far)), crowd.names
# Quotes and other columns are not of the name, which has at most 40 letters.
lines = b'52.5 13.25 "Berlin" \n53.5,10.5,"Hamburg",x\n50.5 8.5 1,5\n48.5\t9.5\t12.5\tUlm\n49.5 7.5 ' + b"x" * 45 + b"\n# none\nno point\n"
german = Map(folder.name + "/german.ini", "--points", "-", text=lines, messages=1, status=1)
assert set(german.names) >= {"Berlin", "Hamburg", "1,5", "Ulm", "x" * 39 + "…"}, german.names
assert run(folder.name + "/german.ini", "--points", "-", text=lines)[2] == 'latigo: standard input:7: column 1: "no": not a number\n'
for order, header in ("b,l,n", b"n;l;b\n"), ("2,3", b""), ("l,b,n", b"n;l;b\n"):
    more = ["--lonlat"] if order in ("l,b,n", "2,3") else []
    german = Map(folder.name + "/german.ini", "--points", "-", "--columns", order, *more, text=header + b"y" * 45 + b";9.5E;52N\nB;8.5E;53N\n")
    assert abs(german.circles[0][0] - german.pixel(52, 9.5)[0]) < 1 and len(german.circles) == 2, german.circles
    assert ("y" * 39 + "…" in german.names) == bool(header), german.names
arguments = [folder.name + "/german.ini", "--grid", "--points", "-", "--columns", "x,y"]
code, _, errors = run(*arguments, text=b"k;x;y\nA;0;5763343.55\nB;0;1e9\n")
assert code == 1 and errors == "latigo: standard input:3: \"0 1e9\": code 10: the grid position is outside the projection's domain\n", errors
# Points are checked as forward and inverse do: exchanged coordinates are those of another place.
far = "too far from the projection's origin: the round-trip error exceeds one metre"
for order, text in (["--grid"], b"0 5763343.55 A\n5763343.55 0 B\n5763344 0 C\n"), ([], b"52 9 A\n9 52 B\n10 52 C\n"):
    exchanged = [folder.name + "/german.ini", *order, "--points", "-"]
    assert run(*exchanged, text=text)[::2] == (0, f'latigo: standard input:2: warning: {far}: "B"\nlatigo: 2 points: {far}\n'), order
    code, svg, errors = run(*exchanged, "--strict", text=text)
    assert code == 1 and errors.count(far) == 2 and "standard input:3: \"" in errors and ">B</text>" not in svg, errors
open(folder.name + "/apex.ini", "w").write("[A]\nProjection=LCC\nSemiMajorAxis=6378137\nFlattening=298\nNorthParallel=70\nSouthParallel=60\nRefLatitude=90\n")
code, _, errors = run(folder.name + "/apex.ini", "--grid", "--points", "-", text=b"0 0\n0 -1e6\n")  # no longitude at the apex
assert code == 1 and errors == 'latigo: standard input:1: "0 0": the result is not a finite number\n', errors
german = Map(folder.name + "/german.ini", "--grid", "--points", "-", "--area", "50,8,54,10", text=b"0 5763343.55 A\n")
assert abs(german.circles[0][1] - german.pixel(52, 9)[1]) < 1 and abs(german.circles[0][0] - german.pixel(52, 9)[0]) < 1
table = b"name;x;y\nA;9,5;52\nB;8,5;x\n"
german = Map(folder.name + "/german.ini", "--points", "-", "--columns", "y,x,name", "--decimal-comma", "--area", "50,8,54,10", text=table,
             messages=1, status=1)
assert abs(german.circles[0][0] - german.pixel(52, 9.5)[0]) < 1 and list(german.names)[-1] == "A"
german = Map(folder.name + "/german.ini", "--points", "-", "--columns", "2,3,1", "--lonlat", "--decimal-comma", "--separator",
             "semicolon", "--area", "50,8,54,10", text=table.replace(b"B;8,5;x\n", b""))
assert abs(german.circles[0][0] - german.pixel(52, 9.5)[0]) < 1
west = system.replace("5.87 E to 15.04 E", "15.04 W to 5.87 W").replace("47.27 N", "3 S")
open(folder.name + "/west.ini", "w").write(west)
west = Map(folder.name + "/west.ini")
assert (west.south, west.north, west.west, west.east) == (-3, 55.09, -15.04, -5.87), west.texts[1]
date_line = system.replace("=9", "=180").replace("47.27 N to 55.09 N, 5.87 E to 15.04 E", "25 S to 15 S, 178 E to 176 W")
open(folder.name + "/west.ini", "w").write(date_line)
west = Map(folder.name + "/west.ini")
assert (west.south, west.north, west.west, west.east) == (-25, -15, 178, 184), west.texts[1]
for words, limits in ("90 S to 90 N, 180 W to 180 E", (-90, 90, -180, 180)), ("5 N to 5.015 N, 7 E to 7.015 E", (5, 5.015, 7, 7.015)):
    open(folder.name + "/west.ini", "w").write(system.replace("TME", "MER").replace("47.27 N to 55.09 N, 5.87 E to 15.04 E", words))
    west = Map(folder.name + "/west.ini")
    assert (west.south, west.north, west.west, west.east) == limits, west.texts[1]
for comment in "; Area: 47.27 N", ";Area: 47.27 N", ";Area:somewhere;47.27 N":  # without the name, without blanks
    open(folder.name + "/west.ini", "w").write(system.replace("; Area: somewhere; 47.27 N", comment))
    assert "of the section's comment" in Map(folder.name + "/west.ini").texts[1], comment
for words in ["4x N to 55 N, 5 E to 15 E", "47 X to 55 N, 5 E to 15 E", "47 N -- 55 N, 5 E to 15 E", "47 N to 55 N, 5 E to 15 ",
              "47 N to 55 N, 5 E to 5 E", "90.5 S to 55 N, 5 E to 15 E", "47 N to 90.5 N, 5 E to 15 E", "47 N to 47.0001 N, 5 E to 15 E",
              "47 N to 55 N, 5 E to 5.0001 E", "47 N to 55 N, 180 W to 180.5 E"]:
    open(folder.name + "/west.ini", "w").write(system.replace("47.27 N to 55.09 N, 5.87 E to 15.04 E", words))
    assert "around the projection's origin" in Map(folder.name + "/west.ini").texts[1], words
assert "somewhere" not in Map(folder.name + "/german.ini").svg and "of the section's comment" in Map(folder.name + "/german.ini").texts[1]

# Grid files: an undulation of 40 m and a datum shift, each in the area of its file alone.
for name, nz in ("d", 3), ("g", 1):
    node = struct.pack(f"<{nz}f", *((0, 3.0, 0) if nz == 3 else (40,)))
    head = (b" " * 64 + struct.pack("<3i4fi", 24, 5, nz, 4, 0.5, 50, 1, 0)).ljust(24 * nz * 4 + 4)
    open(f"{folder.name}/datum/{name}.dat", "wb").write(head + (b"lead" + node * 24) * 5)
plain = system.split(";")[0]
open(folder.name + "/grids.ini", "w").write(plain.replace("298.257", "298.257223563") + "Geoid=g.dat\nDynDatum=d.dat\n")
grids = Map(folder.name + "/grids.ini")
assert "of the datum grid" in grids.texts[1] and (grids.south, grids.north, grids.west, grids.east) == (50, 54, 4, 15.5)
assert grids.said("Geoid", 52, 9) == "about 40.000" and len(grids.panels) == 5
grids = Map(folder.name + "/grids.ini", "--area", "48,4,56,18")
for theme in "Geoid", "Datum":
    assert grids.said(theme, 49, 9) == grids.said(theme, 52, 16.5) == "outside the grid file", grids.classes
    assert grids.said(theme, 52, 9) != "outside the grid file"
grids.holds("Datum", 52, 9, 3 * math.sqrt(1 - (math.sin(math.radians(9)) * math.cos(math.radians(52))) ** 2))
grids = Map(folder.name + "/grids.ini", "--area", "51,-357,53,-354")  # the same with other longitudes
for theme in "Geoid", "Datum":
    assert grids.said(theme, 52, -356.5) == "outside the grid file" != grids.said(theme, 52, -355.5), grids.classes
# A range of more than a millimetre is not one class: the shift is 3 m less by 1.4 mm in a degree.
grids = Map(folder.name + "/grids.ini", "--area", "52,4.1,52.5,5.2")
assert len(grids.classes[grids.panel("Datum")]) > 1, grids.classes
# The area of a geoid grid, if it is one of the section: up to the poles and 90 degrees wide, of at least two rows and columns.
open(folder.name + "/geoid.ini", "w").write("[First]\n" + plain + "Geoid=wide.dat\n[Other]\n; Area: other; 1 N to 2 N, 3 E to 4 E\n")
for columns, rows, west, width, south, height, used in [(7, 7, 0, 15, -90, 30, True), (11, 7, 0, 9.05, -90, 30, False), (7, 8, 0, 15, -90, 30, False),
                                                        (7, 1, 0, 15, 50, 1, False), (1, 7, 9, 1, 50, 1, False)]:
    head = (b" " * 64 + struct.pack("<3i4fi", columns, rows, 1, west, width, south, height, 0)).ljust(max(96, columns * 4 + 4))
    open(f"{folder.name}/datum/wide.dat", "wb").write(head.ljust(4 * columns + 4) + (b"lead" + b"".join(struct.pack("<f", 40 + 0.0003 * i) for i in range(columns))) * (rows + 30))
    wide = Map(folder.name + "/geoid.ini", "-s", "Geodesy", messages=1)  # of narrow rows
    assert ("of the geoid grid" in wide.texts[1]) == used != ("around the projection's origin" in wide.texts[1]), wide.texts[1]
    assert len(wide.panels) == 4 and (not used or (wide.south, wide.north, wide.west, wide.east) == (-90, 90, 0, 90)), wide.texts[1]
    assert not used or len(wide.classes[wide.panel("Geoid")]) > 1, wide.classes
# The area of a datum grid near 180 degrees.
node = struct.pack("<3f", 0, 3, 0)
head = (b" " * 64 + struct.pack("<3i4fi", 24, 5, 3, 165, 0.5, -45, 1, 0)).ljust(24 * 12 + 4)
open(f"{folder.name}/datum/east.dat", "wb").write(head + (b"lead" + node * 24) * 5)
open(folder.name + "/east.ini", "w").write(plain.replace("=9", "=171") + "DynDatum=east.dat\n")
east = Map(folder.name + "/east.ini")
assert "of the datum grid" in east.texts[1] and (east.south, east.north, east.west, east.east) == (-45, -41, 165, 176.5), east.texts[1]
british = Map("../../examples/national_grid.ini")
assert (british.south, british.north, british.west, british.east) == (49.75, 61.01, -9, 2.01), british.texts[1]
# Without --area: cones around their parallels, polar systems around their pole, the Mercator projection around the earth.
for keys, limits in [("TME\nUnit=2\nFalseNorthing=2500000", (-80, 0, 16.5, 23.5)), ("CAS\nRefLatitude=49", (45, 53, 16.5, 23.5)),
                     ("PST", (60, 90, -160, 200)), ("PST\nRefLatitude=-90", (-90, -60, -160, 200)), ("MER", (-80, 80, -160, 200)),
                     ("LCC\nNorthParallel=88\nSouthParallel=86", (84, 89, 5, 35)), ("LCC\nNorthParallel=-88\nSouthParallel=-86", (-89, -84, 5, 35)),
                     ("LCC\nNorthParallel=60\nSouthParallel=60\nRefLatitude=60", (57, 63, 11, 29)), ("OST\nRefLatitude=80", (77, 83, 10, 30))]:
    open(folder.name + "/kind.ini", "w").write(f"[A]\nSemiMajorAxis=6378137\nFlattening=298\nCentralMeridian=20\nProjection={keys}\n")
    drawn = Map(folder.name + "/kind.ini")
    assert (drawn.south, drawn.north, drawn.west, drawn.east) == limits, (keys, drawn.texts[1])
print("maps: all as drawn")
