// The COM runtime: apartments, the process's class table, identifiers as text, shared memory.
//
// Classes are found first among those that the program registered with CoRegisterClassObject (the
// newest first), then among the built-in ones (com/class_table.h), then in the registry: the
// default value of HKEY_CLASSES_ROOT\CLSID\{...}\InprocServer32 names a library whose
// DllGetClassObject has the class. The library stays loaded until CoFreeUnusedLibraries.
//
// What Windows does at the last CoUninitialize of a thread, and what it keeps to one apartment, is
// not done here: objects live on, and a registered class is found on every thread. Only programs
// that are wrong there see a difference.
#pragma once

#include "platform/com/guid.h"
#include "platform/com/unknown.h"

inline constexpr DWORD COINIT_MULTITHREADED = 0;
inline constexpr DWORD COINIT_APARTMENTTHREADED = 2;
inline constexpr DWORD COINIT_DISABLE_OLE1DDE = 4;

inline constexpr DWORD CLSCTX_INPROC_SERVER = 0x1;
inline constexpr DWORD CLSCTX_INPROC_HANDLER = 0x2;
inline constexpr DWORD CLSCTX_LOCAL_SERVER = 0x4;
inline constexpr DWORD CLSCTX_REMOTE_SERVER = 0x10;
inline constexpr DWORD CLSCTX_SERVER = 0x15;
inline constexpr DWORD CLSCTX_ALL = 0x17;

inline constexpr DWORD REGCLS_SINGLEUSE = 0;
inline constexpr DWORD REGCLS_MULTIPLEUSE = 1;
inline constexpr DWORD REGCLS_MULTI_SEPARATE = 2;

extern "C" {

// S_OK the first time on a thread, S_FALSE again (to be balanced too), RPC_E_CHANGED_MODE (not to
// be balanced) for the other mode.
HRESULT CoInitialize(LPVOID reserved);
HRESULT CoInitializeEx(LPVOID reserved, DWORD mode);
void CoUninitialize();

// CO_E_NOTINITIALIZED, REGDB_E_CLASSNOTREG, CLASS_E_NOAGGREGATION, E_NOINTERFACE, or what the class
// says; 0x8007007E for a registered library that cannot be loaded, CO_E_ERRORINDLL for one that is
// no server. *object is null on failure.
HRESULT CoCreateInstance(REFCLSID clsid, IUnknown* outer, DWORD context, REFIID riid,
                         void** object);
HRESULT CoGetClassObject(REFCLSID clsid, DWORD context, LPVOID reserved, REFIID riid,
                         void** object);
// REGCLS_SINGLEUSE gives the class object out once.
HRESULT CoRegisterClassObject(REFCLSID clsid, IUnknown* factory, DWORD context, DWORD flags,
                              DWORD* cookie);
HRESULT CoRevokeClassObject(DWORD cookie);
// Unloads the servers whose DllCanUnloadNow answers S_OK.
void CoFreeUnusedLibraries();

LPVOID CoTaskMemAlloc(SIZE_T sizeBytes);
LPVOID CoTaskMemRealloc(LPVOID memory, SIZE_T sizeBytes);
void CoTaskMemFree(LPVOID memory);

HRESULT CoCreateGuid(GUID* guid);
// "{8-4-4-4-12}" in capitals, 39 units with the terminator; answers them, or 0 for less room.
int StringFromGUID2(REFGUID guid, LPOLESTR text, int units);
HRESULT StringFromCLSID(REFCLSID clsid, LPOLESTR* text);  // freed with CoTaskMemFree
HRESULT CLSIDFromString(LPCOLESTR text, CLSID* clsid);    // CO_E_CLASSSTRING
HRESULT IIDFromString(LPCOLESTR text, IID* iid);          // E_INVALIDARG
// By the registry: HKEY_CLASSES_ROOT\<ProgID>\CLSID, or that of the ProgID that CurVer names.
// CO_E_CLASSSTRING for an unknown one.
HRESULT CLSIDFromProgID(LPCOLESTR progId, CLSID* clsid);

}  // extern "C"
