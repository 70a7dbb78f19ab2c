"""What the documents show works, the types hold, and the extension needs little."""
import doctest
import os
import re
import subprocess
import sys

import pytest

import latigo
from conftest import FOLDER, ROOT

PACKAGE = os.path.dirname(latigo.__file__)
PAGES = ["docs/python.md", "docs/pyproj.md", "README.md"]


def run(text, name):
    """Runs the examples of a page or a docstring in the project's folder, as one session."""
    test = doctest.DocTestParser().get_doctest(text, {}, name, name, 0)
    here = os.getcwd()
    os.chdir(ROOT)
    try:
        result = doctest.DocTestRunner(optionflags=doctest.ELLIPSIS).run(test)
    finally:
        os.chdir(here)
    assert result.failed == 0 and result.attempted > 0, name


def test_the_examples_of_the_docstrings_run():
    run(latigo.__doc__, "latigo")
    for name in vars(latigo.Geodesy):
        text = getattr(latigo.Geodesy, name).__doc__ or ""
        if not name.startswith("_"):
            assert text, name
        if ">>>" in text:
            run(text, name)


@pytest.mark.parametrize("page", PAGES)
def test_the_examples_of_a_page_run(page):
    blocks = re.findall(r"^```pycon\n(.*?)^```", (ROOT / page).read_text(encoding="utf-8"), re.M | re.S)
    run("\n".join(blocks), page)


def test_stubs_agree_with_the_module():
    # The extension's metaclass is that of pybind11; modules with types in the source are no stubs.
    (FOLDER / "allowed").write_text("latigo._core.Engine\nlatigo._(arrays|describe|errors|files|picture|records)[.].*\n")
    done = subprocess.run([sys.executable, "-m", "mypy.stubtest", "latigo", "--allowlist", "allowed",
                           "--ignore-unused-allowlist"], capture_output=True, text=True, cwd=FOLDER,
                          env={**os.environ, "MYPYPATH": os.path.dirname(PACKAGE), "PYTHONPATH": os.path.dirname(PACKAGE)})
    assert done.returncode == 0, done.stdout + done.stderr


TYPED = """
import numpy as np
import latigo

system = latigo.Geodesy("a", "b")
reveal_type(system.forward(52.0, 1))
reveal_type(system.forward(52.0, 1, 3.0, wgs84=True))
reveal_type(system.inverse(np.zeros(3), [1.0, 2]))
reveal_type(system.scale(np.zeros(3), 1))
reveal_type(system.ecef(1, 2, 3))
system.forward("52", 1, errors="nan")
system.forward(52.0, 1, errors="other", threads="2")
system.forwards(1, 2)
"""


def mypy(*arguments):
    return subprocess.run([sys.executable, "-m", "mypy", "--strict", "--cache-dir", str(FOLDER / "mypy"), *arguments],
                          capture_output=True, text=True, env={**os.environ, "MYPYPATH": os.path.dirname(PACKAGE)}).stdout


def test_mypy_accepts_the_package_and_knows_its_types():
    assert "Success" in (said := mypy("-p", "latigo")), said
    (FOLDER / "typed.py").write_text(TYPED)
    said = mypy(str(FOLDER / "typed.py"))
    array = "numpy.ndarray[Any, numpy.dtype[numpy.floating[numpy._typing._64Bit]]]"
    types = re.findall(r'Revealed type is "(.*)"', said.replace("builtins.", ""))
    assert [each.replace("Tuple", "tuple") for each in types] == [
        "tuple[float, float]", "tuple[float, float, float]", f"tuple[{array}, {array}]", array,
        "tuple[float, float, float]"], said
    assert re.findall(r":(\d+): error", said) == ["12", "13"], said


def test_the_extension_needs_the_library_and_the_run_time_libraries_only():
    count = 0
    for folder, _, files in os.walk(os.environ.get("LATIGO_PACKAGE", PACKAGE)):
        for file in files:
            if ".so" in file:
                said = subprocess.run(["readelf", "-d", os.path.join(folder, file)], check=True, capture_output=True,
                                      text=True).stdout
                needed = set(re.findall(r"NEEDED.*\[(.*)\]", said))
                assert needed <= {"liblatigo.so.13", "libstdc++.so.6", "libgcc_s.so.1", "libc.so.6", "libm.so.6"}, needed
                count += 1
    assert count >= 1
