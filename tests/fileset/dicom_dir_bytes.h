// Reads the directory records of a DICOMDIR from its raw bytes, independently of the toolkit.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "support/dicom_bytes.h"

namespace quillon::test {

// Elements by tag: texts without their padding, sequences and numbers as raw bytes.
using RecordElements = std::map<std::uint32_t, std::string>;

struct DicomDirBytes {
  RecordElements header;                // groups 0002 and 0004 before the records
  std::vector<RecordElements> records;  // in file order, which is depth-first
};

// Throws std::runtime_error when the bytes do not add up.
DicomDirBytes readDicomDir(const Bytes& file);

// "PATIENT STUDY SERIES IMAGE ..."
std::string recordTypes(const DicomDirBytes& dicomDir);

}  // namespace quillon::test
