#include "other_content_options.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "create_job.h"
#include "media_job.h"
#include "settings.h"

namespace quillon::cli {

namespace {

constexpr const char* kDefaultPlace = "QUILLON";

ContentDirectory parsed(const std::string& argument) {
  const std::size_t colon = argument.rfind(':');
  if (colon == std::string::npos) return {argument, kDefaultPlace};
  return {argument.substr(0, colon), argument.substr(colon + 1)};
}

}  // namespace

void addOtherContentOptions(CLI::App& command, OtherContentOptions& options) {
  CLI::Option* none = command.add_flag_callback(
      "--no-other-content", [&options] { options.isTaken = false; },
      "Do not copy the configured non-DICOM content");
  command
      .add_option_function<std::vector<std::string>>(
          "--other-content",
          [&options](const std::vector<std::string>& arguments) {
            for (const std::string& argument : arguments) {
              options.named.push_back(parsed(argument));
            }
          },
          "Copy this directory instead of the configured one, to NAME on the medium (default: "
          "QUILLON; . is the root); repeatable")
      ->check([](const std::string& argument) {
        const ContentDirectory one = parsed(argument);
        if (one.path.empty()) return std::string("no directory is named");
        return checkContentPlace(one.place).text();
      })
      ->allow_extra_args(false)
      ->type_name("DIR[:NAME]")
      ->excludes(none);
}

Outcome checkContentPlace(const std::string& place) {
  Outcome refused("Other content cannot lie in \"" + place + "\" on a medium.");
  if (place == ".") return {};
  std::string_view rest = place;
  for (;;) {
    const std::size_t end = std::min(rest.find_first_of("/\\"), rest.size());
    const std::string_view level = rest.substr(0, end);
    const bool isName = level.find_first_not_of(". ") != std::string_view::npos &&
                        level.find_first_of(":*?\"<>|") == std::string_view::npos;
    if (!isName) return refused;
    if (end == rest.size()) return {};
    rest.remove_prefix(end + 1);
  }
}

Outcome applyOtherContent(const OtherContentOptions& options, bool isStrict, MediaJob& job) {
  job.setOtherContent(options.isTaken, isStrict);
  if (!options.isTaken) return {};
  std::vector<NamedContent> named;
  for (const ContentDirectory& one : options.named) {
    named.push_back({wide(absoluteRoot(one.path)), wide(one.place)});
  }
  const bool isConfigured = named.empty();
  job.setOtherContents(std::move(named));
  if (!isConfigured) return {};
  const std::string place = settingText("OtherContentDirectory");
  if (Outcome checked = checkContentPlace(place); checked.failed()) return checked;
  return job.setOtherContentDirectory(place);
}

std::vector<std::string> contentSources(const OtherContentOptions& options) {
  std::vector<std::string> sources;
  for (const ContentDirectory& one : options.named) sources.push_back(absoluteRoot(one.path));
  if (!options.isTaken || !sources.empty()) return sources;
  const std::string configured = settingText("OtherContentSourceDir");
  if (!configured.empty()) sources.push_back(absoluteRoot(configured));
  return sources;
}

}  // namespace quillon::cli
