#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "dicom/elem_list.h"
#include "dicom/elem_sq.h"
#include "dir_test_tools.h"
#include "parse_test_tools.h"
#include "support/dicom_bytes.h"
#include "support/temp_dir.h"

namespace quillon::test {
namespace {

using Lines = std::vector<std::string>;

constexpr DcUid kImplicit = DcUid::ImplicitLittleEndian;
constexpr DcUid kExplicit = DcUid::ExplicitLittleEndian;
constexpr DcUid kBig = DcUid::ExplicitBigEndian;
constexpr DcUid kJpeg{176};

// Encodes into a buffer of the estimated size, which the sanitizer guards.
template <class Encodable>
Bytes framed(Encodable& encodable, DcUid transferSyntax, DcCode& code) {
  Bytes bytes(static_cast<std::size_t>(encodable.encodedLengthEstimate() + 1));
  std::uint32_t length = 0;
  code = encodable.frame(bytes.data(), length, transferSyntax);
  EXPECT_LE(length, encodable.encodedLengthEstimate());
  bytes.resize(length);
  return bytes;
}

Bytes operator+(Bytes left, const Bytes& right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}

std::unique_ptr<DcElem> bulk(DcTag tag, DcVr vr, const Bytes& bytes, DcUid transferSyntax) {
  return std::make_unique<DcElem>(tag, bytes.data(), static_cast<std::uint32_t>(bytes.size()),
                                  transferSyntax, vr);
}

TEST(EncodingElements, HeaderAndValueInEverySyntax) {
  const struct {
    const char* what;
    std::unique_ptr<DcElem> elem;
    Bytes implicitLittle;
    Bytes explicitLittle;
    Bytes explicitBig;
  } cases[] = {
      {"name",
       std::make_unique<DcElem>(0x00100010, "A^B"),
       {0x10, 0, 0x10, 0, 4, 0, 0, 0, 'A', '^', 'B', ' '},
       {0x10, 0, 0x10, 0, 'P', 'N', 4, 0, 'A', '^', 'B', ' '},
       {0, 0x10, 0, 0x10, 'P', 'N', 0, 4, 'A', '^', 'B', ' '}},
      {"UID",
       std::make_unique<DcElem>(0x00080018, "1.2"),
       {8, 0, 0x18, 0, 4, 0, 0, 0, '1', '.', '2', 0},
       {8, 0, 0x18, 0, 'U', 'I', 4, 0, '1', '.', '2', 0},
       {0, 8, 0, 0x18, 'U', 'I', 0, 4, '1', '.', '2', 0}},
      {"codes",
       std::make_unique<DcElem>(0x00080008, "A\\B\\C"),
       {8, 0, 8, 0, 6, 0, 0, 0, 'A', '\\', 'B', '\\', 'C', ' '},
       {8, 0, 8, 0, 'C', 'S', 6, 0, 'A', '\\', 'B', '\\', 'C', ' '},
       {0, 8, 0, 8, 'C', 'S', 0, 6, 'A', '\\', 'B', '\\', 'C', ' '}},
      {"word",
       std::make_unique<DcElem>(0x00280010, std::int32_t{258}),
       {0x28, 0, 0x10, 0, 2, 0, 0, 0, 2, 1},
       {0x28, 0, 0x10, 0, 'U', 'S', 2, 0, 2, 1},
       {0, 0x28, 0, 0x10, 'U', 'S', 0, 2, 1, 2}},
      {"word of either sign",
       std::make_unique<DcElem>(0x00280106, std::int32_t{5}),
       {0x28, 0, 0x06, 1, 2, 0, 0, 0, 5, 0},
       {0x28, 0, 0x06, 1, 'U', 'S', 2, 0, 5, 0},
       {0, 0x28, 1, 0x06, 'U', 'S', 0, 2, 0, 5}},
      {"tag",
       std::make_unique<DcElem>(0x00280009, std::uint32_t{0x00181063}),
       {0x28, 0, 9, 0, 4, 0, 0, 0, 0x18, 0, 0x63, 0x10},
       {0x28, 0, 9, 0, 'A', 'T', 4, 0, 0x18, 0, 0x63, 0x10},
       {0, 0x28, 0, 9, 'A', 'T', 0, 4, 0, 0x18, 0x10, 0x63}},
      {"float",
       std::make_unique<DcElem>(0x00089459, "1.5"),
       {8, 0, 0x59, 0x94, 4, 0, 0, 0, 0, 0, 0xC0, 0x3F},
       {8, 0, 0x59, 0x94, 'F', 'L', 4, 0, 0, 0, 0xC0, 0x3F},
       {0, 8, 0x94, 0x59, 'F', 'L', 0, 4, 0x3F, 0xC0, 0, 0}},
      {"no value",
       std::make_unique<DcElem>(0x00100020),
       {0x10, 0, 0x20, 0, 0, 0, 0, 0},
       {0x10, 0, 0x20, 0, 'L', 'O', 0, 0},
       {0, 0x10, 0, 0x20, 'L', 'O', 0, 0}},
      {"unlimited text",
       bulk(0x0040A160, DcVr::UT, {'A', ' '}, kExplicit),
       {0x40, 0, 0x60, 0xA1, 2, 0, 0, 0, 'A', ' '},
       {0x40, 0, 0x60, 0xA1, 'U', 'T', 0, 0, 2, 0, 0, 0, 'A', ' '},
       {0, 0x40, 0xA1, 0x60, 'U', 'T', 0, 0, 0, 0, 0, 2, 'A', ' '}},
      {"bytes",
       bulk(0x7FE00010, DcVr::OB, {1, 2}, kExplicit),
       {0xE0, 0x7F, 0x10, 0, 2, 0, 0, 0, 1, 2},
       {0xE0, 0x7F, 0x10, 0, 'O', 'B', 0, 0, 2, 0, 0, 0, 1, 2},
       {0x7F, 0xE0, 0, 0x10, 'O', 'B', 0, 0, 0, 0, 0, 2, 1, 2}},
      {"words from little endian",
       bulk(0x7FE00010, DcVr::OW, {1, 2, 3, 4}, kExplicit),
       {0xE0, 0x7F, 0x10, 0, 4, 0, 0, 0, 1, 2, 3, 4},
       {0xE0, 0x7F, 0x10, 0, 'O', 'W', 0, 0, 4, 0, 0, 0, 1, 2, 3, 4},
       {0x7F, 0xE0, 0, 0x10, 'O', 'W', 0, 0, 0, 0, 0, 4, 2, 1, 4, 3}},
      {"words from big endian, a byte left over",
       bulk(0x7FE00010, DcVr::OW, {1, 2, 3, 4, 5}, kBig),
       {0xE0, 0x7F, 0x10, 0, 5, 0, 0, 0, 2, 1, 4, 3, 5},
       {0xE0, 0x7F, 0x10, 0, 'O', 'W', 0, 0, 5, 0, 0, 0, 2, 1, 4, 3, 5},
       {0x7F, 0xE0, 0, 0x10, 'O', 'W', 0, 0, 0, 0, 0, 5, 1, 2, 3, 4, 5}},
      {"floats from implicit",
       bulk(0x00091010, DcVr::OF, {1, 2, 3, 4}, kImplicit),
       {9, 0, 0x10, 0x10, 4, 0, 0, 0, 1, 2, 3, 4},
       {9, 0, 0x10, 0x10, 'O', 'F', 0, 0, 4, 0, 0, 0, 1, 2, 3, 4},
       {0, 9, 0x10, 0x10, 'O', 'F', 0, 0, 0, 0, 0, 4, 4, 3, 2, 1}},
      {"unknown bytes from big endian",
       bulk(0x00091010, DcVr::UN, {1, 2}, kBig),
       {9, 0, 0x10, 0x10, 2, 0, 0, 0, 1, 2},
       {9, 0, 0x10, 0x10, 'U', 'N', 0, 0, 2, 0, 0, 0, 1, 2},
       {0, 9, 0x10, 0x10, 'U', 'N', 0, 0, 0, 0, 0, 2, 1, 2}},
      {"VR 35",
       bulk(0x00091010, DcVr::Xx, {1, 2}, kExplicit),
       {9, 0, 0x10, 0x10, 2, 0, 0, 0, 1, 2},
       {9, 0, 0x10, 0x10, 'U', 'N', 0, 0, 2, 0, 0, 0, 1, 2},
       {0, 9, 0x10, 0x10, 'U', 'N', 0, 0, 0, 0, 0, 2, 1, 2}},
      {"OX on its own",
       bulk(0x7FE00010, DcVr::OX, {1, 2}, kImplicit),
       {0xE0, 0x7F, 0x10, 0, 2, 0, 0, 0, 1, 2},
       {0xE0, 0x7F, 0x10, 0, 'O', 'B', 0, 0, 2, 0, 0, 0, 1, 2},
       {0x7F, 0xE0, 0, 0x10, 'O', 'B', 0, 0, 0, 0, 0, 2, 1, 2}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    DcCode code = kDcOk;
    EXPECT_EQ(framed(*c.elem, kImplicit, code), c.implicitLittle);
    EXPECT_EQ(code, kDcOk);
    EXPECT_EQ(framed(*c.elem, kExplicit, code), c.explicitLittle);
    EXPECT_EQ(code, kDcOk);
    EXPECT_EQ(framed(*c.elem, kBig, code), c.explicitBig);
    EXPECT_EQ(code, kDcOk);
  }
}

TEST(EncodingElements, RefusalsHaveTheirCodeAndSentence) {
  const auto withVr = [](DcTag tag, DcVr vr) {
    auto elem = std::make_unique<DcElem>(tag);
    elem->setVr(vr);
    return elem;
  };
  LoggedLines log;
  auto sequence = withVr(0x00081140, DcVr::IM);
  log.take();
  const struct {
    const char* what;
    std::unique_ptr<DcElem> elem;
    DcUid syntax;
    DcCode code;
    Lines messages;
  } cases[] = {
      {"VR 0",
       withVr(0x00100010, DcVr::None),
       kExplicit,
       kDcNotReadable,
       {"Element (0010,0010) - Invalid VR ''"}},
      {"RT",
       withVr(0x00100010, DcVr::RT),
       kImplicit,
       kDcNotReadable,
       {"Element (0010,0010) - Invalid VR 'RT'"}},
      {"EX",
       withVr(0x00100010, DcVr::EX),
       kExplicit,
       kDcNotReadable,
       {"Element (0010,0010) - Invalid VR 'EX'"}},
      {"a sequence that is none",
       std::move(sequence),
       kExplicit,
       kDcNotReadable,
       {"Element (0008,1140) - should be created as SQ, not element"}},
      {"no transfer syntax",
       std::make_unique<DcElem>(0x00100010, "A"),
       DcUid::Verification,
       kDcNotTransferSyntax,
       {}},
  };
  log.take();
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    DcCode code = kDcOk;
    EXPECT_EQ(framed(*c.elem, c.syntax, code), Bytes());
    EXPECT_EQ(code, c.code);
    EXPECT_EQ(log.take(), c.messages);
  }
  std::uint32_t length = 9;
  DcElem elem(0x00100010, "A");
  EXPECT_EQ(elem.frame(nullptr, length, kExplicit), kDcNullArgument);
  EXPECT_EQ(length, 0U);
  EXPECT_EQ(log.take(), Lines{"Element (0010,0010) - Null buffer passed"});
}

TEST(EncodingElements, AShortLengthFieldHoldsAtMost65535Bytes) {
  dcSetValueChecking(false);
  LoggedLines log;
  DcCode code = kDcOk;
  DcElem fits(0x00204000, std::string(65'534, 'x').c_str());
  EXPECT_EQ(framed(fits, kExplicit, code).size(), 8U + 65'534);
  EXPECT_EQ(code, kDcOk);
  DcElem tooLong(0x00204000, std::string(65'535, 'x').c_str());  // padded to 65,536
  framed(tooLong, kExplicit, code);
  EXPECT_EQ(code, kDcNotAccepted);
  EXPECT_EQ(log.take(),
            Lines{"Element (0020,4000) - Value Length 0x10000 is too large for Explicit "
                  "Transfer Syntax"});
  const Bytes implicitLittle = framed(tooLong, kImplicit, code);
  EXPECT_EQ(code, kDcOk);
  EXPECT_EQ(Bytes(implicitLittle.begin() + 4, implicitLittle.begin() + 8), (Bytes{0, 0, 1, 0}));
  dcSetValueChecking(true);
}

TEST(EncodingElements, EncapsulatedPixelDataEndsWithADelimitationItem) {
  const Bytes fragments = DataSetBytes().encapsulated({{}, {1, 2}}).take();
  const Bytes value(fragments.begin() + 12, fragments.end() - 8);
  DcCode code = kDcOk;
  const auto encapsulated = bulk(0x7FE00010, DcVr::OB, value, kJpeg);
  EXPECT_EQ(framed(*encapsulated, kJpeg, code), fragments);
  // It stays encapsulated whichever explicit little endian syntax is asked for.
  EXPECT_EQ(framed(*encapsulated, kExplicit, code), fragments);
  const auto native = bulk(0x7FE00010, DcVr::OB, {1, 2}, kExplicit);
  EXPECT_EQ(framed(*native, kJpeg, code), DataSetBytes().raw(0x7FE00010, "OB", {1, 2}).take());
  const auto other = bulk(0x00091010, DcVr::OB, {1, 2}, kJpeg);
  EXPECT_EQ(framed(*other, kJpeg, code), DataSetBytes().raw(0x00091010, "OB", {1, 2}).take());
}

TEST(EncodingElements, SegmentsInMemoryAreJoinedAndThoseInFilesCounted) {
  TempDir dir;
  const std::string file = (dir / "pixels").string();
  writeBytes(file, {1, 2, 3, 4, 5, 6});
  DcCode code = kDcOk;

  DcElem joined(0x7FE00010, DcVr::OB);
  const Bytes first = {1, 2};
  const Bytes second = {3, 4};
  ASSERT_EQ(joined.addValue(first.data(), 2, kExplicit), kDcOk);
  ASSERT_EQ(joined.addValue(second.data(), 2, kExplicit), kDcOk);
  EXPECT_EQ(framed(joined, kExplicit, code),
            DataSetBytes().raw(0x7FE00010, "OB", {1, 2, 3, 4}).take());

  DcElem inFile(0x7FE00010, DcVr::OB);
  ASSERT_EQ(inFile.addValue(file.c_str(), 0, 4, kExplicit), kDcOk);
  ASSERT_EQ(inFile.addValue(file.c_str(), 4, 2, kExplicit), kDcOk);
  EXPECT_EQ(framed(inFile, kExplicit, code), DataSetBytes().header(0x7FE00010, "OB", 6).take());

  LoggedLines log;
  ASSERT_EQ(inFile.addValue(first.data(), 2, kExplicit), kDcOk);
  EXPECT_EQ(framed(inFile, kExplicit, code), DataSetBytes().raw(0x7FE00010, "OB", {}).take());
  EXPECT_EQ(code, kDcOk);
  EXPECT_EQ(log.take(), Lines{"Element (7fe0,0010) - mixed memory/disk buffers, not processed"});
}

TEST(EncodingSequences, LengthsAreDefinedInEverySyntax) {
  for (const Syntax syntax : kSyntaxes) {
    SCOPED_TRACE(nameOf(syntax));
    DcElemSq sequence(0x00081140);
    sequence.addItem(std::make_unique<DcElemSqItem>());
    auto item = std::make_unique<DcElemSqItem>();
    item->add(std::make_unique<DcElem>(0x00280010, std::int32_t{258}));
    auto inner = std::make_unique<DcElemSq>(0x00081199);
    inner->addItem(std::make_unique<DcElemSqItem>());
    item->add(std::move(inner));
    sequence.addItem(std::move(item));
    DcCode code = kDcOk;
    EXPECT_EQ(framed(sequence, uidOf(syntax), code), DataSetBytes(syntax)
                                                         .beginSequence(0x00081140)
                                                         .beginItem()
                                                         .endItem()
                                                         .beginItem()
                                                         .beginSequence(0x00081199)
                                                         .beginItem()
                                                         .endItem()
                                                         .endSequence()
                                                         .us(0x00280010, {258})
                                                         .endItem()
                                                         .endSequence()
                                                         .take());
    EXPECT_EQ(code, kDcOk);
  }
}

TEST(EncodingSequences, RefusalsHaveTheirCodeAndSentence) {
  LoggedLines log;
  std::uint32_t length = 0;
  DcElemSq sequence(0x00081140);
  EXPECT_EQ(sequence.frame(nullptr, length, kExplicit), kDcNullArgument);
  DcElemSqItem item;
  EXPECT_EQ(item.frame(nullptr, length, kExplicit), kDcItemNullBuffer);
  DcElemList list;
  EXPECT_EQ(list.frame(nullptr, length, kExplicit), kDcNullArgument);
  EXPECT_EQ(log.take(),
            (Lines{"Null argument passed", "Null argument passed", "Null argument passed"}));
  Bytes buffer(64);
  EXPECT_EQ(list.frame(buffer.data(), length, DcUid::MediaStorageDirectory), kDcNotTransferSyntax);
  EXPECT_EQ(log.take(), Lines{"'1.2.840.10008.1.3.10' is not a Transfer Syntax UID"});
  sequence.setVr(DcVr::OB);
  EXPECT_EQ(sequence.frame(buffer.data(), length, kExplicit), kDcNotReadable);
  EXPECT_EQ(log.take(), Lines{"Element (0008,1140) is not a sequence"});
}

TEST(EncodingSequences, AFailingElementEndsEverythingAroundIt) {
  LoggedLines log;
  auto item = std::make_unique<DcElemSqItem>();
  item->add(std::make_unique<DcElem>(0x00280010, std::int32_t{1}));
  auto bad = std::make_unique<DcElem>(0x00280011);
  bad->setVr(DcVr::EX);
  item->add(std::move(bad));
  auto sequence = std::make_unique<DcElemSq>(0x00081140);
  sequence->addItem(std::move(item));
  sequence->addItem(std::make_unique<DcElemSqItem>());
  DcElemList list;
  list.add(std::make_unique<DcElem>(0x00080005, "A"));
  list.add(std::move(sequence));
  list.add(std::make_unique<DcElem>(0x00100020, "ID"));
  DcCode code = kDcOk;
  EXPECT_EQ(framed(list, kExplicit, code), DataSetBytes()
                                               .text(0x00080005, "CS", "A")
                                               .beginSequence(0x00081140)
                                               .beginItem()
                                               .us(0x00280010, {1})
                                               .endItem()
                                               .endSequence()
                                               .take());
  EXPECT_EQ(code, kDcNotReadable);
}

TEST(EncodingLists, SomeGroupsHaveOneFormInEveryDataSet) {
  const Bytes command = {0x00, 0x00, 0x00, 0x01, 2, 0, 0, 0, 0x30, 0x00};
  const Bytes meta = {0x02, 0x00, 0x10, 0x00, 'U', 'I', 4, 0, '1', '.', '2', 0};
  const Bytes dir = {0x04, 0x00, 0x12, 0x12, 'U', 'S', 2, 0, 1, 0};
  for (const Syntax syntax : kSyntaxes) {
    SCOPED_TRACE(nameOf(syntax));
    DcElemList list;
    list.add(std::make_unique<DcElem>(0x00280010, std::int32_t{5}));
    list.add(std::make_unique<DcElem>(0x00041212, std::int32_t{1}));
    list.add(std::make_unique<DcElem>(0x00020010, "1.2"));
    list.add(std::make_unique<DcElem>(0x00000100, std::int32_t{0x30}));
    DcCode code = kDcOk;
    EXPECT_EQ(framed(list, uidOf(syntax), code),
              command + meta + dir + DataSetBytes(syntax).us(0x00280010, {5}).take());
    EXPECT_EQ(code, kDcOk);
  }
}

TEST(EncodingLists, GroupLengthsThatAreThereAreRecomputed) {
  for (const Syntax syntax : kSyntaxes) {
    SCOPED_TRACE(nameOf(syntax));
    DcElemList list;
    list.add(std::make_unique<DcElem>(0x00080000));  // without a value yet
    list.add(std::make_unique<DcElem>(0x00080005, "A"));
    list.add(std::make_unique<DcElem>(0x00080008, "B"));
    list.add(std::make_unique<DcElem>(0x00100020, "ID"));  // a group without one gets none
    list.add(std::make_unique<DcElem>(0x00280000, std::uint32_t{99}));
    list.add(std::make_unique<DcElem>(0x00280010, std::int32_t{1}));
    DcCode code = kDcOk;
    EXPECT_EQ(framed(list, uidOf(syntax), code), DataSetBytes(syntax)
                                                     .ul(0x00080000, {20})
                                                     .text(0x00080005, "CS", "A")
                                                     .text(0x00080008, "CS", "B")
                                                     .text(0x00100020, "LO", "ID")
                                                     .ul(0x00280000, {10})
                                                     .us(0x00280010, {1})
                                                     .take());
  }
}

TEST(EncodingLists, TheGroupOfPixelDataCountsItsHeaderBySyntax) {
  const struct {
    DcUid syntax;
    std::uint32_t expected;
  } cases[] = {{kImplicit, 4 + 8}, {kExplicit, 4 + 12}, {kBig, 4 + 12}, {kJpeg, 4 + 20}};
  for (const auto& c : cases) {
    SCOPED_TRACE(static_cast<unsigned>(c.syntax));
    DcElemList list;
    list.add(std::make_unique<DcElem>(0x7FE00000));
    list.add(bulk(0x7FE00010, DcVr::OB, {1, 2, 3, 4}, c.syntax));
    DcCode code = kDcOk;
    framed(list, c.syntax, code);
    ASSERT_EQ(code, kDcOk);
    std::uint32_t value = 0;
    EXPECT_EQ(list.getValue(0x7FE00000, value), kDcOk);
    EXPECT_EQ(value, c.expected);
  }
}

TEST(EncodingLists, BytesOrWordsFollowFromTheBitsAllocated) {
  const struct {
    const char* what;
    DcTag bitsTag;
    std::int32_t bits;
    DcTag tag;
    DcVr vr;
    DcUid syntax;
    DcVr expected;
  } cases[] = {
      {"8-bit pixels", 0x00280100, 8, 0x7FE00010, DcVr::OX, kExplicit, DcVr::OB},
      {"16-bit pixels", 0x00280100, 16, 0x7FE00010, DcVr::OX, kBig, DcVr::OW},
      {"16-bit pixels, compressed", 0x00280100, 16, 0x7FE00010, DcVr::OX, kJpeg, DcVr::OB},
      {"pixels that say what they are", 0x00280100, 16, 0x7FE00010, DcVr::OB, kExplicit, DcVr::OB},
      {"no bits", 0x00280010, 16, 0x7FE00010, DcVr::OX, kExplicit, DcVr::OB},
      {"16-bit waveform", 0x54001004, 16, 0x54001010, DcVr::OX, kImplicit, DcVr::OW},
      {"8-bit waveform", 0x54001004, 8, 0x54001010, DcVr::OX, kExplicit, DcVr::OB},
      {"16-bit waveform called bytes", 0x54001004, 16, 0x5400100A, DcVr::OB, kExplicit, DcVr::OW},
      {"waveform without bits", 0x00280010, 16, 0x54001010, DcVr::OX, kExplicit, DcVr::OX},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    DcElemList list;
    list.add(std::make_unique<DcElem>(c.bitsTag, c.bits));
    list.add(bulk(c.tag, c.vr, {1, 2}, kImplicit));
    DcCode code = kDcOk;
    framed(list, c.syntax, code);
    EXPECT_EQ(code, kDcOk);
    EXPECT_EQ(list.find(c.tag)->vr(), c.expected);
  }
}

TEST(EncodingLists, TheEstimateIsNeverBelowTheEncodedSize) {
  dcSetValueChecking(false);
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
    DcElem& elem = *list.add(std::make_unique<DcElem>(c.tag));  // takes the list's hook
    if (c.tag == 0x00280009) {
      elem.addValue(std::uint32_t{0x00181063});
    } else {
      elem.addValue(c.text);
    }
    EXPECT_EQ(list.encodedLengthEstimate(), c.expected);
    DcCode code = kDcOk;
    framed(list, kExplicit, code);
    EXPECT_EQ(code, kDcOk);
  }
  dcSetValueChecking(true);
}

}  // namespace
}  // namespace quillon::test
