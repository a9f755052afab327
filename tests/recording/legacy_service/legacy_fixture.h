// The legacy service over a virtual recorder with a blank CD-R in it, used as a program uses it.
#pragma once

#include "platform/imapi.h"
#include "platform/win32/registry.h"
#include "recorder_fixture.h"

namespace quillon::test {

class LegacyTest : public RecorderTest {
 protected:
  LegacyTest() {
    master_ = newMaster();
    std::filesystem::create_directory(dir_ / "tree");
    insertBlank("cd-r", 20000);
  }

  static ComPtr<IDiscMaster> newMaster() {
    ComPtr<IDiscMaster> master;
    EXPECT_EQ(
        CoCreateInstance(CLSID_MSDiscMasterObj, nullptr, CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER,
                         IID_IDiscMaster, master.PutVoid()),
        S_OK);
    return master;
  }
  [[nodiscard]] ComPtr<IDiscRecorder> firstRecorder() const {
    ComPtr<IEnumDiscRecorders> recorders;
    ComPtr<IDiscRecorder> recorder;
    ULONG fetched = 0;
    EXPECT_EQ(master_->EnumDiscRecorders(recorders.Put()), S_OK);
    if (!recorders) return recorder;
    EXPECT_EQ(recorders->Next(1, recorder.Put(), &fetched), S_OK);
    return recorder;
  }
  // A format starts with nothing in it.
  void chooseFormat() {
    ASSERT_EQ(master_->SetActiveDiscMasterFormat(IID_IJolietDiscMaster, joliet_.PutVoid()), S_OK);
  }
  static void takeDiscOut() {
    std::string leftAt;
    EXPECT_EQ(platform::ejectVirtualDisc("one", leftAt).code, S_OK);
  }
  // As far as the point where content can be added.
  void prepare() {
    ASSERT_EQ(master_->Open(), S_OK);
    recorder_ = firstRecorder();
    ASSERT_TRUE(recorder_);
    ASSERT_EQ(master_->SetActiveDiscRecorder(recorder_.Get()), S_OK);
    chooseFormat();
  }
  void prepareWithContent() {
    writeText(dir_ / "tree/FILE", "content");
    prepare();
    ASSERT_EQ(add("tree"), S_OK);
  }
  [[nodiscard]] HRESULT add(std::string_view directory, LONG overwrite = 1) const {
    return joliet_->AddData(storage(directory).Get(), overwrite);
  }
  [[nodiscard]] ComPtr<IStorage> storage(std::string_view directory) const {
    ComPtr<IShellFolder> desktop;
    ComPtr<IStorage> storage;
    ITEMIDLIST* items = nullptr;
    std::u16string path = wide(directory);
    EXPECT_EQ(SHGetDesktopFolder(desktop.Put()), S_OK);
    EXPECT_EQ(desktop->ParseDisplayName(nullptr, nullptr, path.data(), nullptr, &items, nullptr),
              S_OK);
    EXPECT_EQ(desktop->BindToStorage(items, nullptr, IID_IStorage, storage.PutVoid()), S_OK);
    CoTaskMemFree(items);
    return storage;
  }
  // "type/flags", or the code of a failure.
  static std::string medium(IDiscRecorder& recorder) {
    LONG type = -1;
    LONG flags = -1;
    EXPECT_EQ(recorder.OpenExclusive(), S_OK);
    const HRESULT hr = recorder.QueryMediaType(&type, &flags);
    EXPECT_EQ(recorder.Close(), S_OK);
    return FAILED(hr) ? std::to_string(hr) : std::to_string(type) + "/" + std::to_string(flags);
  }
  static void chooseService(const std::u16string& name) {
    HKEY key = nullptr;
    ASSERT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, u"SOFTWARE\\Tarn Imaging\\Quillon\\DiscMastering",
                              0, nullptr, 0, KEY_SET_VALUE, nullptr, &key, nullptr),
              0);
    EXPECT_EQ(RegSetValueExW(key, u"Service", 0, REG_SZ, reinterpret_cast<const BYTE*>(name.data()),
                             static_cast<DWORD>((name.size() + 1) * sizeof(char16_t))),
              0);
    RegCloseKey(key);
  }

  ComPtr<IDiscMaster> master_;
  ComPtr<IDiscRecorder> recorder_;
  ComPtr<IJolietDiscMaster> joliet_;
};

}  // namespace quillon::test
