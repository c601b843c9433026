#include "tests/download/DownloadTest.h"
#include "tests/support/RecordedDebugStream.h"

#include "download/FileDownloader.h"

#include <QRegularExpression>

namespace {

/// Bytes 1000 to 2999 of a file of 5000, from a server at fault.
class FileDownloaderRetryTest : public DownloadTest
{
protected:
    FileDownloaderRetryTest()
    {
        serve(m_content);
        m_downloader.startByte = 1000;
        m_downloader.endByte = 3000;
        m_downloader.retryDelay = 5;
    }
    bool waitFinished()
    {
        return waitUntil([&] { return m_downloader.state == FileDownloader::Finished; });
    }
    bool waitGivenUp()
    {
        return waitUntil([&] { return m_downloader.hasGivenUp(); });
    }

    const QByteArray m_content = distinctBytes(5000);
    const QByteArray m_wanted = m_content.mid(1000, 2000);
    FileDownloader m_downloader{url(), local()};
};

TEST_F(FileDownloaderRetryTest, ABrokenConnectionIsResumedFromWhereTheLocalFileEnds)
{
    setFault("slow-drip:bytes=100,ms=5,times=1");
    setFault("reset-after:bytes=700,times=1");
    const RecordedDebugStream debug;
    m_downloader.startDownload();
    ASSERT_TRUE(waitFinished());
    EXPECT_EQ(contentOf(local()), m_wanted);
    // A reset may overtake the last of the 700 bytes.
    const QList<QByteArray> ranges = rangesAsked();
    ASSERT_EQ(ranges.size(), 2);
    EXPECT_EQ(ranges.first(), "bytes=1000-2999");
    EXPECT_GT(RequestedRange::parse(ranges.last())->first, 1000);
    EXPECT_LE(RequestedRange::parse(ranges.last())->first, 1700);
    EXPECT_EQ(m_downloader.retryCount, 1);
    EXPECT_TRUE(debug.lines().contains(QStringLiteral("Retrying download. Attempt: 1")));
}

TEST_F(FileDownloaderRetryTest, ARetryComesAfterTheDelayAndNotBefore)
{
    m_downloader.retryDelay = 1000;
    setFault("503:times=1");
    m_downloader.startDownload();
    ASSERT_TRUE(waitFinished());
    ASSERT_EQ(m_server.requests().size(), 2);
    EXPECT_GE(m_server.requests().at(1).atMs - m_server.requests().at(0).atMs, 950);
}

TEST_F(FileDownloaderRetryTest, TwentyRetriesAndItStaysFailedForGood)
{
    setFault("503");
    const RecordedDebugStream debug;
    m_downloader.startDownload();
    ASSERT_TRUE(waitGivenUp());
    pump(50);
    EXPECT_EQ(m_server.requests().size(), 21);
    EXPECT_EQ(m_downloader.retryCount, 20);
    EXPECT_EQ(m_downloader.state, FileDownloader::Failed);
    EXPECT_FALSE(m_downloader.lastProblem().isEmpty());
    EXPECT_EQ(debug.lines().count(QStringLiteral("Maximum retry attempts reached. Download failed.")), 1);
    EXPECT_TRUE(debug.lines().contains(QStringLiteral("Retrying download. Attempt: 20")));
}

TEST_F(FileDownloaderRetryTest, TheRetryCountIsNeverReset)
{
    setFault("503:times=3");
    m_downloader.startDownload();
    ASSERT_TRUE(waitFinished());
    EXPECT_EQ(m_downloader.retryCount, 3);
    ASSERT_TRUE(QFile::remove(local()));
    setFault("404");
    m_downloader.startDownload();
    ASSERT_TRUE(waitGivenUp());
    EXPECT_EQ(m_downloader.retryCount, 20);
    // Four requests of the first download; of the second the first one and 17 retries.
    EXPECT_EQ(m_server.requests().size(), 4 + 18);
}

TEST_F(FileDownloaderRetryTest, ARangeNotSatisfiableCountsAsFinished)
{
    setFault("416");
    const RecordedDebugStream debug;
    m_downloader.startDownload();
    ASSERT_TRUE(waitFinished());
    pump(50);
    EXPECT_EQ(m_server.requests().size(), 1);
    EXPECT_EQ(m_downloader.retryCount, 0);
    EXPECT_EQ(m_downloader.state, FileDownloader::Finished);
    EXPECT_TRUE(debug.lines().contains(QStringLiteral("you download success")));
    EXPECT_FALSE(QFile::exists(local()));
}

TEST_F(FileDownloaderRetryTest, TheStatusOfAFailedReplyIsReportedAfterItsError)
{
    setFault("416");
    const RecordedDebugStream debug;
    m_downloader.startDownload();
    ASSERT_TRUE(waitFinished());
    ASSERT_TRUE(waitUntil([&] { return debug.lines().contains(QStringLiteral("state Code: 416")); }));
    const QStringList lines = debug.lines().filter(QRegularExpression(
        QStringLiteral("^(Network error occurred:|you download|Download failed:|state Code: )")));
    ASSERT_EQ(lines.size(), 4);
    EXPECT_TRUE(lines.at(0).startsWith(QLatin1String("Network error occurred:")));
    EXPECT_EQ(lines.at(1), QStringLiteral("you download success"));
    EXPECT_TRUE(lines.at(2).startsWith(QLatin1String("Download failed:")));
    EXPECT_EQ(lines.at(3), QStringLiteral("state Code: 416"));
}

TEST_F(FileDownloaderRetryTest, AnErrorPageIsNoPartOfTheFile)
{
    setFault("503:times=2");
    write(local(), m_wanted.left(100));
    const RecordedDebugStream debug;
    m_downloader.startDownload();
    ASSERT_TRUE(waitFinished());
    EXPECT_EQ(contentOf(local()), m_wanted);
    EXPECT_EQ(m_downloader.CurrentPackDownloadSize, 2000);
    EXPECT_EQ(
        debug.lines().count(QStringLiteral("Network error occurred: QNetworkReply::ServiceUnavailableError")),
        2);
}

TEST_F(FileDownloaderRetryTest, ARangeThatEndsEarlyIsAskedForAgainWhileThatBringsBytes)
{
    setFault("short-206:bytes=900");
    m_downloader.startDownload();
    ASSERT_TRUE(waitFinished());
    EXPECT_EQ(rangesAsked(), (QList<QByteArray>{"bytes=1000-2999", "bytes=1900-2999", "bytes=2800-2999"}));
    EXPECT_EQ(contentOf(local()), m_wanted);
}

TEST_F(FileDownloaderRetryTest, ARangeThatBringsNothingCountsAsFinished)
{
    setFault("short-206:bytes=0");
    m_downloader.startDownload();
    ASSERT_TRUE(waitFinished());
    pump(50);
    EXPECT_EQ(m_server.requests().size(), 1);
    EXPECT_FALSE(QFile::exists(local()));
}

TEST_F(FileDownloaderRetryTest, APartOfAnotherPlaceIsNotTakenForTheOneAskedFor)
{
    setFault("header:name=Content-Range,value=bytes 1500-2999/5000,times=1");
    m_downloader.startDownload();
    ASSERT_TRUE(waitFinished());
    EXPECT_EQ(contentOf(local()), QByteArray());
}

TEST_F(FileDownloaderRetryTest, AFullDiskIsRetriedAndLeavesNoHole)
{
    // A link, for nothing in this test may ever write to or remove the device itself.
    ASSERT_TRUE(QFile::link(QStringLiteral("/dev/full"), local()));
    m_downloader.maxRetries = 2;
    m_downloader.startDownload();
    ASSERT_TRUE(waitGivenUp());
    EXPECT_EQ(m_downloader.state, FileDownloader::Failed);
    EXPECT_TRUE(m_downloader.lastProblem().contains(local())) << m_downloader.lastProblem().toStdString();
    EXPECT_EQ(m_server.requests().size(), 3);
}

TEST_F(FileDownloaderRetryTest, RetryDownloadCountsAndResumesLikeAnErrorDoes)
{
    setFault("stall:times=1");
    m_downloader.startDownload();
    ASSERT_TRUE(waitUntil([&] { return m_server.requests().size() == 1; }));
    m_downloader.retryDownload();
    EXPECT_EQ(m_downloader.retryCount, 1);
    ASSERT_TRUE(waitFinished());
    EXPECT_EQ(contentOf(local()), m_wanted);

    m_downloader.retryCount = m_downloader.maxRetries;
    const RecordedDebugStream debug;
    m_downloader.retryDownload();
    EXPECT_EQ(m_downloader.retryCount, 20);
    EXPECT_TRUE(debug.lines().contains(QStringLiteral("Maximum retry attempts reached. Download failed.")));
}

} // namespace
