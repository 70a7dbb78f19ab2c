"""What an object says of itself, and how parameters become records."""
from __future__ import annotations

import html as escaping
import math
import operator
import os
from collections.abc import Mapping
from typing import Any

from . import _core, _picture
from ._errors import GeodesyError, printable
from ._files import has_value
from ._records import Adjustment, Datum, Ellipsoid, Geoid, Params, Unit

_RADIANS_PER_DEGREE = 0.017453292519943295
_TYPE, _REVERSE_X, _REVERSE_Y = 0xFFFF, 0x10000, 0x20000
_NAMES = ("unit", "units", "unit_short", "vertical_unit", "vertical_units", "vertical_unit_short", "first_axis",
          "first_axis_letter", "second_axis", "second_axis_letter")  # requests 1 to 10 of the library
_ANGLES = ("central_meridian", "ref_latitude", "north_parallel", "south_parallel", "skew_azimuth")
_PARAMS = ("semi_major_axis", "inverse_flattening", "unit", "scale_factor", *_ANGLES, "false_easting", "false_northing")
_DELTA = tuple("delta_" + name for name in ("x", "y", "z", "scale", "rx", "ry", "rz"))
_ADJUST = ("adjust_orig_x", "adjust_orig_y", "adjust_rotation", "adjust_scale", "adjust_x", "adjust_y")
_SHIFT = ("DynDatum", "DeltaX", "DeltaY", "DeltaZ", "DeltaScale", "DeltaRX", "DeltaRY", "DeltaRZ")  # keys
_WGS84 = (6378137.0, 6356752.3142451793)  # semi-axes, metres
_SAME_DATUM = 0.1  # metres between the semi-axes of WGS-84 and GRS-80, at most
_KEYS = {"inverse_flattening": "Flattening"}  # of a configuration file, if the key is not named as the parameter

Facts = Mapping[str, Any]


def open_params(kind: str | int, radians: bool, given: Mapping[str, Any]) -> _core.Engine:
    """The arithmetic of the units is that of configuration files, so that both give the same digits."""
    kinds = _core.kinds()
    number = kinds.get(kind.lower(), 0) if isinstance(kind, str) else kind
    if number not in kinds.values():
        raise GeodesyError(f"the projection {kind!r} is unknown; {', '.join(sorted(set(kinds)))} are known", 5,
                           "CreateGeodesy")
    values = {name: float(given[name]) for name in given
              if name not in ("datum_grid", "geoid", "adjust_type", "reverse_x", "reverse_y")}
    if not radians:
        values.update((name, values[name] * _RADIANS_PER_DEGREE) for name in _ANGLES)
        values.update((name, values[name] * math.pi / 648000) for name in ("delta_rx", "delta_ry", "delta_rz"))
        values["adjust_rotation"] = values["adjust_rotation"] * math.pi / 180
    values["delta_scale"] = values["delta_scale"] / 1000000 + 1
    adjust_type = operator.index(given["adjust_type"])
    if not 0 <= adjust_type < 1 << 32:
        raise ValueError(f"adjust_type={adjust_type}: 0 to 2**32 - 1 are possible")
    flags = (_REVERSE_X if given["reverse_x"] else 0) | (_REVERSE_Y if given["reverse_y"] else 0)
    return _core.open_records(
        operator.index(number), [values[name] for name in _PARAMS],
        [values[name] for name in _DELTA], adjust_type | flags,
        [values[name] for name in _ADJUST],
        os.fsencode(given["datum_grid"] or ""), os.fsencode(given["geoid"] or ""), values["ortho_h_corr"])


def doubtful_params(core: _core.Engine, kind: str | int, radians: bool, given: Mapping[str, Any]) -> list[str]:
    """What the check of configuration files finds in parameters: each is written as the key of its name."""
    keyword = kind if isinstance(kind, str) and kind.upper() == "UTM" else core.facts()["code"]
    lines = ["[Geodesy]", f"Projection={keyword}"]
    lines += [f"AdjustType={given['adjust_type']}", f"ReverseX={int(given['reverse_x'])}",
              f"ReverseY={int(given['reverse_y'])}"]
    for name in (*_PARAMS, *_DELTA, *_ADJUST, "ortho_h_corr"):
        value = float(given[name])
        value = _degrees(value) if radians and name in (*_ANGLES, "adjust_rotation") else value
        lines.append(f"{_KEYS.get(name, name.title().replace('_', ''))}={value!r}")
    found = _core.warnings(b"", "\n".join(lines).encode(), b"Geodesy")
    return [text.decode().split("warning: ", 1)[1] for text in found]


def _degrees(radians: float) -> float:
    return radians * 180 / math.pi


def _seconds(radians: float) -> float:
    return radians * 648000 / math.pi


def params(facts: Facts) -> Params:
    a, rf, _, metres, k, *angles, x, y = facts["params"]
    meridian, latitude, north, south, azimuth = map(_degrees, angles)
    return Params(facts["kind"], a, rf, metres, k, meridian, latitude, north, south, azimuth, x, y)


def ellipsoid(facts: Facts) -> Ellipsoid:
    return Ellipsoid(facts["ellipsoid"], *facts["params"][:2])


def unit(facts: Facts) -> Unit:
    return Unit(facts["unit"], facts["vertical_unit"])


def names(core: _core.Engine) -> dict[str, dict[str, str | None]]:
    return {language: {name: core.name(i + 1, language) for i, name in enumerate(_NAMES)}
            for language in ("eng", "fra", "esp")}


