#include "fileset/model/element_text.h"

#include <algorithm>
#include <array>

#include "dicomobjects/decoded_text.h"

namespace quillon {

namespace {

// The first value that is text; false for all else, which reads the same in every set.
bool DecodeFirstValue(const DcElemList& dataSet, DcTag tag, const CharacterSet& characterSet,
                      Text& out) {
  const DcElem* const element = dataSet.find(tag);
  if (element == nullptr || !NeedsCharacterSet(*element)) return false;
  out = DecodedText(*element, characterSet);
  out.resize(std::min(out.size(), out.find(OLESTR('\\'))));
  TrimText(out);
  return true;
}

}  // namespace

DcCode ReadElementText(const DcElemList& dataSet, DcTag tag, Text& out,
                       const CharacterSet* characterSet) {
  if (characterSet != nullptr && DecodeFirstValue(dataSet, tag, *characterSet, out)) {
    if (out.size() <= kMaxValueChars) return out.empty() ? kDcNoValue : kDcOk;
    out.resize(kMaxValueChars);
    return kDcBufferTooShort;
  }
  std::array<char, kMaxValueChars + 1> value;
  value[0] = '\0';
  const DcCode code = dataSet.getValue(tag, value.data(), value.size());
  out = value[0] == '\0' ? Text() : WidenText(value.data(), CP_ACP);
  return code;
}

bool TakeElementText(const DcElemList& dataSet, DcTag tag, Text& out,
                     const CharacterSet* characterSet) {
  Text value;
  const DcCode code = ReadElementText(dataSet, tag, value, characterSet);
  const bool isRead =
      code == kDcOk || code == kDcNotInList || code == kDcNoValue || code == kDcBufferTooShort;
  return isRead && AssignText(out, value, kMaxValueChars);
}

}  // namespace quillon
