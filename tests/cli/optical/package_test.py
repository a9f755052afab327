"""Drives and the library through which they are reached: where it is looked for, and what is said when
it is not installed, cannot be loaded or is of another release."""
import os
import re
import shutil
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent))
import rig  # noqa: E402
from rig import Machine, OpticalTest, program  # noqa: E402

NAME = "libquillon_optical.so"
VIRTUAL = "; a virtual recorder is there when QUILLON_RECORDERS names a directory for it."
WITHOUT = " None is needed with --to DIRECTORY, --iso FILE or --zip FILE."
NOT_INSTALLED = ('The drive "/dev/sr0" cannot be used: the package quillon-optical is not installed' + VIRTUAL)


def module():
    """Where the build has put it, seen from the program."""
    return next(Path(program.QUILLON).parents[1].glob(f"lib*/**/{NAME}"))


class Installed(Machine):
    """A machine with the program alone; put brings a library where it belongs."""

    def __init__(self, **drive):
        super().__init__(**drive)
        self.program = self.dir / "usr/bin/quillon"
        self.program.parent.mkdir(parents=True)
        shutil.copy(program.QUILLON, self.program)
        tree = Path(program.QUILLON).parents[1]
        self.place = self.dir / "usr" / module().relative_to(tree)
        self.more = {}
        self.drive.insert("cd-r")

    def put(self, library):
        self.place.parent.mkdir(parents=True, exist_ok=True)
        shutil.copy(library, self.place)

    def environment(self):
        return {**super().environment(), **self.more}

    def command(self):
        return self.program


class Package(OpticalTest):
    def test_a_drive_without_its_library_is_told_with_what_to_install(self):
        machine = Installed()
        source = machine.dir / "source"
        cases = [  # arguments, what is said
            (["publish", source], NOT_INSTALLED + WITHOUT),
            (["publish", "--recorder", "/dev/sr0", source], NOT_INSTALLED),
            (["publish", "--recorder", "/dev/sr1", source], 'There is no recorder "/dev/sr1".'),
            (["disc", "status"], NOT_INSTALLED),
            (["disc", "eject"], NOT_INSTALLED),
            (["disc", "erase"], NOT_INSTALLED),
            (["verify", "--disc"], NOT_INSTALLED),
            (["list", "--disc"], NOT_INSTALLED),
        ]
        for arguments, sentence in cases:
            with self.subTest(arguments):
                self.assertEqual(machine.run(*arguments), (1, "", f"quillon: {sentence}\n"))
        recorder, = machine.recorders()
        self.assertEqual((recorder["name"], recorder["problem"], recorder["disc"]),
                         ("/dev/sr0", NOT_INSTALLED, None))
        self.assertIn("EMULATED BURNER", recorder["device"])
        self.assertEqual(machine.drive.log("OPEN"), [])

    def test_configured_drives_are_told_of_too(self):
        machine = Installed()
        machine.use("drives", drives="stdio:/srv/disc.img")
        self.assertEqual(machine.listed(), NOT_INSTALLED.replace("/dev/sr0", "stdio:/srv/disc.img"))

    def test_without_a_drive_there_is_nothing_to_install(self):
        machine = Installed()
        shutil.rmtree(machine.drive.directory)
        self.assertEqual(machine.recorders(), [])
        self.assertEqual(machine.run("publish", machine.dir),
                         (1, "", "quillon: There is no drive that writes discs" + VIRTUAL + WITHOUT + "\n"))

    def test_the_library_in_its_place_reaches_the_drive(self):
        machine = Installed()
        machine.put(module())
        self.assertEqual(machine.listed(), ("cd-r", "blank"))
        self.assertEqual(machine.write()[0], 0)
        self.assertEqual(machine.extracted(), rig.contents(machine.root))

    def test_a_library_that_cannot_be_loaded_is_told_with_the_reason(self):
        machine = Installed()
        broken, whole = machine.dir / "broken", module().read_bytes()
        version = machine.run("--version")[1].split()[1]
        another_build = re.sub(re.escape(version.encode()) + rb" [0-9a-f]{8}\0", version.encode() + b" of-today\0",
                               whole)
        self.assertNotEqual(another_build, whole)
        another_release = "is of another release than VERSION (install quillon-optical of the same version)"
        cases = [  # what lies in its place, what is said of that
            (b"torn", "cannot be loaded (file too short)"),
            (whole[:len(whole) // 2], "cannot be loaded (the file is not whole)"),
            (whole.replace(b"\0libburn.so.4\0", b"\0libburn.so.X\0"), "cannot be loaded (libburn.so.X: cannot "
             "open shared object file: No such file or directory)"),
            (Path(os.environ["OTHER_RELEASE"]).read_bytes(), another_release),
            (another_build, another_release),
        ]
        for content, reason in cases:
            with self.subTest(reason):
                broken.write_bytes(content)
                machine.put(broken)
                # A version, and nothing else that a release is known by.
                problem, told = (re.sub(r"than \d+\.\d+\.\d+\S* \(", "than VERSION (", text)
                                 for text in (machine.listed(), machine.run("--version")[1]))
                self.assertEqual(problem, f'The drive "/dev/sr0" cannot be used: {machine.place} {reason}' + VIRTUAL)
                self.assertRegex(told, rf"(?m)^  libburn +{re.escape(f'{machine.place} {reason}')}$")

    def test_it_is_looked_for_in_its_place_alone(self):
        machine = Installed()
        elsewhere = machine.dir / "elsewhere"
        for directory in (elsewhere, elsewhere / "quillon", machine.program.parent):
            directory.mkdir(exist_ok=True)
            shutil.copy(module(), directory)
        machine.more = {"LD_LIBRARY_PATH": str(elsewhere)}
        before = os.getcwd()
        self.addCleanup(os.chdir, before)
        os.chdir(elsewhere)
        self.assertEqual(machine.listed(), NOT_INSTALLED)


if __name__ == "__main__":
    rig.main()
