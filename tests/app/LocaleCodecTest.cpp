#include "tests/app/LocaleCodecTest.h"

#include "simulator/files/WholeFile.h"
#include "simulator/server/FirmwareServer.h"
#include "support/log/LogFile.h"
#include "support/process/ToolRun.h"
#include "tests/common/ScriptedTools.h"
#include "tests/common/TextOnDisk.h"

#include <QEventLoop>
#include <QFile>
#include <QNetworkAccessManager>
#include <QNetworkReply>

#include <algorithm>
#include <memory>

namespace {

/// Returns whether the text has only characters that a message of the system may have. Bytes that were
/// wrongly read as UTF-16 become characters of arbitrary scripts, or none at all.
bool isReadable(const QString &text)
{
    return !text.isEmpty() && std::all_of(text.begin(), text.end(), [](QChar each) {
        return each.isPrint() && each.unicode() < 0x2100;
    });
}

TEST_F(LocaleCodecTest, FilesWithChineseNamesAreFoundAndListed)
{
    for (const QString &name : {QStringLiteral("映像 一.img"), QStringLiteral("plain.bin")})
        ASSERT_TRUE(QFile(file(name)).open(QIODevice::WriteOnly));
    EXPECT_TRUE(QFile::exists(file(QStringLiteral("映像 一.img"))));
    EXPECT_EQ(QDir(folder()).entryList(QDir::Files, QDir::Name),
              (QStringList{QStringLiteral("plain.bin"), QStringLiteral("映像 一.img")}));
    EXPECT_TRUE(QFile::remove(file(QStringLiteral("映像 一.img"))));
    EXPECT_EQ(QDir(folder()).entryList(QDir::Files), QStringList{QStringLiteral("plain.bin")});
}

TEST_F(LocaleCodecTest, AToolInAChineseFolderRunsWithChineseArguments)
{
    const QString tool = file(QStringLiteral("烧 录.exe"));
    ScriptedTools::place(tool,
                         ScriptedTools::scriptOf(ToolStep::print("烧录 done\n") +
                                                 ToolStep::printError("错误\n") + ToolStep::exitWith(7)));

    const QStringList arguments{QStringLiteral("image"), file(QStringLiteral("映像 一.img"))};
    const ToolRun run = runToolToEnd(tool, arguments, 30000);
    EXPECT_EQ(run.end, ToolRun::Finished) << run.errorString.toStdString();
    EXPECT_EQ(run.exitCode, 7);
    EXPECT_EQ(run.standardOutput, "烧录 done\n");
    EXPECT_EQ(run.standardError, "错误\n");
    const QVector<StandinRun> runs = StandinRuns::read(tool);
    ASSERT_EQ(runs.size(), 1);
    EXPECT_EQ(runs.first().arguments, arguments);
}

TEST_F(LocaleCodecTest, ALogFileInAChineseFolderIsUtf8)
{
    const QString path = file(QStringLiteral("UPDLog.txt"));
    EXPECT_TRUE(LogFile::appendLine(path, QStringLiteral("解析 ok")));
    EXPECT_EQ(WholeFile::read(path), textOnDisk("解析 ok\n"));
}

TEST_F(LocaleCodecTest, WhyAToolDidNotStartIsReadable)
{
    const ToolRun run = runToolToEnd(file(QStringLiteral("none.exe")), {}, 30000);
    EXPECT_EQ(run.end, ToolRun::NotStarted);
    EXPECT_TRUE(isReadable(run.errorString)) << run.errorString.toStdString();
}

TEST_F(LocaleCodecTest, WhyAFileDidNotOpenIsReadable)
{
    QFile missing(file(QStringLiteral("none.img")));
    EXPECT_FALSE(missing.open(QIODevice::ReadOnly));
    EXPECT_TRUE(isReadable(missing.errorString())) << missing.errorString().toStdString();
}

TEST_F(LocaleCodecTest, AServerIsFoundByItsName)
{
    FirmwareServer server(folder());
    ASSERT_TRUE(server.listen());
    ASSERT_TRUE(WholeFile::write(file(QStringLiteral("image.bin")), "bytes"));
    QUrl url = server.url(QStringLiteral("/image.bin"));
    url.setHost(QStringLiteral("localhost"));
    QNetworkAccessManager manager;
    const std::unique_ptr<QNetworkReply> reply(manager.get(QNetworkRequest(url)));
    QEventLoop loop;
    QObject::connect(reply.get(), &QNetworkReply::finished, &loop, &QEventLoop::quit);
    loop.exec();
    EXPECT_EQ(reply->readAll(), "bytes") << qPrintable(reply->errorString());
}

TEST_F(LocaleCodecTest, EnvironmentVariablesKeepTheirText)
{
    ASSERT_TRUE(qputenv("QUILLMARSH_CODEC_TEST", "plain text"));
    EXPECT_EQ(qEnvironmentVariable("QUILLMARSH_CODEC_TEST"), QStringLiteral("plain text"));
    EXPECT_FALSE(QDir::tempPath().isEmpty());
    EXPECT_TRUE(QDir(QDir::tempPath()).exists());
    qunsetenv("QUILLMARSH_CODEC_TEST");
}

} // namespace
