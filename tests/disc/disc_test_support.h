// What the tests of the disc folder share.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "disc/media_processor.h"
#include "support/disc_service.h"
#include "support/sleep_record.h"
#include "support/system_sentence.h"
#include "support/temp_dir.h"
#include "support/threads.h"

namespace quillon::test {

inline std::string errorOf(const CBaseItem& item) { return Plain(item.ErrorMessage()); }
inline const std::string kAccessDenied = systemSentence(E_ACCESSDENIED, "Access is denied.");
constexpr HRESULT resultOf(std::uint32_t code) { return static_cast<HRESULT>(code); }

// The error text with the number of its source line replaced by "N"; a line of 0, or none, stays
// to be seen.
inline std::string errorWithoutLine(const CBaseItem& item) {
  std::string text = errorOf(item);
  constexpr std::string_view kLine = "Line: ";
  const std::size_t at = text.find(kLine);
  if (at == std::string::npos) return text;
  const std::size_t number = at + kLine.size();
  const std::size_t end = text.find_first_not_of("0123456789", number);
  if (end == number || end == std::string::npos || text[number] == '0') return text;
  return text.replace(number, end - number, "N");
}

// What a failing call of "Class::Method" leaves, with each part of its reason on lines of its own.
inline std::string composed(const std::string& classAndMethod,
                            const std::vector<std::string>& reasons,
                            const std::string& verb = "failed") {
  const std::string method = classAndMethod.substr(classAndMethod.find(':') + 2);
  std::string text = "File: tarnimapiutil\n\nLine: N\nMethod: " + method + "\n\n" + classAndMethod +
                     " " + verb + " for this reason:  \n\n";
  for (const std::string& reason : reasons) {
    if (!reason.empty()) text += reason + "\n\n";
  }
  return text;
}

// A result that has a sentence of its own, for calls that are to fail.
constexpr HRESULT kDriveFailure = resultOf(0xC0AA0301);
inline const std::string kDriveFailureText =
    "The write failed because the drive returned error information that could not be recovered "
    "from.";

// The operation that stands for a call of the platform.
inline std::string operationOf(const std::string& call) {
  static const std::map<std::string, std::string> kOthers = {
      {"Create MsftDiscRecorder2", "CDiscRecorder2::Create"},
      {"IDiscMaster2::get__NewEnum", "CDiscMaster2::GetDiscDevices"},
      {"IEnumVARIANT::Reset", "CDiscMaster2Iterator::Reset"},
      {"IEnumVARIANT::Next", "CDiscMaster2Iterator::Next"},
      {"IStream::Stat", "CImapiImageStream::Stat"}};
  if (const auto other = kOthers.find(call); other != kOthers.end()) return other->second;
  // As CDiscFormat2Data::SetRecorder stands for IDiscFormat2Data::put_Recorder.
  const std::size_t method = call.find("::") + 2;
  std::string name = call.substr(method);
  if (name.starts_with("get_")) name.replace(0, 4, "Get");
  if (name.starts_with("put_")) name.replace(0, 4, "Set");
  return "C" + call.substr(1, method - 1) + name;
}

// What the call leaves when it answers kDriveFailure.
inline std::string driveFailure(const std::string& call) {
  static const std::map<std::string, std::string> kCreated = {
      {"Create MsftDiscMaster2", "disc master"},
      {"Create MsftDiscFormat2Data", "disc data format"},
      {"Create MsftDiscFormat2Erase", "disc data eraser"},
      {"Create MsftFileSystemImage", "file system image"}};
  const auto created = kCreated.find(call);
  if (created == kCreated.end()) return composed(operationOf(call), {kDriveFailureText});
  return "File: tarnimapiutil\n\nLine: N\nMethod: Create\n\nCannot create the " + created->second +
         " object for this reason:\n\n" + kDriveFailureText + "\n\n";
}

// The same for the n-th of these calls.
inline std::string driveFailure(const std::vector<std::string>& calls, std::size_t n) {
  // Of the two that ask a stream for its size, the second is the service's own Write.
  const bool isWithinWrite = n > 0 && calls[n - 1] == "IDiscFormat2Data::Write";
  return driveFailure(calls[isWithinWrite ? n - 1 : n]);
}

// One of the two questions about the medium.
inline bool asks(CQuillonMediaProcessor& processor, bool forContent, bool& answer) {
  return forContent ? processor.CDRWHasContent(answer) : processor.CDIsRecordable(answer);
}

// Runs the job on a thread that has initialised COM as a host does; what the job initialises there
// it must give back.
inline void onHostThread(const std::function<void()>& job) {
  onThreads(1, [&] {
    ASSERT_EQ(CoInitialize(nullptr), S_OK);
    job();
    CoUninitialize();
    EXPECT_EQ(CoInitialize(nullptr), S_OK) << "COM is still initialised on the thread";
    CoUninitialize();
  });
}

// Each test has a service of its own, and time that passes without waiting.
class WithDiscService : public ::testing::Test {
 protected:
  void FailCall(const std::string& call, int skip = 0) {
    service_.faults.push_back({.call = call, .result = kDriveFailure, .skip = skip});
  }

  // A service as it was at the start, of which this one call fails.
  void RenewWithFailingCall(std::size_t number) {
    service_ = {};
    service_.failingCall = static_cast<int>(number);
    service_.failingResult = kDriveFailure;
  }
  // A drive that is becoming ready is asked ten times, five seconds apart. The job answers whether
  // it succeeded, and what it says; it makes skip such calls before.
  void ExpectTenAttempts(const std::string& call, int skip,
                         const std::function<std::pair<bool, std::string>()>& job) {
    SCOPED_TRACE(call);
    for (const bool becomesReady : {true, false}) {
      service_ = {};
      service_.Disc() = rewritableDiscWithData();
      sleeps_.waitsMs.clear();
      service_.faults = {{.call = call,
                          .result = E_IMAPI_RECORDER_MEDIA_BECOMING_READY,
                          .skip = skip,
                          .times = becomesReady ? 9 : INT_MAX}};
      const auto [succeeded, error] = job();
      EXPECT_EQ(succeeded, becomesReady);
      EXPECT_EQ(sleeps_.waitsMs, std::vector<DWORD>(becomesReady ? 9 : 10, 5000));
      if (becomesReady) continue;
      EXPECT_EQ(service_.CountOf(call), skip + 10);
      EXPECT_EQ(error,
                composed(operationOf(call), {"The drive reported that it is in the process of "
                                             "becoming ready. Please try the request again "
                                             "later."}));
    }
  }

  SleepRecord sleeps_;
  FakeDiscService service_;
  RegisteredDiscService registered_{service_};
};

}  // namespace quillon::test
