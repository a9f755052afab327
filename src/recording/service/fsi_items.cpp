#include "fsi_items.h"

#include <utility>

#include "image/image_names.h"
#include "image/image_results.h"
#include "image/image_time.h"
#include "platform/com/com_object.h"
#include "recorders/com_answers.h"

namespace quillon::platform {
namespace {

// The node's name in one file system, which depends on its neighbours.
HRESULT mappedName(const ImageState& state, const ImageNode& node, FsiFileSystems fileSystem,
                   std::u16string& name) {
  name.clear();
  NameRules rules = NameRules::Udf;
  if (fileSystem == FsiFileSystemISO9660) {
    rules = state.settings.effectiveIsoLevel() == 1 ? NameRules::IsoLevel1 : NameRules::IsoLevel2;
  } else if (fileSystem == FsiFileSystemJoliet) {
    rules = NameRules::Joliet;
  } else if (fileSystem != FsiFileSystemUDF) {
    return IMAPI_E_INVALID_PARAM;
  }
  if (node.parent == nullptr) return S_OK;
  // In the order of the image: files, then directories.
  std::vector<NameToMap> names;
  std::size_t index = 0;
  for (const bool directories : {false, true}) {
    for (const auto& [childName, child] : node.parent->children) {
      if (child->isDirectory != directories) continue;
      if (child.get() == &node) index = names.size();
      names.push_back({childName, directories});
    }
  }
  std::vector<std::u16string> mapped;
  if (!mapNames(rules, names, mapped)) return IMAPI_E_NO_UNIQUE_NAME;
  name = std::move(mapped[index]);
  return S_OK;
}

HRESULT mappedPath(const ImageState& state, const ImageNode& node, FsiFileSystems fileSystem,
                   std::u16string& path) {
  path.clear();
  for (const ImageNode* at = &node; at->parent != nullptr; at = at->parent) {
    std::u16string name;
    if (const HRESULT hr = mappedName(state, *at, fileSystem, name); FAILED(hr)) return hr;
    path.insert(0, u"\\" + name);
  }
  if (path.empty()) path = u"\\";
  return S_OK;
}

HRESULT getTime(std::int64_t seconds, DATE* value) {
  return giveNumber(dateOf(seconds), value).code;
}

HRESULT putTime(DATE value, std::int64_t& seconds) {
  std::int64_t taken = 0;
  if (!unixSecondsOfDate(value, taken)) return IMAPI_E_INVALID_DATE;
  seconds = taken;
  return S_OK;
}

// What files and directories have in common.
template <typename Interface, const IID&... kIds>
class Item : public DispatchObject<Interface, IID_IFsiItem, kIds...> {
 public:
  Item(std::shared_ptr<ImageState> state, std::shared_ptr<ImageNode> node)
      : state_(std::move(state)), node_(std::move(node)) {}

  HRESULT STDMETHODCALLTYPE get_Name(BSTR* val) override { return giveText(node_->name, val).code; }
  HRESULT STDMETHODCALLTYPE get_FullPath(BSTR* val) override {
    return withinMemory([&] { return giveText(fullPathOf(*node_), val).code; });
  }
  HRESULT STDMETHODCALLTYPE get_CreationTime(DATE* val) override {
    return getTime(node_->created, val);
  }
  HRESULT STDMETHODCALLTYPE put_CreationTime(DATE newVal) override {
    return putTime(newVal, node_->created);
  }
  HRESULT STDMETHODCALLTYPE get_LastAccessedTime(DATE* val) override {
    return getTime(node_->accessed, val);
  }
  HRESULT STDMETHODCALLTYPE put_LastAccessedTime(DATE newVal) override {
    return putTime(newVal, node_->accessed);
  }
  HRESULT STDMETHODCALLTYPE get_LastModifiedTime(DATE* val) override {
    return getTime(node_->modified, val);
  }
  HRESULT STDMETHODCALLTYPE put_LastModifiedTime(DATE newVal) override {
    return putTime(newVal, node_->modified);
  }
  HRESULT STDMETHODCALLTYPE get_IsHidden(VARIANT_BOOL* val) override {
    return giveBool(node_->isHidden, val).code;
  }
  HRESULT STDMETHODCALLTYPE put_IsHidden(VARIANT_BOOL newVal) override {
    node_->isHidden = newVal != VARIANT_FALSE;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE FileSystemName(FsiFileSystems fileSystem, BSTR* val) override {
    return withinMemory([&] {
      std::u16string name;
      const HRESULT hr = mappedName(*state_, *node_, fileSystem, name);
      return FAILED(hr) ? hr : giveText(name, val).code;
    });
  }
  HRESULT STDMETHODCALLTYPE FileSystemPath(FsiFileSystems fileSystem, BSTR* val) override {
    return withinMemory([&] {
      std::u16string path;
      const HRESULT hr = mappedPath(*state_, *node_, fileSystem, path);
      return FAILED(hr) ? hr : giveText(path, val).code;
    });
  }

 protected:
  std::shared_ptr<ImageState> state_;
  std::shared_ptr<ImageNode> node_;
};

using FileItem = Item<IFsiItem>;

class DirectoryItem final : public Item<IFsiDirectoryItem, IID_IFsiDirectoryItem> {
 public:
  using Item::Item;

