// The source files of a creation, under the names that its user and the media object know them by.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "foundation/position_index.h"
#include "source_walk.h"

namespace quillon::cli {

// The text with each occurrence of one thing replaced by another.
std::string replaced(std::string text, const std::string& what, const std::string& with);

// The files that the walk found, and those that were added by the path that the object knows each
// by: the absolute one, unless it had to be given another name.
class SourceFiles {
 public:
  void take(std::vector<SourceFile> files) {
    files_ = std::move(files);
    files_.shrink_to_fit();
  }
  [[nodiscard]] std::size_t size() const { return files_.size(); }
  [[nodiscard]] const SourceFile& operator[](std::size_t i) const { return files_[i]; }

  // The bytes of that file lie elsewhere: it comes out of an image, say.
  void noteStored(std::size_t i, const std::string& path) {
    stored_.emplace(static_cast<std::uint32_t>(i), path);
  }
  // Null for a file that lies where it is called.
  [[nodiscard]] const std::string* storedAt(std::size_t i) const {
    const auto found = stored_.find(static_cast<std::uint32_t>(i));
    return found == stored_.end() ? nullptr : &found->second;
  }

  void noteAdded(std::size_t i, const std::string& path, bool isRenamed) {
    const auto position = static_cast<std::uint32_t>(i);
    added_.Add(std::hash<std::string>{}(path), position);
    if (isRenamed) renamed_.emplace(position, path);
  }
  [[nodiscard]] bool hasAdded() const { return added_.size() != 0; }
  // Null for a path that none was added by.
  [[nodiscard]] const SourceFile* find(const std::string& path) const;
  // Whether that path, which one was added by, is that of a stored file.
  [[nodiscard]] bool isStored(const std::string& path) const {
    const SourceFile* file = find(path);
    return file != nullptr && storedAt(static_cast<std::size_t>(file - files_.data())) != nullptr;
  }
  // What the user calls it.
  [[nodiscard]] const std::string& nameOf(const std::string& path) const {
    const SourceFile* file = find(path);
    return file == nullptr ? path : file->path;
  }
  // Files that had to be given another name are called by their own.
  [[nodiscard]] std::string inUsersWords(const std::string& sentence) const;

 private:
  [[nodiscard]] std::string pathOf(std::uint32_t position) const;

  std::vector<SourceFile> files_;
  PositionIndex added_;
  std::unordered_map<std::uint32_t, std::string> renamed_;
  std::unordered_map<std::uint32_t, std::string> stored_;
};

}  // namespace quillon::cli
