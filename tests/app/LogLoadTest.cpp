#include "app/bringToForeground.h"
#include "simulator/time/RunningTime.h"
#include "support/log/LogFile.h"
#include "tests/common/ProcessUse.h"
#include "widgets/BackgroundWidget.h"
#include "widgets/TextWindow.h"

#include <QApplication>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

namespace {

/// Measures how late a timer of this thread fires at most, not counting pauses of the whole machine.
class Lateness
{
public:
    explicit Lateness(int intervalMs) : m_intervalMs(intervalMs)
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer,
                         [this] { m_worst = qMax(m_worst, m_sinceLast.restart() - m_intervalMs); });
        m_timer.start(intervalMs);
    }
    int worstMs() const { return static_cast<int>(m_worst); }

private:
    const int m_intervalMs;
    QTimer m_timer;
    RunningTimer m_sinceLast;
    qint64 m_worst = 0;
};

/// Makes the main widget and opens its log window, in a working directory of its own.
class LogLoadTest : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(QDir::setCurrent(m_folder.path()));
        m_background = std::make_unique<BackgroundWidget>(false);
        m_main = new bringToForeground(m_background.get(), false, false, QString());
        m_main->onStartCheckDeviceQTimer(false);
        m_background->show();
        const QWidgetList windows = QApplication::topLevelWidgets();
        for (QWidget *window : windows) {
            if (auto *log = qobject_cast<TextWindow *>(window))
                m_log = log;
        }
        ASSERT_NE(m_log, nullptr);
        // An open log window is the expensive case: each line is painted, too.
        m_log->show();
        QCoreApplication::processEvents();
    }
    void TearDown() override
    {
        m_background.reset();
        QDir::setCurrent(m_before);
    }

    /// Logs from another thread, at most `perSecond` lines a second, while this thread processes its events.
    /// Like the reader of a flasher's output, the other thread waits while the window is catching up, so that
    /// a slow machine takes longer but does not fail; the benchmarks measure how many lines it can show.
    void logLines(int count, int perSecond)
    {
        constexpr int burstMs = 10;
        std::atomic<bool> ended{false};
        std::thread worker([&] {
            const int burst = perSecond * burstMs / 1000;
            // A RunningTimer, so that the lines that are due after a pause do not all come at once.
            const RunningTimer sinceStart;
            for (int i = 0; i < count; ++i) {
                while (i % burst == 0 &&
                       (m_main->isCatchingUp() || !sinceStart.hasExpired(qint64(i) * 1000 / perSecond)))
                    std::this_thread::sleep_for(std::chrono::milliseconds(1));
                emit m_main->sigAppendLog(m_log, m_line.arg(i));
            }
            ended = true;
        });
        while (!ended || m_main->isCatchingUp())
            QTest::qWait(20);
        worker.join();
    }
    /// Returns how many of the lines are in the file, in order and without a gap.
    int linesInFile() const
    {
        QFile file(LogFile::updateLogPath());
        if (!file.open(QIODevice::ReadOnly))
            return -1;
        int next = 0;
        while (!file.atEnd()) {
            if (QString::fromUtf8(file.readLine()).mid(22).trimmed() == m_line.arg(next))
                ++next;
        }
        return next;
    }

    const QString m_line = QStringLiteral("line %1 of a burn that has much to say");
    const QString m_before = QDir::currentPath();
    QTemporaryDir m_folder;
    std::unique_ptr<BackgroundWidget> m_background;
    bringToForeground *m_main = nullptr;
    TextWindow *m_log = nullptr;
};

/// 30,000 lines in the usual run, enough for the pane to drop lines; 100,000 with
/// QUILLMARSH_LONG_TESTS set.
TEST_F(LogLoadTest, FiveThousandLinesASecondLeaveTheWindowAliveAndTheFileComplete)
{
    const int lines = qEnvironmentVariableIsSet("QUILLMARSH_LONG_TESTS") ? 100000 : 30000;
    const int before = ProcessUse::of().peakKilobytes;
    const Lateness lateness(10);
    logLines(lines, 5000);
    const int grown = (ProcessUse::of().peakKilobytes - before) / 1024;
    RecordProperty("late_ms", lateness.worstMs());
    RecordProperty("memory_grown_mb", grown);
    // Far more than on a machine that does nothing else, where it is a few tens of milliseconds.
    EXPECT_LT(lateness.worstMs(), 1000);
    if (ProcessUse::memoryTells()) {
        EXPECT_LT(grown, 60);
    }
    EXPECT_EQ(linesInFile(), lines);
}

} // namespace
