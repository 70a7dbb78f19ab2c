"""Sections made by latigo fit, read back by the program.   fit_test.py [EMULATOR...] PROGRAM"""
import math, os, re, subprocess, sys, tempfile

program = [*sys.argv[1:-1], os.path.realpath(sys.argv[-1])]
root = os.path.dirname(os.path.dirname(os.path.realpath(__file__)))
folder = tempfile.TemporaryDirectory()
os.chdir(folder.name)
GRID = [f"{root}/examples/national_grid.ini", "-s", "NationalGrid"]


def run(*arguments, text="", status=0):
    done = subprocess.run([*program, *arguments], input=text.encode(), capture_output=True)
    output, messages = done.stdout.decode().replace("\r", ""), done.stderr.decode().replace("\r", "")
    assert done.returncode == status, (arguments, done.returncode, output, messages)
    return output, messages


def fit(text, *options, base=GRID, status=0):
    """The section made, its keys, the residuals of its comments, and the report; the section is in made.ini too."""
    section, report = run("fit", *base, *options, text=text, status=status)
    open("made.ini", "w").write(section)
    keys = dict(re.findall(r"^(\w+)=(.*)$", section, re.M))
    residuals = [tuple(map(float, line)) for line in re.findall(r"^;   X (\S+) Y (\S+)", section, re.M)]
    return section, keys, residuals, report


def through_library(points, options=()):
    """Grid coordinates of the old section to geographic ones, and those to grid coordinates of the section made."""
    text = "".join(f"{x!r} {y!r}\n" for x, y in points)
    geographic = run("inverse", *GRID, "--precision", "13", text=text)[0]
    local = run("forward", "made.ini", "--precision", "6", *options, text=geographic)[0]
    return [tuple(map(float, line.split())) for line in local.splitlines()]


def square(x, y, s=1, r=0, noise=(0, 0, 0, 0), flip=1, size=500):
    """Control points at the corners of a square, after a similarity transformation."""
    p, q = s * math.sin(math.radians(r)), s * math.cos(math.radians(r))
    rows = []
    for (dx, dy), e in zip(((size, size), (-size, size), (-size, -size), (size, -size)), noise):
        rows.append((x + dx, y + dy, flip * (q * dx + p * dy + 1000) + e, q * dy - p * dx + 2000))
    return rows


def lines(rows, more=""):
    return "".join(" ".join(f"{value:.6f}" for value in row) + f"{more} P{i}\n" for i, row in enumerate(rows, 1))


# The example: TP6 has a blunder of 0.15 in X, and is named. Without it the residuals are those of the section opened.
example = open(f"{root}/examples/site_control.csv").read()
columns = ["--columns", "Easting,Northing,X,Y,Point"]
_, _, residuals, report = fit(example, *columns, "-o", "site.ini")
assert "standard input:7: X of TP6 is probably wrong by 0.150 m" in report, report
assert "warning" in report and open("site.ini").read().startswith("[NationalGrid_local]\n"), report
run("fit", *GRID, *columns, "--strict", text=example, status=2)
assert "[NationalGrid]: similarity transformation, 9 control points, redundancy 14\n" in report and not re.search("times the one|least checked", report)
assert "critical value: 4.22 at 0.1 %, of Student's distribution with 13 degrees of freedom" in report, report  # of the tables
section, keys, residuals, report = fit(example.replace("TP6", "#TP6"), *columns)
decimals = lambda **most: all(len(keys[name].partition(".")[2]) <= digits for name, digits in most.items())
assert decimals(AdjustRotation=13, AdjustScale=14, AdjustX=7, AdjustY=7), keys
rows = [line.split(",") for line in example.splitlines()[1:] if not line.startswith("TP6")]
local = through_library([(float(row[1]), float(row[2])) for row in rows])
assert len(residuals) == 8 and "warning" not in report and "converted with standard deviations of" in report, report
for row, (x, y), residual in zip(rows, local, residuals):
    assert abs(x - float(row[5]) - residual[0]) < 1e-4 and abs(y - float(row[6]) - residual[1]) < 1e-4, (row, x, y, residual)
