"""Makes the survey files of this folder, and in expected/ what latigo must write for each.   make.py [--check]

The coordinates are computed by PROJ's program proj, never by latigo. A file is a function that writes the same text with the
coordinates of either side, so that every other byte is equal in both. cases.txt has the arguments.
"""
import os
import subprocess
import sys

os.chdir(os.path.dirname(os.path.realpath(__file__)))

SYSTEMS = {
    "UTM31": "+proj=tmerc +ellps=WGS84 +lon_0=3 +k=0.9996 +x_0=500000",
    "Lambert93": "+proj=lcc +ellps=GRS80 +lon_0=3 +lat_0=46.5 +lat_1=49 +lat_2=44 +x_0=700000 +y_0=6600000",
    "National": "+proj=tmerc +a=6377563.396 +rf=299.3249646 +lon_0=-2 +lat_0=49 +k=0.9996012717 +x_0=400000 +y_0=-100000",
}
# Degrees, minutes and hundredths of a second, of latitude and longitude; height in centimetres; code.
POINTS = [
    ((52, 30, 0), (5, 0, 0), 1250, "BM"),
    ((52, 5, 1234), (4, 59, 5999), -43, "FENCE"),
    ((51, 59, 5950), (2, 0, 101), 10000, "TREE"),
    ((49, 7, 30), (3, 30, 0), 7, "BM"),
]


def degrees(angle):
    return angle[0] + angle[1] / 60 + angle[2] / 360000


def proj(system, pairs, *options):
    text = "".join(f"{x!r} {y!r}\n" for x, y in pairs)
    done = subprocess.run(["proj", *options, "-f", "%.10f", *SYSTEMS[system].split()], input=text, text=True,
                          capture_output=True, check=True)
    return [tuple(map(float, line.split()[:2])) for line in done.stdout.splitlines()]


def forward(system, sign=1):
    """Eastings and northings of the points, texts with two decimals."""
    return [(f"{x:.2f}", f"{y:.2f}") for x, y in proj(system, [(sign * degrees(p[1]), degrees(p[0])) for p in POINTS])]


def inverse(system, pairs):
    """Latitudes and longitudes of grid coordinates, texts with seven decimals."""
    return [(f"{y:.7f}", f"{x:.7f}") for x, y in proj(system, [(float(x), float(y)) for x, y in pairs], "-I")]


def decimal(angle):
    return f"{degrees(angle):.9f}"


def comma(texts):
    return tuple(text.replace(".", ",") for text in texts)


def seconds(angle):
    return f"{angle[2] / 100:05.2f}"


UTM, LAMBERT, NATIONAL = forward("UTM31"), forward("Lambert93"), forward("National", -1)
FROM_LAMBERT, FROM_UTM = inverse("Lambert93", LAMBERT), inverse("UTM31", UTM)
GEO = [(decimal(p[0]), decimal(p[1])) for p in POINTS]
HEIGHT = [f"{p[2] / 100:.2f}" for p in POINTS]
CODE = [p[3] for p in POINTS]
FILES = []


def add(name, arguments, given, expected, write, end="\n", encoding="utf-8", mark=b"", last=True):
    """`write(pairs)` makes the lines with the coordinates of one side."""
    for folder, pairs, before in ("", given, mark), ("expected/", expected, b""):
        text = end.join(write(pairs)) + (end if last or folder else "")
        FILES.append((folder + name, before + text.encode(encoding)))
    CASES.append(f"{name}: {arguments}{'' if '--precision' in arguments else ' --precision 2'}\n")


CASES = []
R = range(len(POINTS))


def angles(form, hemisphere=("N", "E")):
    return [tuple(form.format(d=a[0], m=a[1], s=seconds(a), h=h) for a, h in zip(p[:2], hemisphere)) for p in POINTS]


def appended(before, after):
    """Pairs of one side as one text each: nothing is appended to the given ones."""
    return [(b, "") for b in before], list(zip(before, after))


add("01_excel_german.csv", "forward -s UTM31 --columns Breite,Länge,Höhe --decimal-comma", [comma(p) for p in GEO],
    [comma(p) for p in UTM], lambda q: [
        "Punkt;Breite;Länge;Höhe;Bemerkung" if q[0][0].startswith("52") else "Punkt;easting;northing;height;Bemerkung",
        *(f"{i + 1};{q[i][0]};{q[i][1]};{HEIGHT[i].replace('.', ',')};{CODE[i]} alt" for i in R)],
    end="\r\n", mark=b"\xef\xbb\xbf")
add("02_excel_quoted.csv", 'forward -s UTM31 --columns \'"Latitude, deg","Longitude, deg"\' --append',
    [("", "")] * 4, UTM, lambda q: [
        '"Point","Latitude, deg","Longitude, deg","Remark\n""1"""' + (",easting,northing" if q[0][0] else ""),
        *(f'"P {i}","{GEO[i][0]}","{GEO[i][1]}","he said ""{CODE[i]}"",\ntwice"' + (f",{q[i][0]},{q[i][1]}" if q[i][0] else "")
          for i in R)], end="\r\n")
add("03_collector_pnezd.txt", "inverse -s Lambert93 --columns 3,2,4 --lonlat --precision 7 --separator comma",
    LAMBERT, [(x, y) for y, x in FROM_LAMBERT],
    lambda q: [f"{100 + i},{q[i][1]},{q[i][0]},{HEIGHT[i] + '00000' if q is not LAMBERT else HEIGHT[i]},{CODE[i]}" for i in R])
add("04_tabs.txt", "forward -s Lambert93 --columns 2,3 --separator tab", GEO, LAMBERT,
    lambda q: [f"Point {i}\t{q[i][0]}\t {q[i][1]}\t\t{CODE[i]}  \t" for i in R], end="\r\n")
