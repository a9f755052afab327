"""File sets written into one file, an image or a ZIP file: what independent readers find in it, and
that there is a whole file or none, and no file set lost, whatever happens.

    medium_file_test.py QUILLON MAKE_SAMPLE_OBJECTS
"""
import io
import json
import os
import shutil
import signal
import stat
import subprocess
import sys
import time
import unittest
import zipfile
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent))
import program  # noqa: E402
from program import contents, dicom_file, everything  # noqa: E402

try:
    import pydicom
    from pydicom.fileset import FileSet
except ImportError:
    pydicom = None

KINDS = ("iso", "zip")
# Longer than what a pipe and the program hold between them.
LARGE = 64 << 20


def judge(name):
    found = shutil.which(name)
    if found is None:
        raise unittest.SkipTest(f"{name} is not installed")
    return found


def output_of(*command, status=0):
    run = subprocess.run([str(part) for part in command], stdout=subprocess.PIPE,
                         stderr=subprocess.STDOUT, stdin=subprocess.DEVNULL, timeout=300)
    text = run.stdout.decode(errors="replace")
    if run.returncode != status:
        raise AssertionError(f"{command} ended with {run.returncode}:\n{text}")
    return text


class FileTest(program.ProgramTest):
    more_environment = {}

    def setUp(self):
        super().setUp()
        self.viewer = self.dir / "viewer"
        for name, data in {"START.TXT": b"start", "lib/Gerät.bin": bytes(70_000)}.items():
            path = self.viewer / name
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_bytes(data)
        self.configure(other_content=self.viewer)
        self.media = self.dir / "media"
        self.media.mkdir()

    def environment(self):
        return {**super().environment(), **self.more_environment}

    def make_set(self):
        self.sample_tree()
        self.create_set(self.source)
        return contents(self.root)

    def write_set(self, *arguments, **how):
        return self.command("write", "--root", self.root, *arguments, **how)

    def unpacked(self, medium, password=None):
        """What 7-Zip takes out of an image or a ZIP file."""
        out = self.dir / "out"
        shutil.rmtree(out, ignore_errors=True)
        output_of(judge("7z"), "x", "-y", f"-o{out}", f"-p{password or ''}", medium)
        return contents(out)

    def assert_no_trace(self, medium):
        self.assertFalse(medium.exists())
        self.assertEqual(list(self.media.glob(".*")), [])


