"""README.TXT, INDEX.HTM and the pages below IHE_PDI: what a browser makes of them, in the directory of a
file set as on an image of any file system, and that what is wrong with them changes nothing.

    pages_test.py QUILLON MAKE_SAMPLE_OBJECTS
"""
import re
import shutil
import subprocess
import sys
import unittest
from pathlib import Path
from urllib.parse import unquote, urlsplit

sys.path.insert(0, str(Path(__file__).parent))
import program  # noqa: E402
from browser import CHROMIUM, Browser  # noqa: E402
from program import dicom_file, element, everything  # noqa: E402

HOSTILE = "</title><script>alert(1)</script>\"'&\x01\u202egnp\u2066"
# Name as the file has it, its character set, and what people are to read.
PEOPLE = [
    ("Müller^Zoë^^Dr.".encode("latin-1"), "ISO_IR 100", "Müller, Dr. Zoë"),
    ("Διονυσίου^Άννα".encode("iso8859-7"), "ISO_IR 126", "Διονυσίου, Άννα"),
    (b"Yamada^Tarou=\x1b$B;3ED\x1b(B^\x1b$BB@O:\x1b(B=\x1b$B$d$^$@\x1b(B^\x1b$B$?$m$&\x1b(B",
     "\\ISO 2022 IR 87", "Yamada, Tarou 山田 太郎 やまだ たろう"),
    ("قباني^لنزار".encode("iso8859-6"), "ISO_IR 127", "قباني, لنزار"),
    ((HOSTILE + "^" + "W" * 300).encode(), "ISO_IR 192", "</title><script>alert(1)</script>\"'&␁ gnp"),
]
PAGE_NAME = re.compile(r"[A-Z0-9_]{1,8}\.(HTM|CSS|TXT)")


def judge(name):
    return shutil.which(name) or unittest.TestCase().skipTest(f"{name} is not installed")


def output_of(*command):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout


def take_out_iso9660(image, place):
    """The files by the bare names of ISO 9660."""
    for name in output_of(judge("isoinfo"), "-f", "-i", image).decode().split():
        if ";" in name:
            path = place / name.strip("/").removesuffix(";1").removesuffix(".")
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_bytes(output_of(judge("isoinfo"), "-x", name, "-i", image))


def take_out_joliet(image, place):
    output_of(judge("xorriso"), "-read_fs", "norock", "-osirrox", "on", "-indev", image, "-extract", "/",
              place)
    subprocess.run(["chmod", "-R", "u+w", place], check=True)


def take_out_udf(image, place):
    output_of(judge("7z"), "x", "-y", "-tudf", f"-o{place}", image)


