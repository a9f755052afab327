#include "read_only.h"

namespace quillon {
namespace {

bool HasOtherNames(const Text& path) {
  const HANDLE file =
      CreateFileW(path.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                  OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  if (file == INVALID_HANDLE_VALUE) return true;
  BY_HANDLE_FILE_INFORMATION data{};
  const bool hasOne = GetFileInformationByHandle(file, &data) != FALSE && data.nNumberOfLinks == 1;
  CloseHandle(file);
  return !hasOne;
}

}  // namespace

bool ClearReadOnly(const Text& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) return false;
  // The attributes of a link can be those of what it leads to, which is not to be touched.
  if ((attributes & FILE_ATTRIBUTE_READONLY) == 0) return false;
  if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) return false;
  return SetFileAttributesW(path.c_str(), attributes & ~FILE_ATTRIBUTE_READONLY) != FALSE;
}

bool ClearReadOnlyOfSoleName(const Text& path) {
  return !HasOtherNames(path) && ClearReadOnly(path);
}

}  // namespace quillon
