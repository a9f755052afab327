// Status of a file in Windows' terms.
#pragma once

#include <sys/stat.h>

#include "platform/win32/files.h"

namespace quillon::platform {

// As fstatat, following links. isLink tells whether the name itself is a link; a link that leads
// nowhere answers as an empty file. False leaves errno.
bool statusAt(int directory, const char* name, struct stat& status, bool& isLink);

// Whether a file is kept from being deleted and replaced, as a read-only one is on Windows. Only
// one whose mark the caller can take away: another user's file goes by the rights of its directory,
// and one with other names can go without those losing the mark.
bool isKept(const struct stat& status);

DWORD attributesOf(const struct stat& status, bool isLink);
FILETIME fileTimeOf(const timespec& time);

template <typename Data>
void fillData(Data& data, const struct stat& status, bool isLink) {
  const std::uint64_t size =
      S_ISREG(status.st_mode) ? static_cast<std::uint64_t>(status.st_size) : 0;
  data.dwFileAttributes = attributesOf(status, isLink);
  // Unix has no creation time that all file systems keep; the older of the two changes is nearest.
  const bool contentIsOlder = status.st_mtim.tv_sec < status.st_ctim.tv_sec;
  data.ftCreationTime = fileTimeOf(contentIsOlder ? status.st_mtim : status.st_ctim);
  data.ftLastAccessTime = fileTimeOf(status.st_atim);
  data.ftLastWriteTime = fileTimeOf(status.st_mtim);
  data.nFileSizeHigh = static_cast<DWORD>(size >> 32);
  data.nFileSizeLow = static_cast<DWORD>(size & 0xFFFFFFFF);
}

}  // namespace quillon::platform
