// The bytes of a DICOMDIR: its meta information, what stands in front of its records, and where
// each record lies.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "findings.h"
#include "raw_elements.h"

namespace quillon {

class DicomDirFile {
 public:
  explicit DicomDirFile(std::string bytes) : bytes_(std::move(bytes)) {}

  // Looks at all but the records' contents. False when there are no records to look at.
  [[nodiscard]] bool Read(Findings& findings);

  [[nodiscard]] std::size_t RecordCount() const { return places_.size(); }
  [[nodiscard]] std::uint32_t OffsetOf(std::size_t record) const { return places_[record].at; }
  // The record that begins at an offset.
  [[nodiscard]] std::optional<std::size_t> RecordAt(std::uint32_t offset) const;
  [[nodiscard]] RawElements ElementsOf(std::size_t record) const;

  // It was told already that this record is damaged.
  [[nodiscard]] bool IsToldDamaged(std::size_t record) const;

  // Offset of the first record of the root; 0 for none. Where the file does not say, that of the
  // first record.
  [[nodiscard]] std::uint32_t RootOffset() const { return rootOffset_; }
  [[nodiscard]] std::optional<std::uint32_t> LastOffset() const { return lastOffset_; }

 private:
  struct Place {
    std::uint32_t at;
    std::uint32_t valueAt;
    std::uint32_t valueEnd;
  };
  // Both answer where they end.
  std::size_t ReadMeta(std::size_t begin, Findings& findings) const;
  std::size_t ReadHeader(std::size_t begin, Findings& findings);
  void CheckMeta(const RawElements& meta, Findings& findings) const;
  void IndexRecords(std::size_t begin, std::size_t end, bool isOpen, bool isCut,
                    Findings& findings);
  void AddRecord(std::size_t at, std::size_t valueAt, std::size_t valueEnd);
  // Goes on behind damaged bytes: answers where, after the place before or a new one was cut to
  // what can be its record.
  [[nodiscard]] std::size_t Resume(std::size_t at, std::size_t end);
  [[nodiscard]] std::size_t FindRecord(std::size_t from) const;

  std::string bytes_;
  std::vector<Place> places_;  // by offset
  std::vector<std::uint32_t> toldDamaged_;
  bool hasRootOffset_ = false;
  std::uint32_t rootOffset_ = 0;
  std::optional<std::uint32_t> lastOffset_;
};

// Where findings of the DICOMDIR lie that concern no record.
FaultPlace InDicomDir();

}  // namespace quillon
