#include "directory_storage.h"

#include <cstring>
#include <memory>
#include <new>
#include <vector>

#include "platform/com/com_object.h"
#include "platform/com/refusing.h"
#include "storage_stat.h"

namespace quillon::platform {
namespace {

constexpr DWORD kAccessMask = 0x3;  // of the STGM flags: read, write or both

struct Element {
  std::u16string name;
  STATSTG stat;  // without the name
};
using Elements = std::vector<Element>;

bool isDotEntry(std::u16string_view name) { return name == u"." || name == u".."; }

bool isElementName(const OLECHAR* name) {
  const std::u16string_view view(name);
  return !view.empty() && !isDotEntry(view) && view.find_first_of(u"/\\") == view.npos;
}

std::u16string joined(const std::u16string& path, std::u16string_view name) {
  std::u16string whole = path;
  if (!whole.ends_with(u'/') && !whole.ends_with(u'\\')) whole += u'\\';
  return whole.append(name);
}

HRESULT listElements(const std::u16string& path, Elements& elements) {
  WIN32_FIND_DATAW data{};
  const HANDLE find = FindFirstFileW(joined(path, u"*").c_str(), &data);
  if (find == INVALID_HANDLE_VALUE) {
    const DWORD code = GetLastError();
    return code == ERROR_FILE_NOT_FOUND ? S_OK : storageResult(code);
  }
  const std::unique_ptr<void, decltype(&FindClose)> closing(find, FindClose);
  do {
    if (isDotEntry(data.cFileName)) continue;
    Element element{data.cFileName, {}};
    fillStat(data, element.stat);
    elements.push_back(std::move(element));
  } while (FindNextFileW(find, &data) != FALSE);
  const DWORD code = GetLastError();
  return code == ERROR_NO_MORE_FILES ? S_OK : storageResult(code);
}

class ElementEnumerator final : public ComObject<Refusing<IEnumSTATSTG>, IID_IEnumSTATSTG> {
 public:
  explicit ElementEnumerator(Elements elements) : elements_(std::move(elements)) {}

  HRESULT STDMETHODCALLTYPE Next(ULONG count, STATSTG* items, ULONG* fetched) override {
    if (fetched != nullptr) *fetched = 0;
    if (items == nullptr || (fetched == nullptr && count != 1)) return STG_E_INVALIDPOINTER;
    ULONG done = 0;
    for (; done < count && next_ < elements_.size(); ++done, ++next_) {
      const Element& element = elements_[next_];
      items[done] = element.stat;
      items[done].pwcsName = taskMemoryText(element.name);
      if (items[done].pwcsName == nullptr) {
        next_ -= done;
        while (done > 0) CoTaskMemFree(items[--done].pwcsName);
        return E_OUTOFMEMORY;
      }
    }
    if (fetched != nullptr) *fetched = done;
    return done == count ? S_OK : S_FALSE;
  }

 private:
  Elements elements_;
  std::size_t next_ = 0;
};

class DirectoryStorage final : public ComObject<Refusing<IStorage>, IID_IStorage> {
 public:
  explicit DirectoryStorage(std::u16string path) : path_(std::move(path)) {}

  HRESULT STDMETHODCALLTYPE OpenStream(const OLECHAR* name, void* reserved1, DWORD mode, DWORD,
                                       IStream** stream) override {
    if (stream == nullptr) return STG_E_INVALIDPOINTER;
    *stream = nullptr;
    if (reserved1 != nullptr) return STG_E_INVALIDPARAMETER;
    std::u16string path;
    const HRESULT hr = find(name, mode, STGTY_STREAM, path);
    return FAILED(hr) ? hr : openFileStream(std::move(path), stream);
  }
  HRESULT STDMETHODCALLTYPE OpenStorage(const OLECHAR* name, IStorage* priority, DWORD mode,
                                        LPOLESTR* exclude, DWORD, IStorage** storage) override {
    if (storage == nullptr) return STG_E_INVALIDPOINTER;
    *storage = nullptr;
    if (priority != nullptr || exclude != nullptr) return STG_E_INVALIDPARAMETER;
    std::u16string path;
    const HRESULT hr = find(name, mode, STGTY_STORAGE, path);
    return FAILED(hr) ? hr : openDirectoryStorage(std::move(path), storage);
  }
  HRESULT STDMETHODCALLTYPE EnumElements(DWORD, void*, DWORD, IEnumSTATSTG** elements) override {
    if (elements == nullptr) return STG_E_INVALIDPOINTER;
    *elements = nullptr;
    try {
      Elements list;
      if (const HRESULT hr = listElements(path_, list); FAILED(hr)) return hr;
      *elements = new ElementEnumerator(std::move(list));
      return S_OK;
    } catch (const std::bad_alloc&) {
      return E_OUTOFMEMORY;
    }
  }
  HRESULT STDMETHODCALLTYPE Stat(STATSTG* stat, DWORD flag) override {
    return statOfPath(path_, flag, stat);
  }

 private:
  HRESULT find(const OLECHAR* name, DWORD mode, DWORD type, std::u16string& path) const {
    if (name == nullptr || !isElementName(name)) return STG_E_INVALIDNAME;
    if ((mode & kAccessMask) != STGM_READ) return STG_E_ACCESSDENIED;
    path = joined(path_, name);
    STATSTG stat{};
    if (const HRESULT hr = statOfPath(path, STATFLAG_NONAME, &stat); FAILED(hr)) return hr;
    return stat.type == type ? S_OK : STG_E_FILENOTFOUND;
  }

  std::u16string path_;
};

}  // namespace

HRESULT storageResult(DWORD code) {
  switch (code) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_TOO_MANY_OPEN_FILES:
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
      return MAKE_HRESULT(SEVERITY_ERROR, FACILITY_STORAGE, code);
    case ERROR_NOT_ENOUGH_MEMORY:
    case ERROR_OUTOFMEMORY:
      return E_OUTOFMEMORY;
    case ERROR_SUCCESS:
      return E_UNEXPECTED;
    default:
      return HRESULT_FROM_WIN32(code);
  }
}

LPOLESTR taskMemoryText(std::u16string_view text) {
  auto* copy = static_cast<LPOLESTR>(CoTaskMemAlloc((text.size() + 1) * sizeof(OLECHAR)));
  if (copy == nullptr) return nullptr;
  std::memcpy(copy, text.data(), text.size() * sizeof(OLECHAR));
  copy[text.size()] = 0;
  return copy;
}

HRESULT statOfPath(const std::u16string& path, DWORD flag, STATSTG* stat) {
  if (stat == nullptr) return STG_E_INVALIDPOINTER;
  WIN32_FILE_ATTRIBUTE_DATA data{};
  if (GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data) == FALSE) {
    return storageResult(GetLastError());
  }
  *stat = STATSTG{};
  fillStat(data, *stat);
  if ((flag & STATFLAG_NONAME) != 0) return S_OK;
  const std::size_t end = path.find_last_not_of(u"/\\");
  const std::u16string_view whole = std::u16string_view(path).substr(0, end + 1);
  stat->pwcsName = taskMemoryText(whole.substr(whole.find_last_of(u"/\\") + 1));
  return stat->pwcsName == nullptr ? E_OUTOFMEMORY : S_OK;
}

HRESULT openDirectoryStorage(std::u16string path, IStorage** storage) {
  *storage = new (std::nothrow) DirectoryStorage(std::move(path));
  return *storage == nullptr ? E_OUTOFMEMORY : S_OK;
}

}  // namespace quillon::platform
