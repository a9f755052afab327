#include "dicomobjects/documents.h"

#include "value_text.h"

namespace quillon {

namespace {

constexpr std::size_t kMaxTextChars = 1024;
constexpr TextView kVerified = OLESTR("VERIFIED");
constexpr TextView kNoDescription = OLESTR("Unknown");
constexpr TextView kNoCreatorName = OLESTR("Unknown^Unknown");

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

// A text that cannot be stored leaves its sentence, and the reading goes on without it. The field
// is emptied first: one reader serves many files, and none may get a value of the file before.
bool CDicomDocument::ReadAttribute(CDicomUtil& util, std::string_view tagPath, UINT storeMessage,
                                   TextView emptyMeans, Text& field) {
  field.clear();
  Text value;
  if (!ReadTagValue(util, tagPath, value)) return false;
  Store(field, value.empty() ? emptyMeans : TextView(value), storeMessage);
  return true;
}

bool CDicomDocument::ReadAttribute(CDicomUtil& util, std::string_view tagPath, UINT storeMessage,
                                   Text& field) {
  return ReadAttribute(util, tagPath, storeMessage, TextView(), field);
}

bool CDicomDocument::Store(Text& field, TextView value, UINT storeMessage) {
  return AssignText(field, value, !valuesRequired_, kMaxTextChars) || Fail(storeMessage);
}

// ---- key object selection documents

CKeyObjectDocument::CKeyObjectDocument()
    : CDicomDocument({kMsgKeyObjectTagInvalid, kMsgCannotGetKeyObjectTag, kMsgKeyObjectTagEmpty}) {
  SetClassName(OLESTR("CKeyObjectDocument"));
}

bool CKeyObjectDocument::ReadFromDicom(CDicomUtil& util) {
  ClearError();
  return ReadAttribute(util, "00200013,IS", kMsgCannotSetKeyObjectInstanceNumber,
                       instanceNumber_) &&
         ReadAttribute(util, "00080023,DA", kMsgCannotSetKeyObjectContentDate, contentDate_) &&
         ReadAttribute(util, "00080033,TM", kMsgCannotSetKeyObjectContentTime, contentTime_);
}

bool CKeyObjectDocument::SetInstanceNumber(TextView value) {
  return Store(instanceNumber_, value, kMsgCannotSetKeyObjectInstanceNumber);
}
bool CKeyObjectDocument::SetContentDate(TextView value) {
  return Store(contentDate_, value, kMsgCannotSetKeyObjectContentDate);
}
bool CKeyObjectDocument::SetContentTime(TextView value) {
  return Store(contentTime_, value, kMsgCannotSetKeyObjectContentTime);
}

// ---- presentation states

CPresentation::CPresentation()
    : CDicomDocument(
          {kMsgPresentationTagInvalid, kMsgCannotGetPresentationTag, kMsgPresentationTagEmpty}) {
  SetClassName(OLESTR("CPresentation"));
}

bool CPresentation::ReadFromDicom(CDicomUtil& util) {
  ClearError();
  return ReadAttribute(util, "00200013,IS", kMsgCannotSetPresentationInstanceNumber,
                       instanceNumber_) &&
         ReadAttribute(util, "00700080,CS", kMsgCannotSetPresentationLabel, contentLabel_) &&
         ReadAttribute(util, "00700081,LO", kMsgCannotSetPresentationDescription, kNoDescription,
                       contentDescription_) &&
         ReadAttribute(util, "00700084,PN", kMsgCannotSetPresentationCreatorName, kNoCreatorName,
                       contentCreatorName_) &&
         ReadAttribute(util, "00700082,DA", kMsgCannotSetPresentationCreationDate, creationDate_) &&
         ReadAttribute(util, "00700083,TM", kMsgCannotSetPresentationContentTime, creationTime_);
}

bool CPresentation::SetInstanceNumber(TextView value) {
  return Store(instanceNumber_, value, kMsgCannotSetPresentationInstanceNumber);
}
bool CPresentation::SetContentLabel(TextView value) {
  return Store(contentLabel_, value, kMsgCannotSetPresentationLabel);
}
bool CPresentation::SetContentDescription(TextView value) {
  return Store(contentDescription_, value, kMsgCannotSetPresentationDescription);
}
bool CPresentation::SetContentCreatorName(TextView value) {
  return Store(contentCreatorName_, value, kMsgCannotSetPresentationCreatorName);
}
bool CPresentation::SetCreationDate(TextView value) {
  return Store(creationDate_, value, kMsgCannotSetPresentationCreationDate);
}
bool CPresentation::SetCreationTime(TextView value) {
  return Store(creationTime_, value, kMsgCannotSetPresentationContentTime);
}

// ---- structured reports

CStructuredReport::CStructuredReport()
    : CDicomDocument({kMsgReportTagInvalid, kMsgCannotGetReportTag, kMsgReportTagEmpty}) {
  SetClassName(OLESTR("CStructuredReport"));
}

bool CStructuredReport::ReadVerificationDateTime(CDicomUtil& util) {
  verificationDateTime_.clear();
  return verificationFlag_ != kVerified ||
         ReadAttribute(util, "0040a030,DT", kMsgCannotSetReportVerificationDateTime,
                       verificationDateTime_);
}

bool CStructuredReport::ReadFromDicom(CDicomUtil& util) {
  ClearError();
  return ReadAttribute(util, "00200013,IS", kMsgCannotSetReportInstanceNumber, instanceNumber_) &&
         ReadAttribute(util, "0040a491,CS", kMsgCannotSetReportCompletionFlag, completionFlag_) &&
         ReadAttribute(util, "0040a493,CS", kMsgCannotSetReportVerificationFlag,
                       verificationFlag_) &&
         ReadVerificationDateTime(util) &&
         ReadAttribute(util, "00080023,DA", kMsgCannotSetReportContentDate, contentDate_) &&
         ReadAttribute(util, "00080033,TM", kMsgCannotSetReportContentTime, contentTime_) &&
         ReadAttribute(util, "0040a043,SQ,1:00080100,SH", kMsgCannotSetReportCodeValue,
                       codeValue_) &&
         ReadAttribute(util, "0040a043,SQ,1:00080102,SH", kMsgCannotSetReportCodingScheme,
                       codingSchemeDesignator_) &&
         ReadAttribute(util, "0040a043,SQ,1:00080104,LO", kMsgCannotSetReportCodeMeaning,
                       codeMeaning_);
}

bool CStructuredReport::SetInstanceNumber(TextView value) {
  return Store(instanceNumber_, value, kMsgCannotSetReportInstanceNumber);
}
bool CStructuredReport::SetCompletionFlag(TextView value) {
  return Store(completionFlag_, value, kMsgCannotSetReportCompletionFlag);
}
bool CStructuredReport::SetVerificationFlag(TextView value) {
  return Store(verificationFlag_, value, kMsgCannotSetReportVerificationFlag);
}
bool CStructuredReport::SetVerificationDateTime(TextView value) {
  return Store(verificationDateTime_, value, kMsgCannotSetReportVerificationDateTime);
}
bool CStructuredReport::SetContentDate(TextView value) {
  return Store(contentDate_, value, kMsgCannotSetReportContentDate);
}
bool CStructuredReport::SetContentTime(TextView value) {
  return Store(contentTime_, value, kMsgCannotSetReportContentTime);
}
bool CStructuredReport::SetCodeValue(TextView value) {
  return Store(codeValue_, value, kMsgCannotSetReportCodeValue);
}
bool CStructuredReport::SetCodingSchemeDesignator(TextView value) {
  return Store(codingSchemeDesignator_, value, kMsgCannotSetReportCodingScheme);
}
bool CStructuredReport::SetCodeMeaning(TextView value) {
  return Store(codeMeaning_, value, kMsgCannotSetReportCodeMeaning);
}

}  // namespace quillon
