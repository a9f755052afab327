// Reads a DICOMDIR from disk into records. The file is hostile: every offset is checked, a byte
// belongs to one record at most, and levels are cut at kMaxNesting, so that the work is linear in
// the file's size whatever its links say.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "dicom/types.h"

namespace quillon {

class DcDirDicomDir;
class DcDirRec;

class DcDirReader {
 public:
  DcDirReader(DcDirDicomDir& dir, std::string fileName)
      : dir_(dir), fileName_(std::move(fileName)) {}

  // Adds what the file holds to an empty DICOMDIR; no such file is a success.
  DcCode read();

 private:
  struct Placed {
    std::uint32_t endAt;
    DcDirRec* record;  // null until the record has its place in the tree
  };

  DcCode readMetaInformation(std::uint64_t& dataSetOffset);
  DcCode load();
  DcCode readHeader(std::uint32_t headerAt, std::uint32_t& firstRecordAt);
  DcCode walkHeader(std::uint32_t headerAt, std::uint32_t& headerEndsAt);
  DcCode headerElement(std::uint32_t at, std::uint32_t& elementBytes) const;
  DcCode readLevel(DcDirRec& parent, std::uint32_t firstOffset, int depth);
  DcCode readRecord(DcDirRec& parent, std::uint32_t offset, DcDirRec*& record);
  DcCode readUnreachedMrdrs();
  void restoreMrdrLinks();
  [[nodiscard]] bool claim(std::uint32_t offset, std::uint32_t endAt);

  DcDirDicomDir& dir_;
  std::string fileName_;
  std::unique_ptr<std::uint8_t[]> file_;
  std::uint32_t fileBytes_ = 0;
  std::uint32_t sequenceAt_ = 0;  // first item of the Directory Record Sequence, 0 without one
  std::uint32_t sequenceEndsAt_ = 0;
  std::map<std::uint32_t, Placed> placed_;  // records read, by offset; none overlaps another
  std::vector<DcDirRec*> linked_;           // those that gave an offset of an MRDR
};

}  // namespace quillon
