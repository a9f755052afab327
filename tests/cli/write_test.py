"""quillon write, publish and wipe as a user meets them: what reaches the target, what stays, what is
refused."""
import json
import os
import shutil
import signal
import subprocess
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent))
import program  # noqa: E402
from program import contents, dicom_file, everything  # noqa: E402


class WriteTest(program.ProgramTest):
    def setUp(self):
        super().setUp()
        self.target = self.dir / "media/usb"
        self.configure()

    def make_set(self):
        self.sample_tree()
        self.create_set(self.source)
        return contents(self.root)

    def write_set(self, *arguments, **how):
        return self.command("write", "--root", self.root, *arguments, **how)


class Writing(WriteTest):
    def test_a_set_is_copied_and_then_wiped_unless_it_is_kept(self):
        made = self.make_set()
        for keeps in (True, False):
            with self.subTest(keeps=keeps):
                result = self.write_set("--to", self.target, *(["--keep"] if keeps else []))
                self.assertEqual(result.pop("sums"), made)
                self.assertEqual(result, {
                    "root": str(self.root), "to": str(self.target), "recorder": None,
                    "image": None, "volume": "Quillon",
                    "simulated": False, "written": True, "verified": True, "kept": keeps, "error": None})
                self.assertEqual(contents(self.target), made)
                self.assertEqual(contents(self.root), made if keeps else {})
                self.assertEqual(self.root.exists(), keeps)
                shutil.rmtree(self.target)

    def test_the_text_result_names_the_target(self):
        self.make_set()
        run = self.run_program("write", "--root", self.root, "--to", self.target, "--keep")
        self.assertEqual((run.returncode, run.stderr), (0, b""))
        self.assertEqual(run.stdout.decode(), f"Written:   {self.target}\nVerified:  14 files, read back\n"
                                              f"Kept:      {self.root}\n")

    def test_a_target_that_holds_something_is_replaced_only_when_asked(self):
        made = self.make_set()
        old = {"DICOMOBJ/QLN99999": b"of another patient", "LABEL.TXT": b"old label",
               "holiday/beach.jpg": b"no business of ours"}
        for name, data in old.items():
            (self.target / name).parent.mkdir(parents=True, exist_ok=True)
            (self.target / name).write_bytes(data)
        before = contents(self.target)
        result = self.write_set("--to", self.target, status=1)
        self.assertEqual(result["error"], f"The directory {self.target} is not empty; --overwrite "
                         "replaces what has the name of something in the file set.")
        self.assertEqual((contents(self.target), contents(self.root)), (before, made))
        self.write_set("--to", self.target, "--overwrite")
        made["holiday/beach.jpg"] = before["holiday/beach.jpg"]
        self.assertEqual(contents(self.target), made)

    def test_what_would_lose_something_is_refused_with_everything_in_its_place(self):
        made = self.make_set()
        link = self.dir / "link"
        link.symlink_to(self.root / "DICOMOBJ")
        home = {"HOME": str(self.root)}
        cases = [
            (["--to", self.root], {}, "lies in the root directory"),
            (["--to", self.root / "deeper/down"], {}, "lies in the root directory"),
            (["--to", link], {}, "lies in the root directory"),
            (["--to", self.dir, "--overwrite"], {}, "lies in the directory"),
            (["--to", self.root / "DICOMDIR"], {}, "lies in the root directory"),
            (["--to", self.target], {"cwd": self.root}, "it holds the current directory"),
            (["--to", self.target], {"environment": home}, "it holds the home directory"),
        ]
        for arguments, how, reason in cases:
            with self.subTest(arguments=arguments):
                self.extra_environment = how.pop("environment", {})
                result = self.write_set(*arguments, status=1, **how)
                self.assertIn(reason, result["error"])
                self.assertTrue(result["kept"])
                self.assertEqual(contents(self.root), made)
                self.assertFalse(self.target.exists())
        self.extra_environment = home
        self.write_set("--to", self.target, "--keep")
        self.assertEqual(contents(self.target), made)

    def environment(self):
        return {**super().environment(), **getattr(self, "extra_environment", {})}

    def test_a_directory_without_a_file_set_is_neither_written_nor_wiped(self):
        self.write("letters/a", b"dear")
        for root in (self.source, self.dir / "none"):
            with self.subTest(root=root):
                result = self.command("write", "--root", root, "--to", self.target, status=1)
                self.assertEqual(result["error"],
                                 f"There is no file set in {root}: it holds no DICOMDIR.")
        self.assertEqual(list(contents(self.source)), ["letters/a"])
        self.assertFalse(self.target.exists())

    def test_a_failed_write_keeps_the_set_and_can_be_repeated(self):
        self.configure(current_practice=0)
        made = self.make_set()
        empty = self.root / "QUILLON"
        empty.mkdir()
        (empty / "nothing").write_bytes(b"")
        run = self.run_program("write", "--root", self.root, "--to", self.target)
        self.assertEqual(run.returncode, 1)
        self.assertEqual(run.stderr.decode().replace("\\", "/"), (
            f"quillon: The path {empty}/nothing does not refer to a valid file.\n"
            f"quillon: The file set stays in {self.root}; quillon write --root {self.root} can be "
            "repeated, with --overwrite once the target holds part of it.\n"))
        (empty / "nothing").unlink()
        self.assertEqual(contents(self.root), made)
        self.write_set("--to", self.target, "--overwrite")
        self.assertEqual(contents(self.target), made)

    def test_without_disc_mastering_the_set_stays(self):
        made = self.make_set()
        result = self.write_set(status=1)
        self.assertTrue(result["kept"])
        self.assertEqual(contents(self.root), made)

    def test_a_wrong_command_line_writes_nothing(self):
        made = self.make_set()
        for arguments in (["--overwrite"], ["--to", self.target, "--simulate"],
                          ["--to", self.target, "--volume", "X"], ["stray"]):
            with self.subTest(arguments=arguments):
                run = self.run_program("write", "--root", self.root, *arguments)
                self.assertEqual(run.returncode, 2)
        result = self.write_set("--volume", "X" * 33, status=1)
        self.assertEqual(result["error"], f"The volume name {'X' * 33} has more than 32 characters.")
        self.assertEqual(contents(self.root), made)


