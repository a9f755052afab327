"""What does not fit one medium goes onto several: each whole in itself, all together everything once."""
import json
import os
import re
import signal
import subprocess
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent))
import program  # noqa: E402
from program import contents, dicom_file, digest_of, element  # noqa: E402

MEGABYTE = 1 << 20


class SpanTest(program.ProgramTest):
    def environment(self):
        return super().environment() | {"QUILLON_RECORDERS": str(self.dir / "recorders"),
                                        "XDG_STATE_HOME": str(self.dir / "state")}

    def add(self, patient, study, date, series, sizes):
        """Objects of that many bytes of pixels; answers their digests."""
        digests = set()
        for number, size in enumerate(sizes):
            uid = f"2.25.{patient}.{study}.{series}.{number + 1}"
            data = dicom_file(name=f"P{patient}", id=str(patient), study=f"2.25.{patient}.{study}",
                              series=f"2.25.{patient}.{study}.{series}", instance=uid, study_date=date,
                              series_number=str(series), number=str(number + 1),
                              more={0x7FE00010: element(0x7FE00010, "OW", os.urandom(size))})
            path = self.source / f"{patient}/{study}/{series}/{number:03d}"
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_bytes(data)
            digests.add(digest_of(data))
        return digests

    def seven_studies(self):
        """Of three patients and about 10 MB; answers the digests of each, the newest first."""
        plan = [(1, 1, "20200101", 2), (1, 2, "20240601", 1), (2, 1, "20210101", 2), (2, 2, "20220101", 1),
                (3, 1, "20230101", 1), (3, 2, "20190101", 2), (3, 3, "20180101", 1)]
        studies = {date: self.add(patient, study, date, 1, [MEGABYTE] * megabytes)
                   for patient, study, date, megabytes in plan}
        return [studies[date] for date in sorted(studies, reverse=True)]

    def objects_on(self, medium):
        """Digests of the objects of a medium that verifies."""
        self.assertTrue(self.command("verify", medium)["whole"])
        out = self.dir / "out"
        subprocess.run(["rm", "-rf", out], check=True)
        if medium.is_dir():
            out = medium
        else:
            subprocess.run(["7z", "x", "-y", f"-o{out}", medium], check=True, stdout=subprocess.DEVNULL)
        found = {name: digest for name, digest in contents(out).items() if name.startswith("DICOMOBJ/")}
        self.assertEqual(len(found), len(set(found.values())))
        return set(found.values()), (out / "LABEL.TXT").read_bytes().decode("utf-16-le"), contents(out)

    def publish(self, *arguments, **how):
        return self.command("publish", "--span", *arguments, self.source, **how)


