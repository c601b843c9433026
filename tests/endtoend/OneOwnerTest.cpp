#include "tests/endtoend/IapTest.h"

#include "harness/session/ModelOnBus.h"

namespace {

using namespace EndToEnd;

/// The state and the image of an update have one owner: an update is not affected by the one before it or by
/// anything that happens meanwhile.
class OneOwnerTest : public IapTest
{
protected:
    /// Makes the manifest contain a wrong MD5 for the model's image.
    void serveWrongMd5()
    {
        UpdateScenario &s = scenario();
        s.firmware.setField(s.model(), QStringLiteral("md5"),
                            QStringLiteral("00000000000000000000000000000000"));
    }
    /// Adds the default image beside the program, which finds it when it starts.
    QString addDefaultImage(const QByteArray &contents)
    {
        const QString path = scenario().program.applicationFolder() + QStringLiteral("/qmake/local.img");
        EXPECT_TRUE(WholeFile::write(path, contents));
        return scenario().program.toProgramPath(path);
    }
};

TEST_F(OneOwnerTest, AnImageWithAWrongMd5IsNotBurnedByTheNextStart)
{
    UpdateScenario &s = scenario();
    const QByteArray mine = "the image beside the program";
    const QString path = addDefaultImage(mine);
    serveWrongMd5();
    EXPECT_EQ(update(), md5Failed);
    ASSERT_TRUE(FileRow::reveal(s.probe));
    EXPECT_EQ(s.probe.text(fileEdit), path);
    ASSERT_TRUE(s.pressStart());
    ASSERT_TRUE(s.probe.waitForText(title, QStringLiteral("Upgrade Successful"), updateLimitMs));
    EXPECT_EQ(s.burned(), mine);
}

TEST_F(OneOwnerTest, AnImageWithAWrongMd5IsNotProgrammedByDownload)
{
    UpdateScenario &s = iapScenario();
    serveWrongMd5();
    startAndPressStart();
    ASSERT_TRUE(s.probe.waitForWholeText(title, md5Failed, updateLimitMs));
    ASSERT_TRUE(s.probe.waitForEnabled(startButton, true));
    ASSERT_TRUE(s.probe.check(iapBox));
    ASSERT_TRUE(s.probe.waitForVisible(panel, true));
    ASSERT_TRUE(s.probe.click(download));
    // There is no other image, and the folder of the default images is not an image.
    ASSERT_TRUE(s.probe.waitForWindow(QStringLiteral("Warning!"), updateLimitMs));
    EXPECT_EQ(runsOf("Start"), QList<QStringList>());
}

TEST_F(OneOwnerTest, AfterASuccessfulUpdateTheEarlierImageIsShownAndBurned)
{
    UpdateScenario &s = scenario();
    const QByteArray mine = "the image beside the program";
    const QString path = addDefaultImage(mine);
    EXPECT_EQ(update(), EndToEnd::upgradeSuccessful);
    EXPECT_EQ(s.burned(), s.image());
    EXPECT_EQ(s.probe.text(fileEdit), path);
    ASSERT_TRUE(waitUntilRestarted());
    ASSERT_TRUE(FileRow::reveal(s.probe));
    ASSERT_TRUE(s.pressStart());
    ASSERT_TRUE(pollUntil([&] { return logHas("Run LocalFile Update Model!"); }));
    EXPECT_EQ(titleWhenIdle(), EndToEnd::upgradeSuccessful);
    EXPECT_EQ(s.burned(), mine);
}

TEST_F(OneOwnerTest, ThePathIsForReadingOnly)
{
    ASSERT_TRUE(scenario().start()) << scenario().errorText().toStdString();
    EXPECT_TRUE(scenario().probe.read(fileEdit).value(QLatin1String("readOnly")).toBool());
}

TEST_F(OneOwnerTest, DownloadWhileAFlasherBurnsIsRefusedWithALineAndChangesNothing)
{
    UpdateScenario &s = scenario();
    s.program.setScript(
        usbFlasher,
        script({{step("sleepMs", 5000), step("burn", true), step("success", true)}, {step("reset", true)}}));
    ASSERT_TRUE(s.start()) << s.errorText().toStdString();
    ASSERT_TRUE(s.probe.check(iapBox));
    ASSERT_TRUE(s.probe.waitForVisible(panel, true));
    ASSERT_TRUE(s.pressStart());
    ASSERT_TRUE(s.probe.waitForText(title, QStringLiteral("Attempting to Upgrade"), updateLimitMs));
    ASSERT_TRUE(s.probe.click(download));
    EXPECT_TRUE(pollUntil([&] { return logHas("Download is not possible while an update is running."); }));
    EXPECT_FALSE(s.probe.isEnabled(startButton));
    EXPECT_EQ(titleWhenIdle(), EndToEnd::upgradeSuccessful);
    EXPECT_EQ(s.burned(), s.image());
    EXPECT_EQ(runsOf("Start"), QList<QStringList>());
    EXPECT_FALSE(logHas("StopCheckConnectTimer."));
}

TEST_F(OneOwnerTest, ADeviceInItsBootloaderIsBurnedEvenIfAnIapDeviceWasConnectedBefore)
{
    UpdateScenario &s = iapScenario();
    const QString chip = QStringLiteral("DevMaa");
    const QByteArray image = s.firmware.addModel(chip, 50000, 7);
    s.devices.append(ModelOnBus::application(chip));
    startAndDetect();
    ASSERT_TRUE(s.bus.client().unplug(chip));
    ASSERT_TRUE(s.bus.client().plugBootloader(chip)) << s.bus.client().errorText().toStdString();
    ASSERT_TRUE(s.probe.waitForWholeText(connection, QStringLiteral("FindBootloader")));
    ASSERT_TRUE(s.probe.click(startButton));
    ASSERT_TRUE(s.probe.waitForWindow(QStringLiteral("选择你的设备")));
    ASSERT_TRUE(s.probe.click(QStringLiteral("choose DevMaa")));
    ASSERT_TRUE(s.probe.waitForText(title, QStringLiteral("Upgrade Successful"), updateLimitMs));
    EXPECT_EQ(s.burned(chip), image);
    EXPECT_EQ(s.burned(s.model()), QByteArray());
    EXPECT_EQ(runsOf("Start"), QList<QStringList>());
}

TEST_F(OneOwnerTest, AClickOnStartWhileTheProgrammerIsAskedTakesEffectAfterwards)
{
    UpdateScenario &s = iapScenario();
    s.program.setScript(
        programmer, scriptFor(QStringLiteral("GetData"),
                              {{step("print", QStringLiteral("no device\n"))},
                               {step("sleepMs", 2000), step("print", QStringLiteral("device: DevMdq;\n"))},
                               {step("print", QStringLiteral("device: DevMdq;\n"))}}));
    start();
    ASSERT_TRUE(s.probe.waitForWholeText(connection, QStringLiteral("IAP Device Detected")));
    ASSERT_TRUE(s.probe.click(startButton));
    EXPECT_EQ(titleOfRun(), IapTest::upgradeSuccessful);
    EXPECT_EQ(s.burned(), s.image());
}

} // namespace
