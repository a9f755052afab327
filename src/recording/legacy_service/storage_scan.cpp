#include "storage_scan.h"

#include <vector>

#include "image/image_names.h"
#include "image/image_time.h"
#include "platform/imapi.h"

namespace quillon::platform {
namespace {

constexpr DWORD kReadMode = STGM_READ | STGM_SHARE_EXCLUSIVE;
// Each directory takes two sectors at least, one in either file system: the largest CD is full
// then. A storage that links back to itself ends here too.
constexpr std::size_t kMostDirectories = 225'000;
constexpr unsigned kMostLevels = 64;

struct Element {
  std::u16string name;
  STATSTG stat;
};

HRESULT listElements(IStorage& storage, std::vector<Element>& elements) {
  ComPtr<IEnumSTATSTG> enumerator;
  HRESULT hr = storage.EnumElements(0, nullptr, 0, enumerator.Put());
  if (FAILED(hr)) return hr;
  if (!enumerator) return E_UNEXPECTED;
  for (;;) {
    STATSTG stat{};
    hr = enumerator->Next(1, &stat, nullptr);
    if (hr != S_OK) return FAILED(hr) ? hr : S_OK;
    elements.push_back({stat.pwcsName == nullptr ? std::u16string() : stat.pwcsName, stat});
    CoTaskMemFree(stat.pwcsName);
  }
}

bool haveJolietNames(const std::vector<Element>& elements) {
  std::vector<NameToMap> names;
  names.reserve(elements.size());
  for (const Element& element : elements) {
    if (element.name.empty() || element.name == u"." || element.name == u"..") return false;
    names.push_back({element.name, element.stat.type == STGTY_STORAGE});
  }
  std::vector<std::u16string> mapped;
  if (!mapNames(NameRules::Joliet, names, mapped)) return false;
  for (std::size_t i = 0; i < mapped.size(); ++i) {
    if (mapped[i] != elements[i].name) return false;
  }
  return true;
}

void takeTimes(const STATSTG& stat, ImageNode& node) {
  if (stat.mtime.dwLowDateTime == 0 && stat.mtime.dwHighDateTime == 0) {
    node.modified = unixSecondsOf(imageTimeNow());
  } else {
    node.modified = unixSecondsOfFileTime(stat.mtime);
    node.source.modified = timeSpecOfFileTime(stat.mtime);
  }
  node.created = node.accessed = node.modified;
}

HRESULT tryToRead(IStream& stream) {
  char first = 0;
  ULONG got = 0;
  const HRESULT hr = stream.Read(&first, 1, &got);
  if (FAILED(hr)) return hr;
  // Back at its start, a file is not kept open.
  return got == 1 ? stream.Seek({}, STREAM_SEEK_SET, nullptr) : IMAPI_E_FILEACCESS;
}

class Scanner {
 public:
  HRESULT scan(IStorage& storage, ImageNode& directory, unsigned level) {
    if (level > kMostLevels || ++directories_ > kMostDirectories) return IMAPI_E_DISCFULL;
    std::vector<Element> elements;
    if (const HRESULT hr = listElements(storage, elements); FAILED(hr)) return hr;
    if (!haveJolietNames(elements)) return IMAPI_E_BADJOLIETNAME;
    for (const Element& element : elements) {
      auto node = std::make_shared<ImageNode>();
      node->name = element.name;
      node->parent = &directory;
      node->isDirectory = element.stat.type == STGTY_STORAGE;
      takeTimes(element.stat, *node);
      const HRESULT hr = node->isDirectory ? addDirectory(storage, *node, level)
                                           : addFile(storage, element.stat, *node);
      if (FAILED(hr)) return hr;
      if (!directory.children.emplace(node->name, node).second) return IMAPI_E_FILEEXISTS;
    }
    return S_OK;
  }

 private:
  HRESULT addDirectory(IStorage& storage, ImageNode& node, unsigned level) {
    ComPtr<IStorage> inner;
    const HRESULT hr =
        storage.OpenStorage(node.name.c_str(), nullptr, kReadMode, nullptr, 0, inner.Put());
    if (FAILED(hr)) return hr;
    return inner ? scan(*inner, node, level + 1) : E_UNEXPECTED;
  }
  static HRESULT addFile(IStorage& storage, const STATSTG& stat, ImageNode& node) {
    if (stat.type != STGTY_STREAM) return IMAPI_E_FILEACCESS;
    ComPtr<IStream> stream;
    const HRESULT hr = storage.OpenStream(node.name.c_str(), nullptr, kReadMode, 0, stream.Put());
    if (FAILED(hr)) return hr;
    if (!stream) return E_UNEXPECTED;
    node.size = stat.cbSize.QuadPart;
    node.source.stream = stream;
    return node.size == 0 ? S_OK : tryToRead(*stream);
  }

  std::size_t directories_ = 0;
};

bool canMerge(const ImageNode& source, const ImageNode& target, bool replaces) {
  for (const auto& [name, child] : source.children) {
    const auto found = target.children.find(name);
    if (found == target.children.end()) continue;
    if (child->isDirectory != found->second->isDirectory) return false;
    if (!child->isDirectory && !replaces) return false;
    if (child->isDirectory && !canMerge(*child, *found->second, replaces)) return false;
  }
  return true;
}

void dropReplaced(const ImageNode& source, ImageNode& target) {
  for (const auto& [name, child] : source.children) {
    const auto found = target.children.find(name);
    if (found == target.children.end()) continue;
    if (child->isDirectory) {
      dropReplaced(*child, *found->second);
    } else {
      target.children.erase(found);
    }
  }
}

}  // namespace

HRESULT scanStorage(IStorage& storage, ImageNode& directory) {
  return Scanner().scan(storage, directory, 1);
}

HRESULT mergeLegacyContent(ImageNode& source, ImageNode& target, bool replaces) {
  if (!canMerge(source, target, replaces)) return IMAPI_E_FILEEXISTS;
  dropReplaced(source, target);
  return mergeChildren(source, target);
}

}  // namespace quillon::platform
