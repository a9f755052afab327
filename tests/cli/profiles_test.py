"""quillon profiles, and what create, publish and verify do with --profile."""
import json
import struct
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent))
import program  # noqa: E402
from program import contents, dicom_file, element  # noqa: E402


def number(tag, value):
    return element(tag, "US", struct.pack("<H", value))


def image(instance, photometric="MONOCHROME2", rows=64, more=(), **changes):
    more = {**dict(more), 0x00080008: element(0x00080008, "CS", "ORIGINAL\\PRIMARY"),
            0x00280004: element(0x00280004, "CS", photometric),
            0x00280011: number(0x00280011, 64)}
    if rows is not None:
        more[0x00280010] = number(0x00280010, rows)
    return dicom_file(instance=f"2.25.1.1.1.{instance}", number=str(instance), more=more, **changes)


class ProfilesTest(program.ProgramTest):
    def setUp(self):
        super().setUp()
        self.configure()

    def environment(self):
        recorders = self.dir / "recorders"
        return {**super().environment(),
                **({"QUILLON_RECORDERS": str(recorders)} if recorders.exists() else {})}

    def objects(self, *files):
        self.source.mkdir(exist_ok=True)
        for i, content in enumerate(files):
            (self.source / f"{i}.dcm").write_bytes(content)

    def verified(self, medium, profile):
        """The findings that concern a profile: code and message."""
        run = self.run_program("verify", "--json", "--profile", profile, medium)
        report = json.loads(run.stdout)
        self.assertIsNone(report["error"])
        return [(finding["code"], finding["message"]) for finding in report["findings"]
                if finding["code"].startswith("profile")]

    def test_the_list_names_what_the_option_takes(self):
        listed = self.command("profiles")["profiles"]
        lines = self.run_program("profiles").stdout.decode().splitlines()
        self.assertGreater(len(listed), 40)
        self.assertEqual([line.split()[0] for line in lines], [one["name"] for one in listed])
        self.objects(image(1))
        for one in listed:
            with self.subTest(one["name"]):
                result = self.create_set("--dry-run", "--profile", one["name"].lower(), self.source)
                self.assertEqual(result["profile"]["name"], one["name"])
        for command in ("create", "publish", "verify"):
            with self.subTest(command):
                run = self.run_program(command, "--profile", "STD-GEN-CDR", self.source)
                self.assertEqual(run.returncode, 2)
                self.assertIn(b"STD-GEN-CDR is no profile; did you mean STD-GEN-CD? "
                              b"quillon profiles lists them", run.stderr)

    def test_what_is_not_met_is_told_by_rule_with_the_users_files(self):
        self.objects(image(1), image(2, "MONOCHROME1"), image(3, "MONOCHROME1"),
                     image(4, rows=None), image(5, sop_class="1.2.3.4"))
        # From the directory above, so that the paths are those that the user gave.
        run = self.run_program("create", "--root", self.root, "--profile", "STD-CTMR-CD",
                               "source", cwd=self.dir)
        self.assertEqual(run.returncode, 0, run.stderr)
        told = run.stderr.decode()
        self.assertIn("Profile:   STD-CTMR-CD, not met: 4 violations\n", run.stdout.decode())
        rule = "quillon: STD-CTMR-CD: "
        self.assertIn(rule + "Photometric Interpretation (0028,0004) must be MONOCHROME2: "
                      "source/1.dcm (MONOCHROME1), source/2.dcm (MONOCHROME1).\n", told)
        self.assertIn(rule + "Rows (0028,0010) must have a value in the directory: "
                      "source/3.dcm (none).\n", told)
        self.assertIn(rule + "SOP Class UID (0008,0016) must be one that the profile takes: "
                      "source/4.dcm (1.2.3.4).\n", told)
        self.assertEqual(sorted(code for code, _ in self.verified(self.root, "STD-CTMR-CD")),
                         ["profile-key"] + ["profile-object"] * 3)

    def test_strict_makes_nothing(self):
        self.objects(image(1), image(2, "MONOCHROME1"))
        before = contents(self.dir)
        for arguments in (["create", "--root", self.root], ["create", "--root", self.root, "--move"],
                          ["publish", "--to", self.dir / "copy"],
                          ["publish", "--iso", self.dir / "copy.iso"]):
            with self.subTest(arguments[0]):
                result = self.command(*arguments, "--strict", "--profile", "STD-CTMR-CD",
                                      self.source, status=1)
                self.assertIn("STD-CTMR-CD", result["error"])
                self.assertEqual(result["error"].count(". "), 0)
                self.assertEqual(contents(self.dir), before)
        # One that is met is made.
        self.create_set("--strict", "--profile", "STD-GEN-CD", self.source)

    def test_a_set_has_the_keys_that_its_profile_wants(self):
        more = {0x00080080: element(0x00080080, "LO", "HOSPITAL"),
                0x00200032: element(0x00200032, "DS", "1\\2\\3")}
        self.objects(image(1, more=more))
        for profile in ("STD-GEN-CD", "STD-CTMR-CD", "STD-GEN-DVD-JPEG"):
            with self.subTest(profile):
                self.create_set("--replace", self.source)
                self.assertNotEqual(self.verified(self.root, profile), [])
                self.create_set("--replace", "--profile", profile, self.source)
                self.assertEqual(self.verified(self.root, profile), [])
        # Its neighbours may want more.
        self.assertEqual([code for code, _ in self.verified(self.root, "STD-XABC-CD")],
                         ["profile-key"] * 3 + ["profile-icon", "profile-object"])

    def test_the_medium_is_a_rule(self):
        self.objects(image(1))
        cases = [  # how, profile, whether it is met
            (["--to"], "STD-GEN-USB-JPEG", True), (["--to"], "STD-GEN-CD", False),
            (["--iso"], "STD-GEN-CD", True), (["--iso"], "STD-GEN-DVD-RAM", True),
            (["--iso"], "STD-GEN-USB-JPEG", False), (["--zip"], "STD-GEN-ZIP-MAIL", True),
            (["--zip"], "STD-GEN-CD", False), (["--zip"], "STD-GEN-MIME", False),
        ]
        for i, (how, profile, is_met) in enumerate(cases):
            with self.subTest((how, profile)):
                target = self.dir / f"medium{i}"
                arguments = ["--profile", profile, *how, target, self.source]
                result = self.command("publish", "--strict", *arguments, status=0 if is_met else 1)
                self.assertEqual(target.exists(), is_met)
                self.assertEqual(result["profile"]["violations"], 0 if is_met else 1)
                if not is_met:
                    self.command("publish", *arguments)
                codes = [code for code, _ in self.verified(target, profile)]
                # What a directory lies on nobody knows.
                is_told = not is_met and how != ["--to"]
                self.assertEqual(codes, ["profile-medium"] if is_told else [])

    def test_a_disc_is_of_the_kind_that_lies_in_the_recorder(self):
        self.registry.unlink()
        recorder = self.dir / "recorders/drive"
        recorder.mkdir(parents=True)
        (recorder / "recorder.txt").write_text("vendor = Quillon\nproduct = Virtual Recorder\n"
                                               "revision = 1.0\nmedia = cd-r dvd+r\n")
        self.objects(image(1))
        for media, met, missed in (("cd-r", "STD-GEN-CD", "STD-GEN-DVD-JPEG"),
                                   ("dvd+r", "STD-GEN-DVD-JPEG", "STD-GEN-BD")):
            with self.subTest(media):
                (recorder / "disc.txt").write_text(f"media = {media}\nstate = blank\n"
                                                   "capacity = 300000\nused = 0\nprotected = no\n")
                result = self.command("publish", "--strict", "--profile", missed, self.source,
                                      status=1)
                self.assertIn("the medium must be ", result["error"])
                self.assertIn("state = blank", (recorder / "disc.txt").read_text())
                result = self.command("publish", "--strict", "--no-eject", "--profile", met,
                                      self.source)
                self.assertEqual(result["profile"]["violations"], 0)
                for profile, codes in ((met, []), (missed, ["profile-medium"])):
                    found = self.verified("--disc", profile)
                    self.assertEqual([code for code, _ in found if code == "profile-medium"], codes)
                (recorder / "disc.iso").unlink()

    def test_auto_names_those_that_are_met(self):
        self.objects(image(1), image(2))
        met = self.create_set("--profile", "auto", self.source)["profile"]["met"]
        for name in ("STD-GEN-CD", "STD-GEN-DVD-J2K", "STD-CTMR-CD", "STD-GEN-ZIP-MAIL"):
            self.assertIn(name, met)
            self.assertEqual(self.verified(self.root, name), [])
        for name in ("STD-XABC-CD", "STD-DEN-CD", "STD-US-ID-SF-CDR", "STD-DVD-MPEG2-MPML"):
            self.assertNotIn(name, met)
        on_stick = self.command("publish", "--profile", "auto", "--to", self.dir / "stick",
                                self.source)["profile"]["met"]
        self.assertEqual({name.split("-")[2] for name in on_stick},
                         {"USB", "MMC", "CF", "SD", "MOD41"})
        self.objects(image(1, sop_class="1.2.3.4"))
        run = self.run_program("create", "--root", self.root, "--replace", "--profile", "auto",
                               self.source)
        self.assertIn(b"Profiles:  none is met\n", run.stdout)
        result = self.create_set("--replace", "--strict", "--profile", "auto", self.source, status=1)
        self.assertEqual(result["error"], "The file set meets none of the profiles.")

    def test_two_patients_with_one_id_are_two_many(self):
        self.objects(image(1), image(2, name="ROE^JANE", study="2.25.2", series="2.25.2.1"))
        self.assertEqual(self.create_set("--profile", "STD-GEN-CD", self.source)["profile"]["found"],
                         [{"path": None, "rule": "Patient ID (0010,0020) must be another one for "
                           "each patient", "value": "12345"}])
        self.assertEqual([code for code, _ in self.verified(self.root, "STD-GEN-CD")],
                         ["profile-patient-id"])

    def test_records_of_old_have_no_profile(self):
        self.configure(current_practice=0)
        self.objects(image(1))
        result = self.create_set("--profile", "STD-GEN-CD", self.source, status=1)
        self.assertIn("CurrentPractice", result["error"])


if __name__ == "__main__":
    program.QUILLON = sys.argv.pop(1)
    unittest.main()
