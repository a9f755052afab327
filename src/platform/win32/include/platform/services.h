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

// Brings all that was written to the file system of a directory to the disk, in the time that a few
// files of their own would take. Windows lets nobody but administrators do that: there
// CanFlushFileSystem answers FALSE, and so for a directory that cannot be read. A failure leaves
// the last error.
#ifdef _WIN32
inline BOOL CanFlushFileSystem(LPCWSTR) { return FALSE; }
inline BOOL FlushFileSystem(LPCWSTR) { return FALSE; }
#else
BOOL CanFlushFileSystem(LPCWSTR directory);
BOOL FlushFileSystem(LPCWSTR directory);
#endif

}  // namespace quillon
