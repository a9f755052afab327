// The hierarchy that becomes the image: directories, and files with the source of their data.
#pragma once

#include <cstdint>
#include <ctime>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/com.h"

namespace quillon::platform {

// Where a file's bytes come from: a native path, or a stream that the caller handed in.
struct FileSource {
  std::string path;     // absolute
  timespec modified{};  // when it was added: of the file at path; of the stream, 0 for unknown
  ComPtr<IStream> stream;
};

struct ImageNode {
  using Children = std::map<std::u16string, std::shared_ptr<ImageNode>, std::less<>>;

  ImageNode() = default;
  ImageNode(const ImageNode&) = delete;
  ImageNode& operator=(const ImageNode&) = delete;
  // Items may hold on to children of a directory that was removed.
  ~ImageNode() {
    for (const auto& [childName, child] : children) child->parent = nullptr;
  }

  std::u16string name;  // empty for the root
  bool isDirectory = false;
  std::int64_t created = 0;  // the times in seconds since 1970
  std::int64_t accessed = 0;
  std::int64_t modified = 0;
  ImageNode* parent = nullptr;  // null for the root and for what was removed

  Children children;  // of a directory
  std::uint64_t size = 0;
  FileSource source;    // of a file
  bool isLast = false;  // its data lies behind that of all other files
};

struct ImageSettings {
  std::uint32_t fileSystems = 7;  // bits of FsiFileSystems
  bool isStrict = false;
  std::u16string volumeName;

  [[nodiscard]] bool has(unsigned fileSystem) const { return (fileSystems & fileSystem) != 0; }
  [[nodiscard]] int isoLevel() const { return isStrict ? 1 : 2; }
};

// What the settings allow in the part of the tree below node, which lies (or will lie) at that
// level, the root's being 1: levels of directories, and sizes.
HRESULT checkLimits(const ImageNode& node, unsigned level, const ImageSettings& settings);

// Names of the parts, between separators of either kind; empty for a path that names the directory
// itself.
std::vector<std::u16string_view> pathParts(std::u16string_view path);
// From the root, each name after a backslash; "\" for the root.
std::u16string fullPathOf(const ImageNode& node);

// Reads the directory at path, as the product writes it, into the children of directory. Links are
// followed, a link back to a directory above is refused. On failure directory is half filled.
HRESULT scanDirectory(std::u16string_view path, ImageNode& directory);

// Moves the children of source below target: directories that exist there are joined, a file of the
// same name refuses all (IMAPI_E_DUP_NAME) before anything has changed.
HRESULT mergeChildren(ImageNode& source, ImageNode& target);

// Whether a caller may give an entry this name.
bool isLegalNodeName(std::u16string_view name);

}  // namespace quillon::platform
