#include "dicom/dict.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "dir_test_tools.h"
#include "platform/testing.h"

namespace quillon {
namespace {

using test::LoggedLines;
using Lines = std::vector<std::string>;

const std::string kRoot = "1.3.6.1.4.1.64021";

TEST(Dictionary, ATagGivesItsVrItsVmAndItsName) {
  struct Case {
    const char* what;
    DcTag tag;
    DcCode code;
    DcVr vr;
    int vm;
    DcTag foundTag;
    const char* name;
  };
  const std::vector<Case> cases{
      {"first row", 0x00000000, 0, DcVr::UL, 1, 0x00000000, "T_0000_0000_groupLength"},
      {"second row", 0x00000001, 0, DcVr::UL, 1, 0x00000001, "T_0000_0001_commandLengthToEnd"},
      {"last row", 0xFFFEE0DD, 0, DcVr::SI, 1, 0xFFFEE0DD, "T_fffe_e0dd_sequenceDelimitationItem"},
      {"item", 0xFFFEE000, 0, DcVr::SI, 1, 0xFFFEE000, "T_fffe_e000_item"},
      {"plain", 0x00280010, 0, DcVr::US, 1, 0x00280010, "T_0028_0010_rows"},
      {"one to eight", 0x00041500, 0, DcVr::CS, -8, 0x00041500, "T_0004_1500_referencedFileId"},
      {"pixel data", 0x7FE00010, 0, DcVr::OX, 1, 0x7FE00010, "T_7fe0_0010_pixelData"},
      {"US or SS", 0x00280120, 0, DcVr::XS, 1, 0x00280120, "T_0028_0120_pixelPaddingValue"},
      {"keyword that begins with a digit", 0x00720520, 0, DcVr::CS, 0, 0x00720520,
       "T_0072_0520_3dRenderingType"},
      {"group length", 0x00080000, 0, DcVr::UL, 1, 0x00080000, "T_0008_0000_groupLength"},
      {"private group length", 0x00090000, 0, DcVr::UL, 1, 0x00090000, "T_0009_0000_groupLength"},
      {"length of a repeating group", 0x60020000, 0, DcVr::UL, 1, 0x60020000,
       "T_6002_0000_groupLength"},
      {"lowest private creator", 0x00090010, 0, DcVr::LO, 1, 0x00090010,
       "T_0009_0010_privateCreatorId"},
      {"below the private creators", 0x0009000F, 0x1402, DcVr::UN, 1, 0x0009000F, "T_0009_000f"},
      {"highest private creator", 0x000900FF, 0, DcVr::LO, 1, 0x000900FF,
       "T_0009_00ff_privateCreatorId"},
      {"private element", 0x00091010, 0x1402, DcVr::UN, 1, 0x00091010, "T_0009_1010"},
      {"overlay of the second plane", 0x60023000, 0, DcVr::OW, 1, 0x60FF3000,
       "T_60ff_3000_overlayData"},
      {"curve of the second repetition", 0x50020010, 0, DcVr::US, 1, 0x50FF0010,
       "T_50ff_0010_numberOfPoints"},
      {"private group among the overlays", 0x60013000, 0x1402, DcVr::UN, 1, 0x60013000,
       "T_6001_3000"},
      {"unknown standard tag", 0x00100011, 0x1402, DcVr::UN, 1, 0x00100011, "T_0010_0011"},
      {"beyond the last row", 0xFFFFFFFE, 0x1402, DcVr::UN, 1, 0xFFFFFFFE, "T_ffff_fffe"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
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

TEST(Dictionary, ANameIsCutToSixtyCharacters) {
  std::string name;
  EXPECT_EQ(theDictionary().getDesc(0x00100010, &name), kDcOk);
  EXPECT_EQ(name, "T_0010_0010_patientsName");
  EXPECT_EQ(theDictionary().getDesc(0x0009, 0x1010, &name), 0x1402U);
  EXPECT_EQ(name, "T_0009_1010");

  DcDictElemDef def;
  EXPECT_EQ(theDictionary().getElemDef(0x00041202, &def), kDcOk);
  EXPECT_STREQ(def.name, "T_0004_1202_offsetOfTheLastDirectoryRecordOfTheRootDirectoryEnt");
  EXPECT_EQ(theDictionary().getDesc(0x0004, 0x1202, &name), kDcOk);
  EXPECT_EQ(name, "T_0004_1202_offsetOfTheLastDirectoryRecordOfTheRootDirectory");
}

TEST(Dictionary, EachVrHasItsLimitsAndItsCode) {
  struct Case {
    unsigned vr;
    const char* code;
    std::uint32_t length;
    unsigned sizeClass;
  };
  const std::vector<Case> cases{
      {1, "AE", 16, 0},    {2, "AS", 4, 0},     {3, "AT", 4, 2},     {4, "CS", 16, 0},
      {5, "DA", 22, 0},    {6, "DS", 16, 0},    {7, "DT", 26, 0},    {8, "FL", 4, 3},
      {9, "FD", 8, 4},     {10, "IS", 12, 0},   {11, "LO", 64, 0},   {12, "LT", 10240, 0},
      {13, "OB", 0, 0},    {14, "OF", 0, 3},    {15, "OW", 0, 1},    {16, "PN", 324, 0},
      {17, "SH", 16, 0},   {18, "SL", 4, 2},    {19, "SQ", 0, 5},    {20, "SS", 2, 1},
      {21, "ST", 1024, 0}, {22, "TM", 34, 0},   {23, "UI", 128, 0},  {24, "UL", 4, 2},
      {25, "UN", 0, 0},    {26, "US", 2, 1},    {27, "UT", 0, 0},    {28, nullptr, 0, 1},
      {29, nullptr, 4, 2}, {30, nullptr, 2, 1}, {34, nullptr, 0, 5}, {35, nullptr, 0, 0},
  };
  LoggedLines log;
  for (const Case& c : cases) {
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
  EXPECT_EQ(log.take(), Lines{});
}

TEST(Dictionary, VrsWithoutLimitsAreRefusedWithOneLine) {
  LoggedLines log;
  for (const unsigned vr : {0U, 31U, 32U, 33U, 36U, 4711U}) {
    SCOPED_TRACE(vr);
    const Lines expected{vr == 31 ? "Retired Data Element"
                                  : "Enum constant VR " + std::to_string(vr) + " (0x" +
                                        (vr == 4711 ? "1267"
                                         : vr == 36 ? "24"
                                         : vr == 33 ? "21"
                                         : vr == 32 ? "20"
                                                    : "0") +
                                        ") is not in dictionary"};
    std::uint32_t length = 99;
    EXPECT_EQ(DcDict::getVrLen(static_cast<DcVr>(vr), &length), 0x1402U);
    EXPECT_EQ(length, 0U);
    EXPECT_EQ(log.take(), expected);
    EXPECT_EQ(log.lastFunction(), "DcDict::getVrLen");
    DcSizeClass sizeClass{99};
    EXPECT_EQ(DcDict::getVrSize(static_cast<DcVr>(vr), &sizeClass), 0x1402U);
    EXPECT_EQ(sizeClass, DcSizeClass::NoScalar);
    EXPECT_EQ(log.take(), expected);
    EXPECT_EQ(log.lastFunction(), "DcDict::getVrSize");
  }
}

TEST(Dictionary, OnlyAnEnumOutsideTheListIsLoggedWhenItsCodeIsAsked) {
  LoggedLines log;
  for (const unsigned vr : {0U, 28U, 29U, 30U, 31U, 32U, 33U, 34U, 35U}) {
    SCOPED_TRACE(vr);
    std::string code = "before";
    EXPECT_EQ(theDictionary().getVr(static_cast<DcVr>(vr), &code), 0x1402U);
    EXPECT_EQ(code, "");
    EXPECT_EQ(log.take(), Lines{});
  }
  std::string code = "before";
  EXPECT_EQ(theDictionary().getVr(static_cast<DcVr>(36), &code), 0x1402U);
  EXPECT_EQ(code, "");
  EXPECT_EQ(log.take(), Lines{"Enum constant VR 36 (0x24) is not in dictionary"});

  EXPECT_EQ(theDictionary().getVr(DcTag{0x00100010}, &code), kDcOk);
  EXPECT_EQ(code, "PN");
  EXPECT_EQ(theDictionary().getVr(0x0009, 0x1010, &code), 0x1402U);
  EXPECT_EQ(code, "");
  EXPECT_EQ(log.take(), Lines{});
}

TEST(Dictionary, TheCodeOfAVrIsTwoUpperCaseLetters) {
  struct Case {
    const char* code;
    DcVr vr;
    const char* message;
  };
  const std::vector<Case> cases{
      {"SQ", DcVr::SQ, nullptr},
      {"PNabc", DcVr::PN, nullptr},
      {"OX", DcVr::OX, nullptr},
      {"SI", DcVr::SI, nullptr},
      {"pn", DcVr::None, "Unknown VR string 'pn'"},
      {"ZZTOP", DcVr::None, "Unknown VR string 'ZZ'"},
      {"?! ", DcVr::None, "Unknown VR string '?!'"},
      {"P", DcVr::None, "Unknown VR string '0x50 0x00'"},
      {"", DcVr::None, "Unknown VR string '0x00 0x00'"},
      {"P\x01", DcVr::None, "Unknown VR string '0x50 0x01'"},
      {"\xC4N", DcVr::None, "Unknown VR string '0xc4 0x4e'"},
  };
  LoggedLines log;
  for (const Case& c : cases) {
    SCOPED_TRACE(c.code);
    DcVr vr = DcVr::EX;
    EXPECT_EQ(theDictionary().getVrDef(c.code, &vr), c.message == nullptr ? 0U : 0x1402U);
    EXPECT_EQ(vr, c.vr);
    EXPECT_EQ(log.take(), c.message == nullptr ? Lines{} : Lines{c.message});
  }
}

TEST(Dictionary, NullArgumentsAreRefusedWithOneLine) {
  LoggedLines log;
  const auto expectOneLine = [&log](const char* function) {
    EXPECT_EQ(log.take(), Lines{"Null argument passed"});
    EXPECT_EQ(log.lastFunction(), function);
  };
  DcDict dict;
  DcVr vr = DcVr::PN;
  EXPECT_EQ(dict.getVrDef(nullptr, &vr), 0x1403U);
  EXPECT_EQ(vr, DcVr::None);
  expectOneLine("DcDict::getVrDef");
  DcUid id{7};
  EXPECT_EQ(dict.getUidDef(nullptr, &id), 0x1403U);
  EXPECT_EQ(id, DcUid::None);
  expectOneLine("DcDict::getUidDef");
  EXPECT_EQ(dict.getUid(DcUid{1}, nullptr), 0x1403U);
  expectOneLine("DcDict::getUid");
  EXPECT_EQ(dict.getDesc(DcTag{0x00100010}, nullptr), 0x1403U);
  expectOneLine("DcDict::getDesc");
  id = DcUid{7};
  EXPECT_EQ(dict.add(nullptr, "text", &id, DcUidKind::Other), 0x1403U);
  EXPECT_EQ(id, DcUid::None);
  expectOneLine("DcDict::add");
  dict.genUid(nullptr);
  expectOneLine("DcDict::genUid");
}

TEST(Dictionary, AUidGivesItsIdItsKindAndItsDescription) {
  struct Case {
    unsigned id;
    DcUidKind kind;
    const char* uid;
    const char* description;
  };
  const std::vector<Case> cases{
      {1, DcUidKind::SopClass, "1.2.840.10008.1.1", "Verification"},
      {12, DcUidKind::Other, "1.2.840.10008.2.6.1", "DICOM UID Registry"},
      {14, DcUidKind::Other, "1.2.840.10008.3.1.1.1", "DICOM App Context Name"},
      {15, DcUidKind::SopClass, "1.2.840.10008.3.1.2.1.1", "Patient Management Detached"},
      {62, DcUidKind::SopClass, "1.2.840.10008.5.1.4.1.1.2", "CT Image Storage"},
      {171, DcUidKind::SopClass, "1.2.840.10008.5.1.4.42", "Substance Approval Query SOP"},
      {172, DcUidKind::TransferSyntax, "1.2.840.10008.1.2", "Little Endian Implicit"},
      {205, DcUidKind::TransferSyntax, "1.2.840.10008.1.2.6.2", "XML"},
      {206, DcUidKind::SopClass, "1.3.6.1.4.1.64021.5.1.4.1", "Palvex3 LZW Storage"},
      {207, DcUidKind::TransferSyntax, "1.3.6.1.4.1.64021.1.2.1", "Palvex3 LZW"},
      {209, DcUidKind::SopClass, "1.2.840.113619.4.5.251", "GE Machine Storage"},
  };
  DcDict dict;
  LoggedLines log;
  for (const Case& c : cases) {
    SCOPED_TRACE(c.uid);
    const auto id = static_cast<DcUid>(c.id);
    std::string text;
    EXPECT_EQ(dict.getUid(id, &text), kDcOk);
    EXPECT_EQ(text, c.uid);
    EXPECT_EQ(dict.getDesc(id, &text), kDcOk);
    EXPECT_EQ(text, c.description);
    DcUidKind kind{9};
    EXPECT_EQ(dict.getUidType(id, &kind), kDcOk);
    EXPECT_EQ(kind, c.kind);
    DcUid found = DcUid::None;
    EXPECT_EQ(dict.getUidDef(c.uid, &found), kDcOk);
    EXPECT_EQ(found, id);
  }
  // Each of the 209 finds itself again.
  for (unsigned id = 1; id <= 209; ++id) {
    std::string text;
    ASSERT_EQ(dict.getUid(static_cast<DcUid>(id), &text), kDcOk);
    DcUid found = DcUid::None;
    ASSERT_EQ(dict.getUidDef(text.c_str(), &found), kDcOk);
    ASSERT_EQ(static_cast<unsigned>(found), id);
  }
  EXPECT_EQ(log.take(), Lines{});
}

TEST(Dictionary, UnknownUidsLeaveTheDefaults) {
  DcDict dict;
  LoggedLines log;
  std::string text = "before";
  EXPECT_EQ(dict.getUid(DcUid::None, &text), 0x1402U);
  EXPECT_EQ(text, "");
  EXPECT_EQ(log.take(), Lines{});
  text = "before";
  EXPECT_EQ(dict.getUid(DcUid{210}, &text), 0x1402U);
  EXPECT_EQ(text, "");
  EXPECT_EQ(log.take(), Lines{"Enum constant UID 210 (0xd2) is not in dictionary"});
  EXPECT_EQ(dict.getUid(DcUid{0xFFFFFFFF}, &text), 0x1402U);
  EXPECT_EQ(log.take(), Lines{"Enum constant UID -1 (0xffffffff) is not in dictionary"});
  EXPECT_EQ(dict.getDesc(DcUid{210}, &text), 0x1402U);
  EXPECT_EQ(text, "Unknown UID");
  DcUidKind kind = DcUidKind::SopClass;
  EXPECT_EQ(dict.getUidType(DcUid{210}, &kind), 0x1402U);
  EXPECT_EQ(kind, DcUidKind::Other);
  for (const char* uid : {"", "1.2.840.10008.1.2 ", "1.2.840.10008.1.", "1.2.840.10008.1.22"}) {
    DcUid id{7};
    EXPECT_EQ(dict.getUidDef(uid, &id), 0x1402U) << uid;
    EXPECT_EQ(id, DcUid::None);
  }
  EXPECT_EQ(log.take(), Lines{});
}

TEST(Dictionary, OnlyOneTransferSyntaxIsBigEndian) {
  struct Case {
    unsigned id;
    DcCode code;
    int order;
    Lines lines;
  };
  const std::vector<Case> cases{
      {172, 0, 0, {}},
      {173, 0, 0, {}},
      {175, 0, 1, {}},
      {176, 0, 0, {}},
      {207, 0, 0, {}},
      {2, 0x1408, 2, {"'1.2.840.10008.1.3.10' is not a Transfer Syntax UID"}},
      {0, 0x1408, 2, {"'' is not a Transfer Syntax UID"}},
  };
  LoggedLines log;
  for (const Case& c : cases) {
    SCOPED_TRACE(c.id);
    int order = 9;
    EXPECT_EQ(theDictionary().getEndian(static_cast<DcUid>(c.id), &order), c.code);
    EXPECT_EQ(order, c.order);
    EXPECT_EQ(log.take(), c.lines);
  }
}

TEST(Dictionary, AnAddedUidIsCleanedCheckedAndKnownFromThenOn) {
  DcDict dict;
  LoggedLines log;
  DcUid id = DcUid::None;
  EXPECT_EQ(dict.add("\t1.2.3 ", "Private Image Storage", &id, DcUidKind::SopClass), kDcOk);
  EXPECT_EQ(static_cast<unsigned>(id), 210U);
  DcUidKind kind{9};
  EXPECT_EQ(dict.getUidType(id, &kind), kDcOk);
  EXPECT_EQ(kind, DcUidKind::SopClassAdded);
  std::string text;
  EXPECT_EQ(dict.getUid(id, &text), kDcOk);
  EXPECT_EQ(text, "1.2.3");

  DcUid again = DcUid::None;
  EXPECT_EQ(dict.add("1.2.3", nullptr, &again, DcUidKind::SopClass), 0x1401U);
  EXPECT_EQ(again, id);
  EXPECT_EQ(log.take(), Lines{"UID '1.2.3' already exists in dictionary"});
  EXPECT_EQ(log.lastFunction(), "DcDict::add");

  DcUid untouched{7};
  EXPECT_EQ(dict.add("1.2.x.4", "text", &untouched, DcUidKind::Other), 0x1408U);
  EXPECT_EQ(untouched, DcUid{7});
  EXPECT_EQ(log.take(), Lines{"Invalid character 'x' in UID string 1.2.x.4"});

  EXPECT_EQ(dict.add("1.2.4", nullptr, nullptr, DcUidKind::TransferSyntax), kDcOk);
  EXPECT_EQ(dict.getUidDef("1.2.4", &id), kDcOk);
  EXPECT_EQ(static_cast<unsigned>(id), 211U);
  EXPECT_EQ(dict.getDesc(id, &text), kDcOk);
  EXPECT_EQ(text, "Private UID");
  int order = 9;
  EXPECT_EQ(dict.getEndian(id, &order), kDcOk);
  EXPECT_EQ(order, 0);

  // 128 characters of the UID and 60 of the description count.
  const std::string longUid = "1." + std::string(126, '3');
  EXPECT_EQ(
      dict.add((longUid + "456").c_str(), std::string(61, 'd').c_str(), &id, DcUidKind::Other),
      kDcOk);
  EXPECT_EQ(dict.getUid(id, &text), kDcOk);
  EXPECT_EQ(text, longUid);
  EXPECT_EQ(dict.getDesc(id, &text), kDcOk);
  EXPECT_EQ(text, std::string(60, 'd'));
  EXPECT_EQ(log.take(), Lines{});
}

TEST(Dictionary, TheUidTableHolds256) {
  DcDict dict;
  LoggedLines log;
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
  EXPECT_EQ(log.take(), Lines{"Dictionary UID limit of 256 reached"});
  EXPECT_EQ(dict.getUidDef("1.2.9.257", &id), 0x1402U);
}

#ifndef _WIN32  // the clock is the layer's
TEST(Dictionary, ANewUidIsTheRootTheTimeAndACounter) {
  platform::testing::Scope restoreClock;
  platform::testing::SubstituteClock([] {
    SYSTEMTIME time{};
    time.wYear = 2009;
    time.wMonth = 3;
    time.wDay = 5;
    time.wHour = 7;
    time.wMinute = 0;
    time.wSecond = 9;
    return time;
  });
  struct Case {
    const char* what;
    std::string given;
    std::string root;
  };
  const std::vector<Case> cases{
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
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    std::string uid = c.given;
    dict.genUid(&uid);
    EXPECT_EQ(uid, c.root + ".2009.3.5.7.0.9." + std::to_string(counter++));
  }
}
#endif

TEST(Dictionary, TheUidCounterWrapsAt65536) {
  DcDict dict;
  std::string uid;
  const auto counter = [&uid] { return uid.substr(uid.rfind('.') + 1); };
  for (int i = 0; i < 65'535; ++i) {
    uid.clear();
    dict.genUid(&uid);
  }
  EXPECT_EQ(counter(), "65535");
  uid.clear();
  dict.genUid(&uid);
  EXPECT_EQ(counter(), "0");
}

TEST(Dictionary, CommandsHaveNames) {
  std::string name;
  EXPECT_EQ(DcDict::getDesc(DcCommandField{0x8021}, &name), kDcOk);
  EXPECT_EQ(name, "C-MOVE Response");
  EXPECT_EQ(DcDict::getDesc(DcCommandField{0x0FFF}, &name), kDcOk);
  EXPECT_EQ(name, "C-CANCEL Request");
  EXPECT_EQ(DcDict::getDesc(DcCommandField{0x8FFF}, &name), 0x1402U);
  EXPECT_EQ(name, "Invalid command");
}

}  // namespace
}  // namespace quillon
