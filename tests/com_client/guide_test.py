"""What docs/guide-host.md says of operations and failures, by the Python host of the examples."""
import os
import re
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

SOURCE = Path(__file__).resolve().parents[2]
GUIDE = (SOURCE / "docs/guide-host.md").read_text()
OPERATIONS = SOURCE / "src/server/com_server/include/server/com_server/operations.inc"
sys.path[:0] = [str(SOURCE / "tests/cli"), str(SOURCE / "docs/host-example")]
from program import dicom_file  # noqa: E402

sys.dont_write_bytecode = True  # the examples' directory stays as it is
host = None  # the example, once main has said where its library is


def rows(heading):
    section = GUIDE.split(f"\n## {heading}\n")[1].split("\n## ")[0]
    lines = [line for line in section.splitlines() if line.startswith("| ")]
    return [[cell.strip(" ").strip("`") for cell in line.strip("|").split("|")] for line in lines[1:]]


class Guide(unittest.TestCase):
    def setUp(self):
        place = tempfile.TemporaryDirectory(prefix="quillon-guide-")
        self.addCleanup(place.cleanup)
        self.dir = Path(place.name)
        self.objects = []

    def new(self, key="DOE"):
        media = host.Object(host.PROG_ID)
        self.addCleanup(media.release)
        media.put("DicomRootDirectory", str(self.dir / "ROOT"))
        media.put("PerformDirectCopy", True)
        media.put("DirectCopyDirectory", str(self.dir / "TARGET"))
        if key:
            media.put("UniquePatientId", key)
        return media

    def file(self, **changes):
        path = self.dir / "FILE"
        path.write_bytes(dicom_file(**changes))
        return str(path)

    def added(self, **changes):
        media = self.new()
        media.do("AddFile", self.file(**changes))
        return media

    def prepare(self, when):
        """The object that is to fail, and the arguments of the call."""
        media = self.new("" if when == "no patient is named" else "DOE")
        if when == "no patient is named":
            return media, [self.file()]
        if when == "it is no DICOM file":
            (self.dir / "FILE").write_text("a text of some length")
            return media, [str(self.dir / "FILE")]
        if when == "there is no such directory":
            return media, [str(self.dir / "DIR")]
        if when == "there is no drive":
            media.put("PerformDirectCopy", False)
        elif when == "a source is gone":
            media = self.added()
            (self.dir / "FILE").unlink()
        elif when == "a source is another one now":
            media = self.added()
            self.file(study_date="20090306")
        elif when == "a date is none":
            media = self.added(birth_date="19501399")
        elif when == "two objects have one root":
            self.added().do("CreateDicomFileSet")
            media = self.added(instance="2.25.1.1.1.2")
        elif when == "the target is in the root":
            media = self.added()
            media.do("CreateDicomFileSet")
            media.put("DirectCopyDirectory", str(self.dir / "ROOT/IN"))
        elif when == "a killed job left its objects":
            (self.dir / "ROOT/DICOMOBJ").mkdir(parents=True)
            mark = "Unfinished file set\nmoved\nDICOMOBJ\\QLN00001\tFILE\n"
            (self.dir / "ROOT/UNFINISHED.TXT").write_text(mark)
            (self.dir / "ROOT/DICOMOBJ/QLN00001").write_bytes(dicom_file())
        else:
            self.assertIn(when, ("nothing is added", "nothing was created"))
        return media, []

    def test_failures_are_answered_as_the_guide_says(self):
        table = rows("Usual failures")
        self.assertEqual(len(table), 12)
        for when, call, result, sentence in table:
            with self.subTest(when):
                self.doCleanups()
                self.setUp()
                media, arguments = self.prepare(when)
                answer = media._invoke(host.METHOD, call, *arguments)
                self.assertEqual(answer, ({"S_OK": 0, "S_FALSE": 1}[result], False))
                said = media.get("ErrMessageText").replace(str(self.dir) + "/", "")
                self.assertEqual(said.replace("\\", "/"), sentence)

    def test_operations_are_those_of_the_object(self):
        known = re.findall(r"^QUILLON_\w+\((\d+), (\w+),", OPERATIONS.read_text(), re.M)
        self.assertGreater(len(known), 20)
        media = host.Object(host.PROG_ID)
        self.addCleanup(media.release)
        told = []
        for number, name, kind, default, _ in rows("Operations and properties"):
            told.append((number, name.partition("(")[0]))
            if kind == "flag":
                self.assertEqual(str(media.get(name)), default, name)
            elif default.startswith("`") or name.endswith("Directory") and " " not in default:
                self.assertEqual(media.get(name), default.strip("`"), name)
        self.assertEqual(told, known)

    def test_what_else_lies_in_the_root_goes_along_and_nothing_is_added_of_nothing(self):
        (self.dir / "ROOT").mkdir()
        (self.dir / "ROOT/OTHER").write_text("of another job")
        media = self.added()
        (self.dir / "empty").write_bytes(b"")
        media.do("AddFile", str(self.dir / "empty"))
        self.assertEqual(media.get("TotalNumberOfFilesInFileSet"), 1)
        media.do("CreateDicomFileSet")
        media.do("Write")
        self.assertTrue((self.dir / "TARGET/OTHER").is_file())
        # ClearAfterWrite is on: a failure costs the set, too.
        media = self.added()
        media.do("CreateDicomFileSet")
        (self.dir / "FILE").write_text("in the way")
        media.put("DirectCopyDirectory", str(self.dir / "FILE"))
        self.assertEqual(media._invoke(host.METHOD, "Write"), (1, False))
        self.assertFalse((self.dir / "ROOT").exists())


if __name__ == "__main__":
    build = Path(sys.argv[1]).resolve()
    with tempfile.TemporaryDirectory(prefix="quillon-guide-") as place:
        os.environ.update(QUILLON_REGISTRY=f"{place}/registry.reg", TMPDIR=place,
                          QUILLON_HOST_LIBRARY=str(build / "lib/libquillon-media.so.0"))
        for command in (["register"], ["config", "set", "Service", "none"]):
            subprocess.run([build / "bin/quillon", *command], check=True, stdout=subprocess.DEVNULL)
        import host
        host.com.CoInitialize(None)
        unittest.main(argv=[sys.argv[0], "-v", *sys.argv[2:]])
