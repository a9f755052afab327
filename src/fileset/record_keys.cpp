#include "record_keys.h"

#include <array>
#include <functional>
#include <string>

#include "dicomobjects/documents.h"

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

// A key of a document: its tag and what gives its text. Those of the model's nodes are the
// attributes that they have read.
template <typename Document>
struct KeyRow {
  DcTag tag;
  const Text& (Document::*field)() const;
};

// clang-format off
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

template <typename Rows, typename Node>
std::unique_ptr<DcDirRec> MakeRecord(DcDirRecType type, const Rows& rows, const Node& node) {
  auto record = std::make_unique<DcDirRec>(type);
  for (const auto& row : rows) AddKey(*record, row.tag, std::invoke(row.field, node));
  return record;
}

// Null, with the reader's sentence, for a document that lacks something.
template <typename Rows, typename Document>
std::unique_ptr<DcDirRec> ReadRecord(DcDirRecType type, const Rows& rows,
                                     const CDicomObjectProperties& object, CDicomUtil& file,
                                     Document& document, Text& problem) {
  if (!document.ReadFromDicom(file)) {
    problem = document.ErrorMessage();
    return nullptr;
  }
  auto record = MakeRecord(type, rows, document);
  AddKey(*record, kSopInstanceUid, object.InstanceUid());
  return record;
}

// A sequence that the file does not have is not in the record either.
void CopySequence(DcDirRec& record, DcTag tag, CDicomUtil& file) {
  CDicomUtil target(record);
  static_cast<void>(file.CopySequence(tag, target));  // it need not be there
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
  return MakeRecord(DcDirRecType::Patient, CPatient::Attributes(), patient);
}

std::unique_ptr<DcDirRec> MakeStudyRecord(const CStudy& study) {
  return MakeRecord(DcDirRecType::Study, CStudy::Attributes(), study);
}

std::unique_ptr<DcDirRec> MakeSeriesRecord(const CSeries& series) {
  return MakeRecord(DcDirRecType::Series, CSeries::Attributes(), series);
}

std::unique_ptr<DcDirRec> MakeImageRecord(const CDicomObjectProperties& object) {
  auto record = std::make_unique<DcDirRec>(DcDirRecType::Image);
  AddKey(*record, kSopInstanceUid, object.InstanceUid());
  AddKey(*record, kInstanceNumber, object.InstanceNumber());
  return record;
}

std::unique_ptr<DcDirRec> MakeDocumentRecord(const CDicomObjectProperties& object, CDicomUtil& file,
                                             Text& problem) {
  const Text& modality = object.Modality();
  std::unique_ptr<DcDirRec> record;
  if (modality == OLESTR("SR")) {
    CStructuredReport report;
    record = ReadRecord(DcDirRecType::SrDocument, kReportKeys, object, file, report, problem);
    if (record != nullptr && report.VerificationFlag() == kVerified) {
      AddKey(*record, kVerificationDateTime, report.VerificationDateTime());
    }
    if (record != nullptr) CopyConcept(*record, file);
  } else if (modality == OLESTR("PR")) {
    CPresentation state;
    record =
        ReadRecord(DcDirRecType::Presentation, kPresentationKeys, object, file, state, problem);
    if (record != nullptr) CopySequence(*record, kReferencedSeriesSequence, file);
  } else if (modality == OLESTR("KO")) {
    CKeyObjectDocument document;
    record =
        ReadRecord(DcDirRecType::KeyObjectDoc, kKeyObjectKeys, object, file, document, problem);
    if (record != nullptr) CopyConcept(*record, file);
  }
  return record;
}

}  // namespace quillon
