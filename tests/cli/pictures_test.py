"""The pictures of the documentation show what the program prints today, and each has its place.

    pictures_test.py QUILLON
"""
import re
import sys
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "scripts/pictures"))
import demo  # noqa: E402
import pictures  # noqa: E402

REMEDY = "The pictures are stale: run scripts/pictures.sh, and look at what it has made."
QUILLON = None


class Pictures(unittest.TestCase):
    maxDiff = None

    def test_they_show_what_the_program_prints(self):
        with demo.Home(QUILLON) as home:
            recorded = pictures.recorded_text(pictures.record(home))
            self.assertMultiLineEqual(pictures.SHOWN.read_text(),
                                      recorded + pictures.page_text(home.pages()), REMEDY)
        self.assertTrue(pictures.RECORDING.read_text().endswith(pictures.mark_of(recorded)), REMEDY)

    def test_each_stands_in_the_documentation_with_words_for_those_who_do_not_see_it(self):
        embedded, named = set(), ""
        for page in [ROOT / "README.md", *(ROOT / "docs").glob("*.md")]:
            text = page.read_text()
            named += text
            for words, target in re.findall(r"!\[([^]]*)\]\(([^)]+)\)", text):
                with self.subTest(page=page.name, picture=target):
                    self.assertGreater(len(words), 20)
                    self.assertTrue((page.parent / target).is_file())
                embedded.add((page.parent / target).resolve())
        for file in demo.PICTURES.iterdir():
            has_place = f"docs/pictures/{file.name}" in named if file.suffix == ".txt" else file in embedded
            self.assertTrue(has_place, f"no page shows {file.name}")


if __name__ == "__main__":
    QUILLON = sys.argv[1]
    unittest.main(argv=[sys.argv[0], "-v", *sys.argv[2:]])
