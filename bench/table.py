"""Prints the tables of a run of latigo-bench.

table.py FILE            the library beside floors and peers, the worst rows first
table.py --against FILE  two builds of the library; ends with status 1 and names the rows on the last line if a row is
                         slower than SLOWER times the other build's
"""
import json
import statistics
import sys

FLOOR_RATIO = 1.25     # the bar of a row
SHORT_ROW = 20         # ns; below it the bar is a difference
SHORT_ROW_EXCESS = 8   # ns
SLOWER = 1.1


def read_rows(path):
    """{row: {counter: median over the repetitions}}, in the order of the file."""
    with open(path, encoding="utf-8") as file:
        runs = json.load(file)["benchmarks"]
    known = ("ns", "ratio", "target", "free", "one", "two", "speedup", "part", "least")
    values = {}
    for run in runs:
        if run["run_type"] != "iteration":
            continue
        row = values.setdefault(run["run_name"].split("/")[0], {})
        for key, value in run.items():
            if key.split()[0] in known:
                row.setdefault(key, []).append(value)
    return {name: {key: statistics.median(v) for key, v in row.items()} for name, row in values.items()}


def under(row, kind):
    """{contestant: value} of the counters "KIND CONTESTANT"."""
    return {key.split(" ", 1)[1]: value for key, value in row.items() if key.startswith(kind + " ")}


def limits_taken(row):
    """{limit: ratio of the row to it}; above 1 the row exceeds the limit."""
    ratios = under(row, "ratio")
    taken = {name: ratios[name] / target for name, target in under(row, "target").items() if name in ratios}
    if "part" in row:
        taken["floor"] = row["least part"] / row["part"]
    elif "ns floor" in row and "free floor" not in row:
        if row["ns floor"] < SHORT_ROW:
            taken["floor"] = (row["ns latigo"] - row["ns floor"]) / SHORT_ROW_EXCESS
        else:
            taken["floor"] = row["ratio floor"] / FLOOR_RATIO
    return taken


def number(value, digits):
    return "" if value is None else f"{value:.{digits}f}"


def print_table(heads, lines):
    widths = [max(len(line[i]) for line in [heads] + lines) for i in range(len(heads))]
    for line in [heads, ["-" * width for width in widths]] + lines:
        print("| " + " | ".join(cell.ljust(width) if i == 0 else cell.rjust(width)
                                for i, (cell, width) in enumerate(zip(line, widths))) + " |")


def worst_first(rows):
    return sorted(rows.items(), key=lambda item: -max(limits_taken(item[1]).values(), default=0))


def verdict(row):
    return ", ".join(f"{name} {part:.2f}" for name, part in sorted(limits_taken(row).items(), key=lambda item: -item[1])
                     if part > 1)


def print_rows(rows):
    peers = sorted({name for row in rows.values() for name in under(row, "ratio")} - {"floor"},
                   key=lambda name: (not name.lower().startswith("proj"), name))
    lines = []
    for name, row in worst_first(rows):
        ratios = under(row, "ratio")
        lines.append([name, number(row["ns latigo"], 1), number(row.get("ns floor"), 1), number(ratios.get("floor"), 2)]
                     + [number(ratios.get(peer), 3) for peer in peers]
                     + [number(ratios["PROJ"] / ratios["floor"] if {"PROJ", "floor"} <= ratios.keys() else None, 3),
                        ", ".join(f"{target:.2f} {peer}" for peer, target in under(row, "target").items()),
                        verdict(row)])
    print_table(["row", "ns", "floor ns", "/ floor"] + ["/ " + peer for peer in peers]
                + ["floor / PROJ", "target", "over by"], lines)


def print_threads(rows):
    print_table(["row", "one thread ns", "two threads ns", "speed-up", "floor's", "part of it", "target", "over by"],
                [[name, number(row["one latigo"], 1), number(row["two latigo"], 1),
                  number(row["speedup latigo"], 2), number(row["speedup floor"], 2), number(row["part"], 2),
                  number(row["least part"], 2), verdict(row)] for name, row in worst_first(rows)])


def compare_builds(rows):
    slower = []
    lines = []
    for name, row in sorted(rows.items(), key=lambda item: -item[1].get("ratio other", 0)):
        ratio = row.get("ratio other")
        if ratio is not None and ratio > SLOWER:
            slower.append(name)
        lines.append([name, number(row.get("ns latigo"), 1), number(row.get("ns other"), 1), number(ratio, 3),
                      "not in the other build" if ratio is None else "slower" if ratio > SLOWER else ""])
    print_table(["row", "ns", "other ns", "/ other", ""], lines)
    print(f"\n{len(rows)} rows, {len(slower)} slower than {SLOWER} times the other build" +
          (":\n" + "|".join(slower) if slower else ""))
    return 1 if slower else 0


def main():
    rows = read_rows(sys.argv[-1])
    if sys.argv[1] == "--against":
        return compare_builds(rows)
    threads = {name: row for name, row in rows.items() if "part" in row}
    plain = {name: row for name, row in rows.items() if name not in threads}
    if plain:
        print_rows(plain)
    if plain and threads:
        print()
    if threads:
        print_threads(threads)
    missed = sum(1 for row in rows.values() if verdict(row))
    print(f"\n{len(rows)} rows, {missed} over a limit. Limits are the targets, and for a row with a floor "
          f"{FLOOR_RATIO} times the floor, or {SHORT_ROW_EXCESS} ns above a floor below {SHORT_ROW} ns.")
    return 0


sys.exit(main())
