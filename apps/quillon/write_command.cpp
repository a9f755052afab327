#include <memory>

#include "commands.h"
#include "json_output.h"
#include "media_job.h"
#include "result_output.h"
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

Exit status: 0 done, 1 the job failed, 2 wrong usage.)";

struct CommandOptions {
  WriteOptions job;
  bool isJson = false;
};

int runWrite(CommandOptions& options) {
  MediaJob mediaJob;
  const WriteResult result = Delivery(options.job, mediaJob).run();
  std::string output =
      options.isJson ? jsonObject("\"root\":" + jsonString(result.root) + "," + jsonMembers(result),
                                  result.outcome)
                     : plainText(result);
  return finish(Output::of(options.isJson, std::move(output)), result.outcome, result.remarks);
}

}  // namespace

void addWriteOptions(CLI::App& command, WriteOptions& job) {
  CLI::Option* target =
      command.add_option("--to", job.target, "Copy the file set to a directory, not to a disc")
          ->type_name("DIR");
  command
      .add_flag("--overwrite", job.isOverwriting,
                "Replace what is in the way in a directory that is not empty")
      ->needs(target);
  command
      .add_option("--recorder", job.recorder,
                  "Name of the recorder, as quillon disc list shows it (default: the first that "
                  "writes)")
      ->type_name("NAME")
      ->excludes(target);
  command.add_option("--volume", job.volume, "Volume name of the disc (default: Quillon)")
      ->type_name("NAME")
      ->excludes(target);
  command
      .add_flag("--simulate", job.isSimulating,
                "Only test the writing, where the disc-mastering service can")
      ->excludes(target);
  command
      .add_flag("--full-erase", job.hasFullErase,
                "Erase all of a rewritable disc that holds data, not only its contents table")
      ->excludes(target);
  command
      .add_flag_callback(
          "--no-eject", [&job] { job.isEjecting = false; }, "Leave the disc in the drive")
      ->excludes(target);
  command.add_flag("--keep", job.isKeeping, "Keep the file set in its root directory");
}

void addWriteCommand(CLI::App& program, int& exitStatus) {
  const auto options = std::make_shared<CommandOptions>();
  CLI::App* command = program.add_subcommand(
      "write", "Writes a file set to the disc in a recorder, or copies it to a directory");
  addRootOption(*command, options->job.root);
  addWriteOptions(*command, options->job);
  addDryRunOption(*command, options->job.isDryRun);
  addJsonOption(*command, options->isJson);
  addQuietOption(*command, options->job.showsProgress);
  command->footer(kFooter);
  command->callback([options, &exitStatus] { exitStatus = runWrite(*options); });
}

}  // namespace quillon::cli
