#include "dicomobjects/xml_text.h"

#include <utility>

namespace quillon {

namespace {

constexpr OLECHAR kReplacementCharacter = 0xFFFD;
constexpr OLECHAR kControlPictures = 0x2400;

constexpr bool IsLowSurrogate(OLECHAR c) { return c >= 0xDC00 && c <= 0xDFFF; }
constexpr bool IsHighSurrogate(OLECHAR c) { return c >= 0xD800 && c <= 0xDBFF; }

// What takes the place of the unit at `at`; empty when it stands for itself. `substitute` holds the
// answer when it is a single unit that depends on the text.
TextView ReplacementOf(TextView text, std::size_t at, OLECHAR& substitute) {
  const OLECHAR c = text[at];
  switch (c) {
    case OLESTR('&'):
      return OLESTR("&amp;");
    case OLESTR('>'):
      return OLESTR("&gt;");
    case OLESTR('<'):
      return OLESTR("&lt;");
    case OLESTR('"'):
      return OLESTR("&quot;");
    case OLESTR('\''):
      return OLESTR("&apos;");
    case OLESTR('@'):
      return OLESTR("&#64;");
    case OLESTR('\r'):
    case OLESTR('\n'):
    case OLESTR('\f'):
    case 0x1B:
      return OLESTR(" ");
    case OLESTR('\t'):
      return {};
    default:
      break;
  }
  const bool isPaired =
      (IsHighSurrogate(c) && at + 1 < text.size() && IsLowSurrogate(text[at + 1])) ||
      (IsLowSurrogate(c) && at > 0 && IsHighSurrogate(text[at - 1]));
  if (c < 0x20) {
    substitute = static_cast<OLECHAR>(kControlPictures + c);
  } else if ((c >= 0xD800 && c <= 0xDFFF && !isPaired) || c >= 0xFFFE) {
    substitute = kReplacementCharacter;
  } else {
    return {};
  }
  return {&substitute, 1};
}

}  // namespace

std::size_t EscapeXmlText(Text& text) {
  std::size_t replacements = 0;
  std::size_t kept = 0;  // up to here the text is in `escaped`
  Text escaped;
  for (std::size_t at = 0; at < text.size(); ++at) {
    OLECHAR substitute = 0;
    const TextView replacement = ReplacementOf(text, at, substitute);
    if (replacement.empty()) continue;
    escaped.append(text, kept, at - kept).append(replacement);
    kept = at + 1;
    ++replacements;
  }
  if (replacements == 0) return 0;
  escaped.append(text, kept);
  text = std::move(escaped);
  return replacements;
}

}  // namespace quillon
