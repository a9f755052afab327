// The desktop folder and the read-only storage over a directory tree.
#include <unistd.h>

#include "layer_fixture.h"
#include "platform/com.h"
#include "platform/com/com_object.h"

namespace quillon {
namespace {

using test::LayerTest;
using test::narrow;

constexpr DWORD kRead = STGM_READ | STGM_SHARE_EXCLUSIVE;

class DesktopFolder : public LayerTest {
 protected:
  DesktopFolder() {
    std::filesystem::create_directories(dir_ / "tree/inner/empty");
    test::writeText(dir_ / "tree/file", "0123456789");
    test::writeText(dir_ / "tree/nothing", "");
    test::writeText(dir_ / "tree/inner/deep", "deep");
    EXPECT_EQ(SHGetDesktopFolder(desktop_.Put()), S_OK);
  }

  HRESULT parse(std::u16string path, ITEMIDLIST** items, ULONG* attributes = nullptr) {
    return desktop_->ParseDisplayName(nullptr, nullptr, path.data(), nullptr, items, attributes);
  }
  ComPtr<IStorage> open(const std::u16string& path) {
    ITEMIDLIST* items = nullptr;
    EXPECT_EQ(parse(path, &items), S_OK);
    ComPtr<IStorage> storage;
    EXPECT_EQ(desktop_->BindToStorage(items, nullptr, IID_IStorage, storage.PutVoid()), S_OK);
    CoTaskMemFree(items);
    return storage;
  }

