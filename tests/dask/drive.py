"""Runs examples/dask_columns.py on a cluster for a test or for the measurement of throughput.

    drive.py SCHEDULER WORKERS npy|zarr SYSTEMS SECTION FOLDER BLOCKS PAUSE [ROUNDS]

Each block of latitudes waits PAUSE seconds, as on slow storage, and leaves a file started/ROW.PROCESS.TIME. Prints the time
of each round.
"""
import os
import pathlib
import sys
import time

import dask.array
import distributed
import zarr

import latigo.dask
from dask_columns import Column, convert


class SlowColumn(Column):
    def __init__(self, path, rows=None):
        super().__init__(path, rows)
        self.pause = PAUSE if path.name == "latitude.npy" else 0

    def __getitem__(self, rows):
        if self.pause:
            started = self.path.parent / "started"
            (started / f"{rows[0].start if isinstance(rows, tuple) else rows.start}.{os.getpid()}.{time.time_ns()}").touch()
            time.sleep(self.pause)
        return super().__getitem__(rows)


def convert_zarr(system, folder, blocks):
    """The same with Zarr: a chunk is a file, which appears complete or not at all."""
    columns = zarr.open_group(str(folder / "columns.zarr"), "r+")
    positions = [dask.array.from_zarr(columns[name]) for name in ("latitude", "longitude")]
    targets = [columns.empty_like(name, columns["latitude"], overwrite=True) for name in ("x", "y")]
    return dask.array.store(latigo.dask.forward(system, *positions, wgs84=True), targets, lock=False, compute=False)


if __name__ == "__main__":
    scheduler, workers, kind, systems, section, folder, blocks, pause, rounds = (*sys.argv[1:], "1")[:9]
    PAUSE = float(pause)
    with distributed.Client(scheduler, timeout="60s") as client:
        client.wait_for_workers(int(workers), timeout=60)
        for _ in range(int(rounds)):
            system = latigo.Geodesy(systems, section)
            if kind == "zarr":
                task = convert_zarr(system, pathlib.Path(folder), int(blocks))
            else:
                task = convert(system, pathlib.Path(folder), int(blocks), SlowColumn if PAUSE else Column)
            start = time.monotonic()
            client.compute(task).result(timeout=150)
            print(time.monotonic() - start, flush=True)
