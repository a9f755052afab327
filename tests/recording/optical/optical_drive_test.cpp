// The path through the library for drives and libburn, on a file that libburn treats as a drive
// with a disc that can be overwritten.
#include <sys/resource.h>

#include <csignal>
#include <fstream>

#include "recorder_fixture.h"
#include "recording/disc_reader.h"
#include "recording/disc_recorders.h"

namespace quillon::test {
namespace {

namespace fs = std::filesystem;

class OpticalDrive : public RecorderTest {
 protected:
  OpticalDrive() { choose("stdio:" + disc().string()); }

  [[nodiscard]] fs::path disc() const { return dir_ / "disc.img"; }
  void choose(const std::string& drives) const {
    writeText(dir_ / "registry.reg",
              "Windows Registry Editor Version 5.00\n\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Tarn "
              "Imaging\\Quillon\\DiscMastering]\n\"Service\"=\"drives\"\n\"Drives\"=\"" +
                  drives + "\"\n");
  }
  // What the disc holds; of a file that is longer only the beginning.
  [[nodiscard]] std::vector<std::uint8_t> content(std::uint64_t sectors) const {
    std::vector<std::uint8_t> bytes = readBytes(disc());
    bytes.resize(std::min<std::size_t>(bytes.size(), sectors * kSector));
    return bytes;
  }
};

TEST_F(OpticalDrive, TheVersionOfLibburnIsTold) {
  EXPECT_EQ(platform::opticalLibraryVersion(), LIBBURN_VERSION);
}

TEST_F(OpticalDrive, IsListedWithWhatItIs) {
  choose("stdio:" + disc().string() + ";stdio:" + (dir_ / "other.img").string());
  std::vector<platform::DiscRecorderStatus> recorders;
  ASSERT_EQ(platform::listDiscRecorders(recorders).code, S_OK);
  ASSERT_EQ(recorders.size(), 2U);
  EXPECT_EQ(recorders[0].name, "stdio:" + disc().string());
  EXPECT_EQ(recorders[1].device, "Quillon Image File (Revision: 1.0)");
  EXPECT_FALSE(recorders[0].isVirtual);
  EXPECT_EQ(recorders[0].media + ", " + recorders[0].state, "dvd+rw, blank");
  EXPECT_GT(recorders[0].freeSectors, 10000U);
}

TEST_F(OpticalDrive, WhatIsWrittenIsOnTheDiscAndStaysUntilItIsErased) {
  Client client;
  EXPECT_EQ(client.status(), 0x3);  // blank, can be overwritten
  EXPECT_TRUE(client.isUsable());
  // Fewer sectors than are kept back for last, as many, and more.
  for (const std::uint64_t sectors : {std::uint64_t{20}, std::uint64_t{32}, std::uint64_t{3000}}) {
    SCOPED_TRACE(sectors);
    EXPECT_EQ(client.write(sectors, 5), S_OK) << errorDescription();
    EXPECT_TRUE(content(sectors) == patternBytes(sectors, 5));
    EXPECT_EQ(client.status(), 0x1);
    EXPECT_EQ(client.write(sectors, 6), E_IMAPI_DF2DATA_MEDIA_NOT_BLANK);
    EXPECT_TRUE(content(sectors) == patternBytes(sectors, 5));
    EXPECT_EQ(client.eraseDisc(false), S_OK);
  }
}

// The drive stays open between the two, and the disc has grown meanwhile.
TEST_F(OpticalDrive, WhatHasJustBeenWrittenIsReadFromTheDisc) {
  Client client;
  for (const std::uint64_t sectors : {std::uint64_t{40}, std::uint64_t{3000}}) {
    SCOPED_TRACE(sectors);
    ASSERT_EQ(client.write(sectors, 5), S_OK);
    std::unique_ptr<platform::DiscReader> disc;
    const platform::DiscResult opened = platform::openDisc("", disc);
    ASSERT_EQ(opened.code, S_OK) << narrow(opened.text);
    ASSERT_GE(disc->sizeBytes(), sectors * kSector);
    std::vector<std::uint8_t> bytes(sectors * kSector);
    EXPECT_TRUE(disc->readAt(0, bytes.data(), bytes.size())) << narrow(disc->failure().text);
    EXPECT_TRUE(bytes == patternBytes(sectors, 5));
    EXPECT_EQ(client.write(sectors, 6), E_IMAPI_RECORDER_LOCKED);
    disc.reset();
    ASSERT_EQ(client.eraseDisc(false), S_OK);
  }
}

TEST_F(OpticalDrive, ErasingOverwritesTheBeginningOrAll) {
  Client client;
  for (const bool isFull : {false, true}) {
    SCOPED_TRACE(isFull);
    ASSERT_EQ(client.write(2000, 9), S_OK);
    ASSERT_EQ(client.eraseDisc(isFull), S_OK);
    std::vector<std::uint8_t> expected =
        isFull ? std::vector<std::uint8_t>(2000 * kSector) : patternBytes(2000, 9);
    std::fill_n(expected.begin(), 512 * kSector, std::uint8_t{0});
    EXPECT_TRUE(content(2000) == expected);
    EXPECT_TRUE(client.isBlank(false));
  }
}

TEST_F(OpticalDrive, AWritingThatFailsLeavesADiscWithoutAFileSystem) {
  Client client;
  for (const std::uint64_t failAt : {std::uint64_t{0}, 2000 * kSector}) {
    SCOPED_TRACE(failAt);
    ComPtr<PatternStream> stream;
    stream.Attach(new PatternStream(4000));
    stream->onRead = [&](std::uint64_t position) {
      return position < failAt ? S_OK : E_ACCESSDENIED;
    };
    EXPECT_EQ(client.writeStream(*stream), E_ACCESSDENIED);
    EXPECT_TRUE(client.isBlank(false));
    EXPECT_EQ(client.write(100), S_OK);
    EXPECT_EQ(client.eraseDisc(true), S_OK);
  }
}

TEST_F(OpticalDrive, AProcessThatIsKilledLeavesADiscWithoutAFileSystem) {
  const int end = inProcess([] {
    Client client;
    ComPtr<PatternStream> stream;
    stream.Attach(new PatternStream(8000));
    stream->onRead = [](std::uint64_t position) -> HRESULT {
      if (position >= 7000 * kSector) ::raise(SIGKILL);
      return S_OK;
    };
    return client.writeStream(*stream) == S_OK ? 1 : 2;
  });
  EXPECT_EQ(end, 1000 + SIGKILL);
  Client client;
  EXPECT_TRUE(client.isBlank(false));
  EXPECT_EQ(client.write(100), S_OK);
}

// All of the image is on its way before the disc refuses some of it.
TEST_F(OpticalDrive, ADiscThatDoesNotTakeTheWholeImageHasFailed) {
  const int end = inProcess([] {
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{200 * kSector, 200 * kSector};
    ::setrlimit(RLIMIT_FSIZE, &limit);
    return Client().write(300) == E_IMAPI_UNEXPECTED_RESPONSE_FROM_DEVICE ? 7 : 1;
  });
  EXPECT_EQ(end, 7);
  EXPECT_TRUE(Client().isBlank(false));
}

TEST_F(OpticalDrive, ClientsExcludeEachOther) {
  Client first;
  Client second;
  ASSERT_EQ(first.recorder->AcquireExclusiveAccess(VARIANT_TRUE, Bstr(u"The first")), S_OK);
  EXPECT_EQ(second.write(100), E_IMAPI_RECORDER_LOCKED);
  EXPECT_EQ(second.status(), -1);
  platform::DiscRecorderStatus status;
  EXPECT_EQ(platform::describeDiscRecorder("", status).code, S_OK);
  EXPECT_EQ(status.client, "The first");
  EXPECT_EQ(inProcess([] { return Client().write(100) == E_IMAPI_RECORDER_LOCKED ? 7 : 1; }), 7);
  EXPECT_EQ(first.write(100), S_OK);
  EXPECT_EQ(first.recorder->ReleaseExclusiveAccess(), S_OK);
  EXPECT_EQ(second.status(), 0x1);
}

TEST_F(OpticalDrive, ProgressReachesTheEnd) {
  std::vector<platform::DiscProgress> reports;
  platform::SetDiscProgress(
      [&](const platform::DiscProgress& progress) { reports.push_back(progress); });
  Client client;
  ASSERT_EQ(client.write(3000), S_OK);
  ASSERT_FALSE(reports.empty());
  std::uint64_t furthest = 0;
  for (const platform::DiscProgress& report : reports) {
    if (report.stage != platform::DiscStage::Writing) continue;
    EXPECT_GE(report.sectorsDone, furthest);
    furthest = report.sectorsDone;
  }
  EXPECT_EQ(furthest, 3000U);
}

TEST_F(OpticalDrive, TheLibrarysReasonIsInTheErrorTextAndNowhereElse) {
  choose("stdio:" + (dir_ / "missing/disc.img").string());
  testing::internal::CaptureStderr();
  {
    Client client;
    EXPECT_TRUE(FAILED(client.write(100)));
    const std::string reason = errorDescription();
    EXPECT_EQ(
        reason.find("The drive \"stdio:" + (dir_ / "missing/disc.img").string() + "\" failed: "),
        0U)
        << reason;
  }
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

}  // namespace
}  // namespace quillon::test
