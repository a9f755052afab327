"""Reads files of Windows: what a DLL needs of the system and carries, what a type library holds."""
import struct
import uuid
from pathlib import Path

TYPE_LIBRARY = "TYPELIB"


class PortableExecutable:
    """A 32-bit DLL or program. Raises ValueError for any other file."""

    # Places in the optional header.
    SYSTEM_VERSION = 40
    SUBSYSTEM_VERSION = 48
    DIRECTORIES = 96
    IMPORTS, RESOURCES, DELAYED_IMPORTS = 1, 2, 13

    def __init__(self, path):
        self.data = Path(path).read_bytes()
        header = self.number(0x3C)
        if self.data[header:header + 4] != b"PE\0\0":
            raise ValueError(f"{path} is no Windows file")
        sections, optional_size = struct.unpack_from("<2xH12xH", self.data, header + 4)
        self.optional = header + 24
        if struct.unpack_from("<H", self.data, self.optional)[0] != 0x10B:
            raise ValueError(f"{path} is no 32-bit file")
        self.sections = [struct.unpack_from("<8xIIII", self.data,
                                            self.optional + optional_size + 40 * i)
                         for i in range(sections)]

    def number(self, at):
        return struct.unpack_from("<I", self.data, at)[0]

    def text(self, at):
        return self.data[at:self.data.index(b"\0", at)].decode("ascii")

    def place(self, address):
        """Where in the file lies what has this address once it is loaded."""
        for virtual_size, start, size, in_file in self.sections:
            if start <= address < start + max(virtual_size, size):
                return in_file + address - start
        raise ValueError(f"no section has the address {address:#x}")

    def directory(self, index):
        return self.number(self.optional + self.DIRECTORIES + 8 * index)

    def versions(self):
        """The oldest system and the oldest subsystem that load the file, as (major, minor)."""
        return [struct.unpack_from("<HH", self.data, self.optional + at)
                for at in (self.SYSTEM_VERSION, self.SUBSYSTEM_VERSION)]

    def imports(self):
        """(name of the DLL in lower case, name or #ordinal) of all that comes from other files."""
        found = []
        if self.directory(self.DELAYED_IMPORTS):
            raise ValueError("delayed imports are not looked at")
        at = self.place(self.directory(self.IMPORTS))
        while self.number(at + 12):
            dll = self.text(self.place(self.number(at + 12))).lower()
            entry = self.place(self.number(at) or self.number(at + 16))
            while value := self.number(entry):
                is_ordinal = value >> 31
                found.append((dll, f"#{value & 0xFFFF}" if is_ordinal
                              else self.text(self.place(value) + 2)))
                entry += 4
            at += 20
        return found

    def resource(self, kind, number):
        """The bytes of a resource whose type has a name, in its first language."""
        start = self.place(self.directory(self.RESOURCES))

        def entries(offset):
            at = start + (offset & 0x7FFFFFFF)
            count = sum(struct.unpack_from("<HH", self.data, at + 12))
            return [struct.unpack_from("<II", self.data, at + 16 + 8 * i) for i in range(count)]

        def name(key):
            if not key >> 31:
                return key
            at = start + (key & 0x7FFFFFFF)
            length = struct.unpack_from("<H", self.data, at)[0]
            return self.data[at + 2:at + 2 + 2 * length].decode("utf-16-le")

        numbers = {name(key): offset for key, offset in entries(0)}[kind]
        languages = dict(entries(numbers))[number]
        address, size = struct.unpack_from("<II", self.data, start + entries(languages)[0][1])
        at = self.place(address)
        return self.data[at:at + size]


class TypeLibrary:
    """A type library of the form "MSFT": its own types, and what it takes from other libraries.

    types       {name: base}; the base of a dispatch interface is "own" or the identifier of an
                imported type, that of other types None
    imports     [(file name, identifier, (major, minor))] of the imported libraries
    references  identifiers of the imported types
    """

    HEADER, HAS_HELP_DLL = 0x54, 0x100
    # The segments that are read, by their place in the table of segments, and the sizes of entries.
    TYPES, REFERENCES, IMPORTS, GUIDS, NAMES = 0, 1, 2, 5, 7
    TYPE_SIZE, REFERENCE_SIZE, IMPORT_SIZE = 100, 12, 14
    IS_GUID = 0x10000
    DISPATCH = 4

    def __init__(self, data):
        self.data = data
        if data[:4] != b"MSFT":
            raise ValueError("no type library of the form MSFT")
        count, table = self.number(0x20), self.HEADER
        if self.number(0x14) & self.HAS_HELP_DLL:
            table += 4
        table += 4 * count
        self.segments = [struct.unpack_from("<II", data, table + 16 * i) for i in range(15)]
        self.imports = list(self.read_imports())
        self.references = [self.referenced(offset) for offset in
                           range(0, self.segments[self.REFERENCES][1], self.REFERENCE_SIZE)]
        self.types = dict(self.read_type(self.TYPE_SIZE * i) for i in range(count))

    def number(self, at):
        return struct.unpack_from("<i", self.data, at)[0]

    def at(self, segment, offset):
        start, size = self.segments[segment]
        if not 0 <= offset < size:
            raise ValueError(f"segment {segment} has no offset {offset:#x}")
        return start + offset

    def guid(self, offset):
        at = self.at(self.GUIDS, offset)
        return "{" + str(uuid.UUID(bytes_le=self.data[at:at + 16])).upper() + "}"

    def read_imports(self):
        offset = 0
        while offset < self.segments[self.IMPORTS][1]:
            at = self.at(self.IMPORTS, offset)
            guid, major, minor, size = struct.unpack_from("<i4xHHH", self.data, at)
            end = self.IMPORT_SIZE + (size >> 2)
            name = self.data[at + self.IMPORT_SIZE:at + end].decode("ascii")
            yield name, self.guid(guid), (major, minor)
            offset += (end + 3) & ~3

    def referenced(self, offset):
        at = self.at(self.REFERENCES, offset)
        flags, _, guid = struct.unpack_from("<iii", self.data, at)
        return self.guid(guid) if flags & self.IS_GUID else f"number {guid}"

    def read_type(self, offset):
        at = self.at(self.TYPES, offset)
        kind = self.number(at) & 0xF
        name_at = self.at(self.NAMES, self.number(at + 0x34))
        length = self.data[name_at + 8]
        name = self.data[name_at + 12:name_at + 12 + length].decode("ascii")
        if kind != self.DISPATCH:
            return name, None
        # References to imported types are odd.
        base = self.number(at + 0x54)
        return name, self.referenced(base & ~3) if base & 1 else "own"
