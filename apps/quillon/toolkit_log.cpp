#include "toolkit_log.h"

#include <cstdio>

#include "fileset/toolkit_log.h"
#include "source_walk.h"

namespace quillon::cli {

Outcome sendToolkitLog(const std::string& fileName) {
  std::string absolute;
  if (!fileName.empty()) {
    absolute = absolutePath(fileName);
    std::FILE* file = std::fopen(absolute.c_str(), "a");
    if (file == nullptr) return "The log file " + fileName + " cannot be written.";
    std::fclose(file);
  }
  SendToolkitLogTo(absolute);
  return {};
}

}  // namespace quillon::cli
