// How far a file set meets an application profile.
#pragma once

#include <cstdint>
#include <vector>

#include "foundation/shared_text.h"
#include "profiles/profile.h"

namespace quillon {

struct ProfileViolation {
  SharedText source;  // the object's file; empty for what concerns the whole set
  Text rule;          // "Rows (0028,0010) must be at most 512"
  Text found;         // "1024"
};

inline constexpr std::size_t kMaxViolationsOfRule = 1000;

struct ProfileReport {
  const Profile* profile = nullptr;
  std::uint64_t count = 0;
  // The first ones of each rule; none where several profiles are tried.
  std::vector<ProfileViolation> violations;
};

}  // namespace quillon
