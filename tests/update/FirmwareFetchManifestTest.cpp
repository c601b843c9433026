#include "simulator/time/RunningTime.h"
#include "tests/common/RecordedDebugStream.h"
#include "tests/update/FirmwareFetchTest.h"

#include <QtTest>

namespace {

class FirmwareFetchManifestTest : public FirmwareFetchTest
{
protected:
    /// Runs a fetch whose waits take no real time.
    QString fetchInNoTime()
    {
        FirmwareFetch run = makeFetch(m_clock);
        return run.fetchFirmware(m_choices.request(), &m_manifest);
    }
    /// Runs a fetch with a manifest without an address, and expects its failure.
    void expectNoAddress(const QString &manifest, const QStringList &messages)
    {
        m_manifestText = manifest;
        m_rig.setManifest(manifest.toUtf8());
        EXPECT_EQ(fetch(), QString());
        EXPECT_EQ(m_failure, UpdateReason::AddressNotFound);
        QStringList lines;
        for (const QString &message : messages)
            lines.append(QStringLiteral("log ") + message);
        EXPECT_EQ(m_reporter.events(), m_parsing + manifestRead() + lines + m_noAddress);
        EXPECT_EQ(m_reporter.fallbacks().last(), QStringLiteral("当前状态: 解析文件地址失败"));
    }

    PumpingClock m_clock;
};

TEST_F(FirmwareFetchManifestTest, AServerThatDoesNotAnswerIsPolledFor20Seconds)
{
    m_rig.setFault(QStringLiteral("stall"));
    const RecordedDebugStream debug;
    EXPECT_EQ(fetchInNoTime(), QString());
    EXPECT_EQ(m_clock.sleeps().count(100), 200);
    EXPECT_EQ(m_clock.nowMs(), 20000);
    EXPECT_EQ(m_reporter.events(),
              m_parsing + (QStringList{QStringLiteral("log Download failed due to timeout.")}) + m_noAddress);
    EXPECT_EQ(debug.warnings(), QStringList{QStringLiteral("Timeout reached!")});
    const int at = debug.lines().indexOf(QStringLiteral("Timeout reached!"));
    EXPECT_EQ(debug.lines().mid(at), (QStringList{QStringLiteral("Timeout reached!"),
                                                  QStringLiteral("Download failed due to timeout."),
                                                  QStringLiteral("解析img地址失败!")}));
}

TEST_F(FirmwareFetchManifestTest, AManifestThatArrivesAfter20SecondsIsIgnored)
{
    m_rig.setFault(QStringLiteral("slow-drip:bytes=10,ms=400"));
    EXPECT_EQ(fetchInNoTime(), QString());
    ASSERT_EQ(m_rig.server.requests().size(), 1);
    const QStringList events = m_reporter.events();
    QTest::qWait(6000);
    EXPECT_FALSE(m_downloader.succeeded);
    EXPECT_FALSE(QFile::exists(m_paths.savedManifest));
    EXPECT_EQ(m_reporter.events(), events);
}

TEST_F(FirmwareFetchManifestTest, AFetchAfterATimeoutIsNotDisturbedByTheEarlierRequest)
{
    m_rig.setFault(QStringLiteral("slow-drip:bytes=10,ms=400,times=1"));
    EXPECT_EQ(fetchInNoTime(), QString());
    ASSERT_EQ(m_rig.server.requests().size(), 1);
    EXPECT_EQ(fetch(), m_paths.downloadedImage());
    EXPECT_EQ(contentOf(m_paths.savedManifest), m_manifestText.toUtf8());
}

TEST_F(FirmwareFetchManifestTest, AnErrorFromTheServerDoesNotShortenTheWait)
{
    m_rig.setFault(QStringLiteral("503"));
    EXPECT_EQ(fetchInNoTime(), QString());
    EXPECT_EQ(m_clock.nowMs(), 20000);
    EXPECT_FALSE(m_downloader.succeeded);
    EXPECT_FALSE(QFile::exists(m_paths.savedManifest));
}

TEST_F(FirmwareFetchManifestTest, AManifestThatIsNoJsonNamesNoAddress)
{
    const RecordedDebugStream debug;
    expectNoAddress(QStringLiteral("<html>无</html>"), {QStringLiteral("parse json Failed!")});
    EXPECT_TRUE(debug.lines().contains(QStringLiteral("尝试解析json文件")));
    EXPECT_TRUE(debug.lines().contains(QStringLiteral("解析json失败")));
    EXPECT_TRUE(m_manifest.isEmpty());
}

TEST_F(FirmwareFetchManifestTest, AManifestThatIsNoObjectNamesNoAddress)
{
    const RecordedDebugStream debug;
    expectNoAddress(QStringLiteral("[]"), {QStringLiteral("JSON Failed1!")});
    EXPECT_TRUE(debug.lines().contains(QStringLiteral("无效的json格式")));
}

TEST_F(FirmwareFetchManifestTest, AManifestWithoutTheDeviceNamesNoAddress)
{
    expectNoAddress(QStringLiteral(R"({"CurrentVersion":{"M2":{}}})"),
                    {QStringLiteral("parse json Success:"), QStringLiteral("Keys under 'CurrentVersion':M2"),
                     QStringLiteral("Value for keyM1is not an object.")});
    EXPECT_FALSE(m_manifest.isEmpty());
}

TEST_F(FirmwareFetchManifestTest, AnEntryWithoutAFileUrlNamesNoAddress)
{
    expectNoAddress(QStringLiteral(R"({"CurrentVersion":{"M1":{"downloadURL":"x"}}})"),
                    {QStringLiteral("parse json Success:"), QStringLiteral("Keys under 'CurrentVersion':M1"),
                     QStringLiteral("M1does not contain 'fileURL'.")});
}

TEST_F(FirmwareFetchManifestTest, ShuttingDownEndsTheWaitWithoutATimeout)
{
    m_rig.setFault(QStringLiteral("stall"));
    QTimer::singleShot(100, [] { ShutdownFlag::instance().raise(); });
    const RunningTimer timer;
    EXPECT_EQ(fetch(), QString());
    EXPECT_LT(timer.elapsed(), 2000);
    EXPECT_FALSE(m_reporter.logLines().contains(QStringLiteral("Download failed due to timeout.")));
}

} // namespace
