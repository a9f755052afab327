"""quillon create as a user meets it: what it makes, what it leaves alone, how it fails."""
import os
import re
import resource
import shutil
import signal
import stat
import struct
import subprocess
import sys
import time
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent))
import program  # noqa: E402
from program import contents, dicom_file, element, item, meta_group, values  # noqa: E402

SAMPLE_FILES = 11


def images(root):
    return {name: digest for name, digest in contents(root).items() if "QLN" in name}


class Creation(program.ProgramTest):
    def test_sources_stay_byte_for_byte_and_share_nothing_with_the_set(self):
        before = self.sample_tree()
        self.create_set(self.source)
        self.assertEqual(contents(self.source), before)
        made = images(self.root)
        self.assertEqual(sorted(made.values()), sorted(before.values()))
        self.assertEqual(sorted(made), [f"DICOMOBJ/QLN{i:05d}" for i in range(1, 12)])
        for path in list(self.root.rglob("*")) + list(self.source.rglob("*")):
            if path.is_file():
                self.assertEqual(path.stat().st_nlink, 1, path)
        self.assertTrue((self.root / "DICOMDIR").is_file())
        self.assertTrue((self.root / "LABEL.TXT").is_file())

    def test_moved_files_are_in_the_set_and_a_link_stays(self):
        before = self.sample_tree()
        aside = self.dir / "aside"
        aside.mkdir()
        target = aside / "target"
        (self.source / "ROE/CR/IM00001").rename(target)
        (self.source / "ROE/CR/IM00001").symlink_to(target)
        self.create_set("--move", self.source)
        self.assertEqual(contents(self.source), {})
        self.assertTrue((self.source / "ROE/CR/IM00001").is_symlink())
        self.assertEqual(contents(aside), {"target": before["ROE/CR/IM00001"]})
        self.assertEqual(sorted(images(self.root).values()), sorted(before.values()))

    def test_the_result_tells_what_is_in_the_set(self):
        before = self.sample_tree()
        sizes = sum((self.source / name).stat().st_size for name in before)
        notes = self.write("notes.txt", b"no DICOM in here")
        result = self.create_set(self.source)
        self.assertEqual(set(result), {"root", "patients", "studies", "series", "objects", "bytes",
                                       "label", "passed_over", "left_out", "incomplete",
                                       "error"})
        self.assertEqual(result["root"], str(self.root))
        self.assertEqual([result[k] for k in ("patients", "studies", "series", "objects", "bytes")],
                         [2, 3, 7, SAMPLE_FILES, sizes])
        self.assertEqual(result["label"].split("\n")[0], "Multiple Patients")
        self.assertEqual([one["path"] for one in result["passed_over"]], [str(notes)])
        label = (self.root / "LABEL.TXT").read_bytes().decode("utf-16-le")
        self.assertEqual(label, result["label"] + "\n")

    def test_the_text_result_names_counts_label_and_files_passed_over(self):
        self.write("one", dicom_file())
        self.write("notes", b"x")
        run = self.run_program("create", "--root", self.root, self.source)
        self.assertEqual((run.returncode, run.stderr), (0, b""))
        text = run.stdout.decode()
        for wanted in (f"Root:      {self.root}\n", "Patients:  1\n", "Objects:   1\n",
                       "  Patient Name:  DOE JOHN\n  Patient ID:  12345\n",
                       f"Passed over: 1\n  {self.source}/notes: it is not a DICOM file"):
            self.assertIn(wanted, text)

    def test_of_many_files_passed_over_those_to_be_added_are_named(self):
        self.write("one", dicom_file())
        for number in range(50):
            self.write(f"notes{number}", b"x")
        run = self.run_program("create", "--root", self.root, "--keep-going", self.source,
                               self.source / "notes9", self.dir / "absent")
        self.assertEqual(run.returncode, 0)
        text = run.stdout.decode()
        self.assertIn("Passed over: 52\n", text)
        self.assertTrue(text.endswith("  and 30 more; with --json all are named\n"), text)
        for named in ("source/notes9: it is not", "absent: "):
            self.assertIn(f"\n  {self.dir}/{named}", text)
        self.assertIn(b"quillon: 2 files that were to be added are not in the file set.\n",
                      run.stderr)

    def test_options_reach_the_set(self):
        self.sample_tree()
        cases = [
            (["--hierarchy"], "DICOMOBJ/P0000001/S0000001/E0000001/QLN00001", 2, SAMPLE_FILES),
            (["--object-dir", "A/B"], "A/B/QLN00001", 2, SAMPLE_FILES),
            (["--patient-key", "one for all"], "DICOMOBJ/QLN00001", 1, SAMPLE_FILES),
            (["--no-subdirectories"], "DICOMOBJ/QLN00001", 1, 1),
        ]
        self.write("top", dicom_file(name="TOP^LEVEL", id="12345"))
        for arguments, first, patients, objects in cases:
            with self.subTest(arguments=arguments):
                result = self.create_set("--replace", *arguments, self.source)
                if objects == SAMPLE_FILES:
                    objects, patients = objects + 1, patients + (patients > 1)
                self.assertEqual((result["patients"], result["objects"]), (patients, objects))
                self.assertIn(first, contents(self.root))

    def test_on_older_media_files_stand_in_ascending_order_of_names(self):
        self.configure(current_practice=0)
        for number, name in enumerate(["b/2", "a", "b/1", "B", "c"]):
            self.write(name, dicom_file(instance=f"2.25.1.1.1.{number}"))
        self.create_set(self.source)
        expected = [contents(self.source)[name] for name in ("B", "a", "b/1", "b/2", "c")]
        self.assertEqual([images(self.root)[name] for name in sorted(images(self.root))], expected)

    def test_the_same_object_is_taken_once_and_a_moved_duplicate_stays(self):
        first = self.write("1", dicom_file(number="1"))
        second = self.write("2", dicom_file(number="2"))
        result = self.create_set("--move", first, second, first)
        self.assertEqual(result["objects"], 1)
        self.assertEqual(result["passed_over"], [
            {"path": str(second), "reason": f"it holds the same object as {first}."}])
        self.assertFalse(first.exists())
        self.assertTrue(second.exists())

    def test_patients_are_told_apart_by_name_and_id(self):
        cases = [({}, 1), ({"name": "DOE^JOHN^^"}, 1), ({"name": "DOE^JOHN "}, 1), ({"id": "1"}, 2),
                 ({"name": "ROE"}, 2), ({"name": None}, 2), ({"name": "", "id": ""}, 2)]
        self.write("1", dicom_file())
        for changes, patients in cases:
            with self.subTest(changes=changes):
                self.write("2", dicom_file(instance="2.25.1.1.1.2", **changes))
                self.assertEqual(self.create_set("--replace", self.source)["patients"], patients)

    def test_a_tag_inside_a_sequence_is_not_taken_for_the_objects_own(self):
        # Referenced Series Sequence stands in front of the patient and names another series.
        nested = item(element(0x0020000D, "UI", "2.25.9") + element(0x0020000E, "UI", "2.25.9.9"))
        more = {0x00081115: element(0x00081115, "SQ", nested)}
        self.write("1", dicom_file())
        self.write("2", dicom_file(instance="2.25.1.1.1.2", more=more))
        result = self.create_set(self.source)
        self.assertEqual([result[k] for k in ("patients", "studies", "series", "objects")],
                         [1, 1, 1, 2])

    def test_names_that_the_system_would_misread_are_copied(self):
        names = [b"with space", b"back\\slash", b"colon:name", b"caf\xc3\xa9", b"bytes\xff\xfe",
                 b"line\nfeed", b"*?<>|\"", b"-dash", b"x" * 200]
        self.source.mkdir()
        for number, name in enumerate(names):
            with open(os.path.join(os.fsencode(self.source), name), "wb") as file:
                file.write(dicom_file(instance=f"2.25.1.1.1.{number}"))
        before = contents(self.source)
        self.assertEqual(self.create_set(self.source)["objects"], len(names))
        self.assertEqual(sorted(images(self.root).values()), sorted(before.values()))

    def test_a_script_finds_a_file_passed_over_by_the_bytes_of_its_name(self):
        self.write("one", dicom_file())
        names = [os.fsencode(self.source) + b"/bytes\xff\xfe", os.fsencode(self.source) + b"/caf\xc3\xa9"]
        for name in names:
            Path(os.fsdecode(name)).write_bytes(b"x")
        odd, plain = self.create_set(self.source)["passed_over"]
        self.assertEqual(bytes.fromhex(odd["path_hex"]), names[0])
        self.assertEqual((plain["path"].encode(), "path_hex" in plain), (names[1], False))

    def test_relative_names_are_of_the_current_directory(self):
        self.write("in/1", dicom_file())
        result = self.create("--root", "out", "in", cwd=self.source)
        self.assertEqual(result["root"], str(self.source / "out"))
        self.assertIn("DICOMOBJ/QLN00001", contents(self.source / "out"))

    def test_a_root_inside_a_source_is_not_a_source(self):
        self.write("1", dicom_file())
        for arguments in ([], ["--replace"]):
            result = self.create("--root", self.source / "set", *arguments, self.source)
            self.assertEqual(result["objects"], 1)
        self.assertEqual([one["path"] for one in result["passed_over"]], [str(self.source / "set")])

    def test_links_are_followed_without_going_round_in_circles(self):
        self.write("d/1", dicom_file())
        outside = self.dir / "outside"
        outside.write_bytes(dicom_file(instance="2.25.1.1.1.2"))
        (self.source / "d/file-link").symlink_to(outside)
        (self.source / "d/loop").symlink_to(self.source)
        (self.source / "d/dangling").symlink_to(self.dir / "nowhere")
        os.mkfifo(self.source / "d/pipe")
        result = self.create_set(self.source)
        self.assertEqual(result["objects"], 2)
        self.assertEqual([Path(one["path"]).name for one in result["passed_over"]],
                         ["dangling", "loop", "pipe"])
        (self.dir / "link").symlink_to(self.source)
        self.assertEqual(self.create_set("--replace", self.dir / "link")["objects"], 2)

    def test_other_content_is_copied_unless_it_is_not_wanted(self):
        content = self.dir / "viewer"
        content.mkdir()
        (content / "START.TXT").write_text("start")
        self.configure(other_content=content)
        self.write("1", dicom_file())
        self.create_set(self.source)
        self.assertIn("QUILLON/START.TXT", contents(self.root))
        self.create_set("--replace", "--no-other-content", self.source)
        self.assertNotIn("QUILLON/START.TXT", contents(self.root))

    def test_log_lines_go_to_a_file_and_never_to_the_result(self):
        # An unknown tag that is out of order makes the toolkit complain.
        self.write("1", dicom_file())
        self.write("2", dicom_file(values(instance="2.25.1.1.1.2") + b"\x09\x00\x01\x10LO\x02\x00ab"))
        log = self.dir / "work/log"
        result = self.create_set("--keep-going", "--log", "log", self.source)
        self.assertEqual(len(result["passed_over"]), 1)
        self.assertIn("out of order", log.read_text())


