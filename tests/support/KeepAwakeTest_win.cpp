#include "support/power/KeepAwake.h"

#include "support/power/WindowsPower.h"
#include "tests/common/EventWait.h"

#include <QStringList>
#include <QWidget>

#include <windows.h>

#include <gtest/gtest.h>

#include <memory>
#include <mutex>
#include <thread>

namespace {

const QString why = QStringLiteral("Firmware is being written to a device.");

/// Records the requests to Windows.
class RecordedPower : public WindowsPower
{
public:
    bool refuses = false;

    void *request(const QString &reason, quint32 &error) override
    {
        note(QStringLiteral("request ") + reason);
        error = 50;
        return refuses ? nullptr : this;
    }
    void release(void *request) override
    {
        EXPECT_EQ(request, this);
        note(QStringLiteral("release"));
    }
    void blockShutdown(quintptr window, const QString &reason) override
    {
        noteOnWindowsThread(window, QStringLiteral("block ") + reason);
    }
    void unblockShutdown(quintptr window) override { noteOnWindowsThread(window, QStringLiteral("unblock")); }
    QStringList events() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_events;
    }
    int count(const char *event) const { return events().count(QLatin1String(event)); }

private:
    void note(const QString &event)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_events.append(event);
    }
    void noteOnWindowsThread(quintptr window, const QString &event)
    {
        const DWORD owner = GetWindowThreadProcessId(reinterpret_cast<HWND>(window), nullptr);
        EXPECT_EQ(owner, GetCurrentThreadId());
        note(event);
    }

    mutable std::mutex m_mutex;
    QStringList m_events;
};

class KeepAwakeOnWindowsTest : public testing::Test
{
protected:
    KeepAwakeOnWindowsTest() { WindowsPower::setForTests(&m_power); }
    ~KeepAwakeOnWindowsTest() override
    {
        QCoreApplication::sendPostedEvents();
        WindowsPower::setForTests(nullptr);
    }

    std::unique_ptr<KeepAwake> keepAwake()
    {
        return std::make_unique<KeepAwake>(why, m_window.winId(),
                                           [this](const QString &line) { m_lines.append(line); });
    }
    /// Returns whether the window allows the session to end.
    bool letsSessionEnd() const
    {
        return SendMessageW(reinterpret_cast<HWND>(m_window.winId()), WM_QUERYENDSESSION, 0, 0) != 0;
    }

    const QString m_block = QStringLiteral("block ") + why;
    RecordedPower m_power;
    QWidget m_window;
    QStringList m_lines;
};

TEST_F(KeepAwakeOnWindowsTest, SleepAndShutdownAreBlockedAsLongAsItLives)
{
    auto object = keepAwake();
    EXPECT_EQ(m_power.events(), (QStringList{QStringLiteral("request ") + why, m_block}));
    EXPECT_FALSE(letsSessionEnd());
    object.reset();
    EXPECT_EQ(m_power.events().mid(2), (QStringList{QStringLiteral("release"), QStringLiteral("unblock")}));
    EXPECT_TRUE(letsSessionEnd());
    EXPECT_TRUE(m_lines.isEmpty());
}

TEST_F(KeepAwakeOnWindowsTest, AWorkersObjectBlocksTheShutdownOnTheWindowsOwnThread)
{
    m_window.winId();
    std::unique_ptr<KeepAwake> object;
    const quintptr window = m_window.winId();
    std::thread([&] { object = std::make_unique<KeepAwake>(why, window, KeepAwake::Log()); }).join();
    EXPECT_TRUE(processEventsUntil([&] { return m_power.events().contains(m_block); }));
    std::thread([&] { object.reset(); }).join();
    EXPECT_EQ(m_power.count("release"), 1);
    EXPECT_TRUE(processEventsUntil([&] { return m_power.count("unblock") == 1; }));
}

TEST_F(KeepAwakeOnWindowsTest, IfItIsDestroyedBeforeTheWindowsThreadReactsNothingIsBlocked)
{
    std::unique_ptr<KeepAwake> object;
    const quintptr window = m_window.winId();
    std::thread([&] { object = std::make_unique<KeepAwake>(why, window, KeepAwake::Log()); }).join();
    object.reset();
    QCoreApplication::sendPostedEvents();
    EXPECT_FALSE(m_power.events().contains(m_block));
    EXPECT_EQ(m_power.count("release"), 1);
    EXPECT_TRUE(letsSessionEnd());
}

TEST_F(KeepAwakeOnWindowsTest, TheLastOfTwoObjectsEndsTheBlock)
{
    auto first = keepAwake();
    auto second = keepAwake();
    first.reset();
    EXPECT_FALSE(letsSessionEnd());
    EXPECT_EQ(m_power.count("unblock"), 0);
    second.reset();
    EXPECT_EQ(m_power.count("unblock"), 1);
    EXPECT_EQ(m_power.count("release"), 2);
}

TEST_F(KeepAwakeOnWindowsTest, ARefusalIsLoggedAndTheShutdownIsStillBlocked)
{
    m_power.refuses = true;
    auto object = keepAwake();
    EXPECT_EQ(m_lines, QStringList{QStringLiteral("The system may go to sleep during the update: 50")});
    EXPECT_FALSE(letsSessionEnd());
    object.reset();
    EXPECT_EQ(m_power.count("release"), 0);
    EXPECT_EQ(m_power.count("unblock"), 1);
}

TEST_F(KeepAwakeOnWindowsTest, ItWorksWithTheSystemsOwnFunctions)
{
    WindowsPower::setForTests(nullptr);
    auto object = keepAwake();
    EXPECT_FALSE(letsSessionEnd());
    object.reset();
    EXPECT_TRUE(letsSessionEnd());
    // Some versions of Windows lack the function against sleep.
    EXPECT_LE(m_lines.size(), 1);
}

} // namespace
