// Values on their way out of an element.
#include <algorithm>
#include <string_view>
#include <type_traits>

#include "dicom/convert.h"
#include "dicom/dict.h"
#include "dicom/elem.h"
#include "dicom/log.h"
#include "dicom/text_scan.h"
#include "dicom/text_to_number.h"
#include "dicom/vr_table.h"
#include "number_text.h"

namespace quillon {
namespace {

constexpr const char* kGetValue = "DcElem::getValue";

// Which VRs can be read as a number of type T: those whose values it holds.
template <typename T>
constexpr bool isReadableAs(const VrRow& row) {
  constexpr bool isReal = std::is_floating_point_v<T>;
  constexpr bool isLong = sizeof(T) >= sizeof(std::int32_t);
  switch (row.number) {
    case DcNumber::Integer:
      return isLong || (row.storage != DcStorage::Int32 && row.storage != DcStorage::UInt32);
    case DcNumber::Real:
      return isReal;
    case DcNumber::Tag:
      return isLong && !isReal;
    case DcNumber::None:
      break;
  }
  return false;
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
  dcLog(DcLogLevel::Error, kGetValue, "Element (%04x,%04x) VR=%s, cannot get value as %s",
        element.group(), element.element(), vrRow(element.resolvedVr()).shownCode(), type);
  return kDcNotReadable;
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
  if (!isReadableAs<T>(vrRow(resolvedVr()))) return refuseReading(*this, type);
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
  const VrRow& row = vrRow(resolvedVr());
  if (row.storage == DcStorage::None || row.storage == DcStorage::Segments) {
    return refuseReading(*this, "string");
  }
  std::size_t position = 0;
  DcCode code = locate(index, position);
  if (code != kDcOk) return code;

  NumberText printed;
  const std::string_view text = std::visit(
      [&](const auto& values) -> std::string_view {
        using Stored = std::decay_t<decltype(values)>;
        if constexpr (std::is_same_v<Stored, std::monostate>) {
          return {};
        } else if constexpr (std::is_same_v<Stored, DcTextValues>) {
          return values[position];
        } else {
          if (row.number == DcNumber::Tag)
            return printTag(printed, static_cast<DcTag>(values[position]));
          return printNumber(printed, values[position]);
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
  if (!isBulkVr(resolvedVr())) return refuseReading(*this, "raw buffer");
  std::size_t position = 0;
  const DcCode code = locate(index, position);
  if (code != kDcOk) return code;
  segment = segments_[position].view();
  moveIterator(index);
  return kDcOk;
}

}  // namespace quillon
