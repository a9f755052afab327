// The application profile that a job or a medium is held to, and what is told of it.
#pragma once

#include <CLI/CLI.hpp>
#include <cstdint>
#include <string>
#include <vector>

#include "json_output.h"
#include "profiles/profile.h"

namespace quillon::cli {

struct ProfileChoice {
  std::string name;                      // as the user wrote it; empty: none
  std::vector<const Profile*> profiles;  // the one of that name, or all for "auto"

  [[nodiscard]] bool isAuto() const { return profiles.size() > 1; }
  [[nodiscard]] bool isNone() const { return profiles.empty(); }
};

// One of the set, or of one of its objects.
struct ProfileFault {
  std::string path;  // of the object's file, as the user gave it; empty for the set
  std::string rule;
  std::string found;
};

struct ProfileResult {
  std::string name;  // "auto", or of the profile; empty: none was asked for
  // Of auto: those that the set meets.
  std::vector<std::string> met;
  // Of one profile.
  std::uint64_t count = 0;
  std::vector<ProfileFault> faults;  // the first ones of each rule
};

// --profile NAME; "auto" too where hasAuto. A name that there is not is refused with the nearest.
void addProfileOption(CLI::App& command, ProfileChoice& choice, bool hasAuto);

// One for each rule that is not met, and of auto whether none is met.
std::vector<std::string> remarksOn(const ProfileResult& result);
// "" or "Profiles:  STD-GEN-CD, ..." as lines.
std::string plainText(const ProfileResult& result);
// Adds the member "profile" to a JSON object; nothing when none was asked for.
void addMembers(Json& object, const ProfileResult& result);

}  // namespace quillon::cli
