// Private copies of the sources: the media object consumes the files it is handed, and the user's
// own stay as they are.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "held_directory.h"
#include "outcome.h"

namespace quillon {
class MediumFile;
}

namespace quillon::cli {

class Staging {
 public:
  // Where the copies of a job for this root go: on the root's file system, so that they are moved
  // into the file set by renaming. Beside the root when that is possible, else in it.
  static std::string parentFor(const std::string& root);

  // Removes what jobs that were killed left there; `removed` gets the paths.
  static void removeAbandoned(const std::string& parent, std::vector<std::string>& removed);

  // mayLink: copies may be hard links, for a file set that goes away in the same job.
  Staging(std::string parent, bool mayLink) : parent_(std::move(parent)), mayLink_(mayLink) {}
  ~Staging() { remove(); }
  Staging(const Staging&) = delete;
  Staging& operator=(const Staging&) = delete;

  // Shares the blocks with the source where the file system can (later writes to either do not
  // reach the other), and copies the bytes otherwise. Fails with what goes on after "PATH: ".
  Outcome copyIn(const std::string& source, std::string& copy);

  // The same of a file of a medium that is no directory.
  Outcome takeIn(quillon::MediumFile& source, std::string& copy);
  // Whether it is one of the copies.
  [[nodiscard]] bool holds(std::string_view path) const {
    return !directory_.path().empty() && path.starts_with(directory_.path() + "/");
  }

  // Brings all copies to the disk at once. Fails with what goes on after "NAME: ".
  [[nodiscard]] Outcome flush() const;

  // Told how many bytes of the file that is being copied are done, often.
  void setProgress(std::function<void(std::uint64_t bytes)> progress) {
    progress_ = std::move(progress);
  }

  // A second name, short and plain, for a file whose own the system cannot take: a symbolic link.
  Outcome nameIn(const std::string& source, std::string& name);

  // Of the directory with the copies, without its parent's; empty before it is made.
  [[nodiscard]] std::string name() const;

  // Whether copies need room of their own. Tries it.
  [[nodiscard]] bool needsRoom();

  // Removes the directory with what is still in it. Nothing can be staged afterwards. May be called
  // from another thread, also while a file is copied.
  void remove();

 private:
  Outcome makeDirectory();
  std::string nextName();
  [[nodiscard]] bool copyFile(int source, int copy);
  [[nodiscard]] bool copyByReading(int source, int copy, std::uint64_t done);
  void report(std::uint64_t bytes) const {
    if (progress_) progress_(bytes);
  }

  std::mutex mutex_;  // of the directory's making and removal; never held while a file is read
  std::string parent_;
  bool mayLink_;
  HeldDirectory directory_;
  std::size_t count_ = 0;
  bool canClone_ = true;
  bool hasCopied_ = false;
  std::vector<char> block_;
  std::function<void(std::uint64_t)> progress_;
  std::atomic<bool> isRemoved_ = false;
};

}  // namespace quillon::cli
