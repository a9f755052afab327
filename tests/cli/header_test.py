"""quillon header as a user meets it: what it prints, that the stylesheets which ship with it do the
same in another processor, how it fails, and that it works where it is installed."""
import http.server
import json
import os
import re
import resource
import shutil
import subprocess
import sys
import threading
import unittest
import xml.etree.ElementTree as ElementTree
from html.parser import HTMLParser
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent))
import program  # noqa: E402
from program import dicom_file, element, item  # noqa: E402

BUILD = None  # set by main
STYLESHEETS = Path(__file__).resolve().parents[2] / "resources/stylesheets"
PYDICOM = Path("/usr/lib/python3/dist-packages/pydicom/data")
# For each file the person names in it as pydicom reads them, in their order.
NAMES = """
import json, sys, pydicom
def names(path):
    found = []
    for element in pydicom.dcmread(path).iterall():
        if element.VR == "PN":
            several = element.value if element.VM > 1 else [element.value or ""]
            found.append("\\\\".join(map(str, several)))
    return found
print(json.dumps([names(path) for path in sys.argv[1:]]))
"""
VOID = {"meta", "wbr", "br", "hr", "img", "link", "input"}


class Page(HTMLParser):
    """The text of a page; complains about elements that are not closed in order."""

    def __init__(self, html):
        super().__init__()
        self.open, self.faults, self.rows, self.names, self.links = [], [], 0, set(), []
        self.text = ""
        self.feed(html)
        self.close()
        self.faults += self.open

    def handle_starttag(self, tag, attributes):
        self.names.add(tag)
        self.rows += tag == "tr"
        self.links += [v for k, v in attributes if k in ("src", "href") and not v.startswith("#")]
        if tag not in VOID:
            self.open.append(tag)

    def handle_endtag(self, tag):
        if tag in VOID:
            return
        if not self.open or self.open.pop() != tag:
            self.faults.append("/" + tag)

    def handle_data(self, data):
        self.text += data


def elements_of(data_set):
    """The elements of the XML as the JSON should have them."""
    found = []
    for tag in data_set.findall("tag"):
        several = tag.find("values")
        one = {"tag": (tag.get("grp") + tag.get("element")).upper(), "vr": tag.get("VR"),
               "name": None if tag.get("name") == tag.get("element") else tag.get("name"),
               **{key: tag.get(key) for key in ("title", "meaning") if tag.get(key)}}
        if tag.get("VR") == "SQ":
            one["items"] = [elements_of(item) for item in tag.findall("item")]
        elif several is None:
            one["values"] = [tag.text] if tag.text else []
        else:
            one["values"] = [value.text or "" for value in several.findall("value")]
            if several.get("count") != several.get("total"):
                one["total"] = int(several.get("total"))
        found.append(one)
    return found


