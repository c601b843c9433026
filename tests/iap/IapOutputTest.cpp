#include "iap/IapOutput.h"

#include <gtest/gtest.h>

namespace {

IapChunk read(const char *text)
{
    return readIapChunk(QString::fromUtf8(text));
}

struct Row
{
    std::string chunk;
    std::optional<int> progress;
    bool finished = false;
    bool failed = false;
};

void PrintTo(const Row &row, std::ostream *out)
{
    *out << testing::PrintToString(row.chunk);
}

class IapChunkTest : public testing::TestWithParam<Row>
{
};

TEST_P(IapChunkTest, HasItsProgressAndResult)
{
    const IapChunk chunk = read(GetParam().chunk.c_str());
    EXPECT_EQ(chunk.progress, GetParam().progress);
    EXPECT_EQ(chunk.finished, GetParam().finished);
    EXPECT_EQ(chunk.failed, GetParam().failed);
}

INSTANTIATE_TEST_SUITE_P(Chunks, IapChunkTest,
                         testing::Values(Row{"", {}}, Row{"erasing the flash", {}}, Row{"SetProgress: 0", 0},
                                         Row{"SetProgress:7", 7}, Row{"SetProgress: \r\n 7", 7},
                                         Row{"done SetProgress: 7 %", 7}, Row{"SetProgress: 100", 100, true},
                                         Row{"SetProgress:0100", 100, true}, Row{"SetProgress: 101", 101},
                                         Row{"SetProgress: 1000", 1000}, Row{"SetProgress: ", {}},
                                         Row{"SetProgress: -1", {}}, Row{"setprogress: 7", {}},
                                         // Only the first report of a chunk counts.
                                         Row{"SetProgress: 99\nSetProgress: 100", 99},
                                         Row{"SetProgress: 100\nSetProgress: 3", 100, true},
                                         Row{"No USB IAP device!\nSetProgress: 5", 5},
                                         Row{"No USB IAP device", {}},
                                         Row{"error: No USB IAP device! (3)", {}, false, true},
                                         Row{"SetProgress: 99999999999", 0}));

TEST(IapOutputTest, AChunkHoldingSetProgress42Puts42OnTheBar)
{
    EXPECT_EQ(read("SetProgress: 42").progress, 42);
}

TEST(IapOutputTest, SetProgress100WithoutABlankIsTheEnd)
{
    EXPECT_TRUE(read("SetProgress:100").finished);
}

TEST(IapOutputTest, OfTwoReportsInOneChunkTheFirstIsUsed)
{
    EXPECT_EQ(read("SetProgress: 7\nSetProgress: 9").progress, 7);
}

TEST(IapOutputTest, TheMissingDeviceInAnyLetterCaseIsAFailure)
{
    for (const char *text : {"No USB IAP device!", "no usb iap device!", "NO USB IAP DEVICE!"})
        EXPECT_TRUE(read(text).failed) << text;
}

} // namespace
