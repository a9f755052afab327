#include "registry_file.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <optional>

#include "platform/win32/registry.h"
#include "win32/utf8.h"

namespace quillon::platform {
namespace {

constexpr std::u16string_view kHeading = u"Windows Registry Editor Version 5.00";
constexpr std::u16string_view kOldHeading = u"REGEDIT4";
constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view kUtf16Mark = "\xFF\xFE";

// Names in the registry are compared by their capitals; those of Latin letters are enough here.
constexpr char16_t capital(char16_t unit) {
  const bool small =
      (unit >= u'a' && unit <= u'z') || (unit >= 0xE0 && unit <= 0xFE && unit != 0xF7);
  return small ? static_cast<char16_t>(unit - 0x20) : unit;
}

std::u16string_view trimmed(std::u16string_view text) {
  constexpr std::u16string_view kBlank = u" \t\r";
  const std::size_t first = text.find_first_not_of(kBlank);
  if (first == std::u16string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlank) - first + 1);
}

bool takePrefix(std::u16string_view& text, std::u16string_view prefix) {
  if (!text.starts_with(prefix)) return false;
  text.remove_prefix(prefix.size());
  return true;
}

// A text in quotation marks at the start of line, without its escapes.
std::optional<std::u16string> takeQuoted(std::u16string_view& line) {
  if (!takePrefix(line, u"\"")) return std::nullopt;
  std::u16string text;
  while (!line.empty()) {
    char16_t unit = line[0];
    line.remove_prefix(1);
    if (unit == u'"') return text;
    if (unit == u'\\' && !line.empty()) {
      unit = line[0];
      line.remove_prefix(1);
    }
    text.push_back(unit);
  }
  return std::nullopt;
}

int hexDigit(char16_t unit) {
  if (unit >= u'0' && unit <= u'9') return unit - u'0';
  if (unit >= u'a' && unit <= u'f') return unit - u'a' + 10;
  if (unit >= u'A' && unit <= u'F') return unit - u'A' + 10;
  return -1;
}

// At most eight digits; nothing for other text.
std::optional<DWORD> hexNumber(std::u16string_view text) {
  if (text.empty() || text.size() > 8) return std::nullopt;
  DWORD value = 0;
  for (const char16_t unit : text) {
    const int digit = hexDigit(unit);
    if (digit < 0) return std::nullopt;
    value = value << 4 | static_cast<DWORD>(digit);
  }
  return value;
}

std::optional<std::vector<BYTE>> hexBytes(std::u16string_view text) {
  std::vector<BYTE> bytes;
  text = trimmed(text);
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(u','), text.size());
    const std::u16string_view item = trimmed(text.substr(0, end));
    const std::optional<DWORD> byte = hexNumber(item);
    // A comma may follow the last byte.
    if (item.size() > 2 || (!byte && !(item.empty() && end == text.size()))) return std::nullopt;
    if (byte) bytes.push_back(static_cast<BYTE>(*byte));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return bytes;
}

std::vector<BYTE> littleEndian(DWORD value) {
  return {static_cast<BYTE>(value), static_cast<BYTE>(value >> 8), static_cast<BYTE>(value >> 16),
          static_cast<BYTE>(value >> 24)};
}

std::vector<BYTE> textData(std::u16string_view text) {
  std::vector<BYTE> data;
  data.reserve((text.size() + 1) * 2);
  for (const char16_t unit : text) {
    data.push_back(static_cast<BYTE>(unit & 0xFF));
    data.push_back(static_cast<BYTE>(unit >> 8));
  }
  data.insert(data.end(), 2, 0);
  return data;
}

// What follows the equals sign.
std::optional<RegistryValue> parseData(std::u16string_view text) {
  text = trimmed(text);
  if (text.starts_with(u'"')) {
    const std::optional<std::u16string> value = takeQuoted(text);
    if (!value || !trimmed(text).empty()) return std::nullopt;
    return RegistryValue{REG_SZ, textData(*value)};
  }
  if (takePrefix(text, u"dword:")) {
    const std::optional<DWORD> value = hexNumber(text);
    if (!value) return std::nullopt;
    return RegistryValue{REG_DWORD, littleEndian(*value)};
  }
  if (!takePrefix(text, u"hex")) return std::nullopt;
  DWORD type = REG_BINARY;
  if (takePrefix(text, u"(")) {
    const std::size_t end = text.find(u')');
    const std::optional<DWORD> number = hexNumber(text.substr(0, end));
    if (end == std::u16string_view::npos || !number) return std::nullopt;
    type = *number;
    text.remove_prefix(end + 1);
  }
  if (!takePrefix(text, u":")) return std::nullopt;
  std::optional<std::vector<BYTE>> bytes = hexBytes(text);
  if (!bytes) return std::nullopt;
  return RegistryValue{type, std::move(*bytes)};
}

