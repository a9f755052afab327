"""quillon config, and what jobs make of what is configured: institution, other content, damaged registries."""
import json
import os
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent))
import program  # noqa: E402
from program import contents, dicom_file, everything  # noqa: E402


class Config(program.ProgramTest):
    def setUp(self):
        super().setUp()
        self.own = self.dir / "home/config/quillon/registry.reg"
        self.file = self.write("one", dicom_file())

    def environment(self):
        environment = super().environment()
        environment.update(getattr(self, "more", {}))
        return environment

    def config(self, *arguments, status=0):
        return self.command("config", *arguments, status=status)

    def verb(self, verb, *arguments, status=0):
        run = self.run_program("config", verb, "--json", *arguments)
        self.assertEqual(run.returncode, status, run.stderr)
        return json.loads(run.stdout)

    def shown(self):
        return {one["name"]: one for one in self.config()["values"]}

    def test_the_guide_has_the_table_of_the_values(self):
        guide = Path(__file__).resolve().parents[2] / "docs/guide-administration.md"
        told = [line for line in guide.read_text().splitlines() if line.startswith("| `")]
        table = []
        for name, one in self.shown().items():
            default = "" if one["from"] == "environment" else one["value"] or ""
            table.append(f"| `{name}` | {one['type']} | {default} | {one['meaning']} |")
        self.assertEqual(told, table)

    def test_every_value_can_be_set_shown_and_taken_away(self):
        viewer = self.dir / "view"
        viewer.mkdir()
        key = self.write("key", b"0123456789abcdef\n")
        texts = {"InstitutionName": "Klinik Müller", "InstitutionAddress": "1 \"High\" \\ Street",
                 "InstitutionPhone": "+49 1", "InstitutionWeb": "https://example.org",
                 "InstitutionDisclaimer": "For doctors.", "Drives": "/dev/sr1"}
        values = {**texts, "OtherContentSourceDir": str(viewer), "OtherContentDirectory": ".",
                  "AuditFile": str(self.dir / "audit"), "AuditHashKey": str(key),
                  "ToolkitLogFile": str(self.dir / "log"), "Service": "virtual", "ACP": "65001",
                  "CurrentPractice": "0", "PortableData": "1", "AuditSyslog": "1", "AuditHash": "1"}
        before = {name: one for name, one in self.shown().items() if one["type"] != "environment"}
        self.assertEqual(set(before), set(values))
        self.assertEqual({one["from"] for one in before.values()}, {"default"})
        self.assertEqual(before["OtherContentDirectory"]["value"], "QUILLON")
        for name, value in values.items():
            with self.subTest(name):
                self.assertEqual(self.verb("set", name.lower(), value)["value"], value)
                self.assertEqual(self.verb("get", name)["value"], value)
        for name, one in self.shown().items():
            if one["type"] != "environment":
                self.assertEqual((one["value"], one["from"]), (values[name], "registry"), name)
                self.assertTrue(one["meaning"])
        text = self.run_program("config").stdout.decode()
        self.assertIn(f"Registry file: {self.registry}\n", text)
        self.assertIn("Klinik Müller  (registry)", text)
        self.assertEqual(self.run_program("config", "get", "Service").stdout, b"virtual\n")
        for name in values:
            self.verb("unset", name)
        after = self.shown()
        self.assertEqual({name: after[name] for name in before}, before)
        self.assertEqual(self.run_program("config", "unset", "Service").stdout,
                         b"Service was not set.\n")

    def test_what_a_value_cannot_be_is_refused_and_changes_nothing(self):
        self.run_program("config", "set", "InstitutionName", "x")
        before = everything(self.dir)
        gone = str(self.dir / "none")
        cases = [
            ("CurrentPractice", "yes", "CurrentPractice is 0 or 1, and not yes."),
            ("Service", "Auto", "Service is one of auto, virtual, drives, legacy, none, and not Auto."),
            ("ACP", "99999", "ACP is the number of a code page that the system has, and 99999 is none."),
            ("OtherContentSourceDir", gone, f"There is no directory {gone}."),
            ("OtherContentSourceDir", str(self.file), f"There is no directory {self.file}."),
            ("OtherContentDirectory", "a/../b",
             'Other content cannot lie in "a/../b" on a medium.'),
            ("OtherContentDirectory", "/a", 'Other content cannot lie in "/a" on a medium.'),
            ("AuditFile", str(self.source), f"{self.source} is a directory."),
            ("AuditFile", gone + "/a", f"There is no directory {gone} for the file {gone}/a."),
            ("AuditHashKey", gone, f"There is no file {gone}."),
            ("InstitutionName", "", "InstitutionName cannot be empty; quillon config unset "
                                    "InstitutionName takes it away."),
            ("InstitutionName", "a\nb", "InstitutionName is one line of at most 2000 characters, "
                                        "in UTF-8."),
            ("InstitutionName", b"M\xfcller", "InstitutionName is one line of at most 2000 "
                                              "characters, in UTF-8."),
            ("InstitutionName", "x" * 2001, "InstitutionName is one line of at most 2000 "
                                            "characters, in UTF-8."),
        ]
        for name, value, sentence in cases:
            with self.subTest(name=name, value=value):
                self.assertEqual(self.verb("set", name, value, status=1)["error"], sentence)
                self.assertEqual(everything(self.dir), before)
        for arguments in (["set", "InstitutonName", "x"], ["get", "institutionnam"]):
            run = self.run_program("config", *arguments)
            self.assertEqual(run.returncode, 2)
            self.assertIn(b"did you mean InstitutionName?", run.stderr)

    def test_the_environment_is_told_and_the_users_own_file_is_made(self):
        self.more = {"QUILLON_REGISTRY": "", "QUILLON_RECORDERS": str(self.dir / "recorders")}
        shown = self.shown()
        self.assertEqual((shown["Service"]["value"], shown["Service"]["from"]),
                         ("virtual", "environment"))
        self.assertEqual(shown["QUILLON_RECORDERS"]["value"], str(self.dir / "recorders"))
        self.assertFalse(self.own.exists())
        self.verb("set", "Service", "drives")
        self.assertIn('"Service"="drives"', self.own.read_text())
        self.assertEqual(self.shown()["Service"]["from"], "registry")

    def test_a_registry_that_is_not_understood_ends_every_job_before_it_begins(self):
        self.configure()
        good = self.registry.read_text()
        for text, line in ((good + "nonsense\n", 7), ("\0garbage", 1)):
            self.registry.write_text(text)
            before = everything(self.dir)
            sentence = (f"quillon: The registry file {self.registry} cannot be understood: line "
                        f"{line} is neither a key nor a value.\n").encode()
            for arguments in (["create", "--root", self.root, self.file],
                              ["publish", "--to", self.dir / "out", self.file],
                              ["write", "--root", self.root, "--to", self.dir / "out"],
                              ["config", "set", "InstitutionName", "x"],
                              ["config", "unset", "Service"], ["config", "get", "Service"]):
                with self.subTest(arguments):
                    run = self.run_program(*arguments)
                    self.assertEqual((run.returncode, run.stderr), (1, sentence))
                    self.assertEqual(everything(self.dir), before)
        # A value of another type would not be there for those who read it.
        self.registry.write_text(good + '"AuditFile"=dword:00000001\n')
        sentence = f"The value AuditFile in the registry file {self.registry} is not a text."
        before = everything(self.dir)
        self.assertEqual(self.verb("get", "AuditFile", status=1)["error"], sentence)
        self.assertEqual(self.config(status=1)["error"], sentence)
        for command in (["create", "--root", self.dir / "new", self.file],
                        ["publish", "--to", self.dir / "out", self.file],
                        ["write", "--root", self.root, "--to", self.dir / "out"]):
            self.assertEqual(self.command(*command, status=1)["error"], sentence)
        self.assertIn(sentence, self.run_program("disc", "list").stderr.decode())
        self.assertEqual(everything(self.dir), before)
        self.verb("unset", "AuditFile")
        self.create_set("--replace", self.file)

    def test_the_label_names_the_institution(self):
        lines = []
        for name, value in (("Name", "Klinik Müller"), ("Address", "1 High Street"),
                            ("Phone", "+49 1"), ("Web", "example.org"), ("Disclaimer", "Ask.")):
            self.verb("set", "Institution" + name, value)
            title = "Institution" if name == "Name" else name
            lines.append(f"{title}:  {value}")
        label = self.create_set(self.file)["label"]
        self.assertTrue(label.endswith("DICOM ONLY\n" + "\n".join(lines)), label)
        self.assertEqual((self.root / "LABEL.TXT").read_bytes(), (label + "\n").encode("utf-16-le"))

    def viewer(self, name, *files):
        for file in files:
            path = self.dir / name / file
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_bytes(b"x" + file.encode())
        return self.dir / name

    def test_other_content_goes_where_the_command_says(self):
        start = self.viewer("start", "autorun.inf", "README.TXT", "bin/view.exe")
        more = self.viewer("more", "a")
        self.configure(other_content=self.viewer("usual", "u"))
        own = {"DICOMDIR", "LABEL.TXT", "DICOMOBJ/QLN00001"}
        cases = [
            ([], {"QUILLON/u"}),
            (["--no-other-content"], set()),
            (["--other-content", more], {"QUILLON/a"}),
            (["--other-content", f"{start}:.", "--other-content", f"{more}:VIEW/MORE"],
             {"autorun.inf", "README.TXT", "bin/view.exe", "VIEW/MORE/a"}),
            (["--other-content", f"{start}:A", "--other-content", f"{more}:A"],
             {"A/autorun.inf", "A/README.TXT", "A/bin/view.exe", "A/a"}),
        ]
        for arguments, expected in cases:
            with self.subTest(arguments):
                self.create_set("--replace", *arguments, self.file)
                self.assertEqual(set(contents(self.root)), own | expected)
        self.verb("set", "OtherContentDirectory", ".")
        out = self.dir / "out"
        self.command("publish", "--to", out, self.file)
        self.assertEqual(set(contents(out)), own | {"u"})

    def test_other_content_in_the_way_is_refused_with_nothing_changed(self):
        label = self.viewer("label", "label.txt")
        first = self.viewer("first", "a")
        second = self.viewer("second", "A")
        around = self.viewer("around", "view/x")
        gone = self.dir / "none"
        self.root.mkdir()
        (self.root / "old").write_bytes(b"old")
        inside = self.root / "view"
        inside.mkdir()
        (inside / "x").write_bytes(b"x")
        before = everything(self.dir)
        cases = [
            ([f"{label}:."], f"The other content of {label} would put label.txt into the file set, "
                             "which has its own there."),
            ([f"{first}:DICOMOBJ"], f"The other content of {first} would put DICOMOBJ/a into the "
                                    "file set, which has its own there."),
            ([f"{first}:V", f"{second}:V"], f"The other content of {first} and of {second} would "
                                            "both put V/A into the file set."),
            ([gone], f"The directory {gone} of the other content is not there."),
            ([self.dir], f"The directory {self.dir} of the other content holds the root directory "
                         f"{self.root}."),
            ([inside], f"The directory {self.root} is not wiped: it holds the source {inside}."),
        ]
        for named, sentence in cases:
            options = [word for one in named for word in ("--other-content", one)]
            for command in (["create"], ["publish", "--to", self.dir / "out"]):
                with self.subTest(named=named, command=command):
                    result = self.command(*command, "--replace", "--root", self.root, *options,
                                          self.file, status=1)
                    self.assertIn(result["error"],
                                  (sentence, sentence + " With --keep it is written and stays."))
                    self.assertEqual(everything(self.dir), before)
        result = self.command("publish", "--to", around, "--overwrite",
                              "--other-content", around / "view", self.file, status=1)
        self.assertEqual(result["error"],
                         f"The directory {around} holds the source {around / 'view'}.")
        for wrong in (f"{first}:", f"{first}:..", f"{first}:a//b", ":A"):
            run = self.run_program("create", "--root", self.root, "--other-content", wrong, self.file)
            self.assertEqual(run.returncode, 2, wrong)

    def test_configured_content_that_is_gone_is_told_and_refused_when_strict(self):
        gone = self.dir / "none"
        self.configure(other_content=gone)
        sentence = f"The directory {gone} of the other content is not there."
        run = self.run_program("create", "--root", self.root, self.file)
        self.assertEqual((run.returncode, run.stderr.decode()),
                         (0, f"quillon: {sentence} The medium goes without it.\n"))
        run = self.run_program("create", "--root", self.root, "--replace", "--no-other-content",
                               "--strict", self.file)
        self.assertEqual((run.returncode, run.stderr), (0, b""))
        before = contents(self.root)
        result = self.create_set("--replace", "--strict", self.file, status=1)
        self.assertEqual(result["error"], sentence)
        self.assertEqual(contents(self.root), before)


if __name__ == "__main__":
    program.QUILLON = os.path.abspath(sys.argv.pop(1))
    unittest.main()
