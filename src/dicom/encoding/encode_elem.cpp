// Encodes one element: tag, VR (explicit forms), length, value.
#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>
#include <vector>

#include "dicom/byte_order.h"
#include "dicom/elem.h"
#include "dicom/element_form.h"
#include "dicom/log.h"
#include "dicom/tags.h"
#include "dicom/vr_table.h"

namespace quillon {
namespace {

constexpr const char* kFrameFunction = "DcElem::frame";
constexpr std::uint32_t kMaxShortLength = 0xFFFF;

std::uint8_t* storeVr(std::uint8_t* to, std::string_view code, bool isLong) {
  to[0] = static_cast<std::uint8_t>(code[0]);
  to[1] = static_cast<std::uint8_t>(code[1]);
  to += 2;
  if (isLong) {
    to[0] = 0;
    to[1] = 0;
    to += 2;
  }
  return to;
}

std::uint32_t frameText(const DcTextValues& values, char pad, std::uint8_t* to) {
  const std::string& joined = values.joined();
  std::ranges::replace_copy(joined, to, '\0', '\\');
  std::size_t chars = joined.size();
  if (chars % 2 != 0) to[chars++] = static_cast<std::uint8_t>(pad);
  return static_cast<std::uint32_t>(chars);
}

template <class T>
std::uint32_t frameNumbers(const std::vector<T>& values, bool big, std::uint8_t* to) {
  for (std::size_t i = 0; i < values.size(); ++i) {
    std::uint8_t* at = to + i * sizeof(T);
    big ? storeBe(at, values[i]) : storeLe(at, values[i]);
  }
  return static_cast<std::uint32_t>(values.size() * sizeof(T));
}

std::uint32_t frameTags(const std::vector<DcTag>& tags, bool big, std::uint8_t* to) {
  for (std::size_t i = 0; i < tags.size(); ++i) storeTag(to + i * sizeof(DcTag), tags[i], big);
  return static_cast<std::uint32_t>(tags.size() * sizeof(DcTag));
}

// Bytes that change their order together. Where OX is written as OB its bytes are a stream to
// every reader; in the implicit form they are words.
std::size_t swapUnit(const VrRow& row, DcUid syntax) {
  const bool isImplicit = syntax == DcUid::ImplicitLittleEndian;
  switch (isImplicit ? row.sizeClass : vrRow(row.writtenAs).sizeClass) {
    case DcSizeClass::Floats:
      return sizeof(float);
    case DcSizeClass::Words:
      return sizeof(std::uint16_t);
    default:
      return 1;
  }
}

void copySwapped(const std::uint8_t* from, std::size_t length, std::size_t unit, std::uint8_t* to) {
  std::size_t at = 0;
  for (; length - at >= unit; at += unit) {
    std::reverse_copy(from + at, from + at + unit, to + at);
  }
  std::memcpy(to + at, from + at, length - at);
}

struct Segments {
  std::uint64_t inMemory = 0;
  std::uint64_t inFiles = 0;
  bool hasMemory = false;
  bool hasFiles = false;
  [[nodiscard]] bool isMixed() const { return hasMemory && hasFiles; }
};

Segments measure(const std::vector<DcElemValueBuf>& segments) {
  Segments sum;
  for (const DcElemValueBuf& segment : segments) {
    const bool isFile = segment.storage() == DcElemValueBuf::Storage::File;
    (isFile ? sum.hasFiles : sum.hasMemory) = true;
    (isFile ? sum.inFiles : sum.inMemory) += segment.lengthBytes();
  }
  return sum;
}

// placed: bytes in the buffer. length: what the length field says, which counts the bytes that
// stay in files too.
struct Framed {
  std::uint32_t placed = 0;
  std::uint32_t length = 0;
};

DcCode frameValueOX(const DcElem& elem, const VrRow& row, DcUid syntax, std::uint8_t* to,
                    Framed& framed) {
  const Segments sum = measure(elem.segments());
  if (sum.isMixed()) {
    dcLog(DcLogLevel::Error, "DcElem::frameValueOX",
          "Element (%04x,%04x) - mixed memory/disk buffers, not processed", elem.group(),
          elem.element());
    return kDcOk;
  }
  if (elem.segments().empty()) return kDcOk;
  if (sum.inMemory + sum.inFiles >= kUndefinedLength - 1) return kDcNotAccepted;
  const std::uint8_t* start = to;
  const std::size_t unit = swapUnit(row, syntax);
  for (const DcElemValueBuf& segment : elem.segments()) {
    if (segment.storage() == DcElemValueBuf::Storage::File || segment.lengthBytes() == 0) continue;
    if (unit > 1 && isBigEndian(segment.transferSyntax()) != isBigEndian(syntax)) {
      copySwapped(segment.data(), segment.lengthBytes(), unit, to);
    } else {
      std::memcpy(to, segment.data(), segment.lengthBytes());
    }
    to += segment.lengthBytes();
  }
  framed.length = static_cast<std::uint32_t>(sum.inMemory + sum.inFiles);
  const bool isEncapsulated = elem.tag() == tags::kPixelData && !isUncompressed(syntax);
  // Some sources have values of odd length, which no file may have.
  if (sum.inMemory % 2 != 0 && !isEncapsulated) {
    *to++ = static_cast<std::uint8_t>(row.pad);
    ++framed.length;
  }
  if (isEncapsulated) {
    framed.length = kUndefinedLength;
    if (sum.hasMemory) {
      storeTag(to, tags::kSequenceDelimitationItem, false);
      storeLe32(to + sizeof(DcTag), 0);
      to += kDelimiterBytes;
    }
  }
  framed.placed = static_cast<std::uint32_t>(to - start);
  return kDcOk;
}

// The values that are no raw segments; `values` is the element's own storage.
template <class Values>
DcCode frameValueNonOX(const DcElem& elem, const Values& values, const VrRow& row,
                       DcSizeClass sizeClass, bool big, std::uint8_t* to, Framed& framed) {
  const bool isEmpty = std::holds_alternative<std::monostate>(values);
  if (!isEmpty && sizeClass == DcSizeClass::NoScalar) {
    dcLog(DcLogLevel::Error, "DcElem::frameValueNonOX", "Element (%04x,%04x) - Invalid VR size",
          elem.group(), elem.element());
    return kDcNotReadable;
  }
  framed.placed = std::visit(
      [&](const auto& list) -> std::uint32_t {
        using List = std::decay_t<decltype(list)>;
        if constexpr (std::is_same_v<List, std::monostate>) {
          return 0;
        } else if constexpr (std::is_same_v<List, DcTextValues>) {
          return frameText(list, row.pad, to);
        } else if constexpr (std::is_same_v<List, std::vector<std::uint32_t>>) {
          return row.number == DcNumber::Tag ? frameTags(list, big, to)
                                             : frameNumbers(list, big, to);
        } else {
          return frameNumbers(list, big, to);
        }
      },
      values);
  framed.length = framed.placed;
  return kDcOk;
}

// An element uses the syntax it carries where that is another way to encode the same form: it
// tells whether pixel data is encapsulated. The form itself is that of the data set around it.
DcUid syntaxToUse(DcUid carried, DcUid requested) {
  if (requested == DcUid::ImplicitLittleEndian || carried == DcUid::ImplicitLittleEndian) {
    return requested;
  }
  if (isBigEndian(carried) != isBigEndian(requested)) return requested;
  return isTransferSyntaxUid(carried) ? carried : requested;
}

// Refuses a length that the 2-byte field of the explicit form cannot hold.
DcCode frameValueLen(const DcElem& elem, std::uint8_t* to, std::size_t fieldBytes,
                     std::uint32_t length, bool big) {
  if (fieldBytes == sizeof(std::uint32_t)) {
    store32(to, length, big);
    return kDcOk;
  }
  if (length > kMaxShortLength) {
    dcLog(DcLogLevel::Error, "DcElem::frameValueLen",
          "Element (%04x,%04x) - Value Length 0x%x is too large for Explicit Transfer Syntax",
          elem.group(), elem.element(), static_cast<unsigned>(length));
    return kDcNotAccepted;
  }
  store16(to, static_cast<std::uint16_t>(length), big);
  return kDcOk;
}

}  // namespace

DcCode DcElem::frame(std::uint8_t* buffer, std::uint32_t& lengthOut, DcUid transferSyntax) {
  lengthOut = 0;
  if (buffer == nullptr) {
    dcLog(DcLogLevel::Error, kFrameFunction, "Element (%04x,%04x) - Null buffer passed", group(),
          element());
    return kDcNullArgument;
  }
  const DcVr vr = resolvedVr();
  const std::string_view code = vrCodeAsWritten(vr);
  if (code.empty() && vr != DcVr::SI) {
    dcLog(DcLogLevel::Error, kFrameFunction, "Element (%04x,%04x) - Invalid VR '%s'", group(),
          element(), vrRow(vr).code);
    return kDcNotReadable;
  }
  if (vr == DcVr::SQ) {
    dcLog(DcLogLevel::Error, kFrameFunction,
          "Element (%04x,%04x) - should be created as SQ, not element", group(), element());
    return kDcNotReadable;
  }
  if (const DcCode refused = checkTransferSyntax(transferSyntax); refused != kDcOk) return refused;
  const DcUid syntax = syntaxToUse(transferSyntax_, transferSyntax);
  const bool big = isBigEndian(syntax);
  const bool hasVr = syntax != DcUid::ImplicitLittleEndian && vr != DcVr::SI;

  storeTag(buffer, tag_, big);
  std::uint8_t* to = buffer + sizeof(DcTag);
  if (hasVr) to = storeVr(to, code, hasLongHeader(vr));
  std::uint8_t* lengthField = to;
  const std::size_t lengthFieldBytes =
      hasVr && !hasLongHeader(vr) ? sizeof(std::uint16_t) : sizeof(std::uint32_t);
  to += lengthFieldBytes;

  Framed framed;
  const VrRow& row = vrRow(vr);
  const DcCode valueCode = isBulkVr(vr)
                               ? frameValueOX(*this, row, syntax, to, framed)
                               : frameValueNonOX(*this, values_, row, sizeClass_, big, to, framed);
  if (valueCode != kDcOk) return valueCode;
  const DcCode lengthCode = frameValueLen(*this, lengthField, lengthFieldBytes, framed.length, big);
  if (lengthCode != kDcOk) return lengthCode;
  lengthOut = static_cast<std::uint32_t>(to - buffer) + framed.placed;
  return kDcOk;
}

}  // namespace quillon
