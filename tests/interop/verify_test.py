"""Media that other programs make of the same files: verify finds what is true, and nothing else."""
import hashlib
import json
import os
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

try:
    from pydicom import dcmread
    from pydicom.fileset import FileSet
except ImportError:
    FileSet = None

QUILLON = SAMPLES = None  # set by main

# What pydicom's files lack, and three with one UID in the meta information and another behind it.
REAL_FILES_HAVE = {"key-empty", "file-meta-differs"}
# gdcmgendir gives there the offset of the last record of the file.
GDCM_SAYS = {"last-record-offset"}


def run(*command, **how):
    return subprocess.run([os.fspath(part) for part in command], stdout=subprocess.PIPE,
                          stderr=subprocess.PIPE, timeout=300, **how)


def judge(name):
    if shutil.which(name) is None:
        raise unittest.SkipTest(f"{name} is not installed")
    return name


class Media(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.dir = Path(tempfile.mkdtemp(prefix="quillon-verify-"))
        cls.addClassCleanup(shutil.rmtree, cls.dir)
        cls.environment = {**os.environ, "LC_ALL": "C", "QUILLON_REGISTRY": str(cls.dir / "none.reg")}
        cls.samples = cls.dir / "samples"
        subprocess.run([SAMPLES, cls.samples], check=True, stdout=subprocess.DEVNULL)

    def quillon(self, *command):
        return run(QUILLON, *command, env=self.environment)

    def own(self, name, *sources):
        root = self.dir / name
        made = self.quillon("create", "--root", root, "--keep-going", *(sources or [self.samples]))
        self.assertEqual(made.returncode, 0, made.stderr)
        return root

    def objects_alone(self, name):
        root = self.own(name)
        for other in ("DICOMDIR", "LABEL.TXT"):
            (root / other).unlink()
        return root

    def verify(self, root):
        """The codes that are found, and the whole report."""
        done = self.quillon("verify", "--json", root)
        report = json.loads(done.stdout)
        self.assertIsNone(report["error"])
        self.assertEqual(report["whole"], report["errors"] + report["warnings"] == 0)
        self.assertEqual(done.returncode, 0 if report["whole"] else 1)
        return {finding["code"] for finding in report["findings"]}, report

    def assert_counts(self, report):
        self.assertEqual([report[k] for k in ("patients", "studies", "series", "records", "files")],
                         [2, 3, 7, 23, 11])

    def test_ours(self):
        codes, report = self.verify(self.own("ours"))
        self.assertEqual(codes, set())
        self.assert_counts(report)

    def test_ours_of_real_files(self):
        data = Path("/usr/lib/python3/dist-packages/pydicom/data")
        if not (data / "test_files").is_dir():
            self.skipTest("pydicom's sample files are not installed")
        root = self.own("real", data / "test_files", data / "charset_files")
        codes, report = self.verify(root)
        self.assertEqual(codes, REAL_FILES_HAVE, report["findings"])
        self.assertEqual(report["errors"], 3, report["findings"])
        self.assertGreater(report["files"], 100)
        # The same objects with the records of others, which leave some out and make keys up.
        for other in ("DICOMDIR", "LABEL.TXT"):
            (root / other).unlink()
        run(judge("dcmmkdir"), "+r", "-W", "+I", "+D", "DICOMDIR", "+id", ".", cwd=root)
        codes, report = self.verify(root)
        self.assertEqual(codes, {"file-unreferenced", "value-made-up", "file-meta-differs"},
                         report["findings"])

    def test_dcmmkdir(self):
        root = self.objects_alone("dcmtk")
        made = run(judge("dcmmkdir"), "+r", "+D", "DICOMDIR", "+id", ".", cwd=root)
        self.assertEqual(made.returncode, 0, made.stderr)
        codes, report = self.verify(root)
        self.assertEqual(codes, set(), report["findings"])
        self.assert_counts(report)

    def test_gdcmgendir(self):
        root = self.objects_alone("gdcm")
        made = run(judge("gdcmgendir"), "-r", "-i", ".", "-o", "DICOMDIR", cwd=root)
        self.assertEqual(made.returncode, 0, made.stderr)
        codes, report = self.verify(root)
        self.assertEqual(codes, GDCM_SAYS, report["findings"])
        self.assert_counts(report)

    def test_pydicom(self):
        if FileSet is None:
            self.skipTest("pydicom is not installed for " + sys.executable)
        made = FileSet()
        for file in sorted(self.samples.rglob("*")):
            if file.is_file():
                made.add(file)
        root = self.dir / "pydicom"
        made.write(root)
        codes, report = self.verify(root)
        self.assertEqual(codes, set(), report["findings"])
        self.assert_counts(report)

    def test_a_patient_whose_id_was_changed_in_one_file(self):
        if FileSet is None:
            self.skipTest("pydicom is not installed for " + sys.executable)
        root = self.own("changed")
        file = root / "DICOMOBJ/QLN00001"
        data_set = dcmread(file)
        before, data_set.PatientID = data_set.PatientID, "OTHER"
        data_set.save_as(file)
        done = self.quillon("verify", root)
        self.assertEqual(done.returncode, 1)
        lines = done.stdout.decode().splitlines()
        self.assertRegex(lines[0], r'^error: DICOMOBJ/QLN00001: Patient ID of the file is "OTHER", '
                                   rf'the PATIENT record at offset 0x[0-9a-f]+ says "{before}"\.$')
        self.assertRegex(lines[1], r"^Verified: 2 patients, .*: 1 error\.$")
        self.assertEqual(len(lines), 2)

    def test_sums_as_sha256sum_checks_them(self):
        judge("sha256sum")
        root = self.own("sums")
        files = sorted(path.relative_to(root) for path in root.rglob("*") if path.is_file())
        (root / "SHA256SUMS").write_text("".join(
            f"{hashlib.sha256((root / file).read_bytes()).hexdigest()}{mark}{file}\n"
            for file, mark in zip(files, [" *", "  "] * len(files))))
        self.assertEqual(run("sha256sum", "-c", "SHA256SUMS", cwd=root).returncode, 0)
        codes, report = self.verify(root)
        self.assertEqual((codes, report["sums"]), (set(), len(files)))
        with open(root / "DICOMOBJ/QLN00003", "r+b") as file:
            file.seek(-1, os.SEEK_END)
            file.write(b"\xaa")
        checked = run("sha256sum", "-c", "--quiet", "SHA256SUMS", cwd=root).stdout.decode()
        codes, report = self.verify(root)
        self.assertEqual([finding["file"] + ": FAILED\n" for finding in report["findings"]], [checked])
        self.assertEqual(self.quillon("verify", "--no-sums", root).returncode, 0)

    def test_what_is_no_medium(self):
        (self.dir / "empty").mkdir()
        for path, status, out, err in (
                (self.dir / "none", 1, b"", b"Cannot open the file "),
                (self.dir / "empty", 1, b"error: DICOMDIR: There is no DICOMDIR in the root", b"")):
            done = self.quillon("verify", path)
            self.assertEqual(done.returncode, status)
            self.assertTrue(done.stdout.startswith(out) and bool(done.stdout) == bool(out), done.stdout)
            self.assertEqual(err in done.stderr and bool(done.stderr) == bool(err), True, done.stderr)
        self.assertEqual(self.quillon("verify").returncode, 2)

    def test_the_dicomdir_stands_for_its_directory(self):
        root = self.own("by-dicomdir")
        by_file = self.quillon("verify", root / "DICOMDIR")
        self.assertEqual(by_file.stdout, self.quillon("verify", root).stdout)
        self.assertEqual(by_file.returncode, 0)

    def test_names_cannot_command_a_terminal(self):
        root = self.own("hostile")
        shutil.copy(root / "DICOMOBJ/QLN00001", root / "EVIL\x1b[2J\nerror: X")
        done = self.quillon("verify", root)
        self.assertNotIn(b"\x1b", done.stdout)
        self.assertEqual(done.stdout.count(b"\n"), 2)


if __name__ == "__main__":
    QUILLON, SAMPLES = map(os.path.abspath, sys.argv[1:3])
    unittest.main(argv=[sys.argv[0], "-v", *sys.argv[3:]], warnings="ignore")
