#include "foundation/text.h"

#include <limits>
#include <new>
#include <string>

namespace quillon {
namespace {

// No code page of the platform needs more: UTF-8 takes three bytes for a unit, GB 18030 four.
constexpr std::size_t kMaxBytesPerUnit = 4;
constexpr std::size_t kMaxConvertedLength = std::numeric_limits<int>::max() / kMaxBytesPerUnit;

}  // namespace

bool AssignText(Text& dst, TextView src, bool allowEmpty, std::size_t maxLen) {
  if (src.empty() && !allowEmpty) return false;
  if (maxLen != 0 && src.size() > maxLen) return false;
  try {
    dst.assign(src);
  } catch (const std::bad_alloc&) {
    return false;
  }
  return true;
}

bool AssignText(Text& dst, TextView src, std::size_t maxLen) {
  return AssignText(dst, src, /*allowEmpty=*/true, maxLen);
}

bool TrimText(Text& text) {
  const TextView kept = TrimmedView(text);
  const auto first = static_cast<std::size_t>(kept.data() - text.data());
  const std::size_t length = kept.size();
  text.erase(first + length);
  text.erase(0, first);
  return true;
}

bool TextEquals(const OLECHAR* a, const OLECHAR* b) {
  if (a == nullptr || b == nullptr) return a == b;
  return TextView(a) == TextView(b);
}

std::size_t TextLength(const OLECHAR* text) { return text == nullptr ? 0 : TextView(text).size(); }

char* WideToNarrow(char* out, const OLECHAR* wide, int outLen, UINT codePage) {
  // A length of 0 would ask the platform for the length needed, and succeed.
  if (out == nullptr || wide == nullptr || outLen < 1) return nullptr;
  out[0] = 0;
  if (WideCharToMultiByte(codePage, 0, wide, -1, out, outLen, nullptr, nullptr) == 0) {
    out[0] = 0;  // the platform may have left the beginning of the text, without a terminator
    return nullptr;
  }
  return out;
}

std::string NarrowText(TextView text, UINT codePage) {
  if (text.empty() || text.size() > kMaxConvertedLength) return {};
  std::string bytes(text.size() * kMaxBytesPerUnit, '\0');
  const int length =
      WideCharToMultiByte(codePage, 0, text.data(), static_cast<int>(text.size()), bytes.data(),
                          static_cast<int>(bytes.size()), nullptr, nullptr);
  bytes.resize(static_cast<std::size_t>(length));
  return bytes;
}

Text WidenText(std::string_view text, UINT codePage) {
  if (text.empty() || text.size() > kMaxConvertedLength) return {};
  // A byte never becomes more than one unit, so one call does.
  Text wide(text.size(), OLECHAR{0});
  const int length = MultiByteToWideChar(codePage, 0, text.data(), static_cast<int>(text.size()),
                                         wide.data(), static_cast<int>(wide.size()));
  wide.resize(static_cast<std::size_t>(length));
  return wide;
}

Text NumberText(long long value) {
  const std::string digits = std::to_string(value);
  return Text(digits.begin(), digits.end());
}

}  // namespace quillon
