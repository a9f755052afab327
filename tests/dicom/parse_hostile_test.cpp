#include <gtest/gtest.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "dicom/elem_list.h"
#include "parse_test_tools.h"
#include "support/dicom_bytes.h"

namespace quillon::test {
namespace {

// Everything that has a form of its own, at the top level and nested.
struct Sample {
  Bytes bytes;
  std::vector<std::pair<std::size_t, std::size_t>> elements;  // start, bytes of header
};

Sample sampleOf(Syntax syntax) {
  Sample sample;
  DataSetBytes bytes(syntax);
  const std::size_t longHeader = syntax == Syntax::ImplicitLittle ? 8 : 12;
  const auto starts = [&](std::size_t headerBytes) {
    sample.elements.emplace_back(bytes.bytes().size(), headerBytes);
  };
  starts(8);
  bytes.text(0x00080005, "CS", "ISO_IR 100");
  starts(longHeader);
  bytes.beginSequence(0x00081140, true).beginItem(true).text(0x00081150, "UI", "1.2");
  bytes.beginSequence(0x00081199).beginItem().us(0x00280010, {1}).endItem().endSequence();
  bytes.endItem().beginItem().endItem().endSequence();
  starts(longHeader);
  bytes.beginSequence(0x00082112).beginItem(true).text(0x00081150, "UI", "1.2").endItem();
  bytes.endSequence();
  starts(longHeader);
  bytes.raw(0x00091010, "UN", {1, 2, 3, 4});
  starts(8);
  bytes.us(0x00280010, {1, 2});
  if (syntax == Syntax::ExplicitLittle) {
    starts(longHeader);
    bytes.encapsulated({{}, {1, 2, 3, 4}});
  } else {
    starts(longHeader);
    bytes.raw(0x7FE00010, "OW", {1, 2, 3, 4});
  }
  sample.bytes = bytes.take();
  return sample;
}

TEST(ParsingHostileData, ACutInsideAValueIsAnErrorWhereverItIs) {
  const QuietLog quiet;
  for (const Syntax syntax : kSyntaxes) {
    const Sample sample = sampleOf(syntax);
    for (std::size_t kept = 1; kept <= sample.bytes.size(); ++kept) {
      SCOPED_TRACE(testing::Message() << nameOf(syntax) << ", " << kept << " bytes");
      std::size_t start = 0;
      std::size_t headerBytes = 0;
      for (const auto& [at, header] : sample.elements) {
        if (at < kept) start = at, headerBytes = header;
      }
      // Too few bytes for another element are no element.
      const bool isWhole = kept - start < headerBytes || kept == sample.bytes.size() ||
                           std::ranges::any_of(sample.elements, [kept](const auto& element) {
                             return element.first == kept;
                           });
      DcCode code = kDcOk;
      parsed(Bytes(sample.bytes.begin(), sample.bytes.begin() + static_cast<std::ptrdiff_t>(kept)),
             uidOf(syntax), code);
      EXPECT_EQ(code == kDcOk, isWhole);
    }
  }
}

TEST(ParsingHostileData, DamagedBytesAnywhereAreSurvived) {
  const QuietLog quiet;
  const Bytes damages[] = {{0xFF},
                           {0x00},
                           {0xFF, 0xFF, 0xFF, 0xFF},
                           {0, 0, 0, 0x80},
                           {0xFE, 0xFF, 0x00, 0xE0},
                           {0xFE, 0xFF, 0xDD, 0xE0, 0, 0, 0, 0}};
  for (const Syntax syntax : kSyntaxes) {
    const Sample sample = sampleOf(syntax);
    for (const Bytes& damage : damages) {
      for (std::size_t at = 0; at + damage.size() <= sample.bytes.size(); ++at) {
        Bytes bytes = sample.bytes;
        std::ranges::copy(damage, bytes.begin() + static_cast<std::ptrdiff_t>(at));
        for (const Syntax readAs : kSyntaxes) {
          DcElemList list;
          parseInto(list, bytes, uidOf(readAs));
          // What came out of it can be encoded within its estimate.
          Bytes encoded(static_cast<std::size_t>(list.encodedLengthEstimate() + 1));
          std::uint32_t length = 0;
          list.frame(encoded.data(), length, DcUid::ExplicitLittleEndian);
          ASSERT_LE(length, list.encodedLengthEstimate());
        }
      }
    }
  }
}

Bytes nested(int levels, bool undefined, bool asUnknown) {
  // Built from the inside: a defined length covers everything within.
  const Syntax syntax = Syntax::ImplicitLittle;
  if (undefined) {
    DataSetBytes bytes(syntax);
    for (int i = 0; i < levels; ++i) bytes.beginSequence(0x00081140, true).beginItem(true);
    for (int i = 0; i < levels; ++i) bytes.endItem().endSequence();
    Bytes result = bytes.take();
    if (!asUnknown) return result;
    // The outermost header as explicit UN.
    Bytes unknown = DataSetBytes().header(0x00091010, "UN", 0xFFFFFFFF).take();
    unknown.insert(unknown.end(), result.begin() + 8, result.end());
    return unknown;
  }
  DataSetBytes bytes(syntax);
  for (int i = levels; i > 0; --i) {
    const auto contents = static_cast<std::uint32_t>((i - 1) * 16);
    bytes.header(0x00081140, "SQ", contents + 8).header(0xFFFEE000, "", contents);
  }
  return bytes.take();
}

TEST(ParsingHostileData, NestingIsCutAtTheLimit) {
  const QuietLog quiet;
  for (const int levels : {kMaxNesting, kMaxNesting + 1, 300, 100'000}) {
    const DcCode expected = levels <= kMaxNesting ? kDcOk : kDcTooDeep;
    SCOPED_TRACE(levels);
    DcElemList defined;
    EXPECT_EQ(parseInto(defined, nested(levels, false, false), DcUid::ImplicitLittleEndian),
              expected);
    DcElemList undefined;
    EXPECT_EQ(parseInto(undefined, nested(levels, true, false), DcUid::ImplicitLittleEndian),
              expected);
    DcElemList unknown;
    EXPECT_EQ(parseInto(unknown, nested(levels, true, true), DcUid::ExplicitLittleEndian),
              expected);
  }
}

TEST(ParsingHostileData, ABackwardsDataSetCostsNoQuadraticTime) {
  // 300,000 private creators in descending order: inserting each at the front would move
  // 360 gigabytes.
  constexpr int kElements = 300'000;
  DataSetBytes bytes(Syntax::ImplicitLittle);
  std::vector<DcTag> tags;
  for (DcTag group = 0x0009; tags.size() < kElements; group += 2) {
    for (DcTag element = 0x10; element <= 0xFF && tags.size() < kElements; ++element) {
      tags.push_back(group << 16 | element);
    }
  }
  for (auto tag = tags.rbegin(); tag != tags.rend(); ++tag) bytes.header(*tag, "LO", 0);
  DcElemList list;
  ASSERT_EQ(parseInto(list, bytes.take(), DcUid::ImplicitLittleEndian), kDcOk);
  ASSERT_EQ(list.size(), tags.size());
  for (std::size_t i = 0; i < tags.size(); ++i) ASSERT_EQ(list.at(i)->tag(), tags[i]);
}

}  // namespace
}  // namespace quillon::test
