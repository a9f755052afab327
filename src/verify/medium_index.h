// What lies on a medium, by path.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "medium/medium_source.h"

namespace quillon {

// With the letters of ASCII in upper case.
Text Folded(TextView path);

class MediumIndex {
 public:
  explicit MediumIndex(std::vector<MediumEntry> entries);

  [[nodiscard]] const std::vector<MediumEntry>& Entries() const { return entries_; }
  // The place of an entry of that path.
  [[nodiscard]] std::optional<std::size_t> Find(TextView path) const;
  // The same without upper and lower case of ASCII; the first one of several.
  [[nodiscard]] std::optional<std::size_t> FindFolded(TextView path);
  // An entry of that name in the root, in upper or lower case.
  [[nodiscard]] std::optional<std::size_t> FindInRoot(TextView name);

 private:
  std::vector<MediumEntry> entries_;
  std::unordered_map<TextView, std::size_t> places_;
  std::unordered_map<Text, std::size_t> folded_;  // made when it is asked for
};

}  // namespace quillon
