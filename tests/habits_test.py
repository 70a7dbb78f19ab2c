"""What the transcripts cannot show of the program's sections, templates and files.   habits_test.py [EMULATOR...] PROGRAM"""
import glob, os, re, shutil, signal, struct, subprocess, sys, tempfile, time

program = [*sys.argv[1:-1], os.path.realpath(sys.argv[-1])]
root = os.path.dirname(os.path.dirname(os.path.realpath(__file__)))
folder = tempfile.TemporaryDirectory()
os.chdir(folder.name)


def run(*arguments, text=""):
    done = subprocess.run([*program, *arguments], input=text.encode(), capture_output=True)
    return done.returncode, done.stdout.decode().replace("\r", ""), done.stderr.decode().replace("\r", "")


def write(name, text):
    with open(name, "w", newline="\n", encoding="utf-8") as file:
        file.write(text)


KEY = re.compile(r"^(;?)([A-Z]\w*)=(.*)$", re.M)

# Every key is in each template once, with the texts of the reference page. The section opens without a warning, also with
# all of its keys in use, except the names of files.
page = open(f"{root}/docs/configuration.md", encoding="utf-8").read().split("## Projections")[0].replace("`", "").replace(", see below", "")
rows = re.findall(r"^\| (\w+) \| (.*?) \| (.*?) \| (.*?) \|$", page, re.M)[1:]
examples = "".join(open(path, encoding="utf-8").read() + "\n" for path in glob.glob(f"{root}/examples/*.ini"))
keywords = re.findall(r'"(\w+)"', "".join(re.findall(r"^LATIGO_KIND\(\w+, +\w+, +\d+, +\"\w+\", +\".*?\",(.*)\)$",
                                                     open(f"{root}/resources/kinds.def").read(), re.M)))
status, text, _ = run("template")
listed = re.findall(r"^(\w+) ", text, re.M)
assert status == 0 and all(re.match("[a-z]+( ZONE)? +", line).end() == 10 for line in text.splitlines()), text
assert len(rows) == 32 and len(listed) == 13 and set(map(str.upper, listed)) <= set(map(str.upper, keywords)), listed
names = set()
for kind in [*keywords, "utm 1N", "utm 31n", "Utm 55S", "UTM 60s"]:
    status, text, messages = run("template", *kind.split())
    if kind == "UTM":
        continue
    assert status == 0 and not messages, (kind, messages)
    groups = re.findall(r"\n\n; .*\n;?(\w+)=", text)
    assert groups == ["Projection", "VertUnit", "DynDatum", "AdjustType", "OrthoHCorr"], groups
    keys = KEY.findall(text)
    unread = re.findall(r"\w+", re.findall(r"^; This projection does not read (.*)\.$", text, re.M)[0])
    assert sorted([key for _, key, _ in keys] + unread) == sorted(row[0] for row in rows), kind
    for name, unit, meaning, absent in rows:
        comment = f"; {unit.replace('none', 'no unit')}: {meaning}. Absent: {absent.split(';')[0]}.\n"
        assert name in unread or re.search(re.escape(comment) + f";?{name}=", text), (kind, comment)
    for content in text, re.sub(r"^;(\w+=)(?!datum|geoid)", r"\1", text, flags=re.M):
        write("template.ini", content)
        assert run("check", "template.ini", "--strict")[0] == 0, (kind, run("info", "template.ini"))
    # A system that is an example too has the same values there.
    name = re.match(r"\[(.*)\]", text)[1]
    names.add(name)
    example = re.search(rf"^\[{name}\]\n(.*?)(?=^\[|\Z)", examples, re.M | re.S)
    if example:
        values = {key: value for off, key, value in keys if not off}
        for _, key, value in KEY.findall(example[1]):
            same = value.upper() == values[key].upper() if key == "Projection" else float(value) == float(values.get(key, value))
            assert key.startswith("Delta") or key == "Projection" or same, (kind, key, value)
