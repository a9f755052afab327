#!/usr/bin/env python3
"""A host in Python, in its smallest form, for Linux: makes a DICOM file set of a directory with DICOM
files, by the server that is registered on this machine (quillon register), and prints it as JSON.

    host.py SOURCE ROOT PATIENT_KEY [TARGET]

The files in SOURCE are moved into the file set below ROOT. With TARGET the set is then copied to that
directory, and goes from ROOT only when it is there. Needs nothing but the standard library and
libquillon-media.so.0, which has the functions of COM under their plain names; $QUILLON_HOST_LIBRARY
names it where the system does not find it. Operations are called by their names, as scripts do.
"""
import ctypes
import json
import os
import sys
import uuid
from ctypes import byref, c_int16, c_int32, c_uint16, c_uint32, c_uint64, c_void_p

PROG_ID = "QuillonMediaRW.QuillonMediaRW"
IN_PROCESS = 1
METHOD, PROPERTY_GET, PROPERTY_PUT = 1, 2, 4  # what Invoke is asked for
THE_NEW_VALUE = c_int32(-3)  # the name of a property's new value among the arguments
VT_EMPTY, VT_BSTR, VT_BOOL, VT_UI4, VT_UI8 = 0, 8, 11, 19, 21


class Guid(ctypes.Structure):
    _fields_ = [("bytes", ctypes.c_ubyte * 16)]


IID_NULL = Guid()
IID_DISPATCH = Guid.from_buffer_copy(uuid.UUID("00020400-0000-0000-C000-000000000046").bytes_le)


class Variant(ctypes.Structure):
    class Value(ctypes.Union):
        _fields_ = [("pointer", c_void_p), ("flag", c_int16), ("ui4", c_uint32), ("ui8", c_uint64),
                    ("room", c_void_p * 2)]
    _fields_ = [("type", c_uint16), ("reserved", c_uint16 * 3), ("value", Value)]


class Arguments(ctypes.Structure):
    _fields_ = [("values", ctypes.POINTER(Variant)), ("names", ctypes.POINTER(c_int32)),
                ("count", c_uint32), ("name_count", c_uint32)]


def load_com():
    com = ctypes.CDLL(os.environ.get("QUILLON_HOST_LIBRARY", "libquillon-media.so.0"))
    com.SysAllocStringLen.restype = c_void_p
    com.SysAllocStringLen.argtypes = [ctypes.c_char_p, c_uint32]
    com.SysStringLen.argtypes = [c_void_p]
    return com


com = load_com()


class Failed(Exception):
    pass


def check(result, what):
    if result < 0:
        raise Failed(f"{what}: 0x{result & 0xFFFFFFFF:08X}")
    return result


def utf16(text):
    """With a terminator. A name that is not UTF-8 goes through: its bytes are lone surrogates."""
    return text.encode("utf-16-le", "surrogatepass") + b"\0\0"


