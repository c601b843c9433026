// Every write to /dev/full fails as on a full disk.

#include "tests/common/RecordedDebugStream.h"
#include "tests/download/SegmentedTest.h"

#include "download/FileDownloaderHTTP.h"

namespace {

const QString fullDisk = QStringLiteral("/dev/full");

class DiskFullTest : public SegmentedTest
{
};

TEST_F(DiskFullTest, AMergeOntoAFullDiskFails)
{
    RecordedDebugStream messages;
    write(local("a"), "content");
    EXPECT_FALSE(m_worker.mergeFiles({local("a")}, fullDisk));
    EXPECT_EQ(messages.lines(QtWarningMsg),
              QStringList{QStringLiteral("Could not write target file: /dev/full")});
}

TEST_F(DiskFullTest, AMergeOntoAFullDiskIsReportedWithItsReason)
{
    ASSERT_TRUE(QFile::link(fullDisk, m_worker.savePath));
    EXPECT_FALSE(run());
    const QStringList log = m_reporter.logLines();
    EXPECT_TRUE(log.contains(QStringLiteral("merge Files Failed!")));
    EXPECT_TRUE(log.last().contains(QStringLiteral("No space left"))) << qPrintable(log.last());
}

TEST_F(DiskFullTest, ASegmentOnAFullDiskIsRetriedAndGivesUp)
{
    RecordedDebugStream messages;
    FileDownloader downloader(server().url(QStringLiteral("/image.bin")), fullDisk);
    downloader.endByte = 1000;
    downloader.retryDelay = 5;
    downloader.maxRetries = 2;
    downloader.startDownload();
    ASSERT_TRUE(processEventsUntil([&] { return downloader.hasGivenUp(); }));
    EXPECT_EQ(downloader.state, -1);
    EXPECT_EQ(server().requests().size(), 3);
    EXPECT_TRUE(downloader.lastProblem().contains(QStringLiteral("No space left")));
    EXPECT_GE(messages.countBeginning(QStringLiteral("Unable to write file: /dev/full")), 3);
}

TEST_F(DiskFullTest, ASegmentThatGaveUpOnAFullDiskIsLoggedWithItsReason)
{
    ASSERT_TRUE(QFile::link(fullDisk, part(3)));
    m_clock.onSleep = [this] {
        hurry();
        if (m_worker.segments.size() == 10 && m_worker.segments.at(3)->hasGivenUp() &&
            !m_reporter.logLines().filter(QStringLiteral("gave up")).isEmpty())
            m_clock.shutDown();
    };
    EXPECT_FALSE(run());
    const QStringList told = m_reporter.logLines().filter(QStringLiteral("gave up"));
    ASSERT_EQ(told.size(), 1);
    EXPECT_TRUE(told.first().contains(QStringLiteral("No space left")));
}

TEST_F(DiskFullTest, AManifestOnAFullDiskIsNoSuccess)
{
    const QString path = local("dev.jn");
    ASSERT_TRUE(QFile::link(fullDisk, path));
    FileDownloaderHTTP downloader(nullptr, &m_reporter);
    emit downloader.sigDownloadFile(m_worker.url, path);
    ASSERT_TRUE(processEventsUntil([&] {
        return !m_reporter.logLines().filter(QStringLiteral("Download finished with error:")).isEmpty();
    }));
    EXPECT_FALSE(downloader.succeeded);
    EXPECT_EQ(m_reporter.logLines().filter(QStringLiteral("Could not write file: No space left")).size(), 1);
}

} // namespace
