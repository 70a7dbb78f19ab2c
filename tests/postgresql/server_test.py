"""What pg_regress cannot see: open files, processes, parallel plans, changing files, the program's answers.
   server_test.py SCRATCH BUILD

The server listens in SCRATCH/run, its configuration files are SCRATCH/systems, its grid files SCRATCH/grids/datum, and
its library's log lines SCRATCH/library.log. Its processes are readable: they belong to the caller, or the caller is root.
"""
import os, pathlib, random, re, subprocess, sys, threading, time

import psycopg2
import systems

scratch, build = map(pathlib.Path, sys.argv[1:])
root = pathlib.Path(__file__).parents[2]
GRIDS = str(scratch / "grids")


def connect(user="plain"):
    connection = psycopg2.connect(host=scratch / "run", user=user, dbname="regression")
    connection.autocommit = True
    return connection


def rows(connection, query, *arguments):
    with connection.cursor() as cursor:
        cursor.execute(query, arguments or None)
        return cursor.fetchall() if cursor.description else None


def one(connection, query, *arguments):
    return rows(connection, query, *arguments)[0][0]


def fails(connection, query, text):
    try:
        rows(connection, query)
    except psycopg2.Error as failure:
        assert text in str(failure), (query, str(failure))
        return
    raise AssertionError(f"no error: {query}")


def open_grids(pid):
    """The grid files that a process has open."""
    names = []
    for entry in os.scandir(f"/proc/{pid}/fd"):
        try:
            names.append(os.readlink(entry.path))
        except FileNotFoundError:
            pass
    return [name for name in names if name.startswith(GRIDS)]


def closings(pid):
    """How often the last handle of a process was closed, by the library's log."""
    return (scratch / "library.log").read_text().count(f"[{pid:x}] LATIGO - last instance")


def wait_until(condition, what):
    for _ in range(200):
        if condition():
            return
        time.sleep(0.05)
    raise AssertionError(what)


def replace(path, content):
    """Replaces a file as an administrator should: in one step."""
    new = path.with_suffix(".new")
    new.write_bytes(content)
    new.chmod(0o644)
    new.rename(path)


def degrees(text):
    sign = -1 if text[-1] in "SW" or text.startswith("-") else 1
    parts = [float(part) for part in text.strip("NSEW-").split(":")]
    return sign * sum(part / 60**i for i, part in enumerate(parts))


def stations():
    """The published stations of examples/, within the tolerance of each file."""
    connection, count = connect(), 0
    for path in sorted(root.glob("examples/*.pts")):
        text = path.read_text()
        section = re.search(r"^# system: \S+ (\S+)", text, re.M)[1]
        tolerance = float(re.search(r"^# tolerance: ([0-9.]+) mm", text, re.M)[1]) / 1000
        wgs84 = "--wgs84" in text
        for line in text.splitlines():
            fields = line.split()
            if not fields or line.startswith("#"):
                continue
            latitude, longitude, x, y = degrees(fields[0]), degrees(fields[1]), float(fields[3]), float(fields[4])
            metres = float(re.search(rf"^\[{section}\].*?(?:^\[|\Z)", SECTIONS, re.M | re.S)[0].partition("\nUnit=")[2].split("\n")[0] or 1)
            got = rows(connection, "SELECT x, y FROM latigo_forward(%s, %s, %s, %s)", section, latitude, longitude, wgs84)[0]
            assert max(abs(got[0] - x), abs(got[1] - y)) * metres <= tolerance, (path.name, line, got)
            count += 1
    assert count >= 31, count


