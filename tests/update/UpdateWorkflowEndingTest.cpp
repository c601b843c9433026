#include "tests/update/UpdateWorkflowTest.h"

namespace {

using Outcome = UpdateResult::Outcome;

class UpdateWorkflowEndingTest : public UpdateWorkflowTest
{
protected:
    void startedBy(bool zn58)
    {
        m_launch.isZN58Mode = zn58;
        m_launch.isTessilonixMode = !zn58;
    }
    /// Shuts the program down once the blocking loop has slept several times.
    void shutDownAfterBlocking()
    {
        m_clock.whileWatching = [this] {
            if (m_clock.sleeps().count(5) == 100)
                m_clock.shutDown();
        };
    }
    void SetUp() override
    {
        m_choices.watchImage([this] { m_shownImages.append(m_choices.image().path); });
    }
    bool hasTemporaryImage() const { return QFile::exists(m_paths.downloadedImage()); }

    QStringList m_shownImages;
};

TEST_F(UpdateWorkflowEndingTest, TheFoldersAreCreatedBeforeTheFetch)
{
    run();
    EXPECT_TRUE(QDir(m_paths.temporaryFolder + QStringLiteral("/qmake")).exists());
    EXPECT_TRUE(QDir(m_paths.temporaryFolder + QStringLiteral("/tmp")).exists());
}

TEST_F(UpdateWorkflowEndingTest, AFolderThatCannotBeCreatedEndsTheRunInEveryMode)
{
    ASSERT_TRUE(QFile(m_paths.temporaryFolder).open(QIODevice::WriteOnly));
    const QStringList expected{QStringLiteral("log usb tmpPath: ") + m_paths.temporaryFolder,
                               QStringLiteral("log %1 cannot be created.").arg(m_paths.temporaryFolder),
                               QStringLiteral("log ensurePath Failed!"),
                               QStringLiteral("title Current Status: ensurePath Failed!"),
                               QStringLiteral("check 1"),
                               QStringLiteral("button 1")};
    const UpdateResult failure{Outcome::Failed, UpdateStage::Fetching, UpdateReason::FolderUnusable};
    EXPECT_EQ(run(), failure);
    EXPECT_EQ(events(), expected);
    startedBy(true);
    EXPECT_EQ(run(), failure);
    EXPECT_TRUE(m_session->isStartAllowed());
    EXPECT_EQ(events(), expected + expected);
    EXPECT_EQ(m_reporter.fallbacks().first(), QStringLiteral("当前状态: ensurePath Failed"));
}

TEST_F(UpdateWorkflowEndingTest, AWrongMd5EndsTheRunBeforeAnyDeviceAccessAndKeepsTheImage)
{
    serve(QStringLiteral("0"));
    EXPECT_EQ(run(), (UpdateResult{Outcome::Failed, UpdateStage::Fetching, UpdateReason::ChecksumMismatch}));
    EXPECT_EQ(events(), folderAndFetch(QStringLiteral("File MD5 mismatch.")) +
                            (QStringList{QStringLiteral("title Current Status: md5 failed!")}) +
                            m_controlsBack);
    EXPECT_TRUE(hasTemporaryImage());
    EXPECT_TRUE(m_tools.runs().isEmpty());
    EXPECT_EQ(m_reporter.fallbacks(), QStringList{QStringLiteral("当前状态: md5对比失败")});
}

TEST_F(UpdateWorkflowEndingTest, AFailedFetchEndsWithTheTitleOfAWrongMd5)
{
    EXPECT_EQ(run(), (UpdateResult{Outcome::Failed, UpdateStage::Fetching, UpdateReason::DownloadFailed}));
    EXPECT_EQ(events(), folderAndFetch(QStringLiteral("get file md5 failed.!")) +
                            (QStringList{QStringLiteral("title Current Status: md5 failed!")}) +
                            m_controlsBack);
}

TEST_F(UpdateWorkflowEndingTest, InALaunchModeAWrongMd5EndsInTheBlockingLoop)
{
    for (const bool zn58 : {true, false}) {
        startedBy(zn58);
        serve(QStringLiteral("0"));
        shutDownAfterBlocking();
        const int before = events().size();
        m_session.reset();
        EXPECT_EQ(run().reason, UpdateReason::ChecksumMismatch);
        EXPECT_EQ(m_session->stage(), UpdateStage::Blocked);
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
    shutDownAfterBlocking();
    EXPECT_EQ(run(), (UpdateResult{Outcome::Succeeded, UpdateStage::Resetting, UpdateReason::None}));
    EXPECT_EQ(m_session->stage(), UpdateStage::Blocked);
    EXPECT_EQ(events().mid(events().size() - 4), m_resetUsb + m_blocked);
    EXPECT_TRUE(hasTemporaryImage());
}

TEST_F(UpdateWorkflowEndingTest, TheTemporaryImageIsDeletedAtTheNormalEndingAlsoAfterAFailedBurn)
{
    serve();
    run();
    EXPECT_FALSE(hasTemporaryImage());
    serve();
    m_tools.write(QStringLiteral("usb"), ToolStep::exitWith(0));
    run();
    EXPECT_FALSE(hasTemporaryImage());
}

TEST_F(UpdateWorkflowEndingTest, AnIapDeviceIsPassedToThePanel)
{
    serve();
    setDevice(QStringLiteral("M1"), 1);
    run();
    EXPECT_EQ(m_session->stage(), UpdateStage::AskingProgrammer);
    EXPECT_EQ(m_session->image(), m_paths.downloadedImage());
    EXPECT_EQ(events(), folderAndFetch(QStringLiteral("File MD5 verified successfully.")) +
                            (QStringList{QStringLiteral("log IAP Dev - Run IAPUpDate Mode!"),
                                         QStringLiteral("log (panel)")}));
    EXPECT_TRUE(hasTemporaryImage());
}

TEST_F(UpdateWorkflowEndingTest, AnIapDeviceWithoutAPanelGivesTheControlsBack)
{
    m_choices.setLocalFileMode(true);
    setDevice(QStringLiteral("M1"), 1);
    m_host.hasPanel = false;
    EXPECT_EQ(run(), (UpdateResult{Outcome::Failed, UpdateStage::AskingProgrammer, UpdateReason::NoPanel}));
    EXPECT_EQ(events().mid(2), (QStringList{QStringLiteral("log IAP Dev - Run IAPUpDate Mode!"),
                                            QStringLiteral("log (panel)")}) +
                                   m_controlsBack);
}

TEST_F(UpdateWorkflowEndingTest, AnIapFlagWithoutADeviceNameIsNoIapDevice)
{
    m_choices.setLocalFileMode(true);
    setDevice(QString(), 1);
    EXPECT_EQ(run().outcome, Outcome::Succeeded);
    EXPECT_EQ(events().mid(2, m_enter.size()), m_enter);
}

TEST_F(UpdateWorkflowEndingTest, ShuttingDownWhileTheFlasherRunsIsReportedInsteadOfAResult)
{
    m_choices.setLocalFileMode(true);
    m_tools.write(QStringLiteral("usb"), ToolStep::hang());
    m_clock.whileWatching = [this] {
        if (!m_tools.runs().isEmpty())
            m_clock.shutDown();
    };
    EXPECT_EQ(run(), (UpdateResult{Outcome::Cancelled, UpdateStage::Flashing, UpdateReason::ProgramClosed}));
    EXPECT_EQ(m_session->stage(), UpdateStage::ProgramClosed);
    EXPECT_EQ(events().mid(events().size() - 2),
              (QStringList{QStringLiteral("log in usb write mode.."),
                           QStringLiteral("log The program was closed before the update had ended.")}));
}

TEST_F(UpdateWorkflowEndingTest, TheControlsComeBackOnceAndOnlyWhenTheNextStartIsAllowed)
{
    m_choices.setLocalFileMode(true);
    QList<bool> allowed;
    m_reporter.onControlsBack = [&] {
        allowed.append(m_session->isStartAllowed());
    };
    run();
    EXPECT_EQ(allowed, QList<bool>{true});
    serve(QStringLiteral("0"));
    m_choices.setLocalFileMode(false);
    run();
    EXPECT_EQ(allowed, (QList<bool>{true, true}));
}

TEST_F(UpdateWorkflowEndingTest, ARejectedImageNeverBecomesTheImageToBurn)
{
    serve(QStringLiteral("0"));
    run();
    EXPECT_EQ(m_choices.image().path, m_image);
    EXPECT_EQ(m_shownImages, QStringList());
}

TEST_F(UpdateWorkflowEndingTest, ASuccessfulRunRestoresTheEarlierImage)
{
    serve();
    run();
    EXPECT_EQ(m_shownImages, (QStringList{m_paths.downloadedImage(), m_image}));
    EXPECT_FALSE(hasTemporaryImage());
}

TEST_F(UpdateWorkflowEndingTest, AFilePickedDuringTheBurnCountsForTheNextStart)
{
    m_choices.setLocalFileMode(true);
    m_tools.write(QStringLiteral("usb"), ToolStep::print("Open upg device failed\n"));
    m_clock.whileWatching = [this] {
        m_choices.chooseImage({QStringLiteral("/srv/next.img"), FirmwareImage::Origin::User, false, {}});
    };
    run();
    EXPECT_EQ(m_tools.runs().count(QStringLiteral("usb|image|/srv/an image.img")), 10);
    EXPECT_EQ(m_choices.image().path, QStringLiteral("/srv/next.img"));
}

TEST_F(UpdateWorkflowEndingTest, ACheckedIapImageStaysForTheNextDownload)
{
    m_source.serve(m_paths.downloadedIapImage(), QStringLiteral("5d41402abc4b2a76b9719d911017c592"));
    setDevice(QStringLiteral("M1"), 1);
    run();
    EXPECT_EQ(m_choices.image().path, m_paths.downloadedIapImage());
    EXPECT_TRUE(QFile::exists(m_paths.downloadedIapImage()));
}

TEST_F(UpdateWorkflowEndingTest, ADeviceInItsBootloaderIsBurnedEvenIfAnIapDeviceWasConnectedBefore)
{
    serve();
    setDevice(QStringLiteral("M2"), 1);
    m_choices.setFound(m_choices.device(), true);
    EXPECT_EQ(run().outcome, Outcome::Succeeded);
    EXPECT_FALSE(m_reporter.logLines().contains(QStringLiteral("(panel)")));
    EXPECT_EQ(m_tools.runs().value(0), QLatin1String("usb|image|") + m_paths.downloadedImage());
}

} // namespace
