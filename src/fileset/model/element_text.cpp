#include "fileset/model/element_text.h"

#include <array>

namespace quillon {

DcCode ReadElementText(const DcElemList& dataSet, DcTag tag, Text& out) {
  std::array<char, kMaxValueChars + 1> value;
  value[0] = '\0';
  const DcCode code = dataSet.getValue(tag, value.data(), value.size());
  out = value[0] == '\0' ? Text() : WidenText(value.data(), CP_ACP);
  return code;
}

bool TakeElementText(const DcElemList& dataSet, DcTag tag, Text& out) {
  Text value;
  const DcCode code = ReadElementText(dataSet, tag, value);
  const bool isRead =
      code == kDcOk || code == kDcNotInList || code == kDcNoValue || code == kDcBufferTooShort;
  return isRead && AssignText(out, value, kMaxValueChars);
}

}  // namespace quillon
