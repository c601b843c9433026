#include "tests/download/DownloadTest.h"
#include "tests/support/RecordedDebugStream.h"

#include "download/FileDownloader.h"

#include <QDir>
#include <QNetworkAccessManager>

namespace {

class FileDownloaderTest : public DownloadTest
{
protected:
    static bool waitFinished(const FileDownloader &downloader)
    {
        return waitUntil([&] { return downloader.state == FileDownloader::Finished; });
    }
    /// Bytes 1000 to 2999, and quick retries.
    static void setRange(FileDownloader &downloader)
    {
        downloader.startByte = 1000;
        downloader.endByte = 3000;
        downloader.retryDelay = 5;
    }

    const QByteArray m_content = distinctBytes(5000);
};

TEST_F(FileDownloaderTest, FieldsBeginAsTheOwnerExpectsThem)
{
    const FileDownloader downloader(url(), local());
    EXPECT_EQ(downloader.CurrentPackDownloadSize, 0);
    EXPECT_EQ(downloader.startByte, 0);
    EXPECT_EQ(downloader.endByte, 0);
    EXPECT_EQ(downloader.wholeFileSize, 0);
    EXPECT_EQ(downloader.state, 0);
    EXPECT_EQ(downloader.retryCount, 0);
    EXPECT_EQ(downloader.maxRetries, 20);
    EXPECT_EQ(downloader.retryDelay, 1000);
    EXPECT_EQ(downloader.m_totalSize, 0);
    EXPECT_EQ(downloader.filePath, local());
}

TEST_F(FileDownloaderTest, WithoutARangeAndALocalFileThePlainGetFetchesTheWholeFile)
{
    serve(m_content);
    FileDownloader downloader(url(), local());
    const RecordedDebugStream debug;
    downloader.startDownload();
    ASSERT_TRUE(waitFinished(downloader));
    EXPECT_EQ(contentOf(local()), m_content);
    ASSERT_EQ(m_server.requests().size(), 1);
    EXPECT_FALSE(m_server.requests().first().headers.contains("range"));
    EXPECT_EQ(downloader.CurrentPackDownloadSize, 5000);
    EXPECT_TRUE(debug.lines().contains(QStringLiteral("Download completed successfully!")));
    EXPECT_TRUE(debug.lines().contains(QStringLiteral("Total file size: 5000")));
    EXPECT_TRUE(debug.lines().contains(QStringLiteral("Download progress: 5000 / 5000")));
    EXPECT_TRUE(debug.lines().contains(QStringLiteral("CurrentPackDownloadSize: 5000")));
    EXPECT_TRUE(debug.lines().contains(QStringLiteral("m_totalSize: 5000")));
}

TEST_F(FileDownloaderTest, WithoutARangeALocalFileIsResumedFromItsLength)
{
    serve(m_content);
    write(local(), m_content.left(1234));
    FileDownloader downloader(url(), local());
    const RecordedDebugStream debug;
    downloader.startDownload();
    ASSERT_TRUE(waitFinished(downloader));
    EXPECT_EQ(rangesAsked(), QList<QByteArray>{"bytes=1234-"});
    EXPECT_EQ(contentOf(local()), m_content);
    EXPECT_EQ(downloader.CurrentPackDownloadSize, 5000);
    EXPECT_TRUE(debug.lines().contains(QStringLiteral("Resuming from byte: 1234")));
}

TEST_F(FileDownloaderTest, ARangeIsAskedForByItsInclusiveLastByte)
{
    serve(m_content);
    FileDownloader downloader(url(), local());
    setRange(downloader);
    downloader.startDownload();
    ASSERT_TRUE(waitFinished(downloader));
    EXPECT_EQ(rangesAsked(), QList<QByteArray>{"bytes=1000-2999"});
    EXPECT_EQ(contentOf(local()), m_content.mid(1000, 2000));
    EXPECT_EQ(downloader.CurrentPackDownloadSize, 2000);
}

TEST_F(FileDownloaderTest, ARangeWithALocalFileIsAskedForFromWhereThatEnds)
{
    serve(m_content);
    write(local(), m_content.mid(1000, 300));
    FileDownloader downloader(url(), local());
    setRange(downloader);
    downloader.startDownload();
    EXPECT_EQ(downloader.CurrentPackDownloadSize, 300);
    ASSERT_TRUE(waitFinished(downloader));
    EXPECT_EQ(rangesAsked(), QList<QByteArray>{"bytes=1300-2999"});
    EXPECT_EQ(contentOf(local()), m_content.mid(1000, 2000));
    EXPECT_EQ(downloader.CurrentPackDownloadSize, 2000);
}

TEST_F(FileDownloaderTest, ARangeThatIsOnDiskIsFinishedAtOnceWithoutARequest)
{
    for (const int length : {2000, 2500}) {
        write(local(), QByteArray(length, 'x'));
        FileDownloader downloader(url(), local());
        setRange(downloader);
        downloader.state = FileDownloader::Failed;
        const RecordedDebugStream debug;
        downloader.startDownload();
        EXPECT_EQ(downloader.state, FileDownloader::Finished);
        EXPECT_EQ(downloader.CurrentPackDownloadSize, length);
        EXPECT_TRUE(debug.lines().contains(QStringLiteral("下载已完成")));
        pump(30);
        EXPECT_EQ(contentOf(local()).size(), length);
    }
    EXPECT_TRUE(m_server.requests().isEmpty());
}

TEST_F(FileDownloaderTest, ALocalFileThatIsGoneLeavesTheOffsetAsItWas)
{
    serve(m_content);
    setFault("stall:times=1");
    write(local(), m_content.mid(1000, 300));
    FileDownloader downloader(url(), local());
    setRange(downloader);
    downloader.startDownload();
    ASSERT_TRUE(waitUntil([&] { return m_server.requests().size() == 1; }));
    downloader.pause();
    ASSERT_TRUE(QFile::remove(local()));
    downloader.resume();
    ASSERT_TRUE(waitFinished(downloader));
    EXPECT_EQ(rangesAsked(), (QList<QByteArray>{"bytes=1300-2999", "bytes=1300-2999"}));
}

TEST_F(FileDownloaderTest, TheTotalSizeIsTakenFromContentRangeBeforeContentLength)
{
    serve(m_content);
    FileDownloader downloader(url(), local());
    setRange(downloader);
    downloader.startDownload();
    ASSERT_TRUE(waitFinished(downloader));
    EXPECT_EQ(downloader.m_totalSize, 5000);
}

TEST_F(FileDownloaderTest, AContentRangeWithoutItsOneSlashLeavesTheTotalSize)
{
    serve(m_content);
    setFault("header:name=Content-Range,value=bytes 1000-2999");
    FileDownloader downloader(url(), local());
    setRange(downloader);
    downloader.m_totalSize = 77;
    downloader.startDownload();
    ASSERT_TRUE(waitFinished(downloader));
    EXPECT_EQ(downloader.m_totalSize, 77);
    EXPECT_EQ(contentOf(local()), m_content.mid(1000, 2000));
}

TEST_F(FileDownloaderTest, NoCompressionIsAskedForWhoseBytesWouldNotBeTheFiles)
{
    serve(m_content);
    FileDownloader downloader(url(), local());
    downloader.startDownload();
    ASSERT_TRUE(waitFinished(downloader));
    EXPECT_EQ(m_server.requests().first().header("Accept-Encoding"), "identity");
}

TEST_F(FileDownloaderTest, AWholeFileInAnswerToARangeIsCutToTheRange)
{
    serve(m_content);
    setFault("ignore-range");
    write(local(), m_content.mid(1000, 300));
    FileDownloader downloader(url(), local());
    setRange(downloader);
    downloader.startDownload();
    ASSERT_TRUE(waitFinished(downloader));
    EXPECT_EQ(contentOf(local()), m_content.mid(1000, 2000));
    EXPECT_EQ(downloader.CurrentPackDownloadSize, 2000);
}

TEST_F(FileDownloaderTest, ARedirectIsFollowedWithTheRange)
{
    write(m_root.filePath(QStringLiteral("elsewhere")), m_content);
    setFault("redirect:path=/file,to=/elsewhere");
    FileDownloader downloader(url(), local());
    setRange(downloader);
    downloader.startDownload();
    ASSERT_TRUE(waitFinished(downloader));
    EXPECT_EQ(rangesAsked(), (QList<QByteArray>{"bytes=1000-2999", "bytes=1000-2999"}));
    EXPECT_EQ(contentOf(local()), m_content.mid(1000, 2000));
}

TEST_F(FileDownloaderTest, ARangeWithoutALengthIsComplete)
{
    serve(m_content);
    for (const char *fault : {"chunked", "no-length"}) {
        m_server.clearFaults();
        setFault(fault);
        QFile::remove(local());
        FileDownloader downloader(url(), local());
        setRange(downloader);
        downloader.startDownload();
        ASSERT_TRUE(waitFinished(downloader)) << fault;
        EXPECT_EQ(contentOf(local()), m_content.mid(1000, 2000)) << fault;
        EXPECT_EQ(downloader.retryCount, 0) << fault;
    }
}

TEST_F(FileDownloaderTest, ABodyWaitsInABoundedBufferUntilTheFileCanBeOpened)
{
    const QByteArray content = serve(distinctBytes(4 * 1024 * 1024));
    const QString path = m_folder.filePath(QStringLiteral("later/local"));
    FileDownloader downloader(url(), path);
    downloader.retryDelay = 20;
    const RecordedDebugStream debug;
    downloader.startDownload();
    const auto refusals = [&] {
        return debug.lines().count(QStringLiteral("Unable to open file for writing: ") + path);
    };
    ASSERT_TRUE(waitUntil([&] { return refusals() >= 5; }));
    EXPECT_EQ(downloader.state, FileDownloader::Running);
    const auto *reply = downloader.findChild<QNetworkReply *>();
    ASSERT_NE(reply, nullptr);
    EXPECT_LT(reply->bytesAvailable(), 2 * 1024 * 1024);
    EXPECT_EQ(downloader.retryCount, 0);
    ASSERT_TRUE(QDir().mkpath(m_folder.filePath(QStringLiteral("later"))));
    ASSERT_TRUE(waitFinished(downloader));
    EXPECT_EQ(contentOf(path), content);
    EXPECT_EQ(m_server.requests().size(), 1);
}

TEST_F(FileDownloaderTest, AReplyThatIsNotTheCurrentOneChangesNothing)
{
    serve(m_content);
    setFault("stall");
    FileDownloader downloader(url(), local());
    downloader.startDownload();
    QNetworkAccessManager other;
    QNetworkReply *stranger = other.get(QNetworkRequest(QUrl(QStringLiteral("data:,x"))));
    ASSERT_TRUE(waitUntil([&] { return stranger->isFinished(); }));
    downloader.onFinished(stranger);
    EXPECT_EQ(downloader.state, FileDownloader::Running);
}

TEST_F(FileDownloaderTest, ADroppedNetworkIsGoneAndNothingStartsAgain)
{
    serve(m_content);
    setFault("stall");
    FileDownloader downloader(url(), local());
    downloader.startDownload();
    ASSERT_TRUE(waitUntil([&] { return m_server.openConnections() == 1; }));
    downloader.dropNetwork();
    EXPECT_EQ(downloader.findChild<QNetworkAccessManager *>(), nullptr);
    EXPECT_EQ(downloader.state, FileDownloader::Running);
    EXPECT_TRUE(waitUntil([&] { return m_server.openConnections() == 0; }));
    downloader.startDownload();
    pump(30);
    EXPECT_EQ(m_server.requests().size(), 1);
}

} // namespace
