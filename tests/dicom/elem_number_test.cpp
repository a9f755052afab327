// Data elements whose values are numbers or bytes.
#include "dicom/dict.h"
#include "toolkit_test_tools.h"

namespace quillon::test {
namespace {

using Element = ToolkitTest;

template <auto kValue>
DcCode add(DcElem& element) {
  return element.addValue(kValue);
}

TEST_F(Element, NumbersBecomeWhatTheVrStores) {
  const struct {
    const char* type;
    DcCode (*add)(DcElem&);
  } types[] = {{"short", add<std::int16_t{-2}>},
               {"unsigned short", add<std::uint16_t{65535}>},
               {"long", add<-70000>},
               {"unsigned long", add<4'000'000'000U>},
               {"float", [](DcElem& e) { return e.addValue(0.1F); }},
               {"double float", [](DcElem& e) { return e.addValue(1'234'567.0); }}};
  const struct {
    DcVr vr;
    const char* stored[6];  // null: refused
  } cases[] = {
      {DcVr::DS, {"-2", "65535", "-70000", "4000000000", "0.1", "1.23457e+06"}},
      {DcVr::IS, {"-2", "65535", "-70000", "4000000000"}},
      {DcVr::FL, {"-2", "65535", "-70000", "4e+09", "0.1", "1.23457e+06"}},
      {DcVr::FD, {"-2", "65535", "-70000", "4e+09", nullptr, "1.23457e+06"}},
      {DcVr::SL, {"-2", "65535", "-70000", "-294967296"}},
      {DcVr::SS, {"-2", "-1", "-4464", "10240"}},
      {DcVr::XS, {"-2", "-1", "-4464", "10240"}},
      {DcVr::UL, {"4294967294", "65535", "4294897296", "4000000000"}},
      {DcVr::US, {"65534", "65535", "61072", "10240"}},
      {DcVr::AT, {nullptr, nullptr, "(fffe,ee90)", "(ee6b,2800)"}},
      {DcVr::CS, {}},
      {DcVr::UN, {}},
      {DcVr::UI, {}},
  };
  for (const auto& c : cases) {
    std::string code;
    theDictionary().getVr(c.vr, &code);
    for (std::size_t i = 0; i < std::size(types); ++i) {
      const std::string type = types[i].type;
      SCOPED_TRACE(code + " from " + type);
      DcElem element(kPrivate, c.vr);
      EXPECT_EQ(types[i].add(element), c.stored[i] == nullptr ? 0x1602U : kDcOk);
      if (c.stored[i] != nullptr) {
        EXPECT_EQ(valuesOf(element), c.stored[i]);
        continue;
      }
      EXPECT_EQ(logged(), "Element (0009,1010) VR=" + code + ", does not accept " + type);
      EXPECT_EQ(lastFunction(), "DcElem::addValue");
    }
  }
}

TEST_F(Element, TextBecomesTheNumberThatTheVrStores) {
  const struct {
    DcVr vr;
    const char* text;
    const char* stored;
  } cases[] = {
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
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    DcElem element(kPrivate, c.vr);
    EXPECT_EQ(element.addValue(c.text), kDcOk);
    EXPECT_EQ(valuesOf(element), c.stored);
  }
}

TEST_F(Element, BulkBytesAreCopiedAndHandedOutAsViews) {
  Bytes bytes{1, 2, 3, 4};
  DcElem element(kPixelData);
  EXPECT_EQ(element.addValue(bytes.data(), 4, kJpeg), kDcOk);
  EXPECT_EQ(element.transferSyntax(), kJpeg);
  bytes.assign(4, 0);
  DcElemValueBuf segment;
  EXPECT_EQ(element.getValue(segment), kDcOk);
  EXPECT_FALSE(segment.ownsMemory());
  EXPECT_EQ(segment.lengthBytes(), 4U);
  EXPECT_EQ(segment.transferSyntax(), kJpeg);
  EXPECT_EQ(segment.data()[3], 4);
  EXPECT_EQ(segment.data(), element.segments()[0].data());

  EXPECT_EQ(element.addValue(nullptr, 4, kExplicit), 0x1602U);
  EXPECT_EQ(element.addValue(bytes.data(), 0, kExplicit), 0x1602U);
  EXPECT_EQ(logged(), "");
  EXPECT_EQ(element.addValue(bytes.data(), 4, DcUid{2}), 0x1605U);
  EXPECT_EQ(element.valueCount(), 1);
  EXPECT_EQ(element.transferSyntax(), kJpeg);
  logged();
  DcElem text(kPrivate, DcVr::LO);
  EXPECT_EQ(text.addValue(bytes.data(), 4, kExplicit), 0x1602U);
  EXPECT_EQ(logged(), "Element (0009,1010) VR=LO, does not accept raw buffers");
}

TEST_F(Element, BulkBytesCanStayInAFile) {
  const std::string name = (dir_ / "pixels").string();
  writeBytes(name, {1, 2, 3, 4});
  DcElem element(kPixelData, name.c_str(), 1, 2, kExplicit);
  DcElemValueBuf segment;
  EXPECT_EQ(element.getValue(segment), kDcOk);
  EXPECT_EQ(segment.storage(), DcElemValueBuf::Storage::File);
  EXPECT_EQ(segment.fileName(), name);
  EXPECT_EQ(segment.offsetInFile(), 1U);
  EXPECT_EQ(segment.lengthBytes(), 2U);
  EXPECT_EQ(segment.data(), nullptr);

  const char* const noName = nullptr;
  EXPECT_EQ(element.addValue(noName, 0, 1, kExplicit), kDcOk);
  EXPECT_EQ(element.valueCount(), 1);
  const std::string missing = (dir_ / "missing").string();
  EXPECT_EQ(element.addValue(missing.c_str(), 0, 1, kExplicit), 0x1602U);
  EXPECT_EQ(logged(), "Element (7fe0,0010), unable to open file " + missing + " in rb mode");
  EXPECT_EQ(element.valueCount(), 1);
  for (const DcVr vr : {DcVr::UN, DcVr::OF, DcVr::UT, DcVr::LO}) {
    DcElem other(kPrivate, vr);
    EXPECT_EQ(other.addValue(name.c_str(), 0, 1, kExplicit), 0x1602U);
  }
}

}  // namespace
}  // namespace quillon::test
