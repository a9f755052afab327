// UIDs that no other system makes: of a random UUID.
#pragma once

#include <string>

namespace quillon {

// "2.25." and the UUID as a decimal number; empty when the platform makes none.
std::string MakeUniqueUid();

}  // namespace quillon