class Publishing(WriteTest):
    def publish(self, *arguments, **how):
        return self.command("publish", "--root", self.root, "--to", self.target, *arguments,
                            self.source, **how)

    def test_the_sources_stay_and_the_set_does_not(self):
        before = self.sample_tree()
        result = self.publish()
        self.assertEqual([result[k] for k in ("objects", "to", "written", "kept")],
                         [len(before), str(self.target), True, False])
        self.assertFalse(self.root.exists())
        self.assertEqual(contents(self.source), before)
        made = contents(self.target)
        self.assertEqual(sorted(d for n, d in made.items() if "QLN" in n), sorted(before.values()))
        self.assertIn("DICOMDIR", made)
        for path in [*self.source.rglob("*"), *self.target.rglob("*")]:
            if path.is_file():
                self.assertEqual(path.stat().st_nlink, 1, path)

    def test_moved_sources_are_only_at_the_target(self):
        before = self.sample_tree()
        self.publish("--move")
        self.assertEqual(contents(self.source), {})
        self.assert_nothing_lost(before, self.target)

    def test_a_kept_set_shares_nothing_with_the_sources(self):
        before = self.sample_tree()
        result = self.publish("--keep")
        self.assertTrue(result["kept"])
        self.assertEqual(result["objects"], len(before))
        self.assert_nothing_lost(before, self.root)
        self.assertEqual(contents(self.source), before)
        for path in self.root.rglob("*"):
            if path.is_file():
                self.assertEqual(path.stat().st_nlink, 1, path)

    def test_what_cannot_be_written_is_refused_before_the_set_is_made(self):
        self.write("1", dicom_file())
        before = contents(self.source)
        self.target.mkdir(parents=True)
        (self.target / "x").write_bytes(b"x")
        cases = [([], "is not empty"), (["--overwrite", "--to", self.source], "holds the source"),
                 (["--to", self.root / "in"], "lies in the root directory")]
        for arguments, reason in cases:
            with self.subTest(arguments=arguments):
                if "--to" not in arguments:
                    arguments = [*arguments, "--to", self.target]
                result = self.command("publish", "--root", self.root, "--move", *arguments,
                                      self.source, status=1)
                self.assertIn(reason, result["error"])
                self.assertEqual(contents(self.source), before)
                self.assertFalse(self.root.exists())

    def test_without_a_recorder_no_source_is_even_looked_at(self):
        result = self.command("publish", "--move", self.dir / "no such source", status=1)
        self.assertEqual(result["error"], "There is no drive that writes discs; a virtual recorder "
                         "is there when QUILLON_RECORDERS names a directory for it. None is needed "
                         "with --to DIRECTORY, --iso FILE or --zip FILE.")
        self.assertEqual(os.listdir(self.dir / "tmp"), [])

    def test_a_target_that_cannot_be_filled_is_refused_before_a_file_is_read(self):
        drop = self.require_program_for_nobody()
        (self.dir / "file").write_bytes(b"x")
        os.chmod(self.dir, 0o555)
        cases = [
            (self.dir / "file/below", "cannot be made: " + str(self.dir / "file")
             + " is not a directory."),
            (self.dir / "new/below",
             f"cannot be made: this user may not write to {self.dir}."),
            (self.dir / "media", "cannot be made: this user may not write to"),
            (self.dir / ("l" * 130) / ("l" * 130), "is longer than 260 characters."),
        ]
        for target, reason in cases:
            with self.subTest(target=target):
                result = self.command("publish", "--to", target, self.dir / "no such source",
                                      status=1, preexec_fn=drop)
                self.assertIn(reason, result["error"])

    def test_a_target_without_room_is_refused_before_a_file_is_copied(self):
        small = self.mounted("size=2m")
        self.large_object(3 << 20)
        before = contents(self.source)
        arguments = ["--move", "--to", small / "in/it", self.source]
        result = self.command("publish", "--root", self.root, *arguments, status=1)
        self.assertEqual(result["error"], f"The file set needs 4 MB and the file system of "
                         f"{small}/in/it has 2 MB free: make room there, or copy fewer studies.")
        self.assertEqual((contents(self.source), os.listdir(small)), (before, []))
        self.assertFalse(self.root.exists())
        subprocess.run(["mount", "-o", "remount,size=8m", small], check=True)
        self.command("publish", "--root", self.root, *arguments)
        self.assert_nothing_lost(before, small / "in/it")

    def test_an_interrupted_copy_tells_how_much_of_it_is_there(self):
        self.large_object(1 << 30)
        self.write("small", dicom_file(instance="2.25.1.1.1.2"))
        self.create_set(self.source)
        for number in (signal.SIGINT, signal.SIGTERM):
            with self.subTest(number):
                def is_copying():
                    return any(p.stat().st_size > 10 << 20 for p in self.target.rglob("QLN*"))
                said = self.interrupt(number, is_copying, "write", "--root", self.root, "--to",
                                      self.target)
                self.assertRegex(said, f"^\nquillon: The copy in {self.target} is not complete: [01] "
                                 "of 4 files are there, and no DICOMDIR; the file set stays in "
                                 f"{self.root}.\n$")
                self.assertFalse((self.target / "DICOMDIR").exists())
                shutil.rmtree(self.target)
        self.write_set("--to", self.target)

    def test_a_failed_creation_writes_nothing(self):
        self.write("notes", b"x")
        result = self.publish(status=1)
        self.assertEqual(result["error"], "There is no DICOM file to add to the file set.")
        self.assertFalse(self.target.exists())