for zone, meridian, northing, limits in ("1N", -177, 0, "180 W to 174 W"), ("31N", 3, 0, "0 to 6 E"), ("60S", 177, 10000000, "174 E to 180 E"):
    text = run("template", "utm", zone)[1]
    assert f"\nCentralMeridian={meridian}\n" in text and f"\nFalseNorthing={northing}\n" in text and limits in text, text
assert len(names & set(re.findall(r"^\[(.*)\]", examples, re.M))) == 9, names

for count, end in (20, " S18, S19\n"), (23, " S18, S19 and 3 others\n"):
    write("many.ini", "".join(f"[S{i}]\nFlattening=298\n" for i in range(count)))
    assert run("forward", "many.ini", "-s", "No")[2].endswith(end), count
# The first character after the surrogates, of private use, is shown as it is.
assert '"\ue000"' in run("forward", "template.ini", text="\ue000 1\n")[2]
assert run("forward", "template.ini", "--section", "")[::2] == (2, "latigo: --section: the name is empty\n")

# The nearest key to an unknown one, by letters inserted, removed and changed.
write("keys.ini", "[A]\nProjection=MER\nSemiMajorAxis=6378137\nFlattening=298\nScaleFacto=1\nAzimuth=1\nNorthParalel=1\nVertical=1\n")
nearest = re.findall(r"the key (\w+) is unknown; the nearest known key is (\w+)\n", run("check", "keys.ini", "--strict")[2] + run("info", "keys.ini")[2])
assert nearest == [("ScaleFacto", "ScaleFactor"), ("Azimuth", "SkewAzimuth"), ("NorthParalel", "NorthParallel"), ("Vertical", "VertUnit")], nearest

# A known key above the first section belongs to none, which is said once.
write("above.ini", "Version=2\nunit=0.3048\n[A]\nProjection=MER\nSemiMajorAxis=6378137\nFlattening=298\n[B]\nProjection=SMERC\nFlattening=298\n")
assert run("info", "above.ini")[2] == "latigo: above.ini:2 [A]: warning: the key unit is not read: it is above the first section\n"
assert run("check", "above.ini", "-s", "A")[0] == 2 and run("check", "above.ini", "-s", "B")[0] == 0

assert run("info", "keys.ini", "--strict", "-o", "info.txt")[0] == 2 and not os.path.exists("info.txt")

write("plain.ini", "[A]\nProjection=MER\nSemiMajorAxis=6377397.155\nFlattening=299.1528128\nCentralMeridian=5\n")
assert run("list", "plain.ini")[1] == "A  Mercator, Bessel 1841, central meridian 5\n"

# A comment of a key, of at most 24 letters, describes nothing, nor one of a section that is not read. Long names stand alone.
comments = ["DeltaZ=0", "SkewAzimuth=1", "z" * 24 + "=1", "z" * 25 + "=1", "k0=1"]
write("described.ini", "".join(f"[{'N' * (33 - i)}]\n;{c}\nProjection=SMERC\n" for i, c in enumerate(comments)) +
      f"[TM]\nProjection=TME\nSemiMajorAxis=6378137\nFlattening=298\n[E]\n[{'N' * 33}]\n; not of E\n")
sphere, texts = "Mercator on a sphere", ["transverse Mercator, central meridian 0", "no projection"]
texts = [sphere, sphere, sphere, comments[3], comments[4], *texts]
names_listed = ["N" * (33 - i) for i in range(5)] + ["TM", "E"]
assert run("list", "described.ini")[1] == "".join(f"{name:32}  {text}\n" for name, text in zip(names_listed, texts))

# The height that a line does not have, and a factor of the projection whose local grid is not applied.
default = re.search(r"height \(default (\d)\)", run("ecef", "--help")[1])[1]
assert run("ecef", "described.ini", "-s", "TM", text="52 5") == run("ecef", "described.ini", "-s", "TM", text=f"52 5 {default}.0")
factors = [run("scale", f"{root}/tests/transcripts/systems.ini", "-s", section, "--grid", "--precision", "15", text="637294 5762926")
           for section in ("Geodesy", "Local")]
