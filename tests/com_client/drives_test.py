"""Hosts and drives: libQuillonMediaRW.so reaches them through a library that it finds from its own place
and loads when a disc is written, not before."""
import os
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

SOURCE = Path(__file__).resolve().parents[2]
sys.path[:0] = [str(SOURCE / "tests/cli"), str(SOURCE / "tests/support"), str(SOURCE / "docs/host-example")]
from emulated_drive import EmulatedDrives  # noqa: E402
from program import dicom_file  # noqa: E402

SERVER, MODULE = "libQuillonMediaRW.so", "libquillon_optical.so"
BUILD = None  # set by main
NOT_INSTALLED = ('The drive "/dev/sr0" cannot be used: the package quillon-optical is not installed; a virtual '
                 "recorder is there when QUILLON_RECORDERS names a directory for it.")


def loaded():
    names = {Path(line.split()[-1]).name for line in Path("/proc/self/maps").read_text().splitlines()}
    return {name.partition(".so")[0] for name in names} & {"libburn", "libquillon_optical"}


def be_host(place, load_from):
    """A host that writes one object to a disc; what it prints is for the test."""
    if load_from:  # by a name that means something else when the server asks where it is
        import ctypes
        os.chdir(load_from)
        ctypes.CDLL(f"./{SERVER}")
        os.chdir(place / "elsewhere")
    import host
    host.com.CoInitialize(None)
    media = host.Object(host.PROG_ID)
    media.put("DicomRootDirectory", str(place / "root"))
    media.put("UniquePatientId", "DOE")
    (place / "file").write_bytes(dicom_file())
    media.do("AddFile", str(place / "file"))
    media.do("CreateDicomFileSet")
    print(sorted(loaded()))
    try:
        media.do("Write")
        print("written")
    except host.Failed as failure:
        print(" ".join(str(failure).split()))
    print(sorted(loaded()))


class Drives(unittest.TestCase):
    def setUp(self):
        place = tempfile.TemporaryDirectory(prefix="quillon-drives-")
        self.addCleanup(place.cleanup)
        self.dir = Path(place.name)
        self.drives = EmulatedDrives(self.dir / "drives", BUILD / "lib/libemulated_drive.so")
        self.drive = self.drives.add()
        self.drive.insert("cd-r")
        self.server = next(BUILD.glob(f"lib*/**/{SERVER}"))
        self.module = next(BUILD.glob(f"lib*/**/{MODULE}"))
        (self.dir / "elsewhere/quillon").mkdir(parents=True)
        self.environment = self.drives.environment({
            "PATH": os.environ["PATH"], "HOME": str(self.dir / "home"), "TMPDIR": str(self.dir),
            "QUILLON_REGISTRY": str(self.dir / "registry.reg"), "LC_ALL": "C",
            "PYTHONDONTWRITEBYTECODE": "1", "LD_LIBRARY_PATH": str(self.dir / "elsewhere"),
            "QUILLON_HOST_LIBRARY": str(BUILD / "lib/libquillon-media.so.0")})

    def written(self, server, load_from=""):
        """What a host says that writes a disc by this server."""
        subprocess.run([BUILD / "bin/quillon", "register", server], check=True, env=self.environment)
        run = subprocess.run([sys.executable, __file__, "host", self.dir, load_from], env=self.environment,
                             cwd=self.dir / "elsewhere", capture_output=True, text=True, timeout=120)
        self.assertEqual((run.returncode, run.stderr), (0, ""))
        before, said, after = run.stdout.splitlines()
        self.assertEqual(before, "[]")
        return said, after

    def copy_to(self, directory, *libraries):
        directory.mkdir(parents=True, exist_ok=True)
        for library in libraries:
            shutil.copy(library, directory)
        return directory

    def test_a_disc_is_written_through_the_library_of_the_build(self):
        self.assertEqual(self.written(self.server), ("written", "['libburn', 'libquillon_optical']"))
        self.assertEqual(self.drive.contents()[16 * 2048:16 * 2048 + 6], b"\x01CD001")
        self.assertTrue(self.drive.is_idle())

    def test_it_is_found_beside_the_server_and_below_it(self):
        for name, below in (("beside", ""), ("below", "quillon")):
            place = self.copy_to(self.dir / name, self.server)
            self.copy_to(place / below, self.module)
            for load_from in ("", place):
                with self.subTest(name, load_from=load_from):
                    self.drive.insert("cd-r")
                    self.assertEqual(self.written(place / SERVER, load_from)[0], "written")

    def test_without_it_the_failure_says_what_to_install(self):
        place = self.copy_to(self.dir / "alone", self.server)
        self.copy_to(self.dir / "elsewhere", self.module)
        self.copy_to(self.dir / "elsewhere/quillon", self.module)
        for load_from in ("", place):
            with self.subTest(load_from):
                said, after = self.written(place / SERVER, load_from)
                self.assertIn(NOT_INSTALLED, said)
                self.assertEqual(after, "[]")
        self.assertEqual(self.drive.log("OPEN"), [])


if __name__ == "__main__":
    if sys.argv[1] == "host":
        be_host(Path(sys.argv[2]), sys.argv[3])
    else:
        BUILD = Path(sys.argv[1]).resolve()
        unittest.main(argv=[sys.argv[0], "-v", *sys.argv[2:]])
