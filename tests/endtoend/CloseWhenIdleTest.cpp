#include "tests/endtoend/CloseTest.h"

#include <QFileInfo>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <thread>

namespace {

using namespace EndToEnd;

class CloseWhenIdleTest : public CloseTest
{
protected:
    void startAndDetect()
    {
        start();
        ASSERT_TRUE(scenario().probe.waitForWholeText(connection, QStringLiteral("Device Detected")))
            << scenario().probe.errorText().toStdString();
    }
};

TEST_F(CloseWhenIdleTest, AnIdleProgramEndsAtOnce)
{
    startAndDetect();
    closeAndExpectExit();
    EXPECT_TRUE(logHas("Find deviceName: DevMaa"));
}

TEST_F(CloseWhenIdleTest, TheLogWindowIsOnlyHiddenByItsCloseAndClosedWithTheMainWindow)
{
    startAndDetect();
    ProbeClient &probe = scenario().probe;
    const QString log = QStringLiteral("Log");
    ASSERT_TRUE(probe.check(QStringLiteral("logBox")));
    ASSERT_TRUE(probe.waitForWindow(log)) << probe.errorText().toStdString();
    ASSERT_TRUE(probe.close(QStringLiteral("TextWindow")));
    ASSERT_TRUE(probe.waitForNoWindow(log)) << probe.errorText().toStdString();
    EXPECT_FALSE(probe.isChecked(QStringLiteral("logBox")));
    EXPECT_TRUE(scenario().bus.programState().running);

    ASSERT_TRUE(probe.check(QStringLiteral("logBox")));
    ASSERT_TRUE(probe.waitForWindow(log)) << probe.errorText().toStdString();
    closeAndExpectExit();
}

TEST_F(CloseWhenIdleTest, AFileDialogIsAnsweredFirstAndThenTheWindowCloses)
{
    startAndDetect();
    ProbeClient &probe = scenario().probe;
    ASSERT_TRUE(
        probe.click(QStringLiteral("flashingPage"), {{QStringLiteral("x"), 730},
                                                     {QStringLiteral("y"), 310},
                                                     {QStringLiteral("button"), QStringLiteral("middle")}}));
    ASSERT_TRUE(probe.waitForVisible(QStringLiteral("chooseFileButton"), true));
    ASSERT_TRUE(probe.click(QStringLiteral("chooseFileButton")));
    const QString dialog = QStringLiteral("firmwareFileDialog");
    ASSERT_TRUE(probe.waitForWindow(dialog)) << probe.errorText().toStdString();
    const QJsonObject refused =
        probe.request({{QLatin1String("op"), QLatin1String("close")}, {QLatin1String("object"), background}});
    EXPECT_TRUE(refused.value(QLatin1String("blocked")).toBool());
    EXPECT_FALSE(probe.window(dialog).isEmpty());
    ASSERT_TRUE(probe.close(dialog));
    ASSERT_TRUE(probe.waitForNoWindow(dialog)) << probe.errorText().toStdString();
    closeAndExpectExit();
}

TEST_F(CloseWhenIdleTest, DiagnosticsThatNobodyReadsNeitherFreezeTheWindowNorPreventTheShutdown)
{
    UpdateScenario &s = scenario();
    const QByteArray stage = QFileInfo(s.program.workingFolder()).path().toUtf8();
    const QList<QByteArray> paths{stage + "/stdout", stage + "/stderr"};
    QVector<int> pipes;
    for (const QByteArray &path : paths) {
        ASSERT_EQ(mkfifo(path.constData(), 0600), 0);
        // Held open but never read, and full from the start.
        pipes.append(open(path.constData(), O_RDWR | O_NONBLOCK | O_CLOEXEC));
        ASSERT_GE(pipes.last(), 0);
        const QByteArray filler(4096, '\n');
        while (write(pipes.last(), filler.constData(), size_t(filler.size())) > 0) {
        }
    }
    // Removed as soon as the program has opened them: reading them from the folder would block forever.
    std::thread remover([&] {
        pollUntil([&] { return !s.program.runningProcesses().isEmpty(); });
        for (const QByteArray &path : paths)
            QFile::remove(QString::fromUtf8(path));
    });
    startAndDetect();
    remover.join();
    ASSERT_FALSE(HasFailure());
    s.probe.timerLate();
    const int ticksBefore = int(s.program.updateLogLines().count(QStringLiteral("Find deviceName: DevMaa")));
    const RunningTimer watched;
    int late = 0;
    while (watched.elapsed() < 15000) {
        QThread::msleep(500);
        const int seen = s.probe.timerLate();
        ASSERT_GE(seen, 0) << s.probe.errorText().toStdString();
        late = std::max(late, seen);
    }
    EXPECT_LT(late, 1500);
    EXPECT_GE(s.program.updateLogLines().count(QStringLiteral("Find deviceName: DevMaa")), ticksBefore + 5);
    closeAndExpectExit();
    for (const int pipe : pipes)
        close(pipe);
}

TEST_F(CloseWhenIdleTest, TenQuickClicksOnStartBeginOneUpdateThatACloseEnds)
{
    UpdateScenario &s = scenario();
    s.serverFaults = QStringList{QStringLiteral("stall:path=*firmware-version*,nth=2")};
    startAndDetect();
    for (int i = 0; i < 10; ++i)
        s.probe.click(startButton);
    ASSERT_TRUE(waitForLog("try to download dev json..."));
    EXPECT_EQ(s.program.updateLogLines().count(QStringLiteral("try to download dev json...")), 1);
    EXPECT_TRUE(s.program.updateLogLines().filter(QStringLiteral("Another copy")).isEmpty());
    closeAndExpectExit();
}

} // namespace