class DryRuns(WriteTest):
    def test_a_dry_run_tells_what_a_job_would_and_changes_nothing(self):
        self.sample_tree()
        self.write("no object", b"x")
        self.write("with\\backslash", dicom_file(instance="2.25.9"))
        (self.dir / "viewer").mkdir()
        (self.dir / "viewer/run.exe").write_bytes(bytes(5000))
        self.configure(other_content=self.dir / "viewer")
        commands = [
            ("create", ["--root", self.dir / "new/root", self.source]),
            ("create", ["--root", self.root, "--hierarchy", "--replace", self.source]),
            ("publish", ["--to", self.target, self.source]),
            ("publish", ["--root", self.root, "--to", self.target, self.source]),
            ("publish", ["--move", "--to", self.target, self.source / "DOE"]),
            ("write", ["--root", self.root, "--to", self.target]),
        ]
        for name, arguments in commands:
            with self.subTest(name=name, arguments=arguments):
                if name == "write":
                    self.create_set(self.source)
                # What killed jobs left stays, too.
                (self.dir / ".quillon-1-abandoned").mkdir(exist_ok=True)
                (self.dir / "tmp/quillon-publish-1-abandoned").mkdir(exist_ok=True)
                before = everything(self.dir)
                before.pop(str(self.dir / "tmp"))  # a name there comes and goes
                run = self.run_program(name, "--json", "--dry-run", *arguments)
                after = everything(self.dir)
                after.pop(str(self.dir / "tmp"))
                self.assertEqual(after, before)
                self.assertEqual(run.returncode, 0, run.stderr)
                told = json.loads(run.stdout.decode())
                self.assertTrue(told["dry_run"])
                shutil.rmtree(self.dir / ".quillon-1-abandoned")
                shutil.rmtree(self.dir / "tmp/quillon-publish-1-abandoned")
                if name == "write":
                    made = contents(self.root)
                    self.assertEqual((told["files"], told["kept"]), (len(made), True))
                    self.assertEqual(told["bytes"], sum(p.stat().st_size for p in
                                                        self.root.rglob("*") if p.is_file()))
                    self.assertIn("Fileset Content:", told["label"])
                    continue
                arguments = [a for a in arguments if a not in ("--to", self.target, "--move")]
                if "--root" not in arguments:
                    self.assertIsNone(told["root"])
                    arguments = ["--root", self.root, *arguments]
                really = self.create(*arguments)
                for member in ("patients", "studies", "series", "objects", "bytes", "label",
                               "passed_over"):
                    self.assertEqual(told[member], really[member], member)
                self.assertIn("cd-r", told["fits"])
                shutil.rmtree(self.root, ignore_errors=True)
                shutil.rmtree(self.dir / "new", ignore_errors=True)

    def test_it_is_refused_what_the_job_is_refused(self):
        self.write("1", dicom_file())
        self.root.mkdir()
        (self.root / "x").write_bytes(b"x")
        file = self.dir / "file"
        file.write_bytes(b"x")
        cases = [
            ("create", ["--root", self.root, self.source], "is not empty; --replace wipes it"),
            ("create", ["--root", file, self.source], "is not a directory."),
            ("create", ["--root", file / "below", self.source], "cannot be made: "),
            ("create", ["--root", self.dir / "new", file], "it is not a DICOM file"),
            ("publish", ["--to", self.root, self.source], "is not empty; --overwrite replaces"),
            ("publish", [self.source], "There is no drive that writes discs"),
            ("write", ["--root", self.source, "--to", self.target], "it holds no DICOMDIR"),
        ]
        for name, arguments, reason in cases:
            with self.subTest(name=name, arguments=arguments):
                result = self.command(name, "--dry-run", *arguments, status=1)
                self.assertIn(reason, result["error"])

    def test_the_kinds_of_disc_are_those_that_hold_the_set(self):
        self.write("1", dicom_file())
        large = self.large_object(800 << 20)
        told = self.create_set("--dry-run", self.source)
        self.assertNotIn("cd-r", told["fits"])
        self.assertEqual({"dvd-r", "dvd+rw", "bd-r"} - set(told["fits"]), set())
        run = self.run_program("create", "--dry-run", "--root", self.root, self.source)
        self.assertIn("\nFits:      DVD-RAM (4369 MB); DVD+R, DVD+RW (4483 MB); ",
                      run.stdout.decode())
        large.unlink()
        self.assertIn("cd-r", self.create_set("--dry-run", self.source)["fits"])


