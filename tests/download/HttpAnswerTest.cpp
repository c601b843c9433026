#include "download/HttpAnswer.h"
#include "tests/download/FakeReply.h"

#include <QUrl>

#include <gtest/gtest.h>

namespace {

TEST(HttpAnswerTest, CertificateErrorsAreIgnoredOnlyAfterA2xxHead)
{
    const struct
    {
        int status;
        int ignored;
    } cases[] = {{0, 0},   {200, 1}, {206, 1}, {299, 1}, {301, 0},
                 {302, 0}, {304, 0}, {404, 0}, {416, 0}, {503, 0}};
    for (const auto &each : cases) {
        FakeReply reply(each.status);
        HttpAnswer::ignoreSslErrorsOnceAnswered(reply);
        EXPECT_EQ(reply.ignored, each.ignored) << each.status;
    }
}

TEST(HttpAnswerTest, EveryRequestFollowsRedirectsWithoutDowngrade)
{
    const QUrl url(QStringLiteral("https://server.example/file"));
    for (const QNetworkRequest &request : {HttpAnswer::request(url), HttpAnswer::byteExactRequest(url)})
        EXPECT_EQ(request.attribute(QNetworkRequest::RedirectPolicyAttribute).toInt(),
                  int(QNetworkRequest::NoLessSafeRedirectPolicy));
}

TEST(HttpAnswerTest, OnlyAByteExactRequestRefusesCompression)
{
    const QUrl url(QStringLiteral("https://server.example/file"));
    EXPECT_EQ(HttpAnswer::byteExactRequest(url).rawHeader("Accept-Encoding"), "identity");
    EXPECT_FALSE(HttpAnswer::request(url).hasRawHeader("Accept-Encoding"));
}

TEST(HttpAnswerTest, TheTotalIsWhatFollowsTheOneSlash)
{
    EXPECT_EQ(HttpAnswer::totalOfContentRange("bytes 0-99/5000"), 5000);
    EXPECT_EQ(HttpAnswer::totalOfContentRange("bytes 0-99/*"), 0);
    EXPECT_EQ(HttpAnswer::totalOfContentRange("bytes 0-99/"), 0);
    EXPECT_EQ(HttpAnswer::totalOfContentRange("bytes */9000000000"), Q_INT64_C(9000000000));
    EXPECT_FALSE(HttpAnswer::totalOfContentRange("bytes 0-99"));
    EXPECT_FALSE(HttpAnswer::totalOfContentRange("bytes 0-99/5000/1"));
}

TEST(HttpAnswerTest, TheBodyOfAPartBeginsWhereContentRangeSays)
{
    EXPECT_EQ(HttpAnswer::firstByteOfBody(206, "bytes 100-199/5000", 7), 100);
    EXPECT_EQ(HttpAnswer::firstByteOfBody(206, "Bytes 100-199/5000", 7), 100);
    EXPECT_EQ(HttpAnswer::firstByteOfBody(206, "", 7), 7);
    EXPECT_EQ(HttpAnswer::firstByteOfBody(206, "nonsense", 7), 7);
    EXPECT_EQ(HttpAnswer::firstByteOfBody(200, "", 7), 0);
    EXPECT_EQ(HttpAnswer::firstByteOfBody(200, "bytes 100-199/5000", 7), 0);
}

TEST(HttpAnswerTest, ABodyWithFewerBytesThanAnnouncedIsCutShort)
{
    FakeReply reply(200);
    EXPECT_FALSE(HttpAnswer::isCutShort(reply, 0)) << "nothing was announced";
    reply.announce(100);
    EXPECT_TRUE(HttpAnswer::isCutShort(reply, 0));
    EXPECT_TRUE(HttpAnswer::isCutShort(reply, 99));
    EXPECT_FALSE(HttpAnswer::isCutShort(reply, 100));
    reply.encode();
    EXPECT_FALSE(HttpAnswer::isCutShort(reply, 99)) << "those were other bytes";
}

} // namespace
