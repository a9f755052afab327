#include "dicom/dict.h"

#include <functional>
#include <string>
#include <utility>

#include "platform/testing.h"
#include "toolkit_test_tools.h"

namespace quillon::test {
namespace {

using Dictionary = ToolkitTest;

const std::string kRoot = "1.3.6.1.4.1.64021";

// What the dictionary says of a UID; all three questions have the same code.
std::string rowOf(DcDict& dict, DcUid id, std::uint32_t code = kDcOk) {
  std::string uid = "before";
  EXPECT_EQ(dict.getUid(id, &uid), code);
  std::string description = "before";
  EXPECT_EQ(dict.getDesc(id, &description), code);
  DcUidKind kind{9};
  EXPECT_EQ(dict.getUidType(id, &kind), code);
  return uid + ", " + std::to_string(static_cast<unsigned>(kind)) + ", " + description;
}

TEST_F(Dictionary, ATagGivesItsVrItsVmAndItsName) {
  const struct {
    DcTag tag;
    std::uint32_t code;
    DcVr vr;
    int vm;
    DcTag foundTag;
    const char* name;
  } cases[] = {
      {0x00000000, 0, DcVr::UL, 1, 0x00000000, "T_0000_0000_groupLength"},  // first row
      {0x00000001, 0, DcVr::UL, 1, 0x00000001, "T_0000_0001_commandLengthToEnd"},
      {0xFFFEE0DD, 0, DcVr::SI, 1, 0xFFFEE0DD, "T_fffe_e0dd_sequenceDelimitationItem"},  // last row
      {0xFFFEE000, 0, DcVr::SI, 1, 0xFFFEE000, "T_fffe_e000_item"},
      {0x00280010, 0, DcVr::US, 1, 0x00280010, "T_0028_0010_rows"},
      {0x00041500, 0, DcVr::CS, -8, 0x00041500, "T_0004_1500_referencedFileId"},
      {0x7FE00010, 0, DcVr::OX, 1, 0x7FE00010, "T_7fe0_0010_pixelData"},          // OB or OW
      {0x00280120, 0, DcVr::XS, 1, 0x00280120, "T_0028_0120_pixelPaddingValue"},  // US or SS
      {0x00720520, 0, DcVr::CS, 0, 0x00720520, "T_0072_0520_3dRenderingType"},
      {0x00080000, 0, DcVr::UL, 1, 0x00080000, "T_0008_0000_groupLength"},
      {0x00090000, 0, DcVr::UL, 1, 0x00090000, "T_0009_0000_groupLength"},
      {0x60020000, 0, DcVr::UL, 1, 0x60020000, "T_6002_0000_groupLength"},
      {0x00090010, 0, DcVr::LO, 1, 0x00090010, "T_0009_0010_privateCreatorId"},
      {0x0009000F, 0x1402, DcVr::UN, 1, 0x0009000F, "T_0009_000f"},  // below the private creators
      {0x000900FF, 0, DcVr::LO, 1, 0x000900FF, "T_0009_00ff_privateCreatorId"},  // the last of them
      {0x00091010, 0x1402, DcVr::UN, 1, 0x00091010, "T_0009_1010"},
      {0x60023000, 0, DcVr::OW, 1, 0x60FF3000, "T_60ff_3000_overlayData"},     // second plane
      {0x50020010, 0, DcVr::US, 1, 0x50FF0010, "T_50ff_0010_numberOfPoints"},  // second repetition
      {0x60013000, 0x1402, DcVr::UN, 1, 0x60013000,
       "T_6001_3000"},  // private group among the overlays
      {0x00100011, 0x1402, DcVr::UN, 1, 0x00100011, "T_0010_0011"},
      {0xFFFFFFFE, 0x1402, DcVr::UN, 1, 0xFFFFFFFE, "T_ffff_fffe"},  // beyond the last row
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    DcDictElemDef def;
    EXPECT_EQ(theDictionary().getElemDef(c.tag, &def), c.code);
    EXPECT_EQ(def.vr, c.vr);
    EXPECT_EQ(def.vm, c.vm);
    EXPECT_EQ(def.tag, c.foundTag);
    EXPECT_EQ(def.tag2, c.foundTag);
    EXPECT_STREQ(def.name, c.name);
    EXPECT_EQ(theDictionary().getElemDef(c.tag, nullptr), c.code);

    DcVr vr = DcVr::EX;
    EXPECT_EQ(theDictionary().getElemVr(dcGroup(c.tag), dcElement(c.tag), &vr), c.code);
    EXPECT_EQ(vr, c.code == 0 ? c.vr : DcVr::None);
  }
}

TEST_F(Dictionary, ANameIsCutToSixtyCharacters) {
  std::string name;
  EXPECT_EQ(theDictionary().getDesc(0x0009, 0x1010, &name), 0x1402U);
  EXPECT_EQ(name, "T_0009_1010");
  DcDictElemDef def;
  EXPECT_EQ(theDictionary().getElemDef(0x00041202, &def), kDcOk);
  EXPECT_STREQ(def.name, "T_0004_1202_offsetOfTheLastDirectoryRecordOfTheRootDirectoryEnt");
  EXPECT_EQ(theDictionary().getDesc(0x0004, 0x1202, &name), kDcOk);
  EXPECT_EQ(name, "T_0004_1202_offsetOfTheLastDirectoryRecordOfTheRootDirectory");
}

TEST_F(Dictionary, EachVrHasItsLimitsAndItsCode) {
  const struct {
    unsigned vr;
    const char* code;
    std::uint32_t length;
    unsigned sizeClass;
  } cases[] = {
      {1, "AE", 16, 0},    {2, "AS", 4, 0},     {3, "AT", 4, 2},     {4, "CS", 16, 0},
      {5, "DA", 22, 0},    {6, "DS", 16, 0},    {7, "DT", 26, 0},    {8, "FL", 4, 3},
      {9, "FD", 8, 4},     {10, "IS", 12, 0},   {11, "LO", 64, 0},   {12, "LT", 10240, 0},
      {13, "OB", 0, 0},    {14, "OF", 0, 3},    {15, "OW", 0, 1},    {16, "PN", 324, 0},
      {17, "SH", 16, 0},   {18, "SL", 4, 2},    {19, "SQ", 0, 5},    {20, "SS", 2, 1},
      {21, "ST", 1024, 0}, {22, "TM", 34, 0},   {23, "UI", 128, 0},  {24, "UL", 4, 2},
      {25, "UN", 0, 0},    {26, "US", 2, 1},    {27, "UT", 0, 0},    {28, nullptr, 0, 1},
      {29, nullptr, 4, 2}, {30, nullptr, 2, 1}, {34, nullptr, 0, 5}, {35, nullptr, 0, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.vr);
    const auto vr = static_cast<DcVr>(c.vr);
    std::uint32_t length = 99;
    DcSizeClass sizeClass{99};
    EXPECT_EQ(DcDict::getVrLen(vr, &length), kDcOk);
    EXPECT_EQ(length, c.length);
    EXPECT_EQ(DcDict::getVrSize(vr, &sizeClass), kDcOk);
    EXPECT_EQ(static_cast<unsigned>(sizeClass), c.sizeClass);
    std::string code = "before";
    EXPECT_EQ(theDictionary().getVr(vr, &code), c.code != nullptr ? 0U : 0x1402U);
    EXPECT_EQ(code, c.code != nullptr ? c.code : "");
    if (c.code == nullptr) continue;
    DcVr found = DcVr::None;
    EXPECT_EQ(theDictionary().getVrDef(c.code, &found), kDcOk);
    EXPECT_EQ(found, vr);
  }
  EXPECT_EQ(logged(), "");
}

// Asked for the code, only an enum outside the list is logged.
TEST_F(Dictionary, VrsWithoutLimitsAreRefusedWithOneLine) {
  const auto noVr = [](const char* number) {
    return "Enum constant VR " + std::string(number) + " is not in dictionary";
  };
  const struct {
    unsigned vr;
    std::string message;
  } cases[] = {{0, noVr("0 (0x0)")},    {31, "Retired Data Element"},
               {32, noVr("32 (0x20)")}, {33, noVr("33 (0x21)")},
               {36, noVr("36 (0x24)")}, {4711, noVr("4711 (0x1267)")}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.vr);
    const auto vr = static_cast<DcVr>(c.vr);
    std::uint32_t length = 99;
    EXPECT_EQ(DcDict::getVrLen(vr, &length), 0x1402U);
    EXPECT_EQ(length, 0U);
    EXPECT_EQ(logged(), c.message);
    EXPECT_EQ(lastFunction(), "DcDict::getVrLen");
    DcSizeClass sizeClass{99};
    EXPECT_EQ(DcDict::getVrSize(vr, &sizeClass), 0x1402U);
    EXPECT_EQ(sizeClass, DcSizeClass::NoScalar);
    EXPECT_EQ(logged(), c.message);
    EXPECT_EQ(lastFunction(), "DcDict::getVrSize");
    std::string code = "before";
    EXPECT_EQ(theDictionary().getVr(vr, &code), 0x1402U);
    EXPECT_EQ(code, "");
    EXPECT_EQ(logged(), c.vr > 35 ? c.message : "");
  }
  std::string code = "before";
  EXPECT_EQ(theDictionary().getVr(DcTag{0x00100010}, &code), kDcOk);
  EXPECT_EQ(code, "PN");
  EXPECT_EQ(theDictionary().getVr(0x0009, 0x1010, &code), 0x1402U);
  EXPECT_EQ(code, "");
  EXPECT_EQ(logged(), "");
}

TEST_F(Dictionary, TheCodeOfAVrIsTwoUpperCaseLetters) {
  const struct {
    const char* code;
    DcVr vr;
    std::string message;
  } cases[] = {
      {"SQ", DcVr::SQ, ""},
      {"PNabc", DcVr::PN, ""},
      {"OX", DcVr::OX, ""},
      {"SI", DcVr::SI, ""},
      {"pn", DcVr::None, "Unknown VR string 'pn'"},
      {"ZZTOP", DcVr::None, "Unknown VR string 'ZZ'"},
      {"?! ", DcVr::None, "Unknown VR string '?!'"},
      {"P", DcVr::None, "Unknown VR string '0x50 0x00'"},
      {"", DcVr::None, "Unknown VR string '0x00 0x00'"},
      {"P\x01", DcVr::None, "Unknown VR string '0x50 0x01'"},
      {"\xC4N", DcVr::None, "Unknown VR string '0xc4 0x4e'"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.code);
    DcVr vr = DcVr::EX;
    EXPECT_EQ(theDictionary().getVrDef(c.code, &vr), c.message.empty() ? 0U : 0x1402U);
    EXPECT_EQ(vr, c.vr);
    EXPECT_EQ(logged(), c.message);
  }
}

TEST_F(Dictionary, NullArgumentsAreRefusedWithOneLine) {
  DcDict dict;
  DcVr vr = DcVr::PN;
  DcUid id{7};
  DcUid added{7};
  const struct {
    const char* function;
    std::function<std::uint32_t()> call;
  } cases[] = {
      {"DcDict::getVrDef", [&] { return dict.getVrDef(nullptr, &vr); }},
      {"DcDict::getUidDef", [&] { return dict.getUidDef(nullptr, &id); }},
      {"DcDict::getUid", [&] { return dict.getUid(DcUid{1}, nullptr); }},
      {"DcDict::getDesc", [&] { return dict.getDesc(DcTag{0x00100010}, nullptr); }},
      {"DcDict::add", [&] { return dict.add(nullptr, "text", &added, DcUidKind::Other); }},
      {"DcDict::genUid", [&] { return dict.genUid(nullptr), std::uint32_t{0x1403}; }},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(c.call(), 0x1403U);
    EXPECT_EQ(logged(), "Null argument passed");
    EXPECT_EQ(lastFunction(), c.function);
  }
  EXPECT_EQ(vr, DcVr::None);
  EXPECT_EQ(id, DcUid::None);
  EXPECT_EQ(added, DcUid::None);
}

TEST_F(Dictionary, AUidGivesItsIdItsKindAndItsDescription) {
  const std::pair<unsigned, const char*> rows[] = {
      {1, "1.2.840.10008.1.1, 1, Verification"},
      {12, "1.2.840.10008.2.6.1, 0, DICOM UID Registry"},
      {14, "1.2.840.10008.3.1.1.1, 0, DICOM App Context Name"},
      {15, "1.2.840.10008.3.1.2.1.1, 1, Patient Management Detached"},
      {62, "1.2.840.10008.5.1.4.1.1.2, 1, CT Image Storage"},
      {171, "1.2.840.10008.5.1.4.42, 1, Substance Approval Query SOP"},
      {172, "1.2.840.10008.1.2, 2, Little Endian Implicit"},
      {205, "1.2.840.10008.1.2.6.2, 2, XML"},
      {206, "1.3.6.1.4.1.64021.5.1.4.1, 1, Palvex3 LZW Storage"},
      {207, "1.3.6.1.4.1.64021.1.2.1, 2, Palvex3 LZW"},
      {209, "1.2.840.113619.4.5.251, 1, GE Machine Storage"},
  };
  DcDict dict;
  for (const auto& [id, row] : rows) EXPECT_EQ(rowOf(dict, DcUid{id}), row);
  for (unsigned id = 1; id <= 209; ++id) {
    std::string text;
    ASSERT_EQ(dict.getUid(DcUid{id}, &text), kDcOk);
    DcUid found = DcUid::None;
    ASSERT_EQ(dict.getUidDef(text.c_str(), &found), kDcOk);
    ASSERT_EQ(found, DcUid{id});
  }
  EXPECT_EQ(logged(), "");
}

TEST_F(Dictionary, UnknownUidsLeaveTheDefaults) {
  DcDict dict;
  const std::pair<unsigned, const char*> unknown[] = {
      {0, ""},
      {210, "Enum constant UID 210 (0xd2) is not in dictionary"},
      {0xFFFFFFFF, "Enum constant UID -1 (0xffffffff) is not in dictionary"}};
  for (const auto& [id, message] : unknown) {
    EXPECT_EQ(rowOf(dict, DcUid{id}, 0x1402), ", 0, Unknown UID");
    EXPECT_EQ(logged(), message);
  }
  for (const char* uid : {"", "1.2.840.10008.1.2 ", "1.2.840.10008.1.", "1.2.840.10008.1.22"}) {
    DcUid id{7};
    EXPECT_EQ(dict.getUidDef(uid, &id), 0x1402U) << uid;
    EXPECT_EQ(id, DcUid::None);
  }
  EXPECT_EQ(logged(), "");
}

TEST_F(Dictionary, OnlyOneTransferSyntaxIsBigEndian) {
  const struct {
    unsigned id;
    std::uint32_t code;
    int order;
    const char* message;
  } cases[] = {
      {172, 0, 0, ""},
      {173, 0, 0, ""},
      {175, 0, 1, ""},
      {176, 0, 0, ""},
      {207, 0, 0, ""},
      {2, 0x1408, 2, "'1.2.840.10008.1.3.10' is not a Transfer Syntax UID"},
      {0, 0x1408, 2, "'' is not a Transfer Syntax UID"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.id);
    int order = 9;
    EXPECT_EQ(theDictionary().getEndian(static_cast<DcUid>(c.id), &order), c.code);
    EXPECT_EQ(order, c.order);
    EXPECT_EQ(logged(), c.message);
  }
}

TEST_F(Dictionary, AnAddedUidIsCleanedCheckedAndKnownFromThenOn) {
  DcDict dict;
  // 128 characters of the UID and 60 of the description count.
  const std::string longUid = "1." + std::string(126, '3');
  const std::string longText(60, 'd');
  const struct {
    std::string uid;
    std::string description;
    DcUidKind kind;
    std::uint32_t code;
    unsigned id;
    std::string row;
    const char* message;
  } cases[] = {
      {"\t1.2.3 ", "Mine", DcUidKind::SopClass, 0, 210, "1.2.3, 4, Mine", ""},
      {"1.2.3", "Yours", DcUidKind::Other, 0x1401, 210, "1.2.3, 4, Mine",
       "UID '1.2.3' already exists in dictionary"},
      {longUid + "456", longText + "d", DcUidKind::Other, 0, 211, longUid + ", 0, " + longText, ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.uid);
    DcUid id = DcUid::None;
    EXPECT_EQ(dict.add(c.uid.c_str(), c.description.c_str(), &id, c.kind), c.code);
    EXPECT_EQ(logged(), c.message);
    EXPECT_EQ(id, DcUid{c.id});
    EXPECT_EQ(rowOf(dict, id), c.row);
  }
  EXPECT_EQ(lastFunction(), "DcDict::add");
  EXPECT_EQ(dict.add("1.2.4", nullptr, nullptr, DcUidKind::TransferSyntax), kDcOk);
  EXPECT_EQ(rowOf(dict, DcUid{212}), "1.2.4, 2, Private UID");
  int order = 9;
  EXPECT_EQ(dict.getEndian(DcUid{212}, &order), kDcOk);
  EXPECT_EQ(order, 0);
  DcUid untouched{7};
  EXPECT_EQ(dict.add("1.2.x.4", "text", &untouched, DcUidKind::Other), 0x1408U);
  EXPECT_EQ(untouched, DcUid{7});
  EXPECT_EQ(logged(), "Invalid character 'x' in UID string 1.2.x.4");
}

TEST_F(Dictionary, TheUidTableHolds256) {
  DcDict dict;
  for (int i = 210; i <= 256; ++i) {
    DcUid id = DcUid::None;
    const std::string uid = "1.2.9." + std::to_string(i);
    ASSERT_EQ(dict.add(uid.c_str(), nullptr, &id, DcUidKind::Other), kDcOk);
    ASSERT_EQ(static_cast<int>(id), i);
    ASSERT_EQ(dict.getUidDef(uid.c_str(), &id), kDcOk);
    ASSERT_EQ(static_cast<int>(id), i);
  }
  DcUid id{7};
  EXPECT_EQ(dict.add("1.2.9.257", nullptr, &id, DcUidKind::Other), 0x1404U);
  EXPECT_EQ(logged(), "Dictionary UID limit of 256 reached");
  EXPECT_EQ(dict.getUidDef("1.2.9.257", &id), 0x1402U);
}

#ifndef _WIN32  // the clock is the layer's
TEST_F(Dictionary, ANewUidIsTheRootTheTimeAndACounter) {
  platform::testing::Scope restoreClock;
  platform::testing::SubstituteClock([] { return SYSTEMTIME{2009, 3, 0, 5, 7, 0, 9, 0}; });
  const struct {
    const char* what;
    std::string given;
    std::string root;
  } cases[] = {
      {"nothing", "", kRoot},
      {"other root", "1.2.840.1.12345", kRoot},
      {"the root alone", kRoot, kRoot},
      {"the root and a dot", kRoot + ".", kRoot},
      {"one component of five", kRoot + ".12345", kRoot + ".12345"},
      {"one component of four", kRoot + ".1234", kRoot},
      {"one component of six", kRoot + ".123456", kRoot},
      {"a trailing dot", kRoot + ".12345.", kRoot + ".12345"},
      {"more components", kRoot + ".12345.6.7", kRoot + ".12345.6.7"},
      {"a longer number that begins as the root", kRoot + "0.12345", kRoot},
      {"more than 100 characters", kRoot + ".12345." + std::string(100, '8'),
       kRoot + ".12345." + std::string(100 - kRoot.size() - 7, '8')},
      {"text", "hello", kRoot},
  };
  DcDict dict;
  int counter = 1;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    std::string uid = c.given;
    dict.genUid(&uid);
    EXPECT_EQ(uid, c.root + ".2009.3.5.7.0.9." + std::to_string(counter++));
  }
}
#endif

TEST_F(Dictionary, TheUidCounterWrapsAt65536) {
  DcDict dict;
  for (int i = 1; i <= 65'536; ++i) {
    std::string uid;
    dict.genUid(&uid);
    ASSERT_TRUE(uid.ends_with("." + std::to_string(i % 65'536))) << uid;
  }
}

TEST_F(Dictionary, CommandsHaveNames) {
  std::string name;
  EXPECT_EQ(DcDict::getDesc(DcCommandField{0x8021}, &name), kDcOk);
  EXPECT_EQ(name, "C-MOVE Response");
  EXPECT_EQ(DcDict::getDesc(DcCommandField{0x0FFF}, &name), kDcOk);
  EXPECT_EQ(name, "C-CANCEL Request");
  EXPECT_EQ(DcDict::getDesc(DcCommandField{0x8FFF}, &name), 0x1402U);
  EXPECT_EQ(name, "Invalid command");
}

}  // namespace
}  // namespace quillon::test
