// Hand-made DICOM files for the tests of this folder: elements are put and taken out by tag, in any
// order, and come out ascending.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "dicom/elem.h"
#include "foundation/text.h"
#include "support/dicom_bytes.h"
#include "support/temp_dir.h"
#include "support/text.h"

namespace quillon::test {

// As the program runs: values stand in a data set as they stand in the file, right or wrong.
class UncheckedValues {
 public:
  UncheckedValues() { static_cast<void>(dcSetValueChecking(false)); }
  ~UncheckedValues() { static_cast<void>(dcSetValueChecking(true)); }
  UncheckedValues(const UncheckedValues&) = delete;
  UncheckedValues& operator=(const UncheckedValues&) = delete;
};

class ElementMap {
 public:
  explicit ElementMap(Syntax syntax = Syntax::ExplicitLittle) : syntax_(syntax) {}

  ElementMap& text(std::uint32_t tag, std::string_view vr, std::string_view value) {
    return put(tag, DataSetBytes(syntax_).text(tag, vr, value));
  }
  ElementMap& us(std::uint32_t tag, std::vector<std::uint16_t> values, std::string_view vr = "US") {
    return put(tag, DataSetBytes(syntax_).us(tag, std::move(values), vr));
  }
  ElementMap& ul(std::uint32_t tag, std::vector<std::uint32_t> values, std::string_view vr = "UL") {
    return put(tag, DataSetBytes(syntax_).ul(tag, std::move(values), vr));
  }
  ElementMap& raw(std::uint32_t tag, std::string_view vr, const Bytes& value) {
    return put(tag, DataSetBytes(syntax_).raw(tag, vr, value));
  }
  ElementMap& sequence(std::uint32_t tag, const std::vector<ElementMap>& items) {
    DataSetBytes bytes(syntax_);
    bytes.beginSequence(tag);
    for (const ElementMap& item : items) bytes.beginItem().append(item.bytes()).endItem();
    bytes.endSequence();
    return put(tag, bytes);
  }
  ElementMap& put(std::uint32_t tag, const DataSetBytes& element) {
    elements_[tag] = element.bytes();
    return *this;
  }
  ElementMap& without(std::uint32_t tag) {
    elements_.erase(tag);
    return *this;
  }

  [[nodiscard]] Bytes bytes() const {
    Bytes all;
    for (const auto& [tag, element] : elements_) {
      all.insert(all.end(), element.begin(), element.end());
    }
    return all;
  }

  static constexpr std::string_view kSopClass = "1.2.840.10008.5.1.4.1.1.7";
  static constexpr std::string_view kSopInstance = "1.2.826.0.1.3680043.2.1545.1";

  // The whole file, written as `name` into the directory; answers its path.
  Text write(const TempDir& directory, std::string_view name,
             std::string_view transferSyntax = {}) const {
    const std::string_view uid = !transferSyntax.empty()             ? transferSyntax
                                 : syntax_ == Syntax::ImplicitLittle ? kImplicitLittleUid
                                 : syntax_ == Syntax::ExplicitBig    ? kExplicitBigUid
                                                                     : kExplicitLittleUid;
    const std::filesystem::path file = directory / name;
    writeBytes(file, dicomFile(bytes(), kSopClass, kSopInstance, uid));
    return test::WideOf(file);
  }

 private:
  Syntax syntax_;
  std::map<std::uint32_t, Bytes> elements_;
};

// A colourless 2 by 2 image with everything that is asked of one.
inline ElementMap imageElements(Syntax syntax = Syntax::ExplicitLittle) {
  ElementMap map(syntax);
  map.text(0x00080016, "UI", ElementMap::kSopClass)
      .text(0x00080018, "UI", ElementMap::kSopInstance)
      .text(0x00080060, "CS", "OT")
      .text(0x00200013, "IS", "7")
      .us(0x00280002, {1})
      .text(0x00280004, "CS", "MONOCHROME2")
      .us(0x00280010, {2})
      .us(0x00280011, {3})
      .us(0x00280100, {16})
      .us(0x00280101, {12})
      .us(0x00280103, {1})
      .us(0x7FE00010, {1, 2, 3, 4, 5, 6}, "OW");
  return map;
}

}  // namespace quillon::test
