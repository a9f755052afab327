// Several clients of one recorder, and processes that end in the middle.
#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <thread>

#include "recorder_fixture.h"

namespace quillon::test {
namespace {

constexpr LONG kBlank = 0x2;
constexpr LONG kAppendable = 0x4;
constexpr LONG kDamaged = 0x400;
constexpr LONG kEraseRequired = 0x800;
constexpr int kKilled = 1000 + SIGKILL;

class Clients : public RecorderTest {
 protected:
  static std::string owner() {
    platform::VirtualRecorderStatus status;
    static_cast<void>(platform::virtualRecorderStatus("one", status));  // of the disc nothing
    return status.client;
  }
};

// Two ends of a pipe: one process waits for the other.
class Signal {
 public:
  Signal() { EXPECT_EQ(::pipe(ends_.data()), 0); }
  Signal(const Signal&) = delete;
  Signal& operator=(const Signal&) = delete;
  ~Signal() {
    ::close(ends_[0]);
    closeSender();
  }
  void send() const { EXPECT_EQ(::write(ends_[1], "x", 1), 1); }
  // False when the other process ended without it: then nobody can send any more.
  [[nodiscard]] bool await() {
    closeSender();
    char byte = 0;
    return ::read(ends_[0], &byte, 1) == 1;
  }

 private:
  void closeSender() {
    if (ends_[1] >= 0) ::close(ends_[1]);
    ends_[1] = -1;
  }

