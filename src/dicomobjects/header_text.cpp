#include "dicomobjects/header_text.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <vector>

namespace quillon {

namespace {

constexpr std::size_t kValueColumn = 50;
constexpr std::size_t kLeastGap = 2;
constexpr std::size_t kIndent = 2;
constexpr std::size_t kLabelChars = 13;  // "Character set"
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

// Numbers that are mostly short.
bool IsShort(TextView vr) {
  constexpr std::array<TextView, 6> kShort{OLESTR("OB"), OLESTR("OW"), OLESTR("OB/OW"),
                                           OLESTR("UN"), OLESTR("US"), OLESTR("SS")};
  return std::ranges::find(kShort, vr) != kShort.end();
}

// What the XML library would give the stylesheet, in the form that HeaderXml alone writes: each tag
// and each value has a line of its own, attributes stand in one order, and texts hold no other
// entities.
class HeaderTextWriter {
 public:
  explicit HeaderTextWriter(TextView xml) : rest_(xml) {}

  Text Write() {
    out_.reserve(rest_.size());
    while (!rest_.empty()) {
      TextView line = TakeLine();
      if (Skip(line, OLESTR("<tag "))) {
        PutElement(line);
      } else if (line == OLESTR("<item>")) {
        BeginItem();
      } else if (line == OLESTR("</tag>")) {
        EndSequence();
      } else if (Skip(line, OLESTR("<data-set charset="))) {
        PutCharacterSet(line);
      }
    }
    return std::move(out_);
  }

 private:
  struct Sequence {
    std::size_t countAt;  // where the number of its items goes
    std::size_t items;
  };

  TextView TakeLine() {
    const std::size_t end = std::min(rest_.find(OLESTR('\n')), rest_.size());
    const TextView line = rest_.substr(0, end);
    rest_.remove_prefix(std::min(end + 1, rest_.size()));
    return line;
  }
  static bool Skip(TextView& line, TextView start) {
    if (!line.starts_with(start)) return false;
    line.remove_prefix(start.size());
    return true;
  }
  // The next attribute's value, still with its entities.
  static TextView TakeQuoted(TextView& line) {
    const std::size_t begin = std::min(line.find(kQuote), line.size() - 1) + 1;
    const std::size_t end = std::min(line.find(kQuote, begin), line.size());
    const TextView value = line.substr(begin, end - begin);
    line.remove_prefix(std::min(end + 1, line.size()));
    return value;
  }
  static TextView UpToTag(TextView line) { return line.substr(0, line.find(OLESTR('<'))); }

  void Put(TextView text) { out_ += text; }
  void PutSpaces(std::size_t count) { out_.append(count, OLESTR(' ')); }
  void PutNumber(std::size_t number) {
    const std::string digits = std::to_string(number);
    out_.append(digits.begin(), digits.end());
  }
  void PutUnescaped(TextView text) {
    for (;;) {
      const std::size_t at = std::min(text.find(OLESTR('&')), text.size());
      Put(text.substr(0, at));
      text.remove_prefix(at);
      if (text.empty()) return;
      const auto* const entity = std::ranges::find_if(
          kEntities, [text](const Entity& one) { return text.starts_with(one.name); });
      if (entity == kEntities.end()) return;
      out_ += entity->character;
      text.remove_prefix(entity->name.size());
    }
  }
  void BreakLine() {
    Put(OLESTR("\n"));
    PutSpaces(kValueColumn);
  }

  // What the texts below were read in.
  void PutCharacterSet(TextView line) {
    Put(OLESTR("Character set"));
    PutSpaces(kValueColumn - kLabelChars);
    const TextView terms = TakeQuoted(line);
    PutUnescaped(terms);
    if (Skip(line, OLESTR(" code-page="))) {
      Put(terms.empty() ? TextView(OLESTR("none declared")) : TextView(OLESTR(" is not known")));
      Put(OLESTR(", read in code page "));
      Put(TakeQuoted(line));
    }
    Put(OLESTR("\n\n"));
  }

