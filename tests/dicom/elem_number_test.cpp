// Data elements whose values are numbers or bytes.
#include <functional>
#include <string>
#include <vector>

#include "dicom/dict.h"
#include "elem_test_tools.h"

namespace quillon {
namespace {

using test::Element;
using test::kPixelData;
using test::kPrivate;
using test::Lines;
using test::Values;
using test::valuesOf;

TEST_F(Element, NumbersBecomeWhatTheVrStores) {
  struct Case {
    DcVr vr;
    const char* asShort;
    const char* asUnsignedShort;
    const char* asLong;
    const char* asUnsignedLong;
    const char* asFloat;
    const char* asDouble;
  };
  // Values: -2, 65535, -70000, 4000000000, 0.1f, 1234567.0. Null: refused.
  const std::vector<Case> cases{
      {DcVr::DS, "-2", "65535", "-70000", "4000000000", "0.1", "1.23457e+06"},
      {DcVr::IS, "-2", "65535", "-70000", "4000000000", nullptr, nullptr},
      {DcVr::FL, "-2", "65535", "-70000", "4e+09", "0.1", "1.23457e+06"},
      {DcVr::FD, "-2", "65535", "-70000", "4e+09", nullptr, "1.23457e+06"},
      {DcVr::SL, "-2", "65535", "-70000", "-294967296", nullptr, nullptr},
      {DcVr::SS, "-2", "-1", "-4464", "10240", nullptr, nullptr},
      {DcVr::XS, "-2", "-1", "-4464", "10240", nullptr, nullptr},
      {DcVr::UL, "4294967294", "65535", "4294897296", "4000000000", nullptr, nullptr},
      {DcVr::US, "65534", "65535", "61072", "10240", nullptr, nullptr},
      {DcVr::AT, nullptr, nullptr, "(fffe,ee90)", "(ee6b,2800)", nullptr, nullptr},
      {DcVr::CS, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr},
      {DcVr::UN, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr},
      {DcVr::UI, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr},
  };
  const auto expect = [this](DcVr vr, const char* type, const char* expected,
                             const std::function<DcCode(DcElem&)>& add) {
    SCOPED_TRACE(type);
    DcElem element(kPrivate, vr);
    std::string code;
    theDictionary().getVr(vr, &code);
    const DcCode result = add(element);
    if (expected == nullptr) {
      EXPECT_EQ(result, 0x1602U);
      EXPECT_EQ(log_.take(), Lines{"Element (0009,1010) VR=" + code + ", does not accept " + type});
      EXPECT_EQ(log_.lastFunction(), "DcElem::addValue");
    } else {
      EXPECT_EQ(result, kDcOk);
      EXPECT_EQ(valuesOf(element), Values{expected});
    }
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(static_cast<unsigned>(c.vr));
    expect(c.vr, "short", c.asShort,
           [](DcElem& e) { return e.addValue(static_cast<std::int16_t>(-2)); });
    expect(c.vr, "unsigned short", c.asUnsignedShort,
           [](DcElem& e) { return e.addValue(static_cast<std::uint16_t>(65535)); });
    expect(c.vr, "long", c.asLong, [](DcElem& e) { return e.addValue(-70000); });
    expect(c.vr, "unsigned long", c.asUnsignedLong,
           [](DcElem& e) { return e.addValue(4'000'000'000U); });
    expect(c.vr, "float", c.asFloat, [](DcElem& e) { return e.addValue(0.1F); });
    expect(c.vr, "double float", c.asDouble, [](DcElem& e) { return e.addValue(1'234'567.0); });
  }
}

TEST_F(Element, TextBecomesTheNumberThatTheVrStores) {
  struct Case {
    DcVr vr;
    const char* text;
    const char* stored;
  };
  const std::vector<Case> cases{
      {DcVr::SL, "-2147483648", "-2147483648"},
      {DcVr::SL, "99999999999", "2147483647"},
      {DcVr::UL, "4294967295", "4294967295"},
      {DcVr::UL, "-1", "4294967295"},
      {DcVr::SS, "-32768", "-32768"},
      {DcVr::US, "+7", "7"},
      {DcVr::XS, "40000", "-25536"},
      {DcVr::XS, "-3", "-3"},
      {DcVr::FL, "+.5", "0.5"},
      {DcVr::FD, "1e400", "inf"},
      {DcVr::FD, "-1e400", "-inf"},
      {DcVr::FD, "1e-400", "0"},
      {DcVr::FD, "0.5e400", "inf"},
      {DcVr::FD, "e", "0"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    DcElem element(kPrivate, c.vr);
    EXPECT_EQ(element.addValue(c.text), kDcOk);
    EXPECT_EQ(valuesOf(element), Values{c.stored});
  }
}

TEST_F(Element, BulkBytesAreCopiedAndHandedOutAsViews) {
  std::vector<std::uint8_t> bytes{1, 2, 3, 4};
  DcElem element(kPixelData);
  EXPECT_EQ(element.addValue(bytes.data(), 4, DcUid{176}), kDcOk);
  EXPECT_EQ(element.transferSyntax(), DcUid{176});
  bytes.assign(4, 0);
  DcElemValueBuf segment;
  EXPECT_EQ(element.getValue(segment), kDcOk);
  EXPECT_FALSE(segment.ownsMemory());
  EXPECT_EQ(segment.lengthBytes(), 4U);
  EXPECT_EQ(segment.transferSyntax(), DcUid{176});
  EXPECT_EQ(segment.data()[3], 4);
  EXPECT_EQ(segment.data(), element.segments()[0].data());

  EXPECT_EQ(element.addValue(nullptr, 4, DcUid{173}), 0x1602U);
  EXPECT_EQ(element.addValue(bytes.data(), 0, DcUid{173}), 0x1602U);
  EXPECT_EQ(log_.take(), Lines{});
  EXPECT_EQ(element.addValue(bytes.data(), 4, DcUid{2}), 0x1605U);
  EXPECT_EQ(element.valueCount(), 1);
  EXPECT_EQ(element.transferSyntax(), DcUid{176});
  log_.take();
  DcElem text(kPrivate, DcVr::LO);
  EXPECT_EQ(text.addValue(bytes.data(), 4, DcUid{173}), 0x1602U);
  EXPECT_EQ(log_.take(), Lines{"Element (0009,1010) VR=LO, does not accept raw buffers"});
}

TEST_F(Element, BulkBytesCanStayInAFile) {
  const test::TempDir dir;
  const std::string name = (dir / "pixels").string();
  test::writeBytes(name, {1, 2, 3, 4});
  DcElem element(kPixelData, name.c_str(), 1, 2, DcUid::ExplicitLittleEndian);
  DcElemValueBuf segment;
  EXPECT_EQ(element.getValue(segment), kDcOk);
  EXPECT_EQ(segment.storage(), DcElemValueBuf::Storage::File);
  EXPECT_EQ(segment.fileName(), name);
  EXPECT_EQ(segment.offsetInFile(), 1U);
  EXPECT_EQ(segment.lengthBytes(), 2U);
  EXPECT_EQ(segment.data(), nullptr);

  const char* const noName = nullptr;
  EXPECT_EQ(element.addValue(noName, 0, 1, DcUid{173}), kDcOk);
  EXPECT_EQ(element.valueCount(), 1);
  const std::string missing = (dir / "missing").string();
  EXPECT_EQ(element.addValue(missing.c_str(), 0, 1, DcUid{173}), 0x1602U);
  EXPECT_EQ(log_.take(),
            Lines{"Element (7fe0,0010), unable to open file " + missing + " in rb mode"});
  EXPECT_EQ(element.valueCount(), 1);
  for (const DcVr vr : {DcVr::UN, DcVr::OF, DcVr::UT, DcVr::LO}) {
    DcElem other(kPrivate, vr);
    EXPECT_EQ(other.addValue(name.c_str(), 0, 1, DcUid{173}), 0x1602U);
  }
}

}  // namespace
}  // namespace quillon
