#include "app/SystemAccess.h"
#include "tests/common/EventWait.h"

#include "support/log/LogFile.h"
#include "widgets/TextWindow.h"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QTemporaryDir>
#include <QTextEdit>
#include <QTimer>

#include <gtest/gtest.h>

namespace {

class SystemAccessTest : public testing::Test
{
protected:
    void SetUp() override
    {
        m_before = QDir::currentPath();
        ASSERT_TRUE(QDir::setCurrent(m_folder.path()));
    }
    void TearDown() override { QDir::setCurrent(m_before); }

    /// Handles a line like the slot that receives the queued lines.
    void deliver(const QString &line)
    {
        if (!m_access.holdBack(&m_window, line))
            m_window.appendLog(line);
    }
    QStringList pane() const { return m_window.textView()->toPlainText().split(QLatin1Char('\n')); }
    QStringList logFile() const
    {
        QFile file(LogFile::updateLogPath());
        if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
            return {};
        QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        for (QString &line : lines)
            line.remove(0, 22);
        return lines;
    }

    QString m_before;
    QTemporaryDir m_folder;
    TextWindow m_window;
    SystemAccess m_access;
    QTimer m_ticks;
};

TEST_F(SystemAccessTest, QueuedLinesFollowTheChecksLinesEvenIfAnEventLoopRunsMeanwhile)
{
    const auto check = [this](DriverLog &log) {
        log.showLine(QStringLiteral("first shown"));
        log.logLine(QStringLiteral("first logged"));
        QEventLoop loop;
        QTimer::singleShot(0, [&] {
            deliver(QStringLiteral("queued 1"));
            deliver(QStringLiteral("queued 2"));
            loop.quit();
        });
        loop.exec();
        log.logLine(QStringLiteral("last logged"));
    };
    m_access.runAlone(check, m_window, m_ticks);
    deliver(QStringLiteral("later"));
    EXPECT_EQ(logFile(),
              (QStringList{QStringLiteral("first logged"), QStringLiteral("last logged"),
                           QStringLiteral("queued 1"), QStringLiteral("queued 2"), QStringLiteral("later")}));
    EXPECT_EQ(pane(), (QStringList{QStringLiteral("first shown"), QStringLiteral("first logged"),
                                   QStringLiteral("last logged"), QStringLiteral("queued 1"),
                                   QStringLiteral("queued 2"), QStringLiteral("later")}));
}

TEST_F(SystemAccessTest, TicksAreBlockedDuringTheCheckAndContinueAfterIt)
{
    int ticks = 0;
    QObject::connect(&m_ticks, &QTimer::timeout, [&ticks] { ++ticks; });
    m_ticks.start(1);
    const auto check = [&ticks](DriverLog &) {
        QEventLoop loop;
        QTimer::singleShot(100, &loop, &QEventLoop::quit);
        loop.exec();
        EXPECT_EQ(ticks, 0);
    };
    m_access.runAlone(check, m_window, m_ticks);
    EXPECT_TRUE(processEventsUntil([&ticks] { return ticks > 0; }));
}

TEST_F(SystemAccessTest, ShownLinesAppearInThePaneOnlyAndTheNewestIsVisible)
{
    const auto check = [](DriverLog &log) {
        for (int i = 0; i < 50; ++i)
            log.showLine(QStringLiteral("<b>%1</b>").arg(i));
    };
    m_access.runAlone(check, m_window, m_ticks);
    EXPECT_EQ(pane().last(), QStringLiteral("<b>49</b>"));
    EXPECT_TRUE(m_window.textView()->textCursor().atEnd());
    EXPECT_FALSE(QFile::exists(LogFile::updateLogPath()));
}

} // namespace
