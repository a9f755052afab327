// Drives that misbehave, streams that fail, and what is left of the disc.
#include "recorder_fixture.h"

namespace quillon::test {
namespace {

constexpr LONG kBlank = 0x2;
constexpr LONG kDamaged = 0x400;
constexpr HRESULT kNotReady = E_IMAPI_RECORDER_MEDIA_BECOMING_READY;
constexpr HRESULT kBusy = E_IMAPI_RECORDER_MEDIA_BUSY;

class Faults : public RecorderTest {};

TEST_F(Faults, AnswerInThePlaceOfTheNamedOperation) {
  using Operation = HRESULT (*)(const Client&);
  const Operation free = [](const Client& c) {
    LONG sectors = 0;
    return c.data->get_FreeSectorsOnMedia(&sectors);
  };
  const Operation usable = [](const Client& c) {
    VARIANT_BOOL value = 0;
    return c.data->IsCurrentMediaSupported(c.recorder.Get(), &value);
  };
  const Operation eraser = [](const Client& c) {
    VARIANT_BOOL value = 0;
    return c.erase->IsRecorderSupported(c.recorder.Get(), &value);
  };
  const Operation writer = [](const Client& c) {
    VARIANT_BOOL value = 0;
    return c.data->IsRecorderSupported(c.recorder.Get(), &value);
  };
  const Operation eject = [](const Client& c) { return c.recorder->EjectMedia(); };
  const Operation acquire = [](const Client& c) {
    const HRESULT hr = c.recorder->AcquireExclusiveAccess(VARIANT_TRUE, Bstr(u"Test"));
    if (hr == S_OK) c.recorder->ReleaseExclusiveAccess();
    return hr;
  };
  const Operation speed = [](const Client& c) { return c.data->SetWriteSpeed(-1, VARIANT_FALSE); };
  const struct {
    const char* plan;
    Operation operation;
    std::vector<HRESULT> answers;
  } kCases[] = {
      {"# nothing\n\n", free, {S_OK}},
      {"ready-after 2\n", free, {kNotReady, kNotReady, S_OK}},
      {"ready-after 1\n", usable, {kNotReady, S_OK}},
      {"ready-after 9\n", eraser, {S_OK}},
      {"answer get_FreeSectorsOnMedia 0xC0AA0207 once", free, {kBusy, S_OK}},
      {"answer get_FreeSectorsOnMedia 0xC0AA0207 2", free, {kBusy, kBusy, S_OK}},
      {"answer EjectMedia 0xC0AA0202", eject, {E_IMAPI_RECORDER_MEDIA_NO_MEDIA}},
      {"answer EjectMedia 0x80070005 always", eject, {E_ACCESSDENIED, E_ACCESSDENIED}},
      {"answer AcquireExclusiveAccess 0xC0AA0210 1", acquire, {E_IMAPI_RECORDER_LOCKED, S_OK}},
      {"answer SetWriteSpeed 0x00AA0004", speed, {S_IMAPI_SPEEDADJUSTED}},
      {"answer IDiscFormat2Erase::IsRecorderSupported 0x80004005", eraser, {E_FAIL}},
      {"answer IDiscFormat2Erase::IsRecorderSupported 0x80004005", writer, {S_OK}},
      {"answer IsRecorderSupported 0xC0AA0205 1", writer, {kNotReady, S_OK}},
  };
  ASSERT_NO_FATAL_FAILURE(insertBlank("cd-r", 500));
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.plan);
    plan(c.plan);
    const Client client;
    for (const HRESULT answer : c.answers) EXPECT_EQ(c.operation(client), answer);
    std::filesystem::remove(file("faults.txt"));
  }
}

