"""The server as its hosts meet it.

    server_test.py LINUX_BUILD                          on this system
    server_test.py LINUX_BUILD WINDOWS_BUILD [--tree D]  under Wine, beside this system

What com_client prints for job.txt and module.txt stands in *.expected beside this file, for both
systems; --write-expected writes what this system prints. The file sets of both are compared byte by
byte but for the generated UID of the DICOMDIR. With a Windows build the last line on standard output
counts the Windows tests.
"""
import argparse
import difflib
import re
import shutil
import struct
import subprocess
import sys
import unittest
from pathlib import Path

import hosts
import windows_file

HERE = Path(__file__).parent
STYLESHEET = """<?xml version="1.0" encoding="UTF-8"?>
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
<xsl:output method="text"/>
<xsl:template match="/"><xsl:for-each select="//*[not(*)]"><xsl:value-of select="name()"/>
<xsl:text>=</xsl:text><xsl:value-of select="normalize-space(.)"/><xsl:text>;</xsl:text>
</xsl:for-each></xsl:template>
</xsl:stylesheet>
"""
OPTIONS = None
UNIT_TESTS_RUN = []  # how many each of the Windows programs ran

REGISTERED = f"""[AppID\\{hosts.APP}]
@=QuillonMediaRW
[AppID\\QuillonMediaRW.DLL]
AppID={hosts.APP}
[CLSID\\{hosts.CLASS}]
@=QuillonMediaRW Class
AppID={hosts.APP}
[CLSID\\{hosts.CLASS}\\InprocServer32]
@=$MODULE
ThreadingModel=Apartment
[CLSID\\{hosts.CLASS}\\ProgID]
@=QuillonMediaRW.QuillonMediaRW.1
[CLSID\\{hosts.CLASS}\\Programmable]
[CLSID\\{hosts.CLASS}\\TypeLib]
@={hosts.LIBRARY}
[CLSID\\{hosts.CLASS}\\VersionIndependentProgID]
@=QuillonMediaRW.QuillonMediaRW
[QuillonMediaRW.QuillonMediaRW]
@=QuillonMediaRW Class
[QuillonMediaRW.QuillonMediaRW\\CLSID]
@={hosts.CLASS}
[QuillonMediaRW.QuillonMediaRW\\CurVer]
@=QuillonMediaRW.QuillonMediaRW.1
[QuillonMediaRW.QuillonMediaRW.1]
@=QuillonMediaRW Class
[QuillonMediaRW.QuillonMediaRW.1\\CLSID]
@={hosts.CLASS}
"""


def make_input(directory):
    samples = OPTIONS.linux / "bin/make_sample_objects"
    subprocess.run([samples, directory / "in/tree"], check=True, capture_output=True)
    files = sorted(p for p in (directory / "in/tree").rglob("*") if p.is_file())
    # A tree that holds DICOM files only: the first other one would end the walk.
    for path in files:
        data = path.read_bytes()
        if data[128:132] != b"DICM":
            path.unlink()
    objects = sorted(p for p in (directory / "in/tree").rglob("*") if p.is_file())
    shutil.copy(objects[0], directory / "in/header.dcm")
    objects[0].rename(directory / "in/one.dcm")
    (directory / "in/text.txt").write_text("Not a DICOM file, whatever its name.")
    (directory / "in/sheet.xsl").write_text(STYLESHEET)


def tree(directory):
    return {str(p.relative_to(directory)): p.read_bytes()
            for p in sorted(directory.rglob("*")) if p.is_file()}


def without_instance_uid(dicomdir):
    """The DICOMDIR without its generated Media Storage SOP Instance UID (0002,0003), whose length
    may differ too: what depends on it is counted from the end of the file meta information."""
    def header(tag, vr):
        return struct.pack("<HH", tag >> 16, tag & 0xFFFF) + vr
    at = dicomdir.index(header(0x00020003, b"UI"))
    length = struct.unpack_from("<H", dicomdir, at + 6)[0]
    group = dicomdir.index(header(0x00020000, b"UL")) + 8
    end = group + 4 + struct.unpack_from("<I", dicomdir, group)[0]
    meta = dicomdir[:group] + bytes(4) + dicomdir[group + 4:at] + dicomdir[at + 8 + length:end]
    data = bytearray(dicomdir[end:])
    for tag in (0x00041200, 0x00041202, 0x00041400, 0x00041420):
        offset = header(tag, b"UL") + b"\x04\x00"
        place = data.find(offset)
        while place >= 0:
            value = struct.unpack_from("<I", data, place + 8)[0]
            if value:
                struct.pack_into("<I", data, place + 8, value - end)
            place = data.find(offset, place + 12)
    return meta + bytes(data)


