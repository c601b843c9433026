#include "tests/endtoend/OwnMounts.h"
#include "tests/serving/ServingTest.h"

#include <QFile>

namespace {

/// Failures between the users and the firmware server: each client downloads the exact bytes, or fails and
/// reports the reason.
class EdgeFaultTest : public ServingTest
{
protected:
    /// So slow that downloads take a few seconds.
    static EdgeAndOrigin::Options slowly()
    {
        EdgeAndOrigin::Options options;
        options.bytesPerConnection = 200 * 1024;
        return options;
    }
    /// Returns whether a client's last lines are those of a download that has given up.
    static bool isRequired(const QString &failure)
    {
        return failure.contains(QStringLiteral("gave up after 20 retries")) &&
               failure.endsWith(QStringLiteral("Download ERROR!"));
    }
};

TEST_F(EdgeFaultTest, IfAnEdgeDiesAndComesBackAllDownloadsSucceed)
{
    begin(10, slowly());
    waitForBytes();
    m_sites.killEdge();
    ASSERT_TRUE(m_sites.startEdge());
    const ClientResults results = m_clients.results();
    EXPECT_EQ(results.failures, QStringList());
    EXPECT_EQ(results.sums, (QMap<QString, int>{{sumOf(m_image), 10}}));
    EXPECT_GT(results.retries, 0);
}

TEST_F(EdgeFaultTest, AnEdgeThatDiesForGoodIsReportedByEachClient)
{
    begin(5, slowly());
    waitForBytes();
    m_sites.killEdge();
    const ClientResults results = m_clients.results();
    EXPECT_EQ(results.sums, (QMap<QString, int>()));
    EXPECT_EQ(results.failures.size(), 5);
    for (const QString &failure : results.failures)
        EXPECT_TRUE(isRequired(failure)) << failure.toStdString();
}

TEST_F(EdgeFaultTest, WithoutItsOriginAnEdgeStillServesItsCache)
{
    begin(1);
    expectComplete(1);
    m_sites.killOrigin();
    ManyClients others(QStringLiteral(FETCH_CLIENTS));
    ASSERT_TRUE(startClients(others, 5));
    EXPECT_EQ(others.results().sums, (QMap<QString, int>{{sumOf(m_image), 5}}));
}

TEST_F(EdgeFaultTest, IfTheOriginDiesDuringDownloadsAndComesBackAllDownloadsSucceed)
{
    begin(10, slowly());
    waitForBytes();
    m_sites.killOrigin();
    ASSERT_TRUE(m_sites.startOrigin());
    expectComplete(10);
}

/// The edge has a small disk for its cache.
class FullCacheDiskTest : public EdgeFaultTest
{
protected:
    void SetUp() override { ASSERT_TRUE(OwnMounts::inMemory(m_sites.cacheFolder(), diskKibibytes)); }
    void TearDown() override
    {
        EdgeFaultTest::TearDown();
        OwnMounts::release(m_sites.cacheFolder());
    }
    /// Fills the disk with another file, except for less than a slice.
    bool fill()
    {
        m_foreign.setFileName(m_sites.cacheFolder() + QStringLiteral("/foreign"));
        const QByteArray bytes((diskKibibytes - 512) * 1024, 'x');
        return m_foreign.open(QIODevice::WriteOnly) && m_foreign.write(bytes) == bytes.size() &&
               m_foreign.flush();
    }
    bool hasFailedToWrite() const { return m_sites.errorLogs().contains(QStringLiteral("has written only")); }
    static EdgeAndOrigin::Options small()
    {
        EdgeAndOrigin::Options options;
        options.cacheFree = QStringLiteral("256k");
        return options;
    }

    static constexpr int diskKibibytes = 8 * 1024;
    QFile m_foreign;
};

TEST_F(FullCacheDiskTest, EachClientGetsTheExactBytesOrAFailure)
{
    ASSERT_TRUE(fill());
    begin(5, small());
    const ClientResults results = m_clients.results();
    const int complete = results.sums.value(sumOf(m_image));
    EXPECT_EQ(results.sums.size(), complete > 0 ? 1 : 0);
    EXPECT_EQ(complete + results.failures.size(), 5);
    for (const QString &failure : results.failures)
        EXPECT_TRUE(isRequired(failure)) << failure.toStdString();
    EXPECT_TRUE(hasFailedToWrite());
    RecordProperty("complete", complete);
}

TEST_F(FullCacheDiskTest, IfTheDiskIsFreedInTimeAllDownloadsSucceed)
{
    ASSERT_TRUE(fill());
    begin(5, small());
    ASSERT_TRUE(pollUntil([this] { return hasFailedToWrite(); }));
    ASSERT_TRUE(m_foreign.remove());
    expectComplete(5);
}

} // namespace
