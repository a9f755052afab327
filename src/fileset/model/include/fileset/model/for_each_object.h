// Walks patients, studies, series and objects in list order, then the objects of no patient.
#pragma once

#include "fileset/model/patient_list.h"

namespace quillon {

// Calls visit(const CDicomObjectProperties&) for each object until it answers false. False when a
// call did.
template <typename Visit>
[[nodiscard]] bool ForEachObject(const CPatientList& patients, Visit visit) {
  const auto visitAll = [&visit](const CDicomObjectList& objects) {
    for (std::size_t i = 0; i < objects.GetCount(); ++i) {
      if (!visit(static_cast<const CDicomObjectProperties&>(*objects.At(i)))) return false;
    }
    return true;
  };
  for (std::size_t p = 0; p < patients.GetCount(); ++p) {
    const CStudyList& studies = patients.At(p)->Studies();
    for (std::size_t s = 0; s < studies.GetCount(); ++s) {
      const CSeriesList& series = studies.At(s)->Series();
      for (std::size_t e = 0; e < series.GetCount(); ++e) {
        if (!visitAll(series.At(e)->Images())) return false;
      }
    }
  }
  return visitAll(patients.TopLevelObjects());
}

}  // namespace quillon
