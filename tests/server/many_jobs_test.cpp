// A workstation that runs for months: one job after the other in a process that stays.
#include <gtest/gtest.h>
#include <malloc.h>

#include <filesystem>
#include <iterator>

#include "media_calls.h"
#include "server/media_object/media_rw.h"
#include "support/object_maker.h"
#include "support/temp_dir.h"
#include "support/workstation_settings.h"

namespace quillon::test {
namespace {

namespace fs = std::filesystem;

constexpr const char* kStylesheet =
    "<xsl:stylesheet version='1.0' xmlns:xsl='http://www.w3.org/1999/XSL/Transform'>"
    "<xsl:template match='/'><names><xsl:for-each select='//tag'><n><xsl:value-of select='.'/></n>"
    "</xsl:for-each></names></xsl:template></xsl:stylesheet>";

// A whole job: adding, the header of a file, creation, delivery.
void doJob(const TempDir& dir, bool isOfToday) {
  CQuillonMediaRW media;
  media.Builder().currentPractice = isOfToday;
  media.put_DicomRootDirectory(Bstr((dir / "root").string()).get());
  media.put_UniquePatientId(Bstr("DOE").get());
  media.put_IncludeOtherContent(0);
  VARIANT_BOOL done = 0;
  makeSampleTree(dir / "in");
  ASSERT_EQ(media.AddDirectory(Bstr((dir / "in").string()).get(), &done), S_OK);
  ASSERT_EQ(done, kTrue) << errorOf(media);
  BSTR header = nullptr;
  media.LoadHeaderTextFromFile(Bstr((dir / "in/DOE/SR/IM00001").string()).get(),
                               Bstr((dir / "names.xsl").string()).get(), &header);
  ASSERT_NE(header, nullptr) << errorOf(media);
  SysFreeString(header);
  ASSERT_EQ(media.CreateDicomFileSet(&done), S_OK);
  ASSERT_EQ(done, kTrue) << errorOf(media);
  media.put_PerformDirectCopy(kTrue);
  media.put_DirectCopyDirectory(Bstr((dir / "target").string()).get());
  ASSERT_EQ(media.Write(&done), S_OK);
  ASSERT_EQ(done, kTrue) << errorOf(media);
}

struct Held {
  std::size_t heapBytes = mallinfo2().uordblks;
  std::ptrdiff_t descriptors = std::distance(fs::directory_iterator("/proc/self/fd"), {});
};

TEST(ManyJobs, TakeNoMoreOfTheProcessThanTheFirstOnes) {
  constexpr int kWarming = 10;
  constexpr int kJobs = 200;
  // Pieces that the C library keeps for later requests count as held: some hundred bytes a job.
  constexpr std::size_t kBytesPerJob = 1024;
  const TempDir dir;
  const MediaCreationKey none(dir.path());
  writeText(dir / "names.xsl", kStylesheet);
  Held before;
  for (int i = 0; i < kWarming + kJobs; ++i) {
    if (i == kWarming) before = Held();
    doJob(dir, i % 2 != 0);
    if (HasFatalFailure()) return;
  }
  const Held after;
  EXPECT_EQ(after.descriptors, before.descriptors);
  EXPECT_LE(after.heapBytes, before.heapBytes + kJobs * kBytesPerJob);
}

}  // namespace
}  // namespace quillon::test
