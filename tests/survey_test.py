"""Converts the survey files of transcripts/survey and compares every byte.   survey_test.py [EMULATOR...] PROGRAM"""
import os, shlex, subprocess, sys, tempfile

program = [*sys.argv[1:-1], os.path.realpath(sys.argv[-1])]
os.chdir(os.path.dirname(os.path.realpath(__file__)) + "/transcripts/survey")


def run(arguments, data):
    done = subprocess.run([*program, *arguments], input=data, capture_output=True)
    return done.returncode, done.stdout, done.stderr.decode().replace("\r\n", "\n")


cases = [line.rstrip("\n").split(": ", 1) for line in open("cases.txt", encoding="utf-8")]
assert len(cases) == 20, cases
for name, command in cases:
    data, expected = (open(folder + name, "rb").read() for folder in ("", "expected/"))
    first, *arguments = shlex.split(command)
    for more in (), ("--jobs", "2"):
        status, output, messages = run([first, "survey.ini", *arguments, *more], data)
        assert (status, output, messages) == (0, expected, ""), (name, status, output, expected, messages)

# Line breaks inside quoted fields, also where one read of the file ends.
rows = [f'{i},"52","5","first\nsecond, ""{i}""\r\n"\r\n'.encode() for i in range(20000)]
rows[4000:4000] = rows[9000:9000] = [b'"unclosed\r\n', b'12" pipe,52,5\r\n']
rows[100] = b'1,52,5\n'
for more in (), ("--jobs", "2"):
    status, output, messages = run(["forward", "survey.ini", "-s", "UTM31", "--columns", "2,3", "--append", *more], b"".join(rows))
    expected = b"".join(row.rstrip(b"\r\n") + (b",*,*" if row.startswith(b'"u') else b",637294.3659,5762926.8129") + (b"\n" if row is rows[100] else b"\r\n")
                        for row in rows)
    assert (status, output) == (1, expected) and messages.count("\n") == 2, (messages, output[:300])
    assert messages.startswith("latigo: standard input:11999: column 1: \"\"unclosed\": the quote"), messages

# A quote that is not closed for long, or never, is a fault of its line alone.
for count in 3, 20000:
    status, output, messages = run(["forward", "survey.ini", "-s", "UTM31", "--columns", "2,3", "--precision", "0"],
                                   b'"x,52.0,5\n' + b"1,52.0,5\n" * count)
    assert (status, output, messages.count("\n")) == (1, b'*,"x,52.0,5\n' + b"1,637294,5762927\n" * count, 1), (output[:99], messages)

# What is no text of bytes is refused by name, or line by line.
for data in "52 5\n".encode("utf-16"), "\n52 5".encode("utf-16-le"), "52 5\n".encode("utf-16-le"), "52 5\n".encode("utf-16-be"):
    for more in (), ("--columns", "1,2"):
        status, output, messages = run(["forward", "survey.ini", "-s", "UTM31", *more], data)
        assert status == 2 and not output and "UTF-16" in messages, (data, status, output, messages)
status, output, messages = run(["forward", "survey.ini", "-s", "UTM31"], b"52 5 a\r53 5 b\r54 5\n52 3\r\n")
assert status == 1 and output.startswith(b"* *") and output.endswith(b"\r\n") and ":1: " in messages, (output, messages)
for data, line in (b"\n\r52.0 5.0", "\\x0D52.0 5.0"), (b"\r\n52.0 5.0 a\rb", "52.0 5.0 a\\x0Db"), (b"\n52.0 5.0\r\r", "52.0 5.0\\x0D"):
    status, output, messages = run(["forward", "survey.ini", "-s", "UTM31", "--precision", "0"], b"52.0 5.0" + data + b"\n52.0 5.0\r\n")
    assert status == 1 and output.split()[:4] == [b"637294", b"5762927", b"*", b"*"] and output.endswith(b"\n637294 5762927\r\n"), output
    assert messages.startswith(f'latigo: standard input:2: "{line}": a carriage return inside the line') and messages.count("\n") == 1, messages

