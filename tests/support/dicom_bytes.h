// Builds encoded DICOM bytes by hand, independently of the toolkit's encoder.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace quillon::test {

using Bytes = std::vector<std::uint8_t>;

enum class Syntax { ImplicitLittle, ExplicitLittle, ExplicitBig };

// Appends elements in the order of the calls; checks nothing. Sequences and items have defined
// lengths unless undefined is passed at their beginning.
class DataSetBytes {
 public:
  explicit DataSetBytes(Syntax syntax = Syntax::ExplicitLittle) : syntax_(syntax) {}

  // Pads odd lengths with a space (a zero byte for UI).
  DataSetBytes& text(std::uint32_t tag, std::string_view vr, std::string_view value);
  DataSetBytes& us(std::uint32_t tag, const std::vector<std::uint16_t>& values,
                   std::string_view vr = "US");
  DataSetBytes& ul(std::uint32_t tag, const std::vector<std::uint32_t>& values,
                   std::string_view vr = "UL");
  DataSetBytes& raw(std::uint32_t tag, std::string_view vr, const Bytes& value);
  // A header whose declared length need not be true.
  DataSetBytes& header(std::uint32_t tag, std::string_view vr, std::uint32_t declaredLength);
  DataSetBytes& append(const Bytes& bytes);
  DataSetBytes& beginSequence(std::uint32_t tag, bool undefined = false);
  DataSetBytes& endSequence();
  DataSetBytes& beginItem(bool undefined = false);
  DataSetBytes& endItem();
  // Encapsulated pixel data: undefined length, the fragments as items, the delimiter.
  DataSetBytes& encapsulated(const std::vector<Bytes>& fragments);

  [[nodiscard]] const Bytes& bytes() const { return bytes_; }
  [[nodiscard]] Bytes take() { return std::move(bytes_); }

 private:
  struct Open {
    std::size_t lengthAt;
    bool undefined;
  };
  void put16(std::uint16_t value);
  void put32(std::uint32_t value);
  void tag(std::uint32_t tag);

  Syntax syntax_;
  Bytes bytes_;
  std::vector<Open> open_;
};

// Preamble, "DICM", group 0002 (with its group length) and the data set.
Bytes dicomFile(const Bytes& dataSet, std::string_view sopClassUid, std::string_view sopInstanceUid,
                std::string_view transferSyntaxUid);

inline constexpr std::string_view kImplicitLittleUid = "1.2.840.10008.1.2";
inline constexpr std::string_view kExplicitLittleUid = "1.2.840.10008.1.2.1";
inline constexpr std::string_view kExplicitBigUid = "1.2.840.10008.1.2.2";

}  // namespace quillon::test
