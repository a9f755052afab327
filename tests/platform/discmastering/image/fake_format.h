// A data format that tells of a disc which the test describes, in the place of the layer's own.
#pragma once

#include "platform/com/com_object.h"
#include "platform/imapi2.h"

namespace quillon::test {

struct FakeDisc {
  HRESULT putRecorder = S_OK;
  HRESULT getFreeSectors = S_OK;
  HRESULT getType = S_OK;
  LONG freeSectors = 0;
  IDiscRecorder2* recorder = nullptr;  // what the format was given
};

class FakeFormat final : public DispatchObject<IDiscFormat2Data, IID_IDiscFormat2Data> {
 public:
  explicit FakeFormat(FakeDisc& disc) : disc_(disc) {}

  HRESULT STDMETHODCALLTYPE put_Recorder(IDiscRecorder2* value) override {
    disc_.recorder = value;
    return disc_.putRecorder;
  }
  HRESULT STDMETHODCALLTYPE get_FreeSectorsOnMedia(LONG* value) override {
    *value = disc_.freeSectors;
    return disc_.getFreeSectors;
  }
  HRESULT STDMETHODCALLTYPE
  get_CurrentPhysicalMediaType(IMAPI_MEDIA_PHYSICAL_TYPE* value) override {
    *value = IMAPI_MEDIA_TYPE_CDR;
    return disc_.getType;
  }

  // Nobody asks for the rest.
  HRESULT STDMETHODCALLTYPE IsRecorderSupported(IDiscRecorder2*, VARIANT_BOOL*) override {
    return no();
  }
  HRESULT STDMETHODCALLTYPE IsCurrentMediaSupported(IDiscRecorder2*, VARIANT_BOOL*) override {
    return no();
  }
  HRESULT STDMETHODCALLTYPE get_MediaPhysicallyBlank(VARIANT_BOOL*) override { return no(); }
  HRESULT STDMETHODCALLTYPE get_MediaHeuristicallyBlank(VARIANT_BOOL*) override { return no(); }
  HRESULT STDMETHODCALLTYPE get_SupportedMediaTypes(SAFEARRAY**) override { return no(); }
  HRESULT STDMETHODCALLTYPE get_Recorder(IDiscRecorder2**) override { return no(); }
  HRESULT STDMETHODCALLTYPE put_BufferUnderrunFreeDisabled(VARIANT_BOOL) override { return no(); }
  HRESULT STDMETHODCALLTYPE get_BufferUnderrunFreeDisabled(VARIANT_BOOL*) override { return no(); }
  HRESULT STDMETHODCALLTYPE put_PostgapAlreadyInImage(VARIANT_BOOL) override { return no(); }
  HRESULT STDMETHODCALLTYPE get_PostgapAlreadyInImage(VARIANT_BOOL*) override { return no(); }
  HRESULT STDMETHODCALLTYPE get_CurrentMediaStatus(IMAPI_FORMAT2_DATA_MEDIA_STATE*) override {
    return no();
  }
  HRESULT STDMETHODCALLTYPE get_WriteProtectStatus(IMAPI_MEDIA_WRITE_PROTECT_STATE*) override {
    return no();
  }
  HRESULT STDMETHODCALLTYPE get_TotalSectorsOnMedia(LONG*) override { return no(); }
  HRESULT STDMETHODCALLTYPE get_NextWritableAddress(LONG*) override { return no(); }
  HRESULT STDMETHODCALLTYPE get_StartAddressOfPreviousSession(LONG*) override { return no(); }
  HRESULT STDMETHODCALLTYPE get_LastWrittenAddressOfPreviousSession(LONG*) override { return no(); }
  HRESULT STDMETHODCALLTYPE put_ForceMediaToBeClosed(VARIANT_BOOL) override { return no(); }
  HRESULT STDMETHODCALLTYPE get_ForceMediaToBeClosed(VARIANT_BOOL*) override { return no(); }
  HRESULT STDMETHODCALLTYPE put_DisableConsumerDvdCompatibilityMode(VARIANT_BOOL) override {
    return no();
  }
  HRESULT STDMETHODCALLTYPE get_DisableConsumerDvdCompatibilityMode(VARIANT_BOOL*) override {
    return no();
  }
  HRESULT STDMETHODCALLTYPE put_ClientName(BSTR) override { return no(); }
  HRESULT STDMETHODCALLTYPE get_ClientName(BSTR*) override { return no(); }
  HRESULT STDMETHODCALLTYPE get_RequestedWriteSpeed(LONG*) override { return no(); }
  HRESULT STDMETHODCALLTYPE get_RequestedRotationTypeIsPureCAV(VARIANT_BOOL*) override {
    return no();
  }
  HRESULT STDMETHODCALLTYPE get_CurrentWriteSpeed(LONG*) override { return no(); }
  HRESULT STDMETHODCALLTYPE get_CurrentRotationTypeIsPureCAV(VARIANT_BOOL*) override {
    return no();
  }
  HRESULT STDMETHODCALLTYPE get_SupportedWriteSpeeds(SAFEARRAY**) override { return no(); }
  HRESULT STDMETHODCALLTYPE get_SupportedWriteSpeedDescriptors(SAFEARRAY**) override {
    return no();
  }
  HRESULT STDMETHODCALLTYPE put_ForceOverwrite(VARIANT_BOOL) override { return no(); }
  HRESULT STDMETHODCALLTYPE get_ForceOverwrite(VARIANT_BOOL*) override { return no(); }
  HRESULT STDMETHODCALLTYPE get_MultisessionInterfaces(SAFEARRAY**) override { return no(); }
  HRESULT STDMETHODCALLTYPE Write(IStream*) override { return no(); }
  HRESULT STDMETHODCALLTYPE CancelWrite() override { return no(); }
  HRESULT STDMETHODCALLTYPE SetWriteSpeed(LONG, VARIANT_BOOL) override { return no(); }

 private:
  static HRESULT no() { return E_NOTIMPL; }

  FakeDisc& disc_;
};

class FakeFormatFactory final : public ComObject<IClassFactory, IID_IClassFactory> {
 public:
  explicit FakeFormatFactory(FakeDisc& disc) : disc_(disc) {}
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID riid, void** object) override {
    ComPtr<IDiscFormat2Data> format;
    format.Attach(new FakeFormat(disc_));
    return format->QueryInterface(riid, object);
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

 private:
  FakeDisc& disc_;
};

}  // namespace quillon::test
