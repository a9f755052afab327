// The class MsftFileSystemImage and its items: what they accept, refuse and answer.
#include "image_fixture.h"
#include "support/disc_service.h"

namespace quillon::test {
namespace {

// How often each of the names stands in the image as Joliet writes it, and the image's length.
std::vector<std::size_t> entriesOf(const std::string& image) {
  std::vector<std::size_t> counts{image.size()};
  for (const std::string_view name :
       {"ONE", "TWO", "LINK", "LINKED", "EMPTY", "BOTH", "other", "tree"}) {
    std::string units;
    for (const char unit : name) units.append({'\0', unit});
    std::size_t count = 0;
    for (std::size_t at = 0; (at = image.find(units, at)) != std::string::npos; ++at) ++count;
    counts.push_back(count);
  }
  return counts;
}

class FileSystemImageTest : public ImageTest {
 protected:
  // The whole image as it would be now.
  std::string imageBytes() {
    ComPtr<IStream> stream;
    std::string bytes;
    EXPECT_EQ(create(stream), S_OK);
    EXPECT_EQ(readAll(*stream.Get(), bytes), S_OK);
    return bytes;
  }
  LONG imageSectors() { return static_cast<LONG>(imageBytes().size() / 2048); }
};

TEST_F(FileSystemImageTest, ARefusedTreeLeavesTheImageAsItWas) {
  makeFile("good/A/FILE", "content");
  makeFile("tree/FILE", "content");
  makeFile("same/A/FILE", "other content");
  makeFile("same/A/NEW", "content");
  makeFile("wall/A", "a file where a directory is");
  makeFile("dangling/FILE", "content");
  std::filesystem::create_symlink("nowhere", dir_ / "dangling/LINK");
  makeFile("cycle/DEEP/FILE", "content");
  std::filesystem::create_directory_symlink("..", dir_ / "cycle/DEEP/UP");
  makeFile("back/a\\b", "content");
  makeDirectory("special");
  ASSERT_EQ(::mkfifo((dir_ / "special/PIPE").c_str(), 0666), 0);
  makeHole("large/FILE", (std::uint64_t{1} << 32));
  makeFile("deep/L2/L3/L4/L5/L6/L7/L8/L9/FILE", "content");

  const struct {
    const char* what;
    const char* path;
    bool strict;
    HRESULT expected;
  } cases[] = {
      {"a file", "tree/FILE", true, fsi(0x09)},
      {"nothing", "absent", true, fsi(0x09)},
      {"a file of the same name", "same", true, fsi(0x12)},
      {"a file in the place of a directory", "wall", true, fsi(0x12)},
      {"a link that leads nowhere", "dangling", true, fsi(0x08)},
      {"a link that leads back", "cycle", true, HRESULT_FROM_WIN32(ERROR_CANT_RESOLVE_FILENAME)},
      {"a backslash in a name", "back", true, fsi(0x10)},
      {"a pipe", "special", true, fsi(0x08)},
      {"4 GiB in one extent", "large", true, fsi(0x32)},
      {"nine levels", "deep", true, fsi(0x31)},
      {"4 GiB in several extents", "large", false, S_OK},
      {"nine levels where they may be", "deep", false, S_OK},
  };
  ASSERT_EQ(addTree("good"), S_OK);
  const std::string before = imageBytes();
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    image_->put_StrictFileSystemCompliance(c.strict ? VARIANT_TRUE : VARIANT_FALSE);
    EXPECT_EQ(addTree(c.path), c.expected);
    if (SUCCEEDED(c.expected)) continue;
    ComPtr<IErrorInfo> info;
    EXPECT_EQ(GetErrorInfo(0, info.Put()), S_OK) << "says which file it is";
    EXPECT_TRUE(imageBytes() == before);
  }
  // What was allowed without strict compliance is refused with it when the image is made.
  image_->put_StrictFileSystemCompliance(VARIANT_TRUE);
  ComPtr<IFileSystemImageResult> result;
  EXPECT_EQ(image_->CreateResultImage(result.Put()), fsi(0x32));
}

TEST_F(FileSystemImageTest, TreesAreJoinedWithAndWithoutTheirOwnName) {
  makeFile("tree/BOTH/ONE", "1");
  makeFile("other/BOTH/TWO", "2");
  makeDirectory("other/EMPTY");
  std::filesystem::create_symlink(dir_ / "tree/BOTH/ONE", dir_ / "other/LINK");
  std::filesystem::create_directory_symlink(dir_ / "tree/BOTH", dir_ / "other/LINKED");
  ASSERT_EQ(addTree("tree"), S_OK);
  ASSERT_EQ(addTree("other"), S_OK);
  ASSERT_EQ(addTree("other", true), S_OK);
  EXPECT_EQ(root_->AddTree(Bstr(wide("tree//")), VARIANT_TRUE), S_OK);
  const std::string joined = imageBytes();

  for (const char* file : {"BOTH/ONE", "LINK", "LINKED/ONE", "other/BOTH/TWO", "other/LINK",
                           "other/LINKED/ONE", "tree/BOTH/ONE", "BOTH/TWO"}) {
    makeFile(std::string("whole/") + file, std::string_view(file).ends_with("TWO") ? "2" : "1");
  }
  makeDirectory("whole/EMPTY");
  makeDirectory("whole/other/EMPTY");
  renew();
  ASSERT_EQ(addTree("whole"), S_OK);
  EXPECT_EQ(entriesOf(joined), entriesOf(imageBytes()));
  EXPECT_EQ(entriesOf(joined)[1], 4U) << "found at all";

  // Relative to the working directory at the time of the call.
  renew();
  makeFile("work/sub/FILE", "content");
  ASSERT_EQ(root_->AddTree(Bstr(u"sub"), VARIANT_FALSE), S_OK);
  std::filesystem::current_path(dir_.path());
  ComPtr<IStream> stream;
  ASSERT_EQ(create(stream), S_OK);
  std::string bytes;
  EXPECT_EQ(readAll(*stream.Get(), bytes), S_OK);
}

TEST_F(FileSystemImageTest, TheDiscInTheRecorderSetsTheLimit) {
  FakeDiscService service;
  const RegisteredDiscService registered(service);
  ComPtr<IDiscRecorder2> recorder;
  ASSERT_EQ(CoCreateInstance(CLSID_MsftDiscRecorder2, nullptr, CLSCTX_INPROC_SERVER,
                             IID_IDiscRecorder2, recorder.PutVoid()),
            S_OK);
  ASSERT_EQ(recorder->InitializeDiscRecorder(Bstr(u"drive-1")), S_OK);
  makeFile("tree/FILE", "content");
  ASSERT_EQ(addTree("tree"), S_OK);
  const LONG used = imageSectors();
  using Choose = HRESULT (IFileSystemImage::*)(IDiscRecorder2*);
  for (const Choose choose : {Choose{&IFileSystemImage::SetMaxMediaBlocksFromDevice},
                              Choose{&IFileSystemImage::ChooseImageDefaults}}) {
    const auto call = [&](IDiscRecorder2* with) { return (image_.Get()->*choose)(with); };
    EXPECT_EQ(call(nullptr), E_POINTER);
    ComPtr<IFileSystemImageResult> result;
    for (const LONG free : {used, used - 1, LONG{0}}) {
      SCOPED_TRACE(free);
      service.Disc().freeSectors = free;
      ASSERT_EQ(call(recorder.Get()), S_OK);
      EXPECT_EQ(image_->CreateResultImage(result.Put()), free == used ? S_OK : fsi(0x20));
    }
    for (const char* failing : {"Create MsftDiscFormat2Data", "IDiscFormat2Data::put_Recorder",
                                "IDiscFormat2Data::get_FreeSectorsOnMedia"}) {
      SCOPED_TRACE(failing);
      service.faults = {{.call = failing, .result = E_IMAPI_RECORDER_MEDIA_NO_MEDIA}};
      EXPECT_EQ(call(recorder.Get()), E_IMAPI_RECORDER_MEDIA_NO_MEDIA);
    }
    service.faults.clear();
  }
}

TEST_F(FileSystemImageTest, SettingsAreChecked) {
  const struct {
    const char16_t* name;
    HRESULT expected;
  } names[] = {{u"12345678901234567890123456789012", S_OK},
               {u"123456789012345678901234567890123", fsi(0x04)},
               {u"line\nbreak", fsi(0x04)},
               {u"half \xD83D", fsi(0x04)},
               {u"", S_OK},
               {u"Disc of the 5th (1/2)", S_OK}};
  for (const auto& c : names) {
    SCOPED_TRACE(narrow(c.name));
    EXPECT_EQ(image_->put_VolumeName(Bstr(c.name)), c.expected);
  }
  const std::string image = imageBytes();
  EXPECT_NE(image.find("DISC_OF_THE_5TH__1_2_"), std::string::npos) << "the last that was taken";
  renew();
  EXPECT_NE(imageBytes().find("05032021"), std::string::npos) << "the day";

  EXPECT_EQ(image_->put_FileSystemsToCreate(static_cast<FsiFileSystems>(8)), fsi(0x01));
  EXPECT_EQ(image_->put_FileSystemsToCreate(FsiFileSystemNone), S_OK);
  ComPtr<IFileSystemImageResult> result;
  EXPECT_EQ(image_->CreateResultImage(result.Put()), fsi(0x03));

  makeFile("tree/FILE", "content");
  EXPECT_EQ(image_->put_StageFiles(VARIANT_TRUE), S_OK);
  EXPECT_EQ(image_->put_WorkingDirectory(Bstr(wide("tree/FILE"))), fsi(0x40));
  EXPECT_EQ(image_->put_WorkingDirectory(Bstr(wide("absent"))), fsi(0x40));
  EXPECT_EQ(image_->put_WorkingDirectory(Bstr(wide("tree"))), S_OK);
}

}  // namespace
}  // namespace quillon::test
