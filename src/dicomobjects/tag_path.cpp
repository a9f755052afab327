#include "tag_path.h"

#include <array>
#include <charconv>
#include <cstdio>

#include "dicom/dict.h"
#include "dicomobjects/dicom_util.h"

namespace quillon {

namespace {

constexpr std::size_t kTagDigits = 8;
constexpr std::string_view kItemOfSequence = "SQ,";
// How the header text names the VR of a value that may be either.
constexpr std::string_view kBytesOrWords = "OB/OW";

constexpr std::uint32_t kNoDigit = 16;

constexpr std::uint32_t HexDigit(char c) {
  if (c >= '0' && c <= '9') return static_cast<std::uint32_t>(c - '0');
  if (c >= 'a' && c <= 'f') return static_cast<std::uint32_t>(c - 'a') + 10;
  if (c >= 'A' && c <= 'F') return static_cast<std::uint32_t>(c - 'A') + 10;
  return kNoDigit;
}

bool IsVrText(std::string_view text) {
  const auto isCapital = [](char c) { return c >= 'A' && c <= 'Z'; };
  return (text.size() == 2 && isCapital(text[0]) && isCapital(text[1])) || text == kBytesOrWords;
}

}  // namespace

std::string TagPlace::Path() const {
  std::string vr;
  static_cast<void>(theDictionary().getVr(tag, &vr));
  std::array<char, 48> path{};
  if (sequence == 0) {
    std::snprintf(path.data(), path.size(), "%08x,%s", static_cast<unsigned>(tag), vr.c_str());
  } else {
    std::snprintf(path.data(), path.size(), "%08x,SQ,%u:%08x,%s", static_cast<unsigned>(sequence),
                  static_cast<unsigned>(itemFromOne), static_cast<unsigned>(tag), vr.c_str());
  }
  return path.data();
}

bool TagPathCursor::Next(TagPathStep& step) {
  if (rest_.size() <= kTagDigits || rest_[kTagDigits] != ',') return false;
  step.tag = 0;
  for (const char c : rest_.substr(0, kTagDigits)) {
    const std::uint32_t digit = HexDigit(c);
    if (digit == kNoDigit) return false;
    step.tag = step.tag << 4 | digit;
  }
  rest_.remove_prefix(kTagDigits + 1);

  if (!rest_.starts_with(kItemOfSequence)) {
    const bool isLast = IsVrText(rest_);
    step.itemFromOne = 0;
    rest_ = {};
    return isLast;
  }
  rest_.remove_prefix(kItemOfSequence.size());
  const char* const end = rest_.data() + rest_.size();
  const auto [numberEnd, numberError] = std::from_chars(rest_.data(), end, step.itemFromOne);
  if (numberError != std::errc{} || numberEnd == end || *numberEnd != ':') return false;
  rest_.remove_prefix(static_cast<std::size_t>(numberEnd - rest_.data()) + 1);
  return step.itemFromOne != 0;
}

}  // namespace quillon
