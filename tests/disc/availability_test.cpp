#include <optional>

#include "disc_test_support.h"
#include "platform/imapi2.h"
#include "support/legacy_service.h"

namespace quillon {
namespace {

TEST(Availability, TheNewerGenerationIsPreferredAndEachQuestionAsksAnew) {
  test::onHostThread([] {
    using Generation = DiscMasteringGeneration;
    const struct {
      bool current, legacy;
      Generation expected;
    } cases[] = {{true, true, Generation::Current},
                 {false, true, Generation::Legacy},
                 {true, false, Generation::Current},
                 {false, false, Generation::None}};
    test::FakeDiscService currentService;
    test::LegacyService legacyService;
    for (const auto& c : cases) {
      SCOPED_TRACE(testing::Message() << "current " << c.current << ", legacy " << c.legacy);
      std::optional<test::RegisteredDiscService> current;
      std::optional<test::HiddenClass> noCurrent;
      if (c.current) {
        current.emplace(currentService);
      } else {
        noCurrent.emplace(CLSID_MsftDiscMaster2);
      }
      const test::RegisteredLegacyService registered(legacyService, c.legacy, true);
      auto generation = Generation::Current;
      EXPECT_EQ(CTarnImapiVersion::Instance().Detect(generation), c.expected != Generation::None);
      EXPECT_EQ(generation, c.expected);
    }
    EXPECT_TRUE(CTarnImapiVersion::Instance().ErrorMessage().empty());
    EXPECT_EQ(currentService.liveObjects + legacyService.liveObjects, 0);
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
