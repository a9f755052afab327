// The names that each file system of an image gives to the entries of one directory.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quillon::platform {

enum class NameRules {
  IsoLevel1,  // 8 and 3 of A-Z 0-9 _
  IsoLevel2,  // 30 of the same in name and extension together, 31 in a directory's name
  Joliet,     // 64 UTF-16 units without control characters and * / : ; ? and backslash; no dot or
              // space at the end
  Udf,        // 254 characters up to U+00FF, or 127 UTF-16 units, without / and zero
};

struct NameToMap {
  std::u16string_view name;
  bool isDirectory;
};

// One legal name for each of names, unique among them, in the same order. A name that is legal as
// it is stays, unless it differs from an earlier one in case only: the discs are read on systems
// that take such names for one. The others follow in order and receive a number where needed
// ("LONGNA_1.TXT"). False when no unique name is left.
bool mapNames(NameRules rules, const std::vector<NameToMap>& names,
              std::vector<std::u16string>& mapped);

// Volume names. What a format cannot hold becomes "_", what is too long is cut.
std::u16string isoVolumeName(std::u16string_view name);     // 32 of A-Z 0-9 _
std::u16string jolietVolumeName(std::u16string_view name);  // 16 UTF-16 units

// At most limit units, without half a surrogate pair at the end.
std::u16string_view cutUnits(std::u16string_view text, std::size_t limit);

}  // namespace quillon::platform
