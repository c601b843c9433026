#include "checks/ManifestFindings.h"

#include "tests/checks/RecordedFindings.h"

#include <QJsonDocument>

#include <gtest/gtest.h>

namespace {

using Verdict = Finding::Verdict;

QJsonObject object(const QByteArray &json)
{
    return QJsonDocument::fromJson(json).object();
}

TEST(ManifestFindingsTest, AManifestMustBeAnObjectThatListsModels)
{
    const struct
    {
        const char *json;
        Verdict verdict;
    } cases[] = {
        {"", Verdict::Problem},
        {"<html>", Verdict::Problem},
        {"[1]", Verdict::Problem},
        {"{}", Verdict::Problem},
        {R"({"CurrentVersion":[]})", Verdict::Problem},
        {R"({"CurrentVersion":{}})", Verdict::Problem},
        {R"({"CurrentVersion":{"DevMaa":{}}})", Verdict::Ok},
    };
    for (const auto &c : cases) {
        QJsonObject root;
        EXPECT_EQ(ManifestFindings::manifest(c.json, &root).verdict, c.verdict) << c.json;
        EXPECT_EQ(root, object(c.json)) << c.json;
    }
}

TEST(ManifestFindingsTest, AModelNeedsAWebAddress)
{
    const struct
    {
        const char *entry;
        Verdict verdict;
    } cases[] = {
        {R"({"fileURL":"http://x.example/a.img"})", Verdict::Ok},
        {R"({"fileURL":"https://x.example/a.img"})", Verdict::Ok},
        {R"({"fileURL":"ftp://x.example/a.img"})", Verdict::Problem},
        {R"({"fileURL":"/a.img"})", Verdict::Problem},
        {R"({"fileURL":"https:///a.img"})", Verdict::Problem},
        {R"({"fileURL":7})", Verdict::Problem},
        {R"({})", Verdict::Problem},
        {R"([])", Verdict::Problem},
    };
    for (const auto &c : cases) {
        const QJsonObject root = object(QByteArray(R"({"CurrentVersion":{"DevMaa":)") + c.entry + "}}");
        EXPECT_EQ(ManifestFindings::entryFor(root, QStringLiteral("DevMaa")).verdict, c.verdict) << c.entry;
        EXPECT_EQ(ManifestFindings::entryFor(root, QStringLiteral("DevMab")).verdict, Verdict::Problem);
    }
}

TEST(ManifestFindingsTest, AnEntryMustHaveItsKeysWithTheRightTypes)
{
    const char *const sum = R"("md5":"0123456789abcdef0123456789abcdef")";
    const QByteArray right =
        QByteArray(R"({"fileURL":"http://x.example/a","downloadURL":"http://x.example/b",)") + sum + '}';
    const struct
    {
        QByteArray entry;
        bool isKnown;
        QStringList remarks;
    } cases[] = {
        {right, true, {}},
        {right, false, {QStringLiteral("DevMaa warning")}},
        {"7", true, {QStringLiteral("DevMaa problem")}},
        {"{}",
         true,
         {QStringLiteral("DevMaa/fileURL problem"), QStringLiteral("DevMaa/downloadURL warning"),
          QStringLiteral("DevMaa/md5 problem")}},
        {R"({"fileURL":1,"downloadURL":null,"md5":{}})",
         true,
         {QStringLiteral("DevMaa/fileURL problem"), QStringLiteral("DevMaa/downloadURL problem"),
          QStringLiteral("DevMaa/md5 problem")}},
        {R"({"fileURL":"a","downloadURL":"","md5":"0123456789ABCDEF0123456789ABCDEF"})",
         true,
         {QStringLiteral("DevMaa/fileURL problem"), QStringLiteral("DevMaa/downloadURL problem"),
          QStringLiteral("DevMaa/md5 problem")}},
    };
    for (const auto &c : cases) {
        RecordedFindings recorded;
        const QJsonObject versions = object("{\"DevMaa\":" + c.entry + '}');
        recorded.findings = ManifestFindings::entry(QStringLiteral("DevMaa"),
                                                    versions.value(QLatin1String("DevMaa")), c.isKnown);
        EXPECT_EQ(recorded.remarks(), c.remarks) << c.entry.constData();
    }
}

} // namespace
