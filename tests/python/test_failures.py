"""Failures point by point, and of definitions."""
import warnings

import numpy as np
import pytest

import latigo
from conftest import EXAMPLES, FOLDER, SYSTEMS, UTM, program


def error_of(call, *arguments, **options):
    with pytest.raises(latigo.GeodesyError) as caught:
        call(*arguments, **options)
    return caught.value


def test_a_failed_point_says_what_where_and_why(national):
    error = error_of(national.forward, [[49, 50, 90], [90, 0, 0]], 1.5)
    assert (error.code, error.index, error.coordinates, error.function) == (6, (0, 2), (90.0, 1.5), "GeoXY")
    assert error.text in str(error) and "90.0, 1.5" in str(error) and isinstance(error, ValueError)
    assert error_of(national.forward, [49, 90], 1).index == 1
    assert error_of(national.forward, 90, 1).index is None
    assert error_of(national.forward, np.array(90), 1).index is None


# A sphere's Mercator maps y of any size to a latitude; far beyond the area of a conic the latitude is beyond the pole.
CONIC = dict(kind="LCC", semi_major_axis=6378137, inverse_flattening=298.25, north_parallel=45, south_parallel=45)


@pytest.mark.parametrize("call, inputs, code", [
    ("forward", (90, 0), 6), ("forward", (np.nan, 0), latigo.NOT_FINITE), ("forward", (0, np.inf), latigo.BEYOND_TURN),
    ("inverse", (9e9, 0), 10), ("scale_at_grid", (0, 9e9), 10), ("to_wgs84", (np.nan, 0), latigo.OUTSIDE_DATUM_GRID),
    ("ecef", (0, np.nan, 0), latigo.NOT_FINITE), ("geographic", (np.nan, 0, 0), latigo.NOT_FINITE),
    ("distance", (0, 0, np.nan, 0), latigo.NOT_FINITE), ("undulation", (60, 3), 8),
    *((name, (91, 3), latigo.BEYOND_POLE) for name in ("forward", "scale", "undulation", "to_wgs84", "from_wgs84")),
    ("ecef", (-90.5, 3, 0), latigo.BEYOND_POLE), ("distance", (0, 0, 91, 0), latigo.BEYOND_POLE),
    *((name, (52, 361), latigo.BEYOND_TURN) for name in ("forward", "scale", "undulation", "to_wgs84", "from_wgs84", "ecef")),
    ("distance", (0, 0, 1, -361), latigo.BEYOND_TURN), ("distance", (0, 1e300, 1, 0), latigo.BEYOND_TURN),
])
def test_a_failed_point_is_an_exception_or_nan_or_a_code(grids, call, inputs, code):
    call = getattr(grids, call)
    assert error_of(call, *inputs).code == code
    assert error_of(call, *([value] for value in inputs)).code == code
    assert np.isnan(np.asarray(call(*inputs, errors="nan"))).all()
    *values, found = call(*inputs, errors="codes")
    assert found == code and type(found) is int and np.isnan(values).all()
    good = [1.0, 2.0, 3.0, 4.0] if call == grids.geographic or call == grids.ecef else [52.0, 3.0, 52.5, 3.5]
    mixed = [[bad, fine] for bad, fine in zip(inputs, good)]
    *values, found = call(*mixed, errors="codes")
    assert found.dtype == np.int32 and list(found) == [code, 0]
    assert all(np.isnan(array[0]) and np.isfinite(array[1]) for array in values)


def test_a_result_beyond_the_pole_is_a_failure():
    far = latigo.Geodesy.from_params("CAS", semi_major_axis=6378137, inverse_flattening=298.25, delta_x=100)
    assert error_of(far.inverse, 0, 1.2e7).code == latigo.BEYOND_POLE
    assert error_of(far.inverse, 0, 1.2e7, wgs84=True).code == latigo.BEYOND_POLE


def test_nothing_is_written_if_a_point_raises(national):
    x, y = np.full(5000, 7.0), np.full(5000, 8.0)
    latitude = np.full(5000, 50.0)
    latitude[4000] = 90
    for threads in 1, 4:
        error_of(national.forward, latitude, 1, out=(x, y), threads=threads)
        assert (x == 7).all() and (y == 8).all()
    error_of(national.forward, latitude, 1, out=(latitude, y))
    assert latitude[0] == 50


