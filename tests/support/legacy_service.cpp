#include "support/legacy_service.h"

#include <memory>

#include "platform/com/com_object.h"
#include "platform/com/refusing.h"
#include "platform/refusing_disc_interfaces.h"
#ifdef _WIN32
#include "support/legacy_service_desktop.h"
#endif

namespace quillon::test {

namespace {

// Counts itself among the living.
template <typename Interface, const IID&... kIds>
class Counted : public ComObject<Interface, kIds...> {
 public:
  explicit Counted(LegacyService& service) : service_(service) { ++service_.liveObjects; }

 protected:
  ~Counted() override { --service_.liveObjects; }
  LegacyService& service_;
};

std::string contentOf(IStorage& storage, const OLECHAR* name) {
  ComPtr<IStream> stream;
  if (FAILED(
          storage.OpenStream(name, nullptr, STGM_READ | STGM_SHARE_EXCLUSIVE, 0, stream.Put()))) {
    return "(cannot be opened)";
  }
  std::string content;
  char block[7];  // no multiple of anything
  ULONG got = 0;
  while (SUCCEEDED(stream->Read(block, sizeof block, &got)) && got > 0) content.append(block, got);
  return content;
}

void readTree(IStorage& storage, const std::string& below,
              std::map<std::string, std::string>& out) {
  ComPtr<IEnumSTATSTG> elements;
  if (FAILED(storage.EnumElements(0, nullptr, 0, elements.Put()))) return;
  STATSTG stat{};
  while (elements->Next(1, &stat, nullptr) == S_OK) {
    const std::unique_ptr<OLECHAR, decltype(&CoTaskMemFree)> name(stat.pwcsName, CoTaskMemFree);
    const std::string path = below + Plain(stat.pwcsName);
    if (stat.type == STGTY_STREAM) {
      out[path] = contentOf(storage, stat.pwcsName);
    } else {
      ComPtr<IStorage> inner;
      if (SUCCEEDED(storage.OpenStorage(stat.pwcsName, nullptr, STGM_READ | STGM_SHARE_EXCLUSIVE,
                                        nullptr, 0, inner.Put()))) {
        readTree(*inner, path + "/", out);
      }
    }
  }
}

class Properties final : public Counted<Refusing<IPropertyStorage>, IID_IPropertyStorage> {
 public:
  using Counted::Counted;

  HRESULT STDMETHODCALLTYPE WriteMultiple(ULONG count, const PROPSPEC* specs,
                                          const PROPVARIANT* values, PROPID nameFirst) override {
    if (const HRESULT hr = service_.call("WriteMultiple"); FAILED(hr)) return hr;
    if (count != 1 || nameFirst < 2 || specs->ulKind != PRSPEC_LPWSTR ||
        TextView(specs->lpwstr) != OLESTR("VolumeName") || values->vt != VT_BSTR) {
      return E_INVALIDARG;
    }
    name_ = values->bstrVal;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Commit(DWORD) override { return service_.call("Commit"); }
  [[nodiscard]] const Text& name() const { return name_; }

 private:
  Text name_;
};

class Joliet final : public Counted<Refusing<IJolietDiscMaster>, IID_IJolietDiscMaster> {
 public:
  using Counted::Counted;

