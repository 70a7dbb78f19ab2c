"""Runs the command-line program and compares it with transcripts/*.txt.   run.py [EMULATOR...] PROGRAM"""
import glob, os, re, select, struct, subprocess, sys, tempfile, time

program = [*sys.argv[1:-1], os.path.realpath(sys.argv[-1])]
os.chdir(os.path.dirname(os.path.realpath(__file__)))

# Faulty grid files: a header without its last byte, a header of zeros, and 2 rows of 3 nodes, truncated and complete, whose records
# are shorter than the header. And a good one, of zeros for latitude and longitude.
install = tempfile.TemporaryDirectory()
os.environ["TWI_BATHYX"] = install.name
os.mkdir(install.name + "/datum")
header = struct.pack("<64s3i4f4x", b"", 3, 2, 3, 0, 1, 0, 1)
for name, content in (("short", header[:95]), ("zero", bytes(96)), ("cut", header + bytes(20)), ("narrow", header + bytes(24)),
                      ("flat", struct.pack("<64s3i4f8x", b"", 12, 2, 2, 0, 1, 0, 1) + bytes(200))):
    open(f"{install.name}/datum/{name}.dat", "wb").write(content)


def run(arguments, text):
    done = subprocess.run([*program, *arguments], input=text.encode(), capture_output=True)
    return done.returncode, done.stdout.decode(), done.stderr.decode().replace("\r\n", "\n")


count = 0
for path in sorted(glob.glob("*.txt")):
    for case in re.split(r"^\$", open(path, encoding="utf-8").read(), flags=re.M)[1:]:
        command, *lines = case.split("\n")
        parts = {mark: [line[2:] for line in lines if line[:1] == mark] for mark in "<>!?"}
        status, output, messages = run(command.split(), "\n".join(parts["<"]))
        shown = (path, command, output, messages)
        assert status == int((parts["?"] or ["0"])[0]), (status, *shown)
        expected = "".join(line + "\n" for line in parts[">"])
        # For many sections the transcript has only the beginning of the output of info.
        assert output.startswith(expected) if command.startswith(" info") else output == expected, shown
        assert len(messages.splitlines()) == len(parts["!"]) or command.startswith(" info"), shown
        for line, part in zip(messages.splitlines(), parts["!"]):
            assert part in line, (part, line)
        count += 1
assert count > 30, count

status, output, messages = run(["info", "systems.ini", "--lang", "fra"], "")
for text in ("mètre, mètres (m)", "ouest (Y), nord (Y)", "coordinate frame rotation, not position vector", "dX 10, dY 0, dZ 0 m",
             "rX -1.5,", "X reversed", "constant 45.5"):
    assert text in output, (text, output)

