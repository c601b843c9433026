#include "tests/endtoend/EndToEnd.h"

#include "harness/session/ModelOnBus.h"
#include "simulator/files/WholeFile.h"

namespace {

using namespace EndToEnd;

/// A device that already waits in its bootloader when the program starts.
class BootloaderTest : public EndToEndTest
{
protected:
    void startWithBootloader()
    {
        UpdateScenario &s = scenario();
        s.devices = {ModelOnBus::bootloader(s.model())};
        ASSERT_TRUE(s.start()) << s.errorText().toStdString();
        ASSERT_TRUE(s.probe.waitForWholeText(connection, QStringLiteral("FindBootloader")));
    }
};

TEST_F(BootloaderTest, ADeviceAlreadyInItsBootloaderIsBurnedWithALocalImage)
{
    UpdateScenario &s = scenario();
    const QString image = s.program.applicationFolder() + QStringLiteral("/qmake/local.img");
    const QByteArray bytes("a local image, for once");
    ASSERT_TRUE(WholeFile::write(image, bytes));
    startWithBootloader();
    // The hidden strip in the lower right of the page; the default image is the one beside the program.
    ASSERT_TRUE(s.probe.click(QStringLiteral("flashingPage"),
                              {{QStringLiteral("x"), 730},
                               {QStringLiteral("y"), 310},
                               {QStringLiteral("button"), QStringLiteral("middle")}}));
    ASSERT_TRUE(s.probe.waitForVisible(QStringLiteral("firmwareFileEdit"), true));
    EXPECT_EQ(s.probe.text(QStringLiteral("firmwareFileEdit")), s.program.toProgramPath(image));
    ASSERT_TRUE(s.probe.click(startButton));
    ASSERT_TRUE(s.probe.waitForText(title, QStringLiteral("Upgrade Successful"), updateLimitMs));
    EXPECT_EQ(s.burned(), bytes);
    EXPECT_TRUE(logHas("Run LocalFile Update Model!"));
    EXPECT_TRUE(logHas("Find BootloaderDev Skip try2Bootloader"));
    EXPECT_TRUE(s.bus.device(s.model()).value(QLatin1String("reports")).toArray().isEmpty());
}

TEST_F(BootloaderTest, TheModelIsAskedForAndItsImageBurned)
{
    UpdateScenario &s = scenario();
    startWithBootloader();
    ASSERT_TRUE(s.probe.click(startButton));
    ASSERT_TRUE(s.probe.waitForWindow(QStringLiteral("选择你的设备")));
    ASSERT_TRUE(s.probe.click(QStringLiteral("choose DevMaa")));
    ASSERT_TRUE(s.probe.waitForText(title, QStringLiteral("Upgrade Successful"), updateLimitMs));
    EXPECT_EQ(s.burned(), s.image());
    EXPECT_TRUE(logHas("ChoseDev: DevMaa"));
    EXPECT_TRUE(s.probe.waitForNoWindow(QStringLiteral("选择你的设备")));
}

TEST_F(BootloaderTest, AChooserThatIsClosedWithoutAPickGivesTheControlsBack)
{
    UpdateScenario &s = scenario();
    startWithBootloader();
    ASSERT_TRUE(s.probe.click(startButton));
    ASSERT_TRUE(s.probe.waitForWindow(QStringLiteral("选择你的设备")));
    ASSERT_TRUE(s.probe.close(QStringLiteral("firmwareChooser")));
    ASSERT_TRUE(s.probe.waitForEnabled(startButton, true));
    EXPECT_TRUE(logHas("ChoseDev is null，return"));
    EXPECT_TRUE(s.program.runs(usbFlasher).isEmpty());
}

} // namespace
