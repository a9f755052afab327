"""What a drive does to a job that goes wrong, and what the job leaves behind: a drive that is idle and
unlocked, a file set that is whole, and a sentence."""
import fcntl
import json
import signal
import sys
import threading
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent))
import rig  # noqa: E402
from rig import SECTOR, Machine, OpticalTest  # noqa: E402

DATA = bytes(16 * SECTOR) + b"\1CD001\1".ljust(80, b"\0") + (300).to_bytes(4, "little")
DATA = DATA.ljust(300 * SECTOR, b"x")
BLANK = {"dvd+rw": "formatted", "bd-re": "formatted"}


class Refusals(OpticalTest):
    def test_a_disc_that_cannot_be_written_stays_as_it_is(self):
        cases = [  # media, state, more lines of disc.txt
            ("cd-r", "closed", {}), ("cd-r", "appendable", {}), ("cd-r", "damaged", {}),
            ("dvd-r", "closed", {}), ("dvd+r", "closed", {}), ("bd-r", "closed", {}),
            ("bd-re", "formatted", {}), ("cd-rom", "closed", {}), ("dvd-rom", "closed", {}),
            ("cd-r", "blank", {"capacity": 500}), ("cd-rw", "closed", {"capacity": 500}),
            ("dvd+rw", "formatted", {"capacity": 512}), (None, None, {}),
        ]

        def check(case):
            media, state, lines = case
            machine = Machine()
            content = None if state in (None, "blank") else DATA
            if media:
                machine.drive.insert(media, state, content, **lines)
            status, _, err = machine.write()
            self.assertEqual(status, 1)
            self.assertNotEqual(err, "")
            self.assertEqual(machine.drive.log("WRITE", "BLANK", "FORMAT"), [])
            self.assertEqual(machine.drive.contents(), content or b"")
            self.assert_set_is_whole(machine)
            self.assert_left_alone(machine)
        self.each(cases, check)

    def test_a_drive_that_cannot_be_used_is_told_with_the_reason(self):
        burner = {"media": "cd-r"}
        cases = [  # drive, fault, what the list says of the disc, what an erasure says
            (burner, "permission = no",
             'This user may not use the drive "/dev/sr0"; its group, often cdrom, may.'),
            (burner, "mounted = yes", 'Another program is using the recorder "/dev/sr0".'),
            ({}, "", 'There is no disc in the recorder "/dev/sr0".'),
        ]

        def check(case):
            drive, fault, sentence = case
            machine = Machine()
            if drive:
                machine.drive.insert(drive["media"])
            machine.drive.faults(fault)
            status, _, err = machine.run("disc", "erase", "--recorder", "/dev/sr0")
            self.assertEqual((status, err), (1, f"quillon: {sentence}\n"))
            if fault:
                self.assertEqual(machine.recorders()[0]["problem"], sentence)
            self.assertEqual(machine.write()[0], 1)
            self.assertLess(len(machine.drive.log("OPEN")), 40, "it is asked again and again")
        self.each(cases, check)

    def test_a_name_that_is_no_drive_is_told(self):
        machine = Machine()
        place = machine.dir / "home"
        for name, sentence in ((machine.registry, "is not a drive."), (place / "none", None)):
            machine.use("drives", name)
            expected = f'"{name}" {sentence}' if sentence else f'There is no drive "{name}".'
            self.assertEqual(machine.recorders()[0]["problem"], expected)

    def test_a_drive_that_only_reads_is_no_recorder(self):
        machine = Machine(kind="reader")
        machine.drive.insert("cd-rom", "closed", DATA)
        self.assertEqual(machine.listed(), ("cd-rom", "finalised"))
        for command in (["disc", "status"], ["disc", "erase"]):
            status, _, err = machine.run(*command)
            self.assertEqual(status, 1)
            self.assertIn("There is no drive that writes", err)
        self.assertEqual(machine.write()[0], 1)
        self.assertFalse((machine.dir / "home/data/quillon/recorders/virtual-1").exists())

    def test_the_first_drive_that_writes_is_the_one(self):
        machine = Machine(kind="reader")
        burner = machine.drives.add()
        burner.insert("cd-r")
        status, out, _ = machine.run("disc", "status", "--json")
        self.assertEqual((status, json.loads(out)["name"]), (0, "/dev/sr1"))
        self.assertEqual(len(burner.log("START STOP UNIT stop")), 1, "it is opened once")
        self.assertEqual(machine.write("--no-eject")[0], 0)
        self.assertGreater(len(burner.contents()), 1000 * SECTOR)
        self.assertEqual(machine.run("disc", "eject")[0], 0)
        self.assertEqual((burner.is_tray_open(), machine.drive.is_tray_open()), (True, False))