def as_the_program():
    """20 000 random points, some outside grids and domains: the program's digits, and its failures."""
    connection, rng = connect(), random.Random(20261125)
    rows(connection, "SET latigo.on_error = 'null'; SET client_min_messages = error")
    for section, command, wgs84 in [("Heights", "forward", True), ("Heights", "forward", False), ("Heights", "inverse", True),
                                    ("NationalGrid", "inverse", True), ("CutGeoid", "forward", False), ("Cut", "forward", True),
                                    ("Feet", "inverse", False), ("LV95", "forward", False)]:
        if command == "forward":
            points = [(rng.uniform(38, 52), rng.uniform(-4, 10), rng.uniform(-100, 5000)) for _ in range(2500)]
        else:
            points = [(rng.uniform(-1e6, 2e6), rng.uniform(3e6, 7e6), rng.uniform(-100, 5000)) for _ in range(2500)]
        lines = "".join("%r %r %r\n" % point for point in points)
        program = [build / "latigo", command, scratch / "systems/first.ini", "-s", section] + ["--wgs84"] * wgs84
        printed = subprocess.run(program, input=lines, capture_output=True, text=True, env={**os.environ, "TWI_BATHYX": GRIDS}).stdout
        answers = rows(connection, f"SELECT (f).* FROM unnest(%s::float8[], %s::float8[], %s::float8[]) AS t(a, b, c),"
                       f" LATERAL latigo_{command}(%s, a, b, c, %s) AS f", *map(list, zip(*points)), section, wgs84)
        failed = 0
        for line, answer, point in zip(printed.splitlines(), answers, points, strict=True):
            if line.startswith("*"):
                assert answer == (None, None, None), (section, command, point, line, answer)
                failed += 1
            else:
                digits = (4, 4, 4) if command == "forward" else (10, 10, 4)
                for text, value, places in zip(line.split(), answer, digits, strict=True):
                    assert abs(float(text) - value) <= 0.501 * 10**-places, (section, command, point, line, answer)
        assert failed < 2400 and (failed > 0 or section in ("LV95", "Feet")), (section, command, failed)


def parallel_plan():
    """Workers convert, and each row is the same, bit for bit."""
    connection = connect()
    rows(connection, "SET client_min_messages = error; CREATE TABLE many AS SELECT n AS id, 38 + 14 * random() AS latitude,"
         " -4 + 14 * random() AS longitude FROM generate_series(1, 300000) n; ANALYZE many; SET latigo.on_error = 'null'")
    query = ("SELECT id, float8send((f).x) AS x, float8send((f).y) AS y, float8send((f).height) AS height FROM"
             " (SELECT id, latigo_forward(CASE WHEN id % 2 = 0 THEN 'Heights' ELSE 'Shifted' END, latitude, longitude, 100, true) AS f FROM many) AS t")
    rows(connection, f"SET max_parallel_workers_per_gather = 0; CREATE TABLE serial AS {query}")
    rows(connection, "SET max_parallel_workers_per_gather = 2; SET parallel_setup_cost = 0; SET parallel_tuple_cost = 0;"
         " SET min_parallel_table_scan_size = 0")
    plan = "\n".join(row[0] for row in rows(connection, f"EXPLAIN (ANALYZE, VERBOSE, COSTS OFF, TIMING OFF) {query}"))
    assert "Workers Launched: 2" in plan and plan.index("Gather") < plan.index("Parallel Seq Scan"), plan
    assert "latigo_forward" in plan[plan.index("Parallel Seq Scan"):], plan
    rows(connection, f"CREATE TABLE parallel AS {query}")
    for first, second in ("serial", "parallel"), ("parallel", "serial"):
        assert one(connection, f"SELECT count(*) FROM (TABLE {first} EXCEPT ALL TABLE {second}) AS t") == 0
    counts = rows(connection, "SELECT count(*), count(x) FROM parallel")[0]
    assert counts[0] == 300000 and 0.3 < counts[1] / counts[0] < 0.7, counts  # the others are outside the grid
    # An error of a worker reaches the client.
    rows(connection, "SET latigo.on_error = 'error'")
    fails(connection, query, "the point is outside the datum grid")
    assert one(connection, "SELECT count(*) FROM pg_stat_activity WHERE backend_type = 'parallel worker'") == 0


