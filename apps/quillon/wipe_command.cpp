#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>
#include <utility>
#include <vector>

#include "commands.h"
#include "media_job.h"
#include "private_root.h"
#include "result_output.h"
#include "root_guard.h"
#include "staging.h"

namespace quillon::cli {

namespace {

constexpr const char* kFooter =
    R"(Removes the root directory with everything in it, the directory QUILLON in the temporary
directory, and the copies that killed jobs left beside the root and, without --root, in the
temporary directory. A root directory that holds the home or the current directory is never wiped,
one that holds something but no file set only with --force. Objects of a creation that did not end
may be the only copies of files: they are set aside beside the root unless --force is given.

Exit status: 0 done, 1 the job failed, 2 wrong usage.)";

struct CommandOptions {
  std::optional<std::string> root;
  bool isForced = false;
  bool isJson = false;
};

bool isThere(const std::string& path) {
  std::error_code error;
  return !path.empty() && std::filesystem::exists(path, error);
}

// Fails when there is something left, or nothing was done.
// `removed`: what was there and no longer is.
Outcome wipe(const CommandOptions& options, std::string& root, std::vector<std::string>& remarks,
             std::vector<std::string>& removed) {
  MediaJob job;
  if (options.root) {
    if (Outcome set = job.setRoot(absoluteRoot(*options.root)); set.failed()) return set;
  }
  root = job.root();
  Staging::removeAbandoned(Staging::parentFor(root), removed);
  if (!options.root) remarks = PrivateRoot::removeAbandoned(removed);
  const RootEntry before = rootEntry(root);
  if (before == RootEntry::NotDirectory) return "The root " + root + " is not a directory.";
  if (before != RootEntry::Missing) {
    if (Outcome allowed = mayWipe(root, {}); allowed.failed()) return allowed;
    if (Outcome claimed = job.claimRoot(); claimed.failed()) return claimed;
  }
  if (rootEntry(root) == RootEntry::NotEmpty && !options.isForced &&
      job.rootState() == RootState::Free) {
    return "The directory " + root +
           " is not wiped: it holds no DICOMDIR. With --force it is wiped all the same.";
  }
  const std::string temporary = temporaryJobDirectory();
  const bool hadTemporary = isThere(temporary);
  std::string asideDirectory;
  job.wipe(options.isForced, asideDirectory);
  if (!asideDirectory.empty()) {
    remarks.push_back("The objects of a job that did not finish are set aside in " +
                      asideDirectory + ", where UNFINISHED.TXT names them.");
  } else if (before != RootEntry::Missing && !isThere(root)) {
    removed.push_back(root);
  }
  if (hadTemporary && !isThere(temporary)) removed.push_back(temporary);
  if (rootEntry(root) == RootEntry::Missing) return {};
  return job.rootState() == RootState::Unfinished
             ? job.errorText()
             : "The root directory " + root + " cannot be wiped.";
}

int runWipe(const CommandOptions& options) {
  std::string root;
  std::vector<std::string> remarks;
  std::vector<std::string> removed;
  const Outcome outcome = wipe(options, root, remarks, removed);
  std::string output;
  if (options.isJson) {
    Json object;
    object["root"] = textOrNull(root);
    object["removed"] = removed;
    output = jsonObject(std::move(object), outcome);
  } else {
    for (const std::string& path : removed) output += "Removed:   " + path + "\n";
    if (!outcome.failed() && removed.empty() && remarks.empty())
      output = "There is nothing to remove.\n";
  }
  return finish(Output::of(options.isJson, std::move(output)), outcome, remarks);
}

}  // namespace

void addWipeCommand(CLI::App& program, int& exitStatus) {
  const auto options = std::make_shared<CommandOptions>();
  CLI::App* command = program.add_subcommand("wipe", "Removes all that a job left behind");
  addRootOption(*command, options->root);
  command->add_flag("--force", options->isForced,
                    "Also wipe what is no file set, or an unfinished one");
  addJsonOption(*command, options->isJson);
  command->footer(kFooter);
  command->callback([options, &exitStatus] { exitStatus = runWipe(*options); });
}

}  // namespace quillon::cli
