#include "span_state.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "platform/sha256.h"

namespace quillon::cli {

namespace fs = std::filesystem;

namespace {

std::string stateDirectory() {
  if (const char* state = std::getenv("XDG_STATE_HOME"); state != nullptr && *state == '/') {
    return std::string(state) + "/quillon/spans";
  }
  const char* home = std::getenv("HOME");
  if (home == nullptr || *home != '/') return {};
  return std::string(home) + "/.local/state/quillon/spans";
}

Outcome failed(const std::string& path, int error) {
  return "It cannot be noted in " + path + " how far the job has come: " + std::strerror(error) +
         ".";
}

Outcome append(const std::string& path, int flags, const std::string& line) {
  const int file = ::open(path.c_str(), O_WRONLY | O_CLOEXEC | flags, 0600);
  if (file < 0) return failed(path, errno);
  const bool isWritten =
      ::write(file, line.data(), line.size()) == static_cast<ssize_t>(line.size()) &&
      ::fsync(file) == 0;
  const int error = errno;
  ::close(file);
  return isWritten ? Outcome() : failed(path, error);
}

}  // namespace

SpanState::SpanState(std::string_view plan) {
  const std::string directory = stateDirectory();
  Sha256 sum;
  sum.Update(plan.data(), plan.size());
  const std::string name = sum.Finish();
  if (!directory.empty() && !name.empty()) path_ = directory + "/" + name;
}

bool SpanState::read(std::set<int>& done) const {
  std::ifstream file(path_);
  if (path_.empty() || !file) return false;
  for (int number = 0; file >> number;) done.insert(number);
  return true;
}

Outcome SpanState::begin() const {
  if (path_.empty()) return "There is no place to note how far the job has come.";
  std::error_code error;
  fs::create_directories(fs::path(path_).parent_path(), error);
  return append(path_, O_CREAT | O_TRUNC, "");
}

Outcome SpanState::note(int medium) const {
  if (path_.empty()) return {};
  return append(path_, O_APPEND, std::to_string(medium) + "\n");
}

void SpanState::end() const {
  std::error_code error;
  if (!path_.empty()) fs::remove(path_, error);
}

}  // namespace quillon::cli
