#include "harness/process/Polling.h"
#include "harness/session/BusSession.h"
#include "simulator/files/WholeFile.h"
#include "simulator/standin/StandinRuns.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

class StandinTest : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(QFile::copy(QStringLiteral(STANDIN), m_tool));
        ASSERT_TRUE(WholeFile::write(m_image, "the image"));
    }
    void script(const QByteArray &json)
    {
        ASSERT_TRUE(WholeFile::write(m_tool + QStringLiteral(".script.json"), json));
    }
    void startBus(const QByteArray &start, const QByteArray &more = QByteArray())
    {
        const QString description = m_folder.filePath(QStringLiteral("bus.json"));
        ASSERT_TRUE(WholeFile::write(
            description, R"({"devices":[{"key":"a","start":")" + start +
                             R"(","application":{"vendorId":"0xF101","productId":"0xA001"})" + more + "}]}"));
        ASSERT_TRUE(m_bus.start(description)) << m_bus.errorText().toStdString();
        m_host = &m_bus;
    }
    void startTool(const QStringList &arguments)
    {
        ASSERT_TRUE(m_host->run({m_tool, arguments, m_folder.path(), QProcessEnvironment::systemEnvironment(),
                                 m_stdout, m_stderr}))
            << m_host->errorText().toStdString();
    }
    /// Returns the exit code, or -1 if the tool was ended by a signal.
    int run(const QStringList &arguments)
    {
        startTool(arguments);
        const std::optional<int> exitCode = m_host->waitForExit();
        EXPECT_TRUE(exitCode || m_host->programState().signalled);
        m_output = WholeFile::read(m_stdout);
        return exitCode.value_or(-1);
    }
    int start(const char *vendorId, const char *productId)
    {
        QStringList arguments;
        for (const char *argument : {"Start", "1", "", vendorId, productId, "0", "0", "", "08004000", "true"})
            arguments.append(QLatin1String(argument));
        return run(arguments + QStringList{m_image});
    }
    int burn() { return run({QStringLiteral("image"), m_image}); }

    QTemporaryDir m_folder;
    const QString m_tool = m_folder.filePath(QStringLiteral("upgcmd.exe"));
    const QString m_image = m_folder.filePath(QStringLiteral("dev.img"));
    const QString m_stdout = m_folder.filePath(QStringLiteral("stdout"));
    const QString m_stderr = m_folder.filePath(QStringLiteral("stderr"));
    PlainHost m_withoutBus;
    BusSession m_bus;
    ProgramHost *m_host = &m_withoutBus;
    QByteArray m_output;
};

TEST_F(StandinTest, TheFlasherBurnsTheImageIntoTheBootloader)
{
    startBus("bootloader");
    EXPECT_EQ(burn(), 0);
    int last = -1;
    for (const char *partition : {"spl", "env", "os", "rodata", "data"}) {
        const int at = m_output.indexOf(QByteArray("Upgrade fwc: image.target.") + partition + ' ');
        EXPECT_GT(at, last) << partition;
        last = at;
    }
    EXPECT_TRUE(m_output.contains("Burn") && m_output.contains("successfully!"));
    const QString saved = m_folder.filePath(QStringLiteral("saved"));
    ASSERT_TRUE(m_bus.saveImage(QStringLiteral("a"), saved));
    EXPECT_EQ(WholeFile::read(saved), "the image");
}

TEST_F(StandinTest, TheFlasherCannotOpenADeviceThatIsNotInItsBootloader)
{
    startBus("application");
    EXPECT_EQ(burn(), 1);
    EXPECT_EQ(m_output, "Open upg device failed\n");
}

TEST_F(StandinTest, TheFlasherCannotOpenTheDeviceWithoutABus)
{
    EXPECT_EQ(burn(), 1);
    EXPECT_EQ(m_output, "Open upg device failed\n");
}

TEST_F(StandinTest, TheResetCommandBringsTheDeviceBack)
{
    startBus("bootloader");
    EXPECT_EQ(run({QStringLiteral("shcmd"), QStringLiteral("reset")}), 0);
    EXPECT_TRUE(m_bus.waitForDevice(QStringLiteral("a"), QStringLiteral("application")));
}

TEST_F(StandinTest, TheProgrammerFindsAndProgramsTheMicrocontrollerWithTheGivenIds)
{
    startBus("application", R"(,"programmable":true)");
    const QString getData = QStringLiteral("GetData");
    EXPECT_EQ(run({getData, QStringLiteral("f101"), QStringLiteral("a001")}), 0);
    EXPECT_EQ(m_output, "device: a;\n");
    EXPECT_EQ(run({getData, QStringLiteral("-1"), QStringLiteral("-1")}), 0);
    EXPECT_FALSE(m_output.contains("device:"));
    EXPECT_EQ(start("f101", "a002"), 1);
    EXPECT_EQ(m_output, "No USB IAP device!\n");
    EXPECT_EQ(start("f101", "a001"), 0);
    EXPECT_TRUE(m_output.endsWith("SetProgress: 90\nSetProgress: 100\n"));
    const QString saved = m_folder.filePath(QStringLiteral("saved"));
    ASSERT_TRUE(m_bus.saveImage(QStringLiteral("a"), saved));
    EXPECT_EQ(WholeFile::read(saved), "the image");
}

