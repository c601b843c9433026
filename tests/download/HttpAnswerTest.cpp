#include "download/HttpAnswer.h"
#include "tests/download/FakeReply.h"

#include <QUrl>

#include <gtest/gtest.h>

#include <limits>
#include <optional>

namespace {

TEST(HttpAnswerTest, CertificateErrorsAreIgnoredOnlyAfterTheHeadersOfA2xxResponse)
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

TEST(HttpAnswerTest, ARequestFollowsRedirectsWithoutDowngradeAndRefusesCompression)
{
    const QNetworkRequest request = HttpAnswer::request(QUrl(QStringLiteral("https://server.example/file")));
    EXPECT_EQ(request.attribute(QNetworkRequest::RedirectPolicyAttribute).toInt(),
              int(QNetworkRequest::NoLessSafeRedirectPolicy));
    EXPECT_EQ(request.rawHeader("Accept-Encoding"), "identity");
}

TEST(HttpAnswerTest, TheTotalFollowsTheOnlySlash)
{
    EXPECT_EQ(HttpAnswer::totalOfContentRange("bytes 0-99/5000"), 5000);
    EXPECT_EQ(HttpAnswer::totalOfContentRange("bytes 0-99/*"), 0);
    EXPECT_EQ(HttpAnswer::totalOfContentRange("bytes 0-99/"), 0);
    EXPECT_EQ(HttpAnswer::totalOfContentRange("bytes */9000000000"), Q_INT64_C(9000000000));
    EXPECT_FALSE(HttpAnswer::totalOfContentRange("bytes 0-99"));
    EXPECT_FALSE(HttpAnswer::totalOfContentRange("bytes 0-99/5000/1"));
}

TEST(HttpAnswerTest, TheFirstByteFollowsTheUnit)
{
    constexpr qint64 largest = std::numeric_limits<qint64>::max();
    EXPECT_EQ(HttpAnswer::firstOfContentRange("bytes 100-199/5000"), 100);
    EXPECT_EQ(HttpAnswer::firstOfContentRange(" Bytes 100-199/*"), 100);
    EXPECT_EQ(HttpAnswer::firstOfContentRange("bytes 9223372036854775807-1/2"), largest);
    EXPECT_EQ(HttpAnswer::firstOfContentRange("bytes 9223372036854775808-1/2"), largest);
    for (const char *value : {"", "nonsense", "bytes", "bytes ", "bytes -5-9/10", "bytes */10",
                              "bytes=0-9/10", "bytes +5-9/10", "bytes 0x5-9/10"})
        EXPECT_FALSE(HttpAnswer::firstOfContentRange(value)) << value;
}

TEST(HttpAnswerTest, TheEndIsAfterTheLastByte)
{
    constexpr qint64 largest = std::numeric_limits<qint64>::max();
    EXPECT_EQ(HttpAnswer::endOfContentRange("bytes 100-199/5000"), 200);
    EXPECT_EQ(HttpAnswer::endOfContentRange("Bytes 100 - 199 /*"), 200);
    EXPECT_EQ(HttpAnswer::endOfContentRange("bytes 100-99/5000"), 100);
    EXPECT_EQ(HttpAnswer::endOfContentRange("bytes 1-9223372036854775806/2"), largest);
    EXPECT_EQ(HttpAnswer::endOfContentRange("bytes 1-9223372036854775807/2"), largest);
    EXPECT_EQ(HttpAnswer::endOfContentRange("bytes 1-9999999999999999999999/2"), largest);
    for (const char *value :
         {"", "nonsense", "bytes 5", "bytes 5/10", "bytes */10", "bytes=0-9/10", "bytes 0--9/10"})
        EXPECT_FALSE(HttpAnswer::endOfContentRange(value)) << value;
}

TEST(HttpAnswerTest, ABodyIsTheRequestedOneOrHasAProblem)
{
    const QString none;
    const QString compressed = QStringLiteral("the server compressed what it sent");
    const QString part = QStringLiteral("the server sent a part of the file only");
    const QString elsewhere = QStringLiteral("the server sent another part of the file");
    const struct
    {
        int status;
        std::optional<qint64> asked;
        QByteArray name, value;
        QString problem;
    } cases[] = {
        {200, {}, "", "", none},
        {200, 7, "", "", none},
        {200, 7, "Content-Range", "bytes 100-199/5000", none},
        {203, {}, "", "", none},
        {0, {}, "", "", QStringLiteral("the server answered with status 0")},
        {300, 7, "", "", QStringLiteral("the server answered with status 300")},
        {304, 7, "", "", QStringLiteral("the server answered with status 304")},
        {404, {}, "", "", QStringLiteral("the server answered with status 404")},
        {206, 7, "", "", none},
        {206, 7, "Content-Range", "nonsense", none},
        {206, 7, "Content-Range", "bytes 7-199/5000", none},
        {206, 7, "Content-Range", "bytes 6-199/5000", elsewhere},
        {206, 7, "Content-Range", "bytes 8-199/5000", elsewhere},
        {206, 7, "Content-Range", "bytes 9223372036854775808-9/5000", elsewhere},
        {206, {}, "Content-Range", "bytes 0-199/5000", part},
        {206, 7, "Content-Type", "multipart/byteranges; boundary=x",
         QStringLiteral("the server sent several parts in one answer")},
        {206, 7, "Content-Type", "application/octet-stream", none},
        {200, {}, "Content-Encoding", "gzip", compressed},
        {206, 7, "Content-Encoding", "gzip", compressed},
        {206, 7, "Content-Encoding", " Identity ", none},
    };
    for (const auto &each : cases) {
        FakeReply reply(each.status);
        if (!each.name.isEmpty())
            reply.setHeaderAsSent(each.name, each.value);
        EXPECT_EQ(HttpAnswer::problemOfBody(reply, each.asked), each.problem)
            << each.status << ' ' << each.value.constData();
    }
}

TEST(HttpAnswerTest, ABodyWithFewerBytesThanAnnouncedIsCutShort)
{
    FakeReply reply(200);
    EXPECT_FALSE(HttpAnswer::isCutShort(reply, 0)) << "nothing was announced";
    reply.announce(100);
    EXPECT_TRUE(HttpAnswer::isCutShort(reply, 0));
    EXPECT_TRUE(HttpAnswer::isCutShort(reply, 99));
    EXPECT_FALSE(HttpAnswer::isCutShort(reply, 100));
    reply.setHeaderAsSent("Content-Encoding", "gzip");
    EXPECT_TRUE(HttpAnswer::isCutShort(reply, 99)) << "compressed bytes are counted as they came";
    reply.setHeaderAsSent("Transfer-Encoding", "Chunked");
    EXPECT_FALSE(HttpAnswer::isCutShort(reply, 99)) << "chunks are counted otherwise";
}

} // namespace