class Parser {
 public:
  explicit Parser(RegistryDocument& document) : document_(document) {}

  void parse(std::u16string_view text) {
    while (!text.empty()) {
      const std::size_t number = lines_ + 1;
      const std::u16string line = takeLine(text);
      const std::u16string_view content = trimmed(line);
      if (content.empty() || content[0] == u';' || content == kHeading || content == kOldHeading) {
        continue;
      }
      if (content[0] == u'[' ? parseKey(content) : parseValue(content)) continue;
      if (!document_.damaged) document_.damagedLine = number;
      document_.damaged = true;
    }
  }

 private:
  // A line of bytes that ends in "\" goes on in the next; a text may end in one.
  std::u16string takeLine(std::u16string_view& text) {
    std::u16string line;
    for (;;) {
      ++lines_;
      const std::size_t end = std::min(text.find(u'\n'), text.size());
      const std::u16string_view part = trimmed(text.substr(0, end));
      text.remove_prefix(std::min(end + 1, text.size()));
      line += part;
      const bool continues = part.ends_with(u'\\') && line.find(u"=hex") != std::u16string::npos;
      if (!continues || text.empty()) return line;
      line.pop_back();
    }
  }

  bool parseKey(std::u16string_view line) {
    key_ = nullptr;
    if (!line.ends_with(u']')) return false;
    line = line.substr(1, line.size() - 2);
    const bool removes = takePrefix(line, u"-");
    // No predefined key begins so, and written again it would mean a removal.
    if (line.empty() || line[0] == u'\\' || line[0] == u'-') return false;
    if (removes) {
      document_.roots.remove(line);
      ignoresValues_ = true;
      return true;
    }
    bool created = false;
    key_ = &document_.roots.make(line, created);
    ignoresValues_ = false;
    return true;
  }

  bool parseValue(std::u16string_view line) {
    std::u16string name;
    if (!takePrefix(line, u"@")) {
      std::optional<std::u16string> quoted = takeQuoted(line);
      if (!quoted) return false;
      name = std::move(*quoted);
    }
    line = trimmed(line);
    if (!takePrefix(line, u"=")) return false;
    if (key_ == nullptr) return ignoresValues_;
    if (trimmed(line) == u"-") {
      key_->values.erase(name);
      return true;
    }
    std::optional<RegistryValue> value = parseData(line);
    if (!value) return false;
    key_->values.insert_or_assign(std::move(name), std::move(*value));
    return true;
  }

  RegistryDocument& document_;
  RegistryKey* key_ = nullptr;
  bool ignoresValues_ = false;
  std::size_t lines_ = 0;  // taken
};

std::u16string fromUtf16Bytes(std::string_view bytes) {
  std::u16string text;
  text.reserve(bytes.size() / 2);
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    text.push_back(static_cast<char16_t>(static_cast<unsigned char>(bytes[i]) |
                                         static_cast<unsigned char>(bytes[i + 1]) << 8));
  }
  return text;
}

std::string utf16Bytes(std::u16string_view text) {
  std::string bytes(kUtf16Mark);
  for (const char16_t unit : text) {
    bytes.push_back(static_cast<char>(unit & 0xFF));
    bytes.push_back(static_cast<char>(unit >> 8));
  }
  return bytes;
}

void appendQuoted(std::u16string& out, std::u16string_view text) {
  out.push_back(u'"');
  for (const char16_t unit : text) {
    if (unit == u'\\' || unit == u'"') out.push_back(u'\\');
    out.push_back(unit);
  }
  out.push_back(u'"');
}

void appendAscii(std::u16string& out, std::string_view text) {
  out.append(text.begin(), text.end());
}

// The text of a value that can stand between quotation marks: one terminator, at its end, and
// nothing that would break the line.
std::optional<std::u16string> plainText(const RegistryValue& value) {
  if (value.type != REG_SZ || value.data.size() < 2 || value.data.size() % 2 != 0) {
    return std::nullopt;
  }
  std::u16string text =
      fromUtf16Bytes({reinterpret_cast<const char*>(value.data.data()), value.data.size()});
  if (text.back() != 0) return std::nullopt;
  text.pop_back();
  const bool plain = std::none_of(text.begin(), text.end(), [](char16_t unit) {
    return unit < 0x20 || (unit >= 0xD800 && unit <= 0xDFFF);
  });
  return plain ? std::optional(std::move(text)) : std::nullopt;
}

void appendHex(std::u16string& out, const RegistryValue& value) {
  constexpr std::size_t kBytesPerLine = 24;
  std::array<char, 16> buffer;
  if (value.type == REG_BINARY) {
    appendAscii(out, "hex:");
  } else {
    std::snprintf(buffer.data(), buffer.size(), "hex(%x):", value.type);
    appendAscii(out, buffer.data());
  }
  for (std::size_t i = 0; i < value.data.size(); ++i) {
    if (i > 0) appendAscii(out, i % kBytesPerLine == 0 ? ",\\\n  " : ",");
    std::snprintf(buffer.data(), buffer.size(), "%02x", static_cast<unsigned>(value.data[i]));
    appendAscii(out, buffer.data());
  }
}

