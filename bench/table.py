"""Prints the table of a run of latigo-bench.   table.py FILE"""
import json
import statistics
import sys

FLOOR_RATIO = 1.25     # the bar of a row
SHORT_ROW = 20         # ns; below it the bar is a difference
SHORT_ROW_EXCESS = 8   # ns


def read_rows(path):
    """{row: {counter: median over the repetitions}}, in the order of the file."""
    with open(path, encoding="utf-8") as file:
        runs = json.load(file)["benchmarks"]
    values = {}
    for run in runs:
        if run["run_type"] != "iteration":
            continue
        row = values.setdefault(run["run_name"].removesuffix("/manual_time"), {})
        for key, value in run.items():
            if key.split()[0] in ("ns", "ratio", "target", "free"):
                row.setdefault(key, []).append(value)
    return {name: {key: statistics.median(v) for key, v in row.items()} for name, row in values.items()}


def floor_excess(row):
    """How much of the bar a row takes: above 1 it misses it; None without a floor."""
    floor = row.get("ns floor")
    if floor is None or "free floor" in row:
        return None
    if floor < SHORT_ROW:
        return (row["ns latigo"] - floor) / SHORT_ROW_EXCESS
    return row["ratio floor"] / FLOOR_RATIO


def excess(row):
    """The largest part that a row takes of any of its limits."""
    parts = [row["ratio " + key.split(" ", 1)[1]] / value
             for key, value in row.items() if key.startswith("target ") and value > 0
             and "ratio " + key.split(" ", 1)[1] in row]
    bar = floor_excess(row)
    if bar is not None:
        parts.append(bar)
    return max(parts, default=0)


def number(row, key, digits):
    return f"{row[key]:.{digits}f}" if key in row else ""


def main():
    rows = read_rows(sys.argv[1])
    peers = sorted({key.split(" ", 1)[1] for row in rows.values() for key in row if key.startswith("ratio ")}
                   - {"floor"}, key=lambda name: (not name.startswith("PROJ"), name))
    heads = ["row", "ns", "floor ns", "/ floor"]
    for peer in peers:
        heads.append("/ " + peer)
    heads += ["floor / PROJ", "target", "limit taken"]
    lines = []
    missed = 0
    for name, row in sorted(rows.items(), key=lambda item: -excess(item[1])):
        targets = [f"{value:.2f} {key.split(' ', 1)[1]}" for key, value in row.items()
                   if key.startswith("target ") and value > 0]
        taken = excess(row)
        missed += taken > 1
        lines.append([name, number(row, "ns latigo", 1), number(row, "ns floor", 1), number(row, "ratio floor", 2)]
                     + [number(row, "ratio " + peer, 3) for peer in peers]
                     + [f"{row['ratio PROJ'] / row['ratio floor']:.3f}" if {"ratio PROJ", "ratio floor"} <= row.keys() else ""]
                     + [", ".join(targets), f"{taken:.2f}" + (" missed" if taken > 1 else "") if taken else ""])
    widths = [max(len(line[i]) for line in [heads] + lines) for i in range(len(heads))]
    for line in [heads, ["-" * width for width in widths]] + lines:
        print("| " + " | ".join(cell.ljust(width) if i == 0 else cell.rjust(width)
                                for i, (cell, width) in enumerate(zip(line, widths))) + " |")
    print(f"\n{len(rows)} rows, {missed} over a limit. A limit is the target, and the floor's bar: "
          f"{FLOOR_RATIO} times the floor, or {SHORT_ROW_EXCESS} ns above a floor below {SHORT_ROW} ns.")


main()
