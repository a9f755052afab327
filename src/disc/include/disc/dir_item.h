// The directories that a disc writer stages.
#pragma once

#include <cstdint>

#include "disc/copied_list.h"
#include "foundation/file_util.h"

namespace quillon {

class CImapi2DirItem : public CBaseItem, public CKeyedItem {
 public:
  CImapi2DirItem(bool includeBaseDirectory, bool excluded);

  // Trimmed; an empty one is refused with a sentence.
  bool SetPath(TextView path);
  [[nodiscard]] const Text& Path() const { return path_; }
  // True: the directory itself lies at the image's root, else its content.
  [[nodiscard]] bool IncludeBaseDirectory() const { return includeBaseDirectory_; }
  // An excluded directory contributes nothing and counts zero bytes.
  [[nodiscard]] bool IsExcluded() const { return excluded_; }
  // The bytes of all files below the path; 0, with the error text set, when they cannot be counted.
  [[nodiscard]] std::uint64_t MeasureBytes();

 private:
  bool excluded_;
  bool includeBaseDirectory_;
  Text path_;
  CFileUtil files_;
};

class CImapi2DirItemList : public CCopiedList<CImapi2DirItem> {
 public:
  enum class Search : std::int32_t { ByKey = 0, ByPath = 1 };

  explicit CImapi2DirItemList(bool allowDuplicates);

  // An item without a key gets its position as key. Without duplicates, an item whose key or path
  // is there already is success, and nothing is added.
  [[nodiscard]] bool Stage(const CImapi2DirItem& item);
  // Compares trimmed texts exactly; found is null when there is no such item.
  [[nodiscard]] bool Find(Search search, TextView value, CImapi2DirItem*& found);
  // Sum of the items' bytes.
  [[nodiscard]] std::uint64_t MeasureBytes();

 private:
  bool allowDuplicates_;
};

}  // namespace quillon
