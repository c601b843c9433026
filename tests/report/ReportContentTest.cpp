#include "tests/report/ReplayStage.h"

#include "harness/BuildPaths.h"
#include "harness/session/ModelOnBus.h"
#include "simulator/files/WholeFile.h"
#include "tests/report/ReportValidation.h"

#include <QCryptographicHash>
#include <QDir>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

const QString userName = QStringLiteral("annamaria");
const QByteArray imageBytes = "these bytes are firmware";

/// Checks the report that quillmarsh-cli writes on a machine with tools, an image and a long log.
class ReportContentTest : public testing::Test
{
protected:
    void SetUp() override
    {
        StagedProgram &program = m_stage.commandLine();
        program.setVariable(QStringLiteral("USER"), userName);
        program.addAllTools(program.system().standIn());
        ASSERT_TRUE(
            WholeFile::write(program.applicationFolder() + QLatin1String("/qmake/new.img"), imageBytes));
        const QString downloads = program.temporaryFolder() + QLatin1String("/QuillmarshV3TmpPath/tmp");
        ASSERT_TRUE(QDir().mkpath(downloads));
        ASSERT_TRUE(WholeFile::write(downloads + QLatin1String("/dev.img"), imageBytes));
        ASSERT_TRUE(WholeFile::write(program.workingFolder() + QLatin1String("/UPDLog.txt"), longLog()));
        const QString bus = m_folder.filePath(QStringLiteral("bus.json"));
        ASSERT_TRUE(
            WholeFile::write(bus, ModelOnBus::describe({ModelOnBus::application(QStringLiteral("DevMaa"))})));
        ASSERT_TRUE(m_stage.open(bus, BusFile::Description)) << m_stage.errorText().toStdString();
    }

    QByteArray longLog()
    {
        const QByteArray home = m_stage.commandLine().homeFolder().toUtf8();
        QByteArray log;
        for (int i = 0; i < 2500; ++i)
            log += "[2026-03-01 10:00:00] line " + QByteArray::number(i) + '\n';
        return log + "[2026-03-01 10:00:01] usb tmpPath: " + home + "/tmp\n" +
               "[2026-03-01 10:00:09] written by annamaria\n" +
               "[2026-03-01 10:00:21] get file md5 failed.!\n";
    }

    QString path() const { return m_folder.filePath(QStringLiteral("report.json")); }

    QJsonObject report()
    {
        EXPECT_TRUE(m_stage.writeReport(path())) << m_stage.errorText().toStdString();
        EXPECT_EQ(ReportValidation::problemsIn(path()), QString());
        return QJsonDocument::fromJson(WholeFile::read(path())).object();
    }

    /// Runs quillmarsh-cli and returns its exit code.
    int run(const QStringList &arguments)
    {
        EXPECT_TRUE(m_stage.bus().run(m_stage.commandLine().launch(arguments)));
        return m_stage.bus().waitForExit(2 * eventLimitMs).value_or(-1);
    }

    ReplayStage m_stage{"DevMaa"};
    QTemporaryDir m_folder;
};

TEST_F(ReportContentTest, ItContainsNeitherTheHomeFolderNorTheUserNameNorTheImage)
{
    report();
    const QByteArray bytes = WholeFile::read(path());
    EXPECT_FALSE(bytes.contains(m_stage.commandLine().homeFolder().toUtf8()));
    EXPECT_FALSE(bytes.contains(userName.toUtf8()));
    EXPECT_FALSE(bytes.contains(imageBytes));
    EXPECT_FALSE(bytes.contains(imageBytes.toHex()));
    EXPECT_TRUE(bytes.contains("usb tmpPath: <home>/tmp"));
    EXPECT_TRUE(bytes.contains("written by <user>"));
    const QByteArray head = bytes.left(bytes.indexOf(']'));
    EXPECT_TRUE(head.startsWith("{\n    \"about\"") && head.contains("sent it nowhere"));
}

TEST_F(ReportContentTest, ToolsHaveTheirSumsAndTheControlListItsText)
{
    const QJsonObject files = report().value(QLatin1String("files")).toObject();
    const QByteArray tool = WholeFile::read(m_stage.commandLine().system().standIn());
    const QString sum =
        QString::fromLatin1(QCryptographicHash::hash(tool, QCryptographicHash::Sha256).toHex());
    int found = 0;
    for (const QJsonValue &each : files.value(QLatin1String("tools")).toArray()) {
        const QJsonObject file = each.toObject();
        if (file.value(QLatin1String("size")).isNull())
            continue;
        ++found;
        EXPECT_EQ(file.value(QLatin1String("sha256")).toString(), sum);
        EXPECT_EQ(file.value(QLatin1String("size")).toInt(), tool.size());
    }
    EXPECT_EQ(found, 3);
    const QJsonObject list = files.value(QLatin1String("controlList")).toObject();
    EXPECT_EQ(list.value(QLatin1String("text")).toString().toUtf8(),
              WholeFile::read(m_stage.commandLine().applicationFolder() +
                              QLatin1String("/qmake/ControlDevList.json")));
}

