"""What the transcripts cannot show of the program's sections, templates and files.   habits_test.py [EMULATOR...] PROGRAM"""
import glob, os, re, resource, subprocess, sys, tempfile

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
listed = re.findall(r"^(\w+) ", run("template")[1], re.M)
assert len(rows) == 32 and len(listed) == 13 and set(map(str.upper, listed)) <= set(map(str.upper, keywords)), listed
names = set()
for kind in [*keywords, "utm 1N", "utm 31n", "Utm 55S", "UTM 60s"]:
    status, text, messages = run("template", *kind.split())
    if kind == "UTM":
        continue
    assert status == 0 and not messages, (kind, messages)
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

assert run("forward", "template.ini", "--section", "")[::2] == (2, "latigo: --section: the name is empty\n")

# Listing takes time in proportion to the file.
def seconds(sections):
    write("many.ini", "".join(f"[S{i}]\n; System {i}\nProjection=SMERC\nFlattening=298\n[T{i}]\n" for i in range(sections // 2)))
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    status, text, messages = run("list", "many.ini", "s")
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    assert status == 0 and text.count("\n") == sections // 2 and text.endswith(f"  System {sections // 2 - 1}\n"), text[-100:]
    return after.ru_utime - before.ru_utime

if len(program) == 1:
    assert seconds(60000) < 0.05 + 8 * seconds(15000)
