"""quillon disc: what it shows of recorders, and what it does with the discs in them."""
import json
import shutil
import subprocess
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent))
import program  # noqa: E402

SERVICE = r"SOFTWARE\Tarn Imaging\Quillon\DiscMastering"


class DiscCommand(program.ProgramTest):
    def setUp(self):
        super().setUp()
        self.store = self.dir / "recorders"

    def environment(self):
        return {**super().environment(), "QUILLON_RECORDERS": str(self.store)}

    def disc(self, *arguments, status=0):
        run = self.run_program("disc", *arguments, "--json")
        self.assertEqual(run.returncode, status, (run.stdout, run.stderr))
        result = json.loads(run.stdout.decode())
        self.assertEqual(run.stderr.decode(),
                         "" if status == 0 else f"quillon: {result['error']}\n")
        self.assertEqual(result["error"] is None, status == 0)
        return result

    def image(self, sectors=300):
        path = self.dir / "image.iso"
        path.write_bytes(bytes(16 * 2048) + b"\1CD001\1" + bytes((sectors - 16) * 2048 - 7))
        return path

    def choose_service(self, name, more=""):
        self.registry.write_text("Windows Registry Editor Version 5.00\n\n"
                                 f"[HKEY_LOCAL_MACHINE\\{SERVICE}]\n\"Service\"=\"{name}\"\n{more}")

    def test_a_recorder_with_a_blank_disc_is_there_from_the_start(self):
        self.assertEqual(self.disc("list")["recorders"], [{
            "name": "virtual-1", "device": "Quillon Virtual Recorder (Revision: 1.0)",
            "virtual": True, "used_by": None, "problem": None,
            "disc": {"media": "cd-r", "state": "blank", "protected": False, "capacity": 359849,
                     "free": 359849, "image": None}}])

    def test_status_asks_whether_the_disc_holds_data_and_is_recordable(self):
        full = "The CD-R in virtual-1 holds data already: put a blank disc in."
        pressed = ("The CD-ROM in virtual-1 is of a kind that is not written there: put in a blank "
                   "one of CD-R, CD-RW, DVD-R, DVD-RW, DVD+R, DVD+RW, DVD+R DL, DVD+RW DL, BD-R, "
                   "BD-RE.")
        missing = "There is no disc in virtual-1: put a blank disc in."
        cases = [  # service, arguments of insert (None: no disc), holds data, recordable, reason
            ("virtual", ["--media", "cd-r"], False, True, None),
            ("virtual", ["--media", "cd-rw", "--image"], True, True, None),
            ("virtual", ["--media", "dvd+rw", "--image"], True, True, None),
            ("virtual", ["--media", "cd-r", "--image"], False, False, full),
            ("virtual", ["--image"], False, False, pressed),
            ("virtual", None, False, False, missing),
            ("legacy", ["--media", "cd-r"], False, True, None),
            ("legacy", ["--media", "cd-rw", "--image"], True, True, None),
            ("legacy", ["--image"], None, None, pressed),
            ("legacy", ["--media", "dvd+rw"], None, None,
             "The medium in the recorder is not writable."),
            ("legacy", None, None, None, missing),
        ]
        for service, insert, holds_data, recordable, reason in cases:
            with self.subTest(service=service, insert=insert):
                self.choose_service(service)
                self.disc("eject")
                if insert is not None:
                    insert = insert + [self.image()] * (insert[-1] == "--image")
                    self.disc("insert", *insert)
                status = self.disc("status")
                self.assertEqual(
                    (status["holds_data"], status["recordable"], status["reason"]),
                    (holds_data, recordable, reason))

    def make_recorder(self, name, media):
        (self.store / name).mkdir(parents=True)
        (self.store / name / "recorder.txt").write_text(
            f"vendor = Quillon\nproduct = {name}\nrevision = 1.0\nmedia = {media}\n")

    def test_the_first_recorder_that_writes_is_meant_unless_another_is_named(self):
        self.make_recorder("a", "")
        self.make_recorder("b", "cd-r cd-rw")
        self.make_recorder("c", "cd-r")
        inserted = self.disc("insert", "--media", "cd-rw", "--image", self.image())
        self.assertEqual(inserted["recorder"], "b")
        cases = [("b", [], True, True, None),
                 ("b", ["--recorder", "b"], True, True, None),
                 ("c", ["--recorder", "c"], False, False,
                  "There is no disc in c: put a blank disc in."),
                 ("a", ["--recorder", "a"], None, None,
                  "The recorder a only reads discs: quillon disc list shows which others there "
                  "are.")]
        for name, arguments, holds_data, recordable, reason in cases:
            with self.subTest(arguments=arguments):
                status = self.disc("status", *arguments)
                self.assertEqual(
                    [status[m] for m in ("name", "holds_data", "recordable", "reason")],
                    [name, holds_data, recordable, reason])
        self.assertEqual(self.disc("status", "--recorder", "d", status=1)["error"],
                         'There is no recorder "d".')
        self.disc("erase")
        self.assertEqual(self.disc("status")["disc"]["state"], "erased")
        self.disc("eject")
        self.assertIsNone(self.disc("status")["disc"])

    def test_a_recorder_that_the_service_does_not_offer_is_reached_by_its_name(self):
        self.make_recorder("named", "cd-r")
        self.choose_service("drives", '"Drives"=""\n')
        self.assertNotIn("named", [r["name"] for r in self.disc("list")["recorders"]])
        self.disc("insert", "--recorder", "named")
        self.assertEqual(self.disc("status", "--recorder", "named")["disc"]["state"], "blank")
        self.disc("eject", "--recorder", "named")
        self.assertIsNone(self.disc("status", "--recorder", "named")["disc"])

    def test_the_text_result_says_it_in_lines(self):
        cases = [(["eject"], "The disc is out.\n"),
                 (["eject"], "There was no disc to take out.\n")]
        for arguments, said in cases:
            run = self.run_program("disc", *arguments)
            self.assertEqual((run.returncode, run.stdout.decode()), (0, said))
        run = self.run_program("disc", "insert", "--media", "cd-rw", "--capacity", "20000")
        self.assertEqual((run.returncode, run.stdout.decode()),
                         (0, "Inserted into virtual-1: cd-rw, blank, 20000 sectors\n"))
        run = self.run_program("disc", "status")
        self.assertEqual((run.returncode, run.stdout.decode()), (0, (
            "Recorder:  virtual-1\nDevice:    Quillon Virtual Recorder (Revision: 1.0)\n"
            "Disc:      cd-rw, blank\nCapacity:  20000 sectors, 20000 free\n"
            "Rewritable disc that holds data: no\nRecordable: yes\n")))

    def test_a_disc_comes_out_with_its_contents_and_goes_in_again(self):
        self.disc("eject")
        self.disc("insert", "--media", "cd-rw", "--image", self.image())
        left_at = self.disc("eject")["image"]
        self.assertEqual(Path(left_at).read_bytes(), self.image().read_bytes())
        self.assertIsNone(self.disc("eject")["image"])
        self.assertEqual(self.disc("insert", "--image", left_at)["media"], "cd-rw")

    def test_erasing_makes_the_disc_blank(self):
        for arguments, state in ((["erase"], "erased"), (["erase", "--full"], "blank")):
            self.disc("eject")
            self.disc("insert", "--media", "cd-rw", "--image", self.image())
            self.disc(*arguments)
            disc = self.disc("list")["recorders"][0]["disc"]
            self.assertEqual((disc["state"], disc["free"]), (state, disc["capacity"]))

    def test_what_cannot_be_done_is_refused_in_one_sentence(self):
        short = self.dir / "short.iso"
        short.write_bytes(b"x")
        cases = [
            (["insert"], 'There is a disc in the virtual recorder "virtual-1"; quillon disc eject '
             "takes it out."),
            (["erase"], 'The disc in the recorder "virtual-1" cannot be erased.'),
            (["eject", "--recorder", "other"], 'There is no recorder "other".'),
            (["eject"], None),
            (["erase"], 'There is no disc in the recorder "virtual-1".'),
            (["insert", "--media", "cd-rom"], "A pressed disc is never blank: it needs an image."),
            (["insert", "--media", "cd-r", "--capacity", "449850"],
             "A disc of the kind cd-r has 1 to 449849 sectors."),
            (["insert", "--image", short],
             f'"{short}" is no disc image: it does not end with a whole sector.'),
            (["insert", "--media", "cd-rw", "--protect"], None),
            (["erase"], 'The disc in the recorder "virtual-1" is write-protected.'),
        ]
        self.disc("list")
        for arguments, sentence in cases:
            with self.subTest(arguments=arguments):
                result = self.disc(*arguments, status=0 if sentence is None else 1)
                self.assertEqual(result["error"], sentence)
        self.choose_service("none")
        self.assertEqual(self.disc("list")["recorders"], [])
        none = "; a virtual recorder is there when QUILLON_RECORDERS names a directory for it."
        self.assertEqual(self.disc("status", status=1)["error"],
                         "There is no drive that writes discs" + none)
        run = self.run_program("disc", "list")
        self.assertEqual((run.returncode, run.stdout), (0, b""))
        self.assertIn(b"quillon: There is no recorder: ", run.stderr)

    @unittest.skipUnless(shutil.which("xorriso"), "xorriso is not installed")
    def test_a_file_that_libburn_takes_for_a_drive_is_written_and_read_back(self):
        disc = self.dir / "disc.img"
        self.choose_service("drives", f'"Drives"="stdio:{disc}"\n')
        if "quillon-optical is not installed" in (self.disc("list")["recorders"][0]["problem"] or ""):
            self.skipTest("this build has no libburn")
        self.write("one", program.dicom_file())
        for service in ("first", "again, over what is there"):
            with self.subTest(service=service):
                run = self.run_program("publish", "--keep", "--replace", "--root", self.root,
                                       self.source)
                self.assertEqual((run.returncode, run.stderr.decode()), (0, ""))
                out = self.dir / service
                subprocess.run(["xorriso", "-osirrox", "on", "-indev", disc, "-extract", "/", out],
                               check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
                self.assertEqual(program.contents(out), program.contents(self.root))
        self.assertEqual(self.disc("list")["recorders"][0]["disc"]["state"], "appendable")
        self.assertEqual(self.disc("insert", status=1)["error"],
                         "The service has no virtual recorders: --recorder names one, and "
                         "QUILLON_RECORDERS the directory of all.")
        self.disc("erase")
        self.assertEqual(self.disc("list")["recorders"][0]["disc"]["state"], "blank")

    def test_wrong_usage_is_told_apart(self):
        for arguments in ([], ["insert", "--media", "cd-x"], ["insert", "--capacity", "many"],
                          ["erase", "disc"]):
            with self.subTest(arguments=arguments):
                self.assertEqual(self.run_program("disc", *arguments).returncode, 2)
        self.assertEqual(self.run_program("disc", "--help").returncode, 0)


if __name__ == "__main__":
    program.QUILLON = Path(sys.argv.pop(1)).resolve()
    unittest.main()
