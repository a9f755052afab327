#include "fileset/toolkit_log.h"

#include "dicom/log.h"
#include "foundation/text.h"
#include "media_creation_key.h"
#include "path_join.h"
#include "platform/services.h"

namespace quillon {

void SendToolkitLogTo(const std::string& file) {
  DcLog* const log = dcTheLog();
  if (log == nullptr) return;
  for (int i = 0; i < kDcLogLevels; ++i) {
    const auto level = static_cast<DcLogLevel>(i);
    log->setFile(level, file);
    log->enable(level, !file.empty());
  }
}

void SendToolkitLogAsConfigured() {
  Text file;
  MediaCreationKey key;
  if (key.Open()) static_cast<void>(key.ReadText(kToolkitLogValue, file));
  // The working directory of later is that of the host, or of a copy under way.
  SendToolkitLogTo(file.empty() ? "" : NarrowText(AbsolutePath(file), FileSystemCodePage()));
}

}  // namespace quillon
