#include "download/BodySlice.h"
#include "download/DownloadProgress.h"
#include "download/HttpAnswer.h"
#include "download/SegmentRanges.h"

#include <limits>

#include <gtest/gtest.h>

namespace {

QList<QPair<qint64, qint64>> ranges(qint64 size, int count)
{
    QList<QPair<qint64, qint64>> pairs;
    for (const SegmentRange &range : cutIntoRanges(size, count))
        pairs.append({range.start, range.end});
    return pairs;
}

TEST(SegmentRangesTest, ASizeThatDividesEvenlyGivesRangesOfEqualLength)
{
    EXPECT_EQ(ranges(40, 4), (QList<QPair<qint64, qint64>>{{0, 10}, {10, 20}, {20, 30}, {30, 40}}));
}

TEST(SegmentRangesTest, OtherwiseTheLastRangeIsLongerByTheRemainder)
{
    EXPECT_EQ(ranges(43, 4), (QList<QPair<qint64, qint64>>{{0, 10}, {10, 20}, {20, 30}, {30, 43}}));
}

TEST(SegmentRangesTest, AFileOfFewerBytesThanSegmentsGivesEndsOfZeroButForTheLast)
{
    EXPECT_EQ(ranges(3, 4), (QList<QPair<qint64, qint64>>{{0, 0}, {0, 0}, {0, 0}, {0, 3}}));
}

TEST(SegmentRangesTest, EndsAreCarriedIn32BitsAndWrapAsTwosComplement)
{
    const QList<SegmentRange> cut = cutIntoRanges(qint64(5) << 30, 4);
    EXPECT_EQ(cut.at(1).end, std::numeric_limits<qint32>::min() + (qint64(1) << 29));
    EXPECT_EQ(cut.at(1).start, qint64(5) << 28);
    EXPECT_EQ(cut.at(2).end, -(qint64(1) << 28));
    EXPECT_EQ(cut.at(3).end, qint64(1) << 30);
}

TEST(SegmentRangesTest, JustBelow2GiBNothingWraps)
{
    EXPECT_EQ(cutIntoRanges(2147483647, 10).last().end, 2147483647);
    EXPECT_EQ(cutIntoRanges(2147483648, 10).last().end, -2147483648LL);
}

TEST(SegmentRangesTest, ACountBelowOneGivesNoRange)
{
    EXPECT_TRUE(cutIntoRanges(10, 0).isEmpty());
    EXPECT_TRUE(cutIntoRanges(10, -1).isEmpty());
}

TEST(SegmentRangesTest, HeadersNameTheLastByteOrNone)
{
    EXPECT_EQ(rangeHeader(10, 20), "bytes=10-19");
    EXPECT_EQ(rangeHeader(qint64(1) << 32, (qint64(1) << 32) + 1), "bytes=4294967296-4294967296");
    EXPECT_EQ(openRangeHeader(7), "bytes=7-");
}

TEST(BodySliceTest, APieceIsCutToWhatIsWanted)
{
    struct Case
    {
        qint64 position, length, wanted, end, skip, take;
    };
    for (const Case &c : {Case{0, 10, 0, 0, 0, 10}, Case{0, 10, 4, 0, 4, 6}, Case{0, 10, 4, 7, 4, 3},
                          Case{0, 10, 12, 20, 10, 0}, Case{5, 10, 5, 15, 0, 10}, Case{5, 10, 5, 5, 0, 0},
                          Case{5, 10, 6, 3, 1, 0}, Case{5, 10, 5, -1, 0, 10}}) {
        const BodySlice slice = cutBody(c.position, c.length, c.wanted, c.end);
        EXPECT_EQ(slice.skip, c.skip) << c.position << ' ' << c.wanted << ' ' << c.end;
        EXPECT_EQ(slice.take, c.take) << c.position << ' ' << c.wanted << ' ' << c.end;
    }
}

TEST(BodySliceTest, APieceThatBeginsBehindWhatIsWantedWouldLeaveAHoleAndGivesNothing)
{
    const BodySlice slice = cutBody(8, 10, 5, 20);
    EXPECT_EQ(slice.skip, 10);
    EXPECT_EQ(slice.take, 0);
}

TEST(DownloadProgressTest, PercentIsRoundedHalfAwayFromZeroAndMayExceedAHundred)
{
    EXPECT_EQ(roundedPercent(0, 200), 0);
    EXPECT_EQ(roundedPercent(1, 200), 1);
    EXPECT_EQ(roundedPercent(3, 200), 2);
    EXPECT_EQ(roundedPercent(5, 200), 3);
    EXPECT_EQ(roundedPercent(400, 200), 200);
}

TEST(DownloadProgressTest, SizesAreWholeMebibytesBeforeALabelThatIsNoSpeed)
{
    EXPECT_EQ(megabytesOf(3 * 1048576, 12 * 1048576), QStringLiteral("3 / 12 MB/S"));
    EXPECT_EQ(megabytesOf(1048575, 2 * 1048576 - 1), QStringLiteral("0 / 1 MB/S"));
}

TEST(DownloadProgressTest, AKnownSizeGivesTruncatedPercentAndAnUnknownOneBytes)
{
    EXPECT_EQ(receivedLine(42, 100), QStringLiteral("Progress:42%"));
    EXPECT_EQ(receivedLine(2, 3), QStringLiteral("Progress:66%"));
    EXPECT_EQ(receivedLine(qint64(1) << 40, qint64(1) << 41), QStringLiteral("Progress:50%"));
    EXPECT_EQ(receivedLine(2048, 0), QStringLiteral("Received:2048bytes"));
    EXPECT_EQ(receivedLine(2048, -1), QStringLiteral("Received:2048bytes"));
}

TEST(HttpAnswerTest, TheTotalOfAContentRangeIsWhatFollowsItsOneSlash)
{
    EXPECT_EQ(HttpAnswer::totalOfContentRange("bytes 0-99/5000").value_or(-1), 5000);
    EXPECT_EQ(HttpAnswer::totalOfContentRange("bytes 0-99/*").value_or(-1), 0);
    EXPECT_FALSE(HttpAnswer::totalOfContentRange("bytes 0-99").has_value());
    EXPECT_FALSE(HttpAnswer::totalOfContentRange("bytes 0-99/50/00").has_value());
}

TEST(HttpAnswerTest, ABodyBeginsWhereItsContentRangeSays)
{
    EXPECT_EQ(HttpAnswer::firstByteOfBody(206, "bytes 30-99/5000", 20), 30);
    EXPECT_EQ(HttpAnswer::firstByteOfBody(206, "BYTES 30-99/5000", 20), 30);
    EXPECT_EQ(HttpAnswer::firstByteOfBody(206, "", 20), 20);
    EXPECT_EQ(HttpAnswer::firstByteOfBody(206, "nonsense", 20), 20);
    EXPECT_EQ(HttpAnswer::firstByteOfBody(206, "bytes */5000", 20), 20);
    EXPECT_EQ(HttpAnswer::firstByteOfBody(200, "bytes 30-99/5000", 20), 0);
}

} // namespace