class ServerTest(unittest.TestCase):
    maxDiff = None

    def assertSameText(self, got, expected, what):
        if got != expected:
            lines = difflib.unified_diff(expected.splitlines(), got.splitlines(), "expected", what,
                                         lineterm="", n=1)
            self.fail("\n" + "\n".join(lines))

    def assertExpected(self, host, name):
        got = host.script((HERE / f"{name}.txt").read_text())
        for other, ours in host_wordings(host):
            got = got.replace(other, ours)
        expected = HERE / f"{name}.expected"
        if OPTIONS.write_expected:
            expected.write_text(got)
        self.assertSameText(got, expected.read_text(), name)

    def registration(self, host, listing):
        """Registering and unregistering, each twice."""
        self.assertIn("create x -> 0x800401F3", host.script('create "x"'))
        for _ in range(2):
            result = host.register()
            self.assertEqual(result.returncode, 0, result.stderr)
            self.assertSameText(self.registry(host), listing, "registered")
        for _ in range(2):
            result = host.unregister()
            self.assertEqual(result.returncode, 0, result.stderr)
            self.assertSameText(self.registry(host), "", "unregistered")
        self.assertIn("0x800401F3", host.script('create "QuillonMediaRW.QuillonMediaRW"'))
        self.assertIn("0x80040154", host.script(f'create "{hosts.CLASS}"'))
        exports = 'module "$MODULE"\nregister\nregister\nunregister\nunregister\nregister\n'
        self.assertEqual(host.script(exports).count("register -> 0x00000000"), 5)

    @staticmethod
    def registry(host):
        return host.script("registry").replace(host.name(host.module), "$MODULE")

    def whole_job(self, host):
        make_input(host.directory)
        self.assertExpected(host, "job")
        made = tree(host.directory / "set")
        self.assertEqual(made, tree(host.directory / "copy"))
        self.assertIn("DICOMDIR", made)
        return made

    def example(self, host):
        make_input(host.directory / "example")
        result = host.run(host.example, host.name(host.directory / "example/in/tree"),
                          host.name(host.directory / "example/set"), "DOE")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertRegex(result.stdout, r"(?m)^\d+ files in .*set")
        self.assertIn("DICOMDIR", tree(host.directory / "example/set"))

    def host_in_full(self, host, listing):
        self.registration(host, listing)
        made = self.whole_job(host)
        self.assertExpected(host, "module")
        self.example(host)
        return made

    def test_on_this_system(self):
        with hosts.LinuxHost(OPTIONS.linux) as host:
            self.host_in_full(host, REGISTERED)
        result = hosts.LinuxHost(OPTIONS.linux)
        with result as host:
            missing = host.run(host.quillon, "register", "nothing.so")
            self.assertEqual(missing.returncode, 1)
            self.assertIn("quillon: Cannot register " + str(host.directory), missing.stderr)

    def test_the_library_exports_four_functions(self):
        out = subprocess.run(["nm", "-D", "--defined-only",
                              OPTIONS.linux / "lib/quillon/libQuillonMediaRW.so"],
                             check=True, capture_output=True, text=True).stdout
        self.assertEqual([line.split()[-1] for line in out.splitlines()],
                         ["DllCanUnloadNow", "DllGetClassObject", "DllRegisterServer",
                          "DllUnregisterServer"])


def windows_xp_exports():
    """(DLL, name) of all that windows_xp_exports.txt lists."""
    names, dll = set(), ""
    for line in (HERE / "windows_xp_exports.txt").read_text().splitlines():
        if line.startswith("["):
            dll = line.strip("[]")
        elif line and not line.startswith("#"):
            names.add((dll, line))
    return names


def host_wordings(host):
    """Sentences that are the platform's own, in Wine's words and in those of the layer."""
    if not isinstance(host, hosts.WineHost):
        return []
    return [
        # Wine has no class for the shell's burner.
        ('"Cannot initialize the IMAPI interface instance."',
         '"There is no recordable drive present."'),
        # All that Wine's XML library says of a file that is not there.
        ('"error"', '"The file "$DIR/in/missing.xsl" cannot be read: The system cannot find the '
                    'file specified."'),
    ]


