"""What quillon says of objects and application profiles, beside what dcmmkdir takes for each."""
import json
import os
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent))

try:
    import pydicom
    from profile_objects import OBJECTS, PLAIN, write_object
except ImportError:
    pydicom, OBJECTS, PLAIN = None, {}, None

QUILLON = None  # set by main

# Profiles that differ in their medium alone are alike, there as here.
FLAGS = {
    "STD-GEN-CD": "--general-purpose", "STD-GEN-DVD-JPEG": "--general-dvd-jpeg",
    "STD-GEN-DVD-J2K": "--general-dvd-j2k", "STD-GEN-BD-JPEG": "--general-bd-jpeg",
    "STD-GEN-BD-MPEG2-MPML": "--general-bd-mpeg2-mpml", "STD-GEN-USB-JPEG": "--usb-and-flash-jpeg",
    "STD-GEN-MIME": "--general-mime", "STD-DVD-MPEG2-MPML": "--mpeg2-mpml-dvd",
    "STD-XABC-CD": "--basic-cardiac", "STD-XA1K-CD": "--xray-angiographic",
    "STD-XA1K-DVD": "--xray-angiographic-dvd", "STD-DEN-CD": "--dental-radiograph",
    "STD-CTMR-CD": "--ct-and-mr", "STD-US-ID-SF-CDR": "--ultrasound-id-sf",
    "STD-US-SC-SF-CDR": "--ultrasound-sc-sf", "STD-US-CC-SF-CDR": "--ultrasound-cc-sf",
    "STD-US-ID-MF-CDR": "--ultrasound-id-mf", "STD-US-SC-MF-CDR": "--ultrasound-sc-mf",
    "STD-US-CC-MF-CDR": "--ultrasound-cc-mf",
}
# Who alone takes which objects, and who is right.
GENERAL = ["STD-GEN-CD", "STD-GEN-DVD-JPEG", "STD-GEN-DVD-J2K", "STD-GEN-BD-JPEG",
           "STD-GEN-USB-JPEG", "STD-GEN-MIME"]
UNCOMPRESSED = [name for name, values in OBJECTS.items()
                if values["syntax"] == PLAIN and name not in ("us retired", "private")]
KNOWN_ROWS = [
    ("dcmmkdir", GENERAL, ["us retired"],
     "Retired classes are none of those that the standard stores on media."),
    ("dcmmkdir", ["STD-CTMR-CD"], ["sc 12 bits"],
     "Of grayscale captures all bits that are allocated are to be stored."),
    ("dcmmkdir", ["STD-CTMR-CD"], ["sc monochrome1", "sc palette of 16 bits"],
     "Captures of this profile are MONOCHROME2, or of palettes with 8 bits."),
    ("dcmmkdir", ["STD-XA1K-CD", "STD-XA1K-DVD"], ["sc overlay"],
     "Captures of this profile have no overlays."),
    ("dcmmkdir", ["STD-XA1K-DVD"], ["sc lossless"],
     "What may be compressed on DVD are the X-ray images; captures stay uncompressed."),
    ("quillon", ["STD-GEN-BD-MPEG2-MPML"], UNCOMPRESSED,
     "The table of these profiles has uncompressed objects of all classes beside the video."),
]
KNOWN = {(profile, name): who for who, profiles, names, _ in KNOWN_ROWS
         for profile in profiles for name in names}
ICONS = 0x00880200
ICON_RULE = "Icon Image Sequence (0088,0200)"  # dcmmkdir makes icons, quillon reads no pixels


