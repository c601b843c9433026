#include "tests/endtoend/EndToEnd.h"

#include "harness/stage/WineSystem_linux.h"
#include "simulator/bus/UpdateModeReport.h"

namespace {

using namespace EndToEnd;

/// The layout of the update-mode report, which is different on Windows 7 and older.
class WindowsVersionTest : public EndToEndTest
{
protected:
    UpdateScenario &scenarioOn(WindowsVersion version, const char *acceptedLayout)
    {
        m_scenario = std::make_unique<UpdateScenario>(QStringLiteral("DevMaa"),
                                                      makeWineSystem(QStringLiteral(WINDOWS_BUILD), version));
        m_scenario->devices[0].insert(QStringLiteral("onReport"),
                                      QJsonObject{{QStringLiteral("layout"), QLatin1String(acceptedLayout)}});
        return *m_scenario;
    }

    QByteArray report()
    {
        const QJsonArray reports =
            scenario().bus.device(scenario().model()).value(QLatin1String("reports")).toArray();
        EXPECT_EQ(reports.size(), 1);
        return QByteArray::fromHex(reports.first().toString().toLatin1());
    }
};

TEST_F(WindowsVersionTest, OnWindows7TheReportHasNoIdInFront)
{
    UpdateScenario &s = scenarioOn(WindowsVersion::Windows7, "B");
    EXPECT_EQ(update(), upgradeSuccessful);
    EXPECT_EQ(report(), updateModeReport(ReportAnswer::Layout::B));
    EXPECT_TRUE(logHas("write res:513CommandKind:2IsDuoDev:2"));
    EXPECT_EQ(s.burned(), s.image());
}

TEST_F(WindowsVersionTest, OnWindows10TheReportHasItsIdInFront)
{
    UpdateScenario &s = scenarioOn(WindowsVersion::Windows10, "A");
    EXPECT_EQ(update(), upgradeSuccessful);
    EXPECT_EQ(report(), updateModeReport(ReportAnswer::Layout::A));
    EXPECT_TRUE(logHas("write res:513CommandKind:1IsDuoDev:2"));
    EXPECT_EQ(s.burned(), s.image());
}

} // namespace
