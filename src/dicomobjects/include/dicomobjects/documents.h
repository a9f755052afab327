// The attributes that directory records of key objects, presentation states and structured
// reports need. Each text holds at most 1,024 characters. ReadFromDicom answers false, with a
// sentence, when an attribute is absent; a text that cannot be stored only leaves its sentence.
#pragma once

#include <initializer_list>
#include <string_view>

#include "dicom/tags.h"
#include "dicomobjects/dicom_util.h"
#include "foundation/base_item.h"

namespace quillon {

// One attribute of a document: where it stands in the file, the message for a text that cannot be
// stored, what an empty value is stored as, and the text itself.
struct DocumentAttribute {
  TagPlace place;
  UINT storeMessage;
  TextView emptyMeans = {};
  Text value = {};
};

// What the three readers share.
class CDicomDocument : public CBaseItem {
 public:
  // With the flag an empty value is refused both when read and when stored.
  void SetValuesRequired(bool required) { valuesRequired_ = required; }
  // One attribute as text. False, with a message of the class's own, for an empty path, an element
  // that the file does not have, and an empty value while values are required.
  [[nodiscard]] bool ReadTagValue(CDicomUtil& util, std::string_view tagPath, Text& out);

 protected:
  struct Messages {
    UINT tagInvalid;
    UINT notFound;
    UINT noValue;
  };
  explicit CDicomDocument(const Messages& messages) : messages_(messages) {}

  // False when a read fails. A text that cannot be stored leaves its sentence, and the reading goes
  // on without it.
  [[nodiscard]] bool ReadAttribute(CDicomUtil& util, DocumentAttribute& attribute);
  [[nodiscard]] bool ReadAttributes(CDicomUtil& util,
                                    std::initializer_list<DocumentAttribute*> attributes);
  [[nodiscard]] bool Store(DocumentAttribute& attribute, TextView value);

 private:
  [[nodiscard]] bool Take(bool isFound, const DicomValue& value, std::string_view tagPath,
                          Text& out);

  Messages messages_;
  bool valuesRequired_ = false;
};

class CKeyObjectDocument : public CDicomDocument {
 public:
  CKeyObjectDocument();
  [[nodiscard]] bool ReadFromDicom(CDicomUtil& util);
  [[nodiscard]] const Text& InstanceNumber() const { return instanceNumber_.value; }
  [[nodiscard]] const Text& ContentDate() const { return contentDate_.value; }
  [[nodiscard]] const Text& ContentTime() const { return contentTime_.value; }
  [[nodiscard]] bool SetInstanceNumber(TextView value) { return Store(instanceNumber_, value); }
  [[nodiscard]] bool SetContentDate(TextView value) { return Store(contentDate_, value); }
  [[nodiscard]] bool SetContentTime(TextView value) { return Store(contentTime_, value); }

 private:
  DocumentAttribute instanceNumber_{tags::kInstanceNumber, kMsgCannotSetKeyObjectInstanceNumber};
  DocumentAttribute contentDate_{tags::kContentDate, kMsgCannotSetKeyObjectContentDate};
  DocumentAttribute contentTime_{tags::kContentTime, kMsgCannotSetKeyObjectContentTime};
};

class CPresentation : public CDicomDocument {
 public:
  CPresentation();
  [[nodiscard]] bool ReadFromDicom(CDicomUtil& util);
  [[nodiscard]] const Text& InstanceNumber() const { return instanceNumber_.value; }
  [[nodiscard]] const Text& ContentLabel() const { return contentLabel_.value; }
  [[nodiscard]] const Text& ContentDescription() const { return contentDescription_.value; }
  [[nodiscard]] const Text& ContentCreatorName() const { return contentCreatorName_.value; }
  [[nodiscard]] const Text& CreationDate() const { return creationDate_.value; }
  [[nodiscard]] const Text& CreationTime() const { return creationTime_.value; }
  [[nodiscard]] bool SetInstanceNumber(TextView value) { return Store(instanceNumber_, value); }
  [[nodiscard]] bool SetContentLabel(TextView value) { return Store(contentLabel_, value); }
  [[nodiscard]] bool SetContentDescription(TextView value) {
    return Store(contentDescription_, value);
  }
  [[nodiscard]] bool SetContentCreatorName(TextView value) {
    return Store(contentCreatorName_, value);
  }
  [[nodiscard]] bool SetCreationDate(TextView value) { return Store(creationDate_, value); }
  [[nodiscard]] bool SetCreationTime(TextView value) { return Store(creationTime_, value); }

