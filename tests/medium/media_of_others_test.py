"""Media that other programs have made, taken out by our readers: every file with its bytes, under
the names that a DICOM reader would see."""
import hashlib
import os
import shutil
import subprocess
import sys
import tempfile
import unittest
import zipfile
from pathlib import Path

READ_MEDIUM = MAKE_IMAGE = None  # set by main


def judge(name):
    found = shutil.which(name, path=os.environ["PATH"] + ":/usr/sbin:/sbin")
    if found is None:
        raise unittest.SkipTest(f"{name} is not installed")
    return found


def run(*command, status=0, **how):
    done = subprocess.run([str(part) for part in command], stdout=subprocess.PIPE,
                          stderr=subprocess.PIPE, timeout=300, **how)
    text = done.stdout.decode(errors="surrogateescape") + done.stderr.decode(errors="replace")
    if done.returncode != status:
        raise AssertionError(f"{command} ended with {done.returncode}:\n{text}")
    return text


def contents(directory):
    """Relative path to digest of each file, None for a directory."""
    return {str(path.relative_to(directory)):
            None if path.is_dir() else hashlib.sha256(path.read_bytes()).hexdigest()
            for path in sorted(Path(directory).rglob("*"))}


class MediaTest(unittest.TestCase):
    def setUp(self):
        self.dir = Path(tempfile.mkdtemp(prefix="quillon-medium-"))
        self.addCleanup(shutil.rmtree, self.dir)
        self.tree = self.dir / "tree"
        for name, data in self.files().items():
            path = self.tree / name
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_bytes(data)
        (self.tree / "EMPTYDIR").mkdir()

    @staticmethod
    def files():
        files = {f"DICOMOBJ/QLN{number:05d}": bytes([number % 251]) * (number * 37)
                 for number in range(200)}
        files.update({"DICOMDIR": b"\0" * 128 + b"DICM", "LABEL.TXT": b"label\n", "EMPTY": b"",
                      "A/B/C/D/E/F/DEEP": b"deep", "LARGE": os.urandom(3_000_001)})
        return files

    def take_out(self, medium, status=0):
        out = self.dir / "out"
        shutil.rmtree(out, ignore_errors=True)
        out.mkdir()
        said = run(READ_MEDIUM, medium, out, status=status)
        return contents(out), said

    def assert_whole(self, medium, expected=None):
        found, _ = self.take_out(medium)
        self.assertEqual(found, contents(self.tree) if expected is None else expected)


class Images(MediaTest):
    def test_images_of_our_own_builder(self):
        (self.tree / "Grüße an Müller").write_bytes(b"8 bit")
        (self.tree / "Ωmega – \N{GRINNING FACE}.txt").write_bytes(b"16 bit")
        for systems in (2, 4, 6, 7):
            with self.subTest(systems=systems):
                image = self.dir / "image.iso"
                run(MAKE_IMAGE, "--systems", systems, image, self.tree,
                    env={**os.environ, "QUILLON_REGISTRY": "/nonexistent/registry.reg"})
                self.assert_whole(image)

    def test_a_file_of_more_than_four_gib(self):
        size = (4 << 30) + (32 << 20) + 1
        with open(self.tree / "HUGE", "wb") as file:
            file.seek(size - 1)
            file.write(b"e")
        for systems in (1, 2, 4):
            with self.subTest(systems=systems):
                image = self.dir / "image.iso"
                run(MAKE_IMAGE, "--systems", systems, "--leave-out", 16 << 20, 4 << 30, image, self.tree,
                    env={**os.environ, "QUILLON_REGISTRY": "/nonexistent/registry.reg"})
                self.assertIn(f"ends with {ord('e')}: f {size} HUGE\n", run(READ_MEDIUM, image))
                image.unlink()

    def test_names_of_plain_iso_9660_lose_their_versions(self):
        image = self.dir / "image.iso"
        run(judge("genisoimage"), "-quiet", "-iso-level", "1", "-o", image, self.tree)
        self.assert_whole(image)

    def test_rock_ridge_and_joliet_keep_the_names(self):
        (self.tree / "a long name, with small letters.and.dots").write_bytes(b"x")
        # So long that Rock Ridge has to go on in another place.
        (self.tree / ("n" * 250)).write_bytes(b"y")
        for options in (["-R"], ["-J", "-joliet-long"], ["-udf", "-J", "-joliet-long"]):
            with self.subTest(options=options):
                if "-J" in options and (self.tree / ("n" * 250)).exists():
                    (self.tree / ("n" * 250)).unlink()
                image = self.dir / "image.iso"
                run(judge("genisoimage"), "-quiet", *options, "-o", image, self.tree)
                self.assert_whole(image)

    def test_links_of_rock_ridge_are_told_and_not_followed(self):
        (self.tree / "LINK").symlink_to("/etc/passwd")
        image = self.dir / "image.iso"
        run(judge("genisoimage"), "-quiet", "-R", "-o", image, self.tree)
        found, said = self.take_out(image)
        self.assertIn("l 0 LINK", said)
        self.assertNotIn("LINK", found)

    def test_an_image_of_xorriso(self):
        image = self.dir / "image.iso"
        run(judge("xorriso"), "-outdev", image, "-joliet", "on", "-map", self.tree, "/")
        self.assert_whole(image)

    def test_a_file_system_of_mkudffs_that_is_empty(self):
        for revision in ("0x0102", "0x0150", "0x0201"):
            for block in ("512", "2048", "4096"):
                with self.subTest(revision=revision, block=block):
                    image = self.dir / "image.udf"
                    image.unlink(missing_ok=True)
                    with open(image, "wb") as file:
                        file.truncate(16 << 20)
                    run(judge("mkudffs"), "--media-type=hd", f"--udfrev={revision}",
                        f"--blocksize={block}", image)
                    self.assertEqual(set(self.take_out(image)[0]) - {"lost+found"}, set())

    def test_kinds_of_udf_that_are_not_read_are_refused_with_the_reason(self):
        for options in (["--media-type=cdr", "--udfrev=0x0201"],
                        ["--media-type=dvdrw", "--udfrev=0x0201", "--spartable=2"]):
            with self.subTest(options=options):
                image = self.dir / "image.udf"
                image.unlink(missing_ok=True)
                with open(image, "wb") as file:
                    file.truncate(32 << 20)
                run(judge("mkudffs"), "--blocksize=2048", *options, image)
                _, said = self.take_out(image, status=1)
                self.assertIn("it has a partition that is virtual, sparable or of metadata", said)

    def test_an_image_that_ends_early_tells_which_files_are_not_whole(self):
        image = self.dir / "image.iso"
        run(judge("genisoimage"), "-quiet", "-J", "-o", image, self.tree)
        os.truncate(image, image.stat().st_size - (2 << 20))
        found, said = self.take_out(image, status=1)
        self.assertIn("of the medium is not whole.", said)
        whole = contents(self.tree)
        self.assertTrue(all(whole[name] == digest for name, digest in found.items()))