def variant_of(value):
    """The caller clears it."""
    variant = Variant()
    if isinstance(value, bool):
        variant.type, variant.value.flag = VT_BOOL, -1 if value else 0
    else:
        units = utf16(value)
        variant.type = VT_BSTR
        variant.value.pointer = com.SysAllocStringLen(units, len(units) // 2 - 1)
    return variant


def value_of(variant):
    if variant.type == VT_BSTR:
        if not variant.value.pointer:
            return ""
        length = 2 * com.SysStringLen(variant.value.pointer)
        return ctypes.string_at(variant.value.pointer, length).decode("utf-16-le", "surrogatepass")
    return {VT_BOOL: variant.value.flag != 0, VT_UI4: variant.value.ui4, VT_UI8: variant.value.ui8,
            VT_EMPTY: None}[variant.type]


class Object:
    """Its operations by their names: object.call("AddDirectory", path), object.get("Result")."""

    def __init__(self, prog_id):
        clsid = Guid()
        check(com.CLSIDFromProgID(utf16(prog_id), byref(clsid)), "the server is not registered")
        self._this = c_void_p()
        check(com.CoCreateInstance(byref(clsid), None, IN_PROCESS, byref(IID_DISPATCH),
                                   byref(self._this)), "the server cannot be loaded")

    def _method(self, index, *argument_types):
        """A method of IDispatch by its place in the interface."""
        table = ctypes.cast(self._this, ctypes.POINTER(ctypes.POINTER(c_void_p)))[0]
        function = ctypes.CFUNCTYPE(c_int32, c_void_p, *argument_types)(table[index])
        return lambda *arguments: function(self._this, *arguments)

    def _invoke(self, kind, name, *values):
        dispid = c_int32()
        names = (ctypes.c_char_p * 1)(utf16(name))
        get_ids = self._method(5, c_void_p, c_void_p, c_uint32, c_uint32, c_void_p)
        check(get_ids(byref(IID_NULL), names, 1, 0, byref(dispid)), f"there is no {name}")
        variants = (Variant * max(1, len(values)))()
        for place, value in enumerate(reversed(values)):  # the last argument comes first
            variants[place] = variant_of(value)
        arguments = Arguments(variants, None, len(values), 0)
        if kind == PROPERTY_PUT:
            arguments.names, arguments.name_count = ctypes.pointer(THE_NEW_VALUE), 1
        out = Variant()
        invoke = self._method(6, c_int32, c_void_p, c_uint32, c_uint16, c_void_p, c_void_p, c_void_p,
                              c_void_p)
        try:
            result = invoke(dispid, byref(IID_NULL), 0, kind, byref(arguments), byref(out), None, None)
            check(result, name)
            return result, value_of(out)
        finally:
            for variant in (*variants, out):
                com.VariantClear(byref(variant))

    def put(self, name, value):
        """A refused text answers S_OK; what holds afterwards tells it."""
        self._invoke(PROPERTY_PUT, name, value)
        if self.get(name) != value:
            raise Failed(f"{name} cannot be {value}.")

    def get(self, name):
        return self._invoke(PROPERTY_GET, name)[1]

    def do(self, name, *values):
        """Of an operation that answers whether it succeeded; its reason otherwise."""
        result, done = self._invoke(METHOD, name, *values)
        if result != 0 or done is not True:
            raise Failed(self.get("ErrMessageText") or f"{name} failed.")

    def do_always(self, name):
        """Of an operation that answers nothing."""
        check(self._invoke(METHOD, name)[0], name)

    def release(self):
        self._method(2)()


def deliver(media, target):
    """Keeps the set in its root until it is delivered; a failure can be tried again."""
    media.put("ClearAfterWrite", False)
    media.put("PerformDirectCopy", True)
    media.put("DirectCopyDirectory", target)
    media.do("Write")
    media.do_always("Wipe")


def make_file_set(source, root, patient_key, target=None):
    media = Object(PROG_ID)
    try:
        media.put("DicomRootDirectory", root)
        media.put("UniquePatientId", patient_key)
        media.put("AllowAddHierarchyTree", True)
        media.do("AddDirectory", source)
        files, size = media.get("TotalNumberOfFilesInFileSet"), media.get("TotalSizeOfFileSet")
        media.do("CreateDicomFileSet")
        label = media.get("IheLabel")
        if target is not None:
            deliver(media, target)
        return {"root": root, "files": files, "bytes": size, "label": label, "target": target}
    finally:
        media.release()


def main():
    if len(sys.argv) not in (4, 5):
        print("usage: host.py SOURCE ROOT PATIENT_KEY [TARGET]", file=sys.stderr)
        return 2
    com.CoInitialize(None)
    try:
        print(json.dumps(make_file_set(*sys.argv[1:])))
        return 0
    except Failed as failure:
        print(f"host.py: {failure}", file=sys.stderr)
        return 1
    finally:
        com.CoUninitialize()


if __name__ == "__main__":
    sys.exit(main())
