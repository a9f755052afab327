"""Runs the quillon program in surroundings of its own and makes DICOM files by hand."""
import hashlib
import json
import os
import shutil
import struct
import subprocess
import tempfile
import time
import unittest
from pathlib import Path

import json_schemas

QUILLON = None  # set by the test's main
SAMPLES = None

CT = "1.2.840.10008.5.1.4.1.1.2"
BASIC_SR = "1.2.840.10008.5.1.4.1.1.88.11"
PRESENTATION = "1.2.840.10008.5.1.4.1.1.11.1"
NOBODY = 65534
QUILLON_KEY = "HKEY_LOCAL_MACHINE\\SOFTWARE\\Tarn Imaging\\Quillon"


def element(tag, vr, value):
    if isinstance(value, str):
        value = value.encode("latin-1")
    if len(value) % 2:
        value += b"\0" if vr in ("UI", "OB") else b" "
    head = struct.pack("<HH", tag >> 16, tag & 0xFFFF) + vr.encode()
    if vr in ("OB", "OW", "SQ", "UN", "UT"):
        return head + struct.pack("<HI", 0, len(value)) + value
    return head + struct.pack("<H", len(value)) + value


def item(content):
    return struct.pack("<HHI", 0xFFFE, 0xE000, len(content)) + content


def meta_group(sop_class=CT, instance="2.25.1.1.1.1", syntax="1.2.840.10008.1.2.1"):
    group = element(0x00020001, "OB", b"\0\1")
    for tag, value in ((0x00020002, sop_class), (0x00020003, instance), (0x00020010, syntax)):
        if value is not None:
            group += element(tag, "UI", value)
    return element(0x00020000, "UL", struct.pack("<I", len(group))) + group


def values(**changes):
    """The elements of a small CT object; a change to None leaves one out."""
    all_values = {
        "sop_class": (0x00080016, "UI", CT),
        "instance": (0x00080018, "UI", "2.25.1.1.1.1"),
        "study_date": (0x00080020, "DA", "20090305"),
        "study_time": (0x00080030, "TM", "101500"),
        "modality": (0x00080060, "CS", "CT"),
        "name": (0x00100010, "PN", "DOE^JOHN"),
        "id": (0x00100020, "LO", "12345"),
        "birth_date": (0x00100030, "DA", "19500102"),
        "study": (0x0020000D, "UI", "2.25.1.1"),
        "series": (0x0020000E, "UI", "2.25.1.1.1"),
        "study_id": (0x00200010, "SH", "1"),
        "series_number": (0x00200011, "IS", "1"),
        "number": (0x00200013, "IS", "1"),
    }
    elements = {}
    for name, (tag, vr, value) in all_values.items():
        value = changes.pop(name, value)
        if value is not None:
            elements[tag] = element(tag, vr, value)
    for tag, encoded in changes.pop("more", {}).items():
        elements[tag] = encoded
    assert not changes, changes
    return b"".join(elements[tag] for tag in sorted(elements))


def dicom_file(data_set=None, meta=None, **changes):
    if meta is None:
        meta = meta_group(changes.get("sop_class", CT), changes.get("instance", "2.25.1.1.1.1"))
    return bytes(128) + b"DICM" + meta + (values(**changes) if data_set is None else data_set)


