// Values on their way out of an element.
#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "dicom/convert.h"
#include "dicom/dict.h"
#include "dicom/elem.h"
#include "dicom/log.h"
#include "dicom/text_scan.h"
#include "dicom/text_to_number.h"
#include "dicom/vr_table.h"

namespace quillon {
namespace {

constexpr const char* kGetValue = "DcElem::getValue";

constexpr bool isShortInteger(DcVr vr) {
  return vr == DcVr::SS || vr == DcVr::XS || vr == DcVr::US;
}
constexpr bool isLongInteger(DcVr vr) { return vr == DcVr::SL || vr == DcVr::XL || vr == DcVr::UL; }

// Which VRs can be read as a number of type T.
template <typename T>
constexpr bool isReadableAs(DcVr vr) {
  if (vr == DcVr::IS || isShortInteger(vr)) return true;
  if constexpr (std::is_floating_point_v<T>) {
    return isLongInteger(vr) || vr == DcVr::DS || vr == DcVr::FL || vr == DcVr::FD;
  } else if constexpr (sizeof(T) == sizeof(std::int32_t)) {
    return isLongInteger(vr) || vr == DcVr::AT;
  } else {
    return false;
  }
}

template <typename T>
T numberOf(std::string_view text) {
  if constexpr (std::is_floating_point_v<T>) {
    return static_cast<T>(textToDouble(text));
  } else if constexpr (std::is_same_v<T, std::uint32_t>) {
    return textToUint32(text);
  } else {
    return static_cast<T>(textToInt32(text));
  }
}

DcCode refuseReading(const DcElem& element, const char* type) {
  const VrRow& row = vrRow(element.resolvedVr());
  dcLog(DcLogLevel::Error, kGetValue, "Element (%04x,%04x) VR=%s, cannot get value as %s",
        element.group(), element.element(), row.pseudo ? "" : row.code, type);
  return kDcNotReadable;
}

std::string_view printReal(std::array<char, 32>& buffer, double value) {
  const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                    std::chars_format::general, 6);
  return {buffer.data(), static_cast<std::size_t>(result.ptr - buffer.data())};
}

std::string_view printTag(std::array<char, 32>& buffer, DcTag tag) {
  const int length =
      std::snprintf(buffer.data(), buffer.size(), "(%04x,%04x)",
                    static_cast<unsigned>(dcGroup(tag)), static_cast<unsigned>(dcElement(tag)));
  return {buffer.data(), static_cast<std::size_t>(length)};
}

template <typename T>
std::string_view printInteger(std::array<char, 32>& buffer, T value) {
  const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
  return {buffer.data(), static_cast<std::size_t>(result.ptr - buffer.data())};
}

}  // namespace

DcCode DcElem::locate(int index, std::size_t& position) const {
  const int count = valueCount();
  if (count == 0) return kDcNoValue;
  if (index == kAtIterator || index == 0) index = iterator_;
  if (index == count) return kDcNoMoreValues;
  if (index < 0 || index > count) {
    dcLog(DcLogLevel::Error, kGetValue,
          "Element (%04x,%04x) index (=%d) out of range, value count = %d", group(), element(),
          index, count);
    return kDcIndexOutOfRange;
  }
  position = static_cast<std::size_t>(index);
  return kDcOk;
}

void DcElem::moveIterator(int index) {
  if (index == kAtIterator && iterator_ < valueCount()) ++iterator_;
}

template <typename T>
DcCode DcElem::getNumber(T& value, int index, const char* type) {
  if (!isReadableAs<T>(resolvedVr())) return refuseReading(*this, type);
  std::size_t position = 0;
  const DcCode code = locate(index, position);
  if (code != kDcOk) return code;
  value = std::visit(
      [position](const auto& values) -> T {
        using Stored = std::decay_t<decltype(values)>;
        if constexpr (std::is_same_v<Stored, std::monostate>) {
          return T{};
        } else if constexpr (std::is_same_v<Stored, DcTextValues>) {
          return numberOf<T>(values[position]);
        } else {
          return static_cast<T>(values[position]);
        }
      },
      values_);
  moveIterator(index);
  return kDcOk;
}