assert factors[0] == factors[1] and factors[0][1].startswith("0.99983"), factors

# Only a section with a geoid has a line about its ellipsoid; and every command that reads points describes their form.
for constant in "", "OrthoHCorr=45.5\n":
    write("geoid.ini", "[A]\nProjection=MER\nSemiMajorAxis=6378137\nFlattening=298\n" + constant)
    assert ("refers to WGS-84" in run("info", "geoid.ini")[1]) == bool(constant)
# The description of what a section has, and has not.
for keys, text in [("", "  datum           no shift to WGS-84\n  local grid      none\n  geoid           no grid, constant 0\n"),
                   ("", "  ellipsoid       without a name, a = 6378137 m"), ("DeltaRZ=1", "  rX 0, rY 0, rZ 1 arc seconds\n"),
                   ("AdjustType=3", "type 3: fixed polynomial grid\n"), ("AdjustType=16", "type 16: fixed quadratic grid in chains\n"),
                   ("AdjustType=17", "type 17: does nothing\n"), ("AdjustType=1", " to 0, 0\n"),
                   ("AdjustType=1\nReverseX=1\nReverseY=1", " to 0, 0, X reversed, Y reversed\n")]:
    write("described.ini", "[A]\nProjection=MER\nSemiMajorAxis=6378137\nFlattening=298\n" + keys)
    assert text in run("info", "described.ini")[1], (keys, run("info", "described.ini")[1])
# What the library does not read of a file in another encoding.
write("odd.ini", "[A]\nProjection=MER\nSemiMajorAxis=6378137\nFlattening=298\nFalseEasting=5\0x\n")
assert run("forward", "odd.ini", text="0 0")[2] == (
    "latigo: odd.ini:5 [A]: warning: a line with a zero byte is not read: FalseEasting=5\\x00x\n")
with open("odd.ini", "wb") as file:
    file.write("[A]\n".encode("utf-16"))
assert "odd.ini: the file is UTF-16" in run("info", "odd.ini")[2]
# Beyond the pole, 1300 km north of 80 and 700 km north of 85 degrees, no kind loses the point without a warning.
for kind in "LCC", "ALA", "AZD", "OST", "OCY":
    for origin, parallels, y in (80, "NorthParallel=82\nSouthParallel=78", 1.3e6), (85, "NorthParallel=87\nSouthParallel=83", 0.7e6):
        write("described.ini", f"[A]\nProjection={kind}\nSemiMajorAxis=6378137\nFlattening=298\nRefLatitude={origin}\n{parallels}\n")
        position, messages = run("inverse", "described.ini", "--precision", "10", text=f"0 {y}")[1:]
        back = run("forward", "described.ini", text=position)[1].split()
        assert "too far" in messages or abs(float(back[0])) < 1 > abs(float(back[1]) - y), (kind, position, messages, back)
# The coordinates of these kinds are metres in any unit. A round-trip error counts on the ground, also at a pole.
for kind, point in ("PST", "1e15 0"), ("OST", "1e15 0"), ("CME", "0 1.5e8"):
    write("described.ini", f"[A]\nProjection={kind}\nSemiMajorAxis=6378137\nFlattening=298\nRefLatitude=52\nUnit=1e-9\n")
    assert "too far" in run("inverse", "described.ini", text=point)[2] and "too far" not in run("forward", "described.ini", text="89.99999999999 30")[2], kind
reading = {command for command in re.findall(r"^  (\w+) ", run("--help")[1], re.M) if "Options of all commands that read points:" in run(command, "--help")[1]}
assert reading == {"forward", "inverse", "convert", "scale", "factors", "undulation", "ecef", "distance"}, reading

