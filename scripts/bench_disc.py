#!/usr/bin/env python3
"""Times writing a file set to a virtual disc beside genisoimage and cp of the same tree.

    scripts/bench_disc.py [--runs N] [DIR]

Two trees: 10,000 CT objects of 137 KB (1.4 GB), and 4 GB of which half are such objects and half
files of 256 MB. DIR (default: the temporary directory) needs room for 14 GB; all is removed at the
end. The commands take turns, so that a slow minute of the machine meets all of them; each starts
with the tree in the cache and nothing left to flush. A recorder says that a disc is good only when
its last byte is on the disk, and genisoimage and cp do not wait for that: they are timed alone and
with a sync of what they wrote. Last, 10,000 objects are published, beside a copy of them, an image
of that and a sync of each. Prints medians of one run on this machine, and the ratios.
"""

import argparse
import os
import shutil
import statistics
import subprocess
import tempfile
import time
from pathlib import Path

from bench_tools import QUILLON, Turns, make_objects, run, warm


def make_set(work, count, large_files):
    objects, root = work / "objects", work / "set"
    make_objects(objects, count)
    run([QUILLON, "create", "--quiet", "--move", "--no-other-content", "--root", root, objects])
    shutil.rmtree(objects, ignore_errors=True)
    for number in range(large_files):
        with open(root / f"LARGE{number}", "wb") as file:
            for _ in range(256):
                file.write(os.urandom(1 << 20))
    return root


def measure(work, root, media, runs):
    recorders, image, copy = work / "recorders", work / "peer.iso", work / "copy"
    environment = {**os.environ, "QUILLON_RECORDERS": str(recorders)}

    def ours():
        shutil.rmtree(recorders, ignore_errors=True)
        run([QUILLON, "disc", "eject"], environment)  # the blank CD-R of a new recorder
        run([QUILLON, "disc", "insert", "--media", media], environment)
        return [QUILLON, "write", "--quiet", "--no-verify", "--keep", "--root", root, "--volume", "BENCH"]

    def genisoimage():
        image.unlink(missing_ok=True)
        return ["genisoimage", "-quiet", "-J", "-udf", "-V", "BENCH", "-o", image, root]

    def cp():
        shutil.rmtree(copy, ignore_errors=True)
        return ["cp", "-r", root, copy]

    jobs = {"quillon write": (ours, None), "genisoimage -J -udf": (genisoimage, image), "cp -r": (cp, copy)}
    results = {name: [] for name in jobs}
    for _ in range(runs):
        for name, (prepare, written) in jobs.items():
            command = prepare()
            os.sync()
            warm(root)
            alone, memory = run(command, environment)
            synced = alone
            if written:
                files = [written] if written.is_file() else [f for f in written.rglob("*") if f.is_file()]
                began = time.monotonic()
                if len(files) == 1:
                    subprocess.run(["sync", files[0]], check=True)
                else:
                    os.sync()
                synced += time.monotonic() - began
            results[name].append((alone, synced, memory))
        image.unlink(missing_ok=True)
        shutil.rmtree(copy, ignore_errors=True)
        shutil.rmtree(recorders, ignore_errors=True)
    return {name: [statistics.median(column) for column in zip(*rows)] for name, rows in results.items()}


def publish(work, runs):
    """From the objects to the disc, beside a staged copy of which genisoimage makes an image."""
    objects, root, stage, image = work / "objects", work / "set", work / "stage", work / "peer.iso"
    recorders = work / "recorders"
    os.environ["QUILLON_RECORDERS"] = str(recorders)
    make_objects(objects, 10000)

    def prepare():
        for tree in (recorders, root, stage):
            shutil.rmtree(tree, ignore_errors=True)
        image.unlink(missing_ok=True)
        run([QUILLON, "disc", "eject"])  # the blank CD-R of a new recorder
        run([QUILLON, "disc", "insert", "--media", "dvd+r"])
        warm(objects)

    ours = [QUILLON, "publish", "--quiet", "--no-verify", "--no-other-content", "--root", root, "--volume", "BENCH", objects]
    peer = (f"cp -r {objects} {stage} && sync -f {work} && "
            f"genisoimage -quiet -J -udf -o {image} {stage} && sync {image}")
    return Turns(runs).medians({"quillon publish": (prepare, ours),
                                "cp -r, genisoimage": (prepare, ["sh", "-c", peer])})


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", 1)[0])
    parser.add_argument("--runs", type=int, default=5)
    parser.add_argument("dir", nargs="?", type=Path)
    arguments = parser.parse_args()
    if arguments.dir:
        arguments.dir.mkdir(parents=True, exist_ok=True)
    line = "{:<16} {:<20} {:>9} {:>9} {:>9} {:>14} {:>14}"
    print(line.format("tree", "job", "seconds", "synced", "MB", "ours/alone", "ours/synced"))
    for tree, count, large_files, media in (("10,000 files", 10000, 0, "dvd+r"), ("4 GB", 15000, 8, "dvd+r")):
        with tempfile.TemporaryDirectory(prefix="quillon-bench-", dir=arguments.dir) as directory:
            work = Path(directory)
            rows = measure(work, make_set(work, count, large_files), media, arguments.runs)
            ours = rows["quillon write"][0]
            for name, (alone, synced, memory) in rows.items():
                print(line.format(tree, name, f"{alone:.2f}", f"{synced:.2f}", f"{memory:.0f}",
                                  f"{ours / alone:.2f}", f"{ours / synced:.2f}"), flush=True)
    with tempfile.TemporaryDirectory(prefix="quillon-bench-", dir=arguments.dir) as directory:
        rows = publish(Path(directory), arguments.runs)
        ours = rows["quillon publish"][0]
        for name, (seconds, memory) in rows.items():
            print(line.format("publish, 10,000", name, "", f"{seconds:.2f}", f"{memory:.0f}", "",
                              f"{ours / seconds:.2f}"), flush=True)


if __name__ == "__main__":
    main()
