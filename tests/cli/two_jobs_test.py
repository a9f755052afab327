"""Two jobs at once: each ends whole, or is refused and has touched nothing.

    two_jobs_test.py QUILLON KILL_AT_CHANGE [COM_CLIENT]
"""
import shlex
import sys
import time
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent))
import jobs  # noqa: E402
import program  # noqa: E402
from jobs import JobTest, in_use, objects, spread  # noqa: E402
from program import contents  # noqa: E402

PAIRS = 50 if jobs.IS_DEEP else 8
HELD_AT = 100_000 if jobs.IS_DEEP else 5


class Job:
    """A job with a patient of its own. What `run` leaves in `sentence` is None for a job that has
    ended well."""

    def __init__(self, test, patient, command, root):
        self.test = test
        self.command = command
        self.root = root
        self.base = test.dir / f"job{patient}"
        self.source = self.base / "source"
        self.target = self.base / "target"
        self.before = test.put(self.source, objects(patient, test.FILES))
        # Where the files are when all went well.
        self.place = self.root if command[0] == "create" else self.target
        self.sentence = None

    def close(self):
        self.test.remove_all(self.base)

    def check(self):
        """Answers whether the job ended well."""
        test = self.test
        test.assert_nothing_lost(self.before, self.source, self.target, self.root)
        if self.sentence is None:
            test.assert_whole(self.place, self.before)
            return True
        test.assertIn(self.sentence, self.refusals(), self.command)
        test.assertEqual(contents(self.source), self.before)
        test.assertEqual(contents(self.target), {})
        return False

    def refusals(self):
        return [in_use(self.root)]


class ProgramJob(Job):
    def arguments(self):
        root = [] if self.root is None else ["--root", self.root]
        target = [] if self.command[0] == "create" else ["--to", self.target]
        return [*self.command, "--quiet", *root, *target, self.source]

    def run(self):
        run = self.test.run_program(*self.arguments())
        self.sentence = jobs.error_of(run) if run.returncode else None

    def check(self):
        if self.root is None:
            self.root = self.base / "none"
        return super().check()

    def refusals(self):
        # The file set of a job that has ended meanwhile.
        return [*super().refusals(), f"The root directory {self.root} is not empty; --replace "
                "wipes it before the file set is created."]


class HostJob(Job):
    """A host that makes a file set and copies it to its target."""

    def __init__(self, *arguments):
        super().__init__(*arguments)
        self.host = self.test.host()
        self.host.put(DicomRootDirectory=self.root, AllowAddHierarchyTree=True,
                      UniquePatientId=self.base.name, PerformDirectCopy=True,
                      DirectCopyDirectory=self.target)

    def run(self):
        for operation, *texts in (("AddDirectory", self.source), ("CreateDicomFileSet",),
                                  ("Write",)):
            answer = self.host.call(operation, *texts)
            if not answer.succeeded():
                self.sentence = answer.sentence
                return

    def close(self):
        self.host.kill()
        super().close()


PUBLISH, MOVE, CREATE = ["publish"], ["publish", "--move"], ["create", "--move"]
HOST = ["host"]


class TwoJobsTest(JobTest):
    above = jobs.FAST_DIRECTORY

    def job(self, patient, command, root):
        return (HostJob if command == HOST else ProgramJob)(self, patient, command, root)


class AtOnce(TwoJobsTest):
    FILES = 120

    def length_of(self, command):
        job = self.job(9, command, self.root)
        started = time.monotonic()
        job.run()
        length = time.monotonic() - started
        self.assertTrue(job.check(), job.sentence)
        job.close()
        self.remove_all(self.root)
        return length

    def pairs(self, commands, root):
        """Starts the second job in every phase of the first; answers what was refused."""
        lengths = [self.length_of(command) for command in commands]
        refusals = []
        for number in range(PAIRS):
            # Each is the first in every second pair.
            order = (0, 1) if number % 2 == 0 else (1, 0)
            pair = [self.job(patient + 1, commands[patient], root) for patient in order]
            with ThreadPoolExecutor(2) as threads:
                running = [threads.submit(pair[0].run)]
                time.sleep(lengths[order[0]] * number / (PAIRS - 1))
                running.append(threads.submit(pair[1].run))
                for one in running:
                    one.result()
            with self.subTest(pair=[job.command for job in pair], number=number):
                ended_well = [job.check() for job in pair]
                self.assertIn(True, ended_well)
                self.assertEqual(self.staging_leftovers(), [])
                refusals += [job.sentence for job in pair if job.sentence is not None]
            for job in pair:
                job.close()
            if root is not None:
                self.remove_all(root, *jobs.asides(root))
        return refusals

    def test_on_one_root(self):
        for commands in ((PUBLISH, CREATE), (HOST, HOST), (MOVE, HOST)):
            with self.subTest(commands):
                # Else they were not at once, which a busy machine can do several times over.
                for _ in range(5):
                    refusals = self.pairs(commands, self.root)
                    if in_use(self.root) in refusals:
                        break
                self.assertIn(in_use(self.root), refusals)

    def test_publications_without_a_root_do_not_meet(self):
        self.assertEqual(self.pairs((PUBLISH, MOVE), None), [])
        self.assertEqual(contents(self.dir / "tmp"), {})


