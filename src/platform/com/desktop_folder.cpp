// The desktop folder. Its items are absolute paths: an item ID list holds one item, the path with
// its terminator, and the empty item that ends every list.
#include <cstring>
#include <limits>
#include <new>
#include <string>
#include <string_view>

#include "directory_storage.h"
#include "platform/com/com_object.h"
#include "platform/com/refusing.h"

namespace quillon::platform {
namespace {

constexpr ULONG kIsStorage = 0x00000008;     // SFGAO_STORAGE
constexpr ULONG kIsStream = 0x00400000;      // SFGAO_STREAM
constexpr ULONG kIsFolder = 0x20000000;      // SFGAO_FOLDER
constexpr ULONG kIsFileSystem = 0x40000000;  // SFGAO_FILESYSTEM

constexpr std::size_t kItemHeaderBytes = sizeof(USHORT);

bool isSeparator(OLECHAR unit) { return unit == u'/' || unit == u'\\'; }

bool isAbsolute(std::u16string_view path) {
  if (path.empty()) return false;
  if (isSeparator(path.front())) return true;
  const OLECHAR letter = static_cast<OLECHAR>(path.front() | 0x20);
  return path.size() > 2 && letter >= u'a' && letter <= u'z' && path[1] == u':' &&
         isSeparator(path[2]);
}

HRESULT makeItem(std::u16string_view path, ITEMIDLIST** items) {
  const std::size_t itemBytes = kItemHeaderBytes + (path.size() + 1) * sizeof(OLECHAR);
  if (itemBytes > std::numeric_limits<USHORT>::max()) {
    return HRESULT_FROM_WIN32(ERROR_FILENAME_EXCED_RANGE);
  }
  auto* bytes = static_cast<std::uint8_t*>(CoTaskMemAlloc(itemBytes + kItemHeaderBytes));
  if (bytes == nullptr) return E_OUTOFMEMORY;
  const auto length = static_cast<USHORT>(itemBytes);
  std::memset(bytes, 0, itemBytes + kItemHeaderBytes);
  std::memcpy(bytes, &length, sizeof length);
  std::memcpy(bytes + kItemHeaderBytes, path.data(), path.size() * sizeof(OLECHAR));
  *items = reinterpret_cast<ITEMIDLIST*>(bytes);
  return S_OK;
}

// Empty when the list is none of this folder's.
std::u16string pathOf(const ITEMIDLIST* items) {
  if (items == nullptr) return {};
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(items);
  USHORT length = 0;
  std::memcpy(&length, bytes, sizeof length);
  if (length <= kItemHeaderBytes + sizeof(OLECHAR) || length % sizeof(OLECHAR) != 0) return {};
  std::u16string path((length - kItemHeaderBytes) / sizeof(OLECHAR) - 1, u'\0');
  std::memcpy(path.data(), bytes + kItemHeaderBytes, path.size() * sizeof(OLECHAR));
  return isAbsolute(path) ? path : std::u16string();
}

class DesktopFolder final : public ComObject<Refusing<IShellFolder>, IID_IShellFolder> {
 public:
  HRESULT STDMETHODCALLTYPE ParseDisplayName(HWND, IBindCtx*, LPWSTR name, ULONG* eaten,
                                             ITEMIDLIST** items, ULONG* attributes) override {
    if (items == nullptr) return E_INVALIDARG;
    *items = nullptr;
    if (eaten != nullptr) *eaten = 0;
    if (name == nullptr || !isAbsolute(name)) return E_INVALIDARG;
    const DWORD found = GetFileAttributesW(name);
    if (found == INVALID_FILE_ATTRIBUTES) return HRESULT_FROM_WIN32(GetLastError());
    const std::u16string_view path(name);
    if (const HRESULT hr = makeItem(path, items); FAILED(hr)) return hr;
    if (eaten != nullptr) *eaten = static_cast<ULONG>(path.size());
    if (attributes != nullptr) {
      const bool isDirectory = (found & FILE_ATTRIBUTE_DIRECTORY) != 0;
      *attributes &= kIsFileSystem | (isDirectory ? kIsFolder | kIsStorage : kIsStream);
    }
    return S_OK;
  }

  HRESULT STDMETHODCALLTYPE BindToStorage(const ITEMIDLIST* items, IBindCtx*, REFIID riid,
                                          void** object) override {
    if (object == nullptr) return E_INVALIDARG;
    *object = nullptr;
    std::u16string path = pathOf(items);
    if (path.empty()) return E_INVALIDARG;
    const DWORD found = GetFileAttributesW(path.c_str());
    if (found == INVALID_FILE_ATTRIBUTES) return storageResult(GetLastError());
    if (riid != IID_IStorage || (found & FILE_ATTRIBUTE_DIRECTORY) == 0) return E_NOINTERFACE;
    return openDirectoryStorage(std::move(path), reinterpret_cast<IStorage**>(object));
  }
};

}  // namespace
}  // namespace quillon::platform

HRESULT SHGetDesktopFolder(IShellFolder** folder) {
  if (folder == nullptr) return E_INVALIDARG;
  *folder = new (std::nothrow) quillon::platform::DesktopFolder;
  return *folder == nullptr ? E_OUTOFMEMORY : S_OK;
}
