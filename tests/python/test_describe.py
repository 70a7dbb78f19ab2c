"""What an object says of itself."""
import math
import os
import re
import subprocess
import xml.etree.ElementTree

import pytest

import latigo
from conftest import EXAMPLES, FOLDER, PROGRAM, ROOT, SYSTEMS, UTM

FILES = [*EXAMPLES.glob("*.ini"), ROOT / "tests/claims/systems.ini", ROOT / "tests/transcripts/systems.ini", SYSTEMS]
OTHER_WORDS = {"with --wgs84, else or with --geoid-on-datum to the section": "with wgs84=True, else or with "
               "geoid_on_datum=True to the object"}


def sections():
    for file in FILES:
        said = subprocess.run([PROGRAM, "info", file], capture_output=True, text=True).stdout
        for part in re.split(r"^\[", said, flags=re.M)[1:]:
            name, text = part.split("]\n", 1)
            if text.strip() and name != "NoGeoid":
                yield file, name, text.rstrip()


def test_repr_says_what_info_says_of_every_system():
    count = 0
    for file, section, said in sections():
        for program, module in OTHER_WORDS.items():
            said = said.replace(program, module)
        first, text = repr(latigo.Geodesy(file, section)).split("\n", 1)
        assert section in first and str(file) in first
        assert text.replace("/", "\\") == said.replace("/", "\\"), (file, section)
        count += 1
    assert count > 50


def test_html_has_a_picture_of_every_system():
    for file, section, _ in sections():
        page = xml.etree.ElementTree.fromstring(latigo.Geodesy(file, section)._repr_html_())
        svg = page.find("{http://www.w3.org/2000/svg}svg")
        width, height = float(svg.get("width")), float(svg.get("height"))
        paths = [path.get("d") for path in svg.iter("{http://www.w3.org/2000/svg}path")]
        numbers = [float(number) for path in paths for number in re.findall(r"[-\d.]+", path)]
        assert len(numbers) > 400 and 0 <= min(numbers) and max(numbers) <= max(width, height) <= 400, (file, section)
        colours = len(paths) - 2
        assert colours == {"Grids": 2, "Turned": 2, "Flat": 2, "Cut": 1}.get(section, 0)


def test_names_that_cannot_be_printed_are_escaped():
    names = [(b"\x1b[31m", r"\x1b[31m"), (b"lat\xe9", r"lat\xe9"), (b"<b>\xc3\xa9&", "<b>é&")]
    for name, shown in names:
        path = os.path.join(os.fsencode(FOLDER), name + b".ini")
        with open(path, "wb") as file:
            file.write(b"[" + name + b"]\n" + UTM.encode())
        for system in latigo.Geodesy(path, name), latigo.Geodesy(os.fsdecode(path), os.fsdecode(name)):
            first = repr(system).splitlines()[0]
            assert first == f"latigo.Geodesy [{shown}] {FOLDER}/{shown}.ini"
            assert xml.etree.ElementTree.fromstring(system._repr_html_()).find("table/caption").text in first
        with pytest.raises(latigo.GeodesyError, match="no section") as caught:
            latigo.Geodesy(path, "other")
        assert str(caught.value).endswith(f"it has {shown}") and f"{shown}.ini" in str(caught.value)


@pytest.mark.filterwarnings("error")
def test_an_object_is_shown_without_a_warning_and_whatever_its_parameters_are():
    utm = dict(kind="UTM", semi_major_axis=6378137, inverse_flattening=298.257, scale_factor=0.9996, false_easting=500000)
    wide = latigo.Geodesy.from_params(**utm, datum_grid=FOLDER / "datum/d.dat", central_meridian=-60)
    assert "<svg" in wide._repr_html_()  # far from the origin
    for name in "delta_scale", "central_meridian", "ref_latitude", "delta_x":
        for value in math.nan, math.inf:
            with pytest.warns(latigo.GeodesyWarning, match=f"is read as {value}"):
                odd = latigo.Geodesy.from_params(**utm, **{name: value})
            assert str(value) in repr(odd) and str(value) in odd._repr_html_().split("<svg")[0]


def test_properties_have_the_units_of_configuration_files():
    local, grids = latigo.Geodesy(SYSTEMS, "Local"), latigo.Geodesy(SYSTEMS, "Grids")
    assert local.params.kind == "transverse Mercator" and local.params.central_meridian == pytest.approx(3)
    assert local.params[9:] == (0, 500000, 0) and local.ellipsoid[1:] == (6378388, 297)
    assert local.datum[:5] == (None, 10, 0, 0, 0) and local.datum.delta_rx == pytest.approx(-1.5)
    a = local.adjustment
    assert (a.type, a.reverse_x, a.reverse_y, a.scale, a.x) == (1, True, False, 2, 1000) and a.rotation == pytest.approx(30)
    assert grids.datum.grid.endswith("d.dat") and grids.geoid.grid.endswith("g.dat") and grids.unit == (1, 0.5)
    assert latigo.Geodesy(SYSTEMS, "Constant").geoid == (None, 45.5)
    assert [local.names[language]["first_axis"] for language in ("eng", "fra", "esp")] == ["westing", "ouest", "oeste"]
    assert local.names["fra"]["units"] == "mètres" and grids.names["eng"]["vertical_unit"] is None
    assert latigo.Geodesy.from_params(3, semi_major_axis=6378137, inverse_flattening=298.257223563).ellipsoid.name \
        == "WGS-84"
