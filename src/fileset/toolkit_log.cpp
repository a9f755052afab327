#include "fileset/toolkit_log.h"

#include "dicom/log.h"
#include "foundation/text.h"
#include "media_creation_key.h"
#include "path_join.h"
#include "platform/services.h"

namespace quillon {

void SendToolkitLogAsConfigured() {
  DcLog* const log = dcTheLog();
  if (log == nullptr) return;
  Text file;
  MediaCreationKey key;
  if (key.Open()) static_cast<void>(key.ReadText(OLESTR("ToolkitLogFile"), file));
  // The working directory of later is that of the host, or of a copy under way.
  const std::string name = file.empty() ? "" : NarrowText(AbsolutePath(file), FileSystemCodePage());
  for (int i = 0; i < kDcLogLevels; ++i) {
    const auto level = static_cast<DcLogLevel>(i);
    log->setFile(level, name);
    log->enable(level, !name.empty());
  }
}

}  // namespace quillon
