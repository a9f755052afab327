// A host that keeps its objects: it asks again and again while discs come and go, sets speeds, and
// has more than one object for a drive.
#include <chrono>
#include <fstream>
#include <sstream>
#include <thread>

#include "recorder_fixture.h"
#include "recording/disc_recorders.h"

namespace quillon::test {
namespace {

using namespace std::chrono_literals;

class OpticalHosts : public RecorderTest {
 protected:
  OpticalHosts() : drives_("EMULATED_DRIVES", (dir_ / "drives").string()) {
    std::filesystem::create_directories(drive());
    writeText(drive() / "drive.txt", "speeds = 706 1411 2822 8467\n");
    writeText(dir_ / "registry.reg",
              "Windows Registry Editor Version 5.00\n\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Tarn "
              "Imaging\\Quillon\\DiscMastering]\n\"Service\"=\"drives\"\n");
  }
  void TearDown() override { EXPECT_TRUE(isClosedSoon()); }

  [[nodiscard]] std::filesystem::path drive() const { return dir_ / "drives" / "sr0"; }
  void insert(const char* media) const {
    writeText(drive() / "disc.txt",
              std::string("media = ") + media + "\nstate = blank\nserial = x\n");
  }
  [[nodiscard]] std::string log() const {
    std::ostringstream text;
    text << std::ifstream(drive() / "commands.log").rdbuf();
    return text.str();
  }
  [[nodiscard]] std::size_t count(std::string_view command) const {
    const std::string text = log();
    std::size_t found = 0;
    for (auto at = text.find(command); at != std::string::npos; at = text.find(command, at + 1)) {
      ++found;
    }
    return found;
  }
  // Until the drive is let go.
  [[nodiscard]] bool isClosedSoon() const {
    const auto end = std::chrono::steady_clock::now() + 10s;
    while (count("OPEN excl -> ok") != count("CLOSE excl")) {
      if (std::chrono::steady_clock::now() > end) return false;
      std::this_thread::sleep_for(20ms);
    }
    return true;
  }

 private:
  ScopedEnvironment drives_;
};

TEST_F(OpticalHosts, ADiscThatIsPutInWhileAHostAsksIsFound) {
  const Client client;
  EXPECT_EQ(client.status(), -1);
  insert("cd-r");
  const auto end = std::chrono::steady_clock::now() + 10s;
  while (client.status() != IMAPI_FORMAT2_DATA_MEDIA_STATE_BLANK) {
    ASSERT_LT(std::chrono::steady_clock::now(), end);
    std::this_thread::sleep_for(50ms);
  }
  EXPECT_TRUE(client.isUsable());
  EXPECT_LE(count("START STOP UNIT stop"), 3U) << "it is not opened for each question";
}

TEST_F(OpticalHosts, ADriveThatIsAskedAllTheTimeIsLetGoNowAndThen) {
  insert("cd-r");
  const Client client;
  const auto end = std::chrono::steady_clock::now() + 7s;
  while (std::chrono::steady_clock::now() < end) {
    EXPECT_TRUE(client.isUsable());
    std::this_thread::sleep_for(200ms);
  }
  EXPECT_GE(count("START STOP UNIT stop"), 1U);
  EXPECT_LE(count("START STOP UNIT stop"), 3U);
}

TEST_F(OpticalHosts, AStreamThatFailsAtOnceCostsNoDisc) {
  insert("cd-r");
  const Client client;
  PatternStream stream(400);
  stream.onRead = [](std::uint64_t) { return STG_E_READFAULT; };
  EXPECT_EQ(client.writeStream(stream), STG_E_READFAULT);
  EXPECT_EQ(count("SEND CUE SHEET") + count("WRITE 10"), 0U);
  EXPECT_EQ(client.status(), IMAPI_FORMAT2_DATA_MEDIA_STATE_BLANK);
}

TEST_F(OpticalHosts, SpeedsAreThoseOfTheDiscsKind) {
  insert("cd-r");
  Client client;
  LONG speed = 0;
  EXPECT_EQ(client.data->get_CurrentWriteSpeed(&speed), S_OK);
  EXPECT_EQ(speed, 3600) << "48 times 75";
  EXPECT_EQ(client.data->SetWriteSpeed(1200, VARIANT_FALSE), S_OK);
  EXPECT_EQ(client.write(400), S_OK) << errorDescription();
  EXPECT_NE(log().find("SET CD SPEED write 2822"), std::string::npos);
}

TEST_F(OpticalHosts, ObjectsForOneDriveExcludeEachOther) {
  insert("cd-r");
  Client client;
  const Client other;
  const Bstr name(u"Other client");
  const auto take = [&](const Client& who) {
    return who.recorder->AcquireExclusiveAccess(VARIANT_TRUE, name);
  };
  ASSERT_EQ(take(client), S_OK);
  EXPECT_EQ(take(other), E_IMAPI_RECORDER_LOCKED);
  EXPECT_EQ(other.status(), -1);
  EXPECT_EQ(client.status(), IMAPI_FORMAT2_DATA_MEDIA_STATE_BLANK);
  client = Client();  // an object that goes away gives back what it has
  EXPECT_EQ(take(other), S_OK);
  EXPECT_EQ(other.recorder->ReleaseExclusiveAccess(), S_OK);
  EXPECT_EQ(client.write(400), S_OK) << errorDescription();
  ASSERT_TRUE(isClosedSoon());
  EXPECT_LE(count("START STOP UNIT stop"), 2U) << "all of it with the drive opened once, or nearly";
  EXPECT_GT(log().rfind("PREVENT ALLOW allow"), log().rfind("PREVENT ALLOW prevent"));
}

}  // namespace
}  // namespace quillon::test
