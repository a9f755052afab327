"""What version a tree says it has: by its tags, by the heading of its changelog, with files changed and
without git. Debian, whose tools upgrade by it, must take it and sort it."""
import os
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

PRINT = Path(__file__).resolve().parents[2] / "cmake/print_version.cmake"
NOT_RELEASED, RELEASED = "## 0.2.0 (not released)", "## 0.2.0 (2026-11-27)"
COMMIT = "g[0-9a-f]{8,}"


class Tree(tempfile.TemporaryDirectory):
    """A checkout with nothing but a changelog, of its own configuration."""

    def __init__(self, heading):
        super().__init__(prefix="quillon-version-")
        self.dir = Path(self.name)
        self.changelog = self.dir / "CHANGELOG.md"
        self.changelog.write_text(f"# Changelog\n\n{heading}\n\n- More.\n\n## 0.1.0 (2026-01-01)\n")
        self.git("init", "-q")
        self.commit()

    def git(self, *arguments):
        environment = {**os.environ, "GIT_CONFIG_GLOBAL": "/dev/null", "GIT_CONFIG_NOSYSTEM": "1"}
        subprocess.run(["git", "-c", "user.name=Test", "-c", "user.email=test@example.invalid", *arguments],
                       cwd=self.dir, env=environment, check=True, capture_output=True)

    def commit(self):
        self.git("add", "-A")
        self.git("commit", "-q", "--allow-empty", "-m", "Change something")

    def tag(self, name):
        self.git("tag", "-a", "-m", name, name)

    def change(self):
        with self.changelog.open("a") as file:
            file.write("more\n")

    def version(self, *options):
        return subprocess.run(["cmake", *options, "-P", PRINT], cwd=self.dir, capture_output=True, text=True)


def without_git(tree):
    shutil.rmtree(tree.dir / ".git")


def inside_another_checkout(tree):
    tree.tag("v9.9.9")
    (tree.dir / "inner").mkdir()
    shutil.copy(tree.changelog, tree.dir / "inner")
    tree.dir = tree.dir / "inner"


class Version(unittest.TestCase):
    def test_what_a_tree_says(self):
        cases = [  # first heading, what is done then, the version
            (NOT_RELEASED, [], rf"0\.2\.0~1\.{COMMIT}"),
            (NOT_RELEASED, [Tree.commit], rf"0\.2\.0~2\.{COMMIT}"),
            (NOT_RELEASED, [Tree.change], rf"0\.2\.0~1\.{COMMIT}\.dirty"),
            (NOT_RELEASED, [without_git], r"0\.2\.0~dev"),
            (NOT_RELEASED, [inside_another_checkout], r"0\.2\.0~dev"),
            (RELEASED, [], r"0\.2\.0"),
            (RELEASED, [without_git], r"0\.2\.0"),
            (RELEASED, [Tree.change], r"0\.2\.0\+dirty"),
            (NOT_RELEASED, ["v0.1.0"], r"0\.1\.0"),
            (NOT_RELEASED, ["v0.1.0", Tree.change], r"0\.1\.0\+dirty"),
            (NOT_RELEASED, ["v0.1.0", Tree.commit, Tree.commit], rf"0\.1\.0\+2\.{COMMIT}"),
            (NOT_RELEASED, ["v0.1.0", Tree.commit, Tree.change], rf"0\.1\.0\+1\.{COMMIT}\.dirty"),
            (NOT_RELEASED, ["v0.2.0-rc1"], r"0\.2\.0~rc1"),
            (NOT_RELEASED, ["v0.2.0-rc1", Tree.change], r"0\.2\.0~rc1\.dirty"),
            (NOT_RELEASED, ["v0.2.0-rc1", Tree.commit], rf"0\.2\.0~rc1\+1\.{COMMIT}"),
            (NOT_RELEASED, ["other-tag"], rf"0\.2\.0~1\.{COMMIT}"),
        ]
        for heading, steps, expected in cases:
            tree = Tree(heading)
            with self.subTest(steps=steps, heading=heading), tree:
                for step in steps:
                    tree.tag(step) if isinstance(step, str) else step(tree)
                run = tree.version()
                self.assertEqual(run.returncode, 0, run.stderr)
                self.assertRegex(run.stdout, rf"^{expected}\n$")
                version = run.stdout.strip()
                subprocess.run(["dpkg", "--validate-version", version], check=True)
                if "~" in version:
                    subprocess.run(["dpkg", "--compare-versions", version, "lt", "0.2.0"], check=True)

    def test_what_is_no_version_is_refused(self):
        cases = [  # first heading, tag, options, what is said
            (NOT_RELEASED, "v0.2.0-final", [], 'tag in "v0.2.0-final"'),
            (NOT_RELEASED, "v0.2", [], 'tag in "v0.2"'),
            ("## Some day", "other", ["-DQUILLON_VERSION=next"], '"next" is no version'),
        ]
        for heading, tag, options, said in cases:
            tree = Tree(heading)
            with self.subTest(tag), tree:
                tree.tag(tag)
                run = tree.version(*options)
                self.assertNotEqual(run.returncode, 0)
                self.assertIn(said, " ".join(run.stderr.split()))


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], "-v", *sys.argv[1:]])
