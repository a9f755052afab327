#include "image/image_tree.h"

#include <algorithm>
#include <limits>

#include "image/image_results.h"
#include "platform/imapi2.h"

namespace quillon::platform {
namespace {

constexpr unsigned kIsoLevels = 8;
// What the allocation descriptors of one UDF file entry can cover.
constexpr std::uint64_t kLargestUdfFile = 234 * ((std::uint64_t{1} << 30) - 2048);

HRESULT checkFile(const ImageNode& file, const ImageSettings& settings) {
  const bool needsOneExtent =
      settings.isStrict && settings.has(FsiFileSystemISO9660 | FsiFileSystemJoliet);
  if ((needsOneExtent && file.size > std::numeric_limits<std::uint32_t>::max()) ||
      (settings.has(FsiFileSystemUDF) && file.size > kLargestUdfFile)) {
    return refuseImage(IMAPI_E_DATA_TOO_BIG, u"The file is too large for the image", file.name);
  }
  return S_OK;
}

}  // namespace

HRESULT checkLimits(const ImageNode& node, unsigned level, const ImageSettings& settings) {
  if (!node.isDirectory) return checkFile(node, settings);
  if (settings.isStrict && settings.has(FsiFileSystemISO9660) && level > kIsoLevels) {
    return refuseImage(IMAPI_E_ISO9660_LEVELS, u"The directory lies too deep", node.name);
  }
  for (const auto& [name, child] : node.children) {
    if (const HRESULT hr = checkLimits(*child, level + 1, settings); FAILED(hr)) return hr;
  }
  return S_OK;
}

std::vector<std::u16string_view> pathParts(std::u16string_view path) {
  std::vector<std::u16string_view> parts;
  while (!path.empty()) {
    const std::size_t end = std::min(path.find_first_of(u"\\/"), path.size());
    if (end > 0) parts.push_back(path.substr(0, end));
    path.remove_prefix(std::min(end + 1, path.size()));
  }
  return parts;
}

std::u16string fullPathOf(const ImageNode& node) {
  if (node.parent == nullptr) return u"\\" + node.name;
  std::u16string path;
  for (const ImageNode* at = &node; at->parent != nullptr; at = at->parent) {
    path.insert(0, u"\\" + at->name);
  }
  return path;
}

namespace {

HRESULT checkMerge(const ImageNode& source, const ImageNode& target) {
  for (const auto& [name, child] : source.children) {
    const auto found = target.children.find(name);
    if (found == target.children.end()) continue;
    if (!child->isDirectory || !found->second->isDirectory) {
      return refuseImage(IMAPI_E_DUP_NAME, u"The name exists already", fullPathOf(*found->second));
    }
    if (const HRESULT hr = checkMerge(*child, *found->second); FAILED(hr)) return hr;
  }
  return S_OK;
}

void moveChildren(ImageNode& source, ImageNode& target) {
  while (!source.children.empty()) {
    auto moved = source.children.extract(source.children.begin());
    const std::shared_ptr<ImageNode> child = moved.mapped();
    const auto result = target.children.insert(std::move(moved));
    if (result.inserted) {
      child->parent = &target;
    } else {
      moveChildren(*child, *result.position->second);
    }
  }
}

}  // namespace

HRESULT mergeChildren(ImageNode& source, ImageNode& target) {
  if (const HRESULT hr = checkMerge(source, target); FAILED(hr)) return hr;
  moveChildren(source, target);
  return S_OK;
}

bool isLegalNodeName(std::u16string_view name) {
  if (name.empty() || name == u"." || name == u"..") return false;
  return std::none_of(name.begin(), name.end(), [](char16_t unit) {
    return unit < 0x20 ||
           std::u16string_view(u"\\/:*?\"<>|").find(unit) != std::u16string_view::npos;
  });
}

}  // namespace quillon::platform
