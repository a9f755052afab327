// The one class factory of the module. It lives as long as the module does; references to it and
// the host's locks keep the module loaded.
#pragma once

#include "server/com_server/quillon_media_rw.h"

namespace quillon {

class MediaRWFactory final : public IClassFactory {
 public:
  static MediaRWFactory& Instance();

  MediaRWFactory(const MediaRWFactory&) = delete;
  MediaRWFactory& operator=(const MediaRWFactory&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override;
  ULONG STDMETHODCALLTYPE Release() override;
  // With outer, only IUnknown can be asked for: CLASS_E_NOAGGREGATION.
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID riid, void** object) override;
  HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override;

 private:
  MediaRWFactory() = default;
  ~MediaRWFactory() = default;
};

}  // namespace quillon
