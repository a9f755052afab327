// What the tests of the verification share: rows of one fault each, on a file set that is whole
// without it.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "dicom/dict.h"
#include "dicom/log.h"
#include "made_medium.h"
#include "verify/verify_medium.h"

namespace quillon::test {

inline std::string narrow(const Text& text) { return NarrowText(text, CP_ACP); }

class VerifyMediumTest : public testing::Test {
 protected:
  VerifyMediumTest() {
    theDictionary();
    for (int level = 0; level < kDcLogLevels; ++level) {
      dcTheLog()->enable(static_cast<DcLogLevel>(level), false);
    }
  }
};
inline VerifyReport verified(MemoryMedium& medium, const VerifyOptions& options = {}) {
  VerifyReport report;
  CBaseItem errors;
  EXPECT_TRUE(VerifyMedium(medium, options, report, errors));
  return report;
}

// "code file", a line each, in the order of the report.
inline std::string codesOf(const VerifyReport& report) {
  std::string codes;
  for (const Finding& finding : report.findings) {
    codes += std::string(finding.code) + " " + narrow(finding.file) + "\n";
  }
  return codes;
}

inline std::string messagesOf(const VerifyReport& report) {
  std::string messages;
  for (const Finding& finding : report.findings) messages += narrow(finding.message) + "\n";
  return messages;
}

inline void replaceIn(Bytes& bytes, const std::string& from, const std::string& to) {
  const auto found = std::search(bytes.begin(), bytes.end(), from.begin(), from.end());
  ASSERT_NE(found, bytes.end()) << from;
  ASSERT_EQ(from.size(), to.size());
  std::copy(to.begin(), to.end(), found);
}

struct Row {
  const char* what;
  std::function<void(MadeMedium&)> beforeDicomDir;  // of the records and the files
  std::function<void(MadeMedium&)> afterwards;      // of the bytes
  std::string expected;                             // codesOf
  const char* sentence = "";                        // part of the first message
};

inline void check(const Row& row) {
  SCOPED_TRACE(row.what);
  MadeMedium made;
  if (row.beforeDicomDir) row.beforeDicomDir(made);
  made.makeDicomDir();
  if (row.afterwards) row.afterwards(made);
  const VerifyReport report = verified(made.medium);
  EXPECT_EQ(codesOf(report), row.expected) << messagesOf(report);
  if (!report.findings.empty()) {
    EXPECT_NE(messagesOf(report).find(row.sentence), std::string::npos) << messagesOf(report);
  }
  EXPECT_EQ(report.IsWhole(), std::ranges::all_of(report.findings, [](const Finding& finding) {
              return finding.severity == Severity::Note;
            }));
}

inline void check(const std::vector<Row>& rows) {
  for (const Row& row : rows) check(row);
}

}  // namespace quillon::test
