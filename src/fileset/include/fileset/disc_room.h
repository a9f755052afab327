// How much room a set of files takes on a disc, before there is an image of it.
#pragma once

#include <cstdint>

namespace quillon {

inline constexpr std::uint64_t kDiscSectorBytes = 2048;

class DiscRoom {
 public:
  void AddFile(std::uint64_t sizeBytes) { AddFile(sizeBytes, sizeBytes); }
  // Of a file that is still to be written: what it has at the least and at the most.
  void AddFile(std::uint64_t leastBytes, std::uint64_t mostBytes);
  // Below the root of the disc, which is there without.
  void AddDirectory() { ++directories_; }
  void Add(const DiscRoom& other);

  [[nodiscard]] std::uint64_t Files() const { return files_; }
  [[nodiscard]] std::uint64_t Bytes() const { return bytes_; }  // at the least
  // What an image with ISO 9660 and Joliet, and with UDF where hasUdf, takes at the least, with the
  // shortest names that there can be, and at the most, with UDF and the longest. A real image lies
  // between, nearer to the least.
  [[nodiscard]] std::uint64_t LeastSectors(bool hasUdf) const;
  [[nodiscard]] std::uint64_t MostSectors() const;

 private:
  std::uint64_t files_ = 0;
  std::uint64_t directories_ = 0;
  std::uint64_t bytes_ = 0;
  std::uint64_t dataSectors_ = 0;
  std::uint64_t mostDataSectors_ = 0;
};

}  // namespace quillon
