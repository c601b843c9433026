#include "tests/endtoend/PersonsFiles.h"

#include "harness/process/Polling.h"
#include "harness/stage/WineSystem_linux.h"

#include <QRegularExpression>

namespace {

using namespace EndToEnd;

const QString catalogTool = QStringLiteral("dpscat.exe");
const QString infTool = QStringLiteral("pnputil.exe");
const char inf[] = "[Version]\r\nSignature=\"$Windows NT$\"\r\nCatalogFile=Artinchip_SoC.cat\r\n";

/// The driver check at the start of the program, on a Windows without the bootloader's driver.
class DriverCheckTest : public EndToEndTest
{
protected:
    QString inApplication(const char *name)
    {
        return scenario().program.applicationFolder() + QLatin1Char('/') + QLatin1String(name);
    }
    QString inSystem32(const char *name)
    {
        return systemDriveOf(scenario().program.system()) + QLatin1String("/windows/system32/") +
               QLatin1String(name);
    }

    /// Replaces a file of the system folder by a stand-in that performs these steps.
    void addSystemTool(const QString &name, const QJsonArray &steps)
    {
        const QString path = inSystem32(name.toLatin1().constData());
        ASSERT_TRUE(QFile::copy(scenario().program.system().standIn(), path));
        ASSERT_TRUE(WholeFile::write(path + QStringLiteral(".script.json"), script({steps}).toJson()));
    }
    /// Returns the arguments of the runs of a tool in the system folder.
    QList<QStringList> systemToolRuns(const QString &name)
    {
        QList<QStringList> all;
        for (const StandinRun &run : StandinRuns::read(inSystem32(name.toLatin1().constData())))
            all.append(run.arguments);
        return all;
    }

    /// Adds the driver package beside the program, with stand-ins for the tools.
    void addPackage()
    {
        StagedProgram &program = scenario().program;
        ASSERT_TRUE(QDir().mkpath(inApplication("amd64")));
        for (const char *name : {"libusb0.dll", "libusbK.dll", "WdfCoInstaller01009.dll", "libusbK.sys"})
            ASSERT_TRUE(WholeFile::write(inApplication("amd64/") + QLatin1String(name), name));
        ASSERT_TRUE(WholeFile::write(inApplication("Artinchip_SoC.inf"), inf));
        const QString standIn = program.system().standIn();
        ASSERT_TRUE(program.addTool(catalogTool, standIn,
                                    script({{step("leave", QStringLiteral("Artinchip_SoC.cat"))}})));
        addSystemTool(infTool, {step("print", QStringLiteral("inf added\n"))});
    }

    /// Returns all lines of the check.
    QStringList checkLines()
    {
        UpdateScenario &s = scenario();
        EXPECT_TRUE(s.start()) << s.errorText().toStdString();
        // The window answers once it has been created; the check has finished by then.
        EXPECT_TRUE(s.probe.waitForWholeText(connection, QStringLiteral("Device Detected"), updateLimitMs));
        const QStringList lines = s.program.updateLogLines();
        const int first = lines.indexOf(QStringLiteral("Try Create Cat And Inf..."));
        const int last = lines.indexOf(QRegularExpression(QStringLiteral("^Start Dev (Success|Failed!)$")));
        return first < 0 || last < 0 ? lines : QStringList(lines.mid(first, last - first + 1));
    }

