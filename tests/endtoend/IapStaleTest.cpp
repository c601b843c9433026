#include "tests/common/TextList.h"
#include "tests/endtoend/IapTest.h"

#include "harness/BuildPaths.h"
#include "harness/session/ModelOnBus.h"

namespace {

using namespace EndToEnd;

/// The tool that kills programmers of an earlier copy. It is played by a stand-in on the search path.
class IapStaleTest : public IapTest
{
protected:
    static void addTaskkill(UpdateScenario &s)
    {
        ASSERT_TRUE(s.program.addTool(taskkill(), BuildPaths::standIn(), script({{step("exit", 0)}})));
        s.program.setVariable(QStringLiteral("PATH"), s.program.applicationFolder() + QLatin1Char(':') +
                                                          qEnvironmentVariable("PATH"));
    }
    static QString taskkill() { return QStringLiteral("taskkill"); }
};

TEST_F(IapStaleTest, StaleProgrammersAreEndedAtTheBeginningAndAtTheEnd)
{
    UpdateScenario &s = iapScenario();
    addTaskkill(s);
    start();
    ASSERT_TRUE(waitForLog("create IAPUpDate Mode done."));
    const QStringList arguments = list({"/F", "/IM", "IAP_Programmer.exe"});
    EXPECT_EQ(argumentsOf(s.program, taskkill()), QList<QStringList>{arguments});
    EXPECT_EQ(s.closeWindow(), 0);
    EXPECT_EQ(argumentsOf(s.program, taskkill()), (QList<QStringList>{arguments, arguments}));
}

TEST_F(IapStaleTest, ACopyThatComesAndGoesLeavesTheProgrammerOfAnUpdateAlone)
{
    UpdateScenario &s =
        iapScenario({{step("print", QStringLiteral("SetProgress: 42\n")), step("sleepMs", 6000),
                      step("program", true), step("print", QStringLiteral("SetProgress:100\n"))}});
    startAndPressStart();
    ASSERT_TRUE(waitForProgress(42));

    UpdateScenario second(s.model());
    second.withServer = false;
    second.program.shareUserOf(s.program);
    addTaskkill(second);
    ASSERT_TRUE(second.start()) << second.errorText().toStdString();
    const QString made = QStringLiteral("create IAPUpDate Mode done.");
    ASSERT_TRUE(pollUntil([&] { return second.program.updateLogLines().contains(made); }, eventLimitMs, 20));
    EXPECT_TRUE(second.program.updateLogLines().contains(
        QStringLiteral("The IAP programmer is not asked for its ports while another copy of this program is "
                       "updating a device.")));
    EXPECT_EQ(second.closeWindow(), 0);
    EXPECT_EQ(argumentsOf(second.program, taskkill()), QList<QStringList>());
    EXPECT_EQ(argumentsOf(second.program, programmer), QList<QStringList>());

    EXPECT_EQ(titleOfRun(), upgradeSuccessful);
    EXPECT_EQ(s.burned(), s.image());
}

} // namespace
