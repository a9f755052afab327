"""A patient's name from the file to the medium, in every character set: what other readers show for the
source, they show for the PATIENT record, and label, header and JSON say the same."""
import json
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path
from xml.etree import ElementTree

sys.path.insert(0, str(Path(__file__).parent))
try:
    import pydicom
    from every_class import ROOT, data_set, write
except ImportError:
    pydicom = None

QUILLON = None  # set by main

# Specific Character Set, the name's bytes, and what they say. The names of several groups are those
# that the standard gives as examples.
NAMES = [
    ("", b"Doe^John", "Doe^John"),
    ("ISO_IR 6", b"Doe^John", "Doe^John"),
    ("ISO_IR 100", "Müller^Jörg".encode("iso8859-1"), "Müller^Jörg"),
    ("ISO_IR 101", "Wałęsa^Łucja".encode("iso8859-2"), "Wałęsa^Łucja"),
    ("ISO_IR 109", "Ĉapelo^Ħal".encode("iso8859-3"), "Ĉapelo^Ħal"),
    ("ISO_IR 110", "Bērziņš^Ģirts".encode("iso8859-4"), "Bērziņš^Ģirts"),
    ("ISO_IR 144", "Люкceмбypг^Я".encode("iso8859-5"), "Люкceмбypг^Я"),
    ("ISO_IR 127", "قباني^لنزار".encode("iso8859-6"), "قباني^لنزار"),
    ("ISO_IR 126", "Διονυσιος^Α".encode("iso8859-7"), "Διονυσιος^Α"),
    ("ISO_IR 138", "שרון^דבורה".encode("iso8859-8"), "שרון^דבורה"),
    ("ISO_IR 148", "Şahin^Işıl".encode("iso8859-9"), "Şahin^Işıl"),
    ("ISO_IR 166", "นามสกุล^ชื่อ".encode("tis-620"), "นามสกุล^ชื่อ"),
    ("ISO_IR 13", "ﾔﾏﾀﾞ^ﾀﾛｳ".encode("shift_jis"), "ﾔﾏﾀﾞ^ﾀﾛｳ"),
    ("ISO_IR 192", "Wang^XiaoDong=王^小东=".encode(), "Wang^XiaoDong=王^小东"),
    ("GB18030", "Wang^XiaoDong=王^小东=".encode("gb18030"), "Wang^XiaoDong=王^小东"),
    ("GB18030", "誠^𠀀 誠".encode("gb18030"), "誠^𠀀 誠"),
    ("GBK", "Wang^XiaoDong=王^誠".encode("gbk"), "Wang^XiaoDong=王^誠"),
    ("ISO 2022 IR 100\\ISO 2022 IR 144", "Müller^".encode("iso8859-1") + b"\x1b-L"
     + "Ян".encode("iso8859-5"), "Müller^Ян"),
    ("\\ISO 2022 IR 87", b"Yamada^Tarou=\x1b$B;3ED\x1b(B^\x1b$BB@O:\x1b(B="
     b"\x1b$B$d$^$@\x1b(B^\x1b$B$?$m$&\x1b(B", "Yamada^Tarou=山田^太郎=やまだ^たろう"),
    ("ISO 2022 IR 13\\ISO 2022 IR 87", "ﾔﾏﾀﾞ^ﾀﾛｳ".encode("shift_jis") + b"=\x1b$B;3ED\x1b(J^"
     b"\x1b$BB@O:\x1b(J=\x1b$B$d$^$@\x1b(J^\x1b$B$?$m$&\x1b(J", "ﾔﾏﾀﾞ^ﾀﾛｳ=山田^太郎=やまだ^たろう"),
    ("\\ISO 2022 IR 159", b"A^\x1b$(D\x30\x21\x1b(B", "A^丂"),
    ("\\ISO 2022 IR 149", b"Hong^Gildong=\x1b$)C\xfb\xf3^\x1b$)C\xd1\xce\xd4\xd7="
     b"\x1b$)C\xc8\xab^\x1b$)C\xb1\xe6\xb5\xbf", "Hong^Gildong=洪^吉洞=홍^길동"),
    ("\\ISO 2022 IR 58", b"Zhang^XiaoDong=\x1b$)A\xd5\xc5^\x1b$)A\xd0\xa1\xb6\xab=",
     "Zhang^XiaoDong=张^小东"),
]
# pydicom does not know the escape sequences of ISO 2022 IR 58, and divides at backslashes that are the
# second byte of a character.
PYDICOM_CANNOT = {"Zhang^XiaoDong=张^小东", "Wang^XiaoDong=王^誠", "誠^𠀀 誠"}