# All numbers of digits are those of correct rounding, and a failed point has as many fields as a good one.
points = "".join(f"{50 + i / 7:.9f} {-5 + i / 3:.9f}\n" for i in range(30))
places = [run("forward", f"{root}/examples/national_grid.ini", "--precision", str(digits), text=points)[1].split() for digits in range(16)]
for digits in range(16):
    assert places[digits] == [f"{float(exact):.{digits}f}" for exact in places[15]], digits
assert run("undulation", "geoid.ini", text="52 5 a\nx 5 b\n")[1] == "45.5000 a\n* b\n"
# Degrees with a fraction have no minutes.
assert '".5d30m": not an angle' in run("forward", "geoid.ini", text=".5d30m 5\n")[2]
# The series of the mid-latitude formulas ends sooner near a pole.
lines = [f"{latitude} 0 {latitude} {degrees}\n" for latitude, degrees in ((89, 26), (60, 0.9))]
assert ["too long" in run("distance", "geoid.ini", text=line)[2] for line in lines] == [True, False]

# The output is renamed when it is complete: points may fail, but not the run. What the command reads is refused.
def content(name):
    return open(name, encoding="utf-8").read().replace("\r", "")

line = "52 15\n"
write("template.ini", run("template", "utm", "33N")[1])
write("points.txt", line)
expected = run("forward", "template.ini", "points.txt")[1]
before = len(os.listdir())
assert run("forward", "template.ini", "points.txt", "-o", "new.txt") == (0, "", "") and content("new.txt") == expected
assert run("forward", "template.ini", "-o", "new.txt", text="x\n" + line)[:2] == (1, "") and content("new.txt") == "* *\n" + expected
kept = content("new.txt")
for arguments in ["points.txt", "nothing.txt"], ["new.txt"], ["points.txt", "./new.txt"], ["points.txt", "--strict", "-s", "No"]:
    status, text, messages = run("forward", "template.ini", *arguments, "--output", "new.txt")
    assert status == 2 and not text and content("new.txt") == kept and len(os.listdir()) == before + 1, (arguments, messages)
for place in "template.ini", ".":
    assert "template.ini: is read by this command" in run("list", place, "-o", "template.ini")[2]
write("pairs.txt", "0 500000 0 0 A\n1 500001 0 1 B\n")
for command in ["fit", "template.ini", "pairs.txt"], ["map", "template.ini", "--points", "pairs.txt"]:
    assert "pairs.txt: is read by this command" in run(*command, "-o", "pairs.txt")[2], command
os.remove("pairs.txt")
for name, reason in (".", "is a directory"), ("none/new.txt", "No such file"), ("", "the name is empty"):
    status, text, messages = run("forward", "template.ini", "points.txt", "-o", name)
    assert status == 2 and not text and reason in messages, messages
assert run("forward", "template.ini", "points.txt", "-o", "-") == (0, expected, "")
for command in ["template", "utm", "33N"], ["list", "template.ini"], ["info", "template.ini"]:
    text = run(*command)[1]
    assert run(*command, "-o", "new.txt") == (0, "", "") and content("new.txt") == text, command
