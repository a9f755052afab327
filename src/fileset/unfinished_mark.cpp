#include "unfinished_mark.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "dicomobjects/dicom_util.h"
#include "path_join.h"
#include "platform/services.h"

namespace quillon {

namespace {

constexpr std::string_view kTitle = "Unfinished file set";
constexpr std::string_view kMoved = "moved";
constexpr std::string_view kCopied = "copied";

// The list of a large set is not held whole.
constexpr std::size_t kMostBytesAtOnce = std::size_t{256} << 10;

Text Below(const Text& root, TextView name) {
  Text path = root;
  if (!EndsInSeparator(path)) path += OLESTR('\\');
  return path.append(name);
}

// Cuts the text up to its next line end off.
std::string_view TakeLine(std::string_view& text) {
  const std::size_t end = std::min(text.find('\n'), text.size());
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return line;
}

// A source may have a line end in its name, which the list must not have.
std::string Line(const Text& text) {
  std::string line = NarrowText(text, FileSystemCodePage());
  std::replace(line.begin(), line.end(), '\n', '?');
  return line;
}

bool IsFile(const Text& path, CFileUtil& files) {
  WIN32_FILE_ATTRIBUTE_DATA data{};
  return files.GetFileAttributes(path, data) &&
         (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

std::size_t CountPresent(const Text& root, std::string_view list, CFileUtil& files) {
  std::size_t count = 0;
  while (!list.empty()) {
    const std::string_view line = TakeLine(list);
    const Text fileId =
        WidenText(std::string(line.substr(0, line.find('\t'))), FileSystemCodePage());
    if (!fileId.empty() && files.PathExists(Below(root, fileId))) ++count;
  }
  return count;
}

}  // namespace

RootState ReadRootState(const Text& root, CFileUtil& files, std::size_t& objectCount) {
  objectCount = 0;
  const Text mark = Below(root, kUnfinishedMarkName);
  const bool hasDicomDir = IsFile(Below(root, kDicomDirName), files);
  if (!IsFile(mark, files)) return hasDicomDir ? RootState::Finished : RootState::Free;
  CBuffer buffer;
  if (!CDicomUtil::ReadUNCToBuffer(mark, 0, 0, buffer)) {
    objectCount = 1;
    return RootState::Unfinished;
  }
  std::string_view text(reinterpret_cast<const char*>(buffer.GetData()), buffer.GetSize());
  TakeLine(text);
  const bool sourcesStay = TakeLine(text) == kCopied;
  objectCount = CountPresent(root, text, files);
  if (objectCount == 0) return hasDicomDir ? RootState::Finished : RootState::UnfinishedCopies;
  return sourcesStay ? RootState::UnfinishedCopies : RootState::Unfinished;
}

bool WriteUnfinishedMark(const Text& root, const std::vector<PlannedObject>& objects,
                         bool sourcesStay, CFileUtil& files) {
  std::string text(kTitle);
  text.append("\n").append(sourcesStay ? kCopied : kMoved).append("\n");
  const Text mark = Below(root, kUnfinishedMarkName);
  bool isBegun = false;
  const auto write = [&] {
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    const bool isWritten = files.WriteData(bytes, static_cast<std::uint32_t>(text.size()), mark,
                                           /*append=*/isBegun);
    isBegun = true;
    text.clear();
    return isWritten;
  };
  for (const PlannedObject& one : objects) {
    if (text.size() >= kMostBytesAtOnce && !write()) return false;
    text.append(Line(one.FileId())).append("\t").append(Line(one.source.Get())).append("\n");
  }
  return write();
}

// On a full disk there is no mark, and that is no reason to keep anything.
void MarkForRemoval(const Text& root, CFileUtil& files) {
  static_cast<void>(WriteUnfinishedMark(root, {}, /*sourcesStay=*/true, files));
  const Text dicomDir = Below(root, kDicomDirName);
  if (IsFile(dicomDir, files)) static_cast<void>(files.DeleteFile(dicomDir));
}

bool RemoveUnfinishedMark(const Text& root, CFileUtil& files) {
  const Text mark = Below(root, kUnfinishedMarkName);
  return !IsFile(mark, files) || files.DeleteFile(mark);
}

}  // namespace quillon
