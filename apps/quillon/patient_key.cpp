#include "patient_key.h"

namespace quillon::cli {

std::string patientKey(const ObjectFields& fields) {
  // DOE^JOHN and DOE^JOHN^^ are the same name: trailing separators of empty components say nothing.
  std::string name = fields.patientName;
  name.erase(name.find_last_not_of("^= ") + 1);
  // A backslash separates values in the file and therefore occurs in neither of the two.
  return name + "\\" + fields.patientId;
}

}  // namespace quillon::cli
