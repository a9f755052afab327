// Short codes and names of the SOP classes of image objects.
#pragma once

#include "foundation/text.h"

namespace quillon {

struct SopClassRow {
  TextView code;
  TextView name;
  TextView uid;
};

// The row of a UID; null when the table has none.
const SopClassRow* FindSopClass(TextView uid);

}  // namespace quillon
