"""Surroundings in which a host runs the server: this system, or Windows' system calls under Wine."""
import os
import re
import shutil
import subprocess
import tempfile
from dataclasses import dataclass
from pathlib import Path

CLASS = "{CEBD10F1-26E1-4807-A72F-F5C5AC05BF61}"
APP = "{60A00BE0-73D4-4DDC-BBDA-AB0DF9FCD3A6}"
LIBRARY = "{CBD24DDB-39FB-4A5A-9EB9-4B6FD4A70DF1}"
PROGID = "QuillonMediaRW.QuillonMediaRW"
INTERFACE = "{801EDBE1-848C-4135-999E-5061EB1866F2}"
NO_RECORDERS = ("Windows Registry Editor Version 5.00\n\n"
                "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Tarn Imaging\\Quillon\\DiscMastering]\n"
                "\"Service\"=\"none\"\n")
# What differs from day to day.
CREATION_DATE = re.compile(r"(Fileset Creation Date:  )\d\d [A-Z][a-z]{2} \d{4}")


@dataclass
class Answer:
    """What an operation answered, and what the object says of it."""
    result: str
    value: str
    sentence: str

    def succeeded(self):
        return self.result == "0x00000000" and self.value != "flag 0"


class Session:
    """A host of this system that is told what to do operation by operation."""

    def __init__(self, client, environment, directory):
        self.process = subprocess.Popen([client, "/dev/stdin"], env=environment, cwd=directory,
                                        stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        self.new_object()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.kill()

    def line(self):
        line = self.process.stdout.readline()
        if not line:
            raise AssertionError(f"com_client ended: {self.process.wait(60)}")
        return line.rstrip("\n")

    def tell(self, command):
        self.process.stdin.write(command + "\n")
        self.process.stdin.flush()
        return self.line().rpartition(" -> ")[2]

    def new_object(self):
        created = self.tell(f'create "{PROGID}"')
        if created != "0x00000000":
            raise AssertionError(f"the server cannot be created: {created}")

    def release(self):
        self.tell("release")

    def ask(self, command):
        result, _, value = self.tell(command).partition(" ")
        text = self.line().partition(", ")[2]
        sentence = "" if text == "null" else text[1:-1].replace("\\n", "\n")
        return Answer(result, value, sentence)

    def put(self, **values):
        """Texts and flags of the object; its paths answer no refusal, so they are read again."""
        for name, value in values.items():
            is_flag = isinstance(value, bool)
            self.ask(f"put {name} {str(value).lower()}" if is_flag else f'put {name} "{value}"')
            got = self.ask(f"get {name}").value
            wanted = f"flag {-int(value)}" if is_flag else f'"{value}"'
            if got != wanted:
                raise AssertionError(f"{name} is {got}, not {wanted}")

    def call(self, name, *texts):
        return self.ask(" ".join([f"call {name}", *(f'"{text}"' for text in texts)]))

    def kill(self):
        if not self.process.stdin.closed:
            self.process.kill()
            self.process.communicate()


class Host:
    """A directory of its own with a registry of its own; goes away at the end of a with."""

    def __init__(self, above=None):
        self.directory = Path(tempfile.mkdtemp(prefix="quillon-com-", dir=above))

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()
        shutil.rmtree(self.directory, ignore_errors=True)

    def close(self):
        pass

    def script(self, text, **variables):
        """What com_client prints for a script."""
        script = self.directory / "script.txt"
        script.write_text(text)
        all_variables = {"DIR": self.name(self.directory), "MODULE": self.name(self.module),
                         **variables}
        given = [f"{name}={value}" for name, value in all_variables.items()]
        result = self.run(self.client, self.name(script), *given)
        if result.returncode != 0:
            raise AssertionError(f"com_client: {result.returncode}\n{result.stdout}{result.stderr}")
        return CREATION_DATE.sub(r"\1TODAY", result.stdout.replace("\r", ""))


class LinuxHost(Host):
    def __init__(self, build):
        super().__init__()
        self.quillon = build / "bin/quillon"
        self.client = build / "bin/com_client"
        self.example = build / "bin/host_example"
        self.module = build / "lib/quillon/libQuillonMediaRW.so"
        self.registry = self.directory / "registry.reg"
        self.registry.write_text(NO_RECORDERS)
        self.environment = dict(os.environ, QUILLON_REGISTRY=str(self.registry),
                                QUILLON_DRIVES=str(self.directory / "drives"), TZ="UTC")

    @staticmethod
    def name(path):
        return str(path)

    def run(self, program, *arguments):
        return subprocess.run([program, *arguments], cwd=self.directory, env=self.environment,
                              capture_output=True, text=True, timeout=120)

    def register(self):
        return self.run(self.quillon, "register")

    def unregister(self):
        return self.run(self.quillon, "unregister")


class WineHost(Host):
    """Wine of this system, or of a tree of its own that root is changed to."""

    def __init__(self, build, tree=None):
        self.tree = Path(tree) if tree else None
        super().__init__(self.tree / "srv" if tree else None)
        for name in ("QuillonMediaRW.dll", "com_client.exe", "host_example.exe"):
            shutil.copy(build / "bin" / name, self.directory)
        self.module = self.directory / "QuillonMediaRW.dll"
        self.client = "com_client.exe"
        self.example = "host_example.exe"
        self.prefix = self.directory / "prefix"

    def inside(self, path):
        return Path("/") / path.relative_to(self.tree) if self.tree else path

    def name(self, path):
        return "Z:" + str(self.inside(path)).replace("/", "\\")

    def shell(self, *command):
        environment = {"HOME": "/root" if self.tree else os.environ.get("HOME", "/root"),
                       "PATH": "/usr/sbin:/usr/bin:/sbin:/bin", "LANG": "C.UTF-8", "TZ": "UTC",
                       "WINEDEBUG": "-all", "WINEPREFIX": str(self.inside(self.prefix)),
                       "WINEDLLOVERRIDES": "mscoree,mshtml="}
        begin = ["sh", "-c", 'cd "$0" && exec "$@"', str(self.inside(self.directory)), *command]
        if self.tree:
            # The mount ends with the command, so that nothing can be removed through it later.
            begin = ["unshare", "--mount", "chroot", str(self.tree), "sh", "-c",
                     'mount -t proc proc /proc && exec "$0" "$@"', *begin]
        return subprocess.run(begin, env=environment, capture_output=True, text=True, timeout=300)

    def run(self, program, *arguments):
        return self.shell("wine", program, *arguments)

    def register(self):
        return self.run("regsvr32", "/s", "QuillonMediaRW.dll")

    def unregister(self):
        return self.run("regsvr32", "/s", "/u", "QuillonMediaRW.dll")

    def close(self):
        self.shell("wineserver", "-k")