class Archives(MediaTest):
    def pack(self, names, **how):
        path = self.dir / "medium.zip"
        with zipfile.ZipFile(path, "w", **how) as archive:
            for name in names:
                archive.write(self.tree / name, name)
        return path

    def names(self):
        return [name for name in contents(self.tree)]

    def test_stored_and_compressed_in_any_order(self):
        (self.tree / "Grüße").write_bytes(b"x")
        for compression in (zipfile.ZIP_STORED, zipfile.ZIP_DEFLATED):
            for backwards in (False, True):
                with self.subTest(compression=compression, backwards=backwards):
                    names = sorted(self.names(), reverse=backwards)
                    self.assert_whole(self.pack(names, compression=compression))

    def test_directories_that_the_archive_does_not_name(self):
        names = [name for name in self.names() if (self.tree / name).is_file()]
        expected = contents(self.tree)
        del expected["EMPTYDIR"]
        self.assert_whole(self.pack(names), expected)

    def test_names_that_lead_elsewhere_are_told_and_left_out(self):
        for name in ("../evil", "/evil", "a/../../evil", "a//b", "..\\evil", "C:\\..\\evil"):
            with self.subTest(name=name):
                path = self.dir / "medium.zip"
                with zipfile.ZipFile(path, "w") as archive:
                    archive.writestr("GOOD", b"good")
                    archive.writestr(zipfile.ZipInfo(name), b"evil")
                found, said = self.take_out(path, status=1)
                self.assertIn("a name that leads elsewhere", said)
                self.assertNotIn(hashlib.sha256(b"evil").hexdigest(), found.values())
                self.assertIn("GOOD", found)

    def test_damaged_bytes_are_found_by_their_checksum(self):
        path = self.pack(["LARGE", "DICOMDIR"])
        with open(path, "r+b") as file:
            file.seek(1_000_000)
            byte = file.read(1)
            file.seek(1_000_000)
            file.write(bytes([byte[0] ^ 1]))
        _, said = self.take_out(path, status=1)
        self.assertIn("Cannot read LARGE.", said)

    def test_an_encrypted_archive_is_refused_with_advice(self):
        path = self.dir / "medium.zip"
        run(judge("7z"), "a", "-tzip", "-psecret", "-mem=AES256", path, self.tree / "LABEL.TXT")
        _, said = self.take_out(path, status=1)
        self.assertIn("The file LABEL.TXT in the ZIP file is encrypted: unpack it first", said)


if __name__ == "__main__":
    READ_MEDIUM, MAKE_IMAGE = map(os.path.abspath, sys.argv[1:3])
    unittest.main(argv=[sys.argv[0], "-v", *sys.argv[3:]])
