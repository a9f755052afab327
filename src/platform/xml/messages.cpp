#include "messages.h"

#include <cstdlib>
#include <optional>

#include "file_location.h"

namespace quillon::platform {
namespace {

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view kBlank = " \t\r\n";
  const std::size_t first = text.find_first_not_of(kBlank);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlank) - first + 1);
}

std::string inOneLine(std::string_view text) {
  std::string line;
  for (const char c : trimmed(text)) {
    const bool isBlank = c == ' ' || c == '\t' || c == '\r' || c == '\n';
    if (!isBlank) {
      line.push_back(c);
    } else if (line.back() != ' ') {
      line.push_back(' ');
    }
  }
  return line;
}

// "runtime error: file file:///a/b.xsl line 7 element value-of", in front of most messages; one of
// the first words alone where libxslt knows no place.
struct Place {
  std::string file;
  int line = 0;
  std::string element;
};

bool isHeadAlone(std::string_view line) {
  return line == "error" || line == "compilation error" || line == "runtime error";
}

std::optional<Place> placeIn(std::string_view line) {
  constexpr std::string_view kError = "error";
  constexpr std::string_view kLine = " line ";
  constexpr std::string_view kFile = ": file ";
  constexpr std::string_view kElement = " element ";
  const std::size_t head = line.find(kError);
  constexpr std::size_t kLongestHead = 20;  // "compilation error"
  if (head == std::string_view::npos || head > kLongestHead) return std::nullopt;
  Place place;
  if (isHeadAlone(trimmed(line))) return place;
  std::string_view rest = line.substr(head + kError.size());
  if (const std::size_t at = rest.rfind(kElement); at != std::string_view::npos) {
    place.element = trimmed(rest.substr(at + kElement.size()));
    rest = rest.substr(0, at);
  } else if (!rest.starts_with(kFile) && trimmed(rest) != ":") {
    return std::nullopt;  // a message that begins so
  }
  if (const std::size_t at = rest.rfind(kLine); at != std::string_view::npos) {
    place.line = std::atoi(std::string(rest.substr(at + kLine.size())).c_str());
    rest = rest.substr(0, at);
  }
  if (rest.starts_with(kFile)) {
    std::string ignored;
    place.file = pathOfLocation(rest.substr(kFile.size()), ignored).value_or("");
  }
  return place;
}

// The library's own function that some messages begin with says nothing to anyone else.
std::string_view withoutFunctionName(std::string_view message) {
  constexpr std::string_view kName =
      "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
  if (!message.starts_with("xml") && !message.starts_with("xslt") && !message.starts_with("exslt"))
    return message;
  const std::size_t end = message.find_first_not_of(kName);
  if (end == std::string_view::npos) return message;
  const std::string_view rest = trimmed(message.substr(end));
  return rest.starts_with(':') ? trimmed(rest.substr(1)) : message;
}

std::string_view takeLine(std::string_view& text) {
  const std::size_t end = text.find('\n');
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  return line;
}

}  // namespace

std::string sentenceWithPlace(std::string_view message, std::string_view file, int line,
                              int column) {
  std::string sentence = inOneLine(message);
  if (sentence.empty()) sentence = "The document cannot be read";
  while (sentence.back() == '.' || sentence.back() == ':') sentence.pop_back();
  std::string place(file);
  if (line > 0) place.append(place.empty() ? "" : ", ").append("line " + std::to_string(line));
  if (column > 0) place += ", column " + std::to_string(column);
  if (!place.empty()) sentence += " (" + place + ")";
  return sentence + ".";
}

bool isPlaceOfError(std::string_view text) { return placeIn(text).has_value(); }

std::string_view instructionNotCompiled(std::string_view text) {
  constexpr std::string_view kStart = "xsltApplySequenceConstructor: ";
  constexpr std::string_view kEnd = " was not compiled";
  text = trimmed(text);
  if (!text.starts_with(kStart) || !text.ends_with(kEnd)) return {};
  if (text.size() <= kStart.size() + kEnd.size()) return {};
  return text.substr(kStart.size(), text.size() - kStart.size() - kEnd.size());
}

bool namesUnknownInstruction(std::string_view errors) {
  return errors.find("xsltStylePreCompute: unknown xsl:") != std::string_view::npos;
}

std::string sentenceOfXslt(std::string_view errors, std::string_view fallback) {
  constexpr std::string_view kWarningOfVersion = "xsl:version: only ";
  Place place;
  std::string message;
  while (!errors.empty() && message.empty()) {
    const std::string_view line = takeLine(errors);
    if (const std::optional<Place> found = placeIn(line)) {
      place = *found;
    } else if (!line.starts_with(kWarningOfVersion)) {
      message = withoutFunctionName(trimmed(line));
    }
  }
  // An expression's own message comes before the place of the instruction that holds it.
  while (place.line == 0 && place.element.empty() && !errors.empty()) {
    if (const std::optional<Place> found = placeIn(takeLine(errors))) place = *found;
  }
  if (message.empty()) message = fallback;
  if (place.line == 0 && !place.element.empty()) {
    return sentenceWithPlace(message, "in element " + place.element, 0, 0);
  }
  return sentenceWithPlace(message, place.file, place.line, 0);
}

}  // namespace quillon::platform
