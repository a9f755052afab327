#include "result_output.h"

#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "disc_kinds.h"
#include "terminal_text.h"

namespace quillon::cli {

namespace {

constexpr int kExitDone = 0;
constexpr int kExitFailed = 1;

// Not more than a terminal shows.
constexpr std::size_t kMostPassedOver = 20;

std::string indented(const std::string& text, const char* indent) {
  std::string out = indent;
  for (const char c : text) {
    out += c;
    if (c == '\n') out += indent;
  }
  return out;
}

// What a dry run tells beside.

constexpr const char* kDryRunLine = "Dry run:   nothing is changed\n";

std::string fitsText(std::uint64_t sectors) {
  const std::string kinds = textOfKindsThatHold(sectors);
  return "Fits:      " + (kinds.empty() ? "no kind of disc" : kinds) + "\n";
}

// 0 sectors when it failed before they were known.
void addDryRun(Json& object, std::uint64_t sectors) {
  object["dry_run"] = true;
  object["disc_sectors"] = sectors;
  Json& kinds = object["fits"] = Json::array();
  if (sectors == 0) return;
  for (const std::string_view kind : kindsThatHold(sectors)) kinds.push_back(kind);
}

// Of each file by its name; none where no sums were made. Names that are no UTF-8 may look the
// same, so these files have a list of their own.
void addSums(Json& object, const std::vector<FileSum>& sums) {
  if (sums.empty()) return;
  // Names are different: to look for each among those before it would take its time in a large set.
  Json::object_t byName;
  byName.reserve(sums.size());
  Json others = Json::array();
  for (const FileSum& one : sums) {
    if (isUtf8(one.name)) {
      byName.Container::emplace_back(one.name, one.sha256);
    } else {
      Json& other = others.emplace_back();
      addPath(other, one.name);
      other["sha256"] = one.sha256;
    }
  }
  object["sums"] = std::move(byName);
  if (!others.empty()) object["sums_by_bytes"] = std::move(others);
}

std::string fileText(const char* kind, const std::string& path) {
  return std::string(kind) + (path == "-" ? "on standard output" : path);
}

std::string targetText(const WriteResult& result) {
  if (result.imageFile) {
    return fileText("image ", *result.imageFile) + ", volume " + result.volume;
  }
  if (result.zip) return fileText("ZIP file ", *result.zip);
  if (result.target) return *result.target;
  std::string text = "disc " + result.volume + " in " + result.recorder;
  if (!result.isVirtual) return text;
  if (result.image.empty()) return text + ", a virtual recorder";
  return text + ", an image: " + result.image;
}

}  // namespace

std::string singleLine(std::string text) {
  std::replace(text.begin(), text.end(), '\n', ' ');
  return text;
}

Output Output::forReaders(std::string_view text) { return Output(forTerminal(text)); }
Output Output::asItIs(std::string bytes) { return Output(std::move(bytes)); }

std::string plainText(const CreateResult& result) {
  std::string out;
  if (!result.outcome.failed() && result.isDryRun) out += kDryRunLine;
  if (!result.outcome.failed()) {
    if (!result.root.empty()) out += "Root:      " + result.root + "\n";
    out += "Patients:  " + std::to_string(result.patients) + "\n";
    out += "Studies:   " + std::to_string(result.studies) + "\n";
    out += "Series:    " + std::to_string(result.series) + "\n";
    out += "Objects:   " + std::to_string(result.objects) + "\n";
    out += "Bytes:     " + std::to_string(result.bytes) + "\n";
    if (result.notSelected > 0) {
      out += "Left out:  " + std::to_string(result.notSelected) + "\n";
    }
    out += plainText(result.profile);
    out += "Label:\n" + indented(result.label, "  ") + "\n";
    if (result.isDryRun) out += fitsText(result.discSectors);
  }
  return out + passedOverText(result);
}

std::string passedOverText(const CreateResult& result) {
  if (result.passedOver.empty()) return {};
  std::string out = "Passed over: " + std::to_string(result.passedOver.size()) + "\n";
  // What was to be added is named in any number.
  std::size_t others = 0;
  for (const PassedOver& one : result.passedOver) {
    if (!one.isMissed && ++others > kMostPassedOver) continue;
    out += "  " + singleLine(one.path) + ": " + singleLine(one.reason) + "\n";
  }
  if (others <= kMostPassedOver) return out;
  return out + "  and " + std::to_string(others - kMostPassedOver) +
         " more; with --json all are named\n";
}

std::string plainText(const WriteResult& result) {
  if (result.outcome.failed()) return {};
  std::string out;
  if (result.found) {
    out += kDryRunLine;
    out += "Root:      " + result.root + "\n";
    out += "Files:     " + std::to_string(result.found->files) + "\n";
    out += "Bytes:     " + std::to_string(result.found->bytes) + "\n";
    out += "Label:\n" + indented(result.found->label, "  ") + "\n";
    out += fitsText(result.found->discSectors);
  }
  if (result.isDryRun) return out + "Target:    " + targetText(result) + "\n";
  out += result.isSimulated ? "Test run:  " : "Written:   ";
  out += targetText(result) + "\n";
  if (result.verifiedFiles) {
    out += "Verified:  " + std::to_string(*result.verifiedFiles) + " files, read back\n";
  }
  if (result.discs > 1) out += "Discs:     " + std::to_string(result.writtenDiscs) + "\n";
  if (result.isKept) out += "Kept:      " + result.root + "\n";
  return out;
}

void addMembers(Json& object, const CreateResult& result) {
  object["root"] = textOrNull(result.root);
  object["patients"] = result.patients;
  object["studies"] = result.studies;
  object["series"] = result.series;
  object["objects"] = result.objects;
  object["bytes"] = result.bytes;
  object["label"] = result.label;
  Json& passedOver = object["passed_over"] = Json::array();
  for (const PassedOver& one : result.passedOver) {
    Json& file = passedOver.emplace_back();
    addPath(file, one.path);
    file["reason"] = one.reason;
  }
  object["left_out"] = result.notSelected;
  Json& incomplete = object["incomplete"] = Json::array();
  for (const IncompleteKey& one : result.incomplete) {
    Json& key = incomplete.emplace_back();
    addPath(key, one.path);
    key["key"] = keyName(one.tag);
    key["made_up"] = one.isMadeUp;
  }
  addMembers(object, result.profile);
  if (result.isDryRun) addDryRun(object, result.discSectors);
}

void addMembers(Json& object, const FoundSet& found) {
  object["files"] = found.files;
  object["bytes"] = found.bytes;
  object["label"] = found.label;
  addDryRun(object, found.discSectors);
}

void addMembers(Json& object, const WriteResult& result) {
  if (result.found) addMembers(object, *result.found);
  object["to"] = result.target ? Json(*result.target) : Json();
  if (result.imageFile) object["iso"] = *result.imageFile;
  if (result.zip) object["zip"] = *result.zip;
  object["recorder"] = textOrNull(result.recorder);
  object["image"] = textOrNull(result.image);
  object["volume"] = result.volume;
  object["simulated"] = result.isSimulated;
  object["written"] = result.isWritten;
  if (result.discs > 1) object["discs"] = result.writtenDiscs;
  object["verified"] = result.verifiedFiles.has_value();
  object["kept"] = result.isKept;
  addSums(object, result.sums);
}

void print(const Output& output) {
  std::fwrite(output.bytes().data(), 1, output.bytes().size(), stdout);
  // What fails next is said behind it, also where both go to one file.
  std::fflush(stdout);
}

int finish(const Output& output, const Outcome& outcome, const std::vector<std::string>& remarks) {
  print(output);
  if (outcome.failed()) {
    // Reasons that come from a drive end in empty lines.
    const std::string sentence = outcome.text();
    say(sentence.substr(0, sentence.find_last_not_of('\n') + 1));
  }
  for (const std::string& remark : remarks) {
    say(singleLine(remark));
  }
  // What did not fit the buffer has failed before.
  if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
    say("The result cannot be written.");
    return kExitFailed;
  }
  return outcome.failed() ? kExitFailed : kExitDone;
}

}  // namespace quillon::cli
