#include "tests/endtoend/EndToEnd.h"

namespace {

using namespace EndToEnd;

/// A user with a non-ASCII name, in whose folders the program, temporary and log files are.
class UserFolderTest : public EndToEndTest
{
};

TEST_F(UserFolderTest, ChineseCharactersAndBlanksInEveryPathAreNoObstacle)
{
    m_scenario = std::make_unique<UpdateScenario>(QStringLiteral("DevMaa"), programSystem(),
                                                  QStringLiteral("张 三的文件夹 "));
    UpdateScenario &s = *m_scenario;
    ASSERT_TRUE(s.program.applicationFolder().contains(QStringLiteral("/张 三的文件夹 ")));
    EXPECT_EQ(update(), upgradeSuccessful);
    EXPECT_EQ(s.burned(), s.image());
    const QString folder =
        s.program.toProgramPath(s.program.temporaryFolder()) + QStringLiteral("/QuillmarshV3TmpPath");
    EXPECT_TRUE(s.program.updateLogLines().contains(QStringLiteral("usb tmpPath: ") + folder));
    EXPECT_EQ(argumentsOf(s.program, usbFlasher).value(0),
              (QStringList{QStringLiteral("image"), folder + QStringLiteral("/tmp/dev.img")}));
    EXPECT_EQ(s.closeWindow(), 0);
}

} // namespace
