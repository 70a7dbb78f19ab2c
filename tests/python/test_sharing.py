"""Threads, processes, pickles, and the end of objects."""
import concurrent.futures
import copy
import multiprocessing
import os
import pathlib
import pickle
import resource
import subprocess
import sys
import threading
import time

import numpy as np
import pytest

import latigo
from conftest import FOLDER, SYSTEMS, UTM, positions, write_grid


def convert(system, seed):
    return np.column_stack(system.forward(*positions(3000, seed), 10, wgs84=True))


@pytest.mark.parametrize("section, handles", [("Grids", range(1, 9)), ("Constant", [1])])
def test_eight_threads_use_one_object(section, handles):
    system = latigo.Geodesy(SYSTEMS, section)
    wanted = [convert(system, seed) for seed in range(16)]
    with concurrent.futures.ThreadPoolExecutor(8) as pool:
        for found, array in zip(pool.map(lambda seed: convert(system, seed), range(16)), wanted):
            np.testing.assert_array_equal(found, array)
    assert system._core.handles() in handles
    np.testing.assert_array_equal(np.column_stack(system.forward(*positions(3000, 3), 10, wgs84=True, threads=4)), wanted[3])


def test_another_thread_runs_while_an_array_is_converted(grids):
    latitude, longitude = positions(300000)
    ran, done, before = [], threading.Event(), sys.getswitchinterval()

    def other():
        while not done.is_set():
            ran.append(1)
            time.sleep(1e-4)

    thread = threading.Thread(target=other)
    sys.setswitchinterval(100)  # only a lock that is released lets the other thread run
    try:
        thread.start()
        count = len(ran)
        grids.forward(latitude, longitude, wgs84=True)
        assert len(ran) > count + 10
    finally:
        done.set()
        sys.setswitchinterval(before)
        thread.join()


def test_an_object_closed_by_another_thread_finishes_its_call(grids):
    latitude, longitude = positions(300000)
    wanted = grids.forward(latitude, longitude)
    with concurrent.futures.ThreadPoolExecutor(1) as pool:
        call = pool.submit(grids.forward, latitude, longitude)
        while grids._core.handles() and not call.running():
            pass
        grids.close()
        try:
            np.testing.assert_array_equal(call.result(), wanted)
        except latigo.GeodesyError as error:  # closed before the call began
            assert error.code == latigo.CLOSED
    assert grids._core.handles() == 0


@pytest.mark.parametrize("method", ["fork", "spawn"])
def test_child_processes_convert(grids, method):
    wanted = [convert(grids, seed) for seed in range(4)]
    with concurrent.futures.ProcessPoolExecutor(2, multiprocessing.get_context(method)) as pool:
        for found, array in zip(pool.map(convert, [grids] * 4, range(4)), wanted):
            np.testing.assert_array_equal(found, array)


def test_a_child_after_fork_uses_the_inherited_object_with_files_of_its_own(grids):
    wanted = grids.forward(52, 3, wgs84=True)
    before = open_grid_files()
    child = os.fork()
    if child == 0:
        same = grids.forward(52, 3, wgs84=True) == wanted and open_grid_files() and grids._core.handles() == 1
        os._exit(0 if same else 1)
    assert os.waitpid(child, 0)[1] == 0
    assert open_grid_files() == before


def open_grid_files():
    links = (os.path.join("/proc/self/fd", name) for name in os.listdir("/proc/self/fd"))
    return sorted(os.readlink(link) for link in links if os.path.islink(link) and os.readlink(link).endswith(".dat"))


class Named(latigo.Geodesy):
    pass


def test_a_pickle_has_the_definition_and_the_settings_but_no_handle(grids):
    made = latigo.Geodesy.from_params("UTM", semi_major_axis=6378388, inverse_flattening=297, central_meridian=3,
                                      datum_grid=FOLDER / "datum/d.dat", geoid=FOLDER / "datum/g.dat", errors="nan",
                                      radians=True, threads=2)
    for system in grids, made, latigo.Geodesy(SYSTEMS, "Local", errors="codes"):
        for again in pickle.loads(pickle.dumps(system)), copy.deepcopy(system):
            assert repr(again) == repr(system) and again._settings == system._settings
            np.testing.assert_array_equal(again.forward(0.91, 0.05), system.forward(0.91, 0.05))
    assert len(pickle.dumps(grids)) < 2000
    named = Named(SYSTEMS, "Plain")
    named.remark = "mine"
    for again in pickle.loads(pickle.dumps(named)), copy.copy(named):
        assert type(again) is Named and again.remark == "mine" and again.forward(52, 3) == named.forward(52, 3)


