// The media processor over the legacy service, with every step that can fail forced to fail once.
#include "disc/media_processor.h"
#include "disc_test_support.h"
#include "platform/imapi2.h"
#include "support/legacy_service.h"

namespace quillon {
namespace {

using test::errorOf;
using test::LegacyService;
using test::onHostThread;

constexpr HRESULT legacyCode(DWORD low) { return static_cast<HRESULT>(0x80040000U | low); }

constexpr const char* kNoContent = "There is no content selected to be recorded to the medium.";

class LegacyPath : public ::testing::Test {
 protected:
  LegacyPath() {
    test::writeText(content_ / "DICOMDIR", "directory");
    std::filesystem::create_directories(content_ / "A/B");
    test::writeText(content_ / "A/B/ONE", std::string(100, 'x'));
  }

  // Registers the service, and hides the current generation.
  void withService(const std::function<void()>& job, bool hasBurner = true) {
    onHostThread([&] {
      const test::HiddenClass noCurrent(CLSID_MsftDiscMaster2);
      const test::RegisteredLegacyService registered(service_, true, hasBurner);
      job();
    });
    EXPECT_EQ(service_.liveObjects, 0) << "objects of the service are still held";
    EXPECT_FALSE(service_.isRecorderOpen);
    EXPECT_FALSE(service_.isMasterOpen);
  }

  void fill(CQuillonMediaProcessor& processor) const {
    EXPECT_TRUE(processor.SetVolumeName(OLESTR("STUDY_1")));
    EXPECT_TRUE(processor.AddContent(test::WideOf(content_.path())));
  }