def test_outside_a_datum_grid_is_a_failure_a_warning_or_nothing(grids):
    assert error_of(grids.forward, 60, 3, wgs84=True).code == latigo.OUTSIDE_DATUM_GRID
    assert error_of(grids.inverse, *grids.forward(60, 3), wgs84=True).code == latigo.OUTSIDE_DATUM_GRID
    for call in grids.to_wgs84, grids.from_wgs84:
        assert list(call([52, 60], 3, errors="codes")[2]) == [0, latigo.OUTSIDE_DATUM_GRID]
        with pytest.warns(latigo.GeodesyWarning, match="^2 points outside .* first is at index 1$") as caught:
            warned = call([52, 60, 61], 3, outside_grid="warn")
        assert caught[0].filename == __file__
        with pytest.warns(latigo.GeodesyWarning, match="^1 point "):
            single = call(60, 3, outside_grid="warn")
        with warnings.catch_warnings():
            warnings.simplefilter("error")
            ignored = call([52, 60, 61], 3, outside_grid="ignore")
        assert ignored[0][1] == warned[0][1] == single[0] and abs(single[0] - 60) < 0.01


def test_a_datum_grid_without_heights_warns_of_those_that_need_it():
    with latigo.Geodesy(SYSTEMS, "Flat") as flat, warnings.catch_warnings():
        warnings.simplefilter("error")
        for call, point in (flat.forward, (52, 3)), (flat.inverse, flat.forward(52, 3)):
            call(*point, wgs84=True)
            with pytest.raises(latigo.GeodesyWarning, match="the datum grid does not change heights"):
                call(*point, 7.5, wgs84=True, geoid_on_datum=True)
        flat.forward(52, 3, 7.5, wgs84=True)  # from WGS-84 to a geoid that refers to it
        flat.to_wgs84(52, 3)
        with pytest.raises(latigo.GeodesyWarning, match="the datum grid does not change heights"):
            flat.to_wgs84(52, 3, 7.5)


def test_the_limits_of_a_datum_grid_are_those_of_the_library(grids):
    """Beside the limits, to the last bit: a point with a shift is 100 m and more from where it would be without."""
    near = [np.nextafter(limit, limit + side) if side else limit for limit in (48.0, 56.0, -4.0, 8.0) for side in (-1, 0, 1)]
    latitude = np.array(near[:6] + [52.0] * 6)
    longitude = np.array([2.0] * 6 + near[6:])
    codes = grids.to_wgs84(latitude, longitude, errors="codes")[2]
    height = grids.to_wgs84(latitude, longitude, 0, outside_grid="ignore")[2]
    unshifted = grids.to_wgs84(latitude + np.repeat([-1, 1, 0, 0], 3), longitude + np.repeat([0, 0, -1, 1], 3), 0,
                               outside_grid="ignore")[2]
    assert list(codes == 0) == list(abs(height - unshifted) > 90)
    assert 0 < (codes == 0).sum() < 12


def test_rows_of_a_datum_grid_that_cannot_be_read_are_a_failure():
    with latigo.Geodesy(SYSTEMS, "Cut") as cut:
        codes = cut.to_wgs84([48, 50.5, 51, 55, 57], 3, errors="codes")[2]
        row = latigo.DATUM_ROW_UNREADABLE
        assert list(codes) == [0, 0, row, row, latigo.OUTSIDE_DATUM_GRID]


def test_settings_hold_for_calls_that_do_not_say_otherwise():
    system = latigo.Geodesy(SYSTEMS, "Grids", radians=True, errors="nan", outside_grid="ignore", threads=2)
    assert np.isnan(system.forward(0.9, np.inf)[0])
    assert system.to_wgs84(1.1, 0.05)[0] == pytest.approx(1.1, abs=1e-4)
    assert error_of(system.to_wgs84, 60, 3, radians=False, errors="raise", outside_grid="raise").code == -3
    for wrong in {"errors": "none"}, {"outside_grid": "no"}, {"threads": 0}:
        with pytest.raises(ValueError):
            system.forward(0.9, 0.1, **wrong)
        with pytest.raises(ValueError):
            latigo.Geodesy(SYSTEMS, "Grids", **wrong)
    with pytest.raises(TypeError, match="integer"):
        system.forward(0.9, 0.1, threads=1.5)


