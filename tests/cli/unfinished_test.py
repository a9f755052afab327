"""Root directories that hold what a job did not finish, or no file set at all: what is done with
them and what is not.

    unfinished_test.py QUILLON KILL_AT_CHANGE [COM_CLIENT]
"""
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent))
import jobs  # noqa: E402
import program  # noqa: E402
from jobs import NOTE, asides, error_of, objects, unfinished  # noqa: E402
from program import contents  # noqa: E402

FILES = 12


class Unfinished(jobs.JobTest):
    def setUp(self):
        super().setUp()
        self.files = objects(1, FILES)
        self.other = self.dir / "other"
        self.put(self.other, objects(2, 2))

    def begin(self):
        """An unfinished set; answers what its root holds."""
        self.make_unfinished(self.root, self.source, self.files)
        self.digests = {name: program.digest_of(data) for name, data in self.files.items()}
        return contents(self.root)

    def assert_set_aside(self, left, number=1):
        self.assertEqual(len(asides(self.root)), number)
        aside = Path(f"{self.root}.unfinished-{number}")
        self.assertEqual(contents(aside), left)
        self.assert_nothing_lost(self.digests, self.source, aside)

    def test_wiping_sets_moved_objects_aside_and_names_the_place(self):
        for number in (1, 2):
            left = self.begin()
            run = self.done("wipe", "--root", self.root)
            self.assertIn(f"{self.root}.unfinished-{number}", run.stderr.decode())
            self.assertFalse(self.root.exists())
            self.assert_set_aside(left, number)
        self.done("wipe", "--root", self.root)
        self.assertEqual(len(asides(self.root)), 2)

    def test_force_removes_them(self):
        self.begin()
        self.done("wipe", "--force", "--root", self.root)
        self.assertFalse(self.root.exists())
        self.assertEqual(asides(self.root), [])

    def test_a_name_that_is_taken_is_left_alone(self):
        taken = Path(f"{self.root}.unfinished-1")
        taken.write_text("a file of somebody")
        left = self.begin()
        self.done("wipe", "--root", self.root)
        self.assertEqual(taken.read_text(), "a file of somebody")
        self.assert_set_aside(left, 2)

    def fail_in_the_middle(self, what_happens):
        """A creation to which this happens when some files have been moved."""
        command = [program.QUILLON, "create", "--root", self.root, "--move", self.source]
        self.put(self.source, self.files)
        _, changes = self.traced(0, *command)
        for change in range(changes // 2, 0, -1):
            self.remove_all(self.root)
            before = self.put(self.source, self.files)
            run, _ = self.traced(change, *command, meanwhile=(
                f"[ ! -e {self.root}/DICOMOBJ/QLN00002 ] || {what_happens}\ntrue\n"))
            if run.returncode != 0:
                self.assertEqual(run.returncode, 1, run.stderr)
                return before
        self.fail("no change lies between two moves")

    def check_failed(self, before):
        self.assertTrue((self.root / NOTE).is_file())
        left = contents(self.root)
        self.assert_nothing_lost(before, self.source, self.root)
        for arguments in ([], ["--replace"]):
            self.refused(unfinished(self.root), "create", "--root", self.root, *arguments,
                         self.other)
        self.assertEqual(contents(self.root), left)
        self.done("wipe", "--root", self.root)
        self.assert_nothing_lost(before, self.source, *asides(self.root))

    def test_what_fails_because_a_source_goes_away_is_unfinished(self):
        last = max(self.files)
        before = self.fail_in_the_middle(f"rm {self.source / last}")
        del before[last]
        self.check_failed(before)

    def test_what_fails_because_the_disk_fills_up_is_unfinished(self):
        place = self.mounted("size=2m")
        self.root = place / "set"
        filler = place / "filler"
        before = self.fail_in_the_middle(f"cat /dev/zero > {filler} 2> {self.dir}/stderr")
        filler.unlink()
        self.check_failed(before)


class NoFileSet(jobs.JobTest):
    def test_a_directory_of_something_else_is_not_taken_for_a_root(self):
        other = self.dir / "other"
        commands = (["create", other], ["create", "--move", other], ["wipe"])
        cases = {
            "letters": {"letter": b"dear"},
            "a directory with letters": {"letters/a": b"dear"},
            "objects of nobody knows whom": {"DICOMOBJ/QLN00001": b"an object"},
            "other file sets": {"a/DICOMDIR": b"x", "a/DICOMOBJ/QLN00001": b"an object"},
            "names that only look alike": {"dicomdir": b"x", "UNFINISHED.TXT.old": b"x"},
            "a directory of the name": {"DICOMDIR/a": b"x"},
        }
        for what, files in cases.items():
            for command in commands:
                self.remove_all(self.root)
                left = self.put(self.root, files)
                before = self.put(other, objects(2, 2))
                with self.subTest(what, command=command[:3]):
                    run = self.run_program(*command, "--root", self.root)
                    self.assertEqual(run.returncode, 1, run.stderr)
                    self.assertIn(str(self.root), error_of(run))
                    self.assertEqual(contents(self.root), left)
                    self.assertEqual(contents(other), before)
        self.done("wipe", "--force", "--root", self.root)
        self.assertFalse(self.root.exists())


if __name__ == "__main__":
    jobs.main()
