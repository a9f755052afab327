// The COM object around CQuillonMediaRW: identity, counting, aggregation, both ways of calling.
// Keeps the module loaded while it lives.
#pragma once

#include <atomic>

#include "server/com_server/quillon_media_rw.h"
#include "server/media_object/media_rw.h"

namespace quillon {

class MediaRWObject final : public IQuillonMediaRW {
 public:
  // With outer, the object becomes a part of it: all its interfaces answer for outer, but for the
  // inner IUnknown, which is what outer must ask for. *object carries the only reference.
  [[nodiscard]] static HRESULT Create(IUnknown* outer, REFIID riid, void** object);

  MediaRWObject(const MediaRWObject&) = delete;
  MediaRWObject& operator=(const MediaRWObject&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override {
    return identity_->QueryInterface(riid, object);
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return identity_->AddRef(); }
  ULONG STDMETHODCALLTYPE Release() override { return identity_->Release(); }

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID lcid, ITypeInfo** info) override;
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID riid, LPOLESTR* names, UINT count, LCID lcid,
                                          DISPID* ids) override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID riid, LCID lcid, WORD flags,
                                   DISPPARAMS* params, VARIANT* result, EXCEPINFO* exception,
                                   UINT* badArgument) override;

#define QUILLON_METHOD(method, parameters, arguments) \
  HRESULT STDMETHODCALLTYPE method parameters override { return media_.method arguments; }
#include "server/com_server/operations.inc"

 private:
  // The object's own identity, whoever it is part of.
  class Inner final : public IUnknown {
   public:
    explicit Inner(MediaRWObject& owner) : owner_(owner) {}
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override;

   private:
    MediaRWObject& owner_;
    std::atomic<ULONG> references_ = 1;
  };

  explicit MediaRWObject(IUnknown* outer);
  ~MediaRWObject();

  Inner inner_;
  IUnknown* identity_;  // not counted: outer outlives its parts
  CQuillonMediaRW media_;
};

}  // namespace quillon
