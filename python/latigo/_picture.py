"""A picture of the area of a coordinate system: the graticule in its grid coordinates, and its grid files."""
from __future__ import annotations

import math
import typing
from collections.abc import Iterator, Mapping
from typing import Any

import numpy as np

from . import _core

Array = np.ndarray[Any, Any]

_SIZE, _MARGIN = 260, 44  # pixels
_STEPS = 32               # of a line
_FARTHEST = 720           # degrees: of parameters that are angles, not of NaN
_FORWARD = 0              # the number of the operation in the extension
_LINES = 6                # about as many in each direction
_GREY, _BLUE, _ORANGE = "#888", "#2a7fd4", "#d9731a"  # for light and dark pages
# Half the extent in latitude and longitude around the origin, by the projection's code, where there is no grid file.
_REACH = {"LCC": (8, 15), "ALA": (8, 15), "MER": (80, 179), "CME": (80, 179), "PST": (30, 179)}
_OTHER_REACH = (5, 6)


class _Area(typing.NamedTuple):
    south: float
    west: float
    north: float
    east: float


def _file_areas(facts: Mapping[str, Any]) -> list[tuple[str, str, _Area]]:
    found = [(label, colour, facts[key]) for label, colour, key in
             (("datum grid", _BLUE, "datum_area"), ("geoid", _ORANGE, "geoid_area"))]
    return [(label, colour, _Area(*map(math.degrees, area))) for label, colour, area in found if area is not None]


def _area(facts: Mapping[str, Any]) -> _Area:
    files = _file_areas(facts)
    if files:
        sides = list(zip(*(area for _, _, area in files)))
        south, west, north, east = min(sides[0]), min(sides[1]), max(sides[2]), max(sides[3])
        more = 0.1 * max(north - south, east - west)
        return _Area(max(south - more, -89), west - more, min(north + more, 89), east + more)
    meridian, latitude, *parallels = (math.degrees(value) for value in facts["params"][5:9])
    code = facts["code"]
    if code in ("LCC", "ALA"):
        latitude = sum(parallels) / 2
    elif code in ("MER", "CME"):
        latitude, meridian = 0, (meridian if code == "MER" else 0)
    elif code == "PST":
        latitude = math.copysign(90, latitude)
    high, wide = _REACH.get(code, _OTHER_REACH)
    return _Area(max(latitude - high, -90 if code == "PST" else -89), meridian - wide,
                 min(latitude + high, 90 if code == "PST" else 89), meridian + wide)


def _round_values(low: float, high: float) -> Array:
    """Round numbers between two, about as many as lines are wanted."""
    step = next(step for step in (1 / 60, 1 / 12, 1 / 6, .25, .5, 1, 2, 5, 10, 15, 30, 60) if (high - low) / step <= _LINES
                or step == 60)
    return np.arange(math.ceil(low / step - 1e-9), math.floor(high / step + 1e-9) + 1) * step


def _label(value: float, letters: str) -> str:
    value = round((value + 180) % 360 - 180 if letters == "EW" else value, 4)
    return f"{abs(value):g}°" + ("" if value in (0, -180) else f" {letters[int(value < 0)]}")


def _line(core: _core.Engine, south: float, west: float, north: float, east: float) -> Array:
    """Points of a meridian or a parallel in grid coordinates, NaN where the system has none."""
    results = [np.empty(_STEPS + 1) for _ in range(2)]
    positions = [np.linspace(south, north, _STEPS + 1), np.linspace(west, east, _STEPS + 1)]
    core.convert(_FORWARD, positions, results, None, False, False, False, False, False, 0, 1)  # warns of nothing
    return np.column_stack(results)


def _frame(core: _core.Engine, area: _Area) -> list[Array]:
    south, west, north, east = area
    return [_line(core, south, west, south, east), _line(core, south, east, north, east),
            _line(core, north, east, north, west), _line(core, north, west, south, west)]


def _path(lines: list[Array], style: str) -> str:
    def moves() -> Iterator[str]:
        for line in lines:
            letter = "M"
            for x, y in line:
                if math.isfinite(x) and math.isfinite(y):
                    yield f"{letter}{x:.1f} {y:.1f}"
                    letter = "L"
                else:
                    letter = "M"

    return f'<path d="{"".join(moves())}" fill="none" {style}/>'


def svg(core: _core.Engine, facts: Mapping[str, Any]) -> str:
    area = _area(facts)
    if not all(abs(side) <= _FARTHEST for side in area):
        return ""
    meridians, parallels = _round_values(area.west, area.east), _round_values(area.south, area.north)
    frame = _frame(core, area)
    east_west = [_line(core, area.south, value, area.north, value) for value in meridians]
    south_north = [_line(core, value, area.west, value, area.east) for value in parallels]
    every = np.concatenate([*frame, *east_west, *south_north])
    every = every[np.isfinite(every).all(axis=1)]
    if len(every) == 0:
        return ""
    low, high = every.min(axis=0), every.max(axis=0)
    scale = _SIZE / max(*(high - low), 1e-9)
    width, height = (high - low) * scale + 2 * _MARGIN

    def pixels(line: Array) -> Array:
        return np.column_stack(((line[:, 0] - low[0]) * scale + _MARGIN, (high[1] - line[:, 1]) * scale + _MARGIN))

    def texts(lines: list[Array], values: Array, letters: str, anchor: str, dx: int, dy: int) -> Iterator[str]:
        for line, value in zip(lines, values):
            x, y = pixels(line)[0]
            if math.isfinite(x) and math.isfinite(y):
                yield f'<text x="{x + dx:.1f}" y="{y + dy:.1f}" text-anchor="{anchor}">{_label(value, letters)}</text>'

    def rims() -> Iterator[str]:
        """Longitudes at the outer ends of the meridians."""
        for line, value in zip(east_west, meridians):
            ends = pixels(line)[[0, -1]] - np.array([width, height]) / 2
            x, y = max(ends, key=lambda end: math.hypot(*end)) * 1.15 + np.array([width, height]) / 2
            yield f'<text x="{x:.1f}" y="{y + 4:.1f}" text-anchor="middle">{_label(value, "EW")}</text>'

    parts = [_path([pixels(line) for line in east_west + south_north], f'stroke="{_GREY}" stroke-opacity=".6"'),
             _path([pixels(line) for line in frame], f'stroke="{_GREY}" stroke-width="1.5"')]
    for i, (label, colour, files) in enumerate(_file_areas(facts)):
        parts.append(_path([pixels(line) for line in _frame(core, files)], f'stroke="{colour}" stroke-width="2"'))
        parts.append(f'<text x="{_MARGIN + 100 * i}" y="14" fill="{colour}">{label}</text>')
    if facts["code"] == "PST":
        parts += rims()
    else:
        parts += texts(east_west, meridians, "EW", "middle", 0, 14)
        parts += texts(south_north, parallels, "NS", "end", -5, 4)
    return (f'<svg xmlns="http://www.w3.org/2000/svg" width="{width:.0f}" height="{height:.0f}" role="img" '
            f'font-family="sans-serif" font-size="10" fill="{_GREY}"><title>Graticule in grid coordinates</title>'
            f'{"".join(parts)}</svg>')
