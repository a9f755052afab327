#include "own_resources.h"

#include "foundation/own_module.h"
#include "module.h"
#include "resource_ids.h"

namespace quillon {
namespace {

// RegisterTypeLib and LoadTypeLibEx are not told to change the path.
HRESULT LoadOwnTypeLibrary(Text& path, ComPtr<ITypeLib>& library) {
  path = CQuillonMediaRWModule::Path();
  return LoadTypeLibEx(path.c_str(), REGKIND_NONE, library.Put());
}

}  // namespace

std::string_view RegistrarScriptText(RegistrarScript script) {
  const int id = script == RegistrarScript::AppId ? QUILLON_APP_ID_SCRIPT : QUILLON_CLASS_SCRIPT;
  const HMODULE module = OwnModule();
  const HRSRC found = FindResourceW(module, MAKEINTRESOURCEW(id), OLESTR("REGISTRY"));
  if (found == nullptr) return {};
  const HGLOBAL loaded = LoadResource(module, found);
  const void* const text = loaded == nullptr ? nullptr : LockResource(loaded);
  if (text == nullptr) return {};
  return {static_cast<const char*>(text), SizeofResource(module, found)};
}

HRESULT RegisterOwnTypeLibrary() {
  Text path;
  ComPtr<ITypeLib> library;
  const HRESULT hr = LoadOwnTypeLibrary(path, library);
  return FAILED(hr) ? hr : RegisterTypeLib(library.Get(), path.data(), nullptr);
}

HRESULT UnregisterOwnTypeLibrary() {
  constexpr LCID kAmericanEnglish = 1033;
  // Systems differ in the code for a library that is not registered: asked for, it has no path.
  BSTR path = nullptr;
  if (FAILED(QueryPathOfRegTypeLib(LIBID_QuillonMediaRWLib, 1, 0, kAmericanEnglish, &path))) {
    return S_OK;
  }
  SysFreeString(path);
  return UnRegisterTypeLib(LIBID_QuillonMediaRWLib, 1, 0, kAmericanEnglish, SYS_WIN32);
}

UINT OwnTypeInfoCount() { return 1; }

HRESULT GetOwnTypeInfo(LCID, ITypeInfo** info) {
  try {
    Text path;
    ComPtr<ITypeLib> library;
    const HRESULT hr = LoadOwnTypeLibrary(path, library);
    return FAILED(hr) ? hr : library->GetTypeInfoOfGuid(IID_IQuillonMediaRW, info);
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

}  // namespace quillon