TEST_F(ReportContentTest, ItContainsTheEndOfTheLogAndTheLastUpdate)
{
    const QJsonObject content = report();
    const QJsonArray lines =
        content.value(QLatin1String("log")).toObject().value(QLatin1String("lines")).toArray();
    ASSERT_EQ(lines.size(), 2000);
    EXPECT_EQ(lines.last().toString(), QStringLiteral("[2026-03-01 10:00:21] get file md5 failed.!"));
    const QJsonObject run = content.value(QLatin1String("lastRun")).toObject();
    EXPECT_EQ(run.value(QLatin1String("source")).toString(), QStringLiteral("log"));
    EXPECT_EQ(run.value(QLatin1String("outcome")).toString(), QStringLiteral("failed"));
    EXPECT_EQ(run.value(QLatin1String("seconds")).toObject(),
              (QJsonObject{{QStringLiteral("fetching"), 20}}));
}

TEST_F(ReportContentTest, ItsChecksAreThoseOfTheCheckCommand)
{
    const QJsonArray checks = report().value(QLatin1String("checks")).toArray();
    run({QStringLiteral("check"), QStringLiteral("--json")});
    QStringList expected;
    for (const QString &line : m_stage.commandLine().standardOutput().split(QLatin1Char('\n'))) {
        const QJsonObject event = QJsonDocument::fromJson(line.toUtf8()).object();
        if (event.value(QLatin1String("event")) == QLatin1String("finding"))
            expected.append(event.value(QLatin1String("what")).toString() + QLatin1Char(' ') +
                            event.value(QLatin1String("verdict")).toString());
    }
    QStringList findings;
    for (const QJsonValue &each : checks)
        findings.append(each.toObject().value(QLatin1String("what")).toString() + QLatin1Char(' ') +
                        each.toObject().value(QLatin1String("verdict")).toString());
    EXPECT_GT(expected.size(), 8);
    EXPECT_EQ(findings, expected);
}

TEST_F(ReportContentTest, TheTemporaryFolderIsDescribedByNamesAndSizes)
{
    const QJsonObject folder = report().value(QLatin1String("temporaryFolder")).toObject();
    EXPECT_TRUE(folder.value(QLatin1String("exists")).toBool());
    EXPECT_EQ(folder.value(QLatin1String("problem")).toString(), QString());
    EXPECT_TRUE(folder.value(QLatin1String("entries"))
                    .toArray()
                    .contains(QJsonObject{{QStringLiteral("name"), QStringLiteral("tmp/dev.img")},
                                          {QStringLiteral("size"), imageBytes.size()}}));
}

TEST_F(ReportContentTest, ItContainsTheDeviceFilesOfTheDevices)
{
    const QJsonObject access = report().value(QLatin1String("deviceAccess")).toObject();
    const QJsonArray files = access.value(QLatin1String("files")).toArray();
    ASSERT_EQ(files.size(), 2) << "that of the USB device and that of its HID interface";
    EXPECT_FALSE(files.first().toObject().value(QLatin1String("refused")).toBool());
    EXPECT_EQ(access.value(QLatin1String("rules")).toArray().size(), 4);
}

TEST_F(ReportContentTest, WithoutAGivenNameTheFileGetsAProposedOne)
{
    EXPECT_EQ(run({QStringLiteral("report")}), 0);
    const QStringList files =
        QDir(m_stage.commandLine().workingFolder()).entryList({QStringLiteral("quillmarsh-report-*.json")});
    ASSERT_EQ(files.size(), 1);
    EXPECT_TRUE(m_stage.commandLine().standardOutput().contains(files.first()));
    EXPECT_TRUE(m_stage.commandLine().standardOutput().contains(QLatin1String("Nothing was sent anywhere.")));
}

TEST_F(ReportContentTest, AHyphenWritesOnlyTheReportToStandardOutput)
{
    EXPECT_EQ(run({QStringLiteral("report"), QStringLiteral("-")}), 0);
    ASSERT_TRUE(WholeFile::write(path(), m_stage.commandLine().standardOutput().toUtf8()));
    EXPECT_EQ(ReportValidation::problemsIn(path()), QString());
}

TEST_F(ReportContentTest, AnUnwritableFileIsReportedInBothLanguages)
{
    const QString none = QStringLiteral("/proc/report.json");
    EXPECT_EQ(run({QStringLiteral("report"), none}), 5);
    EXPECT_TRUE(m_stage.commandLine().standardOutput().startsWith(
        QLatin1String("The report cannot be written to /proc/report.json: ")));
    EXPECT_EQ(run({QStringLiteral("report"), none, QStringLiteral("--lang"), QStringLiteral("zh")}), 5);
    EXPECT_TRUE(m_stage.commandLine().standardOutput().startsWith(
        QStringLiteral("无法将报告写入 /proc/report.json:")));
}

TEST_F(ReportContentTest, AnotherLogCanBeIncluded)
{
    const QString log = m_folder.filePath(QStringLiteral("other.txt"));
    ASSERT_TRUE(WholeFile::write(log, "the only line\n"));
    EXPECT_EQ(run({QStringLiteral("report"), path(), QStringLiteral("--log"), log}), 0);
    const QJsonObject content = QJsonDocument::fromJson(WholeFile::read(path())).object();
    EXPECT_EQ(content.value(QLatin1String("log")).toObject().value(QLatin1String("lines")).toArray(),
              QJsonArray{QStringLiteral("the only line")});
    EXPECT_TRUE(content.value(QLatin1String("lastRun")).isNull());
}

} // namespace
