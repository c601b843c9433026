#include "download/DiskNeed.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

TEST(DiskNeedTest, PartsAndFileNeedSpaceAtTheSameTimeAndBytesOnDiskAreSubtracted)
{
    EXPECT_EQ(bytesToReserve(1000, 0), 2000);
    EXPECT_EQ(bytesToReserve(1000, 300), 1700);
    EXPECT_EQ(bytesToReserve(1000, 2500), -500);
}

TEST(DiskNeedTest, ASizeThatCannotBeDoubledNeedsTheLargestNumber)
{
    constexpr qint64 largest = std::numeric_limits<qint64>::max();
    EXPECT_EQ(bytesToReserve(largest, 0), largest);
    EXPECT_EQ(bytesToReserve(largest / 2 + 1, 0), largest);
    EXPECT_EQ(bytesToReserve(largest / 2, 0), largest - 1);
    EXPECT_EQ(bytesToReserve(largest, 7), largest - 7);
}

} // namespace
