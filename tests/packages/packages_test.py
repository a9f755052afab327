"""The packages as their users meet them: installed into a system that has nothing else, where the
commands of the README run as they stand there, hosts are built and run, and nothing remains when the
packages are removed again.

    packages_test.py BUILD PACKAGES
"""
import re
import shutil
import subprocess
import sys
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

    def assert_removed(self, before, *packages):
        self.system.succeed("apt-get purge -qq --autoremove " + " ".join(packages))
        self.assertEqual(self.system.files() - before, set())

    def test_the_commands_of_the_readme(self):
        before = self.system.files()
        told = {}
        install, *job, remove = commands(section("Install"))
        self.system.succeed(install)
        self.system.succeed("apt-get install -qq --no-install-recommends man-db")
        for command in job:
            told[command] = self.system.succeed(command, PAGER="cat", MANWIDTH="100")
        with zipfile.ZipFile(self.system.job / "study.zip") as medium:
            self.assertIn("DICOMDIR", medium.namelist())
            self.assertIsNone(medium.testzip())
        self.assertIn("no findings", told["quillon verify study.zip"])
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
        self.system.succeed("apt-get purge -qq --autoremove man-db")
        self.system.succeed(remove)
        self.assertEqual(self.system.files() - before, set())

    def test_hosts(self):
        tools = "g++ cmake make pkg-config python3-minimal libpython3-stdlib"
        self.system.succeed(f"apt-get install -qq --no-install-recommends {tools}")
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
                            "rm -rf set && cp -r objects more && tree/host_example more set DOE")
        self.system.succeed("quillon verify set && quillon unregister")
        self.assert_removed(before, "quillon", "quillon-optical", "quillon-doc", "libquillon-media0",
                            "libquillon-media-dev")


if __name__ == "__main__":
    BUILD, PACKAGES = (Path(path).resolve() for path in sys.argv[1:3])
    unittest.main(argv=[sys.argv[0], "-v", *sys.argv[3:]])
