#include "text_run.h"

#include <utility>

namespace quillon {

namespace {

constexpr std::size_t kMaxPendingBytes = 0x10000;

constexpr bool IsAscii(char c) { return static_cast<unsigned char>(c) < 0x80; }

// Bytes of the character that the text, which is well formed, begins with.
std::size_t CharacterBytes(UINT codePage, std::string_view text) {
  if (IsAscii(text[0])) return 1;
  switch (codePage) {
    case kGb18030Page:
      return text[1] >= '0' && text[1] <= '9' ? 4 : 2;
    case kGbkPage:
    case 949:
    case 20932:
      return 2;
    default:
      return 1;
  }
}

bool IsHighSurrogate(OLECHAR unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool IsLowSurrogate(OLECHAR unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

// Windows gives these for pairs of bytes that a set has no character for.
bool IsPrivate(OLECHAR unit) { return unit >= 0xE000 && unit <= 0xF8FF; }

// What the platform gives for bytes that it cannot convert, where it is not asked to fail.
// mayBePrivate: GB18030 has such characters.
bool HoldsUnreadable(TextView text, bool mayBePrivate) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == kUnreadable || IsLowSurrogate(text[i])) return true;
    if (IsPrivate(text[i]) && !mayBePrivate) return true;
    if (!IsHighSurrogate(text[i])) continue;
    if (++i == text.size() || !IsLowSurrogate(text[i])) return true;
  }
  return false;
}

// An installation of Windows may be without it.
bool HasGb18030Page() {
  static const bool hasPage = MultiByteToWideChar(kGb18030Page, 0, "A", 1, nullptr, 0) > 0;
  return hasPage;
}

// Of four bytes that stand for a character beyond the first plane, in their order. 0 for others.
char32_t BeyondFirstPlane(std::string_view bytes) {
  constexpr char32_t kFirst = 0x10000;
  if (bytes.size() != 4 || static_cast<unsigned char>(bytes[0]) < 0x90 || bytes[1] < '0' ||
      bytes[1] > '9') {
    return 0;
  }
  const auto digit = [&bytes](std::size_t i, unsigned first) {
    return static_cast<unsigned char>(bytes[i]) - first;
  };
  return kFirst + ((digit(0, 0x90) * 10 + digit(1, 0x30)) * 126 + digit(2, 0x81)) * 10 +
         digit(3, 0x30);
}

// Without the page: what GBK has alike, and what stands in order.
bool AppendGb18030(std::string_view bytes, Text& text);

// Appends; false, with the text as it was, when there is a character that the code page lacks.
bool AppendConverted(UINT codePage, std::string_view bytes, Text& text) {
  if (codePage == CP_ACP) {
    text += WidenText(bytes, CP_ACP);
    return true;
  }
  if (codePage == kGb18030Page && !HasGb18030Page()) return AppendGb18030(bytes, text);
  // Windows XP takes no flags for this one.
  const DWORD flags = codePage == kGb18030Page ? 0 : MB_ERR_INVALID_CHARS;
  const std::size_t before = text.size();
  text.resize(before + bytes.size());
  const int units =
      MultiByteToWideChar(codePage, flags, bytes.data(), static_cast<int>(bytes.size()),
                          text.data() + before, static_cast<int>(bytes.size()));
  text.resize(before + static_cast<std::size_t>(units));
  if (units > 0 && !HoldsUnreadable(TextView(text).substr(before), codePage == kGb18030Page)) {
    return true;
  }
  text.resize(before);
  return false;
}

bool AppendGb18030(std::string_view bytes, Text& text) {
  if (const char32_t code = BeyondFirstPlane(bytes); code != 0) {
    text.push_back(static_cast<OLECHAR>(0xD800 + ((code - 0x10000) >> 10)));
    text.push_back(static_cast<OLECHAR>(0xDC00 + ((code - 0x10000) & 0x3FF)));
    return true;
  }
  for (std::string_view left = bytes; !left.empty();) {
    const std::size_t size = CharacterBytes(kGb18030Page, left);
    if (size == 4) return false;
    left.remove_prefix(size);
  }

  return AppendConverted(kGbkPage, bytes, text);
}

}  // namespace

void TextRun::PutAscii(char c) {
  if (pending_.empty()) {
    text_.push_back(static_cast<unsigned char>(c));
  } else {
    pending_.push_back(c);
  }
}

void TextRun::PutCharacter(UINT codePage, std::string_view bytes) {
  if (codePage != codePage_ || pending_.size() > kMaxPendingBytes) Convert();
  codePage_ = codePage;
  pending_ += bytes;
}

void TextRun::PutUnit(OLECHAR unit) {
  Convert();
  text_.push_back(unit);
}

Text TextRun::Take() {
  Convert();
  return std::move(text_);
}

void TextRun::Convert() {
  if (pending_.empty()) return;
  if (!AppendConverted(codePage_, pending_, text_)) {
    for (std::string_view left = pending_; !left.empty();) {
      const std::size_t bytes = CharacterBytes(codePage_, left);
      if (!AppendConverted(codePage_, left.substr(0, bytes), text_)) text_.push_back(kUnreadable);
      left.remove_prefix(bytes);
    }
  }
  pending_.clear();
}

}  // namespace quillon
