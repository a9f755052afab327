// All non-DICOM content of one file set: the directories that somebody has named, or else the
// configured one, planned so that none of them gets into the way of the set or of another.
#pragma once

#include <cstdint>
#include <deque>
#include <vector>

#include "fileset/dicom_dir_processor.h"
#include "other_content.h"

namespace quillon {

class OtherContents : public CBaseItem {
 public:
  // Where a file set lies, and what it has of its own there.
  struct Places {
    Text rootDirectory;
    Text otherContentDirectory;  // of the configured content
    Text objectDirectory;        // with the root before it
  };
  OtherContents(CFileUtil& files, const FileSetOptions& options);

  // False, with a sentence, for what OtherContent refuses, for content in the way of the set or of
  // other content, and, where that is not taken, for configured content that cannot be had.
  [[nodiscard]] bool Plan(const Places& places);
  // What Plan found.
  [[nodiscard]] bool HasContent() const;
  [[nodiscard]] std::vector<Text> Files() const;
  [[nodiscard]] std::uint64_t BytesOnDisk() const;
  [[nodiscard]] DiscRoom Room() const;
  // Absolute directories, which are to be there before anything is copied.
  [[nodiscard]] std::vector<Text> Destinations() const;
  // Why there is no configured content, as OtherContent tells it; else empty.
  [[nodiscard]] Text Remark() const;
  [[nodiscard]] Text Gap() const;

  // Changes the working directory. The first failure ends it; what was copied stays.
  [[nodiscard]] bool Copy();

 private:
  [[nodiscard]] bool PlanEach(const Places& places);
  [[nodiscard]] bool CheckAgainstSet(const Places& places);
  [[nodiscard]] bool CheckNames(const Places& places);
  [[nodiscard]] bool FailInTheWay(const OtherContent& content, const Text& path,
                                  const Places& places);

  CFileUtil& files_;
  const FileSetOptions& options_;
  std::deque<OtherContent> contents_;  // that have some, or tell why not
};

}  // namespace quillon
