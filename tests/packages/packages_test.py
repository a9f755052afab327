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


def broken_links(directory):
    """Of the Markdown files below it: what a page refers to, from where it lies, must be there."""
    links = [(page, link) for page in directory.rglob("*.md")
             for link in re.findall(r"\]\(([^)\s]+)\)", page.read_text())
             if not re.match(r"[a-z]+:|#", link)]
    assert len(links) > 50, links
    return [f"{page.relative_to(directory)}: {link}" for page, link in links
            if not (page.parent / link.split("#")[0]).exists()]


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

    def test_every_link_leads_somewhere(self):
        place = self.enterContext(tempfile.TemporaryDirectory(prefix="quillon-doc-"))
        for package in PACKAGES.glob("*.deb"):
            if "-dbgsym" not in package.name:
                subprocess.run(["dpkg-deb", "--extract", package, place], check=True)
        self.assertEqual(broken_links(Path(place)), [])


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
        for script, calls in (("register.cmd", b'%* "%~dp0QuillonMediaRW.dll"\r\n'),
                              ("unregister.cmd", b'"%~dp0register.cmd" /u %*\r\n')):
            self.assertIn(calls, (self.dir / script).read_bytes())
        dll = (self.dir / "QuillonMediaRW.dll").read_bytes()
        self.assertEqual(dll[:2], b"MZ")
        version = re.fullmatch("QuillonMediaRW-(.*)-windows-x86", self.dir.name)[1]
        self.assertIn("FileVersion\0\0" + version + "\0", dll.decode("utf-16-le", "replace"))

    def test_every_link_leads_somewhere(self):
        self.assertEqual(broken_links(self.dir), [])

    def test_the_example_host_is_built_of_it(self):
        """As the README says, in a directory whose name has a blank, but for Visual Studio."""
        place = self.dir.rename(self.dir.with_name("quillon media"))
        configure, build = re.search(r'    (cmake -S .*) && (cmake --build .*)\r\n',
                                     (place / "README.txt").read_bytes().decode()).groups()
        # Ours keeps packages that this system has for itself out of the DLL.
        toolchain = Path(place.parent / "toolchain.cmake")
        toolchain.write_text(f'include("{SOURCE / "cmake/mingw-i686.cmake"}")\n'
                             'set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE BOTH)\n')
        self.assertIn(" -A Win32 ", configure)
        configure = configure.replace("-A Win32", f"-G Ninja '-DCMAKE_TOOLCHAIN_FILE={toolchain}'")
        for command in (configure.replace("\\", "/").replace("%CD%", "$PWD"), build):
            run = subprocess.run(command, shell=True, cwd=place, capture_output=True, text=True)
            self.assertEqual(run.returncode, 0, run.stdout + run.stderr)
        self.assertTrue((place / "build/host_example.exe").exists())


@unittest.skipIf(shutil.which("debootstrap") is None, "debootstrap is not installed")
class Installed(unittest.TestCase):
    ran = 0

    def setUp(self):
        try:
            self.system = self.enterContext(BareSystem())
        except NoSystem as reason:
            self.skipTest(f"there is no bare system: {reason}")
        Installed.ran += 1
        for package in PACKAGES.glob("*.deb"):
            if "-dbgsym" not in package.name:
                shutil.copy(package, self.system.job)
        subprocess.run([BUILD / "bin/make_sample_objects", self.system.job / "objects"], check=True,
                       capture_output=True)

    def next_release(self, name):
        """The package as another release would have it; answers its file in the system."""
        package, = PACKAGES.glob(f"{name}_*.deb")
        tree = self.system.job.parent / name
        subprocess.run(["dpkg-deb", "--raw-extract", package, tree], check=True)
        control = tree / "DEBIAN/control"
        version = re.search("(?m)^Version: (.*)$", control.read_text())[1]
        control.write_text(control.read_text().replace(version, "1:9"))
        file = f"{name}_9.deb"
        subprocess.run(["dpkg-deb", "-Znone", "--build", tree, self.system.job / file],
                       check=True, capture_output=True)
        shutil.rmtree(tree)
        return f"./{file}"

    def assert_upgrades_take_all_or_tell(self):
        """An upgrade without the library for drives takes it away, and says so, even where the other
        package that it serves stays."""
        self.system.succeed("apt-get install -qq ./libquillon-media0_*.deb")
        program, drives = self.next_release("quillon"), self.next_release("quillon-optical")
        library = self.next_release("libquillon-media0")
        told = self.system.succeed(f"apt-get install -s {program}")
        self.assertRegex(told, r"(?m)^Remv quillon-optical ")
        told = self.system.succeed(f"apt-get install -s {program} {drives} {library}")
        self.assertNotIn("\nRemv ", told)
        self.assertRegex(told, r"(?m)^Inst quillon-optical .*\(1:9 ")
        self.system.succeed("apt-get purge -qq libquillon-media0; rm *_9.deb")

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
        self.assert_upgrades_take_all_or_tell()
        self.system.succeed(remove)
        # Of a system of its own, where nobody else's packages wait to be removed.
        self.system.succeed("apt-get autoremove -qq --purge")
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
        # Recipes are run where the package has put them, and find each other there.
        self.system.succeed("cp -r objects/DOE study && docs/recipes/take-in.sh study spool && "
                            "quillon verify spool/media/study.zip && test -d spool/done/study")
        self.assertRegex(self.system.succeed("quillon --version"),
                         r"\n  libburn +not installed \(package quillon-optical\)\n")
        self.system.succeed("apt-get purge -qq --autoremove quillon quillon-doc libquillon-media0 "
                            "libquillon-media-dev")
        self.assert_nothing_since(before)


def counted(program):
    """A line of how many tests of the bare system ran, and why others did not."""
    reasons = [reason for case, reason in program.result.skipped if isinstance(case, Installed)]
    why = f" ({'; '.join(sorted(set(reasons)))})" if reasons else ""
    return f"Bare system: {Installed.ran} tests run, {len(reasons)} skipped{why}"


if __name__ == "__main__":
    BUILD, PACKAGES = (Path(path).resolve() for path in sys.argv[1:3])
    ended = unittest.main(argv=[sys.argv[0], "-v", *sys.argv[3:]], exit=False)
    print(counted(ended), flush=True)
    sys.exit(not ended.result.wasSuccessful())