def nothing_left():
    """Cancelled commands and errors leave the handles that the session keeps, and closing leaves none."""
    connection = connect()
    pid = connection.get_backend_pid()
    assert open_grids(pid) == [] and closings(pid) == 0
    good = "SELECT (latigo_forward('Shifted', 45, 3, true)).x"
    rows(connection, good)
    kept = sorted(open_grids(pid))
    assert len(kept) == 2, kept  # the library's, and that of the look-up whether a point is inside
    long = "SELECT sum((latigo_forward('Shifted', 41 + n % 9, 3, true)).x) FROM generate_series(1, 100000000) n"
    rows(connection, "SET statement_timeout = 20")
    for _ in range(20):
        fails(connection, long, "statement timeout")
    rows(connection, "SET statement_timeout = 0")
    timer = threading.Timer(0.2, connection.cancel)
    timer.start()
    fails(connection, long, "user request")
    timer.join()
    for _ in range(100):
        fails(connection, "SELECT count((latigo_forward('Shifted', 49 + n, 3, true)).x) FROM generate_series(0, 9) n", "outside the datum grid")
        fails(connection, "SELECT latigo_forward('NoGrid', 49, 3)", "cannot be opened")
    assert sorted(open_grids(pid)) == kept
    # More sections than handles are kept.
    names = [row[0] for row in rows(connection, "SELECT section FROM latigo_sections() WHERE section LIKE 'Many%'")]
    assert len(names) == 40
    for _ in range(2):
        assert one(connection, "SELECT count(DISTINCT (latigo_forward(section, 45, 3, true)).x) FROM unnest(%s) AS t(section)", names) == 40
    # All but Many0 have an easting that their projection does not. A session warns of each once, though it opens it again.
    assert sum("not read as intended" in notice for notice in connection.notices) == 39
    assert len(open_grids(pid)) == 2 * 32
    rows(connection, "SELECT latigo_close()")
    assert open_grids(pid) == []
    closed = closings(pid)
    assert closed >= 1
    rows(connection, good)
    assert sorted(open_grids(pid)) == kept
    connection.close()
    wait_until(lambda: closings(pid) == closed + 1, "the process ended with a handle open")


def many_connections():
    """200 sessions have their own handles, and end without one, also those that are terminated."""
    connections = [connect() for _ in range(200)]
    pids = [connection.get_backend_pid() for connection in connections]
    for connection in connections:
        assert one(connection, "SELECT (latigo_forward('Heights', 45, 3, 100, true)).height") > 0
    assert sum(len(open_grids(pid)) for pid in pids) == 3 * 200
    admin = connect("admin")
    for pid in pids[:20]:
        rows(admin, "SELECT pg_terminate_backend(%s)", pid)
    for connection in connections[20:]:
        connection.close()
    wait_until(lambda: not any(os.path.exists(f"/proc/{pid}") for pid in pids), "sessions did not end")
    assert [closings(pid) for pid in pids] == [1] * 200


