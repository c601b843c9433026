#include "harness/stage/WineSystem_linux.h"
#include "simulator/files/WholeFile.h"
#include "tests/report/ReplayBuses.h"
#include "tests/report/ReplayStage.h"
#include "tests/report/ReportValidation.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

using ReplayBuses::Bus;

ReplayStage::System windows()
{
    const QString build = QStringLiteral(WINDOWS_BUILD);
    return {[build] { return makeWineSystem(build, WindowsVersion::Windows10); },
            build + QLatin1String("/bin/quillmarsh-cli.exe"), true};
}

/// A report that was made on one system and is replayed on the other.
class ReportAcrossTest : public testing::TestWithParam<Bus>
{
protected:
    void expectSameDecisions(const ReplayStage::System &users, const ReplayStage::System &supports)
    {
        const QString report = m_folder.filePath(QStringLiteral("report.json"));
        const QString description = m_folder.filePath(QStringLiteral("bus.json"));
        ASSERT_TRUE(WholeFile::write(description, withIds(GetParam().description)));
        Seen before;
        {
            ReplayStage user(GetParam().switchedOn, users);
            ASSERT_TRUE(user.open(description, BusFile::Description)) << user.errorText().toStdString();
            ASSERT_TRUE(user.writeReport(report)) << user.errorText().toStdString();
            before = user.observe();
            ASSERT_EQ(user.errorText(), QString());
        }
        EXPECT_EQ(ReportValidation::problemsIn(report), QString());
        ReplayStage support(GetParam().switchedOn, supports);
        ASSERT_TRUE(support.open(report, BusFile::Report)) << support.errorText().toStdString();
        const Seen after = support.observe();
        ASSERT_EQ(support.errorText(), QString());
        // The paths of interfaces are those of each system.
        EXPECT_EQ(after.devices, before.devices);
        EXPECT_EQ(after.window, before.window);
        EXPECT_EQ(after.decisions, before.decisions);
        EXPECT_FALSE(before.window.isEmpty());
    }

private:
    QTemporaryDir m_folder;
};

TEST_P(ReportAcrossTest, MadeOnWindowsItReplaysOnLinux)
{
    expectSameDecisions(windows(), ReplayStage::nativeSystem());
}

TEST_P(ReportAcrossTest, MadeOnLinuxItReplaysOnWindows)
{
    expectSameDecisions(ReplayStage::nativeSystem(), windows());
}

std::vector<Bus> someBuses()
{
    const QStringList names{
        QStringLiteral("OnePlainDevice"),          QStringLiteral("ForeignDevicesAround"),
        QStringLiteral("Mi00ByTheNumber"),         QStringLiteral("NoMarker"),
        QStringLiteral("TheMarkedOneDoesNotOpen"), QStringLiteral("PathlessInterfaces"),
        QStringLiteral("Col04ByItsPlace"),         QStringLiteral("DuoDevicesByBothMarkers"),
        QStringLiteral("TwoBootloaders"),          QStringLiteral("TwentyOfSeveralModels")};
    std::vector<Bus> some;
    for (const Bus &bus : ReplayBuses::all()) {
        if (names.contains(QLatin1String(bus.name)))
            some.push_back(bus);
    }
    return some;
}

INSTANTIATE_TEST_SUITE_P(Each, ReportAcrossTest, testing::ValuesIn(someBuses()),
                         [](const auto &bus) { return bus.param.name; });

} // namespace
