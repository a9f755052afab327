// Values on their way into an element: conversion to what its VR stores, and the checks of text.
#include <algorithm>
#include <array>
#include <cstdlib>
#include <limits>
#include <new>
#include <type_traits>
#include <utility>

#include "dicom/convert.h"
#include "dicom/dict.h"
#include "dicom/elem.h"
#include "dicom/element_form.h"
#include "dicom/file.h"
#include "dicom/log.h"
#include "dicom/text_scan.h"
#include "dicom/text_to_number.h"
#include "dicom/vr_table.h"
#include "elem_verify.h"
#include "number_text.h"

namespace quillon {
namespace {

constexpr const char* kAddValue = "DcElem::addValue";
constexpr const char* kAddValueStrg = "DcElem::addValueStrg";
constexpr const char* kAddValueFmtBuf = "DcElem::addValueFmtBuf";
constexpr char kEscape = 27;
constexpr char kSeparator = '\\';
// Values are counted and numbered in an int.
constexpr std::size_t kMaxValues = std::numeric_limits<int>::max();
bool isControl(char c) { return static_cast<unsigned char>(c) < 32; }

bool isLine(const VrRow& row) {
  return row.textRule == DcTextRule::LO || row.textRule == DcTextRule::SH;
}

// Which VRs take a number of type T: what would not fit another's digits is refused by it.
template <typename T>
bool accepts(const VrRow& row) {
  if (row.textRule == DcTextRule::None) return false;
  if constexpr (std::is_integral_v<T>) {
    return row.number == DcNumber::Integer || row.number == DcNumber::Real ||
           (row.number == DcNumber::Tag && sizeof(T) == sizeof(DcTag));
  } else {
    return row.number == DcNumber::Real &&
           (std::is_same_v<T, double> || row.storage != DcStorage::Double);
  }
}

// Length of the first value of text that may hold several.
std::size_t firstPieceChars(std::string_view text, bool escapes) {
  bool escaped = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (escapes && text[i] == kEscape) escaped = !escaped;
    if (text[i] == kSeparator && !escaped) return i;
  }
  return text.size();
}

template <typename T>
void replaceValue(std::vector<T>& values, std::size_t index, T value) {
  values[index] = value;
}
void replaceValue(DcTextValues& values, std::size_t index, std::string_view value) {
  values.replace(index, value);
}
template <typename T>
void eraseFirstValues(std::vector<T>& values, std::size_t count) {
  values.erase(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(count));
}
void eraseFirstValues(DcTextValues& values, std::size_t count) { values.eraseFirst(count); }
template <typename T>
void appendValue(std::vector<T>& values, T value) {
  values.push_back(value);
}
void appendValue(DcTextValues& values, std::string_view value) { values.append(value); }

// Characters beyond ASCII, or an escape sequence to some: a backslash may be a part of one.
bool holdsOtherCharacters(std::string_view text) {
  return std::ranges::any_of(
      text, [](char c) { return c == kEscape || static_cast<unsigned char>(c) >= 0x80; });
}

DcCode tooManyValues(const DcElem& element) {
  dcLog(DcLogLevel::Error, kAddValueFmtBuf, "Element (%04x,%04x) - more than %d values",
        element.group(), element.element(), static_cast<int>(kMaxValues));
  return kDcNoMemory;
}

}  // namespace

DcCode DcElem::refuse(const char* function, const char* type) const {
  dcLog(DcLogLevel::Error, function, "Element (%04x,%04x) VR=%s, does not accept %s", group(),
        element(), vrRow(resolvedVr()).shownCode(), type);
  return kDcNotAccepted;
}

template <typename Held, typename T>
DcCode DcElem::storeIn(T value, int index) {
  auto* values = std::get_if<Held>(&values_);
  const std::size_t count = values != nullptr ? values->size() : 0;
  if (index >= 0 && static_cast<std::size_t>(index) < count) {
    replaceValue(*values, static_cast<std::size_t>(index), value);
    return kDcOk;
  }
  if (index != kAppend && (index != 0 || count != 0)) {
    dcLog(DcLogLevel::Error, kAddValueFmtBuf, "Invalid index value");
    return kDcIndexOutOfRange;
  }
  if (values == nullptr) values = &values_.emplace<Held>();
  const auto limit = static_cast<std::size_t>(std::abs(vmLimit_));
  if (limit != 0 && count >= limit && dcValueChecking()) {
    eraseFirstValues(*values, count - limit + 1);
  } else if (count >= kMaxValues) {
    return tooManyValues(*this);
  }
  appendValue(*values, value);
  return kDcOk;
}