    static QStringList expected(std::initializer_list<const char *> texts)
    {
        QStringList lines;
        for (const char *text : texts)
            lines.append(QString::fromUtf8(text));
        return lines;
    }
};

TEST_F(DriverCheckTest, WithoutThePackageEveryStepFailsInItsOrderAndTheProgramGoesOn)
{
    QStringList lines = checkLines();
    // The error code of Windows for a missing file.
    const int result = lines.indexOf(QRegularExpression(QStringLiteral("^devINFORET RET: [1-9]\\d*$")));
    ASSERT_GE(result, 0) << lines.join(QLatin1Char('\n')).toStdString();
    lines.removeAt(result);
    EXPECT_EQ(lines,
              expected({"Try Create Cat And Inf...", "Try Create Cat And Inf Faild!", "Try Install Inf...",
                        "Begin Copy 1!", "Mov File ERROR1!", "Begin Copy 2!", "Mov File ERROR2!",
                        "Begin Copy 3!", "Mov File ERROR3!", "Begin Copy 4!", "Mov File ERROR4!",
                        "Begin Copy 5!", "Mov File ERROR5!", "Install DriverINFO...", "Install Dev...",
                        "Install Dev Success", "Start Dev...", "Start Dev Failed!"}));
}

TEST_F(DriverCheckTest, ThePackageIsInstalledInTheOrderOfItsSteps)
{
    addPackage();
    UpdateScenario &s = scenario();
    QStringList lines = checkLines();
    // The files are not a real driver, so the results of the last steps depend on Windows and are not tested.
    const QStringList before =
        expected({"Try Create Cat And Inf...", "Try Create Cat And Inf Success", "Try Install Inf...",
                  "inf added", "Begin Copy 1!", "Copy Success 1", "Begin Copy 2!", "Copy Success 2",
                  "Begin Copy 3!", "Copy Success 3", "Begin Copy 4!", "Copy Success 4", "Begin Copy 5!",
                  "Copy Success 5", "Install DriverINFO...", "devINFORET RET: 0", "Install Dev...",
                  "Install Dev Success", "Start Dev..."});
    lines.removeAll(QString()); // after the line feed of the tool
    EXPECT_EQ(QStringList(lines.mid(0, before.size())), before);
    for (const char *name : {"libusb0.dll", "libusbK.dll", "WdfCoInstaller01009.dll"})
        EXPECT_EQ(WholeFile::read(inSystem32(name)), QByteArray(name));
    EXPECT_EQ(WholeFile::read(inSystem32("drivers/libusbK.dll")), QByteArray("libusbK.dll"));
    EXPECT_EQ(WholeFile::read(inSystem32("drivers/libusbK.sys")), QByteArray("libusbK.sys"));
    const QString folder = s.program.toProgramPath(s.program.applicationFolder());
    EXPECT_EQ(argumentsOf(s.program, catalogTool), (QList<QStringList>{{QStringLiteral("/PATH"), folder}}));
    EXPECT_EQ(systemToolRuns(infTool), (QList<QStringList>{{QStringLiteral("-i"), QStringLiteral("-a"),
                                                            folder + QStringLiteral("/Artinchip_SoC.inf")}}));
}

TEST_F(DriverCheckTest, APnputilThatSomebodyPutBesideTheProgramOrIntoTheWorkingFolderIsNotRun)
{
    addPackage();
    StagedProgram &program = scenario().program;
    const QString standIn = program.system().standIn();
    const QString inWorkingFolder = program.workingFolder() + QLatin1Char('/') + infTool;
    const QJsonDocument planted = script({{step("print", QStringLiteral("planted\n"))}});
    ASSERT_TRUE(program.addTool(infTool, standIn, planted));
    ASSERT_TRUE(QFile::copy(standIn, inWorkingFolder));
    ASSERT_TRUE(WholeFile::write(inWorkingFolder + QStringLiteral(".script.json"), planted.toJson()));
    EXPECT_TRUE(checkLines().contains(QStringLiteral("inf added")));
    EXPECT_EQ(systemToolRuns(infTool).size(), 1);
    EXPECT_TRUE(argumentsOf(program, infTool).isEmpty());
    EXPECT_TRUE(StandinRuns::read(inWorkingFolder).isEmpty());
}

TEST_F(DriverCheckTest, ClosedWhileAToolRunsTheProgramInstallsNothingMore)
{
    addPackage();
    UpdateScenario &s = scenario();
    ASSERT_TRUE(s.program.setScript(catalogTool, script({{step("sleepMs", 600000)}})));
    ASSERT_TRUE(s.start()) << s.errorText().toStdString();
    ASSERT_TRUE(pollUntil([&] { return argumentsOf(s.program, catalogTool).size() == 1; }));
    EXPECT_EQ(s.closeWindow(), 0);
    EXPECT_TRUE(systemToolRuns(infTool).isEmpty());
    EXPECT_FALSE(QFile::exists(inSystem32("drivers/libusbK.sys")));
    for (const char *line :
         {"Try Install Inf...", "Begin Copy 1!", "Install DriverINFO...", "Install Dev..."})
        EXPECT_FALSE(logHas(line)) << line;
}

TEST_F(DriverCheckTest, WithoutASystemsPnputilNoOtherIsRun)
{
    StagedProgram &program = scenario().program;
    ASSERT_TRUE(program.addTool(infTool, program.system().standIn(),
                                script({{step("print", QStringLiteral("planted\n"))}})));
    EXPECT_FALSE(checkLines().contains(QStringLiteral("planted")));
    EXPECT_TRUE(argumentsOf(program, infTool).isEmpty());
}

} // namespace
