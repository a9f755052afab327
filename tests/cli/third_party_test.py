"""Which libraries of others a command loads, against docs/third-party.md."""
import os
import re
import subprocess
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent))
import program  # noqa: E402
from program import dicom_file  # noqa: E402

PAGE = Path(__file__).resolve().parents[2] / "docs/third-party.md"
SYSTEM = {"libc", "libm", "libpthread", "ld-linux-x86-64", "libstdc++", "libgcc_s"}
XML = {"libxml2", "libxslt", "libexslt"}
HAS_DRIVES = False  # whether the build has libburn; set by main


class ThirdParty(program.ProgramTest):
    def loaded(self, *arguments, **more):
        run = subprocess.run([program.QUILLON, *map(str, arguments)], capture_output=True, text=True,
                             env={**self.environment(), "LD_DEBUG": "files", **more},
                             cwd=self.dir / "work")
        self.assertNotEqual(run.returncode, 2, arguments)
        return {Path(path).name.partition(".so")[0]
                for path in re.findall(r"calling init: (\S+)", run.stderr)}

    def test_commands_load_what_they_need(self):
        self.configure()
        file, zip_file = self.write("one", dicom_file()), self.dir / "one.zip"
        named = set(re.findall(r"\blib(?:burn|crypto|archive|xml2|xslt|exslt|curl)\b",
                               "\n".join(line for line in PAGE.read_text().splitlines()
                                         if line.startswith("|"))))
        self.assertEqual(len(named), 7)
        self.assertEqual(self.loaded("header", file) - SYSTEM - {"linux-vdso"}, set())
        for arguments, more in (
                (("header", file), set()),
                (("create", "--root", self.dir / "set", file), set()),
                (("list", self.dir / "set"), set()),
                (("write", "--keep", "--root", self.dir / "set", "--no-sums", "--to", self.dir / "copy"),
                 set()),
                (("publish", "--no-sums", "--to", self.dir / "out", file), set()),
                (("publish", "--to", self.dir / "out2", file), {"libcrypto"}),
                (("publish", "--zip", zip_file, file), {"libcrypto", "libarchive", "libxml2"}),
                (("list", zip_file), {"libarchive", "libxml2"}),
                (("header", "--stylesheet", "html", file), XML),
                (("header", "--stylesheet", "http://127.0.0.1:9/x", file),
                 XML | {"libcurl", "libcrypto"})):
            with self.subTest(arguments):
                self.assertEqual(self.loaded(*arguments) & named, more)

    def test_the_version_tells_which_libraries_are_here(self):
        first, *lines = self.run_program("--version").stdout.decode().splitlines()
        self.assertRegex(first, r"^quillon \d+\.\d+\.\d+")
        told = dict(line.split(maxsplit=1) for line in lines)
        modules = {"CLI11": "CLI11", "nlohmann-json": "nlohmann_json", "libarchive": "libarchive",
                   "libburn": "libburn-1", "libcrypto": "libcrypto", "libcurl": "libcurl",
                   "libxml2": "libxml-2.0", "libxslt": "libxslt"}
        self.assertEqual(told.keys(), modules.keys())
        for name, module in modules.items():
            with self.subTest(name):
                if name == "libburn" and not HAS_DRIVES:
                    self.assertEqual(told[name], "not installed (package quillon-optical)")
                    continue
                self.assertEqual(told[name], subprocess.run(
                    ["pkg-config", "--modversion", module], check=True, capture_output=True,
                    text=True).stdout.strip())

    def test_drives_alone_need_libburn(self):
        recorders = {"QUILLON_RECORDERS": str(self.dir / "recorders")}
        library = {"libburn"} if HAS_DRIVES else set()
        for service, drives, more, needed in (("auto", "", recorders, set()), ("none", "", {}, set()),
                                              ("drives", "stdio:" + str(self.dir / "disc"), {}, library)):
            with self.subTest(service):
                self.registry.write_text("Windows Registry Editor Version 5.00\n\n"
                                         f"[{program.QUILLON_KEY}\\DiscMastering]\n"
                                         f'"Service"="{service}"\n"Drives"="{drives}"\n')
                self.assertEqual(self.loaded("disc", "list", **more) & {"libburn"}, needed)


if __name__ == "__main__":
    program.QUILLON = os.path.abspath(sys.argv[1])
    HAS_DRIVES = any(Path(program.QUILLON).parents[1].glob("lib*/**/libquillon_optical.so"))
    unittest.main(argv=[sys.argv[0], "-v", *sys.argv[2:]])
