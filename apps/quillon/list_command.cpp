#include <algorithm>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>

#include "chosen_medium.h"
#include "commands.h"
#include "figures.h"
#include "media_job.h"
#include "medium/medium_contents.h"
#include "progress_bar.h"
#include "result_output.h"
#include "source_walk.h"
#include "toolkit_log.h"

namespace quillon::cli {

namespace {

constexpr const char* kFooter =
    R"(Says whose images a medium or a directory of files holds, by what the headers of the files say.
With --disc the disc in a recorder is read, from the drive itself; one that is mounted is unmounted
for it. A DICOMDIR is not asked, and nothing is changed: quillon verify checks whether the one fits the others.

Exit status: 0 done, 1 the medium cannot be read, 2 wrong usage.)";

constexpr std::size_t kMaxNamed = 10;  // files that a remark of their own is made of

// YYYY-MM-DD; what is no date stays as it is.
std::string dateText(TextView date) {
  std::string text = narrow(date);
  if (text.size() != 8) return text;
  return text.insert(6, "-").insert(4, "-");
}

std::string orDash(const std::string& text) { return text.empty() ? "-" : text; }

// A line end in a value must not begin a line of its own.
std::string lineOf(TextView value) {
  std::string text = narrow(value);
  std::replace(text.begin(), text.end(), '\n', ' ');
  return text;
}

std::string tableLine(const std::string& number, const std::string& modality,
                      const std::string& objects, const std::string& size,
                      const std::string& description) {
  const auto right = [](const std::string& text, std::size_t columns) {
    return std::string(text.size() < columns ? columns - text.size() : 0, ' ') + text;
  };
  const auto left = [](const std::string& text, std::size_t columns) {
    return text + std::string(text.size() < columns ? columns - text.size() : 0, ' ');
  };
  std::string line = right(number, 10) + "  " + left(modality, 8) + right(objects, 9) +
                     right(size, 11) + "  " + description;
  line.erase(line.find_last_not_of(' ') + 1);
  return line + "\n";
}

std::string tableOf(const MediumContents& contents) {
  std::string out;
  if (!contents.patients.empty()) {
    out += tableLine("Series", "Modality", "Objects", "Size", "Description");
  }
  for (const PatientContents& patient : contents.patients) {
    out += orDash(lineOf(patient.name)) + "  ID " + orDash(lineOf(patient.id));
    if (!patient.birthDate.empty()) out += "  born " + dateText(patient.birthDate);
    if (!patient.sex.empty()) out += "  " + lineOf(patient.sex);
    out += "\n";
    for (const StudyContents& study : patient.studies) {
      out += "  " + orDash(dateText(study.date)) + "  " + lineOf(study.description);
      out.erase(out.find_last_not_of(' ') + 1);
      out += "\n";
      for (const SeriesContents& series : study.series) {
        out += tableLine(orDash(lineOf(series.number)), orDash(lineOf(series.modality)),
                         std::to_string(series.objects), sizeText(series.bytes),
                         lineOf(series.description));
      }
    }
  }
  if (!out.empty()) out += "\n";
  out += countText(contents.patients.size(), "patient", "patients") + ", " +
         countText(contents.studies, "study", "studies") + ", " + std::to_string(contents.series) +
         " series, " + countText(contents.objects, "object", "objects") + ", " +
         sizeText(contents.bytes);
  if (contents.withoutStudy > 0) {
    out += "; " + std::to_string(contents.withoutStudy) + " of the objects belong to no study";
  }
  return out + "\n";
}

Json jsonOf(const SeriesContents& series) {
  Json object;
  object["uid"] = narrow(series.uid);
  object["modality"] = narrow(series.modality);
  object["number"] = narrow(series.number);
  object["description"] = narrow(series.description);
  object["objects"] = series.objects;
  object["bytes"] = series.bytes;
  return object;
}

Json jsonOf(const StudyContents& study) {
  Json object;
  object["uid"] = narrow(study.uid);
  object["date"] = narrow(study.date);
  object["id"] = narrow(study.id);
  object["accession_number"] = narrow(study.accessionNumber);
  object["description"] = narrow(study.description);
  Json& all = object["series"] = Json::array();
  for (const SeriesContents& series : study.series) all.push_back(jsonOf(series));
  return object;
}

Json jsonOf(const PatientContents& patient) {
  Json object;
  object["name"] = narrow(patient.name);
  object["id"] = narrow(patient.id);
  object["birth_date"] = narrow(patient.birthDate);
  object["sex"] = narrow(patient.sex);
  Json& studies = object["studies"] = Json::array();
  for (const StudyContents& study : patient.studies) studies.push_back(jsonOf(study));
  return object;
}

void addMembers(Json& object, const MediumContents& contents) {
  Json& patients = object["patients"] = Json::array();
  for (const PatientContents& patient : contents.patients) patients.push_back(jsonOf(patient));
  object["studies"] = contents.studies;
  object["series"] = contents.series;
  object["objects"] = contents.objects;
  object["bytes"] = contents.bytes;
  object["without_study"] = contents.withoutStudy;
  Json& unreadable = object["unreadable"] = Json::array();
  for (const Text& path : contents.unreadable) unreadable.push_back(mediumPath(path));
  object["other_files"] = contents.otherFiles;
}

std::vector<std::string> remarksOn(const MediumContents& contents) {
  std::vector<std::string> remarks;
  for (const Text& path : contents.unreadable) {
    if (remarks.size() == kMaxNamed) {
      remarks.push_back(std::to_string(contents.unreadable.size() - kMaxNamed) +
                        " more files cannot be read.");
      break;
    }
    remarks.push_back(mediumPath(path) + " cannot be read.");
  }
  return remarks;
}

int runList(const ReadingOptions& options) {
  MediumContents contents;
  CBaseItem errors;
  Outcome outcome = sendToolkitLog(options.logFile);
  ChosenMedium medium;
  ProgressBar progress(options.showsProgress);
  bool hasBegun = false;
  const auto advance = [&](std::size_t done, std::size_t total) {
    if (!hasBegun) progress.begin("Reading", total, ProgressUnit::Files);
    hasBegun = true;
    progress.advance(done);
  };
  const std::string path = options.medium.isDisc ? "" : absolutePath(options.medium.path);
  if (!outcome.failed()) outcome = medium.open(options.medium, wide(path));
  if (!outcome.failed() && !ListContents(medium.source(), advance, contents, errors)) {
    outcome = narrow(errors.ErrorMessage());
  }
  progress.clear();
  std::string output;
  if (options.isJson) {
    Json object = emptyObject();
    medium.addMembers(object, options.medium);
    addMembers(object, contents);
    output = jsonObject(std::move(object), outcome);
  } else if (!outcome.failed()) {
    output = tableOf(contents);
  }
  std::vector<std::string> remarks = remarksOn(contents);
  const std::vector<std::string> failures = medium.failuresBeside(outcome);
  remarks.insert(remarks.end(), failures.begin(), failures.end());
  return finish(Output::of(options.isJson, std::move(output)), outcome, remarks);
}

}  // namespace

void addListCommand(CLI::App& program, int& exitStatus) {
  const auto options = std::make_shared<ReadingOptions>();
  CLI::App* command = program.add_subcommand(
      "list", "Lists the patients, studies and series of a medium or a directory");
  addReadingOptions(*command, *options, "A medium, or a directory of DICOM files");
  command->footer(kFooter);
  command->callback([options, &exitStatus] {
    checkMediumChoice(options->medium);
    exitStatus = runList(*options);
  });
}

}  // namespace quillon::cli
