// The files of a medium: each against the record that names it and against its sum. A file is
// opened once, and read once where its sum is wanted.
#pragma once

#include <cstdint>
#include <memory>
#include <set>
#include <utility>
#include <vector>

#include "dicom/tag_set.h"
#include "directory_records.h"
#include "findings.h"
#include "medium_index.h"
#include "sums_file.h"
#include "verify/verify_medium.h"

namespace quillon {

class HeadReader;

class FileCheck {
 public:
  // isCaseIgnored: the medium is seen through a system that changes the names.
  FileCheck(MediumSource& medium, MediumIndex& index, const SumsFile& sums,
            const VerifyOptions& options, bool isCaseIgnored, Findings& findings,
            VerifyReport& report);
  ~FileCheck();
  FileCheck(const FileCheck&) = delete;
  FileCheck& operator=(const FileCheck&) = delete;

  // All three answer false when the caller has stopped the verification.
  [[nodiscard]] bool CheckNamed(const FileRecord& record);
  // The files that no record has named. isTold: DICOM files among them are findings.
  [[nodiscard]] bool CheckOthers(bool isTold);

 private:
  [[nodiscard]] std::optional<std::size_t> FindFile(const FileRecord& record);
  void Compare(const FileRecord& record, const FaultPlace& place, HeadReader& reader);
  void CompareUids(const FileRecord& record, const FaultPlace& place, const struct FileHead& head);
  void CompareIdentities(const FileRecord& record, const FaultPlace& place,
                         const struct FileHead& head);
  void CheckProfile(const FileRecord& record, const FaultPlace& place, const struct FileHead& head);
  [[nodiscard]] bool CheckOther(std::size_t entry, bool isTold);
  // Reads the rest of the file for its sum.
  [[nodiscard]] bool CheckSum(std::size_t entry, const FaultPlace& place, HeadReader& reader);
  [[nodiscard]] bool IsStopped() const { return options_.isStopped && options_.isStopped(); }
  void Advance(std::uint64_t count);

  MediumSource& medium_;
  MediumIndex& index_;
  const SumsFile& sums_;
  const VerifyOptions& options_;
  bool isCaseIgnored_;
  Findings& findings_;
  VerifyReport& report_;
  DcTagSet kept_;
  std::set<std::pair<std::uint32_t, DcTag>> toldKeys_;  // of records, by their offsets
  std::vector<std::uint32_t> namedAt_;  // offset of the record that names an entry; 0: none yet
  std::size_t repeats_ = 0;             // records that named a file again
  VerifyProgress progress_;
  std::vector<std::uint8_t> buffer_;  // for one file after the other
};

}  // namespace quillon
