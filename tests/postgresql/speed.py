"""The functions beside PostGIS's ST_Transform of the same system, UTM zone 31, on the same rows.   speed.py SCRATCH ROWS

Each query runs in turn, five times, in one process. Measured is the processor time of the server's process, so a busy
machine matters little; "less reading" is without that of the query that only reads the column. Fails below the smallest
ratio of a row.
"""
import statistics, sys

import psycopg2

scratch, count = sys.argv[1], int(sys.argv[2])
connection = psycopg2.connect(host=f"{scratch}/run", user="admin", dbname="regression")
connection.autocommit = True
cursor = connection.cursor()
pid = connection.get_backend_pid()

UTM = "latigo_forward('Utm31', latitude, longitude)"
PROJ = "ST_Transform(place, 32631)"
MADE = "ST_Transform(ST_SetSRID(ST_MakePoint(longitude, latitude), 4326), 32631)"
# Title, ours, PostGIS's, the column that both read, the smallest ratios: of the whole query, and less reading.
ROWS = [
    ("point to point", "count(latigo_forward('Utm31', place, 32631))", f"count({PROJ})", "count(place)", 1.5, 2),
    ("numbers to x and y", f"sum(({UTM}).x) + sum(({UTM}).y)", f"sum(ST_X({MADE})) + sum(ST_Y({MADE}))", "sum(latitude) + sum(longitude)", 3, 3),
    ("numbers to a row, or a point", f"count({UTM})", f"count({MADE})", "count(latitude)", 2, 3),
    ("grid to position", "count(latigo_inverse('Utm31', grid, 4326))", "count(ST_Transform(grid, 4326))", "count(grid)", 1.5, 2),
]


def run(select):
    """The processor time of a query, seconds, and its result."""
    spent = lambda: int(open(f"/proc/{pid}/schedstat").read().split()[0]) / 1e9
    before = spent()
    cursor.execute(f"SELECT {select} FROM speed")
    return spent() - before, cursor.fetchone()[0]


cursor.execute("CREATE EXTENSION IF NOT EXISTS postgis; CREATE EXTENSION IF NOT EXISTS latigo_postgis")
cursor.execute("SET max_parallel_workers_per_gather = 0; SET jit = off; CREATE TEMP TABLE speed AS SELECT latitude, longitude,"
               " ST_SetSRID(ST_MakePoint(longitude, latitude), 4326) AS place,"
               " ST_Transform(ST_SetSRID(ST_MakePoint(longitude, latitude), 4326), 32631) AS grid"
               " FROM (SELECT 40 + 10 * random() AS latitude, 6 * random() AS longitude FROM generate_series(1, %s)) AS t", [count])
cursor.execute("SELECT max(ST_Distance(latigo_forward('Utm31', place, 32631), grid)) FROM speed")
assert cursor.fetchone()[0] < 1e-4, "not the same system"
print(f"| {count} rows | ns a row | ST_Transform | ratio | less reading |\n|---|---|---|---|---|")
slow = []
for title, ours, theirs, reading, whole, net in ROWS:
    times = [[], [], []]
    for _ in range(5):
        results = [run(select) for select in (ours, theirs, reading)]
        for time, result in zip(times, results):
            time.append(result[0])
        assert abs(results[0][1] - results[1][1]) <= 1e-9 * abs(results[1][1]), results
    a, b, c = map(statistics.median, times)
    print(f"| {title} | {a / count * 1e9:.0f} | {b / count * 1e9:.0f} | {b / a:.1f} | {(b - c) / (a - c):.1f} |")
    if not (b / a >= whole and (b - c) / (a - c) >= net):
        slow.append(title)
if slow:
    sys.exit(f"slower than claimed: {', '.join(slow)}")
