#include <algorithm>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>

#include "commands.h"
#include "json_output.h"
#include "profiles/profile.h"
#include "result_output.h"

namespace quillon::cli {

namespace {

constexpr const char* kFooter =
    R"(A profile says which objects, transfer syntaxes, values, directory keys and media a file set may
have, so that a reader of that profile can use all of it. --profile of create, publish and verify takes
one of these names.

Exit status: 0 done, 2 wrong usage.)";

std::string tableOfProfiles() {
  std::size_t nameWidth = 0;
  std::size_t mediaWidth = 0;
  for (const Profile& profile : AllProfiles()) {
    nameWidth = std::max(nameWidth, profile.name.size());
    mediaWidth = std::max(mediaWidth, MediaText(profile).size());
  }
  std::string table;
  for (const Profile& profile : AllProfiles()) {
    const std::string media = MediaText(profile);
    table += std::string(profile.name) + std::string(nameWidth + 2 - profile.name.size(), ' ') +
             media + std::string(mediaWidth + 2 - media.size(), ' ') +
             std::string(profile.purpose) + "\n";
  }
  return table;
}

std::string jsonOfProfiles() {
  Json object;
  Json& profiles = object["profiles"] = Json::array();
  for (const Profile& profile : AllProfiles()) {
    Json& one = profiles.emplace_back();
    one["name"] = profile.name;
    one["media"] = MediaText(profile);
    one["purpose"] = profile.purpose;
  }
  return jsonObject(std::move(object), {});
}

}  // namespace

void addProfilesCommand(CLI::App& program, int& exitStatus) {
  const auto isJson = std::make_shared<bool>(false);
  CLI::App* command = program.add_subcommand(
      "profiles", "Lists the media application profiles that a file set can be held to");
  addJsonOption(*command, *isJson);
  command->footer(kFooter);
  command->callback([isJson, &exitStatus] {
    std::string output = *isJson ? jsonOfProfiles() : tableOfProfiles();
    exitStatus = finish(Output::of(*isJson, std::move(output)), {}, {});
  });
}

}  // namespace quillon::cli
