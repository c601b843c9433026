#include "tests/common/TextList.h"
#include "tests/endtoend/IapTest.h"

#include <QPoint>

namespace {

using namespace EndToEnd;

/// The panel beside the window, as used by a person and by the detection.
class IapPanelTest : public IapTest
{
protected:
    /// Returns the position of the window including its frame.
    QPoint frameOf(const QString &window)
    {
        const QJsonArray at = scenario().probe.read(window).value(QLatin1String("framePosition")).toArray();
        return {at.at(0).toInt(), at.at(1).toInt()};
    }
    /// Returns the rightmost point of the window's first line, without its frame.
    QPoint cornerOf(const QString &window)
    {
        const QJsonArray at = scenario().probe.read(window).value(QLatin1String("geometry")).toArray();
        return {at.at(0).toInt() + at.at(2).toInt() - 1, at.at(1).toInt()};
    }
};

TEST_F(IapPanelTest, ThePanelsOwnButtonProgramsTheChosenFile)
{
    UpdateScenario &s = iapScenario();
    s.withServer = false;
    startAndDetect();
    chooseFile(QStringLiteral("mine.bin"), "through the panel");
    ASSERT_TRUE(s.probe.check(iapBox));
    ASSERT_TRUE(s.probe.waitForVisible(panel, true));
    EXPECT_EQ(s.probe.text(QStringLiteral("iapPortName")), s.model());
    ASSERT_TRUE(s.probe.click(download));
    EXPECT_EQ(titleOfRun(), upgradeSuccessful);
    EXPECT_EQ(s.burned(), QByteArray("through the panel"));
    EXPECT_FALSE(logHas(handedOver));
}

TEST_F(IapPanelTest, DetectionHandsTheIdsOverAndSetsThePanelToUsb)
{
    UpdateScenario &s = iapScenario();
    startAndDetect();
    EXPECT_EQ(runsOf("GetData").mid(0, 2),
              (QList<QStringList>{list({"GetData", "-1", "-1"}), list({"GetData"}) + idsInHex()}));
    EXPECT_EQ(s.probe.text(QStringLiteral("iapPortType")), QStringLiteral("USB"));
    EXPECT_EQ(s.probe.read(QStringLiteral("iapPortName")).value(QLatin1String("currentIndex")).toInt(), 0);
    EXPECT_TRUE(s.probe.isChecked(QStringLiteral("iapCrcVerify")));
    EXPECT_EQ(s.probe.read(connection).value(QLatin1String("styleSheet")).toString(),
              QStringLiteral("color: green;"));
}

TEST_F(IapPanelTest, ThePanelFollowsTheMovedMainWindow)
{
    UpdateScenario &s = iapScenario();
    startAndDetect();
    EXPECT_FALSE(s.probe.isVisible(panel));
    ASSERT_TRUE(s.probe.check(iapBox));
    ASSERT_TRUE(s.probe.waitForVisible(panel, true));
    for (const QPoint &place : {QPoint(40, 30), QPoint(100, 200)}) {
        ASSERT_TRUE(s.probe.move(background, place.x(), place.y()));
        EXPECT_TRUE(
            pollUntil([&] { return frameOf(background) == place && frameOf(panel) == cornerOf(background); },
                      eventLimitMs, 20))
            << QJsonDocument(s.probe.read(background)).toJson().toStdString()
            << QJsonDocument(s.probe.read(panel)).toJson().toStdString();
    }
}

TEST_F(IapPanelTest, TheBoxShowsThePanelAndClosingThePanelUnticksTheBox)
{
    UpdateScenario &s = iapScenario();
    start();
    ASSERT_TRUE(s.probe.check(iapBox));
    ASSERT_TRUE(s.probe.waitForVisible(panel, true));
    ASSERT_TRUE(s.probe.check(iapBox, false));
    ASSERT_TRUE(s.probe.waitForVisible(panel, false));
    ASSERT_TRUE(s.probe.check(iapBox));
    ASSERT_TRUE(s.probe.waitForVisible(panel, true));
    ASSERT_TRUE(s.probe.close(panel));
    ASSERT_TRUE(s.probe.waitForVisible(panel, false));
    EXPECT_FALSE(s.probe.isChecked(iapBox));
    EXPECT_TRUE(s.bus.programState().running);
}

TEST_F(IapPanelTest, ATickWhileThePanelIsMadeCounts)
{
    UpdateScenario &s = iapScenario();
    s.program.setScript(programmer, scriptFor(QStringLiteral("GetData"), {{step("sleepMs", 3000)}, {}}));
    start();
    ASSERT_TRUE(s.probe.waitForVisible(iapBox, true));
    ASSERT_TRUE(s.probe.check(iapBox));
    EXPECT_TRUE(pollUntil([&] { return s.probe.isChecked(iapBox); }, eventLimitMs, 20));
    EXPECT_EQ(linesBeginning(asked), 0);
    EXPECT_TRUE(s.probe.waitForVisible(panel, true));
    EXPECT_TRUE(s.probe.isChecked(iapBox));
}

} // namespace
