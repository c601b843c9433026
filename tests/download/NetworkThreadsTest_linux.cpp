// Qt creates a thread for each network access manager; the threads of the process are listed in /proc.

#include "tests/download/SegmentedTest.h"

#include <QDir>

namespace {

int networkThreads()
{
    int count = 0;
    const QDir tasks(QStringLiteral("/proc/self/task"));
    const QStringList ids = tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &id : ids) {
        QFile name(tasks.filePath(id + QStringLiteral("/comm")));
        count += name.open(QIODevice::ReadOnly) && name.readAll().startsWith("QNetworkAccess");
    }
    return count;
}

class NetworkThreadsTest : public SegmentedTest
{
protected:
    /// Waits until they have ended: a thread that has ended stays listed for a moment.
    static bool areAllGone()
    {
        return processEventsUntil([] { return networkThreads() == 0; });
    }
};

TEST_F(NetworkThreadsTest, NoThreadIsLeftAfterARun)
{
    fault("slow-drip:nth=2,bytes=2000,ms=20"); // long enough to be looked at
    int most = 0;
    m_clock.onSleep = [&] {
        most = std::max(most, networkThreads());
    };
    for (int i = 0; i < 3; ++i) {
        ASSERT_TRUE(run());
        EXPECT_TRUE(areAllGone()) << "after run " << i + 1;
    }
    EXPECT_GE(most, 10) << "each segment had one";
}

TEST_F(NetworkThreadsTest, NoThreadIsLeftAfterAMergeThatFailed)
{
    ASSERT_TRUE(QDir().mkdir(m_worker.savePath));
    EXPECT_FALSE(run());
    EXPECT_TRUE(areAllGone());
}

TEST_F(NetworkThreadsTest, NoThreadIsLeftWhenTheProgramShutsDown)
{
    fault("stall-after:bytes=0,nth=2");
    begin();
    ASSERT_TRUE(processEventsUntil([&] { return server().requests().size() == 11; }));
    EXPECT_GE(networkThreads(), 11);
    m_clock.shutDown();
    ASSERT_TRUE(processEventsUntil([&] { return m_isEnded.load(); }));
    EXPECT_TRUE(areAllGone());
}

} // namespace
