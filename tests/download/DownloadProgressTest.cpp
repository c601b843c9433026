#include "download/DownloadProgress.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

TEST(DownloadProgressTest, ThePercentageIsRoundedHalfAwayFromZero)
{
    EXPECT_EQ(roundedPercent(0, 1000), 0);
    EXPECT_EQ(roundedPercent(4, 1000), 0);
    EXPECT_EQ(roundedPercent(1, 200), 1);
    EXPECT_EQ(roundedPercent(5, 200), 3);
    EXPECT_EQ(roundedPercent(994, 1000), 99);
    EXPECT_EQ(roundedPercent(1000, 1000), 100);
}

TEST(DownloadProgressTest, BytesOfEarlierRunsRaiseThePercentageAbove100)
{
    EXPECT_EQ(roundedPercent(2000, 1000), 200);
}

TEST(DownloadProgressTest, APercentageBeyondTheBarsRangeIsLimited)
{
    EXPECT_EQ(barValue(42.0), 42);
    EXPECT_EQ(barValue(roundedPercent(Q_INT64_C(30000000000), 1)), std::numeric_limits<int>::max());
}

TEST(DownloadProgressTest, SizesAreWholeMebibytesAndTheUnitIsOnlyALabel)
{
    EXPECT_EQ(megabytesOf(3 * 1048576, 12 * 1048576), QStringLiteral("3 / 12 MB/S"));
    EXPECT_EQ(megabytesOf(1048575, 1048577), QStringLiteral("0 / 1 MB/S"));
}

TEST(DownloadProgressTest, TheManifestsPercentageIsTruncatedAndWithoutBlanks)
{
    EXPECT_EQ(receivedLine(429, 1000), QStringLiteral("Progress:42%"));
    EXPECT_EQ(receivedLine(999, 1000), QStringLiteral("Progress:99%"));
    EXPECT_EQ(receivedLine(Q_INT64_C(4000000000), Q_INT64_C(8000000000)), QStringLiteral("Progress:50%"));
}

TEST(DownloadProgressTest, WithAnUnknownSizeTheBytesAreShown)
{
    EXPECT_EQ(receivedLine(2048, -1), QStringLiteral("Received:2048bytes"));
    EXPECT_EQ(receivedLine(2048, 0), QStringLiteral("Received:2048bytes"));
    EXPECT_EQ(receivedLine(1, 1), QStringLiteral("Progress:100%"));
}

} // namespace
