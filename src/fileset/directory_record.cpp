#include "directory_record.h"

#include <algorithm>
#include <string>

#include "dicom/dict.h"
#include "dicom/elem_sq.h"
#include "dicom/tags.h"
#include "dicomobjects/decoded_text.h"
#include "dicomobjects/documents.h"
#include "profiles/profile_check.h"

namespace quillon {

namespace {

constexpr std::string_view kHasConceptModifier = "HAS CONCEPT MOD";
constexpr std::string_view kVerified = "VERIFIED";

bool GoesBeyondAscii(const DcElemList& list);

bool GoesBeyondAscii(const DcElem& element) {
  if (const auto* sequence = dynamic_cast<const DcElemSq*>(&element); sequence != nullptr) {
    for (std::size_t i = 0; i < sequence->itemCount(); ++i) {
      if (GoesBeyondAscii(*sequence->item(i))) return true;
    }
    return false;
  }
  return NeedsCharacterSet(element);
}

bool GoesBeyondAscii(const DcElemList& list) {
  for (std::size_t i = 0; i < list.size(); ++i) {
    if (GoesBeyondAscii(*list.at(i))) return true;
  }
  return false;
}

bool HasValue(const DcElem* element) {
  if (element == nullptr) return false;
  if (const auto* sequence = dynamic_cast<const DcElemSq*>(element); sequence != nullptr) {
    return sequence->itemCount() != 0;
  }
  // Of a character set the first value may be empty.
  const auto text = element->stringValue(0);
  if (text && text->empty()) return element->valueCount() > 1;
  return element->valueCount() != 0 || !element->segments().empty();
}

// Of the content items those that modify the title: the others are what the object says, which is
// no matter of a directory.
std::unique_ptr<DcElem> ConceptModifiers(const DcElem& content) {
  const auto* items = dynamic_cast<const DcElemSq*>(&content);
  auto kept = std::make_unique<DcElemSq>(content.tag());
  for (std::size_t i = 0; items != nullptr && i < items->itemCount(); ++i) {
    const DcElem* relationship = items->item(i)->find(tags::kRelationshipType);
    if (relationship == nullptr || relationship->stringValue(0) != kHasConceptModifier) continue;
    kept->addItem(std::make_unique<DcElemSqItem>())->addCopiesOf(*items->item(i));
  }
  if (kept->itemCount() == 0) return nullptr;
  return kept;
}

std::unique_ptr<DcElem> VerificationDateTime(CDicomUtil& file) {
  const DcElem* flag = file.GetElementList()->find(tags::kVerificationFlag);
  if (flag == nullptr || flag->stringValue(0) != kVerified) return nullptr;
  const TagPlace place = VerificationPlace(file);
  const DcElemList* list = file.GetElementList();
  if (place.sequence != 0) {
    list = dynamic_cast<const DcElemSq&>(*list->find(place.sequence)).item(place.itemFromOne - 1);
  }
  const DcElem* found = list->find(place.tag);
  return found == nullptr ? nullptr : found->copy();
}

// What is blended: the studies and series, without how.
std::unique_ptr<DcElem> BlendedSeries(const DcElem& blending) {
  const auto* items = dynamic_cast<const DcElemSq*>(&blending);
  auto kept = std::make_unique<DcElemSq>(blending.tag());
  for (std::size_t i = 0; items != nullptr && i < items->itemCount(); ++i) {
    DcElemSqItem& item = *kept->addItem(std::make_unique<DcElemSqItem>());
    for (const DcTag tag : {tags::kStudyInstanceUid, tags::kReferencedSeriesSequence}) {
      if (const DcElem* element = items->item(i)->find(tag)) item.add(element->copy());
    }
  }
  return kept;
}

// Other documents than those of HL7 have no such identifier, whatever their makers wrote there.
bool IsHl7Document(const DcElemList& dataSet) {
  constexpr std::string_view kXml = "text/xml";
  const DcElem* type = dataSet.find(tags::kMimeTypeOfEncapsulatedDocument);
  const std::string_view text = type == nullptr ? "" : type->stringValue(0).value_or("");
  return std::ranges::equal(text, kXml, [](char a, char b) { return (a | 0x20) == (b | 0x20); });
}

std::unique_ptr<DcElem> CopyKey(DcTag tag, CDicomUtil& file) {
  if (tag == tags::kVerificationDateTime) return VerificationDateTime(file);
  const DcElemList& dataSet = *file.GetElementList();
  // The groups are there when a profile wants keys that may lie in them.
  const DcElem* element = FindForKey(dataSet, tag);
  if (element == nullptr) return nullptr;
  if (tag == tags::kContentSequence) return ConceptModifiers(*element);
  if (tag == tags::kBlendingSequence) return BlendedSeries(*element);
  if (tag == tags::kHl7InstanceIdentifier && !IsHl7Document(dataSet)) return nullptr;
  return element->copy();
}

void AddCharacterSet(DcDirRec& record, const DcElemList& dataSet,
                     std::string_view declaredCharacterSet) {
  if (!GoesBeyondAscii(record)) return;
  if (!declaredCharacterSet.empty()) {
    record.addKey(tags::kSpecificCharacterSet, std::string(declaredCharacterSet).c_str());
  } else if (const DcElem* own = dataSet.find(tags::kSpecificCharacterSet); own != nullptr) {
    record.addKey(own->copy());
  }
}

}  // namespace

KeptRecord CopyRecord(const RecordRow& row, CDicomUtil& file,
                      std::string_view declaredCharacterSet) {
  auto record = std::make_unique<DcDirRec>(row.type);
  for (const RecordKey& key : row.keys) {
    auto element = CopyKey(key.tag, file);
    // A key that need not be there must not be empty.
    if (element == nullptr || (key.need == KeyNeed::IfThere && !HasValue(element.get()))) continue;
    record->addKey(std::move(element));
  }
  if (dirRefersToFile(row.type)) {
    if (auto uid = CopyKey(tags::kSopInstanceUid, file)) record->addKey(std::move(uid));
  }
  AddCharacterSet(*record, *file.GetElementList(), declaredCharacterSet);
  std::vector<DcTag> missing = MissingKeys(row, *record);
  return {std::move(record), std::move(missing)};
}

std::vector<DcTag> MissingKeys(const RecordRow& row, const DcDirRec& record) {
  std::vector<DcTag> missing;
  for (const RecordKey& key : row.keys) {
    if (key.need == KeyNeed::Value && !HasValue(record.find(key.tag))) missing.push_back(key.tag);
  }
  if (GoesBeyondAscii(record) && !HasValue(record.find(tags::kSpecificCharacterSet))) {
    missing.push_back(tags::kSpecificCharacterSet);
  }
  return missing;
}

void AddEmptyKeys(const RecordRow& row, DcDirRec& record) {
  for (const RecordKey& key : row.keys) {
    if (key.need == KeyNeed::IfThere || record.contains(key.tag)) continue;
    if ((key.vr == DcVr::IM ? dcTagVr(key.tag) : key.vr) == DcVr::SQ) {
      record.addKey(std::make_unique<DcElemSq>(key.tag));
    } else {
      record.addKey(std::make_unique<DcElem>(key.tag, key.vr));
    }
  }
}

}  // namespace quillon
