#include "disc_command.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "disc_progress_scope.h"
#include "foundation/text.h"
#include "interrupt_guard.h"
#include "json_output.h"
#include "media_job.h"
#include "medium_questions.h"
#include "recording/disc_recorders.h"
#include "platform/services.h"
#include "recording/virtual_discs.h"
#include "result_output.h"
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
  bool isQuiet = false;
};

std::optional<std::string> errorOf(const platform::DiscResult& result) {
  if (!result.failed()) return std::nullopt;
  if (result.text.empty()) return "The operation failed.";
  return NarrowText(result.text, FileSystemCodePage());
}

std::string member(const char* name, const std::string& json) {
  return "\"" + std::string(name) + "\":" + json + ",";
}
std::string jsonBool(bool value) { return value ? "true" : "false"; }
std::string jsonTextOrNull(const std::string& text) {
  return text.empty() ? "null" : jsonString(text);
}

// Of a command that has nothing to tell but how it ended.
int finishBare(const Options& options, const std::optional<std::string>& error) {
  return finish(Output::asItIs(options.isJson ? jsonObject("", error) : ""), error, {});
}

// Members of an object, the last one without a comma.
std::string jsonOf(const DiscRecorderStatus& status) {
  std::string out = member("name", jsonString(status.name));
  out += member("device", jsonString(status.device));
  out += member("virtual", jsonBool(status.isVirtual));
  out += member("used_by", jsonTextOrNull(status.client));
  out += member("problem", jsonTextOrNull(status.problem));
  out += "\"disc\":";
  if (!status.hasDisc) return out + "null";
  out += "{" + member("media", jsonString(status.media));
  out += member("state", jsonString(status.state));
  out += member("protected", jsonBool(status.isProtected));
  out += member("capacity", std::to_string(status.capacitySectors));
  out += member("free", std::to_string(status.freeSectors));
  return out + "\"image\":" + jsonTextOrNull(status.image) + "}";
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
  const std::optional<std::string> error = errorOf(platform::listDiscRecorders(recorders));
  std::string out;
  const char* separator = "";
  for (const DiscRecorderStatus& status : recorders) {
    out += separator;
    out += options.isJson ? "{" + jsonOf(status) + "}" : textOf(status);
    separator = options.isJson ? "," : "\n";
  }
  std::vector<std::string> remarks;
  if (options.isJson) {
    out = jsonObject("\"recorders\":[" + out + "],", error);
  } else if (!error && recorders.empty()) {
    remarks.push_back(kNoRecorder);
  }
  return finish(Output::of(options.isJson, std::move(out)), error, remarks);
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
  if (auto reason = reasonNotToRecord(status)) answers.reason = std::move(*reason);
  return answers;
}

std::string yesOrNo(bool value) { return value ? "yes" : "no"; }

int runStatus(const Options& options) {
  platform::chooseDiscRecorder(options.recorder);
  DiscRecorderStatus status;
  const std::optional<std::string> error =
      errorOf(platform::describeDiscRecorder(options.recorder, status));
  if (error) return finishBare(options, error);
  const Answers answers = askObject(status);
  std::string out;
  if (options.isJson) {
    out = jsonOf(status) + ",";
    out += member("holds_data", answers.holdsData ? jsonBool(*answers.holdsData) : "null");
    out += member("recordable", answers.holdsData ? jsonBool(answers.isRecordable) : "null");
    out = jsonObject(out + member("reason", jsonTextOrNull(answers.reason)), error);
  } else {
    out = textOf(status);
    out += "Rewritable disc that holds data: " +
           (answers.holdsData ? yesOrNo(*answers.holdsData) : "not known") + "\n";
    out +=
        "Recordable: " + (answers.holdsData ? yesOrNo(answers.isRecordable) : "not known") + "\n";
    if (!answers.reason.empty()) out += "  " + answers.reason + "\n";
  }
  return finish(Output::of(options.isJson, std::move(out)), error, {});
}

// The recorder that is meant without a name: a disc in one that the service does not offer would
// help nobody.
std::optional<std::string> findRecorderForDisc(std::string& name) {
  std::vector<DiscRecorderStatus> recorders;
  if (auto error = errorOf(platform::listDiscRecorders(recorders))) return error;
  std::erase_if(recorders, [](const DiscRecorderStatus& status) { return !status.isVirtual; });
  if (recorders.empty()) {
    return "The service has no virtual recorders: --recorder names one, and QUILLON_RECORDERS the "
           "directory of all.";
  }
  const auto writing = std::ranges::find_if(recorders, &DiscRecorderStatus::writes);
  name = (writing == recorders.end() ? recorders.begin() : writing)->name;
  return std::nullopt;
}

int runInsert(const Options& options) {
  std::optional<std::string> error;
  std::string recorder = options.recorder;
  if (recorder.empty()) error = findRecorderForDisc(recorder);
  if (!error) {
    const platform::DiscResult result = platform::insertVirtualDisc(recorder, options.disc);
    error = errorOf(result);
    if (result.code == HRESULT_FROM_WIN32(ERROR_ALREADY_EXISTS)) {
      error->pop_back();
      *error += "; quillon disc eject takes it out.";
    }
  }
  platform::VirtualRecorderStatus status;
  if (!error) error = errorOf(platform::virtualRecorderStatus(recorder, status));
  std::string out;
  if (options.isJson) {
    if (!error) {
      out = member("recorder", jsonString(status.name)) +
            member("media", jsonString(status.media)) + member("state", jsonString(status.state)) +
            member("capacity", std::to_string(status.capacitySectors));
    }
    out = jsonObject(out, error);
  } else if (!error) {
    out = "Inserted into " + status.name + ": " + status.media + ", " + status.state + ", " +
          std::to_string(status.capacitySectors) + " sectors\n";
  }
  return finish(Output::of(options.isJson, std::move(out)), error, {});
}

int runEject(const Options& options) {
  std::string image;
  bool hadDisc = false;
  platform::chooseDiscRecorder(options.recorder);
  const std::optional<std::string> error =
      errorOf(platform::ejectDisc(options.recorder, image, hadDisc));
  std::string out;
  if (options.isJson) {
    out = jsonObject(member("image", jsonTextOrNull(image)), error);
  } else if (!image.empty()) {
    out = "Image:     " + image + "\n";
  } else if (!error) {
    out = hadDisc ? "The disc is out.\n" : "There was no disc to take out.\n";
  }
  return finish(Output::of(options.isJson, std::move(out)), error, {});
}

int runErase(const Options& options) {
  std::optional<std::string> error;
  {
    ProgressBar bar(!options.isQuiet);
    const DiscProgressScope progress(bar);
    const InterruptGuard guard([&progress] { sayBelowProgress(endDiscWork(progress)); },
                               kPatienceWithDrive);
    platform::chooseDiscRecorder(options.recorder);
    error = errorOf(platform::eraseDisc(options.recorder, options.isFull));
  }
  return finishBare(options, error);
}

using Run = int (*)(const Options&);

CLI::App* addVerb(CLI::App& disc, const char* name, const char* description, Run run,
                  const std::shared_ptr<Options>& options, int& exitStatus) {
  CLI::App* verb = disc.add_subcommand(name, description);
  verb->add_flag("--json", options->isJson, "Print the result as one JSON object");
  verb->footer(kExitFooter);
  verb->callback([options, run, &exitStatus] { exitStatus = run(*options); });
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
  erase->add_flag("--quiet", options->isQuiet, "Show no progress");
}

}  // namespace quillon::cli
