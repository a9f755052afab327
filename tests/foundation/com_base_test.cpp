#include "foundation/com_base.h"

#include "foundation_test_support.h"
#include "support/system_sentence.h"

namespace quillon {
namespace {

using test::ErrorOf;
using test::Plain;
using test::systemSentence;

constexpr UINT kNoSuchMessage = 0;
constexpr HRESULT Result(std::uint32_t code) { return static_cast<HRESULT>(code); }

// Neither the system nor the message table has a text for these.
constexpr HRESULT kResultWithoutText = Result(0xA0001234);
constexpr DWORD kCodeWithoutText = 0x2FFFFFFF;

class Wrapper : public CComBase {
 public:
  [[nodiscard]] bool IsInitialized() const { return com_.IsInitialized(); }
};

const std::string kDenied = systemSentence(ERROR_ACCESS_DENIED, "Access is denied.");
const std::string kFull = systemSentence(ERROR_DISK_FULL, "There is not enough space on the disk.");
const std::string kInvalid = systemSentence(ERROR_INVALID_PARAMETER, "The parameter is incorrect.");

TEST(FailedResults, ComposePrefixAndReason) {
  const std::string prefix = "CDiscMaster::RecordDisc failed for this reason:  ";
  const std::string noReason = "The operation failed.";
  // What has the system's text of the result, and what has only that of the last error.
  constexpr auto kReport = &CComBase::ReportFailure;
  constexpr auto kCheck = &CComBase::CheckResult;
  const struct {
    const char* what;
    decltype(kCheck) operation;
    HRESULT hr;
    UINT id;
    DWORD lastError;
    std::string expected;
  } cases[] = {
      {"legacy code", kCheck, Result(0x8004021C), kMsgLegacyMethodFailed, ERROR_ACCESS_DENIED,
       prefix + "The disc cannot hold any more data"},
      {"no text, no last error", kCheck, kResultWithoutText, kMsgMethodFailed, 0,
       prefix + noReason},
      {"no text, last error", kCheck, kResultWithoutText, kMsgMethodFailed, ERROR_ACCESS_DENIED,
       prefix + kDenied},
      {"no text at all", kCheck, kResultWithoutText, kMsgMethodFailed, kCodeWithoutText,
       prefix + noReason},
      {"the HRESULT's own text is not asked for", kCheck, E_ACCESSDENIED, kMsgMethodFailed,
       ERROR_DISK_FULL, prefix + kFull},
      {"prefix without text", kCheck, kResultWithoutText, kNoSuchMessage, ERROR_ACCESS_DENIED,
       noReason + kDenied},
      {"reported", kReport, E_INVALIDARG, kMsgMethodFailed, ERROR_DISK_FULL, prefix + kInvalid},
      {"reported without a prefix", kReport, E_INVALIDARG, kNoSuchMessage, kCodeWithoutText,
       noReason + kInvalid},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    Wrapper wrapper;
    SetLastError(c.lastError);
    EXPECT_FALSE((wrapper.*c.operation)(c.hr, c.id, OLESTR("CDiscMaster"), OLESTR("RecordDisc")));
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

TEST(ResultTexts, StandInWhereTheSystemHasNone) {
  const struct {
    HRESULT hr;
    DWORD lastError;
    std::string expected;
  } cases[] = {
      {E_FAIL, ERROR_DISK_FULL, "p: " + systemSentence(E_FAIL, "Unspecified error")},
      {kResultWithoutText, ERROR_DISK_FULL, "p: Unknown error 0xA0001234"},
      {Result(0x80041234), 0, "p: IDispatch error #4148"},
      {Result(0x8004FFFF), 0, "p: IDispatch error #65023"},
      {Result(0x80050000), 0, "p: Unknown error 0x80050000"},
      {S_OK, ERROR_DISK_FULL, "p: " + kFull},
      {S_OK, 0, "p: The operation failed."},
      {S_OK, kCodeWithoutText, "p: The operation failed."},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.expected);
    Wrapper wrapper;
    const _bstr_t prefix(OLESTR("p: "));
    SetLastError(c.lastError);
    EXPECT_TRUE(wrapper.SetErrorMessage(c.hr, prefix));
    EXPECT_EQ(ErrorOf(wrapper), c.expected);
  }
}

TEST(ProcessError, GivesTheTextOfTheCaughtException) {
  const struct {
    const char* what;
    HRESULT hr;
    DWORD lastError;
    std::string expected;
  } cases[] = {
      {"its own text", E_ACCESSDENIED, ERROR_DISK_FULL, kDenied},
      {"none, last error", S_OK, ERROR_DISK_FULL, kFull},
      {"none, last error without text", S_OK, kCodeWithoutText, ""},
      {"none, no last error", S_OK, 0,
       systemSentence(ERROR_SUCCESS, "The operation completed successfully.")},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    Wrapper wrapper;
    const _com_error error(c.hr);
    SetLastError(c.lastError);
    EXPECT_FALSE(
        wrapper.ProcessError(error, kMsgMethodThrew, OLESTR("CXmlDocument"), OLESTR("Load")));
    EXPECT_EQ(ErrorOf(wrapper),
              "CXmlDocument::Load threw an exception for this reason:  " + c.expected);
    SetLastError(c.lastError);
    EXPECT_FALSE(wrapper.ProcessError(error, kNoSuchMessage, OLESTR("CStorage"), OLESTR("Open")));
    EXPECT_EQ(ErrorOf(wrapper),
              "The operation failed." + Plain(SystemText(c.lastError)) + c.expected);
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
