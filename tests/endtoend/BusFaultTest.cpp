#include "tests/endtoend/EndToEnd.h"

#include "harness/process/Polling.h"
#include "harness/session/ModelOnBus.h"

namespace {

using namespace EndToEnd;

const QString slowManifest = QStringLiteral("slow-drip:path=*.json,bytes=30,ms=100");

QJsonObject behaviour(const char *what, const QJsonObject &value)
{
    return {{QLatin1String(what), value}};
}
QJsonObject onReport(const char *action, int leaveAfterMs = 20, int afterMs = 150)
{
    return behaviour("onReport", {{QStringLiteral("action"), QLatin1String(action)},
                                  {QStringLiteral("leaveAfterMs"), leaveAfterMs},
                                  {QStringLiteral("afterMs"), afterMs}});
}
QJsonObject writesAnswer(const char *answer, int count = 0)
{
    QJsonObject writes{{QStringLiteral("answer"), QLatin1String(answer)}};
    if (count > 0)
        writes.insert(QStringLiteral("count"), count);
    return behaviour("writes", writes);
}

/// Returns the entry of a device with changed fields.
QJsonObject with(QJsonObject device, const QJsonObject &changes)
{
    for (auto change = changes.begin(); change != changes.end(); ++change)
        device.insert(change.key(), change.value());
    return device;
}

/// Updates during which the bus or the device fails.
class BusFaultTest : public EndToEndTest
{
protected:
    void start() { ASSERT_TRUE(scenario().start()) << scenario().errorText().toStdString(); }
    /// Presses start once the device is detected, and waits until the run has begun.
    void press()
    {
        UpdateScenario &s = scenario();
        ASSERT_TRUE(s.probe.waitForWholeText(connection, detected)) << s.probe.errorText().toStdString();
        ASSERT_TRUE(s.pressStart()) << s.errorText().toStdString();
        ASSERT_TRUE(s.probe.waitForEnabled(startButton, false));
    }
    void waitForLog(const char *line)
    {
        ASSERT_TRUE(pollUntil([&] { return logHas(line); }, updateLimitMs)) << line;
    }
    QString stateOnBus()
    {
        return scenario().bus.device(scenario().model()).value(QLatin1String("state")).toString();
    }
    /// Restores the device to its original state and updates it.
    void expectTheNextUpdateWorks()
    {
        UpdateScenario &s = scenario();
        ASSERT_TRUE(s.bus.setReportAnswer(s.model(), with(onReport("bootloader"), writesAnswer("ok"))))
            << s.bus.errorText().toStdString();
        // After a success it is restarting because of the reset, if it is on the bus at all.
        if (s.probe.text(title) == upgradeSuccessful && stateOnBus() == QLatin1String("bootloader"))
            s.bus.waitForDevice(s.model(), QStringLiteral("application"));
        if (stateOnBus() == QLatin1String("bootloader"))
            s.bus.unplug(s.model());
        if (stateOnBus() == QLatin1String("absent"))
            s.bus.plug(s.model());
        ASSERT_EQ(stateOnBus(), QStringLiteral("application")) << s.bus.errorText().toStdString();
        const int burns = s.bus.device(s.model()).value(QLatin1String("burns")).toInt();
        ASSERT_NO_FATAL_FAILURE(press());
        EXPECT_EQ(titleWhenIdle(), upgradeSuccessful);
        EXPECT_EQ(s.bus.device(s.model()).value(QLatin1String("burns")).toInt(), burns + 1);
        EXPECT_EQ(s.burned(), s.image());
    }
    /// Makes the USB flasher play these steps when it burns. Its reset works normally.
    void playBurn(const QJsonArray &steps)
    {
        ASSERT_TRUE(scenario().program.setScript(usbFlasher, scriptFor(QStringLiteral("image"), {steps})));
    }
    void expectBurnedWhenLate(int afterMs)
    {
        UpdateScenario &s = scenario();
        s.devices = {with(ModelOnBus::application(s.model()), onReport("bootloader", 20, afterMs))};
        EXPECT_EQ(update(), upgradeSuccessful);
        EXPECT_EQ(s.burned(), s.image());
        EXPECT_GT(s.program.runs(usbFlasher).size(), 2)
            << "some attempts that are too early, the burn and the reset";
    }
};

TEST_F(BusFaultTest, UnpluggedWhileTheManifestIsAwaitedTheReportFailsAndTheNextUpdateWorks)
{
    UpdateScenario &s = scenario();
    s.serverFaults.append(slowManifest);
    ASSERT_NO_FATAL_FAILURE(start());
    ASSERT_NO_FATAL_FAILURE(press());
    ASSERT_NO_FATAL_FAILURE(waitForLog("try to download dev json..."));
    ASSERT_TRUE(s.bus.unplug(s.model()));
    EXPECT_EQ(titleWhenIdle(), upgradeFailed);
    EXPECT_TRUE(logHas("one open device err"));
    EXPECT_TRUE(logHas("TryToBootloader Failed"));
    EXPECT_TRUE(logHas("try to bootloader err."));
    EXPECT_TRUE(s.program.runs(usbFlasher).isEmpty());
    EXPECT_TRUE(s.probe.waitForWholeText(connection, nothing));
    expectTheNextUpdateWorks();
}

TEST_F(BusFaultTest, UnpluggedRightAfterTheReportTheFlasherIsTriedTenTimesAndTheNextUpdateWorks)
{
    UpdateScenario &s = scenario();
    s.devices = {with(ModelOnBus::application(s.model()), onReport("vanish"))};
    EXPECT_EQ(update(), upgradeFailed);
    EXPECT_TRUE(logHas("TryToBootloader Success!"));
    EXPECT_EQ(s.program.runs(usbFlasher).size(), 10);
    EXPECT_TRUE(logHas("Burn Image Failed"));
    EXPECT_TRUE(s.probe.waitForWholeText(connection, nothing));
    expectTheNextUpdateWorks();
}

TEST_F(BusFaultTest, ADeviceThatStaysAfterTheReportFailsAndIsStillDetected)
{
    UpdateScenario &s = scenario();
    s.devices = {with(ModelOnBus::application(s.model()), onReport("stay"))};
    EXPECT_EQ(update(), upgradeFailed);
    EXPECT_EQ(s.program.runs(usbFlasher).size(), 10);
    EXPECT_TRUE(s.burned().isEmpty());
    expectTheNextUpdateWorks();
}

TEST_F(BusFaultTest, UnpluggedInTheBootloaderWhileTheFlasherRunsItFailsAndTheNextUpdateWorks)
{
    UpdateScenario &s = scenario();
    playBurn({step("print", QStringLiteral("Upgrade fwc: image.target.os\n")), step("sleepMs", 800),
              step("print", QStringLiteral("write failed\n")), step("exit", 1)});
    ASSERT_NO_FATAL_FAILURE(start());
    ASSERT_NO_FATAL_FAILURE(press());
    ASSERT_TRUE(
        s.probe.waitForValue(QStringLiteral("progressBar"), QStringLiteral("value"), 48, updateLimitMs));
    ASSERT_TRUE(s.bus.unplug(s.model()));
    EXPECT_EQ(titleWhenIdle(), upgradeFailed);
    EXPECT_EQ(s.program.runs(usbFlasher).size(), 1);
    EXPECT_TRUE(s.probe.waitForWholeText(connection, nothing));
    playBurn({step("burn", true), step("success", true)});
    expectTheNextUpdateWorks();
}

TEST_F(BusFaultTest, UnpluggedBeforeTheResetTheUpdateIsASuccessAndTheNextWorks)
{
    UpdateScenario &s = scenario();
    playBurn({step("burn", true), step("success", true), step("sleepMs", 1000)});
    ASSERT_NO_FATAL_FAILURE(start());
    ASSERT_NO_FATAL_FAILURE(press());
    ASSERT_TRUE(
        s.probe.waitForValue(QStringLiteral("progressBar"), QStringLiteral("value"), 100, updateLimitMs));
    ASSERT_TRUE(pollUntil([&] { return s.burned() == s.image(); }, updateLimitMs));
    ASSERT_TRUE(s.bus.unplug(s.model()));
    EXPECT_EQ(titleWhenIdle(), upgradeSuccessful);
    EXPECT_TRUE(logHas("RunCmdReset Done."));
    EXPECT_TRUE(s.probe.waitForWholeText(connection, nothing));
    EXPECT_EQ(s.probe.text(title), upgradeSuccessful) << "and it stays";
    expectTheNextUpdateWorks();
}

TEST_F(BusFaultTest, ADeviceThatDoesNotComeBackFromItsResetIsUpdatedAllTheSame)
{
    UpdateScenario &s = scenario();
    s.devices = {with(ModelOnBus::application(s.model()),
                      behaviour("onReset", {{QStringLiteral("action"), QStringLiteral("vanish")}}))};
    EXPECT_EQ(update(), upgradeSuccessful);
    EXPECT_TRUE(s.probe.waitForWholeText(connection, nothing));
    expectTheNextUpdateWorks();
}

TEST_F(BusFaultTest, ABootloaderThatTakesThreeSecondsToComeIsStillBurned)
{
    expectBurnedWhenLate(3000);
}

TEST_F(BusFaultTest, ABootloaderThatTakesEightSecondsToComeIsStillBurned)
{
    expectBurnedWhenLate(8000);
}

TEST_F(BusFaultTest, ABootloaderThatIsThereAtOnceIsBurned)
{
    UpdateScenario &s = scenario();
    s.devices = {with(ModelOnBus::application(s.model()), onReport("bootloader", 0, 0))};
    EXPECT_EQ(update(), upgradeSuccessful);
    EXPECT_EQ(s.burned(), s.image());
    EXPECT_TRUE(logHas("write res:513CommandKind:1IsDuoDev:2"));
}

TEST_F(BusFaultTest, ARefusedWriteIsMinusOneWithTheReasonAndTheNextUpdateWorks)
{
    UpdateScenario &s = scenario();
    s.devices = {with(ModelOnBus::application(s.model()), writesAnswer("refused"))};
    EXPECT_EQ(update(), upgradeFailed);
    const QStringList written = s.program.updateLogLines().filter(QStringLiteral("write res:"));
    ASSERT_EQ(written.size(), 1);
    EXPECT_TRUE(written.first().startsWith(QStringLiteral("write res:-1")));
    EXPECT_TRUE(written.first().endsWith(QStringLiteral("CommandKind:1IsDuoDev:2")));
    EXPECT_GT(written.first().size(), 38) << "with hidapi's text: " << written.first().toStdString();
    EXPECT_TRUE(logHas("TryToBootloader Failed"));
    EXPECT_TRUE(s.program.runs(usbFlasher).isEmpty());
    EXPECT_TRUE(s.probe.waitForWholeText(connection, detected));
    expectTheNextUpdateWorks();
}

TEST_F(BusFaultTest, AShortWriteCountsAsSentAndTheFlasherDecides)
{
    UpdateScenario &s = scenario();
    s.devices = {with(ModelOnBus::application(s.model()), writesAnswer("short", 64))};
    ASSERT_NO_FATAL_FAILURE(start());
    ASSERT_NO_FATAL_FAILURE(press());
    ASSERT_NO_FATAL_FAILURE(waitForLog("Open upg device failed"));
    EXPECT_TRUE(logHas("write res:64CommandKind:1IsDuoDev:2"));
    EXPECT_TRUE(logHas("TryToBootloader Success!"));
    // The user puts the device into its bootloader with its button.
    ASSERT_TRUE(s.bus.unplug(s.model()));
    ASSERT_TRUE(s.bus.plugBootloader(s.model()));
    EXPECT_EQ(titleWhenIdle(), upgradeSuccessful);
    EXPECT_EQ(s.burned(), s.image());
    expectTheNextUpdateWorks();
}

TEST_F(BusFaultTest, OverHidARefusedWriteRunsNoFlasher)
{
    UpdateScenario &s = scenario();
    s.program.setControlList({s.model()}, {QStringLiteral("HID")});
    s.devices = {with(ModelOnBus::application(s.model()), writesAnswer("error"))};
    EXPECT_EQ(update(), upgradeFailed);
    EXPECT_TRUE(logHas("try to bootloader err."));
    EXPECT_TRUE(s.program.runs(hidFlasher).isEmpty());
    expectTheNextUpdateWorks();
}

TEST_F(BusFaultTest, AnInterfaceWithoutAPathIsPassedOver)
{
    UpdateScenario &s = scenario("DevMbu");
    QJsonObject duo = ModelOnBus::application(s.model());
    QJsonArray interfaces = duo.value(QLatin1String("interfaces")).toArray();
    interfaces.prepend(QJsonObject{{QStringLiteral("number"), 0}, {QStringLiteral("pathless"), true}});
    duo.insert(QStringLiteral("interfaces"), interfaces);
    s.devices = {duo};
    EXPECT_EQ(update(), upgradeSuccessful);
    EXPECT_EQ(s.burned(), s.image());
    EXPECT_TRUE(logHas("write res:513CommandKind:1IsDuoDev:1"));
}

TEST_F(BusFaultTest, ADuoDeviceWhoseMarkedInterfaceCannotBeOpenedFailsUntilItCan)
{
    UpdateScenario &s = scenario("DevMbu");
    QJsonObject locked = ModelOnBus::application(s.model());
    QJsonArray interfaces = locked.value(QLatin1String("interfaces")).toArray();
    interfaces[0] = with(interfaces[0].toObject(), {{QStringLiteral("openable"), false}});
    locked.insert(QStringLiteral("interfaces"), interfaces);
    s.devices = {locked};
    EXPECT_EQ(update(), upgradeFailed);
    EXPECT_TRUE(logHas("not find DuoDevices!"));
    const QStringList written = s.program.updateLogLines().filter(QStringLiteral("write res:-1"));
    ASSERT_EQ(written.size(), 1);
    EXPECT_TRUE(written.first().endsWith(QStringLiteral("CommandKind:1IsDuoDev:1")));
    EXPECT_TRUE(s.bus.device(s.model()).value(QLatin1String("reports")).toArray().isEmpty());
    EXPECT_TRUE(s.program.runs(usbFlasher).isEmpty());
    EXPECT_TRUE(s.probe.waitForWholeText(connection, detected));
}

TEST_F(BusFaultTest, AMarkerInLowerCaseIsFound)
{
    UpdateScenario &s = scenario("DevMah");
    QJsonObject duo = ModelOnBus::application(s.model());
    QJsonArray interfaces = duo.value(QLatin1String("interfaces")).toArray();
    // The number of the interface does not help: only the path contains the marker.
    interfaces[0] =
        with(interfaces[0].toObject(),
             {{QStringLiteral("node"), QStringLiteral("hidraw_mi_00_x")}, {QStringLiteral("number"), 3}});
    duo.insert(QStringLiteral("interfaces"), interfaces);
    s.devices = {duo};
    EXPECT_EQ(update(), upgradeSuccessful);
    EXPECT_EQ(s.burned(), s.image());
    EXPECT_TRUE(logHas("find DuoDevices at DevMbv , DevMah , DevMaj"));
}

TEST_F(BusFaultTest, ASecondBootloaderInTheMiddleOfARunIsReportedAfterIt)
{
    UpdateScenario &s = scenario();
    const QString other = QStringLiteral("DevMac");
    s.devices = {ModelOnBus::application(s.model()),
                 with(ModelOnBus::application(other), {{QStringLiteral("start"), QStringLiteral("absent")}})};
    playBurn({step("progress", true), step("burn", true), step("sleepMs", 800), step("success", true)});
    ASSERT_NO_FATAL_FAILURE(start());
    ASSERT_NO_FATAL_FAILURE(press());
    ASSERT_TRUE(
        s.probe.waitForValue(QStringLiteral("progressBar"), QStringLiteral("value"), 80, updateLimitMs));
    ASSERT_TRUE(pollUntil([&] { return s.burned() == s.image(); }, updateLimitMs));
    ASSERT_TRUE(s.bus.plugBootloader(other)) << s.bus.errorText().toStdString();
    EXPECT_EQ(titleWhenIdle(), upgradeSuccessful);
    EXPECT_TRUE(s.probe.waitForText(connection, QStringLiteral("ootloader")));
    ASSERT_TRUE(s.bus.unplug(other));
    if (stateOnBus() != QLatin1String("application")) {
        s.bus.unplug(s.model());
        ASSERT_TRUE(s.bus.plug(s.model()));
    }
    expectTheNextUpdateWorks();
}

TEST_F(BusFaultTest, OfTwentyDevicesTheOneInTheListIsUpdatedAndNoOtherTouched)
{
    UpdateScenario &s = scenario("DevMaa");
    s.devices.clear();
    // Unknown devices before it: the first known device in bus order is chosen.
    for (int i = 0; i < 19; ++i) {
        const QJsonObject ids{{QStringLiteral("vendorId"), 0x1234}, {QStringLiteral("productId"), i + 1}};
        s.devices.append({{QStringLiteral("key"), QStringLiteral("stranger%1").arg(i)},
                          {QStringLiteral("application"), ids}});
    }
    s.devices.insert(10, ModelOnBus::application(s.model()));
    EXPECT_EQ(update(), upgradeSuccessful);
    EXPECT_EQ(s.burned(), s.image());
    for (int i = 0; i < 19; ++i) {
        const QJsonObject stranger = s.bus.device(QStringLiteral("stranger%1").arg(i));
        EXPECT_TRUE(stranger.value(QLatin1String("reports")).toArray().isEmpty()) << i;
        EXPECT_EQ(stranger.value(QLatin1String("burns")).toInt(), 0) << i;
    }
}

TEST_F(BusFaultTest, ADevicePluggedDuringAnUpdateDoesNotTakeItOver)
{
    UpdateScenario &s = scenario();
    const QString other = QStringLiteral("DevMac");
    s.program.setControlList({s.model(), other}, {QStringLiteral("USB")});
    s.devices = {ModelOnBus::application(s.model()),
                 with(ModelOnBus::application(other), {{QStringLiteral("start"), QStringLiteral("absent")}})};
    s.serverFaults.append(slowManifest);
    ASSERT_NO_FATAL_FAILURE(start());
    ASSERT_NO_FATAL_FAILURE(press());
    ASSERT_NO_FATAL_FAILURE(waitForLog("try to download dev json..."));
    ASSERT_TRUE(s.bus.plug(other)) << s.bus.errorText().toStdString();
    EXPECT_EQ(titleWhenIdle(), upgradeSuccessful);
    EXPECT_EQ(s.burned(), s.image());
    EXPECT_TRUE(s.bus.device(other).value(QLatin1String("reports")).toArray().isEmpty());
    EXPECT_TRUE(s.burned(other).isEmpty());
    // Either the other device or the same one is first in bus order now; both count as detected.
    EXPECT_TRUE(s.probe.waitForWholeText(connection, detected));
}

TEST_F(BusFaultTest, UnpluggedDuringTheDownloadTheReportFailsAndTheNextUpdateWorks)
{
    UpdateScenario &s = scenario();
    s.serverFaults.append(QStringLiteral("slow-drip:path=*.img,bytes=20000,ms=100"));
    ASSERT_NO_FATAL_FAILURE(start());
    ASSERT_NO_FATAL_FAILURE(press());
    ASSERT_NO_FATAL_FAILURE(waitForLog("Wait Servier Return File Size..."));
    ASSERT_TRUE(s.bus.unplug(s.model()));
    EXPECT_EQ(titleWhenIdle(), upgradeFailed);
    EXPECT_TRUE(logHas("File MD5 verified successfully."));
    EXPECT_TRUE(logHas("TryToBootloader Failed"));
    EXPECT_TRUE(s.program.runs(usbFlasher).isEmpty());
    expectTheNextUpdateWorks();
}

} // namespace
