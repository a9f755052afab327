// The disc master, the recorders and the formats.
#include "support/disc_service_objects.h"

namespace quillon::test {

SAFEARRAY* numberArray(const std::vector<LONG>& numbers, VARTYPE elementType, VARTYPE arrayType) {
  SAFEARRAY* const array = SafeArrayCreateVector(arrayType, 0, static_cast<ULONG>(numbers.size()));
  for (LONG i = 0; i < static_cast<LONG>(numbers.size()); ++i) {
    VARIANT element{};
    element.vt = elementType;
    element.lVal = numbers[static_cast<std::size_t>(i)];
    if (arrayType == VT_VARIANT) {
      SafeArrayPutElement(array, &i, &element);
    } else {
      SafeArrayPutElement(array, &i, &element.lVal);
    }
  }
  return array;
}

SAFEARRAY* textArray(const std::vector<Text>& texts) {
  SAFEARRAY* const array = SafeArrayCreateVector(VT_VARIANT, 0, static_cast<ULONG>(texts.size()));
  for (LONG i = 0; i < static_cast<LONG>(texts.size()); ++i) {
    VARIANT element{};
    element.vt = VT_BSTR;
    putText(texts[static_cast<std::size_t>(i)], &element.bstrVal);
    SafeArrayPutElement(array, &i, &element);
    VariantClear(&element);
  }
  return array;
}

namespace {

class Drives final : public Booked<ComObject<Refusing<IEnumVARIANT>, IID_IEnumVARIANT>> {
 public:
  explicit Drives(FakeDiscService& service) : Booked(service, "IEnumVARIANT") {}

  HRESULT STDMETHODCALLTYPE Next(ULONG, VARIANT* item, ULONG* fetched) override {
    return Run("Next", [&] {
      *fetched = next_ < service_.drives.size() ? 1 : 0;
      if (*fetched == 0) return S_FALSE;
      item->vt = service_.idType;
      const Text& id = service_.drives[next_++].uniqueId;
      return item->vt == VT_BSTR ? putText(id, &item->bstrVal) : S_OK;
    });
  }
  HRESULT STDMETHODCALLTYPE Reset() override {
    return Run("Reset", [&] { return next_ = 0, S_OK; });
  }

 private:
  std::size_t next_ = 0;
};

class Master final : public Booked<DispatchObject<Refusing<IDiscMaster2>, IID_IDiscMaster2>> {
 public:
  explicit Master(FakeDiscService& service) : Booked(service, "IDiscMaster2") {}

  HRESULT STDMETHODCALLTYPE get__NewEnum(IEnumVARIANT** out) override {
    return Run("get__NewEnum", [&] { return put(out, new Drives(service_)); });
  }
  HRESULT STDMETHODCALLTYPE get_IsSupportedEnvironment(VARIANT_BOOL* out) override {
    return Run("get_IsSupportedEnvironment",
               [&] { return putFlag(out, service_.isSupportedEnvironment); });
  }
};

class Recorder final : public Booked<DispatchObject<Refusing<IDiscRecorder2>, IID_IDiscRecorder2>> {
 public:
  explicit Recorder(FakeDiscService& service) : Booked(service, "IDiscRecorder2") {}

  [[nodiscard]] FakeDrive* Drive() const { return drive_; }

