// What this process has open, and what it lets the process do meanwhile. Other processes are not
// kept out, as they are not on this system.
#pragma once

#include <sys/stat.h>

#include <mutex>
#include <string>
#include <vector>

#include "platform/win32/files.h"

namespace quillon::platform {

// A handle that was opened for nothing but questions is in nobody's way, except that what it has
// open is not replaced. Regular files by whatever name they were opened, directories and
// enumerations.
class OpenFiles {
 public:
  struct Use {
    bool reads = false;
    bool writes = false;
    bool deletes = false;
    DWORD share = 0;
  };

  // False when an earlier handle does not allow this one, or this one would not allow it.
  bool add(const void* handle, int descriptor, const struct stat& status, const Use& use);
  // For a directory or an enumeration, which keeps nobody from opening the same.
  void addDirectory(const void* handle, int descriptor);
  void remove(const void* handle);

  // Whether a handle was opened without FILE_SHARE_DELETE, so that the file keeps its name.
  bool keepsName(const struct stat& status);
  bool isOpen(const struct stat& status);
  // Whether any file, which is no directory, is open.
  bool isAnyFileOpen();
  // Whether something below the directory is open, at any depth.
  bool isAnythingOpenBelow(const std::string& realDirectory);

 private:
  struct Entry {
    const void* handle;
    int descriptor;
    bool isRegular;
    dev_t device;
    ino_t inode;
    Use use;

    [[nodiscard]] bool isOf(const struct stat& status) const {
      return isRegular && device == status.st_dev && inode == status.st_ino;
    }
    [[nodiscard]] bool isInTheWay() const { return use.reads || use.writes || use.deletes; }
  };

  std::mutex mutex_;
  std::vector<Entry> entries_;
};

OpenFiles& openFiles();

// The path that an open descriptor has now; empty when it has none.
std::string pathOfDescriptor(int descriptor);

}  // namespace quillon::platform
