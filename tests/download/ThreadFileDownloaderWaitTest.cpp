#include "tests/download/ThreadFileDownloaderTest.h"

namespace {

/// The waits of a run, on a clock that passes 20 s quickly.
class ThreadFileDownloaderWaitTest : public ThreadFileDownloaderTest
{
protected:
    ThreadFileDownloaderWaitTest() : ThreadFileDownloaderTest(true) {}

    void expectSizeTimeout(const RecordedDebugStream &debug)
    {
        EXPECT_EQ(m_clock.nowMs(), 20000);
        EXPECT_EQ(m_clock.sleeps, QVector<int>(200, 100).toList());
        EXPECT_EQ(debug.warnings(), QStringList{QStringLiteral("Timeout reached!")});
        EXPECT_EQ(m_log.logLines().last(), QStringLiteral("wait server return timeout!"));
        EXPECT_TRUE(m_worker.segments.isEmpty());
    }
};

TEST_F(ThreadFileDownloaderWaitTest, AServerThatNamesNoSizeIsGivenUpAfterTwentySeconds)
{
    serve(distinctBytes(1000));
    setFault("stall");
    const RecordedDebugStream debug;
    EXPECT_FALSE(fetch());
    expectSizeTimeout(debug);
    EXPECT_EQ(m_states.last(), QStringLiteral("当前状态: 等待服务器返回..."));
}

TEST_F(ThreadFileDownloaderWaitTest, ASizeOfZeroCountsAsNotYetKnown)
{
    serve(QByteArray());
    const RecordedDebugStream debug;
    EXPECT_FALSE(fetch());
    expectSizeTimeout(debug);
}

TEST_F(ThreadFileDownloaderWaitTest, TheProbeOutlivesTheTimeoutAndGoesOnWithItsRequest)
{
    serve(distinctBytes(1000));
    setFault("stall");
    EXPECT_FALSE(fetch());
    pump(30);
    EXPECT_EQ(m_server.openConnections(), 1);
    EXPECT_EQ(m_server.requests().size(), 1);
}

TEST_F(ThreadFileDownloaderWaitTest, LeavingEndsTheWaitForTheSizeAtOnce)
{
    serve(distinctBytes(1000));
    setFault("stall");
    m_clock.onSleep = [&] {
        if (m_clock.sleeps.size() == 5)
            m_clock.leave();
    };
    EXPECT_FALSE(fetch());
    EXPECT_EQ(m_clock.sleeps.size(), 5);
    EXPECT_FALSE(m_log.logLines().contains(QStringLiteral("wait server return timeout!")));
    EXPECT_TRUE(waitUntil([&] { return m_server.openConnections() == 0; }));
}

TEST_F(ThreadFileDownloaderWaitTest, LeavingEndsTheDownloadAtOnceAndKeepsThePartFiles)
{
    serve(distinctBytes(100000));
    setFault("stall-after:range=4,bytes=100");
    m_clock.onSleep = [&] {
        if (QFile(part(4)).size() == 100)
            m_clock.leave();
    };
    EXPECT_FALSE(fetch());
    EXPECT_TRUE(QFile::exists(part(4)));
    EXPECT_FALSE(QFile::exists(m_worker.savePath));
    EXPECT_EQ(networksLeft(), 0);
    EXPECT_FALSE(m_log.logLines().contains(QStringLiteral("Now merge Files...")));
}

TEST_F(ThreadFileDownloaderWaitTest, ASegmentThatGivesUpKeepsTheRunWaitingAndIsReportedOnce)
{
    serve(distinctBytes(100000));
    setFault("404:range=4");
    int roundsAfter = 0;
    m_clock.onSleep = [&] {
        for (FileDownloader *segment : m_worker.segments)
            segment->retryDelay = 1;
        if (m_worker.segments.size() == 10 && m_worker.segments.at(4)->hasGivenUp() && ++roundsAfter == 50)
            m_clock.leave();
    };
    // The first retry is armed before the delay can be shortened.
    EXPECT_FALSE(fetch());
    EXPECT_EQ(roundsAfter, 50);
    EXPECT_EQ(m_worker.segments.at(4)->state, FileDownloader::Failed);
    const QStringList given = m_log.logLines().filter(QStringLiteral("gave up after 20 retries"));
    ASSERT_EQ(given.size(), 1);
    EXPECT_TRUE(given.first().contains(part(4)));
    EXPECT_TRUE(m_states.last().endsWith(QStringLiteral(" MB/S")));
    EXPECT_FALSE(QFile::exists(m_worker.savePath));
}

TEST_F(ThreadFileDownloaderWaitTest, NoLimitEndsADownloadWhoseSegmentsGoOnArriving)
{
    const QByteArray content = serve(distinctBytes(100000));
    setFault("slow-drip:range=4,bytes=40,ms=4");
    ASSERT_TRUE(fetch());
    EXPECT_GT(m_clock.nowMs(), 20000);
    EXPECT_EQ(image(), content);
}

} // namespace