def run(*command):
    return subprocess.run([os.fspath(part) for part in command], stdout=subprocess.PIPE,
                          stderr=subprocess.PIPE, timeout=300)


def name_by_pydicom(data):
    # It leaves out component groups that are empty at the end.
    return str(data.get("PatientName", "") or "")


def encoded_name(data):
    """Before anything else is asked of the data set: pydicom decodes once."""
    found = data.get_item(0x00100010)
    return b"" if found is None or found.value is None else found.value.rstrip(b" \0")


def name_by_dcmdump(path):
    """None where its tables lack the character set."""
    dump = run("dcmdump", "+U8", "+L", "+P", "0010,0010", path)
    if dump.returncode != 0 or b"W:" in dump.stderr:
        return None
    names = re.findall(r"PN (?:\[(.*?) *\]|\(no value available\))", dump.stdout.decode())
    return names[0].rstrip("=") if names else ""


class CharacterSets(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        if pydicom is None or shutil.which("dcmdump") is None:
            raise unittest.SkipTest("pydicom or dcmdump is not installed")
        cls.dir = Path(tempfile.mkdtemp(prefix="quillon-charset-"))
        cls.addClassCleanup(shutil.rmtree, cls.dir)
        os.environ["QUILLON_REGISTRY"] = str(cls.dir / "none.reg")

    def check(self, source, expected=None):
        """Against what pydicom says, unless the name is given. Answers whether dcmdump could judge."""
        original = pydicom.dcmread(source)
        original_bytes = encoded_name(original)
        by_pydicom = name_by_pydicom(original)
        expected = by_pydicom if expected is None else expected
        root = self.dir / "set"
        made = run(QUILLON, "create", "--json", "--replace", "--root", root, source)
        self.assertEqual(made.returncode, 0, made.stderr)
        # Source and record for both judges.
        directory = pydicom.dcmread(root / "DICOMDIR")
        record = directory.DirectoryRecordSequence[0]
        self.assertEqual(record.DirectoryRecordType, "PATIENT")
        # What the file has is in the record, byte by byte.
        self.assertEqual(encoded_name(record), original_bytes)
        self.assertEqual(name_by_pydicom(record), by_pydicom)
        theirs = name_by_dcmdump(source)
        if theirs is not None:
            self.assertEqual(theirs, expected)
            self.assertEqual(name_by_dcmdump(root / "DICOMDIR"), expected)
        shown = expected.replace("^", " ").rstrip()
        line = json.loads(made.stdout)["label"].split("\n")[0]
        label = (root / "LABEL.TXT").read_bytes().decode("utf-16-le").split("\n")[0]
        self.assertEqual(line, label)
        if shown:
            self.assertEqual(label.removeprefix("Patient Name:  ").rstrip("= "), shown.rstrip("= "))
        header = ElementTree.fromstring(run(QUILLON, "header", "--xml", source).stdout)
        for tag in header:
            if (tag.get("grp"), tag.get("element")) == ("0010", "0010"):
                self.assertEqual((tag.text or "").rstrip("="), expected)
        self.assertEqual(expected != by_pydicom, expected in PYDICOM_CANNOT)
        return theirs is not None

    def test_every_term(self):
        judged = 0
        for number, (terms, encoded, name) in enumerate(NAMES):
            with self.subTest(terms=terms, name=name):
                made = data_set(ROOT + "4.1.1.2", number, PatientName=None, PixelData=None)
                path = self.dir / f"{number}.dcm"
                made.SpecificCharacterSet = terms.split("\\") if "\\" in terms else terms
                made[0x00100010] = pydicom.dataelem.RawDataElement(
                    pydicom.tag.Tag(0x00100010), "PN", len(encoded) + len(encoded) % 2,
                    encoded + b" " * (len(encoded) % 2), 0, False, True)
                write(made, path)
                judged += self.check(path, name)
        self.assertGreater(judged, 15)

    def test_real_files(self):
        files = sorted((Path(pydicom.__file__).parent / "data" / "charset_files").glob("*.dcm"))
        if not files:
            self.skipTest("pydicom's sample files are not installed")
        count = 0
        for path in files:
            if "StudyInstanceUID" in pydicom.dcmread(path):  # else it is no object of a file set
                with self.subTest(path.name):
                    self.check(path)
                    count += 1
        self.assertGreater(count, 10)


if __name__ == "__main__":
    QUILLON = os.path.abspath(sys.argv[1])
    unittest.main(argv=[sys.argv[0], "-v", *sys.argv[2:]], warnings="ignore")
