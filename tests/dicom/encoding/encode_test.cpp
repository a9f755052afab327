#include "toolkit_test_tools.h"

namespace quillon::test {
namespace {

using Encoding = ToolkitTest;

std::unique_ptr<DcElem> bulk(DcTag tag, DcVr vr, const Bytes& bytes, DcUid transferSyntax) {
  return std::make_unique<DcElem>(tag, bytes.data(), static_cast<std::uint32_t>(bytes.size()),
                                  transferSyntax, vr);
}

// With a value that its VR does not have.
std::unique_ptr<DcElem> valueWithVr(DcTag tag, DcVr vr) {
  auto element = elem(tag, std::int32_t{1});
  element->setVr(vr);
  return element;
}

std::unique_ptr<DcElem> parsedAs(DcVr vr, const char* littleEndian) {
  const Bytes bytes = hexBytes(littleEndian);
  auto element = elem(kPrivate, vr);
  EXPECT_EQ(element->parseVal(bytes.data(), static_cast<std::uint32_t>(bytes.size()), kExplicit),
            kDcOk);
  return element;
}

std::unique_ptr<DcElem> withVr(DcTag tag, DcVr vr) {
  auto element = elem(tag);
  element->setVr(vr);
  return element;
}

TEST_F(Encoding, EveryVrIsReadAndEncodedInEverySyntax) {
  const struct {
    const char* what;
    DcTag tag;
    const char* vr;
    const char* little;
    const char* big;
    const char* expected;  // described
  } cases[] = {
      {"name", 0x00100010, "PN", "415E4220", "415E4220", "00100010 PN A^B"},
      {"texts", 0x00080008, "CS", "415C425C4320", "415C425C4320", "00080008 CS A/B/C"},
      {"padded UID", 0x00080018, "UI", "312E3200", "312E3200", "00080018 UI 1.2"},
      {"backslashes in one text", 0x00204000, "LT", "415C4220", "415C4220", "00204000 LT A\\B"},
      {"unlimited text kept raw", 0x0040A160, "UT", "4120", "4120", "0040a160 UT 4120"},
      {"word", 0x00280010, "US", "0201", "0102", "00280010 US 258"},
      {"signed word", 0x00189219, "SS", "FEFF", "FFFE", "00189219 SS -2"},
      {"tag", 0x00280009, "AT", "1800 6310", "0018 1063", "00280009 AT (0018,1063)"},
      {"integers", 0x00080008, "UL", "0102000003000000", "0000020100000003", "00080008 UL 513/3"},
      {"signed integer", 0x00186020, "SL", "FEFFFFFF", "FFFFFFFE", "00186020 SL -2"},
      {"float", 0x00089459, "FL", "0000C03F", "3FC00000", "00089459 FL 1.5"},
      {"double", 0x00189073, "FD", "000000000000F8BF", "BFF8000000000000", "00189073 FD -1.5"},
      {"no value", 0x00100020, "LO", "", "", "00100020 LO"},
      {"bytes", kPixelData, "OB", "0201", "0201", "7fe00010 OB 0201"},
      {"words", kPixelData, "OW", "02010403", "01020304", "7fe00010 OW 02010403"},
      {"raw floats", kPrivate, "OF", "01020304", "04030201", "00091010 OF 01020304"},
      {"unknown", kPrivate, "UN", "0102", "0102", "00091010 UN 0102"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    const Bytes little = hexBytes(c.little);
    const Bytes big = hexBytes(c.big);
    for (const NamedSyntax& from : {kSyntaxes[1], kSyntaxes[2]}) {
      SCOPED_TRACE(from.name);
      DcElemList list;
      ASSERT_EQ(
          parseInto(
              list,
              DataSetBytes(from.syntax).raw(c.tag, c.vr, from.id == kBig ? big : little).take(),
              from.id),
          kDcOk);
      EXPECT_EQ(describe(list), c.expected);
      for (const NamedSyntax& to : kSyntaxes) {
        EXPECT_EQ(framed(*list.at(0), to.id),
                  DataSetBytes(to.syntax).raw(c.tag, c.vr, to.id == kBig ? big : little).take())
            << to.name;
      }
    }
  }
  const Bytes half = DataSetBytes().raw(0x00080008, "UL", {1, 0, 0, 0, 9, 9}).take();
  EXPECT_EQ(parsed(half, kExplicit), "00080008 UL 1");
}

TEST_F(Encoding, VrsThatNoFileHasBecomeOnesThatFilesHave) {
  const struct {
    std::unique_ptr<DcElem> element;
    const char* vr;
    const char* little;
    const char* big;
  } cases[] = {{elem(0x00280106, std::int32_t{258}), "US", "0201", "0102"},  // US or SS
               {parsedAs(DcVr::XL, "02010000"), "UL", "02010000", "00000102"},
               {bulk(kPrivate, DcVr::Xx, {1, 2}, kExplicit), "UN", "0102", "0102"},
               {bulk(kPixelData, DcVr::OX, {1, 2}, kImplicit), "OB", "0102", "0102"}};
  for (const auto& c : cases) {
    for (const NamedSyntax& s : kSyntaxes) {
      const Bytes value = hexBytes(s.id == kBig ? c.big : c.little);
      EXPECT_EQ(framed(*c.element, s.id),
                DataSetBytes(s.syntax).raw(c.element->tag(), c.vr, value).take())
          << c.vr << " in " << s.name;
    }
  }
}

TEST_F(Encoding, RefusalsOfElementsHaveTheirCodeAndSentence) {
  const struct {
    const char* what;
    std::unique_ptr<DcElem> element;
    DcUid syntax;
    DcCode code;
    const char* message;
  } cases[] = {
      {"VR 0", withVr(0x00100010, DcVr::None), kExplicit, kDcNotReadable,
       "Element (0010,0010) - Invalid VR ''"},
      {"RT", withVr(0x00100010, DcVr::RT), kImplicit, kDcNotReadable,
       "Element (0010,0010) - Invalid VR 'RT'"},
      {"EX", withVr(0x00100010, DcVr::EX), kExplicit, kDcNotReadable,
       "Element (0010,0010) - Invalid VR 'EX'"},
      {"a sequence that is none", withVr(0x00081140, DcVr::IM), kExplicit, kDcNotReadable,
       "Element (0008,1140) - should be created as SQ, not element"},
      {"no transfer syntax", elem(0x00100010, "A"), DcUid::Verification, kDcNotTransferSyntax,
       "'1.2.840.10008.1.1' is not a Transfer Syntax UID"},
      {"binary values of what has none", valueWithVr(0x00280010, DcVr::SI), kExplicit,
       kDcNotReadable, "Element (0028,0010) - Invalid VR size"},
  };
  logged();
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(framed(*c.element, c.syntax, c.code), Bytes());
    EXPECT_EQ(logged(), c.message);
  }
  std::uint32_t length = 9;
  DcElem element(0x00100010, "A");
  EXPECT_EQ(element.frame(nullptr, length, kExplicit), kDcNullArgument);
  EXPECT_EQ(length, 0U);
  EXPECT_EQ(logged(), "Element (0010,0010) - Null buffer passed");
}

TEST_F(Encoding, BytesOfAnItemCannotStayInAFile) {
  const std::string name = (dir_ / "pixels").string();
  writeBytes(name, {1, 2});
  auto pixels = elem(kPixelData, name.c_str(), std::uint64_t{0}, std::uint32_t{2}, kExplicit);
  auto sequence = sequenceOf(0x00880200, itemWith(std::move(pixels)));
  framed(*sequence, kExplicit, kDcNotAccepted);
  EXPECT_EQ(logged(), "Element (7fe0,0010) of an item is held in a file");
}

TEST_F(Encoding, AShortLengthFieldHoldsAtMost65535Bytes) {
  static_cast<void>(dcSetValueChecking(false));
  DcElem fits(0x00204000, std::string(65'534, 'x').c_str());
  EXPECT_EQ(framed(fits, kExplicit).size(), 8U + 65'534);
  DcElem tooLong(0x00204000, std::string(65'535, 'x').c_str());  // padded to 65,536
  framed(tooLong, kExplicit, kDcNotAccepted);
  EXPECT_EQ(logged(),
            "Element (0020,4000) - Value Length 0x10000 is too large for Explicit Transfer Syntax");
  EXPECT_EQ(firstOf(framed(tooLong, kImplicit), 8), hexBytes("2000 0040 00000100"));
}

TEST_F(Encoding, EncapsulatedPixelDataEndsWithADelimitationItem) {
  const Bytes fragments = DataSetBytes().encapsulated({{}, {1, 2}}).take();
  const Bytes value(fragments.begin() + 12, fragments.end() - 8);
  const auto encapsulated = bulk(kPixelData, DcVr::OB, value, kJpeg);
  EXPECT_EQ(framed(*encapsulated, kJpeg), fragments);
  // It stays encapsulated whichever explicit little endian syntax is asked for.
  EXPECT_EQ(framed(*encapsulated, kExplicit), fragments);
  const auto native = bulk(kPixelData, DcVr::OB, {1, 2}, kExplicit);
  EXPECT_EQ(framed(*native, kJpeg), DataSetBytes().raw(kPixelData, "OB", {1, 2}).take());
  const auto other = bulk(kPrivate, DcVr::OB, {1, 2}, kJpeg);
  EXPECT_EQ(framed(*other, kJpeg), DataSetBytes().raw(kPrivate, "OB", {1, 2}).take());
}

TEST_F(Encoding, BytesOfOddNumberArePadded) {
  const struct {
    DcTag tag;
    DcVr vr;
    const char* code;
    std::uint8_t pad;
  } cases[] = {{0x0040A160, DcVr::UT, "UT", ' '},
               {kPrivate, DcVr::UN, "UN", 0},
               {kPrivate, DcVr::OB, "OB", 0},
               {kPrivate, DcVr::OW, "OW", 0}};
  for (const auto& c : cases) {
    for (const NamedSyntax& to : kSyntaxes) {
      SCOPED_TRACE(std::string(c.code) + ", " + to.name);
      const auto element = bulk(c.tag, c.vr, {9, 9, 0x41}, to.id);
      EXPECT_EQ(framed(*element, to.id),
                DataSetBytes(to.syntax).raw(c.tag, c.code, {9, 9, 0x41, c.pad}).take());
      EXPECT_EQ(element->encodedLengthEstimate(), 12U + 4U);
      // A byte that is no word keeps its place when the others change theirs.
      const bool isSwapped = c.vr == DcVr::OW;
      const auto other = bulk(c.tag, c.vr, {1, 2, 3}, to.id == kBig ? kExplicit : kBig);
      EXPECT_EQ(framed(*other, to.id),
                DataSetBytes(to.syntax)
                    .raw(c.tag, c.code, isSwapped ? Bytes{2, 1, 3, c.pad} : Bytes{1, 2, 3, c.pad})
                    .take());
      element->segments().push_back(element->segments().front());
      EXPECT_EQ(framed(*element, to.id),
                DataSetBytes(to.syntax).raw(c.tag, c.code, {9, 9, 0x41, 9, 9, 0x41}).take());
    }
  }
}

TEST_F(Encoding, SegmentsInMemoryAreJoinedAndThoseInFilesCounted) {
  const std::string file = (dir_ / "pixels").string();
  writeBytes(file, {1, 2, 3, 4, 5, 6});
  DcElem joined(kPixelData, DcVr::OB);
  const Bytes first = {1, 2};
  const Bytes second = {3, 4};
  ASSERT_EQ(joined.addValue(first.data(), 2, kExplicit), kDcOk);
  ASSERT_EQ(joined.addValue(second.data(), 2, kExplicit), kDcOk);
  EXPECT_EQ(framed(joined, kExplicit), DataSetBytes().raw(kPixelData, "OB", {1, 2, 3, 4}).take());

  DcElem inFile(kPixelData, DcVr::OB);
  ASSERT_EQ(inFile.addValue(file.c_str(), 0, 4, kExplicit), kDcOk);
  ASSERT_EQ(inFile.addValue(file.c_str(), 4, 2, kExplicit), kDcOk);
  EXPECT_EQ(framed(inFile, kExplicit), DataSetBytes().header(kPixelData, "OB", 6).take());
  ASSERT_EQ(inFile.addValue(first.data(), 2, kExplicit), kDcOk);
  EXPECT_EQ(framed(inFile, kExplicit), DataSetBytes().raw(kPixelData, "OB", {}).take());
  EXPECT_EQ(logged(), "Element (7fe0,0010) - mixed memory/disk buffers, not processed");
}

TEST_F(Encoding, LengthsOfSequencesAreDefinedInEverySyntax) {
  for (const NamedSyntax& to : kSyntaxes) {
    const auto sequence = sequenceOf(
        0x00081140, itemWith(),
        itemWith(elem(0x00280010, std::int32_t{258}), sequenceOf(0x00081199, itemWith())));
    const Bytes inner = DataSetBytes(to.syntax)
                            .beginSequence(0x00081199)
                            .beginItem()
                            .endItem()
                            .endSequence()
                            .take();
    DataSetBytes expected(to.syntax);
    expected.beginSequence(0x00081140).beginItem().endItem().beginItem();
    expected.append(inner).us(0x00280010, {258}).endItem().endSequence();
    EXPECT_EQ(framed(*sequence, to.id), expected.bytes()) << to.name;
  }
}

TEST_F(Encoding, RefusalsOfSequencesAndListsHaveTheirCodeAndSentence) {
  std::uint32_t length = 0;
  DcElemSq sequence(0x00081140);
  EXPECT_EQ(sequence.frame(nullptr, length, kExplicit), kDcNullArgument);
  DcElemSqItem item;
  EXPECT_EQ(item.frame(nullptr, length, kExplicit), kDcItemNullBuffer);
  DcElemList list;
  EXPECT_EQ(list.frame(nullptr, length, kExplicit), kDcNullArgument);
  EXPECT_EQ(logged(), "Null argument passed\nNull argument passed\nNull argument passed");
  Bytes buffer(64);
  EXPECT_EQ(list.frame(buffer.data(), length, DcUid::MediaStorageDirectory), kDcNotTransferSyntax);
  EXPECT_EQ(logged(), "'1.2.840.10008.1.3.10' is not a Transfer Syntax UID");
  sequence.setVr(DcVr::OB);
  EXPECT_EQ(sequence.frame(buffer.data(), length, kExplicit), kDcNotReadable);
  EXPECT_EQ(logged(), "Element (0008,1140) is not a sequence");
}

TEST_F(Encoding, AFailingElementEndsEverythingAroundIt) {
  DcElemList list;
  list.add(elem(0x00080005, "A"));
  list.add(sequenceOf(0x00081140,
                      itemWith(elem(0x00280010, std::int32_t{1}), withVr(0x00280011, DcVr::EX)),
                      itemWith()));
  list.add(elem(0x00100020, "ID"));
  DataSetBytes expected;
  expected.text(0x00080005, "CS", "A").beginSequence(0x00081140).beginItem();
  expected.us(0x00280010, {1}).endItem().endSequence();
  EXPECT_EQ(framed(list, kExplicit, kDcNotReadable), expected.bytes());
}

TEST_F(Encoding, SomeGroupsHaveOneFormInEveryDataSet) {
  // Group 0000 implicit, 0002 and 0004 explicit, all little endian.
  const Bytes fixed =
      hexBytes("0000 0001 02000000 3000  0200 1000 5549 0400 312E3200  0400 1212 5553 0200 0100");
  for (const NamedSyntax& s : kSyntaxes) {
    SCOPED_TRACE(s.name);
    const Bytes bytes = DataSetBytes(s.syntax).append(fixed).us(0x00280010, {5}).take();
    EXPECT_EQ(parsed(bytes, s.id), "00000100 US 48\n00020010 UI 1.2\n00041212 US 1\n00280010 US 5");
    DcElemList list;
    list.add(elem(0x00280010, std::int32_t{5}));
    list.add(elem(0x00041212, std::int32_t{1}));
    list.add(elem(0x00020010, "1.2"));
    list.add(elem(0x00000100, std::int32_t{0x30}));
    EXPECT_EQ(framed(list, s.id), bytes);
  }
  // In big endian, group 0400 begins with the bytes that group 0004 has in little endian.
  const Bytes signature = DataSetBytes(Syntax::ExplicitBig).us(0x04000005, {7}).take();
  EXPECT_EQ(parsed(signature, kBig), "04000005 US 7");
}

TEST_F(Encoding, GroupLengthsThatAreThereAreRecomputed) {
  for (const NamedSyntax& to : kSyntaxes) {
    DcElemList list;
    list.add(elem(0x00080000));  // without a value yet
    list.add(elem(0x00080005, "A"));
    list.add(elem(0x00080008, "B"));
    list.add(elem(0x00100020, "ID"));  // a group without one gets none
    list.add(elem(0x00280000, std::uint32_t{99}));
    list.add(elem(0x00280010, std::int32_t{1}));
    DataSetBytes expected(to.syntax);
    expected.ul(0x00080000, {20}).text(0x00080005, "CS", "A").text(0x00080008, "CS", "B");
    expected.text(0x00100020, "LO", "ID").ul(0x00280000, {10}).us(0x00280010, {1});
    EXPECT_EQ(framed(list, to.id), expected.bytes()) << to.name;
  }
  // That of the pixel data counts its header by syntax.
  const std::pair<DcUid, std::uint32_t> pixelData[] = {
      {kImplicit, 4 + 8}, {kExplicit, 4 + 12}, {kBig, 4 + 12}, {kJpeg, 4 + 20}};
  for (const auto& [syntax, expected] : pixelData) {
    const bool isNative = syntax != kJpeg;
    for (const Bytes& bytes : {Bytes{1, 2, 3, 4}, Bytes{1, 2, 3}}) {
      DcElemList list;
      list.add(elem(0x7FE00000));
      list.add(bulk(kPixelData, DcVr::OB, bytes, syntax));
      framed(list, syntax);
      std::uint32_t value = 0;
      EXPECT_EQ(list.getValue(0x7FE00000, value), kDcOk);
      EXPECT_EQ(value, isNative || bytes.size() == 4 ? expected : expected - 1);
    }
  }
}

TEST_F(Encoding, BytesOrWordsFollowFromTheBitsAllocated) {
  const struct {
    const char* what;
    DcTag bitsTag;
    std::int32_t bits;
    DcTag tag;
    DcVr vr;
    DcUid syntax;
    DcVr expected;
  } cases[] = {
      {"8-bit pixels", 0x00280100, 8, kPixelData, DcVr::OX, kExplicit, DcVr::OB},
      {"16-bit pixels", 0x00280100, 16, kPixelData, DcVr::OX, kBig, DcVr::OW},
      {"16-bit pixels, compressed", 0x00280100, 16, kPixelData, DcVr::OX, kJpeg, DcVr::OB},
      {"pixels that say what they are", 0x00280100, 16, kPixelData, DcVr::OB, kExplicit, DcVr::OB},
      {"no bits", 0x00280010, 16, kPixelData, DcVr::OX, kExplicit, DcVr::OB},
      {"16-bit waveform", 0x54001004, 16, 0x54001010, DcVr::OX, kImplicit, DcVr::OW},
      {"8-bit waveform", 0x54001004, 8, 0x54001010, DcVr::OX, kExplicit, DcVr::OB},
      {"16-bit waveform called bytes", 0x54001004, 16, 0x5400100A, DcVr::OB, kExplicit, DcVr::OW},
      {"waveform without bits", 0x00280010, 16, 0x54001010, DcVr::OX, kExplicit, DcVr::OX},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    DcElemList list;
    list.add(elem(c.bitsTag, c.bits));
    list.add(bulk(c.tag, c.vr, {1, 2}, kImplicit));
    framed(list, c.syntax);
    EXPECT_EQ(list.find(c.tag)->vr(), c.expected);
  }
}

TEST_F(Encoding, TheEstimateIsNeverBelowTheEncodedSize) {
  static_cast<void>(dcSetValueChecking(false));
  const struct {
    const char* what;
    DcTag tag;
    const char* text;
    std::uint64_t expected;
  } cases[] = {
      {"padded strings", 0x00080008, "A\\BC\\D", 12 + 8},
      {"ages", 0x00101010, "030Y", 12 + 4},
      {"ages that are too long and several", 0x00101010, "0123456789AB\\x\\y\\z", 12 + 18},
      {"name", 0x00100010, "A", 12 + 324},
      {"times", 0x00080030, "12\\13", 12 + 68},
      {"words", 0x00280010, "1\\2", 12 + 4},
      {"tag", 0x00280009, "(0018,1063)", 12 + 12},
      {"nothing", 0x00080008, "", 12 + 2},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    DcElemList list;
    EXPECT_EQ(list.add(elem(c.tag))->addValue(c.text), kDcOk);  // takes the list's hook
    EXPECT_EQ(list.encodedLengthEstimate(), c.expected);
    framed(list, kExplicit);
  }
}

}  // namespace
}  // namespace quillon::test
