"""latigo.dask: what arrays and columns of Dask return is what the methods return for the same numbers."""
import inspect
import os
import pickle
import subprocess
import sys

import dask
import dask.array as da
import dask.dataframe as dd
import numpy as np
import pandas as pd
import pytest

import latigo
import latigo.dask
from conftest import FOLDER, PACKAGE

COUNT = 1000
random = np.random.default_rng(13)
latitude, longitude = random.uniform(48.5, 55.5, COUNT), random.uniform(-3.5, 7.5, COUNT)
height = random.uniform(-50, 3000, COUNT)
x, y, z = random.uniform(2e5, 8e5, COUNT), random.uniform(5.4e6, 6.1e6, COUNT), random.uniform(4e6, 5e6, COUNT)

# Every function, with and without what is optional; the names are those of the columns.
CALLS = [
    ("forward", (latitude, longitude), {}, "x y"),
    ("forward", (latitude, longitude, height), {"wgs84": True}, "x y height"),
    ("forward", (latitude, longitude, height), {"wgs84": True, "geoid_on_datum": True}, "x y height"),
    ("forward", (latitude, longitude), {"errors": "codes"}, "x y code"),
    ("inverse", (x, y), {"radians": True}, "latitude longitude"),
    ("inverse", (x, y, height), {"wgs84": True, "outside_grid": "ignore"}, "latitude longitude height"),
    ("to_wgs84", (latitude, longitude), {}, "latitude longitude"),
    ("from_wgs84", (latitude, longitude, height), {"threads": 2}, "latitude longitude height"),
    ("scale", (latitude, longitude), {"wgs84": True}, "scale"),
    ("scale", (latitude, longitude), {"errors": "codes"}, "scale code"),
    ("scale_at_grid", (x, y), {}, "scale"),
    ("undulation", (latitude, longitude), {}, "undulation"),
    ("ecef", (latitude, longitude), {}, "x y z"),
    ("geographic", (x, y, z), {"errors": "nan"}, "latitude longitude height"),
    ("distance", (latitude, longitude, latitude[::-1].copy(), longitude), {"rhumb": True}, "distance azimuth"),
]


def as_tuple(results):
    return results if isinstance(results, tuple) else (results,)


@pytest.mark.parametrize("method, inputs, options, names", CALLS)
def test_arrays_and_columns_equal_the_method_bit_by_bit(grids, method, inputs, options, names):
    expected = as_tuple(getattr(grids, method)(*inputs, **options))
    function = getattr(latigo.dask, method)
    arrays = as_tuple(function(grids, *(da.from_array(each, chunks=170) for each in inputs), **options))
    assert len(arrays) == len(expected) == len(names.split())
    for array, right in zip(arrays, expected):
        assert array.dtype == right.dtype and array.chunks == ((170,) * 5 + (150,),)
    for got, right in zip(dask.compute(*arrays), expected):
        assert got.dtype == right.dtype and got.tobytes() == right.tobytes()

    labels = np.array([f"station {i:04}" for i in range(COUNT)], object)
    frame = dd.from_pandas(pd.DataFrame(dict(zip("abcd", inputs)), index=labels), npartitions=4)
    columns = as_tuple(function(grids, *(frame[name] for name in frame.columns), **options))
    assert [column.name for column in columns] == names.split()
    assert all(column.divisions == frame.divisions for column in columns)
    assert all(column._meta.index.dtype == frame._meta.index.dtype == object for column in columns)
    for column, got, right in zip(columns, dask.compute(*columns), expected):
        assert got.dtype == column.dtype == right.dtype and got.to_numpy().tobytes() == right.tobytes()
        assert (got.index == labels).all()
    assigned = frame.assign(**{f"new_{i}": column for i, column in enumerate(columns)}).compute()
    assert assigned.new_0.to_numpy().tobytes() == expected[0].tobytes()


def test_shapes_follow_the_rules_of_broadcasting(grids):
    rows, columns = latitude[:30, np.newaxis], longitude[:40]
    right = grids.forward(rows, columns)
    for inputs in [(da.from_array(rows, chunks=7), da.from_array(columns, chunks=9)), (da.from_array(rows), columns)]:
        assert [each.tobytes() for each in dask.compute(*latigo.dask.forward(grids, *inputs))] == [
            each.tobytes() for each in right]
    for other in longitude, da.from_array(longitude, chunks=70):
        blocks = latigo.dask.forward(grids, da.from_array(latitude, chunks=100), other)
        assert (blocks[0].compute() == grids.forward(latitude, longitude)[0]).all()
    line = latigo.dask.forward(grids, da.from_array(latitude, chunks=100), 3)
    assert (line[1].compute() == grids.forward(latitude, 3)[1]).all()
    empty = latigo.dask.forward(grids, da.zeros(0, chunks=1), 3)
    assert empty[0].compute().shape == (0,)


