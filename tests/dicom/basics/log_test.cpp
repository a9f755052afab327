#include "dicom/log.h"

#include <gtest/gtest.h>

#include <string>

#include "dicom/dict.h"
#include "platform/testing.h"
#include "support/temp_dir.h"

namespace quillon {
namespace {

using test::TempDir;

std::string textOf(const std::filesystem::path& file) {
  const auto bytes = test::readBytes(file);
  return {bytes.begin(), bytes.end()};
}

class LogSink : public testing::Test {
 protected:
  void SetUp() override {
    theDictionary();
    platform::testing::SubstituteClock([] { return SYSTEMTIME{2009, 12, 0, 5, 7, 0, 9, 0}; });
    dcTheLog()->setFile(DcLogLevel::Error, (dir_ / "errors").string());
    dcTheLog()->setFile(DcLogLevel::Debug, (dir_ / "debug").string());
  }
  void TearDown() override {
    platform::testing::Restore();
    for (int level = 0; level < kDcLogLevels; ++level) {
      dcTheLog()->enable(static_cast<DcLogLevel>(level), true);
      dcTheLog()->setFile(static_cast<DcLogLevel>(level), "");
    }
  }

  TempDir dir_;
};

TEST_F(LogSink, ALineIsTheTimeTheFunctionAndTheMessage) {
  EXPECT_EQ(dcLog(DcLogLevel::Error, "DcElem::getValue", "%s %d", "value", 7), kDcOk);
  EXPECT_EQ(dcLog(DcLogLevel::Error, nullptr, "without function"), kDcOk);
  EXPECT_EQ(dcLog(DcLogLevel::Debug, "f", "elsewhere"), kDcOk);
  EXPECT_EQ(textOf(dir_ / "errors"),
            "Dec05 07:00:09 <DcElem::getValue> value 7\n"
            "Dec05 07:00:09 without function\n");
  EXPECT_EQ(textOf(dir_ / "debug"), "Dec05 07:00:09 <f> elsewhere\n");
}

TEST_F(LogSink, AMessageOfAnyLengthIsWrittenWhole) {
  for (const std::size_t length : {510U, 511U, 512U, 513U, 20'000U}) {
    SCOPED_TRACE(length);
    std::filesystem::remove(dir_ / "errors");
    const std::string message(length, 'm');
    EXPECT_EQ(dcLog(DcLogLevel::Error, "f", "%s", message.c_str()), kDcOk);
    EXPECT_EQ(textOf(dir_ / "errors"), "Dec05 07:00:09 <f> " + message + "\n");
  }
}

TEST_F(LogSink, WithoutAFileALineGoesToStandardOutput) {
  testing::internal::CaptureStdout();
  EXPECT_EQ(dcLog(DcLogLevel::Info, "f", "message"), kDcOk);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "Dec05 07:00:09 <f> message\n");
}

TEST_F(LogSink, EachRefusalHasItsCodeAndWritesNothing) {
  testing::internal::CaptureStdout();
  EXPECT_EQ(dcTheLog()->enable(DcLogLevel::Error, false), kDcOk);
  EXPECT_EQ(dcLog(DcLogLevel::Error, "f", "message"), 0x2802U);
  EXPECT_EQ(dcLog(static_cast<DcLogLevel>(4), "f", "message"), 0x2803U);
  EXPECT_EQ(dcLog(static_cast<DcLogLevel>(-1), "f", "message"), 0x2803U);
  EXPECT_EQ(dcTheLog()->enable(static_cast<DcLogLevel>(4), true), 0x2803U);
  EXPECT_EQ(dcTheLog()->setFile(static_cast<DcLogLevel>(-1), "name"), 0x2803U);
  const char* const noFormat = nullptr;
  EXPECT_EQ(dcLog(DcLogLevel::Info, "f", noFormat), 0x2804U);
  dcTheLog()->setFile(DcLogLevel::Info, (dir_ / "missing/file").string());
  EXPECT_EQ(dcLog(DcLogLevel::Info, "f", "message"), 0x2805U);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_FALSE(std::filesystem::exists(dir_ / "errors"));
}

TEST_F(LogSink, ASecondDictionaryLeavesTheSinkInPlace) {
  DcLog* const sink = dcTheLog();
  {
    DcDict second;
    EXPECT_EQ(dcTheLog(), sink);
  }
  EXPECT_EQ(dcTheLog(), sink);
}

}  // namespace
}  // namespace quillon
