// Names of the transfer syntaxes.
#pragma once

#include "foundation/text.h"

namespace quillon {

struct TransferSyntaxRow {
  TextView name;
  TextView uid;
};

// The row of a UID; null when the table has none.
const TransferSyntaxRow* FindTransferSyntax(TextView uid);

}  // namespace quillon
