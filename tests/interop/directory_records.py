"""Follows the records of a DICOMDIR by their byte offsets, as a reader of the medium does."""
from pathlib import Path

ALLOWED = {
    None: {"PATIENT"}, "PATIENT": {"STUDY"}, "STUDY": {"SERIES"},
    "SERIES": {"IMAGE", "SR DOCUMENT", "PRESENTATION", "KEY OBJECT DOC", "RT DOSE", "RT PLAN",
               "RT STRUCTURE SET", "WAVEFORM", "RAW DATA", "ENCAP DOC", "SPECTROSCOPY",
               "REGISTRATION"},
}


class Record:
    def __init__(self, item, parent):
        self.item = item
        self.parent = parent
        self.type = item.DirectoryRecordType
        self.children = []

    def leaves(self):
        if not self.children:
            return [self]
        return [leaf for child in self.children for leaf in child.leaves()]

    def file_id(self):
        value = self.item.get("ReferencedFileID")
        return None if value is None else "/".join([value] if isinstance(value, str) else value)


def records(directory):
    """The root records of a DICOMDIR that pydicom has read; every record must be reached once."""
    at = {item.seq_item_tell: item for item in directory.DirectoryRecordSequence}
    reached = set()

    def chain(offset, parent):
        found = []
        while offset:
            assert offset in at, f"no record starts at offset {offset}"
            assert offset not in reached, f"two ways lead to the record at {offset}"
            reached.add(offset)
            record = Record(at[offset], parent)
            allowed = ALLOWED.get(parent and parent.type, set())
            assert record.type in allowed, f"{record.type} below {parent and parent.type}"
            assert record.item.RecordInUseFlag == 0xFFFF
            found.append(record)
            record.children = chain(at[offset].OffsetOfReferencedLowerLevelDirectoryEntity, record)
            offset = at[offset].OffsetOfTheNextDirectoryRecord
        return found

    roots = chain(directory.OffsetOfTheFirstDirectoryRecordOfTheRootDirectoryEntity, None)
    last = directory.OffsetOfTheLastDirectoryRecordOfTheRootDirectoryEntity
    assert roots[-1].item.seq_item_tell == last
    assert len(reached) == len(at), f"{len(at) - len(reached)} records cannot be reached"
    return roots


def object_files(root):
    """Relative names of the files that a DICOMDIR has to refer to."""
    return sorted(str(path.relative_to(root)) for path in Path(root).rglob("QLN*"))