table = [tuple(map(float, row)) for row in re.findall(r"^ +\d+  TP\d +(\S+) +(\S+) ", report, re.M)]
assert table == residuals, (table, residuals)
s0 = math.sqrt(sum(v * v for pair in residuals for v in pair) / 12)
assert abs(float(re.search(r"standard error of unit weight ([\d.]+)", report)[1]) - s0) < 1e-4, s0
assert run("check", "made.ini") == ("", "")
# Of an adjusted position at r from the centre, s0 sqrt((1 + r^2 / spread^2) / n); the spread is the quadratic mean of the distances.
mean = [math.fsum(float(row[i]) for row in rows) / 8 for i in (1, 2)]
spread = math.sqrt(math.fsum((float(row[i]) - mean[i - 1]) ** 2 for row in rows for i in (1, 2)) / 8)
printed = list(map(float, re.search(r"The standard deviation is\s+(\S+) m at (\d+), (\S+) at (\d+) and (\S+) at (\d+)\.", report).groups()))
for deviation, distance, times in zip(printed[::2], printed[1::2], (1, 3, 10)):
    assert abs(distance - times * spread) < 1 and abs(deviation - s0 * math.sqrt((1 + times * times) / 8)) < 1e-4, (printed, spread, s0)

# Two points fit exactly, so that nothing is said of errors.
report = fit(lines(square(530000, 180000)[:2]), "--sigma", "0.01")[3]
assert "the points fit exactly, whatever" in report and "Beyond it the errors of the points grow with the distance." in report and not re.search(r"least checked|largest stand|standard deviations of|inf|nan", report), report

# With the scale fixed their redundancy is 1. By symmetry both ends are wrong by 0.01, across the line nothing is checked, and
# s0 = 0.01 sqrt(2); r = 1/2 and 0, and Y and the rotation have the deviations s0 / sqrt(2) and s0 / sqrt(2 * 50^2).
report = fit("530000 180000 0 0 P1\n530100 180000 100.02 0 P2\n", "--fix-scale", "--sigma", "0.01")[3]
assert re.sub(r"-?(\d\.\d\d), X of P. \(line .\)|Y of P. \(line .\)", r"\1, one", report).split("[NationalGrid]: ")[1].split("Beyond")[0] == """\
similarity transformation with a fixed scale, 2 control points, redundancy 1
  rotation        0.000000000 degrees, anticlockwise  standard deviation 41.25 arc seconds
  scale           1.0000000000, +0.000 ppm  fixed
  AdjustX         50.0100  standard deviation 0.0100
  AdjustY         0.0000  standard deviation 0.0100
  origin          x 530050, y 180000, the centre of the points, rounded
  axes            not reversed
  points          converted with standard deviations of 0.0100 to 0.0141 m
  standard error of unit weight 0.0141, 1.41 times the one given
  condition number of the equations 1
Residuals: by the section less as given; w: standardised; r: redundancy numbers
    line  point                    vX         vY      wX      wY    rX    rY
       1  P1                   0.0100     0.0000    1.41       -  0.50  0.00
       2  P2                  -0.0100     0.0000   -1.41       -  0.50  0.00
  largest standardised residual: 1.41, one, no blunder
  critical value: 3.29 at 0.1 %, of Baarda's w with the standard deviation given
  least checked: , one, whose errors are not found
Area: the control points; 51.5034 N to 51.5036 N, 0.1268 W to 0.1253 W
Between x 530000 and 530100, y 180000 and 180000; the control points enclose 0 m2.
""", report
assert "fit exactly" not in report and ", X of P1 (line 1), a blunder" in fit(lines(square(530000, 180000, noise=(1, 0, 0, 0))), "--sigma", "0.1")[3]

# Residuals are rounded once, and none is a negative zero. The points of the Mercator projection fit exactly but for the check points.
open("zero.ini", "w").write("[A]\nProjection=MER\nSemiMajorAxis=6378137\nFlattening=298\nUnit=0.3048\n")
corners = lambda x, y, scale=1: "".join(f"{a * x} {b * y} {a * x * scale!r} {b * y * scale!r} 1 P\n" for a, b in ((1, 1), (-1, 1), (-1, -1), (1, -1)))
section, _, residuals, report = fit(corners(250, 100) + "0 0 0.00005 0.00004 0 here\n", "--weights", base=["zero.ini"])
assert ";   X -0.0001 Y 0.0000  here, a check point\n" in section and section.count("a check point") == 1 and residuals[:4] == [(0, 0)] * 4, section
assert " 5  here                -0.0001     0.0000  check point\n" in report and "enclose 9290 m2" in report, report  # of 100000 square feet
section, _, _, report = fit(lines(square(530000, 180000, noise=(2e-5, -2e-5, 2e-5, -2e-5))), "--sigma", "0.01")
assert report.count("     0.0000     0.0000    0.00    0.00  0.50") == section.count(";   X 0.0000 Y 0.0000  P") == 4, section + report
assert "scale           0.9999999998, +0.000 ppm" in fit(corners(500, 500, 1 - 2e-10), "--weights", base=["zero.ini"])[3]
# A square kilometre is the unit from a tenth on; other units than the grid's from a hundredth.
for size, scale, text in (250, 1.005, "0.250 km2"), (157, 1.015, "98596 m2"):
    report = fit(lines(square(530000, 180000, scale, size=size, noise=(0.01, 0, 0, 0))))[3]
    assert f"enclose {text}." in report and (" m\n" in report) == (scale < 1.01) != ("local units\n" in report), report
