#include "tests/endtoend/EndToEnd.h"

#include "harness/process/Polling.h"
#include "harness/session/ModelOnBus.h"
#include "simulator/files/WholeFile.h"

namespace {

using namespace EndToEnd;

const QString zn58 = QStringLiteral("ZN58");
const char *const blocking = "Burn Program Done Now blocking Program because In ZN58|Tessilonix Mode.!";
const char *const begun = "Try To Get File Address...";
/// Qt's value for this icon.
constexpr int informationIcon = 1;

/// The window when a companion program starts it with a mode.
class LaunchModeTest : public EndToEndTest
{
protected:
    UpdateScenario &start(const char *model, const QStringList &arguments)
    {
        UpdateScenario &s = scenario(model);
        s.arguments = arguments;
        EXPECT_TRUE(s.start()) << s.errorText().toStdString();
        return s;
    }

    int linesThatSay(const char *text) const
    {
        return m_scenario->program.updateLogLines().count(QString::fromUtf8(text));
    }

    bool waitForLines(const char *text, int count, int limitMs = updateLimitMs) const
    {
        return pollUntil([&] { return linesThatSay(text) >= count; }, limitMs, 50);
    }

    /// Waits for two seconds, in which a running monitor would change the status.
    void expectButtonAndMonitorStayOff()
    {
        UpdateScenario &s = scenario();
        const int ticks = s.program.updateLogLines().filter(QStringLiteral("Find deviceName: ")).size();
        const QString shown = s.probe.text(connection);
        // After a burn the device restarts.
        ASSERT_TRUE(s.bus.waitForDevice(s.model(), QStringLiteral("application")));
        ASSERT_TRUE(s.bus.unplug(s.model()));
        EXPECT_FALSE(s.probe.waitForWholeText(connection, nothing, 2200)) << "the monitor runs";
        EXPECT_EQ(s.probe.text(connection), shown);
        EXPECT_EQ(s.program.updateLogLines().filter(QStringLiteral("Find deviceName: ")).size(), ticks);
        EXPECT_FALSE(s.probe.isEnabled(startButton));
        EXPECT_EQ(linesThatSay(blocking), 1);
    }