if len(sys.argv) == 2:  # grids that a section names lie in the install folder
    with tempfile.TemporaryDirectory() as folder:
        os.environ["TWI_BATHYX"] = folder
        os.mkdir(folder + "/datum")
        for name, nz, rows in ("d", 3, 5), ("short", 3, 3), ("g", 1, 5):
            node = struct.pack(f"<{nz}f", *((0, 0, 100) if nz == 3 else (40,)))
            bytes_ = (b" " * 64 + struct.pack("<3i4fi", 30, 5, nz, 0, 1, 50, 1, 0)).ljust(30 * nz * 4 + 4)
            open(f"{folder}/datum/{name}.dat", "wb").write(bytes_ + (b"lead" + node * 30) * rows)
        system = open("systems.ini").read().split("[")[1].split("]")[1]
        for name, more in ("grids", "Geoid=g.dat\nVertUnit=0.5\nDynDatum=d.dat"), ("short", "DynDatum=short.dat"), ("geoid", "Geoid=g.dat\nDeltaX=1"):
            open(f"{folder}/{name}.ini", "w").write(f"[Geodesy]{system}{more}\n")
        described = run(["info", f"{folder}/grids.ini"], "")[1]
        for text in "datum           grid ", "geoid           grid ", "d.dat\n", "g.dat, constant 0\n", "refers to WGS-84", "on the grid's side vertical units":
            assert text in described, (text, described)
        forward = ["forward", f"{folder}/grids.ini", "--wgs84"]
        # 100 m above WGS-84 less an undulation of 40 m, in half metres; the datum's ellipsoid is 100 sin(52) m lower there.
        for more, height in ([], "120.0000"), (["--geoid-on-datum"], "277."):
            status, output, messages = run([*forward, *more], "52 5 100.0")
            assert status == 0 and output.split()[2].startswith(height) and messages == "", (output, messages)
            exact = run([*forward, *more, "--precision", "9"], "52 5 100.0")[1]
            back = run(["inverse", *forward[1:], *more, "--precision", "11"], exact)[1]
            assert all(abs(float(a) - b) < 2e-9 for a, b in zip(back.split(), (52, 5, 100))), back
        undulation = run(["undulation", f"{folder}/geoid.ini", "--wgs84"], "52 -355")
        assert undulation == (0, "40.0000\n", ""), undulation
        assert run(forward, "52 -355 100.0") == run(forward, "52 5 100.0")
        polar = system.replace("UTM", "PST").replace("Meridian=3", "Meridian=-179") + "RefLatitude=90\n"  # its inverse gives -355 for 5
        open(f"{folder}/polar.ini", "w").write(f"[Geodesy]{polar}DynDatum=d.dat\nGeoid=g.dat\n")
        for more in [], ["--wgs84"], ["--wgs84", "--geoid-on-datum"]:
            exact = run(["forward", f"{folder}/polar.ini", *more, "--precision", "9"], "52 5 100.0")[1]
            back = run(["inverse", f"{folder}/polar.ini", *more, "--precision", "11"], exact)[1]
            assert all(abs(float(a) - b) < 2e-9 for a, b in zip(back.split(), (52, 5, 100), strict=True)), (more, exact, back)
        outside = run(forward, "52 5\n90 5\n52 -1"), run([*forward, "--outside-grid", "unshifted"], "60 5\n60 5")
        assert outside[0][0] == 1 and outside[0][1].endswith("\n* *\n* *\n"), outside
        assert outside[0][2].count("outside the datum grid\n") == 2, outside
        assert outside[1][0] == 0 and outside[1][1].startswith("611544.") and "2 points: outside" in outside[1][2], outside
        for limit, text in (5, "grids.ini: Too many open files\n"), (6, "odd.txt: Too many open files\n"):
            done = subprocess.run(["sh", "-c", f'ulimit -n {limit}; exec "$@"', "sh", *program, *forward, "odd.txt"], capture_output=True)
            assert done.returncode == 2 and not done.stdout and text in done.stderr.decode(), (limit, done)
        many = ["sh", "-c", 'ulimit -n 20; exec "$@"', "sh", *program, "forward", "systems.ini", *["/dev/null"] * 40]
        assert subprocess.run(many).returncode == 0  # each file is closed before the next one
        short = run(["forward", f"{folder}/short.ini", "--wgs84"], "51.5 5\n53.5 5")
        assert short[0] == 1 and short[1].endswith("\n* *\n") and "cannot be read" in short[2], short

    # The output of the files before a missing one is printed, and complete blocks while the program waits for input.
    with tempfile.NamedTemporaryFile("w", suffix=".txt") as points:
        points.write("52 5\n" * 50000)
        points.flush()
        for jobs in "1", "3":
            status, output, messages = run(["forward", "systems.ini", "--jobs", jobs, points.name, "nothing.txt"], "")
            assert status == 2 and output.count("\n") == 50000 and "nothing.txt" in messages, messages
    named = b"# c\n", b"#", b' d\n"N,o\n', b'1",lat,lon\n', b'"a\n', b'b",52.0,5.0\n'
    for jobs in "1", "3":
        for options, pieces, expected in (("", (b"5", b"2 5\n"), "637294.3659 5762926.8129\n"),
                                          ("--columns=1,2 --header=no", (b"x;y\n" * 5000,), "*;*\n" * 5000),  # without a point
                                          ("--columns=lat,lon", named, '# c\n# d\n"N,o\n1",easting,northing\n"a\nb",637294.3659,5762926.8129\n')):
            process = subprocess.Popen([*program, "forward", "systems.ini", "--jobs", jobs, *options.split()], stdin=-1, stdout=-1, stderr=-3)
            for piece in pieces:
                time.sleep(0.05)
                process.stdin.write(piece)
                process.stdin.flush()
            assert select.select([process.stdout], [], [], 30)[0], "nothing is printed while input is awaited"
            assert process.communicate()[0].decode() == expected, options
        with open("/dev/full", "w") as full:
            command = [*program, "forward", "systems.ini", "--jobs", jobs]
            assert subprocess.run(command, input=b"52 5\n", stdout=full, stderr=-3).returncode == 2

