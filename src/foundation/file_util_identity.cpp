// The part of CFileUtil that tells files apart by what they are, not by their names.
#include "climbing.h"
#include "file_identity.h"
#include "foundation/file_util.h"
#include "path_parts.h"

namespace quillon {

bool ReadFacts(HANDLE file, FileIdentity& identity, FileStamp& stamp) {
  BY_HANDLE_FILE_INFORMATION data{};
  if (GetFileInformationByHandle(file, &data) == FALSE) return false;
  identity.volume = data.dwVolumeSerialNumber;
  identity.index = (std::uint64_t{data.nFileIndexHigh} << 32) | data.nFileIndexLow;
  stamp = StampOf(data);
  return true;
}

bool ReadIdentity(HANDLE file, FileIdentity& identity) {
  FileStamp stamp;
  return ReadFacts(file, identity, stamp);
}

bool ReadIdentity(const Text& path, FileIdentity& identity) {
  // Opened for nothing but questions, so that nobody who has it open is in the way.
  const HANDLE file =
      CreateFileW(path.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                  OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  const bool isRead = ReadIdentity(file, identity);
  const DWORD code = GetLastError();
  CloseHandle(file);
  SetLastError(code);
  return isRead;
}

namespace {

// Shortens the path to the part of it that exists. False when nothing of it does.
bool FindExisting(Text& path, FileIdentity& identity) {
  constexpr TextView kSeparators = OLESTR("\\/");
  while (!ReadIdentity(path, identity)) {
    const std::size_t lastUnit = path.find_last_not_of(kSeparators);
    if (lastUnit == Text::npos) return false;
    const std::size_t separator = path.find_last_of(kSeparators, lastUnit);
    if (separator == Text::npos) return false;
    path.resize(separator + 1);
  }
  return true;
}

}  // namespace

bool CFileUtil::GetFileIdentity(TextView path, FileIdentity& identity) {
  if (!ValidatePath(path)) return false;
  return ReadIdentity(Text(path), identity) || Fail(kMsgPathNotFound, {path});
}

bool CFileUtil::GetFreeBytes(TextView directory, std::uint64_t& bytes) {
  if (!ValidatePath(directory)) return false;
  // A network path is asked for by its directory, with a separator at its end.
  const Text name = JoinPath(directory, {});
  ULARGE_INTEGER freeToUser{};
  if (GetDiskFreeSpaceExW(name.c_str(), &freeToUser, nullptr, nullptr) == FALSE) {
    return FailAt(directory, kMsgPathNotFound, {directory});
  }
  bytes = freeToUser.QuadPart;
  return true;
}

bool CFileUtil::IsLink(TextView path) {
  const DWORD attributes = GetFileAttributesW(Text(WithoutLastSeparators(path)).c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

bool CFileUtil::LiesWithin(TextView path, TextView directory) {
  FileIdentity wanted;
  if (!ReadIdentity(Text(directory), wanted)) return false;
  Text current(path);
  FileIdentity identity;
  if (!FindExisting(current, identity)) return false;
  current = RealPath(current);
  // The root's parent is the root.
  for (FileIdentity parent; !(identity == wanted); identity = parent) {
    if (!ClimbToParent(current) || !ReadIdentity(current, parent) || parent == identity) {
      return false;
    }
  }
  return true;
}

}  // namespace quillon
