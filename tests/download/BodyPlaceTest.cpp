#include "download/BodyPlace.h"
#include "tests/download/FakeReply.h"

#include <gtest/gtest.h>

namespace {

struct Case
{
    const char *name;
    int status;
    const char *contentRange;
    std::optional<qint64> asked;
    qint64 end;
    qint64 position, wantedEnd, usableEnd;
};

TEST(BodyPlaceTest, ThePlaceOfABodyFollowsFromItsHeaders)
{
    const Case cases[] = {
        {"the whole file", 200, "", {}, 0, 0, 0, 0},
        {"the whole file for a range", 200, "", 1000, 3000, 0, 3000, 3000},
        {"the whole file for its rest", 200, "", 1000, 0, 0, 0, 0},
        {"a part", 206, "bytes 1000-2999/5000", 1000, 3000, 1000, 3000, 3000},
        {"a part of a part", 206, "bytes 1000-1999/5000", 1000, 3000, 1000, 3000, 2000},
        {"an empty part", 206, "bytes 1000-999/5000", 1000, 3000, 1000, 3000, 1000},
        {"more than a part", 206, "bytes 1000-4999/5000", 1000, 3000, 1000, 3000, 3000},
        {"a part that says nothing", 206, "", 1000, 3000, 1000, 3000, 3000},
        {"a part without an end", 206, "bytes 1000-/5000", 1000, 3000, 1000, 3000, 3000},
        {"the rest", 206, "bytes 1000-4999/5000", 1000, 0, 1000, 5000, 5000},
        {"a part of the rest", 206, "bytes 1000-1999/5000", 1000, 0, 1000, 5000, 2000},
        {"the rest of a file of unknown size", 206, "bytes 1000-1999/*", 1000, 0, 1000, 0, 2000},
        {"a rest that says nothing", 206, "", 1000, -1, 1000, 0, 0},
        {"an end that is too large", 206, "bytes 1000-99999999999999999999/5000", 1000, 3000, 1000, 3000,
         3000},
    };
    for (const Case &each : cases) {
        FakeReply reply(each.status);
        if (*each.contentRange)
            reply.setHeaderAsSent("Content-Range", each.contentRange);
        const BodyPlace place = BodyPlace::of(reply, each.asked, each.end);
        EXPECT_EQ(place.problem, QString()) << each.name;
        EXPECT_EQ(place.position, each.position) << each.name;
        EXPECT_EQ(place.wantedEnd, each.wantedEnd) << each.name;
        EXPECT_EQ(place.usableEnd, each.usableEnd) << each.name;
    }
}

TEST(BodyPlaceTest, ABodyWithAProblemHasNoPlace)
{
    FakeReply elsewhere(206);
    elsewhere.setHeaderAsSent("Content-Range", "bytes 9223372036854775807-9223372036854775807/*");
    EXPECT_FALSE(BodyPlace::of(elsewhere, 1000, 3000).problem.isEmpty());
    EXPECT_FALSE(BodyPlace::of(FakeReply(206), {}, 0).problem.isEmpty());
    EXPECT_FALSE(BodyPlace::of(FakeReply(304), 1000, 3000).problem.isEmpty());
}

} // namespace
