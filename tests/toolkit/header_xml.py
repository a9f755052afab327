"""For every DICOM file that python3-pydicom ships and that can be read: its header XML is well
formed, and the list of (tag, VR, value) in it equals what the toolkit holds."""
import os
import struct
import subprocess
import sys
import xml.etree.ElementTree as ElementTree

from real_files import DATA, dicom_files

DUMP = sys.argv[1]
NOT_READ = 3
# Fewer would mean that files were passed over unseen.
MIN_FILES = 150

SPACE = bytes(range(14)) + b" "
ONE_TEXT_VRS = ("LT", "ST", "UT")
VR_TEXTS = {"XS": ("US",), "XL": ("UL",), "OX": ("OB", "OW", "OB/OW"), "": ("UN",)}
FLOAT_DIGITS = {"FL": 1e-6, "FD": 1e-14}


def widened(value):
    """Windows-1252, in which every byte is a character; what XML cannot carry is shown."""
    text = "".join(bytes([b]).decode("cp1252") if b not in (0x81, 0x8D, 0x8F, 0x90, 0x9D)
                   else chr(b) for b in value)
    return "".join(" " if c in "\r\n\f\x1b" else c if c >= " " or c == "\t"
                   else chr(0x2400 + ord(c)) for c in text)


def elements_of_xml(data_set, prefix=""):
    for tag in data_set:
        key = prefix + tag.get("grp") + tag.get("element")
        items = tag.findall("item")
        values = tag.find("values")
        yield key, tag, values
        for index, item in enumerate(items):
            yield from elements_of_xml(item, "%s[%d]." % (key, index))


def texts_of(tag, values):
    if values is None:
        return [tag.text or ""]
    texts = [value.text or "" for value in values]
    assert len(texts) == int(values.get("count")) == int(values.get("total")) == int(tag.get("VM"))
    return texts


def is_equal(vr, form, value, tag, values):
    if form == "items":
        return len(tag.findall("item")) == int(value) and tag.get("VM") == ""
    texts = texts_of(tag, values)
    if form == "text" or vr == "UT":
        stored = bytes.fromhex(value)
        if vr in ONE_TEXT_VRS:
            return texts == [widened(stored.strip(SPACE))]
        return "\\".join(texts) == "\\".join(
            widened(piece.strip(SPACE)) for piece in stored.split(b"\\"))
    if form == "numbers" and value == "":
        return texts == [""] and tag.get("VM") == "0"
    if form == "numbers":
        numbers = value.split("\\")
        if vr == "AT":
            numbers = ["(%04x,%04x)" % (int(n) >> 16, int(n) & 0xFFFF) for n in numbers]
        if vr in FLOAT_DIGITS:
            return len(texts) == len(numbers) and all(
                abs(float(a) - float(b)) <= FLOAT_DIGITS[vr] * abs(float(b))
                for a, b in zip(texts, numbers))
        return [t.lower() for t in texts] == numbers
    stored = bytes.fromhex(value)
    if not stored:
        return texts == [""]
    if vr == "OF":
        floats = struct.unpack("<%df" % (len(stored) // 4), stored)
        return all(abs(float(a) - b) <= 1e-6 * abs(b) for a, b in zip(texts, floats)) and len(
            texts) == len(floats)
    if tag.get("VR") == "OW" or (tag.get("VR") == "OB/OW" and len(texts) * 2 == len(stored)):
        return texts == [str(n) for n in struct.unpack("<%dH" % (len(stored) // 2), stored)]
    return texts == [str(n) for n in stored]


def compare(path):
    run = subprocess.run([DUMP, "--xml", path], capture_output=True)
    if run.returncode == NOT_READ:
        return False, []
    if run.returncode != 0:
        return True, ["no header"]
    root = ElementTree.fromstring(run.stdout)
    held = subprocess.run([DUMP, path], capture_output=True, check=True).stdout.decode()
    shown = [e for e in elements_of_xml(root) if not e[0].startswith("0002")]
    faults = []
    position = 0
    for line in held.splitlines():
        key, vr, form, value = line.split("\t")
        if position < len(shown) and shown[position][1].get("name") == "groupLength" and \
                shown[position][0] != key:
            position += 1  # written for pixel data that is left out
        if position == len(shown):
            return True, faults + ["ends before " + key]
        shown_key, tag, values = shown[position]
        position += 1
        if shown_key != key:
            return True, faults + ["%s instead of %s" % (shown_key, key)]
        if tag.get("VR") not in VR_TEXTS.get(vr, (vr,)):
            faults.append("%s: VR %s, not %s" % (key, tag.get("VR"), vr))
        if key.endswith("7fe00010"):
            if tag.text != "NOT LOADED":
                faults.append(key + ": is loaded")
        elif not is_equal(vr, form, value, tag, values):
            faults.append("%s %s: %r, not %s" % (key, vr, texts_of(tag, values)[:8], value[:80]))
    if position != len(shown):
        faults.append("goes on with " + shown[position][0])
    return True, faults


def main():
    read = failed = 0
    for path in dicom_files():
        was_read, faults = compare(path)
        read += was_read
        failed += bool(faults)
        for fault in faults[:5]:
            print("%s: %s" % (os.path.relpath(path, DATA), fault))
    print("%d headers compared, %d differ" % (read, failed))
    return 1 if failed or read < MIN_FILES else 0


sys.exit(main())