def datum(facts: Facts) -> Datum:
    if facts["datum_grid"]:
        return Datum(facts["datum_grid"], 0, 0, 0, 0, 0, 0, 0)
    x, y, z, scale, *rotations = facts["datum"]
    return Datum(None, x, y, z, round((scale - 1) * 1e6, 6), *map(_seconds, rotations))


def lacks_shift(core: _core.Engine, section: bytes | None) -> bool:
    """Whether positions on WGS-84 stay as they are, on another ellipsoid; not if the section has a shift of zero."""
    facts = core.facts()
    a, inverse_flattening = facts["params"][:2]
    axes = (a, a * (1 - 1 / inverse_flattening))
    return (not any(datum(facts)) and any(abs(one - other) > _SAME_DATUM for one, other in zip(axes, _WGS84))
            and not any(has_value(section or b"", key.encode()) for key in _SHIFT))


def adjustment(facts: Facts) -> Adjustment:
    flags = facts["adjust_type"]
    orig_x, orig_y, rotation, scale, x, y = facts["adjustment"]
    return Adjustment(flags & _TYPE, bool(flags & _REVERSE_X), bool(flags & _REVERSE_Y), orig_x, orig_y,
                      _degrees(rotation), scale, x, y)


def geoid(facts: Facts) -> Geoid:
    return Geoid(facts["geoid"] or None, facts["geoid_constant"])


def _adjustment_text(a: Adjustment) -> str:
    if a.type == 0:
        return "none"
    if a.type == 1:
        return (f"similarity about {a.orig_x:.12g}, {a.orig_y:.12g}: turn {a.rotation:.10g} degrees, "
                f"scale {a.scale:.12g},\nto {a.x:.12g}, {a.y:.12g}{', X reversed' if a.reverse_x else ''}"
                f"{', Y reversed' if a.reverse_y else ''}")
    kind = ("fixed polynomial grid" if a.type <= 3 else
            "fixed quadratic grid in chains" if a.type <= 16 else "does nothing")
    return f"type {a.type}: {kind}"


def _datum_text(d: Datum) -> str:
    if d.grid is not None:
        return f"grid {printable(d.grid)}"
    if not any(d[1:]):
        return "no shift to WGS-84"
    return (f"from WGS-84: dX {d.delta_x:.10g}, dY {d.delta_y:.10g}, dZ {d.delta_z:.10g} m, "
            f"scale {d.delta_scale:.10g} ppm,\n"
            f"rX {d.delta_rx:.10g}, rY {d.delta_ry:.10g}, rZ {d.delta_rz:.10g} arc seconds\n"
            "(coordinate frame rotation, not position vector)")


def rows(core: _core.Engine) -> list[tuple[str, str]]:
    """Label and text, as the command `latigo info` has them."""
    facts = core.facts()
    p = params(facts)
    called = {key: value or "without a name" for key, value in names(core)["eng"].items()}
    geoid_text = f"grid {printable(facts['geoid'])}" if facts["geoid"] else "no grid"
    geoid_text += f", constant {facts['geoid_constant']:.10g}"
    if facts["geoid"] or facts["geoid_constant"]:
        geoid_text += ("\nrefers to WGS-84 with wgs84=True, else or with geoid_on_datum=True to the object's ellipsoid")
    return [
        ("projection", f"{p.kind} ({facts['code']})"),
        ("ellipsoid", f"{facts['ellipsoid'] or 'without a name'}, a = {p.semi_major_axis:.10g} m, "
                      f"1/f = {p.inverse_flattening:.12g}"),
        ("origin", f"latitude {p.ref_latitude:.10g}, longitude {p.central_meridian:.10g} degrees"),
        ("parallels", f"{p.north_parallel:.10g}, {p.south_parallel:.10g} degrees"),
        ("scale factor", f"{p.scale_factor:.12g}"),
        ("false origin", f"easting {p.false_easting:.12g}, northing {p.false_northing:.12g}"),
        ("unit", "{unit}, {units} ({unit_short})".format(**called) + f", {facts['unit']:.12g} m"),
        ("vertical unit", "{vertical_unit}, {vertical_units} ({vertical_unit_short})".format(**called)
         + f", {facts['vertical_unit']:.12g} m"),
        ("axes", "{first_axis} ({first_axis_letter}), {second_axis} ({second_axis_letter})".format(**called)),
        ("datum", _datum_text(datum(facts))),
        ("local grid", _adjustment_text(adjustment(facts))),
        ("geoid", geoid_text),
        ("heights", "metres" + (", on the grid's side vertical units" if facts["has_vertical_unit"] else "")),
    ]


def text(core: _core.Engine, title: str) -> str:
    if core.closed():
        return f"latigo.Geodesy {title}, closed"
    indent = "\n" + " " * 18
    return "\n".join([f"latigo.Geodesy {title}"]
                     + [f"  {label:16}" + lines.replace("\n", indent) for label, lines in rows(core)])


def html(core: _core.Engine, title: str) -> str:
    if core.closed():
        return f"<p>{escaping.escape(text(core, title))}</p>"
    body = "".join(f"<tr><th style='text-align:left;vertical-align:top'>{label}</th><td style='text-align:left'>"
                   f"{escaping.escape(lines).replace(chr(10), '<br/>')}</td></tr>" for label, lines in rows(core))
    facts = core.facts()
    return (f"<div style='display:flex;flex-wrap:wrap;gap:1em'><table><caption>{escaping.escape(title)}</caption>{body}"
            f"</table>{_picture.svg(core, facts)}</div>")