def test_an_unpickled_object_refuses_another_grid_file():
    path = FOLDER / "other.dat"
    write_grid(path, 3, lambda *_: 1)
    system = latigo.Geodesy.from_params("UTM", semi_major_axis=6378388, inverse_flattening=297, datum_grid=path)
    pickled = pickle.dumps(system)
    pickle.loads(pickled)
    write_grid(FOLDER / "new.dat", 3, lambda *_: 2)
    os.replace(FOLDER / "new.dat", path)
    with pytest.raises(latigo.GeodesyError, match="datum grid file") as caught:
        pickle.loads(pickled)
    assert caught.value.code == latigo.GRID_FILE_CHANGED
    assert pickle.dumps(system) == pickled  # of the file that is open
    with pytest.raises(latigo.GeodesyError, match="when it was opened"):
        system.to_wgs84([52] * 5000, 3, threads=2)  # a second handle would read the other file
    system.to_wgs84([52] * 5000, 3)


def test_an_error_passes_from_a_child_process(national):
    with concurrent.futures.ProcessPoolExecutor(1, multiprocessing.get_context("fork")) as pool:
        error = pool.submit(national.forward, [50, 90], 1).exception()
    assert (error.code, error.index, error.coordinates) == (6, 1, (90.0, 1.0))


PROGRAM = """
import sys, threading, latigo
systems = [latigo.Geodesy(sys.argv[1], name, threads=4) for name in ("Grids", "Local", "Plain")]
for system in systems:
    system.forward([52.0] * 9000, 3.0)
"""


@pytest.mark.parametrize("more", ["", "systems[1].close()", "del systems", "sys.modules['kept'] = systems",
                                  "raise SystemExit(0)"])
def test_no_object_of_the_library_is_left_at_exit(more):
    log = FOLDER / "log"
    log.write_text("")
    subprocess.run([sys.executable, "-c", PROGRAM + more, SYSTEMS], check=True,
                   env={**os.environ, "LATIGO_DEBUG_OUTPUT": str(log)})
    assert log.read_text().rstrip().endswith("LATIGO - last instance")


ENDLESS = """
def convert():
    while True:
        system.forward([52.0] * 300000, 3.0, threads=2)
for system in systems:
    threading.Thread(target=convert, daemon=True).start()
    system.forward([52.0] * 9000, 3.0)
"""


def test_a_process_ends_while_threads_convert():
    done = subprocess.run([sys.executable, "-c", PROGRAM + ENDLESS, SYSTEMS], capture_output=True, timeout=60)
    assert (done.returncode, done.stderr) == (0, b"")


def test_a_call_without_files_for_all_its_threads_leaves_none_open(grids):
    before, (soft, hard) = open_grid_files(), resource.getrlimit(resource.RLIMIT_NOFILE)
    free = [os.dup(0) for _ in range(22)]  # a handle takes four; the geoid of the sixth one finds none
    for number in free:
        os.close(number)
    resource.setrlimit(resource.RLIMIT_NOFILE, (free[-1] + 1, hard))
    try:
        with pytest.raises(latigo.GeodesyError, match="geoid"):
            grids.forward(np.full(100000, 52.0), 3, threads=64)
    finally:
        resource.setrlimit(resource.RLIMIT_NOFILE, (soft, hard))
    assert open_grid_files() == before
    grids.forward(np.full(5000, 52.0), 3, threads=2)


def test_objects_leave_no_file_open():
    before = open_grid_files()
    for _ in range(3):
        latigo.Geodesy(SYSTEMS, "Grids").forward([52.0] * 9000, 3, threads=4)
        with pytest.raises(latigo.GeodesyError):
            latigo.Geodesy(pathlib.Path(FOLDER / "faulty2.ini").write_text(f"[A]\n{UTM}DynDatum=d.dat\nGeoid=x\n") and
                           FOLDER / "faulty2.ini", "A")
    assert open_grid_files() == before