  HRESULT STDMETHODCALLTYPE EjectMedia() override {
    return OnDrive("EjectMedia", [](FakeDrive& drive) { return drive.isEjected = true, S_OK; });
  }
  HRESULT STDMETHODCALLTYPE AcquireExclusiveAccess(VARIANT_BOOL, BSTR client) override {
    return OnDrive("AcquireExclusiveAccess", [&](FakeDrive& drive) {
      if (!drive.lockedBy.empty()) return E_IMAPI_RECORDER_LOCKED;
      drive.lockedBy = client;
      return ++drive.locks, S_OK;
    });
  }
  HRESULT STDMETHODCALLTYPE ReleaseExclusiveAccess() override {
    // Even a call that reports a failure has unlocked the drive: what is asked is whether it is
    // made.
    if (drive_ != nullptr) drive_->lockedBy.clear();
    return OnDrive("ReleaseExclusiveAccess", [](FakeDrive&) { return S_OK; });
  }
  HRESULT STDMETHODCALLTYPE InitializeDiscRecorder(BSTR id) override {
    return Run("InitializeDiscRecorder", [&] {
      drive_ = nullptr;
      for (FakeDrive& drive : service_.drives) {
        if (drive.uniqueId == id) drive_ = &drive;
      }
      return drive_ == nullptr ? E_INVALIDARG : S_OK;
    });
  }
  HRESULT STDMETHODCALLTYPE get_ActiveDiscRecorder(BSTR* out) override {
    return OnDrive("get_ActiveDiscRecorder", [&](FakeDrive& drive) {
      return putText(drive.activeId.value_or(drive.uniqueId), out);
    });
  }
  HRESULT STDMETHODCALLTYPE get_VendorId(BSTR* out) override {
    return OnDrive("get_VendorId", [&](FakeDrive& drive) { return putText(drive.vendor, out); });
  }
  HRESULT STDMETHODCALLTYPE get_ProductId(BSTR* out) override {
    return OnDrive("get_ProductId", [&](FakeDrive& drive) { return putText(drive.product, out); });
  }
  HRESULT STDMETHODCALLTYPE get_ProductRevision(BSTR* out) override {
    return OnDrive("get_ProductRevision",
                   [&](FakeDrive& drive) { return putText(drive.revision, out); });
  }
  HRESULT STDMETHODCALLTYPE get_VolumeName(BSTR* out) override {
    return OnDrive("get_VolumeName",
                   [&](FakeDrive& drive) { return putText(drive.volumeName, out); });
  }
  HRESULT STDMETHODCALLTYPE get_VolumePathNames(SAFEARRAY** out) override {
    return OnDrive("get_VolumePathNames",
                   [&](FakeDrive& drive) { return put(out, textArray(drive.volumePaths)); });
  }
  HRESULT STDMETHODCALLTYPE get_DeviceCanLoadMedia(VARIANT_BOOL* out) override {
    return OnDrive("get_DeviceCanLoadMedia", [&](FakeDrive&) { return putFlag(out, true); });
  }
  HRESULT STDMETHODCALLTYPE get_LegacyDeviceNumber(LONG* out) override {
    return OnDrive("get_LegacyDeviceNumber",
                   [&](FakeDrive& drive) { return put(out, drive.legacyNumber); });
  }
  HRESULT STDMETHODCALLTYPE get_SupportedFeaturePages(SAFEARRAY** out) override {
    return Numbers("get_SupportedFeaturePages", &FakeDrive::features, out);
  }
  HRESULT STDMETHODCALLTYPE get_CurrentFeaturePages(SAFEARRAY** out) override {
    return Numbers("get_CurrentFeaturePages", &FakeDrive::features, out);
  }
  HRESULT STDMETHODCALLTYPE get_SupportedProfiles(SAFEARRAY** out) override {
    return Numbers("get_SupportedProfiles", &FakeDrive::profiles, out);
  }
  HRESULT STDMETHODCALLTYPE get_CurrentProfiles(SAFEARRAY** out) override {
    return Numbers("get_CurrentProfiles", &FakeDrive::profiles, out);
  }
  HRESULT STDMETHODCALLTYPE get_SupportedModePages(SAFEARRAY** out) override {
    return Numbers("get_SupportedModePages", &FakeDrive::modePages, out);
  }

 private:
  template <typename Work>
  HRESULT OnDrive(const char* method, const Work& work) {
    return Run(method,
               [&] { return drive_ == nullptr ? E_IMAPI_RECORDER_REQUIRED : work(*drive_); });
  }
  HRESULT Numbers(const char* method, std::vector<LONG> FakeDrive::*numbers, SAFEARRAY** out) {
    return OnDrive(method, [&](FakeDrive& drive) {
      return put(out, numberArray(drive.*numbers, service_.numberType));
    });
  }

  FakeDrive* drive_ = nullptr;
};

// What both formats do. Most of it asks for the recorder that was set.
template <typename Interface, const IID& kId>
class Format : public Booked<DispatchObject<Refusing<Interface>, IID_IDiscFormat2, kId>> {
 public:
  using Booked<DispatchObject<Refusing<Interface>, IID_IDiscFormat2, kId>>::Booked;

