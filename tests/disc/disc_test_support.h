// What the tests of the disc folder share.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "foundation/base_item.h"
#include "support/disc_service.h"
#include "support/sleep_record.h"
#include "support/system_sentence.h"
#include "support/temp_dir.h"

namespace quillon::test {

inline std::string errorOf(const CBaseItem& item) { return Plain(item.ErrorMessage()); }
inline const std::string kAccessDenied = systemSentence(E_ACCESSDENIED, "Access is denied.");
constexpr HRESULT resultOf(std::uint32_t code) { return static_cast<HRESULT>(code); }

// The error text with the number of its source line replaced by "N".
inline std::string errorWithoutLine(const CBaseItem& item) {
  std::string text = errorOf(item);
  constexpr std::string_view kLine = "Line: ";
  const std::size_t at = text.find(kLine);
  if (at == std::string::npos) return text;
  const std::size_t number = at + kLine.size();
  const std::size_t end = text.find_first_not_of("0123456789", number);
  // A line of 0, or none, stays to be seen.
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
inline std::string driveFailure(const std::string& classAndMethod) {
  return composed(classAndMethod, {kDriveFailureText});
}

// Each test has a service of its own, and time that passes without waiting.
class WithDiscService : public ::testing::Test {
 protected:
  void FailCall(const std::string& call, int skip = 0) {
    service_.faults.push_back({.call = call, .result = kDriveFailure, .skip = skip});
  }

  SleepRecord sleeps_;
  FakeDiscService service_;
  RegisteredDiscService registered_{service_};
};

}  // namespace quillon::test
