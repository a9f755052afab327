#include "in_process_servers.h"

#include <dlfcn.h>

#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "platform/com/runtime.h"
#include "platform/win32/registry.h"
#include "win32/path_translation.h"

namespace quillon::platform {
namespace {

using GetClassObject = HRESULT (*)(REFCLSID, REFIID, void**);
using CanUnloadNow = HRESULT (*)();

struct Servers {
  std::mutex mutex;
  std::map<std::string, void*> loaded;  // by path
};

// Lives as long as the process: a server's own end may come back here.
Servers& servers() {
  static auto* const theServers = new Servers;
  return *theServers;
}

// The default value of a key below HKEY_CLASSES_ROOT; empty when there is none.
std::u16string textOfClassesKey(const std::u16string& path) {
  HKEY key = nullptr;
  if (RegOpenKeyExW(HKEY_CLASSES_ROOT, path.c_str(), 0, KEY_QUERY_VALUE, &key) != 0) return {};
  DWORD type = 0;
  DWORD lengthBytes = 0;
  std::u16string text;
  if (RegQueryValueExW(key, nullptr, nullptr, &type, nullptr, &lengthBytes) == 0 &&
      type == REG_SZ) {
    text.resize((lengthBytes + 1) / sizeof(char16_t));
    if (RegQueryValueExW(key, nullptr, nullptr, nullptr, reinterpret_cast<BYTE*>(text.data()),
                         &lengthBytes) != 0) {
      text.clear();
    }
  }
  RegCloseKey(key);
  return text.c_str();  // up to the terminator
}

std::u16string libraryOf(REFCLSID clsid) {
  char16_t text[39];
  StringFromGUID2(clsid, text, 39);
  return textOfClassesKey(u"CLSID\\" + std::u16string(text) + u"\\InprocServer32");
}

// Null when the library cannot be loaded. Its names stay its own: it may carry a copy of this
// layer.
void* load(const std::string& path) {
  const std::lock_guard lock(servers().mutex);
  auto& loaded = servers().loaded;
  if (const auto found = loaded.find(path); found != loaded.end()) return found->second;
  void* const library = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library != nullptr) loaded.emplace(path, library);
  return library;
}

}  // namespace

HRESULT classObjectOfServer(REFCLSID clsid, REFIID riid, void** object) {
  const std::u16string path = libraryOf(clsid);
  if (path.empty()) return REGDB_E_CLASSNOTREG;
  void* const library = load(translatePath(path.c_str()).text);
  if (library == nullptr) return HRESULT_FROM_WIN32(ERROR_MOD_NOT_FOUND);
  const auto get = reinterpret_cast<GetClassObject>(::dlsym(library, "DllGetClassObject"));
  return get == nullptr ? CO_E_ERRORINDLL : get(clsid, riid, object);
}

}  // namespace quillon::platform

using namespace quillon::platform;

void CoFreeUnusedLibraries() {
  const std::lock_guard lock(servers().mutex);
  std::erase_if(servers().loaded, [](const auto& entry) {
    const auto ask = reinterpret_cast<CanUnloadNow>(::dlsym(entry.second, "DllCanUnloadNow"));
    return ask != nullptr && ask() == S_OK && ::dlclose(entry.second) == 0;
  });
}

HRESULT CLSIDFromProgID(LPCOLESTR progId, CLSID* clsid) {
  if (progId == nullptr || clsid == nullptr) return E_INVALIDARG;
  *clsid = CLSID_NULL;
  std::u16string text = textOfClassesKey(std::u16string(progId) + u"\\CLSID");
  if (text.empty()) {
    const std::u16string current = textOfClassesKey(std::u16string(progId) + u"\\CurVer");
    if (!current.empty()) text = textOfClassesKey(current + u"\\CLSID");
  }
  return text.empty() ? CO_E_CLASSSTRING : CLSIDFromString(text.c_str(), clsid);
}
