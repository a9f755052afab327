// What a disc master and its format share between Open and Close.
#pragma once

#include <memory>
#include <string>

#include "image/image_layout.h"
#include "legacy_recorder.h"
#include "win32/whole_file.h"

namespace quillon::platform {

struct LegacySession {
  bool isOpen = false;
  Descriptor stash;  // locked: one client of all processes has the service
  bool hasFormat = false;
  std::shared_ptr<ImageNode> content;  // never null while open
  std::u16string volumeName;
  ComPtr<IDiscRecorder> activeRecorder;

  void clearContent();
  void close();
  [[nodiscard]] LegacyRecorder* recorder() const {
    return LegacyRecorder::of(activeRecorder.Get());
  }
  HRESULT layOut(const ImageNode& root, std::shared_ptr<const ImageLayout>& layout) const;
};

// How many sectors a recording on the disc may have; 0 for one that cannot be written.
std::uint32_t roomOf(const DriveIdentity& drive, const MediaFacts& media);

// IJolietDiscMaster over the session.
HRESULT createJolietFormat(std::shared_ptr<LegacySession> session, void** object);

// Records the session's content on its recorder.
DiscResult recordContent(LegacySession& session, bool isTestRun, bool ejects);

}  // namespace quillon::platform
