#include "checks/WebRequest.h"

#include "support/process/ShutdownFlag.h"
#include "tests/update/ManifestServer.h"

#include <gtest/gtest.h>

namespace {

constexpr int shortLimitMs = 500;
constexpr int noLimitMs = 120000;
const SegmentRange part{1, 10};

class WebRequestTest : public testing::Test
{
protected:
    WebRequestTest() { server.write(QStringLiteral("a.img"), QByteArray(100000, 'a')); }
    ~WebRequestTest() override { ShutdownFlag::instance().lower(); }

    QString url() const { return server.server.url(QStringLiteral("/a.img")).toString(); }

    ManifestServer server;
};

TEST_F(WebRequestTest, AFileArrivesComplete)
{
    const WebAnswer answer = WebRequest::fetch(url(), noLimitMs);
    EXPECT_EQ(answer.status, 200);
    EXPECT_EQ(answer.problem, QString());
    EXPECT_EQ(answer.body, QByteArray(100000, 'a'));
}

TEST_F(WebRequestTest, TheHeadersOfAPartNameItsRange)
{
    const WebAnswer answer = WebRequest::head(url(), part, noLimitMs);
    EXPECT_EQ(answer.status, 206);
    EXPECT_EQ(answer.problem, QString());
    EXPECT_EQ(answer.contentRange, QByteArray("bytes 1-9/100000"));
    EXPECT_EQ(answer.contentLength, std::optional<qint64>(9));
}

TEST_F(WebRequestTest, TheHeadersArriveEvenIfTheBodyNeverDoes)
{
    server.setFault(QStringLiteral("stall-after:bytes=0"));
    const WebAnswer answer = WebRequest::head(url(), std::nullopt, noLimitMs);
    EXPECT_EQ(answer.problem, QString());
    EXPECT_EQ(answer.contentLength, std::optional<qint64>(100000));
}

TEST_F(WebRequestTest, ARedirectIsFollowed)
{
    server.setFault(QStringLiteral("redirect:to=/a.img,path=/old.img"));
    const QString old = server.server.url(QStringLiteral("/old.img")).toString();
    EXPECT_EQ(WebRequest::head(old, part, noLimitMs).status, 206);
    EXPECT_EQ(WebRequest::fetch(old, noLimitMs).body.size(), 100000);
}

TEST_F(WebRequestTest, ARequestWithoutAnAnswerEndsInTime)
{
    server.setFault(QStringLiteral("stall"));
    EXPECT_EQ(WebRequest::fetch(url(), shortLimitMs).problem, QStringLiteral("no answer within 0.5 s"));
    EXPECT_EQ(WebRequest::head(url(), part, shortLimitMs).problem, QStringLiteral("no answer within 0.5 s"));
}

TEST_F(WebRequestTest, ARequestWhoseBodyStopsEndsInTime)
{
    server.setFault(QStringLiteral("stall-after:bytes=10"));
    EXPECT_FALSE(WebRequest::fetch(url(), shortLimitMs).problem.isEmpty());
}

TEST_F(WebRequestTest, ARequestToEndTheProgramEndsTheRequest)
{
    server.setFault(QStringLiteral("stall"));
    ShutdownFlag::instance().raise();
    EXPECT_EQ(WebRequest::fetch(url(), noLimitMs).problem, QStringLiteral("interrupted"));
    EXPECT_EQ(WebRequest::head(url(), part, noLimitMs).problem, QStringLiteral("interrupted"));
}

TEST_F(WebRequestTest, EachFaultIsAProblem)
{
    const struct
    {
        const char *fault;
        bool isProblemOfFetch;
        bool isProblemOfPart;
        int status;
    } cases[] = {
        {"404", true, true, 404},
        {"503", true, true, 503},
        {"416", true, true, 416},
        {"refuse", true, true, 0},
        {"close-after:bytes=10", true, false, 206},
        {"reset-after:bytes=10", true, false, 206},
        {"ignore-range", false, false, 200},
        {"header:name=Content-Range,value=bytes 5-13/100000", false, true, 206},
        {"header:name=Content-Encoding,value=gzip", true, true, 206},
    };
    for (const auto &c : cases) {
        server.server.clearFaults();
        server.setFault(QLatin1String(c.fault));
        EXPECT_EQ(!WebRequest::fetch(url(), noLimitMs).problem.isEmpty(), c.isProblemOfFetch) << c.fault;
        const WebAnswer answer = WebRequest::head(url(), part, noLimitMs);
        EXPECT_EQ(!answer.problem.isEmpty(), c.isProblemOfPart) << c.fault << qPrintable(answer.problem);
        EXPECT_EQ(answer.status, c.status) << c.fault;
    }
}

TEST_F(WebRequestTest, AFileThatIsTooLargeForAManifestIsNotReadToItsEnd)
{
    server.write(QStringLiteral("a.img"), QByteArray(20 * 1024 * 1024, 'a'));
    EXPECT_EQ(WebRequest::fetch(url(), noLimitMs).problem, QStringLiteral("the file is larger than 16 MiB"));
}

} // namespace
