// The bytes of a file that a parser steps over: its beginning in memory, read in growing chunks,
// and one more chunk somewhere behind it when a value was stepped over that is larger than that.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "dicom/file.h"
#include "dicom/types.h"

namespace quillon {

// Opens for reading. kDcStatFailed when there is no such file, else kDcOpenFailed.
DcCode openToRead(DcFile& file, const char* fileName, const char* function);

class FileWindow {
 public:
  // What at() can answer in one piece.
  static constexpr std::size_t kMaxPiece = 4096;

  // isAtStart: the file was just opened, so that the first read needs no seek.
  FileWindow(DcFile& file, bool isAtStart);
  ~FileWindow();
  FileWindow(const FileWindow&) = delete;
  FileWindow& operator=(const FileWindow&) = delete;
  // False when the size of the file cannot be obtained.
  [[nodiscard]] bool measure();
  [[nodiscard]] std::uint64_t size() const { return status_.sizeBytes; }
  // The file as it was measured.
  [[nodiscard]] const DcFileStatus& status() const { return status_; }
  // Bytes [position, position + count), valid until the next call; null behind the end of the file
  // and when they cannot be had, which fault() tells.
  const std::uint8_t* at(std::uint64_t position, std::size_t count);
  // The bytes from position on that are in memory as it is, with their count; null for none. Valid
  // as those of at().
  const std::uint8_t* inMemory(std::uint64_t position, std::size_t& count) const;
  // kDcOk, or why at() did not answer once: kDcReadFailed, kDcNoMemory.
  [[nodiscard]] DcCode fault() const { return fault_; }
  // All bytes [from, to) in one piece, valid while the window lives; the pieces that at() answered
  // are gone. kDcNoMemory or kDcReadFailed.
  DcCode load(std::uint64_t from, std::uint64_t to, const std::uint8_t*& bytes);

 private:
  struct Chunk {
    std::unique_ptr<std::uint8_t[]> bytes;
    std::uint64_t start = 0;
    std::size_t length = 0;
    std::size_t capacity = 0;
    [[nodiscard]] const std::uint8_t* find(std::uint64_t position, std::size_t count) const;
    [[nodiscard]] bool reserve(std::size_t wanted);
  };
  [[nodiscard]] bool grow(std::size_t wanted);
  [[nodiscard]] bool jump(std::uint64_t position);
  [[nodiscard]] bool readAt(std::uint64_t position, std::uint8_t* to, std::size_t count);

  DcFile& file_;
  DcFileStatus status_;
  std::uint64_t filePosition_;
  DcCode fault_ = kDcOk;
  Chunk head_;
  Chunk aside_;
  std::unique_ptr<std::uint8_t[]> loaded_;
};

}  // namespace quillon
