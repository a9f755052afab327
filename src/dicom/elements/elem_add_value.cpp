// Values on their way into an element: conversion to what its VR stores, and the checks of text.
#include <algorithm>
#include <array>
#include <charconv>
#include <cstdlib>
#include <limits>
#include <new>
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

namespace quillon {
namespace {

constexpr const char* kAddValue = "DcElem::addValue";
constexpr const char* kAddValueStrg = "DcElem::addValueStrg";
constexpr const char* kAddValueFmtBuf = "DcElem::addValueFmtBuf";
constexpr char kEscape = 27;
constexpr char kSeparator = '\\';
// Values are counted and numbered in an int.
constexpr std::size_t kMaxValues = std::numeric_limits<int>::max();
// As many significant digits as "%g" prints.
constexpr int kPrintedDigits = 6;

// One value, however many backslashes it holds.
bool isOneText(DcVr vr) { return vr == DcVr::LT || vr == DcVr::ST; }

// An ESC begins (and ends) text in another character set, whose second bytes may look like "\".
bool escapesSeparator(DcVr vr) {
  return vr == DcVr::CS || vr == DcVr::LO || vr == DcVr::PN || vr == DcVr::SH;
}

bool isControl(char c) { return static_cast<unsigned char>(c) < 32; }

bool isLine(DcVr vr) { return vr == DcVr::LO || vr == DcVr::SH; }

bool acceptsText(DcVr vr) {
  return vr != DcVr::XL && vrStorage(vr) != DcStorage::None && vrStorage(vr) != DcStorage::Segments;
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
std::string_view print(std::array<char, 32>& buffer, T value) {
  std::to_chars_result result{};
  if constexpr (std::is_floating_point_v<T>) {
    result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                           std::chars_format::general, kPrintedDigits);
  } else {
    result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
  }
  return {buffer.data(), static_cast<std::size_t>(result.ptr - buffer.data())};
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

DcCode tooManyValues(const DcElem& element) {
  dcLog(DcLogLevel::Error, kAddValueFmtBuf, "Element (%04x,%04x) - more than %d values",
        element.group(), element.element(), static_cast<int>(kMaxValues));
  return kDcNoMemory;
}

}  // namespace

DcCode DcElem::refuse(const char* function, const char* type) const {
  const VrRow& row = vrRow(resolvedVr());
  dcLog(DcLogLevel::Error, function, "Element (%04x,%04x) VR=%s, does not accept %s", group(),
        element(), row.pseudo ? "" : row.code, type);
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
  const DcVr vr = resolvedVr();
  if (isOneText(vr) || text.find(kSeparator) == std::string_view::npos) {
    return addValueStrg(text, index);
  }
  text = trimmed(text);
  if (text.ends_with(kSeparator)) text.remove_suffix(1);
  const bool escapes = escapesSeparator(vr);
  const bool isBounded = vmLimit_ != 0 && dcValueChecking();
  DcTextValues* values = nullptr;
  if (vrStorage(vr) == DcStorage::Text && index == kAppend && !isBounded) {
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
    if (code != kDcOk || chars == text.size()) return code;
    text.remove_prefix(chars + 1);
  }
}

// What the VR demands of one value, and what becomes of one that does not meet it.
DcCode DcElem::addValueStrg(std::string_view text, int index) {
  const DcVr vr = resolvedVr();
  if (!acceptsText(vr)) return refuse(kAddValueStrg, "string");
  if (!isOneText(vr)) text = trimmedLeft(text);
  text = trimmedRight(text);
  const bool isText = vrStorage(vr) == DcStorage::Text;
  if (text.empty()) {
    // A number cannot be empty; that there is none is all that can be kept.
    return isText ? store(std::string_view(), index) : kDcOk;
  }
  if (!isText) return addNumberText(vr, text, index);

  DcCode code = checkText(vr, text);
  if (isLine(vr) && code == kDcIllegalCharacter) code = kDcOk;
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
    return code == kDcOk ? storeText(vr, replacement.c_str(), index) : code;
  }
  return storeText(vr, text, index);
}

// What the VR demands of text that is stored as text.
DcCode DcElem::checkText(DcVr vr, std::string_view text) const {
  switch (vr) {
    case DcVr::AE:
      return dcVerifyText(tag_, DcTextRule::AE, text);
    case DcVr::CS:
      return dcVerifyText(tag_, DcTextRule::CS, text);
    case DcVr::DS:
      return dcVerifyText(tag_, DcTextRule::DS, text);
    case DcVr::IS:
      return dcVerifyText(tag_, DcTextRule::IS, text);
    case DcVr::LO:
      return dcVerifyText(tag_, DcTextRule::LO, text);
    case DcVr::SH:
      return dcVerifyText(tag_, DcTextRule::SH, text);
    case DcVr::UI:
      return dcVerifyText(tag_, DcTextRule::UI, text);
    case DcVr::AS: {
      DcElemValueAS age;
      return utilStrgToValue(tag_, text, &age);
    }
    case DcVr::DA: {
      DcElemValueDA date;
      return utilStrgToValue(tag_, text, &date);
    }
    case DcVr::DT: {
      DcElemValueDT dateTime;
      return utilStrgToValue(tag_, text, &dateTime);
    }
    case DcVr::TM: {
      DcElemValueTM time;
      return utilStrgToValue(tag_, text, &time);
    }
    default:  // LT and ST hold what they like, and so does a name
      return kDcOk;
  }
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

DcCode DcElem::storeText(DcVr vr, std::string_view text, int index) {
  if (!isLine(vr) || std::ranges::none_of(text, isControl) ||
      text.find(kEscape) != std::string_view::npos) {
    return store(text, index);
  }
  std::string shown(text);
  for (char& c : shown) {
    if (isControl(c)) c = c == '\n' ? '|' : ' ';
  }
  return store(std::string_view(shown), index);
}

// Text for a VR that stores numbers.
DcCode DcElem::addNumberText(DcVr vr, std::string_view text, int index) {
  DcElemValueAT tag;
  const bool isReal = vr == DcVr::FL || vr == DcVr::FD;
  DcCode code = vr == DcVr::AT ? utilStrgToValue(tag_, text, &tag)
                : isReal       ? dcVerifyText(tag_, DcTextRule::FX, text)
                               : dcVerifyText(tag_, DcTextRule::IS, text);
  std::string replacement;
  if (code != kDcOk) {
    if (hook_.convert == nullptr) return code;
    const DcCode asked = askHook(vr, text, replacement);
    if (asked != kDcOk) return asked;
    // A tag is not stored as text, so that one which is still none cannot be taken as it is.
    if (vr == DcVr::AT) {
      if (replacement == text) return code;
      code = utilStrgToValue(tag_, replacement, &tag);
      if (code != kDcOk) return code;
    }
    text = replacement;
  }
  switch (vr) {
    case DcVr::AT:
      return store<std::uint32_t>(dcTag(tag.group, tag.element), index);
    case DcVr::FL:
    case DcVr::FD:
      return addValue(textToDouble(text), index);
    case DcVr::UL:
    case DcVr::US:
      return addValue(textToUint32(text), index);
    case DcVr::XS: {
      const std::int32_t value = textToInt32(text);
      return value > 0 ? addValue(static_cast<std::uint16_t>(value), index)
                       : addValue(static_cast<std::int16_t>(value), index);
    }
    default:
      return addValue(textToInt32(text), index);
  }
}

template <typename T>
DcCode DcElem::addInteger(T value, int index, bool acceptsAt, const char* type) {
  switch (resolvedVr()) {
    case DcVr::DS:
    case DcVr::IS: {
      std::array<char, 32> buffer{};
      return addValueStrg(print(buffer, value), index);
    }
    case DcVr::FL:
      return store(static_cast<float>(value), index);
    case DcVr::FD:
      return store(static_cast<double>(value), index);
    case DcVr::SL:
      return store(static_cast<std::int32_t>(value), index);
    case DcVr::SS:
    case DcVr::XS:
      return store(static_cast<std::int16_t>(value), index);
    case DcVr::US:
      return store(static_cast<std::uint16_t>(value), index);
    case DcVr::AT:
      if (!acceptsAt) return refuse(kAddValue, type);
      [[fallthrough]];
    case DcVr::UL:
      return store(static_cast<std::uint32_t>(value), index);
    default:
      return refuse(kAddValue, type);
  }
}

DcCode DcElem::addValue(std::int16_t value, int index) {
  return addInteger(value, index, false, "short");
}
DcCode DcElem::addValue(std::uint16_t value, int index) {
  return addInteger(value, index, false, "unsigned short");
}
DcCode DcElem::addValue(std::int32_t value, int index) {
  return addInteger(value, index, true, "long");
}
DcCode DcElem::addValue(std::uint32_t value, int index) {
  return addInteger(value, index, true, "unsigned long");
}

DcCode DcElem::addValue(float value, int index) {
  std::array<char, 32> buffer{};
  switch (resolvedVr()) {
    case DcVr::DS:
      return addValueStrg(print(buffer, value), index);
    case DcVr::FL:
      return store(value, index);
    default:
      return refuse(kAddValue, "float");
  }
}

DcCode DcElem::addValue(double value, int index) {
  std::array<char, 32> buffer{};
  switch (resolvedVr()) {
    case DcVr::DS:
      return addValueStrg(print(buffer, value), index);
    case DcVr::FL:
      return store(static_cast<float>(value), index);
    case DcVr::FD:
      return store(value, index);
    default:
      return refuse(kAddValue, "double float");
  }
}

DcCode DcElem::addValue(DcUid uid, int index) {
  if (resolvedVr() != DcVr::UI) return refuse(kAddValue, "DICT_UID");
  std::string text;
  const DcCode code = theDictionary().getUid(uid, &text);
  return code == kDcOk ? addValueStrg(text, index) : code;
}

DcCode DcElem::addValue(const void* bytes, std::uint32_t lengthBytes, DcUid transferSyntax) {
  if (vrStorage(resolvedVr()) != DcStorage::Segments) return refuse(kAddValue, "raw buffers");
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
  const DcVr vr = resolvedVr();
  if (vr != DcVr::OB && vr != DcVr::OW && vr != DcVr::OX) return refuse(kAddValue, "raw buffers");
  if (fileName == nullptr) return kDcOk;
  DcFile file;
  if (!file.open(fileName, DcFile::Mode::Read)) {
    dcLog(DcLogLevel::Error, kAddValue, "Element (%04x,%04x), unable to open file %s in rb mode",
          group(), element(), fileName);
    return kDcNotAccepted;
  }
  file.close();
  segments_.push_back(DcElemValueBuf::inFile(fileName, offsetInFile, lengthBytes, transferSyntax));
  return kDcOk;
}

}  // namespace quillon
