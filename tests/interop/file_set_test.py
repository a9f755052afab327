"""File sets that quillon makes, read by programs that have nothing to do with it."""
import json
import os
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent))
from directory_records import object_files, records  # noqa: E402

try:
    import pydicom
    from pydicom.fileset import FileSet
except ImportError:
    pydicom = None

QUILLON = SAMPLES = None  # set by main

# Record type: keys that must be those of the file (of the first one below, for the upper levels).
KEYS = {
    "PATIENT": ["PatientName", "PatientID", "PatientBirthDate", "PatientSex", "PatientAge"],
    "STUDY": ["StudyDate", "StudyTime", "AccessionNumber", "StudyDescription", "StudyInstanceUID"],
    "SERIES": ["SeriesDate", "Modality", "SeriesInstanceUID", "SeriesNumber"],
    "IMAGE": ["InstanceNumber", "SOPInstanceUID"],
    "SR DOCUMENT": ["ContentDate", "ContentTime", "InstanceNumber", "CompletionFlag",
                    "VerificationFlag", "ConceptNameCodeSequence", "SOPInstanceUID"],
    "PRESENTATION": ["ContentLabel", "ContentDescription", "PresentationCreationDate",
                     "PresentationCreationTime", "ContentCreatorName", "InstanceNumber",
                     "ReferencedSeriesSequence", "SOPInstanceUID"],
    "KEY OBJECT DOC": ["ContentDate", "ContentTime", "InstanceNumber", "ConceptNameCodeSequence",
                       "SOPInstanceUID"],
}
OF_OBJECTS = ["InstanceNumber", "SOPInstanceUID"]  # of other types

# What the sample tree becomes: File ID below the object directory, record type.
SAMPLE_LAYOUT = [
    ("P0000001/S0000001/E0000001", 1, "IMAGE"), ("P0000001/S0000001/E0000001", 2, "IMAGE"),
    ("P0000001/S0000001/E0000001", 3, "IMAGE"), ("P0000001/S0000001/E0000002", 4, "IMAGE"),
    ("P0000001/S0000001/E0000002", 5, "IMAGE"), ("P0000001/S0000001/E0000003", 6, "SR DOCUMENT"),
    ("P0000001/S0000001/E0000004", 7, "PRESENTATION"),
    ("P0000001/S0000001/E0000005", 8, "KEY OBJECT DOC"), ("P0000001/S0000002/E0000001", 9, "IMAGE"),
    ("P0000001/S0000002/E0000001", 10, "IMAGE"), ("P0000002/S0000001/E0000001", 11, "IMAGE"),
]


def judge(name):
    found = shutil.which(name)
    if found is None:
        raise unittest.SkipTest(f"{name} is not installed")
    return found


def need_pydicom():
    if pydicom is None:
        raise unittest.SkipTest("pydicom is not installed for " + sys.executable)


def run(*command):
    return subprocess.run([os.fspath(part) for part in command], stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, env={**os.environ, "LC_ALL": "C"}, timeout=300)


def values_of(data_set, keyword):
    """As the encoded value has it: absent and empty are the same, white space at its end is none."""
    value = data_set.get(keyword)
    if value is None or value == "":
        return ""
    if isinstance(value, pydicom.Sequence):
        return list(value)
    if isinstance(value, pydicom.valuerep.PersonName):
        # The record has no character set of its own: what counts are the bytes.
        encoded = value.original_string
        return encoded.rstrip(b" ") if isinstance(encoded, bytes) else str(value).rstrip()
    return str(value).strip()


