#!/usr/bin/env python3
"""Times creating and copying file sets beside the usual tools and beside what the file system costs.

    scripts/bench_creation.py [--runs N] [--counts SMALL LARGE] [DIR]

CT objects of 137 KB with about 250 header elements, 50 a series, SMALL (10,000) and LARGE (30,000) of
them, all on one file system: DIR (default: the temporary directory) needs room for 14 GB, and all is
removed at the end. The commands of a group take turns; each starts with its files in memory (or, where
it says cold, with none of them) and nothing left to flush. Prints medians of one run on this machine.
"""

import argparse
import shutil
import subprocess
import tempfile
from pathlib import Path

from bench_tools import QUILLON, REPOSITORY, Turns, evict, make_objects, warm

CREATE = [QUILLON, "create", "--quiet", "--no-other-content", "--root"]


class Bench:
    def __init__(self, work, runs, counts):
        self.work, self.turns, (self.small, self.large) = work, Turns(runs), counts
        self.objects, self.copy, self.root = work / "objects", work / "copy", work / "set"
        self.floor = work / "floor"
        subprocess.run(["c++", "-O2", "-o", self.floor, REPOSITORY / "bench/file_system_floor.cpp"], check=True)

    def line(self, job, name, seconds, megabytes, note=""):
        print(f"{job:<34} {name:<20} {seconds:>8.2f} {megabytes:>6.0f}  {note}", flush=True)

    def report(self, job, results, bars):
        ours = results["quillon"][0]
        self.line(job, "quillon", *results["quillon"])
        for name, (seconds, megabytes) in results.items():
            if name != "quillon":
                ratio = ours / seconds
                bar = bars.get(name)
                self.line("", name, seconds, megabytes,
                          f"quillon takes {ratio:.2f} of it" + (f" (bar {bar})" if bar else ""))
        return ours

    def fresh(self, cold=False):
        """Nothing but the objects, in memory or not."""
        def prepare():
            for tree in (self.copy, self.root, self.work / "floor.set", self.work / "target"):
                shutil.rmtree(tree, ignore_errors=True)
            subprocess.run(["cp", "-r", self.objects, self.copy], check=True)
            self.root.mkdir()
            subprocess.run(["sync", "-f", self.work], check=True)
            (evict if cold else warm)(self.copy)
        return prepare

    def move(self):
        return [*CREATE, self.root, "--move", self.copy]

    def dcmmkdir(self):
        return ["dcmmkdir", "-Pgp", "-nb", "+id", self.copy, "+r", "+D", self.root / "DICOMDIR"]

    def moves(self):
        seconds = {}
        for layout, more in (("tree", ()), ("one series", ("--one-series",))):
            make_objects(self.objects, self.small, *more)
            jobs = {"quillon": (self.fresh(), self.move()),
                    "floor": (self.fresh(), [self.floor, self.copy, self.work / "floor.set"])}
            if layout == "tree":
                jobs["dcmmkdir"] = (self.fresh(), self.dcmmkdir())
            results = self.turns.medians(jobs)
            seconds[layout] = self.report(f"create --move, {self.small:,}, {layout}", results,
                                          {"dcmmkdir": 0.13, "floor": 2.5})
        print(f"    one series takes {seconds['one series'] / seconds['tree']:.2f} of a tree (bar 1.05)")
        return seconds["tree"]

    def large_move(self, small_seconds):
        make_objects(self.objects, self.large)
        results = self.turns.medians({"quillon": (self.fresh(), self.move())})
        seconds = self.report(f"create --move, {self.large:,}", results, {})
        print(f"    {seconds / small_seconds:.2f} times {self.small:,} (bar {3.1 * self.large / self.small / 3:.1f}; "
              "peak bar 60 MB)")

    def copies(self):
        make_objects(self.objects, self.small)
        sync = f"sync -f {self.work}"
        target = self.work / "target"
        shell = lambda command: ["sh", "-c", f"{command} && {sync}"]  # noqa: E731
        results = self.turns.medians({
            "quillon": (self.fresh(), shell(f"{' '.join(map(str, CREATE))} {self.root} {self.copy}")),
            "cp -r": (self.fresh(), shell(f"cp -r {self.copy} {target}"))})
        self.report("create (copies), both synced", results, {"cp -r": 1.1})

        def file_set():
            if not (self.root / "DICOMDIR").exists():
                self.fresh()()
                subprocess.run(self.move(), check=True, stdout=subprocess.DEVNULL)
            shutil.rmtree(target, ignore_errors=True)
            warm(self.root)

        write = [QUILLON, "write", "--quiet", "--keep", "--to", target, "--root", self.root]

        def without_sums():
            (self.root / "SHA256SUMS").unlink(missing_ok=True)
            file_set()

        results = self.turns.medians({
            "quillon": (without_sums, [*write, "--no-verify", "--no-sums"]),
            "with sums": (without_sums, [*write, "--no-verify"]),
            "read back": (without_sums, write),
            "cp -r; sync -f": (without_sums, shell(f"cp -r {self.root} {target}")),
            "and diff -r": (without_sums, shell(f"cp -r {self.root} {target} && {sync} && diff -r {self.root} {target}"))})
        self.report("write --to", results, {"cp -r; sync -f": 1.1})
        subprocess.run([*write, "--no-verify", "--overwrite"], check=True, stdout=subprocess.DEVNULL)
        warm(target)
        results = self.turns.medians({
            "quillon": (lambda: None, [QUILLON, "verify", "--quiet", target]),
            "sha256sum -c": (lambda: None, ["sh", "-c", f"cd {target} && sha256sum -c --quiet SHA256SUMS"])})
        self.report("verify, with sums", results, {"sha256sum -c": 1.1})

    def cold(self):
        heads = f"find {self.copy} -type f -print0 | xargs -0 -P8 -n100 head -qc16384"
        results = self.turns.medians({
            "quillon": (self.fresh(cold=True), self.move()),
            "dcmmkdir": (self.fresh(cold=True), self.dcmmkdir()),
            "heads, 8 at a time": (self.fresh(cold=True), ["sh", "-c", heads])})
        self.report(f"create --move, {self.small:,}, cold", results, {"dcmmkdir": 0.3, "heads, 8 at a time": 1.3})


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", 1)[0])
    parser.add_argument("--runs", type=int, default=5)
    parser.add_argument("--counts", type=int, nargs=2, default=(10000, 30000))
    parser.add_argument("dir", nargs="?", type=Path)
    arguments = parser.parse_args()
    if arguments.dir:
        arguments.dir.mkdir(parents=True, exist_ok=True)
    print(f"{'job':<34} {'command':<20} {'seconds':>8} {'MB':>6}", flush=True)
    with tempfile.TemporaryDirectory(prefix="quillon-bench-", dir=arguments.dir) as directory:
        bench = Bench(Path(directory), arguments.runs, arguments.counts)
        small = bench.moves()
        bench.copies()
        bench.cold()
        bench.large_move(small)


if __name__ == "__main__":
    main()
