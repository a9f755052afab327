// System codes and COM results. The texts for them are in win32/message_texts.cpp.
#pragma once

#include "platform/win32/types.h"

inline constexpr DWORD ERROR_SUCCESS = 0;
inline constexpr DWORD NO_ERROR = 0;
inline constexpr DWORD ERROR_INVALID_FUNCTION = 1;
inline constexpr DWORD ERROR_FILE_NOT_FOUND = 2;
inline constexpr DWORD ERROR_PATH_NOT_FOUND = 3;
inline constexpr DWORD ERROR_TOO_MANY_OPEN_FILES = 4;
inline constexpr DWORD ERROR_ACCESS_DENIED = 5;
inline constexpr DWORD ERROR_INVALID_HANDLE = 6;
inline constexpr DWORD ERROR_NOT_ENOUGH_MEMORY = 8;
inline constexpr DWORD ERROR_OUTOFMEMORY = 14;
inline constexpr DWORD ERROR_INVALID_DRIVE = 15;
inline constexpr DWORD ERROR_NOT_SAME_DEVICE = 17;
inline constexpr DWORD ERROR_NO_MORE_FILES = 18;
inline constexpr DWORD ERROR_WRITE_PROTECT = 19;
inline constexpr DWORD ERROR_NOT_READY = 21;
inline constexpr DWORD ERROR_SHARING_VIOLATION = 32;
inline constexpr DWORD ERROR_NOT_SUPPORTED = 50;
inline constexpr DWORD ERROR_FILE_EXISTS = 80;
inline constexpr DWORD ERROR_INVALID_PARAMETER = 87;
inline constexpr DWORD ERROR_DISK_FULL = 112;
inline constexpr DWORD ERROR_CALL_NOT_IMPLEMENTED = 120;
inline constexpr DWORD ERROR_INSUFFICIENT_BUFFER = 122;
inline constexpr DWORD ERROR_INVALID_NAME = 123;
inline constexpr DWORD ERROR_MOD_NOT_FOUND = 126;
inline constexpr DWORD ERROR_NEGATIVE_SEEK = 131;
inline constexpr DWORD ERROR_DIR_NOT_EMPTY = 145;
inline constexpr DWORD ERROR_BAD_PATHNAME = 161;
inline constexpr DWORD ERROR_BUSY = 170;
inline constexpr DWORD ERROR_ALREADY_EXISTS = 183;
inline constexpr DWORD ERROR_FILENAME_EXCED_RANGE = 206;
inline constexpr DWORD ERROR_FILE_TOO_LARGE = 223;
inline constexpr DWORD ERROR_MORE_DATA = 234;
inline constexpr DWORD ERROR_NO_MORE_ITEMS = 259;
inline constexpr DWORD ERROR_DIRECTORY = 267;
inline constexpr DWORD ERROR_MR_MID_NOT_FOUND = 317;
inline constexpr DWORD ERROR_NOACCESS = 998;
inline constexpr DWORD ERROR_INVALID_FLAGS = 1004;
inline constexpr DWORD ERROR_BADKEY = 1010;
inline constexpr DWORD ERROR_KEY_DELETED = 1018;
inline constexpr DWORD ERROR_NO_MEDIA_IN_DRIVE = 1112;
inline constexpr DWORD ERROR_NO_UNICODE_TRANSLATION = 1113;
inline constexpr DWORD ERROR_IO_DEVICE = 1117;
inline constexpr DWORD ERROR_OLD_WIN_VERSION = 1150;
inline constexpr DWORD ERROR_CANCELLED = 1223;
inline constexpr DWORD ERROR_TIMEOUT = 1460;
inline constexpr DWORD ERROR_RESOURCE_DATA_NOT_FOUND = 1812;
inline constexpr DWORD ERROR_RESOURCE_TYPE_NOT_FOUND = 1813;
inline constexpr DWORD ERROR_RESOURCE_NAME_NOT_FOUND = 1814;
inline constexpr DWORD ERROR_CANT_RESOLVE_FILENAME = 1921;

namespace quillon::platform {
constexpr HRESULT resultOf(DWORD bits) { return static_cast<HRESULT>(bits); }
}  // namespace quillon::platform