  test::TempDir content_;
  LegacyService service_;
};

TEST_F(LegacyPath, WritesTheTreeUnderItsVolumeName) {
  withService([&] {
    CQuillonMediaProcessor processor;
    fill(processor);
    EXPECT_TRUE(processor.WriteToMedia()) << errorOf(processor);
    EXPECT_FALSE(processor.WriteToMedia());
    EXPECT_EQ(errorOf(processor), kNoContent) << "a write leaves nothing to write again";
  });
  EXPECT_EQ(service_.volumeName, OLESTR("STUDY_1"));
  EXPECT_EQ(service_.record, "write+eject");
  EXPECT_EQ(service_.erase, "");
  const std::map<std::string, std::string> expected{{"DICOMDIR", "directory"},
                                                    {"A/B/ONE", std::string(100, 'x')}};
  EXPECT_EQ(service_.files, expected);
}

TEST_F(LegacyPath, ErasesOnlyARewritableDiscWithDataAndNotInATestRun) {
  constexpr LONG kData = MEDIA_RW | MEDIA_WRITABLE;
  const struct {
    const char* what;
    LONG flags;
    bool simulate, full, eject;
    const char* erase;
    const char* record;
  } cases[] = {
      {"CD-RW with data", kData, false, false, true, "quick", "write+eject"},
      {"CD-RW with data, full erase", kData, false, true, false, "full", "write"},
      {"CD-RW with data, test run", kData, true, true, false, "", "simulate"},
      {"blank CD-RW", kData | MEDIA_BLANK, false, true, false, "", "write"},
      {"CD-R that can take more", MEDIA_WRITABLE, false, true, false, "", "write"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    service_ = {};
    service_.mediumFlags = c.flags;
    withService([&] {
      CQuillonMediaProcessor processor;
      fill(processor);
      processor.SetSimulate(c.simulate);
      processor.SetPerformFullErase(c.full);
      processor.SetEjectAfterWrite(c.eject);
      EXPECT_TRUE(processor.WriteToMedia()) << errorOf(processor);
    });
    EXPECT_EQ(service_.erase, c.erase);
    EXPECT_EQ(service_.record, c.record);
  }
}

struct Fault {
  std::string call;
  HRESULT failure;
  std::string sentence;
  bool throws = false;
};

// The operation's call fails for this reason. The two that close share their name.
Fault failing(const std::string& operation, DWORD code, const std::string& reason) {
  std::string call = operation.substr(operation.find("::") + 2);
  if (call == "Close") call += operation.starts_with("CDiscMaster") ? "Master" : "Recorder";
  return {call, legacyCode(code), operation + " failed for this reason:  " + reason};
}
Fault throwing(const std::string& operation) {
  return {operation.substr(operation.find("::") + 2), E_ACCESSDENIED,
          operation + " threw an exception for this reason:  " + test::kAccessDenied, true};
}

constexpr const char* kNoInterface = "Cannot initialize the IMAPI interface instance.";
const std::string kRemoved =
    "The currently active disc recorder has been invalidated because the device was removed from "
    "the system";

// Those that both the write and the query meet.
const std::vector<Fault> kSharedFaults = {
    {"Create", E_FAIL, kNoInterface},
    failing("CDiscMaster::Open", 0x212,
            "Another application or IMAPI engine has reserved the active disc recorder"),
    {"EnumDiscRecorders", legacyCode(0x20B), kNoInterface},
    failing("CDiscRecorderIterator::Next", 0x20E,
            "An unexpected and unexplained failure ended the recording"),
    failing("CDiscRecorder::GetRecorderType", 0x20C, "This recorder has not been initialized"),
    failing("CDiscRecorder::GetRecorderState", 0x213, kRemoved),
    failing("CDiscRecorder::OpenExclusive", 0x226,
            "Another application is still using this device, so IMAPI cannot access the device"),
    failing("CDiscRecorder::QueryMediaType", 0x219,
            "An error occurred while attempting to access the media inserted into the active disc "
            "recorder"),
    failing("CDiscRecorder::Close", 0x20C, "This recorder has not been initialized"),
    failing("CDiscMaster::Close", 0x20B, "IMAPI has not been opened"),
    throwing("CDiscRecorder::QueryMediaType"),
};

const std::vector<Fault> kWriteFaults = {
    failing("CDiscRecorder::Erase", 0x210, "The media type is not valid for the current operation"),
    failing("CDiscMaster::SetActiveDiscRecorder", 0x214,
            "The disc recorder is not a valid type for the current operation"),
    failing("CDiscMaster::SetActiveDiscMasterFormat", 0x21F,
            "An active format has not been selected"),
    failing("CJolietDiscMaster::GetJolietProperties", 0x211, "Properties are not supported"),
    failing("CPropertyStorage::WriteMultiple", 0x211, "Properties are not supported"),
    failing("CPropertyStorage::Commit", 0x211, "Properties are not supported"),
    failing("CJolietDiscMaster::SetJolietProperties", 0x221,
            "The Joliet format is not the active format"),
    failing("CJolietDiscMaster::AddData", 0x21D,
            "One or more subitem names do not conform to the Joliet file naming conventions"),
    failing("CDiscMaster::RecordDisc", 0x21C, "The disc cannot hold any more data"),
    throwing("CDiscMaster::RecordDisc"),
};

std::vector<Fault> sharedFaultsAnd(const std::vector<Fault>& others) {
  std::vector<Fault> faults = kSharedFaults;
  faults.insert(faults.end(), others.begin(), others.end());
  return faults;
}

// A service in which this fails.
LegacyService serviceWith(const Fault& fault) {
  LegacyService service;
  service.failingCall = fault.call;
  service.failure = fault.failure;
  service.throws = fault.throws;
  return service;
}

TEST_F(LegacyPath, AFailingStepOfTheWriteIsToldAndEverythingIsGivenBack) {
  for (const Fault& fault : sharedFaultsAnd(kWriteFaults)) {
    for (const bool clears : {true, false}) {
      SCOPED_TRACE(fault.call + (clears ? ", clearing" : ""));
      service_ = serviceWith(fault);
      service_.mediumFlags = MEDIA_RW | MEDIA_WRITABLE;
      if (!clears) service_.alsoFailing = "CloseMaster";  // does not hide the first failure
      // A disc master that does not open leaves the content alone.
      const bool cleared = clears && fault.call != "Create" && fault.call != "Open";
      withService([&] {
        CQuillonMediaProcessor processor;
        fill(processor);
        processor.SetClearAfterWrite(clears);
        EXPECT_FALSE(processor.WriteToMedia());
        EXPECT_EQ(errorOf(processor), fault.sentence);
        EXPECT_EQ(service_.record.empty(), fault.call != "CloseMaster");
        service_.failingCall = "CloseMaster";
        service_.throws = false;
        EXPECT_FALSE(processor.WriteToMedia());
        EXPECT_EQ(errorOf(processor) == kNoContent, cleared);
      });
    }
  }
}

struct Machine {
  const char* what;
  std::function<void(LegacyService&)> set;
  const char* sentence;
};

const Machine kRefusals[] = {
    {"no recorder", [](LegacyService& s) { s.recorders = 0; },
     "There is no recordable drive present."},
    {"a reader", [](LegacyService& s) { s.recorderType = 3; },
     "The current recorder cannot record to media."},
    {"a recorder at work", [](LegacyService& s) { s.recorderState = RECORDER_BURNING; },
     "The recorder is busy and cannot write media at this time."},
    {"no medium", [](LegacyService& s) { s.mediumType = s.mediumFlags = 0; },
     "There is no medium in the recorder."},
    {"a finalised CD-R",
     [](LegacyService& s) {
       s.mediumType = MEDIA_CDDA_CDROM;
       s.mediumFlags = 0;
     },
     "The medium in the recorder is not writable."},
};

TEST_F(LegacyPath, WhatCannotBeWrittenIsRefusedBeforeAnythingIsDone) {
  for (const Machine& machine : kRefusals) {
    SCOPED_TRACE(machine.what);
    service_ = {};
    machine.set(service_);
    withService([&] {
      CQuillonMediaProcessor processor;
      fill(processor);
      EXPECT_FALSE(processor.WriteToMedia());
      EXPECT_EQ(errorOf(processor), machine.sentence);
    });
    EXPECT_EQ(service_.files.size(), 0U);
    EXPECT_EQ(service_.record, "");
    EXPECT_EQ(service_.erase, "");
  }
}

TEST_F(LegacyPath, ContentThatIsNotThereIsRefused) {
  const struct {
    Text path;
    std::string sentence;
  } cases[] = {
      {test::WideOf(content_ / "none"),
       "CShellFolder::ParseDisplayName failed for this reason:  " +
           test::systemSentence(HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND),
                                "The system cannot find the file specified.")},
      {OLESTR("C:\\a?b"), "The filename a?b cannot contain these characters: \\/:*?\"<>|"},
  };
  for (const auto& c : cases) {
    service_ = {};
    withService([&] {
      CQuillonMediaProcessor processor;
      EXPECT_TRUE(processor.AddContent(c.path));
      EXPECT_FALSE(processor.WriteToMedia());
      EXPECT_EQ(errorOf(processor), c.sentence);
    });
    EXPECT_EQ(service_.record, "");
  }
}

TEST_F(LegacyPath, AFailingStepOfTheQueryLeavesNoAnswer) {
  const auto expectNoAnswer = [this](const LegacyService& state, const std::string& sentence,
                                     bool hasBurner = true) {
    for (const bool forContent : {true, false}) {
      service_ = state;
      const auto ask = [&] {
        CQuillonMediaProcessor processor;
        bool answer = true;
        EXPECT_FALSE(test::asks(processor, forContent, answer));
        EXPECT_FALSE(answer);
        EXPECT_EQ(errorOf(processor), sentence);
      };
      withService(ask, hasBurner);
    }
  };
  const Fault noAnswer = failing("CMediaBurnUtil::HasRecordableDrive", 0x213, kRemoved);
  for (const Fault& fault : sharedFaultsAnd({noAnswer})) {
    SCOPED_TRACE(fault.call);
    expectNoAnswer(serviceWith(fault), fault.sentence);
  }
  for (const Machine& machine : kRefusals) {
    SCOPED_TRACE(machine.what);
    LegacyService service;
    machine.set(service);
    expectNoAnswer(service, machine.sentence);
  }
  LegacyService service;
  service.hasRecordableDrive = false;
  expectNoAnswer(service, "There is no recordable drive present.");
  expectNoAnswer({}, kNoInterface, /*hasBurner=*/false);
}

TEST_F(LegacyPath, AnswersWhatTheMediumIs) {
  const struct {
    const char* what;
    LONG type, flags;
    bool isRecordable, hasContent;
    const char* sentence;
  } cases[] = {
      {"blank CD-R", MEDIA_SPECIAL, MEDIA_BLANK | MEDIA_WRITABLE, true, false, ""},
      {"CD-RW with data", MEDIA_CDDA_CDROM, MEDIA_RW | MEDIA_WRITABLE, true, true, ""},
      {"blank CD-RW", MEDIA_SPECIAL, MEDIA_RW | MEDIA_BLANK | MEDIA_WRITABLE, true, false, ""},
      {"appendable CD-R", MEDIA_CD_ROM_XA, MEDIA_WRITABLE, false, false,
       "The medium in the recorder is not writable."},
      {"appendable of another kind", MEDIA_CD_EXTRA, MEDIA_WRITABLE, true, false, ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    service_ = {};
    service_.mediumType = c.type;
    service_.mediumFlags = c.flags;
    withService([&] {
      CQuillonMediaProcessor processor;
      bool answer = !c.hasContent;
      EXPECT_TRUE(processor.CDRWHasContent(answer));
      EXPECT_EQ(answer, c.hasContent);
      EXPECT_EQ(errorOf(processor), "");
      EXPECT_TRUE(processor.CDIsRecordable(answer));
      EXPECT_EQ(answer, c.isRecordable);
      EXPECT_EQ(errorOf(processor), c.sentence);
    });
    EXPECT_EQ(service_.record + service_.erase, "") << "a question changes nothing";
  }
}

}  // namespace
}  // namespace quillon
