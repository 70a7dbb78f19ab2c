"""Three workers in three network namespaces: one is killed and one is cut off, and no row is lost or converted twice."""
import signal
import subprocess

import numpy as np
import pytest
import zarr

from cluster import Cluster, wait_until
from conftest import FOLDER, grids, latigo  # noqa: F401
from network import Network

BLOCKS, ROWS = 60, 60 * 1000 - 7  # the last block is shorter
PAUSE = 0.3  # seconds a block; a worker alone would take 18
LIMIT = 75  # seconds for a run, with the time to give up a silent worker


@pytest.fixture(scope="module")
def network():
    with Network(3) as made:
        yield made
    assert not [name for name in Network.names() if name.startswith(made.prefix)]


@pytest.fixture
def positions(tmp_path):
    random = np.random.default_rng(7)
    columns = {"latitude": random.uniform(48.5, 55.5, ROWS), "longitude": random.uniform(-3.5, 7.5, ROWS)}
    group = zarr.open_group(str(tmp_path / "columns.zarr"), "w")
    for name, values in columns.items():
        np.save(tmp_path / f"{name}.npy", values)
        group.array(name, values, chunks=-(-ROWS // BLOCKS))
    (tmp_path / "started").mkdir()
    return columns


def check(results, positions, grids):
    """Every row is that of one process, in its place: so none is lost, and none is there twice."""
    expected = grids.forward(positions["latitude"], positions["longitude"], wgs84=True)
    assert len(np.unique(expected[0])) == ROWS  # no two rows can be taken for each other
    for got, right in zip(results, expected):
        assert got.shape == (ROWS,) and got.tobytes() == right.tobytes()


def test_no_row_is_lost_when_one_worker_is_killed_and_one_is_cut_off(network, grids, positions, tmp_path):
    cluster = Cluster(network, tmp_path)
    for number in network.workers:
        cluster.add_worker(number)
    driver = cluster.drive("npy", FOLDER / "systems.ini", "Grids", tmp_path, BLOCKS, PAUSE, stdout=subprocess.PIPE,
                           stderr=subprocess.STDOUT, text=True)

    def started(process):
        return [each for each in (tmp_path / "started").iterdir() if each.name.split(".")[1] == str(process.pid)]

    def working(number, blocks):
        return lambda: len(started(cluster.workers[number])) >= blocks or driver.poll() is not None

    try:
        wait_until(working(1, 4), LIMIT, "the first worker converts")
        assert driver.poll() is None, driver.stdout.read()
        cluster.workers[1].send_signal(signal.SIGKILL)
        wait_until(working(2, 8), LIMIT, "the second worker converts")
        assert driver.poll() is None, driver.stdout.read()
        network.cut(2)
        said, _ = driver.communicate(timeout=LIMIT)
    except (TimeoutError, subprocess.TimeoutExpired) as error:
        pytest.fail(f"{error}\n{cluster.logs()}")
    assert driver.returncode == 0, said + cluster.logs()
    check([np.load(tmp_path / f"{name}.npy") for name in "xy"], positions, grids)

    blocks = [each.name.split(".")[0] for each in (tmp_path / "started").iterdir()]
    assert len(set(blocks)) == BLOCKS
    assert len(blocks) > BLOCKS, "the failures interrupted no block"
    counts = [len(started(process)) for process in cluster.workers.values()]
    assert max(counts[:2]) < BLOCKS / 3 < counts[2], counts  # those two stopped, and the one that was left did the rest

    # Zarr, on the worker that is left.
    cluster.workers = {3: cluster.workers[3]}
    driver = cluster.drive("zarr", FOLDER / "systems.ini", "Grids", tmp_path, BLOCKS, 0, stdout=subprocess.PIPE,
                           stderr=subprocess.STDOUT, text=True)
    said, _ = driver.communicate(timeout=LIMIT)
    assert driver.returncode == 0, said + cluster.logs()
    group = zarr.open_group(str(tmp_path / "columns.zarr"), "r")
    assert group["x"].nchunks_initialized == BLOCKS
    check([group[name][:] for name in "xy"], positions, grids)
