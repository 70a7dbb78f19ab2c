"""The parts of a coordinate system, in the units of configuration files."""
from __future__ import annotations

import typing


class Params(typing.NamedTuple):
    """The projection and its parameters: degrees, metres, and grid units for the false origin."""

    kind: str
    semi_major_axis: float
    inverse_flattening: float
    unit: float
    scale_factor: float
    central_meridian: float
    ref_latitude: float
    north_parallel: float
    south_parallel: float
    skew_azimuth: float
    false_easting: float
    false_northing: float


class Ellipsoid(typing.NamedTuple):
    """An ellipsoid; the name is empty if the library has none. Metres."""

    name: str
    semi_major_axis: float
    inverse_flattening: float


class Unit(typing.NamedTuple):
    """Metres in a grid unit and in a vertical unit."""

    horizontal: float
    vertical: float


class Datum(typing.NamedTuple):
    """The shift from WGS-84: a grid file, or seven parameters in the coordinate frame rotation convention.

    Metres, parts per million and arc seconds; `grid` is None for the parameters, which are 0 for no shift.
    """

    grid: str | None
    delta_x: float
    delta_y: float
    delta_z: float
    delta_scale: float
    delta_rx: float
    delta_ry: float
    delta_rz: float


class Adjustment(typing.NamedTuple):
    """The local grid. Type 0 is none, 1 a similarity; grid units and degrees."""

    type: int
    reverse_x: bool
    reverse_y: bool
    orig_x: float
    orig_y: float
    rotation: float
    scale: float
    x: float
    y: float


class Geoid(typing.NamedTuple):
    """The geoid's grid file or None, and the constant that is added to its undulations."""

    grid: str | None
    constant: float
