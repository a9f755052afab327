"""The disc in a drive is read from the drive itself: verified, listed, and compared after it was
written."""
import json
import re
import signal
import sys
import time
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent))
import rig  # noqa: E402
from rig import SECTOR, Machine, OpticalTest  # noqa: E402

# Sectors are read by the dozen: told is the first of those that were asked for.
CANNOT_READ = r'The drive "/dev/sr0" cannot read sector \d+ of its disc'


def large_file():
    """The object that takes most of the disc, by its path in the set."""
    return max((path for path in (rig.PLACE / "set").rglob("*") if path.is_file()),
               key=lambda path: path.stat().st_size).relative_to(rig.PLACE / "set").as_posix()


class Reading(OpticalTest):
    def verified(self, machine, *arguments):
        status, out, err = machine.run("verify", "--disc", "--json", *arguments)
        return status, json.loads(out), err

    def test_a_disc_that_was_published_verifies_and_lists(self):
        cases = [("cd-r", "blank"), ("cd-rw", "blank"), ("dvd-r", "blank"), ("dvd+r", "blank"),
                 ("dvd+rw", "unformatted"), ("bd-r", "blank"), ("bd-re", "formatted")]

        def check(case):
            media, state = case
            machine = Machine()
            machine.drive.insert(media, state)
            self.assertEqual(machine.write("--no-eject", "--sums")[0], 0)
            objects = sum(1 for _ in machine.root.rglob("*") if _.is_file()) - 3
            machine.drive.clear_log()
            status, report, err = self.verified(machine, "--recorder", "/dev/sr0")
            self.assertEqual((status, report["whole"], err), (0, True, ""), report)
            self.assertEqual((report["path"], report["recorder"]), (None, "/dev/sr0"))
            self.assertGreater(report["sums"], objects)
            self.assertGreater(len(machine.drive.log("READ 10", "READ 12")), 0)
            status, out, err = machine.run("list", "--disc", "--json")
            self.assertEqual((status, err, json.loads(out)["objects"]), (0, "", objects))
            self.assert_left_alone(machine)
            self.assertEqual(machine.drive.log("WRITE"), [])
        self.each(cases, check)

    def test_a_disc_that_cannot_be_read_is_told_with_the_reason(self):
        no_file_system = "The image of the disc in /dev/sr0 holds no file system that can be read."
        cases = [  # what is inserted, fault, sentence
            (None, "", 'There is no disc in the recorder "/dev/sr0".'),
            (("cd-r", "blank"), "", 'The disc in the recorder "/dev/sr0" is blank.'),
            (("dvd+rw", "formatted"), "", 'The disc in the recorder "/dev/sr0" is blank.'),
            (("cd-rom", "closed", bytes(300) * SECTOR), "", no_file_system),
            (("cd-rom", "closed", bytes(300) * SECTOR), "read = 16 3/11/05",
             'The drive "/dev/sr0" cannot read sector 16 of its disc'),
            (("cd-rom", "closed", bytes(300) * SECTOR), "mounted = yes",
             'Another program is using the recorder "/dev/sr0".'),
        ]

        def check(case):
            disc, fault, sentence = case
            machine = Machine()
            if disc:
                machine.drive.insert(*disc)
            machine.drive.faults(fault)
            for command in ("verify", "list"):
                status, out, err = machine.run(command, "--disc")
                self.assertEqual((status, out), (1, ""), err)
                self.assertTrue(err.startswith(f"quillon: {sentence}"), err)
                self.assertTrue(all(sentence in line for line in err.splitlines()), err)
            self.assert_left_alone(machine)
        self.each(cases, check)
        machine = Machine()
        machine.drive.insert("cd-r", "closed", bytes(300) * SECTOR)
        with (machine.drive.directory / "disc.txt").open("a") as disc:
            disc.write("track = 1 0 300 0 0 closed\ntrack = 2 11700 300 0 0 closed\n")
        status, _, err = machine.run("verify", "--disc")
        self.assertEqual((status, err), (1, 'quillon: The disc in the recorder "/dev/sr0" has several '
                                         "sessions: only a mounted one can be read.\n"))
        for arguments in ([], ["--disc", "x"], ["x", "--recorder", "/dev/sr0"]):
            self.assertEqual(Machine().run("verify", *arguments)[0], 2)

    def test_what_the_drive_reads_wrongly_is_found_and_named(self):
        machine = Machine()
        machine.drive.insert("cd-r")
        self.assertEqual(machine.write("--no-eject", "--sums", "--no-verify")[0], 0)
        machine.drive.faults("read_changed = 1000")
        status, report, err = self.verified(machine)
        self.assertEqual((status, report["errors"], err), (1, 1, ""))
        self.assertEqual(report["findings"][0]["file"], large_file())
        machine.drive.faults("read = 1000 3/11/05")
        status, report, err = self.verified(machine)
        self.assertEqual((status, report["errors"]), (1, 1))
        self.assertRegex(err, "^quillon: " + CANNOT_READ)
        # A drive that needs a second look is no fault of the disc.
        machine.drive.faults("read = 1000 3/11/05 once")
        self.assertEqual(self.verified(machine)[0], 0)
        self.assert_left_alone(machine)

    def test_an_ended_verification_leaves_the_drive_unlocked(self):
        machine = Machine()
        machine.drive.insert("dvd+r")
        self.assertEqual(machine.write("--no-eject")[0], 0)
        machine.drive.clear_log()
        machine.drive.faults("slow = 40")
        verifying = machine.start("verify", "--disc")
        end = time.monotonic() + 60
        while len(machine.drive.log("READ 10", "READ 12")) < 6:
            self.assertLess(time.monotonic(), end, "nothing is read")
            time.sleep(0.02)
        verifying.send_signal(signal.SIGINT)
        out, err = verifying.communicate(timeout=60)
        self.assertEqual((verifying.returncode, out, err), (-signal.SIGINT, "", ""))
        self.assert_left_alone(machine)


