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

# What is no text of bytes is refused by name, or line by line.
for data in "52 5\n".encode("utf-16"), "52 5\n".encode("utf-16-le"), "52 5\n".encode("utf-16-be"):
    for more in (), ("--columns", "1,2"):
        status, output, messages = run(["forward", "survey.ini", "-s", "UTM31", *more], data)
        assert status == 2 and not output and "UTF-16" in messages, (data, status, output, messages)
status, output, messages = run(["forward", "survey.ini", "-s", "UTM31"], b"52 5 a\r53 5 b\r54 5\n52 3\r\n")
assert status == 1 and output.startswith(b"* *") and output.endswith(b"\r\n") and ":1: " in messages, (output, messages)
