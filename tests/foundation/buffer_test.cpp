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

TEST(Buffer, LeavesABlockThatItOnlyRefersToAlone) {
  std::array<std::uint8_t, 3> block{1, 2, 3};
  {
    CBuffer buffer;
    EXPECT_EQ(buffer.Attach(block.data(), 3, /*owns=*/false), 0);  // freeing it would crash
    EXPECT_EQ(buffer.GetData(), block.data());
  }
  EXPECT_EQ(block[2], 3);
}

TEST(Buffer, OwnsAnAttachedBlockWhenTold) {
  CBuffer buffer;  // the leak check of the sanitizers watches it go
  EXPECT_EQ(buffer.Attach(new std::uint8_t[4], 4, /*owns=*/true), 0);
  EXPECT_EQ(buffer.GetSize(), 4u);
}

}  // namespace
}  // namespace quillon