class Held(TwoJobsTest):
    """One job stands still while another comes: exactly at a change that it makes, or a host
    between two operations."""
    FILES = 30

    def test_at_its_changes(self):
        for first, second in ((MOVE, CREATE), (CREATE, MOVE), (CREATE, ["create", "--replace"]),
                              (PUBLISH, MOVE)):
            self.remove_all(self.root, self.dir / "job1")
            job = self.job(1, first, self.root)
            _, changes = self.traced(0, program.QUILLON, *job.arguments())
            self.assertTrue(job.check())
            for at in spread(HELD_AT, changes):
                with self.subTest(first=first, second=second, at=at, of=changes):
                    self.hold(first, second, at)

    def hold(self, first, second, at):
        self.remove_all(self.root, self.dir / "job1", self.dir / "job2")
        held = self.job(1, first, self.root)
        other = self.job(2, second, self.root)
        seen = [self.dir / name for name in ("objects", "status", "stderr")]
        for path in seen:
            path.unlink(missing_ok=True)
        command = shlex.join(map(str, (program.QUILLON, *other.arguments())))
        run, _ = self.traced(at, program.QUILLON, *held.arguments(), meanwhile=(
            f"find {self.root} -name 'QLN*' | wc -l > {seen[0]}\n"
            f"{command} 2> {seen[2]} > {self.dir}/stdout\necho $? > {seen[1]}\n"))
        self.assertTrue(seen[1].exists(), "the other job was not started")
        held.sentence = jobs.error_of(run) if run.returncode else None
        objects_then, status = (int(path.read_text()) for path in seen[:2])
        if status:
            other.sentence = seen[2].read_text().splitlines()[0].removeprefix("quillon: ")
        ended_well = held.check(), other.check()
        self.assertIn(True, ended_well)
        if objects_then:
            self.assertEqual((ended_well, other.sentence), ((True, False), in_use(self.root)))

    def host_with_a_set(self):
        job = self.job(1, HOST, self.root)
        self.assertTrue(job.host.call("AddDirectory", job.source).succeeded())
        created = job.host.call("CreateDicomFileSet")
        self.assertTrue(created.succeeded(), created.sentence)
        self.assert_whole(self.root, job.before)
        return job

    def assert_held(self, names):
        """Nobody else does anything with the root, by whatever name it goes."""
        made = contents(self.root)
        other = self.put(self.dir / "other", objects(3, 3))
        out = self.dir / "out"
        for root in names:
            for command in (["create"], ["create", "--replace", "--move"], ["publish", "--to", out],
                            ["write", "--to", out], ["wipe"], ["wipe", "--force"]):
                files = [self.dir / "other"] if command[0] in ("create", "publish") else []
                with self.subTest(command, root=root):
                    self.refused(in_use(".*"), *command, "--root", root, *files)
                    self.assertEqual(contents(self.root), made)
            with self.subTest("host", root=root):
                host = self.host()
                host.put(DicomRootDirectory=root, UniquePatientId="3", AllowAddHierarchyTree=True,
                         PerformDirectCopy=True, DirectCopyDirectory=out)
                self.assertTrue(host.call("AddDirectory", self.dir / "other").succeeded())
                for operation in ("CreateDicomFileSet", "Write"):
                    answer = host.call(operation)
                    self.assertFalse(answer.succeeded(), operation)
                    self.assertRegex(answer.sentence, f"^{in_use('.*')}$", operation)
                host.call("Wipe")
                self.assertEqual(contents(self.root), made)
                host.kill()
            self.assertEqual(contents(self.dir / "other"), other)
            self.assertEqual(contents(out), {})

    def assert_free(self):
        self.put(self.dir / "other", objects(3, 3))
        run = self.run_program("create", "--root", self.root, "--replace", self.dir / "other")
        self.assertEqual(run.returncode, 0, run.stderr)
        self.remove_all(self.root)

    def test_a_host_keeps_its_set_until_it_is_delivered(self):
        (self.dir / "link").symlink_to(self.root)
        (self.dir / "way").symlink_to(self.dir)
        job = self.host_with_a_set()
        job.host.put(ClearAfterWrite=False, PerformDirectCopy=False)
        self.assertFalse(job.host.call("Write").succeeded())  # there is no recorder
        self.assert_held([self.root, self.dir / "link", self.dir / "way/set"])
        job.host.put(PerformDirectCopy=True)
        written = job.host.call("Write")
        self.assertTrue(written.succeeded(), written.sentence)
        self.assert_whole(job.target, job.before)
        self.assert_free()

    def test_a_host_gives_its_root_back_whatever_its_end(self):
        for end in (lambda host: host.call("Wipe"), lambda host: host.release(),
                    lambda host: host.new_object(), lambda host: host.kill()):
            job = self.host_with_a_set()
            self.refused(in_use(self.root), "wipe", "--root", self.root)
            end(job.host)
            self.assert_free()
            job.close()

    def test_what_a_running_job_needs_is_not_cleared_away(self):
        beside = self.dir / "beside"
        other = self.dir / "other"
        self.put(other, objects(3, 3))
        others = "".join(
            shlex.join(map(str, (program.QUILLON, *command))) + " > /dev/null || exit 1\n"
            for command in (["create", "--root", beside, "--replace", other],
                            ["wipe", "--root", beside],
                            ["publish", "--to", self.dir / "out", "--overwrite", other], ["wipe"]))
        for command, root in ((["create"], self.root), (PUBLISH, None), (MOVE, None)):
            job = self.job(1, command, root)
            _, changes = self.traced(0, program.QUILLON, *job.arguments())
            for at in spread(HELD_AT, changes):
                self.remove_all(self.root, job.base)
                job = self.job(1, command, root)
                with self.subTest(command, at=at, of=changes):
                    run, _ = self.traced(at, program.QUILLON, *job.arguments(), meanwhile=others)
                    self.assertEqual(run.returncode, 0, run.stderr)
                    self.assertTrue(job.check())
            job.close()


if __name__ == "__main__":
    jobs.main()
