#include "key_inventor.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <string>

#include "dicom/tags.h"
#include "platform/win32.h"

namespace quillon {

namespace {

constexpr const char* kUsualStudyId = "1";

struct OtherTime {
  DcTag key;
  std::array<DcTag, 3> others;
};
constexpr std::array kOtherTimes{
    OtherTime{tags::kStudyDate, {tags::kSeriesDate, tags::kAcquisitionDate, tags::kContentDate}},
    OtherTime{tags::kStudyTime, {tags::kSeriesTime, tags::kAcquisitionTime, tags::kContentTime}},
};

template <typename... Numbers>
std::string Formatted(const char* format, Numbers... numbers) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), format, static_cast<unsigned>(numbers)...);
  return text.data();
}

std::string Today() {
  SYSTEMTIME now{};
  GetLocalTime(&now);
  return Formatted("%04u%02u%02u", now.wYear, now.wMonth, now.wDay);
}

std::string Now() {
  SYSTEMTIME now{};
  GetLocalTime(&now);
  return Formatted("%02u%02u%02u", now.wHour, now.wMinute, now.wSecond);
}

bool HasText(const DcElemList& list, DcTag tag) {
  const DcElem* element = list.find(tag);
  return element != nullptr && !element->stringValue(0).value_or("").empty();
}

void Give(DcDirRec& record, DcTag tag, const std::string& value) {
  if (DcElem* empty = record.find(tag); empty != nullptr) record.remove(empty);
  record.addKey(tag, value.c_str());
}

}  // namespace

void KeyInventor::Invent(DcDirRec& record, const std::vector<DcTag>& missing) {
  for (const DcTag tag : missing) {
    if (HasText(record, tag)) continue;
    std::string value;
    if (tag == tags::kPatientId) {
      do {
        value = Formatted("DCMTKPAT%06u", patients_++);
      } while (patientIds_.contains(value));
    } else if (tag == tags::kStudyId) {
      value = Formatted("DCMTKSTUDY%06u", studies_++);
    } else if (tag == tags::kSeriesNumber) {
      value = std::to_string(series_++);
    } else if (tag == tags::kInstanceNumber) {
      value = std::to_string(instances_++);
    } else if (tag == tags::kModality) {
      value = "OT";  // the term for others
    } else if (tag == tags::kStudyDate) {
      value = Today();
    } else if (tag == tags::kStudyTime) {
      value = Now();
    } else {
      continue;
    }
    Give(record, tag, value);
  }
}

void TakeOtherTimes(DcDirRec& record, const DcElemList& dataSet,
                    const std::vector<DcTag>& missing) {
  for (const OtherTime& time : kOtherTimes) {
    if (std::ranges::find(missing, time.key) == missing.end()) continue;
    const auto found =
        std::ranges::find_if(time.others, [&](DcTag tag) { return HasText(dataSet, tag); });
    if (found == time.others.end()) continue;
    Give(record, time.key, std::string(*dataSet.find(*found)->stringValue(0)));
  }
}

void GiveUsualStudyId(DcDirRec& record, const std::vector<DcTag>& missing) {
  if (std::ranges::find(missing, tags::kStudyId) != missing.end()) {
    Give(record, tags::kStudyId, kUsualStudyId);
  }
}

}  // namespace quillon
