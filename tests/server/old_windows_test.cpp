// What is said of a system that cannot record, which only a substitute of the version can make.
#include <gtest/gtest.h>

#include "foundation/com_base.h"
#include "media_calls.h"
#include "platform/imapi.h"
#include "platform/imapi2.h"
#include "platform/testing.h"
#include "support/com_class.h"

namespace quillon::test {
namespace {

constexpr VARIANT_BOOL kUntouched = 7;

TEST(DiscQuestions, AreAnsweredWithNoWhenThereIsNoTelling) {
  const CComBase apartment;
  CQuillonMediaRW media;
  const HiddenClass noCurrent(CLSID_MsftDiscMaster2);
  const HiddenClass noLegacy(CLSID_MSDiscMasterObj);
  const platform::testing::Scope restored;
  for (const auto question :
       {&CQuillonMediaRW::get_CDRWHasContent, &CQuillonMediaRW::get_CDIsRecordable}) {
    platform::testing::Restore();
    EXPECT_EQ(media.Write(nullptr), S_FALSE);  // leaves a Result that a reset would show
    VARIANT_BOOL answer = kUntouched;
    EXPECT_EQ((media.*question)(&answer), S_FALSE);
    EXPECT_EQ(answer, 0);
    EXPECT_EQ(resultOf(media), E_INVALIDARG);
    EXPECT_EQ(errorOf(media), "Cannot determine the current version of IMAPI that is installed.");
    platform::testing::SubstituteVersion(5, 0, 2195, 4);
    answer = kUntouched;
    EXPECT_EQ((media.*question)(&answer), S_FALSE);
    EXPECT_EQ(answer, 0);
    EXPECT_EQ(errorOf(media),
              "Windows XP or later is required to record the DICOM fileset to compact disc.");
    media.put_SimulateCreation(0);
    EXPECT_EQ((media.*question)(nullptr), S_FALSE);
    EXPECT_EQ(resultOf(media), E_INVALIDARG);
  }
}

}  // namespace
}  // namespace quillon::test