class Wiping(WriteTest):
    def wipe(self, *arguments, **how):
        return self.command("wipe", "--root", self.root, *arguments, **how)

    def test_it_says_what_it_removed(self):
        self.make_set()
        (self.dir / "tmp/QUILLON").mkdir()
        (self.dir / ".quillon-1-killed").mkdir()
        said = [self.run_program("wipe", "--root", self.root).stdout.decode() for _ in range(2)]
        self.assertEqual(said, [
            f"Removed:   {self.dir}/.quillon-1-killed\nRemoved:   {self.root}\n"
            f"Removed:   {self.dir}/tmp/QUILLON\n", "There is nothing to remove.\n"])
        self.assertEqual(self.wipe(), {"root": str(self.root), "removed": [], "error": None})
        self.make_set()
        self.assertEqual(self.wipe()["removed"], [str(self.root)])
        self.assertFalse(self.root.exists() or (self.dir / "tmp/QUILLON").exists())
        self.assertTrue(self.source.exists())

    def test_what_is_no_file_set_goes_only_by_force(self):
        self.root.mkdir()
        (self.root / "letter").write_bytes(b"dear")
        result = self.wipe(status=1)
        self.assertEqual(result["error"], f"The directory {self.root} is not wiped: it holds no "
                         "DICOMDIR. With --force it is wiped all the same.")
        self.assertTrue((self.root / "letter").exists())
        result = self.wipe("--force", status=1, cwd=self.root)
        self.assertIn("it holds the current directory", result["error"])
        self.wipe("--force")
        self.assertFalse(self.root.exists())

    def test_what_cannot_be_removed_is_told(self):
        drop = self.require_program_for_nobody()
        self.make_set()
        os.chmod(self.dir, 0o555)
        run = self.run_program("wipe", "--root", self.root, preexec_fn=drop)
        os.chmod(self.dir, 0o755)
        self.assertEqual(run.returncode, 1)
        self.assertEqual(run.stderr.decode(),
                         f"quillon: The root directory {self.root} cannot be wiped.\n")


if __name__ == "__main__":
    program.QUILLON, program.SAMPLES = map(os.path.abspath, sys.argv[1:3])
    unittest.main(argv=[sys.argv[0], "-v", *sys.argv[3:]])
