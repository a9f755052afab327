#include "progress_bar.h"

#include <gtest/gtest.h>

namespace quillon::cli {
namespace {

constexpr std::uint64_t kMegabyte = std::uint64_t{1} << 20;

TEST(ProgressLine, TellsHowFarHowFastAndHowLong) {
  const std::string_view writing = "Writing the disc";
  const auto bytes = [&](std::uint64_t done, std::uint64_t total, double seconds) {
    return ProgressState{writing, done, total, ProgressUnit::Bytes, seconds};
  };
  struct Case {
    const char* what;
    ProgressState state;
    std::size_t columns;
    std::string line;
  };
  const Case cases[] = {
      {"in the middle", bytes(300 * kMegabyte, 800 * kMegabyte, 60), 79,
       "Writing the disc [#########                ] 300 of 800 MB, 5.0 MB/s, 1:40 left"},
      {"a wide terminal", bytes(400 * kMegabyte, 800 * kMegabyte, 1), 200,
       "Writing the disc [###############               ] 400 of 800 MB, 400 MB/s, 0:01 left"},
      {"a narrow one has no bar", bytes(300 * kMegabyte, 800 * kMegabyte, 60), 60,
       "Writing the disc 300 of 800 MB, 5.0 MB/s, 1:40 left"},
      {"a very narrow one", bytes(300 * kMegabyte, 800 * kMegabyte, 60), 10, "Writing th"},
      {"too early for a speed", bytes(kMegabyte, 2 * kMegabyte, 0.9), 60,
       "Writing the disc [###############               ] 1 of 2 MB"},
      {"nothing yet, after a while", bytes(0, 2 * kMegabyte, 9), 60,
       "Writing the disc [                              ] 0 of 2 MB"},
      {"hours", bytes(kMegabyte, 8001 * kMegabyte, 1), 90,
       "Writing the disc [                              ] 1 of 8001 MB, 1.0 MB/s, 2:13:20 left"},
      {"more than all of it", bytes(3 * kMegabyte, 2 * kMegabyte, 9), 60,
       "Writing the disc [##############################] 3 of 2 MB"},
      {"sizes that have no product in 64 bits",
       bytes(std::uint64_t{1} << 62, std::uint64_t{1} << 63, 0), 70,
       "Writing the disc [########         ] 4398046511104 of 8796093022208 MB"},
      {"files",
       {"Reading", 7, 14, ProgressUnit::Files, 60},
       40,
       "Reading [########        ] 7 of 14 files"},
      {"no total", {"Preparing the disc", 0, 0, ProgressUnit::Bytes, 5}, 79, "Preparing the disc"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(progressLine(c.state, c.columns), c.line);
    EXPECT_LE(progressLine(c.state, c.columns).size(), c.columns);
  }
}

}  // namespace
}  // namespace quillon::cli
