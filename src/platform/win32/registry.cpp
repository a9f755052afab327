// The registry calls, over the registry's file.
#include "platform/win32/registry.h"

#include <algorithm>
#include <array>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>

#include "platform/registry_file_status.h"
#include "platform/win32/errors.h"
#include "registry_store.h"

namespace quillon::platform {
namespace {

constexpr LSTATUS status(DWORD code) { return static_cast<LSTATUS>(code); }

struct OpenKey {
  std::u16string path;  // from the predefined key on
  REGSAM access = 0;
  bool isDeleted = false;  // for good: a key made anew under the name is another one
};

// One lock for all: the calls are rare, and each sees a whole tree.
struct Registry {
  std::mutex mutex;
  RegistryStore store;
  std::unordered_map<HKEY, std::unique_ptr<OpenKey>> openKeys;
};

Registry& registry() {
  static Registry theRegistry;
  return theRegistry;
}

struct PredefinedKey {
  HKEY handle;
  std::u16string_view name;
};

const std::array<PredefinedKey, 3>& predefinedKeys() {
  static const std::array<PredefinedKey, 3> keys{{
      {HKEY_CLASSES_ROOT, u"HKEY_CLASSES_ROOT"},
      {HKEY_CURRENT_USER, u"HKEY_CURRENT_USER"},
      {HKEY_LOCAL_MACHINE, u"HKEY_LOCAL_MACHINE"},
  }};
  return keys;
}

// Where a handle stands; false for one that is not open.
bool resolve(HKEY handle, OpenKey& key) {
  for (const PredefinedKey& predefined : predefinedKeys()) {
    if (predefined.handle != handle) continue;
    key = {std::u16string(predefined.name), KEY_ALL_ACCESS, false};
    return true;
  }
  const auto& open = registry().openKeys;
  const auto found = open.find(handle);
  if (found == open.end()) return false;
  key = *found->second;
  return true;
}

bool isPredefined(const OpenKey& key) { return key.path.find(u'\\') == std::u16string::npos; }

std::u16string joined(const std::u16string& path, LPCWSTR subKey) {
  if (subKey == nullptr || subKey[0] == 0) return path;
  return path + u'\\' + subKey;
}

HKEY openHandle(std::u16string path, REGSAM access) {
  auto key = std::make_unique<OpenKey>(OpenKey{std::move(path), access, false});
  const auto handle = reinterpret_cast<HKEY>(key.get());
  registry().openKeys.emplace(handle, std::move(key));
  return handle;
}

// The key of the tree; a predefined one exists even while nothing is in it. A handle whose own key
// is gone finds nothing any more, not even below a key that was made anew.
LSTATUS findKey(const OpenKey& key, const std::u16string& path, RegistryKey*& found) {
  RegistryDocument* document = nullptr;
  if (const LSTATUS failure = registry().store.read(document); failure != 0) return failure;
  const bool isGone = !isPredefined(key) && document->roots.find(key.path) == nullptr;
  if (key.isDeleted || isGone) return status(ERROR_KEY_DELETED);
  static RegistryKey nothing;
  found = document->roots.find(path);
  if (found == nullptr && isPredefined(key) && path == key.path) {
    nothing = RegistryKey{};
    found = &nothing;
  }
  return found == nullptr ? status(ERROR_FILE_NOT_FOUND) : 0;
}

bool isSameName(std::u16string_view a, std::u16string_view b) {
  const NameOrder comesBefore;
  return !comesBefore(a, b) && !comesBefore(b, a);
}

void forgetDeleted(const std::u16string& path) {
  for (const auto& [handle, open] : registry().openKeys) {
    if (isSameName(open->path, path)) open->isDeleted = true;
  }
}

// A name below a key does not begin with the separator, except where two trees are seen as one.
bool isBadPath(const OpenKey& key, LPCWSTR subKey) {
  return subKey != nullptr && subKey[0] == u'\\' && key.path != u"HKEY_CLASSES_ROOT";
}

// Resolves the handle, asks for the right and for the key: what the reading calls start with.
LSTATUS openedKey(HKEY handle, REGSAM right, RegistryKey*& found) {
  OpenKey key;
  if (!resolve(handle, key)) return status(ERROR_INVALID_HANDLE);
  if ((key.access & right) != right) return status(ERROR_ACCESS_DENIED);
  return findKey(key, key.path, found);
}

LSTATUS changeKey(HKEY handle, REGSAM right, const std::function<LSTATUS(RegistryKey&)>& change) {
  OpenKey key;
  if (!resolve(handle, key)) return status(ERROR_INVALID_HANDLE);
  if (key.isDeleted) return status(ERROR_KEY_DELETED);
  if ((key.access & right) != right) return status(ERROR_ACCESS_DENIED);
  return registry().store.change([&](RegistryKey& roots) {
    bool created = false;
    RegistryKey* found = isPredefined(key) ? &roots.make(key.path, created) : roots.find(key.path);
    return found == nullptr ? status(ERROR_KEY_DELETED) : change(*found);
  });
}

std::u16string_view nameOf(LPCWSTR name) {
  return name == nullptr ? std::u16string_view() : std::u16string_view(name);
}

// The file has one line for a name and no escape for a line end.
bool isStorable(std::u16string_view name) {
  return std::none_of(name.begin(), name.end(), [](char16_t unit) { return unit < 0x20; });
}

}  // namespace
}  // namespace quillon::platform