  // What the dictionary does not know is named by its element number.
  void PutName(TextView name, TextView title, TextView group, TextView element) {
    if (!title.empty()) {
      PutUnescaped(title);
      return;
    }
    if (name == element) {
      const bool isPrivate = TextView(OLESTR("13579bdf")).find(group.back()) != TextView::npos;
      Put(isPrivate ? TextView(OLESTR("Private")) : TextView(OLESTR("Unknown")));
      return;
    }
    const std::size_t first = out_.size();
    Put(name);
    if (first == out_.size()) return;
    OLECHAR& initial = out_[first];
    if (initial >= OLESTR('a') && initial <= OLESTR('z')) {
      initial = static_cast<OLECHAR>(initial - OLESTR('a') + OLESTR('A'));
    }
  }

  void PutElement(TextView line) {
    const TextView group = TakeQuoted(line);
    const TextView element = TakeQuoted(line);
    const TextView vr = TakeQuoted(line);
    static_cast<void>(TakeQuoted(line));  // how many values there are shows in them
    const TextView name = TakeQuoted(line);
    const TextView title = Skip(line, OLESTR(" title=")) ? TakeQuoted(line) : TextView();
    const TextView meaning = Skip(line, OLESTR(" meaning=")) ? TakeQuoted(line) : TextView();
    line.remove_prefix(std::min<std::size_t>(1, line.size()));  // the end of the tag

    if (sequences_.empty() && !lastGroup_.empty() && group != lastGroup_) Put(OLESTR("\n"));
    if (sequences_.empty()) lastGroup_ = group;
    const std::size_t start = out_.size();
    PutSpaces(kIndent * sequences_.size());
    Put(OLESTR("("));
    Put(group);
    Put(OLESTR(","));
    Put(element);
    Put(OLESTR(") "));
    Put(vr);
    Put(OLESTR(" "));
    PutName(name, title, group, element);
    const std::size_t used = out_.size() - start + kLeastGap;
    const std::size_t gap = kLeastGap + (used < kValueColumn ? kValueColumn - used : 0);

    if (vr == OLESTR("SQ")) {
      PutSpaces(gap);
      sequences_.push_back({out_.size(), 0});
      Put(OLESTR(" items\n"));
    } else if (Skip(line, OLESTR("<values count="))) {
      PutSpaces(gap);
      PutValues(line, IsShort(vr) ? 16 : 6);
    } else {
      const TextView value = UpToTag(line);
      if (!value.empty()) PutSpaces(gap);
      PutUnescaped(value);
      if (!meaning.empty()) {
        Put(OLESTR(" ("));
        PutUnescaped(meaning);
        Put(OLESTR(")"));
      }
      Put(OLESTR("\n"));
    }
  }

  void PutValues(TextView line, std::size_t perLine) {
    const TextView count = TakeQuoted(line);
    const TextView total = TakeQuoted(line);
    for (std::size_t index = 0; !rest_.empty(); ++index) {
      TextView value = TakeLine();
      if (!Skip(value, OLESTR("<value>"))) break;
      if (index != 0) Put(OLESTR("\\"));
      if (index != 0 && index % perLine == 0) BreakLine();
      PutUnescaped(UpToTag(value));
    }
    static_cast<void>(TakeLine());  // the end of the element
    if (count != total) {
      BreakLine();
      Put(OLESTR("(the first "));
      Put(count);
      Put(OLESTR(" of "));
      Put(total);
      Put(OLESTR(" values)"));
    }
    Put(OLESTR("\n"));
  }

  void BeginItem() {
    if (sequences_.empty()) return;
    PutSpaces(kIndent * (sequences_.size() - 1));
    Put(OLESTR("- item "));
    PutNumber(++sequences_.back().items);
    Put(OLESTR("\n"));
  }

  void EndSequence() {
    if (sequences_.empty()) return;
    const Sequence ended = sequences_.back();
    sequences_.pop_back();
    const std::string count = std::to_string(ended.items);
    // Only what stands in the sequence itself moves, once for each level around it.
    if (ended.items == 1) out_.erase(ended.countAt + TextView(OLESTR(" item")).size(), 1);
    out_.insert(ended.countAt, Text(count.begin(), count.end()));
  }

  TextView rest_;
  Text out_;
  TextView lastGroup_;  // of the data set itself
  std::vector<Sequence> sequences_;
};

}  // namespace

Text HeaderTextOf(TextView headerXml) { return HeaderTextWriter(headerXml).Write(); }

}  // namespace quillon
