"""What the benchmarks share: timed processes, and trees in a known state before each of them."""

import os
import shutil
import statistics
import subprocess
import sys
import time
from pathlib import Path

REPOSITORY = Path(__file__).resolve().parent.parent
BIN = Path(os.environ.get("QUILLON_BUILD", REPOSITORY / "build/release")).resolve() / "bin"
QUILLON = BIN / "quillon"


def run(command, environment=None):
    """Seconds of wall time and peak memory in MB of the command."""
    began = time.monotonic()
    child = subprocess.Popen(command, env=environment, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
    errors = child.stderr.read()
    _, status, usage = os.wait4(child.pid, 0)
    seconds = time.monotonic() - began
    if status != 0:
        sys.exit(f"{' '.join(map(str, command))}: {errors.decode(errors='replace')}")
    return seconds, usage.ru_maxrss / 1024


def warm(tree):
    """Reads the tree, in a process of its own: what this one holds would count as its children's peak."""
    subprocess.run(["grep", "-rqa", "--max-count=1", "no such text here", tree], check=False)


def evict(tree):
    """The pages of the files below are not in memory any more."""
    for directory, _, names in os.walk(tree):
        for name in names:
            file = os.open(os.path.join(directory, name), os.O_RDONLY)
            os.posix_fadvise(file, 0, 0, os.POSIX_FADV_DONTNEED)
            os.close(file)


def make_objects(directory, count, *more):
    """Sample objects, with bytes of their own on the disk: room that was only reserved reads too fast."""
    raw = directory.with_name(directory.name + ".raw")
    for tree in (directory, raw):
        shutil.rmtree(tree, ignore_errors=True)
    run([BIN / "make_sample_objects", "--bench", str(count), *more, raw])
    run(["cp", "-r", "--sparse=never", "--reflink=never", raw, directory])
    shutil.rmtree(raw)
    os.sync()


class Turns:
    """Jobs that take turns, so that a slow minute of the machine meets all of them."""

    def __init__(self, runs):
        self.runs = runs

    def medians(self, jobs):
        """jobs: name -> (prepare, command); answers name -> (seconds, MB) in the medians."""
        results = {name: [] for name in jobs}
        for _ in range(self.runs):
            for name, (prepare, command) in jobs.items():
                prepare()
                os.sync()
                results[name].append(run(command))
        return {name: tuple(statistics.median(column) for column in zip(*rows)) for name, rows in results.items()}
