"""Images of the layer, read by programs that have nothing to do with it: each file is found with its
bytes through ISO 9660, Joliet and UDF."""
import collections
import functools
import hashlib
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

MAKE_IMAGE = READ_UDF = None  # set by main
SECTOR = 2048
ISO, JOLIET, UDF = 1, 2, 4
MODIFIED = 1_600_000_000  # of every file
GIB = 1 << 30


def judge(name):
    found = shutil.which(name)
    if found is None:
        raise unittest.SkipTest(f"{name} is not installed")
    return found


def run(*command, status=0, **environment):
    done = subprocess.run([part if isinstance(part, Path) else str(part) for part in command],
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=300,
                          env={**os.environ, "LC_ALL": "C.UTF-8", "TZ": "UTC",
                               "QUILLON_REGISTRY": "/nonexistent/registry.reg", **environment})
    text = done.stdout.decode("utf-8", "surrogateescape")
    if done.returncode != status:
        raise AssertionError(f"{command} ended with {done.returncode}:\n{text}")
    return text


def joined(extents):
    """Extents that follow each other are one."""
    whole = []
    for offset, length in extents:
        if whole and sum(whole[-1]) == offset:
            offset, length = whole[-1][0], whole.pop()[1] + length
        whole.append((offset, length))
    return tuple(whole)


def digest(path, extents=None):
    """SHA-256 of a file, or of (offset, length) extents of it."""
    status = os.stat(path)
    return digest_of_extents(path, status.st_mtime_ns, joined(extents or [(0, status.st_size)]))


@functools.lru_cache(maxsize=None)
def digest_of_extents(path, _, extents):
    """Holes are not read."""
    sha = hashlib.sha256()
    zeros = bytes(1 << 20)
    with open(path, "rb") as file:
        for offset, length in extents:
            end = offset + length
            while offset < end:
                try:
                    data = min(os.lseek(file.fileno(), offset, os.SEEK_DATA), end)
                except OSError:
                    data = end
                while offset < data:
                    piece = min(data - offset, len(zeros))
                    sha.update(zeros[:piece])
                    offset += piece
                if offset < end:
                    hole = min(os.lseek(file.fileno(), offset, os.SEEK_HOLE), end)
                    file.seek(offset)
                    while offset < hole:
                        piece = file.read(min(hole - offset, 1 << 20))
                        sha.update(piece)
                        offset += len(piece)
    return sha.hexdigest()


def content_of(directory):
    """Path below directory: digest of a file, or None for a directory."""
    found = {}
    for folder, directories, files in os.walk(directory):
        for name in directories:
            found[os.path.relpath(os.path.join(folder, name), directory)] = None
        for name in files:
            path = os.path.join(folder, name)
            found[os.path.relpath(path, directory)] = digest(path)
    return found


def fast_directory():
    """Tens of thousands of small files come and go: in memory, where there is room for them."""
    memory = "/dev/shm"
    roomy = os.access(memory, os.W_OK) and shutil.disk_usage(memory).free > GIB
    return memory if roomy else None


def without_names(content):
    return collections.Counter(content.values())


