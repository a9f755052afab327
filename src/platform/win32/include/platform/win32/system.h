// Time, waiting, the reported version and the module.
#pragma once

#include "platform/win32/types.h"

void WINAPI Sleep(DWORD milliseconds);
void WINAPI GetLocalTime(LPSYSTEMTIME time);
// UTC, in units of 100 ns since 1601.

inline constexpr LCID LOCALE_USER_DEFAULT = 0x0400;
inline constexpr LCID LOCALE_SYSTEM_DEFAULT = 0x0800;

// Pictures d dd ddd dddd M MM MMM MMMM y yy yyyy and texts in apostrophes ('' within one is an
// apostrophe); other characters stand for themselves. Names are English in every locale. Answers
// the length with the terminator, also when bufferUnits is 0 (nothing is stored then); 0 on
// failure, with 87 for a date that does not exist and 122 when the buffer is too small. A null date
// is today, a null format is "M/d/yyyy".
int WINAPI GetDateFormatW(LCID locale, DWORD flags, const SYSTEMTIME* date, LPCWSTR format,
                          LPWSTR buffer, int bufferUnits);

struct OSVERSIONINFOEXW {
  DWORD dwOSVersionInfoSize;
  DWORD dwMajorVersion;
  DWORD dwMinorVersion;
  DWORD dwBuildNumber;
  DWORD dwPlatformId;
  WCHAR szCSDVersion[128];
  WORD wServicePackMajor;
  WORD wServicePackMinor;
  WORD wSuiteMask;
  BYTE wProductType;
  BYTE wReserved;
};
using LPOSVERSIONINFOEXW = OSVERSIONINFOEXW*;

inline constexpr DWORD VER_MINORVERSION = 0x1;
inline constexpr DWORD VER_MAJORVERSION = 0x2;
inline constexpr DWORD VER_BUILDNUMBER = 0x4;
inline constexpr DWORD VER_PLATFORMID = 0x8;
inline constexpr DWORD VER_SERVICEPACKMINOR = 0x10;
inline constexpr DWORD VER_SERVICEPACKMAJOR = 0x20;

inline constexpr BYTE VER_EQUAL = 1;
inline constexpr BYTE VER_GREATER = 2;
inline constexpr BYTE VER_GREATER_EQUAL = 3;
inline constexpr BYTE VER_LESS = 4;
inline constexpr BYTE VER_LESS_EQUAL = 5;

inline constexpr DWORD VER_PLATFORM_WIN32_NT = 2;

ULONGLONG WINAPI VerSetConditionMask(ULONGLONG mask, DWORD type, BYTE condition);
#define VER_SET_CONDITION(mask, type, condition) \
  ((mask) = VerSetConditionMask((mask), (type), (condition)))
// The layer reports itself as Windows 10. 1150 when a condition is not met, 87 for a bad question.
BOOL WINAPI VerifyVersionInfoW(LPOSVERSIONINFOEXW version, DWORD types, DWORDLONG conditions);

inline constexpr DWORD GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT = 0x2;
inline constexpr DWORD GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS = 0x4;

// The program itself for a null name; other names are unknown (126).
HMODULE WINAPI GetModuleHandleW(LPCWSTR name);
// With GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, name is an address in the module that is asked for.
BOOL WINAPI GetModuleHandleExW(DWORD flags, LPCWSTR name, HMODULE* module);
// The native path of the module; a null module is the program. A text that does not fit is cut,
// with the last error 122.
DWORD WINAPI GetModuleFileNameW(HMODULE module, LPWSTR buffer, DWORD bufferUnits);
