#include "label_dates.h"

#include <chrono>
#include <cstdlib>

namespace quillon::cli {

namespace {

constexpr std::size_t kDateLength = 8;
constexpr int kFirstYear = 1601;  // of the system's calendar

// Decimal digits up to the first other character, as the label reads them.
int leadingNumber(std::string_view text) {
  return static_cast<int>(std::strtol(std::string(text).c_str(), nullptr, 10));
}

}  // namespace

bool isFitForLabel(std::string_view date) {
  if (date.size() != kDateLength) return true;
  const int year = leadingNumber(date.substr(0, 4));
  const int month = leadingNumber(date.substr(4, 2));
  const int day = leadingNumber(date.substr(6, 2));
  if (year < kFirstYear || month < 1 || day < 1) return false;
  return std::chrono::year_month_day(std::chrono::year(year),
                                     std::chrono::month(static_cast<unsigned>(month)),
                                     std::chrono::day(static_cast<unsigned>(day)))
      .ok();
}

void LabelDates::add(const std::string& patientKey, const ObjectFields& fields) {
  if (!first_) {
    first_ = First{patientKey, fields.studyUid, fields.patientBirthDate, fields.studyDate};
    return;
  }
  hasOnePatient_ = hasOnePatient_ && patientKey == first_->patientKey;
  hasOneStudy_ = hasOneStudy_ && fields.studyUid == first_->studyUid;
}

std::optional<std::string> LabelDates::problem() const {
  if (!first_ || !hasOnePatient_) return std::nullopt;
  const auto sentence = [](const char* what, const std::string& date) {
    return std::string("The label cannot be made: the ") + what + " " + date + " is not a date.";
  };
  if (!isFitForLabel(first_->birthDate)) return sentence("birth date", first_->birthDate);
  if (hasOneStudy_ && !isFitForLabel(first_->studyDate)) {
    return sentence("study date", first_->studyDate);
  }
  return std::nullopt;
}

}  // namespace quillon::cli