class Header(program.ProgramTest):
    def header(self, *arguments, status=0):
        run = self.run_program("header", *arguments)
        self.assertEqual(run.returncode, status, (run.stdout[-500:], run.stderr))
        if status == 0:
            self.assertEqual(run.stderr, b"")
            return run.stdout
        self.assertEqual(run.stdout, b"")
        return run.stderr.decode()

    def object(self, **changes):
        return self.write("object.dcm", dicom_file(**changes))

    def test_text_stands_in_columns_with_items_further_in(self):
        code = element(0x00080100, "SH", "C") + element(0x00080104, "LO", "Caf\xe9 <&>")
        nested = element(0x0040A043, "SQ", item(code)) + element(0x0040A160, "UT", "end")
        path = self.object(more={
            0x00080008: element(0x00080008, "CS", "A\\B\\C"),
            0x00080050: element(0x00080050, "SH", ""),
            0x00091001: element(0x00091001, "OB", bytes(range(200))),
            0x0040A730: element(0x0040A730, "SQ", item(nested) + item(b""))})
        lines = self.header(path).decode().splitlines()
        for line in ["(0008,0008) CS Image Type                         A\\B\\C",
                     "(0040,a730) SQ Content Sequence                   2 items",
                     "- item 1",
                     "  (0040,a043) SQ Concept Name Code Sequence       1 item",
                     "  - item 1",
                     "    (0008,0104) LO Code Meaning                   Caf\u00e9 <&>",
                     "  (0040,a160) UT Text Value                       end",
                     "- item 2",
                     "(0008,0050) SH Accession Number",
                     "(0008,0016) UI SOP Class UID                      1.2.840.10008.5.1.4.1.1.2 "
                     "(CT Image Storage)",
                     "(0008,0018) UI SOP Instance UID                   2.25.1.1.1.1",
                     " " * 50 + "(the first 100 of 200 values)"]:
            self.assertIn(line, lines)
        self.assertEqual([lines[i + 1][:6] for i, line in enumerate(lines) if line == ""],
                         ["(0002,", "(0008,", "(0009,", "(0010,", "(0020,", "(0040,"])
        start = next(i for i, line in enumerate(lines) if line.startswith("(0009,1001)"))
        self.assertEqual(lines[start][50:], "".join("%d\\" % i for i in range(16)))
        self.assertEqual(lines[start + 1], " " * 50 + "".join("%d\\" % i for i in range(16, 32)))

    def test_the_page_shows_patient_and_study_first_and_needs_no_other_file(self):
        evil = "<script>alert(1)</script>"
        path = self.object(name="DOE^JOHN^Q", more={
            0x00081030: element(0x00081030, "LO", evil),
            0x00101010: element(0x00101010, "AS", "059Y"),
            0x0040A730: element(0x0040A730, "SQ", item(element(0x0040A160, "UT", "deep")))})
        html = self.header("--stylesheet", "html", path).decode()
        page = Page(html)
        self.assertEqual(page.faults, [])
        self.assertTrue(html.startswith("<!DOCTYPE html"), html[:100])
        self.assertIn('charset=UTF-8"', html)
        self.assertEqual(page.links, [])
        self.assertFalse(page.names & {"script", "link", "img", "iframe"})
        self.assertTrue({"details", "summary", "table", "nav"} <= page.names)
        before_elements = page.text[:page.text.index("(0002,0001)")]
        for text in ("DOE, JOHN Q", "12345", "1950-01-02", "59 years", "2009-03-05", evil):
            self.assertIn(text, before_elements)
        self.assertIn("deep", page.text)

    def test_every_real_header_is_the_same_through_another_processor(self):
        if not PYDICOM.is_dir() or shutil.which("xsltproc") is None:
            self.skipTest("python3-pydicom or xsltproc is not installed")
        count = 0
        leaf = element(0x00080104, "LO", "A&<B>'\"@\tC") + element(0x00091001, "US", b"\1\0" * 40)
        made = self.object(more={
            0x00080005: element(0x00080005, "CS", "A<&'B>"),
            0x00080008: element(0x00080008, "CS", "\\".join("ABCDEFGHIJKLM")),
            0x00091001: element(0x00091001, "OB", bytes(range(200))),
            0x00181078: element(0x00181078, "DT", ""),
            0x0040A730: element(0x0040A730, "SQ", item(element(0x0040A730, "SQ", item(
                leaf) * 2) + element(0x0040A043, "SQ", b"")) + item(b""))})
        for path in [made] + sorted((PYDICOM / "test_files").glob("*.dcm")) + sorted(
                (PYDICOM / "charset_files").glob("*.dcm")):
            run = self.run_program("header", "--xml", path)
            if run.returncode != 0:
                self.assertTrue(run.stderr.startswith(b"quillon: "), path)
                continue
            count += 1
            tags = sum(1 for _ in ElementTree.fromstring(run.stdout).iter("tag"))
            told, = json.loads(self.header("--json", path))["files"]
            root = ElementTree.fromstring(run.stdout)
            self.assertEqual(told["elements"], elements_of(root), path)
            self.assertEqual((told["charset"] or "", told["code_page"]), (
                root.get("charset"), root.get("code-page") and int(root.get("code-page"))))
            self.assertEqual(told["text"].encode(), self.header(path))
            source = self.dir / "header.xml"
            source.write_bytes(run.stdout)
            for name in ("text", "html", "xml"):
                with self.subTest(path=path.name, stylesheet=name):
                    ours = self.header("--stylesheet", STYLESHEETS / (name + ".xsl"), path)
                    theirs = subprocess.run(
                        ["xsltproc", "--nonet", STYLESHEETS / (name + ".xsl"), source],
                        check=True, capture_output=True).stdout
                    self.assertTrue(ours == theirs)
                    if name == "text":
                        # Without a stylesheet the program makes the same of it.
                        self.assertTrue(self.header(path) == ours)
                        shown = [line for line in ours.decode().splitlines()
                                 if line.lstrip(" ").startswith("(") and line.lstrip(" ")[5:6] == ","]
                        self.assertEqual(len(shown), tags)
                    elif name == "html":
                        page = Page(ours.decode())
                        self.assertEqual(page.faults, [])
                    else:
                        self.assertTrue(ours == run.stdout)
        self.assertGreater(count, 70)

    def test_names_are_what_other_readers_take_them_for(self):
        files = sorted((PYDICOM / "charset_files").glob("*.dcm"))
        if not files:
            self.skipTest("python3-pydicom is not installed")
        theirs = json.loads(subprocess.run(["/usr/bin/python3", "-W", "ignore", "-c", NAMES, *files],
                                           check=True, capture_output=True).stdout)
        read = judged = 0
        for path, names in zip(files, theirs):
            with self.subTest(path=path.name):
                root = ElementTree.fromstring(self.header("--xml", path))
                ours = ["\\".join(value.text or "" for value in tag.iter("value"))
                        if tag.find("values") is not None else tag.text or ""
                        for tag in root.iter("tag") if tag.get("VR") == "PN"]
                # pydicom leaves out component groups that are empty at the end.
                self.assertEqual([name.rstrip("=") for name in ours], names)
                for name in ours:
                    self.assertNotIn("\uFFFD", name)
                    for line in name.splitlines():
                        self.assertIn(line, self.header(path).decode())
                read += len(names)
                if shutil.which("dcmdump") is None:
                    continue
                dump = subprocess.run(["dcmdump", "+U8", "+L", path], capture_output=True)
                if dump.returncode != 0:  # its tables lack the Japanese sets
                    continue
                judged += 1
                self.assertEqual(
                    ours, re.findall(r"^ *\(....,....\) PN (?:\[(.*?) *\]|\(no value available\))",
                                     dump.stdout.decode(), re.M))
        self.assertGreater(read, 20)
        if shutil.which("dcmdump") is not None:
            self.assertGreater(judged, 8)

    def test_the_character_set_is_told_and_can_be_replaced(self):
        latin = self.write("latin.dcm", dicom_file(name="J\xC3\xA9r\xC3\xB4me", more={
            0x00080005: element(0x00080005, "CS", "ISO_IR 100")}))
        none = self.write("none.dcm", dicom_file(name="J\xE9"))
        odd = self.write("odd.dcm", dicom_file(name="J\xE9", more={
            0x00080005: element(0x00080005, "CS", "A<&B>")}))
        japanese = "\\ISO 2022 IR 87"
        for path, arguments, shown, name in (
                (latin, [], "ISO_IR 100", "J\xC3\xA9r\xC3\xB4me"),
                (latin, ["--charset", "ISO_IR 192"], "ISO_IR 192", "J\u00E9r\u00F4me"),
                (latin, ["--charset", japanese], japanese, "J\uFFFD\uFFFDr\uFFFD\uFFFDme"),
                (none, [], "none declared, read in code page 1252", "J\u00E9"),
                (odd, [], "A<&B> is not known, read in code page 1252", "J\u00E9")):
            with self.subTest(path=path.name, arguments=arguments):
                lines = self.header(*arguments, path).decode().splitlines()
                self.assertEqual(lines[:2], ["Character set".ljust(50) + shown, ""])
                self.assertIn("(0010,0010) PN Patient's Name".ljust(50) + name, lines)
                html = self.header(*arguments, "--stylesheet", "html", path).decode()
                self.assertEqual(Page(html).faults, [])
                self.assertIn("Character set" + shown, Page(html).text)
                self.assertIn(name, Page(html).text)
                root = ElementTree.fromstring(self.header(*arguments, "--xml", path))
                self.assertEqual(shown.partition(" is not")[0].replace(
                    "none declared, read in code page 1252", ""), root.get("charset"))
        for arguments in (["--xml"], ["--stylesheet", "html"]):
            told, = json.loads(self.header("--json", *arguments, latin))["files"]
            self.assertEqual((told["text"].encode(), told["charset"], told["code_page"]),
                             (self.header(*arguments, latin), "ISO_IR 100", None))
        for terms, named in (("LATIN", "LATIN"), ("", ""), ("ISO_IR 100\\ISO 2022 IR 7",
                                                          "ISO 2022 IR 7"), ("\\", "")):
            run = self.run_program("header", "--charset", terms, latin)
            self.assertEqual((run.returncode, run.stdout), (2, b""))
            self.assertIn('--charset: "%s" is no character set' % named, run.stderr.decode())

    def test_a_name_without_letters_heads_the_page(self):
        path = self.object(name=b"=\xE5\xB1\xB1^\xE5\xA4\xAA=x", more={
            0x00080005: element(0x00080005, "CS", "ISO_IR 192")})
        self.assertIn("<h1>\u5C71, \u592A</h1>", self.header("--stylesheet", "html", path).decode())

    def test_a_workstation_can_have_it_as_it_was(self):
        path = self.object(name="J\xC3\xA9", more={
            0x00080005: element(0x00080005, "CS", "ISO_IR 192")})
        self.configure(current_practice=0)
        for stylesheet in ("text", "html"):
            shown = self.header("--stylesheet", stylesheet, path).decode()
            self.assertIn("J\u00C3\u00A9", shown)
            self.assertNotIn("Character set", shown)
            self.assertIn("(0002,0102)", shown)
        self.assertIn(b'" ?>\n<data-set>\n', self.header("--xml", path))

    def test_many_files_stand_one_after_the_other_under_their_names(self):
        paths = [self.write(name, dicom_file(name=name.upper())) for name in ("b/2", "b/1", "a")]
        self.write("b/notes.txt", b"no DICOM")
        alone = {path: self.header(path) for path in paths}
        under = {path: b"==> %s <==\n%s" % (os.fsencode(path), alone[path]) for path in paths}
        self.assertEqual(self.header(*paths), b"\n".join(under[path] for path in paths))
        run = self.run_program("header", "-r", self.source)
        self.assertEqual(run.stdout, b"\n".join(under[path] for path in sorted(paths)))
        self.assertEqual((run.returncode, run.stderr),
                         (0, b"quillon: 1 file that is not DICOM was passed over.\n"))
        # What fails is told, and the others are printed.
        cut = self.write("b/0", dicom_file()[:200])
        none = self.source / "none"
        for arguments in ([paths[0], cut, none, paths[2]], ["-r", cut, paths[0], none, paths[2]]):
            run = self.run_program("header", *arguments)
            self.assertEqual(run.returncode, 1)
            self.assertEqual(run.stdout, under[paths[0]] + b"\n" + under[paths[2]])
            for path in (cut, none):
                self.assertEqual(run.stderr.count(os.fsencode(path)), 1, run.stderr)
            listed = json.loads(self.run_program("header", "--json", *arguments).stdout)
            self.assertEqual(listed["error"] + "\n",
                             run.stderr.decode().splitlines(True)[-1].removeprefix("quillon: "))
            self.assertEqual({one["path"]: one["text"] for one in listed["files"]},
                             {str(path): alone[path].decode() if path in alone else None
                              for path in (*paths[::2], cut, none)})
        listed = json.loads(self.run_program("header", "--json", "-r", paths[2]).stdout)
        self.assertEqual((len(listed["files"]), listed["passed_over"], listed["error"]), (1, 0, None))
        # Each problem is told once, also beside one that ends the job.
        (self.source / "odd").mkdir()
        os.mkfifo(self.source / "odd/pipe")
        run = self.run_program("header", "-r", none, self.source / "none2", self.source / "odd")
        self.assertEqual(sorted(line.split()[1] for line in run.stderr.decode().splitlines()),
                         [f"{self.source}/{name}:" for name in ("none2", "none", "odd/pipe")])
        # One that is a directory is none without -r.
        self.assertEqual(self.run_program("header", self.source).returncode, 1)
        self.assertEqual(self.header("--xml", "-r", paths[2]).count(b"<data-set"), 1)

    def test_xml_is_what_stylesheets_are_given(self):
        path = self.object(name="A<B>&\"C\"'D'@E\x01^\x1bF")
        xml = self.header("--xml", path)
        self.assertIn("A&lt;B&gt;&amp;&quot;C&quot;&apos;D&apos;&#64;E\u2401^\uFFFDF".encode(), xml)
        self.assertTrue(xml.startswith(b'<?xml version="1.0" ?>\n<data-set charset="" '
                                       b'code-page="1252">\n<tag grp="0002"'), xml[:100])
        root = ElementTree.fromstring(xml)
        names = [t.text for t in root if t.get("name") == "patientsName"]
        self.assertEqual(names, ["A<B>&\"C\"'D'@E\u2401^\uFFFDF"])

    def test_stylesheets_come_from_paths_and_servers(self):
        sheet = self.write("short.xsl", b"""<xsl:stylesheet version="1.0"
            xmlns:xsl="http://www.w3.org/1999/XSL/Transform"><xsl:output method="text"/>
            <xsl:template match="/"><xsl:value-of select="//tag[@name='patientsName']"/>
            </xsl:template></xsl:stylesheet>""")
        path = self.object(name="DOE^JOHN")
        (self.dir / "work/text").write_bytes(sheet.read_bytes())
        handler = type("Handler", (http.server.SimpleHTTPRequestHandler,), {
            "log_message": lambda *_: None,
            "__init__": lambda s, *a, **k: http.server.SimpleHTTPRequestHandler.__init__(
                s, *a, directory=str(self.source), **k)})
        with http.server.ThreadingHTTPServer(("127.0.0.1", 0), handler) as server:
            threading.Thread(target=server.serve_forever, daemon=True).start()
            url = "http://127.0.0.1:%d/" % server.server_port
            for location in (sheet, os.path.relpath(sheet, self.dir / "work"), "./text",
                             url + "short.xsl"):
                self.assertEqual(self.header("--stylesheet", location, path).strip(), b"DOE^JOHN")
            self.assertEqual(
                self.header("--stylesheet", url + "none.xsl", path, status=1),
                "quillon: Cannot retrieve information from the URL \"%snone.xsl.\"\n" % url)
            server.shutdown()
        self.assertNotEqual(self.header("--stylesheet", "text", path).strip(), b"DOE^JOHN")

    def test_failures_are_told_in_a_sentence(self):
        path = self.object()
        none = self.write("none.dcm", b"nothing")
        broken = self.write("broken.xsl", b"<xsl:stylesheet")
        not_dicom = 'it is not a DICOM file: "DICM" does not stand after a preamble of 128 bytes.'
        deep = element(0x0040A160, "UT", "x")
        for _ in range(300):
            deep = element(0x0040A730, "SQ", item(deep))
        for file, reason in (
                (self.write("deep.dcm", dicom_file(more={0x0040A730: deep})),
                 "its elements cannot be read; --log FILE tells where and why."),
                (none, not_dicom), (self.write("empty.dcm", b""), not_dicom),
                (self.source / "absent", "it cannot be opened: No such file or directory."),
                (self.source, "it is a directory, and -r takes the files in it.")):
            self.assertEqual(self.header(file, status=1), "quillon: Cannot read the DICOM information "
                             f"from {file}: {reason}\n")
        for location in (broken, self.source / "absent.xsl", none):
            sentence = self.header("--stylesheet", location, path, status=1)
            self.assertRegex(sentence, r"^quillon: [A-Z].*\n$")
        for arguments in ([], ["--xml", "--stylesheet", "html", path],
                          ["--no-such", path], ["--stylesheet"]):
            run = self.run_program("header", *arguments)
            self.assertEqual((run.returncode, run.stdout), (2, b""), arguments)
            self.assertNotEqual(run.stderr, b"")

    def test_a_full_disk_is_a_failure(self):
        long = {tag: element(tag, "LO", "x" * 60) for tag in range(0x00091000, 0x00091100)}
        for path in (self.object(), self.write("long.dcm", dicom_file(more=long))):
            with open("/dev/full", "wb") as full:
                run = subprocess.run([program.QUILLON, "header", path], stdout=full,
                                     stderr=subprocess.PIPE, env=self.environment())
            self.assertEqual((run.returncode, run.stderr),
                             (1, b"quillon: The result cannot be written.\n"))

    def test_names_in_any_bytes_are_told_as_they_are(self):
        self.source.mkdir()
        name = os.fsencode(self.source) + b"/\xff\xe9.dcm"
        Path(os.fsdecode(name)).write_bytes(dicom_file())
        self.assertIn(b"DOE^JOHN", self.header(os.fsdecode(name)))
        run = self.run_program("header", os.fsdecode(name + b"x"))
        self.assertEqual(run.stderr,
                         b"quillon: Cannot read the DICOM information from " + name
                         + b"x: it cannot be opened: No such file or directory.\n")

    def test_an_installed_program_finds_its_stylesheets(self):
        if shutil.which("cmake") is None:
            self.skipTest("cmake is not installed")
        prefix = self.dir / "prefix"
        subprocess.run(["cmake", "--install", BUILD, "--prefix", prefix], check=True,
                       stdout=subprocess.DEVNULL)
        moved = self.dir / "moved"
        prefix.rename(moved)
        path = self.object()
        for arguments in (["--stylesheet", "html"], ["--xml"], []):
            run = subprocess.run([moved / "bin/quillon", "header", *arguments, path],
                                 capture_output=True, env=self.environment(), cwd=self.dir)
            self.assertEqual((run.returncode, run.stderr), (0, b""))
            self.assertEqual(run.stdout, self.header(*arguments, path))
        self.assertTrue((moved / "share/man/man1/quillon-header.1").is_file())
        # What comes with the first object that needs it can be missing by then.
        next(moved.glob("lib/**/libquillon_xml.so")).unlink()
        for arguments, what in ((["header", "--stylesheet", "html"], b"Stylesheets need"),
                                (["create", "--pdi", "--root", self.root], b"The pages for a browser need")):
            run = subprocess.run([moved / "bin/quillon", *arguments, path],
                                 capture_output=True, env=self.environment(), cwd=self.dir)
            self.assertEqual((run.returncode, run.stdout, run.stderr), (1, b"", (
                b"quillon: " + what + b" libquillon_xml.so of this installation, which cannot be "
                b"loaded.\n")))

    def test_a_file_without_memory_keeps_no_other_back(self):
        large = dicom_file(more={0x0040A160: element(0x0040A160, "UT", "x" * 20_000_000)})
        for name, data in (("a", dicom_file()), ("b", large), ("c", dicom_file())):
            self.write(name, data)
        run = self.run_program(
            "header", "--json", "-r", self.source,
            preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_AS, (240_000_000, 240_000_000)))
        first, second, third = json.loads(run.stdout)["files"]
        self.assertEqual(run.returncode, 1)
        self.assertEqual((first["error"], third["error"]), (None, None))
        self.assertIn("There is not enough memory.", second["error"])


if __name__ == "__main__":
    program.QUILLON, program.SAMPLES, BUILD = map(os.path.abspath, sys.argv[1:4])
    unittest.main(argv=[sys.argv[0], "-v", *sys.argv[4:]])
