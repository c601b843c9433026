#include "support/process/ShutdownFlag.h"
#include "simulator/time/RunningTime.h"
#include "support/Clock.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThread>

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace {

class ShutdownFlagTest : public testing::Test
{
protected:
    void TearDown() override { ShutdownFlag::instance().lower(); }
};

TEST_F(ShutdownFlagTest, AnUninterruptedSleepTakesTheWholeTime)
{
    QElapsedTimer timer;
    timer.start();
    EXPECT_TRUE(Clock::real().sleepMs(20));
    EXPECT_GE(timer.elapsed(), 20);
}

TEST_F(ShutdownFlagTest, RaisingTheFlagInterruptsASleepOnAnotherThread)
{
    const RunningTimer timer;
    bool sleptThrough = true;
    std::thread sleeper([&] { sleptThrough = Clock::real().sleepMs(30000); });
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    ShutdownFlag::instance().raise();
    sleeper.join();
    EXPECT_FALSE(sleptThrough);
    EXPECT_LT(timer.elapsed(), 5000);
}

TEST_F(ShutdownFlagTest, ASleepAfterTheFlagWasRaisedEndsAtOnce)
{
    ShutdownFlag::instance().raise();
    EXPECT_TRUE(Clock::real().isShuttingDown());
    const RunningTimer timer;
    EXPECT_FALSE(Clock::real().sleepMs(30000));
    EXPECT_LT(timer.elapsed(), 5000);
}

TEST_F(ShutdownFlagTest, TheFlagIsAnnouncedOnce)
{
    int announced = 0;
    const auto connection =
        QObject::connect(&ShutdownFlag::instance(), &ShutdownFlag::raised, [&] { ++announced; });
    ShutdownFlag::instance().raise();
    ShutdownFlag::instance().raise();
    QObject::disconnect(connection);
    EXPECT_EQ(announced, 1);
}

TEST_F(ShutdownFlagTest, ARaiseOnAnotherThreadIsAnnouncedByTheEventLoopOfTheApplication)
{
    const QThread *announcedOn = nullptr;
    const auto connection = QObject::connect(&ShutdownFlag::instance(), &ShutdownFlag::raised,
                                             [&announcedOn] { announcedOn = QThread::currentThread(); });
    std::thread([] { ShutdownFlag::instance().raise(); }).join();
    EXPECT_TRUE(ShutdownFlag::instance().isRaised());
    EXPECT_EQ(announcedOn, nullptr);
    QCoreApplication::processEvents();
    QObject::disconnect(connection);
    EXPECT_EQ(announcedOn, QCoreApplication::instance()->thread());
}

} // namespace
