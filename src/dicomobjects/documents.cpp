#include "dicomobjects/documents.h"

#include <algorithm>

#include "value_text.h"

namespace quillon {

namespace {

constexpr std::size_t kMaxTextChars = 1024;
constexpr TextView kVerified = OLESTR("VERIFIED");

}  // namespace

// ---- what the readers share

bool CDicomDocument::ReadTagValue(CDicomUtil& util, std::string_view tagPath, Text& out) {
  out.clear();
  if (tagPath.empty()) return Fail(messages_.tagInvalid);
  DicomValue value;
  if (!util.GetValue(tagPath, value, /*asArray=*/false)) {
    return Fail(messages_.notFound, {WidenValue(tagPath)});
  }
  DicomValueToText(value, out);
  if (valuesRequired_ && out.empty()) return Fail(messages_.noValue, {WidenValue(tagPath)});
  return true;
}

// The text is emptied first: one reader serves many files, and none may get a value of the file
// before.
bool CDicomDocument::ReadAttribute(CDicomUtil& util, DocumentAttribute& attribute) {
  attribute.value.clear();
  Text value;
  if (!ReadTagValue(util, attribute.tagPath, value)) return false;
  Store(attribute, value.empty() ? attribute.emptyMeans : TextView(value));
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

// ---- key object selection documents

CKeyObjectDocument::CKeyObjectDocument()
    : CDicomDocument({kMsgKeyObjectTagInvalid, kMsgCannotGetKeyObjectTag, kMsgKeyObjectTagEmpty}) {
  SetClassName(OLESTR("CKeyObjectDocument"));
}

bool CKeyObjectDocument::ReadFromDicom(CDicomUtil& util) {
  ClearError();
  return ReadAttributes(util, {&instanceNumber_, &contentDate_, &contentTime_});
}

// ---- presentation states

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

// ---- structured reports

CStructuredReport::CStructuredReport()
    : CDicomDocument({kMsgReportTagInvalid, kMsgCannotGetReportTag, kMsgReportTagEmpty}) {
  SetClassName(OLESTR("CStructuredReport"));
}

bool CStructuredReport::ReadVerificationDateTime(CDicomUtil& util) {
  verificationDateTime_.value.clear();
  return verificationFlag_.value != kVerified || ReadAttribute(util, verificationDateTime_);
}

bool CStructuredReport::ReadFromDicom(CDicomUtil& util) {
  ClearError();
  return ReadAttributes(util, {&instanceNumber_, &completionFlag_, &verificationFlag_}) &&
         ReadVerificationDateTime(util) &&
         ReadAttributes(util, {&contentDate_, &contentTime_, &codeValue_, &codingSchemeDesignator_,
                               &codeMeaning_});
}

}  // namespace quillon
