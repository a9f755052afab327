// The toolkit's log lines in a host, whose standard output is its own.
#include "fileset/toolkit_log.h"

#include <gtest/gtest.h>

#include "builder_job.h"
#include "dicom/log.h"

namespace quillon::test {
namespace {

// What a line comes to: where it went, or what writing it answered.
class ToolkitLog : public testing::Test {
 protected:
  ~ToolkitLog() override {
    for (int level = 0; level < kDcLogLevels; ++level) {
      dcTheLog()->setFile(static_cast<DcLogLevel>(level), "");
      dcTheLog()->enable(static_cast<DcLogLevel>(level), true);
    }
  }

  static std::string printedBy(DcLogLevel level, const char* text, DcLogCode expected) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    EXPECT_EQ(dcLog(level, "test", "%s", text), expected);
    return testing::internal::GetCapturedStdout() + testing::internal::GetCapturedStderr();
  }

  TempDir dir_;
  MediaCreationKey registry_{dir_.path()};
};

TEST_F(ToolkitLog, GoesNowhereUnlessAFileIsConfigured) {
  for (const bool hasKey : {false, true}) {
    if (hasKey) registry_.setNumber("ToolkitLogFile", 1);
    SendToolkitLogAsConfigured();
    for (int level = 0; level < kDcLogLevels; ++level) {
      EXPECT_EQ(printedBy(static_cast<DcLogLevel>(level), "lost", kDcLogDisabled), "");
    }
  }
}

TEST_F(ToolkitLog, GoesToTheConfiguredFile) {
  registry_.setText("ToolkitLogFile", "toolkit.log");
  const fs::path before = fs::current_path();
  fs::current_path(dir_.path());
  SendToolkitLogAsConfigured();
  fs::current_path(before);
  EXPECT_EQ(printedBy(DcLogLevel::Error, "first", kDcOk), "");
  EXPECT_EQ(printedBy(DcLogLevel::Debug, "second", kDcOk), "");
  const auto bytes = readBytes(dir_ / "toolkit.log");
  const std::string lines(bytes.begin(), bytes.end());
  EXPECT_NE(lines.find("<test> first\n"), std::string::npos);
  EXPECT_NE(lines.find("<test> second\n"), std::string::npos);

  registry_.setText("ToolkitLogFile", dir_ / "none/toolkit.log");
  SendToolkitLogAsConfigured();
  EXPECT_EQ(printedBy(DcLogLevel::Error, "lost", kDcLogFileError), "");
}

}  // namespace
}  // namespace quillon::test
