#include "tests/endtoend/EndToEnd.h"

#include "harness/process/Polling.h"
#include "harness/session/ModelOnBus.h"

#include <QTest>

namespace {

using namespace EndToEnd;

class DetectionTest : public EndToEndTest
{
protected:
    void start() { ASSERT_TRUE(scenario().start()) << scenario().errorText().toStdString(); }
    QString styleOfConnection()
    {
        return scenario().probe.read(connection).value(QLatin1String("styleSheet")).toString();
    }
};

TEST_F(DetectionTest, AModelThatIsSwitchedOffIsReportedAsNotDetected)
{
    UpdateScenario &s = scenario();
    s.program.setControlList(R"({"devices":[{"id":"DevMaa","is_on":false}],
                                 "WriteType":[{"id":"USB","is_on":true}]})");
    start();
    const auto hasLookedThrice = [&s] {
        return s.program.standardError().count(QStringLiteral("Device List Count:")) >= 3;
    };
    ASSERT_TRUE(pollUntil(hasLookedThrice, eventLimitMs, 50));
    EXPECT_EQ(s.probe.text(connection), nothing);
    EXPECT_EQ(s.probe.text(deviceModel), QStringLiteral("DeviceModel: "));
    EXPECT_EQ(styleOfConnection(), QStringLiteral("color: blue;"));
    EXPECT_TRUE(logHas("Find dev for json dev: DevMaa"));
}

TEST_F(DetectionTest, SwitchingAModelOnInTheListTakesEffectWithoutARestart)
{
    UpdateScenario &s = scenario();
    s.program.setControlList({}, {QStringLiteral("USB")});
    start();
    ASSERT_TRUE(s.probe.waitForWholeText(connection, nothing));
    s.program.setControlList({s.model()}, {QStringLiteral("USB")});
    EXPECT_TRUE(s.probe.waitForWholeText(connection, detected));
}

TEST_F(DetectionTest, PressingStartWithoutADeviceChangesNothingButTheTitleAndTheLog)
{
    UpdateScenario &s = scenario();
    // Present on the bus but switched off.
    s.program.setControlList({}, {QStringLiteral("USB")});
    start();
    ASSERT_TRUE(s.probe.waitForWholeText(connection, nothing));
    // While the window is created, the IAP programmer is asked for its ports, and a start would have no
    // effect.
    ASSERT_TRUE(pollUntil([&] { return logHas("create IAPUpDate Mode done."); }, eventLimitMs, 20));
    ASSERT_TRUE(s.probe.click(startButton));
    ASSERT_TRUE(
        s.probe.waitForText(title, QStringLiteral("CurrentStatus: Start Failed - No Device Detected")));
    EXPECT_TRUE(s.probe.isEnabled(startButton));
    EXPECT_TRUE(pollUntil([&] { return logHas("click UpdateBtn ERROR - Not Check Dev!"); }));

    // The monitor was not stopped, and no update was begun.
    s.program.setControlList({s.model()}, {QStringLiteral("USB")});
    EXPECT_TRUE(s.probe.waitForWholeText(connection, detected));
    EXPECT_TRUE(s.probe.read(QStringLiteral("firmwareChooser")).isEmpty()) << "not even a chooser is created";
    EXPECT_EQ(s.program.updateLogLines().filter(QStringLiteral("usb tmpPath: ")).size(), 0);
    EXPECT_FALSE(s.program.standardError().contains(QStringLiteral("Start Update button was pressed!")));
    EXPECT_TRUE(s.probe.text(title).endsWith(QStringLiteral("No Device Detected")));
    expectUntouchedDevice();
}

TEST_F(DetectionTest, UnpluggingShowsWithinATickThatNothingIsThere)
{
    UpdateScenario &s = scenario();
    start();
    ASSERT_TRUE(s.probe.waitForText(deviceModel, QStringLiteral("DeviceModel: DevMaa")));
    EXPECT_EQ(styleOfConnection(), QStringLiteral("color: green;"));
    ASSERT_TRUE(s.bus.unplug(s.model()));
    EXPECT_TRUE(s.probe.waitForWholeText(connection, nothing));
    EXPECT_EQ(s.probe.text(deviceModel), QStringLiteral("DeviceModel: "));
    ASSERT_TRUE(s.bus.plug(s.model()));
    EXPECT_TRUE(s.probe.waitForWholeText(connection, detected));
}

TEST_F(DetectionTest, OfTwoDevicesTheFirstInBusOrderIsChosenWhateverTheTableOrder)
{
    UpdateScenario &s = scenario("DevMac");
    s.devices = {ModelOnBus::application(QStringLiteral("DevMac")),
                 ModelOnBus::application(QStringLiteral("DevMaa"))};
    s.program.setControlList({QStringLiteral("DevMaa"), QStringLiteral("DevMac")}, {QStringLiteral("USB")});
    start();
    ASSERT_TRUE(s.probe.waitForWholeText(connection, detected));
    EXPECT_EQ(s.probe.text(deviceModel), QStringLiteral("DeviceModel: DevMac"));
}

TEST_F(DetectionTest, OneBootloaderIsShownInRedAndTwoAreTooMany)
{
    UpdateScenario &s = scenario();
    s.devices = {ModelOnBus::bootloader(QStringLiteral("DevMaa")),
                 ModelOnBus::bootloader(QStringLiteral("DevMac"))};
    start();
    ASSERT_TRUE(s.probe.waitForWholeText(connection, QStringLiteral("bootloader>1")));
    EXPECT_EQ(styleOfConnection(), QStringLiteral("color: red;"));
    EXPECT_TRUE(pollUntil([&] { return logHas("warnning: bootloaderCount>1"); }));
    ASSERT_TRUE(s.bus.unplug(QStringLiteral("DevMac")));
    EXPECT_TRUE(s.probe.waitForWholeText(connection, QStringLiteral("FindBootloader")));
    EXPECT_TRUE(pollUntil([&] { return logHas("Run User Chose Mode."); }));
}

} // namespace