DcCode DcElem::getValue(char* buffer, std::size_t bufferBytes, int index) {
  if (buffer == nullptr) {
    dcLog(DcLogLevel::Error, kGetValue, "Null argument passed");
    return kDcNullArgument;
  }
  const DcStorage storage = vrStorage(resolvedVr());
  if (storage == DcStorage::None || storage == DcStorage::Segments) {
    return refuseReading(*this, "string");
  }
  std::size_t position = 0;
  DcCode code = locate(index, position);
  if (code != kDcOk) return code;

  std::array<char, 32> printed{};
  const bool isTag = resolvedVr() == DcVr::AT;
  const std::string_view text = std::visit(
      [&printed, position, isTag](const auto& values) -> std::string_view {
        using Stored = std::decay_t<decltype(values)>;
        if constexpr (std::is_same_v<Stored, std::monostate>) {
          return {};
        } else if constexpr (std::is_same_v<Stored, DcTextValues>) {
          return values[position];
        } else if constexpr (std::is_floating_point_v<typename Stored::value_type>) {
          return printReal(printed, static_cast<double>(values[position]));
        } else {
          if (isTag) return printTag(printed, static_cast<DcTag>(values[position]));
          return printInteger(printed, values[position]);
        }
      },
      values_);

  std::string_view copied = text;
  if (text.size() >= bufferBytes) {  // the terminating zero takes a byte as well
    copied = text.substr(0, bufferBytes == 0 ? 0 : bufferBytes - 1);
    dcLog(DcLogLevel::Warning, kGetValue, "Element (%04x,%04x) buffer too short, value truncated",
          group(), element());
    code = kDcBufferTooShort;
  }
  copied = trimmed(copied);
  if (bufferBytes != 0) {
    std::copy(copied.begin(), copied.end(), buffer);
    buffer[copied.size()] = '\0';
  }
  moveIterator(index);
  return code;
}

DcCode DcElem::getValue(std::int16_t& value, int index) {
  return getNumber(value, index, "signed short");
}
DcCode DcElem::getValue(std::uint16_t& value, int index) {
  return getNumber(value, index, "unsigned short");
}
DcCode DcElem::getValue(std::int32_t& value, int index) {
  return getNumber(value, index, "signed long");
}
DcCode DcElem::getValue(std::uint32_t& value, int index) {
  return getNumber(value, index, "32 bit unsigned int");
}
DcCode DcElem::getValue(float& value, int index) { return getNumber(value, index, "float"); }
DcCode DcElem::getValue(double& value, int index) { return getNumber(value, index, "double"); }

DcCode DcElem::getValue(DcElemValueAS& value, int index) {
  if (resolvedVr() != DcVr::AS) return refuseReading(*this, "DcElemValueAS");
  std::size_t position = 0;
  DcCode code = locate(index, position);
  if (code != kDcOk) return code;
  const std::optional<std::string_view> text = stringValue(static_cast<int>(position));
  code = text ? utilStrgToValue(tag_, *text, &value) : kDcNoValue;
  if (code == kDcOk) moveIterator(index);
  return code;
}

DcCode DcElem::getValue(DcElemValueAT& value, int index) {
  if (resolvedVr() != DcVr::AT) return refuseReading(*this, "DcElemValueAT");
  DcTag tag = 0;
  const DcCode code = getValue(tag, index);
  if (code == kDcOk) value = {dcGroup(tag), dcElement(tag)};
  return code;
}

DcCode DcElem::getValue(DcUid& uid, int index) {
  if (resolvedVr() != DcVr::UI) return refuseReading(*this, "DICT_UID");
  std::size_t position = 0;
  DcCode code = locate(index, position);
  if (code != kDcOk) return code;
  const std::optional<std::string_view> text = stringValue(static_cast<int>(position));
  code = text ? theDictionary().getUidDef(text->data(), &uid) : kDcNoValue;
  moveIterator(index);
  return code;
}

DcCode DcElem::getValue(DcElemValueBuf& segment, int index) {
  if (vrStorage(resolvedVr()) != DcStorage::Segments) return refuseReading(*this, "raw buffer");
  std::size_t position = 0;
  const DcCode code = locate(index, position);
  if (code != kDcOk) return code;
  segment = segments_[position].view();
  moveIterator(index);
  return kDcOk;
}

}  // namespace quillon
