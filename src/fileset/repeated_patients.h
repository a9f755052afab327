// Patients of a job that may be one and the same.
#pragma once

#include <vector>

#include "fileset/model/patient_list.h"
#include "fileset/planned_file_set.h"

namespace quillon {

// Each ID that stands with several names, then each name that stands with several IDs. An empty ID
// or name is nobody's.
std::vector<RepeatedPatient> FindRepeatedPatients(const CPatientList& patients);

}  // namespace quillon
