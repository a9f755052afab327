"""A program that is killed has lost no file, destroys none when it is started again, and leaves
nothing behind that `quillon wipe` does not clear away.

    kill_test.py QUILLON KILL_AT_CHANGE [COM_CLIENT]
"""
import shutil
import subprocess
import sys
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent))
import jobs  # noqa: E402
import program  # noqa: E402
from jobs import NOTE, asides, copies, objects, spread, unfinished  # noqa: E402
from program import contents, digest_of  # noqa: E402

FILES = 30
# So many of a job's changes are tried, and of the last ones of a creation, which write the
# DICOMDIR, other content and the label, every second besides.
KILLS = 100_000 if jobs.IS_DEEP else 10
LAST_CHANGES = 24
MOMENTS = 40 if jobs.IS_DEEP else 10
VIEWER = {"START.TXT": b"start", "lib/VIEWER.BIN": bytes(100_000)}


class KillTest(jobs.JobTest):
    def setUp(self):
        super().setUp()
        self.again = self.dir / "again"
        self.other = self.dir / "other"
        self.put(self.other, objects(2, 1))
        self.viewer = self.put(self.dir / "viewer", VIEWER)
        self.configure(other_content=self.dir / "viewer")
        # Directory to the files of a job that lie there before it starts.
        self.inputs = {self.source: objects(1, FILES)}
        # Where objects of no job lie.
        self.elsewhere = [self.other]
        self.use(self.dir)
        self.start_again()

    def use(self, place):
        """Root and target lie there."""
        self.place = place
        self.root = place / "set"
        self.target = place / "media"

    def start_again(self):
        self.remove_all(self.root, self.target, self.again, *asides(self.root),
                        *self.staging_leftovers(), *(self.dir / "tmp").iterdir())
        self.digests = {}
        self.origins = {}
        for directory, files in self.inputs.items():
            self.digests = self.put(directory, files)  # of the last job
            self.origins.update({digest: directory / name
                                 for name, digest in self.digests.items()})

    def set_problems(self, root, digests):
        made = contents(root / "QUILLON") if root.is_dir() else {}
        wrong = [] if made == self.viewer else ["the other content is not whole"]
        return super().set_problems(root, digests) + wrong

    def kill_everywhere(self, command, check, prepare=lambda: None, last_changes=0):
        """Kills a job at its changes; `check` looks at the state after each, and after the whole
        job."""
        self.start_again()
        prepare()
        run, changes = self.traced(0, *command)
        self.assertEqual(run.returncode, 0, run.stderr)
        check()
        points = {*spread(KILLS, changes), *range(max(1, changes - last_changes), changes, 2)}
        for point in sorted(points):
            self.start_again()
            prepare()
            run, _ = self.traced(point, *command)
            self.assertEqual(run.returncode, jobs.KILLED, (point, run.stderr))
            try:
                check()
            except AssertionError as failure:
                self.fail(f"killed at change {point} of {changes}, {self.place}: {failure}")
        print(f"killed at {len(points)} of {changes} changes", file=sys.stderr)

    def assert_all_in(self, *places):
        everything = {str(path): digest for digest, path in self.origins.items()}
        self.assert_nothing_lost(everything, *self.inputs, *places)

    def assert_only_in(self, *places):
        """No object, and no part of one, lies anywhere else."""
        allowed = (*self.inputs, *self.elsewhere, *places)
        strays = [path for path in copies({self.dir, self.place})
                  if not any(path.is_relative_to(place) for place in allowed)]
        self.assertEqual(strays, [])
        self.assertEqual(self.staging_leftovers(), [])

    def is_delivered(self):
        """A target with a DICOMDIR is whole."""
        if not (self.target / "DICOMDIR").exists():
            return False
        self.assert_whole(self.target, self.digests)
        return True

    def check_moved(self):
        """What a killed job has moved into its root is never destroyed, and wiping clears up."""
        self.assert_all_in(self.root, self.target, *asides(self.root))
        is_delivered = self.is_delivered()
        is_finished = not (self.set_problems(self.root, self.digests) or
                           (self.root / NOTE).exists())
        if is_finished:
            self.done("write", "--root", self.root, "--to", self.again)
            self.assert_whole(self.again, self.digests)
        elif copies([self.root]) and not is_delivered:
            self.check_refused()
        self.check_wiped()

    def check_refused(self):
        """The root of an unfinished job is neither used nor replaced."""
        before = contents(self.root)
        for command in (["create", self.other], ["create", "--replace", "--move", self.other],
                        ["write", "--to", self.again]):
            match = self.refused(unfinished(self.root), *command, "--root", self.root)
            self.assertEqual(contents(self.root), before, command)
            # The one that was being copied may count or not.
            self.assertAlmostEqual(int(match[1]), len(copies([self.root])), delta=1)
        note = (self.root / NOTE).read_bytes()
        text = note.decode("utf-16" if b"\0" in note else "utf-8").replace("\\", "/")
        for path in copies([self.root]):
            origin = self.origins.get(digest_of(path.read_bytes()))
            if origin is not None and not origin.exists():
                self.assertIn(str(origin), text)

    def check_wiped(self):
        earlier = asides(self.root)
        run = self.run_program("wipe", "--root", self.root)
        if run.returncode == 0:
            self.assertFalse(self.root.exists())
        else:
            # The job has made a directory and not begun.
            self.assertIn(b"is not wiped: it holds no", run.stderr)
            self.assertEqual(contents(self.root), {}, run.stderr)
        for aside in asides(self.root):
            if aside not in earlier:
                self.assertIn(str(aside), run.stderr.decode())
        self.assert_all_in(self.target, self.again, *asides(self.root))
        self.assert_only_in(self.target, self.again, *asides(self.root))

    def prepare_unfinished(self):
        """Answers what makes a set whose creation was killed in the middle of moving."""
        kept = self.dir / "kept"
        self.make_unfinished(self.root, self.source, self.inputs[self.source])
        shutil.copytree(self.root, kept)
        self.elsewhere.append(kept)
        left = contents(self.source)

        def make():
            shutil.copytree(kept, self.root)
            for name in self.inputs[self.source]:
                if name not in left:
                    (self.source / name).unlink()
        return make

    def command(self, name, *arguments, has_root=True):
        root = ["--root", self.root] if has_root else []
        return [program.QUILLON, name, *root, *arguments]


