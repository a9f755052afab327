"""Help, command lines that are wrong, and what shells complete."""
import json
import os
import pty
import re
import select
import shutil
import subprocess
import sys
import time
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent))
import program  # noqa: E402

COMMANDS = ["create", "write", "publish", "disc", "profiles", "list", "header", "verify", "wipe",
            "config", "register", "unregister", "completion", "help"]
# What bash offers is read from the function that completes; readline's own part is named.
BASH = """
compopt() { echo "readline $2"; }
source "$1"
shift
COMP_WORDS=("$@")
COMP_CWORD=$(($# - 1))
_quillon
for word in "${COMPREPLY[@]}"; do echo "$word"; done
"""


class Terminal:
    """A shell on a terminal of its own, for what it completes on Tab."""

    def __init__(self, arguments, environment, directory):
        self.process, self.fd = pty.fork()
        if self.process == 0:
            os.chdir(directory)
            os.execvpe(arguments[0], arguments, {**environment, "TERM": "dumb", "PS1": "> "})
        self.seen = ""

    def answers(self, text, pattern):
        """Whether that appears when this is typed; again, as a busy shell may lose it."""
        for _ in range(6):
            self.seen = ""
            os.write(self.fd, text.encode())
            deadline = time.monotonic() + 5
            while time.monotonic() < deadline:
                if select.select([self.fd], [], [], 0.1)[0]:
                    self.seen += os.read(self.fd, 65536).decode(errors="replace")
                if re.search(pattern, self.seen):
                    return True
        return False

    def close(self):
        os.close(self.fd)
        os.waitpid(self.process, 0)


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

    def script(self, shell):
        run = self.run_program("completion", shell)
        self.assertEqual((run.returncode, run.stderr), (0, b""))
        path = self.dir / f"completion.{shell}"
        path.write_bytes(run.stdout)
        return path

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
            (["disc", "lst"], 'there is no command "disc lst"; did you mean list?', "quillon disc"),
            (["config", "-x", "xyz"], 'there is no command "config xyz".', "quillon config"),
            (["create"], "PATH is required.", "quillon create"),
            (["create", "--repalce"], "quillon create has no option --repalce; did you mean "
                                      "--replace?", "quillon create"),
            (["disc", "list", "--recrder=x"], "quillon disc list has no option --recrder.",
             "quillon disc list"),
            (["wipe", "more"], "The following argument was not expected: more.", "quillon wipe"),
            (["publish", "--to", "x.ISO", "y"], "--to x.ISO would be a directory; --iso writes such "
             "a file, and --to x.ISO/ the directory.", "quillon publish"),
            (["write", "--root="], "--root= has no value behind it.", "quillon write"),
            (["disc"], "quillon disc needs a command: list, status, insert, eject, erase.",
             "quillon disc"),
            # As of a variable that was never set: not the working directory.
            (["publish", "--to", "", "y"], "--to: no directory is named.", "quillon publish"),
            (["write", "--iso", ""], "--iso: no file is named.", "quillon write"),
            (["create", "--root", "", "y"], "--root: no directory is named.", "quillon create"),
            (["create", "y", ""], "PATH: no file is named.", "quillon create"),
            (["header", ""], "FILE: no file is named.", "quillon header"),
            (["verify", ""], "PATH: no file is named.", "quillon verify"),
            (["disc", "insert", "--image", ""], "--image: no file is named.", "quillon disc insert"),
        ]
        for arguments, sentence, command in cases:
            with self.subTest(arguments):
                self.assertEqual(self.complaint(*arguments), (sentence, command))
        run = self.run_program("create", "--json", "--repalce")
        self.assertEqual(run.returncode, 2)
        self.assertEqual(json.loads(run.stdout)["error"] + "\n",
                         run.stderr.decode().removeprefix("quillon: ").split("Run")[0])

    def test_a_failed_registration_names_the_library(self):
        result = self.command("register", "nothing.so", status=1)
        self.assertEqual(result["library"], str(self.dir / "work/nothing.so"))

    def test_bash_completes(self):
        profiles = [one["name"] for one in self.command("profiles")["profiles"]]
        settings = [one["name"] for one in self.command("config")["values"]
                    if one["type"] != "environment"]
        script = self.script("bash")
        cases = [  # the words so far, what is offered
            (["pub"], ["publish"]), ([""], COMMANDS), (["disc", "e"], ["eject", "erase"]),
            (["help", "di"], ["disc"]), (["disc", "insert", "--med"], ["--media"]),
            (["disc", "insert", "--media", "cd-"], ["cd-r", "cd-rom", "cd-rw"]),
            (["disc", "insert", "--media", "=", "cd-"], ["cd-r", "cd-rom", "cd-rw"]),
            (["publish", "--span-to", "x", "--profile", "STD-GEN-USB"],
             [name for name in profiles if name.startswith("STD-GEN-USB")]),
            (["create", "--profile", "au"], ["auto"]), (["publish", "--to", "x", "--profile", ""],
                                                        [*profiles, "auto"]),
            (["config", "set", ""], settings), (["completion", ""], ["bash", "zsh", "fish"]),
            (["create", "--root", "x"], ["readline dirnames"]),
            (["create", "disc", ""], ["readline default"]), (["create", "--log", ""],
                                                             ["readline default"]),
            (["create", "--", "--ro"], ["readline default"]), (["create", "--patient-key", "x"], []),
            (["wipe", ""], ["--help", "-h", "--root", "--force", "--json"]),
        ]
        for words, offered in cases:
            with self.subTest(words):
                run = subprocess.run(["bash", "--norc", "-c", BASH, "bash", script, "quillon", *words],
                                     stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=True,
                                     env=self.environment())
                self.assertEqual(sorted(run.stdout.decode().split("\n")[:-1]),
                                 sorted(offered))

    def test_every_option_of_every_command_is_completed(self):
        scripts = {shell: self.script(shell).read_text() for shell in ("bash", "zsh", "fish")}
        for words in [[name] for name in COMMANDS] + [["disc", "insert"], ["config", "get"]]:
            shown = self.run_program(*words, "--help").stdout.decode()
            for option in re.findall(r"^  (?:-\w,)?--([\w-]+)", shown, re.MULTILINE):
                for shell, text in scripts.items():
                    name = f"-l {option} " if shell == "fish" else f"--{option}"
                    self.assertIn(name, text, (words, shell))

    def test_shells_complete_on_tab(self):
        (self.dir / "work/a file.dcm").touch()
        (self.dir / "work/a dir").mkdir()
        starts = {
            "bash": (["bash", "--norc", "--noprofile", "-i"], "source {}"),
            "zsh": (["zsh", "-f", "-i"], "autoload -U compinit; compinit -u; source {}"),
            "fish": (["fish", "--no-config", "-i"], "source {}"),
        }
        cases = [  # what is typed, how the line ends then
            ("quillon publi", "publish"), ("quillon disc insert --media dvd+rw-", "dvd+rw-dl"),
            ("quillon create --root a", "a\\ dir/"), ("quillon create --log a\\ f", "a\\ file.dcm"),
            ("quillon header --recu", "--recursive"), ("quillon config unset AuditSys", "AuditSyslog"),
            ("quillon header --stylesheet ht", "html"),
        ]
        for shell, (arguments, line) in starts.items():
            if shutil.which(shell) is None:
                print(f"skipped: {shell} is not installed")
                continue
            terminal = Terminal(arguments, self.environment(), self.dir / "work")
            self.addCleanup(terminal.close)
            self.assertTrue(terminal.answers(line.format(self.script(shell)) + "; echo re''ady\n",
                                             "\\bready"), terminal.seen)
            for typed, end in cases:
                with self.subTest(shell=shell, typed=typed):
                    self.assertTrue(terminal.answers("\x15" + typed + "\t", re.escape(end)),
                                    terminal.seen)


if __name__ == "__main__":
    program.QUILLON = sys.argv.pop(1)
    unittest.main()
