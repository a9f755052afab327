#include <algorithm>
#include <utility>

#include "toolkit_test_tools.h"

namespace quillon::test {
namespace {

using ParsingHostileData = ToolkitTest;

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
  starts(longHeader);
  if (syntax == Syntax::ExplicitLittle) {
    bytes.encapsulated({{}, {1, 2, 3, 4}});
  } else {
    bytes.raw(kPixelData, "OW", {1, 2, 3, 4});
  }
  sample.bytes = bytes.take();
  return sample;
}

TEST_F(ParsingHostileData, ACutInsideAValueIsAnErrorWhereverItIs) {
  const QuietLog quiet;
  for (const NamedSyntax& s : kSyntaxes) {
    const Sample sample = sampleOf(s.syntax);
    for (std::size_t kept = 1; kept <= sample.bytes.size(); ++kept) {
      SCOPED_TRACE(testing::Message() << s.name << ", " << kept << " bytes");
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
      DcElemList list;
      EXPECT_EQ(parseInto(list, firstOf(sample.bytes, kept), s.id) == kDcOk, isWhole);
    }
  }
}

TEST_F(ParsingHostileData, DamagedBytesAnywhereAreSurvived) {
  const QuietLog quiet;
  for (const NamedSyntax& s : kSyntaxes) {
    const Sample sample = sampleOf(s.syntax);
    for (const char* digits :
         {"FF", "00", "FFFFFFFF", "00000080", "FEFF00E0", "FEFFDDE000000000"}) {
      const Bytes damage = hexBytes(digits);
      for (std::size_t at = 0; at + damage.size() <= sample.bytes.size(); ++at) {
        Bytes bytes = sample.bytes;
        std::ranges::copy(damage, bytes.begin() + static_cast<std::ptrdiff_t>(at));
        for (const NamedSyntax& readAs : kSyntaxes) {
          DcElemList list;
          static_cast<void>(parseInto(list, bytes, readAs.id));
          // What came out of it can be encoded within its estimate.
          Bytes encoded(static_cast<std::size_t>(list.encodedLengthEstimate() + 1));
          std::uint32_t length = 0;
          static_cast<void>(list.frame(encoded.data(), length, kExplicit));
          ASSERT_LE(length, list.encodedLengthEstimate());
        }
      }
    }
  }
}

// Empty sequences within one another. Built from the outside: a defined length covers all within.
Bytes nested(int levels, bool undefined) {
  DataSetBytes bytes(Syntax::ImplicitLittle);
  for (int i = levels; i > 0 && undefined; --i)
    bytes.beginSequence(0x00081140, true).beginItem(true);
  for (int i = levels; i > 0; --i) {
    const auto contents = static_cast<std::uint32_t>((i - 1) * 16);
    if (undefined) {
      bytes.endItem().endSequence();
    } else {
      bytes.header(0x00081140, "SQ", contents + 8).header(0xFFFEE000, "", contents);
    }
  }
  return bytes.take();
}

TEST_F(ParsingHostileData, NestingIsCutAtTheLimit) {
  const QuietLog quiet;
  for (const int levels : {kMaxNesting, kMaxNesting + 1, 300, 100'000}) {
    SCOPED_TRACE(levels);
    const DcCode expected = levels <= kMaxNesting ? kDcOk : kDcTooDeep;
    DcElemList defined;
    EXPECT_EQ(parseInto(defined, nested(levels, false), kImplicit), expected);
    const Bytes bytes = nested(levels, true);
    DcElemList undefined;
    EXPECT_EQ(parseInto(undefined, bytes, kImplicit), expected);
    // The outermost header as explicit UN.
    const Bytes within(bytes.begin() + 8, bytes.end());
    DcElemList unknown;
    EXPECT_EQ(
        parseInto(unknown, DataSetBytes().header(kPrivate, "UN", 0xFFFFFFFF).append(within).take(),
                  kExplicit),
        expected);
  }
}

TEST_F(ParsingHostileData, ABackwardsDataSetCostsNoQuadraticTime) {
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
  ASSERT_EQ(parseInto(list, bytes.take(), kImplicit), kDcOk);
  ASSERT_EQ(list.size(), tags.size());
  for (std::size_t i = 0; i < tags.size(); ++i) ASSERT_EQ(list.at(i)->tag(), tags[i]);
}

}  // namespace
}  // namespace quillon::test
