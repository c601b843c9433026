#include "download/SegmentRanges.h"

#include <gtest/gtest.h>

namespace {

TEST(SegmentRangesTest, ASizeThatDividesEvenlyGivesRangesOfEqualLength)
{
    const auto ranges = cutIntoRanges(1000, 10);
    ASSERT_EQ(ranges.size(), 10);
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(ranges.at(i).start, i * 100);
        EXPECT_EQ(ranges.at(i).end, (i + 1) * 100);
    }
}

TEST(SegmentRangesTest, TheLastRangeIsLongerByTheRemainder)
{
    const auto ranges = cutIntoRanges(1009, 10);
    EXPECT_EQ(ranges.at(8).end, 900);
    EXPECT_EQ(ranges.at(9).start, 900);
    EXPECT_EQ(ranges.at(9).end, 1009);
}

TEST(SegmentRangesTest, AFileSmallerThanTheCountGivesEndsOfZeroForAllButTheLast)
{
    const auto ranges = cutIntoRanges(7, 10);
    for (int i = 0; i < 9; ++i)
        EXPECT_EQ(ranges.at(i).end, 0);
    EXPECT_EQ(ranges.at(9).start, 0);
    EXPECT_EQ(ranges.at(9).end, 7);
}

TEST(SegmentRangesTest, ACountBelowOneGivesNoRangeAndDoesNotDivideByZero)
{
    EXPECT_TRUE(cutIntoRanges(1000, 0).isEmpty());
    EXPECT_TRUE(cutIntoRanges(1000, -1).isEmpty());
}

TEST(SegmentRangesTest, OneSegmentIsTheWholeFile)
{
    const auto ranges = cutIntoRanges(1009, 1);
    ASSERT_EQ(ranges.size(), 1);
    EXPECT_EQ(ranges.at(0).start, 0);
    EXPECT_EQ(ranges.at(0).end, 1009);
}

TEST(SegmentRangesTest, EndsHave32BitsAndWrapWhileStartsDoNot)
{
    const qint64 size = Q_INT64_C(5000000000);
    const auto ranges = cutIntoRanges(size, 10);
    EXPECT_EQ(ranges.at(3).end, 2000000000);
    EXPECT_EQ(ranges.at(4).end, Q_INT64_C(2500000000) - Q_INT64_C(4294967296));
    EXPECT_EQ(ranges.at(5).start, Q_INT64_C(2500000000));
    EXPECT_EQ(ranges.at(8).end, Q_INT64_C(4500000000) - Q_INT64_C(4294967296));
    EXPECT_EQ(ranges.at(9).end, size - Q_INT64_C(4294967296));
}

TEST(SegmentRangesTest, TheLargestFileBelow2GiBIsNotWrapped)
{
    EXPECT_EQ(cutIntoRanges(2147483647, 10).last().end, 2147483647);
    EXPECT_EQ(cutIntoRanges(Q_INT64_C(2147483648), 10).last().end, Q_INT64_C(-2147483648));
}

TEST(SegmentRangesTest, TheEndIsExclusiveAndTheHeaderInclusive)
{
    EXPECT_EQ(rangeHeader(0, 100), "bytes=0-99");
    EXPECT_EQ(rangeHeader(Q_INT64_C(3000000000), Q_INT64_C(3000000001)), "bytes=3000000000-3000000000");
    EXPECT_EQ(openRangeHeader(5), "bytes=5-");
}

} // namespace
