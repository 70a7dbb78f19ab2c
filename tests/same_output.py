"""Compares the output of two builds of the command-line program: equal on all examples, nearly equal with all digits.
same_output.py PROJECT PROGRAM -- EMULATOR... PROGRAM

Prints how many numbers differ, and the largest difference: relative to the number, or to 1 if it is smaller."""
import glob, os, re, subprocess, sys

os.chdir(sys.argv[1] + "/examples")
one, other = sys.argv[2:3], sys.argv[4:]
NUMBER = re.compile(r"-?\d+\.\d+")
count = differ = worst = 0
place = ""


def run(program, arguments, text=""):
    done = subprocess.run([*program, *arguments], input=text.encode(), capture_output=True)
    return done.stdout.decode(), done.stderr.decode().replace("\r", ""), done.returncode


def compare(arguments, text=""):
    global count, differ, worst, place
    left, right = run(one, arguments, text), run(other, arguments, text)
    assert NUMBER.sub("#", left[0]) == NUMBER.sub("#", right[0]) and left[1:] == right[1:], (arguments, left, right)
    assert "--precision" in arguments or left == right, (arguments, left, right)
    for a, b in zip(NUMBER.findall(left[0]), NUMBER.findall(right[0])):
        count += 1
        if a != b:
            off = abs(float(a) - float(b)) / max(abs(float(a)), 1)
            differ += 1
            if off > worst:
                worst, place = off, f"{' '.join(arguments)}: {a} and {b}"
    return left[0]


for path in sorted(glob.glob("*.ini")):
    for language in ("eng", "fra", "esp"):
        compare(["info", path, "--lang", language])
for path in sorted(glob.glob("*.pts")):
    head = dict(re.findall(r"^# (\w+): (.*)$", open(path, encoding="utf-8").read(), re.M))
    system, section = head["system"].split()
    named = [system, "-s", section, *head.get("options", "").split()]
    grid = compare(["forward", *named, path])
    compare(["inverse", *named], grid)
    compare(["scale", *named, path])
    compare(["ecef", system, "-s", section, path])
    # All digits of a lattice of 400 points 10 km apart around the first.
    x, y = (float(word) for word in re.search(r"^[^#].*$", grid, re.M)[0].split()[:2])
    lattice = "".join(f"{x + (i % 20 - 10) * 1e4} {y + (i // 20 - 10) * 1e4}\n" for i in range(400))
    compare(["forward", *named, "--precision", "9"], compare(["inverse", *named, "--precision", "15"], lattice))
assert worst < 1e-12, (worst, place)
print(f"{count} numbers, {differ} differ, the most by {worst:.1e} ({place})")
