#include "harness/process/Polling.h"
#include "simulator/files/WholeFile.h"
#include "tests/common/ProcessGone.h"
#include "tests/common/ScriptedTools.h"
#include "tests/harness/RunningSubject.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QLocale>

#include <gtest/gtest.h>

namespace {

TEST(StagedProgramTest, TheProgramSeesFoldersOfItsOwn)
{
    RunningSubject subject;
    ASSERT_TRUE(subject.start()) << qPrintable(subject.errorText());
    EXPECT_EQ(subject.reported(QStringLiteral("application")), subject.stage.applicationFolder());
    EXPECT_EQ(subject.reported(QStringLiteral("working")), subject.stage.workingFolder());
    EXPECT_EQ(subject.reported(QStringLiteral("temporary")), subject.stage.temporaryFolder());
    EXPECT_EQ(subject.reported(QStringLiteral("home")), subject.stage.homeFolder());
    EXPECT_TRUE(subject.reported(QStringLiteral("settings")).startsWith(subject.stage.homeFolder()));
}

TEST(StagedProgramTest, TwoStagesShareNothing)
{
    const StagedProgram one(QStringLiteral(PROBE_SUBJECT));
    const StagedProgram other(QStringLiteral(PROBE_SUBJECT));
    EXPECT_NE(one.applicationFolder(), other.applicationFolder());
    EXPECT_NE(one.launch().program, other.launch().program);
    EXPECT_NE(one.probePortFile(), other.probePortFile());
}

TEST(StagedProgramTest, TheFoldersAreRemovedWithIt)
{
    QString folder;
    {
        const StagedProgram stage(QStringLiteral(PROBE_SUBJECT));
        ASSERT_TRUE(stage.isValid()) << qPrintable(stage.errorText());
        folder = QFileInfo(stage.applicationFolder()).path();
        EXPECT_TRUE(QDir(folder).exists());
    }
    EXPECT_FALSE(QDir(folder).exists());
}

TEST(StagedProgramTest, TheFoldersStayAndAreNamedWhereTheEnvironmentAsksForIt)
{
    qputenv("QUILLMARSH_KEEP_STAGE", "1");
    QString folder;
    testing::internal::CaptureStderr();
    {
        StagedProgram stage(QStringLiteral(PROBE_SUBJECT));
        folder = QFileInfo(stage.applicationFolder()).path();
        EXPECT_TRUE(WholeFile::write(stage.workingFolder() + QStringLiteral("/UPDLog.txt"), "a line\n"));
    }
    qunsetenv("QUILLMARSH_KEEP_STAGE");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "The stage is kept in " + folder.toStdString() + '\n');
    EXPECT_EQ(WholeFile::read(folder + QStringLiteral("/work/UPDLog.txt")), QByteArray("a line\n"));
    EXPECT_TRUE(QDir(folder).removeRecursively());
}

TEST(StagedProgramTest, AChineseLocaleIsChinaToTheProgramWithoutBeingInstalled)
{
    RunningSubject subject;
    subject.stage.setLocale(QStringLiteral("zh_CN.UTF-8"));
    ASSERT_TRUE(subject.start()) << qPrintable(subject.errorText());
    EXPECT_EQ(subject.reported(QStringLiteral("country")), QString::number(QLocale::China));
    EXPECT_EQ(subject.reported(QStringLiteral("codec")), QLatin1String("UTF-8"));
}

TEST(StagedProgramTest, WithoutAChoiceTheLocaleIsAmericanEnglish)
{
    RunningSubject subject;
    ASSERT_TRUE(subject.start()) << qPrintable(subject.errorText());
    EXPECT_EQ(subject.reported(QStringLiteral("country")), QString::number(QLocale::UnitedStates));
    EXPECT_EQ(subject.reported(QStringLiteral("codec")), QLatin1String("UTF-8"));
}

