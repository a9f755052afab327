// The operations of the media object that reach the recorder.
#include <gtest/gtest.h>

#include <filesystem>

#include "platform/imapi2.h"
#include "platform/testing.h"
#include "server/media_object/media_rw.h"
#include "support/legacy_service.h"
#include "support/temp_dir.h"

namespace quillon::test {
namespace {

namespace fs = std::filesystem;

constexpr VARIANT_BOOL kTrue = -1;
constexpr VARIANT_BOOL kUntouched = 7;

class MediaWrite : public ::testing::Test {
 protected:
  MediaWrite() {
    EXPECT_EQ(CoInitialize(nullptr), S_OK);
    fs::create_directory(root_);
    writeText(root_ / "DICOMDIR", "directory");
    std::u16string root = root_.u16string();
    media_.put_DicomRootDirectory(root.data());
  }
  ~MediaWrite() override { CoUninitialize(); }

  std::string sentence() {
    BSTR text = nullptr;
    EXPECT_EQ(media_.get_ErrMessageText(&text), S_OK);
    const std::string plain = text == nullptr ? "" : fs::path(std::u16string_view(text)).string();
    SysFreeString(text);
    return plain;
  }
  // As the last operation left it.
  LONG result() {
    LONG value = -1;
    EXPECT_EQ(media_.get_Result(&value), S_OK);
    return value;
  }
  // Leaves a Result that an operation which resets it would show.
  void spoilResult() { EXPECT_EQ(media_.Write(nullptr), S_FALSE); }

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
  std::u16string volume = u"STUDY_1";
  media_.put_VolumeName(volume.data());
  media_.put_PerformFullErase(kTrue);
  media_.put_EjectMediumAfterCreation(0);
  media_.put_ClearAfterWrite(0);
  EXPECT_EQ(media_.Write(&done), S_OK) << sentence();
  EXPECT_EQ(service_.record + " " + service_.erase, "write full");
  EXPECT_EQ(service_.volumeName, volume);
  media_.put_SimulateCreation(kTrue);
  media_.put_EjectMediumAfterCreation(kTrue);
  EXPECT_EQ(media_.Write(&done), S_OK) << sentence();
  EXPECT_EQ(service_.record, "simulate+eject");

  std::u16string target = (dir_ / "target").u16string();
  media_.put_PerformDirectCopy(kTrue);
  media_.put_DirectCopyDirectory(target.data());
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
    BSTR text = nullptr;
    media.get_ErrMessageText(&text);
    EXPECT_EQ(text == nullptr ? "" : fs::path(std::u16string_view(text)).string(), c.sentence);
    SysFreeString(text);
  }
}

TEST_F(MediaWrite, AQuestionWithoutAnAnswerIsNoAndKeepsResult) {
  const HiddenClass noCurrent(CLSID_MsftDiscMaster2);
  const HiddenClass noLegacy(CLSID_MSDiscMasterObj);
  const platform::testing::Scope restored;
  for (const auto question :
       {&CQuillonMediaRW::get_CDRWHasContent, &CQuillonMediaRW::get_CDIsRecordable}) {
    platform::testing::Restore();
    spoilResult();
    VARIANT_BOOL answer = kUntouched;
    EXPECT_EQ((media_.*question)(&answer), S_FALSE);
    EXPECT_EQ(answer, 0);
    EXPECT_EQ(result(), E_INVALIDARG);
    EXPECT_EQ(sentence(), "Cannot determine the current version of IMAPI that is installed.");
    platform::testing::SubstituteVersion(5, 0, 2195, 4);
    answer = kUntouched;
    EXPECT_EQ((media_.*question)(&answer), S_FALSE);
    EXPECT_EQ(answer, 0);
    EXPECT_EQ(sentence(),
              "Windows XP or later is required to record the DICOM fileset to compact disc.");
    media_.put_SimulateCreation(0);
    EXPECT_EQ((media_.*question)(nullptr), S_FALSE);
    EXPECT_EQ(result(), E_INVALIDARG);
  }
}

}  // namespace
}  // namespace quillon::test