class Profiles(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls):
        if pydicom is None:
            raise unittest.SkipTest("pydicom is not installed for " + sys.executable)
        cls.directory = Path(tempfile.mkdtemp())
        cls.addClassCleanup(shutil.rmtree, cls.directory)
        cls.asked, cls.files = {}, {}
        for number, (name, values) in enumerate(OBJECTS.items(), 1):
            cls.files[name] = f"O{number:03d}"
            write_object(cls.directory / cls.files[name], values, number)

    def dcmmkdir_takes(self, profile, name):
        if (profile, name) not in self.asked:
            run = subprocess.run(["dcmmkdir", FLAGS[profile], "--discard", self.files[name]],
                                 cwd=self.directory, capture_output=True, timeout=60)
            self.asked[profile, name] = run.returncode == 0
        return self.asked[profile, name]

    def quillon(self, *arguments):
        return subprocess.run([QUILLON, *arguments],
                              env={**os.environ, "XDG_CONFIG_HOME": str(self.directory)},
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=300)

    def quillon_takes(self, profile):
        """The objects that it says nothing of."""
        run = self.quillon("create", "--json", "--dry-run", "--no-other-content", "--root",
                           self.directory / "set", "--profile", profile,
                           *(self.directory / file for file in self.files.values()))
        self.assertEqual(run.returncode, 0, run.stderr)
        result = json.loads(run.stdout)
        self.assertEqual((result["objects"], result["passed_over"]), (len(OBJECTS), []))
        self.assertLessEqual(len(result["profile"]["found"]), result["profile"]["violations"])
        refused = {Path(fault["path"]).name for fault in result["profile"]["found"]
                   if not fault["rule"].startswith(ICON_RULE)}
        return {name for name, file in self.files.items() if file not in refused}

    def test_they_agree_but_for_known_differences(self):
        if shutil.which("dcmmkdir") is None:
            self.skipTest("dcmmkdir is not installed")
        differences, taken = {}, 0
        for profile in FLAGS:
            ours = self.quillon_takes(profile)
            for name in OBJECTS:
                theirs = self.dcmmkdir_takes(profile, name)
                taken += theirs
                if theirs != (name in ours):
                    differences[profile, name] = "quillon" if name in ours else "dcmmkdir"
        self.assertGreater(taken, 100)
        self.assertEqual(differences, KNOWN, "who alone takes what, and what is known of that")

    def test_their_directories_have_the_same_keys(self):
        """What dcmmkdir makes quillon finds nothing wrong with, and its own has all that that has."""
        if shutil.which("dcmmkdir") is None:
            self.skipTest("dcmmkdir is not installed")
        for profile in FLAGS:
            with self.subTest(profile):
                taken = self.quillon_takes(profile)
                files = [self.files[name] for name in OBJECTS
                         if name in taken and self.dcmmkdir_takes(profile, name)]
                medium = self.directory / f"{profile}-medium"
                medium.mkdir()
                for file in files:
                    shutil.copy(self.directory / file, medium)
                subprocess.run(["dcmmkdir", FLAGS[profile], *files], cwd=medium, check=True,
                               capture_output=True, timeout=60)
                run = self.quillon("verify", "--json", "--profile", profile, medium)
                self.assertEqual([finding["message"] for finding in json.loads(run.stdout)["findings"]
                                  if finding["code"].startswith("profile")], [])
                root = self.directory / f"{profile}-set"
                self.quillon("create", "--no-other-content", "--profile", profile, "--root", root,
                             medium)
                theirs, ours = keys_of(medium / "DICOMDIR"), keys_of(root / "DICOMDIR")
                self.assertEqual(set(theirs), set(ours))
                for record, keys in theirs.items():
                    lacking = {tag for tag in keys if ours[record].get(tag) != keys[tag]}
                    self.assertEqual(lacking - {ICONS}, set(), record)
        # Their icons for CT are smaller than those for angiography.
        run = self.quillon("verify", "--json", "--profile", "STD-XABC-CD",
                           self.directory / "STD-CTMR-CD-medium")
        codes = [finding["code"] for finding in json.loads(run.stdout)["findings"]]
        self.assertGreater(codes.count("profile-icon"), 5)


def keys_of(dicomdir):
    """Of each record, by its type and UID, the keys."""
    records = {}
    for record in pydicom.dcmread(dicomdir).DirectoryRecordSequence:
        uids = [str(record.get(name, "")) for name in
                ("PatientID", "StudyInstanceUID", "SeriesInstanceUID", "ReferencedSOPInstanceUIDInFile")]
        records[record.DirectoryRecordType, *uids] = {
            element.tag: element.value for element in record if element.tag.group != 4}
    return records


if __name__ == "__main__":
    QUILLON = sys.argv.pop(1)
    unittest.main(warnings="ignore")  # of pydicom's class of a DICOMDIR
