"""A scheduler and its workers in a Network, and the program that drives them (drive.py)."""
import os
import pathlib
import sys
import time

from network import HUB, address

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parents[1]
START_TIMEOUT = 60  # seconds, on a busy machine
# A worker that the scheduler does not hear is given up after this time; Dask's own value is 5 minutes.
SETTINGS = {"DASK_DISTRIBUTED__SCHEDULER__WORKER_TTL": "10s", "DASK_DISTRIBUTED__COMM__TIMEOUTS__TCP": "12s",
            "DASK_DISTRIBUTED__COMM__TIMEOUTS__CONNECT": "8s", "DASK_DISTRIBUTED__ADMIN__LOG_FORMAT": "%(message)s",
            "OMP_NUM_THREADS": "1"}


class Cluster:
    def __init__(self, network, folder, port=8786):
        self.network, self.folder, self.address = network, folder, f"tcp://{HUB}:{port}"
        paths = [str(ROOT / "examples"), str(HERE), os.environ["PYTHONPATH"]]
        self.environment = {**os.environ, **SETTINGS, "PYTHONPATH": os.pathsep.join(map(os.path.abspath, paths)),
                            "PYTHONDONTWRITEBYTECODE": "1"}
        self.scheduler = self._start("hub", "distributed.cli.dask_scheduler", "--host", HUB, "--port", port,
                                     "--no-dashboard", "--dashboard-address", ":0")
        self.workers = {}

    def add_worker(self, number):
        self.workers[number] = self._start(number, "distributed.cli.dask_worker", self.address, "--name", number, "--host",
                                           address(number), "--no-nanny", "--nthreads", "1", "--no-dashboard",
                                           "--local-directory", self.folder, "--death-timeout", START_TIMEOUT)

    def _start(self, where, module, *arguments):
        with open(self.folder / f"{where}.log", "w", encoding="utf-8") as log:
            return self.network.start(where, sys.executable, "-m", module, *arguments, env=self.environment, stdout=log,
                                      stderr=log, cwd=self.folder)

    def drive(self, *arguments, **options):
        return self.network.start("hub", sys.executable, HERE / "drive.py", self.address, len(self.workers), *arguments,
                                  env=self.environment, cwd=self.folder, **options)

    def logs(self):
        return "\n".join(f"== {path.name}\n{path.read_text(errors='replace')[-3000:]}" for path in self.folder.glob("*.log"))


def wait_until(true, seconds, what):
    """Waits for a condition, and never longer than that."""
    end = time.monotonic() + seconds
    while not true():
        if time.monotonic() > end:
            raise TimeoutError(f"not within {seconds} s: {what}")
        time.sleep(0.05)
