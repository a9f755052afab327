// The registry's file: read again when it changed, and replaced as a whole.
#pragma once

#include <sys/stat.h>

#include <functional>
#include <string>

#include "registry_file.h"

namespace quillon::platform {

class RegistryStore {
 public:
  // The current tree; a file that does not exist is an empty one. An answer other than 0 is the
  // system code.
  LSTATUS read(RegistryDocument*& document);

  // Changes the tree under the lock of the file and writes it. The change answers a code of its
  // own; other than 0 nothing is written.
  LSTATUS change(const std::function<LSTATUS(RegistryKey& roots)>& change);

  struct Location {
    std::string readFrom;
    std::string writeTo;
  };
  static Location locate();

 private:
  LSTATUS load(const std::string& path);
  LSTATUS save(const std::string& path);

  RegistryDocument document_;
  std::string path_;
  struct stat status_ {};
  bool loaded_ = false;
};

}  // namespace quillon::platform
