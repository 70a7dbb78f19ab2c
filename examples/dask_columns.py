"""Converts columns of positions, one .npy file each, on the workers of a Dask cluster.

    dask_columns.py SCHEDULER SYSTEMS SECTION FOLDER [BLOCKS]

FOLDER is on storage that all workers share. It has latitude.npy and longitude.npy, float64 and degrees; x.npy and y.npy are
made. A worker maps the files and touches the rows of its blocks only; the scheduler sees no row. A block that a failed worker
had not finished is converted again by another one and written to the same place: the same bytes, whoever comes last.
"""
import pathlib
import sys

import dask.array
import distributed
import numpy as np

import latigo.dask


class Column:
    """A .npy file as an array that a task can carry: the path, not the numbers."""

    ndim = 1

    def __init__(self, path, rows=None):
        """An existing file; with `rows` a new one, NaN throughout."""
        self.path = path
        if rows is not None:
            np.lib.format.open_memmap(path, "w+", float, (rows,))[:] = np.nan
        mapped = np.load(path, mmap_mode="r")
        self.shape, self.dtype = mapped.shape, mapped.dtype

    def __getitem__(self, rows):
        return np.array(np.load(self.path, mmap_mode="r")[rows])

    def __setitem__(self, rows, values):
        mapped = np.load(self.path, mmap_mode="r+")
        mapped[rows] = values
        mapped.flush()  # a block counts as finished when the storage has it


def convert(system, folder, blocks, column=Column):
    """The task that writes x.npy and y.npy; the caller computes it."""
    sources = [column(folder / f"{name}.npy") for name in ("latitude", "longitude")]
    rows = sources[0].shape[0]
    size = max(1, -(-rows // blocks))
    positions = [dask.array.from_array(source, chunks=size, name=str(source.path), asarray=False) for source in sources]
    targets = [column(folder / f"{name}.npy", rows) for name in ("x", "y")]
    results = latigo.dask.forward(system, *positions, wgs84=True)
    return dask.array.store(results, targets, lock=False, compute=False)


def main(scheduler, systems, section, folder, blocks="60"):
    with distributed.Client(scheduler, timeout="30s"):
        convert(latigo.Geodesy(systems, section), pathlib.Path(folder).resolve(), int(blocks)).compute()


if __name__ == "__main__":
    main(*sys.argv[1:])
