#include "dicomobjects/header_text.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "dicomobjects/header_xml_reader.h"

namespace quillon {

namespace {

constexpr std::size_t kValueColumn = 50;
constexpr std::size_t kLeastGap = 2;
constexpr std::size_t kIndent = 2;
constexpr std::size_t kLabelChars = 13;  // "Character set"

// Numbers that are mostly short.
bool IsShort(TextView vr) {
  constexpr std::array<TextView, 6> kShort{OLESTR("OB"), OLESTR("OW"), OLESTR("OB/OW"),
                                           OLESTR("UN"), OLESTR("US"), OLESTR("SS")};
  return std::ranges::find(kShort, vr) != kShort.end();
}

class HeaderTextWriter {
 public:
  explicit HeaderTextWriter(TextView xml) : reader_(xml) { out_.reserve(xml.size()); }

  Text Write() {
    for (;;) {
      switch (reader_.Next()) {
        case Part::CharacterSet:
          PutCharacterSet();
          break;
        case Part::Element:
          PutElement();
          break;
        case Part::Item:
          BeginItem();
          break;
        case Part::ItemEnd:
          break;
        case Part::SequenceEnd:
          EndSequence();
          break;
        case Part::End:
          return std::move(out_);
      }
    }
  }

 private:
  using Part = HeaderXmlReader::Part;
  struct Sequence {
    std::size_t countAt;  // where the number of its items goes
    std::size_t items;
  };

  void Put(TextView text) { out_ += text; }
  void PutSpaces(std::size_t count) { out_.append(count, OLESTR(' ')); }
  void PutNumber(std::size_t number) {
    const std::string digits = std::to_string(number);
    out_.append(digits.begin(), digits.end());
  }
  void PutUnescaped(TextView text) { AppendUnescaped(out_, text); }
  void BreakLine() {
    Put(OLESTR("\n"));
    PutSpaces(kValueColumn);
  }

  // What the texts below were read in.
  void PutCharacterSet() {
    Put(OLESTR("Character set"));
    PutSpaces(kValueColumn - kLabelChars);
    PutUnescaped(reader_.Terms());
    if (!reader_.CodePage().empty()) {
      Put(reader_.Terms().empty() ? TextView(OLESTR("none declared"))
                                  : TextView(OLESTR(" is not known")));
      Put(OLESTR(", read in code page "));
      Put(reader_.CodePage());
    }
    Put(OLESTR("\n\n"));
  }

  // What the dictionary does not know is named by its element number.
  void PutName(const HeaderElement& element) {
    if (!element.title.empty()) {
      PutUnescaped(element.title);
      return;
    }
    if (element.name == element.element) {
      const bool isPrivate =
          TextView(OLESTR("13579bdf")).find(element.group.back()) != TextView::npos;
      Put(isPrivate ? TextView(OLESTR("Private")) : TextView(OLESTR("Unknown")));
      return;
    }
    const std::size_t first = out_.size();
    Put(element.name);
    if (first == out_.size()) return;
    OLECHAR& initial = out_[first];
    if (initial >= OLESTR('a') && initial <= OLESTR('z')) {
      initial = static_cast<OLECHAR>(initial - OLESTR('a') + OLESTR('A'));
    }
  }

  void PutElement() {
    const HeaderElement& element = reader_.Element();
    if (sequences_.empty() && !lastGroup_.empty() && element.group != lastGroup_) Put(OLESTR("\n"));
    if (sequences_.empty()) lastGroup_ = element.group;
    const std::size_t start = out_.size();
    PutSpaces(kIndent * sequences_.size());
    Put(OLESTR("("));
    Put(element.group);
    Put(OLESTR(","));
    Put(element.element);
    Put(OLESTR(") "));
    Put(element.vr);
    Put(OLESTR(" "));
    PutName(element);
    const std::size_t used = out_.size() - start + kLeastGap;
    const std::size_t gap = kLeastGap + (used < kValueColumn ? kValueColumn - used : 0);

    if (element.vr == OLESTR("SQ")) {
      PutSpaces(gap);
      sequences_.push_back({out_.size(), 0});
      Put(OLESTR(" items\n"));
    } else if (element.hasValues) {
      PutSpaces(gap);
      PutValues(IsShort(element.vr) ? 16 : 6);
    } else {
      if (!element.value.empty()) PutSpaces(gap);
      PutUnescaped(element.value);
      if (!element.meaning.empty()) {
        Put(OLESTR(" ("));
        PutUnescaped(element.meaning);
        Put(OLESTR(")"));
      }
      Put(OLESTR("\n"));
    }
  }

  void PutValues(std::size_t perLine) {
    const HeaderElement& element = reader_.Element();
    TextView value;
    for (std::size_t index = 0; reader_.NextValue(value); ++index) {
      if (index != 0) Put(OLESTR("\\"));
      if (index != 0 && index % perLine == 0) BreakLine();
      PutUnescaped(value);
    }
    if (element.count != element.total) {
      BreakLine();
      Put(OLESTR("(the first "));
      Put(element.count);
      Put(OLESTR(" of "));
      Put(element.total);
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

  HeaderXmlReader reader_;
  Text out_;
  TextView lastGroup_;  // of the data set itself
  std::vector<Sequence> sequences_;
};

}  // namespace

Text HeaderTextOf(TextView headerXml) { return HeaderTextWriter(headerXml).Write(); }

}  // namespace quillon
