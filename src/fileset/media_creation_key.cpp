#include "media_creation_key.h"

namespace quillon {

bool MediaCreationKey::Open() {
  status_ = RegOpenKeyExW(HKEY_LOCAL_MACHINE, kMediaCreationKeyPath, 0, KEY_QUERY_VALUE, &key_);
  return status_ == ERROR_SUCCESS;
}

bool MediaCreationKey::Close() {
  HKEY key = key_;
  key_ = nullptr;
  status_ = key == nullptr ? ERROR_SUCCESS : RegCloseKey(key);
  return status_ == ERROR_SUCCESS;
}

LONG MediaCreationKey::Query(const OLECHAR* name, DWORD& type, void* value, DWORD& lengthBytes) {
  status_ = RegQueryValueExW(key_, name, nullptr, &type, static_cast<BYTE*>(value), &lengthBytes);
  return status_;
}

bool MediaCreationKey::ReadText(const OLECHAR* name, Text& out) {
  DWORD type = 0;
  DWORD lengthBytes = 0;
  if (Query(name, type, nullptr, lengthBytes) != ERROR_SUCCESS || type != REG_SZ) return false;
  Text text(lengthBytes / sizeof(OLECHAR) + 1, OLECHAR{0});
  lengthBytes = static_cast<DWORD>(text.size() * sizeof(OLECHAR));
  if (Query(name, type, text.data(), lengthBytes) != ERROR_SUCCESS) return false;
  // The stored length may or may not count a terminator.
  out.assign(text, 0, text.find(OLECHAR{0}));
  return true;
}

bool MediaCreationKey::ReadNumber(const OLECHAR* name, DWORD& out) {
  DWORD type = 0;
  DWORD number = 0;
  DWORD lengthBytes = sizeof number;
  if (Query(name, type, &number, lengthBytes) != ERROR_SUCCESS || type != REG_DWORD ||
      lengthBytes != sizeof number) {
    return false;
  }
  out = number;
  return true;
}

}  // namespace quillon
