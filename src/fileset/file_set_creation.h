// Carries a plan out: moves the objects below the root, writes the DICOMDIR that describes them,
// copies the other content and writes the label. Lives for one run. What fails here is only what
// could not be known before; see file_set_plan.h.
#pragma once

#include "copy_report.h"
#include "file_set_plan.h"
#include "foundation/base_item.h"
#include "foundation/file_util.h"

namespace quillon {

class FileSetCreation : public CBaseItem {
 public:
  // All outlive this object. The root directory exists and belongs to this job. progress, which may
  // be empty, hears of the objects' bytes.
  FileSetCreation(FileSetPlan& plan, CFileUtil& files, const CopyReport::Callback& progress);

  // False, with a sentence, at the first step that fails. What was moved stays moved, and the root
  // is marked as unfinished unless nothing was.
  [[nodiscard]] bool Run();
  // After a failure: whether the patients are to stay for another attempt.
  [[nodiscard]] bool KeepsPatients() const { return keepsPatients_; }
  // Whether the label was reached: it is the host's to read then, even when it could not be
  // written.
  [[nodiscard]] bool HasLabel() const { return hasLabel_; }

 private:
  [[nodiscard]] bool PrepareRoot();
  [[nodiscard]] bool CheckWritable();
  [[nodiscard]] bool MoveObjects();
  [[nodiscard]] bool FlushCopies();
  [[nodiscard]] bool WritePages();
  [[nodiscard]] bool WriteDicomDir();
  [[nodiscard]] bool WriteLabel();

  FileSetPlan& plan_;
  CFileUtil& files_;
  const CopyReport::Callback& progress_;
  bool keepsPatients_ = true;
  bool hasMoved_ = false;
  bool hasLabel_ = false;
};

}  // namespace quillon
