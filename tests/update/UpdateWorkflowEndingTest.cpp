#include "tests/update/UpdateWorkflowTest.h"

namespace {

using Ending = UpdateWorkflow::Ending;

class UpdateWorkflowEndingTest : public UpdateWorkflowTest
{
protected:
    void startedBy(bool zn58)
    {
        m_launch.isZN58Mode = zn58;
        m_launch.isTessilonixMode = !zn58;
    }
    /// Leaves the program once the blocking loop has slept often.
    void leaveAfterBlocking()
    {
        m_clock.whileWatching = [this] {
            if (m_clock.sleeps().count(5) == 100)
                m_clock.leave();
        };
    }
    bool hasTemporaryImage() const { return QFile::exists(m_paths.downloadedImage()); }
};

TEST_F(UpdateWorkflowEndingTest, TheFoldersAreMadeBeforeTheFetch)
{
    run();
    EXPECT_TRUE(QDir(m_paths.temporaryFolder + QStringLiteral("/qmake")).exists());
    EXPECT_TRUE(QDir(m_paths.temporaryFolder + QStringLiteral("/tmp")).exists());
}

TEST_F(UpdateWorkflowEndingTest, AFolderThatCannotBeMadeEndsTheRunInEveryMode)
{
    ASSERT_TRUE(QFile(m_paths.temporaryFolder).open(QIODevice::WriteOnly));
    const QStringList expected{QStringLiteral("log usb tmpPath: ") + m_paths.temporaryFolder,
                               QStringLiteral("log %1 cannot be created.").arg(m_paths.temporaryFolder),
                               QStringLiteral("log ensurePath Failed!"),
                               QStringLiteral("title Current Status: ensurePath Failed!"),
                               QStringLiteral("check 1"),
                               QStringLiteral("button 1")};
    EXPECT_EQ(run(), Ending::ControlsBack);
    EXPECT_EQ(events(), expected);
    startedBy(true);
    EXPECT_EQ(run(), Ending::ControlsBack);
    EXPECT_EQ(events(), expected + expected);
    EXPECT_EQ(m_reporter.fallbacks().first(), QStringLiteral("当前状态: ensurePath Failed"));
}

TEST_F(UpdateWorkflowEndingTest, AWrongSumEndsTheRunBeforeAnyDeviceAccessAndKeepsTheImage)
{
    serve(QStringLiteral("0"));
    EXPECT_EQ(run(), Ending::ControlsBack);
    EXPECT_EQ(events(), folderAndFetch(QStringLiteral("File MD5 mismatch.")) +
                            (QStringList{QStringLiteral("title Current Status: md5 failed!")}) +
                            m_controlsBack);
    EXPECT_TRUE(hasTemporaryImage());
    EXPECT_TRUE(m_tools.runs().isEmpty());
    EXPECT_EQ(m_reporter.fallbacks(), QStringList{QStringLiteral("当前状态: md5对比失败")});
}

TEST_F(UpdateWorkflowEndingTest, AFailedFetchEndsWithTheSumsTitleToo)
{
    EXPECT_EQ(run(), Ending::ControlsBack);
    EXPECT_EQ(events(), folderAndFetch(QStringLiteral("get file md5 failed.!")) +
                            (QStringList{QStringLiteral("title Current Status: md5 failed!")}) +
                            m_controlsBack);
}

TEST_F(UpdateWorkflowEndingTest, InALaunchModeAWrongSumEndsInTheBlockingLoop)
{
    for (const bool zn58 : {true, false}) {
        startedBy(zn58);
        serve(QStringLiteral("0"));
        leaveAfterBlocking();
        const int before = events().size();
        EXPECT_EQ(run(), Ending::LaunchMode);
        EXPECT_EQ(events().mid(before),
                  folderAndFetch(QStringLiteral("File MD5 mismatch.")) +
                      (QStringList{QStringLiteral("title Current Status: md5 failed!")}) + m_blocked);
        EXPECT_GE(m_clock.sleeps().count(5), 100);
        EXPECT_TRUE(hasTemporaryImage());
        m_clock = WatchingClock();
    }
}

TEST_F(UpdateWorkflowEndingTest, InALaunchModeASuccessEndsInTheBlockingLoopAndKeepsTheImage)
{
    startedBy(false);
    serve();
    leaveAfterBlocking();
    EXPECT_EQ(run(), Ending::LaunchMode);
    EXPECT_EQ(events().mid(events().size() - 6), m_resetUsb + m_blocked);
    EXPECT_TRUE(hasTemporaryImage());
}

TEST_F(UpdateWorkflowEndingTest, TheTemporaryImageIsDeletedAtTheNormalEndingAlsoAfterAFailedBurn)
{
    serve();
    run();
    EXPECT_FALSE(hasTemporaryImage());
    serve();
    m_tools.write(QStringLiteral("usb"), Told::exitWith(0));
    run();
    EXPECT_FALSE(hasTemporaryImage());
}

TEST_F(UpdateWorkflowEndingTest, AnIapDeviceIsHandedOverToItsPanel)
{
    serve();
    setDevice(QStringLiteral("M1"), 1);
    EXPECT_EQ(run(), Ending::HandedOver);
    EXPECT_EQ(events(), folderAndFetch(QStringLiteral("File MD5 verified successfully.")) +
                            (QStringList{QStringLiteral("log IAP Dev - Run IAPUpDate Mode!"),
                                         QStringLiteral("log (panel)")}));
    EXPECT_TRUE(hasTemporaryImage());
}

TEST_F(UpdateWorkflowEndingTest, AnIapDeviceWithoutAPanelGivesTheControlsBack)
{
    m_state.setLocalFileMode(true);
    setDevice(QStringLiteral("M1"), 1);
    m_host.hasPanel = false;
    EXPECT_EQ(run(), Ending::ControlsBack);
    EXPECT_EQ(events().mid(2), (QStringList{QStringLiteral("log IAP Dev - Run IAPUpDate Mode!"),
                                            QStringLiteral("log (panel)")}) +
                                   m_controlsBack);
}

TEST_F(UpdateWorkflowEndingTest, AnIapFlagWithoutADeviceNameIsNoIapDevice)
{
    m_state.setLocalFileMode(true);
    setDevice(QString(), 1);
    EXPECT_EQ(run(), Ending::ControlsBack);
    EXPECT_EQ(events().mid(2, m_enter.size()), m_enter);
}

TEST_F(UpdateWorkflowEndingTest, LeavingWhileTheFlasherRunsReportsNoResultButThatTheProgramWasClosed)
{
    m_state.setLocalFileMode(true);
    m_tools.write(QStringLiteral("usb"), Told::hang());
    m_clock.whileWatching = [this] {
        if (!m_tools.runs().isEmpty())
            m_clock.leave();
    };
    EXPECT_EQ(run(), Ending::Leaving);
    EXPECT_EQ(events().mid(events().size() - 2),
              (QStringList{QStringLiteral("log in usb write mode.."),
                           QStringLiteral("log The program was closed before the update had ended.")}));
}

TEST_F(UpdateWorkflowEndingTest, TheControlsComeBackOnlyWhenTheRunIsFinished)
{
    m_state.setLocalFileMode(true);
    UpdateWorkflow workflow(m_reporter, m_state, m_host, m_clock, m_paths, m_launch, m_source);
    const Ending ending = workflow.run();
    EXPECT_FALSE(events().contains(QStringLiteral("button 1")));
    workflow.finish(ending);
    EXPECT_EQ(events().mid(events().size() - 2), m_controlsBack);
}

} // namespace
