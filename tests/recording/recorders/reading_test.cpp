// Reading the disc in a virtual recorder: what comes back, and what is said when it cannot be had.
#include "recorder_fixture.h"
#include "recording/disc_reader.h"

namespace quillon::test {
namespace {

using platform::DiscReader;
using platform::DiscResult;

class Reading : public RecorderTest {
 protected:
  // The disc in "one", or the sentence that says why not.
  std::string open(const std::string& name = "one") {
    disc_.reset();
    return narrow(platform::openDisc(name, disc_).text);
  }
  [[nodiscard]] std::string read(std::uint64_t offset, std::size_t count) {
    bytes_.assign(count, 0xEE);
    return disc_->readAt(offset, bytes_.data(), count) ? "" : narrow(disc_->failure().text);
  }

  std::unique_ptr<DiscReader> disc_;
  std::vector<std::uint8_t> bytes_;
};

TEST_F(Reading, GivesEachByteWhereverItLies) {
  ASSERT_NO_FATAL_FAILURE(insertBlank("cd-r", 3000));
  ASSERT_EQ(Client().write(1500, 3), S_OK);
  const std::vector<std::uint8_t> written = patternBytes(1500, 3);
  ASSERT_EQ(open(), "");
  EXPECT_EQ(disc_->recorder(), "one");
  ASSERT_EQ(disc_->sizeBytes(), written.size());
  const struct {
    std::uint64_t offset;
    std::size_t count;
  } kRanges[] = {
      {0, 1},
      {0, 2048},
      {2047, 2},
      {2047, 4097},
      {2048 * 7 + 5, 2043},
      {5, 1 << 20},
      {0, 1500 * 2048},
      {2048 * 1499, 2048},
      {2048 * 1500 - 1, 1},
      {77, 0},
      {2048 * 1500, 0},
  };
  for (const auto& range : kRanges) {
    SCOPED_TRACE(std::to_string(range.offset) + " +" + std::to_string(range.count));
    EXPECT_EQ(read(range.offset, range.count), "");
    EXPECT_TRUE(std::equal(bytes_.begin(), bytes_.end(),
                           written.begin() + static_cast<std::ptrdiff_t>(range.offset)));
  }
  const std::string beyond = "The disc in the recorder \"one\" ends before what is to be read.";
  EXPECT_EQ(read(2048 * 1500 - 1, 2), beyond);
  EXPECT_EQ(read(UINT64_MAX, 2), beyond);
}

TEST_F(Reading, ADiscThatHoldsNothingIsRefusedWithTheReason) {
  ASSERT_NO_FATAL_FAILURE(insertBlank("cd-rw", 3000));
  const std::string blank = "The disc in the recorder \"one\" is blank.";
  EXPECT_EQ(open(), blank);
  Client client;
  ASSERT_EQ(client.write(700), S_OK);
  ASSERT_EQ(client.eraseDisc(false), S_OK);
  EXPECT_EQ(open(), blank) << "what is left of it is no contents";
  EXPECT_EQ(open(""), blank);
  EXPECT_EQ(open("two"), "There is no recorder \"two\".");
  std::string leftAt;
  ASSERT_EQ(platform::ejectVirtualDisc("one", leftAt).code, S_OK);
  EXPECT_EQ(open(), "There is no disc in the recorder \"one\".");
  ASSERT_NO_FATAL_FAILURE(insertImage("cd-rom", 40));
  plan("ready-after 1");
  std::unique_ptr<DiscReader> disc;
  EXPECT_EQ(platform::openDisc("one", disc).code, E_IMAPI_RECORDER_MEDIA_BECOMING_READY);
  EXPECT_EQ(open(), "") << "a pressed disc is read";
}

TEST_F(Reading, WithoutANameTheRecorderWithAWrittenDiscIsMeant) {
  ASSERT_NO_FATAL_FAILURE(insertBlank("cd-r", 3000));
  ASSERT_EQ(platform::createVirtualRecorder("second").code, S_OK);
  EXPECT_EQ(open(""), "The disc in the recorder \"one\" is blank.");
  writeBytes(dir_ / "other.iso", patternBytes(20, 9));
  platform::DiscToInsert disc;
  disc.image = (dir_ / "other.iso").string();
  ASSERT_EQ(platform::insertVirtualDisc("second", disc).code, S_OK);
  ASSERT_EQ(open(""), "");
  EXPECT_EQ(disc_->recorder(), "second");
  disc_.reset();
  // The disc that is meant may be the one that another client has.
  const Client client;
  ASSERT_EQ(client.recorder->AcquireExclusiveAccess(VARIANT_TRUE, Bstr(u"Other")), S_OK);
  EXPECT_EQ(open(""), "Another program is using the recorder \"one\".");
}

TEST_F(Reading, KeepsOtherClientsOutUntilItIsOver) {
  ASSERT_NO_FATAL_FAILURE(insertBlank("cd-rw", 3000));
  Client client;
  ASSERT_EQ(client.write(100), S_OK);
  ASSERT_EQ(open(), "");
  EXPECT_EQ(client.eraseDisc(false), E_IMAPI_RECORDER_LOCKED);
  std::unique_ptr<DiscReader> second;
  const DiscResult refused = platform::openDisc("one", second);
  EXPECT_EQ(refused.code, E_IMAPI_RECORDER_LOCKED);
  EXPECT_EQ(narrow(refused.text), "Another program is using the recorder \"one\".");
  disc_.reset();
  EXPECT_EQ(client.eraseDisc(false), S_OK);
}

TEST_F(Reading, AFaultIsToldWithItsSectorAndLeavesTheOthersReadable) {
  ASSERT_NO_FATAL_FAILURE(insertImage("cd-r", 1000));
  const std::vector<std::uint8_t> written = patternBytes(1000, 9);
  const std::string sentence = "The virtual recorder \"one\" cannot read sector 700 of its disc.";
  plan("read-fails-at 700 0xC0AA0207");
  ASSERT_EQ(open(), "");
  EXPECT_EQ(read(0, 1000 * 2048), sentence);
  EXPECT_EQ(disc_->failure().code, E_IMAPI_RECORDER_MEDIA_BUSY);
  EXPECT_EQ(read(700 * 2048 + 9, 1), sentence);
  EXPECT_EQ(read(701 * 2048, 299 * 2048), "");
  EXPECT_EQ(read(699 * 2048, 2048), "");
  plan("read-changes-at 700");
  ASSERT_EQ(open(), "");
  EXPECT_EQ(read(0, 1000 * 2048), "");
  const auto changed = std::mismatch(bytes_.begin(), bytes_.end(), written.begin());
  EXPECT_EQ(changed.first - bytes_.begin(), 700 * 2048);
  EXPECT_TRUE(std::equal(changed.first + 1, bytes_.end(), changed.second + 1));
}

}  // namespace
}  // namespace quillon::test
