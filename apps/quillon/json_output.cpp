#include "json_output.h"

#include <cstdint>
#include <nlohmann/json.hpp>
#include <utility>

#include "terminal_text.h"

namespace quillon::cli {

namespace {

constexpr std::size_t kMostMembers = 40;

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

// JSON may hold DEL and the controls of Latin-1 as they are, but terminals obey some of them: they
// are escaped.
std::string withoutControls(std::string json) {
  constexpr std::string_view kBegins = "\x7F\xC2";
  std::size_t at = json.find_first_of(kBegins);
  if (at == std::string::npos) return json;
  std::string out;
  std::size_t kept = 0;
  for (; at != std::string::npos; at = json.find_first_of(kBegins, at + 1)) {
    const bool isDel = json[at] == '\x7F';
    const auto second =
        static_cast<std::uint8_t>(isDel || at + 1 == json.size() ? 0 : json[at + 1]);
    if (!isDel && (second < 0x80 || second > 0x9F)) continue;
    out.append(json, kept, at - kept);
    out += "\\u00" + hexOf(isDel ? "\x7F" : std::string_view(json).substr(at + 1, 1));
    kept = at + (isDel ? 1 : 2);
  }
  return out.append(json, kept);
}

}  // namespace

bool isUtf8(std::string_view text) {
  while (!text.empty()) {
    const std::size_t bytes = utf8SequenceBytes(text);
    if (bytes == 0) return false;
    text.remove_prefix(bytes);
  }
  return true;
}

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
  return withoutControls(
      json.dump(-1, ' ', /*ensure_ascii=*/false, Json::error_handler_t::replace));
}

std::string jsonObject(Json object, const Outcome& outcome) {
  addError(object, outcome);
  return jsonLine(object) + "\n";
}

std::string jsonObject(const Outcome& outcome) { return jsonObject(emptyObject(), outcome); }

std::string JsonList::begin() const {
  return hasBegun_ ? std::string() : "{" + jsonLine(name_) + ":[";
}

std::string JsonList::add(const Json& element) {
  std::string piece = hasBegun_ ? "," : begin();
  piece += jsonLine(element);
  hasBegun_ = true;  // not before it is sure that the piece is there
  return piece;
}

std::string JsonList::end(Json members, const Outcome& outcome) {
  std::string rest = jsonObject(std::move(members), outcome);
  rest.front() = ',';  // in the place of its brace
  return begin() + "]" + rest;
}

}  // namespace quillon::cli
