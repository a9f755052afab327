"""The example hosts as their makers meet them: the library, the headers and COM are installed to a
directory of their own, the C++ host is built against that in the two documented ways, and the Python
host needs nothing else. What hosts print is theirs: the toolkit's log is not among it."""
import json
import os
import struct
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

SOURCE = Path(__file__).resolve().parents[2]
EXAMPLE = SOURCE / "docs/host-example"
sys.path.insert(0, str(SOURCE / "tests/cli"))
from program import dicom_file  # noqa: E402

BUILD = None  # set by main
KEY = r"HKEY_LOCAL_MACHINE\SOFTWARE\Tarn Imaging\Quillon\Workstation\MediaCreation"
BY_PKG_CONFIG = ("g++ -std=c++20 docs/host-example/host.cpp "
                 "$(pkg-config --cflags --libs quillon-media) -o host_example")


class InstalledHosts(unittest.TestCase):
    def setUp(self):
        place = tempfile.TemporaryDirectory(prefix="quillon-installed-")
        self.addCleanup(place.cleanup)
        self.dir = Path(place.name)
        prefix = self.dir / "prefix"
        self.environment = dict(os.environ)
        self.succeed("cmake", "--install", BUILD, "--prefix", prefix)
        self.library = next(prefix.glob("lib*/**/libquillon-media.so.0")).parent
        self.environment.update(QUILLON_REGISTRY=str(self.dir / "registry.reg"),
                                TMPDIR=str(self.dir), LD_LIBRARY_PATH=str(self.library),
                                CMAKE_PREFIX_PATH=str(prefix),
                                PKG_CONFIG_PATH=str(self.library / "pkgconfig"))
        self.succeed(prefix / "bin/quillon", "register")

    def start(self, *command, cwd=None):
        return subprocess.run([str(part) for part in command], cwd=cwd or self.dir,
                              env=self.environment, capture_output=True, text=True, timeout=300)

    def succeed(self, *command, cwd=None):
        run = self.start(*command, cwd=cwd)
        self.assertEqual((run.returncode, run.stderr), (0, ""), run.stdout)
        return run.stdout

    def input(self, name):
        """Two objects, one of them with a VR that nobody knows, which the toolkit logs."""
        source = self.dir / name
        (source / "below").mkdir(parents=True)
        odd = struct.pack("<HH2sH", 0x0008, 0x1030, b"Q?", 4) + b"odd "
        (source / "one").write_bytes(dicom_file())
        (source / "below/two").write_bytes(dicom_file(instance="2.25.1.1.1.2",
                                                      more={0x00081030: odd}))
        return source

    def hosts(self):
        (self.dir / "docs").symlink_to(SOURCE / "docs")
        self.succeed("sh", "-c", BY_PKG_CONFIG)
        self.succeed("cmake", "-S", EXAMPLE, "-B", "tree")
        self.succeed("cmake", "--build", "tree")
        return {"python": ["/usr/bin/python3", "-B", EXAMPLE / "host.py"],
                "pkg-config": [self.dir / "host_example"],
                "cmake": [self.dir / "tree/host_example"]}

    def assert_delivers(self, host, source, place):
        """A target that cannot be made leaves the set where it is; one that can leaves no root."""
        self.write_practice(1)
        root, target = place / "set", place / "out"
        place.mkdir()
        target.write_text("in the way")
        run = self.start(*host, source, root, "DOE^JOHN", target)
        self.assertEqual(run.returncode, 1, run.stdout)
        self.assertIn(f"Cannot create the directory {target.name} for", run.stderr)
        self.succeed(self.dir / "prefix/bin/quillon", "verify", root)
        target.unlink()
        again = self.input(place.name + " again")
        self.succeed(*host, again, place / "other", "DOE^JOHN", target)
        self.assertFalse((place / "other").exists())
        self.succeed("sha256sum", "--quiet", "-c", "SHA256SUMS", cwd=target)
        self.succeed(self.dir / "prefix/bin/quillon", "verify", target)
        self.write_practice(0)

    def write_practice(self, value):
        self.succeed(self.dir / "prefix/bin/quillon", "config", "set", "CurrentPractice", value)

    def test_hosts_are_built_and_make_file_sets(self):
        readme = (SOURCE / "README.md").read_text()
        self.assertIn(BY_PKG_CONFIG, " ".join(readme.replace("\\\n", " ").split()))
        log = self.dir / "toolkit.log"
        hosts = self.hosts()
        for name, host in hosts.items():
            with self.subTest(name):
                source, root = self.input("in " + name), self.dir / ("set " + name)
                printed = self.succeed(*host, source, root, "DOE^JOHN")
                self.assertTrue((root / "DICOMDIR").is_file())
                self.assertEqual(len(list((root / "DICOMOBJ").iterdir())), 2)
                if name == "python":
                    result = json.loads(printed)
                    self.assertEqual((result["root"], result["files"]), (str(root), 2))
                    self.assertIn("DOE JOHN", result["label"])
                else:
                    self.assertTrue(printed.startswith(f"2 files in {root}\nPatient Name:"), printed)
                run = self.start(*host, self.dir / "none", root, "DOE^JOHN")
                self.assertEqual((run.returncode, run.stdout), (1, ""))
                self.assertIn("The file search specification", run.stderr)
                self.assertFalse(log.exists())
                self.assert_delivers(host, self.input("for " + name), self.dir / ("a " + name))
        with open(self.environment["QUILLON_REGISTRY"], "a", encoding="utf-8") as registry:
            registry.write(f"\n[{KEY}]\n\"ToolkitLogFile\"=\"{log}\"\n")
        for name, host in hosts.items():
            with self.subTest(name):
                self.succeed(*host, self.input("of " + name), self.dir / ("logged " + name), "X")
                self.assertIn("Invalid VR", log.read_text())
                log.unlink()


if __name__ == "__main__":
    BUILD = Path(sys.argv[1]).resolve()
    unittest.main(argv=[sys.argv[0], "-v", *sys.argv[2:]])
