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
    case 936:
    case 949:
    case 20932:
      return 2;
    default:
      return 1;
  }
}

bool IsHighSurrogate(OLECHAR unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool IsLowSurrogate(OLECHAR unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

// What the platform gives for bytes that it cannot convert, where it is not asked to fail.
bool HoldsUnreadable(TextView text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == kUnreadable || IsLowSurrogate(text[i])) return true;
    if (!IsHighSurrogate(text[i])) continue;
    if (++i == text.size() || !IsLowSurrogate(text[i])) return true;
  }
  return false;
}

// Appends; false, with the text as it was, when there is a character that the code page lacks.
bool AppendConverted(UINT codePage, std::string_view bytes, Text& text) {
  if (codePage == CP_ACP) {
    text += WidenText(bytes, CP_ACP);
    return true;
  }
  // Windows XP takes no flags for this one.
  const DWORD flags = codePage == kGb18030Page ? 0 : MB_ERR_INVALID_CHARS;
  const std::size_t before = text.size();
  text.resize(before + bytes.size());
  const int units =
      MultiByteToWideChar(codePage, flags, bytes.data(), static_cast<int>(bytes.size()),
                          text.data() + before, static_cast<int>(bytes.size()));
  text.resize(before + static_cast<std::size_t>(units));
  if (units > 0 && (flags != 0 || !HoldsUnreadable(TextView(text).substr(before)))) return true;
  text.resize(before);
  return false;
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
