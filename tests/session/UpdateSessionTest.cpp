#include "session/UpdateSession.h"

#include "tests/common/OwnLockFile.h"
#include "tests/common/RecordingReporter.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

using Afterwards = UpdateSession::Afterwards;
using Outcome = UpdateResult::Outcome;

class UpdateSessionTest : public testing::Test
{
protected:
    bool begin() { return m_session.begin(UpdateStage::Fetching, m_reporter); }
    void end(Afterwards afterwards)
    {
        m_session.end(UpdateReason::None, afterwards, [this] { ++m_controlsBack; });
    }
    /// Returns whether another copy of the program could begin an update.
    bool isLockFree()
    {
        UpdateLock other(ownLockFile(m_folder));
        return other.take(m_reporter) != nullptr;
    }

    QTemporaryDir m_folder;
    RecordingReporter m_reporter;
    UpdateLock m_lock{ownLockFile(m_folder)};
    UpdateSession m_session{m_lock};
    int m_controlsBack = 0;
};

TEST_F(UpdateSessionTest, OnlyOneUpdateRunsAtATime)
{
    EXPECT_TRUE(m_session.isStartAllowed());
    EXPECT_TRUE(begin());
    EXPECT_TRUE(m_session.isRunning());
    EXPECT_FALSE(m_session.isStartAllowed());
    EXPECT_FALSE(begin());
    end(Afterwards::Idle);
    EXPECT_FALSE(m_session.isRunning());
    EXPECT_TRUE(begin());
}

TEST_F(UpdateSessionTest, AnotherCopyIsKeptOutFromTheBeginningToTheEnd)
{
    EXPECT_TRUE(isLockFree());
    begin();
    EXPECT_FALSE(isLockFree());
    end(Afterwards::Idle);
    EXPECT_TRUE(isLockFree());
}

TEST_F(UpdateSessionTest, WhileAnotherCopyUpdatesNothingBeginsAndALineSaysWhy)
{
    UpdateLock other(ownLockFile(m_folder));
    const UpdateLock::Hold hold = other.take(m_reporter);
    EXPECT_FALSE(begin());
    EXPECT_TRUE(m_session.isStartAllowed());
    ASSERT_EQ(m_reporter.logLines().size(), 1);
    EXPECT_TRUE(m_reporter.logLines().first().contains(QStringLiteral("Another copy")));
}

TEST_F(UpdateSessionTest, ADeviceIsBeingWrittenInTwoStagesOnly)
{
    begin();
    QList<UpdateStage> writing;
    for (const UpdateStage stage :
         {UpdateStage::AskingForModel, UpdateStage::Fetching, UpdateStage::EnteringBootloader,
          UpdateStage::Flashing, UpdateStage::Resetting, UpdateStage::AskingProgrammer,
          UpdateStage::Programming}) {
        m_session.enter(stage);
        EXPECT_EQ(m_session.stage(), stage);
        if (m_session.isWritingDevice())
            writing.append(stage);
    }
    EXPECT_EQ(writing, (QList<UpdateStage>{UpdateStage::Flashing, UpdateStage::Programming}));
}

TEST_F(UpdateSessionTest, TheResultNamesTheLastStage)
{
    begin();
    m_session.enter(UpdateStage::EnteringBootloader);
    m_session.end(UpdateReason::BootloaderNotEntered, Afterwards::Idle, {});
    EXPECT_EQ(m_session.lastResult(), (UpdateResult{Outcome::Failed, UpdateStage::EnteringBootloader,
                                                    UpdateReason::BootloaderNotEntered}));
}

TEST_F(UpdateSessionTest, TheControlsComeBackOnceAndAfterResultLockAndState)
{
    begin();
    m_session.end(UpdateReason::None, Afterwards::Idle, [this] {
        ++m_controlsBack;
        EXPECT_EQ(m_session.lastResult().outcome, Outcome::Succeeded);
        EXPECT_TRUE(isLockFree());
        EXPECT_TRUE(m_session.isStartAllowed());
    });
    end(Afterwards::Idle);
    EXPECT_EQ(m_controlsBack, 1);
}

TEST_F(UpdateSessionTest, AfterALaunchModesUpdateNothingBeginsAndTheControlsStayOff)
{
    begin();
    end(Afterwards::Blocked);
    EXPECT_EQ(m_session.stage(), UpdateStage::Blocked);
    EXPECT_FALSE(begin());
    EXPECT_EQ(m_controlsBack, 0);
    EXPECT_TRUE(isLockFree());
}

TEST_F(UpdateSessionTest, AfterTheProgramWasClosedNothingBegins)
{
    begin();
    end(Afterwards::ProgramClosed);
    EXPECT_EQ(m_session.stage(), UpdateStage::ProgramClosed);
    EXPECT_FALSE(begin());
    EXPECT_EQ(m_controlsBack, 0);
}

TEST_F(UpdateSessionTest, WithoutAnUpdateThereIsNoStageToEnterAndNoImage)
{
    m_session.enter(UpdateStage::Flashing);
    m_session.useImage(QStringLiteral("/srv/a.img"));
    EXPECT_EQ(m_session.stage(), UpdateStage::Idle);
    EXPECT_EQ(m_session.image(), QString());
    begin();
    m_session.useImage(QStringLiteral("/srv/a.img"));
    EXPECT_EQ(m_session.image(), QStringLiteral("/srv/a.img"));
    end(Afterwards::Idle);
    EXPECT_EQ(m_session.image(), QString());
}

TEST_F(UpdateSessionTest, TheTimesOfTheStagesAreThoseOfTheUpdateThatEndedLast)
{
    using Stages = QList<UpdateStage>;
    begin();
    m_session.enter(UpdateStage::Flashing);
    EXPECT_TRUE(m_session.lastSeconds().isEmpty());
    end(Afterwards::Idle);
    const Stages reached{UpdateStage::Fetching, UpdateStage::Flashing};
    EXPECT_EQ(m_session.lastSeconds().keys(), reached);
    begin();
    EXPECT_EQ(m_session.lastSeconds().keys(), reached);
    end(Afterwards::Idle);
    EXPECT_EQ(m_session.lastSeconds().keys(), Stages{UpdateStage::Fetching});
}

TEST_F(UpdateSessionTest, EachNewStageIsReportedOnce)
{
    QList<UpdateStage> told;
    m_session.watchStages([&told](UpdateStage stage) { told.append(stage); });
    begin();
    m_session.enter(UpdateStage::Flashing);
    m_session.enter(UpdateStage::Flashing);
    end(Afterwards::Idle);
    EXPECT_EQ(told, (QList<UpdateStage>{UpdateStage::Fetching, UpdateStage::Flashing, UpdateStage::Idle}));
}

} // namespace
