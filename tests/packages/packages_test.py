"""The packages as their users meet them: installed into a system that has nothing else, where the
commands of the README run as they stand there, hosts are built and run, and nothing remains when the
packages are removed again.

    packages_test.py BUILD PACKAGES
"""
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
import zipfile
from pathlib import Path

from bare_system import BareSystem, NoSystem

SOURCE = Path(__file__).resolve().parents[2]
README = (SOURCE / "README.md").read_text()
BUILD = None  # set by main
PACKAGES = None


def commands(text):
    """What stands behind a prompt."""
    return [line[6:] for line in text.splitlines() if re.match("    [#$] ", line)]


def section(heading):
    return README.split(f"\n## {heading}\n")[1].split("\n## ")[0]


class Packages(unittest.TestCase):
    def test_lintian_has_no_errors(self):
        changes = list(PACKAGES.glob("*.changes"))
        self.assertEqual(len(changes), 1)
        run = subprocess.run(["lintian", "--allow-root", "--fail-on", "error,warning", *changes],
                             capture_output=True, text=True)
        self.assertEqual(run.returncode, 0, run.stdout + run.stderr)

    def test_the_optical_package_alone_needs_libburn(self):
        for package in PACKAGES.glob("*.deb"):
            depends = subprocess.run(["dpkg-deb", "-f", package, "Depends"], check=True,
                                     capture_output=True, text=True).stdout
            with self.subTest(package.name):
                self.assertEqual("libburn" in depends, package.name.startswith("quillon-optical_"))

    def test_what_was_built_here_is_not_named(self):
        """No path of the machine that built them is in what is installed."""
        for package in PACKAGES.glob("*.deb"):
            if "-dbgsym" in package.name:
                continue
            content = subprocess.run(["dpkg-deb", "--fsys-tarfile", package], check=True,
                                     capture_output=True).stdout
            for path in (str(SOURCE), str(PACKAGES)):
                self.assertNotIn(path.encode(), content, package.name)


class WindowsZip(unittest.TestCase):
    def setUp(self):
        place = self.enterContext(tempfile.TemporaryDirectory(prefix="quillon-zip-"))
        archive, = PACKAGES.glob("*-windows-x86.zip")
        with zipfile.ZipFile(archive) as files:
            files.extractall(place)
        self.dir, = Path(place).iterdir()

    def test_what_the_readme_names_is_there(self):
        text = (self.dir / "README.txt").read_bytes()
        self.assertEqual(text.count(b"\n"), text.count(b"\r\n"))
        named = {name for line in text.decode().splitlines()
                 for names in re.findall(r"^  ([\w.\\-]+(?:, \w+)*) {2,}", line)
                 for name in names.split(", ")}
        self.assertGreater(len(named), 5)
        for name in named:
            self.assertTrue((self.dir / name.replace("\\", "/")).exists(), name)
        for script in ("register.cmd", "unregister.cmd"):
            self.assertIn(b"QuillonMediaRW.dll", (self.dir / script).read_bytes())
        self.assertEqual((self.dir / "QuillonMediaRW.dll").read_bytes()[:2], b"MZ")

    def test_the_example_host_is_built_of_it(self):
        toolchain = SOURCE / "cmake/mingw-i686.cmake"
        for command in (["cmake", "-S", "docs/host-example", "-B", "tree", "-G", "Ninja",
                         f"-DCMAKE_TOOLCHAIN_FILE={toolchain}", f"-DCMAKE_PREFIX_PATH={self.dir}",
                         f"-DQuillonMedia_DIR={self.dir / 'cmake'}"],
                        ["cmake", "--build", "tree"]):
            run = subprocess.run(command, cwd=self.dir, capture_output=True, text=True)
            self.assertEqual(run.returncode, 0, run.stdout + run.stderr)
        self.assertTrue((self.dir / "tree/host_example.exe").exists())


