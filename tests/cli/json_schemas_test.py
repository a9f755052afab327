"""What each command prints with --json, done, failed and for a wrong command line, against docs/json;
and that docs/json describes nothing that never comes."""
import copy
import fcntl
import json
import os
import shutil
import subprocess
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent))
import json_schemas  # noqa: E402
import program  # noqa: E402
from program import dicom_file  # noqa: E402

COMMANDS = [["create"], ["write"], ["publish"], ["list"], ["verify"], ["header"], ["profiles"],
            ["config"], ["config", "get"], ["config", "set"], ["config", "unset"], ["wipe"],
            ["register"], ["unregister"], ["completion"], ["help"],
            *(["disc", verb] for verb in ("list", "status", "insert", "eject", "erase"))]
# What a machine of tests need not have: somebody who logged in, or the contrary.
DEPENDS_ON_MACHINE = {("audit.schema.json", "login")}
BROKEN_REGISTRY = "no key and no value\n"
NOT_UTF8 = os.fsdecode(b"bad\xff.dcm")


def places(schema, name, at=""):
    """The `properties` in a schema and below it, each with its place."""
    if isinstance(schema, list):
        for i, one in enumerate(schema):
            yield from places(one, name, f"{at}/{i}")
    elif isinstance(schema, dict):
        if isinstance(schema.get("properties"), dict) and "const" not in schema:
            yield name + at, schema["properties"]
        for key, one in schema.items():
            yield from places(one, name, f"{at}/{key}")


def may_be_null(property_schema):
    kinds = [property_schema, *property_schema.get("anyOf", [])]
    return any("null" in kind.get("type", []) for kind in kinds)


def with_foreign_members(value, at="$"):
    """Copies of a value, each with a member more in one of its objects; of a list in the first and the
    last one."""
    if isinstance(value, dict):
        yield at, {**value, "foreign": 1}
    ends = {0: value[0], len(value) - 1: value[-1]} if isinstance(value, list) and value else {}
    for key, one in value.items() if isinstance(value, dict) else ends.items():
        if isinstance(one, (dict, list)):
            for place, changed in with_foreign_members(one, f"{at}/{key}"):
                whole = copy.copy(value)
                whole[key] = changed
                yield place, whole