using namespace quillon::platform;

RegistryFileStatus quillon::platform::registryFileStatus() {
  const std::lock_guard lock(registry().mutex);
  const RegistryStore::Location location = RegistryStore::locate();
  RegistryFileStatus told{location.readFrom, location.writeTo};
  RegistryDocument* document = nullptr;
  told.code = registry().store.read(document);
  if (told.code == 0) told.damagedLine = document->damagedLine;
  return told;
}

LSTATUS WINAPI RegOpenKeyExW(HKEY handle, LPCWSTR subKey, DWORD, REGSAM access, PHKEY result) {
  if (result == nullptr) return status(ERROR_INVALID_PARAMETER);
  const std::lock_guard lock(registry().mutex);
  OpenKey key;
  if (!resolve(handle, key)) return status(ERROR_INVALID_HANDLE);
  if (isBadPath(key, subKey)) return status(ERROR_BAD_PATHNAME);
  std::u16string path = joined(key.path, subKey);
  RegistryKey* found = nullptr;
  if (const LSTATUS failure = findKey(key, path, found); failure != 0) return failure;
  *result = openHandle(std::move(path), access);
  return 0;
}

LSTATUS WINAPI RegCreateKeyExW(HKEY handle, LPCWSTR subKey, DWORD, LPWSTR, DWORD, REGSAM access,
                               const SECURITY_ATTRIBUTES*, PHKEY result, LPDWORD disposition) {
  if (result == nullptr || subKey == nullptr || !isStorable(subKey)) {
    return status(ERROR_INVALID_PARAMETER);
  }
  const std::lock_guard lock(registry().mutex);
  OpenKey key;
  if (!resolve(handle, key)) return status(ERROR_INVALID_HANDLE);
  if (isBadPath(key, subKey)) return status(ERROR_BAD_PATHNAME);
  std::u16string path = joined(key.path, subKey);
  RegistryKey* found = nullptr;
  LSTATUS result32 = findKey(key, path, found);
  const bool existed = result32 == 0;
  if (result32 == status(ERROR_FILE_NOT_FOUND)) {
    result32 = registry().store.change([&path](RegistryKey& roots) {
      bool created = false;
      roots.make(path, created);
      return LSTATUS{0};
    });
  }
  if (result32 != 0) return result32;
  if (disposition != nullptr)
    *disposition = existed ? REG_OPENED_EXISTING_KEY : REG_CREATED_NEW_KEY;
  *result = openHandle(std::move(path), access);
  return 0;
}

LSTATUS WINAPI RegCloseKey(HKEY handle) {
  const std::lock_guard lock(registry().mutex);
  OpenKey key;
  if (!resolve(handle, key)) return status(ERROR_INVALID_HANDLE);
  registry().openKeys.erase(handle);
  return 0;
}

