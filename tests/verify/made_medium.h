// A small file set made by hand, and ways to make it faulty.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "support/memory_medium.h"
#include "support/object_maker.h"

namespace quillon::test {

struct MadeKey {
  std::string vr;
  std::string value;
};

struct MadeRecord {
  std::string type;
  std::optional<std::size_t> parent;  // none: the root
  std::map<std::uint32_t, MadeKey> keys;
  std::string fileId = {};  // empty: none
  std::string sopClassUid = {};
  std::string sopInstanceUid = {};
  std::string transferSyntaxUid = std::string(kExplicitLittleUid);
  bool hasReferences = true;
};

// PATIENT ID1, one study of two series: CT with two images, MR with one.
struct MadeMedium {
  enum Record : std::size_t { kPatient, kStudy, kSeries1, kImage1, kImage2, kSeries2, kImage3 };

  MadeMedium();
  // The DICOMDIR of the records as they are now.
  void makeDicomDir();
  // SHA256SUMS of all files as they are now.
  void makeSums();

  Bytes& file(const std::string& path);
  Bytes& dicomDir() { return file("DICOMDIR"); }
  // Fields of a record in the DICOMDIR that was made.
  void setNext(std::size_t record, std::uint32_t offset);
  void setLower(std::size_t record, std::uint32_t offset);
  void setInUse(std::size_t record, std::uint16_t flag);
  // In the header of the DICOMDIR: the first or the last record of the root, the length of the
  // sequence.
  void setHeader(std::uint32_t tag, std::uint32_t value);

  bool hasPreamble = true;
  std::string fileSetId = "SET";
  std::string sopClassUid = "1.2.840.10008.1.3.10";
  std::vector<MadeRecord> records;
  std::vector<std::uint32_t> offsets;  // of the records in the DICOMDIR that was made
  MemoryMedium medium;
};

inline constexpr const char* kFile1 = "DICOM\\IM000001";
inline constexpr const char* kFile2 = "DICOM\\IM000002";
inline constexpr const char* kFile3 = "DICOM\\IM000003";

}  // namespace quillon::test
