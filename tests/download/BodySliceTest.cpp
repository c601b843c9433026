#include "download/BodySlice.h"

#include <gtest/gtest.h>

namespace {

struct Case
{
    const char *name;
    qint64 position, length, wanted, end;
    qint64 skip, take;
};

TEST(BodySliceTest, APieceIsCutToTheBytesThatAreWanted)
{
    const Case cases[] = {
        {"the very piece", 100, 50, 100, 150, 0, 50},
        {"no end", 100, 50, 100, 0, 0, 50},
        {"a negative end is none", 100, 50, 100, -1, 0, 50},
        {"begins before", 0, 150, 100, 200, 100, 50},
        {"lies wholly before", 0, 100, 100, 200, 100, 0},
        {"ends after", 100, 500, 100, 150, 0, 50},
        {"begins before and ends after", 0, 1000, 100, 101, 100, 1},
        {"all is there already", 150, 10, 150, 150, 0, 0},
        {"leaves a hole", 101, 50, 100, 200, 50, 0},
        {"empty", 100, 0, 100, 200, 0, 0},
    };
    for (const Case &each : cases) {
        const BodySlice slice = cutBody(each.position, each.length, each.wanted, each.end);
        EXPECT_EQ(slice.take, each.take) << each.name;
        if (each.take > 0) {
            EXPECT_EQ(slice.skip, each.skip) << each.name;
        }
    }
}

} // namespace
