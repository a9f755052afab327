"""Large sets: what a creation takes grows with the number of objects and no faster. A tenth of the
sizes on every day, all of them with QUILLON_DEEP_TESTS=1 in the environment."""
import json
import os
import subprocess
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent))
import program  # noqa: E402
from program import dicom_file  # noqa: E402

IS_DEEP = os.environ.get("QUILLON_DEEP_TESTS") == "1"
SHRINK = 1 if IS_DEEP else 10
MOST_OBJECTS = 99_999  # QLN99999 is the last name
MB = 1_000_000

# A job of five times the objects may take so many times the processor time per object: of a cost
# that grows with the square it would be nearly five times. What a machine's caches do to the larger
# one stays well below.
TIMES_PER_OBJECT = 2.5
BYTES_PER_OBJECT = 1_800
PROCESS_BYTES = 15 * MB


# A process's memory counts from what its maker had, so that a small one starts the program. Its
# output's last line tells what the program took: seconds of processor time, and bytes at most.
STARTER = """
import os, sys
pid = os.posix_spawn(sys.argv[1], sys.argv[1:], os.environ)
_, ended, usage = os.wait4(pid, 0)
print()
print(usage.ru_utime + usage.ru_stime, usage.ru_maxrss * 1024)
sys.exit(os.waitstatus_to_exitcode(ended))
"""


class Used:
    """What one run of the program took."""

    def __init__(self, line):
        self.seconds, self.bytes = (float(number) for number in line.split())


class Load(program.ProgramTest):
    # In memory where there is a place for that: it is the program that is measured.
    above = "/dev/shm" if os.access("/dev/shm", os.W_OK) else None

    def make(self, directory, objects, series_of):
        """Files of one patient's one study; `series_of` says which series a number belongs to."""
        template = dicom_file(instance="2.25.1.1000000", series="2.25.2.1000000")
        directory.mkdir(parents=True)
        for number in range(objects):
            data = template.replace(b"2.25.1.1000000", b"2.25.1.%d" % (1_000_000 + number))
            data = data.replace(b"2.25.2.1000000", b"2.25.2.%d" % (1_000_000 + series_of(number)))
            (directory / f"{number:06}").write_bytes(data)

    def measured(self, *arguments, status=0):
        """Runs `create`; answers its result and what it took."""
        run = subprocess.run([sys.executable, "-S", "-c", STARTER, program.QUILLON, "create",
                              "--json", "--root", self.root, *arguments], stdout=subprocess.PIPE,
                             env=self.environment(), cwd=self.dir / "work")
        text, _, used = run.stdout.decode().rstrip("\n").rpartition("\n")
        result = json.loads(text)
        self.assertEqual(run.returncode, status, result["error"])
        return result, Used(used)

    def report(self, what, objects, used):
        print(f"{what}, {objects:,} objects: {used.seconds:.1f} s, {used.bytes / MB:.0f} MB",
              flush=True)

    def grow(self, what, objects, series_of):
        """Creates a set of a fifth of the objects, then of all; answers what the larger one took."""
        for count in (objects // 5, objects):
            directory = self.dir / f"of-{count}"
            self.make(directory, count, series_of)
            (directory / "zz-cut").write_bytes(dicom_file()[:-35])
            # Of the small one the faster of two: the first run also warms the machine.
            tries = []
            for _ in range(2 if count < objects else 1):
                result, used = self.measured("--replace", "--keep-going", directory)
                self.assertEqual(result["objects"], count)
                self.assertEqual([Path(one["path"]).name for one in result["passed_over"]],
                                 ["zz-cut"])
                tries.append(used)
            used = min(tries, key=lambda one: one.seconds)
            self.report(what, count, used)
            if count < objects:
                fewer = used
        self.assertLess(used.seconds / objects, TIMES_PER_OBJECT * fewer.seconds / (objects // 5))
        self.assertLess(used.bytes, PROCESS_BYTES + BYTES_PER_OBJECT * objects)
        return used

    def test_the_most_objects_that_a_set_takes(self):
        self.grow("series of 100", MOST_OBJECTS // SHRINK, lambda number: number // 100)
        self.assertEqual(len(os.listdir(self.root / "DICOMOBJ")), MOST_OBJECTS // SHRINK)

    def test_a_series_of_fifty_thousand(self):
        self.grow("one series", 50_000 // SHRINK, lambda number: 0)

    def test_a_study_of_two_thousand_series(self):
        self.grow("series of 1", 2_000, lambda number: number)

    @unittest.skipUnless(IS_DEEP, "takes minutes: the limit is a hundred thousand objects")
    def test_more_objects_than_there_are_names_for_move_nothing(self):
        for objects in (MOST_OBJECTS + 1, 300_000):
            with self.subTest(objects=objects):
                directory = self.dir / f"of-{objects}"
                self.make(directory, objects, lambda number: number // 500)
                result, used = self.measured("--move", directory, status=1)
                self.report("refused", objects, used)
                self.assertIn("Cannot set the image file reference to DICOMOBJ\\QLN100000 for the",
                              result["error"])
                self.assertFalse(self.root.exists())
                self.assertEqual(len(os.listdir(directory)), objects)
                self.assertLess(used.bytes, PROCESS_BYTES + BYTES_PER_OBJECT * objects)


if __name__ == "__main__":
    program.QUILLON = os.path.abspath(sys.argv[1])
    unittest.main(argv=[sys.argv[0], "-v", *sys.argv[2:]])
