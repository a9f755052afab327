#include "foundation/storage_wrappers.h"

#include <functional>

#include "foundation_test_support.h"
#include "platform/com/refusing.h"
#include "support/system_sentence.h"

namespace quillon {
namespace {

using test::ErrorOf;
using test::Plain;
using test::systemSentence;

constexpr HRESULT kDiscFull = static_cast<HRESULT>(0x8004021C);
const std::string kInvalid = " failed for this reason:  " +
                             systemSentence(ERROR_INVALID_PARAMETER, "The parameter is incorrect.");

// An object on the stack that counts the references held on it.
template <typename Interface>
class OnStack : public Interface {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
  ULONG STDMETHODCALLTYPE Release() override { return --references; }

  ULONG references = 0;
};

class FakePropertyStorage : public OnStack<Refusing<IPropertyStorage>> {
 public:
  HRESULT STDMETHODCALLTYPE Commit(DWORD flags) override { return onCommit(flags); }
  HRESULT STDMETHODCALLTYPE WriteMultiple(ULONG count, const PROPSPEC* specs,
                                          const PROPVARIANT* values, PROPID first) override {
    for (ULONG i = 0; i < count; ++i) {
      written +=
          Text(specs[i].lpwstr) + OLESTR("=") + values[i].bstrVal + OLESTR(";") + NumberText(first);
    }
    return writeResult;
  }

