#include <algorithm>
#include <cctype>
#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>
#include <utility>

#include "commands.h"
#include "create_job.h"
#include "job_audit.h"
#include "media_job.h"
#include "result_output.h"
#include "settings.h"
#include "toolkit_log.h"
#include "write_job.h"

namespace quillon::cli {

namespace {

constexpr const char* kFooter =
    R"(A file set that has been written is wiped from its root directory, unless --keep is given or it
was a test run. After a failure it is always kept, whole, so that the command can be repeated. A
root directory without a DICOMDIR is not written, and the home or current directory is not wiped.

A directory given with --to must be empty or new, and lie neither in the root directory nor around
it. With --overwrite what the file set brings takes the place of what has the same name there, whole
directories included; the rest stays.

The disc is written in the first recorder that writes, or in the one of --recorder. Before anything
is written the recorder is asked for its disc, and the directory for room: what is certain not to
fit is refused at once. A rewritable disc that holds data is erased first.

With --copies each further disc is asked for and waited for, and the file set is wiped after the last.

What was written is read back, from the device and not from memory, and each file is compared with the
file set, which is wiped only when all are the same; --no-verify leaves that out. What goes to standard
output cannot be read back.

Exit status: 0 done, 1 the job failed, 2 wrong usage.)";

struct CommandOptions {
  WriteOptions job;
  AuditOptions audit;
  std::string logFile;
  bool isJson = false;
};

std::string jsonOf(const WriteResult& result, const Outcome& outcome) {
  Json object = emptyObject();
  object["root"] = textOrNull(result.root);
  addMembers(object, result);
  return jsonObject(std::move(object), outcome);
}

// Before anything of the job.
int refuse(const CommandOptions& options, const Outcome& why) {
  std::string output = options.isJson ? jsonOf(WriteResult(), why) : "";
  return finish(Output::of(options.isJson, std::move(output)), why, {});
}

int runWrite(CommandOptions& options) {
  if (options.job.isStreaming()) {
    if (const Outcome reserved = OutputFile::reserveStandardOutput(); reserved.failed()) {
      return refuse(options, reserved);
    }
  }
  if (const Outcome registry = checkRegistry(); registry.failed()) return refuse(options, registry);
  if (const Outcome log = sendToolkitLog(options.logFile); log.failed())
    return refuse(options, log);
  MediaJob mediaJob;
  JobAudit audit("write");
  const std::string root = options.job.root ? absoluteRoot(*options.job.root) : mediaJob.root();
  std::vector<std::string> taken{root, temporaryJobDirectory()};
  if (options.job.target) taken.push_back(absoluteRoot(*options.job.target));
  if (const Outcome opened = audit.open(options.audit, {}, taken, options.job.isDryRun);
      opened.failed()) {
    return refuse(options, opened);
  }
  options.job.whenInterrupted = [&audit] { audit.interrupted(); };
  options.job.lookAtSet = [&audit](const std::string& set) { audit.lookAtSet(set); };
  WriteResult result = Delivery(options.job, mediaJob).run();
  audit.note(result);
  Outcome outcome = result.outcome;
  audit.conclude(outcome, result.remarks);
  std::string output = options.isJson ? jsonOf(result, outcome) : plainText(result);
  return finish(Output::of(options.isJson, std::move(output)), outcome, result.remarks);
}

}  // namespace

