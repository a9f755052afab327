"""Jobs that meet on one root directory, are killed or fail in the middle, and what must hold of
their files afterwards."""
import os
import re
import shutil
import subprocess
import sys
import unittest
import warnings
from pathlib import Path

TESTS = Path(__file__).parent.parent
sys.path[:0] = [str(TESTS / "interop"), str(TESTS / "com_client")]
import hosts  # noqa: E402
import program  # noqa: E402
from directory_records import object_files, records  # noqa: E402
from program import contents, dicom_file, element  # noqa: E402

try:
    import pydicom
except ImportError:
    pydicom = None

KILL_AT_CHANGE = COM_CLIENT = None  # set by main
IS_DEEP = os.environ.get("QUILLON_DEEP_TESTS") == "1"
KILLED, CANNOT_TRACE = 137, 77
NOTE = "UNFINISHED.TXT"
# In memory where there is a place for that: jobs that write much are quick there.
FAST_DIRECTORY = "/dev/shm" if os.access("/dev/shm", os.W_OK) else None
# Begins each object, so that a copy is found wherever it lies, a part of one too.
MARK = b"Object of quillon's tests"


def in_use(root):
    return f"The root directory {root} is in use by another job."


def unfinished(root):
    """A pattern for the sentence; its group is the number of objects."""
    return (f"The root directory {re.escape(str(root))} holds (\\d+) objects of a job that did not "
            f"finish, perhaps the only copies; {NOTE} in it names them. Move it to a safe place, "
            "or wipe it: that sets them aside.")


