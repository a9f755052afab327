"""A machine with emulated drives, and a file set that waits for a disc."""
import json
import os
import shutil
import subprocess
import sys
import tempfile
import time
import unittest
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

sys.path[:0] = [str(Path(__file__).parents[1]), str(Path(__file__).parents[2] / "support")]
import json_schemas  # noqa: E402
import program  # noqa: E402
from emulated_drive import SECTOR, EmulatedDrives  # noqa: E402, F401
from program import contents  # noqa: E402, F401

LIBRARY = None  # the emulated drive; set by main
PLACE = None  # of all machines of this run
SERVICE_KEY = r"HKEY_LOCAL_MACHINE\SOFTWARE\Tarn Imaging\Quillon\DiscMastering"


class Machine:
    """One drive, /dev/sr0, unless told otherwise."""

    def __init__(self, service="auto", **drive):
        self.dir = Path(tempfile.mkdtemp(dir=PLACE))
        self.drives = EmulatedDrives(self.dir / "drives", LIBRARY)
        self.drive = self.drives.add(**drive)
        self.registry = self.dir / "registry.reg"
        self.use(service)
        self.root = self.dir / "set"
        self.path = os.environ["PATH"]
        for name in ("tmp", "home"):
            (self.dir / name).mkdir()

    def use(self, service, drives=None):
        names = f'"Drives"="{drives}"\n' if drives else ""
        self.registry.write_text(f'Windows Registry Editor Version 5.00\n\n[{SERVICE_KEY}]\n'
                                 f'"Service"="{service}"\n{names}')

    def environment(self):
        return self.drives.environment({
            "PATH": self.path, "HOME": str(self.dir / "home"),
            "TMPDIR": str(self.dir / "tmp"), "QUILLON_REGISTRY": str(self.registry),
            "XDG_DATA_HOME": str(self.dir / "home/data"), "LC_ALL": "C",
            "ASAN_OPTIONS": os.environ.get("ASAN_OPTIONS", "")})

    def command(self):
        """The program that is run."""
        return program.QUILLON

    def start(self, *arguments):
        return subprocess.Popen([self.command(), *map(str, arguments)], env=self.environment(),
                                stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                stderr=subprocess.PIPE, text=True)

    def run(self, *arguments):
        """Exit status, standard output, standard error."""
        process = self.start(*arguments)
        out, err = process.communicate(timeout=120)
        json_schemas.check(arguments, process.returncode, out)
        return process.returncode, out, err

    def write(self, *arguments):
        """Writes the set, which is made ready the first time."""
        self.make_ready()
        return self.run("write", "--keep", "--root", self.root, *arguments)

    def start_write(self, *arguments):
        self.make_ready()
        return self.start("write", "--keep", "--root", self.root, *arguments)

    def make_ready(self):
        if not self.root.exists():
            shutil.copytree(PLACE / "set", self.root)

    def recorders(self):
        status, out, err = self.run("disc", "list", "--json")
        assert status == 0, (out, err)
        return json.loads(out)["recorders"]

    def listed(self):
        """Kind and state of the disc, or the problem with it; nothing without a disc."""
        recorder = self.recorders()[0]
        disc = recorder["disc"]
        return recorder["problem"] or (disc and (disc["media"], disc["state"]))

    def wait_for_writes(self, count):
        end = time.monotonic() + 60
        while len(self.drive.log("WRITE")) < count:
            assert time.monotonic() < end, "nothing is written"
            time.sleep(0.02)

    def extracted(self):
        """What an independent reader finds on the disc."""
        out = self.dir / "extracted"
        shutil.rmtree(out, ignore_errors=True)
        subprocess.run(["xorriso", "-osirrox", "on:auto_chmod_on", "-indev",
                        self.drive.directory / "disc.bin", "-extract", "/", out],
                       check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        for path in [out, *out.rglob("*")]:
            os.chmod(path, 0o755)
        return contents(out)


class OpticalTest(unittest.TestCase):
    def each(self, cases, check):
        """Runs the check for each case, several at a time: drives are slow, and wait most of it."""
        with ThreadPoolExecutor(12) as pool:
            futures = [(case, pool.submit(check, case)) for case in cases]
        for case, future in futures:
            with self.subTest(case=case):
                future.result()

    def assert_left_alone(self, machine):
        self.assertTrue(machine.drive.is_idle(), machine.drive.state())

    def assert_set_is_whole(self, machine):
        self.assertEqual(contents(machine.root), contents(PLACE / "set"))


def prepare(place):
    """Some small objects, and one that takes a while."""
    source = place / "source"
    subprocess.run([program.SAMPLES, source], check=True, stdout=subprocess.DEVNULL)
    pixels = program.element(0x7FE00010, "OW", bytes(range(256)) * 12000)
    (source / "large").write_bytes(program.dicom_file(instance="2.25.99", series="2.25.98",
                                                      more={0x7FE00010: pixels}))
    subprocess.run([program.QUILLON, "create", "--quiet", "--root", place / "set", source],
                   check=True, stdout=subprocess.DEVNULL,
                   env={**os.environ, "QUILLON_REGISTRY": str(place / "no.reg")})


def main():
    global LIBRARY, PLACE
    program.QUILLON, program.SAMPLES, LIBRARY = map(os.path.abspath, sys.argv[1:4])
    with tempfile.TemporaryDirectory(prefix="quillon-optical-") as place:
        PLACE = Path(place)
        prepare(PLACE)
        unittest.main(module="__main__", argv=[sys.argv[0], "-v", *sys.argv[4:]])
