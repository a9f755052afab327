"""The record of each job: what is in it, that lines stay whole, and that no job goes without."""
import hashlib
import hmac
import json
import os
import resource
import socket
import subprocess
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent))
import json_schemas  # noqa: E402
import program  # noqa: E402
from program import dicom_file, everything  # noqa: E402

KEY = b"correct horse battery"


class Audit(program.ProgramTest):
    def setUp(self):
        super().setUp()
        self.audit = self.dir / "audit.log"
        self.file = self.write("one", dicom_file())

    def environment(self):
        recorders = getattr(self, "recorders", None)
        more = {} if recorders is None else {"QUILLON_RECORDERS": str(recorders)}
        return {**super().environment(), **more}

    def configure_more(self, *lines):
        self.configure()
        with open(self.registry, "a") as registry:
            registry.write("\n".join(lines) + "\n")

    def records(self):
        text = self.audit.read_text()
        self.assertTrue(text.endswith("\n"))
        records = [json.loads(line) for line in text.splitlines()]
        for record in records:
            self.assertEqual(json_schemas.faults("audit", record), [])
        return records

    def test_each_command_leaves_one_line_that_tells_all(self):
        second = self.write("two", dicom_file(instance="2.25.1.1.1.2", id="77", name="ROE",
                                              study="2.25.1.2", series="2.25.1.2.1"))
        out = self.dir / "out"
        image = self.dir / "disc.iso"
        audit = ["--audit", self.audit]
        self.create_set(*audit, self.source)
        self.create_set("--dry-run", "--replace", *audit, self.source)  # no job
        self.command("write", *audit, "--root", self.root, "--to", out, "--sums")
        self.command("publish", *audit, "--no-verify", "--no-sums", "--iso", image, "--volume", "V_1", self.file)
        gone = self.dir / "none"
        failed = self.command("publish", *audit, "--to", self.dir / "o2", second, gone, status=1)
        created, written, published, last = self.records()
        for record in (created, written, published, last):
            self.assertRegex(record["time"], r"^\d{4}-\d\d-\d\dT\d\d:\d\d:\d\dZ$")
            self.assertLessEqual(record["started"], record["time"])
            self.assertEqual(record["host"], socket.gethostname())
            self.assertTrue(record["user"])
            self.assertFalse(record["hashed"])
        self.assertEqual((created["command"], created["result"], created["error"]),
                         ("create", "created", None))
        self.assertEqual(created["sources"], [str(self.source)])
        for record in (created, written):
            self.assertEqual(record["patients"], ["12345", "77"])
            self.assertEqual(record["studies"], ["2.25.1.1", "2.25.1.2"])
            self.assertEqual(record["root"], str(self.root))
        self.assertEqual(created["medium"], {"kind": "file set", "path": str(self.root)})
        self.assertEqual((written["command"], written["result"], written["verified"]),
                         ("write", "written", True))
        self.assertEqual(written["medium"], {"kind": "directory", "path": str(out)})
        self.assertEqual(written["sums"],
                         hashlib.sha256((out / "SHA256SUMS").read_bytes()).hexdigest())
        self.assertEqual((published["medium"], published["volume"], published["verified"]),
                         ({"kind": "iso", "path": str(image)}, "V_1", False))
        self.assertEqual((published["patients"], published["sums"]), (["12345"], None))
        self.assertEqual((last["command"], last["result"], last["error"]),
                         ("publish", "failed", failed["error"]))
        self.assertEqual(last["sources"], [str(second), str(gone)])
        self.assertEqual(self.audit.stat().st_mode & 0o777, 0o600)

    def test_the_registry_can_ask_for_it(self):
        self.audit.touch(0o640)
        os.chmod(self.audit, 0o640)
        self.configure_more(f'"AuditFile"="{self.audit}"')
        self.create_set(self.file)
        other = self.dir / "other.log"
        self.create_set("--replace", "--audit", other, self.file)
        self.assertEqual(len(self.records()), 1)
        self.assertEqual(len(other.read_text().splitlines()), 1)
        self.assertEqual(self.audit.stat().st_mode & 0o777, 0o640, "the site's own mode stays")

    def test_hashes_need_their_key_and_stand_in_the_place_of_identities(self):
        key = self.dir / "key"
        key.write_bytes(KEY + b"\nnot this\n")
        key.chmod(0o600)
        audit = ["--audit", self.audit, "--audit-hash"]
        self.assertIn("need a key", self.refused(*audit))
        self.configure_more(f'"AuditHashKey"="{key}"')
        self.create_set(*audit, self.file)

        def hashed(text):
            return hmac.new(KEY, text, hashlib.sha256).hexdigest()
        record, = self.records()
        self.assertEqual((record["patients"], record["studies"], record["hashed"]),
                         ([hashed(b"12345")], [hashed(b"2.25.1.1")], True))
        self.assertNotIn("12345", self.audit.read_text())
        long_key = bytes(range(65, 91)) * 4
        key.write_bytes(long_key)
        self.configure_more(f'"AuditHashKey"="{key}"', '"AuditHash"=dword:00000001')
        self.create_set("--replace", "--audit", self.audit, self.file)
        self.assertEqual(self.records()[1]["patients"],
                         [hmac.new(long_key, b"12345", hashlib.sha256).hexdigest()])
        for content, mode, sentence in ((b"short\n", 0o600, "has fewer than 16 characters."),
                                        (KEY, 0o644, "chmod 600 closes it."),
                                        (None, 0, "cannot be read.")):
            if content is None:
                key.unlink()
            else:
                key.write_bytes(content)
                key.chmod(mode)
            with self.subTest(sentence):
                self.assertTrue(self.refused(*audit).endswith(sentence + "\n"))

    def refused(self, *arguments):
        """The sentence of a job that is refused before it changes anything."""
        before = everything(self.dir)
        sentences = set()
        for command in (["create", "--root", self.dir / "new", self.file],
                        ["publish", "--to", self.dir / "new", self.file],
                        ["write", "--root", self.root, "--to", self.dir / "new"]):
            run = self.run_program(*command, *arguments)
            self.assertEqual((run.returncode, run.stdout), (1, b""))
            sentences.add(run.stderr.decode())
        self.assertEqual(everything(self.dir), before)
        self.assertEqual(len(sentences), 1)
        return sentences.pop()

    def test_an_audit_that_cannot_be_written_is_refused_first(self):
        pipe = self.dir / "pipe"
        os.mkfifo(pipe)
        for target, reason in ((self.dir / "none/audit", "No such file or directory"),
                               (self.dir, "Is a directory"), (pipe, "it is not a regular file"),
                               ("/dev/null", "it is not a regular file")):
            with self.subTest(target):
                self.assertEqual(self.refused("--audit", target),
                                 f"quillon: The audit file {target} cannot be written: {reason}.\n")
        if not os.path.exists("/dev/log"):
            self.assertEqual(self.refused("--audit", "syslog"),
                             "quillon: There is no system log at /dev/log for the record of the "
                             "job.\n")

    def test_the_audit_neither_goes_with_a_job_nor_onto_its_medium(self):
        self.create_set(self.file)
        viewer = self.dir / "viewer"
        viewer.mkdir()
        target = self.dir / "target"
        target.mkdir()
        for command in (["create", "--replace", "--root", self.root, self.file],
                        ["publish", "--replace", "--root", self.root, "--to", self.dir / "out", self.file],
                        ["write", "--root", self.root, "--to", self.dir / "out"],
                        ["publish", "--to", target, self.file],
                        ["write", "--root", self.root, "--to", target],
                        ["publish", "--other-content", viewer, "--to", self.dir / "out", self.file]):
            around = next(one for one in (viewer, target, self.root) if one in command)
            with self.subTest(command):
                run = self.run_program(*command, "--audit", around / "audit")
                self.assertEqual((run.returncode, run.stderr.decode()),
                                 (1, f"quillon: The audit file {around}/audit lies in {around}, which "
                                     "is the job's own or goes onto the medium.\n"))
                self.assertFalse((around / "audit").exists())

    def test_a_disc_is_recorded_by_its_recorder(self):
        self.recorders = self.dir / "recorders"
        self.command("publish", "--audit", self.audit, "--volume", "V_2", "--sums", self.file)
        record, = self.records()
        self.assertEqual(record["medium"],
                         {"kind": "virtual disc", "recorder": "virtual-1", "discs": 1})
        self.assertEqual((record["volume"], record["verified"]), ("V_2", True))
        self.assertEqual(len(record["sums"]), 64, "looked at before the set was wiped")

    def test_a_line_that_finds_no_room_fails_a_job_that_is_done(self):
        limit = 1 << 20
        self.audit.write_bytes(b"x" * (limit - 40))

        def limited():
            resource.setrlimit(resource.RLIMIT_FSIZE, (limit, limit))
        out = self.dir / "out"
        arguments = ["--audit", self.audit, "--to", out, self.file]
        run = self.run_program("publish", *arguments, preexec_fn=limited)
        sentence = f"The audit file {self.audit} cannot be written: only part of the line has room."
        self.assertEqual((run.returncode, run.stderr.decode()),
                         (1, f"quillon: The file set is written, but not recorded. {sentence}\n"))
        self.assertTrue((out / "DICOMDIR").exists())
        # One that has failed anyway says both.
        run = self.run_program("publish", *arguments, preexec_fn=limited)
        self.assertEqual(run.returncode, 1)
        self.assertIn("is not empty", run.stderr.decode().splitlines()[0])
        self.assertIn("cannot be written: File too large.", run.stderr.decode())
        # What was cut does not spoil the next line.
        self.create_set("--audit", self.audit, self.file)
        self.assertEqual(json.loads(self.audit.read_text().splitlines()[-1])["command"], "create")

    def test_lines_of_jobs_at_the_same_time_stay_whole(self):
        jobs, sources = 12, [self.file] + [f"{self.file}" for _ in range(400)]
        running = [subprocess.Popen([program.QUILLON, "create", "--audit", str(self.audit), "--root",
                                     str(self.dir / f"set{number}"), *map(str, sources)],
                                    env=self.environment(), stdout=subprocess.DEVNULL,
                                    stderr=subprocess.PIPE) for number in range(jobs)]
        for job in running:
            _, told = job.communicate(timeout=300)
            self.assertEqual(job.returncode, 0, told)
        records = self.records()
        self.assertEqual({record["root"] for record in records},
                         {str(self.dir / f"set{number}") for number in range(jobs)})
        self.assertEqual({len(record["sources"]) for record in records}, {401})

    def test_a_job_that_is_interrupted_is_recorded(self):
        large = self.large_object(300_000_000)
        out = self.dir / "out"
        self.interrupt(15, lambda: (out / "DICOMOBJ").exists(), "publish", "--audit", self.audit,
                       "--to", out, large)
        record, = self.records()
        self.assertEqual((record["result"], record["patients"]), ("interrupted", ["12345"]))
        self.assertEqual(record["medium"], {"kind": "directory", "path": str(out)})

    def test_a_job_without_memory_tells_and_records_how_it_ended(self):
        failed = 0
        for kibibytes in range(12000, 36000, 1000):
            place = self.dir / str(kibibytes)
            for i in range(3):
                self.write(f"{place}/in/{i}", dicom_file(instance=f"2.25.1.1.1.{i}"))
            limit = kibibytes * 1024
            with self.subTest(kibibytes):
                run = self.run_program(
                    "publish", "--json", "--move", "--audit", place / "audit", "--to", place / "out",
                    place / "in", preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_AS, (limit, limit)))
                if not (place / "audit").exists():
                    continue  # not even begun
                result = json.loads(run.stdout)
                record, = map(json.loads, (place / "audit").read_text().splitlines())
                self.assertEqual(result["error"] is None, run.returncode == 0)
                self.assertEqual(record["error"] is None, run.returncode == 0)
                kept = Path(result["root"])
                objects = [path for above in (place / "in", kept if result["kept"] else place / "out")
                           for path in above.rglob("*") if path.is_file() and path.stat().st_size > 1
                           and path.read_bytes()[128:132] == b"DICM" and path.name != "DICOMDIR"]
                self.assertEqual(len(objects), 3)
                if result["kept"]:
                    failed += 1
                    self.assertIn(f"The file set stays in {kept}".encode(), run.stderr)
        self.assertGreater(failed, 0)

    def test_the_systems_log_gets_the_line(self):
        if os.path.exists("/dev/log") or os.geteuid() != 0:
            self.skipTest("there is a system log here, or none can be made")
        log = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)
        log.bind("/dev/log")
        self.addCleanup(os.unlink, "/dev/log")
        self.addCleanup(log.close)
        log.settimeout(10)
        self.create_set("--audit", "syslog", self.file)
        message = log.recv(65536).decode()
        self.assertTrue(message.startswith("<85>"), message)  # authpriv.notice
        self.assertEqual(json.loads(message[message.index("{"):])["patients"], ["12345"])


if __name__ == "__main__":
    program.QUILLON = os.path.abspath(sys.argv.pop(1))
    unittest.main()
