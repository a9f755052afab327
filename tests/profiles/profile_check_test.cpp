#include "profiles/profile_check.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "dicom/elem_sq.h"
#include "dicom/tags.h"

namespace quillon {
namespace {

constexpr std::string_view kPlain = "1.2.840.10008.1.2.1";
constexpr std::string_view kBaseline = "1.2.840.10008.1.2.4.50";
constexpr std::string_view kLossless = "1.2.840.10008.1.2.4.70";
constexpr std::string_view kMpeg2 = "1.2.840.10008.1.2.4.100";
constexpr DcTag kRegions = tags::kSequenceOfUltrasoundRegions;

using Values = std::vector<std::pair<DcTag, std::string>>;

struct Case {
  const char* what;
  const char* profile;
  std::string sopClass;  // behind the root of the standard's
  std::string_view syntax;
  Values values;
  std::vector<std::string> rules;  // that are broken: the beginnings of their texts
};

void fill(DcElemList& elements, const Values& values) {
  for (const auto& [tag, text] : values) {
    if (tag != kRegions) {
      elements.add(std::make_unique<DcElem>(tag, text.c_str()));
      continue;
    }
    auto sequence = std::make_unique<DcElemSq>(tag);
    DcElemSqItem* item = sequence->addItem(std::make_unique<DcElemSqItem>());
    if (!text.empty()) {
      item->add(std::make_unique<DcElem>(tags::kPixelComponentOrganization, text.c_str()));
    }
    elements.add(std::move(sequence));
  }
}

const Values kXa{{tags::kModality, "XA"},      {tags::kRows, "512"},     {tags::kColumns, "512"},
                 {tags::kBitsAllocated, "8"},  {tags::kBitsStored, "8"}, {tags::kHighBit, "7"},
                 {tags::kSamplesPerPixel, "1"}};
const Values kMr{{tags::kModality, "MR"},
                 {tags::kPhotometricInterpretation, "MONOCHROME2"},
                 {tags::kBitsStored, "12"},
                 {tags::kHighBit, "11"}};
const Values kCapture{
    {tags::kRows, "1024"},         {tags::kColumns, "1024"},
    {tags::kSamplesPerPixel, "1"}, {tags::kPhotometricInterpretation, "MONOCHROME2"},
    {tags::kBitsAllocated, "8"},   {tags::kBitsStored, "8"},
    {tags::kHighBit, "7"},         {tags::kPixelRepresentation, "0"}};
const Values kUltrasound{{tags::kPhotometricInterpretation, "RGB"}};

Values with(Values values, DcTag tag, const std::string& text) {
  std::erase_if(values, [tag](const auto& one) { return one.first == tag; });
  values.emplace_back(tag, text);
  return values;
}
Values without(Values values, DcTag tag) {
  std::erase_if(values, [tag](const auto& one) { return one.first == tag; });
  return values;
}

TEST(ProfileCheck, TellsTheRulesThatAnObjectBreaks) {
  const std::string xa = "4.1.1.12.1";
  const std::string mr = "4.1.1.4";
  const std::string sc = "4.1.1.7";
  const std::string us = "4.1.1.6.1";
  const std::vector<Case> cases{
      {"largest", "STD-XABC-CD", xa, kLossless, kXa, {}},
      {"one row more", "STD-XABC-CD", xa, kLossless, with(kXa, tags::kRows, "513"), {"Rows"}},
      {"no rows", "STD-XABC-CD", xa, kLossless, without(kXa, tags::kRows), {"Rows"}},
      {"padded", "STD-XABC-CD", xa, kLossless, with(kXa, tags::kModality, "XA "), {}},
      {"several", "STD-XABC-CD", xa, kPlain, with(kXa, tags::kModality, "RF"), {"Transfer", "Mod"}},
      {"lossy on CD", "STD-XA1K-CD", xa, kBaseline, kXa, {"Transfer"}},
      {"lossy on DVD", "STD-XA1K-DVD", xa, kBaseline, kXa, {}},
      {"a class that is not its own", "STD-XABC-CD", sc, kPlain, kCapture, {"SOP Class UID"}},
      {"last group of overlays",
       "STD-XA1K-CD",
       sc,
       kPlain,
       with(kCapture, 0x601E0010, "1"),
       {"Overlay Rows"}},
      {"the group behind it", "STD-XA1K-CD", sc, kPlain, with(kCapture, 0x60200010, "1"), {}},
      {"high bit", "STD-CTMR-CD", mr, kPlain, with(kMr, tags::kHighBit, "12"), {"High Bit"}},
      {"no bits stored",
       "STD-CTMR-CD",
       mr,
       kPlain,
       without(kMr, tags::kBitsStored),
       {"Bits Stored", "High Bit"}},
      {"of palettes only",
       "STD-CTMR-CD",
       sc,
       kPlain,
       with(kCapture, tags::kPhotometricInterpretation, "PALETTE COLOR"),
       {}},
      {"more bits than palettes have",
       "STD-CTMR-CD",
       sc,
       kPlain,
       with(with(kCapture, tags::kPhotometricInterpretation, "PALETTE COLOR"), tags::kBitsAllocated,
            "16"),
       {"Bits Allocated"}},
      {"stored in more bits",
       "STD-CTMR-CD",
       sc,
       kPlain,
       with(kCapture, tags::kBitsAllocated, "16"),
       {"Bits Stored"}},
      {"color and syntax", "STD-US-ID-SF-CDR", us, kBaseline, kUltrasound, {"Transfer"}},
      {"calibrated", "STD-US-SC-SF-CDR", us, kPlain, with(kUltrasound, kRegions, ""), {}},
      {"in space only",
       "STD-US-CC-SF-CDR",
       us,
       kPlain,
       with(kUltrasound, kRegions, ""),
       {"Sequence of"}},
      {"calibrated in all", "STD-US-CC-SF-CDR", us, kPlain, with(kUltrasound, kRegions, "0"), {}},
      {"several frames", "STD-US-ID-SF-CDR", "4.1.1.3.1", kPlain, kUltrasound, {"SOP Class UID"}},
      {"several frames", "STD-US-ID-MF-CDR", "4.1.1.3.1", kPlain, kUltrasound, {}},
      {"video of one image", "STD-GEN-BD-MPEG2-MPML", sc, kMpeg2, kCapture, {"Number of Frames"}},
      {"no video", "STD-GEN-BD-MPEG2-MPML", sc, kPlain, kCapture, {}},
      {"retired", "STD-GEN-CD", "4.1.1.6", kPlain, {}, {"SOP Class UID"}},
      {"of another field", "STD-GEN-MIME", "4.1.1.601.1", kPlain, {}, {"SOP Class UID"}},
      {"any syntax", "STD-GEN-ZIP-MAIL", mr, "1.2.3", {}, {}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.profile) + ": " + c.what);
    DcElemList elements;
    fill(elements, c.values);
    const std::string sopClass = "1.2.840.10008.5.1." + c.sopClass;
    const auto breaches =
        CheckObject(*FindProfile(c.profile), {sopClass, c.syntax, /*isKnownClass=*/true, elements});
    ASSERT_EQ(breaches.size(), c.rules.size());
    for (std::size_t i = 0; i < breaches.size(); ++i) {
      EXPECT_TRUE(breaches[i].rule.starts_with(c.rules[i])) << breaches[i].rule;
    }
  }
}

TEST(ProfileCheck, SaysWhatIsWantedAndWhatIsThere) {
  DcElemList elements;
  fill(elements, with(kXa, tags::kBitsStored, "16"));
  const auto breaches = CheckObject(*FindProfile("std-xa1k-dvd"),
                                    {"1.2.840.10008.5.1.4.1.1.12.1", kPlain, true, elements});
  ASSERT_EQ(breaches.size(), 2U);
  EXPECT_EQ(
      breaches[0].rule,
      "Transfer Syntax UID (0002,0010) must be JPEG Lossless, JPEG Baseline or JPEG Extended");
  EXPECT_EQ(breaches[0].found, "Explicit VR Little Endian");
  EXPECT_EQ(breaches[1].rule, "Bits Stored (0028,0101) must be 8, 10 or 12");
  EXPECT_EQ(breaches[1].found, "16");
}

TEST(ProfileCheck, AsksNothingOfElementsThatCannotBeRead) {
  const DcElemList none;
  const auto breaches =
      CheckObject(*FindProfile("STD-XA1K-CD"),
                  {"1.2.840.10008.5.1.4.1.1.12.1", "1.2.840.10008.1.2.1.99", true, none, false});
  ASSERT_EQ(breaches.size(), 1U);
  EXPECT_EQ(breaches[0].found, "1.2.840.10008.1.2.1.99");
}

// A profile whose elements are not kept would find nothing of any object.
TEST(ProfileTables, HoldTogether) {
  std::set<std::string_view> names;
  for (const Profile& profile : AllProfiles()) {
    SCOPED_TRACE(profile.name);
    EXPECT_TRUE(names.insert(profile.name).second);
    EXPECT_EQ(FindProfile(profile.name), &profile);
    const std::vector<DcTag> kept = ElementsOf(profile);
    for (const ProfileRule& rule : profile.rules) {
      const DcTag condition = rule.when.element.tag;
      const bool isOfMeta = condition == 0 || condition == tags::kTransferSyntaxUid;
      EXPECT_TRUE(isOfMeta || std::ranges::count(kept, condition) != 0);
      const bool isTaken = std::ranges::any_of(profile.rules, [&](const ProfileRule& other) {
        return other.element.tag == tags::kTransferSyntaxUid && other.sopClass == rule.sopClass;
      });
      EXPECT_TRUE(isTaken) << rule.element.name;
      EXPECT_EQ(rule.values.empty(),
                rule.test != ProfileTest::OneOf && rule.test != ProfileTest::AtMost);
    }
    EXPECT_FALSE(MediaText(profile).empty());
  }
}

}  // namespace
}  // namespace quillon