report = fit("530000 180000 0 0\n530500 180000 750 0\n530500 180200 750 300\n530000 180200 0 300\n")[3]
assert "enclose 0.100 km2" in report and "scale           1.5000000000, +500000.000 ppm" in report, report

# The keys of the section are kept, once each, but for those that are replaced; the origin is a whole number.
odd = "[Odd]\r\n; a comment\r\nprojection=TransMerc\r\nSemiMajorAxis=6377563.396\r\nFlattening = 299.3249646\r\nScaleFactor=0.9996\r\n" \
      "CentralMeridian=-2\r\nScaleFactor=3\r\nadjusttype=0\r\nREVERSEX=yes\r\nRemark\r\nAdjustX=77\r\nDeltaX=\r\nTitle=\"a b\"\r\n; the next\r\n[Next]\r\n"
open("odd.ini", "w", newline="").write(odd)
section = fit(lines(square(123456.4, 7654321.4, 1.1, 20)), base=["odd.ini", "-s", "Odd"])[0]
body = [line for line in section.splitlines() if not line.startswith(";")]
assert body == ["[Odd_local]", "projection=TransMerc", "SemiMajorAxis=6377563.396", "Flattening = 299.3249646", "ScaleFactor=0.9996",
                "CentralMeridian=-2", 'Title="a b"', "AdjustType=1"] + body[-6:], body
assert [line.split("=")[0] for line in body[-6:]] == [f"Adjust{name}" for name in ("Rotation", "Scale", "X", "Y", "OrigX", "OrigY")], body
values = [float(line.split("=")[1]) for line in body[-6:]]
q, p = 1.1 * math.cos(math.radians(20)), 1.1 * math.sin(math.radians(20))
for value, expected in zip(values, (20, 1.1, 1000 - 0.4 * (q + p), 2000 - 0.4 * (q - p), 123456, 7654321)):
    assert abs(value - expected) < 2e-6, (body, expected)

# Axes: mirrored is found, reported, and accepted when it is asked for; with two points it cannot be found.
mirrored = lines(square(530000, 180000, 1, 10, flip=-1))
_, keys, residuals, report = fit(mirrored)
assert keys["ReverseX"] == "yes" and abs(float(keys["AdjustRotation"]) - 10) < 1e-6 and "is reversed" in report, (keys, report)
assert max(abs(v) for pair in residuals for v in pair) < 1e-4
assert "warning" not in fit(mirrored, "--reverse", "x")[3]
same = fit(mirrored, "--reverse", "y")
assert same[2] == residuals and abs(float(same[1]["AdjustRotation"]) + 170) < 1e-6, same
assert "fit better" in fit("\n".join(mirrored.splitlines()[:3]), "--reverse", "none")[3]
assert "the scale would be 0" in fit(mirrored, "--reverse", "none", status=2)[3]
_, keys, residuals, report = fit("\n".join(mirrored.splitlines()[:2]))
assert "ReverseX" not in keys and "fit exactly" in report and "do not show whether an axis is reversed" in report, report
assert residuals == [(0, 0), (0, 0)]

