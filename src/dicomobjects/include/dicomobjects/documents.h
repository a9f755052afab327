// The attributes that directory records of key objects, presentation states and structured
// reports need. Each text holds at most 1,024 characters. ReadFromDicom answers false, with a
// sentence, when an attribute is absent; a text that cannot be stored only leaves its sentence.
#pragma once

#include <string_view>

#include "dicomobjects/dicom_util.h"
#include "foundation/base_item.h"

namespace quillon {

// What the three readers share: a list of attributes, each with its tag path, its storing message
// and the text that holds it.
class CDicomDocument : public CBaseItem {
 public:
  // With the flag an empty value is refused both when read and when stored.
  void SetValuesRequired(bool required) { valuesRequired_ = required; }
  // One attribute as text. Messages are the class's own.
  bool ReadTagValue(CDicomUtil& util, std::string_view tagPath, Text& out);

 protected:
  struct Messages {
    UINT tagInvalid;
    UINT notFound;
    UINT noValue;
  };
  explicit CDicomDocument(const Messages& messages) : messages_(messages) {}

  bool ReadAttribute(CDicomUtil& util, std::string_view tagPath, UINT storeMessage, Text& field);
  // With a text that stands for an empty value.
  bool ReadAttribute(CDicomUtil& util, std::string_view tagPath, UINT storeMessage,
                     TextView emptyMeans, Text& field);
  bool Store(Text& field, TextView value, UINT storeMessage);

  Messages messages_;
  bool valuesRequired_ = false;
};

class CKeyObjectDocument : public CDicomDocument {
 public:
  CKeyObjectDocument();
  bool ReadFromDicom(CDicomUtil& util);
  [[nodiscard]] const Text& InstanceNumber() const { return instanceNumber_; }
  [[nodiscard]] const Text& ContentDate() const { return contentDate_; }
  [[nodiscard]] const Text& ContentTime() const { return contentTime_; }
  bool SetInstanceNumber(TextView value);
  bool SetContentDate(TextView value);
  bool SetContentTime(TextView value);

 private:
  Text instanceNumber_;
  Text contentDate_;
  Text contentTime_;
};

class CPresentation : public CDicomDocument {
 public:
  CPresentation();
  bool ReadFromDicom(CDicomUtil& util);
  [[nodiscard]] const Text& InstanceNumber() const { return instanceNumber_; }
  [[nodiscard]] const Text& ContentLabel() const { return contentLabel_; }
  [[nodiscard]] const Text& ContentDescription() const { return contentDescription_; }
  [[nodiscard]] const Text& ContentCreatorName() const { return contentCreatorName_; }
  [[nodiscard]] const Text& CreationDate() const { return creationDate_; }
  [[nodiscard]] const Text& CreationTime() const { return creationTime_; }
  bool SetInstanceNumber(TextView value);
  bool SetContentLabel(TextView value);
  bool SetContentDescription(TextView value);
  bool SetContentCreatorName(TextView value);
  bool SetCreationDate(TextView value);
  bool SetCreationTime(TextView value);

 private:
  Text instanceNumber_;
  Text contentLabel_;
  Text contentDescription_;
  Text contentCreatorName_;
  Text creationDate_;
  Text creationTime_;
};

class CStructuredReport : public CDicomDocument {
 public:
  CStructuredReport();
  bool ReadFromDicom(CDicomUtil& util);
  [[nodiscard]] const Text& InstanceNumber() const { return instanceNumber_; }
  [[nodiscard]] const Text& CompletionFlag() const { return completionFlag_; }
  [[nodiscard]] const Text& VerificationFlag() const { return verificationFlag_; }
  // Empty unless the verification flag is "VERIFIED".
  [[nodiscard]] const Text& VerificationDateTime() const { return verificationDateTime_; }
  [[nodiscard]] const Text& ContentDate() const { return contentDate_; }
  [[nodiscard]] const Text& ContentTime() const { return contentTime_; }
  [[nodiscard]] const Text& CodeValue() const { return codeValue_; }
  [[nodiscard]] const Text& CodingSchemeDesignator() const { return codingSchemeDesignator_; }
  [[nodiscard]] const Text& CodeMeaning() const { return codeMeaning_; }
  bool SetInstanceNumber(TextView value);
  bool SetCompletionFlag(TextView value);
  bool SetVerificationFlag(TextView value);
  bool SetVerificationDateTime(TextView value);
  bool SetContentDate(TextView value);
  bool SetContentTime(TextView value);
  bool SetCodeValue(TextView value);
  bool SetCodingSchemeDesignator(TextView value);
  bool SetCodeMeaning(TextView value);

 private:
  bool ReadVerificationDateTime(CDicomUtil& util);

  Text instanceNumber_;
  Text completionFlag_;
  Text verificationFlag_;
  Text verificationDateTime_;
  Text contentDate_;
  Text contentTime_;
  Text codeValue_;
  Text codingSchemeDesignator_;
  Text codeMeaning_;
};

}  // namespace quillon
