// The rules that text has to keep before it becomes a value.
#include "elem_verify.h"

#include <array>

#include "dicom/elem.h"
#include "dicom/log.h"
#include "dicom/text_scan.h"

namespace quillon {
namespace {

constexpr char kEscape = 27;  // opens a code extension, after which any byte may stand

using Characters = std::array<bool, 256>;

constexpr Characters range(unsigned first, unsigned last) {
  Characters set{};
  for (unsigned c = first; c <= last; ++c) set[c] = true;
  return set;
}
constexpr Characters with(Characters set, std::string_view more) {
  for (const char c : more) set[static_cast<unsigned char>(c)] = true;
  return set;
}
constexpr Characters without(Characters set, char c) {
  set[static_cast<unsigned char>(c)] = false;
  return set;
}

constexpr Characters kDigits = range('0', '9');
constexpr Characters kPrintable = range(32, 126);
constexpr Characters kCode = with(kDigits, "ABCDEFGHIJKLMNOPQRSTUVWXYZ _*");
constexpr Characters kDecimal = with(kDigits, "+-.Ee");
constexpr Characters kInteger = with(kDigits, "+-");
constexpr Characters kUid = with(kDigits, ".");
constexpr Characters kLine = without(range(32, 255), '\\');

enum class TooLong { CheckTheFirst, Warn, Refuse };

struct Rule {
  const char* function = nullptr;
  std::size_t maxChars = 0;
  TooLong tooLong = TooLong::Refuse;
  bool escapeSkips = false;
  bool emptyIsFine = false;
  const Characters* allowed = nullptr;
  // In place of all that: the form of the value.
  DcCode (*convert)(DcTag tag, std::string_view text) = nullptr;
};

template <typename Value>
constexpr Rule form() {
  return {.convert = [](DcTag tag, std::string_view text) {
    Value value;
    return utilStrgToValue(tag, text, &value);
  }};
}

// In the order of DcTextRule.
// clang-format off
constexpr std::array<Rule, static_cast<std::size_t>(DcTextRule::TM) + 1> kRules{{
    {},  // None
    {},  // Any
    {"DcElem::verifyValueAE", 16,  TooLong::CheckTheFirst, false, false, &kPrintable},
    {"DcElem::verifyValueCS", 16,  TooLong::CheckTheFirst, true,  true,  &kCode},
    {"DcElem::verifyValueDS", 16,  TooLong::Warn,          false, false, &kDecimal},
    {"DcElem::verifyValueFX", 16,  TooLong::Refuse,        false, false, &kDecimal},
    {"DcElem::verifyValueIS", 12,  TooLong::Refuse,        false, false, &kInteger},
    {"DcElem::verifyValueLO", 64,  TooLong::CheckTheFirst, true,  false, &kLine},
    {"DcElem::verifyValueSH", 16,  TooLong::CheckTheFirst, true,  false, &kLine},
    {"DcElem::verifyValueUI", 128, TooLong::Refuse,        false, false, &kUid},
    form<DcElemValueAS>(),
    form<DcElemValueAT>(),
    form<DcElemValueDA>(),
    form<DcElemValueDT>(),
    form<DcElemValueTM>(),
}};
// clang-format on

DcCode verify(DcTag tag, DcTextRule which, const char* text) {
  if (text != nullptr) return dcVerifyText(tag, which, std::string_view(text));
  if (!dcValueChecking()) return kDcOk;
  dcLog(DcLogLevel::Error, kRules[static_cast<std::size_t>(which)].function,
        "Element (%04x,%04x) - Null argument passed", dcGroup(tag), dcElement(tag));
  return kDcNullArgument;
}

}  // namespace

DcCode dcVerifyText(DcTag tag, DcTextRule which, std::string_view text) {
  const Rule& rule = kRules[static_cast<std::size_t>(which)];
  if (rule.convert != nullptr) return rule.convert(tag, text);
  if (!dcValueChecking() || rule.allowed == nullptr) return kDcOk;
  text = trimmed(text);
  if (text.empty()) return rule.emptyIsFine ? kDcOk : kDcNoValue;
  if (rule.escapeSkips && text.find(kEscape) != std::string_view::npos) return kDcOk;

  std::string_view checked = text;
  if (text.size() > rule.maxChars) {
    if (rule.tooLong == TooLong::CheckTheFirst) {
      checked = text.substr(0, rule.maxChars);
    } else {
      const bool refused = rule.tooLong == TooLong::Refuse;
      dcLog(refused ? DcLogLevel::Error : DcLogLevel::Warning, rule.function,
            "Element (%04x,%04x) - string too long", dcGroup(tag), dcElement(tag));
      if (refused) return kDcTooLong;
    }
  }
  for (const char c : checked) {
    const auto byte = static_cast<unsigned char>(c);
    if ((*rule.allowed)[byte]) continue;
    dcLog(DcLogLevel::Error, rule.function,
          "Element (%04x,%04x) - illegal character '%c' (0x%x) in string '%.*s'", dcGroup(tag),
          dcElement(tag), c, static_cast<unsigned>(byte), static_cast<int>(text.size()),
          text.data());
    return kDcIllegalCharacter;
  }
  return kDcOk;
}

DcCode DcElem::verifyValueAE(const char* text) const { return verify(tag_, DcTextRule::AE, text); }
DcCode DcElem::verifyValueCS(const char* text) const { return verify(tag_, DcTextRule::CS, text); }
DcCode DcElem::verifyValueDS(const char* text) const { return verify(tag_, DcTextRule::DS, text); }
DcCode DcElem::verifyValueFX(const char* text) const { return verify(tag_, DcTextRule::FX, text); }
DcCode DcElem::verifyValueIS(const char* text) const { return verify(tag_, DcTextRule::IS, text); }
DcCode DcElem::verifyValueLO(const char* text) const { return verify(tag_, DcTextRule::LO, text); }
DcCode DcElem::verifyValueSH(const char* text) const { return verify(tag_, DcTextRule::SH, text); }
DcCode DcElem::verifyValueUI(const char* text) const { return verify(tag_, DcTextRule::UI, text); }

}  // namespace quillon
