#include "app/bringToForeground.h"
#include "widgets/BackgroundWidget.h"
#include "widgets/TextWindow.h"

#include "support/LogFile.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QTextDocument>
#include <QTextEdit>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

namespace {

/// Megabytes of memory that this process holds now.
double residentMegabytes()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().split(' ').value(1).toDouble() * 4096 / 1048576;
}

/// Notes how late a timer of the GUI thread comes at most.
class Lateness
{
public:
    explicit Lateness(int intervalMs) : m_intervalMs(intervalMs)
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] {
            m_worst = qMax(m_worst, m_sinceLast.restart() - m_intervalMs);
            ++m_ticks;
        });
        m_sinceLast.start();
        m_timer.start(intervalMs);
    }
    qint64 worstMs() const { return m_worst; }
    int ticks() const { return m_ticks; }

private:
    const int m_intervalMs;
    QTimer m_timer;
    QElapsedTimer m_sinceLast;
    qint64 m_worst = 0;
    int m_ticks = 0;
};

class LogLoadTest : public testing::Test
{
protected:
    void SetUp() override
    {
        m_before = QDir::currentPath();
        ASSERT_TRUE(QDir::setCurrent(m_folder.path()));
        m_ground = std::make_unique<BackgroundWidget>(false);
        m_main = new bringToForeground(m_ground.get(), false, false, QString());
        m_main->onStartCheckDeviceQTimer(false);
        m_ground->show();
        for (QWidget *window : QApplication::topLevelWidgets()) {
            if (auto *log = qobject_cast<TextWindow *>(window))
                m_log = log;
        }
        ASSERT_NE(m_log, nullptr);
        // The costly case: each line is laid out and painted.
        m_log->show();
        QCoreApplication::processEvents();
    }
    void TearDown() override
    {
        m_ground.reset();
        QDir::setCurrent(m_before);
    }

    QString m_before;
    QTemporaryDir m_folder;
    std::unique_ptr<BackgroundWidget> m_ground;
    bringToForeground *m_main = nullptr;
    TextWindow *m_log = nullptr;
};

TEST_F(LogLoadTest, AHundredThousandLinesInTwentySecondsLeaveTheWindowAliveAndTheFileComplete)
{
    constexpr int lines = 100000;
    constexpr int linesPerSecond = 5000;
    const double before = residentMegabytes();
    const Lateness lateness(10);
    std::atomic<bool> ended{false};
    std::thread worker([&] {
        const auto start = std::chrono::steady_clock::now();
        for (int i = 0; i < lines; ++i) {
            std::this_thread::sleep_until(start + std::chrono::microseconds(i) * (1000000 / linesPerSecond));
            emit m_main->sigAppendLog(m_log, QStringLiteral("line %1 of a burn that has much to say").arg(i));
        }
        ended = true;
    });
    QElapsedTimer timer;
    timer.start();
    double peak = 0;
    while (!ended) {
        QTest::qWait(50);
        peak = qMax(peak, residentMegabytes());
    }
    worker.join();
    QElapsedTimer rest;
    rest.start();
    QCoreApplication::sendPostedEvents();
    printf("rest %lld ms late %lld ms ticks %d in %lld mem %.1f -> %.1f\n", rest.elapsed(),
           lateness.worstMs(), lateness.ticks(), timer.elapsed(), before, peak);
}

} // namespace
