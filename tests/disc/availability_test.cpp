#include "disc_test_support.h"
#include "host_thread.h"
#include "platform/com/com_object.h"
#include "platform/imapi2.h"
#include "support/legacy_service.h"

namespace quillon {
namespace {

// A disc master of the current generation that is only there.
class PresentMaster final : public DispatchObject<IDiscMaster2, IID_IDiscMaster2> {
 public:
  HRESULT STDMETHODCALLTYPE get__NewEnum(IEnumVARIANT**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_Item(LONG, BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_Count(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_IsSupportedEnvironment(VARIANT_BOOL*) override { return E_NOTIMPL; }
};

TEST(Availability, TheNewerGenerationIsPreferredAndEachQuestionAsksAnew) {
  test::onHostThread([] {
    bool hasCurrent = false;
    const DWORD cookie = test::registerClass(CLSID_MsftDiscMaster2,
                                             [&hasCurrent](REFIID riid, void** object) -> HRESULT {
                                               if (!hasCurrent) return REGDB_E_CLASSNOTREG;
                                               ComPtr<PresentMaster> master;
                                               master.Attach(new PresentMaster);
                                               return master->QueryInterface(riid, object);
                                             });
    using Generation = DiscMasteringGeneration;
    const struct {
      bool current, legacy;
      Generation expected;
    } cases[] = {{true, true, Generation::Current},
                 {false, true, Generation::Legacy},
                 {true, false, Generation::Current},
                 {false, false, Generation::None}};
    test::LegacyService service;
    for (const auto& c : cases) {
      SCOPED_TRACE(testing::Message() << "current " << c.current << ", legacy " << c.legacy);
      hasCurrent = c.current;
      const test::RegisteredLegacyService registered(service, c.legacy, true);
      auto generation = Generation::Current;
      EXPECT_EQ(CTarnImapiVersion::Instance().Detect(generation), c.expected != Generation::None);
      EXPECT_EQ(generation, c.expected);
    }
    EXPECT_TRUE(CTarnImapiVersion::Instance().ErrorMessage().empty());
    EXPECT_EQ(service.liveObjects, 0);
    CoRevokeClassObject(cookie);
  });
}

TEST(Availability, WithoutAnyGenerationNothingIsAnsweredOrWritten) {
  test::onHostThread([] {
    const test::HiddenClass noCurrent(CLSID_MsftDiscMaster2);
    const test::HiddenClass noLegacy(CLSID_MSDiscMasterObj);
    constexpr const char* kUnknown =
        "Cannot determine the current version of IMAPI that is installed.";
    for (const bool forContent : {true, false}) {
      CQuillonMediaProcessor processor;
      bool answer = true;
      EXPECT_FALSE(test::asks(processor, forContent, answer));
      EXPECT_FALSE(answer);
      EXPECT_EQ(test::errorOf(processor), kUnknown);
    }
    CQuillonMediaProcessor processor;
    EXPECT_TRUE(processor.AddContent(OLESTR("/tmp")));
    EXPECT_FALSE(processor.WriteToMedia());
    EXPECT_EQ(test::errorOf(processor), kUnknown);
  });
}

}  // namespace
}  // namespace quillon