DcCode DcElem::store(std::string_view text, int index) {
  return storeIn<DcTextValues>(text, index);
}

DcCode DcElem::addValue(const char* text, int index) {
  if (text == nullptr) {
    dcLog(DcLogLevel::Error, kAddValue, "Null argument passed");
    return kDcNullArgument;
  }
  return addText(std::string_view(text), index);
}

DcCode DcElem::addText(std::string_view text, int index) {
  text = text.substr(0, text.find('\0'));
  const VrRow& row = vrRow(resolvedVr());
  if (row.split == DcSplit::Whole || text.find(kSeparator) == std::string_view::npos) {
    return addValueStrg(text, index);
  }
  const std::string_view undivided = text;
  text = trimmed(text);
  if (text.ends_with(kSeparator)) text.remove_suffix(1);
  const bool escapes = row.split == DcSplit::Escapes;
  const int before = valueCount();
  const bool isBounded = vmLimit_ != 0 && dcValueChecking();
  DcTextValues* values = nullptr;
  if (row.storage == DcStorage::String && index == kAppend && !isBounded) {
    values = std::get_if<DcTextValues>(&values_);
    if (values == nullptr) values = &values_.emplace<DcTextValues>();
    // What is kept is never longer than what was given.
    values->reserve(text.size() + 1);
  }
  while (true) {
    // Values that are empty need no look at each.
    if (values != nullptr && text.starts_with(kSeparator)) {
      const std::size_t empty = std::min(text.find_first_not_of(kSeparator), text.size());
      if (empty > kMaxValues - values->size()) return tooManyValues(*this);
      values->appendEmpty(empty);
      text.remove_prefix(empty);
    }
    const std::size_t chars = firstPieceChars(text, escapes);
    const DcCode code = addValueStrg(text.substr(0, chars), index);
    if (code != kDcOk) return code;
    if (chars == text.size()) break;
    text.remove_prefix(chars + 1);
  }
  const bool holdsAll = values != nullptr && before == 0;
  if (holdsAll && row.characters != DcCharacters::Ascii && holdsOtherCharacters(undivided)) {
    values->keepUndivided(undivided);
  }
  return kDcOk;
}

// What the VR demands of one value, and what becomes of one that does not meet it.
DcCode DcElem::addValueStrg(std::string_view text, int index) {
  const DcVr vr = resolvedVr();
  const VrRow& row = vrRow(vr);
  if (row.textRule == DcTextRule::None) return refuse(kAddValueStrg, "string");
  const bool isText = row.storage == DcStorage::String;
  if (!isText || row.split != DcSplit::Whole) text = trimmedLeft(text);
  text = trimmedRight(text);
  if (text.empty()) {
    // A number cannot be empty; that there is none is all that can be kept.
    return isText ? store(std::string_view(), index) : kDcOk;
  }
  DcCode code = dcVerifyText(tag_, row.textRule, text);
  if (!isText) return addNumberText(row, text, code, index);

  if (isLine(row) && code == kDcIllegalCharacter) code = kDcOk;
  const bool isTooLong = maxValueBytes_ != 0 && text.size() > maxValueBytes_;
  if (hook_.convert == nullptr) {
    if (code != kDcOk) return code;
    if (isTooLong && dcValueChecking()) {
      dcLog(DcLogLevel::Warning, kAddValueStrg,
            "Element (%04x,%04x) - input string truncated from %d to %d chars", group(), element(),
            static_cast<int>(text.size()), static_cast<int>(maxValueBytes_));
      text = text.substr(0, maxValueBytes_);
    }
  } else if (code != kDcOk || isTooLong) {
    std::string replacement;
    code = askHook(vr, text, replacement);
    // A value ends at its first zero byte.
    return code == kDcOk ? storeText(row, replacement.c_str(), index) : code;
  }
  return storeText(row, text, index);
}

DcCode DcElem::askHook(DcVr vr, std::string_view text, std::string& replacement) {
  std::string offered;
  bool hasReplacement = false;
  std::string given(text);
  if (hook_.convert(hook_.user, tag_, vr, given.c_str(), &offered, &hasReplacement) != kDcOk) {
    return kDcHookRefused;
  }
  replacement = std::move(hasReplacement ? offered : given);
  return kDcOk;
}

DcCode DcElem::storeText(const VrRow& row, std::string_view text, int index) {
  if (!isLine(row) || std::ranges::none_of(text, isControl) ||
      text.find(kEscape) != std::string_view::npos) {
    return store(text, index);
  }
  std::string shown(text);
  for (char& c : shown) {
    if (isControl(c)) c = c == '\n' ? '|' : ' ';
  }
  return store(std::string_view(shown), index);
}

