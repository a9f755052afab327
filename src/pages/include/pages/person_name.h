// Names of persons as people read them.
#pragma once

#include <vector>

#include "foundation/text.h"

namespace quillon {

struct NameGroup {
  const char* form;  // "letters", "ideographs" or "phonetic"
  Text text;
};

// "Adams^John^Quincy^Rev.^B.A." as "Adams, Rev. John Quincy, B.A."; of ideographs and their
// pronunciation the family name first with a space behind it. Groups without a name are left out.
[[nodiscard]] std::vector<NameGroup> ReadableName(TextView name);
// Of several groups the first.
[[nodiscard]] Text FirstReadableName(TextView name);

}  // namespace quillon
