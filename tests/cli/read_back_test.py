"""What was written is read back and compared, and the file set goes only when it is the same."""
import json
import os
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent))
import program  # noqa: E402
from program import contents, dicom_file, digest_of, element  # noqa: E402

CHANGER = None


class ReadBack(program.ProgramTest):
    text = None  # behind which a byte of the medium changes

    def environment(self):
        more = {"QUILLON_RECORDERS": str(self.dir / "recorders")}
        if self.text is not None:
            more |= {"LD_PRELOAD": CHANGER, "CHANGE_TEXT": self.text}
        return super().environment() | more

    def media(self):
        return {"The copy in": ["--to", self.dir / "copy"], "The file": ["--iso", self.dir / "set.iso"],
                "The file ": ["--zip", self.dir / "set.zip"], "The disc in": ["--no-eject"]}

    def test_a_byte_that_changed_is_found_with_its_file_and_the_set_stays(self):
        self.sample_tree()
        mark = "in no other file"
        marked = self.write("marked", dicom_file(more={0x00104000: element(0x00104000, "LT", mark + "!?")}))
        before = contents(self.source)
        self.create_set(self.source)
        made = contents(self.root)
        victim = next(name for name, digest in made.items() if digest == digest_of(marked.read_bytes()))
        for what, medium in self.media().items():
            with self.subTest(medium):
                self.run_program("disc", "insert")
                self.text = mark
                run = self.run_program("write", "--json", "--root", self.root, *medium)
                self.assertEqual(run.returncode, 1)
                result = json.loads(run.stdout)
                self.assertTrue(result["error"].startswith(what.strip()), result)
                self.assertTrue(result["error"].endswith(
                    " is not what was written: 1 of 15 files is not the same."), result)
                self.assertEqual((result["verified"], result["kept"]), (False, True))
                # A ZIP file knows the sums of its files.
                self.assertRegex(run.stderr.decode(),
                                 f"\nquillon: {victim} (has other bytes|cannot be read)\\.\n")
                self.assertEqual(contents(self.root), made)
                # A file that is not what it should be does not get the name.
                if medium[0] in ("--iso", "--zip"):
                    self.assertFalse(medium[1].exists())
                self.text = None
                self.run_program("disc", "eject")
        self.assertEqual(contents(self.source), before)

    def test_a_file_that_is_replaced_stays_when_the_new_one_is_faulty(self):
        self.sample_tree()
        self.create_set(self.source)
        old = self.dir / "set.iso"
        old.write_bytes(b"the old one")
        self.text = "DICM"
        self.command("write", "--root", self.root, "--iso", old, "--overwrite", status=1)
        self.assertEqual(digest_of(old.read_bytes()), digest_of(b"the old one"))
        self.assertEqual([name for name in os.listdir(self.dir) if name.startswith(".quillon")], [])

    def test_it_can_be_left_out_and_the_set_goes_without(self):
        self.sample_tree()
        for what, medium in self.media().items():
            with self.subTest(medium):
                self.run_program("disc", "insert")
                self.create_set(self.source)
                self.text = "DICM"
                result = self.command("write", "--no-verify", "--root", self.root, *medium)
                self.text = None
                self.assertEqual((result["verified"], result["kept"]), (False, False))
                self.run_program("disc", "eject")

    def test_encrypted_and_compressed_files_are_read_back_too(self):
        self.sample_tree()
        password = self.dir / "password"
        password.write_bytes(b"secret\n")
        os.chmod(password, 0o600)
        for options in (["--compress"], ["--password-file", password]):
            result = self.command("publish", "--overwrite", "--zip", self.dir / "set.zip", *options,
                                  self.source)
            self.assertTrue(result["verified"])


if __name__ == "__main__":
    program.QUILLON, program.SAMPLES, CHANGER = map(os.path.abspath, sys.argv[1:4])
    unittest.main(argv=[sys.argv[0], "-v", *sys.argv[4:]])
