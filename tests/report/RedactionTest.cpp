#include "report/Redaction.h"

#include <QJsonArray>
#include <QJsonObject>

#include <gtest/gtest.h>

namespace {

struct Row
{
    const char *name;
    QStringList folders;
    QStringList names;
    const char *text;
    const char *expected;
    Qt::CaseSensitivity sensitivity = Qt::CaseSensitive;
};

void PrintTo(const Row &row, std::ostream *stream)
{
    *stream << row.name;
}

const QStringList anna{QStringLiteral("anna")};
const QStringList annasHome{QStringLiteral("/home/anna")};
const QStringList windowsHome{QStringLiteral("C:/Users/Änne M"), QStringLiteral("C:\\Users\\NNEM~1")};

class RedactionTest : public testing::TestWithParam<Row>
{
};

TEST_P(RedactionTest, ReplacesWhatIdentifiesTheUser)
{
    const Row &row = GetParam();
    const Redaction redaction(row.folders, row.names, row.sensitivity);
    EXPECT_EQ(redaction.apply(QString::fromUtf8(row.text)), QString::fromUtf8(row.expected));
}

INSTANTIATE_TEST_SUITE_P(
    Each, RedactionTest,
    testing::Values(
        Row{"Folder", annasHome, anna, "/home/anna/x.img", "<home>/x.img"},
        Row{"FolderAlone", annasHome, anna, "in /home/anna.", "in <home>."},
        Row{"FolderOfAnother", annasHome, anna, "/home/annabel/x", "/home/annabel/x"},
        Row{"FolderWithASeparatorAtItsEnd", {QStringLiteral("/home/anna/")}, {}, "/home/anna/x", "<home>/x"},
        Row{"NameAsAWord", annasHome, anna, "user anna, anna's", "user <user>, <user>'s"},
        Row{"NameInAPath", annasHome, anna, "/media/anna/stick", "/media/<user>/stick"},
        Row{"NameBetweenUnderlines", annasHome, anna, "log_anna_1", "log_<user>_1"},
        Row{"NameInsideAWord", annasHome, anna, "Savannah joanna", "Savannah joanna"},
        Row{"AnotherLetterCase", annasHome, anna, "Anna", "Anna"},
        Row{"BothSeparators",
            windowsHome,
            {},
            "C:\\Users\\Änne M\\x C:/Users/Änne M/y",
            "<home>\\x <home>/y",
            Qt::CaseInsensitive},
        Row{"EscapedSeparators",
            windowsHome,
            {},
            "\"C:\\\\Users\\\\Änne M\\\\x\"",
            "\"<home>\\\\x\"",
            Qt::CaseInsensitive},
        Row{"LetterCaseOfWindows",
            windowsHome,
            {QStringLiteral("Änne M")},
            "c:/users/änne m/x ÄNNE M",
            "<home>/x <user>",
            Qt::CaseInsensitive},
        Row{"ShortName", windowsHome, {}, "C:\\Users\\NNEM~1\\Temp", "<home>\\Temp", Qt::CaseInsensitive},
        Row{"LongestFirst",
            {QStringLiteral("/home"), QStringLiteral("/home/anna")},
            {},
            "/home/anna/x",
            "<home>/x"},
        Row{"RootIsNoHome",
            {QStringLiteral("/"), QStringLiteral("C:\\"), QString()},
            {QString()},
            "/usr C:\\x",
            "/usr C:\\x"},
        Row{"SpecialCharacters",
            {QStringLiteral("/home/a+b(c)")},
            {QStringLiteral("a+b(c)")},
            "/home/a+b(c)/x a+b(c) aab",
            "<home>/x <user> aab"},
        Row{"NobodyKnown", {}, {}, "/home/anna", "/home/anna"}),
    [](const auto &row) { return row.param.name; });

TEST(RedactionOfValuesTest, TextsAreReplacedButNotKeysAndNumbers)
{
    const Redaction redaction(annasHome, anna, Qt::CaseSensitive);
    const QJsonObject value{
        {QStringLiteral("anna"), QStringLiteral("anna")},
        {QStringLiteral("list"), QJsonArray{QStringLiteral("/home/anna"), 7, QJsonValue(), true}},
        {QStringLiteral("deep"), QJsonObject{{QStringLiteral("x"), QJsonArray{QStringLiteral("by anna")}}}}};
    const QJsonObject expected{
        {QStringLiteral("anna"), QStringLiteral("<user>")},
        {QStringLiteral("list"), QJsonArray{QStringLiteral("<home>"), 7, QJsonValue(), true}},
        {QStringLiteral("deep"),
         QJsonObject{{QStringLiteral("x"), QJsonArray{QStringLiteral("by <user>")}}}}};
    EXPECT_EQ(redaction.apply(QJsonValue(value)), QJsonValue(expected));
}

} // namespace
