#include "image_file.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "foundation/file_handle.h"

namespace quillon {

namespace {

constexpr std::size_t kBlockBytes = std::size_t{32} << 10;
// What is longer is read past the block.
constexpr std::size_t kLongestCachedRead = std::size_t{4} << 10;
constexpr std::size_t kLongestCall = std::size_t{16} << 20;

class SystemFile final : public MediumFile {
 public:
  explicit SystemFile(const Text& path)
      : file_(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr,
                          OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr)) {
    LARGE_INTEGER size{};
    if (IsOpen() && GetFileSizeEx(file_.Get(), &size) != FALSE && size.QuadPart > 0) {
      sizeBytes_ = static_cast<std::uint64_t>(size.QuadPart);
    }
  }

  [[nodiscard]] bool IsOpen() const { return file_.IsOpen(); }
  [[nodiscard]] std::uint64_t SizeBytes() const override { return sizeBytes_; }
  [[nodiscard]] bool ReadAt(std::uint64_t offset, void* bytes, std::size_t count) override;

 private:
  FileHandle file_;
  std::uint64_t sizeBytes_ = 0;
};

bool SystemFile::ReadAt(std::uint64_t offset, void* bytes, std::size_t count) {
  auto* to = static_cast<std::uint8_t*>(bytes);
  LARGE_INTEGER position{};
  position.QuadPart = static_cast<LONGLONG>(offset);
  if (SetFilePointerEx(file_.Get(), position, nullptr, FILE_BEGIN) == FALSE) return false;
  while (count > 0) {
    DWORD got = 0;
    const auto wanted = static_cast<DWORD>(std::min(count, kLongestCall));
    if (ReadFile(file_.Get(), to, wanted, &got, nullptr) == FALSE || got == 0) return false;
    to += got;
    count -= got;
  }
  return true;
}

}  // namespace

std::unique_ptr<MediumFile> OpenSystemFile(const Text& path) {
  auto file = std::make_unique<SystemFile>(path);
  if (!file->IsOpen()) return nullptr;
  return file;
}

ImageFile::ImageFile(std::unique_ptr<MediumFile> bytes) : bytes_(std::move(bytes)) {
  if (IsOpen()) sizeBytes_ = bytes_->SizeBytes();
}

bool ImageFile::ReadAt(std::uint64_t offset, void* bytes, std::size_t count) {
  if (!Holds(offset, count)) return false;
  auto* to = static_cast<std::uint8_t*>(bytes);
  if (count > kLongestCachedRead) return bytes_->ReadAt(offset, to, count);
  while (count > 0) {
    // A disc has sectors that nobody can read; what is asked for may lie beside them.
    if (!FillBlock(offset / kBlockBytes)) return bytes_->ReadAt(offset, to, count);
    const auto at = static_cast<std::size_t>(offset % kBlockBytes);
    const std::size_t piece = std::min(count, block_.size() - at);
    std::memcpy(to, block_.data() + at, piece);
    to += piece;
    offset += piece;
    count -= piece;
  }
  return true;
}

bool ImageFile::FillBlock(std::uint64_t block) {
  if (block == blockNumber_) return true;
  blockNumber_ = UINT64_MAX;
  const std::uint64_t start = block * kBlockBytes;
  block_.resize(static_cast<std::size_t>(std::min<std::uint64_t>(kBlockBytes, sizeBytes_ - start)));
  if (!bytes_->ReadAt(start, block_.data(), block_.size())) return false;
  blockNumber_ = block;
  return true;
}

ExtentBytes::ExtentBytes(ImageFile& image, const std::vector<ImageExtent>& extents,
                         std::uint64_t sizeBytes)
    : image_(image), sizeBytes_(sizeBytes) {
  std::uint64_t start = 0;
  for (const ImageExtent& extent : extents) {
    if (start == sizeBytes) break;
    const std::uint64_t bytes = std::min(extent.bytes, sizeBytes - start);
    if (bytes == 0) continue;
    if (!extent.isHole && !image.Holds(extent.offset, bytes)) return;
    pieces_.push_back({start, {extent.offset, bytes, extent.isHole}});
    start += bytes;
  }
  isWhole_ = start == sizeBytes;
}

bool ExtentBytes::ReadAt(std::uint64_t offset, void* bytes, std::size_t count) {
  if (!isWhole_ || offset > sizeBytes_ || count > sizeBytes_ - offset) return false;
  auto* to = static_cast<std::uint8_t*>(bytes);
  auto piece = std::upper_bound(pieces_.begin(), pieces_.end(), offset,
                                [](std::uint64_t at, const Piece& one) { return at < one.start; });
  for (; count > 0; ++piece) {
    // The one before holds the offset: they follow each other without a gap.
    const Piece& from = *std::prev(piece);
    const std::uint64_t within = offset - from.start;
    const auto part =
        static_cast<std::size_t>(std::min<std::uint64_t>(count, from.extent.bytes - within));
    if (from.extent.isHole) {
      std::memset(to, 0, part);
    } else if (!image_.ReadAt(from.extent.offset + within, to, part)) {
      return false;
    }
    to += part;
    offset += part;
    count -= part;
  }
  return true;
}

}  // namespace quillon
