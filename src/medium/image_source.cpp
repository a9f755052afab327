#include "image_source.h"

#include <array>
#include <string_view>
#include <unordered_set>
#include <utility>

#include "image_file_system.h"
#include "medium_listing.h"

namespace quillon {

namespace {

using Kind = MediumEntry::Kind;

class ExtentFile final : public MediumFile {
 public:
  explicit ExtentFile(ExtentBytes bytes) : bytes_(std::move(bytes)) {}
  [[nodiscard]] std::uint64_t SizeBytes() const override { return bytes_.SizeBytes(); }
  [[nodiscard]] bool ReadAt(std::uint64_t offset, void* bytes, std::size_t count) override {
    return bytes_.ReadAt(offset, bytes, count);
  }

 private:
  ExtentBytes bytes_;
};

class ImageSource final : public MediumSource {
 public:
  explicit ImageSource(std::unique_ptr<MediumFile> bytes) : image_(std::move(bytes)) {
    SetClassName(OLESTR("ImageSource"));
  }

  [[nodiscard]] bool Mount(TextView name);
  [[nodiscard]] bool List(std::vector<MediumEntry>& entries) override {
    Walk();
    return listing_.Answer(entries);
  }
  [[nodiscard]] std::unique_ptr<MediumFile> Open(TextView path) override;

 private:
  void Walk();
  void Visit(const ImageItem& directory, const Text& path, std::size_t level);

  ImageFile image_;
  std::unique_ptr<ImageFileSystem> system_;
  MediumListing listing_{*this};
  std::vector<ImageItem> items_;  // of the listing's entries, without their names
  std::unordered_set<std::uint64_t> visited_;
  std::size_t pending_ = 0;  // items that were read and not added yet
  bool isWalked_ = false;
};

bool ImageSource::Mount(TextView name) {
  if (!image_.IsOpen()) return Fail(kMsgCannotOpenFile, {name});
  Text unsupported;
  system_ = OpenUdf(image_, unsupported);
  if (!system_) system_ = OpenIso9660(image_);
  if (system_) return true;
  return unsupported.empty() ? Fail(kMsgImageWithoutFileSystem, {name})
                             : Fail(kMsgImageUdfUnsupported, {name, unsupported});
}

void ImageSource::Walk() {
  if (!std::exchange(isWalked_, true)) Visit(system_->Root(), {}, 1);
}

void ImageSource::Visit(const ImageItem& directory, const Text& path, std::size_t level) {
  if (level > MediumListing::kMostLevels) {
    const auto most = static_cast<long long>(MediumListing::kMostLevels);
    return listing_.Tell(kMsgMediumTooDeep, {path, NumberText(most)});
  }
  if (!visited_.insert(directory.location).second) {
    return listing_.Tell(kMsgMediumDirectoryLoop, {path});
  }
  // One more than there is room for shows that there are too many.
  const std::size_t room = listing_.Room() - std::min(listing_.Room(), pending_) + 1;
  std::vector<ImageItem> found;
  if (!system_->ReadDirectory(directory, room, found)) {
    listing_.Tell(kMsgMediumDirectoryDamaged, {path.empty() ? TextView(OLESTR("\\")) : path});
  }
  pending_ += found.size();
  for (ImageItem& item : found) {
    --pending_;
    if (listing_.IsFull() || !listing_.Add(path, item.name, item.kind, item.sizeBytes)) continue;
    const Text below = item.kind == Kind::Directory ? MediumListing::Join(path, item.name) : Text();
    item.name.clear();
    items_.push_back(item);
    if (item.kind == Kind::Directory) Visit(item, below, level + 1);
  }
}

std::unique_ptr<MediumFile> ImageSource::Open(TextView path) {
  Walk();
  const std::size_t index = listing_.Find(path);
  if (index == listing_.Count() || listing_.At(index).kind != Kind::File) {
    SetErrorMessage(kMsgMediumFileMissing, {path});
    return nullptr;
  }
  std::vector<ImageExtent> extents;
  if (system_->FindExtents(items_[index], extents)) {
    ExtentBytes bytes(image_, extents, items_[index].sizeBytes);
    if (bytes.IsWhole()) return std::make_unique<ExtentFile>(std::move(bytes));
  }
  SetErrorMessage(kMsgMediumFileNotWhole, {path});
  return nullptr;
}

}  // namespace

bool IsImage(const Text& path) {
  constexpr std::uint64_t kFirstIdentifierAt = 16 * 2048 + 1;
  ImageFile image(OpenSystemFile(path));
  std::array<char, 5> identifier{};
  if (!image.IsOpen() || !image.ReadAt(kFirstIdentifierAt, identifier.data(), identifier.size())) {
    return false;
  }
  const std::string_view text(identifier.data(), identifier.size());
  return text == "CD001" || text == "BEA01" || text == "NSR02" || text == "NSR03";
}

std::unique_ptr<MediumSource> OpenImage(TextView path, CBaseItem& errors) {
  return OpenImage(OpenSystemFile(Text(path)), path, errors);
}

std::unique_ptr<MediumSource> OpenImage(std::unique_ptr<MediumFile> bytes, TextView name,
                                        CBaseItem& errors) {
  auto source = std::make_unique<ImageSource>(std::move(bytes));
  if (source->Mount(name)) return source;
  errors.FailAs(*source);
  return nullptr;
}

}  // namespace quillon
