"""DICOMDIRs of others, read and written again by the toolkit, say the same to pydicom.

Those that python3-pydicom ships with its files, and those that dcmmkdir and gdcmgendir make over
the same files. Compared record by record in tree order: every element but the offsets.
"""
import os
import shutil
import subprocess
import sys
import tempfile

import pydicom

from real_files import DATA, dicom_files

DUMP = sys.argv[1]
FILES = os.path.join(DATA, "test_files", "dicomdirtests")
# Shipped and whole, with their numbers of records.
SHIPPED = {"DICOMDIR": 52, "DICOMDIR-reordered": 52, "DICOMDIR-empty.dcm": 0,
           "TINY_ALPHA/DICOMDIR": 53}
OFFSETS = {0x00041400, 0x00041420, 0x00041200, 0x00041202}


def records(path):
    """(depth, elements) of each record, following the offsets."""
    data = pydicom.dcmread(path, force=True)
    at = {record.seq_item_tell: record for record in data.DirectoryRecordSequence}
    out = []

    def walk(offset, depth):
        while offset:
            record = at[offset]
            out.append((depth, [str(e) for e in record if e.tag not in OFFSETS]))
            walk(record.get("OffsetOfReferencedLowerLevelDirectoryEntity", 0), depth + 1)
            offset = record.OffsetOfTheNextDirectoryRecord

    walk(data.OffsetOfTheFirstDirectoryRecordOfTheRootDirectoryEntity, 0)
    return out


def check(name, directory, folder, least):
    target = os.path.join(folder, "again-" + name)
    os.mkdir(target)
    run = subprocess.run([DUMP, "--rewrite", directory, target], capture_output=True, text=True)
    if run.returncode != 0:
        return ["%s: %s" % (name, run.stderr.strip())]
    before = records(os.path.join(directory, "DICOMDIR"))
    after = records(os.path.join(target, "DICOMDIR"))
    problems = []
    if int(run.stdout) != len(before) or len(before) < least:
        problems.append("%s: %s records read, %d are there" % (name, run.stdout.strip(), len(before)))
    for a, b in zip(before, after):
        if a != b:
            problems.append("%s: %s became %s" % (name, a, b))
    if len(before) != len(after):
        problems.append("%s: %d records became %d" % (name, len(before), len(after)))
    return problems


def main():
    problems, done = [], []
    with tempfile.TemporaryDirectory() as folder:
        for name, least in SHIPPED.items():
            directory = os.path.join(folder, "shipped-" + name.replace("/", "-"))
            os.mkdir(directory)
            shutil.copy(os.path.join(FILES, name), os.path.join(directory, "DICOMDIR"))
            problems += check(name.replace("/", "-"), directory, folder, least)
            done.append(name)

        # File IDs of both programs come from the names, which must be theirs to use.
        plain = os.path.join(folder, "plain")
        os.mkdir(plain)
        for number, path in enumerate(dicom_files(FILES)):
            if not os.path.basename(path).startswith("DICOMDIR"):
                shutil.copy(path, os.path.join(plain, "F%07d" % number))
        commands = {
            "dcmmkdir": ["dcmmkdir", "-Pgp", "-nb", "+I", "+r", "+id", plain, "+D",
                         os.path.join(folder, "dcmmkdir", "DICOMDIR")],
            "gdcmgendir": ["gdcmgendir", "-r", "-i", plain, "-o",
                           os.path.join(folder, "gdcmgendir", "DICOMDIR")],
        }
        for name, command in commands.items():
            if not shutil.which(command[0]):
                print("skipped: %s is not installed" % name)
                continue
            os.mkdir(os.path.join(folder, name))
            run = subprocess.run(command, capture_output=True, text=True)
            if not os.path.exists(os.path.join(folder, name, "DICOMDIR")):
                problems.append("%s made no DICOMDIR: %s" % (name, run.stderr[-300:]))
                continue
            problems += check(name, os.path.join(folder, name), folder, 10)
            done.append(name)
    for problem in problems[:20]:
        print(problem[:600])
    print("DICOMDIRs rewritten: %s; %d problems" % (", ".join(done), len(problems)))
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
