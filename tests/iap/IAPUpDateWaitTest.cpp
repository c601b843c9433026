#include "tests/iap/IAPUpDateTest.h"

#include <QTimer>

#include <thread>

namespace {

/// What comes while the programmer is being asked.
class IAPUpDateWaitTest : public IAPUpDateTest
{
protected:
    /// The next question is answered only after `meanwhile` has been called.
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
        getData(m_tools.pause() + Told::print("device:one;COM:A;\n"));
    }

    bool m_wasWaiting = false;
};

TEST_F(IAPUpDateWaitTest, AClickOnDownloadDoesNothing)
{
    makeSlowPanel();
    whileAsked([this] { download().click(); });
    portType().setCurrentText(QStringLiteral("USB"));
    EXPECT_TRUE(m_wasWaiting);
    QTest::qWait(200);
    EXPECT_TRUE(starts().isEmpty());
    EXPECT_EQ(runs().size(), 1);
}

TEST_F(IAPUpDateWaitTest, AStartThatTheUpdateAsksForIsDeferredAndNotLost)
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
    EXPECT_TRUE(
        QTest::qWaitFor([this] { return items(portName()) == QStringList{QStringLiteral("A")}; }, limitMs));
    EXPECT_TRUE(find<QLineEdit>("iapAddress").isEnabled());
    EXPECT_EQ(baudRate().currentText(), QStringLiteral("1M"));
}

TEST_F(IAPUpDateWaitTest, ASecondStartWhileTheFirstAsksComesAfterIt)
{
    startBody(Told::hang());
    makeSlowPanel();
    whileAsked([this] { emit panel().sigStartClicked(); });
    const RecordedDebugStream debug;
    emit panel().sigStartClicked();
    EXPECT_TRUE(panel().isProgramming());
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return debug.warnings().contains(QStringLiteral("IAP already running")); }, limitMs));
    EXPECT_EQ(starts().size(), 1);
}

TEST_F(IAPUpDateWaitTest, AQuestionWithoutAnEndIsEndedByLeavingAndNothingStarts)
{
    makePanel();
    getData(Told::hang());
    QTimer::singleShot(200, [] { ShutdownFlag::instance().raise(); });
    QElapsedTimer timer;
    timer.start();
    emit panel().sigStartClicked();
    EXPECT_LT(timer.elapsed(), 10000);
    EXPECT_TRUE(starts().isEmpty());
    EXPECT_FALSE(m_host.has("monitor off"));
}

TEST_F(IAPUpDateWaitTest, AnAnswerMayTakeAnyTimeAndTheWindowLivesMeanwhile)
{
    makeSlowPanel();
    int ticks = 0;
    QTimer timer;
    timer.callOnTimeout([&ticks] { ++ticks; });
    timer.start(10);
    QTimer::singleShot(1500, &m_logWindow, [this] { m_tools.letGoOn(); });
    portType().setCurrentText(QStringLiteral("USB"));
    EXPECT_GT(ticks, 20);
    EXPECT_EQ(items(portName()), QStringList{QStringLiteral("one")});
}

} // namespace
