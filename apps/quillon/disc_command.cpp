#include <algorithm>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "commands.h"
#include "disc_progress_scope.h"
#include "interrupt_guard.h"
#include "media_job.h"
#include "medium_questions.h"
#include "recording/disc_recorders.h"
#include "recording/virtual_discs.h"
#include "result_output.h"
#include "settings.h"
#include "terminal_text.h"

namespace quillon::cli {

namespace {

using platform::DiscRecorderStatus;

constexpr const char* kFooter =
    R"(The recorders are the optical drives. Virtual recorders are there on request alone: when
$QUILLON_RECORDERS names a directory for them, when the value Service of the registry is "virtual"
(then below ~/.local/share/quillon/recorders), or by name. They are directories and hold their discs
as images that can be mounted. Without --recorder a command means the first recorder that writes.

Exit status: 0 done, 1 the job failed, 2 wrong usage.)";
constexpr const char* kNoRecorder =
    "There is no recorder: no drive was found, and virtual recorders are there when "
    "QUILLON_RECORDERS names a directory for them.";
constexpr const char* kExitFooter = "Exit status: 0 done, 1 the job failed, 2 wrong usage.";

struct Options {
  std::string recorder;
  platform::DiscToInsert disc;
  bool isFull = false;
  bool isJson = false;
  bool showsProgress = true;
};

Outcome outcomeOf(const platform::DiscResult& result) {
  if (!result.failed()) return {};
  if (result.text.empty()) return "The operation failed.";
  return narrow(result.text);
}

// Of a command that has nothing to tell but how it ended.
int finishBare(const Options& options, const Outcome& outcome) {
  return finish(Output::asItIs(options.isJson ? jsonObject(outcome) : ""), outcome, {});
}

Json jsonOf(const DiscRecorderStatus& status) {
  Json object;
  object["name"] = status.name;
  object["device"] = status.device;
  object["virtual"] = status.isVirtual;
  object["used_by"] = textOrNull(status.client);
  object["problem"] = textOrNull(status.problem);
  Json& disc = object["disc"];
  if (!status.hasDisc) return object;
  disc["media"] = status.media;
  disc["state"] = status.state;
  disc["protected"] = status.isProtected;
  disc["capacity"] = status.capacitySectors;
  disc["free"] = status.freeSectors;
  disc["image"] = textOrNull(status.image);
  return object;
}

std::string textOf(const DiscRecorderStatus& status) {
  std::string out = "Recorder:  " + status.name + "\n";
  out += "Device:    " + status.device + "\n";
  if (!status.client.empty()) out += "Used by:   " + status.client + "\n";
  if (!status.problem.empty()) return out + "Disc:      not known (" + status.problem + ")\n";
  if (!status.hasDisc) return out + "Disc:      none\n";
  out += "Disc:      " + status.media + ", " + status.state;
  out += status.isProtected ? ", write-protected\n" : "\n";
  out += "Capacity:  " + std::to_string(status.capacitySectors) + " sectors, " +
         std::to_string(status.freeSectors) + " free\n";
  if (!status.image.empty()) out += "Image:     " + status.image + "\n";
  return out;
}

int runList(const Options& options) {
  std::vector<DiscRecorderStatus> recorders;
  const Outcome outcome = outcomeOf(platform::listDiscRecorders(recorders));
  if (options.isJson) {
    Json object;
    Json& all = object["recorders"] = Json::array();
    for (const DiscRecorderStatus& status : recorders) all.push_back(jsonOf(status));
    return finish(Output::asItIs(jsonObject(std::move(object), outcome)), outcome, {});
  }
  std::string out;
  for (const DiscRecorderStatus& status : recorders) {
    out += (out.empty() ? "" : "\n") + textOf(status);
  }
  std::vector<std::string> remarks;
  if (!outcome.failed() && recorders.empty()) remarks.emplace_back(kNoRecorder);
  return finish(Output::forReaders(out), outcome, remarks);
}

// What the media object says of the disc.
struct Answers {
  std::optional<bool> holdsData;
  bool isRecordable = false;
  std::string reason;  // for a missing or a negative answer
};

Answers askObject(const DiscRecorderStatus& status) {
  platform::chooseDiscRecorder(status.name);
  MediaJob job;
  Answers answers;
  answers.holdsData = job.holdsRewritableData();
  if (!answers.holdsData) answers.reason = job.errorText();
  answers.isRecordable = answers.holdsData && job.isRecordable();
  if (answers.holdsData && !answers.isRecordable) answers.reason = job.errorText();
  answers.reason.resize(answers.reason.find_last_not_of('\n') + 1);
  if (answers.reason.empty()) return answers;
  // The object has one sentence for a missing disc, a full one and a pressed one.
  if (const Outcome fit = mayRecord(status); fit.failed()) answers.reason = fit.text();
  return answers;
}

std::string yesOrNo(bool value) { return value ? "yes" : "no"; }

int runStatus(const Options& options) {
  platform::chooseDiscRecorder(options.recorder);
  DiscRecorderStatus status;
  const Outcome outcome = outcomeOf(platform::describeDiscRecorder(options.recorder, status));
  if (outcome.failed()) return finishBare(options, outcome);
  const Answers answers = askObject(status);
  std::string out;
  if (options.isJson) {
    Json object = jsonOf(status);
    object["holds_data"] = answers.holdsData ? Json(*answers.holdsData) : Json();
    object["recordable"] = answers.holdsData ? Json(answers.isRecordable) : Json();
    object["reason"] = textOrNull(answers.reason);
    out = jsonObject(std::move(object), outcome);
  } else {
    out = textOf(status);
    out += "Rewritable disc that holds data: " +
           (answers.holdsData ? yesOrNo(*answers.holdsData) : "not known") + "\n";
    out +=
        "Recordable: " + (answers.holdsData ? yesOrNo(answers.isRecordable) : "not known") + "\n";
    if (!answers.reason.empty()) out += "  " + answers.reason + "\n";
  }
  return finish(Output::of(options.isJson, std::move(out)), outcome, {});
}

// The recorder that is meant without a name: a disc in one that the service does not offer would
// help nobody.
Outcome findRecorderForDisc(std::string& name) {
  std::vector<DiscRecorderStatus> recorders;
  Outcome listed = outcomeOf(platform::listDiscRecorders(recorders));
  if (listed.failed()) return listed;
  std::erase_if(recorders, [](const DiscRecorderStatus& status) { return !status.isVirtual; });
  if (recorders.empty()) {
    return "The service has no virtual recorders: --recorder names one, and QUILLON_RECORDERS the "
           "directory of all.";
  }
  const auto writing = std::ranges::find_if(recorders, &DiscRecorderStatus::writes);
  name = (writing == recorders.end() ? recorders.begin() : writing)->name;
  return {};
}

Outcome insertDisc(const Options& options, platform::VirtualRecorderStatus& status) {
  std::string recorder = options.recorder;
  if (recorder.empty()) {
    if (Outcome found = findRecorderForDisc(recorder); found.failed()) return found;
  }
  const platform::DiscResult result = platform::insertVirtualDisc(recorder, options.disc);
  if (result.code == HRESULT_FROM_WIN32(ERROR_ALREADY_EXISTS)) {
    std::string sentence = outcomeOf(result).text();
    sentence.pop_back();
    return sentence + "; quillon disc eject takes it out.";
  }
  if (result.failed()) return outcomeOf(result);
  return outcomeOf(platform::virtualRecorderStatus(recorder, status));
}

int runInsert(const Options& options) {
  platform::VirtualRecorderStatus status;
  const Outcome outcome = insertDisc(options, status);
  std::string out;
  if (options.isJson) {
    Json object;
    if (!outcome.failed()) {
      object["recorder"] = status.name;
      object["media"] = status.media;
      object["state"] = status.state;
      object["capacity"] = status.capacitySectors;
    }
    out = jsonObject(std::move(object), outcome);
  } else if (!outcome.failed()) {
    out = "Inserted into " + status.name + ": " + status.media + ", " + status.state + ", " +
          std::to_string(status.capacitySectors) + " sectors\n";
  }
  return finish(Output::of(options.isJson, std::move(out)), outcome, {});
}

int runEject(const Options& options) {
  std::string image;
  bool hadDisc = false;
  platform::chooseDiscRecorder(options.recorder);
  const Outcome outcome = outcomeOf(platform::ejectDisc(options.recorder, image, hadDisc));
  std::string out;
  if (options.isJson) {
    Json object;
    object["image"] = textOrNull(image);
    out = jsonObject(std::move(object), outcome);
  } else if (!image.empty()) {
    out = "Image:     " + image + "\n";
  } else if (!outcome.failed()) {
    out = hadDisc ? "The disc is out.\n" : "There was no disc to take out.\n";
  }
  return finish(Output::of(options.isJson, std::move(out)), outcome, {});
}

int runErase(const Options& options) {
  Outcome outcome;
  {
    ProgressBar bar(options.showsProgress);
    const DiscProgressScope progress(bar);
    const InterruptGuard guard([&progress] { sayBelowProgress(endDiscWork(progress)); },
                               kPatienceWithDrive);
    platform::chooseDiscRecorder(options.recorder);
    outcome = outcomeOf(platform::eraseDisc(options.recorder, options.isFull));
  }
  return finishBare(options, outcome);
}

using Run = int (*)(const Options&);

CLI::App* addVerb(CLI::App& disc, const char* name, const char* description, Run run,
                  const std::shared_ptr<Options>& options, int& exitStatus) {
  CLI::App* verb = disc.add_subcommand(name, description);
  addJsonOption(*verb, options->isJson);
  verb->footer(kExitFooter);
  verb->callback([options, run, &exitStatus] {
    const Outcome registry = checkRegistry();
    exitStatus = registry.failed() ? finishBare(*options, registry) : run(*options);
  });
  return verb;
}

void addRecorderOption(CLI::App& verb, Options& options) {
  verb.add_option("--recorder", options.recorder,
                  "Name of the recorder, as list shows it (default: the first that writes)")
      ->type_name("NAME");
}

void addInsertOptions(CLI::App& verb, platform::DiscToInsert& disc) {
  std::vector<std::string> names;
  for (const std::string_view name : platform::virtualMediaNames()) names.emplace_back(name);
  verb.add_option("--media", disc.media,
                  "Kind of the disc (default: cd-r; of an image what it was, or the smallest that "
                  "holds it)")
      ->check(CLI::IsMember(names))
      ->type_name("KIND");
  verb.add_option("--capacity", disc.capacitySectors,
                  "Room on the disc in sectors of 2048 bytes (default: the usual one)")
      ->type_name("SECTORS");
  verb.add_option("--image", disc.image,
                  "What is on the disc: a copy of this file (default: blank)")
      ->type_name("FILE");
  verb.add_flag("--protect", disc.isProtected, "Protect the disc against writing");
}

}  // namespace

void addDiscCommand(CLI::App& program, int& exitStatus) {
  const auto options = std::make_shared<Options>();
  CLI::App* disc = program.add_subcommand("disc", "Shows recorders and handles the discs in them");
  disc->require_subcommand(1);
  disc->footer(kFooter);
  const auto add = [&](const char* name, const char* description, Run run) {
    return addVerb(*disc, name, description, run, options, exitStatus);
  };
  add("list", "Lists the recorders and the discs in them", runList);
  addRecorderOption(
      *add("status", "Tells about a recorder, and whether its disc holds data and is recordable",
           runStatus),
      *options);
  CLI::App* insert = add("insert", "Puts a disc into a virtual recorder", runInsert);
  addRecorderOption(*insert, *options);
  addInsertOptions(*insert, options->disc);
  addRecorderOption(*add("eject", "Takes the disc out; of a virtual one the image stays", runEject),
                    *options);
  CLI::App* erase = add("erase", "Makes a rewritable disc blank", runErase);
  addRecorderOption(*erase, *options);
  erase->add_flag("--full", options->isFull,
                  "Overwrite all of the disc, not only where its contents begin");
  addQuietOption(*erase, options->showsProgress);
}

}  // namespace quillon::cli
