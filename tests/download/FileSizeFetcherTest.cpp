#include "tests/download/DownloadTest.h"
#include "tests/support/RecordedDebugStream.h"

#include "download/FileSizeFetcher.h"

#include <QNetworkReply>

namespace {

class FileSizeFetcherTest : public DownloadTest
{
protected:
    bool waitForDebug(const RecordedDebugStream &debug, const char *line)
    {
        return waitUntil([&] { return debug.lines().contains(QString::fromUtf8(line)); });
    }
};

TEST_F(FileSizeFetcherTest, APlainGetTellsTheSizeAndCompletes)
{
    serve(distinctBytes(5000));
    FileSizeFetcher probe(url());
    EXPECT_EQ(probe.fileSize, 0);
    EXPECT_EQ(probe.maxRetries, 999);
    const RecordedDebugStream debug;
    probe.fetchFileSize();
    ASSERT_TRUE(waitForDebug(debug, "Request completed."));
    EXPECT_EQ(probe.fileSize, 5000);
    EXPECT_TRUE(debug.lines().contains(QStringLiteral("File size: 5000 bytes")));
    ASSERT_EQ(m_server.requests().size(), 1);
    EXPECT_FALSE(m_server.requests().first().headers.contains("range"));
    EXPECT_EQ(m_server.requests().first().header("Accept-Encoding"), "identity");
}

TEST_F(FileSizeFetcherTest, TheSizeIsKnownAsSoonAsTheHeadHasArrived)
{
    serve(distinctBytes(5000));
    setFault("stall-after:bytes=0");
    FileSizeFetcher probe(url());
    probe.fetchFileSize();
    EXPECT_TRUE(waitUntil([&] { return probe.fileSize == 5000; }));
}

TEST_F(FileSizeFetcherTest, TheWholeBodyIsFetchedAndDropped)
{
    serve(QByteArray(16 * 1024 * 1024, 'x'));
    FileSizeFetcher probe(url());
    const RecordedDebugStream debug;
    probe.fetchFileSize();
    const auto *reply = probe.findChild<QNetworkReply *>();
    ASSERT_NE(reply, nullptr);
    qint64 most = 0;
    ASSERT_TRUE(waitUntil([&] {
        if (const auto *current = probe.findChild<QNetworkReply *>())
            most = std::max(most, current->bytesAvailable());
        return debug.lines().contains(QStringLiteral("Request completed."));
    }));
    EXPECT_LE(most, 2 * 1024 * 1024);
}

TEST_F(FileSizeFetcherTest, WithBothHeadersContentLengthIsTaken)
{
    serve(distinctBytes(5000));
    setFault("header:name=Content-Range,value=bytes 0-99/777");
    FileSizeFetcher probe(url());
    probe.fetchFileSize();
    ASSERT_TRUE(waitUntil([&] { return probe.fileSize != 0; }));
    EXPECT_EQ(probe.fileSize, 5000);
}

TEST_F(FileSizeFetcherTest, AContentRangeAloneGivesWhatFollowsItsSlash)
{
    serve(distinctBytes(100));
    setFault("chunked");
    setFault("header:name=Content-Range,value=bytes 0-99/5000");
    FileSizeFetcher probe(url());
    const RecordedDebugStream debug;
    probe.fetchFileSize();
    ASSERT_TRUE(waitForDebug(debug, "Request completed."));
    EXPECT_EQ(probe.fileSize, 5000);
}

TEST_F(FileSizeFetcherTest, AContentRangeWithoutASlashIsComplainedOfAndLeavesTheSize)
{
    serve(distinctBytes(100));
    setFault("chunked");
    setFault("header:name=Content-Range,value=bytes 0-99");
    FileSizeFetcher probe(url());
    probe.fileSize = 42;
    const RecordedDebugStream debug;
    probe.fetchFileSize();
    ASSERT_TRUE(waitForDebug(debug, "Request completed."));
    EXPECT_EQ(probe.fileSize, 42);
    EXPECT_TRUE(
        debug.lines().contains(QStringLiteral("Could not determine file size from Content-Range header.")));
}

TEST_F(FileSizeFetcherTest, AnAnswerWithoutEitherLeavesTheSizeUnknownAndIsNotRepeated)
{
    serve(distinctBytes(100));
    setFault("chunked");
    FileSizeFetcher probe(url());
    const RecordedDebugStream debug;
    probe.fetchFileSize();
    ASSERT_TRUE(waitForDebug(debug, "Request completed."));
    pump(50);
    EXPECT_EQ(probe.fileSize, 0);
    EXPECT_EQ(m_server.requests().size(), 1);
}

TEST_F(FileSizeFetcherTest, AnErrorPagesLengthIsNotTheFiles)
{
    serve(distinctBytes(5000));
    setFault("503:times=5");
    FileSizeFetcher probe(url());
    QList<qint64> sizes;
    probe.fetchFileSize();
    ASSERT_TRUE(waitUntil([&] {
        if (probe.fileSize != 0)
            sizes.append(probe.fileSize);
        return m_server.requests().size() == 6 && probe.fileSize == 5000;
    }));
    EXPECT_EQ(sizes.first(), 5000);
}

TEST_F(FileSizeFetcherTest, ARedirectsLengthIsNotTheFiles)
{
    write(m_root.filePath(QStringLiteral("elsewhere")), distinctBytes(5000));
    setFault("redirect:path=/file,to=/elsewhere");
    setFault("stall:path=/elsewhere");
    FileSizeFetcher probe(url());
    probe.fetchFileSize();
    ASSERT_TRUE(waitUntil([&] { return m_server.requests().size() == 2; }));
    EXPECT_EQ(probe.fileSize, 0);
    m_server.clearFaults();
    FileSizeFetcher second(m_server.url(QStringLiteral("/elsewhere")));
    second.fetchFileSize();
    EXPECT_TRUE(waitUntil([&] { return second.fileSize == 5000; }));
}

TEST_F(FileSizeFetcherTest, AFailedRequestIsRepeatedAtOnceUpTo999Times)
{
    setFault("404");
    FileSizeFetcher probe(url());
    const RecordedDebugStream debug;
    probe.fetchFileSize();
    ASSERT_TRUE(waitForDebug(debug, "Max retries reached. Giving up."));
    pump(30);
    EXPECT_EQ(m_server.requests().size(), 1000);
    EXPECT_EQ(probe.retryCount, 999);
    EXPECT_TRUE(debug.lines().contains(QStringLiteral("Retrying... Attempt 1 of 999")));
    EXPECT_TRUE(debug.lines().contains(QStringLiteral("Retrying... Attempt 999 of 999")));
    EXPECT_EQ(debug.lines().filter(QStringLiteral("Error fetching file size: ")).size(), 1000);
    EXPECT_EQ(probe.fileSize, 0);
}

TEST_F(FileSizeFetcherTest, ACompletedRequestResetsTheRetryCount)
{
    serve(distinctBytes(100));
    setFault("503:times=3");
    FileSizeFetcher probe(url());
    const RecordedDebugStream debug;
    probe.fetchFileSize();
    ASSERT_TRUE(waitForDebug(debug, "Request completed."));
    EXPECT_TRUE(debug.lines().contains(QStringLiteral("Retrying... Attempt 3 of 999")));
    EXPECT_EQ(probe.retryCount, 0);
}

} // namespace