def test_a_faulty_definition_says_its_place():
    with pytest.raises(FileNotFoundError):
        latigo.Geodesy(FOLDER / "none.ini")
    assert "it has Plain, Grids" in str(error_of(latigo.Geodesy, SYSTEMS, "Grid"))
    assert "no section Geodesy; it has Plain" in str(error_of(latigo.Geodesy, SYSTEMS))
    assert "[NationalGrid]" in repr(latigo.Geodesy(EXAMPLES / "national_grid.ini"))  # the only one
    (FOLDER / "faulty.ini").write_text(
        f"[A]\n{UTM}Geoid=none.dat\n[B]\n{UTM}DynDatum=none.dat\n[C]\n{UTM.replace('UTM', 'ABC')}\n[D]\nProjection=UTM\n")
    for section, code, part in ("A", 9, "datum"), ("B", 1, str(FOLDER)), ("C", 5, "faulty.ini [C]"), ("D", 3, "[D]"):
        error = error_of(latigo.Geodesy, FOLDER / "faulty.ini", section)
        assert error.code == code and part in str(error)
    assert error_of(latigo.Geodesy.from_params, "Mercater", semi_major_axis=1, inverse_flattening=300).code == 5
    assert error_of(latigo.Geodesy.from_params, "UTM", semi_major_axis=1, inverse_flattening=0).code == 3
    assert error_of(latigo.Geodesy.from_params, "UTM", semi_major_axis=1, inverse_flattening=300, adjust_scale=0).code == 7
    for wrong, error, text in [({"datum_grid": FOLDER / "datum/d.dat\0"}, ValueError, "null"), ({"kind": 3.0}, TypeError, "integer"),
                               ({"geoid": FOLDER / "datum/g.dat\0.old"}, ValueError, "null"),
                               ({"adjust_type": 1.0}, TypeError, "integer"), ({"adjust_type": -1}, ValueError, "possible")]:
        with pytest.raises(error, match=text):
            latigo.Geodesy.from_params(**{"kind": "UTM", "semi_major_axis": 6378137, "inverse_flattening": 298} | wrong)


@pytest.mark.parametrize("text", [
    "\ufeff[ one ]\r\n; Unit=7\r\n" + UTM.replace("\n", "\r\n"), "[two]\nProjection=MER\n[ONE]\n" + UTM + "[one]\nUnit=3\n",
    "[One]\r" + UTM.replace("\n", "\r") + "Unit\r unit = '0.3048' \rUNIT=2\r", "[one]]x\n[one]\n" + UTM,
    "[one] ; more ]\n[one]\n" + UTM + "\x1a\nx[y]=3\n",
])
def test_a_section_is_read_as_the_library_reads_it(text):
    """Opening compares with the library's own reading of the file, and would refuse another definition."""
    path = FOLDER / "odd.ini"
    path.write_bytes(text.encode())
    assert latigo.Geodesy(path, "one").params.kind == "transverse Mercator"


def test_a_closed_object_refuses_every_use(grids):
    grids.close()
    grids.close()
    for use in (lambda: grids.forward(52, 3), lambda: grids.forward([52], 3), lambda: grids.params, lambda: grids.names,
                lambda: grids.__getstate__()):
        assert error_of(use).code == latigo.CLOSED
    assert grids.closed and repr(grids).endswith("closed") and "closed" in grids._repr_html_()


def test_a_line_too_long_for_its_formulas_is_a_warning(national):
    for latitudes, message in [(53, "1 line too long"), ([50.1, 53, 54], "2 lines too long .* index 1")]:
        with pytest.warns(latigo.GeodesyWarning, match=message):
            national.distance(50, -2, latitudes, -2)
    with pytest.warns(latigo.GeodesyWarning, match="too long"):  # near a pole also a shorter one
        national.distance(89.9, 0, 89.9, 90)
    with warnings.catch_warnings():
        warnings.simplefilter("error")
        national.distance(50, -2, [50.9, 49.1], -2)
        national.distance(50, -2, 53, -2, rhumb=True)
    with pytest.warns(latigo.GeodesyWarning, match="^1 line almost along a parallel"):
        national.distance(50, -2, 50 + 1e-12, -1, rhumb=True)


