#include "server/media_object/media_rw.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "platform/testing.h"
#include "support/failing_new.h"
#include "support/object_maker.h"
#include "support/temp_dir.h"

namespace quillon::test {
namespace {

namespace fs = std::filesystem;

constexpr HRESULT kInvalidArgument = static_cast<HRESULT>(0x80070057);
constexpr std::int16_t kTrue = -1;

class Bstr {
 public:
  Bstr() = default;
  explicit Bstr(const std::string& utf8) {
    const std::u16string text = fs::path(utf8).u16string();
    value_ = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
  }
  ~Bstr() { SysFreeString(value_); }
  Bstr(const Bstr&) = delete;
  Bstr& operator=(const Bstr&) = delete;

  [[nodiscard]] BSTR get() const { return value_; }
  BSTR* out() { return &value_; }
  [[nodiscard]] bool isNull() const { return value_ == nullptr; }
  [[nodiscard]] std::string text() const {
    return isNull() ? std::string()
                    : fs::path(std::u16string(value_, SysStringLen(value_))).string();
  }

 private:
  BSTR value_ = nullptr;
};

using GetString = HRESULT (CQuillonMediaRW::*)(BSTR*);
using PutString = HRESULT (CQuillonMediaRW::*)(BSTR);
using GetBool = HRESULT (CQuillonMediaRW::*)(VARIANT_BOOL*);
using PutBool = HRESULT (CQuillonMediaRW::*)(VARIANT_BOOL);

std::string textOf(CQuillonMediaRW& media, GetString get) {
  Bstr value;
  EXPECT_EQ((media.*get)(value.out()), S_OK);
  return value.text();
}

std::string errorOf(CQuillonMediaRW& media) {
  return textOf(media, &CQuillonMediaRW::get_ErrMessageText);
}

// Result as the last operation left it.
HRESULT resultOf(CQuillonMediaRW& media) {
  LONG result = 77;
  EXPECT_EQ(media.get_Result(&result), S_OK);
  return static_cast<HRESULT>(result);
}

struct BoolProperty {
  const char* name;
  GetBool get;
  PutBool put;
  bool isTrueAtFirst;
};
#define QUILLON_BOOL(name, first) \
  BoolProperty { #name, &CQuillonMediaRW::get_##name, &CQuillonMediaRW::put_##name, first }
const BoolProperty kBoolProperties[] = {
    QUILLON_BOOL(AllowAddHierarchyTree, true), QUILLON_BOOL(UseHierarchyForDicomObjects, false),
    QUILLON_BOOL(ClearAfterWrite, true),       QUILLON_BOOL(PerformFullErase, false),
    QUILLON_BOOL(SimulateCreation, false),     QUILLON_BOOL(EjectMediumAfterCreation, true),
    QUILLON_BOOL(IncludeOtherContent, true),   QUILLON_BOOL(PerformDirectCopy, false),
};
#undef QUILLON_BOOL

TEST(MediaObject, OnlyMinusOneIsTrue) {
  for (const BoolProperty& property : kBoolProperties) {
    SCOPED_TRACE(property.name);
    CQuillonMediaRW media;
    VARIANT_BOOL value = 5;
    EXPECT_EQ((media.*property.get)(&value), S_OK);
    EXPECT_EQ(value, property.isTrueAtFirst ? kTrue : 0);
    // The values of the others tell whether two properties share a flag.
    for (const int put : {-1, 1, -1, 0, -1, 2, -1, 0x00FF}) {
      EXPECT_EQ((media.*property.put)(static_cast<VARIANT_BOOL>(put)), S_OK);
      EXPECT_EQ((media.*property.get)(&value), S_OK);
      EXPECT_EQ(value, put == -1 ? kTrue : 0) << put;
    }
    EXPECT_EQ((media.*property.put)(property.isTrueAtFirst ? 0 : kTrue), S_OK);
    for (const BoolProperty& other : kBoolProperties) {
      if (other.get == property.get) continue;
      EXPECT_EQ((media.*other.get)(&value), S_OK);
      EXPECT_EQ(value, other.isTrueAtFirst ? kTrue : 0) << other.name;
    }
    EXPECT_EQ((media.*property.get)(nullptr), S_FALSE);
    EXPECT_EQ(resultOf(media), kInvalidArgument);
    EXPECT_EQ(errorOf(media), "One or more arguments are invalid.");
  }
}

TEST(MediaObject, TextSettingsKeepTheOldValueWhenTheNewOneIsRefused) {
  const std::string listed = "cannot contain these characters: ";
  const std::string directorySet = ":*?\"<>|";
  const struct {
    const char* what;
    GetString get;
    PutString put;
    std::string value;
    std::string expected;  // what the getter reads afterwards
    std::string sentence;
    HRESULT result;
  } cases[] = {
      {"volume of 32", &CQuillonMediaRW::get_VolumeName, &CQuillonMediaRW::put_VolumeName,
       std::string(32, 'V'), std::string(32, 'V'), "", S_OK},
      {"volume of 33", &CQuillonMediaRW::get_VolumeName, &CQuillonMediaRW::put_VolumeName,
       std::string(33, 'V'), "", "", S_OK},
      {"object directory", &CQuillonMediaRW::get_DicomObjectDirectory,
       &CQuillonMediaRW::put_DicomObjectDirectory, "IMAGES", "IMAGES", "", S_OK},
      {"object directory with a drive", &CQuillonMediaRW::get_DicomObjectDirectory,
       &CQuillonMediaRW::put_DicomObjectDirectory, "D:\\OBJ", "DICOMOBJ", "", S_OK},
      {"empty object directory", &CQuillonMediaRW::get_DicomObjectDirectory,
       &CQuillonMediaRW::put_DicomObjectDirectory, "", "DICOMOBJ", "The path name is invalid.",
       S_OK},
      {"object directory of a bad name", &CQuillonMediaRW::get_DicomObjectDirectory,
       &CQuillonMediaRW::put_DicomObjectDirectory, "A*\\B", "DICOMOBJ",
       "The directory name A*\\ " + listed + directorySet, S_OK},
      {"content directory with a drive", &CQuillonMediaRW::get_OtherContentDirectory,
       &CQuillonMediaRW::put_OtherContentDirectory, "C:VIEW", "QUILLON", "", S_OK},
      {"content directory", &CQuillonMediaRW::get_OtherContentDirectory,
       &CQuillonMediaRW::put_OtherContentDirectory, "VIEW\\ER", "VIEW\\ER", "", S_OK},
      {"root", &CQuillonMediaRW::get_DicomRootDirectory, &CQuillonMediaRW::put_DicomRootDirectory,
       "/set/it", "/set/it", "", S_OK},
      {"direct copy", &CQuillonMediaRW::get_DirectCopyDirectory,
       &CQuillonMediaRW::put_DirectCopyDirectory, "E:\\OUT", "E:\\OUT", "", S_OK},
      {"bad direct copy", &CQuillonMediaRW::get_DirectCopyDirectory,
       &CQuillonMediaRW::put_DirectCopyDirectory, "1:\\OUT", "C:\\",
       "The direct copy directory is invalid.", S_FALSE},
      {"empty direct copy", &CQuillonMediaRW::get_DirectCopyDirectory,
       &CQuillonMediaRW::put_DirectCopyDirectory, "", "C:\\",
       "The direct copy directory is invalid.", S_FALSE},
      {"unique ID", &CQuillonMediaRW::get_UniquePatientId, &CQuillonMediaRW::put_UniquePatientId,
       "DOE^JOHN|12345", "DOE^JOHN|12345", "", S_OK},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    CQuillonMediaRW media;
    EXPECT_EQ((media.*c.put)(Bstr(c.value).get()), c.result);
    EXPECT_EQ(resultOf(media), c.result);
    EXPECT_EQ(errorOf(media), c.sentence);
    EXPECT_EQ(textOf(media, c.get), c.expected);
    EXPECT_EQ((media.*c.get)(nullptr), S_FALSE);
    EXPECT_EQ(resultOf(media), kInvalidArgument);
  }
}

TEST(MediaObject, RootDirectoriesAreChecked) {
  CQuillonMediaRW media;
  const std::string first = textOf(media, &CQuillonMediaRW::get_DicomRootDirectory);
  EXPECT_TRUE(first.ends_with("DICOM"));
  EXPECT_TRUE(fs::exists(fs::path(first).parent_path()));
  const std::string longest = "/" + std::string(259, 'R');
  EXPECT_EQ(media.put_DicomRootDirectory(Bstr(longest).get()), S_OK);
  EXPECT_EQ(textOf(media, &CQuillonMediaRW::get_DicomRootDirectory), longest);
  EXPECT_EQ(errorOf(media), "");
  EXPECT_EQ(media.put_DicomRootDirectory(Bstr(longest + "R").get()), S_OK);
  EXPECT_EQ(textOf(media, &CQuillonMediaRW::get_DicomRootDirectory), longest);
  EXPECT_EQ(errorOf(media), "The path name " + longest + "R is longer than 260 characters.");
}

TEST(MediaObject, AFreshOneReadsNothing) {
  CQuillonMediaRW media;
  EXPECT_EQ(resultOf(media), S_OK);
  for (const GetString get :
       {&CQuillonMediaRW::get_IheLabel, &CQuillonMediaRW::get_VolumeName,
        &CQuillonMediaRW::get_UniquePatientId, &CQuillonMediaRW::get_ErrMessageText}) {
    Bstr value("left over");
    BSTR out = value.get();
    EXPECT_EQ((media.*get)(&out), S_OK);
    EXPECT_EQ(out, nullptr);
  }
  std::uint64_t size = 9;
  EXPECT_EQ(media.get_TotalSizeOfFileSet(&size), S_FALSE);
  EXPECT_EQ(size, 0U);
  EXPECT_EQ(errorOf(media), "There is no patient information to process.");
  EXPECT_EQ(media.put_UniquePatientId(Bstr("X").get()), S_OK);
  EXPECT_EQ(media.put_UniquePatientId(nullptr), S_OK);
  EXPECT_EQ(textOf(media, &CQuillonMediaRW::get_UniquePatientId), "");
}

TEST(MediaObject, ANullOutPointerIsToldByResult) {
  CQuillonMediaRW media;
  const struct {
    const char* what;
    std::function<HRESULT()> call;
  } cases[] = {
      {"Result", [&] { return media.get_Result(nullptr); }},
      {"AddFile", [&] { return media.AddFile(Bstr("x").get(), nullptr); }},
      {"AddDirectory", [&] { return media.AddDirectory(Bstr("x").get(), nullptr); }},
      {"CreateDicomFileSet", [&] { return media.CreateDicomFileSet(nullptr); }},
      {"TotalSizeOfFileSet", [&] { return media.get_TotalSizeOfFileSet(nullptr); }},
      {"TotalNumberOfFilesInFileSet",
       [&] { return media.get_TotalNumberOfFilesInFileSet(nullptr); }},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    media.put_SimulateCreation(0);
    ASSERT_EQ(resultOf(media), S_OK);
    EXPECT_EQ(c.call(), S_FALSE);
    EXPECT_EQ(resultOf(media), kInvalidArgument);
    EXPECT_EQ(errorOf(media), "One or more arguments are invalid.");
  }
}

TEST(MediaObject, DoesAWholeJob) {
  const TempDir dir;
  ::setenv("QUILLON_REGISTRY", (dir / "none.reg").c_str(), 1);
  const platform::testing::Scope substitutes;
  platform::testing::SubstituteClock([] {
    SYSTEMTIME day{};
    day.wYear = 2009;
    day.wMonth = 3;
    day.wDay = 5;
    return day;
  });
  makeSampleTree(dir / "in");
  CQuillonMediaRW media;
  media.put_DicomRootDirectory(Bstr((dir / "root").string()).get());
  media.put_IncludeOtherContent(0);
  VARIANT_BOOL done = 7;
  EXPECT_EQ(media.AddDirectory(Bstr((dir / "in").string()).get(), &done), S_OK);
  EXPECT_EQ(done, 0);  // no patient key yet
  EXPECT_EQ(resultOf(media), S_OK);
  media.put_UniquePatientId(Bstr("DOE").get());
  EXPECT_EQ(media.AddDirectory(Bstr((dir / "in").string()).get(), &done), S_OK);
  EXPECT_EQ(done, kTrue) << errorOf(media);
  writeText(dir / "text", "Not a DICOM file, whatever its name.");
  EXPECT_EQ(media.AddFile(Bstr((dir / "text").string()).get(), &done), S_OK);
  EXPECT_EQ(done, 0);
  EXPECT_EQ(errorOf(media),
            "Cannot read the DICOM information from " + (dir / "text").string() + ".");
  ULONG count = 0;
  std::uint64_t size = 0;
  EXPECT_EQ(media.get_TotalNumberOfFilesInFileSet(&count), S_OK);
  EXPECT_EQ(media.get_TotalSizeOfFileSet(&size), S_OK);
  std::uint64_t files = 0;
  std::uint64_t bytes = 0;
  for (const auto& entry : fs::recursive_directory_iterator(dir / "in")) {
    if (!entry.is_regular_file()) continue;
    ++files;
    bytes += entry.file_size();
  }
  EXPECT_GT(files, 5U);
  EXPECT_EQ(count, files);
  EXPECT_EQ(size, bytes);

  EXPECT_EQ(media.CreateDicomFileSet(&done), S_OK);
  EXPECT_EQ(done, kTrue) << errorOf(media);
  EXPECT_TRUE(fs::exists(dir / "root/DICOMDIR"));
  EXPECT_NE(textOf(media, &CQuillonMediaRW::get_IheLabel).find("Fileset Creator:  Quillon"),
            std::string::npos);
  EXPECT_EQ(media.get_TotalNumberOfFilesInFileSet(&count), S_FALSE);
  EXPECT_EQ(errorOf(media), "There is no patient information to process.");

  // A failing creation, and one that is refused, leave no label of the one before.
  EXPECT_EQ(media.CreateDicomFileSet(&done), S_OK);
  EXPECT_EQ(done, 0);
  EXPECT_EQ(resultOf(media), S_OK);
  EXPECT_EQ(textOf(media, &CQuillonMediaRW::get_IheLabel), "");
  EXPECT_EQ(media.Wipe(), S_OK);
  EXPECT_FALSE(fs::exists(dir / "root"));
  ::unsetenv("QUILLON_REGISTRY");
}

TEST(MediaObject, AFailingLabelIsNotShown) {
  const TempDir dir;
  ObjectDescription d;
  makeObjectFile(dir / "a", d);
  fs::create_directories(dir / "root/LABEL.TXT");
  CQuillonMediaRW media;
  media.put_DicomRootDirectory(Bstr((dir / "root").string()).get());
  media.put_IncludeOtherContent(0);
  media.put_UniquePatientId(Bstr("DOE").get());
  VARIANT_BOOL done = 7;
  EXPECT_EQ(media.AddFile(Bstr((dir / "a").string()).get(), &done), S_OK);
  EXPECT_EQ(done, kTrue);
  EXPECT_EQ(media.CreateDicomFileSet(&done), S_OK);
  EXPECT_EQ(done, 0);
  EXPECT_EQ(errorOf(media), "Cannot open the file " + (dir / "root").string() + "\\LABEL.TXT.");
  EXPECT_EQ(textOf(media, &CQuillonMediaRW::get_IheLabel), "");
}

// ---- without memory

constexpr HRESULT kOutOfMemory = static_cast<HRESULT>(0x8007000E);
constexpr HRESULT kFailed = static_cast<HRESULT>(0x80004005);

// A job with one object in its list and another file that can be added.
struct Job {
  Job() {
    ::setenv("QUILLON_REGISTRY", (dir / "none.reg").c_str(), 1);
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
  ~Job() { ::unsetenv("QUILLON_REGISTRY"); }
  Job(const Job&) = delete;
  Job& operator=(const Job&) = delete;

  // -1 when there are none, with the sentence that says so.
  int count() {
    ULONG files = 0;
    return media.get_TotalNumberOfFilesInFileSet(&files) == S_OK ? static_cast<int>(files) : -1;
  }

  TempDir dir;
  std::vector<Bytes> objects;
  CQuillonMediaRW media;
};

TEST(MediaObject, ATextThatFindsNoMemoryIsToldByResult) {
  const struct {
    GetString get;
    PutString put;  // null for one that cannot be put
    std::string value;
    std::string getting, putting;
  } cases[] = {
      {&CQuillonMediaRW::get_IheLabel, nullptr, "", "Cannot retrieve the IHE Label.", ""},
      {&CQuillonMediaRW::get_ErrMessageText, nullptr, "", "Cannot retrieve the error message text.",
       ""},
      {&CQuillonMediaRW::get_VolumeName, &CQuillonMediaRW::put_VolumeName,
       "A VOLUME NAME OF 29 LETTERS", "Cannot retrieve the volume name.",
       "Cannot set the volume name."},
      {&CQuillonMediaRW::get_DicomRootDirectory, &CQuillonMediaRW::put_DicomRootDirectory,
       "/a/root/directory/that/is/longer/than/the/one/before/it/in/the/temporary/directory/x",
       "Cannot retrieve the DICOM root directory.", "Cannot set the DICOM root directory."},
      {&CQuillonMediaRW::get_DicomObjectDirectory, &CQuillonMediaRW::put_DicomObjectDirectory,
       "OBJECTS\\ELSEWHERE\\BELOW", "Cannot retrieve the DICOM object directory.",
       "Cannot set the DICOM object directory."},
      {&CQuillonMediaRW::get_OtherContentDirectory, &CQuillonMediaRW::put_OtherContentDirectory,
       "VIEWER\\ELSEWHERE\\BELOW", "Cannot retrieve the DICOM processing directory.",
       "Cannot set the DICOM processing directory."},
      {&CQuillonMediaRW::get_DirectCopyDirectory, &CQuillonMediaRW::put_DirectCopyDirectory,
       "E:\\A\\COPY\\ELSEWHERE", "Cannot retrieve the direct copy directory.",
       "Cannot set the direct copy directory."},
      {&CQuillonMediaRW::get_UniquePatientId, &CQuillonMediaRW::put_UniquePatientId,
       "A PATIENT WITH A RATHER LONG KEY", "Cannot retrieve the unique patient ID.",
       "Cannot set the unique patient ID."},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.getting);
    Job job;
    VARIANT_BOOL done = 0;
    EXPECT_EQ(job.media.CreateDicomFileSet(&done), S_OK);        // makes a label
    EXPECT_EQ(job.media.put_DicomRootDirectory(nullptr), S_OK);  // leaves a sentence
    if (c.put != nullptr) {
      const std::string before = textOf(job.media, c.get);
      const Bstr value(c.value);
      HRESULT answer = S_OK;
      {
        const FailingNew failing(1);
        answer = (job.media.*c.put)(value.get());
      }
      EXPECT_EQ(answer, S_FALSE);
      EXPECT_EQ(resultOf(job.media), kOutOfMemory);
      EXPECT_EQ(errorOf(job.media), c.putting);
      EXPECT_EQ(textOf(job.media, c.get), before);
      EXPECT_EQ((job.media.*c.put)(value.get()), S_OK);
      EXPECT_EQ(textOf(job.media, c.get), c.value);
    }
    Bstr out;
    HRESULT answer = S_OK;
    {
      const FailingNew failing(1);
      answer = (job.media.*c.get)(out.out());
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

}  // namespace
}  // namespace quillon::test
