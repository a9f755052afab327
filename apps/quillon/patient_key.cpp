#include "patient_key.h"

namespace quillon::cli {

Text patientKey(TextView name, TextView id) {
  // DOE^JOHN and DOE^JOHN^^ are the same name: trailing separators of empty components say nothing.
  Text key(name.substr(0, name.find_last_not_of(OLESTR("^= ")) + 1));
  // A backslash separates values in the file and therefore occurs in neither of the two.
  return key.append(OLESTR("\\")).append(id);
}

}  // namespace quillon::cli
