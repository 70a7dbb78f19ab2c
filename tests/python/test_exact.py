"""The module gives the bits of the C functions, and the program's numbers."""
import ctypes
import os

import numpy as np
import pytest

import latigo
from conftest import BUILD, EXAMPLES, SYSTEMS, positions, program

COUNT = int(os.environ.get("LATIGO_POINTS", 1000000))


@pytest.fixture(scope="module")
def library():
    ctypes.CDLL(str(BUILD / "liblatigo.so"), mode=ctypes.RTLD_GLOBAL)
    loops = ctypes.CDLL(str(BUILD / "reference.so"))
    loops.CreateFileGeodesy.restype = ctypes.c_void_p
    loops.DestroyGeodesy.argtypes = [ctypes.c_void_p]
    loops.convert.restype = ctypes.c_long
    loops.convert.argtypes = [ctypes.c_int, ctypes.c_void_p, ctypes.c_long] + [ctypes.c_void_p] * 7
    return loops


def expected(library, function, file, section, inputs):
    """The results of the loop in C; all three arrays."""
    handle = library.CreateFileGeodesy(os.fsencode(file), os.fsencode(section))
    zeros = np.zeros(COUNT)
    results = [np.empty(COUNT) for _ in range(3)]
    arrays = [*inputs, *[zeros] * (4 - len(inputs)), *results]
    failures = library.convert(function, handle, COUNT, *(array.ctypes.data for array in arrays))
    library.DestroyGeodesy(handle)
    assert failures == 0
    return results


def calls(system, latitude, longitude, height):
    """Number of the function, inputs, and the module's call of it."""
    x, y = system.forward(latitude, longitude)
    x = x + np.linspace(-1, 1, COUNT)
    cartesian = system.ecef(latitude, longitude, height)
    near = latitude[::-1], longitude + 0.5
    return [
        (0, (latitude, longitude), system.forward), (1, (x, y), system.inverse),
        (2, (latitude, longitude, height), system.to_wgs84), (3, (latitude, longitude, height), system.from_wgs84),
        (4, (latitude, longitude), system.scale), (5, (x, y), system.scale_at_grid),
        (6, (latitude, longitude), system.undulation), (7, (latitude, longitude, height), system.ecef),
        (8, cartesian, system.geographic), (9, (latitude, longitude, *near), system.distance),
        (10, (latitude, longitude, *near), lambda *line, **more: system.distance(*line, rhumb=True, **more)),
    ]


@pytest.mark.filterwarnings("ignore:.*too long")
@pytest.mark.parametrize("file, section", [(SYSTEMS, "Grids"), (EXAMPLES / "national_grid.ini", "NationalGrid")])
@pytest.mark.filterwarnings("ignore:the object has no geoid")
def test_every_call_has_the_bits_of_the_c_function_on_a_million_points(library, file, section):
    latitude, longitude = positions(COUNT)
    height = np.linspace(-50, 3000, COUNT)
    with latigo.Geodesy(file, section) as system:
        for function, inputs, call in calls(system, latitude, longitude, height):
            wanted = expected(library, function, file, section, [np.ascontiguousarray(array) for array in inputs])
            for threads in 1, 2:
                found = call(*inputs, threads=threads)
                for array, bits in zip(found if isinstance(found, tuple) else (found,), wanted):
                    np.testing.assert_array_equal(array.view(np.int64), bits.view(np.int64), f"{function} {section}")


@pytest.mark.parametrize("section", ["Plain", "Grids", "Local", "Constant", "Turned"])
@pytest.mark.parametrize("options", [{}, {"wgs84": True}, {"wgs84": True, "geoid_on_datum": True}])
def test_heights_and_datum_are_those_of_the_program(section, options):
    latitude, longitude = positions(200, seed=2)
    latitude, longitude = np.round(latitude * .9 + 5, 6), np.round(longitude * .9, 6)
    height = np.linspace(-50.25, 3000, 200)
    flags = [f"--{name.replace('_', '-')}" for name in options]
    text = "".join(f"{a!r} {b!r} {c!r}\n" for a, b, c in zip(latitude, longitude, height))
    with latigo.Geodesy(SYSTEMS, section) as system:
        forward, messages = program("forward", SYSTEMS, "-s", section, *flags, text=text)
        unshifted = "wgs84" in options and section == "Plain"
        assert len(messages.splitlines()) == unshifted == ("no datum shift" in messages) and len(forward) == 200
        grid = np.column_stack(system.forward(latitude, longitude, height, **options))
        np.testing.assert_allclose(grid, forward, rtol=0, atol=2e-9)
        text = "".join(f"{a!r} {b!r} {c!r}\n" for a, b, c in grid)
        inverse, _ = program("inverse", SYSTEMS, "-s", section, *flags, text=text)
        back = np.column_stack(system.inverse(*grid.T, **options))
        np.testing.assert_allclose(back, inverse, rtol=0, atol=2e-9)
        # The parameters' signs are changed for the way back, which leaves 0.3 mm here.
        np.testing.assert_allclose(back, np.column_stack((latitude, longitude, height)), rtol=0, atol=3e-4)


def test_a_longitude_beyond_half_a_turn_from_the_central_meridian_is_the_same_meridian(national, grids):
    for system, options in (national, {}), (grids, {"wgs84": True}):
        assert system.forward(52, 359, **options) == pytest.approx(system.forward(52, -1, **options), abs=1e-6)
    assert grids.to_wgs84(52, -357, 10) == pytest.approx(grids.to_wgs84(52, 3, 10), abs=1e-9)
    assert national.distance(10, 179.7, 10, -179.7) == pytest.approx(national.distance(10, -0.3, 10, 0.3), abs=1e-6)
    sphere = latigo.Geodesy.from_params("SMERC", semi_major_axis=6378137, inverse_flattening=298, central_meridian=10)
    assert sphere.forward(0, -179)[0] == pytest.approx(-sphere.forward(0, 179)[0], abs=1e-6)


def test_parameters_give_the_bits_of_a_file(national):
    latitude, longitude = positions(1000)
    made = latigo.Geodesy.from_params(
        "transverse_mercator", semi_major_axis=6377563.396, inverse_flattening=299.3249646, ref_latitude=49,
        central_meridian=-2, scale_factor=0.9996012717, false_easting=400000, false_northing=-100000, delta_x=-446.448,
        delta_y=125.157, delta_z=-542.060, delta_scale=20.4894, delta_rx=0.1502, delta_ry=0.2470, delta_rz=0.8421)
    for a, b in zip(made.forward(latitude, longitude, 5, wgs84=True),
                    national.forward(latitude, longitude, 5, wgs84=True)):
        np.testing.assert_array_equal(a, b)
    in_radians = latigo.Geodesy.from_params("UTM", semi_major_axis=6378388, inverse_flattening=297, radians=True,
                                            central_meridian=3 * 0.017453292519943295, scale_factor=0.9996,
                                            false_easting=500000)
    plain = latigo.Geodesy(SYSTEMS, "Plain")
    assert in_radians.forward(0.9, 0.1) == plain.forward(0.9, 0.1, radians=True)
    assert in_radians.inverse(5e5, 5e6) == tuple(np.radians(plain.inverse(5e5, 5e6)))
