#include <gtest/gtest.h>

#include "disc/media_processor.h"
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
  ASSERT_EQ(CoInitialize(nullptr), S_OK);
  {
    bool hasCurrent = false;
    const DWORD cookie = test::registerClass(CLSID_MsftDiscMaster2,
                                             [&hasCurrent](REFIID riid, void** object) -> HRESULT {
                                               if (!hasCurrent) return REGDB_E_CLASSNOTREG;
                                               ComPtr<PresentMaster> master;
                                               master.Attach(new PresentMaster);
                                               return master->QueryInterface(riid, object);
                                             });
    const struct {
      const char* what;
      bool current, legacy;
      DiscMasteringGeneration expected;
    } cases[] = {
        {"both", true, true, DiscMasteringGeneration::Current},
        {"the legacy one", false, true, DiscMasteringGeneration::Legacy},
        {"the current one", true, false, DiscMasteringGeneration::Current},
        {"neither", false, false, DiscMasteringGeneration::None},
    };
    test::LegacyService service;
    for (const auto& c : cases) {
      SCOPED_TRACE(c.what);
      hasCurrent = c.current;
      const test::RegisteredLegacyService registered(service, c.legacy, true);
      auto generation = DiscMasteringGeneration::Current;
      EXPECT_EQ(CTarnImapiVersion::Instance().Detect(generation),
                c.expected != DiscMasteringGeneration::None);
      EXPECT_EQ(generation, c.expected);
    }
    EXPECT_TRUE(CTarnImapiVersion::Instance().ErrorMessage().empty());
    EXPECT_EQ(service.liveObjects, 0);
    CoRevokeClassObject(cookie);
  }
  CoUninitialize();
}

TEST(Availability, WithoutAnyGenerationNothingIsAnsweredOrWritten) {
  ASSERT_EQ(CoInitialize(nullptr), S_OK);
  {
    const test::HiddenClass noCurrent(CLSID_MsftDiscMaster2);
    const test::HiddenClass noLegacy(CLSID_MSDiscMasterObj);
    CQuillonMediaProcessor processor;
    const auto sentence = [&] {
      const std::string text = test::Plain(processor.ErrorMessage());
      processor.ClearError();
      return text;
    };
    constexpr const char* kUnknown =
        "Cannot determine the current version of IMAPI that is installed.";
    bool answer = true;
    EXPECT_FALSE(processor.CDRWHasContent(answer));
    EXPECT_FALSE(answer);
    EXPECT_EQ(sentence(), kUnknown);
    answer = true;
    EXPECT_FALSE(processor.CDIsRecordable(answer));
    EXPECT_FALSE(answer);
    EXPECT_EQ(sentence(), kUnknown);
    EXPECT_TRUE(processor.AddContent(OLESTR("/tmp")));
    EXPECT_FALSE(processor.WriteToMedia());
    EXPECT_EQ(sentence(), kUnknown);
  }
  CoUninitialize();
}

}  // namespace
}  // namespace quillon
