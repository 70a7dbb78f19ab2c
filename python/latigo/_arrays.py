"""Conversion of anything that NumPy broadcasts."""
from __future__ import annotations

import sys
from collections.abc import Sequence
from typing import Any

import numpy as np

from . import _core
from ._errors import GeodesyError, warn_doubtful

Array = np.ndarray[Any, Any]

RAISE, NAN, CODES = 0, 1, 2
ERRORS = {"raise": RAISE, "nan": NAN, "codes": CODES}
OUTSIDE = {"raise": 0, "warn": 1, "ignore": 2}
SMALLEST_PART = 1024  # points for a thread


def _float64(value: Any) -> Array:
    """The value as it is if it is an array of native, aligned float64; else a copy."""
    if _is_series(value) and value.dtype.kind not in "biuf":
        raise TypeError(f"numbers are needed, not a Series of {value.dtype}")
    if _is_series(value):
        plain_type = isinstance(value.dtype, np.dtype)  # else nullable or sparse
        array = value.to_numpy() if plain_type else value.to_numpy(dtype=np.float64, na_value=np.nan)
    else:
        array = value if isinstance(value, np.ma.MaskedArray) else np.asarray(value)
    if array.dtype.kind not in "biuf" or (array.dtype.kind == "f" and array.dtype.itemsize > 8):
        raise TypeError(f"real numbers of at most 64 bits are needed, not {array.dtype}")
    if isinstance(array, np.ma.MaskedArray):
        array = np.ma.filled(array.astype(np.float64), np.nan)  # type: ignore[no-untyped-call]
    plain: Array = array if _is_plain(array) else np.array(array, dtype=np.float64)
    return plain


def _is_plain(array: Array) -> bool:
    return bool(array.dtype == np.float64 and array.dtype.isnative and array.flags.aligned)


def _is_series(value: Any) -> bool:
    pandas = sys.modules.get("pandas")
    return pandas is not None and isinstance(value, pandas.Series)


def _common_index(inputs: Sequence[Any]) -> Any:
    """The index of the Series among the inputs; None without any. Series are not aligned."""
    series = [value for value in inputs if _is_series(value)]
    for other in series[1:]:
        if not other.index.equals(series[0].index):
            raise ValueError("the Series have different indexes; align them first")
    return series[0].index if series else None


def _overlaps_itself(array: Array) -> bool:
    """Whether two elements share memory, or lie between each other as in no view that indexing makes."""
    extent = array.itemsize
    for stride, length in sorted((abs(stride), length) for stride, length in zip(array.strides, array.shape) if length > 1):
        if stride < extent:
            return True
        extent += stride * (length - 1)
    return False


def _targets(out: Any, shape: tuple[int, ...], count: int) -> tuple[Array, ...]:
    """The arrays of `out`, checked."""
    targets = (out,) if count == 1 and isinstance(out, np.ndarray) else tuple(out)
    if len(targets) != count:
        raise ValueError(f"out needs {count} arrays, not {len(targets)}")
    for i, target in enumerate(targets):
        if not isinstance(target, np.ndarray) or isinstance(target, np.ma.MaskedArray) or not _is_plain(target):
            raise TypeError("out needs arrays of native float64, without masks")
        if not target.flags.writeable:
            raise ValueError("an array of out is read-only")
        if target.shape != targets[0].shape or np.broadcast_shapes(target.shape, shape) != target.shape:
            raise ValueError(f"inputs of shape {shape} do not broadcast to an array of out of shape {target.shape}")
        if any(np.shares_memory(target, other) for other in targets[:i]) or (target.size > 1 and _overlaps_itself(target)):
            raise ValueError("two results have one place in out")
    return targets


def _index(number: int, shape: tuple[int, ...]) -> Any:
    if not shape:
        return None
    index = tuple(int(i) for i in np.unravel_index(number, shape))
    return index[0] if len(index) == 1 else index


def _flat(arrays: Sequence[Array]) -> list[Array]:
    """The arrays with one dimension, if that needs no copy: the loop is then faster."""
    if all(array.ndim > 1 and array.flags.c_contiguous for array in arrays):
        return [array.reshape(-1) for array in arrays]
    return list(arrays)


def convert(engine: _core.Engine, operation: int, inputs: tuple[Any, ...], outputs: int, height: bool, wgs84: bool,
            geoid_on_datum: bool, radians: bool, errors: int, outside: int, threads: int, out: Any = None) -> Any:
    index = _common_index(inputs)
    arrays = [_float64(value) for value in inputs]
    shape = np.broadcast_shapes(*(array.shape for array in arrays))
    if index is not None and shape != (len(index),):
        raise ValueError("a Series is combined with numbers and with arrays of its length only")
    given: tuple[Array, ...] = ()
    if out is not None:
        given = _targets(out, shape, outputs)
        shape = given[0].shape
    targets = tuple(np.asarray(target) for target in given)  # without subclasses: no reshaping flattens a matrix
    # The results are written to `out` at the end if a failure must leave it unchanged, or if it overlaps.
    overlap = any(np.may_share_memory(target, array) for target in targets for array in arrays)
    direct = out is not None and errors != RAISE and not overlap
    results = targets if direct else tuple(np.empty(shape) for _ in range(outputs))
    codes = np.empty(shape, dtype=np.int32) if errors == CODES else None
    sources = [np.broadcast_to(array, shape) for array in arrays]
    size = results[0].size
    operands = _flat([*sources, *results])
    parts = max(1, min(threads, size // SMALLEST_PART))
    first, code, text, function, doubts = engine.convert(
        operation, operands[:len(sources)], operands[len(sources):], codes, height, wgs84, geoid_on_datum, radians,
        errors == RAISE, outside, parts)
    if first >= 0 and errors == RAISE:
        at = np.unravel_index(first, shape) if shape else ()
        raise GeodesyError(text, code, function, _index(first, shape), tuple(float(source[at]) for source in sources))
    for doubt, count, first_doubtful in doubts:
        warn_doubtful(operation, doubt, count, _index(first_doubtful, shape))
    if out is not None:
        if not direct:
            for target, result in zip(targets, results):
                target[...] = result
        results = given
    return _returned(results if codes is None else (*results, codes), index, out is not None)


def _returned(results: tuple[Array, ...], index: Any, given: bool) -> Any:
    values: tuple[Any, ...] = results
    if index is not None and not given:
        values = tuple(sys.modules["pandas"].Series(result, index=index) for result in results)
    elif results[0].ndim == 0 and not given:
        values = tuple(result.item() for result in results)
    return values[0] if len(values) == 1 else values
