#include "code_extension.h"

#include <array>

namespace quillon {

namespace {

constexpr OLECHAR kYenSign = 0x00A5;
constexpr OLECHAR kOverline = 0x203E;
// Half-width katakana, in the order of their bytes.
constexpr unsigned char kFirstKatakana = 0xA1;
constexpr unsigned char kLastKatakana = 0xDF;
constexpr OLECHAR kFirstKatakanaUnit = 0xFF61;

constexpr unsigned char Byte(char c) { return static_cast<unsigned char>(c); }
constexpr bool IsGraphic94(char c) { return c >= '!' && c <= '~'; }
constexpr bool IsHighGraphic94(char c) { return Byte(c) >= 0xA1 && Byte(c) <= 0xFE; }
constexpr bool EndsLine(char c) { return c == '\t' || c == '\n' || c == '\f' || c == '\r'; }

}  // namespace

Text CodeExtensionDecoder::Decode(std::string_view bytes) {
  while (!bytes.empty()) {
    const char c = bytes.front();
    std::size_t taken = 1;
    if (c == kEscape) {
      taken = TakeEscape(bytes);
    } else if (Byte(c) >= 0x80) {
      taken = TakeHigh(bytes);
    } else if (IsGraphic94(c)) {
      taken = TakeLow(bytes);
    } else {
      // Control characters and the space are in no set.
      if (EndsLine(c)) Reset();
      run_.PutAscii(c);
    }
    bytes.remove_prefix(taken);
  }
  return run_.Take();
}

std::size_t CodeExtensionDecoder::TakeEscape(std::string_view bytes) {
  const GraphicSet* set = SetOfEscape(bytes.substr(1));
  if (set == nullptr) {
    run_.PutUnreadable();
    return 1;
  }
  (set->isG1 ? g1_ : g0_) = set;
  return 1 + set->escape.size();
}

std::size_t CodeExtensionDecoder::TakeLow(std::string_view bytes) {
  const char c = bytes[0];
  if (g0_->bytesPerCharacter == 2 && bytes.size() > 1 && IsGraphic94(bytes[1])) {
    const std::array<char, 2> inPage{static_cast<char>(Byte(c) | g0_->toPage[0]),
                                     static_cast<char>(Byte(bytes[1]) | g0_->toPage[1])};
    run_.PutCharacter(g0_->codePage, {inPage.data(), inPage.size()});
    return 2;
  }
  // One that is no half of a pair is meant, even where the set should have been left before.
  if (IsDelimiter(c)) {
    Reset();
    run_.PutAscii(c);
  } else if (g0_->bytesPerCharacter == 2) {
    run_.PutUnreadable();
  } else if (g0_->graphics == Graphics::Roman && (c == '\\' || c == '~')) {
    run_.PutUnit(c == '~' ? kOverline : kYenSign);
  } else {
    run_.PutAscii(c);
  }
  return 1;
}

std::size_t CodeExtensionDecoder::TakeHigh(std::string_view bytes) {
  const unsigned char c = Byte(bytes[0]);
  if (g1_ != nullptr && g1_->graphics == Graphics::Katakana) {
    if (c >= kFirstKatakana && c <= kLastKatakana) {
      run_.PutUnit(static_cast<OLECHAR>(kFirstKatakanaUnit + (c - kFirstKatakana)));
      return 1;
    }
  } else if (g1_ != nullptr) {
    const std::size_t size = g1_->bytesPerCharacter;
    if (size == 1 || (bytes.size() > 1 && IsHighGraphic94(bytes[0]) && IsHighGraphic94(bytes[1]))) {
      run_.PutCharacter(g1_->codePage, bytes.substr(0, size));
      return size;
    }
  }
  run_.PutUnreadable();
  return 1;
}

bool CodeExtensionDecoder::IsDelimiter(char c) const {
  return (c == '\\' && form_ != ValueForm::Paragraphs) ||
         ((c == '^' || c == '=') && form_ == ValueForm::PersonNames);
}

void CodeExtensionDecoder::Reset() {
  g0_ = firstG0_;
  g1_ = firstG1_;
}

}  // namespace quillon
