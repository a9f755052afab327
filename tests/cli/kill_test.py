"""A program that is killed in the middle of moving files has lost none of them."""
import os
import shutil
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent))
import program  # noqa: E402
from program import contents, dicom_file, element  # noqa: E402

KILL_AT_CHANGE = None  # set by main
KILLED = 137
CANNOT_TRACE = 77
FILES = 30
# The exact test covers every state; more runs than this are spread over all of them.
MAX_RUNS = 140


class Killing(program.ProgramTest):
    def setUp(self):
        super().setUp()
        self.inputs = {}
        for number in range(FILES):
            # Some take more than one block of a copy.
            pixels = bytes([number]) * (40_000 if number % 3 == 0 else 700)
            self.inputs[f"{number % 4}/{number:02d}"] = dicom_file(
                instance=f"2.25.1.1.1.{number}",
                more={0x7FE00010: element(0x7FE00010, "OW", pixels)})
        self.restore()
        self.before = contents(self.source)

    def restore(self):
        for name, data in self.inputs.items():
            if not (self.source / name).exists():
                self.write(name, data)

    def killed_at(self, change, root):
        count = self.dir / "count"
        run = subprocess.run([KILL_AT_CHANGE, str(change), count, program.QUILLON, "create",
                              "--root", root, "--move", "--quiet", self.source],
                             env=self.environment(), cwd=self.dir / "work",
                             stdin=subprocess.DEVNULL, capture_output=True, timeout=120)
        if run.returncode == CANNOT_TRACE:
            self.skipTest("programs cannot be traced here")
        return run, int(count.read_text())

    def check_nothing_lost(self, root, why):
        in_place = contents(self.source)
        in_set = set(contents(root).values()) if root.exists() else set()
        for name, digest in self.before.items():
            self.assertTrue(in_place.get(name) == digest or digest in in_set,
                            f"{name} is lost, {why}")

    def check_not_wiped_by_a_second_try(self, root):
        for arguments in ([], ["--replace"]):
            run = self.run_program("create", "--root", root, "--move", *arguments, self.source)
            self.assertEqual(run.returncode, 1)
            self.assertIn(b"holds objects without a DICOMDIR", run.stderr)
            self.check_nothing_lost(root, f"created again with {arguments}")

    def start_again(self, root):
        shutil.rmtree(root, ignore_errors=True)
        self.restore()

    def kill_everywhere(self, root):
        run, changes = self.killed_at(0, root)
        self.assertEqual(run.returncode, 0, run.stderr)
        self.assertEqual(contents(self.source), {})
        self.check_nothing_lost(root, "without a kill")
        step = max(1.0, changes / MAX_RUNS)
        points = sorted({int(1 + i * step) for i in range(min(changes, MAX_RUNS))})
        partly = 0
        for point in points:
            self.start_again(root)
            run, _ = self.killed_at(point, root)
            self.assertEqual(run.returncode, KILLED, (point, run.stderr))
            self.check_nothing_lost(root, f"killed at change {point} of {changes}")
            partly += 0 < len(contents(self.source)) < FILES
            if partly == 1:
                self.check_not_wiped_by_a_second_try(root)
        # The kills fell between the first file and the last.
        self.assertGreater(partly, FILES // 2)
        print(f"killed at {len(points)} of {changes} changes", file=sys.stderr)

    def test_at_every_change_on_one_file_system(self):
        self.kill_everywhere(self.root)

    def other_file_system(self):
        for place in ("/dev/shm", "/tmp", "/var/tmp", os.environ.get("XDG_RUNTIME_DIR", "/run")):
            if os.access(place, os.W_OK) and os.stat(place).st_dev != os.stat(self.dir).st_dev:
                other = Path(tempfile.mkdtemp(prefix="quillon-kill-", dir=place))
                self.addCleanup(shutil.rmtree, other, ignore_errors=True)
                return other
        return self.skipTest("there is no second file system to move to")

    def test_at_every_change_between_two_file_systems(self):
        self.kill_everywhere(self.other_file_system() / "set")

    def test_at_any_moment(self):
        """Also between two calls and within one, where no tracer stops the program."""
        root = self.root
        started = time.monotonic()
        run = self.run_program("create", "--root", root, "--move", "--quiet", self.source)
        self.assertEqual(run.returncode, 0)
        whole = time.monotonic() - started
        runs = 40
        for number in range(runs):
            self.start_again(root)
            run = subprocess.Popen([program.QUILLON, "create", "--root", root, "--move", "--quiet",
                                    self.source], env=self.environment(), cwd=self.dir / "work",
                                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            time.sleep(whole * (number + 0.5) / runs)
            run.kill()
            run.wait()
            self.check_nothing_lost(root, f"killed in run {number}")


if __name__ == "__main__":
    program.QUILLON, KILL_AT_CHANGE = map(os.path.abspath, sys.argv[1:3])
    unittest.main(argv=[sys.argv[0], "-v", *sys.argv[3:]])
