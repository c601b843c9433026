#include "cli/commands/ManifestCommand.h"

#include "cli/commands/CommandContext.h"
#include "tests/checks/RecordedFindings.h"
#include "tests/checks/TestServerAddress.h"
#include "tests/common/AnotherAttempt.h"
#include "tests/signature/Signatures.h"
#include "tests/update/ManifestServer.h"

#include <QCryptographicHash>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

namespace {

/// Runs the command on a server with an image for DevMaa and a correct manifest.
class ManifestCommandTest : public testing::Test
{
protected:
    ManifestCommandTest()
    {
        dependsOnRealTime("the ten seconds of a request");
        server.write(QStringLiteral("a.img"), image);
        setManifest(QString::fromLatin1(QCryptographicHash::hash(image, QCryptographicHash::Md5).toHex()));
    }

    void setManifest(const QString &sum, const QString &model = QStringLiteral("DevMaa"))
    {
        const QString url = server.server.url(QStringLiteral("/a.img")).toString();
        server.setManifest(
            QStringLiteral(R"({"CurrentVersion":{"%1":{"fileURL":"%2","downloadURL":"%2","md5":"%3"}}})")
                .arg(model, url, sum)
                .toUtf8());
    }

    /// Serves `file`, by default the signed test image, with the test signature `signature` in the manifest.
    void serveSigned(const char *signature, const char *file = "image")
    {
        testFirmwareKeys() = QStringList{QString::fromLatin1(Signatures::key("first"))};
        const QByteArray bytes = WholeFile::read(Signatures::path(file));
        server.write(QStringLiteral("a.img"), bytes);
        const QString url = server.server.url(QStringLiteral("/a.img")).toString();
        const QByteArray sum = QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex();
        const QJsonObject entry{
            {QStringLiteral("fileURL"), url},
            {QStringLiteral("downloadURL"), url},
            {QStringLiteral("md5"), QString::fromLatin1(sum)},
            {QStringLiteral("signature"), QString::fromUtf8(Signatures::text(signature))}};
        const QJsonObject versions{{QStringLiteral("DevMaa"), entry}};
        server.setManifest(QJsonDocument(QJsonObject{{QStringLiteral("CurrentVersion"), versions}}).toJson());
    }

    ExitCode verify(const QString &source, bool download = false)
    {
        recorded.findings.clear();
        Options options;
        options.command = Options::Command::VerifyManifest;
        options.manifest = source;
        options.download = download;
        CommandContext context(options, recorded);
        return runManifestCommand(context);
    }

    void TearDown() override { testFirmwareKeys().clear(); }

