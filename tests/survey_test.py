"""Converts the survey files of transcripts/survey and compares every byte.   survey_test.py [EMULATOR...] PROGRAM"""
import os, shlex, subprocess, sys

program = [*sys.argv[1:-1], os.path.realpath(sys.argv[-1])]
os.chdir(os.path.dirname(os.path.realpath(__file__)) + "/transcripts/survey")


def run(arguments, data):
    done = subprocess.run([*program, *arguments], input=data, capture_output=True)
    return done.returncode, done.stdout, done.stderr.decode()


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
    assert messages.startswith("latigo: standard input:11999: column 1: the quote"), messages

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