class WindowsFileTest(unittest.TestCase):
    """What can be seen of the DLL without running it."""

    maxDiff = None
    SYSTEM = {"advapi32.dll", "kernel32.dll", "msvcrt.dll", "ole32.dll", "oleaut32.dll",
              "shell32.dll", "user32.dll"}

    def setUp(self):
        if not OPTIONS.windows:
            self.skipTest("no Windows build was named")
        self.dll = OPTIONS.windows / "bin/QuillonMediaRW.dll"
        self.file = windows_file.PortableExecutable(self.dll)
        self.dump = subprocess.run(["i686-w64-mingw32-objdump", "-p", self.dll], check=True,
                                   capture_output=True, text=True).stdout

    def test_needs_no_dll_but_those_of_windows(self):
        needed = {dll for dll, _ in self.file.imports()}
        self.assertEqual(needed - self.SYSTEM, set())

    def test_loads_on_windows_xp(self):
        """XP refuses a DLL for one import that it lacks, or a newer version in the header."""
        imports = set(self.file.imports())
        self.assertIn(("kernel32.dll", "GetLastError"), imports)
        missing = sorted(f"{dll}!{name}" for dll, name in imports - windows_xp_exports())
        self.assertEqual(missing, [], "imports that windows_xp_exports.txt does not list")
        for version in self.file.versions():
            self.assertLessEqual(version, (5, 1))

    def test_type_library_takes_the_base_types_from_stdole2(self):
        """A copy of its own would be another IDispatch for tools that compare types."""
        library = windows_file.TypeLibrary(self.file.resource(windows_file.TYPE_LIBRARY, 1))
        dispatch = "{00020400-0000-0000-C000-000000000046}"
        self.assertEqual(library.imports, [("stdole2.tlb", "{00020430-0000-0000-C000-000000000046}",
                                            (2, 0))])
        self.assertEqual(library.references, [dispatch])
        self.assertEqual(library.types, {"IQuillonMediaRW": dispatch, "QuillonMediaRW": None})

    def test_exports_four_functions(self):
        names = self.dump[self.dump.index("[Ordinal/Name Pointer] Table"):].split("\n\n")[0]
        self.assertEqual([line.split()[-1] for line in names.splitlines()[1:] if "[" in line],
                         ["DllCanUnloadNow", "DllGetClassObject", "DllRegisterServer",
                          "DllUnregisterServer"])

    def test_carries_every_message_script_and_help_text(self):
        data = self.dll.read_bytes()
        table = subprocess.run([OPTIONS.linux / "bin/com_client", "/dev/stdin"], input="table",
                               check=True, capture_output=True, text=True).stdout
        helps = {line.split('"', 1)[1][:-1] for line in table.splitlines()}
        self.assertEqual(len(table.splitlines()), 41)
        self.assertEqual([text for text in helps if text.encode() not in data], [])
        scripts = HERE.parent.parent / "src/server/com_server/scripts"
        for script in scripts.glob("*.rgs"):
            self.assertIn(script.read_bytes(), data)
        messages = HERE.parent.parent / "resources/messages.inc"
        for line in messages.read_text().splitlines():
            if line.startswith("QUILLON_MESSAGE("):
                text = line.split(', "', 1)[1].rsplit('")', 1)[0]
                text = text.replace('\\"', '"').replace("\\\\", "\\").replace("\\n", "\n")
                self.assertIn(struct.pack("<H", len(text)) + text.encode("utf-16-le"), data, text)