  HRESULT STDMETHODCALLTYPE AddData(IStorage* storage, LONG fileOverwrite) override {
    if (const HRESULT hr = service_.call("AddData"); FAILED(hr)) return hr;
    if (fileOverwrite == 0) return E_INVALIDARG;
    readTree(*storage, "", service_.files);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetJolietProperties(IPropertyStorage** properties) override {
    if (const HRESULT hr = service_.call("GetJolietProperties"); FAILED(hr)) return hr;
    *properties = new Properties(service_);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE SetJolietProperties(IPropertyStorage* properties) override {
    if (const HRESULT hr = service_.call("SetJolietProperties"); FAILED(hr)) return hr;
    service_.volumeName = static_cast<Properties*>(properties)->name();
    return S_OK;
  }
};

class Recorder final : public Counted<Refusing<IDiscRecorder>, IID_IDiscRecorder> {
 public:
  using Counted::Counted;

  HRESULT STDMETHODCALLTYPE GetRecorderType(LONG* type) override {
    *type = service_.recorderType;
    return service_.call("GetRecorderType");
  }
  HRESULT STDMETHODCALLTYPE GetRecorderState(ULONG* state) override {
    *state = service_.recorderState;
    return service_.call("GetRecorderState");
  }
  HRESULT STDMETHODCALLTYPE OpenExclusive() override {
    if (const HRESULT hr = service_.call("OpenExclusive"); FAILED(hr)) return hr;
    service_.isRecorderOpen = true;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE QueryMediaType(LONG* type, LONG* flags) override {
    if (!service_.isRecorderOpen) return HRESULT(0x8004020C);
    *type = service_.mediumType;
    *flags = service_.mediumFlags;
    return service_.call("QueryMediaType");
  }
  HRESULT STDMETHODCALLTYPE Erase(BYTE fullErase) override {
    if (const HRESULT hr = service_.call("Erase"); FAILED(hr)) return hr;
    service_.erase = fullErase != 0 ? "full" : "quick";
    service_.mediumFlags |= MEDIA_BLANK;
    return S_OK;
  }
  // The recorder is closed even when it answers with a failure.
  HRESULT STDMETHODCALLTYPE Close() override {
    if (!service_.isRecorderOpen) return HRESULT(0x8004020C);
    service_.isRecorderOpen = false;
    return service_.call("CloseRecorder");
  }
};

class Recorders final : public Counted<Refusing<IEnumDiscRecorders>, IID_IEnumDiscRecorders> {
 public:
  using Counted::Counted;

  HRESULT STDMETHODCALLTYPE Next(ULONG, IDiscRecorder** recorder, ULONG* fetched) override {
    *fetched = 0;
    if (const HRESULT hr = service_.call("Next"); FAILED(hr)) return hr;
    if (given_ == service_.recorders) return S_FALSE;
    ++given_;
    *recorder = new Recorder(service_);
    *fetched = 1;
    return S_OK;
  }

 private:
  int given_ = 0;
};

class Master final : public Counted<Refusing<IDiscMaster>, IID_IDiscMaster> {
 public:
  using Counted::Counted;

  HRESULT STDMETHODCALLTYPE Open() override {
    if (const HRESULT hr = service_.call("Open"); FAILED(hr)) return hr;
    service_.isMasterOpen = true;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE EnumDiscRecorders(IEnumDiscRecorders** recorders) override {
    if (const HRESULT hr = service_.call("EnumDiscRecorders"); FAILED(hr)) return hr;
    *recorders = new Recorders(service_);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE SetActiveDiscRecorder(IDiscRecorder*) override {
    return service_.call("SetActiveDiscRecorder");
  }
  HRESULT STDMETHODCALLTYPE SetActiveDiscMasterFormat(REFIID riid, void** format) override {
    if (const HRESULT hr = service_.call("SetActiveDiscMasterFormat"); FAILED(hr)) return hr;
    if (!IsEqualIID(riid, IID_IJolietDiscMaster)) return E_NOINTERFACE;
    *format = static_cast<IJolietDiscMaster*>(new Joliet(service_));
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE RecordDisc(BYTE simulate, BYTE eject) override {
    if (const HRESULT hr = service_.call("RecordDisc"); FAILED(hr)) return hr;
    service_.record = simulate != 0 ? "simulate" : "write";
    if (eject != 0) service_.record += "+eject";
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Close() override {
    service_.isMasterOpen = false;
    return service_.call("CloseMaster");
  }
};

class Burner final : public Counted<Refusing<ICDBurn>, IID_ICDBurn> {
 public:
  using Counted::Counted;

  HRESULT STDMETHODCALLTYPE HasRecordableDrive(BOOL* has) override {
    *has = service_.hasRecordableDrive ? TRUE : FALSE;
    return service_.call("HasRecordableDrive");
  }
};

template <typename Class>
HRESULT make(LegacyService& service, REFIID riid, void** object) {
  ComPtr<Class> made;
  made.Attach(new Class(service));
  return made->QueryInterface(riid, object);
}

}  // namespace

HRESULT LegacyService::call(const std::string& name) {
  calls.push_back(name);
  if (name != failingCall) return name == alsoFailing ? E_FAIL : S_OK;
  if (throws) throw _com_error(failure);
  return failure;
}

RegisteredLegacyService::RegisteredLegacyService(LegacyService& service, bool hasMaster,
                                                 bool hasBurner) {
#ifdef _WIN32
  useDesktopWithStorages();
#endif
  cookies_.push_back(
      registerClass(CLSID_MSDiscMasterObj, [&service, hasMaster](REFIID riid, void** object) {
        if (!hasMaster) return REGDB_E_CLASSNOTREG;
        const bool isProbe = ++service.mastersCreated == 1;
        if (!isProbe && service.call("Create") != S_OK) return REGDB_E_CLASSNOTREG;
        return make<Master>(service, riid, object);
      }));
  cookies_.push_back(registerClass(CLSID_CDBurn, [&service, hasBurner](REFIID riid, void** object) {
    return hasBurner ? make<Burner>(service, riid, object) : REGDB_E_CLASSNOTREG;
  }));
}

RegisteredLegacyService::~RegisteredLegacyService() {
  for (const DWORD cookie : cookies_) CoRevokeClassObject(cookie);
}

}  // namespace quillon::test
