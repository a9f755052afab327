#include "root_guard.h"

#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string_view>

#include "media_job.h"

namespace quillon::cli {

namespace fs = std::filesystem;

namespace {

fs::path resolved(const std::string& path) {
  std::error_code error;
  const fs::path canonical = fs::weakly_canonical(path, error);
  const fs::path result = error ? fs::path(path).lexically_normal() : canonical;
  return result.has_filename() ? result : result.parent_path();
}

// Also when the source is a symbolic link in the directory whose target lies elsewhere.
bool holds(const std::string& directory, const std::string& source) {
  return liesWithin(source, directory) ||
         liesWithin(fs::path(source).parent_path().string(), directory);
}

std::vector<std::string> homeDirectories() {
  std::vector<std::string> homes;
  if (const char* home = std::getenv("HOME"); home != nullptr && *home == '/') {
    homes.emplace_back(home);
  }
  if (const passwd* user = getpwuid(getuid()); user != nullptr && user->pw_dir != nullptr) {
    homes.emplace_back(user->pw_dir);
  }
  return homes;
}

}  // namespace

RootEntry rootEntry(const std::string& root) {
  std::error_code error;
  const fs::file_status status = fs::status(root, error);
  if (status.type() == fs::file_type::not_found) return RootEntry::Missing;
  if (error) return RootEntry::Unreadable;
  if (!fs::is_directory(status)) return RootEntry::NotDirectory;
  const bool isEmpty = fs::is_empty(root, error);
  if (error) return RootEntry::Unreadable;
  return isEmpty ? RootEntry::Empty : RootEntry::NotEmpty;
}

bool liesWithin(const std::string& path, const std::string& directory) {
  const fs::path inner = resolved(path);
  const fs::path outer = resolved(directory);
  const auto [outerEnd, innerEnd] =
      std::mismatch(outer.begin(), outer.end(), inner.begin(), inner.end());
  return outerEnd == outer.end();
}

Outcome mayWipe(const std::string& root, const std::vector<std::string>& sources) {
  const auto refused = [&root](const std::string& why) {
    return "The directory " + root + " is not wiped: " + why;
  };
  if (liesWithin("/", root)) return refused("it is the root of the file system.");
  for (const std::string& home : homeDirectories()) {
    if (liesWithin(home, root)) return refused("it holds the home directory " + home + ".");
  }
  std::error_code error;
  const std::string current = fs::current_path(error).string();
  if (!current.empty() && liesWithin(current, root)) {
    return refused("it holds the current directory.");
  }
  // The media object clears its temporary directory in the same step.
  const std::string temporary = temporaryJobDirectory();
  for (const std::string& source : sources) {
    if (holds(root, source)) return refused("it holds the source " + source + ".");
    if (!temporary.empty() && holds(temporary, source)) {
      std::string why =
          "the directory " + temporary + ", which is wiped with it, holds the source ";
      why.append(source).append(".");
      return refused(why);
    }
  }
  return {};
}

}  // namespace quillon::cli