class KilledProgram(KillTest):
    def on_both_file_systems(self, test):
        for place in (self.dir, self.other_file_system()):
            self.start_again()
            self.use(place)
            with self.subTest(place=place):
                test()

    def test_a_creation_that_moves(self):
        self.on_both_file_systems(lambda: self.kill_everywhere(
            self.command("create", "--move", "--pdi", "--quiet", self.source), self.check_moved,
            last_changes=LAST_CHANGES))

    def test_a_creation_of_copies(self):
        turns = 0

        def check():
            nonlocal turns
            turns += 1
            self.assertEqual(contents(self.source), self.digests)
            if turns % 3 == 1:
                self.done("create", "--replace", "--root", self.root, self.source)
                self.assert_whole(self.root, self.digests)
            elif turns % 3 == 2:
                self.done("publish", "--replace", "--root", self.root, "--to", self.target,
                          self.source)
                self.assert_whole(self.target, self.digests)
            if turns % 3 != 0:
                self.assert_only_in(self.root, self.target)
            self.check_wiped()
            self.assertEqual(asides(self.root), [])

        self.kill_everywhere(self.command("create", "--quiet", self.source), check)

    def test_a_publication(self):
        self.on_both_file_systems(lambda: self.kill_everywhere(
            self.command("publish", "--to", self.target, "--move", "--quiet", self.source),
            self.check_moved))

    def check_without_a_root(self, moves):
        temporary = self.dir / "tmp"
        self.assert_all_in(self.target, temporary)
        self.is_delivered()
        run = self.done("wipe")
        # What may be the only copies stays, in a directory that is named.
        named = [path for path in temporary.iterdir() if str(path) in run.stderr.decode()]
        if not moves:
            self.assertEqual(named, [])
        self.assert_all_in(self.target, *named)
        self.assert_only_in(self.target, *named)

    def test_a_publication_without_a_root(self):
        for move in ([], ["--move"]):
            with self.subTest(move=move):
                self.kill_everywhere(self.command("publish", "--to", self.target, "--quiet", *move,
                                                  self.source, has_root=False),
                                     lambda: self.check_without_a_root(bool(move)))

    def test_a_write_of_the_only_copies(self):
        self.on_both_file_systems(self.kill_a_write)

    def kill_a_write(self):
        kept = self.place / "kept"
        self.start_again()
        self.done("create", "--root", kept, "--move", self.source)
        self.elsewhere.append(kept)

        def prepare():
            self.remove_all(self.source)
            shutil.copytree(kept, self.root)

        def check():
            self.assert_all_in(self.root, self.target)
            if not self.is_delivered():
                self.done("write", "--root", self.root, "--to", self.target, "--overwrite")
                self.assert_whole(self.target, self.digests)
            self.check_wiped()

        self.kill_everywhere(self.command("write", "--to", self.target, "--quiet"), check, prepare)

    def test_a_wipe_of_an_unfinished_set(self):
        make = self.prepare_unfinished()

        def check():
            self.assert_all_in(self.root, *asides(self.root))
            self.check_wiped()

        self.kill_everywhere(self.command("wipe"), check, make)

    def test_at_any_moment(self):
        """Also between two calls and within one, where no tracer stops the program."""
        command = self.command("create", "--move", "--quiet", self.source)
        started = time.monotonic()
        self.done(*command[1:])
        whole = time.monotonic() - started
        for number in range(MOMENTS):
            self.start_again()
            run = subprocess.Popen(command, env=self.environment(), cwd=self.dir / "work",
                                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            time.sleep(whole * (number + 0.5) / MOMENTS)
            run.kill()
            run.wait()
            with self.subTest(number=number, of=MOMENTS):
                self.check_moved()


class KilledHost(KillTest):
    def test_a_host_that_finds_an_unfinished_set(self):
        self.register()
        make = self.prepare_unfinished()
        source = self.dir / "host"
        self.inputs[source] = objects(3, 10)
        script = self.dir / "script"
        script.write_text("\n".join([
            f'create "{jobs.hosts.PROGID}"', f'put DicomRootDirectory "{self.root}"',
            'put UniquePatientId "3"', "put AllowAddHierarchyTree true",
            "put PerformDirectCopy true", f'put DirectCopyDirectory "{self.target}"',
            f'call AddDirectory "{source}"', "call CreateDicomFileSet", "call Write", "release"]))
        self.kill_everywhere([jobs.COM_CLIENT, script], self.check_moved, make)


if __name__ == "__main__":
    jobs.main()
