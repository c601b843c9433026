#include "benchmarks/ServingNeeds.h"

#include <gtest/gtest.h>

namespace {

constexpr double mebibyte = 1048576;

/// Round numbers, so that the expected values can be checked by hand.
ServingCosts roundCosts()
{
    ServingCosts costs;
    costs.requests = 12;
    costs.bytesPerByte = 1;
    costs.fixedProcessorMs = 10;
    costs.processorMsPerMebibyte = 1;
    costs.kibibytesPerDownload = 1024;
    return costs;
}

TEST(ServingNeedsTest, TwoImagesTellWhatAnUpdateAndWhatAMebibyteCosts)
{
    const ServingCosts costs = ServingCosts::of({2, 2 * mebibyte + 1000, 12}, {10, 10 * mebibyte + 1000, 28});
    EXPECT_DOUBLE_EQ(costs.bytesPerByte, 1);
    EXPECT_DOUBLE_EQ(costs.fixedBytes, 1000);
    EXPECT_DOUBLE_EQ(costs.processorMsPerMebibyte, 2);
    EXPECT_DOUBLE_EQ(costs.fixedProcessorMs, 8);
}

TEST(ServingNeedsTest, AShareBelowZeroCountsAsZero)
{
    const ServingCosts costs = ServingCosts::of({2, 2 * mebibyte - 5, 4}, {10, 10 * mebibyte - 5, 28});
    EXPECT_DOUBLE_EQ(costs.fixedBytes, 0);
    EXPECT_DOUBLE_EQ(costs.processorMsPerMebibyte, 3);
    EXPECT_DOUBLE_EQ(costs.fixedProcessorMs, 0);
    EXPECT_DOUBLE_EQ(ServingCosts::of({2, 1, 4}, {10, 1, 3}).processorMsPerMebibyte, 0);
}

TEST(ServingNeedsTest, ALoadNeedsItsShareOfEachResource)
{
    ServingLoad load;
    load.updatesPerDay = 864000; // ten a second
    load.imageMebibytes = 100;
    load.peakFactor = 3;
    load.userMegabits = 100;
    const ServingNeeds needs = ServingNeeds::of(roundCosts(), load);
    const double bytes = 100 * mebibyte * 1500 / 1448;
    EXPECT_DOUBLE_EQ(needs.meanUpdatesPerSecond, 10);
    EXPECT_DOUBLE_EQ(needs.meanGigabits, 10 * bytes * 8 / 1e9);
    EXPECT_DOUBLE_EQ(needs.meanRequestsPerSecond, 120);
    EXPECT_DOUBLE_EQ(needs.meanProcessors, 1.1);
    EXPECT_DOUBLE_EQ(needs.terabytesPerDay, 864000 * bytes / 1e12);
    EXPECT_DOUBLE_EQ(needs.peak(needs.meanUpdatesPerSecond), 30);
    EXPECT_DOUBLE_EQ(needs.downloadsAtPeak, 30 * bytes * 8 / 100e6);
    EXPECT_DOUBLE_EQ(needs.memoryGibibytesAtPeak, needs.downloadsAtPeak / 1024);
    EXPECT_DOUBLE_EQ(needs.cacheGibibytes, 100 * 2 * 100 / 1024.0);
    EXPECT_DOUBLE_EQ(needs.originGibibytes, 3 * needs.cacheGibibytes);
}

TEST(ServingNeedsTest, TheSmallerLimitIsReachedFirst)
{
    const ServingLimits slowLine = ServingLimits::of(roundCosts(), 100, 1, 2);
    EXPECT_NEAR(slowLine.byLine, 125e6 / (100 * mebibyte * 1500 / 1448), 1e-9);
    EXPECT_NEAR(slowLine.byProcessors, 2000.0 / 110, 1e-9);
    EXPECT_TRUE(slowLine.isLineFirst());
    EXPECT_FALSE(ServingLimits::of(roundCosts(), 100, 100, 2).isLineFirst());
}

} // namespace
