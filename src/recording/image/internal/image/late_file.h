// A file that becomes known while an image is read: what all other files held is known only then,
// such as their sums. Its name and size stand in the image from the start, its bytes lie last.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "image/image_tree.h"

namespace quillon::platform {

struct LateFile {
  std::string directory;  // native: scanDirectory adds the file when it reads this one
  std::u16string name;    // in the place of what has this name
  std::uint64_t sizeBytes = 0;
  // Asked once, when all files before it have been read, on the thread that reads the image. False,
  // or another number of bytes, makes reading fail.
  std::function<bool(std::string& bytes)> content;
};

// The process has that late file meanwhile; one at a time. Images that are made of it may outlive
// the scope, but what content refers to must then be there.
class LateFileScope {
 public:
  explicit LateFileScope(LateFile file);
  ~LateFileScope();
  LateFileScope(const LateFileScope&) = delete;
  LateFileScope& operator=(const LateFileScope&) = delete;
};

// Adds the late file to what was read of its directory.
void addLateFile(const std::string& native, ImageNode& directory);

}  // namespace quillon::platform
