"""quillon publish and write with a virtual recorder: what independent readers find on the disc, and
what stays when a disc cannot be written."""
import fcntl
import json
import os
import re
import shutil
import signal
import subprocess
import sys
import unittest
import warnings
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent))
import program  # noqa: E402
from program import contents, dicom_file  # noqa: E402

PYDICOM_DATA = Path("/usr/lib/python3/dist-packages/pydicom/data")
LEGACY_SERVICE = ('Windows Registry Editor Version 5.00\n\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Tarn '
                  'Imaging\\Quillon\\DiscMastering]\n"Service"="legacy"\n')
SECTORS = {"cd-r": 359849, "cd-rw": 359849, "dvd+r": 2295104, "dvd+rw": 2295104,
           "bd-r": 11826176}


class DiscTest(program.ProgramTest):
    more_environment = {}

    def setUp(self):
        super().setUp()
        self.recorder = self.dir / "recorders/drive"
        self.recorder.mkdir(parents=True)
        (self.recorder / "recorder.txt").write_text(
            "vendor = Quillon\nproduct = Virtual Recorder\nrevision = 1.0\n"
            "media = cd-r cd-rw dvd+r dvd+rw bd-r\n")

    def environment(self):
        return {**super().environment(), "QUILLON_RECORDERS": str(self.recorder.parent),
                **self.more_environment}

    def insert(self, media, state="blank", capacity=None):
        (self.recorder / "disc.iso").unlink(missing_ok=True)
        (self.recorder / "disc.txt").write_text(
            f"media = {media}\nstate = {state}\ncapacity = {capacity or SECTORS[media]}\n"
            "used = 0\nprotected = no\n")

    def faults(self, *rules):
        (self.recorder / "faults.txt").write_text("".join(rule + "\n" for rule in rules))

    def disc(self):
        """What is said of the disc in the recorder; empty for an empty one."""
        record = self.recorder / "disc.txt"
        if not record.exists():
            return {}
        lines = [line for line in record.read_text().splitlines() if "=" in line]
        return {name.strip(): value.strip() for name, value in (line.split("=") for line in lines)}

    def command(self, name, *arguments, status=0, **how):
        if name != "create":
            arguments = ["--root", self.root, *arguments]
        result = super().command(name, *arguments, status=status, **how)
        self.assertEqual(result.get("written", status == 0), status == 0)
        return result

    def extract(self, image):
        out = self.dir / "extracted"
        if out.exists():
            self.make_writable(out)
            shutil.rmtree(out)
        subprocess.run(["xorriso", "-osirrox", "on", "-indev", image, "-extract", "/", out],
                       check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.make_writable(out)
        return out

    @staticmethod
    def make_writable(directory):
        for path in [directory, *directory.rglob("*")]:
            os.chmod(path, 0o755)

    @staticmethod
    def volume_name(image):
        run = subprocess.run(["xorriso", "-indev", image, "-pvd_info"], check=True,
                             stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        return next(line.split(b":")[1].strip().decode() for line in run.stdout.splitlines()
                    if line.startswith(b"Volume Id"))


class Discs(DiscTest):
    @unittest.skipUnless(PYDICOM_DATA.is_dir(), "the sample files of pydicom are not installed")
    def test_other_readers_find_the_file_set_on_every_kind_of_disc(self):
        warnings.simplefilter("ignore")
        from pydicom.fileset import FileSet
        for number, media in enumerate(("cd-r", "dvd+rw", "bd-r")):
            with self.subTest(media):
                self.insert(media)
                volume = f"STUDY_{number}"
                made = self.command("publish", "--keep", "--replace", "--keep-going", "--volume",
                                    volume, PYDICOM_DATA)
                image = self.recorder / f"ejected/{volume}.iso"
                self.assertEqual(self.disc(), {}, "the disc was ejected")
                self.assertEqual(self.volume_name(image), volume)
                out = self.extract(image)
                self.assertEqual(contents(out), contents(self.root))
                found = FileSet(out / "DICOMDIR")
                self.assertEqual(len(found), made["objects"])
                self.assertGreater(made["objects"], 100)
                for instance in found:
                    self.assertEqual(instance.load().SOPInstanceUID, instance.SOPInstanceUID)

    def test_a_published_set_is_on_the_disc_and_the_sources_stay(self):
        before = self.sample_tree()
        self.insert("cd-r")
        result = self.command("publish", "--no-eject", self.source)
        self.assertFalse(result["kept"] or self.root.exists())
        self.assertEqual(contents(self.source), before)
        self.assertEqual(self.volume_name(self.recorder / "disc.iso"), "QUILLON")
        self.assert_nothing_lost(before, self.extract(self.recorder / "disc.iso"))

    def test_a_rewritable_disc_is_erased_and_a_full_one_refused(self):
        before = self.sample_tree()
        self.insert("cd-rw")
        self.command("publish", "--no-eject", "--volume", "FIRST", self.source)
        for arguments in ([], ["--full-erase"]):
            self.command("publish", "--no-eject", "--volume", "SECOND", *arguments, self.source)
            self.assertEqual(self.volume_name(self.recorder / "disc.iso"), "SECOND")
            self.assert_nothing_lost(before, self.extract(self.recorder / "disc.iso"))

    def test_the_sums_reach_the_disc_however_the_root_is_spelled(self):
        file = self.write("object", dicom_file())
        (self.dir / "link").symlink_to(self.dir / "tmp")
        for temporary in ("tmp/./", "tmp/../tmp", "link"):
            with self.subTest(temporary):
                self.insert("cd-r")
                self.more_environment = {"TMPDIR": f"{self.dir}/{temporary}"}
                for command in (["create", file], ["write", "--no-eject"]):
                    run = self.run_program(*command)
                    self.assertEqual(run.returncode, 0, run.stderr)
                self.assertTrue((self.extract(self.recorder / "disc.iso") / program.SUMS).is_file())

    def test_a_disc_that_is_too_small_is_told_by_how_much(self):
        before = self.sample_tree()
        self.large_object(10 << 20)
        advice = "put in a larger disc, such as a {}, or fewer studies on it."
        for media, larger in (("cd-r", "CD-R"), ("dvd+rw", "CD-R")):
            with self.subTest(media):
                self.insert(media, capacity=2000)
                result = self.command("publish", "--move", self.source, status=1)
                self.assertEqual(result["error"], f"The file set needs 11 MB and the "
                                 f"{media.upper()} in drive has 3 MB: " + advice.format(larger))
                self.assertFalse(self.root.exists())
                self.assert_nothing_lost(before, self.source)
        run = self.run_program("publish", self.source)
        self.assertTrue(run.stderr.endswith(b"\nquillon: With --span it goes onto several discs.\n"))
        self.create_set(self.source)
        result = self.command("write", status=1)
        self.assertIn("The file set needs 11 MB", result["error"])
        self.assertTrue(result["kept"])
        # What is near the limit is for the writing to tell.
        self.insert("cd-r")
        self.command("write", "--keep", "--no-eject")
        sectors = (self.recorder / "disc.iso").stat().st_size // 2048
        self.insert("cd-r", capacity=sectors - 1)
        result = self.command("write", status=1)
        self.assertIn("a result image having a size larger than the current configured limit.",
                      result["error"])
        self.assertEqual(self.disc()["state"], "blank")

    def test_what_the_disc_refuses_is_told_before_a_file_is_read(self):
        (self.dir / "old.iso").write_bytes(bytes(300 * 2048))
        lock = self.recorder / "lock"

        def insert(*arguments):
            run = self.run_program("disc", "insert", "--recorder", "drive", *arguments)
            self.assertEqual(run.returncode, 0, run.stderr)

        def use():
            user = open(lock, "w")
            self.addCleanup(user.close)
            fcntl.flock(user, fcntl.LOCK_EX)
            user.write("Other Program")
            user.flush()

        def insert_foreign():
            insert("--media", "dvd-rw", "--image", self.dir / "old.iso")

        old = ["--image", self.dir / "old.iso"]
        cases = [
            (lambda: None, "There is no disc in drive: put a blank disc in."),
            (lambda: insert("--media", "cd-r", *old),
             "The CD-R in drive holds data already: put a blank disc in."),
            (lambda: insert("--media", "bd-r", "--protect"),
             "The BD-R in drive is write-protected: put another one in."),
            (lambda: insert("--media", "cd-rw", "--protect", *old),
             "The CD-RW in drive is write-protected: put another one in."),
            (lambda: insert(*old), "The CD-ROM in drive is of a kind that is not written there: put "
             "in a blank one of CD-R, CD-RW, DVD+R, DVD+RW, BD-R."),
            (insert_foreign, "The DVD-RW in drive is of a kind that is not written there: put in a "
             "blank one of CD-R, CD-RW, DVD+R, DVD+RW, BD-R."),
            (lambda: self.insert("cd-r", "writing"), "The CD-R in drive is damaged: put a blank disc "
             "in."),
            (use, "The recorder drive is in use by Other Program: wait until that has ended."),
        ]
        for prepare, sentence in cases:
            with self.subTest(sentence):
                self.run_program("disc", "eject", "--recorder", "drive")
                prepare()
                result = self.command("publish", self.dir / "no such source", status=1)
                self.assertEqual(result["error"], sentence)
                self.assertFalse(self.root.exists())

    def test_a_refused_command_can_be_repeated_as_it_was(self):
        for root in ([], ["--root", self.root]):
            with self.subTest(root=root):
                before = self.sample_tree()
                command = ["publish", *root, "--move", "--volume", "LATER", self.source]
                everything_before = program.everything(self.dir)
                run = self.run_program(*command)
                self.assertEqual(run.stderr.decode(),
                                 "quillon: There is no disc in drive: put a blank disc in.\n")
                self.assertEqual(run.returncode, 1)
                self.assertEqual(set(program.everything(self.dir)) ^ set(everything_before),
                                 set() if root else {str(self.recorder / "lock")})
                self.assertEqual(contents(self.source), before)
                self.insert("cd-r")
                self.assertEqual(self.run_program(*command).returncode, 0)
                self.assertEqual(contents(self.source), {})
                image = self.recorder / "ejected/LATER.iso"
                self.assert_nothing_lost(before, self.extract(image))
                shutil.rmtree(self.source)
                shutil.rmtree(image.parent)

    def test_a_disc_that_is_getting_ready_is_waited_for(self):
        self.sample_tree()
        self.insert("cd-r")
        self.faults("ready-after 2")
        self.command("publish", self.source)

    def test_where_the_set_was_written_is_told(self):
        self.sample_tree()
        other = self.recorder.parent / "other"
        shutil.copytree(self.recorder, other)
        # In the order of their names the first.
        reads = self.recorder.parent / "a"
        shutil.copytree(self.recorder, reads)
        (reads / "recorder.txt").write_text("vendor = Q\nproduct = R\nrevision = 1\nmedia =\n")
        ejected, still_in = "ejected/{}.iso", "disc.iso"
        cases = [([], self.recorder, ejected), (["--no-eject"], self.recorder, still_in),
                 (["--recorder", "other"], other, ejected),
                 (["--recorder", "other", "--no-eject"], other, still_in)]
        for number, (arguments, recorder, image) in enumerate(cases):
            with self.subTest(arguments=arguments):
                for text in (True, False):
                    self.run_program("disc", "eject", "--recorder", recorder.name)
                    self.run_program("disc", "insert", "--recorder", recorder.name)
                    volume = f"V{number}{text}".upper()
                    place = recorder / image.format(volume)
                    command = ["publish", "--volume", volume, *arguments, self.source]
                    if text:
                        run = self.run_program(*command)
                        self.assertTrue(run.stdout.decode().endswith(
                            f"\nWritten:   disc {volume} in {recorder.name}, an image: {place}\n"
                            "Verified:  14 files, read back\n"))
                    else:
                        result = self.command(*command)
                        self.assertEqual((result["recorder"], result["image"]),
                                         (recorder.name, str(place)))
                    self.assertEqual(self.volume_name(place), volume)

    def test_a_disc_is_verified_and_read_back_with_the_faults_of_its_recorder(self):
        self.sample_tree()
        self.large_object(4 << 20)
        self.create_set(self.source)
        made = contents(self.root)

        def judged(command):
            run = self.run_program(command, "--disc", "--recorder", "drive", "--json")
            return run.returncode, json.loads(run.stdout)

        def written(fault):
            self.insert("cd-r")
            self.faults(fault)
            return self.run_program("write", "--root", self.root, "--keep", "--no-eject")

        for service in ("", LEGACY_SERVICE):
            self.registry.write_text(service or "Windows Registry Editor Version 5.00\n")
            self.assertEqual(written("").returncode, 0)
            status, report = judged("verify")
            self.assertEqual((status, report["whole"], report["recorder"]), (0, True, "drive"), report)
            self.assertEqual(report["sums"], len(made))
            self.assertEqual(judged("list")[1]["objects"], report["files"])
            for fault, told in (("read-changes-at 1000", "has other bytes"),
                                ("read-fails-at 1000", "cannot be read")):
                with self.subTest(fault, legacy=bool(service)):
                    self.faults(fault)
                    status, report = judged("verify")
                    self.assertEqual((status, report["errors"]), (1, 1), report)
                    victim = report["findings"][0]["file"]
                    run = written(fault)
                    self.assertEqual(run.returncode, 1)
                    said = run.stderr.decode()
                    self.assertIn(f"The disc in drive is not what was written: 1 of {len(made) + 1} files "
                                  "is not the same.\n", said)
                    self.assertIn(f"quillon: {victim} {told}.\n", said)
                    self.assertEqual(contents(self.root), made)
                    self.assertEqual(judged("verify")[1]["errors"], 1)
                    self.faults()

    def test_several_discs_are_asked_for_and_written_alike(self):
        self.sample_tree()
        self.run_program("disc", "insert")
        command = [program.QUILLON, "publish", "--copies", "3", "--volume", "COPY", self.source]
        with subprocess.Popen(command, env=self.environment(), stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE, cwd=self.dir / "work") as run:
            for number in (2, 3):
                asked = run.stderr.readline().decode()
                self.assertEqual(asked, f"quillon: Put disc {number} of 3 into {self.recorder.name}.\n")
                inserted = self.run_program("disc", "insert")
                self.assertEqual(inserted.returncode, 0, inserted.stderr)
            output = run.stdout.read().decode()
            self.assertEqual((run.wait(120), run.stderr.read()), (0, b""))
        self.assertIn("\nVerified:  14 files, read back\nDiscs:     3\n", output)
        images = sorted((self.recorder / "ejected").glob("*.iso"))
        self.assertEqual(len(images), 3)
        listed = [self.run_program("list", "--json", image).stdout.split(b"patients")[1]
                  for image in images]
        self.assertEqual(listed, [listed[0]] * 3)

    def test_a_disc_that_nobody_puts_in_ends_the_job_and_keeps_the_set(self):
        self.sample_tree()
        self.create_set(self.source)
        self.run_program("disc", "insert")
        result = self.command("write", "--copies", "2", "--wait", "1", status=1)
        self.assertEqual((result["discs"], result["kept"]), (1, True))
        self.assertEqual(result["error"], f"Nobody put disc 2 of 2 into {self.recorder.name} within "
                                          "1 seconds.")
        self.assertTrue((self.root / "DICOMDIR").exists())

    def test_an_interrupted_burn_tells_what_the_disc_is_now(self):
        self.large_object(650 << 20)
        before = program.everything(self.source)
        for number in (signal.SIGINT, signal.SIGTERM):
            with self.subTest(number):
                self.insert("cd-r")

                def is_burning():
                    image = self.recorder / "disc.iso"
                    return (self.disc().get("state") == "writing"
                            and image.exists() and image.stat().st_size > 10 << 20)
                said = self.interrupt(number, is_burning, "publish", self.source)
                root = re.search("stays in (.*)\\.\n$", said)
                self.assertIsNotNone(root, said)
                self.assertIn("\nquillon: The disc in drive was only partly written", said)
                self.assertEqual(self.disc()["state"], "damaged")
                self.assertTrue((Path(root[1]) / "DICOMDIR").exists())
                self.assertEqual([*program.everything(self.source)], [*before])
                # Another job does not take it for what a killed one left.
                self.run_program("publish", self.source)
                self.assertTrue((Path(root[1]) / "DICOMDIR").exists())
                self.run_program("wipe", "--root", root[1])

    def test_an_interrupted_erase_tells_what_the_disc_is_now(self):
        image = self.dir / "old.iso"
        image.write_bytes(b"x")
        os.truncate(image, 600 << 20)
        self.run_program("disc", "insert", "--media", "cd-rw", "--image", image)
        said = self.interrupt(signal.SIGINT, lambda: self.disc().get("state") == "erasing",
                              "disc", "erase", "--full")
        self.assertIn("\nquillon: The disc in drive was only partly erased", said)
        self.assertEqual(self.disc()["state"], "damaged")

    def test_a_dry_run_asks_the_recorder_and_writes_nothing(self):
        self.sample_tree()
        result = json.loads(self.run_program("publish", "--dry-run", "--json",
                                             self.source).stdout.decode())
        self.assertEqual(result["error"], "There is no disc in drive: put a blank disc in.")
        self.insert("cd-rw")
        before = program.everything(self.recorder)
        result = json.loads(self.run_program("publish", "--dry-run", "--json",
                                             self.source).stdout.decode())
        self.assertEqual([result[m] for m in ("dry_run", "recorder", "written", "error", "root")],
                         [True, "drive", False, None, None])
        self.assertEqual(program.everything(self.recorder), before)
        self.assertEqual(os.listdir(self.dir / "tmp"), [])
        self.command("publish", "--no-eject", self.source)
        self.create_set(self.source)
        before = program.everything(self.dir)
        run = self.run_program("write", "--dry-run", "--root", self.root, "--volume", "NEW")
        self.assertIn("\nTarget:    disc NEW in drive, a virtual recorder\n", run.stdout.decode())
        self.assertEqual(run.stderr.decode(),
                         "quillon: The CD-RW in drive holds data, which would be erased.\n")
        self.assertEqual(program.everything(self.dir), before)

    def test_a_drive_that_fails_leaves_the_set_whole_and_sharing_nothing(self):
        before = self.sample_tree()
        cases = [
            ("write-fails-at 100", "CDiscFormat2Data::Write failed for this reason:"),
            ("write-pulled-at 100", "CDiscFormat2Data::Write failed for this reason:"),
            ("answer EjectMedia 0xC0AA0207 always", "EjectMedia failed for this reason:"),
            ("answer AcquireExclusiveAccess 0x80070005 always", "AcquireExclusiveAccess failed"),
        ]
        for rule, reason in cases:
            with self.subTest(rule):
                self.insert("cd-r")
                self.faults(rule)
                # A disc that is read back is ejected by the program, after that.
                more = ["--no-verify"] if "EjectMedia" in rule else []
                result = self.command("publish", "--replace", *more, self.source, status=1)
                self.assertIn(reason, result["error"])
                self.assertEqual(contents(self.source), before)
                self.assert_nothing_lost(before, self.root)
                for path in [p for p in self.root.rglob("*") if p.is_file()]:
                    self.assertEqual(path.stat().st_nlink, 1, path)
                self.faults()
                self.insert("cd-r")
                self.command("write", "--volume", "AGAIN")
                self.assert_nothing_lost(before,
                                         self.extract(self.recorder / "ejected/AGAIN.iso"))
                shutil.rmtree(self.recorder / "ejected")

    def test_the_legacy_service_writes_and_erases_the_same_discs(self):
        before = self.sample_tree()
        self.registry.write_text(LEGACY_SERVICE)
        self.insert("cd-rw")
        image = self.recorder / "disc.iso"
        self.create_set(self.source)
        result = self.command("write", "--simulate", "--no-eject")
        self.assertEqual((result["simulated"], result["kept"]), (True, True))
        self.assertEqual(self.disc()["state"], "blank")
        for volume in ("FIRST", "SECOND"):
            with self.subTest(volume):
                made = contents(self.root)
                self.command("write", "--no-eject", "--keep", "--volume", volume)
                self.assertEqual(self.volume_name(image), volume)
                self.assertEqual(contents(self.extract(image)), made)
        self.assert_nothing_lost(before, self.root)

    def test_a_test_run_never_writes(self):
        before = self.sample_tree()
        self.insert("cd-r")
        self.create_set(self.source)
        result = self.command("write", "--simulate", status=1)
        self.assertEqual(result["error"], "The disc-mastering service cannot make a test run: it "
                         "would write the disc.")
        self.assertEqual(self.disc()["state"], "blank")
        self.assert_nothing_lost(before, self.root)


if __name__ == "__main__":
    program.QUILLON, program.SAMPLES = map(os.path.abspath, sys.argv[1:3])
    unittest.main(argv=[sys.argv[0], "-v", *sys.argv[3:]])
