// How a node takes its texts from a data set: one row per attribute, read in row order.
#pragma once

#include <span>

#include "fileset/model/element_text.h"
#include "foundation/base_item.h"

namespace quillon {

template <typename Node>
struct AttributeRow {
  DcTag tag;
  Text Node::*field;
  UINT message;  // when the attribute cannot be read
};

// False, with the row's sentence left in `list`, at the first attribute that cannot be read. An
// attribute that is absent or empty reads as an empty text; one that is too long is cut.
template <typename Node>
[[nodiscard]] bool ReadAttributes(std::span<const AttributeRow<Node>> rows,
                                  const DcElemList& dataSet, Node& node, CBaseItem& list) {
  for (const AttributeRow<Node>& row : rows) {
    Text value;
    const DcCode code = ReadElementText(dataSet, row.tag, value);
    if (code != kDcOk && code != kDcNotInList && code != kDcNoValue && code != kDcBufferTooShort) {
      return list.Fail(row.message);
    }
    if (!AssignText(node.*row.field, value, kMaxValueChars)) return list.Fail(row.message);
  }
  return true;
}

}  // namespace quillon