def test_an_object_needs_nothing_for_map_blocks_and_map_partitions(grids):
    blocks = [da.from_array(each, chunks=90) for each in (latitude, longitude)]
    scale = da.map_blocks(grids.scale, *blocks, dtype=float)
    assert scale.compute().tobytes() == grids.scale(latitude, longitude).tobytes()
    frame = dd.from_pandas(pd.DataFrame({"latitude": latitude, "longitude": longitude}), npartitions=3)
    undulation = frame.map_partitions(lambda part: grids.undulation(part.latitude, part.longitude), meta=("u", "f8"))
    for scheduler in ("threads", "processes"):
        got = undulation.compute(scheduler=scheduler, num_workers=2)
        assert got.to_numpy().tobytes() == grids.undulation(latitude, longitude).tobytes()


def test_the_settings_of_the_object_hold_and_equal_objects_give_equal_names(grids):
    lines = [latigo.Geodesy(FOLDER / "systems.ini", "Plain", errors="codes", radians=True) for _ in range(2)]
    points = [da.from_array(np.radians(each), chunks=500) for each in (latitude, longitude)]
    first, second = (latigo.dask.forward(each, *points) for each in lines)
    assert len(first) == 3 and first[2].dtype == np.int32
    assert [each.name for each in first] == [each.name for each in second]
    assert first[0].name != latigo.dask.forward(lines[0], *points, wgs84=True)[0].name
    assert first[0].name != latigo.dask.forward(grids, *points)[0].name


def test_failures_name_the_point_and_are_found_before_the_work_where_they_can_be(grids):
    bad = latitude.copy()
    bad[777] = 90
    arrays = [da.from_array(each, chunks=100) for each in (bad, longitude)]
    for scheduler in ("threads", "processes"):  # an exception of a process has been pickled
        with pytest.raises(latigo.GeodesyError, match="is a pole") as caught:
            dask.compute(*latigo.dask.forward(grids, *arrays), scheduler=scheduler, num_workers=2)
        assert (caught.value.code, caught.value.index) == (6, 77)
        assert caught.value.coordinates == (90, longitude[777])
    codes = latigo.dask.forward(grids, *arrays, errors="codes")[2].compute()
    assert codes.nonzero()[0].tolist() == [777] and codes[777] == 6
    for options in ({"errors": "none"}, {"outside_grid": "no"}, {"threads": 0}):
        with pytest.raises(ValueError, match="are (known|possible)"):
            latigo.dask.forward(grids, *arrays, **options)
    frame = dd.from_pandas(pd.DataFrame({"latitude": latitude}), npartitions=2)
    for other in (longitude, arrays[1]):
        with pytest.raises(TypeError, match="columns are combined"):
            latigo.dask.forward(grids, frame.latitude, other)


def test_a_worker_with_another_grid_file_refuses(grids, tmp_path):
    task = pickle.dumps(latigo.dask._Block(grids, "scale", ("scale",), {}))
    code = "import pickle, sys\nprint(pickle.load(sys.stdin.buffer)(52.0, 1.0))"
    (tmp_path / "datum").mkdir()
    for name in ("d.dat", "g.dat"):
        content = bytearray((FOLDER / "datum" / name).read_bytes())
        (tmp_path / "datum" / name).write_bytes(content)
    run = [sys.executable, "-c", code]
    environment = {**os.environ, "TWI_BATHYX": str(tmp_path)}
    done = subprocess.run(run, input=task, capture_output=True, env=environment, timeout=60)
    assert float(done.stdout) == grids.scale(52.0, 1.0), done.stderr
    content[-1] ^= 1
    (tmp_path / "datum/g.dat").write_bytes(content)
    done = subprocess.run(run, input=task, capture_output=True, env=environment, timeout=60)
    assert b"the geoid grid file is another" in done.stderr and done.returncode != 0


def test_every_conversion_is_there_with_the_arguments_of_the_method_and_the_types_agree():
    for name in latigo.dask.__all__:
        own = inspect.signature(getattr(latigo.dask, name)).parameters
        method = inspect.signature(getattr(latigo.Geodesy, name)).parameters
        assert [each for each in own if each != "system"] == [each for each in method if each not in ("self", "out")]
    calls = {name for name, each in vars(latigo.Geodesy).items()
             if name[0] != "_" and inspect.isfunction(each) and "out" in inspect.signature(each).parameters}
    assert calls == set(latigo.dask.__all__)
    environment = {**os.environ, "MYPYPATH": PACKAGE, "PYTHONPATH": PACKAGE}
    done = subprocess.run([sys.executable, "-m", "mypy.stubtest", "latigo.dask"], capture_output=True, text=True,
                          cwd=FOLDER, env=environment, timeout=120)
    assert done.returncode == 0, done.stdout + done.stderr
