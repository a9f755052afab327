"""Makes the seed corpus of the fuzz targets from the sample objects.

  python3 fuzz/make_corpus.py BUILD_DIRECTORY

Findings are kept beside the seeds under names that say what they were: this script leaves them.
"""
import os
import shutil
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
        put("verify", name, read(os.path.join(root, "DICOMDIR")))

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


def sample(kind):
    return read(os.path.join(HERE, "whole_file", "sample-" + kind))


def syntax_of(file):
    """As the targets number them: implicit, explicit little endian."""
    return 0 if b"1.2.840.10008.1.2\0" in file[:400] else 1


for term, form, value in (
        ("", 0, b"DOE^JOHN\\M\xfcller^J\xf6rg"),
        ("ISO_IR 100", 0, b"M\xfcller^J\xf6rg "),
        ("ISO_IR 13", 0, b"\xd4\xcf\xc0\xde^\xc0\xdb\xb3=\x1b$B;3ED\x1b(J^\x1b$BB@O:\x1b(J"),
        ("\\ISO 2022 IR 87", 0, b"Yamada^Tarou=\x1b$B;3ED\x1b(B^\x1b$BB@O:\x1b(B"),
        ("\\ISO 2022 IR 149", 0, b"Hong=\x1b$)C\xfb\xf3^\x1b$)C\xd1\xce\xd4\xd7"),
        ("\\ISO 2022 IR 58", 2, b"\x1b$)A\xc5\xcb\xc1\xbd\r\n\x1b$)A\xb5\xc4"),
        ("ISO 2022 IR 144\\ISO 2022 IR 126", 1, b"\xbb\xee\\\x1b-F\xc4\xe9\\\x1b-T\xa1"),
        ("ISO_IR 192", 2, "Ärzte\\ 太郎 𝄞\n".encode()),
        ("GB18030", 1, "王^小东\\".encode("gb18030") + b"\x81\x30\x81\x30"),
        ("GBK", 1, "王\\东".encode("gbk"))):
    name = "".join(c if c.isalnum() else "-" for c in term) or "none"
    put("character_set", name, bytes([form]) + term.encode() + b"\0" + value)

FILE, DIRECTORY, UP = b"\x04", b"\x02", b"\x03"
put("image", "all", b"\x07QUILLON DISC\0" + FILE + b"DICOMDIR\0" + DIRECTORY + b"DICOM\0" + b"\x08" + b"I1\0"
    + b"\x10I2\0" + UP + b"\x14" + b"large\0" + FILE + b"read.me.txt\0" + FILE + b"Read me.txt\0")
put("image", "strict", b"\x0f\0" + b"".join(DIRECTORY + b"d%d\0" % i for i in range(8)) + FILE + b"x\0")
put("image", "alike", b"\x07" + "Ä𝄞".encode() + b"\0" + b"".join(
    FILE + name + b"\0" for name in (b"long name 1.html", b"long name 2.html", "Ä".encode(), "ä".encode(), b"\xff",
                                     b".profile", b"x.", b"a;b", b"n" * 70 + b".jpeg", b"n" * 71 + b".jpeg")))

RECORDER = b"vendor = Quillon\nproduct = Virtual Recorder\nmedia = cd-r cd-rw dvd+rw\n\0"
put("virtual_disc", "blank", b"\x01" + RECORDER + b"media = cd-rw\nstate = blank\ncapacity = 360000\nused = 0\n"
    b"protected = no\n\0\0\0image")
put("virtual_disc", "written", b"\x29" + RECORDER + b"media = dvd+rw\nstate = appendable\ncapacity = 2295104\n"
    b"used = 1\nprotected = no\n\0\0\0image")
put("virtual_disc", "faults", b"\x03" + RECORDER + b"media = cd-rw\nstate = blank\ncapacity = 360000\nused = 0\n\0"
    b"ready-after 1\nwrite-fails-at 2 0xC0AA0207\nerase-pulled-at 0\nanswer Write 0x80004005 once\n\0\0")
put("virtual_disc", "beside", b"\x1c" + RECORDER + b"\0\0media = cd-r\nstate = finalised\ncapacity = 360000\n"
    b"used = 17\nprotected = yes\nleaving as = X.iso\n\0\x01CD001\1\0" + b" " * 32 + b"QUILLON" + b" " * 25)

