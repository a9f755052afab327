#include "profile_options.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "command_tree.h"
#include "nearest_name.h"
#include "record_remarks.h"

namespace quillon::cli {

namespace {

constexpr const char* kAuto = "auto";

// Not more for one job than a terminal shows.
constexpr std::size_t kMostRemarks = 20;

std::vector<const Profile*> everyProfile() {
  std::vector<const Profile*> profiles;
  for (const Profile& profile : AllProfiles()) profiles.push_back(&profile);
  return profiles;
}

std::vector<std::string> profileNames() {
  std::vector<std::string> names;
  for (const Profile& profile : AllProfiles()) names.emplace_back(profile.name);
  return names;
}

std::string choose(ProfileChoice& choice, const std::string& name, bool hasAuto) {
  choice.name = name;
  if (hasAuto && name == kAuto) {
    choice.profiles = everyProfile();
    return {};
  }
  const Profile* profile = FindProfile(name);
  if (profile == nullptr) {
    return name + " is no profile; did you mean " + nearestName(name, profileNames()) +
           "? quillon profiles lists them";
  }
  choice.profiles = {profile};
  return {};
}

// The faults of each rule, in the order of the first ones.
std::vector<std::vector<const ProfileFault*>> byRule(const std::vector<ProfileFault>& faults) {
  std::vector<std::vector<const ProfileFault*>> groups;
  for (const ProfileFault& fault : faults) {
    const auto group = std::ranges::find_if(
        groups, [&](const auto& members) { return members.front()->rule == fault.rule; });
    if (group == groups.end()) {
      groups.push_back({&fault});
    } else {
      group->push_back(&fault);
    }
  }
  return groups;
}

}  // namespace

void addProfileOption(CLI::App& command, ProfileChoice& choice, bool hasAuto) {
  std::vector<std::string> names = profileNames();
  if (hasAuto) names.emplace_back(kAuto);
  command
      .add_option_function<std::string>(
          "--profile",
          [&choice, hasAuto](const std::string& name) {
            const std::string refused = choose(choice, name, hasAuto);
            if (!refused.empty()) throw CLI::ValidationError("--profile", refused);
          },
          hasAuto ? "Tell what does not meet this application profile (quillon profiles lists "
                    "them); auto: tell which ones are met"
                  : "Hold the medium to this application profile (quillon profiles lists them)")
      ->check(offers(names))
      ->type_name("NAME");
}

std::vector<std::string> remarksOn(const ProfileResult& result) {
  std::vector<std::string> remarks;
  if (result.name == kAuto && result.met.empty()) {
    remarks.emplace_back("The file set meets none of the profiles that quillon profiles lists.");
  }
  const auto groups = byRule(result.faults);
  for (const auto& group : groups) {
    if (remarks.size() == kMostRemarks) {
      remarks.push_back("Of " + std::to_string(groups.size() - kMostRemarks) + " more rules of " +
                        result.name + " the same is true.");
      break;
    }
    remarks.push_back(result.name + ": " + group.front()->rule + ": " +
                      someOf(group,
                             [](const ProfileFault* fault) {
                               return fault->path.empty() ? "it is " + fault->found
                                                          : fault->path + " (" + fault->found + ")";
                             }) +
                      ".");
  }
  return remarks;
}

std::string plainText(const ProfileResult& result) {
  if (result.name.empty()) return {};
  if (result.name != kAuto) {
    return "Profile:   " + result.name +
           (result.count == 0 ? ", met"
                              : ", not met: " + std::to_string(result.count) +
                                    (result.count == 1 ? " violation" : " violations")) +
           "\n";
  }
  std::string names;
  for (const std::string& name : result.met) names += (names.empty() ? "" : "\n           ") + name;
  return "Profiles:  " + (names.empty() ? "none is met" : names) + "\n";
}

void addMembers(Json& object, const ProfileResult& result) {
  if (result.name.empty()) return;
  Json& profile = object["profile"];
  profile["name"] = result.name;
  if (result.name == kAuto) {
    profile["met"] = result.met;
    return;
  }
  profile["violations"] = result.count;
  Json& found = profile["found"] = Json::array();
  for (const ProfileFault& fault : result.faults) {
    Json& one = found.emplace_back();
    addPath(one, fault.path);
    one["rule"] = fault.rule;
    one["value"] = fault.found;
  }
}

}  // namespace quillon::cli
