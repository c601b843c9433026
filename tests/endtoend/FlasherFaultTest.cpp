#include "tests/endtoend/EndToEnd.h"

#include "harness/process/Polling.h"
#include "tests/common/ProcessUse.h"

#include <QTest>

#include <algorithm>

namespace {

using namespace EndToEnd;

const QJsonObject burn = step("burn", true);
const QJsonObject success = step("success", true);
const QJsonObject crash = step("crash", true);

QJsonObject print(const char *text)
{
    return step("print", QLatin1String(text));
}

class FlasherFaultTest : public EndToEndTest
{
protected:
    /// Makes the flasher of a write type play one entry for each burn. Its reset works normally.
    void play(const QList<QJsonArray> &runs, const QString &writeType = QStringLiteral("USB"))
    {
        UpdateScenario &s = scenario();
        s.program.setControlList({s.model()}, {writeType});
        const QString tool = writeType == QLatin1String("USB") ? usbFlasher : hidFlasher;
        ASSERT_TRUE(s.program.setScript(tool, scriptFor(QStringLiteral("image"), runs)));
    }
    /// Runs another update in the running program and returns the title. After a failure the device is still
    /// in its bootloader, and the user picks its model.
    QString updateAgain()
    {
        UpdateScenario &s = scenario();
        // It is restarting because of the reset.
        if (s.probe.text(title) == upgradeSuccessful &&
            !s.bus.waitForDevice(s.model(), QStringLiteral("application")))
            return s.bus.errorText();
        const bool inBootloader =
            s.bus.device(s.model()).value(QLatin1String("state")).toString() == QLatin1String("bootloader");
        const QString shown =
            inBootloader ? QStringLiteral("FindBootloader") : QStringLiteral("Device Detected");
        if (!s.probe.waitForWholeText(connection, shown) || !s.probe.click(startButton))
            return s.probe.errorText();
        if (inBootloader && !(s.probe.waitForWindow(QStringLiteral("选择你的设备")) &&
                              s.probe.click(QStringLiteral("choose ") + s.model())))
            return s.probe.errorText();
        if (!s.probe.waitForEnabled(startButton, false))
            return s.probe.errorText();
        return titleWhenIdle();
    }
    int progress()
    {
        return scenario().probe.read(QStringLiteral("progressBar")).value(QLatin1String("value")).toInt();
    }
    qint64 programId() const
    {
        for (const qint64 id : m_scenario->program.runningProcesses()) {
            if (QFile::symLinkTarget(QStringLiteral("/proc/%1/exe").arg(id))
                    .endsWith(QLatin1String("/quillmarsh")))
                return id;
        }
        return 0;
    }
    /// Returns the peak memory of the program, in megabytes.
    int peakMegabytes() const { return ProcessUse::of(programId()).peakKilobytes / 1024; }
};

TEST_F(FlasherFaultTest, ASuccessCountsWhateverTheExitCodeIs)
{
    play({{burn, success, step("exit", 1)}, {burn, success, crash}});
    EXPECT_EQ(update(), upgradeSuccessful);
    EXPECT_EQ(scenario().burned(), scenario().image());
    EXPECT_EQ(updateAgain(), upgradeSuccessful);
    EXPECT_EQ(scenario().bus.device(scenario().model()).value(QLatin1String("burns")).toInt(), 2);
    EXPECT_EQ(scenario().bus.device(scenario().model()).value(QLatin1String("resets")).toInt(), 2);
}

TEST_F(FlasherFaultTest, ACrashInTheMiddleIsAFailureAndTheNextUpdateWorks)
{
    play({{print("Upgrade fwc: image.target.os\n"), crash}, {burn, success}});
    EXPECT_EQ(update(), upgradeFailed);
    EXPECT_EQ(progress(), 48);
    EXPECT_TRUE(scenario().burned().isEmpty());
    EXPECT_TRUE(logHas("Burn Image Failed"));
    EXPECT_EQ(updateAgain(), upgradeSuccessful);
    EXPECT_EQ(scenario().burned(), scenario().image());
}

TEST_F(FlasherFaultTest, OverHidTooACrashIsAFailureAndTheNextUpdateWorks)
{
    play({{crash}, {burn, success}}, QStringLiteral("HID"));
    EXPECT_EQ(update(), upgradeFailed);
    EXPECT_EQ(updateAgain(), upgradeSuccessful);
    EXPECT_EQ(scenario().burned(), scenario().image());
    EXPECT_TRUE(scenario().program.runs(usbFlasher).isEmpty());
}

TEST_F(FlasherFaultTest, GarbageIsLoggedAndHidesNoSuccess)
{
    play({{step("garbage", 20000)}, {step("garbage", 20000), burn, success}});
    EXPECT_EQ(update(), upgradeFailed);
    EXPECT_EQ(updateAgain(), upgradeSuccessful);
    EXPECT_EQ(scenario().burned(), scenario().image());
    EXPECT_TRUE(scenario().program.updateLog().contains(QChar(QChar::ReplacementCharacter)));
}

TEST_F(FlasherFaultTest, LinesThatComeByteByByteMoveTheBarAndSucceed)
{
    const auto byteWise = [](const char *text) {
        return QJsonObject{{QStringLiteral("print"), QLatin1String(text)},
                           {QStringLiteral("byteWise"), true},
                           {QStringLiteral("pauseMs"), 20}};
    };
    play({{print("Upgrade fwc: image.target.env\n"), burn, byteWise("Burn image successfully!\n")}});
    EXPECT_EQ(update(), upgradeSuccessful);
    EXPECT_EQ(progress(), 100);
    EXPECT_EQ(scenario().burned(), scenario().image());
}

TEST_F(FlasherFaultTest, StandardErrorIsShownAndDecidesNothing)
{
    const QJsonObject errors = step("stderr", QStringLiteral("Burn image successfully!\n"));
    play({{errors, step("exit", 0)},
          {errors, burn, step("stderr", QStringLiteral("Open upg device failed\n")), success}});
    EXPECT_EQ(update(), upgradeFailed);
    EXPECT_TRUE(logHas("!!!ERRORMESSAGE!!!: Burn image successfully!"));
    EXPECT_EQ(updateAgain(), upgradeSuccessful);
    EXPECT_TRUE(scenario().program.updateLog().contains(QStringLiteral("Open upg device failed")));
    EXPECT_EQ(scenario().program.runs(usbFlasher).size(), 3) << "two burns and a reset";
}

TEST_F(FlasherFaultTest, AMarkerAfterTheSuccessShowsItsValueAndStaysASuccess)
{
    play({{burn, print("Burn image successfully!\nUpgrade fwc: image.target.data\n")}});
    EXPECT_EQ(update(), upgradeSuccessful);
    EXPECT_EQ(progress(), 80);
}

TEST_F(FlasherFaultTest, AFlasherThatSaysBurnButNotSuccessfullyHasFailed)
{
    play({{burn, print("Burn image done\n")}});
    EXPECT_EQ(update(), upgradeFailed);
    EXPECT_EQ(scenario().bus.device(scenario().model()).value(QLatin1String("resets")).toInt(), 0);
}

TEST_F(FlasherFaultTest, AFlasherThatHangsLeavesTheWindowAliveAndClosingAsksFirst)
{
    play({{print("Upgrade fwc: image.target.spl\n"), step("hang", true)}});
    UpdateScenario &s = scenario();
    ASSERT_TRUE(s.start()) << s.errorText().toStdString();
    ASSERT_TRUE(s.pressStart());
    ASSERT_TRUE(
        s.probe.waitForValue(QStringLiteral("progressBar"), QStringLiteral("value"), 16, updateLimitMs));
    s.probe.timerLate();
    QTest::qWait(1500);
    EXPECT_LT(s.probe.timerLate(), 1000);
    EXPECT_EQ(s.program.runningProcesses().size(), 2);

    ASSERT_TRUE(s.probe.close(QStringLiteral("BackgroundWidget")));
    ASSERT_TRUE(s.probe.waitForWindow(QStringLiteral("leaveQuestion")));
    ASSERT_TRUE(s.probe.pressDialogButton(QStringLiteral("Keep updating")));
    ASSERT_TRUE(s.probe.waitForNoWindow(QStringLiteral("leaveQuestion")));
    EXPECT_EQ(s.program.runningProcesses().size(), 2);
    ASSERT_TRUE(s.probe.close(QStringLiteral("BackgroundWidget")));
    ASSERT_TRUE(s.probe.waitForWindow(QStringLiteral("leaveQuestion")));
    ASSERT_TRUE(s.probe.pressDialogButton(QStringLiteral("Close")));
    EXPECT_EQ(s.bus.waitForExit(), 0);
    EXPECT_TRUE(pollUntil([&] { return s.program.runningProcesses().isEmpty(); }));
}

/// 8 MB in the usual run. 100 MB with QUILLMARSH_LONG_TESTS set, which takes about a minute.
TEST_F(FlasherFaultTest, AFloodOfOutputIsLoggedWholeWithinBoundedMemoryInALivingWindow)
{
    const int megabytes = qEnvironmentVariableIsSet("QUILLMARSH_LONG_TESTS") ? 100 : 8;
    const int bytes = megabytes * 1000000;
    play({{step("flood", bytes), burn, success}});
    UpdateScenario &s = scenario();
    ASSERT_TRUE(s.start()) << s.errorText().toStdString();
    ASSERT_TRUE(s.probe.check(QStringLiteral("logBox"), true));
    const int before = peakMegabytes();
    ASSERT_TRUE(s.pressStart());
    ASSERT_TRUE(s.probe.waitForText(title, QStringLiteral("Attempting to Upgrade"), updateLimitMs));
    s.probe.timerLate();
    ASSERT_TRUE(s.probe.waitForText(title, QStringLiteral("Upgrade Successful"), 6 * updateLimitMs));
    const int late = s.probe.timerLate();
    const int grown = peakMegabytes() - before;
    RecordProperty("timer_late_ms", late);
    RecordProperty("memory_grown_mb", grown);
    EXPECT_LT(late, 1500);
    if (ProcessUse::memoryTells()) {
        EXPECT_LT(grown, 60);
    }
    EXPECT_EQ(titleWhenIdle(), upgradeSuccessful);
    EXPECT_EQ(s.burned(), s.image());
    // A read may end within a line; the rest of the line then has a separate time stamp.
    EXPECT_EQ(s.program.updateLogLines().join(QString()).count(QLatin1Char('x')) / (bytes / 100 * 99), 1);
    EXPECT_LE(s.probe.text(QStringLiteral("logTextView")).count(QLatin1Char('\n')), 22000);
}

} // namespace
