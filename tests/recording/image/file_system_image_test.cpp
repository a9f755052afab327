// The class MsftFileSystemImage and its items: what they accept, refuse and answer.
#include "image_fixture.h"
#include "support/disc_service.h"

namespace quillon::test {
namespace {

std::string text(HRESULT (IFileSystemImage::*get)(BSTR*), IFileSystemImage& image) {
  BSTR value = nullptr;
  EXPECT_EQ((image.*get)(&value), S_OK);
  return takeText(value);
}

LONG number(HRESULT (IFileSystemImage::*get)(LONG*), IFileSystemImage& image) {
  LONG value = -1;
  EXPECT_EQ((image.*get)(&value), S_OK);
  return value;
}

class FileSystemImageTest : public ImageTest {
 protected:
  FsiItemType typeOf(std::u16string_view path) {
    FsiItemType type = FsiItemNotFound;
    EXPECT_EQ(image_->Exists(Bstr(path), &type), S_OK);
    return type;
  }
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
  makeFile("ansi/\xE4\xB8\xAD", "content");

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
      {"a name that is no ANSI text", "ansi", true, fsi(0x11)},
      {"4 GiB in several extents", "large", false, S_OK},
      {"nine levels where they may be", "deep", false, S_OK},
  };
  image_->put_UseRestrictedCharacterSet(VARIANT_TRUE);
  ASSERT_EQ(addTree("good"), S_OK);
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    image_->put_StrictFileSystemCompliance(c.strict ? VARIANT_TRUE : VARIANT_FALSE);
    const LONG files = number(&IFileSystemImage::get_FileCount, *image_);
    EXPECT_EQ(addTree(c.path), c.expected);
    if (SUCCEEDED(c.expected)) continue;
    EXPECT_EQ(number(&IFileSystemImage::get_FileCount, *image_), files);
    EXPECT_EQ(typeOf(u"\\A\\NEW"), FsiItemNotFound);
    ComPtr<IErrorInfo> info;
    EXPECT_EQ(GetErrorInfo(0, info.Put()), S_OK) << "says which file it is";
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
  std::u16string withSeparators = wide("tree//");
  EXPECT_EQ(root_->AddTree(Bstr(withSeparators), VARIANT_TRUE), S_OK);
  for (const char16_t* file : {u"\\BOTH\\ONE", u"\\BOTH\\TWO", u"/LINK", u"\\LINKED/ONE",
                               u"\\other\\BOTH\\TWO", u"\\tree\\BOTH\\ONE"}) {
    EXPECT_EQ(typeOf(file), FsiItemFile) << narrow(file);
  }
  EXPECT_EQ(typeOf(u"\\EMPTY"), FsiItemDirectory);
  EXPECT_EQ(typeOf(u"\\"), FsiItemDirectory);
  EXPECT_EQ(typeOf(u"\\BOTH\\ONE\\MORE"), FsiItemNotFound);
  EXPECT_EQ(number(&IFileSystemImage::get_FileCount, *image_), 8);
  EXPECT_EQ(number(&IFileSystemImage::get_DirectoryCount, *image_), 9);

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

TEST_F(FileSystemImageTest, ItemsAreAddedFoundAndRemoved) {
  makeFile("tree/DIR/a long file name.text", "content");
  ASSERT_EQ(addTree("tree"), S_OK);
  EXPECT_EQ(root_->AddDirectory(Bstr(u"NEW")), S_OK);
  EXPECT_EQ(root_->AddDirectory(Bstr(u"NEW")), fsi(0x12));
  EXPECT_EQ(root_->AddDirectory(Bstr(u"ABSENT\\SUB")), fsi(0x1A));
  for (const char16_t* name : {u"", u"..", u"a:b", u"\\"}) {
    EXPECT_EQ(root_->AddDirectory(Bstr(name)), fsi(0x10)) << narrow(name);
  }
  EXPECT_EQ(root_->AddFile(Bstr(u"FILE"), nullptr), E_POINTER);

  ComPtr<IFsiItem> item;
  EXPECT_EQ(root_->get_Item(Bstr(u"DIR\\ABSENT"), item.Put()), fsi(0x18));
  ASSERT_EQ(root_->get_Item(Bstr(u"DIR/a long file name.text"), item.Put()), S_OK);
  BSTR value = nullptr;
  ASSERT_EQ(item->get_FullPath(&value), S_OK);
  EXPECT_EQ(takeText(value), "\\DIR\\a long file name.text");
  ASSERT_EQ(item->FileSystemPath(FsiFileSystemISO9660, &value), S_OK);
  EXPECT_EQ(takeText(value), "\\DIR\\A_LONG_FILE_NAME.TEXT");
  ASSERT_EQ(item->FileSystemName(FsiFileSystemUDF, &value), S_OK);
  EXPECT_EQ(takeText(value), "a long file name.text");
  EXPECT_EQ(item->FileSystemName(FsiFileSystemUnknown, &value), fsi(0x01));
  EXPECT_EQ(item->put_LastModifiedTime(-1), fsi(0x05));
  EXPECT_EQ(item->put_LastModifiedTime(44'260.25), S_OK);
  DATE date = 0;
  EXPECT_EQ(item->get_LastModifiedTime(&date), S_OK);
  EXPECT_DOUBLE_EQ(date, 44'260.25);

  ComPtr<IFsiItem> directory;
  ASSERT_EQ(root_->get_Item(Bstr(u"DIR"), directory.Put()), S_OK);
  ComPtr<IFsiDirectoryItem> removed;
  ASSERT_EQ(directory.As(IID_IFsiDirectoryItem, removed), S_OK);
  EXPECT_EQ(item.As(IID_IFsiDirectoryItem, removed), E_NOINTERFACE);
  ASSERT_EQ(directory.As(IID_IFsiDirectoryItem, removed), S_OK);
  EXPECT_EQ(root_->Remove(Bstr(u"DIR")), fsi(0x0A));
  EXPECT_EQ(root_->Remove(Bstr(u"NEW")), S_OK);
  EXPECT_EQ(root_->RemoveTree(Bstr(u"DIR")), S_OK);
  EXPECT_EQ(root_->RemoveTree(Bstr(u"")), fsi(0x18)) << "the root stays";
  LONG count = -1;
  EXPECT_EQ(root_->get_Count(&count), S_OK);
  EXPECT_EQ(count, 0);
  EXPECT_EQ(removed->AddDirectory(Bstr(u"LATE")), fsi(0x0B));
  directory.Reset();
  removed.Reset();
  ASSERT_EQ(item->get_FullPath(&value), S_OK) << "outlives its directory";
  EXPECT_EQ(takeText(value), "\\a long file name.text");
}

TEST_F(FileSystemImageTest, TheLimitIsTheLastBlockThatFits) {
  makeFile("tree/FILE", std::string(100'000, 'a'));
  ASSERT_EQ(addTree("tree"), S_OK);
  const LONG used = number(&IFileSystemImage::get_UsedBlocks, *image_);
  EXPECT_EQ(image_->put_FreeMediaBlocks(used - 1), fsi(0x21));
  EXPECT_EQ(image_->put_FreeMediaBlocks(-1), fsi(0x01));
  ASSERT_EQ(image_->put_FreeMediaBlocks(used), S_OK);
  ComPtr<IFileSystemImageResult> result;
  ASSERT_EQ(image_->CreateResultImage(result.Put()), S_OK);
  LONG blocks = 0;
  EXPECT_EQ(result->get_TotalBlocks(&blocks), S_OK);
  EXPECT_EQ(blocks, used);
  for (int file = 0; file < 16; ++file) {
    makeFile("more/FILE" + std::to_string(file), "one more sector");
  }
  ASSERT_EQ(addTree("more"), S_OK);
  EXPECT_EQ(image_->CreateResultImage(result.Put()), fsi(0x20));
  EXPECT_EQ(result.Get(), nullptr);
  ASSERT_EQ(image_->put_FreeMediaBlocks(0), S_OK);
  EXPECT_EQ(image_->CreateResultImage(result.Put()), S_OK) << "0 is no limit";
  EXPECT_EQ(image_->ChooseImageDefaultsForMediaType(IMAPI_MEDIA_TYPE_CDROM), fsi(0x01));
  EXPECT_EQ(image_->ChooseImageDefaultsForMediaType(IMAPI_MEDIA_TYPE_DVDDASHR), S_OK);
  EXPECT_EQ(number(&IFileSystemImage::get_FreeMediaBlocks, *image_), 2'298'496);
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
  const LONG used = number(&IFileSystemImage::get_UsedBlocks, *image_);
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
    FsiFileSystems systems = FsiFileSystemNone;
    EXPECT_EQ(image_->get_FileSystemsToCreate(&systems), S_OK);
    EXPECT_EQ(systems, 7);
    for (const char* failing : {"Create MsftDiscFormat2Data", "IDiscFormat2Data::put_Recorder",
                                "IDiscFormat2Data::get_FreeSectorsOnMedia"}) {
      SCOPED_TRACE(failing);
      service.faults = {{.call = failing, .result = E_IMAPI_RECORDER_MEDIA_NO_MEDIA}};
      EXPECT_EQ(call(recorder.Get()), E_IMAPI_RECORDER_MEDIA_NO_MEDIA);
    }
    service.faults.clear();
  }
}

TEST_F(FileSystemImageTest, SettingsAreCheckedAndKept) {
  EXPECT_EQ(text(&IFileSystemImage::get_VolumeName, *image_), "05032021") << "the day";
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
  EXPECT_EQ(text(&IFileSystemImage::get_VolumeNameUDF, *image_), "Disc of the 5th (1/2)");
  EXPECT_EQ(text(&IFileSystemImage::get_VolumeNameJoliet, *image_), "Disc of the 5th ");
  EXPECT_EQ(text(&IFileSystemImage::get_VolumeNameISO9660, *image_), "DISC_OF_THE_5TH__1_2_");

  EXPECT_EQ(image_->put_FileSystemsToCreate(static_cast<FsiFileSystems>(8)), fsi(0x01));
  EXPECT_EQ(image_->put_FileSystemsToCreate(FsiFileSystemNone), S_OK);
  ComPtr<IFileSystemImageResult> result;
  EXPECT_EQ(image_->CreateResultImage(result.Put()), fsi(0x03));

  EXPECT_EQ(number(&IFileSystemImage::get_ISO9660InterchangeLevel, *image_), 2);
  image_->put_StrictFileSystemCompliance(VARIANT_TRUE);
  EXPECT_EQ(number(&IFileSystemImage::get_ISO9660InterchangeLevel, *image_), 1);
  EXPECT_EQ(image_->put_ISO9660InterchangeLevel(3), fsi(0x01));
  EXPECT_EQ(image_->put_UDFRevision(0x201), fsi(0x01));

  makeFile("tree/FILE", "content");
  EXPECT_EQ(image_->put_StageFiles(VARIANT_TRUE), S_OK);
  EXPECT_EQ(image_->put_WorkingDirectory(Bstr(wide("tree/FILE"))), fsi(0x40));
  EXPECT_EQ(image_->put_WorkingDirectory(Bstr(wide("absent"))), fsi(0x40));
  EXPECT_EQ(image_->put_WorkingDirectory(Bstr(wide("tree"))), S_OK);
  EXPECT_EQ(text(&IFileSystemImage::get_WorkingDirectory, *image_), (dir_ / "tree").string());
}

}  // namespace
}  // namespace quillon::test