TEST_F(Faults, APlanThatIsNotUnderstoodFailsEverything) {
  const Client client;
  BSTR identifier = nullptr;
  ASSERT_EQ(client.recorder->get_ActiveDiscRecorder(&identifier), S_OK);
  for (const char* bad : {"\nready-after\n", "\nready-after x", "\nanswer Write 5\n",
                          "\nanswer Write 0xC0AA0301 twice", "\nwrite-pulled-at 3 0x80004005",
                          "\nwrite-fails-at\n", "\nexplode\n"}) {
    SCOPED_TRACE(bad);
    plan(bad);
    EXPECT_EQ(client.recorder->InitializeDiscRecorder(identifier), E_INVALIDARG);
    EXPECT_EQ(errorDescription(), "Line 2 of the recorder's fault plan is not understood.");
  }
  SysFreeString(identifier);
}

TEST_F(Faults, InTheMiddleOfWritingLeaveADamagedDisc) {
  const struct {
    const char* plan;
    HRESULT result;
    std::uint64_t sectorsLeft;
    bool isPulled;
  } kCases[] = {
      {"write-fails-at 0", E_IMAPI_UNEXPECTED_RESPONSE_FROM_DEVICE, 0, false},
      {"write-fails-at 700", E_IMAPI_UNEXPECTED_RESPONSE_FROM_DEVICE, 700, false},
      {"write-fails-at 1999 0xC0AA0300", E_IMAPI_LOSS_OF_STREAMING, 1999, false},
      {"write-fails-at 2000", S_OK, 2000, false},
      {"write-pulled-at 700", E_IMAPI_RECORDER_MEDIA_NO_MEDIA, 700, true},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.plan);
    std::filesystem::remove(file("faults.txt"));
    ASSERT_NO_FATAL_FAILURE(insertBlank("cd-r", 3000));
    std::filesystem::remove_all(file("ejected"));
    plan(c.plan);
    Client client;
    EXPECT_EQ(client.write(2000), c.result);
    if (c.isPulled) {
      EXPECT_EQ(client.status(), -1);
      std::vector<std::string> left;
      for (const auto& entry : std::filesystem::directory_iterator(file("ejected"))) {
        left.push_back(entry.path().extension().string());
      }
      std::sort(left.begin(), left.end());
      EXPECT_EQ(left, (std::vector<std::string>{".damaged", ".txt"})) << "nothing that looks good";
    } else {
      EXPECT_TRUE(readBytes(file("disc.iso")) == patternBytes(c.sectorsLeft, 1));
      EXPECT_EQ(client.isUsable(), c.result == S_OK);
      if (c.result != S_OK) {
        EXPECT_EQ(client.status(), kDamaged);
        EXPECT_EQ(client.write(1), E_IMAPI_DF2DATA_INVALID_MEDIA_STATE);
      }
    }
  }
}

TEST_F(Faults, InTheMiddleOfErasingLeaveADamagedDisc) {
  const struct {
    const char* plan;
    bool full;
    HRESULT result;
    const char* state;
  } kCases[] = {
      {"erase-fails-at 0", false, E_IMAPI_ERASE_DRIVE_FAILED_ERASE_COMMAND, "damaged"},
      {"erase-fails-at 1900 0x80AA0907", true, E_IMAPI_ERASE_UNEXPECTED_DRIVE_RESPONSE_DURING_ERASE,
       "damaged"},
      {"erase-fails-at 1900", false, S_OK, "erased"},
      {"erase-pulled-at 3", false, E_IMAPI_RECORDER_MEDIA_NO_MEDIA, ""},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.plan);
    std::filesystem::remove(file("faults.txt"));
    ASSERT_NO_FATAL_FAILURE(insertBlank("cd-rw", 3000));
    Client client;
    ASSERT_EQ(client.write(2000), S_OK);
    plan(c.plan);
    EXPECT_EQ(Client().eraseDisc(c.full), c.result);
    EXPECT_EQ(discStatus().state, c.state);
    std::filesystem::remove(file("faults.txt"));
    if (discStatus().state == "damaged") {
      EXPECT_FALSE(client.isUsable());
      EXPECT_EQ(client.eraseDisc(true), S_OK);
      EXPECT_EQ(client.status(), kBlank);
    }
  }
}