def spread(number, count):
    """At most `number` of the numbers 1 to `count`, the first and the last among them."""
    if count <= number:
        return list(range(1, count + 1))
    return sorted({1 + i * (count - 1) // (number - 1) for i in range(number)})


def objects(patient, count):
    """The objects of a patient, by the names of their files."""
    files = {}
    for number in range(count):
        # Some take more than one block of a copy.
        pixels = bytes([number % 256]) * (40_000 if number % 3 == 0 else 700)
        data = dicom_file(name=f"PATIENT^{patient}", id=f"ID{patient}", study=f"2.25.{patient}.1",
                          series=f"2.25.{patient}.1.1", instance=f"2.25.{patient}.1.1.{number}",
                          number=str(number),
                          more={0x7FE00010: element(0x7FE00010, "OW", pixels)})
        files[f"{number % 4}/{number:03d}"] = MARK + data[len(MARK):]
    return files


def copies(directories):
    """The files below the directories that are objects of these tests, or begin as one."""
    found = []
    for path in (path for directory in directories for path in directory.rglob("*")):
        if path.is_file() and not path.is_symlink():
            with open(path, "rb") as file:
                if file.read(len(MARK)) == MARK:
                    found.append(path)
    return found


def asides(root):
    """Where the objects of unfinished jobs were set aside."""
    return sorted(root.parent.glob(root.name + ".unfinished-*"))


def error_of(run):
    """The sentence with which the program failed."""
    lines = [line for line in run.stderr.decode(errors="replace").splitlines()
             if line.startswith("quillon: ")]
    return lines[0].removeprefix("quillon: ") if lines else ""


def set_faults(root):
    """What a reader of the file set would stumble over."""
    if not (root / "DICOMDIR").is_file():
        return ["no DICOMDIR"]
    try:
        with warnings.catch_warnings():
            warnings.simplefilter("ignore")
            return record_faults(root)
    except Exception as error:  # whatever pydicom makes of a broken file
        return [f"the DICOMDIR or a file of it cannot be read: {error!r}"]


def record_faults(root):
    faults = []
    listed = set()
    for patient in records(pydicom.dcmread(root / "DICOMDIR")):
        for leaf in patient.leaves():
            name = leaf.file_id()
            listed.add(name)
            if name is None or not (root / name).is_file():
                faults.append(f"a {leaf.type} record refers to {name}, which is not there")
                continue
            file = pydicom.dcmread(root / name, stop_before_pixels=True, specific_tags=[
                "SOPClassUID", "SOPInstanceUID", "PatientID"])
            for keyword, own in (("ReferencedSOPInstanceUIDInFile", file.SOPInstanceUID),
                                 ("ReferencedSOPClassUIDInFile", file.SOPClassUID)):
                if leaf.item[keyword].value != own:
                    faults.append(f"{name} is {own}, its record says {leaf.item[keyword].value}")
            if patient.item.PatientID != file.PatientID:
                faults.append(f"{name} of {file.PatientID} stands below {patient.item.PatientID}")
    faults += [f"{name} stands in no record" for name in object_files(root) if name not in listed]
    return faults if (root / "LABEL.TXT").is_file() else [*faults, "there is no label"]


def main():
    """Of a test that takes QUILLON KILL_AT_CHANGE [COM_CLIENT]; a build may be without the last."""
    global KILL_AT_CHANGE, COM_CLIENT
    paths = [os.path.abspath(path) for path in sys.argv[1:4] if not path.startswith("-")]
    program.QUILLON, KILL_AT_CHANGE, COM_CLIENT = [*paths, None][:3]
    unittest.main(argv=[sys.argv[0], "-v", *sys.argv[1 + len(paths):]])


class JobTest(program.ProgramTest):
    @classmethod
    def setUpClass(cls):
        if pydicom is None:
            raise unittest.SkipTest("pydicom is not installed for " + sys.executable)

    def setUp(self):
        super().setUp()
        self.target = self.dir / "media/usb"
        self.configure()

    @staticmethod
    def put(directory, files):
        """Writes those of the files that are not there, and answers the digests of all."""
        for name, data in files.items():
            path = directory / name
            if not path.exists():
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_bytes(data)
        return contents(directory)

    @staticmethod
    def remove_all(*directories):
        for directory in directories:
            shutil.rmtree(directory, ignore_errors=True)

    def set_problems(self, root, digests):
        """What is wrong with a file set that should hold the objects with these digests."""
        found = set_faults(root)
        made = contents(root) if root.is_dir() else {}
        for name, digest in digests.items():
            if digest not in made.values():
                found.append(f"{name} is missing")
        if sum("QLN" in name for name in made) > len(digests):
            found.append("there are objects of others")
        parts = ("DICOMDIR", "DICOMOBJ/QLN", "LABEL.TXT", "QUILLON/", "SHA256SUMS",
                 "IHE_PDI/", "INDEX.HTM", "README.TXT")
        # A set with pages has all of them.
        pages = {name for name in made if name.startswith(parts[-3:])}
        if pages and not pages >= {"INDEX.HTM", "README.TXT", "IHE_PDI/STYLE.CSS",
                                   "IHE_PDI/STUDY001.HTM", "IHE_PDI/HEAD0001.HTM"}:
            found.append(f"of the pages there are only {pages}")
        return found + [f"{name} is no part of a file set" for name in made
                        if not name.startswith(parts)]

    def assert_whole(self, root, digests):
        self.assertEqual(self.set_problems(root, digests), [], root)

    def refused(self, sentence, *arguments):
        """Runs a command that must fail with a sentence of this pattern; answers the match."""
        run = self.run_program(*arguments)
        self.assertEqual(run.returncode, 1, (arguments, run.stdout, run.stderr))
        self.assertRegex(error_of(run), f"^{sentence}$", arguments)
        return re.match(sentence, error_of(run))

    def done(self, *arguments):
        run = self.run_program(*arguments)
        self.assertEqual(run.returncode, 0, (arguments, run.stderr))
        return run

    def traced(self, at, *command, meanwhile=None):
        """Runs a command and kills it at a change it makes on a disk, or runs a shell script there.

        Answers the run and the number of changes."""
        count = self.dir / "count"
        script = []
        if meanwhile is not None:
            (self.dir / "meanwhile").write_text(meanwhile)
            script = ["--meanwhile", self.dir / "meanwhile"]
        run = subprocess.run([KILL_AT_CHANGE, *script, str(at), count, *command],
                             env=self.environment(), cwd=self.dir / "work",
                             stdin=subprocess.DEVNULL, capture_output=True, timeout=120)
        if run.returncode == CANNOT_TRACE:
            self.skipTest("programs cannot be traced here")
        return run, int(count.read_text())

    def make_unfinished(self, root, source, files):
        """A root whose creation was killed when it had moved some of the files."""
        command = [program.QUILLON, "create", "--root", root, "--move", source]
        self.put(source, files)
        _, changes = self.traced(0, *command)
        for change in range(changes // 2, changes):
            self.remove_all(root)
            self.put(source, files)
            self.traced(change, *command)
            if 0 < len(contents(source)) < len(files):
                return
        self.fail("the creation moves no files one by one")

    def register(self):
        if COM_CLIENT is None:
            self.skipTest("this build has no com_client")
        if "InprocServer32" not in self.registry.read_text():
            self.done("register")

    def host(self):
        self.register()
        session = hosts.Session(COM_CLIENT, self.environment(), self.dir / "work")
        self.addCleanup(session.kill)
        return session