class Whole(FileTest):
    def test_readers_of_images_and_of_zip_files_find_the_set_as_it_was(self):
        made = self.make_set()
        for kind in KINDS:
            with self.subTest(kind=kind):
                medium = self.media / f"medium.{kind}"
                result = self.write_set(f"--{kind}", medium, "--keep")
                self.assertEqual(
                    (result[kind], result["to"], result["recorder"], result["written"],
                     result["kept"]), (str(medium), None, None, True, True))
                self.assertNotIn(({"iso", "zip"} - {kind}).pop(), result)
                self.assertEqual(self.unpacked(medium), made)
                self.assertEqual(contents(self.root), made)
                self.assertEqual(os.listdir(self.media), [medium.name])
                mask = os.umask(0)
                os.umask(mask)
                self.assertEqual(stat.S_IMODE(medium.stat().st_mode), 0o666 & ~mask)
                medium.unlink()
        if pydicom is not None:
            objects = [Path(record.path) for record in FileSet(self.dir / "out/DICOMDIR")]
            self.assertGreater(len(objects), 3)
            self.assertTrue(all(path.is_file() for path in objects))

    def test_publish_leaves_the_file_alone(self):
        before = self.sample_tree()
        for kind in KINDS:
            with self.subTest(kind=kind):
                medium = self.media / f"medium.{kind}"
                result = self.command("publish", f"--{kind}", medium, self.source)
                self.assertEqual((result[kind], result["kept"]), (str(medium), False))
                found = self.unpacked(medium)
                self.assertIn("DICOMDIR", found)
                self.assertEqual(set(before.values()) - set(found.values()), set())
                self.assertEqual(contents(self.source), before)
                self.assertEqual(os.listdir(self.dir / "tmp"), [])

    def test_a_set_that_was_written_is_wiped_unless_it_is_kept(self):
        self.make_set()
        self.write_set("--iso", self.media / "medium.iso")
        self.assertFalse(self.root.exists())

    def test_an_image_is_what_a_disc_would_hold(self):
        self.make_set()
        medium = self.media / "medium.iso"
        self.write_set("--iso", medium, "--volume", "STUDY_1", "--keep")
        told = output_of(judge("isoinfo"), "-d", "-i", medium)
        self.assertIn("Volume id: STUDY_1", told)
        self.assertIn("Joliet with UCS level 3 found", told)
        output_of(judge("xorriso"), "-abort_on", "WARNING", "-indev", medium, "-find", "/")
        self.more_environment = {"QUILLON_RECORDERS": str(self.dir / "recorders")}
        self.registry.write_text("Windows Registry Editor Version 5.00\n")
        result = self.write_set("--volume", "STUDY_1")
        self.assertEqual(os.path.getsize(result["image"]), medium.stat().st_size)

    def test_a_zip_file_has_the_dicomdir_first_and_the_times_of_the_files(self):
        made = self.make_set()
        os.utime(self.root / "LABEL.TXT", (1_600_000_000, 1_600_000_000))
        for options in ([], ["--compress"]):
            with self.subTest(options=options):
                medium = self.media / "medium.zip"
                self.write_set("--zip", medium, "--keep", "--overwrite", *options)
                output_of(judge("unzip"), "-t", medium)
                with zipfile.ZipFile(medium) as archive:
                    self.assertIsNone(archive.testzip())
                    infos = archive.infolist()
                    self.assertEqual(infos[0].filename, "DICOMDIR")
                    self.assertEqual({info.filename for info in infos}, {*made, program.SUMS})
                    method = zipfile.ZIP_DEFLATED if options else zipfile.ZIP_STORED
                    self.assertEqual({info.compress_type for info in infos}, {method})
                out = self.dir / "out"
                shutil.rmtree(out, ignore_errors=True)
                output_of(judge("unzip"), "-q", medium, "-d", out)
                self.assertEqual(contents(out), made)
                self.assertEqual((out / "LABEL.TXT").stat().st_mtime, 1_600_000_000)

    def test_the_sums_of_a_medium_are_those_of_its_files(self):
        (self.viewer / "two\nlines").write_bytes(b"x")
        made = self.make_set()
        for kind in ("to", *KINDS):
            with self.subTest(kind=kind):
                medium = self.media / f"sums.{kind}"
                result = self.write_set(f"--{kind}", medium, "--keep")
                self.assertEqual(result["sums"], made)
                found = medium if kind == "to" else self.dir / "out"
                if kind != "to":
                    self.unpacked(medium)
                lines = (found / program.SUMS).read_text().splitlines()
                self.assertEqual(len(lines), len(made))
                self.assertEqual(lines, (self.root / program.SUMS).read_text().splitlines())
                if kind == "iso":  # a line end in a name is none in an image
                    continue
                output_of("sh", "-c", f"cd {found} && sha256sum --strict -c {program.SUMS}")
        # Those of another delivery do not go with files that may have changed.
        (self.root / program.SUMS).write_text("old")
        for options, has_sums in (["--no-sums"], False), ([], True):
            result = self.write_set("--to", self.media / "sums.to", "--overwrite", "--keep", *options)
            self.assertEqual("sums" in result, has_sums)
            for directory in (self.media / "sums.to", self.root):
                self.assertEqual((directory / program.SUMS).exists(), has_sums)
                self.assertEqual(contents(directory), made)
        (self.root / program.SUMS).write_text("old")
        self.configure(current_practice=0)
        self.assertNotIn("sums", self.write_set("--to", self.media / "plain", "--keep"))
        self.assertIn("sums", self.write_set("--to", self.media / "asked", "--sums"))

    def test_a_set_that_nobody_may_write_to_is_delivered_with_its_sums(self):
        made = self.make_set()
        os.chmod(self.root, 0o555)
        os.chmod(self.media, 0o777)
        user = {"preexec_fn": lambda: os.setuid(program.NOBODY)} if os.geteuid() == 0 else {}
        for kind in ("to", *KINDS):
            with self.subTest(kind=kind):
                medium = self.media / f"medium.{kind}"
                run = self.run_program("write", "--root", self.root, f"--{kind}", medium, "--keep",
                                       **user)
                if b"cannot be taken" in run.stderr:
                    self.skipTest(run.stderr.decode())
                self.assertEqual(run.returncode, 0, run.stderr)
                found = medium if kind == "to" else self.dir / "out"
                if kind != "to":
                    self.unpacked(medium)
                self.assertEqual(contents(found), made)
                self.assertEqual(len((found / program.SUMS).read_text().splitlines()), len(made))

    def test_with_a_password_nobody_reads_it_without(self):
        made = self.make_set()
        secret = self.dir / "secret"
        secret.write_bytes("Schlüssel 1\r\nnot this".encode())
        secret.chmod(0o600)
        medium = self.media / "medium.zip"
        run = self.run_program("write", "--root", self.root, "--zip", medium, "--keep",
                               "--password-file", secret)
        self.assertEqual(run.returncode, 0, run.stderr)
        self.assertIn("7-Zip, WinZip, Keka and the like open it with the password, Windows Explorer "
                      "does not.", run.stderr.decode())
        self.assertEqual(self.unpacked(medium, "Schlüssel 1"), made)
        self.assertIn("AES-256", output_of(judge("7z"), "l", "-slt", medium))
        output_of(judge("7z"), "t", "-pother", medium, status=2)
        for command in ("verify", "list"):
            run = self.run_program(command, medium, "--password-file", secret)
            self.assertEqual((run.returncode, run.stderr), (0, b""), run.stdout)
            self.assertNotEqual(self.run_program(command, medium).stderr + run.stdout, b"")
        self.assertEqual(self.run_program("verify", medium).returncode, 1)
        secret.write_bytes(b"another")
        self.assertEqual(self.run_program("verify", medium, "--password-file", secret).returncode, 1)
        secret.chmod(0o644)
        run = self.run_program("list", medium, "--password-file", secret)
        self.assertEqual(run.returncode, 1)
        self.assertIn("can be read by others", run.stderr.decode())

    def test_a_dash_is_standard_output_and_the_results_go_elsewhere(self):
        made = self.make_set()
        for kind in KINDS:
            with self.subTest(kind=kind):
                run = self.run_program("write", "--root", self.root, f"--{kind}", "-", "--keep",
                                       "--json")
                self.assertEqual(run.returncode, 0, run.stderr)
                self.assertEqual(json.loads(run.stderr.decode())[kind], "-")
                medium = self.media / f"stream.{kind}"
                medium.write_bytes(run.stdout)
                self.assertEqual(self.unpacked(medium), made)
        run = self.run_program("publish", "--zip", "-", self.source)
        self.assertEqual(run.returncode, 0, run.stderr)
        self.assertEqual(zipfile.ZipFile(io.BytesIO(run.stdout)).infolist()[0].filename, "DICOMDIR")
        self.assertIn("Written:   ZIP file on standard output", run.stderr.decode())