  std::function<HRESULT(DWORD)> onCommit = [](DWORD) { return S_OK; };
  HRESULT writeResult = S_OK;
  Text written;
};

class FakeFolder : public OnStack<Refusing<IShellFolder>> {
 public:
  HRESULT STDMETHODCALLTYPE ParseDisplayName(HWND, IBindCtx*, LPWSTR name, ULONG*,
                                             ITEMIDLIST** items, ULONG*) override {
    parsed = name;
    *items = &item;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE BindToStorage(const ITEMIDLIST* items, IBindCtx*, REFIID riid,
                                          void** object) override {
    if (items != &item || riid != IID_IStorage) return E_NOINTERFACE;
    *object = nullptr;
    return bindResult;
  }

  ITEMIDLIST item{};
  Text parsed;
  HRESULT bindResult = S_OK;
};

TEST(PropertyStorage, ReportsEveryWayACallCanEnd) {
  FakePropertyStorage fake;
  {
    CPropertyStorage storage(&fake);
    DWORD flags = 0;
    fake.onCommit = [&](DWORD given) { return flags = given, S_OK; };
    EXPECT_TRUE(storage.Commit(STGC_OVERWRITE));
    EXPECT_EQ(flags, STGC_OVERWRITE);

    fake.onCommit = [](DWORD) { return kDiscFull; };
    EXPECT_FALSE(storage.Commit(STGC_DEFAULT));
    EXPECT_EQ(storage.GetLastResult(), kDiscFull);
    EXPECT_EQ(
        ErrorOf(storage),
        "CPropertyStorage::Commit failed for this reason:  The disc cannot hold any more data");

    fake.onCommit = [](DWORD) -> HRESULT { throw _com_error(E_ACCESSDENIED); };
    EXPECT_FALSE(storage.Commit(STGC_DEFAULT));
    EXPECT_EQ(ErrorOf(storage), "CPropertyStorage::Commit threw an exception for this reason:  " +
                                    systemSentence(ERROR_ACCESS_DENIED, "Access is denied."));
  }
  EXPECT_EQ(fake.references, 0u);
  CPropertyStorage nothing;
  EXPECT_FALSE(nothing.Commit(STGC_DEFAULT));
  const std::string reason = systemSentence(E_POINTER, "Invalid pointer");
  EXPECT_EQ(ErrorOf(nothing), "CPropertyStorage::Commit threw an exception for this reason:  " +
                                  (reason.empty() ? "Unknown error 0x80004003" : reason));
}

TEST(PropertyStorage, WritesOnlyWithBothArrays) {
  FakePropertyStorage fake;
  CPropertyStorage storage(&fake);
  Text name = OLESTR("VolumeName");
  PROPSPEC specification{};
  specification.ulKind = PRSPEC_LPWSTR;
  specification.lpwstr = name.data();
  VARIANT text{};
  text.vt = VT_BSTR;
  text.bstrVal = SysAllocString(OLESTR("Quillon"));
  PROPVARIANT value{};
  ASSERT_TRUE(storage.CopyValue(value, text));
  EXPECT_NE(value.bstrVal, text.bstrVal);
  VariantClear(&text);

  EXPECT_TRUE(storage.WriteMultiple(1, &specification, &value, 2));
  EXPECT_EQ(Plain(fake.written), "VolumeName=Quillon;2");
  for (const auto& [specs, values] :
       {std::pair<PROPSPEC*, PROPVARIANT*>{nullptr, &value},
        std::pair<PROPSPEC*, PROPVARIANT*>{&specification, nullptr}}) {
    EXPECT_FALSE(storage.WriteMultiple(1, specs, values, 2));
    EXPECT_EQ(ErrorOf(storage), "CPropertyStorage::WriteMultiple" + kInvalid);
  }
  EXPECT_EQ(PropVariantClear(&value), S_OK);
}

TEST(PropertyStorage, CopiesSimpleTypesOnly) {
  CPropertyStorage storage;
  for (VARTYPE type = 0; type < 80; ++type) {
    SCOPED_TRACE(type);
    const bool isSimple = type <= 11 || type == 13 || (type >= 16 && type <= 19);
    VARIANT source{};
    source.vt = type;
    PROPVARIANT target{};
    storage.ClearError();
    EXPECT_EQ(storage.CopyValue(target, source), isSimple);
    EXPECT_EQ(target.vt, isSimple ? type : VARTYPE{VT_EMPTY});
    EXPECT_EQ(ErrorOf(storage), isSimple ? "" : "Cannot determine the data type.");
    PropVariantClear(&target);
  }
  OnStack<IUnknown> object;
  VARIANT source{};
  source.vt = VT_UNKNOWN;
  source.punkVal = &object;
  PROPVARIANT target{};
  EXPECT_TRUE(storage.CopyValue(target, source));
  EXPECT_EQ(object.references, 1u) << "the copy holds a reference of its own";
  source.vt = VT_UNKNOWN | VT_BYREF;
  PROPVARIANT refused{};
  EXPECT_FALSE(storage.CopyValue(refused, source));
}

TEST(ShellFolder, ParsesAndBindsAndSaysWhatFailed) {
  FakeFolder fake;
  {
    CShellFolder folder(&fake);
    LPITEMIDLIST items = nullptr;
    EXPECT_TRUE(
        folder.ParseDisplayName(nullptr, nullptr, OLESTR("C:\\DICOM"), nullptr, &items, nullptr));
    EXPECT_EQ(Plain(fake.parsed), "C:\\DICOM");
    CStorage storage;
    EXPECT_TRUE(folder.BindToStorage(items, nullptr, storage));

    fake.bindResult = E_ACCESSDENIED;
    SetLastError(ERROR_DISK_FULL);
    EXPECT_FALSE(folder.BindToStorage(items, nullptr, storage));
    EXPECT_EQ(ErrorOf(folder),
              "CShellFolder::BindToStorage failed for this reason:  " +
                  systemSentence(ERROR_DISK_FULL, "There is not enough space on the disk."));
  }
  EXPECT_EQ(fake.references, 0u);
}

TEST(ShellFolder, RefusesMissingArguments) {
  FakeFolder fake;
  CShellFolder folder(&fake);
  LPITEMIDLIST items = nullptr;
  CStorage storage;
  const std::pair<const char*, std::function<bool()>> cases[] = {
      {"ParseDisplayName",
       [&] {
         return folder.ParseDisplayName(nullptr, nullptr, nullptr, nullptr, &items, nullptr);
       }},
      {"ParseDisplayName",
       [&] {
         return folder.ParseDisplayName(nullptr, nullptr, OLESTR("x"), nullptr, nullptr, nullptr);
       }},
      {"BindToStorage", [&] { return folder.BindToStorage(nullptr, nullptr, storage); }},
      {"BindToStorage",
       [&] { return folder.BindToStorage(&fake.item, nullptr, IID_IStorage, nullptr); }},
  };
  for (const auto& [method, call] : cases) {
    folder.ClearError();
    EXPECT_FALSE(call());
    EXPECT_EQ(ErrorOf(folder), "CShellFolder::" + std::string(method) + kInvalid);
  }
}

}  // namespace
}  // namespace quillon
