// The operations of the media object that reach the recorder.
#include <gtest/gtest.h>

#include <filesystem>

#include "media_calls.h"
#include "platform/imapi2.h"
#include "support/legacy_service.h"
#include "support/temp_dir.h"

namespace quillon::test {
namespace {

namespace fs = std::filesystem;

constexpr VARIANT_BOOL kUntouched = 7;

class MediaWrite : public ::testing::Test {
 protected:
  MediaWrite() {
    EXPECT_EQ(CoInitialize(nullptr), S_OK);
    fs::create_directory(root_);
    writeText(root_ / "DICOMDIR", "directory");
    media_.put_DicomRootDirectory(Bstr(root_.string()).get());
  }
  ~MediaWrite() override { CoUninitialize(); }

  std::string sentence() { return errorOf(media_); }
  HRESULT result() { return resultOf(media_); }
  TempDir dir_;
  fs::path root_ = dir_ / "root";
  CQuillonMediaRW media_;
  LegacyService service_;
};

TEST_F(MediaWrite, TellsOfSuccessAndOfFailure) {
  const HiddenClass noCurrent(CLSID_MsftDiscMaster2);
  const RegisteredLegacyService registered(service_, true, true);
  VARIANT_BOOL done = kUntouched;
  media_.put_ClearAfterWrite(0);
  EXPECT_EQ(media_.Write(&done), S_OK);
  EXPECT_EQ(done, kTrue);
  EXPECT_EQ(result(), S_OK);
  EXPECT_EQ(sentence(), "The media fileset has been successfully written.");
  EXPECT_TRUE(fs::exists(root_));

  done = kUntouched;
  service_.recorderState = RECORDER_BURNING;
  media_.put_ClearAfterWrite(kTrue);
  EXPECT_EQ(media_.Write(&done), S_FALSE);
  EXPECT_EQ(done, kUntouched);
  EXPECT_EQ(result(), S_FALSE);
  EXPECT_EQ(sentence(), "The recorder is busy and cannot write media at this time.");
  EXPECT_FALSE(fs::exists(root_));

  EXPECT_EQ(media_.Write(nullptr), S_FALSE);
  EXPECT_EQ(result(), E_INVALIDARG);
  EXPECT_EQ(sentence(), "One or more arguments are invalid.");
}

TEST_F(MediaWrite, TheSettingsReachTheDiscAndTheDirectCopy) {
  const HiddenClass noCurrent(CLSID_MsftDiscMaster2);
  const RegisteredLegacyService registered(service_, true, true);
  service_.mediumFlags = MEDIA_RW | MEDIA_WRITABLE;
  VARIANT_BOOL done = kUntouched;
  media_.put_VolumeName(Bstr("STUDY_1").get());
  media_.put_PerformFullErase(kTrue);
  media_.put_EjectMediumAfterCreation(0);
  media_.put_ClearAfterWrite(0);
  EXPECT_EQ(media_.Write(&done), S_OK) << sentence();
  EXPECT_EQ(service_.record + " " + service_.erase, "write full");
  EXPECT_EQ(service_.volumeName, OLESTR("STUDY_1"));
  media_.put_SimulateCreation(kTrue);
  media_.put_EjectMediumAfterCreation(kTrue);
  EXPECT_EQ(media_.Write(&done), S_OK) << sentence();
  EXPECT_EQ(service_.record, "simulate+eject");

  media_.put_PerformDirectCopy(kTrue);
  media_.put_DirectCopyDirectory(Bstr((dir_ / "target").string()).get());
  EXPECT_EQ(media_.Write(&done), S_OK) << sentence();
  EXPECT_TRUE(fs::exists(dir_ / "target/DICOMDIR"));
}

TEST_F(MediaWrite, AnswersTheQuestionsAboutTheDisc) {
  constexpr const char* kNotWritable = "The medium in the recorder is not writable.";
  const struct {
    const char* what;
    LONG type, flags;
    HRESULT content, recordable;
    VARIANT_BOOL hasContent, isRecordable;
    const char* sentence;  // after the question of recordability
  } cases[] = {
      {"blank CD-R", MEDIA_SPECIAL, MEDIA_BLANK | MEDIA_WRITABLE, S_OK, S_OK, 0, kTrue, ""},
      {"CD-RW with data", MEDIA_CDDA_CDROM, MEDIA_RW | MEDIA_WRITABLE, S_OK, S_OK, kTrue, kTrue,
       ""},
      {"appendable CD-R", MEDIA_CDDA_CDROM, MEDIA_WRITABLE, S_OK, S_FALSE, 0, 0, kNotWritable},
      {"finalised CD-R", MEDIA_CDDA_CDROM, 0, S_FALSE, S_FALSE, 0, 0, kNotWritable},
      {"empty tray", 0, 0, S_FALSE, S_FALSE, 0, 0, "There is no medium in the recorder."},
  };
  const HiddenClass noCurrent(CLSID_MsftDiscMaster2);
  const RegisteredLegacyService registered(service_, true, true);
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    CQuillonMediaRW media;
    service_.mediumType = c.type;
    service_.mediumFlags = c.flags;
    VARIANT_BOOL answer = kUntouched;
    EXPECT_EQ(media.get_CDRWHasContent(&answer), c.content);
    EXPECT_EQ(answer, c.hasContent);
    answer = kUntouched;
    EXPECT_EQ(media.get_CDIsRecordable(&answer), c.recordable);
    EXPECT_EQ(answer, c.isRecordable);
    EXPECT_EQ(errorOf(media), c.sentence);
  }
}

}  // namespace
}  // namespace quillon::test
