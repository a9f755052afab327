#include "archive_library.h"
#include "platform/archive.h"
#include "utf8_scope.h"
#include "win32/path_translation.h"

namespace quillon::platform {

namespace {

constexpr std::size_t kBlockBytes = std::size_t{64} << 10;

std::string textOr(const char* text, const char* other) { return text != nullptr ? text : other; }

}  // namespace

struct ArchiveReader::State {
  const ArchiveLibrary* library = archiveLibrary();
  archive* reader = nullptr;
  std::string reason;

  bool fail() {
    reason = textOr(library->archive_error_string(reader), "it is damaged");
    return false;
  }
};

ArchiveReader::ArchiveReader() : state_(std::make_unique<State>()) {}

ArchiveReader::~ArchiveReader() {
  if (state_->reader != nullptr) state_->library->archive_read_free(state_->reader);
}

std::string ArchiveReader::reason() const { return state_->reason; }

// By its central directory alone, as every other program finds the entries.
bool ArchiveReader::open(LPCWSTR path, const std::string& password) {
  const Utf8Scope names;
  State& state = *state_;
  if (state.library == nullptr) {
    state.reason = kNoArchiveLibrary;
    return false;
  }
  state.reader = state.library->archive_read_new();
  if (state.reader == nullptr) return state.reason = "there is not enough memory", false;
  const NativePath native = translatePath(path);
  return (state.library->archive_read_support_format_zip_seekable(state.reader) == ARCHIVE_OK &&
          (password.empty() || state.library->archive_read_add_passphrase(
                                   state.reader, password.c_str()) == ARCHIVE_OK) &&
          state.library->archive_read_open_filename(state.reader, native.text.c_str(),
                                                    kBlockBytes) == ARCHIVE_OK) ||
         state.fail();
}

ArchiveReader::Step ArchiveReader::next(ArchiveEntry& entry) {
  const Utf8Scope names;
  State& state = *state_;
  const ArchiveLibrary& library = *state.library;
  archive_entry* found = nullptr;
  const int result = library.archive_read_next_header(state.reader, &found);
  if (result == ARCHIVE_EOF) return Step::End;
  if (result < ARCHIVE_WARN || found == nullptr) {
    state.fail();
    return Step::Failed;
  }
  // A name that is no UTF-8 is there as it stands only.
  const char* name = library.archive_entry_pathname_utf8(found);
  if (name == nullptr) name = library.archive_entry_pathname(found);
  entry.name = textOr(name, "");
  const auto size = library.archive_entry_size(found);
  entry.sizeBytes = size > 0 ? static_cast<std::uint64_t>(size) : 0;
  const auto type = library.archive_entry_filetype(found);
  entry.kind = type == AE_IFREG || type == 0 ? ArchiveEntry::Kind::File
               : type == AE_IFDIR            ? ArchiveEntry::Kind::Directory
               : type == AE_IFLNK            ? ArchiveEntry::Kind::Link
                                             : ArchiveEntry::Kind::Other;
  entry.isEncrypted = library.archive_entry_is_data_encrypted(found) != 0;
  return Step::Entry;
}

bool ArchiveReader::read(void* bytes, std::size_t count) {
  auto* to = static_cast<char*>(bytes);
  while (count > 0) {
    const auto got = state_->library->archive_read_data(state_->reader, to, count);
    if (got < 0) return state_->fail();
    if (got == 0) return state_->reason = "a file in it ends early", false;
    to += got;
    count -= static_cast<std::size_t>(got);
  }
  return true;
}

bool ArchiveReader::isAtSoundEnd() {
  char beyond = 0;
  const auto got = state_->library->archive_read_data(state_->reader, &beyond, 1);
  if (got < 0) return state_->fail();
  return got == 0;
}

}  // namespace quillon::platform
