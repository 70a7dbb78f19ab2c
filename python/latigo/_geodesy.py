"""The class Geodesy."""
from __future__ import annotations

import hashlib
import operator
import os
from collections.abc import Mapping
from typing import Any

from . import _arrays, _core, _describe
from ._errors import GRID_FILE_CHANGED, GeodesyError, printable, warn
from ._files import has_value, section_text, sections
from ._records import Adjustment, Datum, Ellipsoid, Geoid, Params, Unit

# Numbers of the operations in the extension.
(_FORWARD, _INVERSE, _TO_WGS84, _FROM_WGS84, _SCALE, _SCALE_AT_GRID, _UNDULATION, _ECEF, _GEOGRAPHIC, _GREAT_CIRCLE,
 _RHUMB_LINE) = range(11)

_SECTIONS_SHOWN = 20
_PIECE = 1 << 20  # bytes of a grid file read at once
_DEFAULTS = {"radians": False, "errors": "raise", "outside_grid": "raise", "threads": 1}


class Geodesy:
    """A coordinate system: ellipsoid, projection, and optionally datum shift, local grid and geoid.

    Parameters
    ----------
    file : str or path
        A configuration file. Grid files that it names are in the folder ``datum`` of the directory in the environment
        variable ``TWI_BATHYX``, as the first object with a grid file of the process finds it.
    section : str, optional
        A section of the file; without it ``Geodesy``, or the only section.
    radians, errors, outside_grid, threads
        What the methods take for the arguments of these names, if a call does not give them. `threads` is the number of
        threads that convert an array.

    Raises
    ------
    OSError
        The file, or a grid file, cannot be read.
    GeodesyError
        The section does not exist or describes no system; a grid file is missing or faulty.

    Notes
    -----
    All methods take numbers, or anything that NumPy broadcasts, and return floats for numbers, arrays for arrays and
    Series of pandas, with their index, for Series. Arrays of float64 are read where they are, at any strides; others are
    copied once. `out` is an array, or a tuple of arrays, of float64 for the results; it may overlap the inputs.

    ``errors="raise"`` raises `GeodesyError` for the first point that fails and leaves `out` as it was; ``"nan"`` makes
    the results of a failed point NaN; ``"codes"`` does too, and appends an array of the points' codes, 0 for success. A
    point fails if the library refuses it, if a result is not finite, if a latitude is beyond the pole, or if a longitude given is
    beyond 360 degrees.

    A `GeodesyWarning` is issued for doubtful results, once for each call and cause: a point too far from the projection's
    origin for its inverse to return within a metre, a line too long for the formulas of its length; and, when the object is
    made, for values in the file, or parameters, that are probably not meant so, such as ``ScaleFactor=0,9996``. With
    ``warnings.simplefilter("error", latigo.GeodesyWarning)`` they raise.

    Outside a datum grid the library converts between the ellipsoids without a shift. With ``outside_grid="raise"`` such a
    point fails, with ``"warn"`` it is converted and counted in a `GeodesyWarning`, with ``"ignore"`` it is converted.

    Threads may use one object at the same time, and arrays are converted without the interpreter's lock. After a fork a
    child opens the grid files anew. A pickle contains the definition, the settings and digests of the grid files; loading
    it refuses other grid files.
    """

    __slots__ = ("_core", "_definition", "_settings", "_options", "_digests", "_no_geoid", "_no_shift", "__weakref__")

    _core: _core.Engine
    _definition: tuple[Any, ...]
    _settings: dict[str, Any]
    _options: tuple[bool, int, int, int]
    _digests: dict[str, str]
    _no_geoid: bool
    _no_shift: bool

    def __init__(self, file: str | os.PathLike[str], section: str | None = None, *, radians: bool = False,
                 errors: str = "raise", outside_grid: str = "raise", threads: int = 1) -> None:
        path = os.fsencode(os.path.abspath(file))
        with open(path, "rb") as opened:
            data = opened.read()
        known = [os.fsdecode(each) for each in sections(data)]
        name = section if section is not None else known[0] if len(known) == 1 else "Geodesy"
        text = section_text(data, os.fsencode(name))
        if text is None:
            more = f" and {len(known) - _SECTIONS_SHOWN} others" if len(known) > _SECTIONS_SHOWN else ""
            raise GeodesyError(f"{printable(file)}: no section {printable(name)}; it has "
                               f"{', '.join(map(printable, known[:_SECTIONS_SHOWN])) or 'none'}{more}", 5, "CreateFileGeodesy")
        self._settle(("section", os.fspath(file), name, text),
                     {"radians": radians, "errors": errors, "outside_grid": outside_grid, "threads": threads}, path)
        for warning in _core.warnings(os.fsencode(file), data, os.fsencode(name)):
            warn(printable(warning))

    @classmethod
    def from_params(cls, kind: str | int, *, semi_major_axis: float, inverse_flattening: float, unit: float = 1.0,
                    scale_factor: float = 1.0, central_meridian: float = 0.0, ref_latitude: float = 0.0,
                    north_parallel: float = 0.0, south_parallel: float = 0.0, skew_azimuth: float = 0.0,
                    false_easting: float = 0.0, false_northing: float = 0.0, delta_x: float = 0.0,
                    delta_y: float = 0.0, delta_z: float = 0.0, delta_scale: float = 0.0, delta_rx: float = 0.0,
                    delta_ry: float = 0.0, delta_rz: float = 0.0, datum_grid: str | os.PathLike[str] | None = None,
                    adjust_type: int = 0, reverse_x: bool = False, reverse_y: bool = False, adjust_orig_x: float = 0.0,
                    adjust_orig_y: float = 0.0, adjust_rotation: float = 0.0, adjust_scale: float = 1.0,
                    adjust_x: float = 0.0, adjust_y: float = 0.0, geoid: str | os.PathLike[str] | None = None,
                    ortho_h_corr: float = 0.0, radians: bool = False, errors: str = "raise",
                    outside_grid: str = "raise", threads: int = 1) -> Geodesy:
        """Makes an object from parameters. They have the meanings of the keys of a configuration file.

        Parameters
        ----------
        kind : str or int
            The projection: a keyword of configuration files (``"UTM"``), a name (``"transverse_mercator"``), or a number.
        semi_major_axis, inverse_flattening, unit
            The ellipsoid in metres, and metres in a grid unit.
        central_meridian, ref_latitude, north_parallel, south_parallel, skew_azimuth, adjust_rotation
            Degrees; radians with ``radians=True``, which then is the setting of the object too.
        delta_x, delta_y, delta_z, delta_scale, delta_rx, delta_ry, delta_rz
            From WGS-84, in the coordinate frame rotation convention: metres, parts per million, and arc seconds or
            radians.
        datum_grid, geoid
            Paths of grid files. The datum grid replaces the seven parameters.
        errors, outside_grid, threads
            Settings, as for the class.

        Examples
        --------
        >>> import latigo
        >>> utm31 = latigo.Geodesy.from_params("UTM", semi_major_axis=6378137, inverse_flattening=298.257223563,
        ...                                    central_meridian=3, scale_factor=0.9996, false_easting=500000)
        >>> utm31.forward(0.0, 3.0)
        (500000.0, 0.0)
        """
        given = {name: value for name, value in locals().items()
                 if name not in ("cls", "kind", *_DEFAULTS) and not name.startswith("__")}
        for name in ("datum_grid", "geoid"):
            given[name] = None if given[name] is None else _absolute(given[name])
        made = cls.__new__(cls)
        made._settle(("params", kind, radians, given),
                     {"radians": radians, "errors": errors, "outside_grid": outside_grid, "threads": threads})
        for doubt in _describe.doubtful_params(made._core, kind, radians, given):
            warn(f"from_params: {doubt}")
        return made

    def _settle(self, definition: tuple[Any, ...], settings: Mapping[str, Any], path: bytes = b"") -> None:
        self._definition = definition
        self._settings = dict(settings)
        self._options = self._parsed(*settings.values())
        self._digests = {}
        if definition[0] == "params":
            self._core = _describe.open_params(*definition[1:])
        else:
            _, file, name, text = definition
            try:
                self._core = _core.open_text(text, has_value(text, b"VertUnit"), path, os.fsencode(name))
            except GeodesyError as error:
                raise GeodesyError(f"{printable(file)} [{printable(name)}]: {error.text}{_grid_places(text)}", error.code,
                                   error.function) from None
        self._no_geoid = self.geoid == (None, 0)
        self._no_shift = _describe.lacks_shift(self._core, None if definition[0] == "params" else definition[3])

    @staticmethod
    def _parsed(radians: bool, errors: str, outside_grid: str, threads: int) -> tuple[bool, int, int, int]:
        if errors not in _arrays.ERRORS:
            raise ValueError(f"errors={errors!r}: {', '.join(_arrays.ERRORS)} are known")
        if outside_grid not in _arrays.OUTSIDE:
            raise ValueError(f"outside_grid={outside_grid!r}: {', '.join(_arrays.OUTSIDE)} are known")
        if not 1 <= (count := operator.index(threads)) <= 256:
            raise ValueError(f"threads={threads!r}: 1 to 256 are possible")
        return bool(radians), _arrays.ERRORS[errors], _arrays.OUTSIDE[outside_grid], count

    def _run(self, operation: int, inputs: tuple[Any, ...], outputs: int, call: tuple[Any, ...], out: Any = None,
             height: bool = False, wgs84: bool = False, geoid_on_datum: bool = False) -> Any:
        options = self._options
        if call != (None, None, None, None):
            settings = zip(call, self._settings.values())
            options = self._parsed(*(own if given is None else given for given, own in settings))
        radians, errors, outside, threads = options
        if self._no_shift and (wgs84 or operation in (_TO_WGS84, _FROM_WGS84)):
            warn("the object has no datum shift to WGS-84, and another ellipsoid: positions stay as they are")
        if out is None:
            result = self._core.point(operation, inputs, wgs84, geoid_on_datum, radians, errors, outside)
            if result is not NotImplemented:
                return result
        return _arrays.convert(self._core, operation, inputs, outputs, height, wgs84, geoid_on_datum, radians, errors,
                               outside, threads, out)

    def forward(self, latitude: Any, longitude: Any, height: Any = None, *, wgs84: bool = False,
                geoid_on_datum: bool = False, radians: bool | None = None, errors: str | None = None,
                outside_grid: str | None = None, threads: int | None = None, out: Any = None) -> Any:
        """Latitude and longitude to x and y: easting and northing, or those of the local grid.

        Parameters
        ----------
        latitude, longitude : array_like
            On the object's datum, or on WGS-84 with ``wgs84=True``: the datum shift is then applied first.
        height : array_like, optional
            Ellipsoidal height, metres.
        geoid_on_datum : bool
            The undulation refers to the object's own ellipsoid; without it, but with ``wgs84=True``, to WGS-84.

        Returns
        -------
        x, y : grid units
        height : only with a height: less the undulation, if there is a geoid; metres, or vertical units if the section
            has the key VertUnit

        Examples
        --------
        >>> import latigo
        >>> grid = latigo.Geodesy("examples/national_grid.ini", "NationalGrid")
        >>> x, y = grid.forward([49.0, 50.0], -2.0)
        >>> x
        array([400000., 400000.])
        >>> grid.forward(90.0, -2.0)
        Traceback (most recent call last):
        latigo._errors.GeodesyError: code 6: the latitude is a pole outside the projection's domain at 90.0, -2.0
        >>> grid.forward([90.0, 49.0], -2.0, errors="codes")[2]
        array([6, 0], dtype=int32)
        """
        if height is None:
            return self._run(_FORWARD, (latitude, longitude), 2, (radians, errors, outside_grid, threads), out, False,
                             wgs84, geoid_on_datum)
        return self._run(_FORWARD, (latitude, longitude, height), 3, (radians, errors, outside_grid, threads), out, True,
                         wgs84, geoid_on_datum)

    def inverse(self, x: Any, y: Any, height: Any = None, *, wgs84: bool = False, geoid_on_datum: bool = False,
                radians: bool | None = None, errors: str | None = None, outside_grid: str | None = None,
                threads: int | None = None, out: Any = None) -> Any:
        """x and y to latitude and longitude; the arguments and results of `forward` exchanged.

        Returns
        -------
        latitude, longitude : degrees or radians, the longitude within half a turn
        height : only with a height: above the ellipsoid, metres

        Examples
        --------
        >>> import latigo
        >>> grid = latigo.Geodesy("examples/national_grid.ini", "NationalGrid")
        >>> latitude, longitude = grid.inverse(651409.903, 313177.270)
        >>> round(latitude, 6), round(longitude, 6)
        (52.65757, 1.717922)
        """
        if height is None:
            return self._run(_INVERSE, (x, y), 2, (radians, errors, outside_grid, threads), out, False, wgs84,
                             geoid_on_datum)
        return self._run(_INVERSE, (x, y, height), 3, (radians, errors, outside_grid, threads), out, True, wgs84,
                         geoid_on_datum)

    def to_wgs84(self, latitude: Any, longitude: Any, height: Any = None, *, radians: bool | None = None,
                 errors: str | None = None, outside_grid: str | None = None, threads: int | None = None,
                 out: Any = None) -> Any:
        """A position on the object's datum to WGS-84. Without a datum shift nothing changes.

        Returns latitude, longitude and, with a height, the height above the ellipsoid in metres.

        Examples
        --------
        >>> import latigo
        >>> grid = latigo.Geodesy("examples/national_grid.ini", "NationalGrid")
        >>> latitude, longitude, height = grid.to_wgs84(52.657570305556, 1.717921583333, 24.7)
        >>> round(latitude, 6), round(longitude, 6), round(height, 1)
        (52.657979, 1.716052, 69.4)
        """
        inputs = (latitude, longitude) if height is None else (latitude, longitude, height)
        return self._run(_TO_WGS84, inputs, len(inputs), (radians, errors, outside_grid, threads), out,
                         height is not None)

    def from_wgs84(self, latitude: Any, longitude: Any, height: Any = None, *, radians: bool | None = None,
                   errors: str | None = None, outside_grid: str | None = None, threads: int | None = None,
                   out: Any = None) -> Any:
        """A position on WGS-84 to the object's datum; all else as for `to_wgs84`."""
        inputs = (latitude, longitude) if height is None else (latitude, longitude, height)
        return self._run(_FROM_WGS84, inputs, len(inputs), (radians, errors, outside_grid, threads), out,
                         height is not None)

    def scale(self, latitude: Any, longitude: Any, *, wgs84: bool = False, radians: bool | None = None,
              errors: str | None = None, outside_grid: str | None = None, threads: int | None = None,
              out: Any = None) -> Any:
        """The point scale factor of the projection at a position, without the local grid.

        Examples
        --------
        >>> import latigo
        >>> grid = latigo.Geodesy("examples/national_grid.ini", "NationalGrid")
        >>> round(grid.scale(52.657570305556, 1.717921583333), 8)
        1.00037732
        """
        return self._run(_SCALE, (latitude, longitude), 1, (radians, errors, outside_grid, threads), out, False, wgs84)

    def scale_at_grid(self, x: Any, y: Any, *, errors: str | None = None, threads: int | None = None,
                      out: Any = None) -> Any:
        """The point scale factor at coordinates of the projection, which are those before the local grid."""
        return self._run(_SCALE_AT_GRID, (x, y), 1, (None, errors, None, threads), out)

    def undulation(self, latitude: Any, longitude: Any, *, wgs84: bool = False, geoid_on_datum: bool = False,
                   radians: bool | None = None, errors: str | None = None, outside_grid: str | None = None,
                   threads: int | None = None, out: Any = None) -> Any:
        """The geoid's undulation, its constant included, in the unit of the geoid's values.

        It is looked up at the position as given; with ``wgs84=True`` and ``geoid_on_datum=True`` at the position on the
        object's datum. Without a geoid it is 0, with a `GeodesyWarning`.
        """
        if self._no_geoid:
            warn("the object has no geoid: every undulation is 0")
        return self._run(_UNDULATION, (latitude, longitude), 1, (radians, errors, outside_grid, threads), out, False,
                         wgs84, geoid_on_datum)

    def ecef(self, latitude: Any, longitude: Any, height: Any = None, *, radians: bool | None = None,
             errors: str | None = None, threads: int | None = None, out: Any = None) -> Any:
        """Earth-centred, earth-fixed X, Y and Z in metres of a position on the object's ellipsoid, without a datum shift.

        Examples
        --------
        >>> import latigo
        >>> latigo.Geodesy("examples/national_grid.ini", "NationalGrid").ecef(0, 0, 100)
        (6377663.396, 0.0, 0.0)
        """
        inputs = (latitude, longitude) if height is None else (latitude, longitude, height)
        return self._run(_ECEF, inputs, 3, (radians, errors, None, threads), out, height is not None)

    def geographic(self, x: Any, y: Any, z: Any, *, radians: bool | None = None, errors: str | None = None,
                   threads: int | None = None, out: Any = None) -> Any:
        """Latitude, longitude and height above the object's ellipsoid of an earth-centred position in metres."""
        return self._run(_GEOGRAPHIC, (x, y, z), 3, (radians, errors, None, threads), out)

    def distance(self, latitude1: Any, longitude1: Any, latitude2: Any, longitude2: Any, *, rhumb: bool = False,
                 radians: bool | None = None, errors: str | None = None, threads: int | None = None,
                 out: Any = None) -> Any:
        """Distance in grid units and azimuth at the first position, clockwise from north within a turn.

        Along the geodesic by Gauss's mid-latitude formulas, with errors of centimetres at 100 km and metres at 500 km:
        a `GeodesyWarning` tells where they can exceed 2 cm. Or along the rhumb line, of any length, with ``rhumb=True``.
        The line takes the shorter way around the earth.

        Examples
        --------
        >>> import latigo
        >>> grid = latigo.Geodesy("examples/national_grid.ini", "NationalGrid")
        >>> distance, azimuth = grid.distance(0, 0, 0, 0.5)
        >>> round(distance, 2), azimuth  # half a degree of Airy's equator
        (55654.74, 90.0)
        """
        return self._run(_RHUMB_LINE if rhumb else _GREAT_CIRCLE, (latitude1, longitude1, latitude2, longitude2), 2,
                         (radians, errors, None, threads), out)

    def close(self) -> None:
        """Closes the grid files and releases the library's objects. Later calls raise `GeodesyError`."""
        self._core.close()

    @property
    def closed(self) -> bool:
        """Whether the object is closed."""
        return self._core.closed()

    def __enter__(self) -> Geodesy:
        return self

    def __exit__(self, *ignored: object) -> None:
        self.close()

    @property
    def params(self) -> Params:
        """The projection and its parameters, in degrees."""
        return _describe.params(self._core.facts())

    @property
    def ellipsoid(self) -> Ellipsoid:
        """The ellipsoid."""
        return _describe.ellipsoid(self._core.facts())

    @property
    def unit(self) -> Unit:
        """Metres in a grid unit and in a vertical unit."""
        return _describe.unit(self._core.facts())

    @property
    def names(self) -> dict[str, dict[str, str | None]]:
        """Names of units and axes, by the languages ``"eng"``, ``"fra"`` and ``"esp"``; None for a unit without a name."""
        return _describe.names(self._core)

    @property
    def datum(self) -> Datum:
        """The datum shift."""
        return _describe.datum(self._core.facts())

    @property
    def adjustment(self) -> Adjustment:
        """The local grid."""
        return _describe.adjustment(self._core.facts())

    @property
    def geoid(self) -> Geoid:
        """The geoid."""
        return _describe.geoid(self._core.facts())

    def __repr__(self) -> str:
        return _describe.text(self._core, self._title())

    def _repr_html_(self) -> str:
        return _describe.html(self._core, self._title())

    def _title(self) -> str:
        kind, file, name, *_ = self._definition
        return f"[{printable(name)}] {printable(file)}" if kind == "section" else "from parameters"

    def _digest(self, name: str) -> str:
        """The SHA-256 digest of the grid file `name`, "datum" or "geoid"; empty without one."""
        if name not in self._digests:
            digest = hashlib.sha256()
            offset = 0
            while piece := self._core.read_grid(name == "datum", offset, _PIECE):
                digest.update(piece)
                offset += len(piece)
            self._digests[name] = digest.hexdigest() if offset else ""
        return self._digests[name]

    def __getstate__(self) -> dict[str, Any]:
        return {"definition": self._definition, "settings": self._settings,
                "digests": {name: self._digest(name) for name in ("datum", "geoid")},
                "attributes": getattr(self, "__dict__", {})}  # of a subclass

    def __setstate__(self, state: dict[str, Any]) -> None:
        self._settle(state["definition"], state["settings"])
        for name, digest in state["digests"].items():
            if self._digest(name) != digest:
                self.close()
                raise GeodesyError(f"{self._title()}: the {name} grid file is another than that of the pickled object",
                                   GRID_FILE_CHANGED)
        for name, value in state["attributes"].items():
            setattr(self, name, value)

    def __reduce__(self) -> tuple[Any, ...]:
        return _blank, (type(self),), self.__getstate__()


def _absolute(file: str | os.PathLike[str]) -> str:
    path = os.path.abspath(file)
    if "\0" in os.fsdecode(path):  # where the library would end the name
        raise ValueError("embedded null byte")
    return path


def _grid_places(text: bytes) -> str:
    """Where the grid files of a section are looked for."""
    keys = [key for key in ("DynDatum", "Geoid") if has_value(text, key.encode())]
    folder = printable(os.environ.get("TWI_BATHYX", "(TWI_BATHYX is not set)"))
    return f"; {' and '.join(keys)} name files in {folder}/datum" if keys else ""


def _blank(cls: type[Geodesy]) -> Geodesy:
    return cls.__new__(cls)