class FileSets(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.dir = Path(tempfile.mkdtemp(prefix="quillon-interop-"))
        cls.addClassCleanup(shutil.rmtree, cls.dir)
        cls.samples = cls.dir / "samples"
        subprocess.run([SAMPLES, cls.samples], check=True, stdout=subprocess.DEVNULL)
        cls.sets = {
            "sample objects": cls.make("flat", [cls.samples]),
            "sample objects with the hierarchy": cls.make("tree", [cls.samples], "--hierarchy"),
        }
        data = Path("/usr/lib/python3/dist-packages/pydicom/data")
        if (data / "test_files").is_dir():
            cls.sets["pydicom's files"] = cls.make(
                "pydicom", [data / "test_files", data / "charset_files"], "--keep-going")
        else:
            print("skipped: pydicom's sample files are not installed", file=sys.stderr)

    @classmethod
    def make(cls, name, sources, *options):
        root = cls.dir / name
        made = subprocess.run([QUILLON, "create", "--json", "--root", root, *options, *sources],
                              stdout=subprocess.PIPE, check=True,
                              env={**os.environ, "QUILLON_REGISTRY": str(cls.dir / "none.reg")})
        return root, json.loads(made.stdout)

    def each_set(self):
        for what, (root, result) in self.sets.items():
            with self.subTest(what):
                yield root, result

    def read(self, root):
        need_pydicom()
        return pydicom.dcmread(root / "DICOMDIR")

    def test_dcmdump_reads_every_record(self):
        dcmdump = judge("dcmdump")
        for root, result in self.each_set():
            dump = run(dcmdump, root / "DICOMDIR")
            self.assertEqual(dump.returncode, 0, dump.stdout)
            lines = dump.stdout.decode(errors="replace").splitlines()
            self.assertEqual([line for line in lines if line.startswith(("E:", "W:"))], [])
            for kind, count in (("PATIENT", "patients"), ("STUDY", "studies"),
                                ("SERIES", "series")):
                found = [line for line in lines if "DirectoryRecordType" in line
                         and f"[{kind}" in line]
                self.assertEqual(len(found), result[count], kind)

    def test_gdcmdump_reads_it(self):
        gdcmdump = judge("gdcmdump")
        for root, result in self.each_set():
            dump = run(gdcmdump, root / "DICOMDIR")
            self.assertEqual(dump.returncode, 0, dump.stdout)
            self.assertEqual(dump.stdout.count(b"(0004,1430)"), result["patients"]
                             + result["studies"] + result["series"] + result["objects"])

    def test_dcdirdmp_finds_every_file(self):
        dcdirdmp = judge("dcdirdmp")
        for root, result in self.each_set():
            dump = run(dcdirdmp, root / "DICOMDIR")
            self.assertEqual(dump.returncode, 0, dump.stdout)
            text = dump.stdout.decode(errors="replace")
            self.assertNotIn("Error", text)
            files = sorted(line.split("->")[1].strip().replace("\\", "/")
                           for line in text.splitlines() if "->" in line)
            self.assertEqual(files, object_files(root))

    def test_dciodvfy_has_nothing_against_the_directory_of_valid_objects(self):
        dciodvfy = judge("dciodvfy")
        for what in ("sample objects", "sample objects with the hierarchy"):
            with self.subTest(what):
                report = run(dciodvfy, self.sets[what][0] / "DICOMDIR").stdout.decode()
                self.assertEqual([line for line in report.splitlines() if line.startswith("Error")],
                                 [])

    def test_the_sample_objects_themselves_are_valid(self):
        dciodvfy = judge("dciodvfy")
        for path in sorted(self.samples.rglob("IM*")):
            report = run(dciodvfy, path).stdout.decode()
            self.assertEqual([line for line in report.splitlines() if line.startswith("Error")], [],
                             path)

    def test_pydicoms_file_set_holds_every_object(self):
        need_pydicom()
        for root, result in self.each_set():
            file_set = FileSet(root / "DICOMDIR")
            self.assertEqual(len(file_set), result["objects"])
            for instance in file_set:
                data_set = pydicom.dcmread(instance.path, stop_before_pixels=True)
                self.assertEqual(instance.SOPInstanceUID, data_set.SOPInstanceUID)

    def test_every_file_is_referred_to_exactly_once(self):
        for root, result in self.each_set():
            leaves = [leaf for record in records(self.read(root)) for leaf in record.leaves()]
            self.assertEqual(sorted(leaf.file_id() for leaf in leaves), object_files(root))
            self.assertEqual(len(leaves), result["objects"])

    def test_the_references_are_those_of_the_file_meta_information(self):
        for root, _ in self.each_set():
            for record in records(self.read(root)):
                for leaf in record.leaves():
                    meta = pydicom.dcmread(root / leaf.file_id(), stop_before_pixels=True).file_meta
                    self.assertEqual(leaf.item.ReferencedSOPClassUIDInFile,
                                     meta.MediaStorageSOPClassUID)
                    self.assertEqual(leaf.item.ReferencedSOPInstanceUIDInFile,
                                     meta.MediaStorageSOPInstanceUID)
                    self.assertEqual(leaf.item.ReferencedTransferSyntaxUIDInFile,
                                     meta.TransferSyntaxUID)

    def keys_of(self, data_set, record):
        keys = {keyword: values_of(data_set, keyword)
                for keyword in KEYS.get(record.type, OF_OBJECTS)}
        if record.type == "STUDY":
            keys["StudyID"] = values_of(data_set, "StudyID") or "1"
        return keys

    def test_the_keys_are_those_of_the_files(self):
        for root, _ in self.each_set():
            for record in records(self.read(root)):
                self.walk_keys(root, record)

    def walk_keys(self, root, record):
        """The keys of a record are those of one object, its own or one that it stands above."""
        files = [pydicom.dcmread(root / leaf.file_id(), stop_before_pixels=True)
                 for leaf in record.leaves()]
        keys = self.keys_of(record.item, record)
        self.assertIn(keys, [self.keys_of(file, record) for file in files], record.type)
        if record.type == "SERIES":
            for file in files:
                self.assertEqual(file.SeriesInstanceUID, record.item.SeriesInstanceUID)
                self.assertEqual(file.StudyInstanceUID, record.parent.item.StudyInstanceUID)
        for child in record.children:
            self.walk_keys(root, child)

    def test_the_sample_tree_is_laid_out_as_it_should(self):
        for what, has_tree in (("sample objects", False),
                               ("sample objects with the hierarchy", True)):
            with self.subTest(what):
                root, result = self.sets[what]
                leaves = [leaf for record in records(self.read(root)) for leaf in record.leaves()]
                expected = [("/".join(["DICOMOBJ"] + [levels] * has_tree + [f"QLN{number:05d}"]),
                             kind) for levels, number, kind in SAMPLE_LAYOUT]
                self.assertEqual([(leaf.file_id(), leaf.type) for leaf in leaves], expected)
                self.assertEqual([result[k] for k in ("patients", "studies", "series")], [2, 3, 7])


if __name__ == "__main__":
    QUILLON, SAMPLES = map(os.path.abspath, sys.argv[1:3])
    unittest.main(argv=[sys.argv[0], "-v", *sys.argv[3:]], warnings="ignore")
