#include "image/image_names.h"

#include <unordered_map>
#include <unordered_set>

#include "win32/utf8.h"

namespace quillon::platform {
namespace {

constexpr std::size_t kJolietUnits = 64;
constexpr std::size_t kUdfUnits = 254;
constexpr std::size_t kUdfWideUnits = 127;
constexpr std::size_t kLongestExtension = 15;
constexpr unsigned kLastNumber = 999'999;  // with the underscore, it fits level 1

bool isIso(NameRules rules) {
  return rules == NameRules::IsoLevel1 || rules == NameRules::IsoLevel2;
}

bool isPairAt(std::u16string_view text, std::size_t at) {
  return isHighSurrogate(text[at]) && at + 1 < text.size() && isLowSurrogate(text[at + 1]);
}

char16_t isoCharacter(char16_t unit) {
  if (unit >= 'a' && unit <= 'z') return static_cast<char16_t>(unit - 'a' + 'A');
  if ((unit >= 'A' && unit <= 'Z') || (unit >= '0' && unit <= '9')) return unit;
  return u'_';
}

bool isLegal(NameRules rules, char16_t unit) {
  if (unit == '/' || unit == 0) return false;
  if (rules == NameRules::Udf) return true;
  return unit >= 0x20 && std::u16string_view(u"*:;?\\").find(unit) == std::u16string_view::npos;
}

bool isDotOrSpace(char16_t unit) { return unit == u'.' || unit == u' '; }

// Illegal characters become underscores, one for each character; nothing is cut yet.
std::u16string legalText(NameRules rules, std::u16string_view text) {
  std::u16string legal;
  legal.reserve(text.size());
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (isPairAt(text, at)) {
      if (isIso(rules)) {
        legal += u'_';
      } else {
        legal.append(text, at, 2);
      }
      ++at;
    } else if (isHighSurrogate(text[at]) || isLowSurrogate(text[at])) {
      legal += u'_';
    } else if (isIso(rules)) {
      legal += isoCharacter(text[at]);
    } else {
      legal += isLegal(rules, text[at]) ? text[at] : u'_';
    }
  }
  return legal;
}

struct Parts {
  std::u16string base;
  std::u16string extension;  // with its dot, or empty
};

Parts splitName(NameRules rules, const NameToMap& entry) {
  const std::size_t dot = entry.name.rfind(u'.');
  const bool hasExtension = !entry.isDirectory && dot != std::u16string_view::npos && dot > 0 &&
                            dot + 1 < entry.name.size() &&
                            (isIso(rules) || entry.name.size() - dot <= kLongestExtension + 1);
  if (!hasExtension) return {legalText(rules, entry.name), {}};
  const std::size_t longest = rules == NameRules::IsoLevel1 ? 3 : kLongestExtension;
  const std::u16string extension = legalText(rules, entry.name.substr(dot + 1));
  return {legalText(rules, entry.name.substr(0, dot)),
          u"." + std::u16string(cutUnits(extension, longest))};
}

// How many units the base may have beside the rest.
std::size_t roomForBase(NameRules rules, const NameToMap& entry, const Parts& parts) {
  switch (rules) {
    case NameRules::IsoLevel1:
      return 8;
    case NameRules::IsoLevel2:
      // The dot does not count.
      if (entry.isDirectory) return 31;
      return 30 - (parts.extension.empty() ? 0 : parts.extension.size() - 1);
    case NameRules::Joliet:
      return kJolietUnits - parts.extension.size();
    case NameRules::Udf:
      break;
  }
  const auto isNarrow = [](const std::u16string& text) {
    for (const char16_t unit : text) {
      if (unit > 0xFF) return false;
    }
    return true;
  };
  const bool narrow = isNarrow(parts.base) && isNarrow(parts.extension);
  return (narrow ? kUdfUnits : kUdfWideUnits) - parts.extension.size();
}

std::u16string compose(NameRules rules, const NameToMap& entry, const Parts& parts,
                       std::u16string_view tail) {
  const std::size_t room = roomForBase(rules, entry, parts) - tail.size();
  std::u16string name(cutUnits(parts.base, room));
  name.append(tail).append(parts.extension);
  if (rules == NameRules::Joliet) {
    // Windows opens no such file, and readers that drop a dot at the end take "..." for "..".
    for (std::size_t end = name.size(); end > 0 && isDotOrSpace(name[end - 1]); --end) {
      name[end - 1] = u'_';
    }
  }
  return name;
}

// Latin, Greek and Cyrillic small letters become capitals: enough to keep apart what a reader that
// ignores case would mix up.
char16_t capital(char16_t unit) {
  const bool isSmall =
      (unit >= 'a' && unit <= 'z') || (unit >= 0xE0 && unit <= 0xFE && unit != 0xF7) ||
      (unit >= 0x3B1 && unit <= 0x3C9 && unit != 0x3C2) || (unit >= 0x430 && unit <= 0x44F);
  if (isSmall) return static_cast<char16_t>(unit - 0x20);
  if (unit >= 0x450 && unit <= 0x45F) return static_cast<char16_t>(unit - 0x50);
  return unit;
}

std::u16string withoutCase(std::u16string name) {
  for (char16_t& unit : name) unit = capital(unit);
  return name;
}

std::u16string numberTail(unsigned number) {
  std::u16string tail = u"_";
  for (const char digit : std::to_string(number)) tail += static_cast<char16_t>(digit);
  return tail;
}

}  // namespace

std::u16string_view cutUnits(std::u16string_view text, std::size_t limit) {
  if (text.size() <= limit) return text;
  if (limit > 0 && isPairAt(text, limit - 1)) --limit;
  return text.substr(0, limit);
}

bool mapNames(NameRules rules, const std::vector<NameToMap>& names,
              std::vector<std::u16string>& mapped) {
  mapped.assign(names.size(), {});
  std::unordered_set<std::u16string> taken;
  std::vector<std::size_t> changed;
  for (std::size_t i = 0; i < names.size(); ++i) {
    std::u16string plain = compose(rules, names[i], splitName(rules, names[i]), {});
    if (plain == names[i].name && taken.insert(withoutCase(plain)).second) {
      mapped[i] = std::move(plain);
    } else {
      changed.push_back(i);
    }
  }
  // The next number to try for a name, so that many equal ones do not count from the start again.
  std::unordered_map<std::u16string, unsigned> next;
  for (const std::size_t i : changed) {
    const Parts parts = splitName(rules, names[i]);
    std::u16string name = compose(rules, names[i], parts, {});
    unsigned& number = next[withoutCase(name)];
    while (!taken.insert(withoutCase(name)).second) {
      if (number == kLastNumber) return false;
      name = compose(rules, names[i], parts, numberTail(++number));
    }
    mapped[i] = std::move(name);
  }
  return true;
}

std::u16string isoVolumeName(std::u16string_view name) {
  return legalText(NameRules::IsoLevel2, name).substr(0, 32);
}

std::u16string jolietVolumeName(std::u16string_view name) {
  const std::u16string legal = legalText(NameRules::Joliet, name);
  return std::u16string(cutUnits(legal, 16));
}

}  // namespace quillon::platform