class Faults(OpticalTest):
    def test_a_failing_write_fails_the_job(self):
        # Service, media, state, fault, state afterwards. A DVD+R or BD-R keeps no sign of what broke
        # off: it holds data, and is written no more.
        cases = []
        for at in (0, 700, 1490):
            cases += [("auto", "cd-r", "blank", f"write = {at} 3/0C/00", "damaged"),
                      ("auto", "dvd-r", "blank", f"write = {at} 3/0C/00", "damaged"),
                      ("auto", "dvd+r", "blank", f"write = {at} 4/09/00", "appendable"),
                      ("auto", "dvd+rw", "formatted", f"write = {at} 3/0C/00", "blank"),
                      ("auto", "bd-r", "blank", f"write = {at} 3/73/03", "appendable"),
                      ("legacy", "cd-rw", "blank", f"write = {at} 3/0C/00", "damaged")]
        for at in (0, 700):
            cases += [("auto", "cd-r", "blank", f"pulled = {at}", "gone"),
                      ("auto", "dvd+rw", "formatted", f"pulled = {at}", "gone")]
        cases += [("auto", media, BLANK.get(media), "unplugged = 700", "lost")
                  for media in ("cd-r", "dvd+rw")]
        cases += [("auto", "dvd+rw", "unformatted", "format = 4/31/00", "blank"),
                  ("auto", "bd-re", "unformatted", "format = 3/31/00", "blank"),
                  ("auto", "cd-rw", "closed", "blank = 3/51/00", "finalised"),
                  ("auto", "cd-r", "blank", "SEND CUE SHEET = 5/26/00", "blank"),
                  ("auto", "dvd-r", "blank", "RESERVE TRACK = 5/24/00", "blank")]

        def check(case):
            service, media, state, fault, afterwards = case
            machine = Machine(service)
            machine.drive.insert(media, state, DATA if state == "closed" else None)
            machine.drive.faults(fault)
            status, out, err = machine.write()
            self.assertEqual((status, out), (1, ""), err)
            # With what the drive itself has said, beside the service's words for a code.
            said = "[3 0C 00]" if "3/0C" in fault else 'The drive "/dev/sr0" failed: '
            if fault != "pulled = 0":  # a disc that is gone before is none to begin with
                self.assertIn(said, err)
            self.assert_set_is_whole(machine)
            if afterwards == "lost":  # the drive itself has gone
                return
            self.assert_left_alone(machine)
            listed = machine.listed()
            if afterwards == "gone":
                self.assertIsNone(listed)
            else:
                self.assertEqual(listed[1], afterwards)
        self.each(cases, check)

    def test_a_closing_that_fails_fails_the_job(self):
        cases = [("cd-r", "sync = 3/0C/00"), ("dvd+r", "close = 5/72/00"),
                 ("dvd+rw", "sync = 3/0C/00"), ("bd-r", "close = 5/72/00")]

        def check(case):
            media, fault = case
            machine = Machine()
            machine.drive.insert(media, BLANK.get(media))
            machine.drive.faults(fault)
            status, _, err = machine.write("--no-eject")
            self.assertEqual(status, 1, err)
            self.assert_set_is_whole(machine)
            self.assertFalse(machine.drive.is_held())
        self.each(cases, check)

    def test_a_tray_that_stays_shut_fails_the_job(self):
        machine = Machine()
        machine.drive.insert("cd-r")
        machine.drive.faults("eject = 4/53/00")
        status, _, err = machine.write()
        self.assertEqual(status, 1)
        self.assertIn('quillon: The drive "/dev/sr0" does not open.\nquillon: The disc in /dev/sr0 is '
                      f"written all the same; the file set stays in {machine.root}.\n", err)
        self.assertEqual(machine.extracted(), rig.contents(machine.root))
        status, _, err = machine.run("disc", "eject")
        self.assertEqual((status, err), (1, 'quillon: The drive "/dev/sr0" does not open.\n'))
        self.assert_left_alone(machine)

    def test_what_the_drive_says_is_told_and_not_the_bytes_that_it_was_sent(self):
        machine = Machine()
        machine.drive.insert("cd-rw", "closed", DATA)
        machine.drive.faults("blank = 4/44/00")
        status, _, err = machine.run("disc", "erase")
        self.assertEqual(status, 1)
        self.assertIn("[4 44 00]", err)
        self.assertNotIn("CDB=", err)
        self.assert_left_alone(machine)

    def test_a_drive_that_is_slow_to_get_ready_is_waited_for(self):
        machine = Machine()
        machine.drive.insert("cd-r")
        machine.drive.faults("becoming_ready = 4")
        self.assertEqual(machine.write("--no-eject")[0], 0)
        self.assertEqual(machine.extracted(), rig.contents(machine.root))
        self.assert_left_alone(machine)

    def test_a_disc_that_is_mounted_is_unmounted_for_a_write(self):
        cases = [("mounted = yes", 0), ("mounted = yes, unmount = no", 1)]

        def check(case):
            faults, expected = case
            machine = Machine()
            place = machine.dir / "mounted"
            machine.drives.mount(machine.drive, place)
            machine.drive.insert("dvd+rw", "formatted", DATA)
            machine.drive.faults(*faults.split(", "))
            # Questions are answered beside the system, which reads the disc.
            self.assertEqual(machine.listed(), ("dvd+rw", "appendable"))
            # The system has locked the door, and it stays so.
            self.assertEqual(machine.drive.log("PREVENT ALLOW")[-1][0], "PREVENT ALLOW prevent")
            status, _, err = machine.write("--no-eject")
            self.assertEqual(status, expected, err)
            if expected:
                status, _, err = machine.run("disc", "erase")
                self.assertEqual((status, err), (
                    1, f'quillon: The disc in "/dev/sr0" is mounted at "{place}" and cannot be '
                    'unmounted: Device or resource busy.\n'))
                self.assertEqual(machine.drive.contents(), DATA)
            else:
                self.assertEqual(machine.extracted(), rig.contents(machine.root))
        self.each(cases, check)


    def test_what_the_desktop_has_mounted_its_service_unmounts(self):
        cases = [("exit 1", 1), ('rm "$EMULATED_DRIVES/mounts"; '
                                 'echo "unmounted = yes" >> "$EMULATED_DRIVES/sr0/state.txt"', 0)]

        def check(case):
            script, expected = case
            machine = Machine()
            tool = machine.dir / "bin/udisksctl"
            tool.parent.mkdir()
            tool.write_text(f'#!/bin/sh\necho "$@" > "{machine.dir}/asked"\n{script}\n')
            tool.chmod(0o755)
            machine.path = f"{tool.parent}:{machine.path}"
            machine.drives.mount(machine.drive, machine.dir / "mounted")
            machine.drive.insert("dvd+rw", "formatted", DATA)
            machine.drive.faults("unmount = denied")
            status, _, err = machine.write("--no-eject")
            self.assertEqual(status, expected, err)
            self.assertEqual((machine.dir / "asked").read_text(),
                             "unmount --no-user-interaction -b /dev/sr0\n")
            if not expected:
                self.assertEqual(machine.extracted(), rig.contents(machine.root))
                self.assert_left_alone(machine)
        self.each(cases, check)


