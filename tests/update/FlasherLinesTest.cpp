#include "update/FlasherOutput.h"

#include <QByteArrayList>

#include <gtest/gtest.h>

namespace {

/// The result of a run whose output arrives in these chunks: the chunks decide, and the lines where
/// the chunks leave it open.
int resultOf(const QByteArrayList &chunks)
{
    BurnResult result = BurnWithoutSuccessLine;
    FlasherLines lines;
    for (const QByteArray &chunk : chunks) {
        lines.feed(chunk);
        result = readFlasherChunk(QString::fromUtf8(chunk)).result.value_or(result);
    }
    return result == BurnWithoutSuccessLine ? lines.verdict().value_or(result) : result;
}

void expectAtEverySplit(const QByteArray &output, int result)
{
    for (int at = 0; at <= output.size(); ++at)
        EXPECT_EQ(resultOf({output.left(at), output.mid(at)}), result) << "split at byte " << at;

    QByteArrayList bytes;
    for (const char byte : output)
        bytes.append(QByteArray(1, byte));
    EXPECT_EQ(resultOf(bytes), result) << "byte by byte";
}

TEST(FlasherLinesTest, ASuccessSplitAtAnyByteIsNeverAFailure)
{
    expectAtEverySplit("Upgrade fwc: image.target.os\r\nBurn 图像 successfully!\r\nbye\r\n", BurnSucceeded);
    expectAtEverySplit("Upgrade fwc: image.target.os\nBurn image successfully!", BurnSucceeded);
}

TEST(FlasherLinesTest, AnUnreachableDeviceSplitAtAnyByteIsStillRetried)
{
    expectAtEverySplit("ArtInChip\nOpen upg device failed\n", BurnDeviceNotReachable);
    expectAtEverySplit("Open upg device failed", BurnDeviceNotReachable);
}

TEST(FlasherLinesTest, AFailureSplitAtAnyByteIsNeverASuccess)
{
    expectAtEverySplit("Upgrade fwc: image.target.os\nBurn image failed: timeout\nOpen file failed\n",
                       BurnWithoutSuccessLine);
}

TEST(FlasherLinesTest, TwoLinesInTwoChunksAreNoSuccess)
{
    EXPECT_EQ(resultOf({"Burn image\n", "Erased successfully!\n"}), BurnWithoutSuccessLine);
    EXPECT_EQ(resultOf({"Burn im", "age\nErased success", "fully!\n"}), BurnWithoutSuccessLine);
}

TEST(FlasherLinesTest, TheLastLineWithAVerdictCounts)
{
    FlasherLines lines;
    lines.feed("Open upg device failed\nBurn image successfully!\n");
    EXPECT_EQ(lines.verdict(), BurnSucceeded);
    lines.feed("nothing more\nOpen upg device failed");
    EXPECT_EQ(lines.verdict(), BurnDeviceNotReachable);
}

TEST(FlasherLinesTest, ALineOf64KibibytesIsCarriedWhole)
{
    FlasherLines lines;
    lines.feed("Burn");
    lines.feed(QByteArray(64 * 1024 - 4 - 13, '.'));
    lines.feed("successfully!");
    EXPECT_EQ(lines.verdict(), BurnSucceeded);
}

TEST(FlasherLinesTest, OfALongerLineTheNewest64KibibytesAreCarried)
{
    constexpr int carried = 64 * 1024;
    for (const bool isKept : {true, false}) {
        FlasherLines lines;
        lines.feed(QByteArray(1000, '.') + "Burn" + QByteArray(carried - (isKept ? 17 : 16), '.'));
        lines.feed("successfully!");
        EXPECT_EQ(lines.verdict().has_value(), isKept);
    }
}

TEST(FlasherLinesTest, InvalidUtf8AndZeroBytesHideNoVerdict)
{
    const QByteArray garbage("\xff\xfe\x00\xc3 ", 5);
    expectAtEverySplit(garbage + "Burn " + garbage + " successfully!" + garbage, BurnSucceeded);
}

} // namespace
