#include "wipe_command.h"

#include <filesystem>
#include <memory>

#include "json_output.h"
#include "media_job.h"
#include "result_output.h"
#include "root_guard.h"

namespace quillon::cli {

namespace fs = std::filesystem;

namespace {

constexpr const char* kFooter =
    R"(Removes the root directory with everything in it, and the directory QUILLON in the temporary
directory. A root directory that holds the home or the current directory is never wiped, one that
holds something but no DICOMDIR only with --force.

Exit status: 0 done, 1 the job failed, 2 wrong usage.)";

struct CommandOptions {
  std::optional<std::string> root;
  bool isForced = false;
  bool isJson = false;
};

// A sentence when there is something left, or nothing was done.
std::optional<std::string> wipe(const CommandOptions& options, std::string& root) {
  MediaJob job;
  if (options.root && !job.setRoot(absoluteRoot(*options.root))) return job.errorText();
  root = job.root();
  const RootState before = rootState(root);
  if (before == RootState::NotDirectory) return "The root " + root + " is not a directory.";
  if (before != RootState::Missing) {
    if (auto reason = reasonNotToWipe(root, {})) return reason;
  }
  std::error_code error;
  if (before == RootState::NotEmpty && !options.isForced &&
      !fs::is_regular_file(fs::path(root) / "DICOMDIR", error)) {
    return "The directory " + root +
           " is not wiped: it holds no DICOMDIR. With --force it is wiped all the same.";
  }
  job.wipe();
  if (rootState(root) != RootState::Missing)
    return "The root directory " + root + " cannot be wiped.";
  return std::nullopt;
}

int runWipe(const CommandOptions& options) {
  std::string root;
  const std::optional<std::string> error = wipe(options, root);
  std::string output;
  if (options.isJson) output = jsonObject("\"root\":" + jsonString(root) + ",", error);
  return finish(output, error, {});
}

}  // namespace

void addWipeCommand(CLI::App& program, int& exitStatus) {
  const auto options = std::make_shared<CommandOptions>();
  CLI::App* command = program.add_subcommand("wipe", "Removes all that a job left behind");
  command
      ->add_option("--root", options->root,
                   "Directory of the file set (default: DICOM in the temporary directory)")
      ->type_name("DIR");
  command->add_flag("--force", options->isForced, "Also wipe a directory that holds no file set");
  command->add_flag("--json", options->isJson, "Print the result as one JSON object");
  command->footer(kFooter);
  command->callback([options, &exitStatus] { exitStatus = runWipe(*options); });
}

}  // namespace quillon::cli
