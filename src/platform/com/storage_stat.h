// What storages and streams say of themselves.
#pragma once

#include <string>
#include <string_view>

#include "platform/com/stream.h"
#include "platform/win32/files.h"

namespace quillon::platform {

// The last part of the path and what the system says of it now; without the name under
// STATFLAG_NONAME. The name is the caller's, to be freed with CoTaskMemFree.
HRESULT statOfPath(const std::u16string& path, DWORD flag, STATSTG* stat);

// data: WIN32_FILE_ATTRIBUTE_DATA or WIN32_FIND_DATAW.
template <typename Data>
void fillStat(const Data& data, STATSTG& stat) {
  const bool isDirectory = (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  stat.type = isDirectory ? STGTY_STORAGE : STGTY_STREAM;
  stat.cbSize.QuadPart =
      isDirectory ? 0 : (std::uint64_t{data.nFileSizeHigh} << 32) | data.nFileSizeLow;
  stat.mtime = data.ftLastWriteTime;
  stat.ctime = data.ftCreationTime;
  stat.atime = data.ftLastAccessTime;
  stat.grfMode = STGM_READ;
}

// Null when memory runs out.
LPOLESTR taskMemoryText(std::u16string_view text);

}  // namespace quillon::platform
