"""Failures and warnings."""
from __future__ import annotations

import os
import sys
import warnings
from typing import Any

# Codes of failures that are none of the library's, whose codes are positive (docs/errors.md).
NOT_FINITE = -1
BEYOND_POLE = -2
OUTSIDE_DATUM_GRID = -3
DATUM_ROW_UNREADABLE = -4
GRID_FILE_CHANGED = -5
CLOSED = -6
BEYOND_TURN = -7

_LINES = (9, 10)  # the numbers of the distances among the operations of the extension


class GeodesyError(ValueError):
    """A point, or a coordinate system, that the library refuses.

    Attributes
    ----------
    code : int
        The library's code, or one of the negative codes of this module.
    text : str
        What the code means.
    function : str or None
        The library's function that failed.
    index : int, tuple of int, or None
        Of the first failed point: its number in an array of one dimension, its indices in another one; None for a single
        point and for a system.
    coordinates : tuple of float, or None
        The input of the failed point, in the units of the call.
    """

    def __init__(self, text: str, code: int = 0, function: str | None = None,
                 index: int | tuple[int, ...] | None = None, coordinates: tuple[float, ...] | None = None) -> None:
        super().__init__(text, code, function, index, coordinates)
        self.text = text
        self.code = code
        self.function = function
        self.index = index
        self.coordinates = coordinates

    def __str__(self) -> str:
        message = f"code {self.code}: {self.text}" if self.code > 0 else self.text
        if self.coordinates is not None:
            message += " at " + ", ".join(repr(float(value)) for value in self.coordinates)
        return message if self.index is None else f"{message} (index {self.index})"


class GeodesyWarning(UserWarning):
    """A doubtful result, or a value of a definition that is probably not meant so."""


def printable(name: str | bytes | os.PathLike[str]) -> str:
    """A name of a file or section as text, with escapes for control characters and for bytes that are no text."""
    text = os.fsencode(name).decode(sys.getfilesystemencoding(), "backslashreplace")
    return "".join(each if each.isprintable() else each.encode("unicode_escape").decode() for each in text)


def warn(text: str) -> None:
    """Warns of the line outside this package that made the call."""
    level = 2
    try:
        while sys._getframe(level - 1).f_globals.get("__package__") == __package__:
            level += 1
    except ValueError:
        pass
    warnings.warn(text, GeodesyWarning, stacklevel=level)


def warn_doubtful(operation: int, doubt: str, count: int, index: Any) -> None:
    """Warns of points, or lines, that were converted but are doubtful; `index` is that of the first, None for a single one."""
    noun = "line" if operation in _LINES else "point"
    place = "" if index is None else f"; the first is at index {index}"
    warn(f"{count} {noun}{'s' if count != 1 else ''} {doubt}{place}")
