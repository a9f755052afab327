"""Makes the seed corpus of the fuzz targets from the sample objects.

  python3 fuzz/make_corpus.py BUILD_DIRECTORY

Findings are kept beside the seeds under names that say what they were: this script leaves them.
"""
import os
import subprocess
import sys
import tempfile

HERE = os.path.join(os.path.dirname(os.path.abspath(__file__)), "corpus")
BIN = os.path.join(sys.argv[1], "bin")


def put(target, name, data):
    os.makedirs(os.path.join(HERE, target), exist_ok=True)
    with open(os.path.join(HERE, target, name), "wb") as f:
        f.write(data)


def read(path):
    with open(path, "rb") as f:
        return f.read()


def data_set(file):
    """What follows the meta group: 132 bytes, the 12 bytes of the group length, its value."""
    return file[144 + int.from_bytes(file[140:144], "little"):]


with tempfile.TemporaryDirectory() as folder:
    objects = os.path.join(folder, "objects")
    subprocess.run([os.path.join(BIN, "make_sample_objects"), objects], check=True,
                   stdout=subprocess.DEVNULL)
    for number, kind in enumerate(("CT1", "MR", "SR", "PR", "KO")):
        file = read(os.path.join(objects, "DOE", kind, "IM00001"))
        put("whole_file", "sample-" + kind, file)
        put("header_xml", "sample-" + kind, file)
        put("parse_fields", "sample-" + kind, file)
        syntax = 0 if b"1.2.840.10008.1.2\0" in file[:400] else 1
        put("data_set", "sample-" + kind, bytes([syntax]) + data_set(file))
    put("data_set", "big-endian", bytes([2]) + bytes.fromhex("00100010504e0004 444f4500".replace(" ", "")))
    put("data_set", "undefined-lengths", bytes([1]) + bytes.fromhex(
        "08004011 53510000 ffffffff feff00e0 ffffffff 08005511 55490002 312e feff0de0 00000000"
        "feffdde0 00000000".replace(" ", "")))
    for name, options in (("flat", []), ("hierarchy", ["--hierarchy"])):
        root = os.path.join(folder, name)
        subprocess.run([os.path.join(BIN, "quillon"), "create", "--quiet", "--root", root, *options,
                        objects], check=True, stdout=subprocess.DEVNULL)
        put("dicomdir", name, read(os.path.join(root, "DICOMDIR")))

for path in ("00100010,PN", "0040a043,SQ,1:00080104,LO", "00081115,SQ,1:0020000e,UI",
             "0040a730,SQ,1:0040a043,SQ,1:00080104,LO", "00020010,UI"):
    put("tag_path", path.replace(",", "-").replace(":", "-"), path.encode() + b"\0" + read(
        os.path.join(HERE, "data_set", "sample-SR"))[1:])
EXPORT = "\n".join((
    "Windows Registry Editor Version 5.00", "", "; a comment", r"[HKEY_LOCAL_MACHINE\SOFTWARE\Company]",
    '@="default value"', r'"Name"="text with \\ and \" é"', '"Number"=dword:0000000a',
    '"Other"=hex(7):41,00,00,00,\\', "  00,00", '"Gone"=-', "", r"[-HKEY_LOCAL_MACHINE\SOFTWARE\Gone]",
    ""))
put("registry", "utf-8", EXPORT.encode())
put("registry", "utf-16", b"\xff\xfe" + EXPORT.replace("\n", "\r\n").encode("utf-16-le"))
