#include "json_output.h"

#include <cstdint>
#include <nlohmann/json.hpp>
#include <utility>

#include "terminal_text.h"

namespace quillon::cli {

namespace {

constexpr std::size_t kMostMembers = 40;

bool isUtf8(std::string_view text) {
  while (!text.empty()) {
    const std::size_t bytes = utf8SequenceBytes(text);
    if (bytes == 0) return false;
    text.remove_prefix(bytes);
  }
  return true;
}

std::string hexOf(std::string_view bytes) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string hex;
  hex.reserve(bytes.size() * 2);
  for (const char c : bytes) {
    const auto byte = static_cast<std::uint8_t>(c);
    hex += kDigits[byte >> 4];
    hex += kDigits[byte & 0xF];
  }
  return hex;
}

}  // namespace

Json emptyObject() {
  Json object = Json::object();
  object.get_ref<Json::object_t&>().reserve(kMostMembers);
  return object;
}

Json textOrNull(std::string_view text) { return text.empty() ? Json() : Json(text); }

void addPath(Json& object, std::string_view path) {
  object["path"] = textOrNull(path);
  if (!isUtf8(path)) object["path_hex"] = hexOf(path);
}

void addError(Json& object, const Outcome& outcome) {
  object["error"] = outcome.failed() ? Json(outcome.text()) : Json();
}

std::string jsonLine(const Json& json) {
  return json.dump(-1, ' ', /*ensure_ascii=*/false, Json::error_handler_t::replace);
}

std::string jsonObject(Json object, const Outcome& outcome) {
  addError(object, outcome);
  return jsonLine(object) + "\n";
}

std::string jsonObject(const Outcome& outcome) { return jsonObject(emptyObject(), outcome); }

std::string JsonList::begin() {
  if (std::exchange(hasBegun_, true)) return {};
  return "{" + jsonLine(name_) + ":[";
}

std::string JsonList::add(const Json& element) {
  return (hasBegun_ ? "," : begin()) + jsonLine(element);
}

std::string JsonList::end(Json members, const Outcome& outcome) {
  std::string rest = jsonObject(std::move(members), outcome);
  rest.front() = ',';  // in the place of its brace
  return begin() + "]" + rest;
}

}  // namespace quillon::cli