# Carriage returns alone hide lines behind a comment or a header too, in every command that reads lines.
for options, first in ([], b"# a"), (["--columns", "1,2"], b"lat,lon"), (["--columns", "1,2", "--header", "no"], b"52.0,5.0,a"):
    for last in b"", b"\n":
        status, output, messages = run(["forward", "survey.ini", "-s", "UTM31", *options], first + b"\r52.0,5.0,b\r53.0,5.0,c" + last)
        assert status == 1 and output.endswith(b"\r53.0,5.0,c\n") and b"easting" not in output and ":1: " in messages, (first, output, messages)
for command, row in ("fit", b"1,2,3,4,A"), ("map --points -", b"52.0,5.0,A"), ("map --columns 1,2,3 --points -", b"52.0,5.0,A"):
    first, *options = command.split()
    for text in row + b"\r" + row + b"\n" + row, b"# a\r" + row + b"\n" + row + b"\n" + row:
        status, output, messages = run([first, "survey.ini", "-s", "UTM31", "--separator", "comma", *options], text)
        assert status and "standard input:1: " in messages and "a carriage return inside the line" in messages, (command, text, messages)

# A carriage return ends a line with a line feed only; and in the header, as in other records.
FORWARD = ["forward", "survey.ini", "-s", "UTM31"]
GOOD = b"637294.3659 5762926.8129"
assert run(FORWARD, b"52 5\r") == (0, GOOD + b"\n", "")
assert run(FORWARD, b"52 5\r\n\r\n52 5") == (0, GOOD + b"\r\n\r\n" + GOOD + b"\r\n", "")
assert run([*FORWARD, "--columns", "lat,lon"], b'"N,o\r\n1",lat,lon\r\n"a\r\nb",52.0,5.0\r\n') == \
    (0, b'"N,o\r\n1",easting,northing\r\n"a\r\nb",' + GOOD.replace(b" ", b",") + b"\r\n", "")

# Rows that are refused, each alone in its file: texts of 60 bytes are shown, angles have up to 80, and tables 10000 columns.
for options, row, message in [
    ("", "x", 'column 2: "x": a field is missing'), ("", "52.0,10 9", 'column 2: "10 9": degrees and minutes, or'),
    ("", "52 30 0N 5", 'column 1: "52 30": degrees, minutes and seconds'), ("", "52 5.0 inf", 'column 3: "inf": not a number'),
    ("", "52 5.0 -inf", 'column 3: "-inf": not a number'), ("", "52 5.0 +-1", '"+-1": not a number'),
    ("--columns 1,2,3", "52.0,5.0,1e999", '"1e999": not a number'),
    ("", "52:30-00 5", '"52:30-00": not an angle'), ("", "5 -3E", "both a sign and"), ("", "5 E3E", "two hemisphere letters"),
    ("", "5 360.1", "a longitude above"), ("", ". 5", '".": not a number'), ("", "5 --3", '"--3": not a number'),
    ("", "x" * 60 + " 5", f'"{"x" * 60}": not a number'), ("", "x" * 61 + " 5", f'"{"x" * 60}...": not a number'),
    ("--columns 2,3", "x", 'column 2: "x": a field is missing'), ("--dms-columns", "52;;0;5;0;0.0", "column 2: the field is empty"),
    ("--columns 1,10000 --separator comma", "52.0,5.0", 'column 10000: "52.0,5.0": a field is missing'),
    ("--columns 10001,2", "", "10001 is not between 1 and 10000"),
    ("--columns 1,2,3 --dms-columns", "", "height (optional), and of each angle 2 to 4 columns"),
    ("--dms-columns", f"52;0;0.{'0' * 74};5;0;0.0", "the text is too long for an angle"),
    ("--decimal-comma --separator semicolon", f"52,{'0' * 78};5,0", f'"52,{"0" * 57}...": the text is too long for a number')]:
    status, output, messages = run([*FORWARD, *options.split()], row.encode())
    assert status and message in messages and messages.count("\n") == 1, (options, row, messages)
    assert options != "--columns 2,3" or output == b"x\t*\t*\n", output  # the first separator, if none gives a point