class WineTest(ServerTest):
    def setUp(self):
        if not OPTIONS.windows or OPTIONS.no_wine:
            self.skipTest("Wine or the Windows build is missing")

    test_on_this_system = None
    test_the_library_exports_four_functions = None

    def test_under_wine_as_on_this_system(self):
        with hosts.LinuxHost(OPTIONS.linux) as linux, \
                hosts.WineHost(OPTIONS.windows, OPTIONS.tree) as wine:
            linux.register()
            here = self.whole_job(linux)
            there = self.host_in_full(wine, self.listing(wine))
            self.assertEqual(list(there), list(here))
            for name, data in here.items():
                other = there[name]
                if name == "DICOMDIR":
                    data, other = without_instance_uid(data), without_instance_uid(other)
                self.assertEqual(other, data, name)
            self.type_library(linux, wine)
            self.assertEqual(wine.unregister().returncode, 0)
            self.assertEqual(self.registry(wine), "")

    def test_unit_tests_pass_as_windows_programs(self):
        programs = unit_test_programs()
        self.assertTrue(programs, "the Windows build has no unit tests")
        with hosts.WineHost(OPTIONS.windows, OPTIONS.tree) as wine:
            for program in programs:
                shutil.copy(program, wine.directory)
                result = wine.run(program.name, "--gtest_brief=1")
                summary = result.stdout.replace("\r", "")
                counts = [line for line in summary.splitlines() if line.startswith("[  ")]
                print(program.name, *counts, flush=True)
                ran, skipped = (re.search(pattern, summary) for pattern in (
                    r"(?m)^\[=+\] (\d+) tests? from .* ran", r"(?m)^\[  SKIPPED \] (\d+) test"))
                UNIT_TESTS_RUN.append(int(ran[1] if ran else 0) - int(skipped[1] if skipped else 0))
                self.assertEqual(result.returncode, 0, summary[-4000:])

    def listing(self, wine):
        """What RegisterTypeLib writes comes on top, in the system's own form."""
        self.assertEqual(wine.register().returncode, 0)
        listing = self.registry(wine)
        self.assertEqual(wine.unregister().returncode, 0)
        self.assertTrue(listing.startswith(REGISTERED), listing)
        rest = listing[len(REGISTERED):]
        for line in (f"[TypeLib\\{hosts.LIBRARY}\\1.0\\409\\win32]\n@=$MODULE\n",
                     f"[Interface\\{hosts.INTERFACE}]\n@=IQuillonMediaRW\n",
                     f"[Interface\\{hosts.INTERFACE}\\TypeLib]\n@={hosts.LIBRARY}\nVersion=1.0\n"):
            self.assertIn(line, rest)
        return listing

    def type_library(self, linux, wine):
        """The 41 operations by the type library, against the table that the code is made of."""
        def lines(text):
            # Documentation is asked for by identifier: a setter is told its getter's text.
            return [line.split('"')[0] if " put " in line else line for line in text.splitlines()]
        table = lines(linux.script("table"))
        self.assertEqual(len(table), 41)
        self.assertEqual(lines(wine.script('typelib "$MODULE"')), table)


def unit_test_programs():
    return sorted((OPTIONS.windows / "bin").glob("*_test.exe"))


def count_of_unit_tests():
    """How many tests the programs hold, seen without running them: each is one such function."""
    symbols = subprocess.run(["i686-w64-mingw32-nm", *unit_test_programs()], check=True,
                             capture_output=True, text=True).stdout
    return len(re.findall(r"_Test8TestBodyEv$", symbols, re.MULTILINE))


def windows_counts(result):
    """The checks of the DLL in this file, and the unit tests as Windows programs."""
    kinds = (WindowsFileTest, WineTest)
    checks = sum(len(unittest.defaultTestLoader.getTestCaseNames(kind)) for kind in kinds)
    skipped = sum(isinstance(test, kinds) for test, _ in result.skipped)
    run = sum(UNIT_TESTS_RUN)
    return (f"Windows tests: {checks - skipped} checks of the DLL run, {skipped} skipped; "
            f"{run} unit tests run, {count_of_unit_tests() - run} skipped")


def main():
    global OPTIONS
    parser = argparse.ArgumentParser()
    parser.add_argument("linux", type=Path)
    parser.add_argument("windows", type=Path, nargs="?")
    parser.add_argument("--tree", help="a system tree with Wine in it")
    parser.add_argument("--no-wine", action="store_true", help="look at the DLL without running it")
    parser.add_argument("--write-expected", action="store_true")
    OPTIONS = parser.parse_args()
    OPTIONS.linux = OPTIONS.linux.resolve()
    OPTIONS.windows = OPTIONS.windows.resolve() if OPTIONS.windows else None
    result = unittest.main(argv=sys.argv[:1], verbosity=2, exit=False).result
    if OPTIONS.windows:
        print(windows_counts(result), flush=True)
    sys.exit(not result.wasSuccessful())


if __name__ == "__main__":
    main()
