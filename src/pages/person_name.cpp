#include "pages/person_name.h"

#include <algorithm>
#include <array>
#include <utility>

namespace quillon {

namespace {

constexpr std::array kForms{"letters", "ideographs", "phonetic"};

// Cuts the text up to the next separator off.
TextView TakePart(TextView& rest, OLECHAR separator) {
  const std::size_t end = std::min(rest.find(separator), rest.size());
  const TextView part = TrimmedView(rest.substr(0, end));
  rest.remove_prefix(std::min(end + 1, rest.size()));
  return part;
}

void Append(Text& text, TextView separator, TextView part) {
  if (part.empty()) return;
  if (!text.empty()) text += separator;
  text += part;
}

Text ReadableGroup(TextView group, bool isInLetters) {
  const TextView comma = isInLetters ? OLESTR(", ") : OLESTR(" ");
  Text text(TakePart(group, OLESTR('^')));
  const TextView given = TakePart(group, OLESTR('^'));
  const TextView middle = TakePart(group, OLESTR('^'));
  Text first(TakePart(group, OLESTR('^')));  // the prefix, which is spoken first
  Append(first, OLESTR(" "), given);
  Append(first, OLESTR(" "), middle);
  Append(text, comma, first);
  Append(text, comma, TakePart(group, OLESTR('^')));
  // No name has more parts; what stands there is shown all the same.
  while (!group.empty()) Append(text, OLESTR(" "), TakePart(group, OLESTR('^')));
  return text;
}

}  // namespace

std::vector<NameGroup> ReadableName(TextView name) {
  std::vector<NameGroup> groups;
  for (std::size_t i = 0; i < kForms.size() && !name.empty(); ++i) {
    // What stands behind a third group is none of another form.
    const TextView group = i + 1 < kForms.size() ? TakePart(name, OLESTR('=')) : name;
    Text text = ReadableGroup(group, i == 0);
    if (!text.empty()) groups.push_back({kForms[i], std::move(text)});
  }
  return groups;
}

Text FirstReadableName(TextView name) {
  const std::vector<NameGroup> groups = ReadableName(name);
  return groups.empty() ? Text() : groups.front().text;
}

}  // namespace quillon
