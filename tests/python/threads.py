"""For the thread sanitizer: eight threads on objects with and without grid files, and calls in several threads each."""
import pathlib
import sys
import threading

sys.path.insert(0, str(pathlib.Path(__file__).parent))
from conftest import SYSTEMS, latigo, positions  # noqa: E402


def work(system, seed, failed):
    latitude, longitude = (0.9 * values + inside for values, inside in zip(positions(4000, seed), (5.2, 0.2)))
    x, y, height = system.forward(latitude, longitude, 10.0, wgs84=True, threads=1 + seed % 3)
    back = system.inverse(x, y, height, wgs84=True, errors="nan", outside_grid="ignore")
    single = system.forward(float(latitude[7]), float(longitude[7]), 10.0, wgs84=True)
    if not abs(back[0] - latitude).max() < 1e-5 or single != (x[7], y[7], height[7]):
        failed.append(seed)


for section in "Grids", "Constant", "Local":
    system = latigo.Geodesy(SYSTEMS, section)
    failed: list[int] = []
    threads = [threading.Thread(target=work, args=(system, seed, failed)) for seed in range(8)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert not failed, (section, failed)
    print(section, system._core.handles(), "handles")
