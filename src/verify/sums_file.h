// SHA256SUMS: the sums of the files of a medium, a line each as `sha256sum` writes them ("hex path"
// or "hex *path", "/" between the parts).
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "findings.h"
#include "medium_index.h"

namespace quillon {

class SumsFile {
 public:
  // Reads it from the text; what is wrong with its lines is told, files that are not there too.
  void Read(std::string_view text, MediumIndex& index, Findings& findings);

  [[nodiscard]] bool IsThere() const { return isThere_; }
  // In lower case; null when there is none for the file.
  [[nodiscard]] const std::string* SumOf(std::size_t entry) const;
  // Of the files that have one.
  [[nodiscard]] std::uint64_t Bytes() const { return bytes_; }

 private:
  void ReadLine(std::string_view line, std::size_t number, MediumIndex& index, Findings& findings);

  bool isThere_ = false;
  std::uint64_t bytes_ = 0;
  std::unordered_map<std::size_t, std::string> sums_;  // by the place of the file's entry
};

}  // namespace quillon
