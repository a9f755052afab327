"""Directory records by SOP class: what others make of the same objects, and what a checker says."""
import json
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
from collections import Counter
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent))
try:
    import pydicom
    from pydicom import fileset
    from every_class import ROOT, classes, data_set, write
except ImportError:
    pydicom = None

QUILLON = None  # set by main

# Where dcmmkdir has another type: it has the two the wrong way round.
DCMMKDIR_SAYS = {ROOT + "4.44.1": "IMPLANT GROUP", ROOT + "4.45.1": "IMPLANT ASSY"}
# pydicom takes what its table lacks for an image. It knows these by an element of theirs, or not yet.
PYDICOM_LACKS = {"ENCAP DOC", "RT PLAN", "PLAN", "RADIOTHERAPY", "ANNOTATION", "INVENTORY",
                 "WF PRESENTATION", "OVERLAY", "CURVE", "MODALITY LUT", "VOI LUT", "STORED PRINT",
                 "PRIVATE"}
PYDICOM_LACKS_CLASSES = {ROOT + "4.1.1." + end for end in (
    "9.1", "9.1.4", "11.6", "11.7", "11.8", "11.9", "11.10", "11.11", "11.12", "78.8", "88.1",
    "88.2", "88.3", "88.4", "88.76", "88.77")}
# Types and keys that dciodvfy does not know, and those that it misses in stereometric and
# spectroscopy records, where the standard has none or asks for them when there are some.
DCIODVFY_DOES_NOT_KNOW = re.compile(
    r"Unrecognized enumerated value <(PLAN|SURFACE SCAN|TRACT|ASSESSMENT|ANNOTATION|INVENTORY|"
    r"WF PRESENTATION|OVERLAY|CURVE|MODALITY LUT|VOI LUT|STORED PRINT)>|"
    r"ReferencedImageEvidenceSequence|Module=<ContentIdentificationMacro>|"
    r"not a recognized standard attribute - \(0x0008,0x04..\)")
CDA = "1.2.840.10008.5.1.4.1.1.104.2"
LEVELS = {"PATIENT": ["PatientID", "PatientName"], "SERIES": ["SeriesNumber"],
          "STUDY": ["StudyDate", "StudyTime", "StudyID"], "IMAGE": ["InstanceNumber"],
          "RT DOSE": ["InstanceNumber"]}


def run(*command, **how):
    return subprocess.run([os.fspath(part) for part in command], stdout=subprocess.PIPE,
                          stderr=subprocess.PIPE, timeout=300, **how)


def errors(dicomdir):
    """What dciodvfy has against the records, without where."""
    report = run("dciodvfy", dicomdir)
    lines = (report.stdout + report.stderr).decode(errors="replace").splitlines()
    return Counter(re.sub(r"\[\d+\]", "", line) for line in lines if line.startswith("Error"))


def types(dicomdir):
    """The record type of each referenced SOP class."""
    return {item.ReferencedSOPClassUIDInFile: item.DirectoryRecordType
            for item in pydicom.dcmread(dicomdir).DirectoryRecordSequence
            if "ReferencedFileID" in item}


