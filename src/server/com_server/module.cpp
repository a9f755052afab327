#include "module.h"

#include <array>

#include "foundation/messages.h"
#include "foundation/own_module.h"
#include "own_resources.h"
#include "registrar.h"
#include "server/com_server/quillon_media_rw.h"

namespace quillon {
namespace {

Text TextOf(REFGUID guid) {
  std::array<OLECHAR, 39> text{};
  StringFromGUID2(guid, text.data(), static_cast<int>(text.size()));
  return text.data();
}

HRESULT RunScripts(ScriptUse use) {
  const bool registers = use != ScriptUse::Unregister;
  const std::array<Replacement, 4> replacements{{
      {OLESTR("MODULE"), CQuillonMediaRWModule::Path()},
      {OLESTR("APPID"), TextOf(APPID_QuillonMediaRW)},
      {OLESTR("CLSID"), TextOf(CLSID_QuillonMediaRW)},
      {OLESTR("LIBID"), TextOf(LIBID_QuillonMediaRWLib)},
  }};
  if (registers && replacements[0].value.empty()) return HRESULT_FROM_WIN32(ERROR_MOD_NOT_FOUND);
  HRESULT first = S_OK;
  for (const RegistrarScript script : {RegistrarScript::AppId, RegistrarScript::Class}) {
    const HRESULT hr = RunRegistrarScript(RegistrarScriptText(script), use, replacements);
    if (FAILED(hr) && registers) return hr;
    if (FAILED(hr) && SUCCEEDED(first)) first = hr;
  }
  return first;
}

// A host can find a module for the class.
bool IsRegistered() {
  const Text path =
      Text(OLESTR("CLSID\\")) + TextOf(CLSID_QuillonMediaRW) + OLESTR("\\InprocServer32");
  HKEY key = nullptr;
  if (RegOpenKeyExW(HKEY_CLASSES_ROOT, path.c_str(), 0, KEY_QUERY_VALUE, &key) != 0) return false;
  RegCloseKey(key);
  return true;
}

}  // namespace

bool CQuillonMediaRWModule::IsInitialised() const {
  std::array<OLECHAR, 32> name{};
  return LoadStringW(OwnModule(), kMsgProjectName, name.data(), static_cast<int>(name.size())) > 0;
}

Text CQuillonMediaRWModule::Path() {
  // Windows' paths have at most 32767 units.
  constexpr std::size_t kLongestPath = 0x8000;
  Text path(MAX_PATH, 0);
  for (;;) {
    const DWORD length =
        GetModuleFileNameW(OwnModule(), path.data(), static_cast<DWORD>(path.size()));
    if (length < path.size()) {
      path.resize(length);
      return path;
    }
    if (path.size() >= kLongestPath) return {};
    path.resize(path.size() * 2);
  }
}

HRESULT CQuillonMediaRWModule::RegisterServer() const {
  const bool wasRegistered = IsRegistered();
  HRESULT hr = RunScripts(wasRegistered ? ScriptUse::Renew : ScriptUse::Register);
  if (SUCCEEDED(hr)) hr = RegisterOwnTypeLibrary();
  // Half of a registration would make hosts fail later and elsewhere.
  if (FAILED(hr) && !wasRegistered) static_cast<void>(UnregisterServer());
  return hr;
}

HRESULT CQuillonMediaRWModule::UnregisterServer() const {
  const HRESULT scripts = RunScripts(ScriptUse::Unregister);
  const HRESULT library = UnregisterOwnTypeLibrary();
  return FAILED(scripts) ? scripts : library;
}

CQuillonMediaRWModule& Module() {
  static CQuillonMediaRWModule module;
  return module;
}

}  // namespace quillon
