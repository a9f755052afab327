// Lays a DICOMDIR out and writes it: preamble and "DICM", file meta information, the group 0004
// header elements, and the Directory Record Sequence whose items are the records, depth first.
// Two passes over the tree: the first appends every record, with its links left open; then all
// offsets are known, and the second fills the links in.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "dicom/types.h"

namespace quillon {

class DcDirDicomDir;
class DcDirRec;

class DcDirWriter {
 public:
  explicit DcDirWriter(DcDirDicomDir& dir) : dir_(dir) {}

  // All bytes of the file; kDcFileTooLarge above 512 MiB. Stores the records' offsets.
  DcCode encode();
  // Writes them in one piece under another name (fileName and ".NEW"), brings them to the disk and
  // then gives them their own: fileName is what it was, or whole, also after a crash.
  DcCode save(const std::string& fileName) const;

 private:
  struct MrdrLink {
    std::size_t valueAt;
    const DcDirRec* mrdr;
  };

  // Of the records below, never less than they take.
  static std::uint64_t mostBytes(const DcDirRec& parent);
  void appendMetaInformation();
  DcCode appendHeader();
  DcCode appendRecords(DcDirRec& parent);
  void linkRecords(const DcDirRec& parent);
  void fillInLinks();

  DcDirDicomDir& dir_;
  std::vector<std::uint8_t> bytes_;
  std::vector<MrdrLink> mrdrLinks_;
  std::size_t firstOffsetAt_ = 0;  // value of (0004,1200)
  std::size_t lastOffsetAt_ = 0;   // value of (0004,1202)
  std::size_t sequenceLengthAt_ = 0;
};

}  // namespace quillon
