#!/usr/bin/env python3
"""Makes the pictures of the README: pictures.py QUILLON. To be run by scripts/pictures.sh, which see.

docs/pictures/shown.txt is what they show as text; the test compares it with what the program says today."""
import base64
import hashlib
import subprocess
import sys
from html.parser import HTMLParser
from pathlib import Path

import demo
from terminal import Recording, lines_of

# Higher ones end with the last section of the page that fits.
HIGHEST_PIXELS = 1100
WIDTH_PIXELS = 900
SHOWN = demo.PICTURES / "shown.txt"
RECORDING = demo.PICTURES / "recording.svg"
TITLE = ("quillon publish packs a folder of DICOM files into a ZIP file, quillon verify checks it, quillon list "
         "tells what is in it, quillon header shows an object")


class PageText(HTMLParser):
    """The text of a page: a line for each row, heading or paragraph."""

    LINES = {"tr", "p", "h1", "h2", "h3", "li", "dt", "nav", "title"}

    def __init__(self, page):
        super().__init__()
        self.lines = []
        self.is_style = False
        self.feed(page)

    def handle_starttag(self, tag, attributes):
        self.is_style = tag == "style"
        if tag in self.LINES:
            self.lines.append([])

    def handle_endtag(self, tag):
        self.is_style = False

    def handle_data(self, data):
        if data.strip() and not self.is_style:
            self.lines[-1].append(" ".join(data.split()))

    def text(self):
        return "".join(" ".join(line) + "\n" for line in self.lines if line)


def record(home):
    return [[(command, home.run(command)) for command in scene] for scene in demo.SCENES]


def recorded_text(scenes):
    text = "== recording.svg\n"
    for command, pieces in (pair for scene in scenes for pair in scene):
        text += "\n".join([Recording.PROMPT + command, *lines_of(pieces, demo.COLUMNS)]) + "\n"
    return text


def page_text(pages):
    """With a sum of each page, which changes with its style."""
    text = ""
    for name, file in pages.items():
        page = demo.VERSION.sub(r"\1VERSION", file.read_text())
        styles = [style.read_text() for style in sorted(file.parent.rglob("*.CSS"))]
        digest = hashlib.sha256("".join([page, *styles]).encode()).hexdigest()
        text += f"== {name}.png\n{PageText(page).text()}page and style {digest[:16]}\n"
    return text


def mark_of(text):
    """Ends a recording that shows this text, as the writer draws today."""
    writer = Path(__file__).with_name("terminal.py").read_text()
    return f"<!-- {hashlib.sha256((text + writer).encode()).hexdigest()} -->\n"


def write_recording(scenes, text):
    # Speed and progress differ each time: what shows the same otherwise stays as it is.
    mark = mark_of(text)
    if RECORDING.exists() and RECORDING.read_text().endswith(mark):
        return
    recording = Recording(demo.COLUMNS, demo.ROWS)
    recording.scene(scenes[0])
    still_at = recording.seconds - 0.1
    for scene in scenes[1:]:
        recording.scene(scene)
    RECORDING.write_text(recording.svg(TITLE, still_at) + mark)


def take_picture(browser, page, picture):
    browser.open(page, WIDTH_PIXELS)
    bottom = browser.ask(f"""(() => {{
        const whole = document.documentElement.scrollHeight;
        if (whole <= {HIGHEST_PIXELS}) return whole;
        return Math.max(...[...document.querySelectorAll('section, header')].map(
            section => Math.ceil(section.getBoundingClientRect().bottom)).filter(
            bottom => bottom <= {HIGHEST_PIXELS})) + 24;
    }})()""")
    taken = browser.call("Page.captureScreenshot", format="png", captureBeyondViewport=True,
                         clip={"x": 0, "y": 0, "width": WIDTH_PIXELS, "height": bottom, "scale": 1})
    picture.write_bytes(base64.b64decode(taken["data"]))
    subprocess.run(["pngquant", "--force", "--strip", "--speed", "1", "--ext", ".png", "64", picture],
                   check=True)
    subprocess.run(["optipng", "-quiet", "-o5", "-strip", "all", picture], check=True)


def main():
    from browser import Browser
    demo.PICTURES.mkdir(exist_ok=True)
    with demo.Home(sys.argv[1]) as home:
        scenes, pages = record(home), home.pages()
        text = recorded_text(scenes)
        SHOWN.write_text(text + page_text(pages))
        write_recording(scenes, text)
        browser = Browser()
        try:
            for name, page in pages.items():
                take_picture(browser, page, demo.PICTURES / f"{name}.png")
        finally:
            browser.close()


if __name__ == "__main__":
    main()