class Refused(FileTest):
    def test_what_is_in_the_way_is_refused_with_nothing_changed(self):
        self.make_set()
        (self.media / "old").write_bytes(b"old")
        (self.media / "directory").mkdir()
        (self.media / "link").symlink_to(self.media / "old")
        (self.media / "empty").touch(mode=0o600)
        (self.media / "open").write_bytes(b"secret")
        (self.media / "open").chmod(0o644)
        before = everything(self.dir)
        cases = [
            (["--iso", self.media / "old"], "exists; --overwrite replaces it."),
            (["--zip", self.media / "old"], "exists; --overwrite replaces it."),
            (["--iso", self.media / "directory", "--overwrite"], "that is not a file."),
            (["--iso", self.media / "link", "--overwrite"], "that is not a file."),
            (["--iso", self.media / "none/x.iso"], f"The directory {self.media}/none does not exist."),
            (["--iso", self.media / "old/x.iso"], f"The path {self.media}/old is not a directory."),
            (["--zip", self.root / "x.zip"], f"lies in the root directory {self.root}."),
            (["--iso", f"{self.media}/"], "has no name."),
            (["--zip", self.media / "x", "--password-file", self.media / "empty"],
             "holds no password in its first line."),
            (["--zip", self.media / "x", "--password-file", self.media / "open"],
             "can be read by others: chmod 600"),
            (["--zip", self.media / "x", "--password-file", self.media / "none"],
             "cannot be read: No such file or directory."),
        ]
        for arguments, reason in cases:
            with self.subTest(arguments=arguments):
                result = self.write_set(*arguments, status=1)
                self.assertIn(reason, result["error"])
                self.assertEqual(everything(self.dir), before)

    def test_no_source_is_ever_replaced(self):
        one = self.write("1", dicom_file())
        before = contents(self.source)
        for sources in ([self.source], [one]):
            result = self.command("publish", "--root", self.root, "--overwrite", "--iso", one,
                                  *sources, status=1)
            self.assertIn("belongs to the source", result["error"])
            self.assertEqual(contents(self.source), before)

    def test_a_file_that_is_replaced_is_there_until_the_new_one_is(self):
        made = self.make_set()
        medium = self.media / "medium.zip"
        medium.write_bytes(b"old")
        os.chmod(self.root / "LABEL.TXT", 0)
        if os.geteuid() != 0:
            self.write_set("--zip", medium, "--overwrite", status=1)
            self.assertEqual(medium.read_bytes(), b"old")
        os.chmod(self.root / "LABEL.TXT", 0o644)
        self.write_set("--zip", medium, "--overwrite")
        self.assertEqual(self.unpacked(medium), made)

    def test_options_that_do_not_go_together_are_wrong_usage(self):
        for arguments in (["--iso", "x", "--zip", "y"], ["--iso", "x", "--to", "y"],
                          ["--zip", "x", "--recorder", "y"], ["--zip", "x", "--volume", "y"],
                          ["--iso", "x", "--compress"], ["--iso", "x", "--password-file", "y"],
                          ["--iso", "x", "--simulate"], ["--overwrite"]):
            with self.subTest(arguments=arguments):
                for command in ("write", "publish"):
                    run = self.run_program(command, *arguments, *([] if command == "write" else ["s"]))
                    self.assertEqual(run.returncode, 2, run.stderr)

    def test_a_dry_run_writes_nothing(self):
        self.make_set()
        before = everything(self.dir)
        for kind in KINDS:
            result = self.write_set(f"--{kind}", self.media / "x", "--dry-run")
            self.assertEqual((result[kind], result["written"]), (str(self.media / "x"), False))
            self.assertEqual(everything(self.dir), before)


