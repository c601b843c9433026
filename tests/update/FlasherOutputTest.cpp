#include "update/FlasherOutput.h"

#include <gtest/gtest.h>

#include <ostream>

namespace {

struct ChunkCase
{
    const char *name;
    const char *text;
    QVector<int> progress;
    std::optional<BurnResult> result;
};

void PrintTo(const ChunkCase &value, std::ostream *stream)
{
    *stream << value.name;
}

class FlasherOutputTest : public testing::TestWithParam<ChunkCase>
{
};

TEST_P(FlasherOutputTest, HasItsProgressAndResult)
{
    const FlasherChunk chunk = readFlasherChunk(QString::fromUtf8(GetParam().text));
    EXPECT_EQ(chunk.progress, GetParam().progress);
    EXPECT_EQ(chunk.result, GetParam().result);
}

INSTANTIATE_TEST_SUITE_P(
    Chunks, FlasherOutputTest,
    testing::Values(ChunkCase{"Empty", "", {}, {}}, ChunkCase{"AnythingElse", "Connecting...\n", {}, {}},
                    ChunkCase{"Spl", "Upgrade fwc: image.target.spl\n", {16}, {}},
                    ChunkCase{"Env", "Upgrade fwc: image.target.env\n", {32}, {}},
                    ChunkCase{"Os", "Upgrade fwc: image.target.os\n", {48}, {}},
                    ChunkCase{"Rodata", "Upgrade fwc: image.target.rodata\n", {64}, {}},
                    ChunkCase{"Data", "Upgrade fwc: image.target.data\n", {80}, {}},
                    ChunkCase{"MarkerAnywhereInTheChunk", "x\nUpgrade fwc: image.target.osXY", {48}, {}},
                    ChunkCase{"MarkerInAnotherCase", "upgrade fwc: image.target.os\n", {}, {}},
                    ChunkCase{"OfTwoMarkersTheFirstOfTheTableCounts",
                              "Upgrade fwc: image.target.data\nUpgrade fwc: image.target.env\n",
                              {32},
                              {}},
                    ChunkCase{"Success", "Burn image successfully!\n", {100}, BurnSucceeded},
                    ChunkCase{"SuccessOverTwoLinesOfOneChunk", "Burn\nsuccessfully!\n", {100}, BurnSucceeded},
                    ChunkCase{"SuccessTurnedAround", "successfully! Burn", {100}, BurnSucceeded},
                    ChunkCase{"BurnWithoutSuccessfully", "Burn image 12 %\n", {}, {}},
                    ChunkCase{"SuccessfullyWithoutBurn", "Erased successfully!\n", {}, {}},
                    ChunkCase{"SuccessInAnotherCase", "burn image Successfully!\n", {}, {}},
                    ChunkCase{"SuccessAndAMarkerEndWithTheMarker",
                              "Upgrade fwc: image.target.data\nBurn image successfully!\n",
                              {100, 80},
                              BurnSucceeded},
                    ChunkCase{"NotReachable", "Open upg device failed\n", {}, BurnDeviceNotReachable},
                    ChunkCase{
                        "NotReachableStopsTheReading",
                        "Open upg device failed\nUpgrade fwc: image.target.os\nBurn image successfully!\n",
                        {},
                        BurnDeviceNotReachable}),
    [](const auto &test) { return std::string(test.param.name); });

TEST(BurnResultTest, TheCodesHaveTheRequiredValues)
{
    EXPECT_EQ(BurnSucceeded, 0);
    EXPECT_EQ(BurnWithoutSuccessLine, 1);
    EXPECT_EQ(BurnNotStarted, -1);
    EXPECT_EQ(BurnDeviceNotReachable, -3);
}

} // namespace
