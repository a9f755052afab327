#include "zip_source.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "image_file.h"
#include "medium_listing.h"
#include "platform/archive.h"
#include "platform/services.h"

namespace quillon {

namespace {

using Kind = MediumEntry::Kind;
using platform::ArchiveEntry;
using platform::ArchiveReader;

constexpr std::size_t kSkippedAtOnce = std::size_t{64} << 10;

// A reader, and how far it is.
struct Cursor {
  ArchiveReader reader;
  ArchiveEntry entry;  // the one that was reached last
  std::size_t next = 0;
};

class ZipSource final : public MediumSource {
 public:
  ZipSource(TextView path, const std::string& password) : path_(path), password_(password) {
    SetClassName(OLESTR("ZipSource"));
  }

  // Reads the list of the entries, so that what is no archive is refused at once.
  [[nodiscard]] bool Mount();
  [[nodiscard]] bool List(std::vector<MediumEntry>& entries) override {
    return listing_.Answer(entries);
  }
  [[nodiscard]] std::unique_ptr<MediumFile> Open(TextView path) override;

  // A reader at the first byte of that entry, null with a sentence. The idle one where it has not
  // passed it: so files that are read in their order cost one pass.
  std::unique_ptr<Cursor> CursorAt(std::size_t position);
  void GiveBack(std::unique_ptr<Cursor> cursor) { idle_ = std::move(cursor); }

 private:
  std::unique_ptr<Cursor> NewCursor();
  // What keeps the archive from being read, as a sentence's last words.
  static Text ReasonOf(const Cursor& cursor) {
    return WidenText(cursor.reader.reason(), FileSystemCodePage());
  }
  void AddEntry(const ArchiveEntry& entry, std::size_t position);
  [[nodiscard]] bool AddDirectories(TextView path, Text& directory);

  Text path_;
  std::string password_;
  MediumListing listing_{*this};
  std::vector<std::size_t> positions_;  // in the archive, of the listing's entries
  std::unique_ptr<Cursor> idle_;
};

class ZipFile final : public MediumFile {
 public:
  ZipFile(ZipSource& source, std::size_t position, std::uint64_t sizeBytes,
          std::unique_ptr<Cursor> cursor)
      : source_(source), position_(position), sizeBytes_(sizeBytes), cursor_(std::move(cursor)) {}
  ~ZipFile() override {
    if (cursor_) source_.GiveBack(std::move(cursor_));
  }
  ZipFile(const ZipFile&) = delete;
  ZipFile& operator=(const ZipFile&) = delete;

  [[nodiscard]] std::uint64_t SizeBytes() const override { return sizeBytes_; }
  [[nodiscard]] bool ReadAt(std::uint64_t offset, void* bytes, std::size_t count) override;

 private:
  [[nodiscard]] bool GoTo(std::uint64_t offset);