class SeveralProcesses(OpticalTest):
    def test_questions_of_another_process_do_not_fail_a_write(self):
        machine = Machine()
        machine.drive.insert("cd-r")
        machine.drive.faults("slow = 10")  # a question takes longer than a moment
        is_over = threading.Event()
        problems = []

        def ask():
            while not is_over.is_set():
                status, out, err = machine.run("disc", "list", "--json")
                problem = json.loads(out)["recorders"][0]["problem"]
                # While the disc is written there is no other answer.
                if status or (problem and "Another program" not in problem):
                    problems.append((status, problem, err))
        asking = threading.Thread(target=ask)
        asking.start()
        try:
            status, _, err = machine.write("--no-eject")
        finally:
            is_over.set()
            asking.join()
        self.assertEqual((status, err, problems), (0, "", []))
        self.assertEqual(machine.extracted(), rig.contents(machine.root))
        self.assert_left_alone(machine)

    def test_the_second_writer_is_told_who_has_the_drive(self):
        machine = Machine()
        machine.drive.insert("cd-r")
        machine.drive.faults("slow_write = 60")
        writing = machine.start_write("--no-eject")
        machine.wait_for_writes(5)
        recorder = machine.recorders()[0]
        self.assertEqual(recorder["used_by"], "Quillon")
        self.assertIn("Another program is using", recorder["problem"])
        self.assertEqual(machine.write()[0], 1)
        out, err = writing.communicate(timeout=60)
        self.assertEqual((writing.returncode, err), (0, ""), out)
        self.assertEqual(machine.extracted(), rig.contents(machine.root))
        self.assert_left_alone(machine)

    def test_a_drive_that_another_program_has_is_not_written(self):
        machine = Machine()
        machine.drive.insert("cd-r")
        with (machine.drive.directory / "device").open("ab") as device:
            fcntl.flock(device, fcntl.LOCK_EX)
            self.assertIn("Another program is using", machine.recorders()[0]["problem"])
            self.assertEqual(machine.write()[0], 1)
        self.assertEqual(machine.drive.log("WRITE"), [])

    def test_an_ended_burn_leaves_the_drive_idle_and_the_set_whole(self):
        cases = [(number, media, service)
                 for number in (signal.SIGINT, signal.SIGTERM)
                 for media, service in (("cd-r", "auto"), ("dvd+r", "auto"), ("dvd+rw", "auto"),
                                        ("cd-rw", "legacy"))]

        def check(case):
            number, media, service = case
            machine = Machine(service)
            machine.drive.insert(media, BLANK.get(media))
            machine.drive.faults("slow_write = 60")
            writing = machine.start_write("--no-eject")
            machine.wait_for_writes(10)
            writing.send_signal(number)
            _, err = writing.communicate(timeout=60)
            self.assertEqual(writing.returncode, -number, err)
            self.assertIn("was only partly written", err)
            self.assertLess(len(machine.drive.log("WRITE")), 80)
            self.assert_left_alone(machine)
            self.assert_set_is_whole(machine)
            # Of a DVD+R nobody can tell afterwards; it has been said.
            if media != "dvd+r":
                self.assertNotIn(machine.listed()[1], ("appendable", "finalised"))
        self.each(cases, check)

    def test_after_a_killed_burn_the_disc_does_not_pass_for_a_good_one(self):
        cases = ["cd-r", "cd-rw", "dvd+rw"]

        def check(media):
            machine = Machine()
            machine.drive.insert(media, BLANK.get(media))
            machine.drive.faults("slow_write = 60")
            writing = machine.start_write("--no-eject")
            machine.wait_for_writes(10)
            writing.kill()
            writing.communicate(timeout=60)
            machine.drive.faults()
            self.assertEqual(machine.listed()[1], "blank" if media == "dvd+rw" else "damaged")
            self.assert_set_is_whole(machine)
            if media == "cd-rw":
                self.assertEqual(machine.run("disc", "erase")[0], 0)
            if media != "cd-r":
                self.assertEqual(machine.write("--no-eject")[0], 0)
                self.assertEqual(machine.extracted(), rig.contents(machine.root))
                self.assert_left_alone(machine)
        self.each(cases, check)


if __name__ == "__main__":
    rig.main()