def changing_files():
    """A change counts from the next command on, of sections, grid files and the setting, and not within one."""
    connection, admin = connect(), connect("admin")
    second, two = scratch / "systems/second.ini", scratch / "grids/datum/two.dat"
    system, grid = second.read_bytes(), two.read_bytes()
    easting = "SELECT (latigo_forward('Second', 0, 3)).x"
    assert one(connection, easting) == 500000
    during = threading.Timer(0.3, replace, (second, system.replace(b"500000", b"600000")))
    during.start()
    seen = rows(connection, "SELECT (latigo_forward('Second', 0, 3 + 0 * n)).x, pg_sleep(0.1) FROM generate_series(1, 8) n")
    during.join()
    assert {row[0] for row in seen} == {500000}, seen
    assert one(connection, easting) == 600000
    replace(second, b"[Other]\n")
    fails(connection, easting, 'no section "Second"')
    second.unlink()
    fails(connection, easting, "second.ini")
    assert one(connection, "SELECT (latigo_forward('Utm31', 0, 3)).x") == 500000  # in a file before it
    fails(connection, "SELECT * FROM latigo_sections()", "second.ini")
    replace(second, system)
    assert one(connection, easting) == 500000

    latitude = "SELECT round(((latigo_to_wgs84('Shifted', 45, 3)).latitude - 45)::numeric * 3600, 4)"
    assert one(connection, latitude) == 1.5
    replace(two, systems.grid([2.5, 0]))
    assert one(connection, latitude) == 2.5
    two.unlink()
    fails(connection, latitude, "cannot be opened")
    replace(two, grid)
    assert one(connection, latitude) == 1.5
    # Also one at any moment while a section is opened, which the size of the file makes long.
    replace(second, system + b"\n[Large]\n" + systems.SECTIONS["Shifted"].encode() + b"; a comment\n" * 300000)
    large = latitude.replace("Shifted", "Large")
    for i in range(15):
        during = threading.Timer(0.015 * i, replace, (two, systems.grid([2 + i, 0])))
        during.start()
        rows(connection, "SELECT latigo_close()")
        one(connection, large)
        during.join()
        assert one(connection, large) == 2 + i, i
    replace(second, system)
    replace(two, grid)

    setting = one(admin, "SHOW latigo.config_files") if one(admin, easting) else None
    try:
        rows(admin, f"ALTER SYSTEM SET latigo.config_files = '{second}'")
        rows(admin, "SELECT pg_reload_conf()")
        wait_until(lambda: one(connection, "SELECT count(*) FROM latigo_sections()") == 2, "the setting did not change")
        assert one(connection, "SELECT (latigo_forward('nationalgrid', 0, 3)).x") == 500000
        fails(connection, latitude, 'no section "Shifted"')
    finally:
        rows(admin, f"ALTER SYSTEM SET latigo.config_files = '{setting}'")
        rows(admin, "SELECT pg_reload_conf()")


def refused_options():
    """A client that brings the setting along gets no files at all."""
    connection = psycopg2.connect(host=scratch / "run", user="plain", dbname="regression", options="-c latigo.config_files=/etc/passwd")
    connection.autocommit = True
    fails(connection, "SELECT latigo_forward('root', 0, 3)", "latigo.config_files is empty")
    assert one(connection, "SHOW latigo.config_files") == ""


SECTIONS = (scratch / "systems/first.ini").read_text()
def documents():
    """The blocks of docs/postgis.md print what the page shows, and README's statements work."""
    text = (root / "docs/postgis.md").read_text()
    blocks = re.findall(r"^```sql\n(.*?)^```\n\n```text\n(.*?)^```", text, re.M | re.S)
    assert len(blocks) == text.count("```sql") >= 4
    rows(connect("admin"), "CREATE DATABASE page")
    commands = "".join(f"{code}\n\\echo end of block\n" for code, _ in blocks)
    psql = subprocess.run(["psql", "-X", "-q", "-h", str(scratch / "run"), "-U", "admin", "-v", "ON_ERROR_STOP=1", "page"],
                          input=commands, capture_output=True, text=True)
    assert psql.returncode == 0, psql.stderr
    readme = re.search(r"^## In PostgreSQL$.*?^    (CREATE EXTENSION latigo;)\n    (SELECT .*?;)$", (root / "README.md").read_text(), re.M | re.S)
    page = psycopg2.connect(host=scratch / "run", user="admin", dbname="page")
    rows(page, "DROP EXTENSION latigo CASCADE")
    rows(page, readme[1] + "CREATE TABLE stations AS SELECT 52.6575703056 AS latitude, 1.7179215833 AS longitude")
    assert [round(value, 3) for value in rows(page, readme[2])[0][:2]] == [651409.903, 313177.27]
    page.close()
    assert [text.strip("\n") for text in psql.stdout.split("end of block\n")] == [text.strip("\n") for _, text in blocks] + [""], psql.stdout


for test in documents, stations, as_the_program, parallel_plan, nothing_left, many_connections, changing_files, refused_options:
    start = time.monotonic()
    test()
    print(f"{test.__name__}: {test.__doc__.splitlines()[0]} ({time.monotonic() - start:.1f} s)")
