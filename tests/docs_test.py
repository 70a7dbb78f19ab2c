"""The reference pages agree with the tables in the source.   docs_test.py PROJECT"""
import re, sys

root = sys.argv[1]
read = lambda name: open(f"{root}/{name}", encoding="utf-8").read()

keys = re.findall(r'^ +\{"(\w+)", +(?:PARAMS|DIFF|ADJUST|OTHER)', read("src/frame/config_keys.cpp"), re.M)
listed = re.findall(r"^\| `(\w+)` \|", read("docs/configuration.md").split("## Projections")[0], re.M)
assert len(keys) == 32 and sorted(keys) == sorted(listed), set(keys) ^ set(listed)

errors = re.findall(r'LATIGO_ERROR\(\w+, \w+, (\d+), "(.*?)", "(.*?)"\)', read("resources/errors.def"))
rows = re.findall(r"^\| (\d+) \| (.*?) \| (.*?)(?:[:;].*)? \|$", read("docs/errors.md").split("## What")[0], re.M)
page = {(number, text) for number, _, text in rows}
assert len(errors) == 18
for number, functions, text in errors:
    assert (number, text) in page, (number, text)
assert len(rows) == len(errors) + 1  # and the row of 0

kinds = re.findall(r'^LATIGO_KIND\(\w+, +(\w+), +(\d+), +"\w+", +"(.*?)", +(.*?)\)$', read("resources/kinds.def"), re.M)
header = read("include/latigo/latigo.h")
texts = re.findall(r'[{]LATIGO_ERROR_(\w+),\s+(".*?"),\s+(".*?")[}]', read("include/latigo/latigo_errors.h"))
assert texts[1:] == re.findall(r'LATIGO_ERROR\(\w+, (\w+), \d+, (".*?"), (".*?")\)', read("resources/errors.def"))
names = re.findall(r"LATIGO_KIND_(\w+) = (\d+)", header)
assert sorted(re.findall(r"LATIGO_ERROR_(\w+ = [1-9]\d*)", header)) == sorted(
    f"{name} = {number}" for name, number in re.findall(r"LATIGO_ERROR\(\w+, (\w+), (\d+)", read("resources/errors.def")))
rows = re.findall(r"^\| (`.*?`) \| (\d+) \| (.*?) \|$", read("docs/configuration.md"), re.M)
assert len(kinds) == 12 and [kind[:2] for kind in kinds] == names
assert [(keywords.replace('"', "`"), number) for _, number, _, keywords in kinds] == [row[:2] for row in rows]
assert all(row[2].startswith(kind[2]) for row, kind in zip(rows, kinds))
