"""Network namespaces for a scheduler and its workers on one machine: a hub with a bridge, and one for each worker.

The root namespace keeps its interfaces. All ends with the process that made it: programs get SIGKILL with their parent, and
namespaces of a process that was killed itself are removed by the next one.
"""
import os
import re
import signal
import subprocess

COMMAND_TIMEOUT = 20  # seconds
HUB = "198.18.77.1"  # of the range for benchmarks, RFC 2544


def ip(*arguments):
    subprocess.run(["ip", *arguments], check=True, timeout=COMMAND_TIMEOUT, capture_output=True, text=True)


def need_root():
    if os.geteuid() != 0:
        raise PermissionError("network namespaces are made by root only: run scripts/test-dask as root")


def address(worker):
    return f"198.18.77.{worker + 1}"


class Network:
    def __init__(self, workers):
        need_root()
        self.workers = range(1, workers + 1)
        self.prefix = f"latigo-{os.getpid()}-"
        self.running = []

    def __enter__(self):
        self.remove_abandoned()
        self.handlers = {each: signal.signal(each, self._interrupted) for each in (signal.SIGTERM, signal.SIGHUP)}
        try:
            self._make()
        except BaseException:
            self.remove()
            raise
        return self

    def __exit__(self, *ignored):
        self.remove()
        for number, handler in self.handlers.items():
            signal.signal(number, handler)

    @staticmethod
    def _interrupted(number, _):
        raise KeyboardInterrupt(f"signal {number}")

    def _make(self):
        hub = self.prefix + "hub"
        ip("netns", "add", hub)
        ip("-n", hub, "link", "set", "lo", "up")
        ip("-n", hub, "link", "add", "bridge", "type", "bridge")
        ip("-n", hub, "address", "add", f"{HUB}/24", "dev", "bridge")
        ip("-n", hub, "link", "set", "bridge", "up")
        for worker in self.workers:
            own = self.prefix + str(worker)
            ip("netns", "add", own)
            ip("-n", hub, "link", "add", f"port{worker}", "type", "veth", "peer", "name", "eth0", "netns", own)
            ip("-n", hub, "link", "set", f"port{worker}", "master", "bridge", "up")
            ip("-n", own, "address", "add", f"{address(worker)}/24", "dev", "eth0")
            for link in ("lo", "eth0"):
                ip("-n", own, "link", "set", link, "up")

    def start(self, where, *command, **options):
        """A program in the namespace "hub" or of a worker's number. Its process is the program's own."""
        whole = ["ip", "netns", "exec", self.prefix + str(where), "setpriv", "--pdeathsig", "KILL", *map(str, command)]
        process = subprocess.Popen(whole, **options)
        self.running.append(process)
        return process

    def cut(self, worker):
        """Takes the link of a worker down: nobody is informed, packets are lost."""
        ip("-n", self.prefix + "hub", "link", "set", f"port{worker}", "down")

    def remove(self):
        for process in self.running:
            process.kill()
        for process in self.running:
            process.wait(COMMAND_TIMEOUT)
        self._remove(self.prefix)

    @staticmethod
    def names():
        said = subprocess.run(["ip", "netns", "list"], check=True, timeout=COMMAND_TIMEOUT, capture_output=True, text=True)
        return re.findall(r"^latigo-\d+-\w+", said.stdout, re.M)

    @classmethod
    def _remove(cls, prefix):
        for name in cls.names():
            if name.startswith(prefix):
                ip("netns", "delete", name)

    @classmethod
    def remove_abandoned(cls):
        for owner in {name.split("-")[1] for name in cls.names()}:
            if not os.path.exists(f"/proc/{owner}"):
                cls._remove(f"latigo-{owner}-")
