"""Compares what the toolkit reads and writes with independent readers, on real files.

For every DICOM file that python3-pydicom ships:
  - the list of (tag, VR, value) that the toolkit reads equals what pydicom reads;
  - dcmdump shows the same elements and values of our encoding as of the original.
Every difference that is allowed stands in one of the tables below with its reason.
"""
import itertools
import os
import re
import shutil
import struct
import subprocess
import sys
import tempfile

import pydicom
from pydicom.datadict import dictionary_VR
from pydicom.dataelem import RawDataElement

from real_files import dicom_files

DUMP = sys.argv[1]
IMPLICIT, EXPLICIT = "1.2.840.10008.1.2", ("1.2.840.10008.1.2.1", "1.2.840.10008.1.2.2")

# Files that the toolkit refuses, each with its reason.
REFUSED = {
    "MR_truncated.dcm": "its pixel data is cut short; only the header can be read",
    "SC_rgb_jpeg.dcm": "broken after (0008,0008); dcmdump refuses it too",
    "image_dfl.dcm": "deflated data sets are not inflated",
    "rtplan_truncated.dcm": "cut short inside its data set; dcmdump refuses it too",
    "DICOMDIR-implicit": "a DICOMDIR in implicit VR: group 0004 is always read as explicit VR",
    "DICOMDIR-nooffset": "its last item declares more bytes than the file has",
}

# (file or "*", path or pattern): reason. Elements whose VR or value may differ from pydicom's.
DIFFERENCES = {
    ("UN_sequence.dcm", r"4453100c.*"):
        "UN of undefined length keeps its bytes; pydicom reads the items",
    ("meta_missing_tsyntax.dcm", "dcmdump"):
        "dcmdump tells an unknown sequence of implicit VR by its undefined length; ours is defined",
    ("nested_priv_SQ.dcm", "dcmdump"):
        "dcmdump tells an unknown sequence of implicit VR by its undefined length; ours is defined",
    ("DICOMDIR-bigEnd", "dcmdump"):
        "group 0004 is explicit little endian in every file, so there is no big endian DICOMDIR",
    ("rtdose_rle.dcm", r"300c0002.*"): "a sequence written as UN; implicit VR gives it back",
    ("rtdose_rle_1frame.dcm", r"300c0002.*"): "a sequence written as UN; implicit VR gives it back",
    ("priv_SQ.dcm", r"3f031001.*"):
        "an unknown element of implicit VR that begins with an item is a sequence; pydicom keeps UN",
}


def ours(path):
    run = subprocess.run([DUMP, path], capture_output=True)
    if run.returncode != 0:
        return None, run.stderr.decode().strip()
    result = {}
    for line in run.stdout.decode().splitlines():
        key, vr, form, value = line.split("\t")
        result[key] = (vr, form, value)
    return result, None


BYTE_VRS = {"OB", "OW", "OF", "UN", "UT", "OX", "OD", "OL", "OV", "UC", "UR"}
NUMBER_FORMATS = {"SS": "h", "US": "H", "SL": "i", "UL": "I", "FL": "f", "FD": "d"}
SPACE = bytes(range(14)) + b" "


def expected_text(vr, raw):
    """The rule for stored strings: split at backslashes, white space at both ends dropped."""
    if vr in ("LT", "ST"):
        return strip(raw)
    if b"\\" not in raw:
        pieces = [strip(raw)]
    else:
        raw = strip(raw)
        if raw.endswith(b"\\"):
            raw = raw[:-1]
        pieces = [strip(p) for p in split(vr, raw)]
    if vr in ("LO", "SH"):
        pieces = [p if b"\x1b" in p else control_mapped(p) for p in pieces]
    return b"\\".join(pieces)


def split(vr, raw):
    if vr not in ("CS", "LO", "PN", "SH") or b"\x1b" not in raw:
        return raw.split(b"\\")
    pieces, current, escaped = [], bytearray(), False
    for byte in raw:
        if byte == 27:
            escaped = not escaped
        if byte == 0x5C and not escaped:
            pieces.append(bytes(current))
            current = bytearray()
        else:
            current.append(byte)
    pieces.append(bytes(current))
    return pieces


def strip(raw):
    return raw.strip(SPACE)


