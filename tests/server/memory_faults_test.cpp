// The media object when memory runs out.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "media_calls.h"
#include "support/failing_new.h"
#include "support/object_maker.h"
#include "support/temp_dir.h"
#include "support/workstation_settings.h"

namespace quillon::test {
namespace {

namespace fs = std::filesystem;

constexpr HRESULT kOutOfMemory = static_cast<HRESULT>(0x8007000E);
constexpr HRESULT kFailed = static_cast<HRESULT>(0x80004005);

// A job with one object in its list and another file that can be added.
struct Job {
  Job() {
    for (const int number : {1, 2}) {
      ObjectDescription d;
      d.instance = number;
      makeObjectFile(dir / ("in/" + std::to_string(number)), d);
      objects.push_back(readBytes(dir / ("in/" + std::to_string(number))));
    }
    media.put_DicomRootDirectory(Bstr((dir / "root").string()).get());
    media.put_IncludeOtherContent(0);
    media.put_UniquePatientId(Bstr("DOE^JOHN 12345").get());
    VARIANT_BOOL done = 0;
    media.AddFile(Bstr((dir / "in/1").string()).get(), &done);
    EXPECT_EQ(done, kTrue) << errorOf(media);
  }

  // -1 when there are none, with the sentence that says so.
  int count() {
    ULONG files = 0;
    return media.get_TotalNumberOfFilesInFileSet(&files) == S_OK ? static_cast<int>(files) : -1;
  }

