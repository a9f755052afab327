// Private copies of the sources: the media object consumes the files it is handed, and the user's
// own stay as they are.
#pragma once

#include <cstddef>
#include <mutex>
#include <string>

namespace quillon::cli {

class Staging {
 public:
  // Where the copies of a job for this root go: on the root's file system, so that they are moved
  // into the file set by renaming. Beside the root when that is possible, else in it.
  static std::string parentFor(const std::string& root);

  // mayLink: copies may be hard links, for a file set that goes away in the same job.
  Staging(std::string parent, bool mayLink) : parent_(std::move(parent)), mayLink_(mayLink) {}
  ~Staging() { remove(); }
  Staging(const Staging&) = delete;
  Staging& operator=(const Staging&) = delete;

  // Shares the blocks with the source where the file system can (later writes to either do not
  // reach the other), and copies the bytes otherwise. False with a reason that ends in ".".
  bool copyIn(const std::string& source, std::string& copy, std::string& reason);

  // Removes the directory with what is still in it. Nothing can be staged afterwards. May be called
  // from another thread.
  void remove();

 private:
  bool makeDirectory(std::string& reason);
  bool copyFile(int source, int copy);

  std::mutex mutex_;
  std::string parent_;
  bool mayLink_;
  std::string directory_;
  std::size_t count_ = 0;
  bool canClone_ = true;
  bool isRemoved_ = false;
};

}  // namespace quillon::cli
