#include "tests/download/SegmentedTest.h"

#include <QDir>

#include <limits>

namespace {

/// Downloads that cannot be stored.
class DiskRoomTest : public SegmentedTest
{
protected:
    QStringList toldThatItCannotBeStored() const
    {
        return m_reporter.logLines().filter(QStringLiteral("The download cannot be stored"));
    }
};

TEST_F(DiskRoomTest, AFileThatCannotBeStoredIsReportedOnceAndDownloadedAsSoonAsItCanBe)
{
    const QString folder = local("later");
    m_worker.savePath = folder + QStringLiteral("/dev.img");
    std::atomic<int> rounds{0};
    m_clock.onSleep = [&] {
        hurry();
        // A round on a slow machine has any number of retries.
        for (FileDownloader *segment : qAsConst(m_worker.segments))
            segment->maxRetries = std::numeric_limits<int>::max();
        if (++rounds >= 8 && !toldThatItCannotBeStored().isEmpty())
            QDir().mkpath(folder);
    };
    ASSERT_TRUE(run());
    const QStringList told = toldThatItCannotBeStored();
    ASSERT_EQ(told.size(), 1);
    EXPECT_TRUE(told.first().contains(m_worker.savePath + QStringLiteral("packet_")));
    EXPECT_EQ(result(), m_content);
}

TEST_F(DiskRoomTest, ADiskWithoutRoomForPartsAndFileFailsTheRunBeforeTheyAreFetched)
{
    fault("header:whole=1,name=Content-Length,value=4000000000000000");
    EXPECT_FALSE(run());
    const QString last = m_reporter.logLines().last();
    EXPECT_TRUE(last.startsWith(QLatin1String("The disk is too full for the download: ")))
        << qPrintable(last);
    EXPECT_TRUE(last.contains(QLatin1String(" needs 8000000000000000 bytes, "))) << qPrintable(last);
    EXPECT_TRUE(m_worker.segments.isEmpty());
    EXPECT_EQ(server().requests().size(), 1);
}

TEST_F(DiskRoomTest, ASizeThatCannotBeDoubledFailsTheRunBeforeThePartsAreFetched)
{
    fault("header:whole=1,name=Content-Length,value=9223372036854775807");
    EXPECT_FALSE(run());
    const QString last = m_reporter.logLines().last();
    EXPECT_TRUE(last.startsWith(QLatin1String("The disk is too full for the download: ")))
        << qPrintable(last);
    EXPECT_TRUE(last.contains(QLatin1String(" needs 9223372036854775807 bytes, "))) << qPrintable(last);
    EXPECT_TRUE(m_worker.segments.isEmpty());
}

} // namespace
