// Recording when memory runs out.
#include <new>
#include <set>

#include "disc/disc_writer.h"
#include "disc_test_support.h"
#include "support/failing_new.h"
#include "support/legacy_service.h"

namespace quillon {
namespace {

using test::errorOf;

// False also for a call that throws. With 0 no allocation fails.
bool callWithoutMemory(long nth, bool& happened, const std::function<bool()>& call) {
  try {
    const test::FailingNew failing(nth);
    const bool done = call();
    happened = happened || failing.happened();
    return done;
  } catch (const std::bad_alloc&) {
    happened = true;
    return false;
  }
}

void expectAllOf(const std::set<std::string>& outcomes, const std::vector<std::string>& sentences) {
  for (const std::string& one : sentences) EXPECT_TRUE(outcomes.contains(one)) << one;
}

// No text of the drive or of the job fits into its object: each copy needs memory.
const Text kVolumeName = OLESTR("A STUDY OF 2026");
const Text kDriveId = OLESTR("drive-number-1");
const std::string kDevice = "TARN IMAGING BURNER 2000 (Revision: 1.00-beta)";

class WithoutMemory : public test::WithDiscService {
 protected:
  WithoutMemory() {
    test::writeText(content_ / "DICOMDIR", std::string(5000, 'x'));
    test::FakeDrive& drive = start_.drives.front();
    drive.uniqueId = kDriveId;
    drive.vendor = OLESTR("TARN IMAGING");
    drive.product = OLESTR("BURNER 2000");
    drive.revision = OLESTR("1.00-beta");
    start_.Disc() = test::rewritableDiscWithData();
    start_.imageBytes = 6144;
  }

  // One attempt, and what is left of it when its objects are gone. Answers the sentence.
  std::string Attempt(bool byProcessor, long nth, bool& happened) {
    SCOPED_TRACE(testing::Message() << "by processor " << byProcessor << ", " << nth);
    service_ = start_;
    bool isWritten = false;
    std::string error;
    if (byProcessor) {
      CQuillonMediaProcessor processor;
      EXPECT_TRUE(processor.SetVolumeName(kVolumeName));
      EXPECT_TRUE(processor.AddContent(test::WideOf(content_.path())));
      isWritten = callWithoutMemory(nth, happened, [&] { return processor.WriteToMedia(); });
      error = errorOf(processor);
      EXPECT_EQ(error.empty(), isWritten);
    } else {
      CTarnDiscWriter writer;
      EXPECT_TRUE(writer.SetRecorderUniqueId(kDriveId) && writer.SetVolumeName(kVolumeName));
      EXPECT_TRUE(writer.AddDirectory(test::WideOf(content_.path()), false, false));
      writer.SetStageFiles(true, OLESTR("/staging/directory"));
      isWritten = callWithoutMemory(nth, happened, [&] { return writer.Write(); });
      error = errorOf(writer);
    }
    EXPECT_EQ(service_.drives.front().lockedBy, OLESTR("")) << "the drive is still locked";
    EXPECT_EQ(service_.liveObjects, 0);
    if (isWritten) {
      EXPECT_GT(service_.Disc().burnedBytes, 5000U);
      EXPECT_EQ(service_.volumeName, kVolumeName);
      EXPECT_TRUE(service_.drives.front().isEjected);
    }
    return error;
  }

  test::TempDir content_;
  test::FakeDiscService start_;
};

TEST_F(WithoutMemory, AWriteSaysWhatItCouldNotDoAndLetsGoOfTheDrive) {
  std::set<std::string> outcomes;
  for (const bool byProcessor : {false, true}) {
    bool happens = false;
    EXPECT_EQ(Attempt(byProcessor, 0, happens), "") << "and what a process makes once is made";
    outcomes.merge(test::withEachAllocationFailing(
        [&](long n, bool& happened) { return Attempt(byProcessor, n, happened); }));
  }
  expectAllOf(
      outcomes,
      {"Cannot retrieve the information used to select the recorder for recording.",
       "Cannot retrieve the unique identifier for the " + kDevice + ".",
       "Cannot retrieve the information from the current media in the " + kDevice + ".",
       "Cannot copy the current physical media information.",
       "Cannot retrieve the volume name to be set on the disc image.",
       "Cannot retrieve the directory for staging files.", "The current directory name is invalid.",
       "Cannot calculate the estimated recording time.",
       "Cannot set the directory tree name information.", "Cannot set the volume name information.",
       "Cannot set the working directory name information.",
       "Cannot set the client name information.",
       "Cannot set the unique identifer of the recorder information.",
       "Cannot set the recorder vendor ID information.",
       "Cannot set the recorder product ID information.",
       "Cannot set the recorder product revision information.",
       "Cannot set the recorder volume name information.", "Cannot set the volume name.",
       "WriteToMedia caught an exception."});
  // The drive is there, though its name could not be read.
  for (const char* untrue :
       {"There is no recordable drive present.",
        "Cannot find the recorder corresponding to the unique identifier drive-number-1."}) {
    EXPECT_FALSE(outcomes.contains(untrue)) << untrue;
  }
}

TEST_F(WithoutMemory, ADriveSaysWhichPartOfItsNameIsMissing) {
  service_ = start_;
  CDiscUnitInfo unit;
  ASSERT_TRUE(unit.Query(kDriveId, false, false));
  const auto outcomes = test::withEachAllocationFailing([&](long n, bool& happened) {
    Text name;
    unit.ClearError();
    callWithoutMemory(n, happened, [&] { return unit.GetDeviceName(name); });
    return errorOf(unit);
  });
  expectAllOf(outcomes, {"Cannot retrieve the product ID of the recorder.",
                         "Cannot retrieve the product revision of the recorder.",
                         "Cannot retrieve the vendor ID of the recorder."});
}

TEST(LegacyPathWithoutMemory, SaysWhatItCouldNotDoAndClosesTheRecorder) {
  const test::TempDir content;
  test::writeText(content / "DICOMDIR", "directory");
  test::onHostThread([&] {
    const test::HiddenClass noCurrent(CLSID_MsftDiscMaster2);
    test::LegacyService service;
    const test::RegisteredLegacyService registered(service, true, true);
    const auto attempt = [&](long n, bool& happened) {
      SCOPED_TRACE(n);
      service = {};
      CQuillonMediaProcessor processor;
      EXPECT_TRUE(processor.SetVolumeName(kVolumeName));
      EXPECT_TRUE(processor.AddContent(test::WideOf(content.path())));
      const bool isWritten =
          callWithoutMemory(n, happened, [&] { return processor.WriteToMedia(); });
      EXPECT_EQ(errorOf(processor).empty(), isWritten);
      EXPECT_EQ(service.liveObjects, 0);
      EXPECT_FALSE(service.isRecorderOpen || service.isMasterOpen);
      if (isWritten) {
        EXPECT_EQ(service.record, "write+eject");
        EXPECT_EQ(service.volumeName, kVolumeName);
      }
      return errorOf(processor);
    };
    bool happens = false;
    EXPECT_EQ(attempt(0, happens), "") << "and what a process makes once is made";
    const auto outcomes = test::withEachAllocationFailing(attempt);
    expectAllOf(outcomes,
                {"Cannot access the shell.", "AddContent caught an exception.",
                 "SetProperties caught an exception.", "WriteToMedia caught an exception."});
  });
}

}  // namespace
}  // namespace quillon
