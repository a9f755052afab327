#include "legacy_session.h"

#include "image/image_stream.h"
#include "image/volume_name.h"
#include "recorders/progress.h"

namespace quillon::platform {
namespace {

// What has changed since it was added would be noticed in the middle of the disc, and cost it.
bool isAsAdded(const ImageNode& directory) {
  for (const auto& [name, child] : directory.children) {
    if (child->isDirectory ? !isAsAdded(*child) : !isStreamAsAdded(child->source, child->size)) {
      return false;
    }
  }
  return true;
}

DiscResult burnImage(LegacyRecorder& target, const ImageLayout& layout, IStream& image,
                     bool isTestRun) {
  MediaFacts facts;
  DiscResult result = target.media(facts);
  if (result.failed()) return result;
  if (facts.present && !isCd(facts)) return IMAPI_E_MEDIUM_INVALIDTYPE;
  WriteRequest request;
  request.image = &image;
  request.sectors = layout.sectors();
  request.closeDisc = true;  // the service adds no further session
  request.isTestRun = isTestRun;
  request.progress = discProgressCallback();
  return target.recorder().write(request);
}

}  // namespace

void LegacySession::clearContent() {
  content = std::make_shared<ImageNode>();
  content->isDirectory = true;
  content->created = content->accessed = content->modified = unixSecondsOf(imageTimeNow());
}

void LegacySession::close() {
  isOpen = hasFormat = false;
  content.reset();
  activeRecorder.Reset();
  stash = Descriptor();
}

HRESULT LegacySession::layOut(const ImageNode& root,
                              std::shared_ptr<const ImageLayout>& layout) const {
  ImageSettings settings;
  settings.fileSystems = FsiFileSystemISO9660 | FsiFileSystemJoliet;
  settings.volumeName = volumeName;
  return ImageLayout::make(root, settings, layout);
}

std::uint32_t roomOf(const DriveIdentity& drive, const MediaFacts& media) {
  if ((legacyMediumOf(drive, media).flags & MEDIA_WRITABLE) == 0) return 0;
  return media.isErasable ? media.totalSectors : media.freeSectors;
}

DiscResult recordContent(LegacySession& session, bool isTestRun, bool ejects) {
  LegacyRecorder& target = *session.recorder();
  std::shared_ptr<const ImageLayout> layout;
  if (const HRESULT hr = session.layOut(*session.content, layout); FAILED(hr)) return hr;
  if (!isAsAdded(*session.content)) return IMAPI_E_FILEACCESS;
  ComPtr<IStream> image;
  image.Attach(new ImageStream(layout));
  RecorderHold hold(target.recorder());
  DiscResult result = hold.acquire(kOwnClientName);
  if (result.failed()) return result;
  target.setBurning(true);
  result = burnImage(target, *layout, *image, isTestRun);
  target.setBurning(false);
  // A tray that stays shut does not make a bad disc of a good one.
  if (!result.failed() && ejects) static_cast<void>(target.recorder().eject());
  return result;
}

}  // namespace quillon::platform
