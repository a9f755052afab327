"""What the pictures of the README show: made-up studies in a home directory of their own, and what the
program prints when commands are run on them. tests/cli/pictures_test.py runs the same."""
import fcntl
import os
import pty
import random
import re
import select
import shutil
import struct
import subprocess
import sys
import tempfile
import termios
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tests/cli"))
from program import BASIC_SR, CT, dicom_file, element, item  # noqa: E402

PICTURES = ROOT / "docs/pictures"
COLUMNS, ROWS = 98, 19

# What is typed in the recording; each scene begins with an empty screen.
SCENES = [
    ["quillon publish --zip study.zip --compress objects", "quillon verify study.zip"],
    ["quillon list study.zip"],
    ["quillon header objects/CT/IM0042 | head -n 17"],
]
# The pages that are shown, by the names of their pictures.
PAGES = {"header": "header.html", "index": "set/INDEX.HTM", "study": "set/IHE_PDI/STUDY002.HTM"}
PAGE_COMMANDS = [
    "quillon config set InstitutionName 'City Hospital, Department of Radiology'",
    "quillon config set InstitutionAddress '1 Example Street, Springfield'",
    "quillon config set InstitutionPhone '555 0100'",
    "quillon create --pdi --root set objects",
    "quillon header --stylesheet html objects/CT/IM0042 > header.html",
]

# Whatever another run or machine has differently, and what pictures have in its place.
VARYING = [
    (re.compile(r"quillon-publish-\d+-\w+"), "quillon-publish-4711-x"),
    (re.compile(r"(Fileset Creation Date:  )[^\r\n]+"), r"\g<1>27 Nov 2026"),
    (re.compile(r"(Quillon Media \d+\.\d+\.\d+)[+~][\w.+~]*"), r"\1"),
    (re.compile(r"(Made by Quillon Media \S+ on )[\d-]+"), r"\g<1>2026-11-27"),
]
# Pictures keep the version that they were made with.
VERSION = re.compile(r"(Quillon Media )\d[\w.+~]*")

CR = "1.2.840.10008.5.1.4.1.1.1"
MR = "1.2.840.10008.5.1.4.1.1.4"
PATIENTS = [("DOE^JANE", "12345", "19610417", "F"), ("ROE^RICHARD", "67890", "19830922", "M")]
STUDIES = [
    # patient, description, date, time, accession number, body part
    (0, "CT chest with contrast", "20260305", "101500", "A20412", "CHEST"),
    (0, "Chest", "20250918", "084000", "A11733", "CHEST"),
    (1, "MR left knee", "20260304", "143000", "A20407", "KNEE"),
]
SERIES = [
    # directory, study, number, class, modality, description, objects, rows and columns
    ("SCOUT", 0, 1, CT, "CT", "Scout", 2, 512),
    ("CT", 0, 2, CT, "CT", "Axial 5 mm", 60, 512),
    ("LUNG", 0, 3, CT, "CT", "Lung 2.5 mm", 60, 512),
    ("SR", 0, 4, BASIC_SR, "SR", "Report", 1, 0),
    ("CR", 1, 1, CR, "CR", "PA and lateral", 2, 1024),
    ("T1", 2, 1, MR, "MR", "T1 sagittal", 24, 256),
    ("PD", 2, 2, MR, "MR", "PD fat sat coronal", 24, 256),
]


def number(value):
    return struct.pack("<H", value)


def texts(*rows):
    return {tag: element(tag, vr, value) for tag, vr, value in rows}


def noise(size):
    """Pixels of twelve bits, the same on every run, that do not compress to nothing."""
    pixels = bytearray(2 * size * size)
    pixels[0::2] = random.Random(size).randbytes(size * size)
    pixels[1::2] = bytes([3]) * (size * size)
    return bytes(pixels)


def image_elements(size, n, count, is_ct):
    found = {tag: element(tag, "US", number(value)) for tag, value in (
        (0x00280002, 1), (0x00280010, size), (0x00280011, size), (0x00280100, 16), (0x00280101, 12),
        (0x00280102, 11), (0x00280103, 0))}
    found |= texts((0x00080008, "CS", "ORIGINAL\\PRIMARY\\AXIAL"), (0x00280004, "CS", "MONOCHROME2"))
    if is_ct:
        found |= texts(
            (0x00180010, "LO", "300 mg/ml"), (0x00180050, "DS", "5"), (0x00180060, "DS", "120"),
            (0x00181030, "LO", "Chest routine"), (0x00181151, "IS", "180"), (0x00185100, "CS", "HFS"),
            (0x00200032, "DS", f"-175\\-175\\{-5 * n}"), (0x00200037, "DS", "1\\0\\0\\0\\1\\0"),
            (0x00201041, "DS", str(-5 * n)), (0x00201002, "IS", str(count)),
            (0x00280030, "DS", "0.684\\0.684"), (0x00281050, "DS", "40"), (0x00281051, "DS", "400"),
            (0x00281052, "DS", "-1024"), (0x00281053, "DS", "1"))
    return found


