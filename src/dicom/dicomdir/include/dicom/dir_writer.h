// Lays a DICOMDIR out and writes it: preamble and "DICM", file meta information, the group 0004
// header elements, and the Directory Record Sequence whose items are the records, depth first.
// A record is encoded as it comes, and need not be kept: the links that lead to it are filled in
// then, into what is there of the records before it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "dicom/dir_bytes.h"
#include "dicom/dir_rec.h"
#include "dicom/types.h"

namespace quillon {

class DcDirDicomDir;

class DcDirWriter {
 public:
  // dir outlives this object: what its header says is written, into its root directory unless a
  // file name is given.
  explicit DcDirWriter(DcDirDicomDir& dir);
  DcDirWriter(DcDirDicomDir& dir, std::string fileName);

  // The header. Forgets records of before.
  DcCode begin();
  // The next record, in the order of the file: at the top for depth 0, else below the last one that
  // came with a depth one less. Stores its offset. kDcHierarchyError where it may not stand,
  // kDcNotAccepted for a key that cannot be written: it is as if the record had not come. Nothing
  // is to be written after kDcFileTooLarge (above 512 MiB) and kDcNoMemory. Links to MRDR records
  // stay 0.
  DcCode add(DcDirRec& record, std::size_t depth);
  // The header and the DICOMDIR's own records, links to MRDR records included. Stores the records'
  // offsets.
  DcCode encode();
  // Writes it all under another name (file name and ".NEW"), brings it to the disk and then gives
  // it its own: that file is what it was, or whole, also after a crash.
  DcCode save();

 private:
  struct MrdrLink {
    std::size_t valueAt;
    const DcDirRec* mrdr;
  };
  // The records that came last, from the top down, each with those below it as far as they have
  // come.
  struct Level {
    DcDirRecType parent;
    std::size_t lowerOffsetAt;     // of the parent: where the offset of its first record stands
    std::uint32_t lastOffset = 0;  // of the last record here, 0 without one
  };

  void appendMetaInformation(std::vector<std::uint8_t>& bytes);
  DcCode appendHeader();
  DcCode append(DcDirRec& record, std::size_t depth);
  DcCode appendRecords(DcDirRec& parent, std::size_t depth);
  void link(const DcDirRec& record, std::size_t depth);
  static void noteLinks(const DcDirRec& parent);
  [[nodiscard]] DcCode noMemory() const;

  DcDirDicomDir& dir_;
  std::string fileName_;
  DcDirBytes bytes_;
  std::vector<std::uint8_t> record_;  // being encoded
  std::vector<Level> levels_;
  std::vector<MrdrLink> mrdrLinks_;
  std::uint32_t lastRootOffset_ = 0;  // of the last record at the top that is no MRDR
  std::size_t firstOffsetAt_ = 0;     // value of (0004,1200)
  std::size_t lastOffsetAt_ = 0;      // value of (0004,1202)
  std::size_t sequenceLengthAt_ = 0;
};

}  // namespace quillon
