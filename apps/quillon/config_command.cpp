#include <array>
#include <cstdlib>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <utility>

#include "command_tree.h"
#include "commands.h"
#include "media_job.h"
#include "nearest_name.h"
#include "platform/registry_file_status.h"
#include "result_output.h"
#include "settings.h"

namespace quillon::cli {

namespace {

constexpr const char* kFooter =
    R"(Without get, set or unset it shows all values, what they mean, and where each comes from. They stand
in the registry file: $QUILLON_REGISTRY, else ~/.config/quillon/registry.reg, else
/etc/quillon/registry.reg. Names may be written in any case.

Exit status: 0 done, 1 the registry cannot be read or written or does not take the value, 2 wrong
usage.)";

struct ConfigOptions {
  std::string name;
  std::string value;
  bool isJson = false;
};

// What holds, and why.
struct Effective {
  std::string text;
  const char* from = "default";
};

struct EnvironmentRow {
  const char* name;
  const char* meaning;
};
constexpr std::array kEnvironment{
    EnvironmentRow{"QUILLON_REGISTRY", "The registry file"},
    EnvironmentRow{"QUILLON_RECORDERS",
                   "Directory of virtual recorders, in the place of the drives"},
    EnvironmentRow{"QUILLON_DRIVES", "Directory whose subdirectories stand for drive letters"},
    EnvironmentRow{"TMPDIR", "Temporary directory"},
};

std::string environmentText(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

Outcome lookUp(const Setting& setting, Effective& effective) {
  std::optional<std::string> value;
  if (Outcome read = readSetting(setting, value); read.failed()) return read;
  effective.text = value.value_or(setting.fallback);
  if (value) effective.from = "registry";
  // Named recorders stand before the drives, unless those are asked for.
  const bool isAutomatic =
      std::string_view(setting.name) == "Service" && (effective.text == "auto" || !value);
  if (isAutomatic && !environmentText("QUILLON_RECORDERS").empty()) {
    effective = {"virtual", "environment"};
  }
  return {};
}

const Setting& settingOf(const std::string& name) {
  if (const Setting* found = findSetting(name); found != nullptr) return *found;
  throw CLI::ValidationError("there is no value " + name + "; did you mean " +
                             nearestName(name, settingNames()) + "? quillon config shows them all");
}

Json jsonOf(const char* name, const char* type, const Effective& value, const char* meaning) {
  Json object;
  object["name"] = name;
  object["type"] = type;
  object["value"] = textOrNull(value.text);
  object["from"] = value.from;
  object["meaning"] = meaning;
  return object;
}

std::string lineOf(const char* name, const Effective& value, const char* meaning) {
  std::string line = name;
  line.append(line.size() < 23 ? 23 - line.size() : 1, ' ');
  const bool isNothing = value.text.empty();
  return line + (isNothing ? "-" : value.text + "  (" + value.from + ")") + "\n    " + meaning +
         "\n";
}

int runShow(const ConfigOptions& options) {
  Outcome outcome = checkRegistryFile();
  std::vector<std::string> remarks;
  const platform::RegistryFileStatus file = platform::registryFileStatus();
  std::string text = "Registry file: " + file.path + "\n\n";
  Json values = Json::array();
  const auto add = [&](const char* name, const char* type, const Effective& value,
                       const char* meaning) {
    values.push_back(jsonOf(name, type, value, meaning));
    text += lineOf(name, value, meaning);
  };
  for (const Setting& setting : allSettings()) {
    Effective value;
    if (const Outcome read = lookUp(setting, value); read.failed()) {
      if (outcome.failed()) remarks.push_back(read.text());
      if (!outcome.failed()) outcome = read;
    }
    add(setting.name, kindName(setting.kind), value, setting.meaning);
  }
  text += "\nEnvironment\n";
  for (const EnvironmentRow& row : kEnvironment) {
    add(row.name, "environment", {environmentText(row.name), "environment"}, row.meaning);
  }
  if (options.isJson) {
    Json object;
    object["registry"] = file.path;
    object["values"] = std::move(values);
    text = jsonObject(std::move(object), outcome);
  }
  return finish(Output::of(options.isJson, std::move(text)), outcome, remarks);
}

int finishOne(const ConfigOptions& options, const Setting& setting, const Effective& value,
              std::string text, const Outcome& outcome,
              const std::vector<std::string>& remarks = {}) {
  if (options.isJson) {
    Json object;
    object["name"] = setting.name;
    object["value"] = textOrNull(value.text);
    object["from"] = value.from;
    text = jsonObject(std::move(object), outcome);
  } else if (outcome.failed()) {
    text.clear();
  }
  return finish(Output::of(options.isJson, std::move(text)), outcome, remarks);
}

int runGet(const ConfigOptions& options) {
  const Setting& setting = settingOf(options.name);
  Effective value;
  Outcome outcome = checkRegistryFile();
  if (!outcome.failed()) outcome = lookUp(setting, value);
  std::string text = value.text.empty() ? "" : value.text + "\n";
  return finishOne(options, setting, value, std::move(text), outcome);
}

// The system's file is left to the system; the user's own is made of it, and holds from then on.
std::vector<std::string> remarksOnOwnFile(const platform::RegistryFileStatus& before) {
  if (before.path == before.writtenPath) return {};
  return {"The values of " + before.path + " are copied to " + before.writtenPath +
          ", which holds from now on."};
}

int runSet(const ConfigOptions& options) {
  const Setting& setting = settingOf(options.name);
  std::string text = options.value;
  Outcome outcome = checkSetting(setting, text);
  if (!outcome.failed()) outcome = checkRegistryFile();
  const platform::RegistryFileStatus before = platform::registryFileStatus();
  if (!outcome.failed()) outcome = writeSetting(setting, text);
  Effective value;
  if (!outcome.failed()) outcome = lookUp(setting, value);
  return finishOne(options, setting, value, std::string(setting.name) + " is " + text + ".\n",
                   outcome,
                   outcome.failed() ? std::vector<std::string>() : remarksOnOwnFile(before));
}

int runUnset(const ConfigOptions& options) {
  const Setting& setting = settingOf(options.name);
  Outcome outcome = checkRegistryFile();
  const platform::RegistryFileStatus before = platform::registryFileStatus();
  bool wasSet = false;
  if (!outcome.failed()) outcome = removeSetting(setting, wasSet);
  Effective value;
  if (!outcome.failed()) outcome = lookUp(setting, value);
  const std::string name = setting.name;
  return finishOne(options, setting, value,
                   wasSet ? name + " is not set any more.\n" : name + " was not set.\n", outcome,
                   wasSet ? remarksOnOwnFile(before) : std::vector<std::string>());
}

}  // namespace

void addConfigCommand(CLI::App& program, int& exitStatus) {
  const auto options = std::make_shared<ConfigOptions>();
  CLI::App* config =
      program.add_subcommand("config", "Shows and changes what is configured for all jobs");
  config->require_subcommand(0, 1);
  config->footer(kFooter);
  addJsonOption(*config, options->isJson);
  config->callback([config, options, &exitStatus] {
    if (config->get_subcommands().empty()) exitStatus = runShow(*options);
  });
  const auto add = [&](const char* name, const char* description,
                       int (*run)(const ConfigOptions&)) {
    CLI::App* verb = config->add_subcommand(name, description);
    addJsonOption(*verb, options->isJson);
    verb->add_option("NAME", options->name, "A value, as quillon config shows it")
        ->required()
        ->check(offers(settingNames()));
    verb->callback([options, run, &exitStatus] { exitStatus = run(*options); });
    return verb;
  };
  add("get", "Prints a value", runGet);
  add("set", "Checks a value and writes it to the registry file", runSet)
      ->add_option("VALUE", options->value, "What it is to be")
      ->required();
  add("unset", "Takes a value out of the registry file", runUnset);
}

}  // namespace quillon::cli