# Threads keep the order of lines and messages, and an overlong line is a failed point in its place.
lines = [f"{i % 91}.5 {i % 7} p{i}" for i in range(60000)]
lines[30000] = "x" * 1500000
one, three = (run(["forward", "systems.ini", "--jobs", jobs], "\n".join(lines)) for jobs in ("1", "3"))
assert one == three
names = [line.split()[-1] if i != 30000 else "*" for i, line in enumerate(lines)]
assert [line.split()[-1] for line in one[1].splitlines()] == names
assert "standard input:30001: the line is too long\n" in one[2]

# The parser knows what the help of a command names.
for command in "info", "check", "list", "template", "forward", "inverse", "convert", "scale", "factors", "undulation", "ecef", "distance", "fit":
    options = re.findall(r"^  (?:-\w, )?(--[\w-]+)", run([command, "--help"], "")[1], re.M)
    assert len(options) > 1, (command, options)
    for option in options:
        assert "not expected" not in run([command, "nothing.ini", option], "")[2], (command, option)

# Output that cannot be written is a failure of every command.
if os.path.exists("/dev/full"):
    for command in ("--help", "--version", "info --help", "info systems.ini", "forward systems.ini"):
        with open("/dev/full", "w") as full:
            done = subprocess.run([*program, *command.split()], input=b"52 5\n" * 9999, stdout=full, stderr=subprocess.PIPE)
        assert done.returncode == 2 and b"standard output: " in done.stderr, (command, done)

# A configuration file that is not a regular file is reported and never blocks; a file with many sections is searched completely.
if len(program) == 1:  # Windows has none in its folders
    os.mkfifo(install.name + "/fifo")
    assert run(["info", install.name + "/fifo"], "")[2].endswith("fifo: is not a regular file\n")
assert run(["info", "."], "")[2].endswith(": is a directory\n")
# Each section of a large file is opened correctly, though from a copy.
system = "Projection=SMERC\nFlattening=298\nFalseEasting="
open(install.name + "/many.ini", "w").write("".join(f"[S{i}]\n{system}{i}\n[S{i}]\n{system}9\n" for i in range(700)))
status, output, messages = run(["info", install.name + "/many.ini"] if len(program) == 1 else ["--version"], "")
assert len(program) > 1 or re.findall(r"easting (\d+),", output) == [str(i) for i in range(700)], output[-400:]
for size, section, expected in ((1 << 24, "Last", 0), ((1 << 24) + 1, "Last", 2)) if len(program) == 1 else ():
    text = "".join(f"[S{i}]\n" for i in range(60000)) + "[Last]\nProjection=SMERC\nFlattening=298\n"
    open(install.name + "/many.ini", "w", newline="\n").write(text.ljust(size, ";"))
    status, output, messages = run(["check", install.name + "/many.ini", "-s", section], "")
    assert status == expected and not messages and not output, (status, messages)