TEST(StagedProgramTest, ArgumentsArePassedOnAndTheEnvironmentIsNot)
{
    qputenv("HARNESS_TEST_LEAK", "yes");
    RunningSubject subject;
    ASSERT_TRUE(subject.start({QStringLiteral("TessilonixUpDate"), QStringLiteral("Model A")}))
        << qPrintable(subject.errorText());
    qunsetenv("HARNESS_TEST_LEAK");
    EXPECT_EQ(subject.reported(QStringLiteral("arguments")), QLatin1String("TessilonixUpDate|Model A"));
    EXPECT_EQ(subject.reported(QStringLiteral("leak")), QLatin1String("unset"));
}

TEST(StagedProgramTest, AMissingExecutableIsReported)
{
    const StagedProgram stage(QStringLiteral("/no/such/program"));
    EXPECT_FALSE(stage.isValid());
    EXPECT_TRUE(stage.errorText().contains(QLatin1String("/no/such/program")));
}

TEST(StagedProgramTest, ToolsAreExecutableAndBesideTheProgramWithTheirScripts)
{
    StagedProgram stage(QStringLiteral(PROBE_SUBJECT));
    ASSERT_TRUE(stage.addAllTools(QStringLiteral(STANDIN))) << qPrintable(stage.errorText());
    const QDir folder(stage.applicationFolder());
    for (const char *name : {"upgcmd.exe", "upgcmdHid.exe", "IAP_Programmer.exe"})
        EXPECT_TRUE(QFileInfo(folder.filePath(QLatin1String(name))).isExecutable()) << name;
    EXPECT_FALSE(folder.exists(QStringLiteral("upgcmd.exe.script.json")));
    const QJsonDocument script(QJsonObject{{QLatin1String("exit"), 1}});
    ASSERT_TRUE(stage.setScript(QStringLiteral("upgcmd.exe"), script));
    const QByteArray written = WholeFile::read(folder.filePath(QStringLiteral("upgcmd.exe.script.json")));
    EXPECT_EQ(QJsonDocument::fromJson(written), script);
    EXPECT_FALSE(stage.addTool(QStringLiteral("dpscat.exe"), QStringLiteral("/no/such/tool")));
}

TEST(StagedProgramTest, ARunIsReadFromItsStartAndItsEnd)
{
    StagedProgram stage(QStringLiteral(PROBE_SUBJECT));
    const QString name = QStringLiteral("upgcmd.exe");
    const QString tool = stage.applicationFolder() + QLatin1Char('/') + name;
    const QJsonDocument script =
        StandinScript::script({ToolStep::exitWith(3).toJson(), ToolStep::crash().toJson()});
    ASSERT_TRUE(stage.addTool(name, QStringLiteral(STANDIN), script)) << qPrintable(stage.errorText());
    EXPECT_TRUE(stage.runs(name).isEmpty());
    EXPECT_EQ(QProcess::execute(tool, {QStringLiteral("image")}), 3);
    QProcess::execute(tool, {QStringLiteral("shcmd")});
    const QVector<StandinRun> runs = stage.runs(name);
    ASSERT_EQ(runs.size(), 2);
    EXPECT_EQ(runs[0].exitCode, 3);
    EXPECT_EQ(runs[1].arguments, QStringList{QStringLiteral("shcmd")});
    EXPECT_EQ(runs[1].exitCode, -1);
}

TEST(StagedProgramTest, TheControlListSwitchesItsModelsAndWriteTypesOn)
{
    StagedProgram stage(QStringLiteral(PROBE_SUBJECT));
    ASSERT_TRUE(
        stage.setControlList({QStringLiteral("DevMaa")}, {QStringLiteral("USB"), QStringLiteral("HID")}));
    const QString listFile = stage.applicationFolder() + QStringLiteral("/qmake/ControlDevList.json");
    const QJsonObject list = QJsonDocument::fromJson(WholeFile::read(listFile)).object();
    const QJsonObject model = list[QLatin1String("devices")].toArray().first().toObject();
    EXPECT_EQ(model[QLatin1String("id")].toString(), QLatin1String("DevMaa"));
    EXPECT_TRUE(model[QLatin1String("is_on")].toBool());
    EXPECT_EQ(list[QLatin1String("WriteType")].toArray().size(), 2);
}

