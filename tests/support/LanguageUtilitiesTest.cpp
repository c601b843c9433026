#include "support/LanguageUtilities.h"
#include "simulator/files/WholeFile.h"
#include "tests/common/RecordedDebugStream.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

class LanguageUtilitiesTest : public testing::Test
{
protected:
    void write(const QString &code, const QByteArray &json)
    {
        ASSERT_TRUE(WholeFile::write(m_folder.filePath(code + QStringLiteral(".json")), json));
    }

    const QString m_key = QStringLiteral("Log");
    const QString m_fallback = QStringLiteral("日志");
    QTemporaryDir m_folder;
};

TEST_F(LanguageUtilitiesTest, AnUnknownLanguageDoesNotChangeTheCurrentOne)
{
    write(QStringLiteral("en"), R"({"Log":"Log!"})");
    LanguageUtilities tables(m_folder.path());
    tables.setLanguage(QStringLiteral("en"));
    tables.setLanguage(QStringLiteral("fr"));
    EXPECT_EQ(tables.language(), QStringLiteral("en"));
    EXPECT_EQ(tables.lookup(m_key, m_fallback), QStringLiteral("Log!"));
}

TEST_F(LanguageUtilitiesTest, ALanguageWithoutAFileYieldsTheFallback)
{
    write(QStringLiteral("en"), R"({"Log":"Log!"})");
    const LanguageUtilities tables(m_folder.path());
    EXPECT_EQ(tables.lookup(m_key, m_fallback, QStringLiteral("fr")), m_fallback);
}

TEST_F(LanguageUtilitiesTest, EachTableThatCannotBeOpenedIsNamedWithTheReasonInTheDebugStream)
{
    write(QStringLiteral("en"), R"({"Log":"Log!"})");
    // A folder with the name of the file.
    ASSERT_TRUE(QDir(m_folder.path()).mkdir(QStringLiteral("ko.json")));
    QStringList expected;
    for (const char *code : {"ar", "de", "es", "fr", "it", "ja", "ko", "pl", "pt", "ru", "zh_CN", "zh_HK"}) {
        QFile file(m_folder.path() + QLatin1Char('/') + QLatin1String(code) + QStringLiteral(".json"));
        ASSERT_FALSE(file.open(QIODevice::ReadOnly));
        expected.append(QStringLiteral("Unable to open file ") + file.fileName() +
                        QStringLiteral(", error info: ") + file.errorString());
    }
    const RecordedDebugStream debug;
    const LanguageUtilities tables(m_folder.path());
    EXPECT_EQ(debug.lines(), expected);
    EXPECT_EQ(debug.lines(QtDebugMsg), expected);
}

TEST_F(LanguageUtilitiesTest, AnEmptyTextCountsAsMissing)
{
    write(QStringLiteral("en"), R"({"Log":""})");
    LanguageUtilities tables(m_folder.path());
    tables.setLanguage(QStringLiteral("en"));
    EXPECT_EQ(tables.lookup(m_key, m_fallback), m_fallback);
}

TEST_F(LanguageUtilitiesTest, AKeyThatTheEnglishTableLacksShowsChineseInAnEnglishWindow)
{
    write(QStringLiteral("en"), R"({"Other":"Other"})");
    LanguageUtilities tables(m_folder.path());
    tables.setLanguage(QStringLiteral("en"));
    EXPECT_EQ(tables.lookup(m_key, m_fallback), m_fallback);
}

TEST_F(LanguageUtilitiesTest, ATableThatIsNoJsonYieldsTheFallback)
{
    write(QStringLiteral("en"), "\xff not json");
    LanguageUtilities tables(m_folder.path());
    tables.setLanguage(QStringLiteral("en"));
    EXPECT_EQ(tables.lookup(m_key, m_fallback), m_fallback);
}

TEST_F(LanguageUtilitiesTest, AnEmptyTableFileYieldsTheFallback)
{
    write(QStringLiteral("en"), "");
    LanguageUtilities tables(m_folder.path());
    tables.setLanguage(QStringLiteral("en"));
    EXPECT_EQ(tables.language(), QStringLiteral("en"));
    EXPECT_EQ(tables.lookup(m_key, m_fallback), m_fallback);
}

TEST_F(LanguageUtilitiesTest, AHugeFileThatIsNoTableYieldsTheFallback)
{
    QFile sparse(m_folder.filePath(QStringLiteral("en.json")));
    ASSERT_TRUE(sparse.open(QIODevice::WriteOnly));
    ASSERT_TRUE(sparse.resize(100 * 1024 * 1024));
    sparse.close();
    LanguageUtilities tables(m_folder.path());
    tables.setLanguage(QStringLiteral("en"));
    EXPECT_EQ(tables.lookup(m_key, m_fallback), m_fallback);
}

TEST_F(LanguageUtilitiesTest, InAHugeTableEveryTextIsFound)
{
    QByteArray json("{");
    for (int i = 0; i < 100000; ++i)
        json += QByteArrayLiteral("\"key ") + QByteArray::number(i) + "\":\"text " + QByteArray::number(i) +
                "\",";
    write(QStringLiteral("en"), json + R"("Log":"Log!"})");
    LanguageUtilities tables(m_folder.path());
    tables.setLanguage(QStringLiteral("en"));
    EXPECT_EQ(tables.lookup(QStringLiteral("key 0"), m_fallback), QStringLiteral("text 0"));
    EXPECT_EQ(tables.lookup(QStringLiteral("key 99999"), m_fallback), QStringLiteral("text 99999"));
    EXPECT_EQ(tables.lookup(m_key, m_fallback), QStringLiteral("Log!"));
}

TEST_F(LanguageUtilitiesTest, AnArrayOrTextsOfAnotherTypeYieldTheFallback)
{
    for (const char *json :
         {R"(["Log", "Log!"])", R"({"Log":7})", R"({"Log":["Log!"]})", R"({"Log":{"en":"Log!"}})", "7"}) {
        write(QStringLiteral("en"), json);
        LanguageUtilities tables(m_folder.path());
        tables.setLanguage(QStringLiteral("en"));
        EXPECT_EQ(tables.lookup(m_key, m_fallback), m_fallback) << json;
    }
}

TEST_F(LanguageUtilitiesTest, AnExplicitLanguageIsUsedInsteadOfTheCurrentOne)
{
    write(QStringLiteral("en"), R"({"Log":"Log!"})");
    write(QStringLiteral("zh_CN"), R"({"Log":"日志?"})");
    LanguageUtilities tables(m_folder.path());
    tables.setLanguage(QStringLiteral("en"));
    EXPECT_EQ(tables.lookup(m_key, m_fallback, QStringLiteral("zh_CN")), QStringLiteral("日志?"));
}

} // namespace