add("05_dms_columns.csv", "forward -s UTM31 --dms-columns --columns 2,3,4,5,6,7", [("", "")] * 4, UTM,
    lambda q: ["Nr;LatD;LatM;LatS;LonD;LonM;LonS" + (";easting;northing" if q[0][0] else ""),
               *("{};{};{};{};{};{};{}".format(i, *p[0][:2], seconds(p[0]), *p[1][:2], seconds(p[1])) +
                 (";" + ";".join(q[i]) if q[i][0] else "") for i, p in enumerate(POINTS))])
add("06_dms_hemisphere.txt", "forward -s National --dms-columns --columns 2,3,4,5,6,7,8,9 --separator blank", [("", "")] * 4,
    NATIONAL, lambda q: ["{:<6} {:2} {:02} {} N {:3} {:02} {} W".format(CODE[i], *p[0][:2], seconds(p[0]), *p[1][:2], seconds(p[1])) +
                        (" " + " ".join(q[i]) if q[i][0] else "") for i, p in enumerate(POINTS)])
add("07_dashes.csv", "forward -s National --columns 2,3", angles("{d}-{m:02}-{s}{h}", "NW"), NATIONAL,
    lambda q: [f"{i},{q[i][0]},{q[i][1]},{CODE[i]}" for i in R])
add("08_symbols_quoted.csv", "forward -s UTM31 --columns 2,3", angles("{d}°{m:02}'{s}\"\"{h}"), UTM,
    lambda q: [f'{i},"{q[i][0]}","{q[i][1]}",{CODE[i]}' for i in R], end="\r\n")
add("09_letter_before.csv", "forward -s National --columns 1,2", angles("{h} {d} {m:02} {s}", "NW"), NATIONAL,
    lambda q: [f"{q[i][0]} ;{q[i][1]};{CODE[i]}" for i in R])
add("10_typographic.txt", "forward -s UTM31 --columns 2,3 --separator tab", angles("{d}° {m:02}′ {s}″ {h}"), UTM,
    lambda q: [f"{CODE[i]}\t{q[i][0]}\t{q[i][1]}" for i in R])
add("11_windows_1252.txt", "forward -s UTM31 --columns 2,3 --separator semicolon", angles("{d}°{m:02}'{s}\"{h}"), UTM,
    lambda q: [f"Höhe {i};{q[i][0]};{q[i][1]};é" for i in R], end="\r\n", encoding="cp1252")
add("12_plain_colons.txt", "forward -s UTM31", angles("{d}:{m:02}:{s}{h}"), UTM,
    lambda q: [f"{q[i][0]} {q[i][1]} p{i}  of {CODE[i]}" for i in R], end="\r\n")
add("13_fixed_width.txt", "inverse -s UTM31 --columns 2,3 --separator blank --precision 7", UTM, FROM_UTM,
    lambda q: ["# Traverse 4, 1987", "#  name      easting    northing", ""] + [f"  {CODE[i] + str(i):<8}  {q[i][0]}   {q[i][1]}  o.k." for i in R])
add("14_no_header.csv", "inverse -s Lambert93 --columns 2,3 --decimal-comma --precision 7", [comma(p) for p in LAMBERT],
    [comma(p) for p in FROM_LAMBERT], lambda q: [f"{i};{q[i][0]};{q[i][1]};1,5" for i in R], end="\r\n")
add("15_french_remarks.csv", "inverse -s Lambert93 --columns X,Y --precision 7 --append", [("", "")] * 4, FROM_LAMBERT,
    lambda q: ["Matricule;X;Y;Remarque" + (";latitude;longitude" if q[0][0] else ""),
               *(f'{i};{LAMBERT[i][0]};{LAMBERT[i][1]};"borne; dite ""{CODE[i]}"""' + (";" + ";".join(q[i]) if q[i][0] else "") for i in R)])
add("16_empty_rows.csv", "forward -s Lambert93 --columns lat,lon,h", GEO, LAMBERT,
    lambda q: ["id;lat;lon;h" if q is GEO else "id;easting;northing;height",
               *(f"{i};{q[i][0]};{q[i][1]};{HEIGHT[i] if i % 2 else ''}" for i in R), ";;;", "", ";;;"], end="\r\n")
add("17_last_line_open.csv", "forward -s UTM31 --columns 1,2", GEO, UTM, lambda q: [f"{q[i][0]},{q[i][1]}" for i in R], end="\r\n", last=False)
add("18_gis_export.csv", "forward -s Lambert93 --lonlat --columns X,Y", [(x, y) for y, x in GEO], LAMBERT,
    lambda q: ["FID,X,Y,layer" if q is not LAMBERT else "FID,easting,northing,layer", *(f"{i},{q[i][0]},{q[i][1]},{CODE[i]}" for i in R)])
add("19_quoted_commas.csv", "forward -s UTM31 --columns 2,3 --separator comma --decimal-comma", [comma(p) for p in GEO],
    [comma(p) for p in UTM], lambda q: [f'{i},"{q[i][0]}","{q[i][1]}","1,5"' for i in R], end="\r\n")
add("20_letters.txt", "forward -s National --columns 2,3 --separator blank", angles("{d}d{m:02}m{s}s{h}", "NW"), NATIONAL,
    lambda q: [f"{CODE[i]}\t{q[i][0]}   {q[i][1]}\tend" for i in R])
FILES.append(("cases.txt", "".join(CASES).encode()))

os.makedirs("expected", exist_ok=True)
for name, content in FILES:
    if sys.argv[1:] == ["--check"]:
        assert open(name, "rb").read() == content, f"{name} differs: run make.py"
    else:
        open(name, "wb").write(content)