if len(program) == 1:  # with the mode of the older file, through a link, without standard input, and not from itself
    assert os.stat("new.txt").st_mode & 0o111 == 0
    os.chmod("new.txt", 0o640)
    assert subprocess.run(["sh", "-c", '"$@" <&-', "sh", *program, "forward", "template.ini", "points.txt", "-o", "new.txt"]).returncode == 0
    os.symlink("new.txt", "link")
    assert run("forward", "template.ini", "points.txt", "-o", "link")[0] == 0 and os.path.islink("link")
    assert content("new.txt") == expected and os.stat("new.txt").st_mode & 0o777 == 0o640
    with open("points.txt") as same:
        done = subprocess.run([*program, "forward", "template.ini", "-o", "points.txt"], stdin=same, capture_output=True)
    assert done.returncode == 2 and b"is read by this command" in done.stderr and content("points.txt") == line
    for arguments in ["points.txt"], ["-"], []:  # nor with >>, which would not end
        with open("points.txt") as same, open("points.txt", "a") as end:
            done = subprocess.run([*program, "forward", "template.ini", *arguments], stdin=same, stdout=end, stderr=-1, timeout=60)
        assert done.returncode == 2 and b"is the output of this command too" in done.stderr and content("points.txt") == line
    assert run("forward", "template.ini", "points.txt", "-o", "/dev/full")[2] == "latigo: /dev/full: No space left on device\n"
    done = subprocess.run(["sh", "-c", 'ulimit -f 8; exec "$@"', "sh", *program, "forward", "template.ini", "-o", "new.txt"],
                          input=line.encode() * 60000, capture_output=True)
    assert done.returncode == -signal.SIGXFSZ and content("new.txt") == expected, done
    for number in signal.SIGINT, signal.SIGTERM, signal.SIGHUP:
        signal.signal(number, signal.SIG_DFL)  # in the background, or without a terminal, some are ignored
        process = subprocess.Popen([*program, "forward", "template.ini", "-o", "new.txt"], stdin=-1)
        process.stdin.write(line.encode())
        process.stdin.flush()
        halves = []
        for _ in range(1000):
            halves = [name for name in os.listdir() if name.startswith(".latigo-") and os.path.getsize(name) > 0]
            if halves:
                break
            time.sleep(0.01)
        assert halves and os.stat(halves[0]).st_mode & 0o077 == 0
        process.send_signal(number)
        assert process.wait() == -number and content("new.txt") == expected and not glob.glob(".latigo-*")
    os.remove("link")
os.remove("new.txt")
assert len(os.listdir()) == before

