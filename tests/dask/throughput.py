"""Points per second of examples/dask_columns.py against workers, and the constants of the model in docs/performance.md.

    throughput.py [ROUNDS]

In each round: one process without Dask, then 1, 2 and 3 workers, on the same columns. A worker has one thread. Medians of the
rounds are printed: rates by the clock, and the processor time of a block in the workers and in the scheduler, which a busy
machine disturbs less.
"""
import os
import pathlib
import statistics
import subprocess
import sys
import tempfile
import time

import numpy as np

import latigo
from cluster import ROOT, Cluster
from network import Network

ROWS, BLOCKS = 6_000_000, 60
SMALL_ROWS, SMALL_BLOCKS = 300, 300  # the cost of blocks without points
LIMIT = 120  # seconds for a round of one number of workers
SYSTEM = (ROOT / "examples/national_grid.ini", "NationalGrid")


def one_process(folder):
    """Maps, converts and writes the columns as the workers do, but block by block in this process."""
    system = latigo.Geodesy(*SYSTEM)
    start = time.monotonic()
    sources = [np.load(folder / f"{name}.npy", mmap_mode="r") for name in ("latitude", "longitude")]
    targets = [np.lib.format.open_memmap(folder / f"{name}.npy", "w+", float, (ROWS,)) for name in "xy"]
    converting = 0.0
    for first in range(0, ROWS, ROWS // BLOCKS):
        block = slice(first, first + ROWS // BLOCKS)
        inputs = [np.array(source[block]) for source in sources]
        before = time.monotonic()
        results = system.forward(*inputs, wgs84=True)
        converting += time.monotonic() - before
        for target, values in zip(targets, results):
            target[block] = values
            target.flush()
    return time.monotonic() - start, converting


def processor_time(process):
    """Seconds, of the user and the system."""
    fields = pathlib.Path(f"/proc/{process.pid}/stat").read_text().rpartition(")")[2].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def make_columns(folder, rows):
    folder.mkdir()
    random = np.random.default_rng(1)
    np.save(folder / "latitude.npy", random.uniform(50, 58, rows))
    np.save(folder / "longitude.npy", random.uniform(-6, 1, rows))


def drive(cluster, folder, blocks):
    """Seconds by the clock, and of the processors in the workers and in the scheduler."""
    def used():
        return sum(map(processor_time, cluster.workers.values())), processor_time(cluster.scheduler)

    before = used()
    process = cluster.drive("npy", *SYSTEM, folder, blocks, 0, 1, stdout=subprocess.PIPE, text=True)
    said, _ = process.communicate(timeout=LIMIT)
    if process.returncode != 0:
        raise RuntimeError(cluster.logs())
    return float(said), *(after - start for after, start in zip(used(), before))


def main(rounds=3):
    times = {}
    with tempfile.TemporaryDirectory() as name, Network(3) as network:
        large, small = pathlib.Path(name) / "large", pathlib.Path(name) / "small"
        make_columns(large, ROWS)
        make_columns(small, SMALL_ROWS)
        clusters = {}
        for workers in (1, 2, 3):  # one cluster each, so that a round has all of them in turn
            folder = pathlib.Path(name) / str(workers)
            folder.mkdir()
            clusters[workers] = Cluster(network, folder, 8786 + 10 * workers)
            for number in range(1, workers + 1):
                clusters[workers].add_worker(number)
            drive(clusters[workers], large, BLOCKS)  # the workers import and open what they need
        for _ in range(rounds):
            whole, converting = one_process(large)
            times.setdefault("one process", []).append(whole)
            times.setdefault("converting", []).append(converting)
            for workers, cluster in clusters.items():
                times.setdefault(workers, []).append(drive(cluster, large, BLOCKS))
                times.setdefault(f"small {workers}", []).append(drive(cluster, small, SMALL_BLOCKS))
    median = {key: statistics.median(values) for key, values in times.items() if key in ("one process", "converting")}
    whole, converting = median["one process"], median["converting"]
    print(f"{os.cpu_count()} processors, load {os.getloadavg()[0]:.1f}; {ROWS} points in {BLOCKS} blocks")
    print(f"one process: {ROWS / whole / 1e6:.2f} million points/s, {converting / whole:.0%} of the time for the conversion")
    print("workers  million points/s  x one process  ms of a block: worker, without points, scheduler")
    for workers in (1, 2, 3):
        clock, worker, scheduler = (statistics.median(column) for column in zip(*times[workers]))
        _, empty, empty_scheduler = (statistics.median(column) for column in zip(*times[f"small {workers}"]))
        scheduling = (scheduler + empty_scheduler) / (BLOCKS + SMALL_BLOCKS)
        print(f"{workers:7}  {ROWS / clock / 1e6:16.2f}  {whole / clock:13.2f}  {worker / BLOCKS * 1e3:21.1f} "
              f"{empty / SMALL_BLOCKS * 1e3:15.2f} {scheduling * 1e3:10.2f}")


if __name__ == "__main__":
    main(*map(int, sys.argv[1:]))