// A directory that is called like a file would be found out about at the disc burner.
void refuseFileName(const std::string& directory) {
  std::error_code error;
  std::string extension = std::filesystem::path(directory).extension().string();
  std::ranges::transform(extension, extension.begin(),
                         [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  if ((extension != ".iso" && extension != ".zip") ||
      std::filesystem::is_directory(directory, error)) {
    return;
  }
  throw CLI::ValidationError("--to " + directory + " would be a directory; --" +
                             extension.substr(1) + " writes such a file, and --to " + directory +
                             "/ the directory");
}

// What CLI11 cannot say: that one of several others is there.
void checkWriteOptions(const WriteOptions& job) {
  const bool isFile = job.image.has_value() || job.zip.has_value();
  if (job.isOverwriting && !job.target && !isFile) {
    throw CLI::RequiresError("--overwrite", "--to, --iso or --zip");
  }
  if (job.target) refuseFileName(*job.target);
}

void addWriteOptions(CLI::App& command, WriteOptions& job) {
  CLI::Option* target =
      command.add_option("--to", job.target, "Copy the file set to a directory, not to a disc")
          ->type_name("DIR");
  CLI::Option* image =
      command
          .add_option("--iso", job.image,
                      "Write the image of the disc to a file, not to a disc; - is standard output")
          ->type_name("FILE")
          ->excludes(target);
  CLI::Option* zip =
      command
          .add_option("--zip", job.zip,
                      "Pack the file set into a ZIP file, not to a disc; - is standard output")
          ->type_name("FILE")
          ->excludes(target)
          ->excludes(image);
  command.add_flag("--compress", job.isCompressing, "Compress what goes into the ZIP file")
      ->needs(zip);
  command
      .add_option("--password-file", job.passwordFile,
                  "Encrypt the ZIP file (AES-256) with the first line of this file")
      ->type_name("FILE")
      ->needs(zip);
  command.add_flag("--overwrite", job.isOverwriting,
                   "Replace what is in the way in a directory that is not empty, or the file");
  // Of a disc alone.
  const auto ofDisc = [&](CLI::Option* option) {
    option->excludes(target)->excludes(image)->excludes(zip);
  };
  ofDisc(command
             .add_option("--recorder", job.recorder,
                         "Name of the recorder, as quillon disc list shows it (default: the first "
                         "that writes)")
             ->type_name("NAME"));
  command.add_option("--volume", job.volume, "Volume name of the disc or image (default: Quillon)")
      ->type_name("NAME")
      ->excludes(target)
      ->excludes(zip);
  ofDisc(command.add_flag("--simulate", job.isSimulating,
                          "Only test the writing, where the disc-mastering service can"));
  ofDisc(command.add_flag(
      "--full-erase", job.hasFullErase,
      "Erase all of a rewritable disc that holds data, not only its contents table"));
  ofDisc(command.add_flag_callback(
      "--no-eject", [&job] { job.isEjecting = false; }, "Leave the disc in the drive"));
  // The disc that was written must not be in the drive any more when the next one is looked for.
  CLI::Option* copies = command
                            .add_option_function<int>(
                                "--copies", [&job](int discs) { job.discs = discs; },
                                "Write so many discs, one after the other (default: 1)")
                            ->check(CLI::Range(1, 99))
                            ->type_name("N")
                            ->excludes("--no-eject")
                            ->excludes("--simulate");
  ofDisc(copies);
  command
      .add_option_function<int>(
          "--wait", [&job](int seconds) { job.discWait = std::chrono::seconds(seconds); },
          "Wait so long for each further disc (default: 600)")
      ->check(CLI::Range(0, 86400))
      ->type_name("SECONDS")
      ->needs(copies);
  CLI::Option* sums = command.add_flag_callback(
      "--sums", [&job] { job.hasSums = true; },
      "Put the sums of all files beside the label (SHA256SUMS, for sha256sum -c); the default");
  command
      .add_flag_callback(
          "--no-sums", [&job] { job.hasSums = false; }, "Compute no sums and write none")
      ->excludes(sums);
  command.add_flag_callback(
      "--no-verify", [&job] { job.isReadBack = false; },
      "Do not read back and compare what was written");
  command.add_flag("--keep", job.isKeeping, "Keep the file set in its root directory");
}

void addWriteCommand(CLI::App& program, int& exitStatus) {
  const auto options = std::make_shared<CommandOptions>();
  CLI::App* command = program.add_subcommand(
      "write", "Writes a file set to the disc in a recorder, to a directory or into one file");
  addRootOption(*command, options->job.root);
  addWriteOptions(*command, options->job);
  addDryRunOption(*command, options->job.isDryRun);
  addJsonOption(*command, options->isJson);
  addQuietOption(*command, options->job.showsProgress);
  addLogOption(*command, options->logFile);
  addAuditOptions(*command, options->audit);
  command->footer(kFooter);
  command->callback([options, &exitStatus] {
    checkWriteOptions(options->job);
    exitStatus = runWrite(*options);
  });
}

}  // namespace quillon::cli