  HRESULT STDMETHODCALLTYPE IsRecorderSupported(IDiscRecorder2* recorder,
                                                VARIANT_BOOL* out) override {
    return this->Run("IsRecorderSupported", [&] {
      const FakeDrive* const drive = driveOf(recorder);
      return drive == nullptr ? E_IMAPI_RECORDER_REQUIRED : putFlag(out, SupportsDrive(*drive));
    });
  }
  HRESULT STDMETHODCALLTYPE IsCurrentMediaSupported(IDiscRecorder2* recorder,
                                                    VARIANT_BOOL* out) override {
    return this->Run("IsCurrentMediaSupported", [&] {
      const FakeDrive* const drive = driveOf(recorder);
      if (drive == nullptr) return E_IMAPI_RECORDER_REQUIRED;
      return putFlag(out, drive->disc.has_value() && SupportsDisc(*drive->disc));
    });
  }
  HRESULT STDMETHODCALLTYPE get_MediaPhysicallyBlank(VARIANT_BOOL* out) override {
    return OnDisc("get_MediaPhysicallyBlank",
                  [&](FakeDisc& disc) { return putFlag(out, disc.isPhysicallyBlank); });
  }
  HRESULT STDMETHODCALLTYPE get_MediaHeuristicallyBlank(VARIANT_BOOL* out) override {
    return OnDisc("get_MediaHeuristicallyBlank",
                  [&](FakeDisc& disc) { return putFlag(out, FindsBlank(disc)); });
  }
  HRESULT STDMETHODCALLTYPE get_SupportedMediaTypes(SAFEARRAY** out) override {
    return this->Run("get_SupportedMediaTypes", [&] {
      const std::vector<LONG>& types = this->service_.drives.front().mediaTypes;
      return put(out, numberArray(types, this->service_.numberType));
    });
  }
  HRESULT STDMETHODCALLTYPE put_Recorder(IDiscRecorder2* recorder) override {
    return this->Run("put_Recorder", [&] { return recorder_ = recorder, S_OK; });
  }
  HRESULT STDMETHODCALLTYPE put_ClientName(BSTR name) override {
    return this->Run("put_ClientName", [&] { return this->service_.formatClient = name, S_OK; });
  }

 protected:
  [[nodiscard]] virtual bool SupportsDrive(const FakeDrive& drive) const = 0;
  [[nodiscard]] virtual bool SupportsDisc(const FakeDisc& disc) const = 0;
  [[nodiscard]] virtual bool FindsBlank(const FakeDisc& disc) const {
    return disc.isHeuristicallyBlank;
  }

  template <typename Work>
  HRESULT OnDisc(const char* method, const Work& work) {
    return this->Run(method, [&] {
      FakeDrive* const drive = driveOf(recorder_.Get());
      if (drive == nullptr) return E_IMAPI_RECORDER_REQUIRED;
      return drive->disc.has_value() ? work(*drive->disc) : E_IMAPI_RECORDER_MEDIA_NO_MEDIA;
    });
  }
  // Only while the drive is locked.
  template <typename Work>
  HRESULT OnLockedDisc(const char* method, const Work& work) {
    return OnDisc(method, [&](FakeDisc& disc) {
      return driveOf(recorder_.Get())->lockedBy.empty() ? E_IMAPI_RECORDER_LOCKED : work(disc);
    });
  }

 private:
  ComPtr<IDiscRecorder2> recorder_;
};

class DataFormat final : public Format<IDiscFormat2Data, IID_IDiscFormat2Data> {
 public:
  explicit DataFormat(FakeDiscService& service) : Format(service, "IDiscFormat2Data") {}

