// MSDiscMasterObj: one client at a time collects content and records it.
#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>

#include "classes.h"
#include "com/create_object.h"
#include "image/volume_name.h"
#include "legacy_enumerators.h"
#include "legacy_session.h"
#include "recorders/catalogue.h"
#include "recorders/disc_record.h"
#include "recorders/recorder_store.h"
#include "win32/environment.h"

namespace quillon::platform {
namespace {

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

class DiscMaster final : public ComObject<IDiscMaster, IID_IDiscMaster> {
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

  HRESULT STDMETHODCALLTYPE EnumDiscMasterFormats(IEnumDiscMasterFormats** enumerator) override {
    return answer([&]() -> DiscResult {
      if (enumerator == nullptr) return E_POINTER;
      const auto formats = std::make_shared<const FormatEnumerator::List>(1, IID_IJolietDiscMaster);
      *enumerator = new FormatEnumerator(formats, 0);
      return S_OK;
    });
  }

  HRESULT STDMETHODCALLTYPE GetActiveDiscMasterFormat(LPIID formatId) override {
    return answer([&]() -> DiscResult {
      if (formatId == nullptr) return E_POINTER;
      if (!session_->hasFormat) return IMAPI_E_NOACTIVEFORMAT;
      *formatId = IID_IJolietDiscMaster;
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

  HRESULT STDMETHODCALLTYPE GetActiveDiscRecorder(IDiscRecorder** recorder) override {
    return answer([&]() -> DiscResult {
      if (recorder == nullptr) return E_POINTER;
      *recorder = nullptr;
      if (!session_->activeRecorder) return IMAPI_E_NOACTIVERECORDER;
      *recorder = ComPtr<IDiscRecorder>(session_->activeRecorder).Detach();
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

  HRESULT STDMETHODCALLTYPE ClearFormatContent() override {
    return answer([&]() -> DiscResult {
      if (!session_->hasFormat) return IMAPI_E_NOACTIVEFORMAT;
      session_->clearContent();
      return S_OK;
    });
  }

  HRESULT STDMETHODCALLTYPE ProgressAdvise(IDiscMasterProgressEvents* events,
                                           UINT_PTR* cookie) override {
    return answer([&]() -> DiscResult {
      if (events == nullptr || cookie == nullptr) return E_POINTER;
      *cookie = ++session_->lastCookie;
      session_->listeners.emplace(*cookie, events);
      return S_OK;
    });
  }

  HRESULT STDMETHODCALLTYPE ProgressUnadvise(UINT_PTR cookie) override {
    return answer([&]() -> DiscResult {
      return session_->listeners.erase(cookie) == 1 ? S_OK : E_INVALIDARG;
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
