#include "report/LastRun.h"

#include "session/UpdateSession.h"
#include "support/log/QuietReporter.h"
#include "tests/common/OwnLockFile.h"

#include <QJsonObject>

#include <gtest/gtest.h>

namespace {

using Outcome = UpdateResult::Outcome;

QStringList logOf(const QByteArray &lines)
{
    return QString::fromUtf8(lines).split(QLatin1Char('\n'));
}

const QByteArray wholeUpdate = "[2026-03-01 10:00:00] Find deviceName: DevMaa\n"
                               "[2026-03-01 10:00:01] usb tmpPath: /tmp/x\n"
                               "[2026-03-01 10:00:08] File MD5 verified successfully.\n"
                               "[2026-03-01 10:00:09] try to bootloader...\n"
                               "[2026-03-01 10:00:11] in usb write mode..\n"
                               "[2026-03-01 10:01:00] Burn Image Success\n"
                               "[2026-03-01 10:01:00] run usb reset.\n"
                               "[2026-03-01 10:01:03] RunCmdReset Done.\n"
                               "[2026-03-01 10:05:00] Find deviceName: DevMaa\n";

TEST(LastRunTest, ALogWithoutAnUpdateHasNoLastRun)
{
    EXPECT_FALSE(LastRun::fromLog({}));
    EXPECT_FALSE(LastRun::fromLog(logOf("[2026-03-01 10:00:00] Find deviceName: DevMaa\nno time\n"
                                        "[2026-03-01 10:00:01] Burn Image Failed\n")));
}

TEST(LastRunTest, EachStageOfAWholeUpdateHasItsDuration)
{
    const auto run = LastRun::fromLog(logOf(wholeUpdate));
    ASSERT_TRUE(run);
    EXPECT_EQ(run->outcome, Outcome::Succeeded);
    EXPECT_EQ(run->stage, UpdateStage::Resetting);
    EXPECT_EQ(run->seconds, (QMap<UpdateStage, double>{{UpdateStage::Fetching, 8},
                                                       {UpdateStage::EnteringBootloader, 2},
                                                       {UpdateStage::Flashing, 49},
                                                       {UpdateStage::Resetting, 3}}));
    EXPECT_FALSE(run->isKnown);
}

TEST(LastRunTest, TheLastOfSeveralUpdatesIsReported)
{
    const auto run = LastRun::fromLog(logOf(wholeUpdate + "[2026-03-01 11:00:00] usb tmpPath: /tmp/x\n"
                                                          "[2026-03-01 11:00:20] get file md5 failed.!\n"
                                                          "[2026-03-01 11:30:00] Find deviceName: DevMaa\n"));
    ASSERT_TRUE(run);
    EXPECT_EQ(run->outcome, Outcome::Failed);
    EXPECT_EQ(run->seconds, (QMap<UpdateStage, double>{{UpdateStage::Fetching, 20}}));
}

TEST(LastRunTest, AnUpdateThatHasNotEndedHasNoOutcome)
{
    const auto run = LastRun::fromLog(logOf("[2026-03-01 10:00:00] Run LocalFile Update Model!\n"
                                            "[2026-03-01 10:00:02] try to bootloader...\n"
                                            "[2026-03-01 10:00:03] in hid write mode..\n"
                                            "[2026-03-01 10:00:07] Upgrade fwc: image.target.spl\n"));
    ASSERT_TRUE(run);
    EXPECT_FALSE(run->outcome);
    EXPECT_EQ(run->seconds.value(UpdateStage::Flashing), 4);
    EXPECT_EQ(run->toJson().toObject().value(QLatin1String("outcome")), QJsonValue());
}

TEST(LastRunTest, ALogThatBeginsWithinAnUpdateOrGoesBackInTimeIsRead)
{
    const auto run = LastRun::fromLog(logOf("[2026-03-01 10:00:05] in usb write mode..\n"
                                            "[2026-03-01 10:00:09] usb tmpPath: /tmp/x\n"
                                            "[2026-03-01 09:00:00] try to bootloader...\n"
                                            "[2026-99-01 09:00:00] in usb write mode..\n"
                                            "[2026-03-01 09:00:01] Burn Image Failed"));
    ASSERT_TRUE(run);
    EXPECT_EQ(run->outcome, Outcome::Failed);
    EXPECT_EQ(run->seconds.value(UpdateStage::Fetching), 0);
    EXPECT_EQ(run->stage, UpdateStage::EnteringBootloader);
}

TEST(LastRunTest, AnUpdateOfThisProgramIsKnownWithItsReason)
{
    const QTemporaryDir folder;
    UpdateLock lock(ownLockFile(folder));
    UpdateSession session(lock);
    EXPECT_FALSE(LastRun::of(session));
    QuietReporter quiet;
    ASSERT_TRUE(session.begin(UpdateStage::Fetching, quiet));
    session.enter(UpdateStage::EnteringBootloader);
    EXPECT_FALSE(LastRun::of(session)) << "it has not ended";
    session.end(UpdateReason::BootloaderNotEntered, UpdateSession::Afterwards::Idle, {});
    const auto run = LastRun::of(session);
    ASSERT_TRUE(run);
    const QJsonObject json = run->toJson().toObject();
    EXPECT_EQ(json.value(QLatin1String("source")).toString(), QStringLiteral("program"));
    EXPECT_EQ(json.value(QLatin1String("outcome")).toString(), QStringLiteral("failed"));
    EXPECT_EQ(json.value(QLatin1String("stage")).toString(), QStringLiteral("entering-bootloader"));
    EXPECT_EQ(json.value(QLatin1String("reason")).toString(), QStringLiteral("bootloader-not-entered"));
    EXPECT_EQ(json.value(QLatin1String("seconds")).toObject().keys(),
              (QStringList{QStringLiteral("entering-bootloader"), QStringLiteral("fetching")}));
}

} // namespace