class PagesTest(program.ProgramTest):
    def make_objects(self):
        """Each person has two studies, the first of them with two series of three objects in all."""
        for person, (name, character_set, _) in enumerate(PEOPLE, 1):
            for study, series, number in ((1, 1, 1), (1, 1, 2), (1, 2, 1), (2, 1, 1)):
                uid = f"2.25.{person}.{study}"
                more = {0x00080005: element(0x00080005, "CS", character_set),
                        0x00081030: element(0x00081030, "LO", f"Study {study} {HOSTILE}".encode()),
                        0x0008103E: element(0x0008103E, "LO", f"Series {series}"),
                        0x00100040: element(0x00100040, "CS", "F")}
                if study == 2:
                    del more[0x00081030]
                self.write(f"{person}/{study}{series}{number}", dicom_file(
                    name=name, id=f"ID{person}", study=uid, series=f"{uid}.{series}",
                    instance=f"{uid}.{series}.{number}", series_number=str(series), number=str(number),
                    modality="CT" if series == 1 else "SR", more=more))

    def configure_pages(self, *lines):
        self.configure()
        with open(self.registry, "a") as registry:
            registry.writelines(line + "\n" for line in lines)

    def create_pages(self, *arguments, **how):
        return self.create_set("--pdi", *arguments, self.source, **how)

    def names_below(self, directory):
        return {path.relative_to(directory).as_posix() for path in directory.rglob("*")}

    # ---- in a browser

    def walk(self, browser, directory):
        """Follows every link from INDEX.HTM on; answers the pages with what they say."""
        names = self.names_below(directory)
        pages = {}
        waiting = ["INDEX.HTM"]
        while waiting:
            page = waiting.pop()
            if page in pages:
                continue
            for width in (1280, 390):
                browser.open(directory / page, width)
                self.assertEqual(browser.faults(), [], f"{page} at {width}")
            pages[page] = browser.text()
            for link in browser.links():
                if link.startswith("#"):
                    self.assertTrue(browser.ask(f"!!document.querySelector('{link}')"), (page, link))
                    continue
                self.assertEqual(urlsplit(link).scheme, "", (page, link))
                target = (Path("/") / page).parent / unquote(link)
                parts = []
                for part in target.parts[1:]:
                    parts = parts[:-1] if part == ".." else parts + [part]
                self.assertIn("/".join(parts), names, (page, link))
                if parts[-1].endswith(".HTM"):
                    waiting.append("/".join(parts))
        return pages

    def check_walk(self, browser, directory):
        pages = self.walk(browser, directory)
        made = {name for name in self.names_below(directory) if name.endswith(".HTM")}
        self.assertEqual(set(pages), made, "a page that nothing leads to")
        # A page for the set, ten studies, and fifteen series.
        self.assertEqual(len(made), 26)
        for person, (_, _, name) in enumerate(PEOPLE, 1):
            # Above the study of everybody, too: the first of each.
            for page in ("INDEX.HTM", f"IHE_PDI/STUDY{2 * person - 1:03}.HTM"):
                self.assertIn(name, re.sub(r"\s+", " ", pages[page]), page)
        self.assertEqual([url for url in browser.requests
                          if not url.startswith(directory.absolute().as_uri())], [])

    @unittest.skipIf(CHROMIUM is None, "chromium is not installed")
    def test_a_browser_reads_every_page_wherever_the_medium_lies(self):
        self.make_objects()
        viewer = self.dir / "viewer"
        viewer.mkdir()
        (viewer / "VIEWER.TXT").write_text("viewer")
        self.configure(other_content=viewer)
        self.create_pages()
        image = self.dir / "set.iso"
        self.command("write", "--root", self.root, "--keep", "--iso", image)
        browser = Browser()
        self.addCleanup(browser.close)
        self.check_walk(browser, self.root)
        for take_out in (take_out_iso9660, take_out_joliet, take_out_udf):
            with self.subTest(take_out.__name__):
                place = self.dir / take_out.__name__
                take_out(image, place)
                browser.requests.clear()
                self.check_walk(browser, place)

    def test_pages_are_valid_and_have_names_for_every_file_system(self):
        self.make_objects()
        result = self.create_pages()
        self.assertIn("DICOM PLUS WEB", result["label"])
        names = self.names_below(self.root)
        for name in names:
            if name.startswith("IHE_PDI/") or "." in name:
                self.assertRegex(name.removeprefix("IHE_PDI/"), PAGE_NAME)
        for name in ["INDEX.HTM", *(name for name in names if "STUDY" in name)]:
            run = subprocess.run([judge("xmllint"), "--noout", "--valid", "--nonet",
                                  self.root / name], capture_output=True)
            self.assertEqual((run.returncode, run.stderr), (0, b""), name)
        readme = (self.root / "README.TXT").read_bytes()
        self.assertTrue(readme.isascii())
        self.assertEqual(readme.count(b"\n"), readme.count(b"\r\n"))
        self.assertLessEqual(max(map(len, readme.split(b"\r\n"))), 80)
        for person, (_, _, name) in enumerate(PEOPLE, 1):
            self.assertNotIn(f"ID{person}".encode(), readme)
        self.assertIn(b"20 objects", readme)

    # ---- when, and by which stylesheets

    def test_the_registry_and_the_options_decide_whether_there_are_pages(self):
        self.make_objects()
        for value, options, has_pages in ((None, (), False), (None, ("--pdi",), True), (1, (), True),
                                          (1, ("--no-pdi",), False), (0, ("--pdi",), True)):
            with self.subTest(value=value, options=options):
                self.configure_pages(*([] if value is None else [f'"PortableData"=dword:{value:08x}']))
                result = self.create_set("--replace", *options, self.source)
                self.assertEqual((self.root / "INDEX.HTM").exists(), has_pages)
                self.assertEqual((self.root / "IHE_PDI").exists(), has_pages)
                self.assertEqual("PLUS WEB" in result["label"], has_pages)

    def test_stylesheets_of_the_user_make_the_pages_that_they_are_for(self):
        self.make_objects()
        own = self.dir / "own"
        own.mkdir()
        (own / "part.xsl").write_text(
            '<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">'
            '<xsl:template match="/medium"><xsl:value-of select="concat(@page, \' \', count(//object))"/>'
            '</xsl:template></xsl:stylesheet>')
        (own / "pages.xsl").write_text(
            '<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">'
            '<xsl:import href="part.xsl"/><xsl:output method="text"/></xsl:stylesheet>')
        self.create_set("--pages", own, self.source)
        self.assertEqual((self.root / "INDEX.HTM").read_text(), "index 0")
        self.assertEqual((self.root / "IHE_PDI/STUDY001.HTM").read_text(), "study 3")
        self.assertIn("<html", (self.root / "IHE_PDI/HEAD0001.HTM").read_text())
        self.assertIn("body {", (self.root / "IHE_PDI/STYLE.CSS").read_text())

    # ---- what cannot be

    def test_what_is_wrong_with_pages_fails_with_nothing_changed(self):
        self.make_objects()
        own = self.dir / "own"
        viewer = self.dir / "viewer"
        sheet = '<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">'
        cases = [
            ("no stylesheets", {"other.xsl": ""}, (), "has no stylesheet for pages"),
            ("not well formed", {"pages.xsl": sheet}, (), "pages.xsl cannot make pages"),
            ("of a header not well formed", {"html.xsl": "<a>"}, (), "html.xsl cannot make pages"),
            ("no XSLT", {"pages.xsl": sheet + "<xsl:nonsense/></xsl:stylesheet>"}, (),
             "pages.xsl cannot make pages"),
            ("that makes nothing", {"pages.xsl": sheet + '<xsl:template match="/"/></xsl:stylesheet>'},
             (), "It makes an empty page."),
            ("objects among the pages", {"pages.css": "p {}"}, ("--object-dir", "IHE_PDI/IMAGES"),
             f"the name {self.root}/IHE_PDI is taken"),
        ]
        for what, files, options, sentence in cases:
            for more in ((), ("--dry-run",)):
                with self.subTest(what, more=more):
                    shutil.rmtree(own, ignore_errors=True)
                    own.mkdir()
                    for name, text in files.items():
                        (own / name).write_text(text)
                    before = everything(self.dir)
                    result = self.create_set("--pages", own, "--move", *options, *more, self.source,
                                             status=1)
                    self.assertIn(sentence, result["error"].replace("\\", "/"))
                    self.assertEqual(everything(self.dir), before)

    def test_pages_count_for_the_room_on_the_disk(self):
        self.make_objects()
        place = self.mounted("size=320k")
        before = everything(self.dir)
        for options, status in ((("--pdi",), 1), ((), 0)):
            result = self.create("--root", place / "set", *options, self.source, status=status)
            if status:
                self.assertRegex(result["error"], "has room for [0-9]+ bytes; [0-9]+ bytes are needed")
                self.assertEqual(sorted(everything(self.dir)), sorted(before))

    def test_a_header_that_cannot_be_shown_has_no_page_and_is_told_of(self):
        self.make_objects()
        # A header of more text than any browser shows.
        self.write("1/long", dicom_file(
            instance="2.25.9.1.1.1", study="2.25.9.1", series="2.25.9.1.1",
            more={0x0040A160: element(0x0040A160, "UT", "x" * (5 << 20))}))
        run = self.run_program("create", "--root", self.root, "--pdi", self.source)
        self.assertEqual(run.returncode, 0, run.stderr)
        self.assertIn(b"The header of " + bytes(self.source / "1/long") + b" has no page", run.stderr)
        self.assertEqual(len(list((self.root / "IHE_PDI").glob("HEAD*.HTM"))), 15)
        self.assertEqual(len(list((self.root / "IHE_PDI").glob("STUDY*.HTM"))), 11)

    def test_headers_beyond_what_a_plan_keeps_are_made_of_the_objects_in_the_set(self):
        # Pages of 3.5 MB each, of which four are kept.
        for number in range(1, 7):
            self.write(str(number), dicom_file(
                instance=f"2.25.8.{number}.1", study="2.25.8", series=f"2.25.8.{number}",
                series_number=str(number),
                more={0x0040A160: element(0x0040A160, "UT", f"text {number} " + "x" * 3_500_000)}))
        self.create_pages("--move")
        for number in range(1, 7):
            page = (self.root / f"IHE_PDI/HEAD000{number}.HTM").read_text()
            self.assertGreater(len(page), 3_500_000)
            self.assertIn(f"text {number} x", page)
            self.assertIn('href="STUDY001.HTM"', page)


if __name__ == "__main__":
    program.QUILLON = Path(sys.argv[1]).resolve()
    program.SAMPLES = Path(sys.argv[2]).resolve()
    unittest.main(argv=[sys.argv[0], *sys.argv[3:]], verbosity=2)