TEST(StagedProgramTest, LogLinesLoseTheirTimeStampsAndNothingElse)
{
    const StagedProgram stage(QStringLiteral(PROBE_SUBJECT));
    EXPECT_TRUE(stage.updateLogLines().isEmpty());
    const QByteArray log("[2026-01-02 03:04:05] one [x] 解析\nsecond half\n[2026-01-02 03:04:06] \n");
    ASSERT_TRUE(WholeFile::write(stage.workingFolder() + QStringLiteral("/UPDLog.txt"), log));
    EXPECT_EQ(stage.updateLogLines(),
              (QStringList{QStringLiteral("one [x] 解析"), QStringLiteral("second half"), QString()}));
    EXPECT_EQ(stage.updateLog().toUtf8(), log);
}

TEST(StagedProgramTest, ThePortFileOfAnEarlierStartIsRemovedBeforeTheNext)
{
    const StagedProgram stage(QStringLiteral(PROBE_SUBJECT));
    ASSERT_TRUE(WholeFile::write(stage.probePortFile(), "4711"));
    stage.launch();
    EXPECT_FALSE(QFile::exists(stage.probePortFile()));
}

TEST(StagedProgramTest, ARunningToolIsListedAndKilledWithTheStage)
{
    QProcess tool;
    qint64 toolId = 0;
    {
        StagedProgram stage(QStringLiteral(PROBE_SUBJECT));
        ASSERT_TRUE(stage.addAllTools(QStringLiteral(STANDIN))) << qPrintable(stage.errorText());
        EXPECT_TRUE(stage.runningProcesses().isEmpty());
        const QString name = QStringLiteral("upgcmd.exe");
        ASSERT_TRUE(stage.setScript(name, ScriptedTools::scriptOf(ToolStep::hang())));
        tool.start(stage.applicationFolder() + QLatin1Char('/') + name, QStringList());
        ASSERT_TRUE(waitForStart(tool));
        toolId = tool.processId();
        EXPECT_EQ(stage.runningProcesses(), QVector<qint64>{toolId});
    }
    EXPECT_TRUE(waitForEnd(tool));
    EXPECT_EQ(tool.exitStatus(), QProcess::CrashExit);
    EXPECT_TRUE(processIsReaped(toolId));
}

TEST(StagedProgramTest, WhatATestMustUndoIsUndoneAfterTheToolsHaveBeenKilledAndBeforeTheFoldersAreRemoved)
{
    QProcess tool;
    bool wasKilled = false;
    bool isThere = false;
    {
        StagedProgram stage(QStringLiteral(PROBE_SUBJECT));
        ASSERT_TRUE(stage.addAllTools(QStringLiteral(STANDIN))) << qPrintable(stage.errorText());
        const QString name = QStringLiteral("upgcmd.exe");
        ASSERT_TRUE(stage.setScript(name, ScriptedTools::scriptOf(ToolStep::hang())));
        tool.start(stage.applicationFolder() + QLatin1Char('/') + name, QStringList());
        ASSERT_TRUE(waitForStart(tool));
        stage.beforeRemoval([&] {
            wasKilled = waitForEnd(tool) && tool.exitStatus() == QProcess::CrashExit;
            isThere = QDir(stage.workingFolder()).exists();
        });
    }
    EXPECT_TRUE(wasKilled);
    EXPECT_TRUE(isThere);
}

TEST(PlainHostTest, AProgramThatIsKilledHasNoExitCodeAndLeavesNoProcess)
{
    RunningSubject subject;
    ASSERT_TRUE(subject.start()) << qPrintable(subject.errorText());
    EXPECT_TRUE(subject.host.programState().running);
    EXPECT_EQ(subject.host.waitForExit(20), std::nullopt);
    subject.host.killProgram();
    const ProgramHost::State state = subject.host.programState();
    EXPECT_FALSE(state.running);
    EXPECT_TRUE(state.signalled);
    EXPECT_EQ(state.exitCode, std::nullopt);
}

TEST(PlainHostTest, AProgramThatCannotBeStartedIsReported)
{
    PlainHost host;
    Launch launch;
    launch.program = QStringLiteral("/no/such/program");
    EXPECT_FALSE(host.run(launch));
    EXPECT_TRUE(host.errorText().contains(QLatin1String("/no/such/program")));
    EXPECT_FALSE(host.programState().running);
}

} // namespace