# A fixed scale; weights, among them a check point outside the area; standard deviations, which make the test Baarda's.
_, keys, _, report = fit(lines(square(530000, 180000, 1.01)), "--fix-scale")
assert keys["AdjustScale"] == "1" and "redundancy 5" in report and "fixed" in report, report
assert f"(adjustment type {keys['AdjustType']})" in run("fit", "--help")[0]
weighted = lines(square(530000, 180000), " 1") + "529000 180000 0 2000.5 0 Check\n"
_, keys, residuals, report = fit(weighted, "--weights")
assert residuals == [(0, 0)] * 4 + [(0, -0.5)] and "check point, outside the area" in report and "4 control points, 1 check" in report, report
known = fit(lines(square(530000, 180000, noise=(0.02, -0.02, 0.02, -0.02)), " 0.01"), "--deviations")
# By symmetry v = -0.02 and r = 1/2, so that w = 2 sqrt(2). s0 = 2, and 0.02 m divided by sqrt(4), and by sqrt(8) 500 m. An error
# is found from 4.13 sigma / sqrt(r) on. With one axis more the best scale is 0: s0^2 = 8 (500 / 0.01)^2 / 4.
assert "     1  the_north-western_pillar    -0.0200     0.0000 " in fit(lines(square(530000, 180000, noise=(0.02, -0.02, 0.02, -0.02))).replace(
    "P1", "the_north-western_pillar"))[3]
report = re.sub(r"[XY] of P\d \(line \d\)", "one", known[3]).replace("residual: -", "residual: ")  # the largest of equals
assert report.split("\n", 1)[1] == """\
  rotation        0.000000000 degrees, anticlockwise  standard deviation 2.92 arc seconds
  scale           1.0000000000, +0.000 ppm  standard deviation 14.142 ppm
  AdjustX         1000.0000  standard deviation 0.0100
  AdjustY         2000.0000  standard deviation 0.0100
  origin          x 530000, y 180000, the centre of the points, rounded
  axes            not reversed; with one axis more the standard error of unit weight would be 7.071e+04
  points          converted with standard deviations of 0.0141 to 0.0141 m
  standard error of unit weight 2.0000, 2.00 times the one given
  condition number of the equations 1
Residuals: by the section less as given; w: standardised; r: redundancy numbers
    line  point                    vX         vY      wX      wY    rX    rY
       1  P1                  -0.0200     0.0000   -2.83    0.00  0.50  0.50
       2  P2                   0.0200     0.0000    2.83    0.00  0.50  0.50
       3  P3                  -0.0200     0.0000   -2.83    0.00  0.50  0.50
       4  P4                   0.0200     0.0000    2.83    0.00  0.50  0.50
  largest standardised residual: 2.83, one, no blunder
  critical value: 3.29 at 0.1 %, of Baarda's w with the standard deviation given
  least checked: one, whose errors are found from 0.058 on, with a probability of 80 %
Area: the control points; 51.4988 N to 51.5081 N, 0.1342 W to 0.1193 W
Between x 529500 and 530500, y 179500 and 180500; the control points enclose 1.000 km2.
Beyond it errors grow with the distance from the centre. The standard deviation is
0.0141 m at 707, 0.0316 at 2121 and 0.1005 at 7071.
The section, opened by the library, converts the points so.
""", known[3]
report = fit(lines(square(530000, 180000, noise=(0.02, -0.02, 0.02, -0.02))), "--sigma", str(0.02 / 3))[3]
assert re.search(r"weight 0.0200, 3.00 times the one given(.*\n)+  largest standardised residual: -?4.24.*\n(.*\n)+.* found from 0.039 on", report), report

open("wgs84.ini", "w").write("[W]\nProjection=UTM\nScaleFactor=0.9996\nFalseEasting=500000\nSemiMajorAxis=6378137\nFlattening=298.257223563\n")
# Columns in the order northing, easting in both systems fit as well, but the projection does not return such points; 7 degrees from
# its meridian it does, with an error of some centimetres.
report = fit(lines([(y, x, b, a) for x, y, a, b in square(530000, 5760000)]), base=["wgs84.ini"], status=2)[3]
assert "the control point of line 1 is too far from the projection's origin" in report and "order easting, northing?" in report, report
assert re.search(r"its round-trip error is up to 0\.[01]\d\d\d m", fit(lines(square(900000, 5760000)), base=["wgs84.ini"])[3])
# Of three points on a line the middle one, wrong by 0.02, cannot be distinguished from the ends; of four points in a square the wrong one is.
report = fit("530000 180000 0 0 P\n530100 180000 100.02000 0 Q\n530200 180000 200 0 R\n")[3]
assert re.search(r"is probably wrong by -?0\.0[24]0 m, or else X of [PQR] \(line \d\) or X of [PQR] \(line \d\): the points do not show which;", report), report
assert "or else" not in fit(lines(square(530000, 180000, noise=(1, 0, 0, 0))), "--sigma", "0.1")[3]
# An error of 0.15 in the middle of a line, or nearly of one: whichever w is largest, the wrong one is named. It is alone in a square.
for y, off, others in (180000, 0, 2), (180020, 20, 2):
    report = fit(f"530000 180000 1000.000 1999.990 P1\n530500 {y} 1500.004 {2000.15 + off} P2\n531000 180000 2000.000 2000.000 P3\n", "--sigma", "0.01")[3]
    warning = re.search(r"Y of P\d is probably wrong.*", report)[0]
    assert "Y of P2" in warning and len(re.findall(r" or (?:else )?Y of P\d \(line \d\)", warning)) == others, report
