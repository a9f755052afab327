"""The recipes of docs/recipes, each run as its page tells it, with the tools that it names."""
import json
import os
import shutil
import socket
import subprocess
import sys
import time
import unittest
import zipfile
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent))
import program  # noqa: E402

RECIPES = Path(__file__).resolve().parents[2] / "docs/recipes"


def needs(*tools):
    missing = [tool for tool in tools if shutil.which(tool) is None]
    return unittest.skipIf(missing, f"not installed: {', '.join(missing)}")


class Recipes(program.ProgramTest):
    def setUp(self):
        super().setUp()
        (self.dir / "bin").mkdir()
        (self.dir / "bin/quillon").symlink_to(program.QUILLON)
        self.configure()
        self.objects = self.dir / "objects"
        subprocess.run([program.SAMPLES, self.objects], check=True, stdout=subprocess.DEVNULL)
        self.spool = self.dir / "spool"

    def environment(self):
        base = super().environment()
        return {**base, "PATH": f"{self.dir}/bin:{base['PATH']}"}

    def start(self, *command, **more):
        return subprocess.run([str(part) for part in command], env={**self.environment(), **more},
                              cwd=self.dir, capture_output=True, text=True, timeout=300)

    def recipe(self, name, *arguments, status=0, **more):
        run = self.start(RECIPES / name, *arguments, **more)
        self.assertEqual(run.returncode, status, run.stdout + run.stderr)
        return run

    def objects_of(self, medium):
        run = self.start("quillon", "verify", "--json", medium)
        self.assertEqual(run.returncode, 0, run.stdout)
        with zipfile.ZipFile(medium) as archive:
            return sum(name.startswith("DICOMOBJ/") for name in archive.namelist())

    def wait_for(self, pattern, count):
        end = time.monotonic() + 60
        while len(found := sorted(self.spool.glob(pattern))) < count:
            self.assertLess(time.monotonic(), end, f"{pattern}: {found}")
            time.sleep(0.1)
        return found

    @needs("storescp", "storescu")
    def test_each_study_that_is_received_becomes_a_medium(self):
        with socket.socket() as probe:
            probe.bind(("127.0.0.1", 0))
            port = probe.getsockname()[1]
        receiver = subprocess.Popen([RECIPES / "receive.sh", str(port), self.spool, "2"],
                                    env=self.environment(), stdout=subprocess.DEVNULL)
        self.addCleanup(receiver.wait)
        self.addCleanup(receiver.terminate)
        # Of one study, then of another one, then late images of the first.
        for sent in ("DOE/CT1", "ROE", "DOE/CT2"):
            for _ in range(100):
                run = self.start("storescu", "+sd", "+r", "localhost", port, self.objects / sent)
                if run.returncode == 0:
                    break
                time.sleep(0.1)
            self.assertEqual(run.returncode, 0, run.stderr)
        self.wait_for("done/study_*.log", 3)
        media = self.wait_for("media/*.zip", 3)
        self.assertEqual([self.objects_of(medium) for medium in media], [3, 1, 2])
        self.assertEqual(list((self.spool / "arriving").iterdir()), [])
        self.assertEqual(list((self.spool / "failed").iterdir()), [])

    def test_what_lies_in_the_inbox_is_published_or_set_aside_with_the_reason(self):
        inbox = self.spool / "inbox"
        good, bad = inbox / "it's one", inbox / "two"
        for round_ in (1, 2):  # the second good one meets the medium of the first
            shutil.copytree(self.objects / "DOE", good)
            bad.mkdir()
            (bad / "notes.txt").write_text("none of DICOM")
            (inbox / "loose.txt").write_text("no directory")
            self.recipe("publish-inbox.sh", self.spool)
            self.assertEqual(list(inbox.iterdir()), [])
            self.assertEqual(self.objects_of(self.spool / "media/it's one.zip"), 10)
            logs = [log.read_text() for log in (self.spool / "failed").glob("*.log")]
            self.assertEqual(sum("There is no DICOM file" in log for log in logs), round_, logs)
            self.assertEqual(sum("loose.txt" in log for log in logs), round_)
            self.assertEqual(sum("exists; --overwrite" in log for log in logs), round_ - 1)
        self.assertEqual(len(list(self.spool.rglob("IM00001"))), 2 * 6)

    @needs("parallel", "jq")
    def test_a_batch_is_counted_by_its_audit_lines(self):
        late = self.dir / "late"
        studies = self.dir / "list"
        studies.write_text(f"objects/DOE\n{self.objects}/ROE/\n{late}\n")
        run = self.recipe("batch.sh", studies, "out", status=1)
        counted = json.loads(run.stdout)
        self.assertEqual((counted["studies"], counted["written"], counted["patients"]), (3, 2, 2))
        self.assertEqual([failed["study"] for failed in counted["failed"]], [str(late)])
        shutil.copytree(self.objects / "DOE/MR", late)
        counted = json.loads(self.recipe("batch.sh", studies, "out").stdout)
        self.assertEqual((counted["written"], counted["failed"]), (3, []))
        self.assertEqual(len((self.dir / "out/audit.jsonl").read_text().splitlines()), 4)
        # The tasks of an array, one of which was never started.
        for task in ("1", "3"):
            self.recipe("batch.sbatch", studies, "array", RECIPES, SLURM_ARRAY_TASK_ID=task)
        run = self.recipe("count.sh", studies, "array/audit.jsonl", status=5)
        self.assertEqual(json.loads(run.stdout)["missing"], [f"{self.objects}/ROE"])

    @needs("gdcmanon", "dcmodify", "jq", "openssl")
    def test_what_is_de_identified_names_nobody(self):
        source, medium = self.objects / "DOE", self.dir / "anonymous.zip"
        before = program.everything(source)
        self.recipe("de-identify.sh", source, "SUBJECT1", medium)
        self.assertEqual(self.objects_of(medium), 10)
        with zipfile.ZipFile(medium) as archive:
            everything = b"".join(archive.read(name) for name in archive.namelist())
        for identity in (b"DOE", b"12345", b"ACC1-1", "DOE".encode("utf-16-le")):
            self.assertNotIn(identity, everything)
        self.assertIn(b"SUBJECT1", everything)
        self.assertEqual(program.everything(source), before)
        refused = self.dir / "refused.zip"
        run = self.recipe("de-identify.sh", self.objects, "SUBJECT1", refused, status=1)
        self.assertIn("There must be one patient", run.stderr)
        subprocess.run(["dcmodify", "-nb", "-i", "(0018,1210)=of DOE^JOHN", source / "CT1/IM00001"],
                       check=True)
        run = self.recipe("de-identify.sh", source, "SUBJECT1", refused, status=1)
        self.assertIn("The name or the ID still stands in 1 file", run.stderr)
        self.assertFalse(refused.exists())
        self.assertEqual(list((self.dir / "tmp").iterdir()), [])

    @needs("jq")
    def test_a_station_says_in_one_line_what_became_of_the_discs(self):
        recorders = {"QUILLON_RECORDERS": str(self.dir / "recorders")}
        self.registry.unlink()
        study, cut = self.objects / "DOE", self.dir / "cut"
        cut.write_bytes((study / "CT1/IM00001").read_bytes()[:-8])
        none, empty = self.dir / "none", "There is no disc in virtual-1: put a blank disc in.\n"
        refused = f"Cannot read the DICOM information from {none}.\n"
        for arguments, status, said in (
                ((none, "V"), 1, refused),
                ((cut, "V"), 1, f"Cannot add {cut}: the file ends before its pixel data does.\n"),
                ((study, "V", "many"), 2, "This station is set up wrongly: quillon ended with 2.\n"),
                ((study, "V_1"), 0, "Done: 10 objects on V_1, read back.\n"),
                ((study, "V_1"), 1, empty)):
            with self.subTest(said):
                run = self.recipe("kiosk.sh", *arguments, status=status, **recorders)
                self.assertEqual((run.stdout, run.stderr), (said, ""))

    @needs("systemd-analyze")
    def test_systemd_understands_the_units(self):
        units = []
        for unit in RECIPES.glob("quillon-*.*"):
            copy = self.dir / unit.name.replace("@", "@study1")
            copy.write_text(unit.read_text().replace("/usr/local/lib/quillon/recipes",
                                                     str(RECIPES)))
            units.append(copy)
        self.assertEqual(len(units), 3)
        run = self.start("systemd-analyze", "verify", "--man=no", *units)
        said = [line for line in run.stderr.splitlines() if "quillon" in line]
        self.assertEqual((run.returncode, said), (0, []))


if __name__ == "__main__":
    program.QUILLON, program.SAMPLES = map(os.path.abspath, sys.argv[1:3])
    unittest.main(argv=[sys.argv[0], "-v", *sys.argv[3:]])
