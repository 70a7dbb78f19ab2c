"""Broadcasting as a ufunc does: shapes, strides, types, out."""
import numpy as np
import pandas as pd
import pytest
from hypothesis import given, settings, strategies as st
from hypothesis.extra import numpy as arrays

import latigo
from conftest import EXAMPLES, positions

SYSTEM = latigo.Geodesy(EXAMPLES / "national_grid.ini", "NationalGrid")
DTYPES = st.sampled_from(["<f8", ">f8", "f4", "f2", "i4", "u1", "?"])


def one_by_one(latitude, longitude):
    """The results of single points, in the shape of the broadcast."""
    latitude, longitude = np.broadcast_arrays(np.asarray(latitude, dtype=float), np.asarray(longitude, dtype=float))
    pairs = [SYSTEM.forward(float(a), float(b)) for a, b in zip(latitude.flat, longitude.flat)]
    return [np.array([pair[i] for pair in pairs]).reshape(latitude.shape) for i in range(2)]


@st.composite
def operands(draw):
    """Two arrays that broadcast: any strides, any numeric type."""
    shapes = draw(arrays.mutually_broadcastable_shapes(num_shapes=2, min_side=0, max_side=4, max_dims=4)).input_shapes
    made = []
    for shape in shapes:
        dtype = np.dtype(draw(DTYPES))
        values = draw(arrays.arrays(np.int8, shape, elements=st.integers(0, 1 if dtype == bool else 80))).astype(dtype)
        kind = draw(st.sampled_from(["plain", "reversed", "fortran", "step", "unaligned", "zero stride"]))
        if kind == "reversed":
            values = values[..., ::-1] if values.ndim else values
        elif kind == "fortran":
            values = np.asfortranarray(values)
        elif kind == "step":
            wide = np.zeros((*values.shape, 3), dtype)
            wide[..., 1] = values
            values = wide[..., 1]
        elif kind == "unaligned":
            bytes_ = np.zeros(values.nbytes + 1, np.uint8)
            moved = np.ndarray(values.shape, dtype, bytes_.data, offset=1)
            moved[...] = values
            values = moved
        elif kind == "zero stride" and values.ndim:
            values = np.broadcast_to(values[:1], values.shape) if values.shape[0] else values
        made.append(values)
    return made


@settings(max_examples=300, deadline=None)
@given(operands())
def test_arrays_give_what_single_points_give(pair):
    before = [array.copy() for array in pair]
    found = SYSTEM.forward(*pair, threads=2)
    for array, wanted in zip(found, one_by_one(*pair)):
        assert np.shape(array) == wanted.shape
        np.testing.assert_array_equal(array, wanted)
        assert isinstance(array, np.ndarray) == (wanted.ndim > 0)
    for array, copy in zip(pair, before):
        np.testing.assert_array_equal(array, copy)


@settings(max_examples=200, deadline=None)
@given(st.data(), st.sampled_from(["raise", "nan"]))
def test_out_may_overlap_the_inputs_in_any_way(data, errors):
    """Inputs and results are windows of one buffer, at all distances and with steps of both signs."""
    buffer = np.linspace(1, 80, 60)
    length = data.draw(st.integers(0, 10))

    def window(name):
        step = data.draw(st.sampled_from([-2, -1, 1, 2]), name)
        start = data.draw(st.integers(0, 59 - 20) if step > 0 else st.integers(20, 59), name)
        return buffer[start:start + step * length if length and start + step * length >= 0 else None:step][:length]

    latitude, longitude, x, y = map(window, ("latitude", "longitude", "x", "y"))
    if np.shares_memory(x, y):
        with pytest.raises(ValueError):
            SYSTEM.forward(latitude, longitude, out=(x, y), errors=errors)
        return
    wanted = one_by_one(latitude.copy(), longitude.copy())
    found = SYSTEM.forward(latitude, longitude, out=(x, y), errors=errors)
    assert found[0] is x and found[1] is y
    np.testing.assert_array_equal(x, wanted[0])
    np.testing.assert_array_equal(y, wanted[1])


def test_out_takes_inputs_of_fewer_dimensions_and_one_array_for_one_result():
    x, y = np.empty((2, 3)), np.empty((3, 2)).T
    SYSTEM.forward([50, 51, 52], 1, out=(x, y))
    np.testing.assert_array_equal(y[1], SYSTEM.forward([50, 51, 52], 1)[1])
    assert SYSTEM.scale([50, 51, 52], 1, out=x) is x
    row = np.empty(3)  # with a stride of 0 along the one new axis
    SYSTEM.scale([[50, 51, 52]], 1, out=row[np.newaxis])
    np.testing.assert_array_equal(row, x[0])


