#include "create_command.h"

#include <cstdio>
#include <memory>
#include <string>

#include "create_job.h"
#include "json_output.h"
#include "toolkit_log.h"

namespace quillon::cli {

namespace {

constexpr int kExitDone = 0;
constexpr int kExitFailed = 1;

constexpr const char* kFooter =
    R"(Without --move the sources stay as they are: the file set is made of copies, which share their
blocks with the sources where the file system can do that. With --move the files themselves become
part of the file set; of a symbolic link it is a copy of the file, and the link stays.

While a directory is walked, in ascending order of names, files that are not DICOM are passed over
and listed. A file named on the command line, or a DICOM file, that cannot be added ends the job
before anything is moved, unless --keep-going is given. Files that name no study, series or instance
(a DICOMDIR, say) and files with an object that was added already are passed over and listed.
Symbolic links to directories are followed only when they are named on the command line.

Exit status: 0 done, 1 the job failed, 2 wrong usage.)";

struct CommandOptions {
  CreateOptions job;
  bool isJson = false;
  bool isQuiet = false;
  std::string logFile;
};

std::string indented(const std::string& text, const char* indent) {
  std::string out = indent;
  for (const char c : text) {
    out += c;
    if (c == '\n') out += indent;
  }
  return out;
}

void printText(const CreateResult& result) {
  std::string out;
  if (!result.error) {
    out += "Root:      " + result.root + "\n";
    out += "Patients:  " + std::to_string(result.patients) + "\n";
    out += "Studies:   " + std::to_string(result.studies) + "\n";
    out += "Series:    " + std::to_string(result.series) + "\n";
    out += "Objects:   " + std::to_string(result.objects) + "\n";
    out += "Bytes:     " + std::to_string(result.bytes) + "\n";
    out += "Label:\n" + indented(result.label, "  ") + "\n";
  }
  if (!result.passedOver.empty()) {
    out += "Passed over:\n";
    for (const PassedOver& one : result.passedOver) {
      out += "  " + one.path + ": " + one.reason + "\n";
    }
  }
  std::fwrite(out.data(), 1, out.size(), stdout);
}

void printJson(const CreateResult& result) {
  const auto number = [](auto value) { return std::to_string(value); };
  std::string out = "{\"root\":" + jsonString(result.root);
  out += ",\"patients\":" + number(result.patients);
  out += ",\"studies\":" + number(result.studies);
  out += ",\"series\":" + number(result.series);
  out += ",\"objects\":" + number(result.objects);
  out += ",\"bytes\":" + number(result.bytes);
  out += ",\"label\":" + jsonString(result.label);
  out += ",\"passed_over\":[";
  const char* separator = "";
  for (const PassedOver& one : result.passedOver) {
    out += separator;
    out += "{\"path\":" + jsonString(one.path) + ",\"reason\":" + jsonString(one.reason) + "}";
    separator = ",";
  }
  out += "],\"error\":" + (result.error ? jsonString(*result.error) : std::string("null")) + "}\n";
  std::fwrite(out.data(), 1, out.size(), stdout);
}

int runCreate(CommandOptions& options) {
  if (!sendToolkitLog(options.logFile)) {
    std::fprintf(stderr, "quillon: The log file %s cannot be written.\n", options.logFile.c_str());
    return kExitFailed;
  }
  options.job.showsProgress = !options.isQuiet;
  const CreateResult result = createFileSet(options.job);
  if (options.isJson) {
    printJson(result);
  } else {
    printText(result);
  }
  if (result.error) std::fprintf(stderr, "quillon: %s\n", result.error->c_str());
  for (const std::string& remark : result.remarks) {
    std::fprintf(stderr, "quillon: %s\n", remark.c_str());
  }
  if (std::fflush(stdout) != 0) {
    std::fprintf(stderr, "quillon: The result cannot be written.\n");
    return kExitFailed;
  }
  return result.error ? kExitFailed : kExitDone;
}

}  // namespace

void addCreateCommand(CLI::App& program, int& exitStatus) {
  const auto options = std::make_shared<CommandOptions>();
  CreateOptions& job = options->job;
  CLI::App* command = program.add_subcommand(
      "create",
      "Collects DICOM files and lays them out as a DICOM file set with DICOMDIR and label");
  command->add_option("PATH", job.sources, "Files and directories to add")->required();
  command
      ->add_option("--root", job.root,
                   "Directory of the file set (default: DICOM in the temporary directory)")
      ->type_name("DIR");
  command->add_flag("--replace", job.isReplacing, "Wipe a root directory that holds something");
  command
      ->add_option("--object-dir", job.objectDirectory,
                   "Directory of the objects in the file set (default: DICOMOBJ)")
      ->type_name("NAME");
  command->add_flag("--hierarchy", job.hasHierarchy,
                    "Give each patient, study and series a directory of its own");
  command
      ->add_option("--patient-key", job.patientKey,
                   "File all objects under one patient (default: patient name and ID of each file)")
      ->type_name("KEY");
  command->add_flag_callback(
      "--no-subdirectories", [&job] { job.intoSubdirectories = false; },
      "Do not walk the subdirectories of directories");
  command->add_flag_callback(
      "--no-other-content", [&job] { job.hasOtherContent = false; },
      "Do not copy the configured non-DICOM content");
  command->add_flag("--move", job.isMoving, "Move the files into the file set");
  command->add_flag("--keep-going", job.isKeepingGoing, "Pass over files that cannot be added");
  command->add_flag("--json", options->isJson, "Print the result as one JSON object");
  command->add_flag("--quiet", options->isQuiet, "Show no progress");
  command->add_option("--log", options->logFile, "Append the toolkit's log lines to a file")
      ->type_name("FILE");
  command->footer(kFooter);
  command->callback([options, &exitStatus] { exitStatus = runCreate(*options); });
}

}  // namespace quillon::cli