TEST_F(Faults, OfTheStreamCostTheDiscOnlyOnceWritingHasBegun) {
  const struct {
    const char* what;
    std::uint64_t failsAtSector;  // reading from there on fails
    std::uint64_t toldBytes;
    HRESULT result;
    LONG status;
  } kCases[] = {
      {"fails at once", 0, 2000 * kSector, STG_E_ACCESSDENIED, kBlank},
      {"fails in the middle", 600, 2000 * kSector, STG_E_ACCESSDENIED, kDamaged},
      {"ends early", 9999, 2001 * kSector, E_IMAPI_DF2DATA_STREAM_NOT_SUPPORTED, kDamaged},
      {"is empty", 9999, 0, E_IMAPI_DF2DATA_STREAM_NOT_SUPPORTED, kBlank},
      {"is no whole number of sectors", 9999, 2000 * kSector - 1,
       E_IMAPI_DF2DATA_STREAM_NOT_SUPPORTED, kBlank},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    ASSERT_NO_FATAL_FAILURE(insertBlank("cd-r", 3000));
    ComPtr<PatternStream> stream;
    stream.Attach(new PatternStream(2000));
    stream->tellBytes(c.toldBytes);
    stream->onRead = [&](std::uint64_t position) {
      return position >= c.failsAtSector * kSector && c.failsAtSector < 9999 ? STG_E_ACCESSDENIED
                                                                             : S_OK;
    };
    const Client client;
    EXPECT_EQ(client.writeStream(*stream), c.result);
    EXPECT_EQ(client.status(), c.status);
  }
}

TEST_F(Faults, AWriteWithinAWriteIsRefused) {
  ASSERT_NO_FATAL_FAILURE(insertBlank("cd-r", 3000));
  const Client client;
  ComPtr<PatternStream> stream;
  stream.Attach(new PatternStream(3000));
  stream->onRead = [&](std::uint64_t) {
    EXPECT_EQ(client.writeStream(*stream), E_IMAPI_DF2DATA_WRITE_IN_PROGRESS);
    return S_OK;
  };
  EXPECT_EQ(client.writeStream(*stream), S_OK);
}

TEST_F(Faults, AFullFileSystemIsSaidToBeTheReason) {
  if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no /dev/full";
  ASSERT_NO_FATAL_FAILURE(insertBlank("bd-r", 3000));
  std::filesystem::create_symlink("/dev/full", file("disc.iso"));
  Client client;
  EXPECT_EQ(client.write(2), HRESULT_FROM_WIN32(ERROR_DISK_FULL));
  EXPECT_EQ(errorDescription(),
            "The virtual recorder cannot write \"" + file("disc.iso").string() + "\".");
  std::filesystem::remove(file("disc.iso"));
  EXPECT_EQ(client.status(), kDamaged);
}

TEST_F(Faults, ProgressReachesTheEndOfEachStage) {
  struct Seen {
    platform::DiscStage stage;
    std::uint64_t done;
    std::uint64_t total;
  };
  std::vector<Seen> seen;
  platform::SetDiscProgress([&](const platform::DiscProgress& p) {
    seen.push_back({p.stage, p.sectorsDone, p.sectorsTotal});
  });
  ASSERT_NO_FATAL_FAILURE(insertBlank("cd-rw", 3000));
  Client client;
  ASSERT_EQ(client.write(2000), S_OK);
  ASSERT_GE(seen.size(), 3U);
  EXPECT_EQ(seen.front().stage, platform::DiscStage::Writing);
  EXPECT_EQ(seen.front().done, 0U);
  EXPECT_EQ(seen.front().total, 2000U);
  EXPECT_EQ(seen[seen.size() - 2].done, 2000U);
  EXPECT_EQ(seen.back().stage, platform::DiscStage::Closing);
  seen.clear();
  ASSERT_EQ(client.eraseDisc(true), S_OK);
  EXPECT_EQ(seen.back().stage, platform::DiscStage::Erasing);
  EXPECT_EQ(seen.back().done, 2000U);
}

}  // namespace
}  // namespace quillon::test
