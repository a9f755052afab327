#include "dicomobjects/header_xml_reader.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace quillon {

namespace {

constexpr OLECHAR kQuote = OLESTR('"');

struct Entity {
  TextView name;
  OLECHAR character;
};
constexpr std::array kEntities{
    Entity{OLESTR("&amp;"), OLESTR('&')},   Entity{OLESTR("&gt;"), OLESTR('>')},
    Entity{OLESTR("&lt;"), OLESTR('<')},    Entity{OLESTR("&quot;"), OLESTR('"')},
    Entity{OLESTR("&apos;"), OLESTR('\'')}, Entity{OLESTR("&#64;"), OLESTR('@')},
};

bool Skip(TextView& line, TextView start) {
  if (!line.starts_with(start)) return false;
  line.remove_prefix(start.size());
  return true;
}

// The next attribute's value, still with its entities.
TextView TakeQuoted(TextView& line) {
  const std::size_t begin = std::min(line.find(kQuote), line.size() - 1) + 1;
  const std::size_t end = std::min(line.find(kQuote, begin), line.size());
  const TextView value = line.substr(begin, end - begin);
  line.remove_prefix(std::min(end + 1, line.size()));
  return value;
}

TextView UpToTag(TextView line) { return line.substr(0, line.find(OLESTR('<'))); }

}  // namespace

void AppendUnescaped(Text& out, TextView text) {
  for (;;) {
    const std::size_t at = std::min(text.find(OLESTR('&')), text.size());
    out += text.substr(0, at);
    text.remove_prefix(at);
    if (text.empty()) return;
    const auto* const entity = std::ranges::find_if(
        kEntities, [text](const Entity& one) { return text.starts_with(one.name); });
    if (entity == kEntities.end()) return;
    out += entity->character;
    text.remove_prefix(entity->name.size());
  }
}

TextView HeaderXmlReader::TakeLine() {
  const std::size_t end = std::min(rest_.find(OLESTR('\n')), rest_.size());
  const TextView line = rest_.substr(0, end);
  rest_.remove_prefix(std::min(end + 1, rest_.size()));
  return line;
}

HeaderXmlReader::Part HeaderXmlReader::Next() {
  for (TextView value; element_.hasValues && NextValue(value);) continue;
  while (!rest_.empty()) {
    TextView line = TakeLine();
    if (Skip(line, OLESTR("<tag "))) {
      ReadElement(line);
      return Part::Element;
    }
    if (line == OLESTR("<item>")) return Part::Item;
    if (line == OLESTR("</item>")) return Part::ItemEnd;
    if (line == OLESTR("</tag>")) return Part::SequenceEnd;
    if (Skip(line, OLESTR("<data-set charset="))) {
      terms_ = TakeQuoted(line);
      codePage_ = Skip(line, OLESTR(" code-page=")) ? TakeQuoted(line) : TextView();
      return Part::CharacterSet;
    }
  }
  return Part::End;
}

void HeaderXmlReader::ReadElement(TextView line) {
  element_ = {};
  element_.group = TakeQuoted(line);
  element_.element = TakeQuoted(line);
  element_.vr = TakeQuoted(line);
  static_cast<void>(TakeQuoted(line));  // how many values there are shows in them
  element_.name = TakeQuoted(line);
  if (Skip(line, OLESTR(" title="))) element_.title = TakeQuoted(line);
  if (Skip(line, OLESTR(" meaning="))) element_.meaning = TakeQuoted(line);
  line.remove_prefix(std::min<std::size_t>(1, line.size()));  // the end of the tag
  if (!Skip(line, OLESTR("<values count="))) {
    element_.value = UpToTag(line);
    return;
  }
  element_.hasValues = true;
  element_.count = TakeQuoted(line);
  element_.total = TakeQuoted(line);
}

bool HeaderXmlReader::NextValue(TextView& value) {
  if (!element_.hasValues || rest_.empty()) return false;
  TextView line = TakeLine();
  if (Skip(line, OLESTR("<value>"))) {
    value = UpToTag(line);
    return true;
  }
  element_.hasValues = false;
  static_cast<void>(TakeLine());  // the end of the element
  return false;
}

}  // namespace quillon
