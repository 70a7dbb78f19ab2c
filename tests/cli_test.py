"""The command-line program, run as its users do.   cli_test.py PROGRAM"""
import math, os, subprocess, sys, tempfile, unittest

PROGRAM = os.path.realpath(sys.argv.pop(1))
UTM = "Projection=UTM\nSemiMajorAxis=6378137\nFlattening=298.257223563\nCentralMeridian=3\nScaleFactor=0.9996\nFalseEasting=500000\n"
SYSTEMS = f"""[Geodesy]
{UTM}[Local]
{UTM}AdjustType=1
ReverseX=on
DeltaX=10
DeltaRX=-1.5
[Constant]
{UTM}OrthoHCorr=45.5
[Lambert]
Projection=LCC
SemiMajorAxis=6378137
Flattening=298.257223563
NorthParallel=45
SouthParallel=45
CentralMeridian=175
[Cassini]
Projection=CAS
SemiMajorAxis=6378137
Flattening=298.257223563
[Wrong]
Projection=Hotine
Flatening=298
[NoGeoid]
{UTM}Geoid=nothing.dat
"""


class CliTest(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.file = os.path.join(self.folder.name, "systems.ini")
        with open(self.file, "w") as file:
            file.write(SYSTEMS)

    def tearDown(self):
        self.folder.cleanup()

    def run_program(self, *arguments, text=""):
        done = subprocess.run([PROGRAM, *arguments], input=text.encode(), capture_output=True)
        return done.returncode, done.stdout.decode(), done.stderr.decode()

    def expect(self, command, text, output, status=0, message="", options=()):
        found = self.run_program(command, self.file, *options, text=text)
        self.assertEqual(found[:2], (status, output), (command, text, found[2]))
        self.assertIn(message, found[2])

    def test_points_in_every_notation(self):
        grid = "637294.3659 5762926.8129"
        for line in ("52 5", "  52.0\t+5.0", "52:00:00N 5:00:00E", "52°00'00\"N 5°E", "52:0.0n 5d0'0e"):
            self.expect("forward", line, grid + "\n")
            self.expect("forward", line + " 12 a  b\r\n", grid + " 12.0000 a  b\n")
        self.expect("forward", "52.0,5.0,x y", grid.replace(" ", ",") + ",x y\n")
        self.expect("forward", "52.0 , 5.0 , 7, x", grid.replace(" ", ",") + ",7.0000, x\n")
        self.expect("forward", "5 52\n", grid + "\n", options=["--lonlat"])
        self.expect("forward", "# note\n\n52 5", "# note\n\n" + grid + "\n")

    def test_lines_that_are_no_points_are_failed_points(self):
        for line, reason in (("foo bar", "not a number"), ("52", "too few"), ("52,5 1,5", "decimal mark"), ("6,5 60", "not a l"),
                             ("52,5,1,5", "decimal comma"), ("52 5,5", "not a longitude"), ("nan 5", "not a number"),
                             ("52 inf", "not a number"), ("52:60:00 5", "below 60"), ("52:00:60 5", "below 60"),
                             ("-52S 5", "a sign and"), ("52E 5", "not a latitude"), ("90.1 5", "beyond 90"),
                             ("52 5 1,5", "decimal mark"), ("52 5 nan", "not a number"), ("52: 5", "not a number"),
                             ("x" * 2000000, "too long")):
            status, output, message = self.run_program("forward", self.file, text=line + "\n52 5\n")
            self.assertEqual((status, output[:3], output.splitlines()[1]), (1, "* *" if "," not in line[:4] else "*,*", "637294.3659 5762926.8129"))
            self.assertIn("standard input:1: ", message)
            self.assertTrue(reason in message or reason == "decimal mark" and "not a" in message, (line, message))

    def test_points_that_fail_give_stars_and_the_others_come_out(self):
        self.expect("forward", "90 3 1 a\n52 5 b", "* * * a\n637294.3659 5762926.8129 b\n", 1, "standard input:1: code 6: the latitude is a pole")
        self.expect("inverse", "500000 1e7 x", "* * x\n", 1, "code 10: ")
        self.expect("inverse", "3e7 1e6 x", "* * x\n", 1, "beyond the pole", ["-s", "Cassini", "--dms"])
        self.expect("scale", "90 3 1", "* 1\n", 1, "code 6")
        self.expect("inverse", "500000 nan", "* *\n", 1, "not a number")
        self.expect("ecef", "1 2", "* * *\n", 1, "too few", ["--inverse"])

    def test_threads_keep_the_order_of_lines_and_messages(self):
        lines = [f"{i % 91}.5 {i % 7} p{i}" for i in range(60000)]
        lines[30000] = "x" * 1500000
        text = "\n".join(lines)
        one, three = (self.run_program("forward", self.file, "--jobs", jobs, text=text) for jobs in ("1", "3"))
        self.assertEqual(one, three)
        self.assertEqual([line.split()[-1] for line in one[1].splitlines()], [line.split()[-1] if i != 30000 else "*" for i, line in enumerate(lines)])
        self.assertIn("standard input:30001: the line is too long\n", one[2])

    def test_ways_back_and_other_commands(self):
        self.expect("inverse", "637294.3658945 5762926.8129141 p", "52:00:00.0000N 5:00:00.0000E p\n", options=["--dms", "--precision", "4"])
        self.expect("inverse", "637294.3658945,5762926.8129141", "5.00000000,52.00000000\n", options=["--lonlat", "--precision", "8"])
        self.expect("scale", "52 5 7 p", "0.9998314066 7 p\n")
        self.expect("scale", "52 5", "0.9998314066\n", options=["-s", "Local"])
        self.expect("scale", "637294.3658945 5762926.8129141", "0.9998314066\n", options=["-s", "Local", "--grid"])
        self.expect("forward", "52 5", "-637294.366 5762926.813\n", options=["-s", "local", "--precision", "3"])
        self.expect("forward", "52 5 100", "637294.4 5762926.8 54.5\n", options=["-s", "Constant", "--precision", "1"])
        self.expect("inverse", "500000 0 54.5", "0.0 3.0 100.0\n", options=["-s", "Constant", "--precision", "1"])
        self.expect("undulation", "52 5", "45.5000\n", options=["-s", "Constant"])
        self.expect("ecef", "0 90 1", "0.0000 6378138.0000 0.0000\n")
        self.expect("ecef", "0 -6378138 0", "0.0 -90.0 1.0\n", options=["--inverse", "--precision", "1"])
        there = self.run_program("forward", self.file, "-s", "Local", "--wgs84", text="52 5 100")[1]
        back = self.run_program("inverse", self.file, "-s", "Local", "--wgs84", text=there)[1].split()
        for found, start in zip(back, (52, 5, 100)):
            self.assertAlmostEqual(float(found), start, 2 if start == 100 else 8)

    def test_distances(self):
        radians = "28.6478897565412 5.72957795130823 34.3774677078494 17.1887338539247"
        status, output, _ = self.run_program("distance", self.file, text=radians + " 7 p\n" + radians.replace(" ", ","))
        first, second = output.splitlines()
        self.assertEqual((status, first[:14], first[-4:], second[:14]), (0, "1259077.9628 m", " 7 p", "1259077.9628,m"))
        self.assertAlmostEqual(float(first.split()[2]), math.degrees(0.9916745687851795), 9)
        self.expect("distance", "0 179 0 -179", self.run_program("distance", self.file, text="0 -1 0 1")[1])
        self.expect("distance", "10 0 10 1 x", "109639.3641 m 90:00:00.000000 x\n", options=["--rhumb", "--dms"])
        self.expect("distance", "10 0 10", "* *\n", 1, "too few")

    def test_longitudes_are_taken_the_near_way_round(self):
        east, west = (self.run_program("forward", self.file, "-s", "Lambert", text=f"45 {d}")[1] for d in (185, -175))
        self.assertEqual(east, west)
        x, y = map(float, west.split())
        self.assertTrue(780000 < x < 800000)
        self.expect("inverse", west, "45.000000 -175.000000\n", options=["-s", "Lambert", "--precision", "6"])

    def test_wrong_files_sections_and_arguments_are_one_line_and_status_2(self):
        for arguments, message in ((["forward"], "FILE"), (["forward", "nothing.ini"], "nothing.ini: No such file"), ([], "subcommand"),
                                   (["forward", self.file, "-s", "Q"], "no section Q; it has Geodesy, Local"),
                                   (["forward", self.file, "-s", "NoGeoid"], "datum\\nothing.dat"),
                                   (["forward", self.file, "nothing.txt"], "nothing.txt: No such file"),
                                   (["forward", self.file, self.folder.name], "Is a directory"),
                                   (["forward", self.file, "--precision", "-1"], "precision"), (["info", self.file, "--lang", "deu"], "lang"),
                                   (["info", self.folder.name], "no section")):
            status, output, found = self.run_program(*arguments)
            self.assertEqual((status, output, found.count("\n")), (2, "", 1), (arguments, found))
            self.assertIn(message, found)

    def test_info_tells_every_section_and_what_is_wrong_with_it(self):
        status, output, message = self.run_program("info", self.file, "--lang", "fra")
        self.assertEqual(status, 1)
        for text in ("transverse Mercator (TME)", "WGS-84", "mètre, mètres (m)", "ouest (Y), nord (Y)", "coordinate frame rotation, not position vector",
                     "dX 10, dY 0, dZ 0 m", "rX -1.5,", "X reversed", "constant 45.5"):
            self.assertIn(text, output)
        for text in ("[Wrong]: warning: nobody reads the key Flatening; the nearest known key is Flattening",
                     "[Wrong]: code 5: the projection is missing or unknown (Projection=Hotine)", "[NoGeoid]: warning: code 9"):
            self.assertIn(text, message)
        self.assertEqual(self.run_program("info", self.file, "-s", "Wrong")[0], 2)


unittest.main()
