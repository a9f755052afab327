// ZIP files, read and written as streams: no more than a few blocks of one is ever in memory. Where
// the system's library is missing, opening fails and says so.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "platform/win32.h"

namespace quillon::platform {

struct ArchiveEntry {
  enum class Kind : std::uint8_t { File, Directory, Link, Other };

  std::string name;  // UTF-8, or the bytes that stand there; parts after slashes
  std::uint64_t sizeBytes = 0;
  Kind kind = Kind::File;
  bool isEncrypted = false;
};

// Goes through the entries in their order, once.
class ArchiveReader {
 public:
  enum class Step : std::uint8_t { Entry, End, Failed };

  ArchiveReader();
  ~ArchiveReader();
  ArchiveReader(const ArchiveReader&) = delete;
  ArchiveReader& operator=(const ArchiveReader&) = delete;

  // After a failure reason() tells, without a stop. password: of entries that are encrypted; empty:
  // none is known.
  [[nodiscard]] bool open(LPCWSTR path, const std::string& password = {});
  // Goes to the next entry, over what has not been read of this one.
  [[nodiscard]] Step next(ArchiveEntry& entry);
  // The next bytes of the entry. False when it has not so many.
  [[nodiscard]] bool read(void* bytes, std::size_t count);
  // Whether that was all of the entry, with the checksum that the archive has for it.
  [[nodiscard]] bool isAtSoundEnd();
  [[nodiscard]] std::string reason() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

struct ArchiveOptions {
  bool compresses = false;  // else the bytes are stored
  std::string password;     // AES-256; empty: none
};

// Linux only.
class ArchiveWriter {
 public:
  // Takes the bytes of the archive in their order; false ends it.
  using Sink = std::function<bool(const void* bytes, std::size_t count)>;

  explicit ArchiveWriter(Sink sink);
  ~ArchiveWriter();
  ArchiveWriter(const ArchiveWriter&) = delete;
  ArchiveWriter& operator=(const ArchiveWriter&) = delete;

  // After a failure reason() tells, without a stop; it is empty when the sink has ended it.
  [[nodiscard]] bool open(const ArchiveOptions& options);
  // A name with slashes between its parts. Exactly so many bytes have to follow.
  [[nodiscard]] bool beginFile(const std::string& name, std::uint64_t sizeBytes,
                               std::int64_t modified);
  [[nodiscard]] bool write(const void* bytes, std::size_t count);
  [[nodiscard]] bool addDirectory(const std::string& name, std::int64_t modified);
  // Without it there is no archive.
  [[nodiscard]] bool close();
  [[nodiscard]] std::string reason() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

// Linux only. The version of libarchive ("3.6.2"), which it loads; empty where it cannot be loaded.
std::string archiveLibraryVersion();

}  // namespace quillon::platform