    bool untouched()
    {
        UpdateScenario &s = scenario();
        return s.bus.device(s.model()).value(QLatin1String("reports")).toArray().isEmpty() &&
               s.program.runs(usbFlasher).isEmpty();
    }
};

TEST_F(LaunchModeTest, Zn58ModeWithFurtherArgumentsUpdatesByItselfAndKeepsButtonAndMonitorOff)
{
    UpdateScenario &s = scenario("ZN58");
    // The list is not used in this mode.
    s.program.setControlList(R"({"devices":[{"id":"ZN58","is_on":false}]})");
    start("ZN58",
          {QStringLiteral("ZN58UpDate"), QStringLiteral("TessilonixUpDate"), QStringLiteral("DevMaa")});
    ASSERT_TRUE(waitForLines(blocking, 1));
    EXPECT_TRUE(s.probe.waitForText(title, upgradeSuccessful));
    EXPECT_TRUE(logHas("IsZN58UseMe?: true"));
    EXPECT_EQ(s.burned(), s.image());
    EXPECT_EQ(s.program.runs(usbFlasher).size(), 2);
    expectButtonAndMonitorStayOff();
    EXPECT_EQ(s.closeWindow(5000), 0);
}

TEST_F(LaunchModeTest, TessilonixModeUpdatesTheModelThatIsNamedByItself)
{
    UpdateScenario &s = start(
        "DevMaa", {QStringLiteral("TessilonixUpDate"), QStringLiteral("DevMaa"), QStringLiteral("DevMac")});
    ASSERT_TRUE(waitForLines(blocking, 1));
    EXPECT_TRUE(s.probe.waitForText(title, upgradeSuccessful));
    EXPECT_TRUE(logHas("IsZN58UseMe?: false"));
    EXPECT_EQ(s.burned(), s.image());
    expectButtonAndMonitorStayOff();
}

TEST_F(LaunchModeTest, InTessilonixModeTheRowsIapFlagIsNotCopiedAndTheChipsFlasherRuns)
{
    UpdateScenario &s = start("DevMdq", {QStringLiteral("TessilonixUpDate"), QStringLiteral("DevMdq")});
    ASSERT_TRUE(waitForLines(blocking, 1));
    EXPECT_TRUE(logHas("is img file type."));
    EXPECT_FALSE(logHas("IAP Dev - Run IAPUpDate Mode!"));
    EXPECT_EQ(s.burned(), s.image());
    EXPECT_EQ(s.program.runs(usbFlasher).size(), 2);
}

TEST_F(LaunchModeTest, AWrongMd5EndsInTheBlockingLoop)
{
    UpdateScenario &s = scenario("ZN58");
    s.firmware.setField(zn58, QStringLiteral("md5"), QStringLiteral("00000000000000000000000000000000"));
    start("ZN58", {QStringLiteral("ZN58UpDate")});
    ASSERT_TRUE(waitForLines(blocking, 1));
    EXPECT_TRUE(logHas("File MD5 mismatch."));
    EXPECT_TRUE(s.probe.waitForText(title, md5Failed));
    EXPECT_TRUE(untouched());
    expectButtonAndMonitorStayOff();
}

TEST_F(LaunchModeTest, AFailedFetchEndsInTheBlockingLoopWithButtonAndMonitorOff)
{
    // The failed fetch itself has enabled both just before.
    UpdateScenario &s = scenario("ZN58");
    s.firmware.setManifest(R"({"CurrentVersion":{}})");
    start("ZN58", {QStringLiteral("ZN58UpDate")});
    ASSERT_TRUE(waitForLines(blocking, 1));
    EXPECT_TRUE(logHas("Get File Address Failed!"));
    EXPECT_TRUE(untouched());
    expectButtonAndMonitorStayOff();
}

TEST_F(LaunchModeTest, AFolderThatCannotBeMadeEndsInIdleAndTheMonitorTriesAgain)
{
    UpdateScenario &s = scenario("ZN58");
    ASSERT_TRUE(WholeFile::write(s.program.temporaryFolder() + QStringLiteral("/QuillmarshV3TmpPath")));
    start("ZN58", {QStringLiteral("ZN58UpDate")});
    // The ending enables button and monitor again; the next tick presses the button.
    ASSERT_TRUE(waitForLines("ensurePath Failed!", 2));
    EXPECT_TRUE(s.probe.waitForText(title, QStringLiteral("当前状态: ensurePath Failed")));
    EXPECT_EQ(linesThatSay(blocking), 0);
    EXPECT_TRUE(s.probe.waitForEnabled(startButton, true));
    EXPECT_TRUE(untouched());
}

TEST_F(LaunchModeTest, InZn58ModeADeviceOfAnotherModelIsIgnored)
{
    UpdateScenario &s = scenario("ZN58");
    QJsonObject absent = ModelOnBus::application(zn58);
    absent.insert(QStringLiteral("start"), QStringLiteral("absent"));
    s.devices = {ModelOnBus::application(QStringLiteral("DevMaa")), absent};
    s.program.setControlList({QStringLiteral("DevMaa"), zn58}, {QStringLiteral("USB")});
    start("ZN58", {QStringLiteral("ZN58UpDate")});
    // Three ticks with the other model connected.
    ASSERT_TRUE(pollUntil(
        [&] { return s.program.standardError().count(QStringLiteral("Device List Count:")) >= 3; }));
    EXPECT_EQ(s.probe.text(connection), nothing);
    EXPECT_EQ(s.probe.read(connection).value(QLatin1String("styleSheet")).toString(),
              QStringLiteral("color: blue;"));
    EXPECT_EQ(linesThatSay(begun), 0);
    // The program still waits for the wanted model.
    ASSERT_TRUE(s.bus.plug(zn58));
    EXPECT_TRUE(waitForLines(begun, 1));
}

TEST_F(LaunchModeTest, AModeInOtherLetterCaseIsNormalModeAndWaitsForThePerson)
{
    UpdateScenario &s = start("ZN58", {QStringLiteral("zn58update")});
    ASSERT_TRUE(waitForLines("Find deviceName: ZN58", 3));
    EXPECT_TRUE(s.probe.isVisible(startButton));
    EXPECT_TRUE(s.probe.isEnabled(startButton));
    EXPECT_TRUE(s.probe.isVisible(QStringLiteral("restartBox")));
    EXPECT_EQ(linesThatSay(begun), 0);
    EXPECT_TRUE(logHas("IsZN58UseMe?: false"));
}

TEST_F(LaunchModeTest, ADeviceAlreadyInItsBootloaderDoesNotStartByItself)
{
    UpdateScenario &s = scenario("ZN58");
    s.devices = {ModelOnBus::bootloader(zn58)};
    start("ZN58", {QStringLiteral("ZN58UpDate")});
    ASSERT_TRUE(waitForLines("Run User Chose Mode.", 3));
    EXPECT_EQ(s.probe.text(connection), QStringLiteral("FindBootloader"));
    EXPECT_FALSE(s.probe.isVisible(startButton));
    EXPECT_EQ(linesThatSay(begun), 0);
    EXPECT_TRUE(untouched());
}

TEST_F(LaunchModeTest, TessilonixModeWithoutAModelNameSaysSoAndEndsWithZero)
{
    const QString text = QStringLiteral("TessilonixDev isNull.!");
    for (const QStringList &name : {QStringList(), QStringList{QString()}}) {
        m_scenario.reset();
        UpdateScenario &s = start("DevMaa", QStringList{QStringLiteral("TessilonixUpDate")} + name);
        ASSERT_TRUE(s.probe.waitForWindow(text)) << s.probe.errorText().toStdString();
        EXPECT_EQ(s.probe.window(text).value(QLatin1String("title")).toString(), QStringLiteral("Error"));
        // Intentional: an information box for an error.
        EXPECT_EQ(s.probe.window(text).value(QLatin1String("icon")).toInt(), informationIcon);
        ASSERT_TRUE(s.probe.pressDialogButton(QStringLiteral("OK")));
        EXPECT_EQ(s.bus.waitForExit(), 0);
        EXPECT_TRUE(s.program.updateLog().isEmpty()) << "the main window was created";
    }
}

} // namespace
