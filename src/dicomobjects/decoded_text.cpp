#include "dicomobjects/decoded_text.h"

#include <algorithm>
#include <cstdint>
#include <vector>

#include "dicom/tags.h"
#include "dicom/vr_table.h"
#include "elem_value.h"
#include "value_text.h"

namespace quillon {

namespace {

ValueForm FormOf(DcCharacters characters) {
  switch (characters) {
    case DcCharacters::Names:
      return ValueForm::PersonNames;
    case DcCharacters::Paragraphs:
      return ValueForm::Paragraphs;
    case DcCharacters::Ascii:
    case DcCharacters::Values:
      break;
  }
  return ValueForm::Values;
}

}  // namespace

CharacterSet CharacterSetOf(const DcElemList& dataSet) {
  const DcElem* declared = dataSet.find(tags::kSpecificCharacterSet);
  return declared == nullptr ? CharacterSet() : CharacterSet(ValueBytes(*declared));
}

std::string ValueBytes(const DcElem& element) {
  const VrRow& row = vrRow(element.resolvedVr());
  if (row.storage == DcStorage::Segments && row.characters != DcCharacters::Ascii) {
    std::vector<std::uint8_t> bytes;
    if (!ReadBulkBytes(element, bytes)) return {};
    return {bytes.begin(), bytes.end()};
  }
  if (row.storage != DcStorage::String) return {};
  if (const std::string* undivided = element.undividedText()) return *undivided;
  std::string joined(element.stringValues());
  std::ranges::replace(joined, '\0', '\\');
  return joined;
}

Text DecodedText(const DcElem& element, const CharacterSet& set) {
  const DcCharacters characters = vrRow(element.resolvedVr()).characters;
  const std::string bytes = ValueBytes(element);
  if (characters == DcCharacters::Ascii) return WidenValue(bytes);
  return set.DecodeJoined(bytes, FormOf(characters));
}

bool NeedsCharacterSet(const DcElem& element) {
  const VrRow& row = vrRow(element.resolvedVr());
  if (row.characters == DcCharacters::Ascii) return false;
  if (row.storage == DcStorage::String) return !IsDefaultRepertoire(element.stringValues());
  return !IsDefaultRepertoire(ValueBytes(element));
}

}  // namespace quillon
