#include "tests/cli/CliTest.h"

#include <QDir>

namespace {

using namespace CliCases;

/// Checks where the output goes, and that no problem with it stops an update.
class CliOutputTest : public CliTest
{
protected:
    /// Starts the program through bash with these redirections of its standard streams.
    void redirect(const char *redirections)
    {
        scenario().program.startThrough(
            {QStringLiteral("bash"), QStringLiteral("-c"),
             QStringLiteral("exec \"$0\" \"$@\" ") + QLatin1String(redirections)});
        m_readsOutput = false;
    }
    /// Makes the flasher write more than a pipe can hold.
    void makeTheFlasherWriteALot()
    {
        scenario().program.setScript(
            usbFlasher,
            scriptFor(QStringLiteral("image"), {{step("flood", 1000000), step("burn"), step("success")}}));
    }
    void expectUpdate()
    {
        makeTheFlasherWriteALot();
        EXPECT_EQ(run({update}), 0);
        EXPECT_EQ(scenario().burned(), scenario().image());
        EXPECT_EQ(scenario().bus.device(scenario().model()).value(QLatin1String("resets")).toInt(), 1);
    }
};

TEST_F(CliOutputTest, AllOfManyLinesArrive)
{
    makeTheFlasherWriteALot();
    EXPECT_EQ(run({update}), 0);
    qint64 characters = 0;
    for (const QJsonObject &event : scenario().events(QStringLiteral("log")))
        characters += event.value(QLatin1String("line")).toString().count(QLatin1Char('x'));
    EXPECT_GT(characters, 900000);
}

TEST_F(CliOutputTest, AnUpdateSucceedsWithAClosedStandardOutput)
{
    redirect(">&-");
    expectUpdate();
}

TEST_F(CliOutputTest, AnUpdateSucceedsWithAllStreamsClosed)
{
    redirect("<&- >&- 2>&-");
    expectUpdate();
}

TEST_F(CliOutputTest, NoFileOrDeviceGetsTheNumberOfAClosedStream)
{
    CliScenario &s = scenario();
    redirect("<&- >&- 2>&-");
    s.program.setScript(usbFlasher, script({{step("hang")}}));
    start({update});
    ASSERT_TRUE(pollUntil([&] { return s.program.runs(usbFlasher).size() == 1; }));
    const QDir descriptors(QStringLiteral("/proc/%1/fd").arg(s.bus.programId()));
    QStringList targets;
    for (const QString &name : descriptors.entryList(QDir::Files | QDir::System | QDir::NoDotAndDotDot))
        targets.append(QFile::symLinkTarget(descriptors.filePath(name)));
    for (const char *name : {"0", "1", "2"}) {
        // The pipes that replace closed streams have no other end.
        const QString target = QFile::symLinkTarget(descriptors.filePath(QLatin1String(name)));
        EXPECT_TRUE(target.contains(QLatin1String("pipe:"))) << name << ": " << target.toStdString();
        EXPECT_EQ(targets.count(target), 1) << name << ": " << targets.join(QLatin1Char(' ')).toStdString();
    }
    m_expectsNoFiles = false;
}

TEST_F(CliOutputTest, AnUpdateSucceedsAlthoughTheReaderHasEnded)
{
    redirect("> >(:) 2> >(:)");
    expectUpdate();
}

TEST_F(CliOutputTest, AnUpdateSucceedsAlthoughNobodyReadsThePipe)
{
    // Open it for reading as well, so that writing to it fills it instead of failing.
    const QString pipe = scenario().program.workingFolder() + QLatin1String("/../pipe");
    scenario().program.startThrough({QStringLiteral("bash"), QStringLiteral("-c"),
                                     QStringLiteral("mkfifo \"$0\"; exec \"$@\" 3<>\"$0\" >&3 2>&3"), pipe});
    m_readsOutput = false;
    expectUpdate();
}

TEST_F(CliOutputTest, AnUpdateSucceedsAlthoughTheDiskOfTheOutputIsFull)
{
    redirect(">/dev/full 2>/dev/full");
    expectUpdate();
}

TEST_F(CliOutputTest, TheLogIsAppendedToTheUsersFile)
{
    CliScenario &s = scenario();
    const QString log = s.program.workingFolder() + QLatin1String("/my log.txt");
    ASSERT_TRUE(WholeFile::write(log, "from before\n"));
    EXPECT_EQ(run({update, QStringLiteral("--log"), log}), 0);
    const QByteArray text = WholeFile::read(log);
    EXPECT_TRUE(text.startsWith("from before\n["));
    EXPECT_TRUE(text.contains("] Burn Image Success\n"));
    EXPECT_EQ(s.filesLeft(), QStringList());
}

TEST_F(CliOutputTest, AnUpdateSucceedsAlthoughTheLogCannotBeWritten)
{
    EXPECT_EQ(run({update, QStringLiteral("--log"), QStringLiteral("/dev/full/log.txt")}), 0);
    EXPECT_EQ(scenario().burned(), scenario().image());
}

TEST_F(CliOutputTest, WithoutATerminalTheLinesArePlainAndNothingIsAsked)
{
    CliScenario &s = scenario();
    EXPECT_EQ(runWithTextOutput({update}), 0);
    const QString text = s.program.standardOutput();
    EXPECT_TRUE(text.contains(QLatin1String("\nFetching the firmware\n")));
    EXPECT_TRUE(text.contains(QLatin1String("\n  100 %\n")));
    EXPECT_TRUE(text.endsWith(QLatin1String("\nDevMaa was updated.\n")));
    EXPECT_FALSE(text.contains(QLatin1Char('\r')));
    EXPECT_FALSE(text.contains(QChar(0x1b)));
    EXPECT_FALSE(text.contains(QLatin1String("[y/N]")));
    EXPECT_EQ(s.program.standardError(), QString());
}

TEST_F(CliOutputTest, VerboseWritesDiagnosticsToStandardErrorOnly)
{
    EXPECT_EQ(run({update, QStringLiteral("--verbose")}), 0);
    EXPECT_NE(scenario().program.standardError(), QString());
}

TEST_F(CliOutputTest, AListLoadsNoLibraryForWindowsOrDbus)
{
    start({QStringLiteral("list"), QStringLiteral("--watch")});
    ASSERT_TRUE(pollUntil([&] { return !scenario().events(QStringLiteral("device")).isEmpty(); }));
    const QByteArray loaded =
        WholeFile::read(QStringLiteral("/proc/%1/maps").arg(scenario().bus.programId()));
    EXPECT_TRUE(loaded.contains("/libQt5Core.so"));
    for (const char *library :
         {"/libQt5Gui.so", "/libQt5Widgets.so", "/libX11.so", "/libGL.so", "/libdbus-1.so"})
        EXPECT_FALSE(loaded.contains(library)) << library;
}

TEST_F(CliOutputTest, HelpAndVersionEndWithCodeZero)
{
    CliScenario &s = scenario();
    for (const char *argument : {"--help", "--version"}) {
        EXPECT_EQ(runWithTextOutput({QLatin1String(argument)}), 0);
        EXPECT_TRUE(s.program.standardOutput().contains(QLatin1String("quillmarsh-cli")));
    }
    EXPECT_EQ(runWithTextOutput({update, QStringLiteral("--help")}), 0);
    EXPECT_TRUE(s.program.standardOutput().contains(QLatin1String("--write-type")));
    expectUntouchedDevice();
}

} // namespace