class ReadingBack(OpticalTest):
    def test_a_disc_that_is_not_what_was_written_fails_the_job(self):
        cases = [(media, state, fault) for media, state in
                 (("cd-r", "blank"), ("dvd-r", "blank"), ("dvd+rw", "unformatted"), ("bd-r", "blank"))
                 for fault in ("read_changed = 1000", "read = 1000 3/11/05")]

        def check(case):
            media, state, fault = case
            machine = Machine()
            machine.make_ready()
            machine.drive.insert(media, state)
            machine.drive.faults(fault)
            status, out, err = machine.run("write", "--root", machine.root)
            files = sum(1 for path in machine.root.rglob("*") if path.is_file())
            self.assertEqual((status, out), (1, ""), err)
            first = ("quillon: The disc in /dev/sr0 is not what was written: "
                     f"1 of {files} files is not the same.\n")
            self.assertTrue(err.startswith(first), err)
            wrong = "has other bytes" if "changed" in fault else "cannot be read"
            self.assertIn(f"quillon: {large_file()} {wrong}.\n", err)
            self.assertEqual(re.search(CANNOT_READ, err) is not None, "changed" not in fault, err)
            self.assertIn("quillon: The disc stays in /dev/sr0, and the file set in "
                          f"{machine.root}.\n", err)
            self.assert_set_is_whole(machine)
            self.assertFalse(machine.drive.is_tray_open())
            self.assert_left_alone(machine)
        self.each(cases, check)

    def test_a_disc_that_is_the_same_comes_out_and_the_set_goes(self):
        for arguments, verified in (([], True), (["--no-verify"], False)):
            machine = Machine()
            machine.make_ready()
            machine.drive.insert("cd-r")
            machine.drive.faults("" if verified else "read_changed = 1000")
            status, out, err = machine.run("write", "--json", "--root", machine.root, *arguments)
            self.assertEqual((status, err), (0, ""))
            self.assertEqual(json.loads(out)["verified"], verified)
            self.assertTrue(machine.drive.is_tray_open())
            self.assertFalse(machine.root.exists() and any(machine.root.iterdir()))
            self.assertEqual(machine.extracted(), rig.contents(rig.PLACE / "set"))
            self.assert_left_alone(machine)

    def test_a_comparison_that_is_ended_keeps_the_set(self):
        machine = Machine()
        machine.make_ready()
        machine.drive.insert("dvd+r")
        machine.drive.faults("slow = 20")
        writing = machine.start("write", "--root", machine.root)
        end = time.monotonic() + 100
        while not any(name.startswith("CLOSE TRACK") for name, _ in machine.drive.log()):
            self.assertLess(time.monotonic(), end, "nothing is closed")
            time.sleep(0.02)
        machine.drive.clear_log()
        while len(machine.drive.log("READ 10", "READ 12")) < 8:
            self.assertLess(time.monotonic(), end, "nothing is read")
            time.sleep(0.02)
        writing.send_signal(signal.SIGTERM)
        out, err = writing.communicate(timeout=60)
        self.assertEqual((writing.returncode, out), (-signal.SIGTERM, ""), err)
        self.assertEqual(err.lstrip(), "quillon: What was written was not compared to its end; the file set "
                              f"stays in {machine.root}.\n")
        self.assert_set_is_whole(machine)
        self.assert_left_alone(machine)


if __name__ == "__main__":
    rig.main()