// Text for a VR that stores numbers; code: what its check said.
DcCode DcElem::addNumberText(const VrRow& row, std::string_view text, DcCode code, int index) {
  std::string replacement;
  if (code != kDcOk) {
    if (hook_.convert == nullptr) return code;
    const DcCode asked = askHook(row.vr, text, replacement);
    if (asked != kDcOk) return asked;
    // A tag is not stored as text, so that one which is still none cannot be taken as it is.
    if (row.number == DcNumber::Tag && replacement == text) return code;
    text = replacement;
  }
  if (row.number == DcNumber::Tag) {
    DcElemValueAT tag;
    code = utilStrgToValue(tag_, text, &tag);
    return code == kDcOk ? store(dcTag(tag.group, tag.element), index) : code;
  }
  return visitStorage(row.storage, [&]<typename Stored>(Stored) {
    if constexpr (std::is_floating_point_v<Stored>) {
      return store(static_cast<Stored>(textToDouble(text)), index);
    } else if constexpr (std::is_unsigned_v<Stored>) {
      return store(static_cast<Stored>(textToUint32(text)), index);
    } else if constexpr (std::is_integral_v<Stored>) {
      return store(static_cast<Stored>(textToInt32(text)), index);
    } else {
      return kDcNotAccepted;
    }
  });
}

template <typename T>
DcCode DcElem::addNumber(T value, int index, const char* type) {
  const VrRow& row = vrRow(resolvedVr());
  if (!accepts<T>(row)) return refuse(kAddValue, type);
  return visitStorage(row.storage, [&]<typename Stored>(Stored) {
    if constexpr (std::is_arithmetic_v<Stored>) {
      return store(static_cast<Stored>(value), index);
    } else {
      NumberText buffer;
      return addValueStrg(printNumber(buffer, value), index);
    }
  });
}

DcCode DcElem::addValue(std::int16_t value, int index) { return addNumber(value, index, "short"); }
DcCode DcElem::addValue(std::uint16_t value, int index) {
  return addNumber(value, index, "unsigned short");
}
DcCode DcElem::addValue(std::int32_t value, int index) { return addNumber(value, index, "long"); }
DcCode DcElem::addValue(std::uint32_t value, int index) {
  return addNumber(value, index, "unsigned long");
}
DcCode DcElem::addValue(float value, int index) { return addNumber(value, index, "float"); }
DcCode DcElem::addValue(double value, int index) { return addNumber(value, index, "double float"); }

DcCode DcElem::addValue(DcUid uid, int index) {
  if (resolvedVr() != DcVr::UI) return refuse(kAddValue, "DICT_UID");
  std::string text;
  const DcCode code = theDictionary().getUid(uid, &text);
  return code == kDcOk ? addValueStrg(text, index) : code;
}

DcCode DcElem::addValue(const void* bytes, std::uint32_t lengthBytes, DcUid transferSyntax) {
  if (!isBulkVr(resolvedVr())) return refuse(kAddValue, "raw buffers");
  if (bytes == nullptr || lengthBytes == 0) return kDcNotAccepted;
  if (const DcCode code = checkTransferSyntax(transferSyntax); code != kDcOk) return code;
  try {
    segments_.push_back(DcElemValueBuf::copyOf(bytes, lengthBytes, transferSyntax));
  } catch (const std::bad_alloc&) {
    dcLog(DcLogLevel::Error, kAddValue, "unable to allocated 0x%x (%d) bytes of memory",
          lengthBytes, static_cast<int>(lengthBytes));
    return kDcNoMemory;
  }
  transferSyntax_ = transferSyntax;
  return kDcOk;
}

DcCode DcElem::addValue(const char* fileName, std::uint64_t offsetInFile, std::uint32_t lengthBytes,
                        DcUid transferSyntax) {
  const DcVr vr = vrRow(resolvedVr()).writtenAs;
  if (vr != DcVr::OB && vr != DcVr::OW) return refuse(kAddValue, "raw buffers");
  if (fileName == nullptr) return kDcOk;
  DcFile file;
  if (!file.open(fileName, DcFile::Mode::Read)) {
    dcLog(DcLogLevel::Error, kAddValue, "Element (%04x,%04x), unable to open file %s in rb mode",
          group(), element(), fileName);
    return kDcNotAccepted;
  }
  segments_.push_back(DcElemValueBuf::inFile(fileName, offsetInFile, lengthBytes, transferSyntax));
  return kDcOk;
}

}  // namespace quillon
