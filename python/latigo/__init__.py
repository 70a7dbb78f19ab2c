"""Geodesy for survey and mapping programs: conversions of positions, as arrays of NumPy or as single numbers.

>>> import latigo
>>> grid = latigo.Geodesy("examples/national_grid.ini", "NationalGrid")
>>> x, y = grid.forward(52.657570305556, 1.717921583333)
>>> round(x, 3), round(y, 3)
(651409.903, 313177.27)

An object of `Geodesy` is one coordinate system, described by a section of a configuration file or by parameters. Angles
are degrees, or radians on request; latitude stands before longitude, north and east are positive; x and y are in grid
units, heights in metres. A point that fails raises `GeodesyError`.
"""
from ._core import version as _version
from ._errors import (
    BEYOND_POLE,
    BEYOND_TURN,
    CLOSED,
    DATUM_ROW_UNREADABLE,
    GRID_FILE_CHANGED,
    NOT_FINITE,
    OUTSIDE_DATUM_GRID,
    GeodesyError,
    GeodesyWarning,
)
from ._geodesy import Geodesy
from ._records import Adjustment, Datum, Ellipsoid, Geoid, Params, Unit

__version__ = f"{_version() // 100}.{_version() % 100}"

__all__ = [
    "Adjustment",
    "BEYOND_POLE",
    "BEYOND_TURN",
    "CLOSED",
    "DATUM_ROW_UNREADABLE",
    "Datum",
    "Ellipsoid",
    "GRID_FILE_CHANGED",
    "Geodesy",
    "GeodesyError",
    "GeodesyWarning",
    "Geoid",
    "NOT_FINITE",
    "OUTSIDE_DATUM_GRID",
    "Params",
    "Unit",
]
