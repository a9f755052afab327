// How the client reads values from its script and prints what comes back: the same on both systems.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "server/com_server/quillon_media_rw.h"

namespace quillon::client {

// What stands for places in the script ($DIR), so that two runs in different places print the same.
using Variables = std::map<std::string, std::string>;

struct Token {
  std::string text;
  bool isQuoted = false;
};

// Words, and texts in quotation marks; variables are replaced.
std::vector<Token> tokensOf(std::string_view line, const Variables& variables);

// Owns what it holds.
class Value {
 public:
  Value() { VariantInit(&value_); }
  Value(const Value&) = delete;
  Value& operator=(const Value&) = delete;
  ~Value() { VariantClear(&value_); }

  // A text in quotation marks, true or false, or a number.
  void Read(const Token& token);
  VARIANT& Get() { return value_; }

 private:
  VARIANT value_;
};

BSTR bstrOf(std::string_view utf8);
std::string utf8Of(const OLECHAR* text, std::size_t units);

std::string shown(HRESULT hr);
std::string shownText(std::string_view text, const Variables& variables);
std::string shownValue(const VARIANT& value, const Variables& variables);

}  // namespace quillon::client