@unittest.skipIf(json_schemas.jsonschema is None, "python3-jsonschema is not installed")
class JsonSchemas(program.ProgramTest):
    def setUp(self):
        super().setUp()
        self.printed = []
        self.audit = self.dir / "audit.jsonl"
        self.use_recorders(False)

    def environment(self):
        more = {"XDG_STATE_HOME": str(self.dir / "state")}
        if self.recorders is not None:
            more["QUILLON_RECORDERS"] = str(self.recorders)
        return {**super().environment(), **more}

    def use_recorders(self, are_there):
        self.recorders = self.dir / "recorders" if are_there else None
        if are_there:
            self.registry.unlink()
        else:
            self.configure()

    def run_json(self, *arguments, status=0):
        """The object, which run_program has held to its schema."""
        run = self.run_program(*arguments, "--json")
        self.assertEqual(run.returncode, status, (arguments, run.stdout, run.stderr))
        self.printed.append(([*arguments, "--json"], status, json.loads(run.stdout)))
        return self.printed[-1][2]

    def fill_source(self):
        self.sample_tree()
        self.write(NOT_UTF8, dicom_file(instance="2.25.1.1.1.9", id=None, study_date=None))
        self.write(NOT_UTF8 + "x", b"no DICOM")
        self.write("many", dicom_file(instance="2.25.1.1.1.8", more={
            0x00091001: program.element(0x00091001, "OB", bytes(200))}))

    def created(self):
        audit = ["--audit", self.audit]
        self.run_json("create", *audit, "--root", self.root, self.source)
        self.run_json("create", *audit, "--root", self.root, self.source, status=1)
        self.run_json("create", "--replace", "--root", self.root, "--invent", "--modality", "CT",
                      self.source)
        for profile in ("auto", "STD-XABC-CD"):
            self.run_json("create", "--dry-run", "--root", self.dir / "no", "--profile", profile,
                          self.source)
        two = [self.write("same/" + name, dicom_file(name=name, instance=f"2.25.7.{name}",
                                                     study=f"2.25.{name}", series=f"2.25.{name}.1"))
               for name in ("1", "2")]
        found = self.run_json("create", "--dry-run", "--root", self.dir / "no", "--profile",
                              "STD-GEN-CD", *two)
        self.assertIsNone(found["profile"]["found"][0]["path"])
        self.run_json("create", "--dry-run", "--strict", "--root", self.dir / "no", self.source, status=1)

    def written(self):
        write = ["write", "--root", self.root, "--keep", "--audit", self.audit]
        self.run_json("publish", "--keep", "--root", self.root, "--replace", "--to", self.dir / "to",
                      "--audit", self.audit, self.source)
        self.run_json(*write, "--zip", self.dir / "set.zip")
        self.run_json(*write, "--iso", self.dir / "set.iso")
        self.run_json(*write, "--iso", self.dir / "set.iso", status=1)
        self.run_json(*write, "--no-sums", "--to", self.dir / "to2")
        self.run_json(*write, "--dry-run", "--to", self.dir / "to3")
        self.run_json(*write, status=1)  # no recorder
        self.use_recorders(True)
        self.run_json(*write, "--copies", "2", "--wait", "0", status=1)
        self.run_json("disc", "insert")
        self.run_json(*write)
        self.run_json("publish", "--dry-run", "--to", self.dir / "to3", self.source)
        content = self.dir / "content"
        content.mkdir()
        for name in (b"\xfe", b"\xff"):
            (content / os.fsdecode(name)).write_bytes(name)
        published = self.run_json("publish", "--other-content", content, "--audit", self.audit,
                                  "--to", self.dir / os.fsdecode(b"to\xff"), self.source)
        self.assertEqual([bytes.fromhex(one["path_hex"])[-1] for one in published["sums_by_bytes"]],
                         [0xFE, 0xFF])
        large = ["--zip", self.dir / "span.zip", "--capacity", "4.9MB", "--span", "--no-sums"]
        objects = [self.write(f"span/{i}", dicom_file(
            study=f"2.25.5.{i}", series=f"2.25.5.{i}.1", instance=f"2.25.5.{i}.1.1")
            + program.element(0x7FE00010, "OW", bytes(3_000_000))) for i in range(2)]
        self.run_json("publish", *large, "--audit", self.audit, *objects)
        self.run_json("publish", *large, *objects, status=1)
        self.run_json("publish", *large, "--dry-run", self.dir / "none", status=1)
        self.run_json("publish", "--audit", self.audit, "--files-from", self.dir / "none", status=1)
        self.run_json("disc", "insert")
        plan = self.recorders / "virtual-1/faults.txt"
        plan.write_text("write-fails-at 100\n")
        spanned = self.run_json("publish", "--span", "--capacity", "4.9MB", *objects, status=1)
        self.assertIsNotNone(spanned["media"][0]["error"])
        plan.unlink()
        self.run_json("disc", "eject")

    def refused(self):
        """Before anything is known."""
        self.registry.write_text(BROKEN_REGISTRY)
        for command in (["create", self.source], ["write"], ["publish", "--to", self.dir / "no", self.source],
                        ["disc", "list"], ["disc", "status"], ["disc", "insert"], ["disc", "eject"],
                        ["disc", "erase"], ["config"], ["config", "get", "Service"],
                        ["config", "set", "Service", "none"], ["config", "unset", "Service"]):
            self.run_json(*command, status=1)
        self.use_recorders(True)
        for command in (["create", self.source], ["write"], ["publish", self.source], ["list", self.source],
                        ["verify", self.source], ["header", self.source / "none"]):
            self.run_json(*command, "--log", self.dir / "none/log", status=1)

    def read(self):
        self.run_json("disc", "insert", "--image", self.dir / "set.iso")
        for command, status in (("list", 0), ("verify", 1)):  # values are missing
            self.run_json(command, self.dir / "to", status=status)
            self.run_json(command, "--disc", "--recorder", "virtual-1", status=status)
            self.run_json(command, self.dir / "none", status=1)
            self.run_json(command, self.dir / NOT_UTF8, status=1)
        self.assertFalse(self.run_json("verify", self.dir / "none", status=1)["whole"])
        self.run_json("verify", "--profile", "STD-XABC-CD", self.dir / "set.zip", status=1)
        (self.dir / "to/LABEL.TXT").write_bytes(b"changed")
        shutil.rmtree(next((self.dir / "to/DICOMOBJ").iterdir()), ignore_errors=True)
        next((self.dir / "to").rglob("DICOMOBJ/*")).unlink()
        found = self.run_json("verify", self.dir / "to", status=1)
        self.assertIsNone(found["error"])
        self.write("cut.dcm", dicom_file()[:200])
        self.run_json("list", self.source)
        self.run_json("header", "-r", self.source, status=1)
        self.run_json("header", "--xml", self.source / NOT_UTF8)
        self.run_json("header", self.dir / "to/DICOMDIR", self.dir / "none", status=1)
        self.run_json("header", "--stylesheet", "html", self.source / "none", status=1)

    def discs(self):
        for verb in ("list", "status", "eject", "eject", "erase"):
            self.run_json("disc", verb, status=verb == "erase")
        self.run_json("disc", "insert")
        self.run_json("disc", "status")
        self.run_json("disc", "eject")
        self.run_json("disc", "insert", "--media", "cd-rw", "--image", self.dir / "set.iso")
        self.run_json("disc", "status")
        self.run_json("disc", "insert", status=1)
        self.run_json("disc", "erase")
        self.run_json("disc", "eject", "--recorder", "none", status=1)
        lock, = self.recorders.glob("*/lock")
        with open(lock, "w") as user:
            fcntl.flock(user, fcntl.LOCK_EX)
            user.write("Other Program")
            user.flush()
            self.assertEqual(self.run_json("disc", "list")["recorders"][0]["used_by"], "Other Program")
            self.run_json("disc", "status")
        self.use_recorders(False)
        self.run_json("disc", "status", status=1)
        for command in ("list", "verify"):
            self.run_json(command, "--disc", status=1)

    def others(self):
        self.run_json("profiles")
        self.run_json("config")
        self.run_json("config", "set", "InstitutionName", "Hospital")
        self.run_json("config", "get", "InstitutionName")
        self.run_json("config", "set", "CurrentPractice", "2", status=1)
        self.run_json("config", "unset", "InstitutionName")
        self.run_json("wipe", "--root", "x" * 300, status=1)
        self.run_json("wipe", "--root", self.dir / "to", "--force")
        self.run_json("wipe", "--root", self.dir / "home", status=1)
        self.run_json("register", self.dir / "none.so", status=1)
        self.run_json("unregister", self.dir / "none.so", status=1)
        self.run_json("register")
        self.run_json("unregister")
        alone = self.dir / "alone"
        shutil.copy(program.QUILLON, alone)
        quillon, program.QUILLON = program.QUILLON, str(alone)
        try:
            self.assertIsNone(self.run_json("register", status=1)["library"])
        finally:
            program.QUILLON = quillon
        for shell in ("bash", "zsh", "fish"):
            self.run_json("completion", shell)
        self.assertEqual(self.run_json("completion", "bash")["script"].encode(),
                         self.run_program("completion", "bash").stdout)
        for words in ([], ["create"], ["disc", "insert"]):
            shown = self.run_json("help", *words)
            self.assertEqual(shown["command"], " ".join(words) or None)
            self.assertEqual(shown["help"].encode(), self.run_program("help", *words).stdout)
            self.assertEqual(self.run_json(*words, "--help"), shown)

    def test_what_comes_is_described_and_what_is_described_comes(self):
        for command in COMMANDS:
            self.run_json(*command, "--no-such-option", status=2)
        self.fill_source()
        for part in (self.created, self.written, self.refused, self.read, self.discs, self.others):
            with self.subTest(part.__name__):
                part()
        for line in self.audit.read_text().splitlines():
            self.assertEqual(json_schemas.faults("audit", json.loads(line)), [])
        never = []
        for name, schema in json_schemas.schemas.items():
            for place, properties in places(schema, name):
                for member, described in properties.items():
                    if (name, member) in DEPENDS_ON_MACHINE:
                        continue
                    nulls = {True, False} if may_be_null(described) else {False}
                    if described.get("type") == "null" or "noError" in described.get("$ref", ""):
                        nulls = {True}
                    elif described.get("$ref", "").endswith("/error"):
                        nulls = {True, False}
                    never += [f"{place}: {member}" + " as null" * null for null in nulls
                              if (id(properties), member, null) not in json_schemas.came]
        self.assertFalse(never, "\n".join(never))
        # No object of any output takes a member that is not described.
        for arguments, status, printed in self.printed:
            name = json_schemas.schema_of([os.fsdecode(one) for one in arguments], status)
            for place, changed in with_foreign_members(printed):
                self.assertNotEqual(json_schemas.faults(name, changed), [], (arguments, place))

    def test_a_file_on_standard_output_has_nothing_else_in_it(self):
        self.fill_source()
        broken = self.dir / "broken.reg"
        broken.write_text(BROKEN_REGISTRY)
        for stream in (["--zip", "-"], ["--iso=-"]):
            for more, status, environment in (
                    (["--no-such-option"], 2, {}), ([], 1, {"QUILLON_REGISTRY": str(broken)}), ([], 0, {})):
                with self.subTest((stream, status)):
                    run = subprocess.run(
                        [program.QUILLON, "publish", "--json", *stream, *more, self.source],
                        capture_output=True, env={**self.environment(), **environment})
                    self.assertEqual(run.returncode, status, run.stderr)
                    self.assertEqual(run.stdout != b"", status == 0)
                    told = json.loads(run.stderr.splitlines()[0])
                    self.assertEqual(json_schemas.faults("usage" if status == 2 else "publish", told), [])
                    self.assertEqual(told["error"] is None, status == 0)
        run = subprocess.run(["sh", "-c", '"$0" publish --json --zip - "$1" >&-', program.QUILLON, self.source],
                             capture_output=True, env=self.environment())
        self.assertEqual(run.returncode, 1)
        self.assertIn("Standard output cannot be written", json.loads(run.stderr.splitlines()[0])["error"])

    def test_every_member_is_described(self):
        for name, schema in json_schemas.schemas.items():
            json_schemas.jsonschema.Draft202012Validator.check_schema(schema)
            self.assertEqual(schema["$id"], name)
            for place, properties in places(schema, name):
                for member, described in properties.items():
                    if place.endswith("/if"):
                        continue
                    with self.subTest(f"{place}: {member}"):
                        self.assertTrue("$ref" in described or described["description"].endswith((".", "\\n.")))
        index = (json_schemas.SCHEMAS / "README.md").read_text()
        for name in json_schemas.schemas:
            self.assertIn(f"({name})", index)

    def test_names_in_any_bytes_are_told_as_an_independent_reader_replaces_them(self):
        self.source.mkdir()
        for name in (b"\xff\xe9", b"a\xe2\x82", b"\xe2\x82(", b"\xed\xa0\x80", b"\xf0\x9f\x98x", b"\xc0\xaf",
                     b"\xc3\xa9\x01\"\\", b"\xf4\x90\x80\x80"):
            (self.source / os.fsdecode(name)).write_bytes(b"none")
            with self.subTest(name):
                path = self.source / os.fsdecode(name)
                one, = self.run_json("header", path, status=1)["files"]
                self.assertEqual(one["path"], os.fsencode(path).decode(errors="replace"))
                hexadecimal = one.get("path_hex", one["path"].encode().hex())
                self.assertEqual(bytes.fromhex(hexadecimal), os.fsencode(path))
                self.assertEqual("path_hex" in one, "\ufffd" in one["path"])
        # What commands a terminal is escaped.
        run = self.run_program("header", "--json", os.fsdecode(b"\xc2\x9b31m\x7f"))
        self.assertNotRegex(run.stdout, rb"[\x7f\x9b]")
        self.assertEqual(json.loads(run.stdout)["files"][0]["path"], "\x9b31m\x7f")


if __name__ == "__main__":
    program.QUILLON, program.SAMPLES = map(os.path.abspath, sys.argv[1:3])
    unittest.main(argv=[sys.argv[0], "-v", *sys.argv[3:]])
