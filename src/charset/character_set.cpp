#include "charset/character_set.h"

#include <algorithm>
#include <array>
#include <utility>

#include "code_extension.h"
#include "graphic_sets.h"
#include "multi_byte.h"

namespace quillon {

namespace {

constexpr char kSeparator = '\\';
constexpr unsigned kUtf8Term = 192;
constexpr std::string_view kPadding(" \0", 2);

std::string_view WithoutPadding(std::string_view term) {
  const std::size_t first = term.find_first_not_of(kPadding);
  if (first == std::string_view::npos) return {};
  return term.substr(first, term.find_last_not_of(kPadding) - first + 1);
}

// Terms are told apart by their letters and digits: what stands between those differs among
// writers.
std::string LettersAndDigits(std::string_view term) {
  std::string kept;
  for (const char c : term) {
    if (c >= 'a' && c <= 'z') {
      kept.push_back(static_cast<char>(c - 'a' + 'A'));
    } else if ((c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9')) {
      kept.push_back(c);
    }
  }
  return kept;
}

// Of "ISO_IR 100" and "ISO 2022 IR 100" the last number; 0 for another term.
unsigned TermNumber(std::string_view term) {
  constexpr std::array<std::string_view, 3> kPrefixes{"ISO2022IR", "ISOIR", "ISO2022"};
  const auto* prefix = std::ranges::find_if(
      kPrefixes, [term](std::string_view candidate) { return term.starts_with(candidate); });
  if (prefix == kPrefixes.end()) return 0;
  term.remove_prefix(prefix->size());
  constexpr std::size_t kMostDigits = 3;
  if (term.empty() || term.size() > kMostDigits) return 0;
  unsigned number = 0;
  for (const char c : term) {
    if (c < '0' || c > '9') return 0;
    number = number * 10 + static_cast<unsigned>(c - '0');
  }
  return number;
}

TextView Trimmed(TextView value, ValueForm form) {
  while (!value.empty() && (value.back() == OLESTR(' ') || value.back() == 0)) {
    value.remove_suffix(1);
  }
  if (form == ValueForm::Paragraphs) return value;
  while (!value.empty() && value.front() == OLESTR(' ')) value.remove_prefix(1);
  return value;
}

// Calls take(value) for each, trimmed. A text without anything in it is one empty value.
template <typename Take>
void ForEachValue(TextView text, ValueForm form, const Take& take) {
  while (true) {
    const std::size_t end = form == ValueForm::Paragraphs
                                ? TextView::npos
                                : text.find(static_cast<OLECHAR>(kSeparator));
    take(Trimmed(text.substr(0, end), form));
    if (end == TextView::npos) return;
    text.remove_prefix(end + 1);
  }
}

}  // namespace

CharacterSet::CharacterSet() : g0_(&AsciiSet()), g1_(&SystemSet()) {}

CharacterSet::CharacterSet(std::string_view declared) : CharacterSet() {
  std::string_view first;
  bool hasMore = false;
  for (bool isFirst = true;; isFirst = false) {
    const std::size_t end = declared.find(kSeparator);
    const std::string_view term = WithoutPadding(declared.substr(0, end));
    if (isFirst) {
      first = term;
    } else {
      terms_ += kSeparator;
      hasMore = hasMore || !term.empty();
    }
    terms_ += term;
    if (end == std::string_view::npos) break;
    declared.remove_prefix(end + 1);
  }
  if (first.empty() && !hasMore) terms_.clear();
  static_cast<void>(Take(first, hasMore));
}

// Sets what text begins with; false, with nothing changed, for a term that is not known.
bool CharacterSet::Take(std::string_view firstTerm, bool hasMore) {
  const std::string term = LettersAndDigits(firstTerm);
  const unsigned number = firstTerm.empty() && hasMore ? AsciiSet().term : TermNumber(term);
  if (number == kUtf8Term || term == "GBK" || term == "GB18030") {
    form_ = number == kUtf8Term ? Form::Utf8 : term == "GBK" ? Form::Gbk : Form::Gb18030;
    return true;
  }
  const GraphicSet* set = SetOfTerm(number);
  if (set == nullptr) return false;
  form_ = Form::Iso2022;
  // Sets of two bytes in G0 are reached by an escape sequence only: names are written in ASCII,
  // too.
  g0_ = number == kKatakanaTerm ? &RomanSet() : &AsciiSet();
  g1_ = set->isG1 ? set : nullptr;
  return true;
}

Text CharacterSet::DecodeWhole(std::string_view bytes, ValueForm form) const {
  const bool isAscii =
      g0_->graphics == Graphics::Ascii || bytes.find_first_of("\\~") == std::string_view::npos;
  if (isAscii && IsDefaultRepertoire(bytes)) return {bytes.begin(), bytes.end()};
  switch (form_) {
    case Form::Utf8:
      return DecodeUtf8(bytes);
    case Form::Gbk:
      return DecodeGbk(bytes);
    case Form::Gb18030:
      return DecodeGb18030(bytes);
    case Form::System:
      // The code page may have characters of several bytes: it sees all of them.
      if (bytes.find(kEscape) == std::string_view::npos) return WidenText(bytes, CP_ACP);
      break;
    case Form::Iso2022:
      break;
  }
  return CodeExtensionDecoder(*g0_, g1_, form).Decode(bytes);
}

std::vector<Text> CharacterSet::Decode(std::string_view bytes, ValueForm form) const {
  std::vector<Text> values;
  const Text whole = DecodeWhole(bytes, form);
  ForEachValue(whole, form, [&values](TextView value) { values.emplace_back(value); });
  return values;
}

Text CharacterSet::DecodeJoined(std::string_view bytes, ValueForm form) const {
  const Text whole = DecodeWhole(bytes, form);
  Text joined;
  joined.reserve(whole.size());
  bool isFirst = true;
  ForEachValue(whole, form, [&](TextView value) {
    if (!std::exchange(isFirst, false)) joined.push_back(static_cast<OLECHAR>(kSeparator));
    joined += value;
  });
  return joined;
}

bool IsDefaultRepertoire(std::string_view bytes) {
  unsigned bits = 0;
  for (const char c : bytes) bits |= static_cast<unsigned char>(c);
  return bits < 0x80 && bytes.find(kEscape) == std::string_view::npos;
}

}  // namespace quillon
