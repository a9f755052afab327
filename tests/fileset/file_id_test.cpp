#include <gtest/gtest.h>

#include <string>

#include "builder_job.h"

namespace quillon::test {
namespace {

TEST(FileIds, AreRefusedWithTheRuleThatTheyBreak) {
  const std::string start = "The File ID ";
  const std::string middle = " does not conform to the DICOM standard because ";
  const std::string characters =
      "it may only be comprised of these characters:  ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_\\/";
  const std::string levels = "the directory hierarchy exceeds 8 levels.";
  const std::string levelLength =
      "any one directory in the hierarchy may not exceed 12 characters.";
  // Eight levels of twelve characters and their seven separators: 103.
  std::string longest = "ABCDEFGHIJKL";
  for (int i = 0; i < 7; ++i) longest += "\\ABCDEFGHIJKL";
  const struct {
    const char* what;
    std::string fileId;
    std::string reason;  // empty when accepted
  } cases[] = {
      {"usual", "DICOMOBJ\\P0000001\\S0000001\\E0000001\\QLN00001", ""},
      {"trailing separator", "DICOMOBJ\\", ""},
      {"slashes", "A/B/C", ""},
      {"longest", longest, ""},
      {"longer than the longest", longest + "A", "it exceeds 103 characters in length."},
      {"length before characters", std::string(104, 'a'), "it exceeds 103 characters in length."},
      {"lower case", "dicomobj", characters},
      {"dot", "A.TXT", characters},
      {"eight levels", "A\\B\\C\\D\\E\\F\\G\\H", ""},
      {"nine levels", "A\\B\\C\\D\\E\\F\\G\\H\\I", levels},
      {"eight separators", "A\\B\\C\\D\\E\\F\\G\\H\\", levels},
      {"twelve in a level", "ABCDEFGHIJKL\\A", ""},
      {"thirteen in a level", "ABCDEFGHIJKLM", levelLength},
      {"thirteen in the last level", "A\\ABCDEFGHIJKLM", levelLength},
      {"nine levels and thirteen", "A\\B\\C\\D\\E\\F\\G\\ABCDEFGHIJKLM\\B", levelLength},
  };
  BuilderJob job;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    job.builder.ClearError();
    EXPECT_EQ(job.builder.ValidateFileId(WideOf(c.fileId)), c.reason.empty());
    EXPECT_EQ(job.sentence(), c.reason.empty() ? "" : start + c.fileId + middle + c.reason);
  }
  EXPECT_FALSE(job.builder.ValidateFileId(OLESTR("")));
  EXPECT_EQ(job.sentence(),
            "The File ID does not conform to the DICOM standard because it is empty or null.");
  // The path check of the file utilities.
  EXPECT_FALSE(job.builder.ValidateFileId(OLESTR("A\\\\\\B")));
  EXPECT_NE(job.sentence().find("cannot contain these characters"), std::string::npos);
}

}  // namespace
}  // namespace quillon::test
