"""The systems and grid files of tests/python, for the tests of Dask."""
import importlib.util
import os
import pathlib

ROOT = pathlib.Path(__file__).resolve().parents[2]
_spec = importlib.util.spec_from_file_location("python_conftest", ROOT / "tests/python/conftest.py")
_shared = importlib.util.module_from_spec(_spec)
_spec.loader.exec_module(_shared)

FOLDER, grids = _shared.FOLDER, _shared.grids
PACKAGE = os.path.dirname(os.path.dirname(_shared.latigo.__file__))
latigo = _shared.latigo