class Spanning(SpanTest):
    def test_each_medium_is_whole_and_everything_is_on_one_of_them(self):
        studies = self.seven_studies()
        viewer = self.dir / "viewer"
        viewer.mkdir()
        (viewer / "START.EXE").write_bytes(b"x" * 300_000)
        self.configure(other_content=viewer)
        before = contents(self.source)
        for kind, name, made in (("--iso", "set.iso", "set-{}.iso"), ("--zip", "set.zip", "set-{}.zip"),
                                 ("--to", "usb", "usb-{}")):
            with self.subTest(kind):
                audit = self.dir / "audit.jsonl"
                audit.unlink(missing_ok=True)
                result = self.publish(kind, self.dir / name, "--capacity", "4.9MB", "--viewer-on", "first",
                                      "--audit", audit, "--pdi")
                count = len(result["plan"])
                self.assertIn(count, (4, 5))
                media = [self.dir / made.format(number + 1) for number in range(count)]
                found = []
                for number, medium in enumerate(media, 1):
                    objects, label, files = self.objects_on(medium)
                    self.assertIn(f"\nDisc {number} of {count}\n", label)
                    page = medium if medium.is_dir() else self.dir / "out"
                    self.assertIn(f"<p>Disc {number} of {count}</p>", (page / "INDEX.HTM").read_text())
                    self.assertEqual("QUILLON/START.EXE" in files, number == 1)
                    size = medium.stat().st_size if medium.is_file() else sum(
                        path.stat().st_size for path in medium.rglob("*"))
                    self.assertLess(size, 4_900_000)
                    found.append(objects)
                self.assertEqual(sorted(digest for objects in found for digest in objects),
                                 sorted(digest for study in studies for digest in study))
                # Each study on one, and the newest on the first.
                self.assertTrue(all(sum(bool(study & objects) for objects in found) == 1 for study in studies))
                self.assertTrue(studies[0] <= found[0])
                self.assertEqual([one["number"] for one in result["media"]], list(range(1, count + 1)))
                self.assertFalse((self.dir / name).exists())
                records = [json.loads(line) for line in audit.read_text().splitlines()]
                self.assertEqual([record["medium"]["path"] for record in records], list(map(str, media)))
                self.assertEqual(len({uid for record in records for uid in record["studies"]}), 7)
                self.assertEqual({record["result"] for record in records}, {"written"})
        self.assertEqual(contents(self.source), before)
        # What fits needs no number.
        result = self.publish("--iso", self.dir / "one.iso", "--capacity", "100MB")
        self.assertEqual((len(result["plan"]), len(result["media"])), (1, 1))
        self.assertNotIn("Disc 1", self.objects_on(self.dir / "one.iso")[1])

    def test_what_is_larger_than_a_medium_is_divided(self):
        first = self.add(1, 1, "20240101", 1, [MEGABYTE] * 2)
        second = self.add(1, 1, "20240101", 2, [MEGABYTE] * 6)
        result = self.publish("--iso", self.dir / "a.iso", "--capacity", "4MiB")
        parts = [self.objects_on(self.dir / f"a-{number + 1}.iso")[0] for number in range(len(result["plan"]))]
        self.assertEqual(sum(bool(part & first) for part in parts), 1)
        self.assertGreater(sum(bool(part & second) for part in parts), 2)
        self.assertEqual(set.union(*parts), first | second)
        self.assertEqual(sum(map(len, parts)), 8)
        self.add(1, 2, "20230101", 1, [5 * MEGABYTE])
        result = self.publish("--iso", self.dir / "b.iso", "--capacity", "4MiB", status=1)
        self.assertRegex(result["error"], r"^The file .*/1/2/1/000 has 5\.0 MB, more than one medium holds\.$")
        self.assertEqual(list(self.dir.glob("b*.iso")), [])
        result = self.publish("--iso", self.dir / "b.iso", "--capacity", "300KB", status=1)
        self.assertIn("has no room for objects", result["error"])

    def test_a_look_at_the_plan_changes_nothing(self):
        self.seven_studies()
        run = self.run_program("publish", "--span", "--dry-run", "--iso", self.dir / "a.iso", "--capacity", "5MB",
                               self.source)
        self.assertEqual((run.returncode, run.stderr), (0, b""))
        self.assertRegex(run.stdout.decode(), r"^Dry run:   nothing is changed\nMedia:     4\n"
                         r"  1: \d stud(y|ies), \d objects?, \d\.\d MB, of 20240601 to \d{8}\n  2: ")
        self.assertEqual(list(self.dir.glob("*.iso")), [])
        self.assertFalse((self.dir / "state").exists())

    def test_options_that_do_not_go_together_are_wrong_usage(self):
        for arguments in (["--span", "--iso", "x"], ["--capacity", "1GB"], ["--span", "--capacity", "much"],
                          ["--span", "--capacity", "0"], ["--span", "--move"], ["--span", "--copies", "2"],
                          ["--span", "--iso", "-", "--capacity", "1GB"], ["--resume"],
                          ["--span", "--viewer-on", "last"]):
            with self.subTest(arguments):
                self.assertEqual(self.run_program("publish", *arguments, self.source).returncode, 2)