class Refusals(program.ProgramTest):
    def test_exit_status_tells_wrong_usage_from_a_failed_job(self):
        self.write("1", dicom_file())
        cases = [([], 2), (["create"], 2), (["create", "--no-such-option", self.source], 2),
                 (["no-such-command"], 2), (["create", "--root"], 2), (["--version"], 0),
                 (["create", "--root", self.root, "--patient-key", "", self.source], 2),
                 (["create", "--help"], 0),
                 (["create", "--root", self.root, self.source / "missing"], 1),
                 (["create", "--root", self.root, self.source], 0)]
        for arguments, status in cases:
            with self.subTest(arguments=arguments):
                run = self.run_program(*arguments)
                self.assertEqual(run.returncode, status, run.stderr)
                (self.assertEqual if status == 0 else self.assertNotEqual)(run.stderr, b"")

    def bad_files(self):
        """Name, content, reason, and whether the file ends the job when a walk meets it."""
        directory = bytes(128) + b"DICM" + meta_group("1.2.840.10008.1.3.10") + element(
            0x00041220, "SQ", item(values()))
        return [
            ("text", b"plain text", "^it is not a DICOM file", False),
            ("empty", b"", "^it is not a DICOM file", False),
            ("bare", values(), "^it is not a DICOM file", False),
            ("dicomdir", directory, "^it is the directory of another file set.$", False),
            ("dicomdircut", directory[:-10], "^it is the directory of another file set.$", False),
            ("deflated", dicom_file(meta=meta_group(syntax="1.2.840.10008.1.2.1.99"),
                                    data_set=element(0x00090010, "LO", "deflated")),
             "^its data set is deflated, and such files cannot be read.$", True),
            ("nostudy", dicom_file(study=None), "^it names no study, series or instance.$", False),
            ("noseries", dicom_file(series=None), "^it names no study, series or inst", False),
            ("noinstance", dicom_file(values(instance=None),
                                      meta=meta_group()), "^it names no study, series or", False),
            ("nested", dicom_file(study=None, more={0x00081115: element(0x00081115, "SQ", item(
                element(0x0020000D, "UI", "2.25.9")))}),
             "^it names no study, series or instance.$", False),
            ("classless", dicom_file(meta=meta_group().replace(
                element(0x00020002, "UI", program.CT), element(0x00020002, "OB", program.CT))),
             "^its file meta information is incomplete.$", True),
            ("nostudyvalue", dicom_file(study=""),
             "^Cannot read the study information for the patient ", True),
            ("noclass", dicom_file(meta=meta_group(sop_class=None)),
             "^its file meta information is incomplete.$", True),
            ("nometainstance", dicom_file(meta=meta_group(instance=None)),
             "^its file meta information is incomplete.$", True),
            ("nosyntax", dicom_file(meta=meta_group(syntax=None),
                                    data_set=b"\x08\x00\x18\x00" + struct.pack("<I", 4) + b"1.2\0"
                                    + b"\x20\x00\x0d\x00" + struct.pack("<I", 4) + b"1.3\0"
                                    + b"\x20\x00\x0e\x00" + struct.pack("<I", 4) + b"1.4\0"),
             "^its file meta information is incomplete.$", True),
            ("cut", dicom_file()[:-35], "^Cannot read the DICOM information from SOURCE/cut.$",
             True),
        ]

    def test_each_bad_file_is_told_with_its_reason_before_anything_is_moved(self):
        # It comes last, when everything else has been looked at.
        for name, data, reason, ends_job in self.bad_files():
            reason = reason.replace("SOURCE", re.escape(str(self.source)))
            for is_named in (False, True):
                with self.subTest(name=name, is_named=is_named):
                    subprocess.run(["rm", "-rf", self.root, self.source], check=True)
                    self.write("1", dicom_file(instance="2.25.1.1.1.9"))
                    bad = self.write(name if is_named else "zzz/" + name, data)
                    reason_here = reason if is_named else reason.replace("/cut", "/zzz/cut")
                    arguments = [self.source] if not is_named else [self.source / "1", bad]
                    before = contents(self.source)
                    not_dicom = name in ("text", "empty", "bare")
                    if ends_job or (is_named and not_dicom):
                        result = self.create_set("--move", *arguments, status=1)
                        self.assertEqual(contents(self.source), before)
                        self.assertEqual(contents(self.root), {})
                        self.assertRegex(result["error"].replace(f"Cannot add {bad}: ", ""),
                                         reason_here)
                    result = self.create_set("--move", "--keep-going", *arguments)
                    self.assertEqual(result["objects"], 1)
                    self.assertEqual([one["path"] for one in result["passed_over"]], [str(bad)])
                    self.assertRegex(result["passed_over"][0]["reason"], reason_here)
                    self.assertEqual(bad.read_bytes(), data)

    def test_objects_are_told_apart_as_the_set_does(self):
        # The system takes the first value, up to a zero, without white space.
        for end in ("\\9", "\0" + "9", "\t", " "):
            with self.subTest(end=end):
                shutil.rmtree(self.root, ignore_errors=True)
                self.write("1", dicom_file())
                second = self.write("2", dicom_file(series="2.25.1.1.1" + end))
                result = self.create_set(self.source)
                self.assertEqual((result["objects"], len(images(self.root))), (1, 1))
                self.assertEqual([one["path"] for one in result["passed_over"]], [str(second)])

    def test_a_fit_copy_takes_the_place_of_an_unfit_file(self):
        self.write("10:30/IM0", dicom_file())
        good = self.write("good/IM0", dicom_file())
        result = self.create_set("--move", "--keep-going", self.source)
        self.assertEqual(result["objects"], 1)
        self.assertFalse(good.exists())

    def test_a_file_that_ends_in_its_pixel_data_is_told(self):
        pixels = element(0x7FE00010, "OW", bytes(1000))
        cut = self.write("1", dicom_file(more={0x7FE00010: pixels})[:-400])
        run = self.run_program("create", "--root", self.root, self.source)
        self.assertEqual(run.returncode, 0)
        self.assertIn(f"{cut}: the file ends before its pixel data does.".encode(), run.stderr)
        shutil.rmtree(self.root)
        result = self.create_set("--strict", self.source, status=1)
        self.assertEqual(result["error"],
                         f"Cannot add {cut}: the file ends before its pixel data does.")

    def test_names_and_values_cannot_command_a_terminal(self):
        self.write("1", dicom_file(name="DOE\x1b]0;pwned\x07^JOHN"))
        self.write("2\x1b[2J\nLabel:", b"no DICOM")
        run = self.run_program("create", "--root", self.root, self.source)
        self.assertEqual(run.returncode, 0)
        self.assertNotIn(b"\x1b", run.stdout + run.stderr)
        self.assertEqual(run.stdout.count(b"\nLabel:"), 1)
        # What begins no escape sequence of a character set is no character.
        self.assertIn("DOE\ufffd]0;pwned\x07 JOHN".encode("utf-16-le"),
                      (self.root / "LABEL.TXT").read_bytes())

    def test_what_is_not_of_a_file_cannot_command_a_terminal_either(self):
        evil = "x\x1b[2J\u202e\x9b"
        cases = [("create", evil + "/none"), ("create", "--" + evil, "x"),
                 ("register", str(self.dir / evil)), ("write", "--root", str(self.dir / evil)),
                 ("wipe", "--root", str(self.write(evil, b"x"))),
                 ("disc", "insert", "--recorder", evil), ("disc", "eject", "--recorder", evil),
                 ("header", evil), ("create", "--log", evil + "/log", "x")]
        for arguments in cases:
            with self.subTest(arguments=arguments):
                run = self.run_program(*arguments)
                self.assertNotEqual(run.returncode, 0)
                said = (run.stdout + run.stderr).decode()
                self.assertRegex(said, "x.?.?\u241b")
                self.assertNotRegex(said, "[\x1b\u202e\x9b]")

    def test_sentences_name_paths_as_the_user_writes_them(self):
        self.write("1", dicom_file())
        (self.dir / "at/deep").mkdir(parents=True)
        (self.dir / "link").symlink_to(self.dir / "at/deep")
        for root, directory in (("a/../one", "one"), ("none/./x/../../two/", "two"),
                                ("link/../three", "at/three"), ("link/in", "link/in")):
            with self.subTest(root=root):
                result = self.create("--root", self.dir / root, self.source)
                self.assertEqual(result["root"], str(self.dir / directory))
                self.assertTrue((self.dir / directory / "DICOMDIR").is_file())
        (self.dir / "taken/DICOMDIR").mkdir(parents=True)
        error = self.create("--root", self.dir / "taken", "--replace", self.source, status=1)["error"]
        self.assertNotIn("\\", error)

    def test_a_root_that_holds_something_is_refused_and_replaced_only_on_demand(self):
        self.write("1", dicom_file())
        self.create_set(self.source)
        (self.root / "other patient").write_text("x")
        before = contents(self.root)
        result = self.create_set(self.source, status=1)
        self.assertIn("is not empty", result["error"])
        self.assertEqual(contents(self.root), before)
        self.create_set("--replace", self.source)
        self.assertNotIn("other patient", contents(self.root))
        self.assertEqual(len(images(self.root)), 1)

    def test_a_file_as_root_is_refused(self):
        self.write("1", dicom_file())
        self.root.write_text("x")
        for arguments in ([], ["--replace"]):
            self.assertIn("is not a directory",
                          self.create_set(*arguments, self.source, status=1)["error"])
        self.assertEqual(self.root.read_text(), "x")

    def test_replace_never_takes_more_than_a_file_set(self):
        one = self.write("deep/1", dicom_file())
        link = self.dir / "link-to-source"
        link.symlink_to(self.source)
        temporary = self.dir / "tmp/QUILLON"
        temporary.mkdir()
        (temporary / "1").write_bytes(dicom_file())
        old = self.dir / "old"
        old.mkdir()
        (old / "x").write_text("x")
        cases = [
            ("the home directory", self.dir / "home", [one], self.dir / "work"),
            ("above the home directory", self.dir, [one], "/"),
            ("the current directory", self.dir / "work", [one], self.dir / "work"),
            ("the source itself", self.source, [self.source], self.dir / "work"),
            ("above a named file", self.source, [one], self.dir / "work"),
            ("through a link", link, [one], self.dir / "work"),
            ("with dots", self.source / "deep/../deep", [one], self.dir / "work"),
            ("with the temporary directory", old, [temporary / "1"], self.dir / "work"),
        ]
        for name in ("home", "work"):
            (self.dir / name / "precious").write_text("x")
        before = contents(self.dir)
        for what, root, sources, cwd in cases:
            with self.subTest(what):
                result = self.create("--replace", "--root", root, *sources, status=1, cwd=cwd)
                self.assertIn("is not wiped", result["error"])
                self.assertEqual(contents(self.dir), before)

    def test_the_old_set_stays_when_the_new_one_cannot_be_made(self):
        self.write("1", dicom_file())
        self.create_set(self.source)
        before = contents(self.root)
        cut = self.write("cut", dicom_file(instance="2.25.1.1.1.2")[:-35])
        cases = [["--object-dir", "dicomobj", self.source / "1"], [cut], [self.dir / "work"],
                 ["--patient-key", "k" * 1025, self.source / "1"], [self.source]]
        for arguments in cases:
            with self.subTest(arguments=arguments):
                self.create_set("--replace", *arguments, status=1)
                self.assertEqual(contents(self.root), before)

    def test_settings_that_cannot_work_are_told_before_anything_is_moved(self):
        cases = [
            (["--object-dir", ""], "The path name is invalid."),
            (["--object-dir", "C:\\X"], "The object directory C:\\X is invalid."),
            (["--patient-key", "k" * 1025], "Cannot add the patient information from FILE for the"),
            (["--root", str(self.root) + "?"], "cannot contain these characters"),
            (["--root", "/" + "r" * 300], "is longer than 260 characters."),
        ]
        one = self.write("1", dicom_file())
        before = contents(self.source)
        for arguments, sentence in cases:
            for move in ([], ["--move"]):
                with self.subTest(arguments=arguments, move=move):
                    root = [] if "--root" in arguments else ["--root", self.root]
                    result = self.create(*root, *move, *arguments, one, status=1)
                    self.assertIn(sentence.replace("FILE", str(one)), result["error"])
                    self.assertEqual(contents(self.source), before)
                    self.assertFalse(self.root.exists())

    def test_without_a_dicom_file_there_is_no_set(self):
        self.source.mkdir()
        for name in (None, "notes"):
            if name:
                self.write(name, b"x")
            result = self.create_set(self.source, status=1)
            self.assertEqual(result["error"], "There is no DICOM file to add to the file set.")
            self.assertEqual([result[k] for k in ("patients", "objects", "bytes", "label")],
                             [0, 0, 0, ""])
            self.assertFalse(self.root.exists())

    def test_a_long_path_is_copied_and_cannot_be_moved(self):
        # Each level is short enough for the file system, all together are too long to be handled.
        one = self.write("/".join(["level" * 8] * 7) + "/1", dicom_file())
        self.assertGreater(len(str(one)), 260)
        result = self.create_set("--move", self.source, status=1)
        self.assertEqual(result["error"],
                         f"The path name {one} is longer than 260 characters.")
        self.assertTrue(one.exists())
        self.assertEqual(self.create_set(self.source)["objects"], 1)


