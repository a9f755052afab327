"""quillon create and publish take what is asked for: studies, series, modalities, days, lists of files."""
import os
import subprocess
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent))
import program  # noqa: E402
from program import contents, dicom_file  # noqa: E402

HANGING_PROTOCOL = "1.2.840.10008.5.1.4.38.1"


class Selection(program.ProgramTest):
    def objects(self):
        """Ten files: of two studies, the second of another day, and one that belongs to none."""
        def one(number, **changes):
            self.write(f"{number}", dicom_file(instance=f"2.25.9.{number}", **changes))
        for number in range(3):
            one(number, study="2.25.1", series="2.25.1.1", modality="CT", study_date="20240105")
        for number in range(3, 5):
            one(number, study="2.25.1", series="2.25.1.2", modality="SR", study_date="20240105",
                sop_class=program.BASIC_SR)
        for number in range(5, 8):
            one(number, study="2.25.2", series="2.25.2.1", modality="MR", study_date="2025.03.01")
        one(8, study="2.25.3", series="2.25.3.1", modality="MR", study_date=None)
        one(9, study=None, series=None, modality=None, sop_class=HANGING_PROTOCOL)

    def test_each_condition_must_be_met_and_the_others_are_counted(self):
        self.objects()
        cases = [
            ([], 10),
            (["--study", "2.25.1"], 5),
            (["--study", "2.25.1", "--study", "2.25.3"], 6),
            (["--study", "2.25"], 0),  # the beginning of one is none
            (["--series", "2.25.1.2", "--series", "2.25.2.1"], 5),
            (["--modality", "CT,MR"], 7),
            (["--modality", "CT", "--modality", "SR"], 5),
            (["--modality", "MR", "--study", "2.25.1"], 0),
            (["--since", "2024-01-05"], 8),
            (["--since", "20240106"], 3),
            (["--since", "2025-03-02"], 0),
        ]
        for arguments, taken in cases:
            with self.subTest(arguments):
                status = 0 if taken else 1
                result = self.create_set("--replace", "--dry-run", *arguments, self.source,
                                         status=status)
                self.assertEqual((result["objects"], result["left_out"]), (taken, 10 - taken))
                self.assertEqual(result["passed_over"], [])
                if not taken:
                    self.assertEqual(result["error"],
                                     "The selection leaves out all of the DICOM files: 10.")

    def test_moving_leaves_what_is_left_out_in_its_place(self):
        self.objects()
        before = contents(self.source)
        run = self.run_program("create", "--move", "--root", self.root, "--modality", "CT", self.source)
        self.assertEqual(run.returncode, 0, run.stderr)
        self.assertIn(b"Objects:   3\n", run.stdout)
        self.assertIn(b"Left out:  7\n", run.stdout)
        self.assertEqual(sorted(contents(self.source)), sorted(map(str, range(3, 10))))
        self.assert_nothing_lost(before, self.source, self.root)

    def test_nothing_else_is_asked_of_what_is_left_out(self):
        self.write("whole", dicom_file(modality="CT"))
        self.write("without", dicom_file(instance="2.25.8", modality="MR", id=None))
        self.create_set("--strict", self.source, status=1)
        result = self.create_set("--strict", "--modality", "CT", self.source)
        self.assertEqual((result["objects"], result["left_out"]), (1, 1))

    def test_a_list_of_files_stands_for_arguments(self):
        self.objects()
        names = [self.source / "1", self.source / "5"]
        odd = self.write("a\nb", dicom_file(instance="2.25.77"))
        listed = self.dir / "list"
        cases = [
            (b"\n".join(map(os.fsencode, names)), [], 2),
            (b"\r\n".join(map(os.fsencode, names)) + b"\r\n\r\n", [], 2),
            (b"\0".join(map(os.fsencode, [*names, odd])), ["-0"], 3),
            (os.fsencode(names[0]) + b"\n", [names[1], self.source / "6"], 3),
        ]
        for text, more, objects in cases:
            with self.subTest(text):
                listed.write_bytes(text)
                result = self.create_set("--replace", "--files-from", listed, *more)
                self.assertEqual(result["objects"], objects)
        with open(listed, "rb") as standard_input:
            run = subprocess.run([program.QUILLON, "create", "--replace", "--root", self.root,
                                  "--files-from", "-"], env=self.environment(), stdin=standard_input,
                                 stdout=subprocess.PIPE, check=True)
        self.assertIn(b"Objects:   1\n", run.stdout)

    def test_wrong_lists_and_conditions_are_refused(self):
        self.objects()
        notes = self.write("notes", b"no DICOM")
        listed = self.dir / "list"
        for text, sentence in [(b"", f"The list of files {listed} names none."),
                               (os.fsencode(notes), f"Cannot add {notes}: it is not a DICOM file")]:
            listed.write_bytes(text)
            result = self.create_set("--files-from", listed, status=1)
            self.assertIn(sentence, result["error"])
        for name, reason in [("missing", "No such file"), ("", "Is a directory")]:
            result = self.create_set("--files-from", self.dir / name, status=1)
            self.assertIn(reason, result["error"])
        for arguments in ([], ["-0", self.source], ["--since", "2024-02-30", self.source],
                          ["--since", "yesterday", self.source]):
            with self.subTest(arguments):
                self.assertEqual(self.run_program("create", "--root", self.root, *arguments).returncode, 2)
        self.assertFalse(self.root.exists())


