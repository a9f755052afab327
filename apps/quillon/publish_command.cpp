#include <filesystem>
#include <functional>
#include <memory>
#include <utility>

#include "commands.h"
#include "media_job.h"
#include "private_root.h"
#include "result_output.h"
#include "toolkit_log.h"

namespace quillon::cli {

namespace fs = std::filesystem;

namespace {

constexpr const char* kFooter =
    R"(Does what create and write do, one after the other. The sources stay as they are unless --move
is given. While the file set is made it may share its bytes with them, because it goes away again
when it has been written; with --keep it is made of copies.

The recorder or the directory is asked before a file is read whether it takes a file set, and before
one is copied whether it has the room: what is refused then leaves nothing behind.

When the writing fails the file set is kept in its root directory: quillon write writes it without
doing the rest again. With --overwrite and --to what the file set brings takes the place of what has
the same name in the directory; with --iso or --zip the file is replaced.

Exit status: 0 done, 1 the job failed, 2 wrong usage.)";

struct CommandOptions {
  CreateOptions create;
  WriteOptions write;
  Outcome listed;  // how the list of sources was read
  bool isJson = false;
  bool hasExampleRoot = false;  // nobody's, for a look
  std::string logFile;
};

// A file set that stays after all must not share its bytes with the sources: what is done to one
// would reach the other. False when there is no room for copies, say.
bool giveOwnBytes(const std::string& root) {
  std::error_code error;
  for (fs::recursive_directory_iterator it(root, error), end; !error && it != end;
       it.increment(error)) {
    if (!it->is_regular_file(error) || it->hard_link_count(error) < 2) continue;
    fs::path copy = it->path();
    copy += ".own";
    fs::copy_file(it->path(), copy, error);
    if (!error) fs::rename(copy, it->path(), error);
    if (error) {
      std::error_code ignored;
      fs::remove(copy, ignored);
    }
  }
  return !error;
}

int publish(CommandOptions& options, std::vector<std::string> remarks,
            std::function<void()> keepRoot, WriteResult& written) {
  CreateResult created;
  MediaJob job;
  Delivery delivery(options.write, job, std::move(keepRoot));
  Outcome asked = options.listed;
  if (!asked.failed()) asked = delivery.ask(options.create.sources);
  if (asked.failed()) {
    created.outcome = std::move(asked);
    created.isDryRun = options.create.isDryRun;
    created.root = delivery.result().root;
  } else {
    options.create.askSize = [&delivery](const DiscRoom& room) { return delivery.askSize(room); };
    created = createFileSet(options.create, job);
  }
  if (created.outcome.failed() || options.create.isDryRun) {
    written = delivery.result();
    written.outcome = {};
  } else {
    written = delivery.run();
    if (options.create.mayLink && written.isKept && !giveOwnBytes(written.root)) {
      written.remarks.emplace_back(
          "Files of the file set still share their bytes with the sources.");
    }
  }
  if (options.hasExampleRoot) created.root.clear();
  const Outcome& outcome = created.outcome.failed() ? created.outcome : written.outcome;
  std::string output = options.isJson ? jsonMembers(created) : plainText(created);
  if (options.isJson) {
    output = jsonObject(output + jsonMembers(written), outcome);
  } else if (!created.outcome.failed()) {
    output += plainText(written);
  }
  remarks.insert(remarks.end(), created.remarks.begin(), created.remarks.end());
  remarks.insert(remarks.end(), written.remarks.begin(), written.remarks.end());
  return finish(Output::of(options.isJson, std::move(output)), outcome, remarks);
}

int runPublish(CommandOptions& options) {
  options.listed = takeListedSources(options.create.selection, options.create.sources);
  if (options.write.isStreaming()) {
    if (const Outcome reserved = OutputFile::reserveStandardOutput(); reserved.failed()) {
      return finish({}, reserved, {});
    }
  }
  if (const Outcome log = sendToolkitLog(options.logFile); log.failed()) return finish({}, log, {});
  options.write.showsProgress = options.create.showsProgress;
  options.create.mayLink = !options.write.isKeeping && !options.write.isSimulating;
  options.write.isDryRun = options.create.isDryRun;
  WriteResult written;
  // Two jobs that name no root must not meet in one.
  PrivateRoot own;
  std::vector<std::string> remarks;
  if (!options.create.root && options.create.isDryRun) {
    options.create.root = PrivateRoot::exampleOfRoot();
    options.hasExampleRoot = true;
  } else if (!options.create.root) {
    std::vector<std::string> removed;
    remarks = PrivateRoot::removeAbandoned(removed);
    if (const Outcome made = own.make(options.create.isMoving); made.failed()) {
      return finish({}, made, {});
    }
    options.create.root = own.root();
  }
  options.write.root = options.create.root;
  const int status = publish(
      options, std::move(remarks), [&own] { own.keep(); }, written);
  own.end(written.isKept);
  return status;
}

}  // namespace

void addPublishCommand(CLI::App& program, int& exitStatus) {
  const auto options = std::make_shared<CommandOptions>();
  CLI::App* command = program.add_subcommand(
      "publish",
      "Collects DICOM files and writes them to a disc, a directory or one file as a file set");
  addCreateOptions(*command, options->create);
  addWriteOptions(*command, options->write);
  addDryRunOption(*command, options->create.isDryRun);
  addJsonOption(*command, options->isJson);
  addQuietOption(*command, options->create.showsProgress);
  addLogOption(*command, options->logFile);
  command->footer(kFooter);
  command->callback([options, &exitStatus] {
    checkWriteOptions(options->write);
    exitStatus = runPublish(*options);
  });
}

}  // namespace quillon::cli