TEST_F(StandinTest, TheProgrammerDoesNotFindADeviceThatIsNoMicrocontroller)
{
    startBus("application");
    EXPECT_EQ(start("f101", "a001"), 1);
    EXPECT_EQ(m_output, "No USB IAP device!\n");
    EXPECT_EQ(m_bus.device(QStringLiteral("a")).value(QLatin1String("burns")).toInt(), 0);
}

TEST_F(StandinTest, EachRunPlaysItsOwnEntryAndTheLastOneIsRepeated)
{
    script(R"({"runs":[[{"print":"one"},{"exit":3}],[{"print":"two"},{"stderr":"oops"}]]})");
    EXPECT_EQ(burn(), 3);
    EXPECT_EQ(m_output, "one");
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(burn(), 0);
        EXPECT_EQ(m_output, "two");
        EXPECT_EQ(WholeFile::read(m_stderr), "oops");
    }
}

TEST_F(StandinTest, ASectionForAFirstArgumentCountsItsOwnRuns)
{
    script(R"({"GetData":{"runs":[[{"print":"g1"}],[{"print":"g2"}]]},"runs":[[{"print":"x"}]]})");
    run({QStringLiteral("Start")});
    EXPECT_EQ(m_output, "x");
    run({QStringLiteral("GetData")});
    EXPECT_EQ(m_output, "g1");
    run({QStringLiteral("GetData")});
    EXPECT_EQ(m_output, "g2");
}

TEST_F(StandinTest, OutputIsCompleteHoweverItIsSplit)
{
    script(R"({"runs":[[{"print":"abcdef","splitAt":2,"pauseMs":1},{"printHex":"00ff0a","byteWise":true,
              "pauseMs":1},{"flood":150000},{"garbage":100}]]})");
    EXPECT_EQ(burn(), 0);
    EXPECT_EQ(m_output.size(), 6 + 3 + 150000 + 100);
    EXPECT_TRUE(m_output.startsWith(QByteArray("abcdef\0\xff\n", 9)));
}

TEST_F(StandinTest, FilesAreWrittenAndAwaitedAndStoreTheProcessId)
{
    script(R"({"runs":[[{"leave":"empty"},{"leave":"full","contents":"text"},{"processId":"id"},
              {"awaitFile":"go on"},{"print":"on"}]]})");
    startTool({});
    const QString idFile = m_folder.filePath(QStringLiteral("id"));
    ASSERT_TRUE(pollUntil([&] { return QFile::exists(idFile); }, 20000));
    EXPECT_GT(WholeFile::read(idFile).trimmed().toInt(), 0);
    EXPECT_EQ(QFileInfo(m_folder.filePath(QStringLiteral("empty"))).size(), 0);
    EXPECT_EQ(WholeFile::read(m_folder.filePath(QStringLiteral("full"))), "text");
    EXPECT_EQ(WholeFile::read(m_stdout), "");
    ASSERT_TRUE(WholeFile::write(m_folder.filePath(QStringLiteral("go on"))));
    EXPECT_EQ(m_host->waitForExit(20000), 0);
    EXPECT_EQ(WholeFile::read(m_stdout), "on");
}

TEST_F(StandinTest, AToolThatRemovesItselfCannotBeStartedAgain)
{
    script(R"({"runs":[[{"vanish":true},{"exit":2}]]})");
    EXPECT_EQ(burn(), 2);
    EXPECT_FALSE(QFile::exists(m_tool));
    EXPECT_EQ(StandinRuns::read(m_tool).value(0).exitCode, 2);
}

TEST_F(StandinTest, AnUnreadableScriptIsAnError)
{
    startBus("bootloader");
    for (const char *unusable : {"{", "[]", "", R"({"runs":[]})", R"({"runs":[[{"exit":"one"}]]})"}) {
        script(unusable);
        EXPECT_EQ(burn(), 98) << unusable;
    }
    script(R"({"runs":[[{"sing":true}]]})");
    EXPECT_EQ(burn(), 99);
    EXPECT_EQ(m_bus.device(QStringLiteral("a")).value(QLatin1String("burns")).toInt(-1), 0);
}

TEST_F(StandinTest, ACrashStepCrashesTheProcess)
{
    script(R"({"runs":[[{"crash":true}]]})");
    EXPECT_EQ(burn(), -1);
}

TEST_F(StandinTest, RunsAreRecordedEvenIfTheyAreKilled)
{
    script(R"({"runs":[[{"sleepMs":50},{"exit":4}],[{"print":"up"},{"hang":true}]]})");
    EXPECT_EQ(burn(), 4);
    startTool({QStringLiteral("image"), QStringLiteral("x y")});
    ASSERT_TRUE(pollUntil([&] { return WholeFile::read(m_stdout) == "up"; }));
    m_host->killProgram();
    const QVector<StandinRun> runs = StandinRuns::read(m_tool);
    ASSERT_EQ(runs.size(), 2);
    EXPECT_EQ(runs.at(0).arguments, QStringList({QStringLiteral("image"), m_image}));
    EXPECT_EQ(QFileInfo(runs.at(0).workingDirectory).canonicalFilePath(),
              QFileInfo(m_folder.path()).canonicalFilePath());
    EXPECT_GE(runs.at(0).endMs - runs.at(0).startMs, 50);
    EXPECT_EQ(runs.at(0).exitCode, 4);
    EXPECT_EQ(runs.at(1).arguments.value(1), QStringLiteral("x y"));
    EXPECT_GE(runs.at(1).startMs, runs.at(0).endMs);
    EXPECT_EQ(runs.at(1).endMs, -1);
}

} // namespace
