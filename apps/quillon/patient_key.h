// The key that decides which objects fall under one patient.
#pragma once

#include <string>

#include "object_fields.h"

namespace quillon::cli {

// Made of the patient's name and ID. Never empty, also for an object without either.
std::string patientKey(const ObjectFields& fields);

}  // namespace quillon::cli
