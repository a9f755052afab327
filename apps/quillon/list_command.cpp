#include <algorithm>
#include <memory>
#include <string>

#include "chosen_medium.h"
#include "commands.h"
#include "figures.h"
#include "json_output.h"
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

// The elements of a list, each by write.
template <typename List, typename Write>
std::string jsonList(const List& list, const Write& write) {
  std::string out = "[";
  const char* separator = "";
  for (const auto& one : list) {
    out += separator + write(one);
    separator = ",";
  }
  return out + "]";
}

std::string jsonText(TextView text) { return jsonString(narrow(text)); }

std::string jsonOf(const SeriesContents& series) {
  return "{" + jsonMember("uid", jsonText(series.uid)) +
         jsonMember("modality", jsonText(series.modality)) +
         jsonMember("number", jsonText(series.number)) +
         jsonMember("description", jsonText(series.description)) +
         jsonMember("objects", std::to_string(series.objects)) +
         "\"bytes\":" + std::to_string(series.bytes) + "}";
}

std::string jsonOf(const StudyContents& study) {
  return "{" + jsonMember("uid", jsonText(study.uid)) + jsonMember("date", jsonText(study.date)) +
         jsonMember("id", jsonText(study.id)) +
         jsonMember("accession_number", jsonText(study.accessionNumber)) +
         jsonMember("description", jsonText(study.description)) + "\"series\":" +
         jsonList(study.series, [](const SeriesContents& one) { return jsonOf(one); }) + "}";
}

std::string jsonOf(const PatientContents& patient) {
  return "{" + jsonMember("name", jsonText(patient.name)) + jsonMember("id", jsonText(patient.id)) +
         jsonMember("birth_date", jsonText(patient.birthDate)) +
         jsonMember("sex", jsonText(patient.sex)) + "\"studies\":" +
         jsonList(patient.studies, [](const StudyContents& one) { return jsonOf(one); }) + "}";
}

std::string jsonMembersOf(const MediumContents& contents) {
  return jsonMember("patients",
                    jsonList(contents.patients, [](const auto& one) { return jsonOf(one); })) +
         jsonMember("studies", std::to_string(contents.studies)) +
         jsonMember("series", std::to_string(contents.series)) +
         jsonMember("objects", std::to_string(contents.objects)) +
         jsonMember("bytes", std::to_string(contents.bytes)) +
         jsonMember("without_study", std::to_string(contents.withoutStudy)) +
         jsonMember("unreadable",
                    jsonList(contents.unreadable,
                             [](const Text& one) { return jsonString(mediumPath(one)); })) +
         jsonMember("other_files", std::to_string(contents.otherFiles));
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
  if (const Outcome log = sendToolkitLog(options.logFile); log.failed()) return finish({}, log, {});
  MediumContents contents;
  CBaseItem errors;
  Outcome outcome;
  ChosenMedium medium;
  ProgressBar progress(options.showsProgress);
  bool hasBegun = false;
  const auto advance = [&](std::size_t done, std::size_t total) {
    if (!hasBegun) progress.begin("Reading", total, ProgressUnit::Files);
    hasBegun = true;
    progress.advance(done);
  };
  const std::string path = options.medium.isDisc ? "" : absolutePath(options.medium.path);
  outcome = medium.open(options.medium, wide(path));
  if (!outcome.failed() && !ListContents(medium.source(), advance, contents, errors)) {
    outcome = narrow(errors.ErrorMessage());
  }
  progress.clear();
  std::string output;
  if (options.isJson) {
    output = jsonObject(medium.jsonMembers(options.medium) + jsonMembersOf(contents), outcome);
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
