#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "chosen_medium.h"
#include "commands.h"
#include "figures.h"
#include "foundation/text.h"
#include "outcome.h"
#include "platform/services.h"
#include "profile_options.h"
#include "progress_bar.h"
#include "result_output.h"
#include "thrown.h"
#include "toolkit_log.h"
#include "verify/verify_medium.h"

namespace quillon::cli {

namespace {

constexpr const char* kFooter =
    R"(PATH is a directory, such as a mounted disc, or the DICOMDIR in it; of any maker. With --disc the
disc in a recorder is read, from the drive itself; one that is mounted is unmounted for it. Nothing is
changed. Each finding is one line: "error" (something cannot be read, or is another's than the DICOMDIR
says), "warning" (readable, but not as the standard wants it) or "note".

Exit status: 0 no error and no warning, 1 there is one, or the medium cannot be read, 2 wrong usage.)";

constexpr std::string_view kDicomDirName = "DICOMDIR";
constexpr std::array kSeverities{"error", "warning", "note"};

struct CommandOptions : ReadingOptions {
  bool hasNoSums = false;
  ProfileChoice profile;
};

std::string narrow(const Text& text) { return NarrowText(text, FileSystemCodePage()); }

std::string severityText(Severity severity) {
  return kSeverities[static_cast<std::size_t>(severity)];
}

std::string verdictText(const VerifyReport& report) {
  std::string verdict;
  const auto add = [&](Severity severity, std::string_view one, std::string_view many) {
    if (report.Count(severity) == 0) return;
    verdict += (verdict.empty() ? "" : ", ") + countText(report.Count(severity), one, many);
  };
  add(Severity::Error, "error", "errors");
  add(Severity::Warning, "warning", "warnings");
  add(Severity::Note, "note", "notes");
  return verdict.empty() ? "no findings" : verdict;
}

std::string plainText(const VerifyReport& report) {
  std::string text;
  for (const Finding& finding : report.findings) {
    const std::string file = narrow(finding.file);
    text += severityText(finding.severity) + ": " +
            singleLine((file.empty() ? "" : file + ": ") + narrow(finding.message)) + "\n";
  }
  if (report.leftOut != 0) {
    text += countText(report.leftOut, "more finding", "more findings") +
            " of the same kinds, of which the first " + std::to_string(kMaxFindingsOfKind) +
            " each are shown.\n";
  }
  text += "Verified: " + countText(report.patients, "patient", "patients") + ", " +
          countText(report.studies, "study", "studies") + ", " +
          countText(report.series, "series", "series") + ", " +
          countText(report.records, "record", "records") + ", " +
          countText(report.files, "file", "files") + ", " + sizeText(report.bytes);
  if (report.checkedSums != 0) text += ", " + countText(report.checkedSums, "sum", "sums");
  return text + ": " + verdictText(report) + ".\n";
}

void addMembers(Json& object, const VerifyReport& report, const Outcome& outcome) {
  object["whole"] = !outcome.failed() && report.IsWhole();
  object["patients"] = report.patients;
  object["studies"] = report.studies;
  object["series"] = report.series;
  object["records"] = report.records;
  object["files"] = report.files;
  object["bytes"] = report.bytes;
  object["sums"] = report.checkedSums;
  object["errors"] = report.Count(Severity::Error);
  object["warnings"] = report.Count(Severity::Warning);
  object["notes"] = report.Count(Severity::Note);
  object["left_out"] = report.leftOut;
  Json& findings = object["findings"] = Json::array();
  for (const Finding& finding : report.findings) {
    Json& one = findings.emplace_back();
    one["severity"] = severityText(finding.severity);
    one["code"] = finding.code;
    one["file"] = textOrNull(narrow(finding.file));
    one["record"] = textOrNull(narrow(finding.record));
    one["message"] = narrow(finding.message);
  }
}

// Of a DICOMDIR, as which a mounted one may be called "dicomdir", the directory that it stands in.
std::string mediumOf(const std::string& path) {
  std::error_code error;
  const std::filesystem::path given(path);
  std::string name = given.filename().string();
  std::ranges::transform(name, name.begin(), [](unsigned char c) { return std::toupper(c); });
  if (name != kDicomDirName || !std::filesystem::is_regular_file(given, error)) {
    return path;
  }
  const std::string directory = given.parent_path().string();
  return directory.empty() ? "." : directory;
}

Outcome verify(const CommandOptions& options, ChosenMedium& medium, VerifyReport& report) {
  if (Outcome log = sendToolkitLog(options.logFile); log.failed()) return log;
  const Text path = WidenText(mediumOf(options.medium.path), FileSystemCodePage());
  if (Outcome opened = medium.open(options.medium, path); opened.failed()) return opened;
  ProgressBar bar(options.showsProgress);
  bool hasBegun = false;
  VerifyOptions how;
  how.checksSums = !options.hasNoSums;
  if (!options.profile.isNone()) {
    how.profile = options.profile.profiles.front();
    how.mediumKind = medium.kind(options.medium);
  }
  how.progress = [&](const VerifyProgress& progress) {
    if (!hasBegun) {
      bar.begin("Verifying", progress.total,
                progress.isBytes ? ProgressUnit::Bytes : ProgressUnit::Files);
    }
    hasBegun = true;
    bar.advance(progress.done);
  };
  CBaseItem errors;
  if (!VerifyMedium(medium.source(), how, report, errors)) return narrow(errors.ErrorMessage());
  return {};
}

int runVerify(const CommandOptions& options) {
  VerifyReport report;
  ChosenMedium medium;
  const Outcome outcome = guarded([&] { return verify(options, medium, report); });
  std::string output;
  if (options.isJson) {
    Json object = emptyObject();
    medium.addMembers(object, options.medium);
    addMembers(object, report, outcome);
    output = jsonObject(std::move(object), outcome);
  } else if (!outcome.failed()) {
    output = plainText(report);
  }
  const int status = finish(Output::of(options.isJson, std::move(output)), outcome,
                            medium.failuresBeside(outcome));
  constexpr int kExitFindings = 1;
  return status == 0 && !report.IsWhole() ? kExitFindings : status;
}

}  // namespace

void addVerifyCommand(CLI::App& program, int& exitStatus) {
  const auto options = std::make_shared<CommandOptions>();
  CLI::App* command = program.add_subcommand(
      "verify", "Tells whether a medium is whole: its DICOMDIR, its files and their sums");
  addReadingOptions(*command, *options, "The medium, or its DICOMDIR");
  command->add_flag("--no-sums", options->hasNoSums,
                    "Do not compare the files with SHA256SUMS: only their headers are read");
  addProfileOption(*command, options->profile, /*hasAuto=*/false);
  command->footer(kFooter);
  command->callback([options, &exitStatus] {
    checkMediumChoice(options->medium);
    exitStatus = runVerify(*options);
  });
}

}  // namespace quillon::cli