# Errors of 1 cm do not decide that a line is mirrored.
for known in ["--sigma", "0.01"], []:
    _, keys, _, report = fit("530198.972 180061.538 1208.273 2000.006\n530271.407 180083.965 1284.088 1999.991\n530361.048 180111.680 1377.914 2000.005\n", *known)
    assert "ReverseY" not in keys and "do not show whether an axis is reversed" in report, report
# Rounding is no blunder. In a rectangle r = 1/2, so that errors are found from 12.92 sqrt(2) = 18.28 deviations of rounding on. It
# is 10^-decimals / sqrt(12), by the decimals in x, y and in X, Y; whole numbers beside others with more decimals are exact.
for x, y, found in ("", ".000", "0.005 0.006"), (".0", ".000", "0.005 0.006"), ("", "", "7 8"), (".25", ".000", "0.052 0.054"), ("e0", ".000", "0.005 0.006"):
    for error, wrong in zip(found.split(), (False, True)):
        rows = [[f"{value}{x}" for value in corner] + [f"{value}{y}" for value in corner] for corner in ((5300, 1800), (6100, 1800), (6100, 2400), (5300, 2400))]
        rows[2][3] = f"{2400 + float(error):.{max(len(y) - 1, 0)}f}"
        for order in (0, 1, 2, 3), (2, 3, 0, 1):
            report = fit("".join(" ".join(row[i] for i in order) + "\n" for row in rows), base=["zero.ini"])[3]
            assert ("is probably wrong" in report) == wrong, (rows, report)
# Of many residuals some exceed the critical value by chance: of 600, and of 11 000 by the normal distribution. Beyond the value for
# all of them none does, of 600 the fractile 0.001 / 600 of Student's distribution, by integration of its density.
for count, error, freedom, said in (
        (300, 0.02, "Student's distribution with 595 degrees of freedom", "beyond the critical value"), (300, 0.1, "Student", "a blunder"),
        (5500, 0.02, "the normal distribution", "beyond the critical value")):
    text = "".join(f"{530000 + i % 70 * 10} {180000 + i // 70 * 10} {i % 70 * 10 + math.sin(9 * i * i) / 100:.4f} {i // 70 * 10 + error * (not i):.4f}\n" for i in range(count))
    report = fit(text)[3]
    assert f"0.1 %, of {freedom}" in report and said in report and (count > 300 or "  4.84 at 0.1 % for all 600 residuals together\n" in report), report
    chance = rf"may be wrong by 0.02\d m; 1 of {2 * count} residuals exceed the critical value, {count / 500} are expected to by chance; without"
    assert re.search(chance if error < 0.1 else "is probably wrong by 0.10. m; without", report), report[-600:]
# Three points do not decide whether 0.15 among millimetres is a blunder, by Student's distribution with one degree of freedom; a standard deviation does. One that is smaller than the rounding, 0.01 sqrt(2 / 12), or 0.01 / sqrt(12), is a warning.
few = "530000 180000 0.001 0.002 A\n530400 180000 400.152 0.001 B\n530300 180200 300.002 199.999 C\n530100 180300 100.001 299.998 D\n"
report = fit("\n".join(few.splitlines()[:3]))[3]
assert re.search("not decided\n  critical value: 636.62 at .* 1 degree of freedom;\n.*\n    so few points show only errors of more than 637 standard errors; --sigma tests", report), report
assert "wrong" not in report and "is probably wrong" in fit(few, "--sigma", "0.001")[3]
rounded = lines(square(530000, 180000, noise=(0.01, 0, 0, 0))).replace("0000 ", " ")
for sigma, wrong in (0.004, True), (0.0042, False):
    assert ("is smaller than 0.0041, that of the rounding" in fit(rounded, "--sigma", str(sigma))[3]) == wrong, rounded