class Images(unittest.TestCase):
    maxDiff = 4000

    def setUp(self):
        self.dir = Path(tempfile.mkdtemp(prefix="quillon-images-", dir=fast_directory()))
        self.addCleanup(shutil.rmtree, self.dir)
        self.tree = self.dir / "tree"
        self.tree.mkdir()
        self.image = self.dir / "image.iso"
        self.copies = 0

    # The tree and its image.

    def put(self, name, content):
        path = self.tree / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content if isinstance(content, bytes) else content.encode())
        os.utime(path, (MODIFIED, MODIFIED))

    def make(self, *options, refused=None, **environment):
        said = run(MAKE_IMAGE, *options, self.image, self.tree, status=0 if refused is None else 1,
                   **environment)
        self.assertEqual(said.strip(), refused or "")

    # The readers; each answers like content_of.

    def target(self):
        """For the next reader; what the one before it copied goes away."""
        shutil.rmtree(self.dir / f"copy{self.copies}", ignore_errors=True)
        self.copies += 1
        return self.dir / f"copy{self.copies}"

    def through_xorriso(self, tree):
        """tree: "nojoliet" for ISO 9660, "norock" for Joliet."""
        target = self.target()
        run(judge("xorriso"), "-report_about", "WARNING", "-return_with", "WARNING", "32",
            "-read_fs", tree, "-osirrox", "on", "-indev", f"stdio:{self.image}",
            "-extract", "/", target)
        run("chmod", "-R", "u+rwX", target)
        self.last_copy = target
        return content_of(target)

    def through_isoinfo(self, *options):
        """Names are not compared: isoinfo knows no UTF-8."""
        sections, folder = collections.defaultdict(list), ""
        directories = set()
        listing = subprocess.run([judge("isoinfo"), *options, "-l", "-i", self.image], check=True,
                                 stdout=subprocess.PIPE).stdout.decode("latin-1")
        for line in listing.splitlines():
            if line.startswith("Directory listing of "):
                folder = line[len("Directory listing of "):].rstrip()
                directories.add(folder)
            row = re.match(r"[-d]\S+ +\d+ +\d+ +\d+ +(\d+) .{12}\[ *(\d+) (..)\w*\]? +(.*) $", line)
            if row and not line.startswith("d"):
                size, sector, name = int(row[1]), int(row[2]), row[4]
                sections[folder, name].append((sector * SECTOR, size))
        found = {place: digest(self.image, extents) for place, extents in sections.items()}
        found.update({place: None for place in directories - {"/"}})
        return found

    def through_libudfread(self):
        target = self.target()
        name = run(READ_UDF, self.image, target)
        self.assertEqual(name.strip(), self.volume)
        return content_of(target)

    def through_7z(self, kind):
        target = self.target()
        said = run(judge("7z"), "x", "-bd", "-t" + kind, f"-o{target}", self.image)
        self.assertNotRegex(said, "WARNING|ERROR")
        self.last_copy = target
        return content_of(target)

    volume = "Quillon"

    def check_whole(self):
        said = run(judge("xorriso"), "-indev", f"stdio:{self.image}", "-check_media", "--")
        sectors = self.image.stat().st_size // SECTOR
        self.assertRegex(said, rf"Media region : +0 , +{sectors} , \+ good")

    def check_all(self, iso_names=True):
        """All readers of all file systems find the tree; with iso_names in ISO 9660 as it is."""
        expected = content_of(self.tree)
        self.check_whole()
        with self.subTest("Joliet, xorriso"):
            self.assertEqual(self.through_xorriso("norock"), expected)
        with self.subTest("Joliet, isoinfo"):
            self.assertEqual(without_names(self.through_isoinfo("-J")), without_names(expected))
        with self.subTest("Joliet, 7z"):
            self.assertEqual(self.through_7z("iso"), expected)
        with self.subTest("UDF, libudfread"):
            self.assertEqual(self.through_libudfread(), expected)
        # 7z takes a UDF volume without a byte of file data for a broken one, whoever made it.
        if any(expected.values()):
            with self.subTest("UDF, 7z"):
                self.assertEqual(self.through_7z("udf"), expected)
        with self.subTest("ISO 9660, isoinfo"):
            self.assertEqual(without_names(self.through_isoinfo()), without_names(expected))
        with self.subTest("ISO 9660, xorriso"):
            found = self.through_xorriso("nojoliet")
            if iso_names:
                self.assertEqual(found, expected)
            else:
                self.assertEqual(without_names(found), without_names(expected))
            return found
        return None

    # The cases.

    def test_file_set_of_three_patients(self):
        self.put("DICOMDIR", os.urandom(9_000))
        self.put("LABEL.TXT", "Media label\r\n")
        for patient in (1, 2, 3):
            for number in range(1, 5):
                self.put(f"DICOMOBJ/P000000{patient}/S0000001/E0000001/{number:08}",
                         os.urandom(50_000 + 997 * number))
        self.make("--strict")
        self.check_all()

    def test_ten_thousand_files(self):
        for number in range(10_000):
            folder = "MANY" if number < 5_000 else f"D{number % 50:07}"
            self.put(f"{folder}/{number:08}", b"%d" % number * (1 + number % 300))
        self.make("--strict")
        self.check_all()

    def test_other_content(self):
        names = ["index.html", "Größe.txt", "日本語のファイル名.html", "read.me.first.txt",
                 "long name " * 5 + ".text", "long name " * 5 + "2.text", "no extension"]
        for name in names:
            self.put("Other Content/" + name, "content of " + name)
            self.put(name, "outer content of " + name)
        self.put("empty file", b"")
        (self.tree / "empty directory" / "another").mkdir(parents=True)
        self.make("--strict")
        found = self.check_all(iso_names=False)
        self.assertTrue(all(re.fullmatch(r"[A-Z0-9_]{1,8}(\.[A-Z0-9_]{1,3})?", part)
                            for path in found for part in path.split("/")), found)
        self.make()
        found = self.check_all(iso_names=False)
        self.assertIn("OTHER_CONTENT/READ_ME_FIRST.TXT", found)

    def test_names_that_collide_or_are_none(self):
        names = ["Readme.txt", "README.TXT", "readme.txt", "a:b", "a*b", "a?b", "n" * 100,
                 "n" * 101, "x" * 63 + ".abc", "x" * 64 + ".abc", "dots", "dots.", "...",
                 " "]
        for name in names:
            self.put(name, "content of " + name)
        self.put(os.fsdecode(b"broken \xff name"), "not UTF-8")
        self.put("readme.txt.d/file", "in a directory")
        expected = content_of(self.tree)
        for options in ([], ["--strict"]):
            self.make(*options)
            self.check_whole()
            for found in (self.through_xorriso("nojoliet"), self.through_xorriso("norock"),
                          self.through_isoinfo(), self.through_isoinfo("-J"),
                          self.through_libudfread(), self.through_7z("udf")):
                self.assertEqual(without_names(found), without_names(expected))
                folded = [place.casefold() if isinstance(place, str) else place for place in found]
                self.assertEqual(len(set(folded)), len(expected), "one name for two files")

    def test_empty_tree(self):
        self.make("--strict")
        self.check_all()

    def test_levels_of_directories(self):
        eighth = "/".join(f"L{level}" for level in range(2, 9))  # the root is the first level
        self.put(eighth + "/FILE", "deep")
        self.make("--strict")
        self.check_all()
        self.put(eighth + "/L9/FILE", "too deep")
        self.make("--strict", refused="AddTree 0xC0AAB131")
        self.make("--strict", "--systems", UDF)
        self.assertEqual(self.through_libudfread(), content_of(self.tree))
        self.make()
        self.check_all()

    def test_file_beyond_four_gib(self):
        size = 4 * GIB + 5
        with open(self.tree / "BIG.DAT", "wb") as file:
            for offset, piece in [(0, b"begin"), (4 * GIB - SECTOR - 3, b"across the sections"),
                                  (size - 3, b"end")]:
                file.seek(offset)
                file.write(piece)
        self.put("SMALL", "behind it")
        self.make("--strict", refused="AddTree 0xC0AAB132")
        # What is left out is zeros in the file too.
        self.make("--leave-out", 8 << 20, 4 * GIB - (8 << 20))
        expected = content_of(self.tree)
        for options in ([], ["-J"]):
            self.assertEqual(without_names(self.through_isoinfo(*options)), without_names(expected))
        # One run of blocks, in UDF and for xorriso, which joins the sections.
        places = {}
        for line in run(READ_UDF, "--places", self.image).splitlines():
            sector, length, name = line.split(" ", 2)
            places[name] = digest(self.image, [(int(sector) * SECTOR, int(length))])
        self.assertEqual(places, expected)
        for mode in ("nojoliet", "norock"):
            said = run(judge("xorriso"), "-read_fs", mode, "-indev", f"stdio:{self.image}",
                       "-find", "/BIG.DAT", "-exec", "report_lba", "--")
            rows = re.findall(r"File data lba: +(\d+) , +(\d+) , +(\d+) , +(\d+) ,", said)
            extents = [(int(sector) * SECTOR, int(blocks) * SECTOR) for _, sector, blocks, _ in rows]
            self.assertEqual([int(row[3]) for row in rows], [size, size])
            surplus = sum(length for _, length in extents) - size
            extents[-1] = (extents[-1][0], extents[-1][1] - surplus)
            self.assertEqual(digest(self.image, extents), expected["BIG.DAT"])
        self.assertRegex(run(judge("7z"), "l", "-tudf", self.image), rf" {size} +\d+ +BIG.DAT")

    def test_any_choice_of_file_systems(self):
        self.put("DIR/FILE.TXT", "content")
        expected = content_of(self.tree)
        for systems in range(1, 8):
            with self.subTest(systems):
                self.make("--systems", systems)
                whole = self.image.read_bytes()
                self.assertEqual(len(whole) % (16 * SECTOR), 0)
                self.assertEqual(b"%/E" in whole, bool(systems & JOLIET))
                self.assertEqual(b"NSR02" in whole, bool(systems & UDF))
                if systems & ISO:
                    self.assertEqual(self.through_xorriso("nojoliet"), expected)
                if systems & JOLIET:
                    self.assertEqual(self.through_xorriso("norock"), expected)
                if systems & UDF:
                    self.assertEqual(self.through_libudfread(), expected)
                    self.assertEqual(self.through_7z("udf"), expected)
        self.make("--systems", 0, refused="CreateResultImage 0xC0AAB103")

    def test_volume_names(self):
        self.put("FILE", "content")
        for given, iso, joliet in [("Quillon", "QUILLON", "Quillon"),
                                   ("Patient discs of March 2021", "PATIENT_DISCS_OF_MARCH_2021",
                                    "Patient discs of"),
                                   ("Röntgen", "R_NTGEN", "Röntgen"), ("", "", "")]:
            with self.subTest(given):
                self.make("--volume", given)
                self.volume = given
                self.through_libudfread()
                said = run(judge("isoinfo"), "-d", "-i", self.image)
                self.assertEqual(re.search("Volume id: (.*)", said)[1], iso)
                with open(self.image, "rb") as image:
                    image.seek(17 * SECTOR + 40)
                    self.assertEqual(image.read(32).decode("utf-16-be").rstrip(), joliet)
                if given:
                    self.assertIn(f"VolumeId: {given}\n", run(judge("7z"), "l", "-tudf", self.image))
        self.make("--volume", "n" * 33, refused="put_VolumeName 0xC0AAB104")

    def test_times_are_those_of_the_files_wherever_the_disc_was_made(self):
        self.put("FILE", "content")
        self.make(TZ="XXX-5:30")
        for read in (lambda: self.through_xorriso("nojoliet"),
                     lambda: self.through_xorriso("norock"), lambda: self.through_7z("udf")):
            read()
            self.assertEqual((self.last_copy / "FILE").stat().st_mtime, MODIFIED)

    def test_kernel(self):
        if os.geteuid() != 0:
            self.skipTest("mounting an image needs root")
        self.put("DICOMDIR", os.urandom(3_000))
        self.put("Other Content/Größe und Gewicht.txt", "content")
        self.make()
        point = self.dir / "mounted"
        point.mkdir()
        for kind in ("iso9660", "udf"):
            mounted = subprocess.run(["mount", "-o", "loop,ro,utf8", "-t", kind, self.image, point],
                                     stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            if mounted.returncode != 0:
                self.skipTest(f"this machine does not mount {kind} images")
            try:
                self.assertEqual(content_of(point), content_of(self.tree))
            finally:
                subprocess.run(["umount", point], check=True)


if __name__ == "__main__":
    MAKE_IMAGE, READ_UDF = sys.argv.pop(1), sys.argv.pop(1)
    unittest.main(verbosity=2)
