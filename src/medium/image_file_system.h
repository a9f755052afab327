// One file system of an image, directory by directory. Nothing that the image says of itself is
// believed: what lies outside of it is not there.
#pragma once

#include <memory>
#include <vector>

#include "image_file.h"
#include "medium/medium_source.h"

namespace quillon {

struct ImageItem {
  Text name;
  MediumEntry::Kind kind = MediumEntry::Kind::File;
  std::uint64_t sizeBytes = 0;
  // Where the directory or the description of the file lies: no two directories have the same.
  std::uint64_t location = 0;
  std::vector<ImageExtent> extents;  // empty where the description tells
};

class ImageFileSystem {
 public:
  ImageFileSystem() = default;
  virtual ~ImageFileSystem() = default;
  ImageFileSystem(const ImageFileSystem&) = delete;
  ImageFileSystem& operator=(const ImageFileSystem&) = delete;

  [[nodiscard]] virtual const ImageItem& Root() const = 0;
  // Appends what a directory holds, at most so many items, in the order of the image. False when it
  // is damaged; what could be read has been appended.
  [[nodiscard]] virtual bool ReadDirectory(const ImageItem& directory, std::size_t mostItems,
                                           std::vector<ImageItem>& items) = 0;
  // Of a file. False when its description is damaged.
  [[nodiscard]] virtual bool FindExtents(const ImageItem& file,
                                         std::vector<ImageExtent>& extents) = 0;
};

// Null when the image has none that can be read down to its root directory. The image outlives it.
// unsupported gets, in the words of a sentence, what the image has that is not read here; it stays
// empty otherwise.
std::unique_ptr<ImageFileSystem> OpenUdf(ImageFile& image, Text& unsupported);
// Joliet, else ISO 9660, with the names of Rock Ridge where it has them.
std::unique_ptr<ImageFileSystem> OpenIso9660(ImageFile& image);

}  // namespace quillon