# Wrong columns, and another unit, which a fixed scale says is meant; the section made is accepted by check.
fields = [line.split(",") for line in example.splitlines()[1:]]
wrong = "".join(" ".join((line[1], line[2], line[3], line[5], line[6])) + "\n" for line in fields)
report = fit(wrong)[3]
assert re.search(r"the two sets of coordinates do not match: the residuals, 19\d local units", report) and "standard input:1: the name of the point is 941.437, and all" in report, report
feet = "".join(f"{line[1]} {line[2]} {float(line[5]) / 0.3048:.3f} {float(line[6]) / 0.3048:.3f} 1.{i}\n" for i, line in enumerate(fields) if line[0] != "TP6")
report = fit(feet)[3]
assert "the scale is 3.28147: the local grid seems to have another unit" in report and "do not match" not in report and "the name" not in report, report
assert run("check", "made.ini") == ("", "")
# The area of the section is that of the map.
assert "51.5033° to 51.5112° north, −0.1333° to −0.1158° east: the area of the section's comment" in run("map", "made.ini")[0]
assert "the scale is not from 0.1 to 10: the command check" in fit(lines(square(530000, 180000, 12)))[3]
open("yard.ini", "w").write(open("zero.ini").read().replace("0.3048", "0.9144"))
assert re.search(r"with standard deviations of .* grid units\n", fit(lines(square(530000, 180000, noise=(0.02, 0, 0, 0))), base=["yard.ini"])[3])
# Residuals of 0.014 are 2 % of a small site, but three deviations less, by 17.80 of chi-square with 4 degrees of freedom, are 0.94 %.
for error, wrong in (0.014, False), (0.016, True):
    assert ("do not match" in fit(lines(square(530000, 180000, size=0.5, noise=(error, -error) * 2)))[3]) == wrong, error
open("feet.txt", "w").write(feet)
made, report = run("fit", *GRID, "--fix-scale=3.2814711", "feet.txt")
assert "AdjustScale=3.2814711\n" in made and "warning" not in report, report
assert "; Beyond it errors across the direction to the centre grow with the distance. The standard deviation is\n" in made, made
# A fixed point: its weight changes neither what coincides nor the distances, here the sides and the diagonal of the square.
report = fit("530000 180000 0 0 1e14\n530300 180000 300.01 0 1\n530300 180300 300 299.98 1\n530000 180300 0.02 300 1\n", "--weights")[3]
assert "AdjustX         0.0000 " in report and re.search(r" m at 300, 0\.\d+ at 900 and 0\.\d+ at 3000\.", report), report
# Copies of lines; a check point or one with other values is none.
rows = lines(square(530000, 180000, noise=(0.01, 0, 0, 0)), " 1")
for more, text in (rows[:rows.index("\n") + 1], "standard input:5: the coordinates are those of line 1: copies"), (rows, "of line 1, and 3 more lines"):
    assert text in fit(rows + more, "--weights")[3], more
for more in "529500 180500 0 0 1 P\n", rows.replace(" 1 P", " 0 P"):
    assert "copies" not in fit(rows + more, "--weights")[3], more

# The seven parameters of the National Grid, from positions converted by PROJ: cct +proj=pipeline +step +proj=cart
# +ellps=WGS84 +step +proj=helmert +x=-446.448 +y=125.157 +z=-542.060 +s=20.4894 +rx=0.1502 +ry=0.2470 +rz=0.8421
# +convention=coordinate_frame +step +inv +proj=cart +a=6377563.396 +rf=299.3249646
pairs = """52.65 1.70 60 52.649591073 1.701867325 15.294024828
51.50 -0.10 95 51.499488308 -0.098390707 48.938203419
53.80 -1.55 130 53.799779268 -1.548464196 80.169684940
50.70 -3.50 110 50.699444164 -3.498805937 60.738126941
55.95 -3.20 150 55.950057684 -3.198576872 97.769574420
57.50 -4.20 80 57.500256561 -4.198640188 27.106777010
"""
published = {"DeltaX": -446.448, "DeltaY": 125.157, "DeltaZ": -542.060, "DeltaScale": 20.4894, "DeltaRX": 0.1502, "DeltaRY": 0.2470, "DeltaRZ": 0.8421}
bare = open(GRID[0]).read().split("DeltaX")[0] + "DynDatum=none.dat\nDeltaX=5\n"
open("bare.ini", "w").write(bare.replace("DynDatum=none.dat\n", ""))
for base in (GRID, ["bare.ini", "-s", "NationalGrid"]):
    section, keys, _, report = fit(pairs, "--datum", "geographic", base=base)
    assert "AdjustType" not in section and section.count("DeltaX=") == 1, section
    assert re.search(r"Area: the control points; 50\.699\d N to 57\.500\d N, 4\.198\d W to 1\.701\d E\nHeights of 15 to 98 m\.", report), report
    for key, value in published.items():
        assert abs(float(keys[key]) - value) < (2e-5 if key[5] in "RS" else 2e-4), (key, keys[key])
    assert decimals(DeltaX=6, DeltaY=6, DeltaZ=6, DeltaScale=9, DeltaRX=9), keys
