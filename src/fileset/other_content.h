// One directory of non-DICOM content, the workstation's or another: where it comes from, how much
// it is, whether all of it can be copied, and the copy of it that lies beside the DICOM objects.
#pragma once

#include <cstdint>
#include <vector>

#include "fileset/disc_room.h"
#include "foundation/base_item.h"
#include "foundation/file_util.h"

namespace quillon {

// Bytes that a file of this size takes on a disk.
inline std::uint64_t RoundedToBlocks(std::uint64_t sizeBytes) {
  constexpr std::uint64_t kBlockBytes = 4096;
  return (sizeBytes + kBlockBytes - 1) / kBlockBytes * kBlockBytes;
}

class OtherContent : public CBaseItem {
 public:
  // acceptsEmptyFiles: empty files are copied like others. Otherwise one of them fails the copy.
  OtherContent(CFileUtil& files, bool acceptsEmptyFiles);

  // The configured directory; empty when the value is. False, with the registry's sentence, when it
  // cannot be read; isMissing then tells whether that is because nothing was ever configured.
  [[nodiscard]] bool ReadSourceDirectory(Text& directory, bool& isMissing);

  // Looks for the configured source and goes through all of it as the copy below rootDirectory
  // would. True when there is nothing to copy; when no source is configured with the registry's
  // sentence left as the remark. False, with the sentence that the copy would fail with, or because
  // the root lies in the source. An otherContentDirectory of "." is the root.
  [[nodiscard]] bool PlanConfigured(const Text& rootDirectory, TextView otherContentDirectory);
  // The same of a source that somebody has named: it must be there, and outside the root.
  [[nodiscard]] bool PlanNamed(const Text& source, const Text& rootDirectory,
                               TextView otherContentDirectory);
  // What they found.
  [[nodiscard]] bool HasContent() const { return hasContent_; }
  [[nodiscard]] const Text& Source() const { return source_; }
  [[nodiscard]] std::uint64_t BytesOnDisk() const { return bytesOnDisk_; }
  [[nodiscard]] const DiscRoom& Room() const { return room_; }
  // Where it will lie, absolute; empty without content.
  [[nodiscard]] const Text& Destination() const { return destination_; }
  // What the copy makes.
  [[nodiscard]] const std::vector<Text>& Files() const { return planned_; }
  [[nodiscard]] const std::vector<Text>& Directories() const { return plannedDirectories_; }
  // Why there is none, when the configuration cannot be read; else empty.
  [[nodiscard]] const Text& Remark() const { return remark_; }
  // Why there is none although there should be: something is configured, and cannot be had.
  [[nodiscard]] const Text& Gap() const { return gap_; }

  // Of all files below the configured source; 0 when there is none. False, with a sentence.
  [[nodiscard]] bool GetSize(std::uint64_t& sizeBytes);
  [[nodiscard]] bool CountFiles(std::uint32_t& count);

  // Changes the working directory. The first failure ends it; what was copied stays.
  [[nodiscard]] bool Copy();

 private:
  void Forget();
  [[nodiscard]] bool PlanCopy(const Text& rootDirectory, TextView otherContentDirectory);
  template <typename Total>
  [[nodiscard]] bool Measure(bool (CFileUtil::*measure)(Total&, TextView, TextView, bool),
                             Total& total);
  [[nodiscard]] bool PlanDirectory(const Text& source, const Text& destination,
                                   std::vector<FileIdentity>& above);
  [[nodiscard]] bool PlanFile(const Text& source, const Text& destination);

  CFileUtil& files_;
  bool acceptsEmptyFiles_;
  bool hasContent_ = false;
  std::uint64_t bytesOnDisk_ = 0;
  DiscRoom room_;
  Text source_;
  Text destination_;
  Text remark_;
  Text gap_;
  std::vector<Text> planned_;
  std::vector<Text> plannedDirectories_;
};

}  // namespace quillon
