// What a caller may name a volume, whatever the file systems make of it.
#pragma once

#include <string>
#include <string_view>

namespace quillon::platform {

// At most 32 units, without control characters and halves of characters: those cannot be shown on
// any system.
bool isLegalVolumeName(std::u16string_view name);

// The day, as the name of a volume that received none.
std::u16string volumeNameOfToday();

}  // namespace quillon::platform
