// The media processor over the current disc-mastering service.
#include "disc/media_processor.h"

#include "disc_test_support.h"
#include "support/legacy_service.h"

namespace quillon {
namespace {

using test::errorOf;
using test::FakeDisc;
using test::onHostThread;

const std::string kNotUsable = "The current media in the " + std::string(test::kFakeDriveName) +
                               " is not present, damaged or is not writable.";
constexpr const char* kNoDrive = "There is no recordable drive present.";
constexpr const char* kNoContent = "There is no content selected to be recorded to the medium.";

class MediaProcessor : public test::WithDiscService {
 protected:
  MediaProcessor() { test::writeText(content_ / "DICOMDIR", std::string(5000, 'x')); }

  void fill(CQuillonMediaProcessor& processor) const {
    EXPECT_TRUE(processor.AddContent(test::WideOf(content_.path())));
  }
  // Classes are found in the apartment that has registered them.
  void onHostThreadWithService(const std::function<void()>& job) {
    onHostThread([&] {
      const test::RegisteredDiscService registered(service_);
      job();
    });
  }
  // A second write finds nothing to write.
  static bool isCleared(CQuillonMediaProcessor& processor) {
    return !processor.WriteToMedia() && errorOf(processor) == kNoContent;
  }

  test::TempDir content_;
};

TEST_F(MediaProcessor, WritesItsContentOnceUnderItsOptions) {
  FakeDisc erased = test::rewritableDiscWithData();
  erased.isHeuristicallyBlank = true;
  erased.freeSectors = 1000;
  FakeDisc appendable;
  appendable.isPhysicallyBlank = appendable.isHeuristicallyBlank = false;
  const struct {
    const char* what;
    FakeDisc disc;
    const OLECHAR* volume;
    bool fullErase, eject;
    const OLECHAR* writtenVolume;
    const char* erase;
  } cases[] = {
      {"defaults", FakeDisc{}, nullptr, false, true, OLESTR("Quillon"), ""},
      {"a named CD-R that stays", FakeDisc{}, OLESTR("STUDY_1"), true, false, OLESTR("STUDY_1"),
       ""},
      {"a CD-RW with data", test::rewritableDiscWithData(), OLESTR(""), false, true, OLESTR(""),
       "quick"},
      {"the same, full erase", test::rewritableDiscWithData(), OLESTR("X"), true, true, OLESTR("X"),
       "full"},
      {"an erased CD-RW", erased, OLESTR("X"), true, true, OLESTR("X"), ""},
      {"a CD-R that can take more", appendable, OLESTR("X"), true, true, OLESTR("X"), ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    service_ = {};
    service_.Disc() = c.disc;
    CQuillonMediaProcessor processor;
    fill(processor);
    fill(processor);
    if (c.volume != nullptr) {
      EXPECT_TRUE(processor.SetVolumeName(c.volume));
    }
    EXPECT_FALSE(processor.SetVolumeName(Text(33, OLESTR('X'))));
    processor.SetPerformFullErase(c.fullErase);
    processor.SetEjectAfterWrite(c.eject);
    ASSERT_TRUE(processor.WriteToMedia()) << errorOf(processor);
    EXPECT_GT(service_.Disc().burnedBytes, 5000U);
    EXPECT_EQ(service_.Disc().erase, c.erase);
    EXPECT_EQ(service_.CountOf("Create MsftDiscFormat2Erase"), *c.erase == '\0' ? 0 : 1);
    EXPECT_EQ(service_.drives.front().isEjected, c.eject);
    EXPECT_TRUE(service_.drives.front().lockedBy.empty());
    EXPECT_EQ(service_.volumeName, c.writtenVolume);
    EXPECT_EQ(service_.trees.size(), 1U) << "a path that is there already is not added again";
    EXPECT_EQ(service_.liveObjects, 0);
    EXPECT_TRUE(isCleared(processor));
  }
}

TEST_F(MediaProcessor, WhatCannotBeWrittenIsToldAndTheContentClearedWhenAsked) {
  const struct {
    const char* what;
    std::function<void()> spoil;
    std::string sentence;
    bool hasAnswer = false;  // to the questions about the disc
  } cases[] = {
      {"no drive", [this] { service_.drives.clear(); }, kNoDrive},
      {"a drive that only reads", [this] { service_.drives.front().isRecorder = false; }, kNoDrive},
      {"an unsupported environment", [this] { service_.isSupportedEnvironment = false; }, kNoDrive},
      {"no disc", [this] { service_.drives.front().disc.reset(); }, kNotUsable, true},
      {"a disc that is no use", [this] { service_.Disc().isSupported = false; }, kNotUsable, true},
      {"a disc that is too small", [this] { service_.Disc().freeSectors = 1; },
       "The disc image size exceeds the capacity of the current media in the " +
           std::string(test::kFakeDriveName) + ".",
       true},
      {"a drive without an identifier", [this] { service_.drives.front().uniqueId.clear(); },
       "The unique identifier is invalid."},
      {"a drive without an identifier of its own",
       [this] { service_.drives.front().activeId = Text(); },
       "Cannot retrieve the unique identifier for the " + std::string(test::kFakeDriveName) + ".",
       true},
      {"a drive in use", [this] { FailCall("IDiscRecorder2::AcquireExclusiveAccess"); },
       test::driveFailure("IDiscRecorder2::AcquireExclusiveAccess")},
  };
  for (const auto& c : cases) {
    for (const bool flag : {true, false}) {
      SCOPED_TRACE(c.what);
      service_ = {};
      c.spoil();
      CQuillonMediaProcessor processor;
      fill(processor);
      processor.SetClearAfterWrite(flag);
      EXPECT_FALSE(processor.WriteToMedia());
      EXPECT_EQ(test::errorWithoutLine(processor), c.sentence);
      EXPECT_EQ(isCleared(processor), flag);
      EXPECT_EQ(service_.CountOf("IDiscFormat2Data::Write"), 0);
      EXPECT_EQ(service_.liveObjects, 0);
      if (c.hasAnswer) continue;
      bool answer = true;
      EXPECT_FALSE(test::asks(processor, /*forContent=*/flag, answer));
      EXPECT_FALSE(answer);
      EXPECT_EQ(test::errorWithoutLine(processor), c.sentence);
    }
  }
}

TEST_F(MediaProcessor, ContentIsCheckedBeforeAnyDriveIsTouched) {
  CQuillonMediaProcessor processor;
  EXPECT_FALSE(processor.AddContent({}));
  EXPECT_EQ(errorOf(processor), "The path is invalid.");
  EXPECT_FALSE(processor.WriteToMedia());
  EXPECT_EQ(errorOf(processor), kNoContent);
  EXPECT_TRUE(service_.calls.empty());
  fill(processor);
  EXPECT_TRUE(processor.AddContent(OLESTR("C:\\a?b")));
  EXPECT_FALSE(processor.WriteToMedia());
  EXPECT_EQ(errorOf(processor), "The filename a?b cannot contain these characters: \\/:*?\"<>|");
  EXPECT_EQ(service_.calls, std::vector<std::string>{"Create MsftDiscMaster2"}) << "the probe";
  EXPECT_TRUE(isCleared(processor));
}

TEST_F(MediaProcessor, WhicheverCallFailsIsToldAndEverythingGivenBack) {
  std::string error;
  const auto write = [&] {
    CQuillonMediaProcessor processor;
    fill(processor);
    const test::HiddenClass noLegacy(CLSID_MSDiscMasterObj);
    EXPECT_EQ(processor.WriteToMedia(), service_.failingCall < 0);
    error = test::errorWithoutLine(processor);
    EXPECT_TRUE(isCleared(processor));
  };
  onHostThreadWithService(write);
  const std::vector<std::string> calls = service_.calls;
  ASSERT_GT(calls.size(), 50U);
  for (std::size_t n = 0; n < calls.size(); ++n) {
    SCOPED_TRACE(testing::Message() << "call " << n << ": " << calls[n]);
    RenewWithFailingCall(n);
    onHostThreadWithService(write);
    // The first is the probe.
    EXPECT_EQ(error, n == 0 ? "Cannot determine the current version of IMAPI that is installed."
                            : test::driveFailure(calls, n));
    EXPECT_EQ(service_.liveObjects, 0);
    EXPECT_TRUE(service_.drives.front().lockedBy.empty());
  }
}

// What a disc is, and what is answered about it.
TEST_F(MediaProcessor, AnswersTheTwoQuestionsAboutTheDisc) {
  FakeDisc appendable;
  appendable.state = IMAPI_FORMAT2_DATA_MEDIA_STATE_APPENDABLE;
  appendable.isPhysicallyBlank = appendable.isHeuristicallyBlank = false;
  FakeDisc finalised = appendable;
  finalised.state = IMAPI_FORMAT2_DATA_MEDIA_STATE_FINALIZED;
  finalised.isSupported = false;
  FakeDisc pressed = finalised;
  pressed.type = IMAPI_MEDIA_TYPE_CDROM;
  FakeDisc rewritable = test::rewritableDiscWithData();
  FakeDisc erased = rewritable;
  erased.isHeuristicallyBlank = true;
  FakeDisc plusRw = rewritable;
  plusRw.type = IMAPI_MEDIA_TYPE_DVDPLUSRW;
  FakeDisc ram = rewritable;
  ram.type = IMAPI_MEDIA_TYPE_DVDRAM;
  const struct {
    const char* what;
    std::optional<FakeDisc> disc;
    bool isRecordable, hasContent;
    std::string afterContent, afterRecordable;
  } cases[] = {
      {"blank CD-R", FakeDisc{}, true, false, "", ""},
      {"CD-RW with data", rewritable, true, true, "", ""},
      {"erased CD-RW", erased, true, false, "", ""},
      {"DVD+RW with data", plusRw, true, true, "", ""},
      {"DVD-RAM with data", ram, false, false, "", kNotUsable},
      {"CD-R that can take more", appendable, false, false, "", kNotUsable},
      {"finalised CD-R", finalised, false, false, kNotUsable, kNotUsable},
      {"pressed CD-ROM", pressed, false, false, kNotUsable, kNotUsable},
      {"no disc", std::nullopt, false, false, kNotUsable, kNotUsable},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    service_.drives.front().disc = c.disc;
    for (const bool asksForContent : {true, false}) {
      CQuillonMediaProcessor processor;
      const bool expected = asksForContent ? c.hasContent : c.isRecordable;
      bool answer = !expected;
      EXPECT_TRUE(test::asks(processor, asksForContent, answer));
      EXPECT_EQ(answer, expected);
      EXPECT_EQ(errorOf(processor), asksForContent ? c.afterContent : c.afterRecordable);
    }
    EXPECT_EQ(service_.liveObjects, 0);
    EXPECT_TRUE(service_.drives.front().lockedBy.empty());
  }
  EXPECT_EQ(service_.CountOf("IDiscFormat2Erase::EraseMedia"), 0);
}

// What a multithreaded host would get of the services' single-threaded objects is nobody's promise.
TEST_F(MediaProcessor, AMultithreadedHostIsToldThatItCannotRecord) {
  constexpr const char* kNoCom = "Cannot initialize the COM library.";
  for (const bool isLegacy : {false, true}) {
    for (const bool clears : {true, false}) {
      SCOPED_TRACE(testing::Message() << "legacy " << isLegacy << ", clearing " << clears);
      test::LegacyService legacyService;
      test::onThreads(1, [&] {
        ASSERT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
        {
          std::optional<test::RegisteredDiscService> current;
          std::optional<test::HiddenClass> noCurrent;
          if (isLegacy) {
            noCurrent.emplace(CLSID_MsftDiscMaster2);
          } else {
            current.emplace(service_);
          }
          const test::RegisteredLegacyService legacy(legacyService, true, true);
          CQuillonMediaProcessor processor;
          fill(processor);
          processor.SetClearAfterWrite(clears);
          EXPECT_FALSE(processor.WriteToMedia());
          EXPECT_EQ(errorOf(processor), kNoCom);
          EXPECT_EQ(isCleared(processor), clears);
          for (const bool forContent : {true, false}) {
            CQuillonMediaProcessor asked;
            bool answer = true;
            EXPECT_EQ(test::asks(asked, forContent, answer), !isLegacy);
            EXPECT_EQ(answer, !isLegacy && !forContent);
            EXPECT_EQ(errorOf(asked), isLegacy ? kNoCom : "");
          }
        }
        EXPECT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_FALSE) << "it still has it";
        CoUninitialize();
        CoUninitialize();
      });
      EXPECT_EQ(service_.liveObjects + legacyService.liveObjects, 0);
      EXPECT_EQ(service_.CountOf("IDiscFormat2Data::Write"), 0);
    }
  }
}

TEST_F(MediaProcessor, WhatIsThrownEndsTheWriteAndAlwaysClears) {
#ifdef _WIN32
  GTEST_SKIP() << "no exception passes through Windows' own CoCreateInstance";
#endif
  const std::pair<HRESULT, std::string> cases[] = {{E_ACCESSDENIED, test::kAccessDenied},
                                                   {S_FALSE, "Incorrect function."}};
  for (const auto& [thrown, sentence] : cases) {
    service_.faults = {
        {.call = "Create MsftDiscMaster2", .result = thrown, .times = 1, .throws = true}};
    onHostThreadWithService([&] {
      CQuillonMediaProcessor processor;
      fill(processor);
      processor.SetClearAfterWrite(false);
      EXPECT_FALSE(processor.WriteToMedia());
      EXPECT_EQ(errorOf(processor), sentence);
      EXPECT_TRUE(isCleared(processor));
    });
  }
}

}  // namespace
}  // namespace quillon