  ComPtr<IShellFolder> desktop_;
};

// "name:size" of a file, "name/" of a directory.
std::string next(IEnumSTATSTG& elements) {
  STATSTG stat{};
  ULONG fetched = 0;
  if (elements.Next(1, &stat, &fetched) != S_OK) return "";
  std::string text = narrow(stat.pwcsName);
  text += stat.type == STGTY_STORAGE ? "/" : ":" + std::to_string(stat.cbSize.QuadPart);
  CoTaskMemFree(stat.pwcsName);
  return text;
}

std::string read(IStream& stream, ULONG length, HRESULT expected) {
  std::string bytes(length, '\0');
  ULONG got = 0;
  EXPECT_EQ(stream.Read(bytes.data(), length, &got), expected);
  bytes.resize(got);
  return bytes;
}

TEST_F(DesktopFolder, ParsesAbsolutePathsOfWhatExists) {
  const struct {
    std::u16string path;
    HRESULT result;
    ULONG attributes;
  } cases[] = {
      {wide("tree"), S_OK, 0x60000008},
      {wide("tree/file"), S_OK, 0x40400000},
      {wide("none"), HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND), 0xFFFFFFFF},
      {wide("none/none"), HRESULT_FROM_WIN32(ERROR_PATH_NOT_FOUND), 0xFFFFFFFF},
      {u"C:\\", S_OK, 0x60000008},
      {u"tree", E_INVALIDARG, 0xFFFFFFFF},
      {u"C:tree", E_INVALIDARG, 0xFFFFFFFF},
      {u"", E_INVALIDARG, 0xFFFFFFFF},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(narrow(c.path));
    ITEMIDLIST* items = reinterpret_cast<ITEMIDLIST*>(1);
    ULONG attributes = 0xFFFFFFFF;
    EXPECT_EQ(parse(c.path, &items, &attributes), c.result);
    EXPECT_EQ(attributes, c.attributes);
    EXPECT_EQ(items != nullptr, c.result == S_OK);
    CoTaskMemFree(items);
  }
  EXPECT_EQ(desktop_->ParseDisplayName(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr),
            E_INVALIDARG);
}

TEST_F(DesktopFolder, BindsDirectoriesOnly) {
  ITEMIDLIST* file = nullptr;
  ITEMIDLIST* directory = nullptr;
  ASSERT_EQ(parse(wide("tree/file"), &file), S_OK);
  ASSERT_EQ(parse(wide("tree/inner/empty"), &directory), S_OK);
  void* object = &file;
  EXPECT_EQ(desktop_->BindToStorage(file, nullptr, IID_IStorage, &object), E_NOINTERFACE);
  EXPECT_EQ(object, nullptr);
  EXPECT_EQ(desktop_->BindToStorage(directory, nullptr, IID_IStream, &object), E_NOINTERFACE);
  EXPECT_EQ(desktop_->BindToStorage(nullptr, nullptr, IID_IStorage, &object), E_INVALIDARG);
  std::filesystem::remove(dir_ / "tree/inner/empty");
  EXPECT_EQ(desktop_->BindToStorage(directory, nullptr, IID_IStorage, &object), STG_E_FILENOTFOUND);
  CoTaskMemFree(file);
  CoTaskMemFree(directory);
}

TEST_F(DesktopFolder, AStorageListsAndOpensWhatIsInIt) {
  const ComPtr<IStorage> tree = open(wide("tree/"));
  ComPtr<IEnumSTATSTG> elements;
  ASSERT_EQ(tree->EnumElements(0, nullptr, 0, elements.Put()), S_OK);
  EXPECT_EQ(next(*elements), "file:10");
  EXPECT_EQ(next(*elements), "inner/");
  EXPECT_EQ(next(*elements), "nothing:0");
  EXPECT_EQ(next(*elements), "");
  elements.Reset();
  ASSERT_EQ(tree->EnumElements(0, nullptr, 0, elements.Put()), S_OK);
  STATSTG all[4]{};
  ULONG fetched = 0;
  EXPECT_EQ(elements->Next(4, all, &fetched), S_FALSE);
  EXPECT_EQ(fetched, 3U);
  for (ULONG i = 0; i < fetched; ++i) CoTaskMemFree(all[i].pwcsName);

  ComPtr<IStorage> inner;
  ASSERT_EQ(tree->OpenStorage(u"inner", nullptr, kRead, nullptr, 0, inner.Put()), S_OK);
  STATSTG stat{};
  ASSERT_EQ(inner->Stat(&stat, STATFLAG_DEFAULT), S_OK);
  EXPECT_EQ(narrow(stat.pwcsName), "inner");
  EXPECT_EQ(stat.type, STGTY_STORAGE);
  CoTaskMemFree(stat.pwcsName);
  ComPtr<IStream> deep;
  ASSERT_EQ(inner->OpenStream(u"deep", nullptr, kRead, 0, deep.Put()), S_OK);
  EXPECT_EQ(read(*deep, 10, S_FALSE), "deep");
}

TEST_F(DesktopFolder, AStorageRefusesWhatIsNotInItAndWhatWouldWrite) {
  const ComPtr<IStorage> tree = open(wide("tree/inner"));
  ComPtr<IStream> stream;
  ComPtr<IStorage> storage;
  const struct {
    const char16_t* name;
    DWORD mode;
    HRESULT asStream, asStorage;
  } cases[] = {
      {u"deep", kRead, S_OK, STG_E_FILENOTFOUND},
      {u"empty", kRead, STG_E_FILENOTFOUND, S_OK},
      {u"none", kRead, STG_E_FILENOTFOUND, STG_E_FILENOTFOUND},
      {u"..", kRead, STG_E_INVALIDNAME, STG_E_INVALIDNAME},
      {u"../file", kRead, STG_E_INVALIDNAME, STG_E_INVALIDNAME},
      {u"..\\file", kRead, STG_E_INVALIDNAME, STG_E_INVALIDNAME},
      {u"", kRead, STG_E_INVALIDNAME, STG_E_INVALIDNAME},
      {u"deep", STGM_READWRITE, STG_E_ACCESSDENIED, STG_E_ACCESSDENIED},
      {u"deep", STGM_WRITE, STG_E_ACCESSDENIED, STG_E_ACCESSDENIED},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(narrow(c.name));
    EXPECT_EQ(tree->OpenStream(c.name, nullptr, c.mode, 0, stream.Put()), c.asStream);
    EXPECT_EQ(tree->OpenStorage(c.name, nullptr, c.mode, nullptr, 0, storage.Put()), c.asStorage);
  }
}

TEST_F(DesktopFolder, AStreamSeeksAndReadsAFileThatIsOpenOnlyWhileItIsRead) {
  const ComPtr<IStorage> tree = open(wide("tree"));
  const auto openFiles = [] {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
  };
  const auto before = openFiles();
  ComPtr<IStream> stream;
  ASSERT_EQ(tree->OpenStream(u"file", nullptr, kRead, 0, stream.Put()), S_OK);
  EXPECT_EQ(openFiles(), before);
  EXPECT_EQ(read(*stream, 4, S_OK), "0123");
  EXPECT_EQ(openFiles(), before + 1);
  const auto seek = [&stream](LONGLONG move, DWORD origin) {
    LARGE_INTEGER distance{};
    distance.QuadPart = move;
    return stream->Seek(distance, origin, nullptr);
  };
  EXPECT_EQ(seek(-1, STREAM_SEEK_SET), STG_E_INVALIDFUNCTION);
  EXPECT_EQ(seek(0, 9), STG_E_INVALIDFUNCTION);
  EXPECT_EQ(seek(-2, STREAM_SEEK_CUR), S_OK);
  EXPECT_EQ(read(*stream, 3, S_OK), "234");
  EXPECT_EQ(seek(-3, STREAM_SEEK_END), S_OK);
  EXPECT_EQ(read(*stream, 4, S_FALSE), "789");
  EXPECT_EQ(openFiles(), before);
  EXPECT_EQ(read(*stream, 4, S_FALSE), "");
  EXPECT_EQ(seek(1, STREAM_SEEK_SET), S_OK);
  EXPECT_EQ(read(*stream, 2, S_OK), "12");
  EXPECT_EQ(seek(0, STREAM_SEEK_SET), S_OK);
  std::filesystem::remove(dir_ / "tree/file");
  EXPECT_EQ(read(*stream, 1, STG_E_FILENOTFOUND), "");
}

}  // namespace
}  // namespace quillon
