#include "harness/server/ServedRequest.h"

#include <gtest/gtest.h>

namespace {

const QByteArray threeLines = "200 320 600 \"-\" /firmware/list.json\n"
                              "206 1048576 1048905 \"bytes=0-1048575\" /firmware/a.img\n"
                              "206 7 300 \"bytes=1048576-2097151\" /firmware/a.img\n";

TEST(ServedRequestTest, EachFieldOfALineIsRead)
{
    const QVector<ServedRequest> requests = ServedRequest::parse(threeLines);
    ASSERT_EQ(requests.size(), 3);
    EXPECT_EQ(requests.at(0).status, 200);
    EXPECT_EQ(requests.at(0).range, QString());
    EXPECT_EQ(requests.at(1).bodyBytes, 1048576);
    EXPECT_EQ(requests.at(1).bytes, 1048905);
    EXPECT_EQ(requests.at(1).range, QStringLiteral("bytes=0-1048575"));
    EXPECT_EQ(requests.at(1).path, QStringLiteral("/firmware/a.img"));
}

TEST(ServedRequestTest, AnIncompleteLineIsSkipped)
{
    EXPECT_EQ(ServedRequest::parse(threeLines + "206 5 9 \"-\" /firm").size(), 3);
    EXPECT_TRUE(ServedRequest::parse("206 5 9 \"-\" /firm").isEmpty());
    EXPECT_EQ(ServedRequest::parse("something else\n" + threeLines).size(), 3);
}

TEST(ServedRequestTest, SumsIncludeTheGivenRequests)
{
    const QVector<ServedRequest> images =
        ServedRequests::ending(ServedRequest::parse(threeLines), QStringLiteral(".img"));
    EXPECT_EQ(images.size(), 2);
    EXPECT_EQ(ServedRequests::bodyBytes(images), 1048583);
    EXPECT_EQ(ServedRequests::bytes(images), 1049205);
    EXPECT_EQ(ServedRequests::withRange(images, true), 2);
    EXPECT_EQ(ServedRequests::withRange(images, false), 0);
}

} // namespace