  std::array<int, 2> ends_{};
};

TEST_F(Clients, ExcludeEachOther) {
  ASSERT_NO_FATAL_FAILURE(insertBlank("cd-r", 500));
  const Client first(u"First");
  Client second(u"Second");
  const Bstr name(u"First, version 1.0");
  EXPECT_EQ(owner(), "");
  EXPECT_EQ(first.recorder->AcquireExclusiveAccess(VARIANT_TRUE, name), S_OK);
  EXPECT_EQ(first.recorder->AcquireExclusiveAccess(VARIANT_FALSE, name), S_OK);
  for (const bool isReleasedOnce : {false, true}) {
    EXPECT_EQ(owner(), "First, version 1.0");
    // Force lets go of mounted file systems; it takes the drive from nobody.
    EXPECT_EQ(second.recorder->AcquireExclusiveAccess(VARIANT_TRUE, Bstr(u"Second")),
              E_IMAPI_RECORDER_LOCKED);
    LONG sectors = 0;
    EXPECT_EQ(second.data->get_FreeSectorsOnMedia(&sectors), E_IMAPI_RECORDER_LOCKED);
    VARIANT_BOOL isSupported = VARIANT_FALSE;
    EXPECT_EQ(second.data->IsCurrentMediaSupported(second.recorder.Get(), &isSupported),
              E_IMAPI_RECORDER_LOCKED);
    EXPECT_EQ(second.write(1), E_IMAPI_RECORDER_LOCKED);
    EXPECT_EQ(second.eraseDisc(false), E_IMAPI_RECORDER_LOCKED);
    EXPECT_EQ(second.recorder->EjectMedia(), E_IMAPI_RECORDER_LOCKED);
    std::string leftAt;
    EXPECT_EQ(platform::ejectVirtualDisc("one", leftAt).code, E_IMAPI_RECORDER_LOCKED);
    if (!isReleasedOnce) {
      EXPECT_EQ(first.recorder->ReleaseExclusiveAccess(), S_OK);
    }
  }
  EXPECT_EQ(first.recorder->ReleaseExclusiveAccess(), S_OK);
  EXPECT_EQ(first.recorder->ReleaseExclusiveAccess(), E_FAIL);
  EXPECT_EQ(owner(), "");
  EXPECT_EQ(second.write(1), S_OK);
  {
    const Client third(u"Third");
    EXPECT_EQ(third.recorder->AcquireExclusiveAccess(VARIANT_TRUE, name), S_OK);
  }
  EXPECT_EQ(second.recorder->EjectMedia(), S_OK) << "a client that is gone holds nothing";
}

TEST_F(Clients, NeedAName) {
  ASSERT_NO_FATAL_FAILURE(insertBlank("cd-rw", 500));
  const Client client;
  const std::u16string longest(63, u'x');
  for (const std::u16string& bad :
       {std::u16string(), longest + u'x', std::u16string(u"a/b"), std::u16string(u"na\u00EFve")}) {
    SCOPED_TRACE(bad.size());
    EXPECT_EQ(client.recorder->AcquireExclusiveAccess(VARIANT_TRUE, Bstr(bad)),
              E_IMAPI_RECORDER_CLIENT_NAME_IS_NOT_VALID);
    EXPECT_EQ(client.data->put_ClientName(Bstr(bad)), E_IMAPI_DF2DATA_CLIENT_NAME_IS_NOT_VALID);
    EXPECT_EQ(client.erase->put_ClientName(Bstr(bad)), E_IMAPI_ERASE_CLIENT_NAME_IS_NOT_VALID);
  }
  EXPECT_EQ(client.data->put_ClientName(Bstr(longest)), S_OK);
}

TEST_F(Clients, TheEraseFormatTakesOneRecorder) {
  const Client first;
  const Client second;
  EXPECT_EQ(first.erase->put_Recorder(first.recorder.Get()), S_OK);
  EXPECT_EQ(first.erase->put_Recorder(second.recorder.Get()),
            E_IMAPI_ERASE_ONLY_ONE_RECORDER_SUPPORTED);
  EXPECT_EQ(first.erase->put_Recorder(nullptr), S_OK);
  EXPECT_EQ(first.erase->EraseMedia(), E_IMAPI_RECORDER_REQUIRED);
  EXPECT_EQ(first.erase->put_Recorder(second.recorder.Get()), S_OK);
}

TEST_F(Clients, InAnotherProcessGetTheLockedAnswerWhileADiscIsWritten) {
  ASSERT_NO_FATAL_FAILURE(insertBlank("cd-r", 3000));
  Signal isWriting;
  Signal mayGoOn;
  const pid_t writer = startProcess([&] {
    const Client client(u"The writer");
    ComPtr<PatternStream> stream;
    stream.Attach(new PatternStream(2000));
    stream->onRead = [&](std::uint64_t position) {
      if (position == 1024 * kSector) {
        isWriting.send();
        if (!mayGoOn.await()) return E_ABORT;
      }
      return S_OK;
    };
    return client.writeStream(*stream) == S_OK ? 0 : 1;
  });
  ASSERT_TRUE(isWriting.await()) << endOf(writer);
  Client client;
  EXPECT_EQ(owner(), "The writer");
  EXPECT_EQ(client.write(10, 2), E_IMAPI_RECORDER_LOCKED);
  platform::VirtualRecorderStatus status;
  const platform::DiscResult result = platform::virtualRecorderStatus("one", status);
  EXPECT_EQ(result.code, E_IMAPI_RECORDER_LOCKED);
  EXPECT_EQ(narrow(result.text), "Another program is using the virtual recorder \"one\".");
  EXPECT_EQ(status.client, "The writer");
  mayGoOn.send();
  EXPECT_EQ(endOf(writer), 0);
  EXPECT_EQ(client.status(), kAppendable);
  EXPECT_TRUE(readBytes(file("disc.iso")) == patternBytes(2000, 1));
}

TEST_F(Clients, OfTwoProcessesThatWriteAtOnceOneWins) {
  for (int round = 0; round < 10; ++round) {
    ASSERT_NO_FATAL_FAILURE(insertBlank("cd-r", 3000));
    const auto writer = [](unsigned seed) {
      const HRESULT hr = Client().write(1500, seed);
      if (hr == S_OK) return 0;
      return hr == E_IMAPI_RECORDER_LOCKED || hr == E_IMAPI_DF2DATA_MEDIA_NOT_BLANK ? 1 : 2;
    };
    const pid_t one = startProcess([&] { return writer(1); });
    const pid_t two = startProcess([&] { return writer(2); });
    const int ofOne = endOf(one);
    const int ofTwo = endOf(two);
    EXPECT_EQ(ofOne + ofTwo, 1);
    EXPECT_TRUE(readBytes(file("disc.iso")) == patternBytes(1500, ofOne == 0 ? 1 : 2));
    EXPECT_EQ(Client().status(), kAppendable);
  }
}

TEST_F(Clients, KilledInTheMiddleOfWritingLeaveNoGoodDisc) {
  const struct {
    std::uint64_t killedAtSector;  // when that is about to be read
    LONG status;
  } kCases[] = {{0, kBlank}, {512, kDamaged}, {1024, kDamaged}, {1536, kDamaged}};
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.killedAtSector);
    ASSERT_NO_FATAL_FAILURE(insertBlank("cd-r", 3000));
    EXPECT_EQ(inProcess([&] {
                ComPtr<PatternStream> stream;
                stream.Attach(new PatternStream(2000));
                stream->onRead = [&](std::uint64_t position) {
                  if (position >= c.killedAtSector * kSector) ::raise(SIGKILL);
                  return S_OK;
                };
                return Client().writeStream(*stream) == S_OK ? 0 : 1;
              }),
              kKilled);
    Client client;
    EXPECT_EQ(client.status(), c.status);
    EXPECT_EQ(owner(), "");
    EXPECT_EQ(client.write(10), c.status == kBlank ? S_OK : E_IMAPI_DF2DATA_INVALID_MEDIA_STATE);
  }
}