def control_mapped(raw):
    return bytes(0x7C if b == 10 else 0x20 if b < 32 else b for b in raw)


def theirs(dataset, prefix, result, implicit, little):
    for tag in sorted(dataset.keys()):
        item = dataset.get_item(tag)
        key = prefix + "%04x%04x" % (tag.group, tag.element)
        vr = item.VR
        if isinstance(item, RawDataElement):
            if vr is None or vr == "UN":
                known = implicit or vr is None
                try:
                    vr = dictionary_VR(tag) if known else vr
                except KeyError:
                    vr = "UL" if tag.element == 0 else "LO" if is_creator(tag) else "UN"
            if tag.element == 0 and implicit:
                vr = "UL"
            raw = item.value if item.value is not None else b""
            little_item = item.is_little_endian
        if not isinstance(item, RawDataElement) or vr == "SQ":
            element = dataset[tag]
            if element.VR != "SQ":
                # pydicom converts the character set and the offsets of a DICOMDIR as it goes.
                value = element.value
                value = value if isinstance(value, (list, pydicom.multival.MultiValue)) else [value]
                if element.VR in NUMBER_FORMATS:
                    numbers = "\\".join(number_text(element.VR, v) for v in value if v is not None)
                    result[key] = (element.VR, "numbers", numbers)
                    continue
                text = "\\".join(str(v or "") for v in value).encode("latin-1")
                result[key] = (element.VR, "text", expected_text(element.VR, text).hex())
                continue
            result[key] = ("SQ", "items", str(len(element.value)))
            for i, nested in enumerate(element.value):
                theirs(nested, "%s[%d]." % (key, i), result, implicit, little)
            continue
        if vr in NUMBER_FORMATS and " or " not in vr:
            size = struct.calcsize(NUMBER_FORMATS[vr])
            count = len(raw) // size
            values = struct.unpack(("<" if little_item else ">") + "%d%s" % (count, NUMBER_FORMATS[vr]),
                                   raw[:count * size])
            text = "\\".join(number_text(vr, v) for v in values)
            result[key] = (vr, "numbers", text)
        elif vr == "AT":
            order = "<" if little_item else ">"
            words = struct.unpack(order + "%dH" % (len(raw) // 2), raw)
            tags = ["%d" % (words[i] << 16 | words[i + 1]) for i in range(0, len(words) - 1, 2)]
            result[key] = (vr, "numbers", "\\".join(tags))
        elif vr in BYTE_VRS or " or " in vr:
            if not little_item and vr == "OW":
                raw = swapped(raw)
            result[key] = (vr, "bytes", raw.hex(), little_item)
        else:
            result[key] = (vr, "text", expected_text(vr, raw).hex())


def swapped(raw):
    words = bytearray(raw)
    words[0::2], words[1::2] = raw[1::2], raw[0::2]
    return bytes(words)


def is_creator(tag):
    return tag.group % 2 == 1 and 0x10 <= tag.element <= 0xFF


def number_text(vr, value):
    if vr == "FL":
        return "%.9g" % value
    if vr == "FD":
        return "%.17g" % value
    return "%d" % value


def same(mine, other):
    if mine == other[:3] or (mine[0] == other[0] and mine[2] == other[2] == ""):
        return True
    vr, form, value = mine
    # UN is kept as it stands in the file; pydicom looks known tags up. The bytes are the same, but
    # for the padding of a text, which may have been any white space.
    if vr == "UN" and form == "bytes":
        raw, held = encoded(other[:3]), bytes.fromhex(value)
        return raw is not None and (raw == held or bool(raw) and any(
            raw[:-1] + bytes([pad]) == held for pad in b"\0 "))
    # US or SS, OB or OW: the dictionary leaves it open, and so do both readers, in their own words.
    if vr == "XS" and other[1] == "bytes" and "US or SS" in other[0]:
        raw = bytes.fromhex(other[2])
        words = struct.unpack(("<" if other[3] else ">") + "%dh" % (len(raw) // 2), raw)
        return value == "\\".join("%d" % w for w in words)
    return vr == "OX" and form == other[1] == "bytes" and value == other[2]


def allowed(name, key):
    for (where, pattern), reason in DIFFERENCES.items():
        if where in ("*", name) and re.fullmatch(pattern, key):
            return reason
    return None


def check_against_pydicom(path, mine, problems):
    name = os.path.basename(path)
    dataset = pydicom.dcmread(path, force=True)
    other = {}
    implicit = dataset.is_implicit_VR
    theirs(dataset, "", other, implicit, dataset.is_little_endian)
    for key in sorted(set(mine) | set(other)):
        a, b = mine.get(key), other.get(key)
        if a is not None and b is not None and same(a, b):
            continue
        if allowed(name, key):
            continue
        problems.append("%s %s: we read %.200s, pydicom %.200s" % (name, key, a, b and b[:3]))


def dumped(path):
    """What dcmdump shows of the data set: tags, VRs and values, without lengths and framing."""
    run = subprocess.run(["dcmdump", "+L", "-q", path], capture_output=True)
    lines = []
    for line in run.stdout.decode("latin-1").split("# Dicom-Data-Set")[-1].splitlines():
        found = re.match(r" *\(([0-9a-f]{4}),([0-9a-f]{4})\) (..) (.*?) *# *\S+,", line)
        if not found or found[1] == "fffe" or found[2] == "0000":
            continue
        vr, value = found[3], found[4]
        if vr == "SQ":
            value = re.sub(r"with (explicit|undefined) length", "", value)
        elif value.startswith("["):
            # Padding between values, and of the last one, is no part of them.
            value = "\\".join(strip(v.encode("latin-1")).decode("latin-1")
                              for v in value[1:-1].split("\\")).rstrip("\\")
        value = "" if value in ("(no value available)", "") else value
        lines.append("(%s,%s) %s %s" % (found[1], found[2], vr, value))
    return lines


def check_against_dcmdump(path, syntax, problems, folder):
    name = os.path.basename(path)
    out = os.path.join(folder, "dumped.dcm")
    subprocess.run([DUMP, "--encode", syntax, path, out], check=True)
    before, after = dumped(path), dumped(out)
    if not before:
        problems.append("%s: dcmdump shows nothing" % name)
    for a, b in itertools.zip_longest(before, after):
        if a != b and (name, "dcmdump") not in DIFFERENCES:
            problems.append("%s: dcmdump shows %s, of our encoding %s" % (name, a, b))


def encoded(value):
    """The value's bytes in little endian, as implicit VR carries them."""
    vr, form, text = value
    if form == "bytes":
        return bytes.fromhex(text)
    if form == "text":
        raw = bytes.fromhex(text)
        return raw + (b"\0" if vr == "UI" else b" ") if len(raw) % 2 else raw
    if form == "numbers" and vr == "AT":
        tags = [int(v) for v in text.split("\\") if v]
        return b"".join(struct.pack("<HH", tag >> 16, tag & 0xFFFF) for tag in tags)
    if form == "numbers" and vr in NUMBER_FORMATS:
        kind = NUMBER_FORMATS[vr]
        convert = float if kind in "fd" else int
        return b"".join(struct.pack("<" + kind, convert(v)) for v in text.split("\\") if v)
    return None


def main():
    problems, count, refused = [], 0, []
    judge = shutil.which("dcmdump")
    if not judge:
        print("without dcmdump: the comparison of what it shows is skipped")
    with tempfile.TemporaryDirectory() as folder:
        for path in dicom_files():
            name = os.path.basename(path)
            mine, error = ours(path)
            if mine is None:
                refused.append(name)
                if name not in REFUSED:
                    problems.append("%s: refused with %s" % (name, error))
                continue
            count += 1
            check_against_pydicom(path, mine, problems)
            # So that no VR is lost on the way, only explicit VR is encoded in another syntax, and no
            # DICOMDIR. The pixel data of compressed files has no form there.
            syntax = pydicom.dcmread(path, force=True, stop_before_pixels=True).file_meta.get(
                "TransferSyntaxUID", IMPLICIT)
            has_other = syntax in EXPLICIT and "DICOMDIR" not in name
            for target in EXPLICIT if has_other else (syntax,):
                if judge and syntax in (IMPLICIT, *EXPLICIT):
                    check_against_dcmdump(path, target, problems, folder)
    for problem in problems[:60]:
        print(problem)
    print("%d files compared, %d refused, %d problems" % (count, len(refused), len(problems)))
    return 1 if problems or count == 0 else 0


if __name__ == "__main__":
    sys.exit(main())
