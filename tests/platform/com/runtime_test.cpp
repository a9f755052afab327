// Apartments, the class table, identifiers and error objects.
#include <functional>
#include <thread>

#include "layer_fixture.h"
#include "platform/com.h"
#include "platform/com/class_table.h"

namespace quillon::test {
namespace {

constexpr CLSID kClass = {0x12345678, 0x9ABC, 0xDEF0, {0x01, 2, 3, 4, 5, 6, 7, 0xFF}};
constexpr CLSID kBuiltIn = {0x12345678, 0x9ABC, 0xDEF0, {0x02, 2, 3, 4, 5, 6, 7, 0xFF}};

// A factory of objects that are itself; answers to IUnknown and IClassFactory.
class Factory final : public IClassFactory {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override {
    *object = riid == IID_IUnknown || riid == IID_IClassFactory ? this : nullptr;
    if (*object == nullptr) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
  ULONG STDMETHODCALLTYPE Release() override { return --references; }
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID riid, void** object) override {
    ++created;
    return outer != nullptr ? CLASS_E_NOAGGREGATION : QueryInterface(riid, object);
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

  ULONG references = 1;
  int created = 0;
};

// Each test on a thread of its own: what a thread has initialised stays with it.
void onNewThread(const std::function<void()>& work) { std::thread(work).join(); }

HRESULT create(REFCLSID clsid, IUnknown* outer = nullptr, REFIID riid = IID_IUnknown,
               DWORD context = CLSCTX_INPROC_SERVER) {
  ComPtr<IUnknown> object;
  return CoCreateInstance(clsid, outer, context, riid, object.PutVoid());
}

TEST(Apartment, CallsAreCountedPerThread) {
  onNewThread([] {
    EXPECT_EQ(create(kClass), CO_E_NOTINITIALIZED);
    EXPECT_EQ(CoInitialize(nullptr), S_OK);
    EXPECT_EQ(CoInitialize(nullptr), S_FALSE);
    EXPECT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), RPC_E_CHANGED_MODE);
    onNewThread([] { EXPECT_EQ(create(kClass), CO_E_NOTINITIALIZED); });
    CoUninitialize();
    EXPECT_EQ(create(kClass), REGDB_E_CLASSNOTREG) << "one of two is left";
    CoUninitialize();
    EXPECT_EQ(create(kClass), CO_E_NOTINITIALIZED);
    EXPECT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
    EXPECT_EQ(CoInitialize(nullptr), RPC_E_CHANGED_MODE);
    CoUninitialize();
    CoUninitialize();
    EXPECT_EQ(CoInitialize(nullptr), S_OK) << "one too many changes nothing";
    CoUninitialize();
  });
}

TEST(ClassTable, TheNewestRegistrationAnswersUntilItIsRevoked) {
  onNewThread([] {
    CoInitialize(nullptr);
    Factory first;
    Factory second;
    DWORD firstCookie = 0;
    DWORD secondCookie = 0;
    ASSERT_EQ(CoRegisterClassObject(kClass, &first, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE,
                                    &firstCookie),
              S_OK);
    ASSERT_EQ(CoRegisterClassObject(kClass, &second, CLSCTX_LOCAL_SERVER, REGCLS_MULTIPLEUSE,
                                    &secondCookie),
              S_OK);
    EXPECT_EQ(create(kClass), S_OK);
    EXPECT_EQ(first.created, 1) << "the newer one is not for this context";
    EXPECT_EQ(create(kClass, nullptr, IID_IUnknown, CLSCTX_SERVER), S_OK);
    EXPECT_EQ(second.created, 1);
    EXPECT_EQ(create(kClass, &first), CLASS_E_NOAGGREGATION);
    EXPECT_EQ(create(kClass, nullptr, IID_IDispatch), E_NOINTERFACE);
    ComPtr<IClassFactory> factory;
    EXPECT_EQ(CoGetClassObject(kClass, CLSCTX_LOCAL_SERVER, nullptr, IID_IClassFactory,
                               factory.PutVoid()),
              S_OK);
    EXPECT_EQ(factory.Get(), &second);
    factory.Reset();
    EXPECT_EQ(CoRevokeClassObject(firstCookie), S_OK);
    EXPECT_EQ(CoRevokeClassObject(firstCookie), CO_E_OBJNOTREG);
    EXPECT_EQ(create(kClass), REGDB_E_CLASSNOTREG);
    EXPECT_EQ(CoRevokeClassObject(secondCookie), S_OK);
    EXPECT_EQ(first.references, 1U);
    EXPECT_EQ(second.references, 1U);
    CoUninitialize();
  });
}

TEST(ClassTable, ASingleUseIsGivenOutOnce) {
  onNewThread([] {
    CoInitialize(nullptr);
    Factory factory;
    DWORD cookie = 0;
    CoRegisterClassObject(kClass, &factory, CLSCTX_INPROC_SERVER, REGCLS_SINGLEUSE, &cookie);
    EXPECT_EQ(create(kClass), S_OK);
    EXPECT_EQ(create(kClass), REGDB_E_CLASSNOTREG);
    EXPECT_EQ(factory.references, 1U);
    CoUninitialize();
  });
}

TEST(ClassTable, ARegisteredClassStandsBeforeABuiltInOne) {
  static Factory builtInObject;
  platform::RegisterBuiltInClasses({{kBuiltIn, [](REFIID riid, void** object) {
                                       ++builtInObject.created;
                                       return builtInObject.QueryInterface(riid, object);
                                     }}});
  onNewThread([] {
    CoInitialize(nullptr);
    EXPECT_EQ(create(kBuiltIn), S_OK);
    EXPECT_EQ(builtInObject.created, 1);
    EXPECT_EQ(create(kBuiltIn, &builtInObject), CLASS_E_NOAGGREGATION);
    EXPECT_EQ(create(kBuiltIn, nullptr, IID_IDispatch), E_NOINTERFACE);
    Factory fake;
    DWORD cookie = 0;
    CoRegisterClassObject(kBuiltIn, &fake, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie);
    EXPECT_EQ(create(kBuiltIn), S_OK);
    EXPECT_EQ(fake.created, 1);
    CoRevokeClassObject(cookie);
    EXPECT_EQ(builtInObject.references, 1U);
    CoUninitialize();
  });
}

TEST(Identifiers, TextAndBack) {
  char16_t text[39];
  EXPECT_EQ(StringFromGUID2(kClass, text, 38), 0);
  EXPECT_EQ(StringFromGUID2(kClass, text, 39), 39);
  EXPECT_EQ(narrow(text), "{12345678-9ABC-DEF0-0102-0304050607FF}");
  CLSID back{};
  EXPECT_EQ(CLSIDFromString(u"{12345678-9abc-def0-0102-0304050607ff}", &back), S_OK);
  EXPECT_TRUE(back == kClass);
  for (const char16_t* bad :
       {u"", u"{12345678-9ABC-DEF0-0102-0304050607FF", u"12345678-9ABC-DEF0-0102-0304050607FF",
        u"{12345678-9ABC-DEF0-0102-0304050607FF}x", u"{1234567G-9ABC-DEF0-0102-0304050607FF}",
        u"Some.Class"}) {
    SCOPED_TRACE(narrow(bad));
    EXPECT_EQ(CLSIDFromString(bad, &back), CO_E_CLASSSTRING);
    EXPECT_TRUE(back == CLSID_NULL);
  }
  GUID first{};
  GUID second{};
  EXPECT_EQ(CoCreateGuid(&first), S_OK);
  EXPECT_EQ(CoCreateGuid(&second), S_OK);
  EXPECT_FALSE(first == second);
  EXPECT_EQ(first.Data3 >> 12, 4) << "says that it is random";
}

void leaveErrorInfo(const char16_t* description) {
  ComPtr<ICreateErrorInfo> maker;
  ASSERT_EQ(CreateErrorInfo(maker.Put()), S_OK);
  std::u16string text(description);
  EXPECT_EQ(maker->SetDescription(text.data()), S_OK);
  ComPtr<IErrorInfo> info;
  ASSERT_EQ(maker.As(IID_IErrorInfo, info), S_OK);
  EXPECT_EQ(SetErrorInfo(0, info.Get()), S_OK);
}

TEST(ErrorObjects, AreHandedOverOnceAndPerThread) {
  leaveErrorInfo(u"the reason");
  ComPtr<IErrorInfo> info;
  onNewThread([] {
    ComPtr<IErrorInfo> other;
    EXPECT_EQ(GetErrorInfo(0, other.Put()), S_FALSE);
  });
  EXPECT_EQ(GetErrorInfo(0, info.Put()), S_OK);
  BSTR description = nullptr;
  EXPECT_EQ(info->GetDescription(&description), S_OK);
  EXPECT_EQ(std::u16string(description), u"the reason");
  SysFreeString(description);
  EXPECT_EQ(GetErrorInfo(0, info.Put()), S_FALSE);
  EXPECT_EQ(info.Get(), nullptr);
}

TEST(ErrorObjects, TravelInTheException) {
  leaveErrorInfo(u"why");
  try {
    _com_issue_error(E_ACCESSDENIED);
    FAIL();
  } catch (const _com_error& error) {
    const _com_error copy(error);
    EXPECT_EQ(copy.Error(), E_ACCESSDENIED);
    EXPECT_TRUE(copy.Description() == _bstr_t(u"why"));
    EXPECT_EQ(narrow(copy.ErrorMessage()), "Access is denied.");
    ComPtr<IErrorInfo> info;
    info.Attach(copy.ErrorInfo());
    EXPECT_NE(info.Get(), nullptr);
  }
  ComPtr<IErrorInfo> left;
  EXPECT_EQ(GetErrorInfo(0, left.Put()), S_FALSE);
}

TEST(ErrorObjects, CodesWithoutATextAreNamedByNumber) {
  struct Case {
    DWORD code;
    const char* text;
  };
  const Case cases[] = {
      {0x80040200, "Unknown error 0x80040200"}, {0x80040201, "IDispatch error #1"},
      {0x8004FFFF, "IDispatch error #65023"},   {0x80050000, "Unknown error 0x80050000"},
      {0xC0AA0202, "Unknown error 0xC0AA0202"}, {0x8000FFFF, "Catastrophic failure"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(narrow(_com_error(static_cast<HRESULT>(c.code)).ErrorMessage()), c.text);
  }
}

TEST(BstrClass, SharesAndJoins) {
  const _bstr_t first(u"ab");
  _bstr_t second = first;
  second += _bstr_t("\x80z");
  EXPECT_EQ(narrow(static_cast<const OLECHAR*>(first)), "ab");
  EXPECT_EQ(std::u16string(second), u"ab\u20ACz");
  EXPECT_EQ(second.length(), 4U);
  const _bstr_t nothing(static_cast<const OLECHAR*>(nullptr));
  EXPECT_TRUE(!nothing);
  EXPECT_EQ(nothing.length(), 0U);
  EXPECT_TRUE(nothing + first == first);
  EXPECT_EQ(_bstr_t(SysAllocStringLen(u"a\0b", 3), false).length(), 3U);
}

}  // namespace
}  // namespace quillon::test
