"""What becomes of discs of every kind in a drive: listed, written, read back, erased."""
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent))
import rig  # noqa: E402
from rig import SECTOR, Machine, OpticalTest  # noqa: E402

# With an ISO 9660 descriptor that says how long the file system is.
DATA = bytes(16 * SECTOR) + b"\1CD001\1".ljust(80, b"\0") + (300).to_bytes(4, "little")
DATA = DATA.ljust(300 * SECTOR, b"x")


class Media(OpticalTest):
    def test_discs_of_every_kind_and_state_are_told(self):
        cases = [  # media, state, capacity put in; what is listed: media, state, capacity, free
            ("cd-r", "blank", 300000, "cd-r", "blank", 300000, 300000),
            ("cd-r", "appendable", 300000, "cd-r", "appendable", 300000, None),
            ("cd-r", "closed", 300000, "cd-r", "finalised", 300000, 0),
            ("cd-r", "damaged", 300000, "cd-r", "damaged", 300000, 0),
            ("cd-rw", "blank", 300000, "cd-rw", "blank", 300000, 300000),
            ("cd-rw", "closed", 300000, "cd-rw", "finalised", 300000, 0),
            ("dvd-r", "blank", 2000000, "dvd-r", "blank", 2000000, 2000000),
            ("dvd-r", "closed", 2298496, "dvd-r", "finalised", 2298496, 0),
            ("dvd-rw", "blank", 2298496, "dvd-rw", "blank", 2298496, 2298496),
            ("dvd-rw", "closed", 2298496, "dvd-rw", "finalised", 2298496, 0),
            ("dvd-rw-ro", "formatted", 2298496, "dvd-rw", "appendable", 2298496, 2298196),
            ("dvd+r", "blank", 2295104, "dvd+r", "blank", 2295104, 2295104),
            ("dvd+r", "closed", 2295104, "dvd+r", "finalised", 2295104, 0),
            ("dvd+rw", "unformatted", 2295104, "dvd+rw", "blank", 2295104, 2295104),
            ("dvd+rw", "formatted", 2295104, "dvd+rw", "appendable", 2295104, 2294804),
            ("bd-r", "blank", 12219392, "bd-r", "blank", 12219392, 12219392),
            ("bd-r", "closed", 12219392, "bd-r", "finalised", 12219392, 0),
            ("bd-re", "unformatted", 11826176, "bd-re", "blank", 11826176, 11826176),
            ("bd-re", "formatted", 11826176, "bd-re", "appendable", 11826176, 11825876),
            ("cd-rom", "closed", None, "cd-rom", "finalised", None, 0),
            ("dvd-rom", "closed", None, "dvd-rom", "finalised", None, 0),
        ]

        def check(case):
            media, state, capacity, *expected = case
            machine = Machine()
            lines = {"capacity": capacity} if capacity else {}
            machine.drive.insert(media, state,
                                 None if state in ("blank", "unformatted") else DATA, **lines)
            disc = machine.recorders()[0]["disc"]
            found = [disc["media"], disc["state"], disc["capacity"], disc["free"]]
            self.assertEqual([e if e is None else f for e, f in zip(expected, found)], expected)
            self.assertLessEqual(disc["free"], disc["capacity"])
            self.assertEqual(disc["protected"], media.endswith("rom"))
            self.assert_left_alone(machine)
        self.each(cases, check)

    def test_every_kind_is_written_and_read_back(self):
        cases = [  # media, state put in, state afterwards
            ("cd-r", "blank", "appendable"), ("cd-rw", "blank", "appendable"),
            ("dvd-r", "blank", "finalised"), ("dvd-rw", "blank", "finalised"),
            ("dvd-rw-ro", "formatted", "appendable"), ("dvd+r", "blank", "finalised"),
            ("dvd+rw", "unformatted", "appendable"), ("dvd+rw", "formatted", "appendable"),
            ("bd-r", "blank", "appendable"), ("bd-re", "unformatted", "appendable"),
            ("bd-re", "formatted", "appendable"),
        ]

        def check(case):
            media, state, afterwards = case
            machine = Machine()
            machine.drive.insert(media, state)
            status, out, err = machine.write("--no-eject")
            self.assertEqual((status, err), (0, ""), out)
            self.assert_left_alone(machine)
            # A drive takes its time to open and to spin up.
            self.assertLessEqual(len(machine.drive.log("START STOP UNIT stop")), 3)
            self.assertEqual(machine.extracted(), rig.contents(machine.root))
            self.assertEqual(machine.listed()[1], afterwards)
            # It is in the drive, and the next one goes there.
            self.assertFalse(machine.drive.is_tray_open())
            self.assertEqual(machine.run("disc", "eject")[0], 0)
            self.assertTrue(machine.drive.is_tray_open())
            self.assert_left_alone(machine)
        self.each(cases, check)

    def test_a_rewritable_disc_that_holds_data_is_written_again(self):
        cases = [("auto", "cd-rw"), ("auto", "dvd-rw"), ("auto", "dvd+rw"), ("legacy", "cd-rw")]

        def check(case):
            service, media = case
            machine = Machine(service)
            machine.drive.insert(media, "formatted" if media == "dvd+rw" else "closed", DATA,
                                 capacity=4096)
            for arguments in ((), ("--full-erase",)):
                status, out, err = machine.write("--no-eject", *arguments)
                self.assertEqual((status, err), (0, ""), out)
                self.assertEqual(machine.extracted(), rig.contents(machine.root))
                self.assert_left_alone(machine)
        self.each(cases, check)

    def test_erasing_makes_a_disc_blank_that_can_be(self):
        # DVD-R and the like are refused before the drive is asked.
        refused = {"cd-r", "dvd-r", "dvd+r", "bd-r"}
        cases = [(media, full) for media in ("cd-rw", "dvd-rw", "dvd-rw-ro", "dvd+rw", "bd-re")
                 for full in (False, True)] + [(media, False) for media in sorted(refused)]

        def check(case):
            media, full = case
            machine = Machine()
            is_in_place = media in ("dvd-rw-ro", "dvd+rw", "bd-re")
            machine.drive.insert(media, "formatted" if is_in_place else "closed", DATA,
                                 capacity=1024)
            status, _, err = machine.run("disc", "erase", *(["--full"] if full else []))
            self.assert_left_alone(machine)
            if media in refused:
                self.assertEqual((status, err), (
                    1, 'quillon: The disc in the recorder "/dev/sr0" cannot be erased.\n'))
                self.assertEqual(machine.listed()[1], "finalised")
            else:
                self.assertEqual((status, err), (0, ""))
                self.assertEqual(machine.listed()[1], "blank")
        self.each(cases, check)

    def test_a_damaged_rewritable_disc_can_be_used_after_it_was_erased(self):
        machine = Machine()
        machine.drive.insert("cd-rw", "damaged", DATA)
        self.assertEqual(machine.write()[0], 1)
        self.assertEqual(machine.run("disc", "erase")[0], 0)
        self.assertEqual(machine.write()[0], 0)
        self.assert_left_alone(machine)

    def test_the_legacy_service_writes_cds_and_tries_them(self):
        cases = [  # media, state, simulates, arguments, exit status, commands of a test write
            ("cd-r", "blank", "yes", [], 0, False),
            ("cd-r", "blank", "yes", ["--simulate"], 0, True),
            ("cd-r", "blank", "no", ["--simulate"], 1, False),
            # Of a full disc, which will be erased for it, all of the room counts.
            ("cd-rw", "closed", "yes", ["--simulate"], 0, False),
        ]

        def check(case):
            media, state, simulates, arguments, expected, is_tested = case
            machine = Machine("legacy", simulates=simulates)
            machine.drive.insert(media, state, DATA[:50 * SECTOR] if state == "closed" else None)
            before = machine.drive.contents()
            status, out, err = machine.write(*arguments)
            self.assertEqual(status, expected, (out, err))
            self.assert_left_alone(machine)
            if arguments:
                self.assertEqual(machine.drive.contents(), before)
                tests = [c for c, _ in machine.drive.log("MODE SELECT") if "test" in c]
                self.assertEqual(bool(tests), is_tested)
            else:
                self.assertEqual(machine.extracted(), rig.contents(machine.root))
        self.each(cases, check)


if __name__ == "__main__":
    rig.main()
