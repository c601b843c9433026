#include "tests/download/DownloadTest.h"
#include "tests/support/RecordedDebugStream.h"

#include "download/FileDownloader.h"

namespace {

/// A range of a file that comes slowly enough to be paused on the way.
class FileDownloaderPauseTest : public DownloadTest
{
protected:
    FileDownloaderPauseTest()
    {
        serve(m_content);
        setFault("slow-drip:bytes=500,ms=5,times=1");
        m_downloader.startByte = 1000;
        m_downloader.endByte = 41000;
    }
    bool startAndPause()
    {
        m_downloader.startDownload();
        if (!waitUntil([&] { return QFile(local()).size() >= 2000; }))
            return false;
        m_downloader.pause();
        return true;
    }

    const QByteArray m_content = distinctBytes(50000);
    FileDownloader m_downloader{url(), local()};
};

TEST_F(FileDownloaderPauseTest, DataArrivingWhilePausedIsNotWritten)
{
    ASSERT_TRUE(startAndPause());
    const QByteArray before = contentOf(local());
    const qint64 size = m_downloader.CurrentPackDownloadSize;
    const RecordedDebugStream debug;
    pump(150);
    EXPECT_EQ(contentOf(local()), before);
    EXPECT_EQ(m_downloader.CurrentPackDownloadSize, size);
    EXPECT_TRUE(debug.lines().isEmpty()) << debug.lines().join(QLatin1Char('\n')).toStdString();
}

TEST_F(FileDownloaderPauseTest, PausingDoesNotStopTheTransferAndItsEndChangesNothing)
{
    ASSERT_TRUE(startAndPause());
    auto *reply = m_downloader.findChild<QNetworkReply *>();
    ASSERT_NE(reply, nullptr);
    EXPECT_FALSE(reply->isFinished());
    ASSERT_TRUE(waitUntil([&] { return reply->isFinished(); }));
    EXPECT_EQ(reply->error(), QNetworkReply::NoError);
    EXPECT_EQ(m_downloader.state, FileDownloader::Paused);
}

TEST_F(FileDownloaderPauseTest, AnErrorWhilePausedChangesNothing)
{
    m_server.clearFaults();
    setFault("reset-after:bytes=5000,times=1");
    setFault("slow-drip:bytes=500,ms=10,times=1");
    ASSERT_TRUE(startAndPause());
    const RecordedDebugStream debug;
    ASSERT_TRUE(waitUntil([&] { return m_server.openConnections() == 0; }));
    pump(50);
    EXPECT_EQ(m_downloader.state, FileDownloader::Paused);
    EXPECT_EQ(m_downloader.retryCount, 0);
    EXPECT_TRUE(debug.lines().isEmpty());
    m_downloader.retryDownload();
    EXPECT_EQ(m_downloader.retryCount, 0);
}

TEST_F(FileDownloaderPauseTest, ResumingStartsANewRequestFromTheLocalFilesLength)
{
    ASSERT_TRUE(startAndPause());
    const int size = contentOf(local()).size();
    pump(50);
    const RecordedDebugStream debug;
    m_downloader.resume();
    EXPECT_EQ(m_downloader.state, FileDownloader::Running);
    ASSERT_TRUE(waitUntil([&] { return m_downloader.state == FileDownloader::Finished; }));
    EXPECT_EQ(rangesAsked(),
              (QList<QByteArray>{"bytes=1000-40999", "bytes=" + QByteArray::number(1000 + size) + "-40999"}));
    EXPECT_EQ(contentOf(local()), m_content.mid(1000, 40000));
    EXPECT_EQ(m_downloader.retryCount, 0);
    EXPECT_TRUE(debug.lines().contains(QStringLiteral("Resuming download")));
}

TEST_F(FileDownloaderPauseTest, OnlyARunningDownloadPausesAndOnlyAPausedOneResumes)
{
    const RecordedDebugStream debug;
    m_downloader.resume();
    EXPECT_EQ(m_downloader.state, FileDownloader::Running);
    EXPECT_TRUE(m_server.requests().isEmpty());
    for (const int state : {FileDownloader::Failed, FileDownloader::Finished}) {
        m_downloader.state = state;
        m_downloader.pause();
        EXPECT_EQ(m_downloader.state, state);
        m_downloader.resume();
        EXPECT_EQ(m_downloader.state, state);
    }
    EXPECT_TRUE(debug.lines().isEmpty());
    m_downloader.state = FileDownloader::Running;
    m_downloader.pause();
    EXPECT_EQ(m_downloader.state, FileDownloader::Paused);
    EXPECT_EQ(debug.lines(), QStringList{QStringLiteral("Download paused")});
}

} // namespace