    const QByteArray image = QByteArray(50000, 'q') + QByteArray(50000, 'r');
    ManifestServer server;
    RecordedFindings recorded;
};

TEST_F(ManifestCommandTest, ACorrectManifestPassesFromAnAddressAndFromAFile)
{
    EXPECT_EQ(verify(server.manifestUrl(), true), ExitCode::Done);
    EXPECT_EQ(recorded.remarks(), QStringList());
    EXPECT_EQ(recorded.about("DevMaa/sum").verdict, Finding::Verdict::Ok)
        << qPrintable(recorded.about("DevMaa/sum").text);
    EXPECT_EQ(verify(server.folder.filePath(QStringLiteral("manifest.json"))), ExitCode::Done);
    EXPECT_EQ(recorded.remarks(), QStringList());
    EXPECT_EQ(recorded.about("DevMaa/image").verdict, Finding::Verdict::Ok);
}

TEST_F(ManifestCommandTest, WithTheMakersKeysASignatureIsRequired)
{
    testFirmwareKeys() = QStringList{QString::fromLatin1(Signatures::key("first"))};
    EXPECT_EQ(verify(server.manifestUrl(), true), ExitCode::FirmwareUnusable);
    EXPECT_EQ(recorded.remarks(), QStringList{QStringLiteral("DevMaa/signature problem")});
}

TEST_F(ManifestCommandTest, WithTheMakersKeysEachImageIsVerified)
{
    serveSigned("good");
    EXPECT_EQ(verify(server.manifestUrl(), true), ExitCode::Done);
    EXPECT_EQ(recorded.remarks(), QStringList());
    EXPECT_EQ(recorded.about("DevMaa/signature").verdict, Finding::Verdict::Ok);
    EXPECT_EQ(recorded.about("DevMaa/signed-image").verdict, Finding::Verdict::Ok);
    serveSigned("other-model");
    EXPECT_EQ(verify(server.manifestUrl()), ExitCode::FirmwareUnusable);
    EXPECT_EQ(recorded.remarks(), QStringList{QStringLiteral("DevMaa/signature problem")});
}

TEST_F(ManifestCommandTest, AnImageThatWasNotSignedIsFoundOnlyByFetchingIt)
{
    serveSigned("good", "other-image");
    EXPECT_EQ(verify(server.manifestUrl()), ExitCode::Done);
    EXPECT_EQ(verify(server.manifestUrl(), true), ExitCode::FirmwareUnusable);
    EXPECT_EQ(recorded.remarks(), QStringList{QStringLiteral("DevMaa/signed-image problem")});
}

TEST_F(ManifestCommandTest, WithoutKeysSignaturesAreNotMentioned)
{
    serveSigned("other-model");
    testFirmwareKeys().clear();
    EXPECT_EQ(verify(server.manifestUrl(), true), ExitCode::Done);
    for (const Finding &finding : recorded.findings)
        EXPECT_FALSE(finding.what.contains(QLatin1String("sign"))) << qPrintable(finding.what);
}

TEST_F(ManifestCommandTest, WithoutASourceTheProgramsOwnServerIsChecked)
{
    testServerAddress() = server.server.url(QString()).toString();
    EXPECT_EQ(verify(QString()), ExitCode::FirmwareUnusable);
    EXPECT_EQ(recorded.remarks(), QStringList{QStringLiteral("manifest problem")});
    EXPECT_EQ(server.server.requests().size(), 1);
}

TEST_F(ManifestCommandTest, AWrongSumIsFoundOnlyByFetchingTheImage)
{
    setManifest(QStringLiteral("0123456789abcdef0123456789abcdef"));
    EXPECT_EQ(verify(server.manifestUrl()), ExitCode::Done);
    EXPECT_EQ(verify(server.manifestUrl(), true), ExitCode::FirmwareUnusable);
    EXPECT_EQ(recorded.remarks(), QStringList{QStringLiteral("DevMaa/sum problem")});
}

TEST_F(ManifestCommandTest, AnUnknownModelIsOnlyAWarning)
{
    setManifest(QStringLiteral("0123456789abcdef0123456789abcdef"), QStringLiteral("DevXyz"));
    EXPECT_EQ(verify(server.manifestUrl()), ExitCode::Done);
    EXPECT_EQ(recorded.remarks(), QStringList{QStringLiteral("DevXyz warning")});
}

TEST_F(ManifestCommandTest, EachFaultOfTheServerIsFound)
{
    const struct
    {
        const char *fault;
        const char *remark;
    } cases[] = {
        {"404:path=/manifest.json", "manifest problem"},
        {"close-after:bytes=10,path=/manifest.json", "manifest problem"},
        {"refuse", "server problem"},
        {"404:path=/a.img", "DevMaa/image problem"},
        {"503:path=/a.img", "DevMaa/image problem"},
        {"no-length:path=/a.img", "DevMaa/image problem"},
        {"416:path=/a.img,nth=2", "DevMaa/image problem"},
        {"ignore-range:path=/a.img", "DevMaa/image warning"},
        {"short-206:path=/a.img,bytes=4", "DevMaa/image problem"},
        {"header:path=/a.img,nth=2,name=Content-Range,value=bytes 1-9/99999", "DevMaa/image problem"},
    };
    for (const auto &c : cases) {
        server.server.clearFaults();
        server.setFault(QLatin1String(c.fault));
        const QString remark = QLatin1String(c.remark);
        EXPECT_EQ(verify(server.manifestUrl()),
                  remark.endsWith(QLatin1String("warning")) ? ExitCode::Done : ExitCode::FirmwareUnusable)
            << c.fault;
        EXPECT_EQ(recorded.remarks(), QStringList{remark}) << c.fault;
    }
}

TEST_F(ManifestCommandTest, ADifferentAddressInDownloadUrlMustAnswer)
{
    const QString url = server.server.url(QStringLiteral("/a.img")).toString();
    server.setManifest(QStringLiteral(R"({"CurrentVersion":{"DevMaa":{"fileURL":"%1","downloadURL":"%1x",)"
                                      R"("md5":"0123456789abcdef0123456789abcdef"}}})")
                           .arg(url)
                           .toUtf8());
    EXPECT_EQ(verify(server.manifestUrl()), ExitCode::FirmwareUnusable);
    EXPECT_EQ(recorded.remarks(), QStringList{QStringLiteral("DevMaa/download problem")});
}

TEST_F(ManifestCommandTest, AMissingManifestFileIsAProblem)
{
    EXPECT_EQ(verify(server.folder.filePath(QStringLiteral("nothing.json"))), ExitCode::FirmwareUnusable);
    EXPECT_EQ(recorded.remarks(), QStringList{QStringLiteral("manifest problem")});
}

} // namespace