def report_elements():
    concept = texts((0x00080100, "SH", "121060"), (0x00080102, "SH", "DCM"), (0x00080104, "LO", "History"))
    content = b"".join(concept[tag] for tag in sorted(concept))
    return texts((0x0040A040, "CS", "CONTAINER"), (0x0040A050, "CS", "SEPARATE"),
                 (0x0040A491, "CS", "COMPLETE"), (0x0040A493, "CS", "VERIFIED")) | {
                     0x0040A043: element(0x0040A043, "SQ", item(content))}


def make_objects(directory):
    for place, study, series, sop_class, modality, description, count, size in SERIES:
        patient, title, date, hour, accession, part = STUDIES[study]
        name, patient_id, birth_date, sex = PATIENTS[patient]
        (directory / place).mkdir(parents=True)
        pixels = element(0x7FE00010, "OW", noise(size)) if size else b""
        for n in range(1, count + 1):
            uid = f"2.25.4711.{study + 1}.{series}"
            more = texts(
                (0x00080005, "CS", "ISO_IR 100"), (0x00080050, "SH", accession),
                (0x00080080, "LO", "City Hospital"), (0x00081010, "SH", f"{modality}1"),
                (0x00081030, "LO", title), (0x0008103E, "LO", description), (0x00080021, "DA", date),
                (0x00080023, "DA", date), (0x00080031, "TM", hour), (0x00080033, "TM", hour),
                (0x00180015, "CS", part), (0x00100040, "CS", sex))
            more |= image_elements(size, n, count, sop_class == CT) if size else report_elements()
            (directory / place / f"IM{n:04}").write_bytes(dicom_file(
                sop_class=sop_class, instance=f"{uid}.{n}", study=f"2.25.4711.{study + 1}", series=uid,
                name=name, id=patient_id, birth_date=birth_date, study_date=date, study_time=hour,
                study_id=str(study + 1), series_number=str(series), number=str(n), modality=modality,
                more=more) + pixels)


class Home:
    """A home directory with the objects, and the program on its path. Goes away with its `with`."""

    def __init__(self, quillon):
        self.dir = Path(tempfile.mkdtemp(prefix="quillon-pictures-")).resolve()
        (self.dir / "bin").mkdir()
        (self.dir / "bin/quillon").symlink_to(Path(quillon).resolve())
        make_objects(self.dir / "objects")

    def __enter__(self):
        return self

    def __exit__(self, *failure):
        shutil.rmtree(self.dir, ignore_errors=True)

    def environment(self):
        # Nothing of who runs this or where.
        return {"PATH": f"{self.dir}/bin:/usr/bin:/bin", "HOME": str(self.dir), "TERM": "xterm",
                "QUILLON_REGISTRY": f"{self.dir}/.registry.reg", "LC_ALL": "C.UTF-8", "TZ": "UTC"}

    def shown(self, text):
        text = text.replace(str(self.dir), "~")
        for pattern, instead in VARYING:
            text = pattern.sub(instead, text)
        return text

    def run(self, command):
        """Runs a command of a shell on a terminal; answers what came, as (seconds, text): whole lines, and
        what was drawn over itself."""
        pid, terminal = pty.fork()
        if pid == 0:
            fcntl.ioctl(0, termios.TIOCSWINSZ, struct.pack("HHHH", ROWS, COLUMNS, 0, 0))
            os.chdir(self.dir)
            os.execve("/bin/bash", ["bash", "-c", command], self.environment())
        began, pieces, kept = time.monotonic(), [], b""
        while True:
            try:
                piece = os.read(terminal, 1 << 16)
            except OSError:  # how a terminal tells that nobody writes any more
                piece = b""
            kept += piece
            # What varies in a line is told from the whole line.
            end = len(kept) if not piece or kept.startswith(b"\r\x1b[K") else kept.rfind(b"\n") + 1
            if end:
                pieces.append((time.monotonic() - began, self.shown(kept[:end].decode())))
                kept = kept[end:]
            if not piece:
                break
        os.close(terminal)
        _, status = os.waitpid(pid, 0)
        if status != 0:
            raise SystemExit(f"{command} failed: {''.join(text for _, text in pieces)}")
        return pieces

    def pages(self):
        """The pages to be shown: the name of the picture, and the file."""
        for command in PAGE_COMMANDS:
            subprocess.run(["bash", "-c", command], cwd=self.dir, env=self.environment(), check=True,
                           stdout=subprocess.DEVNULL)
        for path in {*self.dir.glob("*.html"), *self.dir.glob("set/**/*.HTM")}:
            path.write_text(self.shown(path.read_text()))
        return {name: self.dir / file for name, file in PAGES.items()}
