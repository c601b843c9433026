#include "harness/process/Polling.h"
#include "simulator/time/RunningTime.h"
#include "tests/endtoend/EndToEnd.h"
#include "tests/endtoend/ServerFaultRows.h"

#include <QThread>

#include <cstdio>

namespace {

using namespace EndToEnd;

/// The real program with a faulty server: either it downloads the exact image, or it fails as required.
class ServerFaultTest : public EndToEndTest, public testing::WithParamInterface<ServerFaultRow>
{
protected:
    bool waitForLine(const char *text)
    {
        return pollUntil([&] { return m_scenario->program.updateLog().contains(QString::fromLatin1(text)); },
                         updateLimitMs, 100);
    }
    void expectLineThenClose(const char *line)
    {
        UpdateScenario &s = scenario();
        ASSERT_TRUE(s.start()) << s.errorText().toStdString();
        ASSERT_TRUE(s.pressStart());
        EXPECT_TRUE(waitForLine(line));
        EXPECT_TRUE(s.probe.waitForText(title, QStringLiteral("Downloading")));
        QThread::msleep(1000); // it is still running a while later, and answers
        EXPECT_TRUE(s.probe.text(title).contains(QStringLiteral("Downloading")));
        EXPECT_FALSE(s.probe.isEnabled(startButton));
        const RunningTimer timer;
        EXPECT_EQ(s.closeWindow().value_or(-1), 0);
        EXPECT_LT(timer.elapsed(), 4000);
    }
    void expectUntouchedDevice()
    {
        UpdateScenario &s = scenario();
        EXPECT_TRUE(s.bus.device(s.model()).value(QLatin1String("reports")).toArray().isEmpty());
        EXPECT_TRUE(s.program.runs(usbFlasher).isEmpty());
    }
};

TEST_P(ServerFaultTest, ExactBytesOrTheRightFailure)
{
    const ServerFaultRow &row = GetParam();
    // The chooser requests the manifest first.
    const QString spec = row.serverFault(2);
    UpdateScenario &s = scenario();
    s.serverFaults = QStringList{spec};
    const char *outcome = "";
    switch (row.end) {
    case FetchEnds::Burned:
        outcome = "exact bytes burned";
        EXPECT_EQ(update(), upgradeSuccessful);
        EXPECT_TRUE(s.burned() == s.image());
        break;
    case FetchEnds::NotFlashed:
        outcome = "nothing flashed, controls back";
        EXPECT_EQ(update(), md5Failed);
        expectUntouchedDevice();
        break;
    case FetchEnds::Waits:
        outcome = "window alive, closing works";
        expectLineThenClose(row.line);
        expectUntouchedDevice();
        break;
    }
    EXPECT_TRUE(waitForLine(row.line));
    std::printf("fault: %s | program, %s | %s\n", row.fault, row.place, HasFailure() ? "WRONG" : outcome);
}

std::string nameOfRow(const testing::TestParamInfo<ServerFaultRow> &row)
{
    return row.param.name;
}

INSTANTIATE_TEST_SUITE_P(Program, ServerFaultTest, testing::ValuesIn(serverFaultRows), nameOfRow);

} // namespace
