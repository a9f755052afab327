// The media object with 8-bit text in the file-system code page, as a command-line program has it.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "server/media_object/media_rw.h"

namespace quillon::cli {

class MediaJob {
 public:
  // False when the object refused the path; errorText tells why.
  bool setRoot(std::string_view path);
  bool setObjectDirectory(std::string_view path);
  void setHierarchy(bool enabled);
  void setOtherContent(bool enabled);
  // Decides under which patient the files added from now on fall.
  void setPatientKey(std::string_view key);

  [[nodiscard]] std::string root();
  [[nodiscard]] std::string label();
  // The object's last sentence.
  [[nodiscard]] std::string errorText();

  bool addFile(std::string_view path);
  bool createFileSet();

  // False for a name that is too long.
  bool setVolume(std::string_view name);
  // The set goes to this directory instead of a disc. False when the object refused the path;
  // errorText tells why.
  bool setTarget(std::string_view path);
  void setRecording(bool simulate, bool fullErase, bool eject);
  // Leaves the file set in its place, whatever happens.
  bool write();

  // About the disc in the first recorder. Nothing when there is no answer: errorText tells why. It
  // also tells why a disc is not recordable.
  [[nodiscard]] std::optional<bool> holdsRewritableData();
  [[nodiscard]] bool isRecordable();

  // The header of a DICOM file through the stylesheet at a path or URL.
  bool loadHeader(std::string_view file, std::string_view stylesheet, std::string& text);

  // Removes the root directory and the temporary directory of earlier jobs.
  void wipe();

 private:
  // Initialises COM on the thread, as the host of an object does.
  struct ComScope {
    ComScope();
    ~ComScope();
    ComScope(const ComScope&) = delete;
    ComScope& operator=(const ComScope&) = delete;

    bool isInitialized;
  };

  ComScope com_;  // outlives the object
  CQuillonMediaRW object_;
};

// What the media object removes when it is wiped, beside the root.
std::string temporaryJobDirectory();

}  // namespace quillon::cli
