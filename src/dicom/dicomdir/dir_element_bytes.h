// Appends single elements of groups 0002 and 0004 in Explicit VR Little Endian to a file that is
// being laid out. The VR is the dictionary's.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "dicom/types.h"

namespace quillon {

class DcDirElementBytes {
 public:
  explicit DcDirElementBytes(std::vector<std::uint8_t>& file) : file_(file) {}

  void text(DcTag tag, std::string_view value);
  void parts(DcTag tag, const std::vector<std::string>& values);  // joined by "\"
  // Answers where the value stands, for an offset that is known only later.
  std::size_t ul(DcTag tag, std::uint32_t value);
  void us(DcTag tag, std::uint16_t value);
  void ob(DcTag tag, const std::uint8_t* bytes, std::size_t lengthBytes);
  // Tag and 4-byte length of an item, or of the sequence; answers where the length stands.
  std::size_t itemHeader();
  std::size_t sequenceHeader(DcTag tag);

  // Of everything appended so far: kDcNotAccepted when a text did not fit its 2-byte length. Such
  // a text was logged and written empty.
  [[nodiscard]] DcCode code() const { return code_; }

 private:
  // Each appends zeros in one step, valid until the next; the forms answer where the value goes.
  std::uint8_t* grow(std::size_t bytes);
  std::uint8_t* shortForm(DcTag tag, std::size_t valueBytes);
  std::uint8_t* longForm(DcTag tag, std::size_t valueBytes);

  std::vector<std::uint8_t>& file_;
  DcCode code_ = kDcOk;
};

}  // namespace quillon