LSTATUS WINAPI RegQueryValueExW(HKEY handle, LPCWSTR valueName, LPDWORD reserved, LPDWORD type,
                                LPBYTE data, LPDWORD lengthBytes) {
  if ((data != nullptr && lengthBytes == nullptr) || reserved != nullptr)
    return status(ERROR_INVALID_PARAMETER);
  const std::lock_guard lock(registry().mutex);
  RegistryKey* key = nullptr;
  if (const LSTATUS failure = openedKey(handle, KEY_QUERY_VALUE, key); failure != 0) return failure;
  const auto found = key->values.find(nameOf(valueName));
  if (found == key->values.end()) return status(ERROR_FILE_NOT_FOUND);
  const RegistryValue& value = found->second;
  if (type != nullptr) *type = value.type;
  if (lengthBytes == nullptr) return 0;
  const DWORD room = *lengthBytes;
  *lengthBytes = static_cast<DWORD>(value.data.size());
  if (data == nullptr) return 0;
  if (room < value.data.size()) return status(ERROR_MORE_DATA);
  std::copy(value.data.begin(), value.data.end(), data);
  return 0;
}

LSTATUS WINAPI RegSetValueExW(HKEY handle, LPCWSTR valueName, DWORD, DWORD type, const BYTE* data,
                              DWORD lengthBytes) {
  if ((data == nullptr && lengthBytes > 0) || !isStorable(nameOf(valueName))) {
    return status(ERROR_INVALID_PARAMETER);
  }
  const std::lock_guard lock(registry().mutex);
  return changeKey(handle, KEY_SET_VALUE, [&](RegistryKey& key) {
    key.values.insert_or_assign(std::u16string(nameOf(valueName)),
                                RegistryValue{type, {data, data + lengthBytes}});
    return LSTATUS{0};
  });
}

LSTATUS WINAPI RegDeleteValueW(HKEY handle, LPCWSTR valueName) {
  const std::lock_guard lock(registry().mutex);
  return changeKey(handle, KEY_SET_VALUE, [valueName](RegistryKey& key) {
    const auto found = key.values.find(nameOf(valueName));
    if (found == key.values.end()) return status(ERROR_FILE_NOT_FOUND);
    key.values.erase(found);
    return LSTATUS{0};
  });
}

LSTATUS WINAPI RegDeleteKeyW(HKEY handle, LPCWSTR subKey) {
  if (subKey == nullptr || subKey[0] == 0) return status(ERROR_INVALID_PARAMETER);
  const std::lock_guard lock(registry().mutex);
  OpenKey parent;
  if (!resolve(handle, parent)) return status(ERROR_INVALID_HANDLE);
  if (isBadPath(parent, subKey)) return status(ERROR_BAD_PATHNAME);
  const LSTATUS deleted = changeKey(handle, 0, [subKey](RegistryKey& key) {
    const RegistryKey* found = key.find(subKey);
    if (found == nullptr) return status(ERROR_FILE_NOT_FOUND);
    if (!found->subkeys.empty()) return status(ERROR_ACCESS_DENIED);
    key.remove(subKey);
    return LSTATUS{0};
  });
  if (deleted == 0) forgetDeleted(joined(parent.path, subKey));
  return deleted;
}

LSTATUS WINAPI RegEnumKeyExW(HKEY handle, DWORD index, LPWSTR name, LPDWORD nameUnits,
                             LPDWORD reserved, LPWSTR keyClass, LPDWORD classUnits,
                             FILETIME* lastWrite) {
  if (name == nullptr || nameUnits == nullptr || reserved != nullptr ||
      (keyClass != nullptr && classUnits == nullptr)) {
    return status(ERROR_INVALID_PARAMETER);
  }
  const std::lock_guard lock(registry().mutex);
  RegistryKey* key = nullptr;
  if (const LSTATUS failure = openedKey(handle, KEY_ENUMERATE_SUB_KEYS, key); failure != 0) {
    return failure;
  }
  if (index >= key->subkeys.size()) return status(ERROR_NO_MORE_ITEMS);
  const std::u16string& text = std::next(key->subkeys.begin(), index)->first;
  const bool classFits = keyClass == nullptr || *classUnits > 0;
  if (*nameUnits <= text.size() || !classFits) return status(ERROR_MORE_DATA);
  std::copy(text.begin(), text.end(), name);
  name[text.size()] = 0;
  *nameUnits = static_cast<DWORD>(text.size());
  if (keyClass != nullptr) keyClass[0] = 0;  // no key has one here
  if (classUnits != nullptr) *classUnits = 0;
  if (lastWrite != nullptr) *lastWrite = FILETIME{};
  return 0;
}
