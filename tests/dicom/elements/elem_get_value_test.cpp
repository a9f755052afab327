#include <array>
#include <functional>

#include "toolkit_test_tools.h"

namespace quillon::test {
namespace {

using ElementReading = ToolkitTest;

template <typename T>
void expectReading(DcElem& element, bool isReadable, double expected, const char* type) {
  SCOPED_TRACE(type);
  T value{};
  EXPECT_EQ(element.getValue(value), isReadable ? kDcOk : 0x1604U);
  EXPECT_DOUBLE_EQ(static_cast<double>(value), isReadable ? expected : 0);
}

TEST_F(ElementReading, NumbersAreReadAsTheTypesThatTheirVrAllows) {
  const struct {
    DcVr vr;
    const char* text;
    bool asShort, asLong, asReal;
    double asInt16, asUint16, asInt32, asUint32, asFloat;
  } cases[] = {
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
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    DcElem element(kPrivate, c.vr);
    ASSERT_EQ(element.addValue(c.text), kDcOk);
    expectReading<std::int16_t>(element, c.asShort, c.asInt16, "int16");
    expectReading<std::uint16_t>(element, c.asShort, c.asUint16, "uint16");
    expectReading<std::int32_t>(element, c.asLong, c.asInt32, "int32");
    expectReading<std::uint32_t>(element, c.asLong, c.asUint32, "uint32");
    expectReading<float>(element, c.asReal, c.asFloat, "float");
    expectReading<double>(element, c.asReal, c.asFloat, "double");
  }
}

template <typename T>
DcCode readAs(DcElem& element) {
  T value{};
  return element.getValue(value);
}

TEST_F(ElementReading, ATypeThatDoesNotFitIsNamedInTheLog) {
  const std::pair<const char*, DcCode (*)(DcElem&)> cases[] = {
      {"signed short", readAs<std::int16_t>},
      {"unsigned short", readAs<std::uint16_t>},
      {"signed long", readAs<std::int32_t>},
      {"32 bit unsigned int", readAs<std::uint32_t>},
      {"float", readAs<float>},
      {"double", readAs<double>},
      {"DcElemValueAS", readAs<DcElemValueAS>},
      {"DcElemValueAT", readAs<DcElemValueAT>},
      {"DICT_UID", readAs<DcUid>},
      {"raw buffer", readAs<DcElemValueBuf>},
  };
  DcElem element(kPrivate, DcVr::PN);
  ASSERT_EQ(element.addValue("Doe"), kDcOk);
  for (const auto& [type, read] : cases) {
    EXPECT_EQ(read(element), 0x1604U);
    EXPECT_EQ(logged(), std::string("Element (0009,1010) VR=PN, cannot get value as ") + type);
    EXPECT_EQ(lastFunction(), "DcElem::getValue");
  }
  DcElem bulk(kPrivate, DcVr::OB);
  std::array<char, 16> buffer{};
  EXPECT_EQ(bulk.getValue(buffer.data(), buffer.size()), 0x1604U);
  EXPECT_EQ(logged(), "Element (0009,1010) VR=OB, cannot get value as string");
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
  EXPECT_EQ(valuesOf(sopClass), kCtImage);
  DcUid uid{};
  EXPECT_EQ(sopClass.getValue(uid), kDcOk);
  EXPECT_EQ(uid, DcUid{62});
  ASSERT_EQ(sopClass.addValue("1.2.3.4.5", 0), kDcOk);
  EXPECT_EQ(sopClass.getValue(uid), 0x1402U);
  EXPECT_EQ(uid, DcUid::None);
  EXPECT_EQ(sopClass.addValue(DcUid{4711}, 0), 0x1402U);
  EXPECT_EQ(valuesOf(sopClass), "1.2.3.4.5");
}

TEST_F(ElementReading, TheIndexNamesAValueOrFollowsTheIterator) {
  DcElem element(kPrivate, DcVr::IS);
  std::int32_t value = 0;
  EXPECT_EQ(element.getValue(value), 0x160AU);
  ASSERT_EQ(element.addValue("10\\11\\12"), kDcOk);
  EXPECT_EQ(element.getValue(value, 2), kDcOk);
  EXPECT_EQ(value, 12);
  EXPECT_EQ(element.getValue(value, 3), 0x160EU);
  EXPECT_EQ(logged(), "");
  for (const int outside : {4, -1}) {
    EXPECT_EQ(element.getValue(value, outside), 0x1624U);
    EXPECT_EQ(logged(), "Element (0009,1010) index (=" + std::to_string(outside) +
                            ") out of range, value count = 3");
  }

  for (const int expected : {10, 11, 12}) {
    for (const int index : {0, DcElem::kAtIterator}) {
      EXPECT_EQ(element.getValue(value, index), kDcOk);
      EXPECT_EQ(value, expected);
    }
  }
  EXPECT_EQ(element.getValue(value, DcElem::kAtIterator), 0x160EU);
  EXPECT_EQ(element.getValue(value, 0), 0x160EU);
  EXPECT_EQ(element.getValue(value, 1), kDcOk);
  EXPECT_EQ(value, 11);

  element.resetIterator();
  int position = 0;
  for (const int expected : {1, 2}) {
    EXPECT_EQ(element.nextPosition(position), kDcOk);
    EXPECT_EQ(position, expected);
  }
  EXPECT_EQ(element.nextPosition(position), 0x160EU);
  EXPECT_EQ(element.nextPosition(position), 0x160EU);
  EXPECT_EQ(position, 2);
}

TEST_F(ElementReading, TextThatDoesNotFitIsCut) {
  const struct {
    DcVr vr;
    std::string text;
  } cases[] = {{DcVr::LO, "abc"}, {DcVr::AT, "(0010,0010)"}, {DcVr::SL, "-2147483648"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    DcElem element(kPrivate, c.vr);
    ASSERT_EQ(element.addValue(c.text.c_str()), kDcOk);
    const std::size_t fits = c.text.size() + 1;
    std::array<char, 16> buffer{};
    EXPECT_EQ(element.getValue(buffer.data(), fits), kDcOk);
    EXPECT_EQ(buffer.data(), c.text);
    EXPECT_EQ(logged(), "");
    buffer.fill('#');
    EXPECT_EQ(element.getValue(buffer.data(), fits - 1), 0x160DU);
    EXPECT_EQ(buffer.data(), c.text.substr(0, fits - 2));
    EXPECT_EQ(buffer[fits - 1], '#') << "written beyond the buffer";
    EXPECT_EQ(logged(), "Element (0009,1010) buffer too short, value truncated");
    buffer.fill('#');
    EXPECT_EQ(element.getValue(buffer.data(), 0), 0x160DU);
    EXPECT_EQ(buffer[0], '#');
    logged();
  }
}

}  // namespace
}  // namespace quillon::test
