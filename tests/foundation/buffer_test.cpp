#include "foundation/buffer.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>

namespace quillon {
namespace {

TEST(Buffer, TakesOneBlockInItsLife) {
  std::array<std::uint8_t, 3> other{1, 2, 3};
  CBuffer buffer;
  EXPECT_TRUE(buffer.IsEmpty());
  ASSERT_EQ(buffer.Allocate(5), 0);
  std::uint8_t* const data = buffer.GetData();
  ASSERT_NE(data, nullptr);

  EXPECT_EQ(buffer.Allocate(7), 1);
  EXPECT_EQ(buffer.Attach(other.data(), 3, /*owns=*/false), 1);
  EXPECT_EQ(buffer.GetData(), data);
  EXPECT_EQ(buffer.GetSize(), 5u);
  EXPECT_FALSE(buffer.IsEmpty());
}

// A block that is freed twice, or never, is seen by the sanitizers.
TEST(Buffer, OwnsAnAttachedBlockOnlyWhenTold) {
  std::array<std::uint8_t, 3> block{1, 2, 3};
  CBuffer refers;
  EXPECT_EQ(refers.Attach(block.data(), 3, /*owns=*/false), 0);
  EXPECT_EQ(refers.GetData(), block.data());
  CBuffer owns;
  EXPECT_EQ(owns.Attach(new std::uint8_t[4], 4, /*owns=*/true), 0);
  EXPECT_EQ(owns.GetSize(), 4u);
}

}  // namespace
}  // namespace quillon
