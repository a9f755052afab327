#include "foundation/position_index.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>

namespace quillon {
namespace {

// Beside a map that does the same, with hashes of which many are equal or lie side by side, so that
// what is taken out leaves gaps in rows of others.
TEST(PositionIndex, FindsWhatIsInItWhateverWasTakenOut) {
  for (const std::uint32_t hashes : {1U, 7U, 300U}) {
    SCOPED_TRACE(hashes);
    std::mt19937 random(hashes);
    PositionIndex index;
    std::map<std::uint32_t, std::size_t> expected;  // hashes by position
    const auto find = [&](std::uint32_t position, std::size_t hash) {
      return index.Find(hash, [position](std::uint32_t at) { return at == position; });
    };
    for (std::uint32_t next = 0; next < 400; ++next) {
      const std::size_t hash = random() % hashes + (next % 3 == 0 ? 0xFFFFFFF0U : 0U);
      index.Add(hash, next);
      expected.emplace(next, hash);
      if (random() % 3 == 0) {
        const auto gone =
            std::next(expected.begin(), static_cast<std::ptrdiff_t>(random() % expected.size()));
        index.Remove(gone->first);
        EXPECT_EQ(find(gone->first, gone->second), PositionIndex::kNone);
        index.Remove(gone->first);  // is not in it any more
        expected.erase(gone);
      }
      ASSERT_EQ(index.size(), expected.size());
      for (const auto& [position, of] : expected) ASSERT_EQ(find(position, of), position);
    }
    index.Clear();
    EXPECT_EQ(index.size(), 0U);
    EXPECT_EQ(find(expected.begin()->first, expected.begin()->second), PositionIndex::kNone);
  }
}

}  // namespace
}  // namespace quillon
