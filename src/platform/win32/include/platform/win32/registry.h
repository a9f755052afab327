// The registry, kept in one text file of the standard .reg form: $QUILLON_REGISTRY, else
// $XDG_CONFIG_HOME/quillon/registry.reg (by default under ~/.config), else
// /etc/quillon/registry.reg. Names of keys and values are compared without case. Every change
// replaces the file as a whole, so a reader never sees half of one.
//
// All calls answer the system code (0 for success) and leave the last error alone; a call that
// fails leaves its output alone too, except for the length of a value that did not fit. A handle
// whose key was deleted answers 1018 to everything but its closing, also when there is a key of the
// name again. A name below a key that begins with a separator is 161, except below
// HKEY_CLASSES_ROOT.
#pragma once

#include "platform/win32/types.h"

namespace quillon::platform {
inline HKEY predefinedKey(std::uint32_t value) {
  return reinterpret_cast<HKEY>(static_cast<std::uintptr_t>(value));
}
}  // namespace quillon::platform

inline const HKEY HKEY_CLASSES_ROOT = quillon::platform::predefinedKey(0x80000000);
inline const HKEY HKEY_CURRENT_USER = quillon::platform::predefinedKey(0x80000001);
inline const HKEY HKEY_LOCAL_MACHINE = quillon::platform::predefinedKey(0x80000002);

inline constexpr REGSAM KEY_QUERY_VALUE = 0x1;
inline constexpr REGSAM KEY_SET_VALUE = 0x2;
inline constexpr REGSAM KEY_CREATE_SUB_KEY = 0x4;
inline constexpr REGSAM KEY_ENUMERATE_SUB_KEYS = 0x8;
inline constexpr REGSAM KEY_READ = 0x20019;
inline constexpr REGSAM KEY_WRITE = 0x20006;
inline constexpr REGSAM KEY_ALL_ACCESS = 0xF003F;

inline constexpr DWORD REG_NONE = 0;
inline constexpr DWORD REG_SZ = 1;
inline constexpr DWORD REG_EXPAND_SZ = 2;
inline constexpr DWORD REG_BINARY = 3;
inline constexpr DWORD REG_DWORD = 4;
inline constexpr DWORD REG_MULTI_SZ = 7;
inline constexpr DWORD REG_QWORD = 11;

inline constexpr DWORD REG_OPTION_NON_VOLATILE = 0;
inline constexpr DWORD REG_CREATED_NEW_KEY = 1;
inline constexpr DWORD REG_OPENED_EXISTING_KEY = 2;

LSTATUS WINAPI RegOpenKeyExW(HKEY key, LPCWSTR subKey, DWORD options, REGSAM access, PHKEY result);
// Creates the key, and those above it, when missing.
LSTATUS WINAPI RegCreateKeyExW(HKEY key, LPCWSTR subKey, DWORD reserved, LPWSTR keyClass,
                               DWORD options, REGSAM access, const SECURITY_ATTRIBUTES* security,
                               PHKEY result, LPDWORD disposition);
LSTATUS WINAPI RegCloseKey(HKEY key);

// Text arrives as 16-bit units with its terminator; lengthBytes goes in as the room and comes out
// as the length. A null data asks for the length only.
LSTATUS WINAPI RegQueryValueExW(HKEY key, LPCWSTR valueName, LPDWORD reserved, LPDWORD type,
                                LPBYTE data, LPDWORD lengthBytes);
LSTATUS WINAPI RegSetValueExW(HKEY key, LPCWSTR valueName, DWORD reserved, DWORD type,
                              const BYTE* data, DWORD lengthBytes);
// 2 for a value that the key does not have.
LSTATUS WINAPI RegDeleteValueW(HKEY key, LPCWSTR valueName);
// Refuses (5) a key that has subkeys.
LSTATUS WINAPI RegDeleteKeyW(HKEY key, LPCWSTR subKey);
// 259 past the last one, 234 when the name does not fit. Deleting a key makes those behind it move
// up. Keys have no class: its text is empty.
LSTATUS WINAPI RegEnumKeyExW(HKEY key, DWORD index, LPWSTR name, LPDWORD nameUnits,
                             LPDWORD reserved, LPWSTR keyClass, LPDWORD classUnits,
                             FILETIME* lastWrite);