# Between the systems of convert nothing is rounded: it agrees with inverse and forward, in every thread, and failures too.
if len(program) == 1:  # as the grid of run.py: 5 x 10 nodes from 0 E 50 N, with no shift but 100 m along Z
    os.environ["TWI_BATHYX"] = folder.name
    os.mkdir("datum")
    node = struct.pack("<3f", 0, 0, 100)
    head = b" " * 64 + struct.pack("<3i4fi", 10, 5, 3, 0, 1, 50, 1, 0)
    open("datum/d.dat", "wb").write(head.ljust(124) + (b"lead" + node * 10) * 5)
    system = "Projection=UTM\nSemiMajorAxis=6378137\nFlattening=298.257223563\nScaleFactor=0.9996\nFalseEasting=500000\n"
    write("pair.ini", f"[Grid]\n{system}CentralMeridian=3\nDynDatum=d.dat\n[Same]\n{system}CentralMeridian=0\nDynDatum=d.dat\n"
                      f"[Seven]\n{system}CentralMeridian=0\nDeltaX=50\nDeltaRZ=3\n")
    for command in ["forward", "pair.ini", "-s", "Grid"], ["convert", "template.ini", "--to", "pair.ini", "--to-section", "Same"], ["info", "pair.ini"]:
        assert "d.dat: is read by this command" in run(*command, "-o", "datum/d.dat")[2], command
    rows = "".join(f"{270000 + 15 * i} {5600000 + 11 * i} {i / 7:.4f} p{i}\n" for i in range(20000))
    digits = ["--precision", "12"]
    there = run("inverse", "pair.ini", "-s", "Grid", "--wgs84", *digits, text=rows)
    pipeline = run("forward", "pair.ini", "-s", "Seven", "--wgs84", "--precision", "4", text=re.sub(r"\* \* \*.*\n", "", there[1]))
    for jobs in "1", "3":
        made = run("convert", "pair.ini", "-s", "Grid", "--to-section", "Seven", "--heights", "ellipsoidal", "--jobs", jobs, text=rows)
        good = [line for line in made[1].splitlines() if not line.startswith("*")]
        assert made[0] == 1 and 1000 < len(good) < 20000, len(good)
        for ours, theirs in zip(good, pipeline[1].splitlines(), strict=True):
            numbers = [abs(float(a) - float(b)) for a, b in zip(ours.split()[:3], theirs.split()[:3])]
            assert max(numbers) < 1.01e-4 and ours.split()[3] == theirs.split()[3], (ours, theirs)
        outside = "pair.ini [Grid]: the point is outside the datum grid"
        assert made[2].count(outside) == made[2].count("\n") == 20000 - len(good) == there[2].count("outside the datum grid"), made[2][-200:]
    # The same shift is none, so that its grid does not limit; without the grid's value there is a warning.
    assert run("convert", "pair.ini", "-s", "Grid", "--to-section", "Same", "--no-height", text=rows)[::2] == (0, "")
    status, text, messages = run("convert", "pair.ini", "-s", "Grid", "--to-section", "Seven", "--no-height", "--outside-grid",
                                 "unshifted", text=rows)
    assert status == 0 and "points: pair.ini [Grid]: outside the datum grid" in messages and "*" not in text, messages
    assert run("convert", "pair.ini", "-s", "Grid", "--to-section", "Same", "--no-height", "--to-geographic", text=rows)[::2] == (0, "")
    # Each thread has a grid file of its own: in a grid whose nodes differ, points in any order are those of one thread.
    with open("datum/d.dat", "wb") as file:
        file.write(head.ljust(124) + b"".join(b"lead" + b"".join(struct.pack("<3f", 0, 90 * column, 70 * row) for column in range(10))
                                              for row in range(5)))
    mixed = "".join(f"{50 + i * 7919 % 39989 / 10000} {i * 104729 % 89989 / 10000}\n" for i in range(60000))
    assert run("forward", "pair.ini", "-s", "Seven", "--jobs", "3", text=mixed) == run("forward", "pair.ini", "-s", "Seven", text=mixed)
    alone = run("forward", "pair.ini", "-s", "Grid", "--wgs84", text=mixed)
    assert alone[::2] == (0, "")
    for jobs in "2", "3":
        assert run("forward", "pair.ini", "-s", "Grid", "--wgs84", "--jobs", jobs, text=mixed) == alone
    shutil.rmtree("datum")
    os.remove("pair.ini")

# Progress is shown on a terminal only, after a second, and erased before a message and at the end.
def read(terminal):
    received = b""
    try:
        while more := os.read(terminal, 1 << 16):
            received += more
    except OSError:  # the end of a terminal
        pass
    os.close(terminal)
    return received

def shown(arguments, feed, wait=1.2):
    """The rows of output, and what a terminal receives on standard error, if nobody reads the output for a second."""
    terminal, other = pty.openpty()
    begin = time.monotonic()
    process = subprocess.Popen([*program, "forward", "template.ini", *arguments], stdin=feed or other, stdout=-1, stderr=other)
    os.close(other)
    time.sleep(wait)
    rows, received = process.stdout.read().count(b"\n"), read(terminal)
    assert process.wait() < 2
    assert received.count(b"rows a second") <= max(0, 5 * (time.monotonic() - begin) - 4), received  # at intervals of 0.2 s
    return rows, received.decode()

def screen(text):
    """The lines that remain of it."""
    lines = []
    for line in text.split("\n"):
        cells = []
        for part in line.split("\r"):
            cells[:len(part)] = part
        lines.append("".join(cells).rstrip())
    return lines