  TempDir dir;
  MediaCreationKey none{dir.path()};
  std::vector<Bytes> objects;
  CQuillonMediaRW media;
};

TEST(MediaObject, ATextThatFindsNoMemoryIsToldByResult) {
  const struct {
    TextProperty property;  // without put for one that cannot be put
    std::string value;
    std::string getting, putting;
  } cases[] = {
      {{&CQuillonMediaRW::get_IheLabel, nullptr}, "", "Cannot retrieve the IHE Label.", ""},
      {{&CQuillonMediaRW::get_ErrMessageText, nullptr},
       "",
       "Cannot retrieve the error message text.",
       ""},
      {kVolumeName, "A VOLUME NAME OF 29 LETTERS", "Cannot retrieve the volume name.",
       "Cannot set the volume name."},
      {kDicomRootDirectory,
       "/a/root/directory/that/is/longer/than/the/one/before/it/in/the/temporary/directory/x",
       "Cannot retrieve the DICOM root directory.", "Cannot set the DICOM root directory."},
      {kDicomObjectDirectory, "OBJECTS\\ELSEWHERE\\BELOW",
       "Cannot retrieve the DICOM object directory.", "Cannot set the DICOM object directory."},
      {kOtherContentDirectory, "VIEWER\\ELSEWHERE\\BELOW",
       "Cannot retrieve the DICOM processing directory.",
       "Cannot set the DICOM processing directory."},
      {kDirectCopyDirectory, "E:\\A\\COPY\\ELSEWHERE", "Cannot retrieve the direct copy directory.",
       "Cannot set the direct copy directory."},
      {kUniquePatientId, "A PATIENT WITH A RATHER LONG KEY",
       "Cannot retrieve the unique patient ID.", "Cannot set the unique patient ID."},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.getting);
    Job job;
    VARIANT_BOOL done = 0;
    EXPECT_EQ(job.media.CreateDicomFileSet(&done), S_OK);        // makes a label
    EXPECT_EQ(job.media.put_DicomRootDirectory(nullptr), S_OK);  // leaves a sentence
    if (c.property.put != nullptr) {
      const std::string before = textOf(job.media, c.property.get);
      const Bstr value(c.value);
      HRESULT answer = S_OK;
      {
        const FailingNew failing(1);
        answer = (job.media.*c.property.put)(value.get());
      }
      EXPECT_EQ(answer, S_FALSE);
      EXPECT_EQ(resultOf(job.media), kOutOfMemory);
      EXPECT_EQ(errorOf(job.media), c.putting);
      EXPECT_EQ(textOf(job.media, c.property.get), before);
      EXPECT_EQ((job.media.*c.property.put)(value.get()), S_OK);
      EXPECT_EQ(textOf(job.media, c.property.get), c.value);
    }
    Bstr out;
    HRESULT answer = S_OK;
    {
      const FailingNew failing(1);
      answer = (job.media.*c.property.get)(out.out());
    }
    EXPECT_EQ(answer, S_FALSE);
    EXPECT_TRUE(out.isNull());
    EXPECT_EQ(resultOf(job.media), kOutOfMemory);
    EXPECT_EQ(errorOf(job.media), c.getting);
  }
}

// Whichever allocation fails: an add is done, refused with a sentence, or broken off, and then
// nothing of the list is left.
TEST(MediaObject, AnAddThatFindsNoMemoryIsRefusedOrDiscardsTheList) {
  const struct {
    const char* what;
    HRESULT (CQuillonMediaRW::*add)(BSTR, VARIANT_BOOL*);
    const char* name;
    const char* broken;
  } cases[] = {
      {"file", &CQuillonMediaRW::AddFile, "in/2", "Cannot add the given file."},
      {"directory", &CQuillonMediaRW::AddDirectory, "in", "Cannot add the given directory."},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    const auto outcomes = withEachAllocationFailing([&](long n, bool& happened) {
      Job job;
      const Bstr name((job.dir / c.name).string());
      VARIANT_BOOL done = 7;
      HRESULT answer = S_OK;
      {
        const FailingNew failing(n);
        answer = (job.media.*c.add)(name.get(), &done);
        happened = failing.happened();
      }
      const HRESULT result = resultOf(job.media);  // reading the sentence sets it anew
      const std::string sentence = errorOf(job.media);
      if (answer == S_OK) {
        // The toolkit goes on without an element that finds no memory: without its UIDs an object
        // is passed over. One that was refused late is in the list all the same.
        EXPECT_GE(job.count(), 1) << n;
        EXPECT_EQ(sentence.empty(), done == kTrue) << n << sentence;
        return std::string();
      }
      EXPECT_EQ(answer, S_FALSE);
      EXPECT_EQ(done, 7);
      EXPECT_EQ(result, kFailed);
      EXPECT_EQ(job.count(), -1);
      EXPECT_EQ(errorOf(job.media), "The patient list is invalid.");
      // The next add begins anew.
      EXPECT_EQ(job.media.AddFile(Bstr((job.dir / "in/2").string()).get(), &done), S_OK);
      EXPECT_EQ(job.count(), 1);
      return sentence;
    });
    EXPECT_TRUE(outcomes.contains(c.broken));
  }
}

TEST(MediaObject, ACreationThatFindsNoMemoryLosesNoFile) {
  const auto outcomes = withEachAllocationFailing([&](long n, bool& happened) {
    Job job;
    VARIANT_BOOL done = 7;
    HRESULT answer = S_OK;
    {
      const FailingNew failing(n);
      answer = job.media.CreateDicomFileSet(&done);
      happened = failing.happened();
    }
    const HRESULT result = resultOf(job.media);  // reading the sentence sets it anew
    const std::string sentence = errorOf(job.media);
    const fs::path moved = job.dir / "root/DICOMOBJ/QLN00001";
    const bool isMoved = fs::exists(moved);
    EXPECT_EQ(readBytes(isMoved ? moved : job.dir / "in/1"), job.objects[0]) << n;
    const bool isCreated = answer == S_OK && done == kTrue;
    EXPECT_EQ(!textOf(job.media, &CQuillonMediaRW::get_IheLabel).empty(), isCreated) << n;
    EXPECT_EQ(sentence.empty(), isCreated) << n << sentence;
    EXPECT_TRUE(!isCreated || (isMoved && fs::exists(job.dir / "root/LABEL.TXT"))) << n;
    if (answer != S_OK) {
      EXPECT_EQ(done, 7);
      EXPECT_EQ(result, kFailed);
      EXPECT_EQ(job.count(), 1) << "the list stays as it was";
    }
    return answer == S_OK ? std::string() : sentence;
  });
  EXPECT_TRUE(outcomes.contains("Cannot create the DICOMDIR file."));
}

// Also when not even the sentence finds memory.
TEST(MediaObject, AQuestionAboutTheDiscThatFindsNoMemoryIsAnsweredNo) {
  const TempDir dir;
  const MediaCreationKey none(dir.path());
  for (const bool isLasting : {false, true}) {
    for (const GetBool question :
         {&CQuillonMediaRW::get_CDRWHasContent, &CQuillonMediaRW::get_CDIsRecordable}) {
      const auto outcomes = withEachAllocationFailing([&](long n, bool& happened) {
        CQuillonMediaRW media;
        VARIANT_BOOL answer = 7;
        HRESULT hr = S_OK;
        {
          const FailingNew failing(n, isLasting);
          EXPECT_NO_THROW(hr = (media.*question)(&answer)) << n;
          happened = failing.happened();
        }
        EXPECT_EQ(answer, VARIANT_FALSE) << n;
        EXPECT_EQ(hr, S_FALSE) << n;
        return errorOf(media);
      });
      EXPECT_TRUE(isLasting ||
                  outcomes.contains("Cannot determine the media type in the recorder."));
    }
  }
}

// What is delivered is whole, and what could not be delivered is still there.
TEST(MediaObject, AWriteThatFindsNoMemoryKeepsTheFileSet) {
  Job job;
  VARIANT_BOOL done = 0;
  ASSERT_EQ(job.media.CreateDicomFileSet(&done), S_OK);
  ASSERT_EQ(done, kTrue);
  job.media.put_ClearAfterWrite(0);
  job.media.put_PerformDirectCopy(kTrue);
  const fs::path target = job.dir / "to";
  job.media.put_DirectCopyDirectory(Bstr(target.string()).get());
  const fs::path before = fs::current_path();
  const auto outcomes = withEachAllocationFailing([&](long n, bool& happened) {
    fs::remove_all(target);
    done = 7;
    HRESULT answer = S_OK;
    {
      const FailingNew failing(n);
      EXPECT_NO_THROW(answer = job.media.Write(&done)) << n;
      happened = failing.happened();
    }
    EXPECT_EQ(fs::current_path(), before) << n;
    EXPECT_EQ(done, answer == S_OK ? kTrue : 7) << n;
    for (const char* name : {"DICOMDIR", "LABEL.TXT", "DICOMOBJ/QLN00001"}) {
      const fs::path kept = job.dir / "root" / name;
      EXPECT_TRUE(fs::exists(kept)) << n << name;
      EXPECT_TRUE(answer != S_OK || readBytes(target / name) == readBytes(kept)) << n << name;
    }
    return errorOf(job.media);
  });
  EXPECT_TRUE(outcomes.contains("WriteMedia caught an exception."));
  EXPECT_TRUE(outcomes.contains("The media fileset has been successfully written."));
}

}  // namespace
}  // namespace quillon::test