# The section converts WGS-84 to the positions of the datum.
here = run("forward", "made.ini", "--wgs84", text="\n".join(" ".join(line.split()[:3]) for line in pairs.splitlines()))[0]
there = run("forward", *GRID, text="\n".join(" ".join(line.split()[3:]) for line in pairs.splitlines()))[0]
for one, two in zip(here.split(), there.split()):
    assert abs(float(one) - float(two)) < 3e-4, (one, two)
# Cartesian pairs are the same, in other columns.
ecef = lambda base, first: run("ecef", *base, "--precision", "6", text="\n".join(" ".join(line.split()[first:first + 3]) for line in pairs.splitlines()))[0].splitlines()
cartesian = "".join(f"{two};{one}\n".replace(" ", ";") for one, two in zip(ecef(["wgs84.ini"], 0), ecef(GRID, 3)))
section, again, _, report = fit(cartesian, "--datum", "cartesian", "--columns", "4,5,6,1,2,3")
for key in published:
    assert abs(float(again[key]) - float(keys[key])) < 5e-5, (key, again[key], keys[key])
# A scale that is fixed at 1; the scale's effect remains in the residuals.
_, keys, _, report = fit(pairs, "--datum", "geographic", "--fix-scale")
assert keys["DeltaScale"] == "0" and "redundancy 12" in report, report
# An error of 0.4 m in a height.
report = fit(pairs.replace("130", "130.4"), "--datum", "geographic")[3]
assert re.search(r"standard input:3: up of line 3 is probably wrong by -0.40\d m", report), report
assert re.search(r"\n    line  point +vn +ve +vu +wn +we +wu +rn +re +ru\n", report), report
# The two positions exchanged; a section whose datum grid is missing, and is replaced.
assert re.search(r"with the two positions in the other order the standard error of unit weight is 0.000\d instead of \d", fit(re.sub(r"^(\S+ \S+ \S+) (\S+ \S+ \S+)", r"\2 \1", pairs, flags=re.M), "--datum", "geographic")[3])
open("bare.ini", "w").write(bare)
assert fit(pairs, "--datum", "geographic", base=["bare.ini", "-s", "NationalGrid"])[1] == fit(pairs, "--datum", "geographic")[1]
# Latitude and longitude in the wrong order on both datums are a fit too, far from the projection's origin.
assert "order?" not in report and "standard input:1: too far from the projection's origin: are the columns in the right order?" in fit(
    re.sub(r"(\S+) (\S+) (\S+)( |$)", r"\2 \1 \3\4", pairs, flags=re.M), "--datum", "geographic")[3]
# Longitudes of the other sign make no sense of a datum.
assert "ppm is larger than those of datums: are the columns right" in fit(re.sub(r"^(\S+ )(\S+ )(\S+ )", r"\g<1>-\g<2>\g<3>", pairs, flags=re.M).replace("--", ""), "--datum", "geographic")[3]

# Positions that are the same on both datums, about the 180th meridian, at heights where the library's positions have an error of
# a hundredth of a millimetre.
here = [f"{position} {position} P\n" for position in ("45 179 400", "46.5 -179 -7", "44.25 178 9000", "45 178.5 1000")]
report = fit("".join(here), "--datum", "geographic", base=["wgs84.ini"])[3]
assert "Area: the control points; 44.2500 N to 46.5000 N, 178.0000 E to 179.0000 W\nHeights of -7 to 9000 m.\n" in report, report
# The width and the length of a cross; below a fiftieth it is nearly a line.
for width in 2500, 1500:
    cross = [(4e6, y, 4.9e6) for y in (1e5, -1e5)] + [(4e6 + x, 0, 4.9e6) for x in (width, -width)]
    report = fit("".join(f"{x} {y} {z} {x} {y} {z}\n" for x, y, z in cross), "--datum", "cartesian", base=["wgs84.ini"])[3]
    assert re.findall(r"nearly on a line \(their width is (\S+) of", report) == ([] if width == 2500 else ["0.015"]), report

