#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace emulated {

// A file of lines "name = value". A name may stand in several lines; "#" begins a comment line. A
// file that is not there reads as one without lines.
class TextTable {
 public:
  using Line = std::pair<std::string, std::string>;

  static TextTable read(const std::string& path);
  // Replaces the file in one step, so that a killed process leaves the old lines or the new ones.
  [[nodiscard]] bool write(const std::string& path) const;

  bool has(std::string_view name) const;
  std::string text(std::string_view name, std::string_view otherwise = {}) const;
  std::int64_t number(std::string_view name, std::int64_t otherwise = 0) const;
  bool isYes(std::string_view name, bool otherwise = false) const;
  const std::vector<Line>& lines() const { return lines_; }

  void set(std::string_view name, std::string_view value);
  void set(std::string_view name, std::int64_t value);
  void setYes(std::string_view name, bool isYes);
  void add(std::string_view name, std::string_view value);
  void remove(std::string_view name);

  bool operator==(const TextTable&) const = default;

 private:
  std::vector<Line> lines_;
};

std::vector<std::string> wordsOf(std::string_view text);

// Whole files, through the system calls that are not replaced. False: it cannot be read or written.
[[nodiscard]] bool readWholeFile(const std::string& path, std::string& content);
[[nodiscard]] bool replaceFile(const std::string& path, std::string_view content);

}  // namespace emulated
