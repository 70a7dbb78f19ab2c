"""Conversions of arrays and columns of Dask: the methods of `latigo.Geodesy`, with the object as the first argument.

>>> import dask.array
>>> import latigo.dask
>>> grid = latigo.Geodesy("examples/national_grid.ini", "NationalGrid")
>>> latitude = dask.array.linspace(49, 60, 1000, chunks=250)
>>> x, y = latigo.dask.forward(grid, latitude, -2)
>>> x.dtype, x.chunks
(dtype('float64'), ((250, 250, 250, 250),))
>>> x.max().compute(), y.min().compute()  # the false easting and northing of the origin
(400000.0, -100000.0)

Arrays of Dask and of NumPy and numbers give arrays of Dask, by the rules of broadcasting; columns of a dataframe of Dask and
numbers give columns with its index and divisions, ready for `assign`. Nothing is converted before `compute`, `persist` or
`store`. A task carries the definition of the object and digests of its grid files; a worker opens it once, and refuses other
grid files. Units, settings and codes are those of the method. The index in a `GeodesyError` counts within a block.
"""
from __future__ import annotations

import functools
import pickle
from typing import Any

import dask.array
import dask.base
import numpy as np
import pandas as pd

from ._geodesy import Geodesy

__all__ = ["distance", "ecef", "forward", "from_wgs84", "geographic", "inverse", "scale", "scale_at_grid", "to_wgs84",
           "undulation"]

# Names of the results, which are those of the columns.
_GEOGRAPHIC = ("latitude", "longitude", "height")
_GRID = ("x", "y", "height")
_EARTH_CENTRED = ("x", "y", "z")


@functools.lru_cache(maxsize=32)
def _opened(pickled: bytes) -> Geodesy:
    """One object in a process for all blocks: opening it reads its grid files for their digests."""
    return pickle.loads(pickled)


class _Block:
    """The conversion of one block; this is what a task carries."""

    def __init__(self, system: Geodesy, method: str, names: tuple[str, ...], options: dict[str, Any]) -> None:
        self.pickled, self.method, self.names, self.options = pickle.dumps(system), method, names, options
        self.__name__ = f"latigo_{method}"  # of the tasks, in the dashboard
        self.token = dask.base.tokenize(system.__getstate__(), method, options)

    def __dask_tokenize__(self) -> Any:
        return type(self).__name__, self.token  # equal objects give equal names of tasks

    def __call__(self, *values: Any) -> Any:
        return getattr(_opened(self.pickled), self.method)(*values, **self.options)


class _Partition(_Block):
    def __call__(self, *columns: Any) -> pd.DataFrame:
        results = super().__call__(*columns)
        return pd.DataFrame(dict(zip(self.names, results if isinstance(results, tuple) else (results,))))


def _is_column(value: Any) -> bool:
    return isinstance(getattr(value, "_meta", None), pd.Series)


def _convert(system: Geodesy, method: str, inputs: tuple[Any, ...], names: tuple[str, ...], **options: Any) -> Any:
    given = {name: value for name, value in options.items() if value is not None}
    types: list[Any] = [np.float64] * len(names)
    settings = system._settings | given
    system._parsed(*(settings[name] for name in system._settings))  # wrong settings are refused here, not by a worker
    if settings["errors"] == "codes":
        names, types = (*names, "code"), [*types, np.int32]
    if any(map(_is_column, inputs)):
        return _columns(_Partition(system, method, names, given), inputs, types)
    block = _Block(system, method, names, given)
    signature = ",".join(["()"] * len(inputs)) + "->" + ",".join(["()"] * len(names))
    return dask.array.apply_gufunc(block, signature, *inputs, output_dtypes=types if len(types) > 1 else types[0],
                                   allow_rechunk=True)  # of inputs with different blocks


def _columns(partition: _Partition, inputs: tuple[Any, ...], types: list[Any]) -> Any:
    import dask.dataframe  # loaded already if there are columns

    if any(not _is_column(value) and np.ndim(value) > 0 for value in inputs):
        raise TypeError("columns are combined with columns of Dask and with numbers only")
    index = next(filter(_is_column, inputs))._meta.index
    meta = pd.DataFrame({name: np.empty(0, kind) for name, kind in zip(partition.names, types)}, index=index)
    frame = dask.dataframe.map_partitions(partition, *inputs, meta=meta)
    results = tuple(frame[name] for name in partition.names)
    return results if len(results) > 1 else results[0]


def forward(system: Geodesy, latitude: Any, longitude: Any, height: Any = None, *, wgs84: bool = False,
            geoid_on_datum: bool = False, radians: bool | None = None, errors: str | None = None,
            outside_grid: str | None = None, threads: int | None = None) -> Any:
    """x, y and, with a height, the height: `Geodesy.forward`."""
    inputs = (latitude, longitude) if height is None else (latitude, longitude, height)
    return _convert(system, "forward", inputs, _GRID[:len(inputs)], wgs84=wgs84, geoid_on_datum=geoid_on_datum,
                    radians=radians, errors=errors, outside_grid=outside_grid, threads=threads)


