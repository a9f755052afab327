// Reads the XML of a header without an XML library.
#pragma once

#include "foundation/text.h"

namespace quillon {

// Texts still have their entities: AppendUnescaped replaces them.
struct HeaderElement {
  TextView group;  // four hexadecimal digits, as the next
  TextView element;
  TextView vr;
  TextView name;           // of the dictionary; what is not in it has its element number
  TextView title;          // the standard's name, where the header has it; empty
  TextView meaning;        // what the value, a UID, stands for, where the header has it; empty
  TextView value;          // of one that has at most one value and no items
  bool hasValues = false;  // several: NextValue reads them
  TextView count;          // of these, how many there are in the XML
  TextView total;          // and how many in the file
};

// Takes the form in which CDicomUtil::GetHeaderXml writes, and no other: each tag and each value
// has a line of its own, attributes stand in one order, and texts hold few entities. The XML must
// outlive the reader and what it answers.
class HeaderXmlReader {
 public:
  enum class Part { CharacterSet, Element, Item, ItemEnd, SequenceEnd, End };

  explicit HeaderXmlReader(TextView xml) : rest_(xml) {}

  // Goes on to the next part. Values that were not read are passed over.
  Part Next();
  // Of the part Element. One with the VR SQ has its items behind it, up to SequenceEnd.
  [[nodiscard]] const HeaderElement& Element() const { return element_; }
  // False behind the last one.
  bool NextValue(TextView& value);
  // Of the part CharacterSet: the terms that texts were read by, and the number of the code page
  // where these are none or not known, else empty.
  [[nodiscard]] TextView Terms() const { return terms_; }
  [[nodiscard]] TextView CodePage() const { return codePage_; }

 private:
  TextView TakeLine();
  void ReadElement(TextView line);

  TextView rest_;
  HeaderElement element_;
  TextView terms_;
  TextView codePage_;
};

// A text of the XML as it is.
void AppendUnescaped(Text& out, TextView text);

}  // namespace quillon
