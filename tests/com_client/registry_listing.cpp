#include <array>

#include "server_module.h"

namespace quillon::client {
namespace {

constexpr LSTATUS kNoMore = 259;

void list(HKEY root, const std::string& path, std::string& out) {
  BSTR widePath = bstrOf(path);
  HKEY key = nullptr;
  const LSTATUS opened = RegOpenKeyExW(root, widePath, 0, KEY_READ, &key);
  SysFreeString(widePath);
  if (opened != 0) return;
  out += "[" + path + "]\n";
  for (const char* name : {"", "AppID", "ThreadingModel", "Version"}) {
    BSTR wideName = bstrOf(name);
    std::array<OLECHAR, 1024> text{};
    DWORD lengthBytes = sizeof text - sizeof(OLECHAR);
    if (RegQueryValueExW(key, wideName, nullptr, nullptr, reinterpret_cast<BYTE*>(text.data()),
                         &lengthBytes) == 0) {
      std::size_t units = 0;
      while (text[units] != 0) ++units;
      out += std::string(*name == 0 ? "@" : name) + "=" + utf8Of(text.data(), units) + "\n";
    }
    SysFreeString(wideName);
  }
  for (DWORD index = 0;; ++index) {
    std::array<OLECHAR, 256> name{};
    DWORD units = static_cast<DWORD>(name.size());
    if (RegEnumKeyExW(key, index, name.data(), &units, nullptr, nullptr, nullptr, nullptr) ==
        kNoMore) {
      break;
    }
    list(root, path + "\\" + utf8Of(name.data(), units), out);
  }
  RegCloseKey(key);
}

}  // namespace

std::string registryListing() {
  std::string out;
  for (const char* path :
       {"AppID\\{60A00BE0-73D4-4DDC-BBDA-AB0DF9FCD3A6}", "AppID\\QuillonMediaRW.DLL",
        "CLSID\\{CEBD10F1-26E1-4807-A72F-F5C5AC05BF61}", "QuillonMediaRW.QuillonMediaRW",
        "QuillonMediaRW.QuillonMediaRW.1", "TypeLib\\{CBD24DDB-39FB-4A5A-9EB9-4B6FD4A70DF1}",
        "Interface\\{801EDBE1-848C-4135-999E-5061EB1866F2}"}) {
    list(HKEY_CLASSES_ROOT, path, out);
  }
  return out;
}

}  // namespace quillon::client