inline constexpr HRESULT S_OK = 0;
inline constexpr HRESULT S_FALSE = 1;
inline constexpr HRESULT NOERROR = 0;
inline constexpr HRESULT E_NOTIMPL = quillon::platform::resultOf(0x80004001);
inline constexpr HRESULT E_NOINTERFACE = quillon::platform::resultOf(0x80004002);
inline constexpr HRESULT E_POINTER = quillon::platform::resultOf(0x80004003);
inline constexpr HRESULT E_ABORT = quillon::platform::resultOf(0x80004004);
inline constexpr HRESULT E_FAIL = quillon::platform::resultOf(0x80004005);
inline constexpr HRESULT E_PENDING = quillon::platform::resultOf(0x8000000A);
inline constexpr HRESULT E_UNEXPECTED = quillon::platform::resultOf(0x8000FFFF);
inline constexpr HRESULT E_ACCESSDENIED = quillon::platform::resultOf(0x80070005);
inline constexpr HRESULT E_HANDLE = quillon::platform::resultOf(0x80070006);
inline constexpr HRESULT E_OUTOFMEMORY = quillon::platform::resultOf(0x8007000E);
inline constexpr HRESULT E_INVALIDARG = quillon::platform::resultOf(0x80070057);
inline constexpr HRESULT CLASS_E_NOAGGREGATION = quillon::platform::resultOf(0x80040110);
inline constexpr HRESULT CLASS_E_CLASSNOTAVAILABLE = quillon::platform::resultOf(0x80040111);
inline constexpr HRESULT REGDB_E_READREGDB = quillon::platform::resultOf(0x80040150);
inline constexpr HRESULT REGDB_E_WRITEREGDB = quillon::platform::resultOf(0x80040151);
inline constexpr HRESULT REGDB_E_KEYMISSING = quillon::platform::resultOf(0x80040152);
inline constexpr HRESULT REGDB_E_CLASSNOTREG = quillon::platform::resultOf(0x80040154);
inline constexpr HRESULT REGDB_E_IIDNOTREG = quillon::platform::resultOf(0x80040155);
inline constexpr HRESULT CO_E_NOTINITIALIZED = quillon::platform::resultOf(0x800401F0);
inline constexpr HRESULT CO_E_CLASSSTRING = quillon::platform::resultOf(0x800401F3);
inline constexpr HRESULT CO_E_DLLNOTFOUND = quillon::platform::resultOf(0x800401F8);
inline constexpr HRESULT CO_E_ERRORINDLL = quillon::platform::resultOf(0x800401F9);
inline constexpr HRESULT CO_E_OBJNOTREG = quillon::platform::resultOf(0x800401FB);
inline constexpr HRESULT CO_E_SERVER_EXEC_FAILURE = quillon::platform::resultOf(0x80080005);
inline constexpr HRESULT RPC_E_CHANGED_MODE = quillon::platform::resultOf(0x80010106);
inline constexpr HRESULT RPC_E_WRONG_THREAD = quillon::platform::resultOf(0x8001010E);
inline constexpr HRESULT DISP_E_UNKNOWNINTERFACE = quillon::platform::resultOf(0x80020001);
inline constexpr HRESULT DISP_E_MEMBERNOTFOUND = quillon::platform::resultOf(0x80020003);
inline constexpr HRESULT DISP_E_PARAMNOTFOUND = quillon::platform::resultOf(0x80020004);
inline constexpr HRESULT DISP_E_TYPEMISMATCH = quillon::platform::resultOf(0x80020005);
inline constexpr HRESULT DISP_E_UNKNOWNNAME = quillon::platform::resultOf(0x80020006);
inline constexpr HRESULT DISP_E_NONAMEDARGS = quillon::platform::resultOf(0x80020007);
inline constexpr HRESULT DISP_E_BADVARTYPE = quillon::platform::resultOf(0x80020008);
inline constexpr HRESULT DISP_E_EXCEPTION = quillon::platform::resultOf(0x80020009);
inline constexpr HRESULT DISP_E_OVERFLOW = quillon::platform::resultOf(0x8002000A);
inline constexpr HRESULT DISP_E_BADINDEX = quillon::platform::resultOf(0x8002000B);
inline constexpr HRESULT DISP_E_UNKNOWNLCID = quillon::platform::resultOf(0x8002000C);
inline constexpr HRESULT DISP_E_ARRAYISLOCKED = quillon::platform::resultOf(0x8002000D);
inline constexpr HRESULT DISP_E_BADPARAMCOUNT = quillon::platform::resultOf(0x8002000E);
inline constexpr HRESULT DISP_E_PARAMNOTOPTIONAL = quillon::platform::resultOf(0x8002000F);
inline constexpr HRESULT DISP_E_BADCALLEE = quillon::platform::resultOf(0x80020010);
inline constexpr HRESULT DISP_E_NOTACOLLECTION = quillon::platform::resultOf(0x80020011);
inline constexpr HRESULT DISP_E_DIVBYZERO = quillon::platform::resultOf(0x80020012);
inline constexpr HRESULT DISP_E_BUFFERTOOSMALL = quillon::platform::resultOf(0x80020013);
inline constexpr HRESULT TYPE_E_LIBNOTREGISTERED = quillon::platform::resultOf(0x8002801D);
inline constexpr HRESULT TYPE_E_ELEMENTNOTFOUND = quillon::platform::resultOf(0x8002802B);
inline constexpr HRESULT TYPE_E_CANTLOADLIBRARY = quillon::platform::resultOf(0x80029C4A);
inline constexpr HRESULT STG_E_INVALIDFUNCTION = quillon::platform::resultOf(0x80030001);
inline constexpr HRESULT STG_E_FILENOTFOUND = quillon::platform::resultOf(0x80030002);
inline constexpr HRESULT STG_E_PATHNOTFOUND = quillon::platform::resultOf(0x80030003);
inline constexpr HRESULT STG_E_TOOMANYOPENFILES = quillon::platform::resultOf(0x80030004);
inline constexpr HRESULT STG_E_ACCESSDENIED = quillon::platform::resultOf(0x80030005);
inline constexpr HRESULT STG_E_INVALIDPOINTER = quillon::platform::resultOf(0x80030009);
inline constexpr HRESULT STG_E_SEEKERROR = quillon::platform::resultOf(0x80030019);
inline constexpr HRESULT STG_E_READFAULT = quillon::platform::resultOf(0x8003001E);
inline constexpr HRESULT STG_E_INVALIDPARAMETER = quillon::platform::resultOf(0x80030057);
inline constexpr HRESULT STG_E_INVALIDNAME = quillon::platform::resultOf(0x800300FC);