class RecordTypes(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        if pydicom is None or not all(map(shutil.which, ("dcmmkdir", "dciodvfy"))):
            raise unittest.SkipTest("pydicom, dcmmkdir or dciodvfy is not installed")
        cls.dir = Path(tempfile.mkdtemp(prefix="quillon-records-"))
        cls.addClassCleanup(shutil.rmtree, cls.dir)

    def create(self, name, source, *options, status=0):
        root = self.dir / name
        made = run(QUILLON, "create", "--json", "--root", root, *options, source,
                   env={**os.environ, "QUILLON_REGISTRY": str(self.dir / "none.reg")})
        self.assertEqual(made.returncode, status, made.stderr)
        return root, json.loads(made.stdout), made.stderr.decode()

    def dcmmkdir(self, source, *options):
        """Its DICOMDIR of the files in a directory, copied first: it takes names of a medium only."""
        place = self.dir / "theirs" / source.name
        place.mkdir(parents=True)
        names = []
        for path in sorted(path for path in source.rglob("*") if path.is_file()):
            names.append(f"F{len(names):05d}")
            shutil.copy(path, place / names[-1])
        made = run("dcmmkdir", "-nb", "-Nxc", *options, "+D", "DICOMDIR", *names, cwd=place)
        self.assertTrue((place / "DICOMDIR").exists(), made.stderr)
        return place / "DICOMDIR"

    def test_every_storage_class_has_the_type_that_others_give_it(self):
        source = self.dir / "classes"
        for i, uid in enumerate(classes()):
            changes = {} if uid != CDA else {"MIMETypeOfEncapsulatedDocument": "text/XML",
                                             "HL7InstanceIdentifier": "2.25.3^DOCUMENT"}
            write(data_set(uid, i, **changes), source / f"A{i:03d}")
        root, result, _ = self.create("every", source)
        self.assertEqual(result["objects"], len(classes()))
        self.assertEqual(result["incomplete"], [])
        ours = types(root / "DICOMDIR")
        self.assertEqual(sorted(ours), sorted(classes()))
        for uid, theirs in types(self.dcmmkdir(source, "+Nrs", "+I")).items():
            self.assertEqual(DCMMKDIR_SAYS.get(uid, ours[uid]), theirs, uid)
        tables = {**fileset._FOUR_LEVEL_SOP_CLASSES, **fileset._SINGLE_LEVEL_SOP_CLASSES}
        for uid, kind in ours.items():
            is_lacking = kind in PYDICOM_LACKS or uid in PYDICOM_LACKS_CLASSES
            self.assertEqual(tables.get(uid, "IMAGE"), "IMAGE" if is_lacking else kind, uid)
        self.assertEqual([line for line in errors(root / "DICOMDIR")
                          if not DCIODVFY_DOES_NOT_KNOW.search(line)], [])

    def test_a_class_that_nobody_knows_is_private_with_its_uid(self):
        write(data_set("2.25.11.22", 1), self.dir / "unknown" / "A")
        root, _, _ = self.create("private", self.dir / "unknown")
        last = pydicom.dcmread(root / "DICOMDIR").DirectoryRecordSequence[-1]
        self.assertEqual((last.DirectoryRecordType, last.PrivateRecordUID), ("PRIVATE", "2.25.11.22"))
        self.assertEqual(errors(root / "DICOMDIR"), Counter())

    def lacking(self, name, **changes):
        """Objects of two patients with two studies of two series, every second complete."""
        number = 0
        for patient in range(2):
            for study in range(2):
                for series in range(2):
                    for instance in range(2):
                        uid = f"2.25.5.{patient}.{study}"
                        all_changes = {
                            "PatientName": f"NAME{patient}", "PatientID": f"ID{patient}",
                            "StudyInstanceUID": uid, "SeriesInstanceUID": f"{uid}.{series}",
                            "SOPInstanceUID": f"{uid}.{series}.{instance}",
                            "SeriesNumber": str(40 + series),
                            "InstanceNumber": str(90 + instance), **changes}
                        kind = "4.1.1.2" if series == 0 else "4.1.1.481.2"
                        write(data_set(ROOT + kind, 1, **all_changes),
                              self.dir / name / f"F{number:05d}")
                        number += 1
        return self.dir / name

    def levels(self, dicomdir):
        return [(item.DirectoryRecordType, *[str(item.get(keyword)) for keyword in
                                             LEVELS[item.DirectoryRecordType]])
                for item in pydicom.dcmread(dicomdir).DirectoryRecordSequence]

    def test_what_is_missing_is_told_refused_or_made_up_as_dcmmkdir_does(self):
        rows = {
            "ids": {"PatientID": None}, "study": {"StudyID": None}, "number": {"SeriesNumber": ""},
            "instance": {"InstanceNumber": None}, "date": {"StudyDate": ""},
            "time": {"StudyDate": None, "StudyTime": "", "SeriesDate": None, "SeriesTime": "101112",
                     "AcquisitionDate": "20220202"},
            "all": {"PatientID": "", "StudyID": "", "SeriesNumber": None, "InstanceNumber": ""},
        }
        for name, changes in rows.items():
            with self.subTest(name):
                source = self.lacking(name, **changes)
                missing = {keyword for keyword, value in changes.items() if not value
                           and keyword != "SeriesDate"}
                root, result, said = self.create(name + "1", source)
                told = {re.sub(r" \(.*| ", "", one["key"]) for one in result["incomplete"]}
                self.assertEqual(told, missing)
                # There is a usual Study ID.
                made_up = missing & {"StudyID"}
                self.assertEqual(said.count("made up."), len(made_up), said)
                self.assertEqual(said.count("is incomplete without it."), len(missing - made_up),
                                 said)
                _, refused, said = self.create(name + "2", source, "--strict", status=1)
                self.assertIn("which a DICOMDIR requires.", said)
                self.assertEqual(refused["objects"], 0)
                root, result, said = self.create(name + "3", source, "--invent", "--strict")
                self.assertEqual(said.count("made up."), len(missing), said)
                self.assertEqual(self.levels(root / "DICOMDIR"),
                                 self.levels(self.dcmmkdir(source, "+I")))
                self.assertEqual(errors(root / "DICOMDIR"), Counter())

    def test_a_checker_has_less_against_the_directory_of_real_files_than_against_dcmmkdirs(self):
        data = Path(pydicom.__file__).parent / "data" / "test_files"
        if not data.is_dir():
            self.skipTest("pydicom's sample files are not installed")
        root, result, _ = self.create("real", data, "--keep-going", "--invent")
        ours = errors(root / "DICOMDIR")
        theirs = errors(self.dcmmkdir(data, "+I"))
        self.assertEqual({line: count for line, count in ours.items() if line not in theirs}, {})
        self.assertLess(sum(ours.values()), sum(theirs.values()))


if __name__ == "__main__":
    QUILLON = os.path.abspath(sys.argv[1])
    unittest.main(argv=[sys.argv[0], "-v", *sys.argv[2:]], warnings="ignore")