# Rotations about Z, of which 20 seconds scale by 5e-9.
for seconds in 15, 25:
    turned = [(x + y * seconds * math.pi / 648000, y - x * seconds * math.pi / 648000, z) for x, y, z in cross]
    report = fit("".join(f"{x} {y} {z} {u!r} {v!r} {w}\n" for (x, y, z), (u, v, w) in zip(cross, turned)), "--datum", "cartesian", base=["wgs84.ini"])[3]
    assert ("a rotation exceeds 20 arc seconds: the transformation" in report) == (seconds > 20), report

# By algebra: points on the earth's axes at the distances a, b and b, with errors of 0.02 in Z at the ends of two of them that no
# parameter explains, so that s0 = 0.04 / sqrt(11). The parameters are independent of each other: of a residual along the axis of
# its point 1 - r is 1/6 + d^2 / (2 a^2 + 4 b^2), and of one along another axis 1/6 + d^2 / (2 d^2 + 2 d'^2), d' of that axis.
a, b = 3.2e6, 6.4e6
second, (rx, ry, rz), given = math.pi / 648000, (0.05, 0.1, -0.15), ""
for i, (x, y, z) in enumerate([(a, 0, 0), (-a, 0, 0), (0, b, 0), (0, -b, 0), (0, 0, b), (0, 0, -b), (b, b, 1)], 1):
    error = (0.02, 0.02, -0.02, -0.02, 0, 0, -1)[i - 1]
    moved = [(v + second * turned) * 1.000005 + shift for v, turned, shift in
             ((x, rz * y - ry * z, 1), (y, rx * z - rz * x, 2), (z, ry * x - rx * y, 3 + error / 1.000005))]
    given += f"{x} {y} {z} {moved[0]!r} {moved[1]!r} {moved[2]!r} {i % 7 and 1} P{i}\n"
report = fit(given, "--datum", "cartesian", "--weights", "--sigma", "0.01", base=["wgs84.ini"])[3]
assert re.sub(r"[XZ] of P\d \(line \d\)", "one", report).split("Area")[0] == """\
wgs84.ini [W]: seven-parameter transformation, 6 control points, 1 check points, redundancy 11
  from WGS-84 to the section's datum, coordinate frame rotation (reverse the signs of the rotations for
  position vector rotation)
  DeltaX          1.0000 m  standard deviation 0.0049; at the centre of the points 0.0049
  DeltaY          2.0000 m  standard deviation 0.0049; at the centre of the points 0.0049
  DeltaZ          3.0000 m  standard deviation 0.0049; at the centre of the points 0.0049
  DeltaScale      5.000000 ppm  standard deviation 0.000888
  DeltaRX         0.050000 arc seconds  standard deviation 0.000194
  DeltaRY         0.100000 arc seconds  standard deviation 0.000246
  DeltaRZ         -0.150000 arc seconds  standard deviation 0.000246
  points          converted with standard deviations of 0.0057 to 0.0091 m
  standard error of unit weight 0.0121, 1.21 times the one given
  condition number of the equations 1
Residuals: by the section less as given; w: standardised; r: redundancy numbers
    line  point                    vX         vY         vZ      wX      wY      wZ    rX    rY    rZ
       1  P1                   0.0000     0.0000    -0.0200    0.00    0.00   -2.34  0.78  0.73  0.73
       2  P2                   0.0000     0.0000    -0.0200    0.00    0.00   -2.34  0.78  0.73  0.73
       3  P3                   0.0000     0.0000     0.0200    0.00    0.00    2.62  0.43  0.61  0.58
       4  P4                   0.0000     0.0000     0.0200    0.00    0.00    2.62  0.43  0.61  0.58
       5  P5                   0.0000     0.0000     0.0000    0.00    0.00    0.00  0.43  0.58  0.61
       6  P6                   0.0000     0.0000     0.0000    0.00    0.00    0.00  0.43  0.58  0.61
       7  P7                   0.0000     0.0000     1.0000  check point
  largest standardised residual: 2.62, one, no blunder
  critical value: 3.29 at 0.1 %, of Baarda's w with the standard deviation given
  least checked: one, whose errors are found from 0.063 on, with a probability of 80 %
""", report
