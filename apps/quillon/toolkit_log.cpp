#include "toolkit_log.h"

#include <cstdio>

#include "dicom/log.h"
#include "source_walk.h"

namespace quillon::cli {

bool sendToolkitLog(const std::string& fileName) {
  DcLog* log = dcTheLog();
  if (log == nullptr) return fileName.empty();
  std::string absolute;
  if (!fileName.empty()) {
    absolute = absolutePath(fileName);
    std::FILE* file = std::fopen(absolute.c_str(), "a");
    if (file == nullptr) return false;
    std::fclose(file);
  }
  for (int level = 0; level < kDcLogLevels; ++level) {
    log->enable(static_cast<DcLogLevel>(level), !absolute.empty());
    log->setFile(static_cast<DcLogLevel>(level), absolute);
  }
  return true;
}

}  // namespace quillon::cli