class MediaAsSources(program.ProgramTest):
    """What lies in images, in ZIP files and on media with a DICOMDIR is taken out of them."""

    def medium(self):
        """A file set of three of four objects, and one that its DICOMDIR does not name."""
        for number in range(3):
            self.write(str(number), dicom_file(instance=f"2.25.9.{number}"))
        self.create("--root", self.dir / "medium", self.source)
        (self.dir / "medium/EXTRA").write_bytes(dicom_file(instance="2.25.9.9"))
        return self.dir / "medium"

    def test_images_and_zip_files_are_opened_where_they_are_named(self):
        medium = self.medium()
        for option, name in (("--iso", "set.iso"), ("--zip", "set.zip")):
            file = self.dir / name
            self.command("write", "--keep", "--root", medium, option, file)
            before = file.stat()
            for more, objects in (([], 3), ([self.write("4", dicom_file(instance="2.25.9.4"))], 4),
                                  (["--move"], 3), (["--hierarchy", "--via-dicomdir"], 3)):
                with self.subTest(name, more=more):
                    result = self.create_set("--replace", file, *more)
                    self.assertEqual((result["objects"], result["passed_over"]), (objects, []))
                    digests = set(contents(self.root).values())
                    self.assertLessEqual(
                        {digest for path, digest in contents(medium).items() if "QLN" in path}, digests)
            self.assertEqual(file.stat().st_mtime_ns, before.st_mtime_ns)
            self.command("publish", "--to", self.dir / f"copy{option}", file)

    def test_of_a_directory_what_its_dicomdir_names_is_taken_on_demand(self):
        medium = self.medium()
        self.assertEqual(self.create_set(medium)["objects"], 4)
        self.assertEqual(self.create_set("--replace", "--via-dicomdir", medium)["objects"], 3)
        (medium / "DICOMOBJ/QLN00002").unlink()
        result = self.create_set("--replace", "--via-dicomdir", medium, status=1)
        self.assertEqual(result["error"], f"Cannot add {medium}/DICOMOBJ/QLN00002: it is not there, "
                                          "and the DICOMDIR names it.")
        result = self.create_set("--replace", "--via-dicomdir", "--keep-going", medium)
        self.assertEqual((result["objects"], len(result["passed_over"])), (2, 1))
        result = self.create_set("--replace", "--via-dicomdir", self.source, status=1)
        self.assertIn("There is no DICOMDIR", result["error"])

    def test_a_damaged_file_of_a_medium_is_called_by_the_mediums_name(self):
        medium = self.medium()
        damaged = medium / "DICOMOBJ/QLN00002"
        damaged.write_bytes(damaged.read_bytes()[:-1])
        image = self.dir / "set.iso"
        self.command("write", "--keep", "--no-verify", "--root", medium, "--iso", image)
        result = self.create_set(image, status=1)
        self.assertIn(f"{image}/DICOMOBJ/QLN00002", result["error"])
        self.assertFalse(self.root.exists())


if __name__ == "__main__":
    program.QUILLON = str(Path(sys.argv.pop(1)).resolve())
    unittest.main(verbosity=2)
