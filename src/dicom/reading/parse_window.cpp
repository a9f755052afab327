#include "parse_window.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <limits>
#include <new>

#include "dicom/log.h"

namespace quillon {
namespace {

constexpr std::size_t kFirstChunk = 16'384;
constexpr std::size_t kGrowth = 4;
// Longer beginnings are read when it is known how much of them is needed.
constexpr std::size_t kMaxHead = std::size_t{16} << 20;
constexpr std::uint64_t kUnknownPosition = std::numeric_limits<std::uint64_t>::max();

// The first chunk of the file before, for the next one: where thousands are read, a block of that
// size each time makes the allocator tidy up between two of them. It stays for the process.
std::atomic<std::uint8_t*> spareChunk = nullptr;

}  // namespace

DcCode openToRead(DcFile& file, const char* fileName, const char* function) {
  if (file.open(fileName, DcFile::Mode::Read)) return kDcOk;
  std::uint64_t size = 0;
  if (!DcFile::status(fileName, size)) {
    dcLog(DcLogLevel::Error, function, "stat error file '%s'", fileName);
    return kDcStatFailed;
  }
  dcLog(DcLogLevel::Error, function, "Error opening file '%s'", fileName);
  return kDcOpenFailed;
}

const std::uint8_t* FileWindow::Chunk::find(std::uint64_t position, std::size_t count) const {
  if (position < start || position - start > length) return nullptr;
  const auto at = static_cast<std::size_t>(position - start);
  return count <= length - at ? bytes.get() + at : nullptr;
}

bool FileWindow::Chunk::reserve(std::size_t wanted) {
  if (wanted <= capacity) return true;
  std::unique_ptr<std::uint8_t[]> larger;
  if (wanted <= kFirstChunk) {
    larger.reset(spareChunk.exchange(nullptr));
    wanted = kFirstChunk;
  }
  if (larger == nullptr) larger.reset(new (std::nothrow) std::uint8_t[wanted]);
  if (larger == nullptr) return false;
  if (length > 0) std::memcpy(larger.get(), bytes.get(), length);
  bytes = std::move(larger);
  capacity = wanted;
  return true;
}

FileWindow::FileWindow(DcFile& file, bool isAtStart)
    : file_(file), filePosition_(isAtStart ? 0 : kUnknownPosition) {}

FileWindow::~FileWindow() {
  if (head_.capacity != kFirstChunk) return;
  std::uint8_t* none = nullptr;
  if (spareChunk.compare_exchange_strong(none, head_.bytes.get())) {
    static_cast<void>(head_.bytes.release());  // it is the spare one now
  }
}

bool FileWindow::measure() { return file_.ask(status_); }

const std::uint8_t* FileWindow::at(std::uint64_t position, std::size_t count) {
  if (const std::uint8_t* found = head_.find(position, count)) return found;
  if (const std::uint8_t* found = aside_.find(position, count)) return found;
  if (position > size() || count > size() - position || count > kMaxPiece) return nullptr;
  const std::size_t larger = std::max(kFirstChunk, head_.length * kGrowth);
  if (head_.start + larger >= position + count && larger <= kMaxHead) {
    return grow(larger) ? head_.find(position, count) : nullptr;
  }
  return jump(position) ? aside_.find(position, count) : nullptr;
}

const std::uint8_t* FileWindow::inMemory(std::uint64_t position, std::size_t& count) const {
  for (const Chunk* chunk : {&head_, &aside_}) {
    if (const std::uint8_t* found = chunk->find(position, 1)) {
      count = chunk->length - static_cast<std::size_t>(position - chunk->start);
      return found;
    }
  }
  return nullptr;
}

bool FileWindow::grow(std::size_t wanted) {
  const auto length = static_cast<std::size_t>(std::min<std::uint64_t>(wanted, size()));
  const std::size_t kept = head_.length;
  if (!head_.reserve(length)) {
    fault_ = kDcNoMemory;
    return false;
  }
  if (!readAt(kept, head_.bytes.get() + kept, length - kept)) return false;
  head_.length = length;
  return true;
}

bool FileWindow::jump(std::uint64_t position) {
  const auto length =
      static_cast<std::size_t>(std::min<std::uint64_t>(kFirstChunk, size() - position));
  aside_.length = 0;
  if (!aside_.reserve(kFirstChunk)) {
    fault_ = kDcNoMemory;
    return false;
  }
  if (!readAt(position, aside_.bytes.get(), length)) return false;
  aside_.start = position;
  aside_.length = length;
  return true;
}

bool FileWindow::readAt(std::uint64_t position, std::uint8_t* to, std::size_t count) {
  if (count == 0) return true;
  std::size_t got = 0;
  if ((filePosition_ != position && !file_.seek(position)) || !file_.read(to, count, got) ||
      got != count) {
    filePosition_ = kUnknownPosition;
    fault_ = kDcReadFailed;
    return false;
  }
  filePosition_ = position + count;
  return true;
}

DcCode FileWindow::load(std::uint64_t from, std::uint64_t to, const std::uint8_t*& bytes) {
  const std::uint64_t length = to - from;
  bytes = nullptr;
  if (length <= std::numeric_limits<std::size_t>::max()) {
    bytes = head_.find(from, static_cast<std::size_t>(length));
  }
  if (bytes != nullptr) return kDcOk;
  if (length > std::numeric_limits<std::ptrdiff_t>::max()) return kDcNoMemory;
  const auto count = static_cast<std::size_t>(length);
  loaded_.reset(new (std::nothrow) std::uint8_t[count]);
  if (loaded_ == nullptr) return kDcNoMemory;
  std::size_t have = 0;
  if (from < head_.length) {
    have = head_.length - static_cast<std::size_t>(from);
    std::memcpy(loaded_.get(), head_.bytes.get() + from, have);
  }
  if (!readAt(from + have, loaded_.get() + have, count - have)) return kDcReadFailed;
  bytes = loaded_.get();
  return kDcOk;
}

}  // namespace quillon
