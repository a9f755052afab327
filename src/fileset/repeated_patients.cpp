#include "repeated_patients.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <unordered_map>
#include <utility>

namespace quillon {

namespace {

using Field = const Text& (CPatient::*)() const;

void FindBy(Field same, Field other, bool isSameId, const CPatientList& patients,
            std::vector<RepeatedPatient>& found) {
  std::unordered_map<TextView, std::size_t> places;
  std::vector<RepeatedPatient> groups;
  std::set<std::pair<std::size_t, TextView>> seen;
  for (std::size_t p = 0; p < patients.GetCount(); ++p) {
    const CPatient& patient = *patients.At(p);
    const Text& key = (patient.*same)();
    if (key.empty()) continue;
    const auto [at, isNew] = places.emplace(key, groups.size());
    if (isNew) groups.push_back({isSameId, key, {}});
    const Text& value = (patient.*other)();
    if (seen.emplace(at->second, value).second) groups[at->second].others.push_back(value);
  }
  std::ranges::copy_if(groups, std::back_inserter(found),
                       [](const RepeatedPatient& group) { return group.others.size() > 1; });
}

}  // namespace

std::vector<RepeatedPatient> FindRepeatedPatients(const CPatientList& patients) {
  std::vector<RepeatedPatient> found;
  FindBy(&CPatient::PatientId, &CPatient::Name, /*isSameId=*/true, patients, found);
  FindBy(&CPatient::Name, &CPatient::PatientId, /*isSameId=*/false, patients, found);
  return found;
}

}  // namespace quillon
