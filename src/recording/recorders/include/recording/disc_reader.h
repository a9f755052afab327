// Linux only: the disc in a recorder, drive or virtual one, as its bytes. Every failure carries a
// sentence.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "recording/disc_result.h"

namespace quillon::platform {

// The bytes of the disc in a recorder, which no other client has while the reader lives.
class DiscReader {
 public:
  virtual ~DiscReader() = default;
  DiscReader(const DiscReader&) = delete;
  DiscReader& operator=(const DiscReader&) = delete;

  [[nodiscard]] virtual const std::string& recorder() const = 0;
  // The kind of disc, as in DiscRecorderStatus.
  [[nodiscard]] virtual const std::string& media() const = 0;
  // As far as the disc can hold data; some of its last sectors may be none.
  [[nodiscard]] virtual std::uint64_t sizeBytes() const = 0;
  // All of the bytes [offset, offset + count), from the disc itself and not from what the system
  // remembers of it. False, and failure says why: it names the first sector that cannot be read.
  [[nodiscard]] virtual bool readAt(std::uint64_t offset, void* bytes, std::size_t count) = 0;
  // Of the last reading that failed; E_IMAPI_REQUEST_CANCELLED once the disc operations of the
  // process have been stopped.
  [[nodiscard]] virtual const DiscResult& failure() const = 0;

 protected:
  DiscReader() = default;
};

// Takes a recorder for its disc to be read, a mounted one out of the file system: the one of that
// name, or for an empty one the first whose disc holds something. Fails without a disc, with a
// blank one, while another client has the recorder, and while the drive is becoming ready
// (E_IMAPI_RECORDER_MEDIA_BECOMING_READY or _BUSY: to be asked again).
DiscResult openDisc(const std::string& recorder, std::unique_ptr<DiscReader>& disc);

}  // namespace quillon::platform
