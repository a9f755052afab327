#include "climbing.h"

#include "path_parts.h"

namespace quillon {
namespace {

// Names that the system takes as they are: it shortens no ".." in them, and they may be long.
constexpr TextView kVerbatim = OLESTR("\\\\?\\");

using GetFinalPathName = DWORD(WINAPI*)(HANDLE, LPWSTR, DWORD, DWORD);

// Null on Windows XP. Asked for by its name, or the module would not load there.
GetFinalPathName FindGetFinalPathName() {
  const HMODULE kernel = GetModuleHandleW(L"kernel32.dll");
  if (kernel == nullptr) return nullptr;
  return reinterpret_cast<GetFinalPathName>(
      reinterpret_cast<void*>(GetProcAddress(kernel, "GetFinalPathNameByHandleW")));
}

}  // namespace

// Windows shortens "link\.." to what the link lies in, so that the directories above what it leads
// to would never be seen.
Text RealPath(const Text& path) {
  static const GetFinalPathName getFinalPathName = FindGetFinalPathName();
  if (getFinalPathName == nullptr) return path;
  const HANDLE file =
      CreateFileW(path.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                  OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  if (file == INVALID_HANDLE_VALUE) return path;
  Text real(getFinalPathName(file, nullptr, 0, 0), OLECHAR{0});  // 0 for a volume without a drive
  const DWORD length =
      real.empty() ? 0 : getFinalPathName(file, real.data(), static_cast<DWORD>(real.size()), 0);
  CloseHandle(file);
  if (length == 0 || length >= real.size()) return path;
  real.resize(length);
  return real;
}

bool ClimbToParent(Text& realPath) {
  if (!realPath.starts_with(kVerbatim)) {
    realPath += OLESTR("\\..");
    return true;
  }
  const TextView name = WithoutLastSeparators(realPath);
  const std::size_t separator = name.find_last_of(kPathSeparators);
  if (separator == TextView::npos || separator < kVerbatim.size()) return false;
  realPath.resize(separator + 1);
  return true;
}

}  // namespace quillon