class Broken(FileTest):
    def test_without_room_nothing_is_left_and_the_set_is_whole(self):
        small = self.mounted("size=2m")
        self.large_object(8 << 20)
        self.create_set(self.source)
        with open(next(self.root.glob("DICOMOBJ/*")), "r+b") as file:
            file.seek(-(4 << 20), os.SEEK_END)
            file.write(os.urandom(4 << 20))
        before = contents(self.root)
        # How much is saved by compressing is found out by doing it.
        for arguments, reason in ((["--iso"], "make room there, or copy fewer studies."),
                                  (["--zip"], "make room there, or copy fewer studies."),
                                  (["--compress", "--zip"], "No space left on device.")):
            with self.subTest(arguments=arguments):
                result = self.write_set(*arguments, small / "medium", status=1)
                self.assertIn(reason, result["error"])
                self.assertEqual(os.listdir(small), [])
                self.assertEqual(contents(self.root), before)

    def test_a_set_that_cannot_be_read_leaves_nothing_and_stays(self):
        self.make_set()
        (self.root / "LOOP").symlink_to("NOWHERE")
        before = everything(self.root)
        for kind in KINDS:
            with self.subTest(kind=kind):
                medium = self.media / f"medium.{kind}"
                result = self.write_set(f"--{kind}", medium, status=1)
                self.assertIn("LOOP", result["error"])
                self.assert_no_trace(medium)
                self.assertEqual(everything(self.root), before)

    def in_the_middle(self):
        return any(path.stat().st_size > 1 << 20 for path in self.media.glob(".quillon-*.part"))

    def test_a_signal_leaves_no_file_and_the_set_whole(self):
        self.large_object(LARGE)
        self.create_set(self.source)
        before = contents(self.root)
        for kind in KINDS:
            with self.subTest(kind=kind):
                medium = self.media / f"medium.{kind}"
                text = self.interrupt(signal.SIGTERM, self.in_the_middle, "write", "--root",
                                      self.root, f"--{kind}", medium, "--quiet")
                self.assertIn(f"The file {medium} was not written; the file set stays in "
                              f"{self.root}.", text)
                self.assert_no_trace(medium)
                self.assertEqual(contents(self.root), before)

    def test_after_a_kill_the_next_job_clears_what_was_left(self):
        self.large_object(LARGE)
        self.create_set(self.source)
        before = contents(self.root)
        for kind in KINDS:
            with self.subTest(kind=kind):
                medium = self.media / f"medium.{kind}"
                self.interrupt(signal.SIGKILL, self.in_the_middle, "write", "--root", self.root,
                               f"--{kind}", medium, "--quiet")
                self.assertFalse(medium.exists())
                self.assertEqual(contents(self.root), before)
                self.assertEqual(len(list(self.media.glob(".*"))), 1)
                self.write_set(f"--{kind}", medium, "--keep")
                self.assertEqual(self.unpacked(medium), before)
                self.assertEqual(list(self.media.glob(".*")), [])

    def test_a_file_that_another_job_writes_is_left_to_it(self):
        self.large_object(LARGE)
        self.create_set(self.source)
        medium = self.media / "medium.iso"
        with subprocess.Popen([program.QUILLON, "write", "--root", self.root, "--iso", medium,
                               "--quiet", "--keep"], env=self.environment(),
                              stdout=subprocess.DEVNULL) as first:
            deadline = time.monotonic() + 60
            while not self.in_the_middle() and time.monotonic() < deadline:
                time.sleep(0.001)
            os.kill(first.pid, signal.SIGSTOP)
            try:
                other = self.dir / "other"
                self.create("--root", other, self.write("small", dicom_file()))
                run = self.run_program("write", "--root", other, "--iso", medium)
                self.assertIn("is being written by another job.", run.stderr.decode())
                self.assertTrue(other.exists())
            finally:
                os.kill(first.pid, signal.SIGCONT)
            self.assertEqual(first.wait(60), 0)
        self.assertEqual(self.unpacked(medium), contents(self.root))

    def test_a_reader_that_goes_away_fails_the_job(self):
        self.large_object(LARGE)
        self.create_set(self.source)
        before = contents(self.root)
        for kind in KINDS:
            with self.subTest(kind=kind):
                with subprocess.Popen([program.QUILLON, "write", "--root", self.root, f"--{kind}",
                                       "-"], env=self.environment(), stdout=subprocess.PIPE,
                                      stderr=subprocess.PIPE) as run:
                    run.stdout.read(1)
                    run.stdout.close()
                    said = run.stderr.read().decode()
                    self.assertEqual(run.wait(60), 1, said)
                self.assertIn("Standard output cannot be written: Broken pipe.", said)
                self.assertEqual(contents(self.root), before)


if __name__ == "__main__":
    program.QUILLON, program.SAMPLES = map(os.path.abspath, sys.argv[1:3])
    unittest.main(argv=[sys.argv[0], "-v", *sys.argv[3:]])
