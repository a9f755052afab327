#include "disc/dir_item.h"

#include "foundation/working_directory_scope.h"

namespace quillon {
namespace {

constexpr TextView kEveryFile = OLESTR("*.*");

// What follows "the directory" in messages: a blank and the path when there is one, and the stop.
Text EndOfSentence(const Text& path) {
  return path.empty() ? Text(OLESTR(".")) : OLESTR(" ") + path + OLESTR(".");
}

}  // namespace

CImapi2DirItem::CImapi2DirItem(bool includeBaseDirectory, bool excluded)
    : excluded_(excluded), includeBaseDirectory_(includeBaseDirectory) {
  SetClassName(OLESTR("CImapi2DirItem"));
}

bool CImapi2DirItem::SetPath(TextView path) {
  Text trimmed(TrimmedView(path));
  if (trimmed.empty()) return Fail(kMsgStagedDirectoryInvalid, {EndOfSentence(trimmed)});
  path_ = std::move(trimmed);
  return true;
}

std::uint64_t CImapi2DirItem::MeasureBytes() {
  if (excluded_) return 0;
  const WorkingDirectoryScope workingDirectory;
  std::uint64_t sizeBytes = 0;
  Text absolutePath;  // the walk leaves the directory that a relative path starts from
  if (files_.ChangeDirectory(path_) && files_.GetCurrentDirectory(absolutePath) &&
      files_.GetDirectorySize(sizeBytes, absolutePath, kEveryFile, /*recurse=*/true)) {
    return sizeBytes;
  }
  SetErrorMessage(kMsgStagedSourceInvalid, {EndOfSentence(path_)});
  return 0;
}

CImapi2DirItemList::CImapi2DirItemList(bool allowDuplicates) : allowDuplicates_(allowDuplicates) {
  SetClassName(OLESTR("CImapi2DirItemList"));
}

bool CImapi2DirItemList::Stage(const CImapi2DirItem& item) {
  CImapi2DirItem keyed = item;
  if (keyed.GetKey().empty() && !keyed.SetKey(NextKey())) return Fail(kMsgCannotSetObjectKey);
  if (!allowDuplicates_) {
    CImapi2DirItem* found = nullptr;
    if (!Find(Search::ByKey, keyed.GetKey(), found)) return false;
    if (found == nullptr && !Find(Search::ByPath, keyed.Path(), found)) return false;
    if (found != nullptr) return true;
  }
  return AddCopy(keyed) || Fail(kMsgCannotStageDirectory);
}

bool CImapi2DirItemList::Find(Search search, TextView value, CImapi2DirItem*& found) {
  found = nullptr;
  if (search != Search::ByKey && search != Search::ByPath) return Fail(kMsgItemSearchInvalid);
  const TextView wanted = TrimmedView(value);
  for (std::size_t i = 0; i < GetCount() && found == nullptr; ++i) {
    CImapi2DirItem* const item = At(i);
    const Text& text = search == Search::ByKey ? item->GetKey() : item->Path();
    if (TrimmedView(text) == wanted) found = item;
  }
  return true;
}

std::uint64_t CImapi2DirItemList::MeasureBytes() {
  std::uint64_t total = 0;
  for (std::size_t i = 0; i < GetCount(); ++i) total += At(i)->MeasureBytes();
  return total;
}

}  // namespace quillon
