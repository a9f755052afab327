#include "elem_value.h"

#include <algorithm>
#include <span>
#include <string_view>
#include <type_traits>
#include <utility>

#include "dicom/byte_order.h"
#include "dicom/text_scan.h"
#include "dicom/vr_table.h"
#include "dicomobjects/dicom_util.h"
#include "foundation/buffer.h"
#include "platform/services.h"
#include "value_text.h"

namespace quillon {

namespace {

// Longest text of a number or tag that the toolkit writes.
constexpr std::size_t kNumberTextBytes = 32;
constexpr OLECHAR kValueSeparator = OLESTR('\\');

template <typename Number>
bool ReadNumbers(DcElem& element, bool asArray, std::size_t maxEntries, DicomValue& value) {
  // Once the iterator has moved, index 0 would mean its position.
  element.resetIterator();
  const int count = element.valueCount();
  if (!asArray || count == 1) {
    Number number{};
    if (element.getValue(number, 0) != kDcOk) return false;
    value = number;
    return true;
  }
  std::vector<Number> numbers(std::min(static_cast<std::size_t>(count), maxEntries));
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    if (element.getValue(numbers[i], static_cast<int>(i)) != kDcOk) return false;
  }
  value = std::move(numbers);
  return true;
}

bool OneText(DcElem& element, int index, Text& text) {
  if (const auto stored = element.stringValue(index)) {
    text = WidenValue(trimmed(*stored));
    return true;
  }
  char number[kNumberTextBytes] = {};
  if (element.getValue(number, sizeof number, index) != kDcOk) return false;
  text = WidenValue(number);
  return true;
}

// Several values as one text stand in it as they do in the file, with backslashes between them.
bool ReadTexts(DcElem& element, bool asArray, std::size_t maxEntries, DicomValue& value) {
  element.resetIterator();
  const int count = element.valueCount();
  Text joined;
  if (count == 1 || !asArray) {
    for (int i = 0; i < count; ++i) {
      Text one;
      if (!OneText(element, i, one)) return false;
      if (i == 0) {
        joined = std::move(one);
      } else {
        joined.append(1, kValueSeparator).append(one);
      }
    }
    value = std::move(joined);
    return true;
  }
  std::vector<Text> texts(std::min(static_cast<std::size_t>(count), maxEntries));
  for (std::size_t i = 0; i < texts.size(); ++i) {
    if (!OneText(element, static_cast<int>(i), texts[i])) return false;
  }
  value = std::move(texts);
  return true;
}

// The bytes of a segment; those of a file segment are read into `loaded`. The length of
// encapsulated pixel data that stayed in its file is not known, so its bytes are not to be had
// here.
bool SegmentBytes(const DcElemValueBuf& segment, CBuffer& loaded,
                  std::span<const std::uint8_t>& bytes) {
  if (segment.storage() == DcElemValueBuf::Storage::Memory) {
    bytes = {segment.data(), segment.lengthBytes()};
    return true;
  }
  if (segment.lengthBytes() == kUndefinedLength) return false;
  bytes = {};
  if (segment.lengthBytes() == 0) return true;
  if (!CDicomUtil::ReadUNCToBuffer(WidenText(segment.fileName(), FileSystemCodePage()),
                                   segment.offsetInFile(), segment.lengthBytes(), loaded)) {
    return false;
  }
  bytes = {loaded.GetData(), loaded.GetSize()};
  return true;
}

template <typename Unit>
bool BulkUnits(const DcElem& element, std::vector<Unit>& units) {
  for (const DcElemValueBuf& segment : element.segments()) {
    CBuffer loaded;
    std::span<const std::uint8_t> bytes;
    if (!SegmentBytes(segment, loaded, bytes)) return false;
    const bool isBig = segment.transferSyntax() == DcUid::ExplicitBigEndian;
    units.reserve(units.size() + bytes.size() / sizeof(Unit));
    for (; bytes.size() >= sizeof(Unit); bytes = bytes.subspan(sizeof(Unit))) {
      units.push_back(isBig ? loadBe<Unit>(bytes.data()) : loadLe<Unit>(bytes.data()));
    }
  }
  return true;
}

// One entry is a single value, more are always an array.
template <typename Unit>
bool ReadBulk(const DcElem& element, DicomValue& value) {
  std::vector<Unit> units;
  if (!BulkUnits(element, units)) return false;
  if (units.size() > 1) {
    value = std::move(units);
  } else if (units.size() == 1) {
    value = units.front();
  }
  return true;
}

// UT: the toolkit keeps its text, which has no limit, as bytes.
bool ReadLongText(const DcElem& element, DicomValue& value) {
  std::vector<std::uint8_t> bytes;
  if (!ReadBulkBytes(element, bytes)) return false;
  if (bytes.empty()) return true;
  value = WidenValue(trimmed({reinterpret_cast<const char*>(bytes.data()), bytes.size()}));
  return true;
}

}  // namespace

bool ReadBulkBytes(const DcElem& element, std::vector<std::uint8_t>& bytes) {
  return BulkUnits(element, bytes);
}

DcVr ReadableVr(const DcElem& element, std::uint16_t bitsAllocated) {
  const DcVr vr = element.resolvedVr();
  if (vr != DcVr::OX) return vr;
  return bitsAllocated > 8 ? DcVr::OW : DcVr::OB;
}

bool ReadElementValue(DcElem& element, DcVr vr, bool asArray, DicomValue& value,
                      std::size_t maxEntries) {
  value = std::monostate{};
  const VrRow& row = vrRow(vr);
  if (row.storage == DcStorage::Segments) {
    if (vr == DcVr::UT) return ReadLongText(element, value);
    if (row.sizeClass == DcSizeClass::Words) return ReadBulk<std::uint16_t>(element, value);
    if (row.sizeClass == DcSizeClass::Floats) return ReadBulk<float>(element, value);
    return ReadBulk<std::uint8_t>(element, value);
  }
  if (element.valueCount() == 0) return true;
  // A single one that may be signed or not is text; several, such as a lookup table descriptor,
  // come as 16-bit entries.
  const bool isText = row.isPseudo() && !(vr == DcVr::XS && asArray && element.valueCount() > 1);
  return visitStorage(row.storage, [&]<typename Stored>(Stored) {
    if constexpr (std::is_arithmetic_v<Stored>) {
      if (!isText && row.number != DcNumber::Tag) {
        return ReadNumbers<Stored>(element, asArray, maxEntries, value);
      }
    }
    return ReadTexts(element, asArray, maxEntries, value);
  });
}

}  // namespace quillon
