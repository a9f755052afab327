// Which patient a file belongs to, when the user does not say.
#pragma once

#include "foundation/text.h"

namespace quillon::cli {

// From the patient name and the patient ID of a file. Files with the same key are one patient's.
Text patientKey(TextView name, TextView id);

}  // namespace quillon::cli
