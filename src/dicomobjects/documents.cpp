#include "dicomobjects/documents.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>
#include <string>
#include <utility>

#include "dicom/convert.h"
#include "dicom/elem_sq.h"
#include "dicom/tags.h"
#include "value_text.h"

namespace quillon {

namespace {

constexpr std::size_t kMaxTextChars = 1024;
constexpr TextView kVerified = OLESTR("VERIFIED");

// Microseconds since 1970; one without an offset from UTC counts as it stands. What is no date and
// time is before all others.
std::int64_t PointInTime(const std::string& text) {
  DcElemValueDT value;
  if (utilStrgToValue(tags::kVerificationDateTime, text, &value) != kDcOk) {
    return std::numeric_limits<std::int64_t>::min();
  }
  const auto microseconds = [](const DcElemValueTM& time) {
    return std::int64_t{time.hour * 60 + time.minute} * 60'000'000 +
           std::llround(time.second * 1e6);
  };
  const std::chrono::sys_days day{std::chrono::year{value.date.year} / value.date.month /
                                  value.date.day};
  const std::int64_t offset = microseconds(value.offset);
  return std::chrono::microseconds(day.time_since_epoch()).count() + microseconds(value.time) -
         (value.offsetSign == '-' ? -offset : offset);
}

}  // namespace

TagPlace VerificationPlace(const CDicomUtil& util) {
  constexpr DcTag own = tags::kVerificationDateTime;
  const DcElemList* list = util.GetElementList();
  if (list == nullptr || list->contains(tags::kVerificationDateTime)) return own;
  const auto* observers =
      dynamic_cast<const DcElemSq*>(list->find(tags::kVerifyingObserverSequence));
  std::uint32_t latestFromOne = 0;
  std::int64_t latest = 0;
  for (std::size_t i = 0; observers != nullptr && i < observers->itemCount(); ++i) {
    const DcElem* element = observers->item(i)->find(tags::kVerificationDateTime);
    if (element == nullptr) continue;
    const auto text = element->stringValue(0);
    const std::int64_t when = PointInTime(std::string(text.value_or("")));
    if (latestFromOne != 0 && when <= latest) continue;
    latestFromOne = static_cast<std::uint32_t>(i) + 1;
    latest = when;
  }
  if (latestFromOne == 0) return own;
  return {tags::kVerifyingObserverSequence, latestFromOne, own};
}

// What the readers share.

bool CDicomDocument::ReadTagValue(CDicomUtil& util, std::string_view tagPath, Text& out) {
  out.clear();
  if (tagPath.empty()) return Fail(messages_.tagInvalid);
  DicomValue value;
  return Take(util.GetValue(tagPath, value, /*asArray=*/false), value, tagPath, out);
}

bool CDicomDocument::Take(bool isFound, const DicomValue& value, std::string_view tagPath,
                          Text& out) {
  if (!isFound) return Fail(messages_.notFound, {WidenValue(tagPath)});
  static_cast<void>(DicomValueToText(value, out));  // an array is none
  if (valuesRequired_ && out.empty()) return Fail(messages_.noValue, {WidenValue(tagPath)});
  return true;
}

// The text is emptied first: one reader serves many files, and none may get a value of the file
// before.
bool CDicomDocument::ReadAttribute(CDicomUtil& util, DocumentAttribute& attribute) {
  attribute.value.clear();
  DicomValue value;
  Text text;
  const bool isFound = util.GetValue(attribute.place, value, /*asArray=*/false);
  if (!Take(isFound, value, attribute.place.Path(), text)) return false;
  static_cast<void>(Store(attribute, text.empty() ? attribute.emptyMeans : TextView(text)));
  return true;
}

bool CDicomDocument::ReadAttributes(CDicomUtil& util,
                                    std::initializer_list<DocumentAttribute*> attributes) {
  return std::ranges::all_of(
      attributes, [&](DocumentAttribute* attribute) { return ReadAttribute(util, *attribute); });
}

bool CDicomDocument::Store(DocumentAttribute& attribute, TextView value) {
  return AssignText(attribute.value, value, !valuesRequired_, kMaxTextChars) ||
         Fail(attribute.storeMessage);
}

// Key object selection documents.

CKeyObjectDocument::CKeyObjectDocument()
    : CDicomDocument({kMsgKeyObjectTagInvalid, kMsgCannotGetKeyObjectTag, kMsgKeyObjectTagEmpty}) {
  SetClassName(OLESTR("CKeyObjectDocument"));
}

bool CKeyObjectDocument::ReadFromDicom(CDicomUtil& util) {
  ClearError();
  return ReadAttributes(util, {&instanceNumber_, &contentDate_, &contentTime_});
}

// Presentation states.

CPresentation::CPresentation()
    : CDicomDocument(
          {kMsgPresentationTagInvalid, kMsgCannotGetPresentationTag, kMsgPresentationTagEmpty}) {
  SetClassName(OLESTR("CPresentation"));
}

bool CPresentation::ReadFromDicom(CDicomUtil& util) {
  ClearError();
  return ReadAttributes(util, {&instanceNumber_, &contentLabel_, &contentDescription_,
                               &contentCreatorName_, &creationDate_, &creationTime_});
}

// Structured reports.

CStructuredReport::CStructuredReport()
    : CDicomDocument({kMsgReportTagInvalid, kMsgCannotGetReportTag, kMsgReportTagEmpty}) {
  SetClassName(OLESTR("CStructuredReport"));
}

bool CStructuredReport::ReadVerificationDateTime(CDicomUtil& util) {
  verificationDateTime_.value.clear();
  if (verificationFlag_.value != kVerified) return true;
  DocumentAttribute found{VerificationPlace(util), verificationDateTime_.storeMessage};
  const bool isRead = ReadAttribute(util, found);
  verificationDateTime_.value = std::move(found.value);
  return isRead;
}

bool CStructuredReport::ReadFromDicom(CDicomUtil& util) {
  ClearError();
  return ReadAttributes(util, {&instanceNumber_, &completionFlag_, &verificationFlag_}) &&
         ReadVerificationDateTime(util) &&
         ReadAttributes(util, {&contentDate_, &contentTime_, &codeValue_, &codingSchemeDesignator_,
                               &codeMeaning_});
}

}  // namespace quillon
