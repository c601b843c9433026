#include "cli/commands/CheckCommand.h"
#include "cli/commands/CommandContext.h"
#include "support/lock/SystemLock.h"
#include "tests/checks/RecordedFindings.h"
#include "tests/checks/TestServerAddress.h"
#include "update/ProgramPaths.h"

#include <gtest/gtest.h>

namespace {

Finding findingAboutTheLock()
{
    RecordedFindings recorded;
    Options options;
    options.command = Options::Command::Check;
    CommandContext context(options, recorded);
    runCheckCommand(context);
    return recorded.about("update-lock");
}

// On Linux only: elsewhere the lock is shared by the whole machine, and parallel tests would disturb each
// other.
TEST(CheckLockTest, TheLockOfAnotherCopyIsAProblemWhileItIsHeld)
{
    const QTemporaryDir ownRuntimeFolder;
    qputenv("XDG_RUNTIME_DIR", ownRuntimeFolder.path().toLocal8Bit());
    // Nothing listens at this address.
    testServerAddress() = QStringLiteral("http://127.0.0.1:1");
    EXPECT_EQ(findingAboutTheLock().verdict, Finding::Verdict::Ok);
    {
        const SystemLockAttempt held = trySystemLock(ProgramPaths::updateLock());
        ASSERT_TRUE(held.lock);
        EXPECT_EQ(findingAboutTheLock().verdict, Finding::Verdict::Problem);
    }
    EXPECT_EQ(findingAboutTheLock().verdict, Finding::Verdict::Ok);
}

} // namespace