def test_a_matrix_takes_results():
    latitude, longitude = (values.reshape(2, -1) for values in positions(6000))
    x, y = (np.zeros((2, 3000)).view(np.matrix) for _ in range(2))
    found = SYSTEM.forward(latitude, longitude, errors="nan", threads=2, out=(x, y))
    assert found[0] is x and found[1] is y
    np.testing.assert_array_equal(found, SYSTEM.forward(latitude, longitude))


@pytest.mark.parametrize("out, error", [
    ((np.empty(3),), ValueError), ((np.empty(2), np.empty(2)), ValueError),
    ((np.empty(3, "f4"), np.empty(3)), TypeError), (([0] * 3, [0] * 3), TypeError),
    ((np.empty(3), np.broadcast_to(0.0, 3)), ValueError), ((np.empty(3), np.empty((2, 3))), ValueError),
    ((np.empty((2, 3)), np.lib.stride_tricks.sliding_window_view(np.empty(4), 3, writeable=True)), ValueError),
    ((np.empty(3), np.ma.empty(3)), TypeError),
])
def test_an_unusable_out_is_refused(out, error):
    with pytest.raises(error):
        SYSTEM.forward([50, 51, 52], 1, out=out)


@pytest.mark.parametrize("value", ["52", ["52"], [None], 52 + 1j, np.array([52], object), [np.datetime64("2020-01-01")],
                                   np.longdouble([52]), pd.Series(["52"]), pd.Series(np.longdouble([52, np.nan])), None,
                                   *map(np.ma.array, (["52"], [52 + 1j], [np.datetime64("2020-01-01")], np.longdouble([52])))])
def test_what_is_no_real_number_is_refused(value):
    with pytest.raises(TypeError):
        SYSTEM.forward(value, 1.0)


def test_numbers_of_every_type_give_floats():
    for number in 52, 52.0, np.float64(52), np.float32(52), np.int16(52), np.array(52), True + 51:
        assert SYSTEM.forward(number, 1) == SYSTEM.forward(52.0, 1.0)
        assert type(SYSTEM.forward(number, 1)[0]) is float
        assert type(SYSTEM.scale(number, 1)) is float
    with pytest.raises(OverflowError):
        SYSTEM.forward(10**400, 1)


def test_series_come_back_as_series_with_their_index():
    frame = pd.DataFrame({"lat": [50.0, 51, np.nan], "lon": [1, 2, 3]}, index=["a", "b", "c"])
    x, y = SYSTEM.forward(frame.lat, frame.lon, errors="nan")
    assert list(x.index) == ["a", "b", "c"] and x["b"] == SYSTEM.forward(51, 2)[0] and np.isnan(y["c"])
    assert list(SYSTEM.scale(frame.lat[:2], 1).index) == ["a", "b"]
    for kind in "Float64", "Int64", "Sparse[float64]":
        other = frame.lat.astype(kind)
        np.testing.assert_array_equal(SYSTEM.forward(other, 1, errors="codes")[2], [0, 0, latigo.NOT_FINITE])
        assert SYSTEM.forward(other[:2], 1)[0].equals(SYSTEM.forward(frame.lat[:2], 1)[0])
    with pytest.raises(ValueError, match="different indexes"):
        SYSTEM.forward(frame.lat, frame.lon[::-1])
    with pytest.raises(ValueError, match="its length"):
        SYSTEM.forward(frame.lat, [[1], [2]])


def test_masked_points_fail():
    masked = np.ma.masked_array([50.0, 51], mask=[False, True])
    np.testing.assert_array_equal(SYSTEM.forward(masked, 1, errors="codes")[2], [0, latigo.NOT_FINITE])


def test_threads_convert_all_points_once():
    latitude, longitude = positions(10001)
    for threads in 1, 3, 8:
        x, y = SYSTEM.forward(latitude, longitude, threads=threads)
        np.testing.assert_array_equal(x, SYSTEM.forward(latitude, longitude)[0])
    latitude[[7000, 9000]] = 90
    with pytest.raises(latigo.GeodesyError) as caught:
        SYSTEM.forward(latitude, longitude, threads=8)
    assert caught.value.index == 7000
