#include "foundation/file_util.h"

#include <algorithm>
#include <bitset>

#include "path_parts.h"

namespace quillon {
namespace {

constexpr TextView kDirectoryInvalidChars = OLESTR(":*?\"<>|");
constexpr TextView kNameInvalidChars = OLESTR("\\/:*?\"<>|");
constexpr TextView kTempSubdirectoryName = OLESTR("QUILLON");

// Where the separators of a directory part stand as no path has them; npos when all is well.
std::size_t FindBadSeparators(TextView drive, TextView directory) {
  const auto isPair = [](OLECHAR a, OLECHAR b) { return IsPathSeparator(a) && IsPathSeparator(b); };
  if (std::ranges::adjacent_find(directory, isPair) == directory.end()) return TextView::npos;
  constexpr TextView kDoubled[] = {OLESTR("\\\\"), OLESTR("//")};
  constexpr TextView kTripled[] = {OLESTR("\\\\\\"), OLESTR("///")};
  for (std::size_t kind = 0; kind < std::size(kDoubled); ++kind) {
    // Two of them lead a network path, which then may not hold three.
    const bool isNetwork = drive.empty() && directory.starts_with(kDoubled[kind]);
    const std::size_t at = directory.find(isNetwork ? kTripled[kind] : kDoubled[kind]);
    if (at != TextView::npos) return at;
  }
  const std::size_t at = directory.find(OLESTR("\\/"));
  return at != TextView::npos ? at : directory.find(OLESTR("/\\"));
}

// Whether any of the characters, all of them ASCII, is in the text.
bool HasAnyOf(TextView text, TextView characters) {
  std::bitset<128> wanted;
  for (const OLECHAR character : characters) wanted.set(character);
  return std::ranges::any_of(
      text, [&wanted](OLECHAR unit) { return unit < wanted.size() && wanted[unit]; });
}

std::uint64_t SizeOf(const WIN32_FILE_ATTRIBUTE_DATA& data) {
  return (std::uint64_t{data.nFileSizeHigh} << 32) | data.nFileSizeLow;
}

bool IsDirectory(const WIN32_FILE_ATTRIBUTE_DATA& data) {
  return (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

}  // namespace

CFileUtil::CFileUtil()
    : fileNameInvalidChars_(kNameInvalidChars),
      extensionInvalidChars_(kNameInvalidChars),
      directoryInvalidChars_(kDirectoryInvalidChars),
      tempSubdirectoryName_(kTempSubdirectoryName) {
  SetClassName(OLESTR("CFileUtil"));
}

bool CFileUtil::Split(TextView path, CPathInfo& parts) {
  return parts.Split(path) || FailAs(parts);
}

bool CFileUtil::HasDrive(TextView path) {
  return path.size() <= kMaxPathChars && !SplitPath(path).drive.empty();
}

bool CFileUtil::ValidatePath(TextView path) {
  if (path.empty()) return Fail(kMsgPathNameInvalid);
  if (path.size() > kMaxPathChars) {
    return Fail(kMsgPathNameTooLong, {path, NumberText(kMaxPathChars)});
  }
  const PathParts parts = SplitPath(path);
  if (!parts.drive.empty() && !IsDriveLetter(parts.drive.front())) {
    return Fail(kMsgDriveNameInvalid, {parts.drive});
  }
  if (!CheckDirectoryPart(parts.drive, parts.directory)) return false;
  if (!ValidateName(parts.fileName)) return false;
  if (HasAnyOf(parts.extension, extensionInvalidChars_)) {
    return Fail(kMsgExtensionCharacters, {parts.extension, extensionInvalidChars_});
  }
  return true;
}

bool CFileUtil::CheckDirectoryPart(TextView drive, TextView directory) {
  if (HasAnyOf(directory, directoryInvalidChars_)) {
    return Fail(kMsgDirectoryCharacters, {directory, directoryInvalidChars_});
  }
  const std::size_t at = FindBadSeparators(drive, directory);
  if (at != TextView::npos) {
    return Fail(kMsgDirectoryCharacters, {directory.substr(at), directoryInvalidChars_});
  }
  return true;
}

bool CFileUtil::ValidateName(TextView name) {
  if (!HasAnyOf(name, fileNameInvalidChars_)) return true;
  return Fail(kMsgFilenameCharacters, {name, fileNameInvalidChars_});
}

bool CFileUtil::PathExists(TextView path) {
  WIN32_FILE_ATTRIBUTE_DATA data;
  return GetFileAttributes(path, data);
}

bool CFileUtil::GetFileAttributes(TextView path, WIN32_FILE_ATTRIBUTE_DATA& data) {
  return ValidatePath(path) && QueryAttributes(Text(path), data);
}

bool CFileUtil::QueryAttributes(const Text& path, WIN32_FILE_ATTRIBUTE_DATA& data) {
  if (GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data) != FALSE) return true;
  return FailAt(path, kMsgPathNotFound, {path});
}

bool CFileUtil::FailAt(TextView path, UINT id, std::initializer_list<TextArg> args) {
  return FailAt(path, GetLastError(), id, args);
}

bool CFileUtil::FailAt(TextView path, DWORD code, UINT id, std::initializer_list<TextArg> args) {
  failedPath_.assign(path);
  failedReason_ = code == ERROR_SUCCESS ? Text() : SystemText(code);
  return args.size() == 0 ? Fail(id) : Fail(id, args);
}

void CFileUtil::ForgetFailure() {
  failedPath_.clear();
  failedReason_.clear();
}

bool CFileUtil::GetFileSize(TextView path, std::uint32_t& sizeBytes) {
  WIN32_FILE_ATTRIBUTE_DATA data;
  if (!GetFileAttributes(path, data)) return false;
  // Only the low half is looked at: a file of a whole multiple of 4 GiB is refused too.
  if (IsDirectory(data) || data.nFileSizeLow == 0) return Fail(kMsgNotAValidFile, {path});
  sizeBytes = data.nFileSizeLow;
  return true;
}

bool CFileUtil::GetFileSize64(TextView path, std::uint64_t& sizeBytes) {
  WIN32_FILE_ATTRIBUTE_DATA data;
  if (!GetFileAttributes(path, data)) return false;
  if (IsDirectory(data) || (SizeOf(data) == 0 && !acceptEmptyFiles_)) {
    return FailAt(path, ERROR_SUCCESS, kMsgNotAValidFile, {path});
  }
  sizeBytes = SizeOf(data);
  return true;
}

bool CFileUtil::GetTempDirectory(Text& out, bool create, bool addSubdirectory) {
  OLECHAR directory[kMaxPathChars + 1];
  const DWORD length = GetTempPathW(static_cast<DWORD>(std::size(directory)), directory);
  if (length == 0 || length >= std::size(directory)) {
    // What does not fit is no failure for the platform, which answers with its length.
    if (length != 0) SetLastError(ERROR_FILENAME_EXCED_RANGE);
    SetErrorFromLastError();
    return false;
  }
  out.assign(directory, length);
  if (addSubdirectory) out += tempSubdirectoryName_;
  // An existing directory is a failure here too.
  if (create && SHCreateDirectoryExW(nullptr, out.c_str(), nullptr) != ERROR_SUCCESS) {
    return Fail(kMsgCannotCreateDirectory, {out});
  }
  return true;
}

}  // namespace quillon
