#include "pages/medium_model.h"

#include <algorithm>

namespace quillon {

namespace {

constexpr std::size_t kMostNameChars = 8;
constexpr const OLECHAR* kPageExtension = OLESTR(".HTM");

Text PageName(TextView word, std::size_t number, std::size_t digits) {
  Text text = NumberText(static_cast<long long>(number));
  if (text.size() < digits) text.insert(0, digits - text.size(), OLESTR('0'));
  const std::size_t left = kMostNameChars - std::min(text.size(), kMostNameChars - 1);
  Text name(word.substr(0, left));
  return name.append(text).append(kPageExtension);
}

void Add(MediumTotals& totals, const MediumTotals& more) {
  totals.patients += more.patients;
  totals.studies += more.studies;
  totals.series += more.series;
  totals.objects += more.objects;
}

}  // namespace

MediumTotals TotalsOf(const StudyOnMedium& study) {
  MediumTotals totals{0, 1, study.series.size(), 0};
  for (const SeriesOnMedium& series : study.series) totals.objects += series.objects.size();
  return totals;
}

MediumTotals TotalsOf(const PatientOnMedium& patient) {
  MediumTotals totals{1, 0, 0, 0};
  for (const StudyOnMedium& study : patient.studies) Add(totals, TotalsOf(study));
  return totals;
}

MediumTotals TotalsOf(const MediumModel& medium) {
  MediumTotals totals{0, 0, 0, medium.objectsOfNoPatient};
  for (const PatientOnMedium& patient : medium.patients) Add(totals, TotalsOf(patient));
  return totals;
}

Text StudyPageName(std::size_t number) { return PageName(OLESTR("STUDY"), number, 3); }

Text HeaderPageName(std::size_t number) { return PageName(OLESTR("HEAD"), number, 4); }

}  // namespace quillon
