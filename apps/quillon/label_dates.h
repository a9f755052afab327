// The dates that the label of a file set shows: of one patient the birth date, of one study its
// date, each as the first file of the patient or study has it.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "object_fields.h"

namespace quillon::cli {

// False for a date of eight characters that the system cannot format. One of another length is not
// shown at all.
bool isFitForLabel(std::string_view date);

class LabelDates {
 public:
  void add(const std::string& patientKey, const ObjectFields& fields);
  // A sentence when the label cannot be made.
  [[nodiscard]] std::optional<std::string> problem() const;

 private:
  struct First {
    std::string patientKey;
    std::string studyUid;
    std::string birthDate;
    std::string studyDate;
  };
  std::optional<First> first_;
  bool hasOnePatient_ = true;
  bool hasOneStudy_ = true;
};

}  // namespace quillon::cli
