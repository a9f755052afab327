#include "record_keys.h"

#include <array>
#include <span>
#include <string>

namespace quillon {

namespace {

constexpr DcTag kSopInstanceUid = 0x00080018;
constexpr DcTag kReferencedSeriesSequence = 0x00081115;
constexpr DcTag kInstanceNumber = 0x00200013;
constexpr DcTag kVerificationDateTime = 0x0040A030;
constexpr DcTag kConceptNameCodeSequence = 0x0040A043;
constexpr DcTag kContentSequence = 0x0040A730;

constexpr const char* kFirstRelationshipPath = "0040a730,SQ,1:0040a010,CS";
constexpr TextView kHasConceptModifier = OLESTR("HAS CONCEPT MOD");
constexpr TextView kVerified = OLESTR("VERIFIED");

// One key: its tag and what gives its text.
template <typename Node>
struct KeyRow {
  DcTag tag;
  const Text& (Node::*text)() const;
};

// clang-format off
constexpr std::array kPatientKeys{
    KeyRow<CPatient>{0x00100010, &CPatient::Name},
    KeyRow<CPatient>{0x00100020, &CPatient::PatientId},
    KeyRow<CPatient>{0x00100030, &CPatient::BirthDate},
    KeyRow<CPatient>{0x00100040, &CPatient::Sex},
    KeyRow<CPatient>{0x00101010, &CPatient::Age},
};
constexpr std::array kStudyKeys{
    KeyRow<CStudy>{0x00080020, &CStudy::StudyDate},
    KeyRow<CStudy>{0x00080030, &CStudy::StudyTime},
    KeyRow<CStudy>{0x00080050, &CStudy::AccessionNumber},
    KeyRow<CStudy>{0x00081030, &CStudy::Description},
    KeyRow<CStudy>{0x0020000D, &CStudy::StudyInstanceUid},
    KeyRow<CStudy>{0x00200010, &CStudy::StudyId},
};
constexpr std::array kSeriesKeys{
    KeyRow<CSeries>{0x00080021, &CSeries::SeriesDate},
    KeyRow<CSeries>{0x00080060, &CSeries::Modality},
    KeyRow<CSeries>{0x0020000E, &CSeries::SeriesInstanceUid},
    KeyRow<CSeries>{0x00200011, &CSeries::SeriesNumber},
};
constexpr std::array kReportKeys{
    KeyRow<CStructuredReport>{0x00080023, &CStructuredReport::ContentDate},
    KeyRow<CStructuredReport>{0x00080033, &CStructuredReport::ContentTime},
    KeyRow<CStructuredReport>{0x00200013, &CStructuredReport::InstanceNumber},
    KeyRow<CStructuredReport>{0x0040A491, &CStructuredReport::CompletionFlag},
    KeyRow<CStructuredReport>{0x0040A493, &CStructuredReport::VerificationFlag},
};
constexpr std::array kPresentationKeys{
    KeyRow<CPresentation>{0x00200013, &CPresentation::InstanceNumber},
    KeyRow<CPresentation>{0x00700080, &CPresentation::ContentLabel},
    KeyRow<CPresentation>{0x00700081, &CPresentation::ContentDescription},
    KeyRow<CPresentation>{0x00700082, &CPresentation::CreationDate},
    KeyRow<CPresentation>{0x00700083, &CPresentation::CreationTime},
    KeyRow<CPresentation>{0x00700084, &CPresentation::ContentCreatorName},
};
constexpr std::array kKeyObjectKeys{
    KeyRow<CKeyObjectDocument>{0x00080023, &CKeyObjectDocument::ContentDate},
    KeyRow<CKeyObjectDocument>{0x00080033, &CKeyObjectDocument::ContentTime},
    KeyRow<CKeyObjectDocument>{0x00200013, &CKeyObjectDocument::InstanceNumber},
};
// clang-format on

void AddKey(DcDirRec& record, DcTag tag, const Text& text) {
  record.addKey(tag, NarrowText(text, CP_ACP).c_str());
}

template <typename Node>
std::unique_ptr<DcDirRec> MakeRecord(DcDirRecType type, std::span<const KeyRow<Node>> rows,
                                     const Node& node) {
  auto record = std::make_unique<DcDirRec>(type);
  for (const KeyRow<Node>& row : rows) AddKey(*record, row.tag, (node.*row.text)());
  return record;
}

template <typename Node>
std::unique_ptr<DcDirRec> MakeObjectRecord(DcDirRecType type, std::span<const KeyRow<Node>> rows,
                                           const Node& node, const CDicomObjectProperties& object) {
  auto record = MakeRecord(type, rows, node);
  AddKey(*record, kSopInstanceUid, object.InstanceUid());
  return record;
}

// A sequence that the file does not have is not in the record either.
void CopySequence(DcDirRec& record, DcTag tag, CDicomUtil& file) {
  CDicomUtil target(record);
  file.CopySequence(tag, target);
}

// What a document is about: its title, and its content items when they modify that title.
void CopyConcept(DcDirRec& record, CDicomUtil& file) {
  CopySequence(record, kConceptNameCodeSequence, file);
  DicomValue value;
  Text relationship;
  if (file.GetValue(kFirstRelationshipPath, value, /*asArray=*/false) &&
      DicomValueToText(value, relationship) && relationship == kHasConceptModifier) {
    CopySequence(record, kContentSequence, file);
  }
}

}  // namespace

std::unique_ptr<DcDirRec> MakePatientRecord(const CPatient& patient) {
  return MakeRecord<CPatient>(DcDirRecType::Patient, kPatientKeys, patient);
}

std::unique_ptr<DcDirRec> MakeStudyRecord(const CStudy& study) {
  return MakeRecord<CStudy>(DcDirRecType::Study, kStudyKeys, study);
}

std::unique_ptr<DcDirRec> MakeSeriesRecord(const CSeries& series) {
  return MakeRecord<CSeries>(DcDirRecType::Series, kSeriesKeys, series);
}

std::unique_ptr<DcDirRec> MakeImageRecord(const CDicomObjectProperties& object) {
  auto record = std::make_unique<DcDirRec>(DcDirRecType::Image);
  AddKey(*record, kSopInstanceUid, object.InstanceUid());
  AddKey(*record, kInstanceNumber, object.InstanceNumber());
  return record;
}

std::unique_ptr<DcDirRec> MakeReportRecord(const CDicomObjectProperties& object,
                                           const CStructuredReport& report, CDicomUtil& file) {
  auto record =
      MakeObjectRecord<CStructuredReport>(DcDirRecType::SrDocument, kReportKeys, report, object);
  if (report.VerificationFlag() == kVerified) {
    AddKey(*record, kVerificationDateTime, report.VerificationDateTime());
  }
  CopyConcept(*record, file);
  return record;
}

std::unique_ptr<DcDirRec> MakePresentationRecord(const CDicomObjectProperties& object,
                                                 const CPresentation& presentation,
                                                 CDicomUtil& file) {
  auto record = MakeObjectRecord<CPresentation>(DcDirRecType::Presentation, kPresentationKeys,
                                                presentation, object);
  CopySequence(*record, kReferencedSeriesSequence, file);
  return record;
}

std::unique_ptr<DcDirRec> MakeKeyObjectRecord(const CDicomObjectProperties& object,
                                              const CKeyObjectDocument& document,
                                              CDicomUtil& file) {
  auto record = MakeObjectRecord<CKeyObjectDocument>(DcDirRecType::KeyObjectDoc, kKeyObjectKeys,
                                                     document, object);
  CopyConcept(*record, file);
  return record;
}

}  // namespace quillon
