// A directory that the program makes for the time of one job and holds by a lock, so that what a
// killed job leaves behind can be told from what a running one still uses.
#pragma once

#include <string>
#include <vector>

namespace quillon::cli {

class HeldDirectory {
 public:
  HeldDirectory() = default;
  // Lets go of it; what it holds stays.
  ~HeldDirectory();
  HeldDirectory(const HeldDirectory&) = delete;
  HeldDirectory& operator=(const HeldDirectory&) = delete;

  // Makes "<parent>/<prefix><process>-XXXXXX", for this user alone. False with errno.
  [[nodiscard]] bool make(const std::string& parent, const std::string& prefix);
  // Empty before make.
  [[nodiscard]] const std::string& path() const { return path_; }

  // The directories of this user that have such names in the parent and that nobody holds. Each is
  // held while `visit` is called with its path.
  template <typename Visit>
  static void forEachAbandoned(const std::string& parent, const std::string& prefix, Visit visit) {
    for (const std::string& path : named(parent, prefix)) {
      HeldDirectory held;
      if (held.take(path)) visit(path);
    }
  }

 private:
  static std::vector<std::string> named(const std::string& parent, const std::string& prefix);
  [[nodiscard]] bool take(const std::string& path);

  std::string path_;
  int lock_ = -1;
};

}  // namespace quillon::cli
