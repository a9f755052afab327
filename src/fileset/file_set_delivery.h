// The delivery of a finished file set, to a disc or to a directory. Lives for one run.
#pragma once

#include "copy_report.h"
#include "foundation/base_item.h"
#include "foundation/file_util.h"
#include "root_claim.h"

namespace quillon {

struct DeliveryOptions {
  // Of a disc.
  bool isTestRun;
  bool hasFullErase;
  bool isEjected;
  // The source is deleted afterwards, whether or not it was delivered.
  bool isSourceCleared;
  // It stays this job's when it was delivered too.
  bool isSourceHeld;
  // To this directory instead of a disc.
  bool isDirectCopy;
  TextView targetDirectory;
  TextView volumeName;  // of the disc; empty for the usual one
  bool acceptsEmptyFiles;
  bool hasSums;                          // of the source's files, in the source
  const CopyReport::Callback& progress;  // hears of a direct copy; may be empty
};

class FileSetDelivery {
 public:
  // All outlive this object. Sentences are left in errors.
  FileSetDelivery(const DeliveryOptions& options, RootClaim& claim, CFileUtil& files,
                  CBaseItem& errors)
      : options_(options), claim_(claim), files_(files), errors_(errors) {}

  // See CDicomDirProcessor::WriteMedia.
  [[nodiscard]] bool Run(TextView source);

 private:
  [[nodiscard]] bool MakeSums();
  [[nodiscard]] bool CheckTarget();
  [[nodiscard]] bool CheckRoom();
  [[nodiscard]] bool CopyToTarget();
  [[nodiscard]] bool WriteDisc();
  [[nodiscard]] bool ClearSource(bool isDelivered);

  const DeliveryOptions& options_;
  RootClaim& claim_;
  CFileUtil& files_;
  CBaseItem& errors_;
  Text source_;  // both absolute
  Text target_;
  std::uint64_t sizeBytes_ = 0;  // of the source, once it is measured
};

// False, with a sentence, where the platform is too old to record.
[[nodiscard]] bool CheckOperatingSystem(CBaseItem& errors);

}  // namespace quillon
