#include "harness/process/Polling.h"
#include "simulator/time/RunningTime.h"
#include "tests/common/TextList.h"
#include "tests/iap/IAPUpDateTest.h"

#include <QTimer>

#include <atomic>
#include <thread>

namespace {

/// Events that arrive while the programmer is asked for its ports.
class IAPUpDateWaitTest : public IAPUpDateTest
{
protected:
    /// Makes the programmer answer the next request only after `meanwhile` has been called.
    void whileAsked(const std::function<void()> &meanwhile)
    {
        QTimer::singleShot(200, &m_logWindow, [this, meanwhile] {
            m_wasWaiting = isWaitingForTool();
            meanwhile();
            m_tools.letGoOn();
        });
    }
    void makeSlowPanel()
    {
        makePanel();
        getData(m_tools.pause() + ToolStep::print("device:one;COM:A;\n"));
    }

    bool m_wasWaiting = false;
};

TEST_F(IAPUpDateWaitTest, ClicksOnDownloadTakeEffectOnceAfterThePortTypeHasChanged)
{
    makeSlowPanel();
    whileAsked([this] {
        download().click();
        portType().setCurrentText(QStringLiteral("I2C"));
        download().click();
    });
    portType().setCurrentText(QStringLiteral("USB"));
    EXPECT_TRUE(m_wasWaiting);
    EXPECT_TRUE(starts().isEmpty());
    ASSERT_TRUE(waitFor("ended"));
    EXPECT_EQ(starts(), list({"Start|4||-1|-1|0|0|1M|08004000|false|/srv/dev.bin"}));
    QTest::qWait(100);
    EXPECT_EQ(starts().size(), 1);
}

TEST_F(IAPUpDateWaitTest, AClickOnDownloadWhileTheStartAsksMeetsADisabledButton)
{
    startBody(ToolStep::hang());
    makeSlowPanel();
    whileAsked([this] { download().click(); });
    const RecordedDebugStream debug;
    download().click();
    EXPECT_TRUE(m_wasWaiting);
    EXPECT_TRUE(m_host.session().isWritingDevice());
    EXPECT_TRUE(processEventsUntil([this] { return starts().size() == 1; }));
    QTest::qWait(100);
    EXPECT_EQ(starts().size(), 1);
    EXPECT_EQ(debug.warnings(), QStringList());
}

TEST_F(IAPUpDateWaitTest, ThePortTypeCannotBeChangedWhileTheStartAsks)
{
    makeSlowPanel();
    bool wasEnabled = true;
    whileAsked([&] { wasEnabled = portType().isEnabled(); });
    download().click();
    EXPECT_TRUE(m_wasWaiting);
    EXPECT_FALSE(wasEnabled);
    EXPECT_TRUE(portType().isEnabled());
}

TEST_F(IAPUpDateWaitTest, ThePortTypeCannotBeChangedWhileAStartActsOnAnEarlierChange)
{
    makeSlowPanel();
    whileAsked([this] {
        emit panel().sigStartClicked();
        portType().setCurrentText(QStringLiteral("I2C"));
    });
    portType().setCurrentText(QStringLiteral("USB"));
    m_tools.holdBack();
    QList<bool> enabled;
    QTimer whileAskedAgain;
    whileAskedAgain.callOnTimeout([&] {
        if (!isWaitingForTool())
            return;
        enabled.append(portType().isEnabled());
        m_tools.letGoOn();
    });
    whileAskedAgain.start(10);
    ASSERT_TRUE(waitFor("ended"));
    EXPECT_FALSE(enabled.isEmpty());
    EXPECT_EQ(enabled.count(true), 0);
    EXPECT_TRUE(portType().isEnabled());
    EXPECT_EQ(starts(), list({"Start|4||-1|-1|0|0|1M|08004000|false|/srv/dev.bin"}));
}

TEST_F(IAPUpDateWaitTest, AStartRequestedByTheUpdateIsDeferredAndNotLost)
{
    makeSlowPanel();
    whileAsked([this] {
        std::thread([this] { emit panel().sigStartClicked(); }).join();
        QCoreApplication::sendPostedEvents(&panel());
    });
    portType().setCurrentText(QStringLiteral("USB"));
    EXPECT_TRUE(m_wasWaiting);
    EXPECT_TRUE(starts().isEmpty());
    ASSERT_TRUE(waitFor("ended"));
    EXPECT_EQ(starts().size(), 1);
    EXPECT_TRUE(starts().first().startsWith(QLatin1String("Start|1|")));
}

TEST_F(IAPUpDateWaitTest, APortTypeChosenMeanwhileTakesEffectAfterwards)
{
    makeSlowPanel();
    whileAsked([this] { portType().setCurrentText(QStringLiteral("I2C")); });
    portType().setCurrentText(QStringLiteral("USB"));
    EXPECT_TRUE(m_wasWaiting);
    EXPECT_EQ(items(portName()), QStringList{QStringLiteral("one")});
    EXPECT_FALSE(find<QLineEdit>("iapAddress").isEnabled());
    EXPECT_TRUE(processEventsUntil([this] { return items(portName()) == QStringList{QStringLiteral("A")}; }));
    EXPECT_TRUE(find<QLineEdit>("iapAddress").isEnabled());
    EXPECT_EQ(baudRate().currentText(), QStringLiteral("1M"));
}

TEST_F(IAPUpDateWaitTest, ASecondStartWhileTheFirstAsksComesAfterIt)
{
    startBody(ToolStep::hang());
    makeSlowPanel();
    whileAsked([this] { emit panel().sigStartClicked(); });
    const RecordedDebugStream debug;
    emit panel().sigStartClicked();
    EXPECT_TRUE(m_host.session().isWritingDevice());
    EXPECT_TRUE(
        processEventsUntil([&] { return debug.warnings().contains(QStringLiteral("IAP already running")); }));
    EXPECT_TRUE(processEventsUntil([this] { return starts().size() == 1; }));
}

TEST_F(IAPUpDateWaitTest, AnEndlessRequestForPortsIsEndedByShuttingDownAndNothingStarts)
{
    makePanel();
    getData(ToolStep::hang());
    QTimer::singleShot(200, [] { ShutdownFlag::instance().raise(); });
    const RunningTimer timer;
    emit panel().sigStartClicked();
    EXPECT_LT(timer.elapsed(), 10000);
    EXPECT_TRUE(starts().isEmpty());
    EXPECT_FALSE(m_host.has("monitor off"));
}

TEST_F(IAPUpDateWaitTest, AnAnswerMayTakeAnyTimeAndTheWindowStaysResponsive)
{
    makeSlowPanel();
    std::atomic<int> ticks{0};
    QTimer timer;
    timer.callOnTimeout([&ticks] { ++ticks; });
    timer.start(10);
    // From another thread, because nothing in a frozen window would end the request.
    std::thread answer([&] {
        pollUntil([&] { return ticks > 20; });
        m_tools.letGoOn();
    });
    portType().setCurrentText(QStringLiteral("USB"));
    answer.join();
    EXPECT_GT(ticks, 20);
    EXPECT_EQ(items(portName()), QStringList{QStringLiteral("one")});
}

} // namespace