  HRESULT STDMETHODCALLTYPE get_CurrentMediaStatus(IMAPI_FORMAT2_DATA_MEDIA_STATE* out) override {
    return OnDisc("get_CurrentMediaStatus", [&](FakeDisc& disc) { return put(out, disc.state); });
  }
  HRESULT STDMETHODCALLTYPE get_WriteProtectStatus(IMAPI_MEDIA_WRITE_PROTECT_STATE* out) override {
    return OnDisc("get_WriteProtectStatus",
                  [&](FakeDisc& disc) { return put(out, disc.writeProtection); });
  }
  HRESULT STDMETHODCALLTYPE get_TotalSectorsOnMedia(LONG* out) override {
    return OnDisc("get_TotalSectorsOnMedia",
                  [&](FakeDisc& disc) { return put(out, disc.totalSectors); });
  }
  HRESULT STDMETHODCALLTYPE get_FreeSectorsOnMedia(LONG* out) override {
    return OnDisc("get_FreeSectorsOnMedia",
                  [&](FakeDisc& disc) { return put(out, disc.freeSectors); });
  }
  HRESULT STDMETHODCALLTYPE get_CurrentPhysicalMediaType(IMAPI_MEDIA_PHYSICAL_TYPE* out) override {
    return OnDisc("get_CurrentPhysicalMediaType",
                  [&](FakeDisc& disc) { return put(out, disc.type); });
  }
  HRESULT STDMETHODCALLTYPE get_RequestedWriteSpeed(LONG* out) override {
    return OnDisc("get_RequestedWriteSpeed",
                  [&](FakeDisc& disc) { return put(out, disc.requestedSpeed); });
  }
  HRESULT STDMETHODCALLTYPE get_CurrentWriteSpeed(LONG* out) override {
    return OnDisc("get_CurrentWriteSpeed",
                  [&](FakeDisc& disc) { return put(out, disc.currentSpeed); });
  }
  HRESULT STDMETHODCALLTYPE get_SupportedWriteSpeeds(SAFEARRAY** out) override {
    return OnDisc("get_SupportedWriteSpeeds", [&](FakeDisc& disc) {
      return put(out, numberArray(disc.speeds, service_.speedType, service_.speedArrayType));
    });
  }
  HRESULT STDMETHODCALLTYPE SetWriteSpeed(LONG speed, VARIANT_BOOL) override {
    return OnDisc("SetWriteSpeed", [&](FakeDisc&) { return service_.askedSpeed = speed, S_OK; });
  }
  HRESULT STDMETHODCALLTYPE Write(IStream* data) override {
    return OnLockedDisc("Write", [&](FakeDisc& disc) {
      STATSTG stat{};
      const HRESULT hr = data->Stat(&stat, STATFLAG_NONAME);
      if (FAILED(hr)) return hr;
      disc.burnedBytes = stat.cbSize.QuadPart;
      disc.freeSectors = 0;
      disc.isPhysicallyBlank = disc.isHeuristicallyBlank = false;
      return S_OK;
    });
  }

 protected:
  [[nodiscard]] bool SupportsDrive(const FakeDrive& drive) const override {
    return drive.isRecorder;
  }
  [[nodiscard]] bool SupportsDisc(const FakeDisc& disc) const override { return disc.isSupported; }
};

class EraseFormat final : public Format<IDiscFormat2Erase, IID_IDiscFormat2Erase> {
 public:
  explicit EraseFormat(FakeDiscService& service) : Format(service, "IDiscFormat2Erase") {}

  HRESULT STDMETHODCALLTYPE put_FullErase(VARIANT_BOOL full) override {
    return Run("put_FullErase", [&] { return isFull_ = full == VARIANT_TRUE, S_OK; });
  }
  HRESULT STDMETHODCALLTYPE EraseMedia() override {
    return OnLockedDisc("EraseMedia", [&](FakeDisc& disc) {
      disc.erase = isFull_ ? "full" : "quick";
      disc.freeSectors = disc.totalSectors;
      disc.isPhysicallyBlank = disc.isHeuristicallyBlank = true;
      return S_OK;
    });
  }

 protected:
  [[nodiscard]] bool SupportsDrive(const FakeDrive& drive) const override { return drive.canErase; }
  [[nodiscard]] bool SupportsDisc(const FakeDisc& disc) const override { return disc.isErasable; }
  [[nodiscard]] bool FindsBlank(const FakeDisc& disc) const override {
    return disc.isHeuristicallyBlank || disc.isBlankToEraser;
  }

 private:
  bool isFull_ = false;
};

}  // namespace

FakeDrive* driveOf(IDiscRecorder2* recorder) {
  return recorder == nullptr ? nullptr : static_cast<Recorder*>(recorder)->Drive();
}

IDiscMaster2* makeDiscMaster(FakeDiscService& service) { return new Master(service); }
IDiscRecorder2* makeDiscRecorder(FakeDiscService& service) { return new Recorder(service); }
IDiscFormat2Data* makeDataFormat(FakeDiscService& service) { return new DataFormat(service); }
IDiscFormat2Erase* makeEraseFormat(FakeDiscService& service) { return new EraseFormat(service); }

}  // namespace quillon::test