for options, row in ("--dms-columns", f"52;0;0.{'0' * 73};5;0;0.0"), ("--decimal-comma --separator semicolon", f"52,{'0' * 77};5,0"):
    assert run([*FORWARD, *options.split()], row.encode())[::2] == (0, ""), row

# Words above the chosen columns are a header; angles with letters, words for missing values and other texts are none.
for first in b"a;z", b"A;Z", b"\x80;\x80":
    assert run([*FORWARD, "--header", "auto"], first + b"\n52.0;5.0")[:2] == (0, b"easting;northing\n" + GOOD.replace(b" ", b";") + b"\n"), first
for first in b"9N;9E", b"0N;0E", b"-;-", b"nan;n/a", b"N5;N5", b"E5;E5", b"-5N;-5N", b".5N;.5N":
    output = run([*FORWARD, "--header", "auto"], first + b"\n52.0;5.0")[1]
    assert output.endswith(b"\n" + GOOD.replace(b" ", b";") + b"\n") and b"northing" not in output, (first, output)

# A record with line breaks has at most 65536 bytes with its end; a line less than a mebibyte. Messages have 200 bytes of it.
for length, end, whole in (65535, b"\n", 1), (65536, b"\n", 0), (65536, b"", 1), (65537, b"", 0):
    output = run([*FORWARD, "--columns", "2,3"], b'"a\nb",52.0,5.0,'.ljust(length, b"x") + end)[1]
    assert output == (b"" if whole else b"*,") + b'"a\nb",' + GOOD.replace(b" ", b",") + b",".ljust(length - 14, b"x") + b"\n", (length, output[:60])
with tempfile.TemporaryDirectory() as folder:
    for options, first, length in ([], b"", (1 << 20) - 1), ([], b"", 1 << 20), (["--columns", "1,2", "--header", "no"], b"x y\n", 1500000):
        with open(folder + "/long.txt", "wb") as file:
            file.write(first + b"52 5 ".ljust(length, b"x") + b"\n52 5\ny 5\n")
        status, output, messages = run([*FORWARD, *options, folder + "/long.txt"], b"")
        lines = output.split(b"\n")[len(first) // 4:]
        assert lines[0][:4] == (b"* " if first else b"* *" if length >> 20 else b"6372") and lines[1:] == [GOOD, b"* *", b""], lines[1:]
        assert messages.count("too long") == length >> 20 and f":{3 + len(first) // 4}: column 1: \"y\"" in messages, messages
for first, reason in (b"52 5 12,5,", "--separator decides"), (b"52,0,5,0,", "--decimal-comma decides"):
    line = first.ljust(201, b"x")
    assert run([*FORWARD, "--header", "no"], line)[2].endswith(f'{reason}: "{line[:200].decode()}"\n')

# Characters that change how a terminal shows a text, and bytes that are no characters, are shown as bytes.
plain = [c.encode() for c in "\x7e\xa0\u061b\u061d\u0800\u200d\u2010\u2027\u202f\u2065\u206a\ud7ff\ue000\U00010000\U0010ffff"]
hidden = [c.encode("utf-8", "surrogatepass") for c in "\x01\x1f\x7f\x80\x9f\u061c\u200e\u200f\u2028\u2029\u202a\u202e\u2066\u2069\ud800\udfff"]
hidden += b"\xc1\xbf", b"\xe0\x9f\xbf", b"\xf0\x8f\xbf\xbf", b"\xf4\x90\x80\x80", b"\xf8\x90\x80\x80", b"\x9b\x80", b"\xc3"
messages = run(FORWARD, b"".join(b"x" + part + b"y 5\n" for part in plain + hidden))[2].split("\n")
for part, message in zip(plain + hidden, messages):
    shown = part.decode() if part in plain else "".join(f"\\x{byte:02X}" for byte in part)
    assert f'"x{shown}y": not a number' in message, (part, message)