def inverse(system: Geodesy, x: Any, y: Any, height: Any = None, *, wgs84: bool = False, geoid_on_datum: bool = False,
            radians: bool | None = None, errors: str | None = None, outside_grid: str | None = None,
            threads: int | None = None) -> Any:
    """Latitude, longitude and, with a height, the height: `Geodesy.inverse`."""
    inputs = (x, y) if height is None else (x, y, height)
    return _convert(system, "inverse", inputs, _GEOGRAPHIC[:len(inputs)], wgs84=wgs84, geoid_on_datum=geoid_on_datum,
                    radians=radians, errors=errors, outside_grid=outside_grid, threads=threads)


def to_wgs84(system: Geodesy, latitude: Any, longitude: Any, height: Any = None, *, radians: bool | None = None,
             errors: str | None = None, outside_grid: str | None = None, threads: int | None = None) -> Any:
    """Latitude, longitude and, with a height, the height on WGS-84: `Geodesy.to_wgs84`."""
    inputs = (latitude, longitude) if height is None else (latitude, longitude, height)
    return _convert(system, "to_wgs84", inputs, _GEOGRAPHIC[:len(inputs)], radians=radians, errors=errors,
                    outside_grid=outside_grid, threads=threads)


def from_wgs84(system: Geodesy, latitude: Any, longitude: Any, height: Any = None, *, radians: bool | None = None,
               errors: str | None = None, outside_grid: str | None = None, threads: int | None = None) -> Any:
    """Latitude, longitude and, with a height, the height on the object's datum: `Geodesy.from_wgs84`."""
    inputs = (latitude, longitude) if height is None else (latitude, longitude, height)
    return _convert(system, "from_wgs84", inputs, _GEOGRAPHIC[:len(inputs)], radians=radians, errors=errors,
                    outside_grid=outside_grid, threads=threads)


def scale(system: Geodesy, latitude: Any, longitude: Any, *, wgs84: bool = False, radians: bool | None = None,
          errors: str | None = None, outside_grid: str | None = None, threads: int | None = None) -> Any:
    """The point scale factor: `Geodesy.scale`."""
    return _convert(system, "scale", (latitude, longitude), ("scale",), wgs84=wgs84, radians=radians, errors=errors,
                    outside_grid=outside_grid, threads=threads)


def scale_at_grid(system: Geodesy, x: Any, y: Any, *, errors: str | None = None, threads: int | None = None) -> Any:
    """The point scale factor at coordinates of the projection: `Geodesy.scale_at_grid`."""
    return _convert(system, "scale_at_grid", (x, y), ("scale",), errors=errors, threads=threads)


def undulation(system: Geodesy, latitude: Any, longitude: Any, *, wgs84: bool = False, geoid_on_datum: bool = False,
               radians: bool | None = None, errors: str | None = None, outside_grid: str | None = None,
               threads: int | None = None) -> Any:
    """The geoid's undulation: `Geodesy.undulation`."""
    return _convert(system, "undulation", (latitude, longitude), ("undulation",), wgs84=wgs84,
                    geoid_on_datum=geoid_on_datum, radians=radians, errors=errors, outside_grid=outside_grid,
                    threads=threads)


def ecef(system: Geodesy, latitude: Any, longitude: Any, height: Any = None, *, radians: bool | None = None,
         errors: str | None = None, threads: int | None = None) -> Any:
    """Earth-centred X, Y and Z: `Geodesy.ecef`."""
    inputs = (latitude, longitude) if height is None else (latitude, longitude, height)
    return _convert(system, "ecef", inputs, _EARTH_CENTRED, radians=radians, errors=errors, threads=threads)


def geographic(system: Geodesy, x: Any, y: Any, z: Any, *, radians: bool | None = None, errors: str | None = None,
               threads: int | None = None) -> Any:
    """Latitude, longitude and height of earth-centred positions: `Geodesy.geographic`."""
    return _convert(system, "geographic", (x, y, z), _GEOGRAPHIC, radians=radians, errors=errors, threads=threads)


def distance(system: Geodesy, latitude1: Any, longitude1: Any, latitude2: Any, longitude2: Any, *, rhumb: bool = False,
             radians: bool | None = None, errors: str | None = None, threads: int | None = None) -> Any:
    """Distance and azimuth: `Geodesy.distance`."""
    return _convert(system, "distance", (latitude1, longitude1, latitude2, longitude2), ("distance", "azimuth"),
                    rhumb=rhumb, radians=radians, errors=errors, threads=threads)