TEST_F(Clients, KilledAtTheEndsOfAStageLeaveNoGoodDisc) {
  const struct {
    const char* what;
    platform::DiscStage stage;
    bool atEnd;
    bool erases;
    bool full;
  } kCases[] = {
      {"writing begins", platform::DiscStage::Writing, false, false, false},
      {"all is written", platform::DiscStage::Writing, true, false, false},
      {"closing begins", platform::DiscStage::Closing, false, false, false},
      {"quick erasing begins", platform::DiscStage::Erasing, false, true, false},
      {"quick erasing ends", platform::DiscStage::Erasing, true, true, false},
      {"full erasing begins", platform::DiscStage::Erasing, false, true, true},
      {"full erasing ends", platform::DiscStage::Erasing, true, true, true},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    ASSERT_NO_FATAL_FAILURE(insertBlank("cd-rw", 3000));
    Client client;
    if (c.erases) {
      ASSERT_EQ(client.write(2000), S_OK);
    }
    EXPECT_EQ(inProcess([&] {
                platform::SetDiscProgress([&](const platform::DiscProgress& p) {
                  const bool isThere = c.atEnd
                                           ? p.sectorsDone > 0 && p.sectorsDone == p.sectorsTotal
                                           : p.sectorsDone == 0;
                  if (p.stage == c.stage && isThere) ::raise(SIGKILL);
                });
                Client killed;
                return (c.erases ? killed.eraseDisc(c.full) : killed.write(2000)) == S_OK ? 0 : 1;
              }),
              kKilled);
    EXPECT_EQ(client.status(), kDamaged | kEraseRequired);
    EXPECT_FALSE(client.isUsable());
    EXPECT_EQ(client.eraseDisc(true), S_OK) << "a rewritable disc comes back";
    EXPECT_EQ(client.write(2000, 4), S_OK);
    EXPECT_TRUE(readBytes(file("disc.iso")) == patternBytes(2000, 4));
  }
}

TEST_F(Clients, KilledAtAnyTimeLeaveABlankADamagedOrAWholeDisc) {
  using Clock = std::chrono::steady_clock;
  constexpr int kKills = 24;
  constexpr std::uint64_t kSectors = 8000;
  int inTheMiddle = 0;
  Clock::duration whole{};
  for (int i = 0; i <= kKills; ++i) {
    ASSERT_NO_FATAL_FAILURE(insertBlank("cd-r", kSectors));
    Signal isReady;
    const pid_t writer = startProcess([&] {
      Client client;
      isReady.send();
      return client.write(kSectors) == S_OK ? 0 : 1;
    });
    ASSERT_TRUE(isReady.await()) << endOf(writer);
    const Clock::time_point start = Clock::now();
    // The first one shows how long a write takes, over which the kills are spread.
    if (i > 0) {
      std::this_thread::sleep_for(whole * i / kKills);
      ::kill(writer, SIGKILL);
    }
    static_cast<void>(endOf(writer));
    if (i == 0) whole = Clock::now() - start;
    const Client client;
    const LONG status = client.status();
    if (status == kAppendable) {
      EXPECT_TRUE(readBytes(file("disc.iso")) == patternBytes(kSectors, 1));
    } else if (status == kDamaged) {
      ++inTheMiddle;
    } else {
      EXPECT_EQ(status, kBlank);
      EXPECT_TRUE(client.isUsable());
    }
  }
  // On a busy machine the writes take any time; the test of the stages' ends kills at fixed points.
  if (inTheMiddle == 0) GTEST_SKIP() << "no kill came in the middle";
}

}  // namespace
}  // namespace quillon::test