class ProgramTest(unittest.TestCase):
    above = None  # where the test's directory lies, else in the temporary directory

    def setUp(self):
        self.dir = Path(tempfile.mkdtemp(prefix="quillon-cli-", dir=self.above))
        self.addCleanup(self.remove)
        os.chmod(self.dir, 0o755)
        for name in ("tmp", "home", "work"):
            (self.dir / name).mkdir()
        self.root = self.dir / "set"
        self.source = self.dir / "source"
        self.registry = self.dir / "registry.reg"

    def remove(self):
        for path in self.dir.rglob("*"):
            if path.is_dir() and not path.is_symlink():
                os.chmod(path, 0o755)
        shutil.rmtree(self.dir, ignore_errors=True)

    def environment(self):
        return {
            "PATH": os.environ["PATH"], "HOME": str(self.dir / "home"),
            "TMPDIR": str(self.dir / "tmp"), "QUILLON_REGISTRY": str(self.registry),
            "XDG_DATA_HOME": str(self.dir / "home/data"),
            "XDG_CONFIG_HOME": str(self.dir / "home/config"), "LC_ALL": "C",
            "ASAN_OPTIONS": os.environ.get("ASAN_OPTIONS", ""),
        }

    def configure(self, other_content=None, current_practice=None):
        """Writes the registry: no recorders, and what is given here."""
        lines = ["Windows Registry Editor Version 5.00", "",
                 f"[{QUILLON_KEY}\\DiscMastering]", '"Service"="none"', "",
                 f"[{QUILLON_KEY}\\Workstation\\MediaCreation]"]
        if other_content is not None:
            lines.append(f'"OtherContentSourceDir"="{other_content}"')
        if current_practice is not None:
            lines.append(f'"CurrentPractice"=dword:{current_practice:08x}')
        self.registry.write_text("\n".join(lines) + "\n")

    def run_program(self, *arguments, cwd=None, preexec_fn=None, timeout=120):
        run = subprocess.run([QUILLON, *map(os.fsencode, arguments)], cwd=cwd or self.dir / "work",
                             env=self.environment(), stdout=subprocess.PIPE,
                             stderr=subprocess.PIPE, timeout=timeout, preexec_fn=preexec_fn,
                             stdin=subprocess.DEVNULL)
        json_schemas.check(arguments, run.returncode, run.stdout)
        return run

    def command(self, name, *arguments, status=0, **how):
        """Runs a command with --json and answers its object; `status` is the expected exit status."""
        run = self.run_program(name, "--json", *arguments, **how)
        self.assertEqual(run.returncode, status, (run.stdout, run.stderr))
        result = json.loads(run.stdout.decode())
        self.assertEqual(result["error"] is None, status == 0, result)
        if status:
            self.assertIn(result["error"].rstrip("\n"), run.stderr.decode(errors="replace"))
        self.assertEqual(self.staging_leftovers(), [])
        return result

    def create(self, *arguments, **how):
        return self.command("create", *arguments, **how)

    def create_set(self, *arguments, **how):
        return self.create("--root", self.root, *arguments, **how)

    def interrupt(self, number, is_in_the_middle, *arguments):
        """Ends the program by a signal in the middle of its work; answers what it said."""
        with open(self.dir / "said", "w+b") as said:
            run = subprocess.Popen([QUILLON, *map(os.fsencode, arguments)], stdout=said, stderr=said,
                                   env=self.environment(), cwd=self.dir / "work",
                                   stdin=subprocess.DEVNULL)
            deadline = time.monotonic() + 60
            while not is_in_the_middle() and run.poll() is None and time.monotonic() < deadline:
                time.sleep(0.001)
            run.send_signal(number)
            status = run.wait(120)
            said.seek(0)
            text = said.read().decode()
        self.assertEqual(status, -number, text)
        return text

    def large_object(self, size):
        """A file with so many bytes of pixel data, most of them a hole."""
        path = self.write("large", dicom_file(instance="2.25.1.1.1.77")
                          + struct.pack("<HH", 0x7FE0, 0x10) + b"OW" + struct.pack("<HI", 0, size))
        os.truncate(path, path.stat().st_size + size)
        return path

    def staging_leftovers(self):
        # A directory may go away while another is looked at.
        return [os.path.join(above, name) for above, names, _ in os.walk(self.dir)
                for name in names if name.startswith(".quillon-")]

    def sample_tree(self):
        subprocess.run([SAMPLES, self.source], check=True, stdout=subprocess.DEVNULL)
        return contents(self.source)

    def write(self, name, data):
        path = self.source / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(data)
        return path

    def assert_nothing_lost(self, before, *places):
        """Every content of `before` is whole in one of the places."""
        kept = set()
        for place in places:
            kept.update(contents(place).values())
        lost = [path for path, digest in before.items() if digest not in kept]
        self.assertEqual(lost, [], "files are lost")

    def mounted(self, options):
        """A small file system of its own."""
        place = self.dir / "mount"
        place.mkdir()
        run = subprocess.run(["mount", "-t", "tmpfs", "-o", options, "tmpfs", place],
                             stderr=subprocess.PIPE)
        if run.returncode != 0:
            self.skipTest("no small file system can be mounted here: "
                          + run.stderr.decode().strip())
        self.addCleanup(subprocess.run, ["umount", place], check=True)
        return place

    def other_file_system(self):
        """A directory on another file system than the test's own."""
        for place in ("/dev/shm", "/tmp", "/var/tmp", os.environ.get("XDG_RUNTIME_DIR", "/run")):
            if os.access(place, os.W_OK) and os.stat(place).st_dev != os.stat(self.dir).st_dev:
                other = Path(tempfile.mkdtemp(prefix="quillon-cli-", dir=place))
                self.addCleanup(shutil.rmtree, other, ignore_errors=True)
                return other
        return self.skipTest("there is no second file system to move to")

    def as_nobody(self):
        """For preexec_fn: gives up root's right to read and write everything."""
        if os.geteuid() != 0:
            return None
        for path in [self.dir / "tmp", self.dir / "home", self.dir / "work"]:
            os.chown(path, NOBODY, NOBODY)

        def drop():
            os.setgroups([])
            os.setgid(NOBODY)
            os.setuid(NOBODY)
        return drop

    def require_program_for_nobody(self):
        drop = self.as_nobody()
        if drop is not None:
            try:
                run = self.run_program("--version", preexec_fn=drop)
            except PermissionError:
                run = None
            if run is None or run.returncode != 0:
                self.skipTest("the program lies where an unprivileged user cannot run it")
        return drop


def everything(directory):
    """What a job may change below a directory: names, kinds, sizes and times."""
    found = {}
    for path in sorted(Path(directory).rglob("*")):
        status = path.lstat()
        found[str(path)] = (status.st_mode, status.st_size, status.st_mtime_ns, status.st_nlink)
    return found


def digest_of(data):
    return hashlib.sha256(data).hexdigest()


SUMS = "SHA256SUMS"


def contents(directory):
    """Relative path to digest of every regular file below the directory, but for the sums of a set
    that was written: they tell of the others."""
    found = {}
    for path in sorted(Path(directory).rglob("*")):
        if path.is_file() and not path.is_symlink() and path != Path(directory) / SUMS:
            found[str(path.relative_to(directory))] = digest_of(path.read_bytes())
    return found