  ZipSource& source_;
  std::size_t position_;
  std::uint64_t sizeBytes_;
  std::unique_ptr<Cursor> cursor_;  // null after a failure
  std::uint64_t at_ = 0;
};

bool ZipFile::ReadAt(std::uint64_t offset, void* bytes, std::size_t count) {
  if (offset > sizeBytes_ || count > sizeBytes_ - offset) return false;
  if (count == 0) return true;
  if (!GoTo(offset) || !cursor_->reader.read(bytes, count)) {
    cursor_.reset();
    return false;
  }
  at_ += count;
  // With its last byte the checksum of all of them is known.
  if (at_ < sizeBytes_ || cursor_->reader.isAtSoundEnd()) return true;
  cursor_.reset();
  return false;
}

bool ZipFile::GoTo(std::uint64_t offset) {
  if (!cursor_ || offset < at_) {
    cursor_ = source_.CursorAt(position_);
    at_ = 0;
  }
  std::vector<char> skipped(static_cast<std::size_t>(
      std::min<std::uint64_t>(kSkippedAtOnce, cursor_ ? offset - at_ : 0)));
  while (cursor_ && at_ < offset) {
    const auto piece =
        static_cast<std::size_t>(std::min<std::uint64_t>(skipped.size(), offset - at_));
    if (!cursor_->reader.read(skipped.data(), piece)) return false;
    at_ += piece;
  }
  return cursor_ != nullptr;
}

std::unique_ptr<Cursor> ZipSource::NewCursor() {
  auto cursor = std::make_unique<Cursor>();
  if (cursor->reader.open(path_.c_str(), password_)) return cursor;
  SetErrorMessage(kMsgArchiveUnreadable, {path_, ReasonOf(*cursor)});
  return nullptr;
}

bool ZipSource::Mount() {
  std::unique_ptr<Cursor> cursor = NewCursor();
  if (!cursor) return false;
  while (!listing_.IsFull()) {
    switch (cursor->reader.next(cursor->entry)) {
      case ArchiveReader::Step::Entry:
        AddEntry(cursor->entry, cursor->next++);
        break;
      case ArchiveReader::Step::Failed:
        listing_.Tell(kMsgArchiveUnreadable, {path_, ReasonOf(*cursor)});
        return cursor->next > 0;
      case ArchiveReader::Step::End:
        return true;
    }
  }
  return true;
}

void ZipSource::AddEntry(const ArchiveEntry& entry, std::size_t position) {
  Text path = WidenText(entry.name, FileSystemCodePage());
  const bool isDirectory =
      entry.kind == ArchiveEntry::Kind::Directory || path.ends_with(OLESTR('/'));
  if (path.ends_with(OLESTR('/'))) path.pop_back();
  const std::size_t cut = path.rfind(OLESTR('/'));
  Text directory;
  if (cut != Text::npos && !AddDirectories(TextView(path).substr(0, cut), directory)) return;
  const TextView name = TextView(path).substr(cut == Text::npos ? 0 : cut + 1);
  if (isDirectory) {
    // Directories are named before their files, behind them or not at all.
    static_cast<void>(AddDirectories(path, directory));
    return;
  }
  const Kind kind = entry.kind == ArchiveEntry::Kind::File   ? Kind::File
                    : entry.kind == ArchiveEntry::Kind::Link ? Kind::Link
                                                             : Kind::Other;
  if (listing_.Add(directory, name, kind, entry.sizeBytes)) positions_.push_back(position);
}

// All levels of a path with slashes. directory gets it with backslashes.
bool ZipSource::AddDirectories(TextView path, Text& directory) {
  directory.clear();
  std::size_t levels = 0;
  for (;;) {
    const std::size_t end = std::min(path.find(OLESTR('/')), path.size());
    const TextView name = path.substr(0, end);
    const Text whole = MediumListing::Join(directory, name);
    const std::size_t known = listing_.Find(whole);
    if (++levels >= MediumListing::kMostLevels) {
      const auto most = static_cast<long long>(MediumListing::kMostLevels);
      listing_.Tell(kMsgMediumTooDeep, {whole, NumberText(most)});
      return false;
    }
    if (known == listing_.Count()) {
      if (!listing_.Add(directory, name, Kind::Directory, 0)) return false;
      positions_.push_back(0);
    } else if (listing_.At(known).kind != Kind::Directory) {
      listing_.Tell(kMsgMediumNameTwice, {whole});
      return false;
    }
    directory = whole;
    if (end == path.size()) return true;
    path.remove_prefix(end + 1);
  }
}

std::unique_ptr<Cursor> ZipSource::CursorAt(std::size_t position) {
  std::unique_ptr<Cursor> cursor = std::exchange(idle_, nullptr);
  if (!cursor || cursor->next > position) cursor = NewCursor();
  while (cursor && cursor->next <= position) {
    if (cursor->reader.next(cursor->entry) != ArchiveReader::Step::Entry) {
      SetErrorMessage(kMsgArchiveUnreadable, {path_, ReasonOf(*cursor)});
      return nullptr;
    }
    ++cursor->next;
  }
  return cursor;
}

std::unique_ptr<MediumFile> ZipSource::Open(TextView path) {
  const std::size_t index = listing_.Find(path);
  if (index == listing_.Count() || listing_.At(index).kind != Kind::File) {
    SetErrorMessage(kMsgMediumFileMissing, {path});
    return nullptr;
  }
  std::unique_ptr<Cursor> cursor = CursorAt(positions_[index]);
  if (!cursor) return nullptr;
  if (cursor->entry.isEncrypted && password_.empty()) {
    SetErrorMessage(kMsgArchiveEncrypted, {path});
    GiveBack(std::move(cursor));
    return nullptr;
  }
  return std::make_unique<ZipFile>(*this, positions_[index], listing_.At(index).sizeBytes,
                                   std::move(cursor));
}

}  // namespace

bool IsZip(const Text& path) {
  ImageFile file(OpenSystemFile(path));
  std::array<char, 4> signature{};
  return file.IsOpen() && file.ReadAt(0, signature.data(), signature.size()) &&
         std::string_view(signature.data(), 4) == std::string_view("PK\3\4", 4);
}

std::unique_ptr<MediumSource> OpenZip(TextView path, CBaseItem& errors,
                                      const std::string& password) {
  auto source = std::make_unique<ZipSource>(path, password);
  if (source->Mount()) return source;
  errors.FailAs(*source);
  return nullptr;
}

}  // namespace quillon
