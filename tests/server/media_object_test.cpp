#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>

#include "media_calls.h"
#include "support/object_maker.h"
#include "support/temp_dir.h"
#include "support/workstation_settings.h"

namespace quillon::test {
namespace {

namespace fs = std::filesystem;

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
    TextProperty property;
    std::string value;
    std::string expected;  // what the getter reads afterwards
    std::string sentence;
    HRESULT result;
  } cases[] = {
      {"volume of 32", kVolumeName, std::string(32, 'V'), std::string(32, 'V'), "", S_OK},
      {"volume of 33", kVolumeName, std::string(33, 'V'), "", "", S_OK},
      {"object directory", kDicomObjectDirectory, "IMAGES", "IMAGES", "", S_OK},
      {"object directory with a drive", kDicomObjectDirectory, "D:\\OBJ", "DICOMOBJ", "", S_OK},
      {"empty object directory", kDicomObjectDirectory, "", "DICOMOBJ", "The path name is invalid.",
       S_OK},
      {"object directory of a bad name", kDicomObjectDirectory, "A*\\B", "DICOMOBJ",
       "The directory name A*\\ " + listed + directorySet, S_OK},
      {"content directory with a drive", kOtherContentDirectory, "C:VIEW", "QUILLON", "", S_OK},
      {"content directory", kOtherContentDirectory, "VIEW\\ER", "VIEW\\ER", "", S_OK},
      {"root", kDicomRootDirectory, "/set/it", "/set/it", "", S_OK},
      {"direct copy", kDirectCopyDirectory, "E:\\OUT", "E:\\OUT", "", S_OK},
      {"bad direct copy", kDirectCopyDirectory, "1:\\OUT", "C:\\",
       "The direct copy directory is invalid.", S_FALSE},
      {"empty direct copy", kDirectCopyDirectory, "", "C:\\",
       "The direct copy directory is invalid.", S_FALSE},
      {"unique ID", kUniquePatientId, "DOE^JOHN|12345", "DOE^JOHN|12345", "", S_OK},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    CQuillonMediaRW media;
    EXPECT_EQ((media.*c.property.put)(Bstr(c.value).get()), c.result);
    EXPECT_EQ(resultOf(media), c.result);
    EXPECT_EQ(errorOf(media), c.sentence);
    EXPECT_EQ(textOf(media, c.property.get), c.expected);
    EXPECT_EQ((media.*c.property.get)(nullptr), S_FALSE);
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
  const MediaCreationKey none(dir.path());
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
}

// The last result of a job can be read after its totals and after all was cleared away.
TEST(MediaObject, TotalsAndWipingLeaveTheResultAlone) {
  const TempDir dir;
  const MediaCreationKey none(dir.path());
  makeObjectFile(dir / "a", {});
  CQuillonMediaRW media;
  media.put_DicomRootDirectory(Bstr((dir / "root").string()).get());
  media.put_UniquePatientId(Bstr("DOE").get());
  ULONG count = 0;
  std::uint64_t size = 0;
  VARIANT_BOOL done = 0;
  for (const HRESULT counted : {S_FALSE, S_OK}) {
    EXPECT_EQ(media.Write(nullptr), S_FALSE);
    EXPECT_EQ(media.get_TotalNumberOfFilesInFileSet(&count), counted);
    EXPECT_EQ(media.get_TotalSizeOfFileSet(&size), counted);
    EXPECT_EQ(resultOf(media), E_INVALIDARG);
    EXPECT_EQ(media.AddFile(Bstr((dir / "a").string()).get(), &done), S_OK);
  }
  EXPECT_EQ(media.Write(nullptr), S_FALSE);
  EXPECT_EQ(media.Wipe(), S_OK);
  EXPECT_EQ(resultOf(media), E_INVALIDARG);
}

TEST(MediaObject, TheLabelGoesWithTheNextDirectoryAndTheNextCreation) {
  struct Next {
    const char* what;
    std::function<void(CQuillonMediaRW&)> happens;
  };
  const TempDir dir;
  const MediaCreationKey none(dir.path());
  const Next cases[] = {
      {"a creation without a place for its answer",
       [](CQuillonMediaRW& media) { EXPECT_EQ(media.CreateDicomFileSet(nullptr), S_FALSE); }},
      {"a directory that is not there",
       [&](CQuillonMediaRW& media) {
         VARIANT_BOOL done = 0;
         EXPECT_EQ(media.AddDirectory(Bstr((dir / "none").string()).get(), &done), S_OK);
       }},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    makeObjectFile(dir / "a", {});
    CQuillonMediaRW media;
    media.put_DicomRootDirectory(Bstr((dir / "root").string()).get());
    media.put_UniquePatientId(Bstr("DOE").get());
    VARIANT_BOOL done = 0;
    EXPECT_EQ(media.AddFile(Bstr((dir / "a").string()).get(), &done), S_OK);
    EXPECT_EQ(media.CreateDicomFileSet(&done), S_OK);
    EXPECT_NE(textOf(media, &CQuillonMediaRW::get_IheLabel), "");
    c.happens(media);
    EXPECT_EQ(textOf(media, &CQuillonMediaRW::get_IheLabel), "");
  }
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

}  // namespace
}  // namespace quillon::test
