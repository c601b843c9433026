#include "tests/endtoend/EndToEnd.h"

#include <QFile>

#include <sys/stat.h>

namespace {

using namespace EndToEnd;

/// Named pipes instead of the log files, which nobody reads.
class LogPipeTest : public EndToEndTest
{
protected:
    void TearDown() override
    {
        // Removed, because reading them after a failure would block.
        for (const char *name : {"UPDLog.txt", "log.txt"})
            QFile::remove(inWorkingFolder(QLatin1String(name)));
        EndToEndTest::TearDown();
    }

    QString inWorkingFolder(const QString &name)
    {
        return scenario().program.workingFolder() + QLatin1Char('/') + name;
    }
    bool putPipe(const QString &name)
    {
        return mkfifo(QFile::encodeName(inWorkingFolder(name)).constData(), 0666) == 0;
    }
};

TEST_F(LogPipeTest, WithNamedPipesInTheirPlaceOnlyTheLogFilesAreMissing)
{
    // A model whose HID interfaces are listed in log.txt.
    UpdateScenario &s = scenario("DevMbu");
    ASSERT_TRUE(putPipe(QStringLiteral("UPDLog.txt")));
    ASSERT_TRUE(putPipe(QStringLiteral("log.txt")));
    EXPECT_EQ(update(), upgradeSuccessful);
    EXPECT_EQ(s.burned(), s.image());
    const QStringList pane = s.probe.text(QStringLiteral("logTextView")).split(QLatin1Char('\n'));
    EXPECT_TRUE(pane.contains(inWorkingFolder(QStringLiteral("UPDLog.txt")) +
                              QStringLiteral(" cannot be written: the log is shown here and kept nowhere.")));
    EXPECT_TRUE(s.program.standardError().contains(QStringLiteral("Failed to open log.txt for appending.")));
    EXPECT_EQ(s.closeWindow(), 0);
}

} // namespace