inline constexpr DWORD FACILITY_NULL = 0;
inline constexpr DWORD FACILITY_RPC = 1;
inline constexpr DWORD FACILITY_DISPATCH = 2;
inline constexpr DWORD FACILITY_STORAGE = 3;
inline constexpr DWORD FACILITY_ITF = 4;
inline constexpr DWORD FACILITY_WIN32 = 7;
inline constexpr DWORD SEVERITY_SUCCESS = 0;
inline constexpr DWORD SEVERITY_ERROR = 1;

constexpr bool SUCCEEDED(HRESULT hr) { return hr >= 0; }
constexpr bool FAILED(HRESULT hr) { return hr < 0; }
constexpr HRESULT MAKE_HRESULT(DWORD severity, DWORD facility, DWORD code) {
  return static_cast<HRESULT>((severity << 31) | (facility << 16) | code);
}
constexpr DWORD HRESULT_CODE(HRESULT hr) { return static_cast<DWORD>(hr) & 0xFFFF; }
constexpr DWORD HRESULT_FACILITY(HRESULT hr) { return (static_cast<DWORD>(hr) >> 16) & 0x1FFF; }
// A success code stays 0, and a value that is an HRESULT already stays as it is.
constexpr HRESULT HRESULT_FROM_WIN32(DWORD code) {
  return static_cast<HRESULT>(code) <= 0
             ? static_cast<HRESULT>(code)
             : MAKE_HRESULT(SEVERITY_ERROR, FACILITY_WIN32, code & 0xFFFF);
}

// The code of the last failure on this thread. A successful call leaves it as it was, unless the
// call says otherwise.
DWORD WINAPI GetLastError();
void WINAPI SetLastError(DWORD code);
