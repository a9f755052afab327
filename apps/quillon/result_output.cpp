#include "result_output.h"

#include <algorithm>
#include <cstdio>

#include "disc_kinds.h"
#include "json_output.h"
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
std::string dryRunMembers(std::uint64_t sectors) {
  std::string kinds;
  if (sectors > 0) {
    for (const std::string_view kind : kindsThatHold(sectors)) {
      kinds += (kinds.empty() ? "" : ",") + jsonString(kind);
    }
  }
  return "\"dry_run\":true," + jsonMember("disc_sectors", std::to_string(sectors)) + "\"fits\":[" +
         kinds + "],";
}

// Of each file by its name; none where no sums were made.
std::string sumsMember(const std::vector<FileSum>& sums) {
  if (sums.empty()) return {};
  std::string out = "\"sums\":{";
  const char* separator = "";
  for (const FileSum& one : sums) {
    out += separator + jsonString(one.name) + ":" + jsonString(one.sha256);
    separator = ",";
  }
  return out + "},";
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

std::string jsonMembers(const CreateResult& result) {
  const auto number = [](auto value) { return std::to_string(value); };
  std::string out = jsonMember("root", jsonTextOrNull(result.root));
  out += jsonMember("patients", number(result.patients));
  out += jsonMember("studies", number(result.studies));
  out += jsonMember("series", number(result.series));
  out += jsonMember("objects", number(result.objects));
  out += jsonMember("bytes", number(result.bytes));
  out += jsonMember("label", jsonString(result.label));
  out += "\"passed_over\":[";
  const char* separator = "";
  for (const PassedOver& one : result.passedOver) {
    out += separator;
    out += "{" + jsonPathMembers(one.path) + "\"reason\":" + jsonString(one.reason) + "}";
    separator = ",";
  }
  out += "],";
  out += jsonMember("left_out", number(result.notSelected));
  out += "\"incomplete\":[";
  separator = "";
  for (const IncompleteKey& one : result.incomplete) {
    out += separator;
    out += "{" + jsonPathMembers(one.path) + jsonMember("key", jsonString(keyName(one.tag))) +
           "\"made_up\":" + jsonBool(one.isMadeUp) + "}";
    separator = ",";
  }
  out += "],";
  out += jsonMembers(result.profile);
  return result.isDryRun ? out + dryRunMembers(result.discSectors) : out;
}

std::string jsonMembers(const FoundSet& found) {
  return jsonMember("files", std::to_string(found.files)) +
         jsonMember("bytes", std::to_string(found.bytes)) +
         jsonMember("label", jsonString(found.label)) + dryRunMembers(found.discSectors);
}

std::string jsonMembers(const WriteResult& result) {
  return (result.found ? jsonMembers(*result.found) : "") +
         jsonMember("to", result.target ? jsonString(*result.target) : std::string("null")) +
         (result.imageFile ? jsonMember("iso", jsonString(*result.imageFile)) : "") +
         (result.zip ? jsonMember("zip", jsonString(*result.zip)) : "") +
         jsonMember("recorder", jsonTextOrNull(result.recorder)) +
         jsonMember("image", jsonTextOrNull(result.image)) +
         jsonMember("volume", jsonString(result.volume)) +
         jsonMember("simulated", jsonBool(result.isSimulated)) +
         jsonMember("written", jsonBool(result.isWritten)) +
         (result.discs > 1 ? jsonMember("discs", std::to_string(result.writtenDiscs)) : "") +
         jsonMember("verified", jsonBool(result.verifiedFiles.has_value())) +
         jsonMember("kept", jsonBool(result.isKept)) + sumsMember(result.sums);
}

std::string jsonObject(const std::string& members, const Outcome& outcome) {
  return "{" + members + "\"error\":" + (outcome.failed() ? jsonString(outcome.text()) : "null") +
         "}\n";
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
