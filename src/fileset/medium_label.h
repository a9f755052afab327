// The label of the medium: a few lines that say whose data it holds, when and by what it was made.
#pragma once

#include "fileset/model/patient_list.h"
#include "foundation/base_item.h"
#include "foundation/buffer.h"

namespace quillon {

// A text of the message table, and what stands in its place when the table has none.
struct LabelText {
  UINT message;
  const OLECHAR* builtIn;
};

class MediumLabel : public CBaseItem {
 public:
  MediumLabel();

  // From a list of at least one patient. False, with a sentence, when a date of the patient or the
  // study is none, or the only patient has no study.
  bool Compose(const CPatientList& patients);
  // Lines joined by line feeds, none at the end.
  [[nodiscard]] const Text& GetText() const { return text_; }
  // As LABEL.TXT holds it: UTF-16 little endian without a byte-order mark, a line feed at the end.
  bool Encode(CBuffer& buffer);

 private:
  [[nodiscard]] Text Lookup(const LabelText& text) const;
  void AppendLine(const LabelText& title, TextView value = {});
  bool AppendPatient(const CPatient& patient);
  // No line for a date that does not have the eight characters of one.
  bool AppendDate(const LabelText& title, TextView date);

  Text text_;
};

}  // namespace quillon
