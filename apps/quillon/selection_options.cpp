#include "selection_options.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <fstream>
#include <iostream>
#include <string_view>

#include "media_job.h"

namespace quillon::cli {

namespace {

std::string withoutDashes(std::string date) {
  if (date.size() == 10 && date[4] == '-' && date[7] == '-') std::erase(date, '-');
  return date;
}

// As CLI11 asks: what is wrong with it, or nothing.
std::string checkDate(const std::string& text) {
  const std::string date = withoutDashes(text);
  const bool hasDigits =
      date.size() == 8 && std::ranges::all_of(date, [](char c) { return c >= '0' && c <= '9'; });
  if (hasDigits) {
    const std::chrono::year_month_day day{
        std::chrono::year(std::stoi(date.substr(0, 4))),
        std::chrono::month(static_cast<unsigned>(std::stoi(date.substr(4, 2)))),
        std::chrono::day(static_cast<unsigned>(std::stoi(date.substr(6))))};
    if (day.ok()) return {};
  }
  return text + " is no date of the form YYYY-MM-DD";
}

std::vector<Text> wideAll(const std::vector<std::string>& texts) {
  std::vector<Text> all;
  all.reserve(texts.size());
  for (const std::string& text : texts) all.push_back(wide(text));
  return all;
}

Outcome readNames(std::istream& names, const SelectionOptions& options,
                  std::vector<std::string>& sources) {
  const char end = options.areNamesNullEnded ? '\0' : '\n';
  for (std::string name; std::getline(names, name, end);) {
    if (!options.areNamesNullEnded && name.ends_with('\r')) name.pop_back();
    if (!name.empty()) sources.push_back(name);
  }
  if (!names.bad()) return {};
  return "The list of files " + options.filesFrom + " cannot be read: " + std::strerror(errno) +
         ".";
}

}  // namespace

void addSelectionOptions(CLI::App& command, SelectionOptions& options) {
  command.add_option("--study", options.studies, "Take only the study with this UID; repeatable")
      ->allow_extra_args(false)
      ->type_name("UID");
  command.add_option("--series", options.series, "Take only the series with this UID; repeatable")
      ->allow_extra_args(false)
      ->type_name("UID");
  command
      .add_option("--modality", options.modalities, "Take only objects of these modalities: CT,MR")
      ->allow_extra_args(false)
      ->delimiter(',')
      ->type_name("LIST");
  command
      .add_option("--since", options.since,
                  "Take only studies from this day on; what has no date is left out")
      ->check(checkDate)
      ->type_name("YYYY-MM-DD");
  auto* list =
      command
          .add_option("--files-from", options.filesFrom,
                      "Take the files and directories that a file names, one a line; - is standard "
                      "input")
          ->type_name("FILE");
  command
      .add_flag("-0,--null", options.areNamesNullEnded,
                "The names in it end in zero bytes, as those of find -print0")
      ->needs(list);
}

ObjectSelection selectionOf(const SelectionOptions& options) {
  return {wideAll(options.studies), wideAll(options.series), wideAll(options.modalities),
          wide(withoutDashes(options.since))};
}

Outcome takeListedSources(const SelectionOptions& options, std::vector<std::string>& sources) {
  if (options.filesFrom.empty()) {
    if (sources.empty()) throw CLI::RequiredError("PATH");
    return {};
  }
  const std::size_t named = sources.size();
  Outcome read;
  if (options.filesFrom == "-") {
    read = readNames(std::cin, options, sources);
  } else {
    std::ifstream names(options.filesFrom, std::ios::binary);
    if (!names) {
      return "The list of files " + options.filesFrom + " cannot be read: " + std::strerror(errno) +
             ".";
    }
    read = readNames(names, options, sources);
  }
  if (read.failed() || sources.size() > named || named > 0) return read;
  return "The list of files " + options.filesFrom + " names none.";
}

}  // namespace quillon::cli
