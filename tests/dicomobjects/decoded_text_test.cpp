#include "dicomobjects/decoded_text.h"

#include <gtest/gtest.h>

#include <string>

#include "dicomobjects/dicom_util.h"
#include "element_map.h"
#include "support/text.h"

namespace quillon {
namespace {

using test::ElementMap;
using test::Plain;
using test::TempDir;
using test::UncheckedValues;

constexpr std::uint32_t kCharacterSet = 0x00080005;

// The value stands in a file as it would anywhere; what the toolkit makes of it on the way must not
// cost a character.
TEST(DecodedTexts, TheValuesOfAFileReadInItsCharacterSet) {
  const struct {
    const char* what;
    const char* declared;
    std::uint32_t tag;
    const char* vr;
    std::string bytes;
    const char* text;
    const char* kept;  // null: the bytes but for padding
  } cases[] = {
      {"name", "ISO_IR 192", 0x00100010, "PN", "Wang=\xE7\x8E\x8B", "Wang=王", nullptr},
      {"none declared", "", 0x00100010, "PN", "J\xE9r\xF4me", "Jérôme", nullptr},
      {"a character that ends as a backslash", "GBK", 0x00100010, "PN", "A^\xD5\x5C", "A^誠",
       nullptr},
      {"such a one before padding", "GBK", 0x00100010, "PN", "AB^\xD5\x5C ", "AB^誠",
       "AB^\xD5\x5C "},
      {"such ones before spaces and values", "GB18030", 0x00081070, "PN",
       "\xD5\x5C \xD5\x5C\\\xD5\x5C", "誠 誠\\誠", nullptr},
      {"values beyond ASCII", "ISO_IR 100", 0x00081070, "PN", "\xC4 \\ \xE9\\\\x", "Ä\\é\\\\x",
       "\xC4 \\ \xE9\\\\x"},
      {"a backslash in a text", "ISO_IR 144", 0x00204000, "LT", "\xBB\\\xBB\r\n ", "Л\\Л",
       "\xBB\\\xBB"},
      {"long text", "ISO_IR 144", 0x0040A160, "UT", "\xBB\\\xBB ", "Л\\Л", "\xBB\\\xBB "},
      {"no text for people", "ISO_IR 192", 0x00080060, "CS", "C\xE9", "Cé", nullptr},
      {"several of those", "ISO_IR 192", 0x00080008, "CS", "ORIGINAL\\PRIMARY", "ORIGINAL\\PRIMARY",
       nullptr},
      {"numbers", "ISO_IR 192", 0x00280010, "US", "ab", "", ""},
      {"no value", "ISO_IR 192", 0x00100010, "PN", "", "", nullptr},
  };
  const TempDir directory;
  const UncheckedValues unchecked;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    const Text path = ElementMap()
                          .text(kCharacterSet, "CS", c.declared)
                          .text(c.tag, c.vr, c.bytes)
                          .write(directory, "a.dcm");
    CDicomUtil util;
    ASSERT_TRUE(util.ReadFile(path, /*deferPixelData=*/false));
    const CharacterSet set = CharacterSetOf(*util.GetElementList());
    EXPECT_EQ(set.Terms(), c.declared);
    const DcElem* element = util.GetElementList()->find(c.tag);
    ASSERT_NE(element, nullptr);
    EXPECT_EQ(ValueBytes(*element), c.kept == nullptr ? c.bytes : c.kept);
    EXPECT_EQ(Plain(DecodedText(*element, set)), c.text);
    EXPECT_EQ(ValueBytes(*element->copy()), ValueBytes(*element));
  }
}

TEST(DecodedTexts, ValuesThatChangedAreTheirOwn) {
  const UncheckedValues unchecked;
  DcElem element(0x00081070);
  ASSERT_EQ(element.addValue("\xD5\x5C"
                             "A\\B"),
            kDcOk);
  EXPECT_EQ(ValueBytes(element),
            "\xD5\x5C"
            "A\\B");
  ASSERT_EQ(element.addValue("C", 0), kDcOk);
  EXPECT_EQ(ValueBytes(element), "C\\A\\B");
  ASSERT_EQ(element.addValue("\xD5\x5C"
                             "D"),
            kDcOk);
  EXPECT_EQ(ValueBytes(element), "C\\A\\B\\\xD5\\D");
}

}  // namespace
}  // namespace quillon
