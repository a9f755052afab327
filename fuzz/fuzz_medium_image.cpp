// An image as somebody may have made it to harm: sectors with a place each, on a disc of zeros. A
// walk over it ends, with names that lead nowhere else, and every file that opens can be read.
//
// The input: a byte whose first bit asks for descriptors whose sums are made to fit (few changed
// ones would be looked at else); then, for each sector, its number and how many bytes follow, two
// bytes each, and the bytes.
#include <algorithm>
#include <array>
#include <cstring>
#include <string>

#include "image_source.h"
#include "input_parts.h"
#include "medium/image_patches.h"
#include "platform/services.h"
#include "scratch_file.h"

namespace quillon {
namespace {

using fuzz::require;

constexpr std::size_t kMostSectors = 512;
constexpr std::size_t kPieceBytes = 8192;

std::size_t numberAt(const std::uint8_t* at) {
  return std::size_t{at[0]} | std::size_t{at[1]} << 8U;
}

std::string imageOf(const std::uint8_t* data, std::size_t size) {
  std::string image;
  const bool isMended = size > 0 && (data[0] & 1U) != 0;
  for (std::size_t at = 1; at + 4 <= size;) {
    const std::size_t sector = numberAt(data + at) % kMostSectors;
    const std::size_t start = sector * test::kSectorBytes;
    const std::size_t wanted = numberAt(data + at + 2);
    at += 4;
    const std::size_t bytes = std::min({wanted, size - at, test::kSectorBytes});
    image.resize(std::max(image.size(), start + test::kSectorBytes));
    std::memcpy(&image[start], data + at, bytes);
    if (isMended) test::mendTag(image, start);
    at += bytes;
  }
  return image;
}

void read(MediumSource& source, const MediumEntry& entry) {
  const std::unique_ptr<MediumFile> file = source.Open(entry.path);
  require(file != nullptr || !source.ErrorMessage().empty());
  if (!file) return;
  require(file->SizeBytes() == entry.sizeBytes);
  std::array<char, kPieceBytes> piece{};
  const auto most =
      static_cast<std::size_t>(std::min<std::uint64_t>(piece.size(), file->SizeBytes()));
  require(file->ReadAt(0, piece.data(), most));
  require(file->ReadAt(file->SizeBytes() - most, piece.data(), most));
  require(!file->ReadAt(file->SizeBytes(), piece.data(), 1));
}

}  // namespace
}  // namespace quillon

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace quillon;
  const std::string image = imageOf(data, size);
  const fuzz::ScratchFile file(reinterpret_cast<const std::uint8_t*>(image.data()), image.size());
  CBaseItem errors;
  const auto source = OpenImage(WidenText(file.path(), FileSystemCodePage()), errors);
  fuzz::require((source == nullptr) != errors.ErrorMessage().empty());
  if (!source) return 0;
  std::vector<MediumEntry> entries;
  const bool isSound = source->List(entries);
  fuzz::require(isSound == source->ErrorMessage().empty());
  for (const MediumEntry& entry : entries) {
    const TextView name = TextView(entry.path).substr(entry.path.rfind(OLESTR('\\')) + 1);
    fuzz::require(!name.empty() && name != OLESTR("..") && name != OLESTR("."));
    if (entry.kind == MediumEntry::Kind::File) read(*source, entry);
  }
  return 0;
}
