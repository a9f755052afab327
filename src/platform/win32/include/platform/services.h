// Facts that differ between the systems and that the product asks for by name.
#pragma once

#include "platform/win32.h"

namespace quillon {

// The code page of 8-bit file names, for MultiByteToWideChar and WideCharToMultiByte. Windows'
// 8-bit calls take the ANSI code page. On Linux names are UTF-8 by custom but may hold any bytes;
// CP_UTF8 of this layer carries the undecodable ones as lone surrogates, so every name survives.
inline UINT FileSystemCodePage() {
#ifdef _WIN32
  return CP_ACP;
#else
  return CP_UTF8;
#endif
}

// Brings all that was written to the file system of a directory, whose handle was opened to be read
// before, to the disk: in the time that a few files of their own would take. FALSE, with the last
// error, also for what failed since that opening. Windows lets nobody but administrators do so.
#ifdef _WIN32
inline constexpr bool kFlushesFileSystems = false;
inline BOOL FlushFileSystem(HANDLE) { return FALSE; }
#else
inline constexpr bool kFlushesFileSystems = true;
BOOL FlushFileSystem(HANDLE directory);
#endif

// MoveFileEx without flags, of a file that the caller has looked at and knows to be no directory:
// there is nothing left to ask but whether this process has it open.
#ifdef _WIN32
inline BOOL RenameFile(LPCWSTR from, LPCWSTR to) { return MoveFileExW(from, to, 0); }
#else
BOOL RenameFile(LPCWSTR from, LPCWSTR to);
#endif

// Copies bytes, at most so many, from where one open file stands to where another one does, inside
// the system: the two may share them on the disk afterwards until either is written to. Both then
// stand behind what was copied. 0 bytes at the end of the source, and from files whose size the
// system does not know. FALSE, with the last error, where it cannot be done (on Windows never can):
// then nothing is copied, and reading and writing may do it, or tell which of the two fails.
#ifdef _WIN32
inline BOOL CopyFileBytes(HANDLE, HANDLE, DWORD, LPDWORD) { return FALSE; }
#else
BOOL CopyFileBytes(HANDLE target, HANDLE source, DWORD length, LPDWORD copied);
#endif

}  // namespace quillon
