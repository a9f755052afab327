"""quillon publish and write with a virtual recorder: what independent readers find on the disc, and
what stays when a disc cannot be written."""
import json
import os
import shutil
import subprocess
import sys
import unittest
import warnings
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent))
import program  # noqa: E402
from program import contents  # noqa: E402

PYDICOM_DATA = Path("/usr/lib/python3/dist-packages/pydicom/data")
LEGACY_SERVICE = ('Windows Registry Editor Version 5.00\n\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Tarn '
                  'Imaging\\Quillon\\DiscMastering]\n"Service"="legacy"\n')
DEVICE = "Quillon Virtual Recorder (Revision: 1.0)"
SECTORS = {"cd-r": 359849, "cd-rw": 359849, "dvd+rw": 2295104, "bd-r": 11826176}


class DiscTest(program.ProgramTest):
    def setUp(self):
        super().setUp()
        self.recorder = self.dir / "recorders/drive"
        self.recorder.mkdir(parents=True)
        (self.recorder / "recorder.txt").write_text(
            "vendor = Quillon\nproduct = Virtual Recorder\nrevision = 1.0\n"
            "media = cd-r cd-rw dvd+rw bd-r\n")

    def environment(self):
        return {**super().environment(), "QUILLON_RECORDERS": str(self.recorder.parent)}

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

    def command(self, name, *arguments, status=0):
        run = self.run_program(name, "--json", "--root", self.root, *arguments)
        self.assertEqual(run.returncode, status, (run.stdout, run.stderr))
        result = json.loads(run.stdout.decode())
        self.assertEqual((result["written"], result["error"] is None), (status == 0,) * 2)
        self.assertEqual(self.staging_leftovers(), [])
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

        too_small = [
            (5, "The disc image size exceeds the capacity of the current media in the "
                f"{DEVICE}."),
            (200, "a result image having a size larger than the current configured limit."),
        ]
        for capacity, reason in too_small:
            with self.subTest(capacity=capacity):
                self.insert("cd-r", capacity=capacity)
                result = self.command("publish", "--replace", self.source, status=1)
                self.assertIn(reason, result["error"])
                self.assertEqual((self.disc()["state"], result["kept"]), ("blank", True))

    def test_the_set_waits_for_a_disc(self):
        before = self.sample_tree()
        result = self.command("publish", "--volume", "LATER", "--move", self.source, status=1)
        self.assertEqual(result["error"], f"The current media in the {DEVICE} is not present, "
                         "damaged or is not writable.")
        self.assertEqual(contents(self.source), {})
        self.assert_nothing_lost(before, self.root)
        self.insert("cd-r")
        self.command("write", "--volume", "LATER")
        self.assertFalse(self.root.exists())
        self.assert_nothing_lost(before, self.extract(self.recorder / "ejected/LATER.iso"))

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
                result = self.command("publish", "--replace", self.source, status=1)
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
