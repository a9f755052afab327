#include "legacy_session.h"

#include "image/image_stream.h"
#include "image/volume_name.h"
#include "recorders/progress.h"

namespace quillon::platform {
namespace {

void reportTo(const LegacySession& session, const DiscProgress& progress) {
  session.tell([&](IDiscMasterProgressEvents& listener) {
    if (progress.stage == DiscStage::Closing) {
      listener.NotifyClosingDisc(0);
    } else {
      listener.NotifyBlockProgress(static_cast<LONG>(progress.sectorsDone),
                                   static_cast<LONG>(progress.sectorsTotal));
    }
  });
}

// What has changed since it was added would be noticed in the middle of the disc, and cost it.
bool isAsAdded(const ImageNode& directory) {
  for (const auto& [name, child] : directory.children) {
    if (child->isDirectory ? !isAsAdded(*child) : !isStreamAsAdded(child->source, child->size)) {
      return false;
    }
  }
  return true;
}

DiscResult burnImage(LegacySession& session, LegacyRecorder& target, const ImageLayout& layout,
                     IStream& image, bool isTestRun) {
  MediaFacts facts;
  DiscResult result = target.media(facts);
  if (result.failed()) return result;
  if (facts.present && !isCd(facts)) return IMAPI_E_MEDIUM_INVALIDTYPE;
  std::atomic<bool> isCancelled = session.isCancelWanted();
  const DiscProgressCallback watcher = discProgressCallback();
  WriteRequest request;
  request.image = &image;
  request.sectors = layout.sectors();
  request.closeDisc = true;  // the service adds no further session
  request.isTestRun = isTestRun;
  request.cancel = &isCancelled;
  request.progress = [&](const DiscProgress& progress) {
    if (watcher) watcher(progress);
    reportTo(session, progress);
    if (session.isCancelWanted()) isCancelled = true;
  };
  session.tell([](IDiscMasterProgressEvents& listener) {
    listener.NotifyPreparingBurn(0);
    listener.NotifyTrackProgress(0, 1);
  });
  result = target.recorder().write(request);
  if (!result.failed()) {
    session.tell([](IDiscMasterProgressEvents& listener) { listener.NotifyTrackProgress(1, 1); });
  }
  return result;
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

bool LegacySession::isCancelWanted() const {
  bool isWanted = false;
  tell([&](IDiscMasterProgressEvents& listener) {
    BYTE cancel = 0;
    if (listener.QueryCancel(&cancel) == S_OK && cancel != 0) isWanted = true;
  });
  return isWanted;
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
  result = burnImage(session, target, *layout, *image, isTestRun);
  target.setBurning(false);
  // A tray that stays shut does not make a bad disc of a good one.
  if (!result.failed() && ejects) static_cast<void>(target.recorder().eject());
  const HRESULT status = legacyResult(result.code);
  session.tell([&](IDiscMasterProgressEvents& listener) { listener.NotifyBurnComplete(status); });
  return result;
}

}  // namespace quillon::platform
