#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <string>
#include <vector>

#include "dicom/elem.h"
#include "dir_test_tools.h"

namespace quillon {
namespace {

using test::LoggedLines;
using Lines = std::vector<std::string>;

constexpr DcTag kPrivate = 0x00091010;  // any VR can be given to it, and no VM is known

class ElementReading : public testing::Test {
 protected:
  LoggedLines log_;
};

template <typename T>
void expectReading(DcElem& element, DcCode code, double expected, const char* type) {
  SCOPED_TRACE(type);
  T value{};
  EXPECT_EQ(element.getValue(value), code);
  EXPECT_DOUBLE_EQ(static_cast<double>(value), code == kDcOk ? expected : 0);
}

TEST_F(ElementReading, NumbersAreReadAsTheTypesThatTheirVrAllows) {
  struct Case {
    DcVr vr;
    const char* text;
    bool asShort, asLong, asReal;
    double asInt16, asUint16, asInt32, asUint32, asFloat;
  };
  const std::vector<Case> cases{
      {DcVr::IS, "-2", true, true, true, -2, 65534, -2, 4294967294.0, -2},
      {DcVr::IS, "4000000000", true, true, true, -1, 65535, 2147483647, 4000000000.0, 4e9},
      {DcVr::SS, "-2", true, true, true, -2, 65534, -2, 4294967294.0, -2},
      {DcVr::XS, "40000", true, true, true, -25536, 40000, -25536, 4294941760.0, -25536},
      {DcVr::US, "40000", true, true, true, -25536, 40000, 40000, 40000, 40000},
      {DcVr::SL, "-2", false, true, true, 0, 0, -2, 4294967294.0, -2},
      {DcVr::UL, "4000000000", false, true, true, 0, 0, -294967296, 4000000000.0, 4e9},
      {DcVr::AT, "(0010,0020)", false, true, false, 0, 0, 0x00100020, 0x00100020, 0},
      {DcVr::DS, "1.5", false, false, true, 0, 0, 0, 0, 1.5},
      {DcVr::FL, "1.5", false, false, true, 0, 0, 0, 0, 1.5},
      {DcVr::FD, "1.5", false, false, true, 0, 0, 0, 0, 1.5},
      {DcVr::CS, "12", false, false, false, 0, 0, 0, 0, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    DcElem element(kPrivate, c.vr);
    ASSERT_EQ(element.addValue(c.text), kDcOk);
    const auto code = [](bool readable) { return readable ? kDcOk : DcCode{0x1604}; };
    expectReading<std::int16_t>(element, code(c.asShort), c.asInt16, "int16");
    expectReading<std::uint16_t>(element, code(c.asShort), c.asUint16, "uint16");
    expectReading<std::int32_t>(element, code(c.asLong), c.asInt32, "int32");
    expectReading<std::uint32_t>(element, code(c.asLong), c.asUint32, "uint32");
    expectReading<float>(element, code(c.asReal), c.asFloat, "float");
    expectReading<double>(element, code(c.asReal), c.asFloat, "double");
  }
}

TEST_F(ElementReading, ATypeThatDoesNotFitIsNamedInTheLog) {
  DcElem element(kPrivate, DcVr::PN);
  ASSERT_EQ(element.addValue("Doe"), kDcOk);
  DcElem bulk(kPrivate, DcVr::OB);
  struct Case {
    const char* type;
    std::function<DcCode()> read;
  };
  std::int16_t s = 0;
  std::uint16_t us = 0;
  std::int32_t l = 0;
  std::uint32_t ul = 0;
  float f = 0;
  double d = 0;
  DcElemValueAS as;
  DcElemValueAT at;
  DcUid uid{};
  DcElemValueBuf raw;
  const std::vector<Case> cases{
      {"signed short", [&] { return element.getValue(s); }},
      {"unsigned short", [&] { return element.getValue(us); }},
      {"signed long", [&] { return element.getValue(l); }},
      {"32 bit unsigned int", [&] { return element.getValue(ul); }},
      {"float", [&] { return element.getValue(f); }},
      {"double", [&] { return element.getValue(d); }},
      {"DcElemValueAS", [&] { return element.getValue(as); }},
      {"DcElemValueAT", [&] { return element.getValue(at); }},
      {"DICT_UID", [&] { return element.getValue(uid); }},
      {"raw buffer", [&] { return element.getValue(raw); }},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.type);
    EXPECT_EQ(c.read(), 0x1604U);
    EXPECT_EQ(log_.take(),
              Lines{std::string("Element (0009,1010) VR=PN, cannot get value as ") + c.type});
    EXPECT_EQ(log_.lastFunction(), "DcElem::getValue");
  }
  std::array<char, 16> buffer{};
  EXPECT_EQ(bulk.getValue(buffer.data(), buffer.size()), 0x1604U);
  EXPECT_EQ(log_.take(), Lines{"Element (0009,1010) VR=OB, cannot get value as string"});
}

TEST_F(ElementReading, RecordsAreReadFromTheirVrs) {
  DcElem age(0x00101010, "045Y");
  DcElemValueAS as;
  EXPECT_EQ(age.getValue(as), kDcOk);
  EXPECT_EQ(as.number, 45);
  EXPECT_EQ(as.unit, 'Y');
  DcElem pointer(kPrivate, DcVr::AT);
  ASSERT_EQ(pointer.addValue(std::uint32_t{0x00101010}), kDcOk);
  DcElemValueAT at;
  EXPECT_EQ(pointer.getValue(at), kDcOk);
  EXPECT_EQ(at.group, 0x0010);
  EXPECT_EQ(at.element, 0x1010);
  DcElem sopClass(0x00080016, DcUid{62});
  ASSERT_NE(sopClass.stringValue(0), nullptr);
  EXPECT_EQ(*sopClass.stringValue(0), "1.2.840.10008.5.1.4.1.1.2");
  DcUid uid{};
  EXPECT_EQ(sopClass.getValue(uid), kDcOk);
  EXPECT_EQ(uid, DcUid{62});
  ASSERT_EQ(sopClass.addValue("1.2.3.4.5", 0), kDcOk);
  EXPECT_EQ(sopClass.getValue(uid), 0x1402U);
  EXPECT_EQ(uid, DcUid::None);
  EXPECT_EQ(sopClass.addValue(DcUid{4711}, 0), 0x1402U);
  EXPECT_EQ(*sopClass.stringValue(0), "1.2.3.4.5");
}

TEST_F(ElementReading, TheIndexNamesAValueOrFollowsTheIterator) {
  DcElem element(kPrivate, DcVr::IS);
  std::int32_t value = 0;
  EXPECT_EQ(element.getValue(value), 0x160AU);
  ASSERT_EQ(element.addValue("10\\11\\12"), kDcOk);
  EXPECT_EQ(element.getValue(value, 2), kDcOk);
  EXPECT_EQ(value, 12);
  EXPECT_EQ(element.getValue(value, 3), 0x160EU);
  EXPECT_EQ(log_.take(), Lines{});
  EXPECT_EQ(element.getValue(value, 4), 0x1624U);
  EXPECT_EQ(log_.take(), Lines{"Element (0009,1010) index (=4) out of range, value count = 3"});
  EXPECT_EQ(element.getValue(value, -1), 0x1624U);
  EXPECT_EQ(log_.take(), Lines{"Element (0009,1010) index (=-1) out of range, value count = 3"});

  for (const int expected : {10, 11, 12}) {
    EXPECT_EQ(element.getValue(value, 0), kDcOk);
    EXPECT_EQ(value, expected);
    EXPECT_EQ(element.getValue(value, DcElem::kAtIterator), kDcOk);
    EXPECT_EQ(value, expected);
  }
  EXPECT_EQ(element.getValue(value, DcElem::kAtIterator), 0x160EU);
  EXPECT_EQ(element.getValue(value, 0), 0x160EU);
  EXPECT_EQ(element.getValue(value, 1), kDcOk);
  EXPECT_EQ(value, 11);

  element.resetIterator();
  int position = 0;
  EXPECT_EQ(element.nextPosition(position), kDcOk);
  EXPECT_EQ(position, 1);
  EXPECT_EQ(element.nextPosition(position), kDcOk);
  EXPECT_EQ(position, 2);
  EXPECT_EQ(element.nextPosition(position), 0x160EU);
  EXPECT_EQ(element.nextPosition(position), 0x160EU);
  EXPECT_EQ(position, 2);
}

TEST_F(ElementReading, TextThatDoesNotFitIsCut) {
  struct Case {
    const char* what;
    DcVr vr;
    const char* text;
    std::size_t fits;
  };
  const std::vector<Case> cases{
      {"text", DcVr::LO, "abc", 4},
      {"tag", DcVr::AT, "(0010,0010)", 12},
      {"integer", DcVr::SL, "-2147483648", 12},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    DcElem element(kPrivate, c.vr);
    ASSERT_EQ(element.addValue(c.text), kDcOk);
    std::array<char, 16> buffer{};
    EXPECT_EQ(element.getValue(buffer.data(), c.fits), kDcOk);
    EXPECT_STREQ(buffer.data(), c.text);
    EXPECT_EQ(log_.take(), Lines{});
    buffer.fill('#');
    EXPECT_EQ(element.getValue(buffer.data(), c.fits - 1), 0x160DU);
    EXPECT_EQ(std::string(buffer.data()), std::string(c.text).substr(0, c.fits - 2));
    EXPECT_EQ(buffer[c.fits - 1], '#') << "written beyond the buffer";
    EXPECT_EQ(log_.take(), Lines{"Element (0009,1010) buffer too short, value truncated"});
    buffer.fill('#');
    EXPECT_EQ(element.getValue(buffer.data(), 0), 0x160DU);
    EXPECT_EQ(buffer[0], '#');
    log_.take();
  }
}

}  // namespace
}  // namespace quillon