if len(program) == 1:
    import pty  # Windows has none
    write("long.txt", line * 300000 + "x\n" + line * 100000)
    message = "latigo: long.txt:300001: column 2: \"x\": a field is missing"
    for arguments in [["long.txt"], ["long.txt", "--jobs", "2"]]:
        rows, text = shown(arguments, None)
        assert rows == 400001 and screen(text) == [message, ""], (rows, screen(text))
        found = re.findall(r"\r *(\d+) % of 2\.4 MB, (\d+) rows a second, (\d):(\d\d) left", text)
        assert found and re.match(r"\r *\d+ %", text) and all(0 < int(part) <= 100 and int(speed) < 400000 for part, speed, _, _ in found), text
        part, speed, minutes, seconds_left = map(int, found[0])
        assert abs(speed * (60 * minutes + seconds_left) - (100 - part) * 4000) < 0.6 * speed + 4000, found
    with open("long.txt") as file:
        assert re.search(r" % of 2\.4 MB", shown([], file)[1])
    pairs = "".join(f"{500000 + 7 * i} {5000000 + i * i % 9973} {7 * i} {i * i % 9973}\n" for i in range(4000)).encode()
    for command in ["fit", "template.ini", "--reverse", "none"], ["fit", "template.ini", "--columns", "1,2,3,4"], ["map", "template.ini", "--grid", "--points", "-"]:
        terminal, other = pty.openpty()
        process = subprocess.Popen([*program, *command], stdin=subprocess.PIPE, stdout=subprocess.DEVNULL, stderr=other)
        os.close(other)
        process.stdin.write(pairs)
        process.stdin.flush()
        time.sleep(1.2)
        process.stdin.write(pairs)
        process.stdin.close()
        text = read(terminal)
        assert process.wait() == 0 and re.search(rb"\r\d+ kB, \d+ rows a second\r +\r", text), (command, text[:300])
    terminal, other = pty.openpty()  # through a pipe, whose end is not known
    process = subprocess.Popen([*program, "forward", "template.ini", "-"], stdin=-1, stdout=-1, stderr=other)
    os.close(other)
    for pause in 1.05, 0:
        process.stdin.write(line.encode())
        process.stdin.flush()
        assert process.stdout.readline() == expected.encode()
        time.sleep(pause)
    process.communicate()
    text = read(terminal)
    assert re.search(rb"\r12 B, [01] rows a second *\r *\r$", text), text
    shown(["points.txt"], None, 0)
    process = subprocess.Popen([*program, "forward", "template.ini", "long.txt"], stdout=-1, stderr=-1)
    time.sleep(1.2)
    assert process.communicate()[1].decode() == message + "\n"

# Listing takes time in proportion to the file.
def seconds(sections):
    import resource  # Windows has none
    write("many.ini", "".join(f"[S{i}]\n; System {i}\nProjection=SMERC\nFlattening=298\n[T{i}]\n" for i in range(sections // 2)))
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    status, text, messages = run("list", "many.ini", "s")
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    assert status == 0 and text.count("\n") == sections // 2 and text.endswith(f"  System {sections // 2 - 1}\n"), text[-100:]
    return after.ru_utime - before.ru_utime

if len(program) == 1:
    # The least of three, since a busy machine slows some runs; a system may count a short run as nothing.
    few, many = (min(seconds(sections) for _ in range(3)) for sections in (15000, 60000))
    assert many < 0.3 + 8 * few, (few, many)

# A folder: the sections of all its files, below their names. Where nothing is installed there are no examples.
status, text, messages = run("list", f"{root}/examples", "caspian")
assert status == 0 and text.replace("\\", "/").startswith(f"{root}/examples/mercator.ini\n  Caspian  ") and text.count("\n") == 2, text
status, text, messages = run("list", f"{root}/examples", "no such text")
assert status == 1 and not text and "no section has this text" in messages
# A file that cannot be read is reported, and hides no other one.
os.makedirs("folder/b.ini")
for name in "ac":
    write(f"folder/{name}.ini", f"[{name}]\n")
status, text, messages = run("list", "folder")
assert status == 2 and [line.strip()[0] for line in text.splitlines()[1::2]] == ["a", "c"], (status, text)
assert len(messages.splitlines()) == 1 and "b.ini: " in messages, messages
status, text, messages = run("list")
assert status == 2 and not text and "no examples are installed in " in messages, messages