  HRESULT STDMETHODCALLTYPE get__NewEnum(IEnumVARIANT** newEnum) override;
  HRESULT STDMETHODCALLTYPE get_Item(BSTR path, IFsiItem** item) override;
  HRESULT STDMETHODCALLTYPE get_Count(LONG* count) override;
  HRESULT STDMETHODCALLTYPE get_EnumFsiItems(IEnumFsiItems** newEnum) override;
  HRESULT STDMETHODCALLTYPE AddDirectory(BSTR path) override;
  HRESULT STDMETHODCALLTYPE AddFile(BSTR path, IStream* fileData) override;
  HRESULT STDMETHODCALLTYPE AddTree(BSTR sourceDirectory,
                                    VARIANT_BOOL includeBaseDirectory) override;
  HRESULT STDMETHODCALLTYPE Add(IFsiItem*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Remove(BSTR path) override { return remove(path, false); }
  HRESULT STDMETHODCALLTYPE RemoveTree(BSTR path) override { return remove(path, true); }

 private:
  HRESULT addTree(std::u16string_view source, bool includesBase);
  HRESULT addNode(std::u16string_view path, std::shared_ptr<ImageNode> node);
  HRESULT remove(BSTR path, bool withContent);
  // Changes to a directory that was taken out of the image would reach nobody.
  HRESULT checkInImage() const {
    const ImageNode* top = node_.get();
    while (top->parent != nullptr) top = top->parent;
    return top == state_->root.get() ? S_OK : IMAPI_E_NOT_IN_FILE_SYSTEM;
  }
};

HRESULT DirectoryItem::get__NewEnum(IEnumVARIANT** newEnum) {
  if (newEnum != nullptr) *newEnum = nullptr;
  return E_NOTIMPL;
}

HRESULT DirectoryItem::get_EnumFsiItems(IEnumFsiItems** newEnum) {
  if (newEnum != nullptr) *newEnum = nullptr;
  return E_NOTIMPL;
}

HRESULT DirectoryItem::get_Item(BSTR path, IFsiItem** item) {
  if (item == nullptr) return E_POINTER;
  *item = nullptr;
  return withinMemory([&] {
    std::shared_ptr<ImageNode> found = findNode(node_, unitsOf(path));
    if (!found) return refuseImage(IMAPI_E_ITEM_NOT_FOUND, u"There is no such item", unitsOf(path));
    return makeItem(state_, std::move(found), item);
  });
}

HRESULT DirectoryItem::get_Count(LONG* count) {
  return giveNumber(node_->children.size(), count).code;
}

HRESULT DirectoryItem::AddDirectory(BSTR path) {
  return withinMemory([&] {
    auto directory = std::make_shared<ImageNode>();
    directory->isDirectory = true;
    directory->modified = unixSecondsOf(imageTimeNow());
    return addNode(unitsOf(path), std::move(directory));
  });
}

HRESULT DirectoryItem::AddFile(BSTR path, IStream* fileData) {
  if (fileData == nullptr) return E_POINTER;
  return withinMemory([&] {
    STATSTG stat{};
    if (const HRESULT hr = fileData->Stat(&stat, STATFLAG_NONAME); FAILED(hr)) return hr;
    auto file = std::make_shared<ImageNode>();
    file->modified = unixSecondsOf(imageTimeNow());
    file->size = stat.cbSize.QuadPart;
    file->source.stream = fileData;
    return addNode(unitsOf(path), std::move(file));
  });
}

HRESULT DirectoryItem::addNode(std::u16string_view path, std::shared_ptr<ImageNode> node) {
  if (const HRESULT hr = checkInImage(); FAILED(hr)) return hr;
  std::vector<std::u16string_view> parts = pathParts(path);
  if (parts.empty() || !isLegalNodeName(parts.back())) {
    return refuseImage(IMAPI_E_INVALID_PATH, u"The name is not legal", path);
  }
  node->name = parts.back();
  node->created = node->accessed = node->modified;
  parts.pop_back();
  std::shared_ptr<ImageNode> parent = node_;
  for (const std::u16string_view part : parts) {
    parent = findNode(parent, part);
    if (!parent || !parent->isDirectory) {
      return refuseImage(IMAPI_E_DIR_NOT_FOUND, u"There is no such directory", part);
    }
  }
  if (parent->children.contains(node->name)) {
    return refuseImage(IMAPI_E_DUP_NAME, u"The name exists already", path);
  }
  const HRESULT hr = checkLimits(*node, levelOf(*parent) + 1, state_->settings);
  if (FAILED(hr)) return hr;
  node->parent = parent.get();
  parent->children.emplace(node->name, std::move(node));
  return S_OK;
}

HRESULT DirectoryItem::AddTree(BSTR sourceDirectory, VARIANT_BOOL includeBaseDirectory) {
  return withinMemory(
      [&] { return addTree(unitsOf(sourceDirectory), includeBaseDirectory != VARIANT_FALSE); });
}

// The tree is read aside and joined when all of it is good, so that a refused one leaves nothing.
HRESULT DirectoryItem::addTree(std::u16string_view source, bool includesBase) {
  if (const HRESULT hr = checkInImage(); FAILED(hr)) return hr;
  auto scanned = std::make_shared<ImageNode>();
  scanned->isDirectory = true;
  if (const HRESULT hr = scanDirectory(source, *scanned); FAILED(hr)) return hr;
  ImageNode above;
  above.isDirectory = true;
  if (includesBase) {
    const std::vector<std::u16string_view> parts = pathParts(source);
    if (parts.empty() || !isLegalNodeName(parts.back())) {
      return refuseImage(IMAPI_E_INVALID_PATH, u"The directory has no name of its own", source);
    }
    scanned->name = parts.back();
    above.children.emplace(scanned->name, scanned);
  }
  ImageNode& added = includesBase ? above : *scanned;
  if (const HRESULT hr = checkLimits(added, levelOf(*node_), state_->settings); FAILED(hr)) {
    return hr;
  }
  return mergeChildren(added, *node_);
}

HRESULT DirectoryItem::remove(BSTR path, bool withContent) {
  return withinMemory([&] {
    if (const HRESULT hr = checkInImage(); FAILED(hr)) return hr;
    const std::shared_ptr<ImageNode> found = findNode(node_, unitsOf(path));
    if (!found || found == node_) {
      return refuseImage(IMAPI_E_ITEM_NOT_FOUND, u"There is no such item", unitsOf(path));
    }
    if (!withContent && !found->children.empty()) {
      return refuseImage(IMAPI_E_DIR_NOT_EMPTY, u"The directory is not empty", unitsOf(path));
    }
    ImageNode* parent = std::exchange(found->parent, nullptr);
    parent->children.erase(found->name);
    return S_OK;
  });
}

}  // namespace

HRESULT makeDirectoryItem(std::shared_ptr<ImageState> state, std::shared_ptr<ImageNode> node,
                          IFsiDirectoryItem** item) {
  *item = new DirectoryItem(std::move(state), std::move(node));
  return S_OK;
}

HRESULT makeItem(std::shared_ptr<ImageState> state, std::shared_ptr<ImageNode> node,
                 IFsiItem** item) {
  if (node->isDirectory) {
    *item = new DirectoryItem(std::move(state), std::move(node));
  } else {
    *item = new FileItem(std::move(state), std::move(node));
  }
  return S_OK;
}

}  // namespace quillon::platform
