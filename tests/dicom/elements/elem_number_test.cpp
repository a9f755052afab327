// Data elements whose values are numbers or bytes.
#include <initializer_list>

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
    static_cast<void>(theDictionary().getVr(c.vr, &code));
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

TEST_F(Element, AnIndexAndTheVmHoldForNumbersOfEveryVr) {
  const std::pair<DcTag, DcVr> cases[] = {{0x00280010, DcVr::US}, {0x00280100, DcVr::US},
                                          {0x00189219, DcVr::SS}, {0x00280104, DcVr::XS},
                                          {0x00186020, DcVr::SL}, {0x00041200, DcVr::UL},
                                          {0x00089459, DcVr::FL}, {0x00186028, DcVr::FD}};
  for (const auto& [tag, vr] : cases) {
    SCOPED_TRACE(testing::Message() << std::hex << tag);
    DcElem bounded(tag);  // to one value
    ASSERT_EQ(bounded.resolvedVr(), vr);
    EXPECT_EQ(bounded.addValue("1\\2\\3"), kDcOk);
    EXPECT_EQ(valuesOf(bounded), "3");
    DcElem element(kPrivate, vr);
    EXPECT_EQ(element.addValue("1\\2\\3"), kDcOk);
    EXPECT_EQ(element.addValue("7", 1), kDcOk);
    EXPECT_EQ(valuesOf(element), "1/7/3");
    EXPECT_EQ(element.addValue("9", 3), 0x1624U);
    EXPECT_EQ(element.addValue("9", -2), 0x1624U);
    EXPECT_EQ(valuesOf(element), "1/7/3");
    EXPECT_EQ(logged(), "Invalid index value\nInvalid index value");
    float value = 0;
    EXPECT_EQ(element.getValue(value, 3), 0x160EU);
    EXPECT_EQ(element.getValue(value, 4), 0x1624U);
    EXPECT_EQ(logged(), "Element (0009,1010) index (=4) out of range, value count = 3");
  }
}

TEST_F(Element, ALineOfADumpNamesTheElementAndItsValues) {
  const std::string name = (dir_ / "pixels").string();
  writeBytes(name, {1, 2});
  DcElem bulk(kPixelData, DcVr::OB);
  static_cast<void>(bulk.addValue("abc", 3, kExplicit));
  DcElem inFile(kPixelData, name.c_str(), 0, 2, kExplicit);
  DcElem tag(0x00280009, 0x00181063U);
  auto sequence = sequenceOf(0x00081140, itemWith(elem(0x00280010, 512)), itemWith());
  std::string text;
  for (DcElem* element : std::initializer_list<DcElem*>{&bulk, &inFile, &tag, sequence.get()}) {
    element->dump(text);
  }
  DcElem(0x00080008, "A\\B").dump(text);
  DcElem(0x00089459).dump(text);
  EXPECT_EQ(text,
            "(7fe0,0010) OB T_7fe0_0010_pixelData [3 bytes]\n"
            "(7fe0,0010) OX T_7fe0_0010_pixelData [2 bytes in a file]\n"
            "(0028,0009) AT T_0028_0009_frameIncrementPointer [1577059]\n"
            "(0008,1140) SQ T_0008_1140_referencedImageSequence []\n"
            "item\n(0028,0010) US T_0028_0010_rows [512]\nitem\n"
            "(0008,0008) CS T_0008_0008_imageType [A\\B]\n"
            "(0008,9459) FL T_0008_9459_recommendedDisplayFrameRateInFloat []\n");
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
  EXPECT_EQ(logged(), "'1.2.840.10008.1.3.10' is not a Transfer Syntax UID");
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
