// What the DICOMDIR tests share: files to refer to, and a DICOMDIR taken apart by hand,
// independently of the toolkit's reader.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>

#include "dicom/dir_dicom_dir.h"
#include "toolkit_test_tools.h"

namespace quillon::test {

// A DICOM file with no more than what a record refers to.
void makeReferredFile(const std::filesystem::path& file, std::string_view sopClassUid,
                      std::string_view sopInstanceUid,
                      std::string_view transferSyntaxUid = kExplicitLittleUid);

// Elements of an explicit little endian stretch of bytes, by tag.
struct RawElement {
  std::string vr;
  std::size_t valueAt = 0;
  std::uint32_t lengthBytes = 0;
};
using RawElements = std::map<std::uint32_t, RawElement>;

// A DICOMDIR's bytes, read by position.
class RawDicomDir {
 public:
  explicit RawDicomDir(Bytes bytes);

  [[nodiscard]] std::uint32_t u16(std::size_t at) const;
  [[nodiscard]] std::uint32_t u32(std::size_t at) const;
  [[nodiscard]] std::string text(const RawElements& elements, std::uint32_t tag) const;
  // Elements in front of the Directory Record Sequence, groups 0002 and 0004.
  [[nodiscard]] const RawElements& header() const { return header_; }
  [[nodiscard]] std::size_t sequenceAt() const { return sequenceAt_; }
  [[nodiscard]] std::uint32_t headerOffset(std::uint32_t tag) const;
  // Elements of the record at an offset; empty when no item stands there.
  [[nodiscard]] RawElements record(std::uint32_t offset) const;
  [[nodiscard]] std::uint32_t link(std::uint32_t offset, std::uint32_t tag) const;
  [[nodiscard]] const Bytes& bytes() const { return bytes_; }
  // Names of types below an offset, following the links: "PATIENT(STUDY(SERIES(IMAGE IMAGE)))".
  [[nodiscard]] std::string tree(std::uint32_t offset) const;

 private:
  RawElements elements(std::size_t from, std::size_t to) const;

  Bytes bytes_;
  RawElements header_;
  std::size_t sequenceAt_ = 0;
};

// The same text from records in memory.
std::string treeOf(const DcDirRec& parent);

DcDirRec* addRecord(DcDirRec& parent, DcDirRecType type);
// A new PATIENT's STUDY's SERIES.
DcDirRec* addSeries(DcDirRec& root);
void addTextKey(DcDirRec& record, DcTag tag, const char* text);

}  // namespace quillon::test
