#include "report/ReportText.h"

#include "report/FileFacts.h"
#include "simulator/files/WholeFile.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

TEST(ReportTextTest, ItsFirstLinesSayThatNothingWasSentAndWhatWasReplaced)
{
    const QByteArray real = ReportText::of({{QStringLiteral("checks"), QJsonArray()}}, {});
    const QByteArray head = real.left(real.indexOf(']'));
    EXPECT_TRUE(real.startsWith("{\n    \"about\": ["));
    EXPECT_TRUE(head.contains("sent it nowhere"));
    EXPECT_TRUE(head.contains("<home>"));
    EXPECT_TRUE(head.contains("<user>"));
    EXPECT_TRUE(head.contains("未发送到任何地方"));
    EXPECT_EQ(QJsonDocument::fromJson(real).object().value(QLatin1String("formatVersion")), QJsonValue(1));
}

TEST(ReportTextTest, ItIsWrittenCompletelyOrTheReasonIsReturned)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a report ä报.json"));
    EXPECT_EQ(ReportText::save("first", path), QString());
    EXPECT_EQ(ReportText::save("second", path), QString());
    EXPECT_EQ(WholeFile::read(path), QByteArray("second"));
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files).size(), 1);

    EXPECT_EQ(ReportText::save("x", folder.path()), QStringLiteral("not a plain file"));
    EXPECT_NE(ReportText::save("x", folder.filePath(QStringLiteral("none/report.json"))), QString());
    EXPECT_NE(ReportText::save("x", QString()), QString());
}

TEST(ReportTextTest, TheProposedNameIsAValidFileNameOnEverySystem)
{
    const QString name = ReportText::proposedName();
    EXPECT_TRUE(name.startsWith(QLatin1String("quillmarsh-report-")));
    EXPECT_TRUE(name.endsWith(QLatin1String(".json")));
    for (const char forbidden : {':', '/', '\\', '*', '?', '"', '<', '>', '|'})
        EXPECT_FALSE(name.contains(QLatin1Char(forbidden)));
}

TEST(FileFactsTest, AFileHasItsSizeAndSum)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("tool"));
    ASSERT_TRUE(WholeFile::write(path, "abc"));
    EXPECT_EQ(
        FileFacts::of(path),
        (QJsonObject{{QStringLiteral("path"), path},
                     {QStringLiteral("size"), 3},
                     {QStringLiteral("sha256"),
                      QStringLiteral("ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad")}}));
    const QJsonObject none = FileFacts::of(folder.path());
    EXPECT_TRUE(none.value(QLatin1String("size")).isNull());
    EXPECT_TRUE(none.value(QLatin1String("sha256")).isNull());
}

TEST(FileFactsTest, AFolderIsDescribedByNamesAndSizes)
{
    const QTemporaryDir folder;
    ASSERT_TRUE(QDir(folder.path()).mkpath(QStringLiteral("tmp")));
    ASSERT_TRUE(WholeFile::write(folder.filePath(QStringLiteral("tmp/dev.img")), QByteArray(1000, 'x')));
    const QJsonArray entries = FileFacts::contentsOf(folder.path());
    ASSERT_EQ(entries.size(), 2);
    EXPECT_TRUE(entries.contains(QJsonObject{{QStringLiteral("name"), QStringLiteral("tmp/dev.img")},
                                             {QStringLiteral("size"), 1000}}));
    EXPECT_TRUE(entries.contains(QJsonObject{{QStringLiteral("name"), QStringLiteral("tmp")},
                                             {QStringLiteral("size"), QJsonValue()}}));
    for (int i = 0; i < 150; ++i)
        ASSERT_TRUE(WholeFile::write(folder.filePath(QString::number(i)), "x"));
    EXPECT_EQ(FileFacts::contentsOf(folder.path()).size(), 100);
}

} // namespace
