// What the profiles are made of beside their rows.
#pragma once

#include <span>
#include <string_view>

#include "profiles/profile.h"

namespace quillon {

struct MediumName {
  std::uint16_t media;  // a set of ProfileMedia
  std::string_view name;
};
struct SyntaxName {
  std::string_view uid;
  std::string_view name;
};

// The media as people call them, and as jobs call what they write to.
std::span<const MediumName> MediaNames();
std::span<const MediumName> Targets();
std::span<const SyntaxName> SyntaxNames();
// SOP classes, behind "1.2.840.10008.5.1.", that are known and not stored on media today: retired
// ones and those of other fields.
std::span<const std::string_view> ClassesNotOnMedia();

}  // namespace quillon
