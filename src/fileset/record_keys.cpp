#include "record_keys.h"

#include <array>
#include <functional>
#include <string>

#include "dicom/tags.h"
#include "dicomobjects/documents.h"

namespace quillon {

namespace {

constexpr TagPlace kFirstRelationship{tags::kContentSequence, 1, tags::kRelationshipType};
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
    KeyRow<CStructuredReport>{tags::kContentDate, &CStructuredReport::ContentDate},
    KeyRow<CStructuredReport>{tags::kContentTime, &CStructuredReport::ContentTime},
    KeyRow<CStructuredReport>{tags::kInstanceNumber, &CStructuredReport::InstanceNumber},
    KeyRow<CStructuredReport>{tags::kCompletionFlag, &CStructuredReport::CompletionFlag},
    KeyRow<CStructuredReport>{tags::kVerificationFlag, &CStructuredReport::VerificationFlag},
};
constexpr std::array kPresentationKeys{
    KeyRow<CPresentation>{tags::kInstanceNumber, &CPresentation::InstanceNumber},
    KeyRow<CPresentation>{tags::kContentLabel, &CPresentation::ContentLabel},
    KeyRow<CPresentation>{tags::kContentDescription, &CPresentation::ContentDescription},
    KeyRow<CPresentation>{tags::kPresentationCreationDate, &CPresentation::CreationDate},
    KeyRow<CPresentation>{tags::kPresentationCreationTime, &CPresentation::CreationTime},
    KeyRow<CPresentation>{tags::kContentCreatorsName, &CPresentation::ContentCreatorName},
};
constexpr std::array kKeyObjectKeys{
    KeyRow<CKeyObjectDocument>{tags::kContentDate, &CKeyObjectDocument::ContentDate},
    KeyRow<CKeyObjectDocument>{tags::kContentTime, &CKeyObjectDocument::ContentTime},
    KeyRow<CKeyObjectDocument>{tags::kInstanceNumber, &CKeyObjectDocument::InstanceNumber},
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
  AddKey(*record, tags::kSopInstanceUid, object.InstanceUid());
  return record;
}

// A sequence that the file does not have is not in the record either.
void CopySequence(DcDirRec& record, DcTag tag, CDicomUtil& file) {
  CDicomUtil target(record);
  static_cast<void>(file.CopySequence(tag, target));  // it need not be there
}

// What a document is about: its title, and its content items when they modify that title.
void CopyConcept(DcDirRec& record, CDicomUtil& file) {
  CopySequence(record, tags::kConceptNameCodeSequence, file);
  DicomValue value;
  Text relationship;
  if (file.GetValue(kFirstRelationship, value, /*asArray=*/false) &&
      DicomValueToText(value, relationship) && relationship == kHasConceptModifier) {
    CopySequence(record, tags::kContentSequence, file);
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
  AddKey(*record, tags::kSopInstanceUid, object.InstanceUid());
  AddKey(*record, tags::kInstanceNumber, object.InstanceNumber());
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
      AddKey(*record, tags::kVerificationDateTime, report.VerificationDateTime());
    }
    if (record != nullptr) CopyConcept(*record, file);
  } else if (modality == OLESTR("PR")) {
    CPresentation state;
    record =
        ReadRecord(DcDirRecType::Presentation, kPresentationKeys, object, file, state, problem);
    if (record != nullptr) CopySequence(*record, tags::kReferencedSeriesSequence, file);
  } else if (modality == OLESTR("KO")) {
    CKeyObjectDocument document;
    record =
        ReadRecord(DcDirRecType::KeyObjectDoc, kKeyObjectKeys, object, file, document, problem);
    if (record != nullptr) CopyConcept(*record, file);
  }
  return record;
}

}  // namespace quillon
