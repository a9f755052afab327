// The label of the medium: a few lines that say whose data it holds, when and by what it was made,
// and who hands it out where that is configured.
#pragma once

#include <vector>

#include "fileset/model/patient_list.h"
#include "fileset/root_names.h"
#include "foundation/base_item.h"
#include "foundation/file_util.h"

namespace quillon {

// A text of the message table, and what stands in its place when the table has none.
struct LabelText {
  UINT message;
  const OLECHAR* builtIn;
};

class MediumLabel : public CBaseItem {
 public:
  // leavesOutBadDates: a date that is none has no line, instead of failing the label. hasPages: the
  // medium has pages for a browser beside the objects.
  explicit MediumLabel(bool leavesOutBadDates, bool hasPages = false);

  // For a line that says so, unless it is one of one.
  void SetPlaceAmongMedia(unsigned number, unsigned count) {
    number_ = number;
    count_ = count;
  }

  // From a list of at least one patient. False, with a sentence, when a date of the patient or the
  // study is none, the only patient has no study, or the institution cannot be read.
  [[nodiscard]] bool Compose(const CPatientList& patients);
  // Lines joined by line feeds, none at the end.
  [[nodiscard]] const Text& GetText() const { return text_; }
  // The lines that were left out.
  [[nodiscard]] const std::vector<Text>& LeftOut() const { return leftOut_; }

 private:
  [[nodiscard]] Text Lookup(const LabelText& text) const;
  void AppendLine(const LabelText& title, TextView value = {});
  [[nodiscard]] bool AppendInstitution();
  [[nodiscard]] bool AppendPatient(const CPatient& patient);
  // No line for a date that does not have the eight characters of one.
  [[nodiscard]] bool AppendDate(const LabelText& title, TextView date);

  bool leavesOutBadDates_;
  unsigned number_ = 1;
  unsigned count_ = 1;
  bool hasPages_;
  Text text_;
  std::vector<Text> leftOut_;
};

// Writes LABEL.TXT in the root: UTF-16 little endian without a byte-order mark, a line feed at the
// end. False, with a sentence left in errors, also when the path would be too long.
[[nodiscard]] bool WriteLabelFile(const Text& label, TextView rootDirectory, CFileUtil& files,
                                  CBaseItem& errors);

}  // namespace quillon
