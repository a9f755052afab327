#include "foundation/com_base.h"

#include "foundation_test_support.h"
#include "support/system_sentence.h"

namespace quillon {
namespace {

using test::ErrorOf;
using test::systemSentence;

constexpr UINT kNoSuchMessage = 0;
constexpr HRESULT Result(std::uint32_t code) { return static_cast<HRESULT>(code); }

// Neither the system nor the message table has a text for these.
constexpr HRESULT kResultWithoutText = Result(0xA0001234);
constexpr DWORD kCodeWithoutText = 0x2FFFFFFF;

class Wrapper : public CComBase {
 public:
  [[nodiscard]] bool IsInitialized() const { return comInitialized_; }
};

TEST(CheckResult, ComposesPrefixAndReason) {
  struct Case {
    const char* what;
    HRESULT hr;
    UINT id;
    DWORD lastError;
    std::string expected;
  };
  const Case cases[] = {
      {"legacy code", Result(0x8004021C), kMsgLegacyMethodFailed, 5,
       "CDiscMaster::RecordDisc failed for this reason:  The disc cannot hold any more data"},
      {"no text, no last error", kResultWithoutText, kMsgMethodFailed, 0,
       "CDiscMaster::RecordDisc failed for this reason:  The operation failed."},
      {"no text, last error", kResultWithoutText, kMsgMethodFailed, ERROR_ACCESS_DENIED,
       "CDiscMaster::RecordDisc failed for this reason:  " +
           systemSentence(ERROR_ACCESS_DENIED, "Access is denied.")},
      {"no text at all", kResultWithoutText, kMsgMethodFailed, kCodeWithoutText,
       "CDiscMaster::RecordDisc failed for this reason:  The operation failed."},
      {"the HRESULT's own text is not asked for", E_ACCESSDENIED, kMsgMethodFailed, ERROR_DISK_FULL,
       "CDiscMaster::RecordDisc failed for this reason:  " +
           systemSentence(ERROR_DISK_FULL, "There is not enough space on the disk.")},
      {"prefix without text", kResultWithoutText, kNoSuchMessage, ERROR_ACCESS_DENIED,
       "The operation failed." + systemSentence(ERROR_ACCESS_DENIED, "Access is denied.")},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    Wrapper wrapper;
    SetLastError(c.lastError);
    EXPECT_FALSE(wrapper.CheckResult(c.hr, c.id, OLESTR("CDiscMaster"), OLESTR("RecordDisc")));
    EXPECT_EQ(ErrorOf(wrapper), c.expected);
  }
}

TEST(CheckResult, LeavesTheMessageAloneOnSuccess) {
  Wrapper wrapper;
  wrapper.CBaseItem::SetErrorMessage(OLESTR("earlier"));
  for (const HRESULT hr : {S_OK, S_FALSE, HRESULT{0x00040200}}) {
    EXPECT_TRUE(wrapper.CheckResult(hr, kMsgMethodFailed, OLESTR("CStorage"), OLESTR("Open")));
  }
  EXPECT_EQ(ErrorOf(wrapper), "earlier");
}

TEST(ReportFailure, GivesTheSystemsTextOfTheResult) {
  Wrapper wrapper;
  SetLastError(ERROR_DISK_FULL);
  EXPECT_FALSE(
      wrapper.ReportFailure(E_INVALIDARG, kMsgMethodFailed, OLESTR("CStorage"), OLESTR("Open")));
  EXPECT_EQ(ErrorOf(wrapper),
            "CStorage::Open failed for this reason:  " +
                systemSentence(ERROR_INVALID_PARAMETER, "The parameter is incorrect."));
  SetLastError(kCodeWithoutText);
  EXPECT_FALSE(
      wrapper.ReportFailure(E_INVALIDARG, kNoSuchMessage, OLESTR("CStorage"), OLESTR("Open")));
  EXPECT_EQ(ErrorOf(wrapper),
            "The operation failed." +
                systemSentence(ERROR_INVALID_PARAMETER, "The parameter is incorrect."));
}

TEST(ResultTexts, StandInWhereTheSystemHasNone) {
  struct Case {
    HRESULT hr;
    DWORD lastError;
    std::string expected;
  };
  const Case cases[] = {
      {E_FAIL, ERROR_DISK_FULL, "p: " + systemSentence(E_FAIL, "Unspecified error")},
      {kResultWithoutText, ERROR_DISK_FULL, "p: Unknown error 0xA0001234"},
      {Result(0x80041234), 0, "p: IDispatch error #4148"},
      {Result(0x8004FFFF), 0, "p: IDispatch error #65023"},
      {Result(0x80050000), 0, "p: Unknown error 0x80050000"},
      {S_OK, ERROR_DISK_FULL,
       "p: " + systemSentence(ERROR_DISK_FULL, "There is not enough space on the disk.")},
      {S_OK, 0, "p: The operation failed."},
      {S_OK, kCodeWithoutText, "p: The operation failed."},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.expected);
    Wrapper wrapper;
    const _bstr_t prefix(OLESTR("p: "));
    SetLastError(c.lastError);
    EXPECT_TRUE(wrapper.SetErrorMessage(c.hr, prefix));
    EXPECT_EQ(ErrorOf(wrapper), c.expected);
  }
}

TEST(ProcessError, GivesTheTextOfTheCaughtException) {
  struct Case {
    const char* what;
    HRESULT hr;
    DWORD lastError;
    std::string expected;
  };
  const Case cases[] = {
      {"its own text", E_ACCESSDENIED, ERROR_DISK_FULL,
       systemSentence(ERROR_ACCESS_DENIED, "Access is denied.")},
      {"none, last error", S_OK, ERROR_DISK_FULL,
       systemSentence(ERROR_DISK_FULL, "There is not enough space on the disk.")},
      {"none, last error without text", S_OK, kCodeWithoutText, ""},
      {"none, no last error", S_OK, 0,
       systemSentence(ERROR_SUCCESS, "The operation completed successfully.")},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    Wrapper wrapper;
    const _com_error error(c.hr);
    SetLastError(c.lastError);
    EXPECT_FALSE(
        wrapper.ProcessError(error, kMsgMethodThrew, OLESTR("CXmlDocument"), OLESTR("Load")));
    EXPECT_EQ(ErrorOf(wrapper),
              "CXmlDocument::Load threw an exception for this reason:  " + c.expected);
    SetLastError(c.lastError);
    EXPECT_FALSE(wrapper.ProcessError(error, _bstr_t()));
    EXPECT_EQ(ErrorOf(wrapper), c.expected.empty() ? "The operation failed." : c.expected);
  }
}

TEST(ComBase, HoldsOneInitialisationForItsLife) {
  {
    Wrapper first;
    Wrapper second;
    EXPECT_EQ(first.GetLastResult(), S_OK);
    EXPECT_EQ(second.GetLastResult(), S_FALSE);
    EXPECT_TRUE(second.EnsureComInitialized());
    EXPECT_EQ(second.GetLastResult(), S_FALSE);
  }
  EXPECT_EQ(CoInitialize(nullptr), S_OK) << "both gave theirs back";
  CoUninitialize();
}

TEST(ComBase, GivesBackNothingThatItDidNotGet) {
  ASSERT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
  {
    Wrapper wrapper;
    EXPECT_FALSE(wrapper.IsInitialized());
    EXPECT_FALSE(wrapper.EnsureComInitialized());
    EXPECT_EQ(wrapper.GetLastResult(), RPC_E_CHANGED_MODE);
  }
  EXPECT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_FALSE) << "still initialised";
  CoUninitialize();
  CoUninitialize();
}

}  // namespace
}  // namespace quillon
