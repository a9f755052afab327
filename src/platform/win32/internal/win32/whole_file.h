// Descriptors, and files that are read and replaced as a whole.
#pragma once

#include <string>
#include <string_view>
#include <utility>

namespace quillon::platform {

// Owns a descriptor.
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
  Descriptor(Descriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
  }
  ~Descriptor();
  [[nodiscard]] int get() const { return descriptor_; }
  [[nodiscard]] bool isOpen() const { return descriptor_ >= 0; }

 private:
  int descriptor_ = -1;
};

// The part before the last separator; "." when there is none.
std::string directoryOf(const std::string& path);

// Both leave errno when they answer false.
bool readAll(int descriptor, std::string& bytes);
bool writeAll(int descriptor, std::string_view bytes);
// The same for a file by its name.
bool readFile(const std::string& path, std::string& bytes);

// Writes beside the file and renames, and waits until that is on the disk: a reader sees the old
// file or the new one, whole, also after a power cut. A file that exists keeps its mode. Answers 0
// or the errno.
int replaceFile(const std::string& path, std::string_view bytes);

}  // namespace quillon::platform