for kind, record_type in (("CT1", 10), ("SR", 29), ("PR", 17), ("KO", 12)):
    file = sample(kind)
    put("directory_record", "sample-" + kind,
        bytes([record_type, syntax_of(file)]) + b"\0" + data_set(file))
    length = len(file).to_bytes(2, "little")
    for host, choice in (("host", 0x40), ("program", 0x03), ("profiles", 0x83)):
        put("file_set", "%s-%s" % (host, kind), bytes([choice]) + b"\0\0" + length + file)
    put("stylesheet", "sample-" + kind, bytes([4 * record_type % 32]) + file)
put("directory_record", "invented", bytes([29, 0x81]) + b"ISO_IR 192\0")
put("stylesheet", "xml", b"\x05<a b='&lt;'>1<c>&#233;</c><!--x--><?p q?><![CDATA[<]]></a>")
put("stylesheet", "entities", b"\x09<!DOCTYPE a [<!ENTITY e 'x'><!ENTITY f '&e;&e;'>]><a>&f;</a>")

KEY = (b"Windows Registry Editor Version 5.00\n\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Tarn Imaging\\Quillon\\"
       b"Workstation\\MediaCreation]\n")
put("settings", "source", KEY + b'"OtherContentSourceDir"="C:\\\\OTHER"\n\0DICOMOBJ\\A/B')
put("settings", "number", KEY + b'"OtherContentSourceDir"=dword:00000001\n"CurrentPractice"=dword:00000001\n\0..\\x')
put("settings", "network", KEY + b'"OtherContentSourceDir"=hex(1):5c,00,5c,00\n\0\\\\server\\share\\x')
put("root_files", "mark", b"\x0fUnfinished file set\nmoved\nQLN00001\tC:\\IN\\1\nDICOMOBJ\\QLN00002\t/in/2\n\0"
    b"/in/a\tb\nc\0" + data_set(sample("CT1")))
put("root_files", "copied", b"\x13Unfinished file set\ncopied\nUNFINISHED.TXT\t\n\0x\0" + bytes.fromhex(
    "10001000504e0400 4a5e4f20 10003000444108003139393931333331".replace(" ", "")))
put("other_content", "tree", b"\x01\x10viewer.exe\0\x02docs\0\x14read me.txt\0\x00empty\0\x03\x05loop\0")
put("other_content", "names", b"\x01\x10a\\b\0\x10c:d\0\x10\xff\xfe\0\x10caf\xc3\xa9\0\x02x.\0\x10 y\0")

BSTR, BOOL, OUT_BOOL, OMITTED = b"\0\x08text\0", b"\0\x0a" + b"\xff" * 8, b"\x04\x0a" + b"\0" * 8, b"\0\x09" + b"\0" * 8
put("late_binding", "names", b"\0\x03AddFile\0fileName\0pVal\0")
put("late_binding", "calls", b"\1" + b"".join(
    b"\x04" + bytes([operation]) + bytes([len(values)]) + b"".join(values) + b"\0"
    for operation, values in ((20, [BSTR]), (21, [OUT_BOOL, BSTR]), (22, [OMITTED]), (1, []), (2, [BOOL]),
                              (39, [BSTR, BSTR]))))


# medium_image: a byte for what is mended, then (sector, length, bytes) of each that is not empty.
def sectors_of(image):
    out = b""
    for number in range(0, len(image), 2048):
        bytes_ = image[number:number + 2048].rstrip(b"\0")
        if bytes_:
            out += (number // 2048).to_bytes(2, "little") + len(bytes_).to_bytes(2, "little") + bytes_
    return out


with tempfile.TemporaryDirectory() as folder:
    tree, image = os.path.join(folder, "tree"), os.path.join(folder, "image.iso")
    for name, size in {"DICOMDIR": 40, "OBJECTS/ONE": 10, "OBJECTS/small letters": 2049,
                       "OBJECTS/DEEPER/TWO": 3, "VOID/NOTHING": 0}.items():
        os.makedirs(os.path.dirname(os.path.join(tree, name)), exist_ok=True)
        with open(os.path.join(tree, name), "wb") as f:
            f.write(b"x" * size)
    for root, _, names in os.walk(tree):
        for name in [root] + [os.path.join(root, name) for name in names]:
            os.utime(name, (1_600_000_000, 1_600_000_000))
    for name, systems in (("iso", "1"), ("joliet", "2"), ("udf", "4"), ("all", "7")):
        subprocess.run([os.path.join(BIN, "make_image"), "--systems", systems, image, tree], check=True)
        put("medium_image", name, (b"\1" if systems == "4" else b"\0") + sectors_of(read(image)))
    if shutil.which("genisoimage"):
        subprocess.run(["genisoimage", "-quiet", "-R", "-o", image, tree], check=True)
        put("medium_image", "rock-ridge", b"\0" + sectors_of(read(image)))