@pytest.mark.parametrize("file, section", [("national_grid.ini", "NationalGrid"), ("swiss.ini", "LV95")])
@pytest.mark.parametrize("threads", [1, 2])
def test_points_too_far_from_the_origin_are_a_warning_as_in_the_program(file, section, threads):
    latitude, longitude = np.meshgrid(np.linspace(-80, 80, 60), np.linspace(-180, 180, 80))
    with latigo.Geodesy(EXAMPLES / file, section, errors="codes", threads=threads) as system:
        with pytest.warns(latigo.GeodesyWarning, match="too far from the projection's origin") as caught:
            x, y, codes = system.forward(latitude, longitude)
        with pytest.warns(latigo.GeodesyWarning, match="too far from the projection's origin") as back:
            system.inverse(x, y)
    lines = "".join(f"{a} {b}\n" for a, b in zip(latitude.flat, longitude.flat))
    _, messages = program("forward", EXAMPLES / file, "-s", section, text=lines)
    count = str(caught[0].message).split()[0]
    assert f"latigo: {count} points: too far" in messages and 0 < int(count) < latitude.size
    first = tuple(map(int, str(caught[0].message).split("(")[1].rstrip(")").split(",")))
    assert f"input:{np.ravel_multi_index(first, latitude.shape) + 1}: warning: too far" in messages
    assert codes[first] == 0 and int(str(back[0].message).split()[0]) > 0


def test_values_that_are_probably_not_read_as_intended_are_a_warning_as_in_the_program():
    path = FOLDER / "comma.ini"
    path.write_text(f"[A]\n{UTM.replace('0.9996', '0,9996')}")
    with pytest.warns(latigo.GeodesyWarning, match="comma.ini:6 .A.: warning: ScaleFactor=0,9996 is read as 0") as caught:
        system = latigo.Geodesy(path)
    _, messages = program("forward", path, text="")
    assert [f"latigo: {warning.message}" for warning in caught] == messages.splitlines()
    assert caught[0].filename == __file__ and system.params.scale_factor == 1
    utm = dict(kind="UTM", semi_major_axis=6378137, inverse_flattening=298.257, scale_factor=0.9996, false_easting=500000)
    for changed, text in [(dict(inverse_flattening=1 / 298.257), "Flattening=0.0033.* the reciprocal flattening 1/f"),
                          (dict(semi_major_axis=6378), "not a semi-major axis of the earth"), (dict(scale_factor=1), "UTM has 0.9996"),
                          (dict(delta_x=np.inf), "DeltaX=inf is read as inf"),
                          (dict(adjust_x=5), "AdjustX=5.0 is read with AdjustType=1 only"),
                          (dict(central_meridian=3.4, radians=True), r"CentralMeridian=194\.\d+ is not between -180 and 180")]:
        with pytest.warns(latigo.GeodesyWarning, match=text) as caught:
            latigo.Geodesy.from_params(**utm | changed)
        assert len(caught) == 1 and caught[0].filename == __file__
    with warnings.catch_warnings():
        warnings.simplefilter("error")
        latigo.Geodesy.from_params(**utm)
        latigo.Geodesy.from_params(**utm, adjust_type=1, adjust_x=5, reverse_x=True)


def test_a_shift_to_wgs84_that_the_object_has_not_is_a_warning():
    path = FOLDER / "clarke.ini"
    section = "[A]\nProjection=MER\nSemiMajorAxis=6378206.4\nFlattening=294.9786982\n"
    path.write_text(section)
    clarke = latigo.Geodesy(path)
    for call in (lambda: clarke.forward(52, 5, wgs84=True), lambda: clarke.to_wgs84([52, 53], 5), lambda: clarke.from_wgs84(52, 5)):
        with pytest.warns(latigo.GeodesyWarning, match="no datum shift"):
            call()
    path.write_text(section + "DeltaX=0\n")
    with warnings.catch_warnings():
        warnings.simplefilter("error")
        assert clarke.forward(52, 5) == latigo.Geodesy(path).forward(52, 5, wgs84=True)
        latigo.Geodesy.from_params("MER", semi_major_axis=6378137, inverse_flattening=298.257222101).to_wgs84(52, 5)
