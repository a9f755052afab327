#include "chosen_medium.h"

#include <array>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string_view>
#include <vector>

#include "commands.h"
#include "disc_progress_scope.h"
#include "foundation/base_item.h"
#include "media_job.h"
#include "password_file.h"
#include "recording/disc_interruption.h"

namespace quillon::cli {

void addReadingOptions(CLI::App& command, ReadingOptions& options, const std::string& pathHelp) {
  MediumChoice& choice = options.medium;
  CLI::Option* path = command.add_option("PATH", choice.path, pathHelp);
  CLI::Option* disc =
      command.add_flag("--disc", choice.isDisc, "The disc in a recorder, not PATH")->excludes(path);
  command
      .add_option("--recorder", choice.recorder,
                  "Name of the recorder, as quillon disc list shows it (default: the first whose "
                  "disc holds something)")
      ->type_name("NAME")
      ->needs(disc);
  command
      .add_option("--password-file", choice.passwordFile,
                  "A file whose first line is the password of an encrypted ZIP file")
      ->type_name("FILE")
      ->excludes(disc);
  addJsonOption(command, options.isJson);
  addQuietOption(command, options.showsProgress);
  addLogOption(command, options.logFile);
}

void checkMediumChoice(const MediumChoice& choice) {
  if (choice.path.empty() && !choice.isDisc) throw CLI::RequiredError("PATH or --disc");
}

Outcome ChosenMedium::open(const MediumChoice& choice, TextView path) {
  if (choice.isDisc) {
    guard_.emplace([] { static_cast<void>(platform::StopDiscOperations()); }, kPatienceWithDrive);
    return disc_.open(choice.recorder);
  }
  std::string password;
  if (choice.passwordFile) {
    if (Outcome read = readPassword(*choice.passwordFile, password); read.failed()) return read;
  }
  CBaseItem errors;
  path_ = OpenMedium(path, errors, password);
  return path_ != nullptr ? Outcome() : Outcome(narrow(errors.ErrorMessage()));
}

std::string ChosenMedium::kind(const MediumChoice& choice) const {
  if (choice.isDisc) return disc_.media();
  constexpr std::string_view kZipBegin = "PK";
  std::array<char, kZipBegin.size()> begin{};
  std::ifstream file(choice.path, std::ios::binary);
  if (!file.read(begin.data(), begin.size())) return {};  // a directory
  return std::string_view(begin.data(), begin.size()) == kZipBegin ? "zip" : "image";
}

std::vector<std::string> ChosenMedium::failuresBeside(const Outcome& outcome) const {
  std::vector<std::string> failures = disc_.failures();
  std::erase(failures, outcome.text());
  return failures;
}

void ChosenMedium::addMembers(Json& object, const MediumChoice& choice) const {
  addPath(object, choice.isDisc ? std::string() : choice.path);
  if (!choice.isDisc) return;
  object["recorder"] = textOrNull(disc_.recorder().empty() ? choice.recorder : disc_.recorder());
}

}  // namespace quillon::cli
