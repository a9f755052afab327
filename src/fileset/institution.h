// Who hands out a medium, as its label, its README.TXT and its pages show it.
#pragma once

#include "foundation/base_item.h"

namespace quillon {

// Empty texts where nothing is configured.
struct Institution {
  Text name;
  Text address;
  Text phone;
  Text web;
  Text disclaimer;

  bool operator==(const Institution&) const = default;
};

// Of the registry. False with one sentence in errors when a value is there and cannot be read.
[[nodiscard]] bool ReadInstitution(Institution& institution, CBaseItem& errors);

}  // namespace quillon
