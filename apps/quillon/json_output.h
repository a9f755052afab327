// JSON as commands print it and the audit records it. Texts that come from file names and from what
// files hold need not be UTF-8.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>
#include <utility>

#include "outcome.h"

namespace quillon::cli {

// Members stay in the order in which they were added.
using Json = nlohmann::ordered_json;

// With room for the members of any result: making room later copies those that are there, long
// lists as well.
Json emptyObject();
// null for an empty text.
Json textOrNull(std::string_view text);
bool isUtf8(std::string_view text);
// Adds the member "path", null for an empty one, and where it is no UTF-8 "path_hex" with its
// bytes.
void addPath(Json& object, std::string_view path);
// Adds the member "error": null, or the sentence.
void addError(Json& object, const Outcome& outcome);

// In one line, without its end. What is no UTF-8 becomes U+FFFD, once for each byte that begins no
// character and once for each character that is cut short.
std::string jsonLine(const Json& json);
// The object with its error behind its members, as a command prints it.
std::string jsonObject(Json object, const Outcome& outcome);
// Of a command that has nothing to tell but how it ended.
std::string jsonObject(const Outcome& outcome);

// The same of an object that begins with a list which may be longer than the memory: what to write,
// piece by piece.
class JsonList {
 public:
  explicit JsonList(std::string name) : name_(std::move(name)) {}
  std::string add(const Json& element);
  // The members behind the list, and the error.
  std::string end(Json members, const Outcome& outcome);

 private:
  [[nodiscard]] std::string begin() const;

  std::string name_;
  bool hasBegun_ = false;
};

}  // namespace quillon::cli
