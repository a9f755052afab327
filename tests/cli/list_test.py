"""quillon list says whose images lie in a directory or on a medium."""
import os
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent))
import program  # noqa: E402
from program import dicom_file, element, everything  # noqa: E402


class Listing(program.ProgramTest):
    def listed(self, *arguments, **how):
        return self.command("list", *arguments, **how)

    def test_a_medium_is_told_by_patient_study_and_series(self):
        before = self.sample_tree()
        self.create_set(self.source)
        state = everything(self.dir)
        sizes = sum((self.source / name).stat().st_size for name in before)
        for place, others in ((self.source, 0), (self.root, 2)):
            with self.subTest(place.name):
                result = self.listed(place)
                self.assertEqual([(one["name"], one["id"], len(one["studies"]))
                                  for one in result["patients"]],
                                 [("DOE^JOHN", "12345", 2), ("ROE^JANE", "67890", 1)])
                first = result["patients"][0]["studies"][0]
                self.assertEqual((first["date"], first["description"]), ("20090305", "Sample study"))
                self.assertEqual([(one["number"], one["modality"], one["objects"])
                                  for one in first["series"]],
                                 [("1", "CT", 3), ("2", "CT", 2), ("3", "SR", 1), ("4", "PR", 1),
                                  ("5", "KO", 1)])
                self.assertEqual([result[name] for name in ("studies", "series", "objects", "bytes",
                                                            "other_files")],
                                 [3, 7, 11, sizes, others])
        text = self.run_program("list", self.root).stdout.decode()
        self.assertIn("DOE^JOHN  ID 12345  born 1950-01-02  M\n  2009-03-05  Sample study\n", text)
        self.assertTrue(text.endswith("\n2 patients, 3 studies, 7 series, 11 objects, 17.3 KB\n"), text)
        self.assertEqual(everything(self.dir), state)

    def test_texts_are_read_by_their_character_set_and_command_nothing(self):
        japanese = "山田^太郎".encode("utf-8")
        self.write("1", dicom_file(name=None, more={
            0x00080005: element(0x00080005, "CS", "ISO_IR 192"),
            0x00081030: element(0x00081030, "LO", b"a\x1b[2J"),
            0x00100010: element(0x00100010, "PN", japanese)}))
        result = self.listed(self.source)
        self.assertEqual(result["patients"][0]["name"], "山田^太郎")
        self.assertNotIn(b"\x1b", self.run_program("list", self.source).stdout)

    def test_series_of_one_uid_stay_with_their_patients(self):
        for number, (name, series) in enumerate([("A", "10"), ("B", "9"), ("A", "9"), ("A", "10")]):
            self.write(str(number), dicom_file(instance=f"2.25.5.{number}", name=name, id=name,
                                               series=f"2.25.4.{series}", series_number=series))
        result = self.listed(self.source)
        self.assertEqual([[(one["number"], one["objects"]) for one in patient["studies"][0]["series"]]
                          for patient in result["patients"]], [[("9", 1), ("10", 2)], [("9", 1)]])

    def test_what_cannot_be_read_is_told_and_links_are_not_followed(self):
        whole = self.write("whole", dicom_file())
        cut = self.write("below/cut", dicom_file(instance="2.25.6")[:-1])
        (self.source / "link").symlink_to(whole)
        (self.source / "loop").symlink_to(self.source)
        self.write("notes.txt", b"no DICOM in here")
        result = self.listed(self.source)
        self.assertEqual((result["objects"], result["other_files"], result["unreadable"]),
                         (1, 1, [str(cut.relative_to(self.source))]))
        run = self.run_program("list", self.source)
        self.assertEqual((run.returncode, run.stderr), (0, b"quillon: below/cut cannot be read.\n"))
        for path in (self.dir / "missing", self.source / "notes.txt"):
            self.assertIn(str(path), self.listed(path, status=1)["error"])
        os.mkdir(self.dir / "empty")
        self.assertEqual(self.listed(self.dir / "empty")["patients"], [])


if __name__ == "__main__":
    program.QUILLON, program.SAMPLES = map(os.path.abspath, sys.argv[1:3])
    unittest.main(argv=[sys.argv[0], "-v", *sys.argv[3:]])
