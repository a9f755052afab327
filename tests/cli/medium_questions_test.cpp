#include "medium_questions.h"

#include <gtest/gtest.h>

#include "disc_kinds.h"
#include "recording/virtual_discs.h"
#include "support/temp_dir.h"

namespace quillon::cli {
namespace {

using platform::DiscRecorderStatus;

// A burner with that disc in it; what is erased by those who write has room for all of it.
DiscRecorderStatus holding(const std::string& media, const std::string& state) {
  DiscRecorderStatus status;
  status.name = "/dev/sr0";
  status.writableMedia = {"cd-r", "cd-rw", "dvd-r", "dvd-ram", "dvd+r-dl"};
  status.hasDisc = true;
  status.media = media;
  status.state = state;
  status.usableSectors = state == "blank" || media == "cd-rw" ? 359849 : 0;
  return status;
}

DiscRecorderStatus with(DiscRecorderStatus status, void (*change)(DiscRecorderStatus&)) {
  change(status);
  return status;
}

TEST(MediumQuestions, EachDiscThatIsNotWrittenHasItsSentence) {
  const std::string kinds = "CD-R, CD-RW, DVD-R, DVD-RAM, DVD+R DL.";
  struct Case {
    DiscRecorderStatus recorder;
    std::string sentence;  // empty: it will be written
  };
  const Case cases[] = {
      {holding("cd-r", "blank"), ""},
      {holding("cd-rw", "finalised"), ""},
      {holding("cd-r", "appendable"),
       "The CD-R in /dev/sr0 holds data already: put a blank disc in."},
      {holding("cd-r", "damaged"), "The CD-R in /dev/sr0 is damaged: put a blank disc in."},
      {with(holding("dvd-ram", "appendable"), [](auto& s) { s.isErasable = true; }),
       "The DVD-RAM in /dev/sr0 holds data already: put a blank disc in, or make this one blank "
       "with "
       "quillon disc erase."},
      {with(holding("cd-rw", "finalised"),
            [](auto& s) {
              s.isErasable = s.isProtected = true;
              s.usableSectors = 0;
            }),
       "The CD-RW in /dev/sr0 is write-protected: put another one in."},
      {with(holding("dvd-rom", "finalised"), [](auto& s) { s.isProtected = true; }),
       "The DVD-ROM in /dev/sr0 is of a kind that is not written there: put in a blank one of " +
           kinds},
      {holding("hd-dvd", "finalised"),
       "The disc in /dev/sr0 is of a kind that is not written there: put in a blank one of " +
           kinds},
      {with(holding("cd-r", "blank"), [](auto& s) { s.usableSectors = 0; }),
       "The CD-R in /dev/sr0 cannot be written: put another one in."},
      {with(holding("cd-r", "blank"), [](auto& s) { s.hasDisc = false; }),
       "There is no disc in /dev/sr0: put a blank disc in."},
      {with(holding("cd-r", "blank"), [](auto& s) { s.writableMedia.clear(); }),
       "The recorder /dev/sr0 only reads discs: quillon disc list shows which others there are."},
      {with(holding("cd-r", "blank"), [](auto& s) { s.client = "Other Burner"; }),
       "The recorder /dev/sr0 is in use by Other Burner: wait until that has ended."},
      {with(holding("", ""), [](auto& s) { s.problem = "Nobody knows."; }), "Nobody knows."},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.recorder.media + ", " + c.recorder.state + ": " + c.sentence);
    EXPECT_EQ(mayRecord(c.recorder).text(), c.sentence);
  }
}

TEST(MediumQuestions, AFileSetThatDoesNotFitIsToldByHowMuch) {
  const auto needs = [](std::uint64_t sectors) {
    return mayFit(holding("cd-r", "blank"), sectors).text();
  };
  EXPECT_EQ(needs(359849), "");
  EXPECT_EQ(needs(359850),
            "The file set needs 703 MB and the CD-R in /dev/sr0 has 702 MB: put in a larger disc, "
            "such as a DVD-RAM, or fewer studies on it.");
  EXPECT_EQ(needs(3'000'000),
            "The file set needs 5860 MB and the CD-R in /dev/sr0 has 702 MB: put in a larger disc, "
            "such as a DVD+R DL, or fewer studies on it.");
  EXPECT_EQ(needs(5'000'000),
            "The file set needs 9766 MB and the CD-R in /dev/sr0 has 702 MB: put fewer studies on "
            "it.");
}

// What is said to fit a kind must go onto a blank disc of it.
TEST(DiscKinds, HaveTheRoomOfBlankDiscs) {
  const test::TempDir dir;
  ASSERT_EQ(setenv("QUILLON_RECORDERS", dir.path().c_str(), 1), 0);
  for (const std::string_view keyword : platform::virtualMediaNames()) {
    SCOPED_TRACE(keyword);
    const std::string name = "with " + std::string(keyword);
    platform::DiscToInsert disc;
    disc.media = keyword;
    ASSERT_FALSE(platform::createVirtualRecorder(name).failed());
    if (platform::insertVirtualDisc(name, disc).failed()) {  // pressed
      EXPECT_EQ(discName(keyword), "CD-ROM");
      continue;
    }
    platform::VirtualRecorderStatus status;
    ASSERT_FALSE(platform::virtualRecorderStatus(name, status).failed());
    const auto fits = [&](std::uint64_t sectors) {
      const auto kinds = kindsThatHold(sectors);
      return std::find(kinds.begin(), kinds.end(), keyword) != kinds.end();
    };
    EXPECT_TRUE(fits(status.capacitySectors));
    EXPECT_FALSE(fits(status.capacitySectors + 1));
  }
  unsetenv("QUILLON_RECORDERS");
}

TEST(DiscKinds, OfOneSizeStandTogether) {
  EXPECT_EQ(textOfKindsThatHold(4'173'000),
            "DVD+R DL, DVD+RW DL (8152 MB); BD-RE (23098 MB); BD-R (23866 MB)");
  EXPECT_EQ(textOfKindsThatHold(20'000'000), "");
}

}  // namespace
}  // namespace quillon::cli
