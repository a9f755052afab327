"""One table of jobs that cannot be done, given to the program and to a host: both fail with the
same sentence, and every file is where it was.

    bad_jobs_test.py QUILLON COM_CLIENT
"""
import os
import re
import shutil
import sys
import unittest
from pathlib import Path

HERE = Path(__file__).parent
sys.path[:0] = [str(HERE), str(HERE.parent / "cli")]
import hosts  # noqa: E402
import program  # noqa: E402
from program import BASIC_SR, PRESENTATION, contents, dicom_file, element, item  # noqa: E402

COM_CLIENT = None  # set by main
KEY = "DOE^JOHN|12345"


def report():
    """A report that says it is verified and not when."""
    title = item(element(0x00080100, "SH", "18748-4") + element(0x00080102, "SH", "LN")
                 + element(0x00080104, "LO", "Report"))
    observer = item(element(0x0040A027, "LO", "Clinic") + element(0x0040A075, "PN", "ROE"))
    return dicom_file(modality="SR", sop_class=BASIC_SR, instance="2.25.1.1.2.1", more={
        0x00080023: element(0x00080023, "DA", "20090305"),
        0x00080033: element(0x00080033, "TM", "1200"),
        0x0040A043: element(0x0040A043, "SQ", title),
        0x0040A073: element(0x0040A073, "SQ", observer),
        0x0040A491: element(0x0040A491, "CS", "COMPLETE"),
        0x0040A493: element(0x0040A493, "CS", "VERIFIED")})


def presentation():
    """A presentation state without a content label."""
    more = {tag: element(tag, vr, value) for tag, vr, value in (
        (0x00700081, "LO", "text"), (0x00700082, "DA", "20090305"), (0x00700083, "TM", "1200"),
        (0x00700084, "PN", "ROE"))}
    return dicom_file(modality="PR", sop_class=PRESENTATION, instance="2.25.1.1.3.1", more=more)


class BadJob:
    """What makes a job that cannot be done, and the sentence it is refused with.

    The sentence is a pattern in which BASE, SOURCE and ROOT stand for places; without one for the
    host both have to say the same."""

    def __init__(self, what, prepare, sentence, host_sentence=None, object_directory=None):
        self.what = what
        self.prepare = prepare
        self.sentence = sentence
        self.host_sentence = host_sentence
        self.object_directory = object_directory


def good_object(test):
    test.write("1", dicom_file())


def missing_source(test):
    test.sources = [test.source, test.source / "missing"]


def bad_object(data):
    # It is the last one, when all others would have been moved.
    return lambda test: test.write("9", data)


def only_object(**dates):
    return lambda test: test.write("1", dicom_file(**dates))


def other_content(name, data):
    def prepare(test):
        viewer = test.dir / "viewer"
        viewer.mkdir(exist_ok=True)
        (viewer / "A.TXT").write_text("a")
        (viewer / name).write_bytes(data)
        test.content = viewer
    return prepare


def content_around_the_root(test):
    test.content = test.dir


def small_disk(test):
    test.root = test.mounted("size=1m") / "set"
    test.write("8", dicom_file(instance="2.25.1.1.1.8", more={
        0x7FE00010: element(0x7FE00010, "OW", bytes(3_000_000))}))


def file_in_the_way(test):
    test.root.mkdir()
    (test.root / "DICOMOBJ").write_text("a file")


BAD_DATES = [({"birth_date": "19501399"}, "Birth Date"), ({"birth_date": "1950 1 2"}, "Birth Date"),
             ({"birth_date": "00000000"}, "Birth Date"), ({"study_date": "20090230"}, "Study Date")]
EMPTY_FILE = other_content("EMPTY.TXT", b"")

JOBS = [
    BadJob("a source that is not there", missing_source,
           "Cannot read the DICOM information from SOURCE/missing."),
    BadJob("a file that is cut", bad_object(dicom_file(instance="2.25.1.1.1.9")[:-35]),
           "Cannot read the DICOM information from SOURCE/9."),
    BadJob("a report that is verified at no time", bad_object(report()),
           'Cannot retrieve the "0040a030,DT" structured report tag value.'),
    BadJob("a presentation state without a label", bad_object(presentation()),
           'Cannot retrieve the "00700080,CS" presentation tag value.'),
    *(BadJob(f"a date that is none: {date}", only_object(**date), "Cannot retrieve the date.")
      for date, _ in BAD_DATES),
    BadJob("an empty file of other content", EMPTY_FILE,
           "The path BASE/viewer/EMPTY.TXT does not refer to a valid file."),
    BadJob("other content around the root", content_around_the_root,
           "The directory BASE of the other content holds the root directory ROOT/?."),
    BadJob("a disk that is too small", small_disk,
           r"The file system of ROOT/? has room for \d+ bytes; \d+ bytes are needed."),
    # The program does not come so far.
    BadJob("an object directory that cannot be made", file_in_the_way,
           "The root directory ROOT is not empty; .*",
           "Cannot create the directory (ROOT/)?DICOMOBJ/? for this reason:  .+"),
    BadJob("a level of 9 characters", good_object, ".*DICOMOBJS.*", object_directory="DICOMOBJS"),
    BadJob("a level of 12 characters", good_object, ".*OBJECTS12345.*",
           object_directory="A/OBJECTS12345"),
]


