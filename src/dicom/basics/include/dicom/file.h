// The toolkit's one door to the disk: 8-bit file names in the file-system code page, 64-bit
// offsets, no exceptions.
#pragma once

#include <cstddef>
#include <cstdint>

namespace quillon {

class DcByteSource;

// What an open file tells in one answer.
struct DcFileStatus {
  std::uint64_t sizeBytes = 0;
  std::uint64_t lastWriteTime = 0;  // a FILETIME as one number
  // Together they tell the file from every other.
  std::uint32_t volume = 0;
  std::uint64_t index = 0;
  std::uint32_t names = 0;  // of the file
};

class DcFile {
 public:
  enum class Mode { Read, CreateNew, CreateOrTruncate, Append };

  DcFile() = default;
  ~DcFile();
  DcFile(const DcFile&) = delete;
  DcFile& operator=(const DcFile&) = delete;

  // All answer false on failure; the platform's last error tells why.
  [[nodiscard]] bool open(const char* fileName, Mode mode);
  // To read bytes that lie elsewhere; the source lives as long as they are read. Of its status such
  // a file has the size alone, and it cannot be written.
  void open(DcByteSource& source);
  [[nodiscard]] bool size(std::uint64_t& sizeBytes) const;
  [[nodiscard]] bool ask(DcFileStatus& status) const;
  [[nodiscard]] bool seek(std::uint64_t offset);
  // readBytes is below lengthBytes only at the end of the file.
  [[nodiscard]] bool read(void* buffer, std::size_t lengthBytes, std::size_t& readBytes);
  [[nodiscard]] bool write(const void* buffer, std::size_t lengthBytes);
  // Waits until what was written is on the disk.
  [[nodiscard]] bool flush();
  // False when what was written may not be in the file.
  [[nodiscard]] bool close();
  [[nodiscard]] bool isOpen() const { return handle_ != nullptr || source_ != nullptr; }

  // Size of a regular file; false when there is none of that name.
  [[nodiscard]] static bool status(const char* fileName, std::uint64_t& sizeBytes);
  // Whether a new file may take the place of that name: no directory or write-protected file has
  // it.
  [[nodiscard]] static bool isReplaceable(const char* fileName);
  // Gives a file another name in its directory; a file (or link) that has it goes.
  [[nodiscard]] static bool replace(const char* fileName, const char* newName);
  [[nodiscard]] static bool remove(const char* fileName);

 private:
  void* handle_ = nullptr;
  DcByteSource* source_ = nullptr;
  std::uint64_t sourcePosition_ = 0;
};

}  // namespace quillon
