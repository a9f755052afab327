// MSDiscMasterObj: one client at a time collects content and records it.
#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>

#include "classes.h"
#include "com/create_object.h"
#include "com/list_enumerator.h"
#include "image/volume_name.h"
#include "legacy_session.h"
#include "recorders/catalogue.h"
#include "recorders/disc_record.h"
#include "recorders/recorder_store.h"
#include "win32/environment.h"

namespace quillon::platform {
namespace {

bool giveRecorder(const ComPtr<IDiscRecorder>& element, IDiscRecorder** target) {
  *target = ComPtr<IDiscRecorder>(element).Detach();
  return true;
}
using RecorderEnumerator = ListEnumerator<IEnumDiscRecorders, IID_IEnumDiscRecorders,
                                          ComPtr<IDiscRecorder>, IDiscRecorder*, giveRecorder>;

constexpr const char* kStashFile = "/legacy.lock";

// The lock goes with the descriptor, however its process ends.
DiscResult takeStash(Descriptor& stash) {
  const std::string store = recorderStoreDirectory();
  if (!makeDirectories(store)) return fileFailure(errno, "write", store);
  const std::string path = store + kStashFile;
  stash = Descriptor(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666));
  if (!stash.isOpen()) return fileFailure(errno, "write", path);
  if (::flock(stash.get(), LOCK_EX | LOCK_NB) == 0) return S_OK;
  stash = Descriptor();
  return IMAPI_E_STASHINUSE;
}

class DiscMaster final : public ComObject<Refusing<IDiscMaster>, IID_IDiscMaster> {
 public:
  DiscMaster() : session_(std::make_shared<LegacySession>()) {}

  HRESULT STDMETHODCALLTYPE Open() override {
    return legacyAnswer([&]() -> DiscResult {
      if (session_->isOpen) return IMAPI_E_ALREADYOPEN;
      DiscResult result = takeStash(session_->stash);
      if (result.failed()) return result;
      session_->clearContent();
      session_->volumeName = volumeNameOfToday();
      session_->isOpen = true;
      return S_OK;
    });
  }

  // Audio discs are not made here. A format starts with nothing in it.
  HRESULT STDMETHODCALLTYPE SetActiveDiscMasterFormat(REFIID riid, void** format) override {
    return answer([&]() -> DiscResult {
      if (format == nullptr) return E_POINTER;
      *format = nullptr;
      if (riid != IID_IJolietDiscMaster) return E_NOINTERFACE;
      const HRESULT hr = createJolietFormat(session_, format);
      if (FAILED(hr)) return hr;
      session_->clearContent();
      session_->hasFormat = true;
      return S_OK;
    });
  }

  HRESULT STDMETHODCALLTYPE EnumDiscRecorders(IEnumDiscRecorders** enumerator) override {
    return answer([&]() -> DiscResult {
      if (enumerator == nullptr) return E_POINTER;
      *enumerator = nullptr;
      RecorderList recorders;
      DiscResult result = listRecorders(recorders);
      if (result.failed()) return result;
      auto list = std::make_shared<RecorderEnumerator::List>();
      for (std::unique_ptr<Recorder>& recorder : recorders) {
        if (!writesCds(recorder->identity())) continue;
        list->emplace_back().Attach(new LegacyRecorder(std::move(recorder)));
      }
      *enumerator = new RecorderEnumerator(std::move(list), 0);
      return S_OK;
    });
  }

  HRESULT STDMETHODCALLTYPE SetActiveDiscRecorder(IDiscRecorder* recorder) override {
    return answer([&]() -> DiscResult {
      if (recorder == nullptr) return E_POINTER;
      if (LegacyRecorder::of(recorder) == nullptr) return E_INVALIDARG;
      session_->activeRecorder = recorder;
      return S_OK;
    });
  }

  HRESULT STDMETHODCALLTYPE RecordDisc(BYTE simulate, BYTE ejectAfterBurn) override {
    return answer([&]() -> DiscResult {
      if (!session_->hasFormat) return IMAPI_E_NOACTIVEFORMAT;
      LegacyRecorder* target = session_->recorder();
      if (target == nullptr) return IMAPI_E_NOACTIVERECORDER;
      if (session_->content->children.empty()) return IMAPI_E_INVALIDIMAGE;
      DiscResult result = target->recorder().enter("IDiscMaster::RecordDisc");
      if (result.code != S_OK) return result;
      return recordContent(*session_, simulate != 0, ejectAfterBurn != 0);
    });
  }

  HRESULT STDMETHODCALLTYPE Close() override {
    return answer([&]() -> DiscResult {
      session_->close();
      return S_OK;
    });
  }

 private:
  // A format object may outlive its master; it must not keep the service from others.
  ~DiscMaster() override { session_->close(); }

  template <typename Body>
  HRESULT answer(Body body) {
    return legacyAnswer(
        [&]() -> DiscResult { return session_->isOpen ? body() : IMAPI_E_NOTOPENED; });
  }

  std::shared_ptr<LegacySession> session_;
};

}  // namespace

HRESULT createLegacyDiscMaster(REFIID riid, void** object) {
  return offersLegacyDiscService() ? createObject<DiscMaster>(riid, object) : REGDB_E_CLASSNOTREG;
}

}  // namespace quillon::platform
