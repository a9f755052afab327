// The names that ISO 9660, Joliet and UDF give to files.
#include "image/image_names.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace quillon::platform {
namespace {

struct Case {
  const char* what;
  NameRules rules;
  std::vector<NameToMap> names;
  std::vector<std::u16string> expected;
};

std::u16string repeat(std::u16string_view text, std::size_t count) {
  std::u16string all;
  while (count-- > 0) all += text;
  return all;
}

TEST(ImageNames, EachFileSystemHasLegalAndUniqueNames) {
  const std::u16string long70(70, u'n');
  const std::u16string spaceAtTheCut = std::u16string(63, u'n') + u" n";
  const std::u16string long260 = repeat(u"\u00E9", 260);
  const std::u16string wide130 = repeat(u"\u4E2D", 130);
  const std::u16string astral = u"x" + repeat(u"\U0001F600", 33);  // 67 units
  const std::vector<Case> cases = {
      {"level 1 keeps what is legal",
       NameRules::IsoLevel1,
       {{u"DICOMDIR", false}, {u"P0000001", true}, {u"A_1.TXT", false}},
       {u"DICOMDIR", u"P0000001", u"A_1.TXT"}},
      {"level 1 cuts, capitalises and numbers",
       NameRules::IsoLevel1,
       {{u"long name 1.html", false}, {u"long name 2.html", false}, {u"read.me.txt", false}},
       {u"LONG_NAM.HTM", u"LONG_N_1.HTM", u"READ_ME.TXT"}},
      {"a legal name is not taken by one that only becomes equal",
       NameRules::IsoLevel1,
       {{u"A+B", false}, {u"A_B", false}, {u"a_b", true}},
       {u"A_B_1", u"A_B", u"A_B_2"}},
      {"a leading dot opens no extension; a directory has none",
       NameRules::IsoLevel1,
       {{u".profile", false}, {u"x.", false}, {u"v1.0", true}},
       {u"_PROFILE", u"X_", u"V1_0"}},
      {"level 2 has 30 characters in a file's name, 31 in a directory's",
       NameRules::IsoLevel2,
       {{u"ABCDEFGHIJKLMNOPQRSTUVWXYZ0123.HTML", false},
        {u"ABCDEFGHIJKLMNOPQRSTUVWXYZ012345", true},
        {u"a.abcdefghijklmnopqrstuvwxyz", false}},
       {u"ABCDEFGHIJKLMNOPQRSTUVWXYZ.HTML", u"ABCDEFGHIJKLMNOPQRSTUVWXYZ01234",
        u"A.ABCDEFGHIJKLMNO"}},
      {"one underscore for one character, lone surrogates too",
       NameRules::IsoLevel1,
       {{u"\U0001F600\u00FC\xDC80.x", false}},
       {u"___.X"}},
      {"Joliet replaces what Windows cannot name",
       NameRules::Joliet,
       {{u"a:b*c?d;e\\f", false}, {u"\u00FC\x01\xDC80", false}},
       {u"a_b_c_d_e_f", u"\u00FC__"}},
      {"Joliet has 64 units and keeps the extension",
       NameRules::Joliet,
       {{std::u16string_view(long70), true}, {u"x", false}},
       {std::u16string(64, u'n'), u"x"}},
      {"Joliet ends no name with a dot or a space, also where it is cut",
       NameRules::Joliet,
       {{u"...", false},
        {u".. ", true},
        {u"x.", false},
        {u".a b.c ", false},
        {spaceAtTheCut, true}},
       {u"___", u".. _1", u"x_", u".a b.c_", std::u16string(63, u'n') + u"_"}},
      {"no half of a pair at the cut",
       NameRules::Joliet,
       {{astral, false}},
       {u"x" + repeat(u"\U0001F600", 31)}},
      {"names that differ in case only are told apart",
       NameRules::Joliet,
       {{u"README.txt", false}, {u"Readme.txt", false}, {u"\u00C4", false}, {u"\u00E4", false}},
       {u"README.txt", u"Readme_1.txt", u"\u00C4", u"\u00E4_1"}},
      {"UDF has 254 narrow or 127 wide characters",
       NameRules::Udf,
       {{long260, false}, {wide130, false}},
       {repeat(u"\u00E9", 254), repeat(u"\u4E2D", 127)}},
      {"UDF keeps what it can",
       NameRules::Udf,
       {{u"a:b*?;", false}, {u"\xDCFFx", false}},
       {u"a:b*?;", u"_x"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    std::vector<std::u16string> mapped;
    ASSERT_TRUE(mapNames(c.rules, c.names, mapped));
    EXPECT_EQ(mapped, c.expected);
  }
}

TEST(ImageNames, ManyEqualNamesStayUniqueAndShort) {
  std::vector<std::u16string> originals;
  std::vector<NameToMap> names;
  for (int i = 0; i < 1'200; ++i) {
    originals.push_back(u"same beginning " + std::u16string(1, static_cast<char16_t>(0x4E00 + i)));
  }
  for (const std::u16string& name : originals) names.push_back({name, false});
  std::vector<std::u16string> mapped;
  ASSERT_TRUE(mapNames(NameRules::IsoLevel1, names, mapped));
  EXPECT_EQ(mapped[0], u"SAME_BEG");
  EXPECT_EQ(mapped[1], u"SAME_B_1");
  EXPECT_EQ(mapped[1'199], u"SAM_1199");
  std::sort(mapped.begin(), mapped.end());
  EXPECT_EQ(std::adjacent_find(mapped.begin(), mapped.end()), mapped.end());
}

}  // namespace
}  // namespace quillon::platform
