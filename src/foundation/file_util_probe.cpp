// The part of CFileUtil that finds out whether an operation on a file would work, without doing it.
#include "foundation/file_util.h"

namespace quillon {
namespace {

// The right DELETE, by a name that no macro of Windows' headers takes.
constexpr DWORD kDeleteRight = 0x00010000;
constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

HANDLE Open(const Text& path, DWORD access) {
  return CreateFileW(path.c_str(), access, kShareAll, nullptr, OPEN_EXISTING, 0, nullptr);
}

std::uint64_t Wide(DWORD high, DWORD low) { return std::uint64_t{high} << 32 | low; }

}  // namespace

bool CFileUtil::ProbeFile(TextView path, bool forMoving, FileFacts& facts) {
  facts = FileFacts{};
  WIN32_FILE_ATTRIBUTE_DATA attributes{};
  if (!GetFileAttributes(path, attributes)) return false;
  // A pipe, say, could wait for ever.
  if ((attributes.dwFileAttributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_DEVICE)) != 0) {
    return Fail(kMsgNotAValidFile, {path});
  }
  const Text name(path);
  HANDLE file = Open(name, forMoving ? GENERIC_READ | kDeleteRight : GENERIC_READ);
  if (file == INVALID_HANDLE_VALUE && forMoving) {
    // Either right may be missing; what is left to say differs.
    file = Open(name, GENERIC_READ);
    if (file != INVALID_HANDLE_VALUE) {
      CloseHandle(file);
      return Fail(kMsgCannotDeleteFile, {path});
    }
  }
  if (file == INVALID_HANDLE_VALUE) return Fail(kMsgCannotOpenFile, {path});
  BY_HANDLE_FILE_INFORMATION data{};
  const bool isRead = GetFileInformationByHandle(file, &data) != FALSE;
  CloseHandle(file);
  if (!isRead) return Fail(kMsgCannotOpenFile, {path});
  facts.identity = {data.dwVolumeSerialNumber, Wide(data.nFileIndexHigh, data.nFileIndexLow)};
  facts.stamp = {Wide(data.nFileSizeHigh, data.nFileSizeLow),
                 Wide(data.ftLastWriteTime.dwHighDateTime, data.ftLastWriteTime.dwLowDateTime)};
  facts.links = data.nNumberOfLinks;
  facts.isLink = (attributes.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
  facts.isEmptyFile = facts.stamp.sizeBytes == 0;
  return !facts.isEmptyFile || Fail(kMsgNotAValidFile, {path});
}

}  // namespace quillon
