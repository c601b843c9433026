#include "tests/endtoend/EndToEnd.h"

namespace {

using namespace EndToEnd;

class RetriedUpdateTest : public EndToEndTest
{
protected:
    /// Returns the start times of the runs, in ms.
    QVector<qint64> starts()
    {
        QVector<qint64> times;
        for (const StandinRun &run : scenario().program.runs(usbFlasher))
            times.append(run.startMs);
        return times;
    }
};

TEST_F(RetriedUpdateTest, AFlasherThatFailsToOpenTheDeviceNineTimesIsTriedATenthTime)
{
    UpdateScenario &s = scenario();
    QList<QJsonArray> runs;
    for (int i = 0; i < 9; ++i)
        runs.append(unreachable());
    runs.append({step("progress", true), step("burn", true), step("success", true)});
    s.program.setScript(usbFlasher, script(runs));
    EXPECT_EQ(update(), upgradeSuccessful);
    EXPECT_EQ(s.burned(), s.image());
    // Ten burns and the reset.
    EXPECT_EQ(s.program.runs(usbFlasher).size(), 11);
}

TEST_F(RetriedUpdateTest, TenTimesInARowYieldTenRunsASecondApartAndNoSuccess)
{
    UpdateScenario &s = scenario();
    s.program.setScript(usbFlasher, script({unreachable()}));
    EXPECT_EQ(update(), upgradeFailed);
    const QVector<qint64> times = starts();
    ASSERT_EQ(times.size(), 10);
    for (int i = 1; i < times.size(); ++i)
        EXPECT_GE(times.at(i) - times.at(i - 1), 1000) << i;
    EXPECT_TRUE(s.burned().isEmpty());
    EXPECT_TRUE(logHas("Burn Image Failed"));
}

TEST_F(RetriedUpdateTest, AFlasherThatExitsWithoutOutputIsNotTriedAgain)
{
    UpdateScenario &s = scenario();
    s.program.setScript(usbFlasher, script({{step("exit", 0)}}));
    EXPECT_EQ(update(), upgradeFailed);
    EXPECT_EQ(s.program.runs(usbFlasher).size(), 1);
    // Only the flasher moves the bar: the whole image has been downloaded, and it has not moved. The server's
    // version is not filled in either.
    EXPECT_TRUE(logHas("merge Files Success"));
    EXPECT_EQ(s.probe.read(QStringLiteral("progressBar")).value(QLatin1String("value")).toInt(-1), 0);
    EXPECT_EQ(s.probe.text(QStringLiteral("serverVersionLabel")), QStringLiteral("ServerFirVer: "));
}

TEST_F(RetriedUpdateTest, AMissingFlasherIsLogged)
{
    UpdateScenario &s = scenario();
    const QString path = s.program.applicationFolder() + QLatin1Char('/') + usbFlasher;
    ASSERT_TRUE(QFile::remove(path));
    EXPECT_EQ(update(), upgradeFailed);
    const QStringList lines = s.program.updateLogLines();
    EXPECT_EQ(
        lines.filter(QStringLiteral("The flasher could not be started: ") + s.program.toProgramPath(path))
            .size(),
        1);
}

} // namespace
