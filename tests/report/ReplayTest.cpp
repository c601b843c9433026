#include "tests/report/ReplayStage.h"

#include "simulator/files/WholeFile.h"
#include "tests/report/ReplayBuses.h"
#include "tests/report/ReportValidation.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

using ReplayBuses::Bus;

class ReplayTest : public testing::TestWithParam<Bus>
{
protected:
    QString file(const char *name) const { return m_folder.filePath(QLatin1String(name)); }

private:
    QTemporaryDir m_folder;
};

TEST_P(ReplayTest, ShowsWhatTheUserSaw)
{
    const QString report = file("report.json");
    Seen before;
    {
        ReplayStage user(GetParam().switchedOn);
        ASSERT_TRUE(WholeFile::write(file("bus.json"), withIds(GetParam().description)));
        ASSERT_TRUE(user.open(file("bus.json"), BusFile::Description)) << user.errorText().toStdString();
        ASSERT_TRUE(user.writeReport(report)) << user.errorText().toStdString();
        before = user.observe();
        ASSERT_EQ(user.errorText(), QString());
    }
    EXPECT_EQ(ReportValidation::problemsIn(report), QString());

    ReplayStage support(GetParam().switchedOn);
    ASSERT_TRUE(support.open(report, BusFile::Report)) << support.errorText().toStdString();
    const Seen after = support.observe();
    ASSERT_EQ(support.errorText(), QString());
    EXPECT_EQ(after.devices, before.devices);
    EXPECT_EQ(after.window, before.window);
    EXPECT_EQ(after.decisions, before.decisions);
    EXPECT_EQ(after.interfaces, before.interfaces);
    EXPECT_FALSE(before.window.isEmpty());

    // A report that is made during the replay describes the same bus.
    const QString again = file("again.json");
    ASSERT_TRUE(support.writeReport(again)) << support.errorText().toStdString();
    EXPECT_EQ(busOf(again), busOf(report));
}

INSTANTIATE_TEST_SUITE_P(Each, ReplayTest, testing::ValuesIn(ReplayBuses::all()),
                         [](const auto &bus) { return bus.param.name; });

} // namespace
