"""Help, and command lines that are wrong."""
import json
import re
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent))
import program  # noqa: E402


class UsageTest(program.ProgramTest):
    def setUp(self):
        super().setUp()
        self.configure()

    def complaint(self, *arguments):
        """The sentence that a wrong command line gets, and the help that it names."""
        run = self.run_program(*arguments)
        self.assertEqual((run.returncode, run.stdout), (2, b""))
        sentence, hint = run.stderr.decode().splitlines()
        self.assertTrue(sentence.startswith("quillon: "), sentence)
        return sentence[9:], re.fullmatch(r"Run (.*) --help for more information\.", hint)[1]

    def test_help_is_what_the_option_prints(self):
        for words in ([], ["create"], ["disc"], ["disc", "insert"], ["config", "set"], ["help"]):
            with self.subTest(words):
                asked = self.run_program("help", *words)
                self.assertEqual(asked.returncode, 0)
                self.assertIn(" ".join(["Usage: quillon", *words]).encode(), asked.stdout)
                self.assertEqual(asked.stdout, self.run_program(*words, "--help").stdout)
        self.assertEqual(self.run_program("-V").stdout, self.run_program("--version").stdout)

    def test_a_wrong_line_is_told_with_what_may_be_meant(self):
        cases = [  # what is typed, the sentence, the help that is named
            (["publsh"], 'there is no command "publsh"; did you mean publish?', "quillon"),
            (["Write", "--root", "x"], 'there is no command "Write"; did you mean write?', "quillon"),
            (["help", "publsh"], 'there is no command "publsh"; did you mean publish?', "quillon"),
            (["disc", "lst"], 'there is no command "disc lst"; did you mean list?', "quillon"),
            (["config", "--json=1", "xyz"], 'there is no command "config xyz".', "quillon"),
            (["create"], "PATH is required.", "quillon create"),
            (["create", "--repalce"], "quillon create has no option --repalce; did you mean "
                                      "--replace?", "quillon create"),
            (["disc", "list", "--recrder=x"], "quillon disc list has no option --recrder.",
             "quillon disc list"),
            (["wipe", "more"], "The following argument was not expected: more.", "quillon wipe"),
            (["write", "--root="], "--root= has no value behind it.", "quillon"),
        ]
        for arguments, sentence, command in cases:
            with self.subTest(arguments):
                self.assertEqual(self.complaint(*arguments), (sentence, command))
        run = self.run_program("create", "--json", "--repalce")
        self.assertEqual(run.returncode, 2)
        self.assertEqual(json.loads(run.stdout)["error"] + "\n",
                         run.stderr.decode().removeprefix("quillon: ").split("Run")[0])


if __name__ == "__main__":
    program.QUILLON = sys.argv.pop(1)
    unittest.main()