class Trouble(program.ProgramTest):
    def test_an_unreadable_file_ends_the_job_or_is_listed(self):
        drop = self.require_program_for_nobody()
        self.write("1", dicom_file())
        secret = self.write("2", dicom_file(instance="2.25.1.1.1.2"))
        os.chmod(secret, 0)
        os.chmod(self.dir, 0o777)
        result = self.create_set(self.source, status=1, preexec_fn=drop)
        self.assertEqual(result["error"], f"Cannot read the DICOM information from {secret}.")
        self.assertFalse(self.root.exists())
        result = self.create_set("--keep-going", self.source, preexec_fn=drop)
        self.assertEqual((result["objects"], len(result["passed_over"])), (1, 1))

    def test_a_root_that_cannot_be_written_costs_no_file(self):
        drop = self.require_program_for_nobody()
        self.write("1", dicom_file())
        before = contents(self.source)
        os.chmod(self.dir, 0o555)
        os.chmod(self.source, 0o777)
        for move in ([], ["--move"]):
            for root in (self.dir / "set", self.dir / "set/deeper"):
                with self.subTest(move=move, root=root):
                    result = self.create("--root", root, *move, self.source, status=1,
                                         preexec_fn=drop)
                    self.assertRegex(result["error"], "Permission denied|Access is denied")
                    self.assertEqual(contents(self.source), before)
        os.chmod(self.dir, 0o755)

    def test_a_source_that_cannot_be_taken_away_is_in_both_places(self):
        drop = self.require_program_for_nobody()
        self.write("1", dicom_file())
        before = contents(self.source)
        os.chmod(self.source, 0o555)
        os.chmod(self.dir, 0o777)
        run = self.run_program("create", "--root", self.root, "--move", self.source,
                               preexec_fn=drop)
        self.assertEqual(run.returncode, 1)
        self.assertEqual(contents(self.source), before)
        self.assert_nothing_lost(before, self.source, self.root)

    def test_a_root_that_is_a_file_system_of_its_own_is_filled_and_replaced(self):
        place = self.mounted("size=4m")
        self.write("1", dicom_file())
        before = contents(self.source)
        for arguments in ([], ["--replace"]):
            self.create("--root", place, *arguments, self.source)
            self.assertEqual(list(images(place).values()), list(before.values()))
        self.create("--root", place, "--replace", "--move", self.source)
        self.assertEqual(list(images(place).values()), list(before.values()))

    def test_a_limit_of_file_sizes_is_a_failure_with_a_sentence(self):
        self.write("1", dicom_file())
        before = contents(self.source)
        result = self.create_set("--move", self.source, status=1, preexec_fn=lambda: (
            resource.setrlimit(resource.RLIMIT_FSIZE, (600, 600))))
        self.assertIn("Cannot create the DICOMDIR file in ", result["error"])
        self.assertNotIn("DICOMDIR", contents(self.root))
        self.assert_nothing_lost(before, self.source, self.root)

    def test_an_interrupted_job_leaves_no_copies(self):
        subprocess.run([program.SAMPLES, "--bench", "400", self.source], check=True)
        before = contents(self.source)
        for number in (signal.SIGTERM, signal.SIGINT):
            with self.subTest(number):
                run = subprocess.Popen([program.QUILLON, "create", "--root", self.root,
                                        self.source], env=self.environment(),
                                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
                deadline = time.monotonic() + 60
                while not self.staging_leftovers() and time.monotonic() < deadline:
                    time.sleep(0.001)
                run.send_signal(number)
                self.assertEqual(run.wait(60), -number)
                self.assertEqual(self.staging_leftovers(), [])
                self.assertEqual(contents(self.source), before)
                self.assertFalse(self.root.exists())

    def test_the_copies_are_readable_like_other_new_files(self):
        one = self.write("1", dicom_file())
        os.chmod(one, 0o600)
        self.create_set(self.source)
        mode = stat.S_IMODE((self.root / "DICOMOBJ/QLN00001").stat().st_mode)
        self.assertEqual(mode, 0o666 & ~current_umask())


def current_umask():
    mask = os.umask(0)
    os.umask(mask)
    return mask


if __name__ == "__main__":
    program.QUILLON, program.SAMPLES = map(os.path.abspath, sys.argv[1:3])
    unittest.main(argv=[sys.argv[0], "-v", *sys.argv[3:]])
