#include "support/lock/UpdateLock.h"
#include "tests/endtoend/IapTest.h"

namespace {

using namespace EndToEnd;

/// The update lock as another copy of the program sees it.
class IapLockTest : public IapTest
{
protected:
    bool isTaken()
    {
        return UpdateLock(scenario().program.runtimeFolder() + QStringLiteral("/QuillmarshV3TmpPath.lock"))
            .isTakenElsewhere();
    }
};

TEST_F(IapLockTest, OtherCopiesAreKeptOutWhileTheProgrammerRuns)
{
    iapScenario({{step("print", QStringLiteral("SetProgress: 42\n")), step("sleepMs", 2500),
                  step("program", true), step("print", QStringLiteral("SetProgress:100\n"))}});
    startAndDetect();
    EXPECT_FALSE(isTaken());
    ASSERT_TRUE(scenario().pressStart());
    ASSERT_TRUE(waitForProgress(42));
    EXPECT_TRUE(isTaken());
    EXPECT_EQ(titleOfRun(), upgradeSuccessful);
    EXPECT_FALSE(isTaken());
}

TEST_F(IapLockTest, AfterARefusedFileOtherCopiesAreNotKeptOut)
{
    UpdateScenario &s = iapScenario();
    s.withServer = false;
    startAndDetect();
    chooseFile(QStringLiteral("mine.img"), "not for this device");
    ASSERT_TRUE(s.pressStart());
    ASSERT_TRUE(s.probe.waitForWindow(QStringLiteral("Warning!"))) << s.probe.errorText().toStdString();
    EXPECT_TRUE(isTaken());
    ASSERT_TRUE(s.probe.pressDialogButton(QStringLiteral("Ok")));
    ASSERT_TRUE(s.probe.waitForEnabled(startButton, true));
    EXPECT_FALSE(isTaken());
}

TEST_F(IapLockTest, IfTheProgrammerCannotBeStartedOtherCopiesAreNotKeptOut)
{
    UpdateScenario &s = iapScenario();
    ASSERT_TRUE(QFile::remove(s.program.applicationFolder() + QLatin1Char('/') + programmer));
    start();
    ASSERT_TRUE(s.probe.waitForText(connection, QStringLiteral("IAP Device Detected")));
    ASSERT_TRUE(s.pressStart());
    ASSERT_TRUE(waitForLog("StopCheckConnectTimer."));
    EXPECT_TRUE(pollUntil([&] { return !isTaken(); }));
}

} // namespace
