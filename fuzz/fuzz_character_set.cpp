// Text in a declared character set: how the value is divided, the term up to the first zero byte,
// the value's bytes.
#include "charset/character_set.h"
#include "input_parts.h"

namespace quillon {
namespace {

constexpr OLECHAR kUnreadableUnit = 0xFFFD;

Text joined(const std::vector<Text>& values) {
  Text all;
  for (const Text& value : values) {
    if (&value != &values.front()) all += OLESTR('\\');
    all += value;
  }
  return all;
}

bool hasHalfPairs(TextView text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] >= 0xDC00 && text[i] <= 0xDFFF) return true;
    if (text[i] < 0xD800 || text[i] > 0xDBFF) continue;
    if (++i == text.size() || text[i] < 0xDC00 || text[i] > 0xDFFF) return true;
  }
  return false;
}

void checkUtf8(const CharacterSet& set, std::string_view bytes) {
  const Text text = set.DecodeJoined(bytes, ValueForm::Paragraphs);
  if (text.find(kUnreadableUnit) != Text::npos) return;
  while (!bytes.empty() && (bytes.back() == ' ' || bytes.back() == 0)) bytes.remove_suffix(1);
  fuzz::require(NarrowText(text, CP_UTF8) == bytes);
}

}  // namespace
}  // namespace quillon

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace quillon;
  fuzz::InputParts parts(data, size);
  const auto form = static_cast<ValueForm>(parts.byte() % 3);
  const CharacterSet set(parts.text());
  const std::string bytes(parts.rest());

  const std::vector<Text> values = set.Decode(bytes, form);
  const Text text = set.DecodeJoined(bytes, form);
  fuzz::require(!values.empty() && joined(values) == text);
  fuzz::require(form != ValueForm::Paragraphs || values.size() == 1);
  fuzz::require(text.size() <= bytes.size());  // no character takes more units than bytes
  fuzz::require(!set.IsKnown() || !hasHalfPairs(text));
  const CharacterSet again(set.Terms());
  fuzz::require(again.Terms() == set.Terms() && again.IsKnown() == set.IsKnown() &&
                again.DecodeJoined(bytes, form) == text);
  // The yen sign and the overline stand in places of ASCII; padding goes.
  if (IsDefaultRepertoire(bytes) &&
      bytes.find_first_of(std::string_view("\\~ \0", 4)) == bytes.npos) {
    fuzz::require(text == Text(bytes.begin(), bytes.end()));
  }
  if (set.Terms() == "ISO_IR 192") checkUtf8(set, bytes);
  return 0;
}
