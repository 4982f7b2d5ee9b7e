"""The Dask example: examples/inspect_many.py over a few generated pictures of known objects, on its
own local cluster of two worker processes and on a cluster given by --scheduler."""

import json
import os
import signal
import subprocess
import sys
from pathlib import Path

import numpy as np
import pytest

import qel

pytest.importorskip("dask.distributed")
pytestmark = pytest.mark.filterwarnings("ignore::DeprecationWarning")  # from tornado inside distributed

EXAMPLE = Path(__file__).resolve().parents[1] / "examples" / "inspect_many.py"
TIMEOUT = 240  # seconds for one run of the example, cluster start and stop included

# Square objects (top, left, side) of each picture; "none" is one flat grey level, all background.
PICTURES = {"two": [(5, 5, 12), (30, 40, 15)], "three": [(5, 5, 12), (30, 40, 15), (40, 5, 11)], "none": []}


def picture(objects, seed):
    rng = np.random.default_rng(seed)
    if not objects:
        return np.full((60, 80), 45, np.uint8)
    grey = rng.integers(30, 60, (60, 80), dtype=np.uint8)
    for top, left, side in objects:
        grey[top:top + side, left:left + side] = rng.integers(180, 220, (side, side), dtype=np.uint8)
    return grey


@pytest.fixture
def pictures(tmp_path):
    directory = tmp_path / "pictures"
    directory.mkdir()
    for seed, (name, objects) in enumerate(PICTURES.items()):
        grey = picture(objects, seed)
        if name == "three":
            qel.io.write_8bit_img2bmp_file(grey, directory / f"{name}.bmp")
        else:
            qel.io.write_24bit_img2bmp_file(np.repeat(grey[..., None], 3, axis=2), directory / f"{name}.bmp")
    return directory


def run_example(*args):
    """Runs the example in its own process group, killed whole when it overruns."""
    env = dict(os.environ, PYTHONPATH=os.pathsep.join([str(Path(qel.__file__).parents[1]),
                                                        os.environ.get("PYTHONPATH", "")]))
    proc = subprocess.Popen([sys.executable, str(EXAMPLE), *map(str, args)], stdout=subprocess.PIPE,
                            stderr=subprocess.PIPE, text=True, env=env, start_new_session=True)
    try:
        out, err = proc.communicate(timeout=TIMEOUT)
    except subprocess.TimeoutExpired:
        os.killpg(proc.pid, signal.SIGKILL)
        proc.communicate()
        pytest.fail(f"inspect_many.py did not finish within {TIMEOUT} s")
    return proc.pid, proc.returncode, out, err


def check_results(out_dir, stdout, driver_pid):
    rows = {r["file"]: r for r in json.loads((out_dir / "summary.json").read_text())}
    for name, objects in PICTURES.items():
        row = rows[f"{name}.bmp"]
        assert row["error"] is None and row["objects"] == len(objects)
        assert not row["worker"].endswith(f":{driver_pid}")  # the work ran on the workers
        # Boundary pixels at the threshold may join an object, never leave it.
        areas = sorted(o["area"] for o in json.loads((out_dir / f"{name}.json").read_text())["objects"])
        for area, side in zip(areas, sorted(s for _, _, s in objects)):
            assert side * side <= area <= side * side + 4 * side
        annotated = qel.io.read_24bit_bmp_file2img(out_dir / f"{name}_inspect.bmp")
        red_boxes = np.all(annotated == (0, 0, 255), axis=2).sum()
        assert (red_boxes > 0) == bool(objects)
        assert any(line.split()[:1] == [f"{name}.bmp"] and line.split()[3] == str(len(objects))
                   for line in stdout.splitlines())
    return rows


def test_local_cluster_of_two_processes_reports_every_picture_and_the_broken_one(pictures, tmp_path):
    (pictures / "broken.bmp").write_bytes(b"BM not a picture")
    out_dir = tmp_path / "results"
    pid, status, stdout, stderr = run_example(pictures, "-o", out_dir)
    assert status == 1, stderr  # one picture could not be read
    rows = check_results(out_dir, stdout, pid)
    assert "refused" in rows["broken.bmp"]["error"]
    assert "4 pictures, 5 objects, 1 failed" in stdout


def test_existing_scheduler_takes_the_work(pictures, tmp_path):
    from dask.distributed import LocalCluster

    # Workers in this process's threads, on a TCP address the example's process can reach.
    with LocalCluster(n_workers=1, processes=False, threads_per_worker=2, dashboard_address=None,
                      host="127.0.0.1", protocol="tcp://") as cluster:
        pid, status, stdout, stderr = run_example(pictures, "-o", tmp_path / "out", "--scheduler",
                                                  cluster.scheduler_address)
    assert status == 0, stderr
    check_results(tmp_path / "out", stdout, pid)
