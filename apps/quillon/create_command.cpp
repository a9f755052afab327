#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>

#include "commands.h"
#include "create_job.h"
#include "job_audit.h"
#include "media_job.h"
#include "result_output.h"
#include "settings.h"
#include "toolkit_log.h"

namespace quillon::cli {

namespace {

constexpr const char* kFooter =
    R"(Without --move the sources stay as they are: the file set is made of copies, which share their
blocks with the sources where the file system can do that. With --move the files themselves become
part of the file set; of a symbolic link it is a copy of the file, and the link stays.

While a directory is walked, in ascending order of names, files that are not DICOM are passed over
and listed. A file named on the command line, or a DICOM file, that cannot be added ends the job
before anything is moved, unless --keep-going is given. Files that name no study, series or instance
(a DICOMDIR, say) and files with an object that was added already are passed over and listed.
Symbolic links to directories are followed only when they are named on the command line.

With --study, --series, --modality or --since an object must meet each of them; how many others there
are is counted ("Left out"), and nothing else is asked of them.

Exit status: 0 done, 1 the job failed, 2 wrong usage.)";

struct CommandOptions {
  CreateOptions job;
  AuditOptions audit;
  bool isJson = false;
  std::string logFile;
};

std::string jsonOf(const CreateResult& result, const Outcome& outcome) {
  Json object = emptyObject();
  addMembers(object, result);
  return jsonObject(std::move(object), outcome);
}

// Before anything of the job.
int refuse(const CommandOptions& options, const Outcome& why) {
  std::string output = options.isJson ? jsonOf(CreateResult(), why) : "";
  return finish(Output::of(options.isJson, std::move(output)), why, {});
}

int runCreate(CommandOptions& options) {
  if (const Outcome registry = checkRegistry(); registry.failed()) return refuse(options, registry);
  const Outcome listed = takeListedSources(options.job.selection, options.job.sources);
  if (const Outcome log = sendToolkitLog(options.logFile); log.failed())
    return refuse(options, log);
  MediaJob mediaJob;
  JobAudit audit("create");
  std::vector<std::string> taken = contentSources(options.job.otherContent);
  taken.push_back(options.job.root ? absoluteRoot(*options.job.root) : mediaJob.root());
  if (const Outcome opened =
          audit.open(options.audit, options.job.sources, taken, options.job.isDryRun);
      opened.failed()) {
    return refuse(options, opened);
  }
  options.job.whenInterrupted = [&audit] { audit.interrupted(); };
  CreateResult result;
  if (listed.failed()) {
    result.outcome = listed;
  } else {
    result = createFileSet(options.job, mediaJob);
  }
  audit.note(result);
  Outcome outcome = result.outcome;
  audit.conclude(outcome, result.remarks);
  std::string output = options.isJson ? jsonOf(result, outcome) : plainText(result);
  return finish(Output::of(options.isJson, std::move(output)), outcome, result.remarks);
}

void addPageOptions(CLI::App& command, CreateOptions& job) {
  const auto set = [&command, &job](const char* name, bool hasPages, const char* description) {
    return command.add_flag_callback(
        name, [&job, hasPages] { job.hasPages = hasPages; }, description);
  };
  CLI::Option* with = set("--pdi", true, "Add README.TXT, INDEX.HTM and pages for a browser");
  CLI::Option* without = set("--no-pdi", false, "Add none, whatever is configured");
  without->excludes(with);
  command
      .add_option_function<std::string>(
          "--pages",
          [&job](const std::string& directory) {
            job.hasPages = true;
            job.pageStylesheets = directory;
          },
          "The same by stylesheets of your own: pages.xsl, html.xsl, pages.css")
      ->excludes(without)
      ->type_name("DIR");
}

}  // namespace

void addCreateOptions(CLI::App& command, CreateOptions& job) {
  command.add_option("PATH", job.sources,
                     "Files, directories and media (images, ZIP files) to add");
  addRootOption(command, job.root);
  command.add_flag("--replace", job.isReplacing, "Wipe a root directory that holds something");
  command
      .add_option("--object-dir", job.objectDirectory,
                  "Directory of the objects in the file set (default: DICOMOBJ)")
      ->type_name("NAME");
  command.add_flag("--hierarchy", job.hasHierarchy,
                   "Give each patient, study and series a directory of its own");
  command
      .add_option("--patient-key", job.patientKey,
                  "File all objects under one patient (default: patient name and ID of each file)")
      ->check(
          [](const std::string& key) { return key.empty() ? "an empty key names no patient" : ""; })
      ->type_name("KEY");
  command.add_flag_callback(
      "--no-subdirectories", [&job] { job.intoSubdirectories = false; },
      "Do not walk the subdirectories of directories");
  command.add_flag("--via-dicomdir", job.isViaDicomDir,
                   "Take of each PATH what its DICOMDIR names, in that order");
  addOtherContentOptions(command, job.otherContent);
  command.add_flag("--move", job.isMoving, "Move the files into the file set");
  command.add_flag("--keep-going", job.isKeepingGoing, "Pass over files that cannot be added");
  command.add_flag("--strict", job.isStrict,
                   "Refuse files that end before their pixel data does, or lack a value that a "
                   "DICOMDIR requires, and a medium without the configured other content");
  command.add_flag("--invent", job.isInventing, "Make up the values that a DICOMDIR requires");
  addPageOptions(command, job);
  command.add_flag("--one-patient", job.isForOnePatient, "Refuse files of more than one patient");
  addCharacterSetOption(command, job.characterSet);
  addProfileOption(command, job.profile, /*hasAuto=*/true);
  addSelectionOptions(command, job.selection);
}

void addRootOption(CLI::App& command, std::optional<std::string>& root) {
  command
      .add_option("--root", root,
                  "Directory of the file set (default: DICOM in the temporary directory)")
      ->type_name("DIR");
}

void addDryRunOption(CLI::App& command, bool& isDryRun) {
  command.add_flag("--dry-run", isDryRun,
                   "Look at everything, tell what would be done, and change nothing");
}

void addJsonOption(CLI::App& command, bool& isJson) {
  command.add_flag("--json", isJson, "Print the result as one JSON object");
}

void addQuietOption(CLI::App& command, bool& showsProgress) {
  command.add_flag_callback(
      "--quiet", [&showsProgress] { showsProgress = false; }, "Show no progress");
}

void addLogOption(CLI::App& command, std::string& logFile) {
  command.add_option("--log", logFile, "Append the toolkit's log lines to a file")
      ->type_name("FILE");
}

void addCreateCommand(CLI::App& program, int& exitStatus) {
  const auto options = std::make_shared<CommandOptions>();
  CLI::App* command = program.add_subcommand(
      "create",
      "Collects DICOM files and lays them out as a DICOM file set with DICOMDIR and label");
  addCreateOptions(*command, options->job);
  addDryRunOption(*command, options->job.isDryRun);
  addJsonOption(*command, options->isJson);
  addQuietOption(*command, options->job.showsProgress);
  addLogOption(*command, options->logFile);
  addAuditOptions(*command, options->audit);
  command->footer(kFooter);
  command->callback([options, &exitStatus] { exitStatus = runCreate(*options); });
}

}  // namespace quillon::cli