 private:
  DocumentAttribute instanceNumber_{tags::kInstanceNumber, kMsgCannotSetPresentationInstanceNumber};
  DocumentAttribute contentLabel_{tags::kContentLabel, kMsgCannotSetPresentationLabel};
  DocumentAttribute contentDescription_{tags::kContentDescription,
                                        kMsgCannotSetPresentationDescription, OLESTR("Unknown")};
  DocumentAttribute contentCreatorName_{
      tags::kContentCreatorsName, kMsgCannotSetPresentationCreatorName, OLESTR("Unknown^Unknown")};
  DocumentAttribute creationDate_{tags::kPresentationCreationDate,
                                  kMsgCannotSetPresentationCreationDate};
  DocumentAttribute creationTime_{tags::kPresentationCreationTime,
                                  kMsgCannotSetPresentationContentTime};
};

// Where a verified report says when: reports as the standard has them say it once for each
// observer, and the last of them counts. The report's own place when none does.
TagPlace VerificationPlace(const CDicomUtil& report);

class CStructuredReport : public CDicomDocument {
 public:
  CStructuredReport();
  [[nodiscard]] bool ReadFromDicom(CDicomUtil& util);
  [[nodiscard]] const Text& InstanceNumber() const { return instanceNumber_.value; }
  [[nodiscard]] const Text& CompletionFlag() const { return completionFlag_.value; }
  [[nodiscard]] const Text& VerificationFlag() const { return verificationFlag_.value; }
  // Empty unless the verification flag is "VERIFIED". The report's own (0040,A030), else the latest
  // of those in its Verifying Observer Sequence (0040,A073).
  [[nodiscard]] const Text& VerificationDateTime() const { return verificationDateTime_.value; }
  [[nodiscard]] const Text& ContentDate() const { return contentDate_.value; }
  [[nodiscard]] const Text& ContentTime() const { return contentTime_.value; }
  [[nodiscard]] const Text& CodeValue() const { return codeValue_.value; }
  [[nodiscard]] const Text& CodingSchemeDesignator() const { return codingSchemeDesignator_.value; }
  [[nodiscard]] const Text& CodeMeaning() const { return codeMeaning_.value; }
  [[nodiscard]] bool SetInstanceNumber(TextView value) { return Store(instanceNumber_, value); }
  [[nodiscard]] bool SetCompletionFlag(TextView value) { return Store(completionFlag_, value); }
  [[nodiscard]] bool SetVerificationFlag(TextView value) { return Store(verificationFlag_, value); }
  [[nodiscard]] bool SetVerificationDateTime(TextView value) {
    return Store(verificationDateTime_, value);
  }
  [[nodiscard]] bool SetContentDate(TextView value) { return Store(contentDate_, value); }
  [[nodiscard]] bool SetContentTime(TextView value) { return Store(contentTime_, value); }
  [[nodiscard]] bool SetCodeValue(TextView value) { return Store(codeValue_, value); }
  [[nodiscard]] bool SetCodingSchemeDesignator(TextView value) {
    return Store(codingSchemeDesignator_, value);
  }
  [[nodiscard]] bool SetCodeMeaning(TextView value) { return Store(codeMeaning_, value); }

 private:
  [[nodiscard]] bool ReadVerificationDateTime(CDicomUtil& util);

  DocumentAttribute instanceNumber_{tags::kInstanceNumber, kMsgCannotSetReportInstanceNumber};
  DocumentAttribute completionFlag_{tags::kCompletionFlag, kMsgCannotSetReportCompletionFlag};
  DocumentAttribute verificationFlag_{tags::kVerificationFlag, kMsgCannotSetReportVerificationFlag};
  DocumentAttribute verificationDateTime_{tags::kVerificationDateTime,
                                          kMsgCannotSetReportVerificationDateTime};
  DocumentAttribute contentDate_{tags::kContentDate, kMsgCannotSetReportContentDate};
  DocumentAttribute contentTime_{tags::kContentTime, kMsgCannotSetReportContentTime};
  DocumentAttribute codeValue_{{tags::kConceptNameCodeSequence, 1, tags::kCodeValue},
                               kMsgCannotSetReportCodeValue};
  DocumentAttribute codingSchemeDesignator_{
      {tags::kConceptNameCodeSequence, 1, tags::kCodingSchemeDesignator},
      kMsgCannotSetReportCodingScheme};
  DocumentAttribute codeMeaning_{{tags::kConceptNameCodeSequence, 1, tags::kCodeMeaning},
                                 kMsgCannotSetReportCodeMeaning};
};

}  // namespace quillon
