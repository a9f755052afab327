#include "json_output.h"

#include <cstdint>
#include <cstdio>

#include "terminal_text.h"

namespace quillon::cli {

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

void appendAscii(std::string& out, char c) {
  switch (c) {
    case '"':
      out += "\\\"";
      return;
    case '\\':
      out += "\\\\";
      return;
    case '\n':
      out += "\\n";
      return;
    case '\r':
      out += "\\r";
      return;
    case '\t':
      out += "\\t";
      return;
    default:
      break;
  }
  if (static_cast<std::uint8_t>(c) >= 0x20) {
    out += c;
    return;
  }
  char escaped[8];
  std::snprintf(escaped, sizeof escaped, "\\u%04x", static_cast<unsigned>(c));
  out += escaped;
}

}  // namespace

std::string jsonString(std::string_view text) {
  std::string out = "\"";
  while (!text.empty()) {
    const std::size_t bytes = utf8SequenceBytes(text);
    if (bytes == 0) {
      out += kReplacement;
    } else if (bytes == 1) {
      appendAscii(out, text.front());
    } else {
      out += text.substr(0, bytes);
    }
    text.remove_prefix(bytes == 0 ? 1 : bytes);
  }
  return out + "\"";
}

std::string jsonTextOrNull(std::string_view text) {
  return text.empty() ? "null" : jsonString(text);
}

std::string jsonBool(bool value) { return value ? "true" : "false"; }

std::string jsonPathMembers(std::string_view path) {
  std::string members = jsonMember("path", jsonTextOrNull(path));
  std::string hex;
  bool isUtf8 = true;
  for (std::string_view rest = path; isUtf8 && !rest.empty();) {
    const std::size_t bytes = utf8SequenceBytes(rest);
    isUtf8 = bytes != 0;
    rest.remove_prefix(bytes);
  }
  if (isUtf8) return members;
  for (const char c : path) {
    char digits[3];
    std::snprintf(digits, sizeof digits, "%02x",
                  static_cast<unsigned>(static_cast<std::uint8_t>(c)));
    hex += digits;
  }
  return members + jsonMember("path_hex", jsonString(hex));
}

std::string jsonMember(const char* name, const std::string& json) {
  return "\"" + std::string(name) + "\":" + json + ",";
}

}  // namespace quillon::cli
