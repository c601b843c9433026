#include "tests/update/UpdateWorkflowTest.h"

#include "tests/common/RecordedDebugStream.h"

namespace {

using Outcome = UpdateResult::Outcome;

class UpdateWorkflowBurnTest : public UpdateWorkflowTest
{
};

TEST_F(UpdateWorkflowBurnTest, AnUpdateOverUsbReportsEachStepInOrder)
{
    serve();
    const RecordedDebugStream debug;
    EXPECT_EQ(run().outcome, Outcome::Succeeded);
    EXPECT_EQ(events(), folderAndFetch(QStringLiteral("File MD5 verified successfully.")) + m_enter +
                            m_burnUsb + m_burned + m_resetUsb + m_controlsBack);
    EXPECT_EQ(m_tools.runs(), (QStringList{QLatin1String("usb|image|") + m_paths.downloadedImage(),
                                           QStringLiteral("usb|shcmd|reset")}));
    EXPECT_EQ(m_reporter.fallbacks(),
              (QStringList{QStringLiteral("当前状态: 尝试升级..."), QStringLiteral("当前状态: 升级成功")}));
    EXPECT_EQ(debug.lines().last(), QStringLiteral("删除临时固件文件"));
}

TEST_F(UpdateWorkflowBurnTest, AnUpdateOverHidReportsEachStepInOrder)
{
    serve();
    m_choices.setWriteType(QStringLiteral("HID"));
    const RecordedDebugStream debug;
    EXPECT_EQ(run().outcome, Outcome::Succeeded);
    EXPECT_EQ(
        events(),
        folderAndFetch(QStringLiteral("File MD5 verified successfully.")) + m_enter +
            (QStringList{QStringLiteral("log Current writeType is: HID."),
                         QStringLiteral("log in hid write mode.."),
                         QStringLiteral("log Burn image successfully!\n"), QStringLiteral("progress 100")}) +
            m_burned +
            (QStringList{QStringLiteral("log run hid reset."), QStringLiteral("log try to RunCmdReset..."),
                         QStringLiteral("log RunCmdReset Done.")}) +
            m_controlsBack);
    EXPECT_EQ(m_tools.runs(), (QStringList{QLatin1String("hid|image|") + m_paths.downloadedImage(),
                                           QStringLiteral("hid|shcmd|reset")}));
    EXPECT_TRUE(debug.lines().contains(QStringLiteral("当前烧录的固件程序为: ") + m_paths.downloadedImage()));
}

TEST_F(UpdateWorkflowBurnTest, ALocalFileIsBurnedWithoutFoldersServerOrMd5)
{
    m_choices.setLocalFileMode(true);
    EXPECT_EQ(run().outcome, Outcome::Succeeded);
    EXPECT_EQ(events(), (QStringList{QStringLiteral("log Run LocalFile Update Model!"),
                                     QStringLiteral("title Current Status: Executing Local Flashing")}) +
                            m_enter + m_burnUsb + m_burned + m_resetUsb + m_controlsBack);
    EXPECT_FALSE(QDir(m_paths.temporaryFolder).exists());
    EXPECT_EQ(m_reporter.fallbacks().first(), QStringLiteral("当前状态: 执行本地烧录"));
}

TEST_F(UpdateWorkflowBurnTest, ADeviceAlreadyInItsBootloaderSkipsTheCommandAndStillBurns)
{
    m_choices.setLocalFileMode(true);
    m_choices.setFound(m_choices.device(), true);
    run();
    EXPECT_FALSE(events().contains(QStringLiteral("log (send)")));
    const int at = events().indexOf(QStringLiteral("log try to bootloader..."));
    EXPECT_EQ(events().value(at + 1), QStringLiteral("log Find BootloaderDev Skip try2Bootloader"));
    EXPECT_EQ(events().value(at + 2), QStringLiteral("log Current writeType is: USB."));
    EXPECT_TRUE(events().contains(QStringLiteral("log Burn Image Success")));
}

TEST_F(UpdateWorkflowBurnTest, HidWithAFailedBootloaderEntryRunsNoFlasherAndFails)
{
    m_choices.setLocalFileMode(true);
    m_choices.setWriteType(QStringLiteral("HID"));
    m_host.entersBootloader = false;
    const RecordedDebugStream debug;
    run();
    EXPECT_EQ(events().mid(4),
              (QStringList{QStringLiteral("log (send)"), QStringLiteral("log TryToBootloader Failed"),
                           QStringLiteral("log Current writeType is: HID."),
                           QStringLiteral("log in hid write mode.."),
                           QStringLiteral("log try to bootloader err.")}) +
                  m_failure + m_controlsBack);
    EXPECT_TRUE(m_tools.runs().isEmpty());
    EXPECT_TRUE(debug.lines().contains(QStringLiteral("try to bootloader err")));
}

TEST_F(UpdateWorkflowBurnTest, UsbWithAFailedBootloaderEntryIsTriedForTheGenericDeviceOnly)
{
    m_choices.setLocalFileMode(true);
    m_host.entersBootloader = false;
    run();
    EXPECT_TRUE(m_tools.runs().isEmpty());
    setDevice(QStringLiteral("USB"), 0);
    run();
    EXPECT_EQ(m_tools.runs().value(0), QStringLiteral("usb|image|/srv/an image.img"));
}

TEST_F(UpdateWorkflowBurnTest, AnUnknownWriteTypeFails)
{
    m_choices.setLocalFileMode(true);
    m_choices.setWriteType(QStringLiteral("usb"));
    run();
    EXPECT_EQ(events().mid(6), (QStringList{QStringLiteral("log Current writeType is: usb."),
                                            QStringLiteral("log UnKnow write type.!")}) +
                                   m_failure + m_controlsBack);
    EXPECT_TRUE(m_tools.runs().isEmpty());
    EXPECT_EQ(m_reporter.fallbacks().last(), QStringLiteral("当前状态: 升级失败!"));
}

TEST_F(UpdateWorkflowBurnTest, OnlyARestartBoxThatIsNotCheckablePreventsTheReset)
{
    // The workflow does not know whether the box is ticked: if it is checkable, the device is reset.
    m_choices.setLocalFileMode(true);
    m_choices.setRestartCheckable(false);
    run();
    EXPECT_EQ(m_tools.runs(), QStringList{QStringLiteral("usb|image|/srv/an image.img")});
    EXPECT_EQ(events().mid(events().size() - 4), m_burned + m_controlsBack);
}

TEST_F(UpdateWorkflowBurnTest, AFailedBurnIsNotFollowedByAReset)
{
    m_choices.setLocalFileMode(true);
    m_tools.write(QStringLiteral("usb"), ToolStep::exitWith(0));
    run();
    EXPECT_EQ(m_tools.runs().size(), 1);
    EXPECT_EQ(events().mid(events().size() - 4), m_failure + m_controlsBack);
}

TEST_F(UpdateWorkflowBurnTest, AFailedResetDoesNotMakeTheUpdateFail)
{
    m_choices.setLocalFileMode(true);
    writeFlasher(QStringLiteral("usb"), m_success + ToolStep::vanish());
    EXPECT_EQ(run().outcome, Outcome::Succeeded);
    EXPECT_EQ(m_reporter.logLines().last(), QStringLiteral("Failed to start process!"));
    EXPECT_EQ(m_reporter.titles().last(), QStringLiteral("Current Status: Upgrade Successful"));
}

} // namespace
