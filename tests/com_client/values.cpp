#include "values.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>

namespace quillon::client {

std::vector<Token> tokensOf(std::string_view line, const Variables& variables) {
  std::vector<Token> tokens;
  while (true) {
    const std::size_t start = line.find_first_not_of(" \t\r");
    if (start == std::string_view::npos || line[start] == '#') break;
    line.remove_prefix(start);
    Token token;
    token.isQuoted = line[0] == '"';
    if (token.isQuoted) line.remove_prefix(1);
    const std::size_t end =
        std::min(line.find_first_of(token.isQuoted ? "\"" : " \t\r"), line.size());
    token.text = line.substr(0, end);
    line.remove_prefix(std::min(end + 1, line.size()));
    for (const auto& [name, value] : variables) {
      const std::string reference = "$" + name;
      for (std::size_t at = token.text.find(reference); at != std::string::npos;
           at = token.text.find(reference, at + value.size())) {
        token.text.replace(at, reference.size(), value);
      }
    }
    tokens.push_back(std::move(token));
  }
  return tokens;
}

void Value::Read(const Token& token) {
  VariantClear(&value_);
  if (token.isQuoted) {
    value_.vt = VT_BSTR;
    value_.bstrVal = bstrOf(token.text);
  } else if (token.text == "true" || token.text == "false") {
    value_.vt = VT_BOOL;
    value_.boolVal = token.text == "true" ? VARIANT_TRUE : VARIANT_FALSE;
  } else {
    value_.vt = VT_I4;
    value_.lVal = static_cast<LONG>(std::strtol(token.text.c_str(), nullptr, 10));
  }
}

BSTR bstrOf(std::string_view utf8) {
  const int bytes = static_cast<int>(utf8.size());
  const int units = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), bytes, nullptr, 0);
  BSTR text = SysAllocStringLen(nullptr, static_cast<UINT>(units));
  MultiByteToWideChar(CP_UTF8, 0, utf8.data(), bytes, text, units);
  return text;
}

std::string utf8Of(const OLECHAR* text, std::size_t units) {
  if (text == nullptr || units == 0) return {};
  const int length = static_cast<int>(units);
  std::string out(static_cast<std::size_t>(
                      WideCharToMultiByte(CP_UTF8, 0, text, length, nullptr, 0, nullptr, nullptr)),
                  '\0');
  WideCharToMultiByte(CP_UTF8, 0, text, length, out.data(), static_cast<int>(out.size()), nullptr,
                      nullptr);
  return out;
}

std::string shown(HRESULT hr) {
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "0x%08X", static_cast<unsigned>(hr));
  return text.data();
}

std::string shownText(std::string_view text, const Variables& variables) {
  std::string out(text);
  for (const auto& [name, value] : variables) {
    for (std::size_t at = out.find(value); !value.empty() && at != std::string::npos;
         at = out.find(value, at)) {
      out.replace(at, value.size(), "$" + name);
    }
  }
  std::string escaped = "\"";
  for (const char c : out) {
    if (c == '\r') continue;
    if (c == '\n') {
      escaped += "\\n";
    } else {
      // Both separate the parts of a path on both systems.
      escaped += c == '\\' ? '/' : c;
    }
  }
  return escaped + '"';
}

std::string shownValue(const VARIANT& value, const Variables& variables) {
  switch (value.vt) {
    case VT_EMPTY:
      return "empty";
    case VT_BSTR:
      if (value.bstrVal == nullptr) return "null";
      return shownText(utf8Of(value.bstrVal, SysStringLen(value.bstrVal)), variables);
    case VT_BOOL:
      return "flag " + std::to_string(value.boolVal);
    case VT_I4:
      return "long " + std::to_string(value.lVal);
    case VT_UI4:
      return "ulong " + std::to_string(value.ulVal);
    case VT_UI8:
      return "ulonglong " + std::to_string(value.ullVal);
    default:
      return "type " + std::to_string(value.vt);
  }
}

}  // namespace quillon::client
