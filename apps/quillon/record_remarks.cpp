#include "record_remarks.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <map>
#include <utility>

#include "dicom/dict.h"
#include "dicom/tags.h"
#include "media_job.h"

namespace quillon::cli {

namespace {

// "studyInstanceUid" -> "Study Instance UID"
std::string wordsOf(const std::string& keyword) {
  std::string words;
  for (const char c : keyword) {
    if (std::isupper(static_cast<unsigned char>(c)) != 0 && !words.empty()) words += ' ';
    words += words.empty() ? static_cast<char>(std::toupper(static_cast<unsigned char>(c))) : c;
  }
  for (const char* const abbreviation : {"Id", "Uid", "Rt", "Mime"}) {
    const std::string word(abbreviation);
    const std::size_t at = (" " + words + " ").find(" " + word + " ");
    if (at == std::string::npos) continue;
    std::transform(word.begin(), word.end(), words.begin() + static_cast<std::ptrdiff_t>(at),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  }
  return words;
}

}  // namespace

std::string keyName(DcTag tag) {
  char number[16];
  std::snprintf(number, sizeof number, "(%04X,%04X)", static_cast<unsigned>(dcGroup(tag)),
                static_cast<unsigned>(dcElement(tag)));
  // "T_0008_0020_studyDate"
  const std::string name = dcTagName(tag);
  const std::size_t at = name.find_last_of('_');
  if (at == std::string::npos || at + 1 >= name.size()) return number;
  return wordsOf(name.substr(at + 1)) + " " + number;
}

std::string keyNames(const std::vector<DcTag>& tags) {
  std::string names;
  for (const DcTag tag : tags) names += (names.empty() ? "" : ", ") + keyName(tag);
  return names;
}

std::vector<std::string> remarksOn(const std::vector<IncompleteKey>& incomplete) {
  std::map<std::pair<DcTag, bool>, std::vector<std::string>> files;
  for (const IncompleteKey& one : incomplete) {
    files[{one.tag, one.isMadeUp}].push_back(one.path);
  }
  std::vector<std::string> remarks;
  remarks.reserve(files.size());
  for (const auto& [key, paths] : files) {
    const auto [tag, isMadeUp] = key;
    const bool isSet = tag == tags::kSpecificCharacterSet;
    const char* const consequence =
        isSet      ? ": the DICOMDIR does not say how to read the characters beyond ASCII."
        : isMadeUp ? ": the DICOMDIR has one that was made up."
                   : ": the DICOMDIR is incomplete without it.";
    remarks.push_back("No " + keyName(tag) + " in " +
                      someOf(paths, [](const std::string& path) { return path; }) + consequence);
  }
  return remarks;
}

std::vector<std::string> remarksOn(const std::vector<RepeatedPatient>& repeated) {
  std::vector<std::string> remarks;
  remarks.reserve(repeated.size());
  for (const RepeatedPatient& patient : repeated) {
    remarks.push_back(
        (patient.isSameId ? "The patient ID \"" : "The patient name \"") + narrow(patient.same) +
        (patient.isSameId ? "\" has several names: " : "\" has several IDs: ") +
        someOf(patient.others, [](const Text& other) { return "\"" + narrow(other) + "\""; }) +
        ". The file set has a patient for each; --patient-key makes them one.");
  }
  return remarks;
}

}  // namespace quillon::cli
