#include "tests/endtoend/EndToEnd.h"

#include "simulator/bench/ModelOnBus.h"
#include "simulator/bench/Polling.h"

#include <QTest>

namespace {

using namespace EndToEnd;

const QString nothing = QStringLiteral("Device not detected");
const QString detected = QStringLiteral("Device Detected");

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
    QTest::qWait(2500);
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
    ASSERT_TRUE(s.probe.waitForText(connection, nothing, 5000));
    s.program.setControlList({s.model()}, {QStringLiteral("USB")});
    EXPECT_TRUE(s.probe.waitForText(connection, detected, 5000));
}

TEST_F(DetectionTest, PressingStartWithoutADeviceChangesNothingButTheTitleAndTheLog)
{
    UpdateScenario &s = scenario();
    // Present on the bus but switched off.
    s.program.setControlList({}, {QStringLiteral("USB")});
    start();
    ASSERT_TRUE(s.probe.waitForText(connection, nothing, 5000));
    // While the window is made, the IAP programmer is asked, and a start would do nothing.
    ASSERT_TRUE(pollUntil([&] { return logHas("create IAPUpDate Mode done."); }, 10000, 20));
    ASSERT_TRUE(s.probe.click(startButton));
    ASSERT_TRUE(
        s.probe.waitForText(title, QStringLiteral("CurrentStatus: Start Failed - No Device Detected"), 5000));
    EXPECT_TRUE(s.probe.isEnabled(startButton));
    EXPECT_TRUE(logHas("click UpdateBtn ERROR - Not Check Dev!"));

    // The monitor was not stopped, and no update was begun.
    s.program.setControlList({s.model()}, {QStringLiteral("USB")});
    EXPECT_TRUE(s.probe.waitForText(connection, detected, 5000));
    EXPECT_TRUE(s.probe.read(QStringLiteral("firmwareChooser")).isEmpty()) << "not even a chooser is made";
    EXPECT_EQ(s.program.updateLogLines().filter(QStringLiteral("usb tmpPath: ")).size(), 0);
    EXPECT_FALSE(s.program.standardError().contains(QStringLiteral("Start Update button was pressed!")));
    EXPECT_TRUE(s.probe.text(title).endsWith(QStringLiteral("No Device Detected")));
    expectUntouchedDevice();
}

TEST_F(DetectionTest, UnpluggingShowsWithinATickThatNothingIsThere)
{
    UpdateScenario &s = scenario();
    start();
    ASSERT_TRUE(s.probe.waitForText(deviceModel, QStringLiteral("DeviceModel: DevMaa"), 5000));
    EXPECT_EQ(styleOfConnection(), QStringLiteral("color: green;"));
    ASSERT_TRUE(s.bus.unplug(s.model()));
    EXPECT_TRUE(s.probe.waitForText(connection, nothing, 3000));
    EXPECT_EQ(s.probe.text(deviceModel), QStringLiteral("DeviceModel: "));
    ASSERT_TRUE(s.bus.plug(s.model()));
    EXPECT_TRUE(s.probe.waitForText(connection, detected, 3000));
}

TEST_F(DetectionTest, OfTwoDevicesTheFirstInBusOrderIsChosenWhateverTheTableOrder)
{
    UpdateScenario &s = scenario("DevMac");
    s.devices = {ModelOnBus::application(QStringLiteral("DevMac")),
                 ModelOnBus::application(QStringLiteral("DevMaa"))};
    s.program.setControlList({QStringLiteral("DevMaa"), QStringLiteral("DevMac")}, {QStringLiteral("USB")});
    start();
    ASSERT_TRUE(s.probe.waitForText(connection, detected, 5000));
    EXPECT_EQ(s.probe.text(deviceModel), QStringLiteral("DeviceModel: DevMac"));
}

TEST_F(DetectionTest, OneBootloaderIsShownInRedAndTwoAreTooMany)
{
    UpdateScenario &s = scenario();
    s.devices = {ModelOnBus::bootloader(QStringLiteral("DevMaa")),
                 ModelOnBus::bootloader(QStringLiteral("DevMac"))};
    start();
    ASSERT_TRUE(s.probe.waitForText(connection, QStringLiteral("bootloader>1"), 5000));
    EXPECT_EQ(styleOfConnection(), QStringLiteral("color: red;"));
    EXPECT_TRUE(pollUntil([&] { return logHas("warnning: bootloaderCount>1"); }, 5000));
    ASSERT_TRUE(s.bus.unplug(QStringLiteral("DevMac")));
    EXPECT_TRUE(s.probe.waitForText(connection, QStringLiteral("FindBootloader"), 3000));
    EXPECT_TRUE(pollUntil([&] { return logHas("Run User Chose Mode."); }, 5000));
}

} // namespace
