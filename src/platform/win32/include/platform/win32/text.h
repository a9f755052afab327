// Code pages and the texts of the system and of the module.
#pragma once

#include <cstdarg>

#include "platform/win32/types.h"

// CP_ACP is Windows-1252 unless the registry says otherwise (value ACP of
// HKEY_LOCAL_MACHINE\SYSTEM\CurrentControlSet\Control\Nls\CodePage). In it every byte has a
// character of its own: the five that the code page leaves undefined are U+0081, U+008D, U+008F,
// U+0090 and U+009D.
inline constexpr UINT CP_ACP = 0;
inline constexpr UINT CP_OEMCP = 1;
// Bytes that are not UTF-8 become lone surrogates U+DC80 to U+DCFF, and those go back to the bytes.
inline constexpr UINT CP_UTF8 = 65001;

inline constexpr DWORD MB_PRECOMPOSED = 0x1;
inline constexpr DWORD MB_ERR_INVALID_CHARS = 0x8;
inline constexpr DWORD WC_ERR_INVALID_CHARS = 0x80;
inline constexpr DWORD WC_NO_BEST_FIT_CHARS = 0x400;

UINT WINAPI GetACP();
extern "C" {

// Lengths of -1 include the terminator. A destination length of 0 asks for the length needed.
// Failure: 0, with 122 (does not fit; the buffer holds as much as does), 87 (arguments, code page),
// 1004 (flags) or 1113 (an undecodable byte with MB_ERR_INVALID_CHARS).
int WINAPI MultiByteToWideChar(UINT codePage, DWORD flags, LPCCH bytes, int byteCount, LPWSTR wide,
                               int wideUnits);
// A character that the code page does not have becomes defaultChar, or "?": there are no characters
// that look alike here, which Windows takes without WC_NO_BEST_FIT_CHARS. UTF-8 has no default.
int WINAPI WideCharToMultiByte(UINT codePage, DWORD flags, LPCWCH wide, int wideUnits, LPSTR bytes,
                               int byteCount, LPCCH defaultChar, LPBOOL usedDefaultChar);

}  // extern "C"

inline constexpr DWORD FORMAT_MESSAGE_ALLOCATE_BUFFER = 0x100;
inline constexpr DWORD FORMAT_MESSAGE_IGNORE_INSERTS = 0x200;
inline constexpr DWORD FORMAT_MESSAGE_FROM_STRING = 0x400;
inline constexpr DWORD FORMAT_MESSAGE_FROM_HMODULE = 0x800;
inline constexpr DWORD FORMAT_MESSAGE_FROM_SYSTEM = 0x1000;

inline constexpr WORD LANG_NEUTRAL = 0;
inline constexpr WORD LANG_ENGLISH = 9;
inline constexpr WORD SUBLANG_NEUTRAL = 0;
inline constexpr WORD SUBLANG_DEFAULT = 1;
constexpr LANGID MAKELANGID(WORD primary, WORD sub) {
  return static_cast<LANGID>((sub << 10) | primary);
}

// The English system text of a code or an HRESULT, ending in CR LF. Only
// FORMAT_MESSAGE_FROM_SYSTEM with FORMAT_MESSAGE_IGNORE_INSERTS, and
// FORMAT_MESSAGE_ALLOCATE_BUFFER (buffer is then the address of a pointer; free with LocalFree).
// Answers the length; 0 with the last error 317 when there is no text.
DWORD WINAPI FormatMessageW(DWORD flags, LPCVOID source, DWORD messageId, DWORD languageId,
                            LPWSTR buffer, DWORD bufferUnits, std::va_list* arguments);
HLOCAL WINAPI LocalFree(HLOCAL memory);

// Copies a text of the module's string table, cut to the buffer, and answers its length. With
// bufferUnits 0, buffer is the address of a pointer that receives the table's own text. Without
// such a text: 0, last error 1814 (1812 when the module has no table) and the buffer as it was.
// Texts lie in blocks of 16 numbers: where another one of the block exists, a missing one is the
// empty text, which is no failure.
int WINAPI LoadStringW(HINSTANCE module, UINT id, LPWSTR buffer, int bufferUnits);
