// What a user should know of the directory records: required keys without a value, and patients
// that may be one.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "fileset/planned_file_set.h"

namespace quillon::cli {

inline constexpr std::size_t kMostNamed = 3;

// The first few, with commas between them, and how many more there are.
template <typename Items, typename TextOf>
std::string someOf(const Items& items, TextOf textOf) {
  std::string text;
  for (std::size_t i = 0; i < std::min(items.size(), kMostNamed); ++i) {
    text += (i == 0 ? "" : ", ") + textOf(items[i]);
  }
  if (items.size() > kMostNamed)
    text += " and " + std::to_string(items.size() - kMostNamed) + " more";
  return text;
}

struct IncompleteKey {
  std::string path;  // of the object's file, as the user gave it
  DcTag tag;
  bool isMadeUp;  // the DICOMDIR has a value all the same
};

// "Study Date (0008,0020)"; the number alone when the dictionary does not know it.
std::string keyName(DcTag tag);
// "Study Date (0008,0020), Study Time (0008,0030)"
std::string keyNames(const std::vector<DcTag>& tags);

// One for each key.
std::vector<std::string> remarksOn(const std::vector<IncompleteKey>& incomplete);
// One for each ID or name.
std::vector<std::string> remarksOn(const std::vector<RepeatedPatient>& repeated);

}  // namespace quillon::cli
