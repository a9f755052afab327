#include "archive_library.h"
#include "platform/archive.h"
#include "utf8_scope.h"

namespace quillon::platform {

namespace {

constexpr int kBlockBytes = 256 * 1024;
constexpr unsigned kFilePermissions = 0644;
constexpr unsigned kDirectoryPermissions = 0755;

}  // namespace

struct ArchiveWriter::State {
  const ArchiveLibrary* library = archiveLibrary();
  archive* writer = nullptr;
  archive_entry* entry = nullptr;
  Sink sink;
  bool hasSinkEnded = false;
  std::string reason;

  bool fail() {
    const char* const text = library->archive_error_string(writer);
    reason = hasSinkEnded ? "" : text != nullptr ? text : "it could not be made";
    return false;
  }
  bool check(int result) { return result == ARCHIVE_OK || fail(); }
  bool writeHeader(const std::string& name, unsigned type, std::uint64_t sizeBytes,
                   std::int64_t modified);
};

namespace {

template <typename State>
la_ssize_t pass(archive*, void* client, const void* bytes, std::size_t count) {
  auto& state = *static_cast<State*>(client);
  if (state.hasSinkEnded || !state.sink(bytes, count)) {
    state.hasSinkEnded = true;
    return -1;
  }
  return static_cast<la_ssize_t>(count);
}

}  // namespace

ArchiveWriter::ArchiveWriter(Sink sink) : state_(std::make_unique<State>()) {
  state_->sink = std::move(sink);
}

ArchiveWriter::~ArchiveWriter() {
  if (state_->entry != nullptr) state_->library->archive_entry_free(state_->entry);
  if (state_->writer == nullptr) return;
  // Otherwise it would end the archive as if it were whole.
  state_->hasSinkEnded = true;
  state_->library->archive_write_fail(state_->writer);
  state_->library->archive_write_free(state_->writer);
}

std::string ArchiveWriter::reason() const { return state_->reason; }

bool ArchiveWriter::open(const ArchiveOptions& options) {
  const Utf8Scope names;
  State& state = *state_;
  if (state.library == nullptr) {
    state.reason = kNoArchiveLibrary;
    return false;
  }
  const ArchiveLibrary& library = *state.library;
  state.writer = library.archive_write_new();
  state.entry = library.archive_entry_new();
  if (state.writer == nullptr || state.entry == nullptr) {
    state.reason = "there is not enough memory";
    return false;
  }
  archive* const writer = state.writer;
  const char* const method =
      options.compresses ? "zip:compression=deflate" : "zip:compression=store";
  return state.check(library.archive_write_set_format_zip(writer)) &&
         state.check(library.archive_write_set_options(writer, "zip:hdrcharset=UTF-8")) &&
         state.check(library.archive_write_set_options(writer, method)) &&
         (options.password.empty() ||
          (state.check(library.archive_write_set_options(writer, "zip:encryption=aes256")) &&
           state.check(library.archive_write_set_passphrase(writer, options.password.c_str())))) &&
         state.check(library.archive_write_set_bytes_per_block(writer, kBlockBytes)) &&
         state.check(library.archive_write_set_bytes_in_last_block(writer, 1)) &&
         state.check(library.archive_write_open(writer, &state, nullptr, pass<State>, nullptr));
}

bool ArchiveWriter::State::writeHeader(const std::string& name, unsigned type,
                                       std::uint64_t sizeBytes, std::int64_t modified) {
  const Utf8Scope names;
  library->archive_entry_free(entry);
  entry = library->archive_entry_new();
  if (entry == nullptr) return reason = "there is not enough memory", false;
  library->archive_entry_set_pathname_utf8(entry, name.c_str());
  library->archive_entry_set_filetype(entry, type);
  library->archive_entry_set_perm(entry,
                                  type == AE_IFDIR ? kDirectoryPermissions : kFilePermissions);
  library->archive_entry_set_size(entry, static_cast<la_int64_t>(sizeBytes));
  library->archive_entry_set_mtime(entry, modified, 0);
  return check(library->archive_write_header(writer, entry));
}

bool ArchiveWriter::beginFile(const std::string& name, std::uint64_t sizeBytes,
                              std::int64_t modified) {
  return state_->writeHeader(name, AE_IFREG, sizeBytes, modified);
}

bool ArchiveWriter::addDirectory(const std::string& name, std::int64_t modified) {
  return state_->writeHeader(name + "/", AE_IFDIR, 0, modified);
}

bool ArchiveWriter::write(const void* bytes, std::size_t count) {
  const auto* from = static_cast<const char*>(bytes);
  while (count > 0) {
    const auto taken = state_->library->archive_write_data(state_->writer, from, count);
    if (taken <= 0) return state_->fail();
    from += taken;
    count -= static_cast<std::size_t>(taken);
  }
  return true;
}

bool ArchiveWriter::close() {
  const Utf8Scope names;
  return state_->check(state_->library->archive_write_close(state_->writer)) &&
         (!state_->hasSinkEnded || state_->fail());
}

}  // namespace quillon::platform
