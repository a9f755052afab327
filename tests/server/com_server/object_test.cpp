// The exports, the class factory, and the object's identity with and without an outer one.
#include "com_test_tools.h"
#include "support/threads.h"

STDAPI DllCanUnloadNow();
STDAPI DllGetClassObject(REFCLSID clsid, REFIID riid, LPVOID* object);

namespace quillon::test {
namespace {

ComPtr<IClassFactory> factoryOfServer() {
  ComPtr<IClassFactory> factory;
  EXPECT_EQ(DllGetClassObject(CLSID_QuillonMediaRW, IID_IClassFactory, factory.PutVoid()), S_OK);
  return factory;
}

TEST(ClassObject, IsGivenOutForOneClassOnly) {
  void* object = &object;
  for (const GUID& other : {IID_IQuillonMediaRW, LIBID_QuillonMediaRWLib, GUID{}}) {
    object = &object;
    EXPECT_EQ(DllGetClassObject(other, IID_IClassFactory, &object), CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(object, nullptr);
  }
  EXPECT_EQ(DllGetClassObject(CLSID_QuillonMediaRW, IID_IDispatch, &object), E_NOINTERFACE);
  EXPECT_EQ(DllGetClassObject(CLSID_QuillonMediaRW, IID_IClassFactory, nullptr), E_POINTER);
  EXPECT_EQ(DllCanUnloadNow(), S_OK) << "nothing was made";
  EXPECT_EQ(factoryOfServer(), factoryOfServer()) << "there is one";
}

TEST(Module, StaysLoadedForObjectsLocksAndFactories) {
  ASSERT_EQ(DllCanUnloadNow(), S_OK);
  ComPtr<IClassFactory> factory = factoryOfServer();
  EXPECT_EQ(DllCanUnloadNow(), S_FALSE);
  ComPtr<IQuillonMediaRW> media;
  EXPECT_EQ(factory->CreateInstance(nullptr, IID_IQuillonMediaRW, media.PutVoid()), S_OK);
  EXPECT_EQ(factory->LockServer(TRUE), S_OK);
  IClassFactory* const raw = factory.Get();
  factory.Reset();
  media.Reset();
  EXPECT_EQ(DllCanUnloadNow(), S_FALSE) << "the lock is left";
  EXPECT_EQ(raw->LockServer(FALSE), S_OK);
  EXPECT_EQ(DllCanUnloadNow(), S_OK);
}

TEST(Module, CountsAcrossThreads) {
  const ComPtr<IClassFactory> factory = factoryOfServer();
  onThreads(4, [&factory] {
    for (int n = 0; n < 500; ++n) {
      const ComPtr<IClassFactory> copy = factory;
      copy->LockServer(TRUE);
      ComPtr<IUnknown> object;
      copy->CreateInstance(nullptr, IID_IUnknown, object.PutVoid());
      copy->LockServer(FALSE);
    }
  });
  const_cast<ComPtr<IClassFactory>&>(factory).Reset();
  EXPECT_EQ(DllCanUnloadNow(), S_OK);
}

TEST(Object, HasOneIdentityAndThreeInterfaces) {
  const ComPtr<IClassFactory> factory = factoryOfServer();
  ComPtr<IQuillonMediaRW> media;
  ASSERT_EQ(factory->CreateInstance(nullptr, IID_IQuillonMediaRW, media.PutVoid()), S_OK);
  ComPtr<IDispatch> dispatch;
  ComPtr<IUnknown> first;
  ComPtr<IUnknown> second;
  EXPECT_EQ(media.As(IID_IDispatch, dispatch), S_OK);
  EXPECT_EQ(media.As(IID_IUnknown, first), S_OK);
  EXPECT_EQ(dispatch.As(IID_IUnknown, second), S_OK);
  EXPECT_EQ(first, second);
  EXPECT_EQ(media.As(IID_IClassFactory, second), E_NOINTERFACE);
  EXPECT_EQ(second, nullptr);
  EXPECT_EQ(factory->CreateInstance(nullptr, IID_IClassFactory, second.PutVoid()), E_NOINTERFACE);
  EXPECT_EQ(factory->CreateInstance(nullptr, IID_IUnknown, nullptr), E_POINTER);

  // Two objects do not share their settings.
  ComPtr<IQuillonMediaRW> other;
  ASSERT_EQ(factory->CreateInstance(nullptr, IID_IQuillonMediaRW, other.PutVoid()), S_OK);
  EXPECT_EQ(media->put_SimulateCreation(VARIANT_TRUE), S_OK);
  VARIANT_BOOL flag = 7;
  EXPECT_EQ(other->get_SimulateCreation(&flag), S_OK);
  EXPECT_EQ(flag, VARIANT_FALSE);
}

// Offers the interfaces of the object as its own.
class Outer final : public IUnknown {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override {
    if (IsEqualIID(riid, IID_IUnknown)) {
      AddRef();
      *object = this;
      return S_OK;
    }
    return inner->QueryInterface(riid, object);
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
  ULONG STDMETHODCALLTYPE Release() override { return --references; }

  ULONG references = 1;
  ComPtr<IUnknown> inner;
};

TEST(Object, BecomesAPartOfAnOuterOne) {
  {
    const ComPtr<IClassFactory> factory = factoryOfServer();
    Outer outer;
    void* refused = &outer;
    EXPECT_EQ(factory->CreateInstance(&outer, IID_IDispatch, &refused), CLASS_E_NOAGGREGATION);
    EXPECT_EQ(refused, nullptr);
    ASSERT_EQ(factory->CreateInstance(&outer, IID_IUnknown, outer.inner.PutVoid()), S_OK);
    EXPECT_NE(outer.inner.Get(), &outer);
    EXPECT_EQ(outer.references, 1U) << "a part does not keep its whole";
    ComPtr<IQuillonMediaRW> media;
    ASSERT_EQ(outer.QueryInterface(IID_IQuillonMediaRW, media.PutVoid()), S_OK);
    EXPECT_EQ(outer.references, 2U);
    ComPtr<IUnknown> identity;
    EXPECT_EQ(media.As(IID_IUnknown, identity), S_OK);
    EXPECT_EQ(identity.Get(), &outer);
    ComPtr<IDispatch> dispatch;
    EXPECT_EQ(media.As(IID_IDispatch, dispatch), S_OK);
    LONG result = 5;
    EXPECT_EQ(media->get_Result(&result), S_OK);
    EXPECT_EQ(result, S_OK);
    media.Reset();
    dispatch.Reset();
    identity.Reset();
    EXPECT_EQ(outer.references, 1U);
    EXPECT_EQ(DllCanUnloadNow(), S_FALSE);
  }
  EXPECT_EQ(DllCanUnloadNow(), S_OK) << "the part went with the whole";
}

}  // namespace
}  // namespace quillon::test
