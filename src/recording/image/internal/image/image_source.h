// Reads the data of an image's files, each opened when its first byte is needed and closed after
// its last.
#pragma once

#include "image/layout_entry.h"

namespace quillon::platform {

// Whether a stream says of itself what it said when it was added; true where it said nothing then.
bool isStreamAsAdded(const FileSource& source, std::uint64_t size);

class SourceReader {
 public:
  SourceReader() = default;
  ~SourceReader() { close(); }
  SourceReader(const SourceReader&) = delete;
  SourceReader& operator=(const SourceReader&) = delete;

  // The bytes from offset on, which must lie within the entry's size. A file that is not what it
  // was when it was added gives IMAPI_E_DATA_STREAM_INCONSISTENCY, one that cannot be read
  // IMAPI_E_DATA_STREAM_READ_FAILURE.
  HRESULT read(const LayoutEntry& entry, std::uint64_t offset, std::uint8_t* buffer,
               std::uint32_t length);

 private:
  HRESULT readFile(const LayoutEntry& entry, std::uint64_t offset, std::uint8_t* buffer,
                   std::uint32_t length);
  HRESULT open(const LayoutEntry& entry);
  void close();

  const LayoutEntry* open_ = nullptr;
  int descriptor_ = -1;
};

}  // namespace quillon::platform