@unittest.skipIf(shutil.which("debootstrap") is None, "debootstrap is not installed")
class Installed(unittest.TestCase):
    def setUp(self):
        try:
            self.system = self.enterContext(BareSystem())
        except NoSystem as reason:
            self.skipTest(f"there is no bare system: {reason}")
        for package in PACKAGES.glob("*.deb"):
            if "-dbgsym" not in package.name:
                shutil.copy(package, self.system.job)
        subprocess.run([BUILD / "bin/make_sample_objects", self.system.job / "objects"], check=True,
                       capture_output=True)

    def assert_nothing_since(self, before):
        """What is the user's may stay: an empty directory of jobs, a registry without the server."""
        self.system.succeed("rmdir ~/.cache/quillon ~/.cache")
        self.assertNotIn("QuillonMediaRW", self.system.succeed("cat ~/.config/quillon/registry.reg || :"))
        self.system.succeed("rm -rf ~/.config")
        self.assertEqual(self.system.files() - before, set())

    def test_the_commands_of_the_readme(self):
        self.system.succeed("apt-get install -qq man-db")
        before = self.system.files()
        told = {}
        install, *job, remove = commands(section("Install"))
        self.system.succeed(install)
        for command in job:
            told[command] = self.system.succeed(command, PAGER="cat", MANWIDTH="100")
        with zipfile.ZipFile(self.system.job / "study.zip") as medium:
            self.assertIn("DICOMDIR", medium.namelist())
            self.assertIsNone(medium.testzip())
        self.assertIn("no findings", told["quillon verify study.zip"])
        self.assertRegex(self.system.succeed("quillon --version"), r"\n  libburn +[\d.]+\n")
        self.assertIn("DOE^JOHN", told["quillon header objects/DOE/SR/IM00001"])
        self.assertIn("--zip", told["man quillon-publish"])
        for page in (SOURCE / "apps/quillon/man").glob("*.1"):
            self.assertTrue(self.system.succeed(f"man {page.stem}", PAGER="cat").strip(), page)
        for command in commands(section("From a folder to a medium")):
            self.system.succeed(f"rm -f study.zip; {command}" if " --zip " in command else command,
                                QUILLON_RECORDERS="/media/job/recorders")
        # XML and pages come with libraries that the program loads.
        self.system.succeed("quillon header --stylesheet html objects/DOE/SR/IM00001")
        self.system.succeed("quillon publish --pdi --to stick objects")
        self.system.succeed("bash -c '. /usr/share/bash-completion/completions/quillon'")
        self.system.succeed(remove)
        self.assert_nothing_since(before)

    def test_hosts(self):
        tools = "g++ cmake make pkg-config python3-minimal libpython3-stdlib"
        self.system.succeed(f"apt-get install -qq {tools}")
        before = self.system.files()
        host_section = section("For makers of workstations")
        self.system.succeed("apt-get install -qq ./quillon-doc_*.deb")
        for command in commands(host_section):
            if command.startswith("apt install"):
                self.system.succeed(command)
        self.system.succeed("ln -s /usr/share/doc/quillon/docs docs; quillon register")
        for command in commands(host_section.replace("\\\n", " ")):
            if not command.startswith(("apt", "quillon")):
                # Each host takes over the objects.
                self.system.succeed("rm -rf set taken; cp -r objects taken")
                told = self.system.succeed(command.replace("objects", "taken"), PYTHONDONTWRITEBYTECODE="1")
                if "host_example taken" in command or "host.py" in command:
                    self.assertIn("DOE JOHN", told)
        self.system.succeed("cmake -S docs/host-example -B tree && cmake --build tree && "
                            "rm -rf set && cp -r objects/DOE more && tree/host_example more set DOE")
        self.system.succeed("quillon verify set && quillon unregister")
        self.assertRegex(self.system.succeed("quillon --version"),
                         r"\n  libburn +not installed \(package quillon-optical\)\n")
        self.system.succeed("apt-get purge -qq --autoremove quillon quillon-doc libquillon-media0 "
                            "libquillon-media-dev")
        self.assert_nothing_since(before)


if __name__ == "__main__":
    BUILD, PACKAGES = (Path(path).resolve() for path in sys.argv[1:3])
    unittest.main(argv=[sys.argv[0], "-v", *sys.argv[3:]])
