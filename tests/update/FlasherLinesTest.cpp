#include "update/FlasherOutput.h"

#include <QByteArrayList>

#include <gtest/gtest.h>

#include <optional>

namespace {

/// Returns the verdict on a run whose output arrives in these chunks.
std::optional<BurnResult> verdictOn(const QByteArrayList &chunks)
{
    FlasherLines lines;
    for (const QByteArray &chunk : chunks)
        lines.feed(chunk);
    return lines.verdict();
}

void expectAtEverySplit(const QByteArray &output, std::optional<BurnResult> verdict)
{
    for (int at = 0; at <= output.size(); ++at)
        EXPECT_EQ(verdictOn({output.left(at), output.mid(at)}), verdict) << "split at byte " << at;

    QByteArrayList bytes;
    for (const char byte : output)
        bytes.append(QByteArray(1, byte));
    EXPECT_EQ(verdictOn(bytes), verdict) << "byte by byte";
}

TEST(FlasherLinesTest, ASuccessSplitAtAnyByteIsSeen)
{
    expectAtEverySplit("Upgrade fwc: image.target.os\r\nBurn 图像 successfully!\r\nbye\r\n", BurnSucceeded);
    expectAtEverySplit("Upgrade fwc: image.target.os\nBurn image successfully!", BurnSucceeded);
}

TEST(FlasherLinesTest, AnUnreachableDeviceSplitAtAnyByteIsSeen)
{
    expectAtEverySplit("ArtInChip\nOpen upg device failed\n", BurnDeviceNotReachable);
    expectAtEverySplit("Open upg device failed", BurnDeviceNotReachable);
}

TEST(FlasherLinesTest, AFailureSplitAtAnyByteIsNeverASuccess)
{
    expectAtEverySplit("Upgrade fwc: image.target.os\nBurn image failed: timeout\nOpen file failed\n",
                       std::nullopt);
}

TEST(FlasherLinesTest, TwoLinesInTwoChunksAreNoSuccess)
{
    EXPECT_EQ(verdictOn({"Burn image\n", "Erased successfully!\n"}), std::nullopt);
    EXPECT_EQ(verdictOn({"Burn im", "age\nErased success", "fully!\n"}), std::nullopt);
}

TEST(FlasherLinesTest, TheLastLineWithAVerdictCounts)
{
    FlasherLines lines;
    lines.feed("Open upg device failed\nBurn image successfully!\n");
    EXPECT_EQ(lines.verdict(), BurnSucceeded);
    lines.feed("nothing more\nOpen upg device failed");
    EXPECT_EQ(lines.verdict(), BurnDeviceNotReachable);
}

TEST(FlasherLinesTest, ALineOf64KibibytesIsKeptWhole)
{
    FlasherLines lines;
    lines.feed("Burn");
    lines.feed(QByteArray(64 * 1024 - 4 - 13, '.'));
    lines.feed("successfully!");
    EXPECT_EQ(lines.verdict(), BurnSucceeded);
}

TEST(FlasherLinesTest, TheLast64KibibytesOfALongerLineAreKept)
{
    constexpr int carried = 64 * 1024;
    for (const bool isKept : {true, false}) {
        FlasherLines lines;
        lines.feed(QByteArray(1000, '.') + "Burn" + QByteArray(carried - (isKept ? 17 : 16), '.'));
        lines.feed("successfully!");
        EXPECT_EQ(lines.verdict().has_value(), isKept);
    }
}

TEST(FlasherLinesTest, InvalidUtf8AndZeroBytesDoNotHideAVerdict)
{
    const QByteArray garbage("\xff\xfe\x00\xc3 ", 5);
    expectAtEverySplit(garbage + "Burn " + garbage + " successfully!" + garbage, BurnSucceeded);
}

} // namespace
