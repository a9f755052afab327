#include "support/legacy_service_desktop.h"

#include <filesystem>

#include "platform/com/com_object.h"
#include "platform/com/refusing.h"
#include "support/temp_dir.h"

namespace quillon::test {
namespace {

constexpr DWORD kMode = STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE;

HRESULT fill(IStorage& storage, const std::filesystem::path& directory) {
  HRESULT hr = S_OK;
  for (const auto& entry : std::filesystem::directory_iterator(directory)) {
    const std::wstring name = entry.path().filename().wstring();
    if (entry.is_directory()) {
      ComPtr<IStorage> inner;
      hr = storage.CreateStorage(name.c_str(), kMode, 0, 0, inner.Put());
      if (SUCCEEDED(hr)) hr = fill(*inner, entry.path());
    } else {
      ComPtr<IStream> stream;
      const auto bytes = readBytes(entry.path());
      hr = storage.CreateStream(name.c_str(), kMode, 0, 0, stream.Put());
      if (SUCCEEDED(hr)) {
        hr = stream->Write(bytes.data(), static_cast<ULONG>(bytes.size()), nullptr);
      }
    }
    if (FAILED(hr)) break;
  }
  return hr;
}

class Desktop final : public ComObject<Refusing<IShellFolder>, IID_IShellFolder> {
 public:
  explicit Desktop(ComPtr<IShellFolder> system) : system_(std::move(system)) {}

  HRESULT STDMETHODCALLTYPE ParseDisplayName(HWND owner, IBindCtx* context, LPWSTR name,
                                             ULONG* eaten, LPITEMIDLIST* items,
                                             ULONG* attributes) override {
    return system_->ParseDisplayName(owner, context, name, eaten, items, attributes);
  }
  HRESULT STDMETHODCALLTYPE BindToStorage(LPCITEMIDLIST items, IBindCtx* context, REFIID riid,
                                          void** object) override {
    if (SUCCEEDED(system_->BindToStorage(items, context, riid, object))) return S_OK;
    wchar_t path[MAX_PATH];
    if (SHGetPathFromIDListW(items, path) == FALSE) return E_INVALIDARG;
    ComPtr<IStorage> storage;
    HRESULT hr = StgCreateDocfile(nullptr, kMode | STGM_DELETEONRELEASE, 0, storage.Put());
    if (SUCCEEDED(hr)) hr = fill(*storage, path);
    return FAILED(hr) ? hr : storage->QueryInterface(riid, object);
  }

 private:
  ComPtr<IShellFolder> system_;
};

HRESULT WINAPI getDesktop(IShellFolder** folder) {
  const auto getSystems = reinterpret_cast<decltype(&SHGetDesktopFolder)>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"shell32"), "SHGetDesktopFolder")));
  ComPtr<IShellFolder> system;
  const HRESULT hr = getSystems(system.Put());
  if (SUCCEEDED(hr)) *folder = new Desktop(system);
  return hr;
}

}  // namespace
}  // namespace quillon::test

// What a call of SHGetDesktopFolder goes through; the linker finds it here before it asks shell32's
// import library.
extern "C" decltype(&SHGetDesktopFolder) importedGetDesktop asm("__imp__SHGetDesktopFolder@4");
decltype(&SHGetDesktopFolder) importedGetDesktop = &quillon::test::getDesktop;

namespace quillon::test {

void useDesktopWithStorages() { importedGetDesktop = &getDesktop; }

}  // namespace quillon::test