class Resuming(SpanTest):
    def plan_of(self, directory):
        return [self.objects_on(image)[0] for image in sorted(directory.glob("*.iso"))]

    def insert(self):
        self.run_program("disc", "eject")
        run = self.run_program("disc", "insert")
        self.assertEqual(run.returncode, 0, run.stderr)
        record = next((self.dir / "recorders").rglob("disc.txt"))
        record.write_text(re.sub(r"capacity = \d+", "capacity = 2400", record.read_text()))

    def discs(self, *arguments, kill_at=None):
        """Publishes to discs, which are changed when they are asked for; ends the program when it asks
        for disc kill_at. Answers its exit status."""
        run = subprocess.Popen([program.QUILLON, "publish", "--span", "--volume", "SET", *arguments, self.source],
                               env=self.environment(), cwd=self.dir / "work", stdin=subprocess.DEVNULL,
                               stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
        self.said = ""
        for line in run.stderr:
            line = line.decode()
            self.said += line
            asked = re.match(r"quillon: Put disc (\d+) of \d+ into virtual-1\.", line)
            if asked and int(asked[1]) == kill_at:
                run.send_signal(signal.SIGKILL)
            elif asked:
                self.insert()
        run.stderr.close()
        return run.wait(timeout=60)

    def test_a_job_on_discs_that_was_killed_goes_on_with_the_one_that_is_missing(self):
        studies = self.seven_studies()
        self.insert()
        self.assertEqual(self.discs(kill_at=3), -signal.SIGKILL, self.said)
        ejected = self.dir / "recorders/virtual-1/ejected"
        self.assertEqual(len(list(ejected.glob("*.iso"))), 2)
        self.insert()
        self.assertEqual(self.discs("--resume"), 0, self.said)
        images = sorted(image.name for image in ejected.glob("*.iso"))
        self.assertEqual(images, [f"SET_{number}.iso" for number in range(1, len(images) + 1)])
        found = [digest for objects in self.plan_of(ejected) for digest in objects]
        self.assertEqual(sorted(found), sorted(digest for study in studies for digest in study))
        self.assertEqual(list((self.dir / "state").rglob("*/*/*")), [])
        self.insert()
        self.assertEqual(self.discs("--resume"), 1)
        self.assertIn("There is no interrupted job that would put the same files on the same media.", self.said)

    def test_media_that_are_done_are_not_made_again(self):
        self.seven_studies()
        arguments = ["--iso", self.dir / "a.iso", "--capacity", "5MB"]
        # What is in the way of a later one is told before the first.
        (self.dir / "a-3.iso").write_bytes(b"old")
        result = self.publish(*arguments, status=1)
        self.assertIn("a-3.iso exists; --overwrite replaces it.", result["error"])
        self.assertEqual([path.name for path in self.dir.glob("a*.iso")], ["a-3.iso"])
        (self.dir / "a-3.iso").unlink()

        def has_noted_the_second():
            return any("2\n" in path.read_text() for path in (self.dir / "state").rglob("*") if path.is_file())

        self.interrupt(signal.SIGKILL, has_noted_the_second, "publish", "--span", *arguments, self.source)
        made = (self.dir / "a-2.iso").stat().st_ino
        # Other files on other media are another job.
        self.add(9, 9, "20250101", 1, [MEGABYTE])
        self.publish(*arguments, "--resume", status=1)
        subprocess.run(["rm", "-r", self.source / "9"], check=True)
        (self.dir / "a-1.iso").unlink()  # one that is gone is made again
        result = self.publish(*arguments, "--overwrite", "--resume")
        numbers = [one["number"] for one in result["media"]]
        self.assertEqual((numbers[0], 2 in numbers), (1, False))
        self.assertEqual((self.dir / "a-2.iso").stat().st_ino, made)
        self.assertEqual(sorted(path.name for path in self.dir.glob("a-*.iso")),
                         [f"a-{number}.iso" for number in range(1, 5)])


if __name__ == "__main__":
    program.QUILLON = os.path.abspath(sys.argv[1])
    unittest.main(argv=[sys.argv[0], "-v", *sys.argv[2:]])
