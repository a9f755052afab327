#include <functional>
#include <memory>
#include <nlohmann/json.hpp>
#include <utility>

#include "commands.h"
#include "job_audit.h"
#include "media_job.h"
#include "private_root.h"
#include "publish_job.h"
#include "result_output.h"
#include "settings.h"
#include "span_options.h"
#include "span_output.h"
#include "thrown.h"
#include "toolkit_log.h"

namespace quillon::cli {

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
  SpanOptions span;
  AuditOptions audit;
  Outcome listed;  // how the list of sources was read
  bool isJson = false;
  bool hasExampleRoot = false;  // nobody's, for a look
  std::string logFile;
};

std::string jsonOf(const CreateResult& created, const WriteResult& written,
                   const Outcome& outcome) {
  Json object = emptyObject();
  addMembers(object, created);
  addMembers(object, written);
  return jsonObject(std::move(object), outcome);
}

std::string jsonOf(const SpanResult& result) {
  Json object = emptyObject();
  addMembers(object, result);
  return jsonObject(std::move(object), result.outcome);
}

int publishOnOne(CommandOptions& options, std::vector<std::string> remarks,
                 std::function<void()> keepRoot, JobAudit& audit, WriteResult& written) {
  Published published;
  if (options.listed.failed()) {
    published.created.outcome = published.outcome = options.listed;
    published.created.isDryRun = options.create.isDryRun;
    audit.conclude(published.outcome, published.written.remarks);
  } else {
    published = publishFileSet(options.create, options.write, std::move(keepRoot), audit);
  }
  CreateResult& created = published.created;
  written = published.written;
  if (options.hasExampleRoot) created.root.clear();
  const Outcome& outcome = published.outcome;
  std::string output = options.isJson ? jsonOf(created, written, outcome) : plainText(created);
  if (!options.isJson && !created.outcome.failed()) output += plainText(written);
  remarks.insert(remarks.end(), created.remarks.begin(), created.remarks.end());
  remarks.insert(remarks.end(), written.remarks.begin(), written.remarks.end());
  return finish(Output::of(options.isJson, std::move(output)), outcome, remarks);
}

// The plan is told before the first medium is asked for, the rest at the end.
int publishOnSeveral(CommandOptions& options, std::vector<std::string> remarks,
                     std::function<void()> keepRoot, JobAudit& audit, bool& isKept) {
  SpanResult result;
  if (options.listed.failed()) {
    result.outcome = options.listed;
  } else {
    const auto tellPlan = [&options](const SpanResult& planned) {
      if (!options.isJson) print(Output::forReaders(planTextOf(planned)));
    };
    try {
      result = SpannedPublication(options.create, options.write, options.span, std::move(keepRoot),
                                  tellPlan, audit)
                   .run();
    } catch (...) {
      result.outcome = thrownOutcome();
    }
  }
  audit.conclude(result.outcome, result.remarks);
  isKept = !result.media.empty() && result.media.back().published.written.isKept;
  std::string output = options.isJson ? jsonOf(result) : plainText(result);
  remarks.insert(remarks.end(), result.remarks.begin(), result.remarks.end());
  return finish(Output::of(options.isJson, std::move(output)), result.outcome, remarks);
}

// Before anything of the job.
int refuse(const CommandOptions& options, const Outcome& why) {
  std::string output = options.isJson ? jsonOf(CreateResult(), WriteResult(), why) : "";
  return finish(Output::of(options.isJson, std::move(output)), why, {});
}

int runPublish(CommandOptions& options) {
  if (options.write.isStreaming()) {
    if (const Outcome reserved = OutputFile::reserveStandardOutput(); reserved.failed()) {
      return refuse(options, reserved);
    }
  }
  if (const Outcome registry = checkRegistry(); registry.failed()) return refuse(options, registry);
  options.listed = takeListedSources(options.create.selection, options.create.sources);
  if (const Outcome log = sendToolkitLog(options.logFile); log.failed())
    return refuse(options, log);
  JobAudit audit("publish");
  std::vector<std::string> taken = contentSources(options.create.otherContent);
  if (options.create.root) taken.push_back(absoluteRoot(*options.create.root));
  if (options.write.target) taken.push_back(absoluteRoot(*options.write.target));
  taken.push_back(temporaryJobDirectory());
  if (const Outcome opened =
          audit.open(options.audit, options.create.sources, taken, options.create.isDryRun);
      opened.failed()) {
    return refuse(options, opened);
  }
  options.create.whenInterrupted =
      options.write.whenInterrupted = [&audit] { audit.interrupted(); };
  options.write.lookAtSet = [&audit](const std::string& root) { audit.lookAtSet(root); };
  options.write.showsProgress = options.create.showsProgress;
  options.create.mayLink = !options.write.isKeeping && !options.write.isSimulating;
  options.write.isDryRun = options.create.isDryRun;
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
      Outcome outcome = made;
      audit.conclude(outcome, remarks);
      return refuse(options, outcome);
    }
    options.create.root = own.root();
  }
  options.write.root = options.create.root;
  const auto keepRoot = [&own] { own.keep(); };
  bool isKept = false;
  int status = 0;
  if (options.span.isWanted) {
    status = publishOnSeveral(options, std::move(remarks), keepRoot, audit, isKept);
  } else {
    WriteResult written;
    status = publishOnOne(options, std::move(remarks), keepRoot, audit, written);
    isKept = written.isKept;
  }
  own.end(isKept);
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
  addSpanOptions(*command, options->span);
  addAuditOptions(*command, options->audit);
  command->footer(kFooter);
  command->callback([options, &exitStatus] {
    checkWriteOptions(options->write);
    checkSpanOptions(options->span, options->write);
    exitStatus = runPublish(*options);
  });
}

}  // namespace quillon::cli