class BadJobs(program.ProgramTest):
    maxDiff = None

    def begin(self, prepare, current_practice=0):
        """A fresh directory with one good object, and what `prepare` adds to it."""
        for path in self.dir.iterdir():
            if path.is_dir() and path.name not in ("tmp", "home", "work", "mount"):
                shutil.rmtree(path)
        self.root = self.dir / "set"
        self.sources = [self.source]
        self.content = None
        good_object(self)
        prepare(self)
        self.configure(self.content, current_practice)
        self.assertEqual(self.run_program("register").returncode, 0)
        self.before = contents(self.source)
        self.root_before = contents(self.root) if self.root.exists() else {}

    def assert_nothing_moved(self):
        self.assertEqual(contents(self.source), self.before)
        self.assertEqual(contents(self.root) if self.root.exists() else {}, self.root_before)
        self.assertEqual(sorted(self.dir.rglob("*.unfinished-*")), [])
        self.assertEqual(self.staging_leftovers(), [])

    def run_job(self, object_directory=None, moves=True):
        """Through the program; answers its sentence, None when all went well."""
        arguments = ["--move"] if moves else []
        if object_directory is not None:
            arguments += ["--object-dir", object_directory]
        self.run_ended = self.run_program("create", "--root", self.root, "--patient-key", KEY,
                                          *arguments, *self.sources)
        if self.run_ended.returncode == 0:
            return None
        lines = self.run_ended.stderr.decode().splitlines()
        self.assertTrue(lines[0].startswith("quillon: "), lines)
        return lines[0].removeprefix("quillon: ").replace("\\", "/")

    def run_host(self, object_directory=None, before_creation=lambda: None):
        """Through a host; answers the sentence of the object, None when all went well."""
        with hosts.Session(COM_CLIENT, self.environment(), self.dir / "work") as host:
            host.put(DicomRootDirectory=self.root, UniquePatientId=KEY, IncludeOtherContent=True)
            if object_directory is not None:
                host.put(DicomObjectDirectory=object_directory)
            for path in [*sorted(self.source.iterdir()), *self.sources[1:]]:
                answer = host.call("AddFile", path)
                if not answer.succeeded():
                    return answer.sentence
            before_creation()
            answer = host.call("CreateDicomFileSet")
            self.assertEqual(answer.result, "0x00000000")
            return None if answer.succeeded() else answer.sentence

    def assert_says(self, sentence, pattern):
        self.assertIsNotNone(sentence, "the job went well")
        for name, place in (("SOURCE", self.source), ("ROOT", self.root), ("BASE", self.dir)):
            pattern = pattern.replace(name, re.escape(str(place)))
        self.assertRegex(sentence, f"^{pattern}$")

    def test_the_program_and_a_host_refuse_a_job_alike(self):
        for job in JOBS:
            with self.subTest(job.what):
                self.begin(job.prepare)
                for moves in (False, True):
                    said = self.run_job(job.object_directory, moves)
                    self.assert_says(said, job.sentence)
                    self.assert_nothing_moved()
                said_to_host = self.run_host(job.object_directory)
                self.assert_says(said_to_host, job.host_sentence or job.sentence)
                self.assert_nothing_moved()
                if job.host_sentence is None:
                    self.assertEqual(said_to_host, said)

    def test_a_source_that_is_gone_when_the_host_creates(self):
        self.begin(lambda test: test.write("2", dicom_file(instance="2.25.1.1.1.2")))
        gone = self.source / "2"

        def remove():
            gone.unlink()
            del self.before["2"]

        sentence = self.run_host(before_creation=remove)
        self.assert_says(sentence, "The path SOURCE/2 cannot be found.")
        self.assert_nothing_moved()

    def test_current_practice_is_the_programs_own_way_and_a_hosts_by_choice(self):
        cases = [*((only_object(**date), next(iter(date.values())), line)
                   for date, line in BAD_DATES), (EMPTY_FILE, None, None)]
        for prepare, date, line in cases:
            for run, value in ((self.run_job, None), (self.run_job, 1), (self.run_host, 1),
                               (self.run_host, None)):
                with self.subTest(run=run.__name__, value=value, date=date):
                    self.begin(prepare, value)
                    sentence = run()
                    if run == self.run_host and value is None:
                        self.assertIsNotNone(sentence, "the job went well")
                        self.assert_nothing_moved()
                        continue
                    self.assertIsNone(sentence)
                    if date is None:
                        self.assertEqual((self.root / "QUILLON/EMPTY.TXT").read_bytes(), b"")
                        continue
                    label = (self.root / "LABEL.TXT").read_bytes().decode("utf-16-le")
                    self.assertIn("Patient ID:  12345\n", label)
                    self.assertNotIn(line, label)
                    if run == self.run_job:
                        self.assertIn(date, self.run_ended.stderr.decode())


if __name__ == "__main__":
    program.QUILLON, COM_CLIENT = map(os.path.abspath, sys.argv[1:3])
    unittest.main(argv=[sys.argv[0], "-v", *sys.argv[3:]])
