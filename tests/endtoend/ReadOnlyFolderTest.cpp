#include "tests/endtoend/FolderFaultTest.h"

#include <QDir>

namespace {

using namespace EndToEnd;

using ReadOnlyFolderTest = FolderFaultTest;

TEST_F(ReadOnlyFolderTest, AReadOnlyApplicationFolderIsReportedAndTheControlsComeBack)
{
    UpdateScenario &s = scenario();
    ASSERT_TRUE(makeReadOnly(s.program.applicationFolder()));
    EXPECT_EQ(update(), md5Failed);
    EXPECT_TRUE(logHas("Could not open file for writing"));
    EXPECT_TRUE(logGivesReasonAfter(toProgramPath(s.program.applicationFolder()) +
                                    QStringLiteral("/qmake/dev.jn: ")));
    expectUntouchedDevice();
}

TEST_F(ReadOnlyFolderTest, AReadOnlyWorkingFolderIsReportedInTheWindowAndOnlyTheLogFilesAreMissing)
{
    UpdateScenario &s = scenario();
    ASSERT_TRUE(makeReadOnly(s.program.workingFolder()));
    // The bus description is beside that folder.
    EXPECT_EQ(update(), upgradeSuccessful);
    EXPECT_EQ(s.burned(), s.image());
    EXPECT_TRUE(s.program.updateLog().isEmpty());
    QString said = s.probe.text(QStringLiteral("logTextView")).split(QLatin1Char('\n')).value(1);
    EXPECT_EQ(said.replace(QLatin1Char('\\'), QLatin1Char('/')),
              toProgramPath(s.program.workingFolder()) +
                  QStringLiteral("/UPDLog.txt cannot be written: the log is only shown here."));
    EXPECT_TRUE(s.program.standardError().contains(QStringLiteral("无法打开文件进行写入")));
}

TEST_F(ReadOnlyFolderTest, ATemporaryFolderThatCannotBeWrittenIsReportedAndTheControlsComeBack)
{
    UpdateScenario &s = scenario();
    ASSERT_TRUE(makeReadOnly(s.program.temporaryFolder()));
    EXPECT_EQ(titleAfterQuickRun(), folderFailed);
    EXPECT_TRUE(logMentions(toProgramPath(downloads()) + QStringLiteral(" cannot be created.")));
    EXPECT_TRUE(logHas("ensurePath Failed!"));
    expectUntouchedDevice();
}

TEST_F(ReadOnlyFolderTest, ADownloadFolderThatCannotBeWrittenIsReportedAndTheControlsComeBack)
{
    ASSERT_TRUE(QDir().mkpath(downloads() + QStringLiteral("/tmp")));
    ASSERT_TRUE(QDir().mkpath(downloads() + QStringLiteral("/qmake")));
    ASSERT_TRUE(makeReadOnly(downloads() + QStringLiteral("/tmp")));
    EXPECT_EQ(titleAfterQuickRun(), folderFailed);
    EXPECT_TRUE(logGivesReasonAfter(toProgramPath(downloads()) + QStringLiteral("/tmp cannot be written: ")));
    expectUntouchedDevice();
}

} // namespace
