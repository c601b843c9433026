#include "update/FirmwareManifest.h"

#include <QJsonDocument>

#include <gtest/gtest.h>

#include <ostream>

namespace {

QJsonObject object(const char *json)
{
    return QJsonDocument::fromJson(json).object();
}

struct ParseCase
{
    const char *name;
    const char *json;
    bool ok;
    const char *english;
    const char *chinese;
};

void PrintTo(const ParseCase &value, std::ostream *stream)
{
    *stream << value.name;
}

class ManifestParseTest : public testing::TestWithParam<ParseCase>
{
};

TEST_P(ManifestParseTest, ReportsTheResult)
{
    const FirmwareManifest::Parsed parsed = FirmwareManifest::parse(GetParam().json);
    EXPECT_EQ(parsed.ok, GetParam().ok);
    EXPECT_STREQ(parsed.message.logText, GetParam().english);
    EXPECT_STREQ(parsed.message.debugText, GetParam().chinese);
    EXPECT_EQ(parsed.root.isEmpty(), !GetParam().ok);
}

INSTANTIATE_TEST_SUITE_P(
    Manifests, ManifestParseTest,
    testing::Values(ParseCase{"NoJson", "<html>", false, "parse json Failed!", "解析json失败"},
                    ParseCase{"EmptyFile", "", false, "parse json Failed!", "解析json失败"},
                    ParseCase{"NoObject", "[1]", false, "JSON Failed1!", "无效的json格式"},
                    ParseCase{"Object", R"({"a":1})", true, "parse json Success:", "解析json成功:"}),
    [](const auto &test) { return std::string(test.param.name); });

struct LookupCase
{
    const char *name;
    const char *json;
    const char *url;
    QStringList messages;
};

void PrintTo(const LookupCase &value, std::ostream *stream)
{
    *stream << value.name;
}

class ManifestLookupTest : public testing::TestWithParam<LookupCase>
{
};

TEST_P(ManifestLookupTest, ReturnsTheAddressAndItsMessages)
{
    const auto address = FirmwareManifest::fileAddress(object(GetParam().json), QStringLiteral("M1"));
    EXPECT_EQ(address.url, QLatin1String(GetParam().url));
    EXPECT_EQ(address.messages, GetParam().messages);
}

INSTANTIATE_TEST_SUITE_P(
    Lookups, ManifestLookupTest,
    testing::Values(
        LookupCase{"NoCurrentVersion", "{}", "", {QStringLiteral("'CurrentVersion' is not an object.")}},
        LookupCase{"CurrentVersionIsAList",
                   R"({"CurrentVersion":[]})",
                   "",
                   {QStringLiteral("'CurrentVersion' is not an object.")}},
        LookupCase{"NoEntry",
                   R"({"CurrentVersion":{"M2":{},"A":{}}})",
                   "",
                   {QStringLiteral("Keys under 'CurrentVersion':A, M2"),
                    QStringLiteral("Value for keyM1is not an object.")}},
        LookupCase{"EntryIsAText",
                   R"({"CurrentVersion":{"M1":"x"}})",
                   "",
                   {QStringLiteral("Keys under 'CurrentVersion':M1"),
                    QStringLiteral("Value for keyM1is not an object.")}},
        LookupCase{"NoFileUrl",
                   R"({"CurrentVersion":{"M1":{"downloadURL":"http://x/"}}})",
                   "",
                   {QStringLiteral("Keys under 'CurrentVersion':M1"),
                    QStringLiteral("M1does not contain 'fileURL'.")}},
        LookupCase{"FileUrlIsANumber",
                   R"({"CurrentVersion":{"M1":{"fileURL":7}}})",
                   "",
                   {QStringLiteral("Keys under 'CurrentVersion':M1"), QStringLiteral("Found fileURL forM1")}},
        LookupCase{
            "Found",
            R"({"CurrentVersion":{"M1":{"fileURL":"http://x/a.img","md5":"0","other":[]}},"more":1})",
            "http://x/a.img",
            {QStringLiteral("Keys under 'CurrentVersion':M1"), QStringLiteral("Found fileURL forM1")}}),
    [](const auto &test) { return std::string(test.param.name); });

TEST(FirmwareManifestTest, TheMd5IsReturnedUnchanged)
{
    const QJsonObject root = object(R"({"CurrentVersion":{"M1":{"md5":"ABc"},"M2":{"md5":5},"M3":1}})");
    EXPECT_EQ(FirmwareManifest::md5(root, QStringLiteral("M1")), QStringLiteral("ABc"));
    EXPECT_EQ(FirmwareManifest::md5(root, QStringLiteral("M2")), QString());
    EXPECT_EQ(FirmwareManifest::md5(root, QStringLiteral("M3")), QString());
    EXPECT_EQ(FirmwareManifest::md5(root, QStringLiteral("M4")), QString());
    EXPECT_EQ(FirmwareManifest::md5({}, QStringLiteral("M1")), QString());
}

TEST(FirmwareManifestTest, TheChooserReadsDownloadUrlAndNotFileUrl)
{
    const auto urls = FirmwareManifest::downloadUrls(
        object(R"({"CurrentVersion":{"b":{"downloadURL":"u1","fileURL":"f"},"a":{"fileURL":"f"},"C":3}})"));
    EXPECT_EQ(urls, (QMap<QString, QString>{{QStringLiteral("C"), QString()},
                                            {QStringLiteral("a"), QString()},
                                            {QStringLiteral("b"), QStringLiteral("u1")}}));
    EXPECT_TRUE(FirmwareManifest::downloadUrls(object(R"({"CurrentVersion":1})")).isEmpty());
}

} // namespace