void appendValue(std::u16string& out, const std::u16string& name, const RegistryValue& value) {
  if (name.empty()) {
    out.push_back(u'@');
  } else {
    appendQuoted(out, name);
  }
  out.push_back(u'=');
  if (const std::optional<std::u16string> text = plainText(value)) {
    appendQuoted(out, *text);
  } else if (value.type == REG_DWORD && value.data.size() == 4) {
    const DWORD number = value.data[0] | static_cast<DWORD>(value.data[1]) << 8 |
                         static_cast<DWORD>(value.data[2]) << 16 |
                         static_cast<DWORD>(value.data[3]) << 24;
    std::array<char, 16> buffer;
    std::snprintf(buffer.data(), buffer.size(), "dword:%08x", number);
    appendAscii(out, buffer.data());
  } else {
    appendHex(out, value);
  }
  out.push_back(u'\n');
}

// Keys on the way to others need no line of their own; empty ones at the end of a path do.
void appendKey(std::u16string& out, const std::u16string& path, const RegistryKey& key) {
  const bool isPredefined = path.find(u'\\') == std::u16string::npos;
  if (!key.values.empty() || (key.subkeys.empty() && !isPredefined)) {
    out.append(u"\n[").append(path).append(u"]\n");
    for (const auto& [name, value] : key.values) appendValue(out, name, value);
  }
  for (const auto& [name, subkey] : key.subkeys) {
    std::u16string below = path;
    below.append(1, u'\\').append(name);
    appendKey(out, below, subkey);
  }
}

// Takes the first part of a path; doubled and closing separators are passed over.
std::u16string_view takePart(std::u16string_view& path) {
  while (takePrefix(path, u"\\")) {
  }
  const std::size_t end = std::min(path.find(u'\\'), path.size());
  const std::u16string_view part = path.substr(0, end);
  path.remove_prefix(end);
  return part;
}

}  // namespace

bool NameOrder::operator()(std::u16string_view a, std::u16string_view b) const {
  return std::lexicographical_compare(
      a.begin(), a.end(), b.begin(), b.end(),
      [](char16_t x, char16_t y) { return capital(x) < capital(y); });
}

RegistryKey* RegistryKey::find(std::u16string_view path) {
  RegistryKey* key = this;
  for (std::u16string_view part = takePart(path); !part.empty(); part = takePart(path)) {
    const auto found = key->subkeys.find(part);
    if (found == key->subkeys.end()) return nullptr;
    key = &found->second;
  }
  return key;
}

RegistryKey& RegistryKey::make(std::u16string_view path, bool& created) {
  RegistryKey* key = this;
  created = false;
  for (std::u16string_view part = takePart(path); !part.empty(); part = takePart(path)) {
    const auto [entry, isNew] = key->subkeys.try_emplace(std::u16string(part));
    created = isNew;
    key = &entry->second;
  }
  return *key;
}

bool RegistryKey::remove(std::u16string_view path) {
  while (path.ends_with(u'\\')) path.remove_suffix(1);
  const std::size_t separator = path.rfind(u'\\');
  const bool isTop = separator == std::u16string_view::npos;
  RegistryKey* parent = isTop ? this : find(path.substr(0, separator));
  if (parent == nullptr) return false;
  const auto found = parent->subkeys.find(isTop ? path : path.substr(separator + 1));
  if (found == parent->subkeys.end()) return false;
  parent->subkeys.erase(found);
  return true;
}

RegistryDocument parseRegistry(std::string_view bytes) {
  RegistryDocument document;
  std::u16string text;
  if (bytes.starts_with(kUtf16Mark)) {
    document.encoding = RegistryEncoding::Utf16;
    text = fromUtf16Bytes(bytes.substr(kUtf16Mark.size()));
  } else {
    if (bytes.starts_with(kUtf8Mark)) bytes.remove_prefix(kUtf8Mark.size());
    text = wideFromNative(bytes);
  }
  Parser(document).parse(text);
  return document;
}

std::string writeRegistry(const RegistryDocument& document) {
  std::u16string text(kHeading);
  text += u'\n';
  for (const auto& [name, key] : document.roots.subkeys) appendKey(text, name, key);
  if (document.encoding == RegistryEncoding::Utf8) return nativeFromWide(text);
  std::u16string lines;
  for (const char16_t unit : text) {
    if (unit == u'\n') lines += u'\r';
    lines += unit;
  }
  return utf16Bytes(lines);
}

}  // namespace quillon::platform
