#include "cli/commands/CheckCommand.h"

#include "cli/commands/CommandContext.h"
#include "support/process/ShutdownFlag.h"
#include "tests/checks/RecordedFindings.h"
#include "tests/checks/TestServerAddress.h"
#include "tests/common/AnotherAttempt.h"
#include "tests/signature/Signatures.h"
#include "tests/update/ManifestServer.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

namespace {

using Verdict = Finding::Verdict;

/// Runs the command beside a server that has a manifest for DevMaa at the address where the program looks for
/// it. There are no tools of the maker beside the test program.
class CheckCommandTest : public testing::Test
{
protected:
    CheckCommandTest()
    {
        dependsOnRealTime("the ten seconds of a request");
        testServerAddress() = server.server.url(QString()).toString();
        EXPECT_TRUE(QDir(server.folder.path()).mkpath(QStringLiteral("Tessilonix/firmware")));
        server.write(QStringLiteral("a.img"), QByteArray(5000, 'a'));
        server.write(QStringLiteral("Tessilonix/firmware/firmware-version-check-test.json"),
                     QStringLiteral(R"({"CurrentVersion":{"DevMaa":{"fileURL":"%1","md5":"%2"}}})")
                         .arg(server.server.url(QStringLiteral("/a.img")).toString(),
                              QStringLiteral("0123456789abcdef0123456789abcdef"))
                         .toUtf8());
    }
    ~CheckCommandTest() override { ShutdownFlag::instance().lower(); }

    ExitCode check(const char *model)
    {
        recorded.findings.clear();
        Options options;
        options.command = Options::Command::Check;
        options.model = QLatin1String(model);
        CommandContext context(options, recorded);
        return runCheckCommand(context);
    }

    ManifestServer server;
    RecordedFindings recorded;
};

TEST_F(CheckCommandTest, EachThingIsReportedOnce)
{
    EXPECT_EQ(check("DevMaa"), ExitCode::NotPrepared);
    QStringList things;
    for (const Finding &finding : recorded.findings)
        things.append(finding.what);
    EXPECT_EQ(
        things.join(QLatin1Char(' ')),
        QStringLiteral("device device-access driver control-list usb-flasher hid-flasher iap-programmer "
                       "temporary-folder update-lock tls server manifest manifest-entry image-sum image "
                       "disk-space"));
}

TEST_F(CheckCommandTest, PresentThingsAreOkAndMissingThingsAreNot)
{
    check("DevMaa");
    for (const char *what :
         {"temporary-folder", "server", "manifest", "manifest-entry", "image-sum", "image"})
        EXPECT_EQ(recorded.about(what).verdict, Verdict::Ok) << qPrintable(recorded.about(what).text);
    for (const char *what : {"control-list", "usb-flasher"})
        EXPECT_EQ(recorded.about(what).verdict, Verdict::Problem) << qPrintable(recorded.about(what).text);
    for (const char *what : {"hid-flasher", "iap-programmer"})
        EXPECT_EQ(recorded.about(what).verdict, Verdict::Warning) << qPrintable(recorded.about(what).text);
    EXPECT_TRUE(recorded.about("image").text.startsWith(QStringLiteral("5000 bytes")));
}

TEST_F(CheckCommandTest, WithTheMakersKeysTheSignatureIsChecked)
{
    testFirmwareKeys() = QStringList{QString::fromLatin1(Signatures::key("first"))};
    check("DevMaa");
    EXPECT_EQ(recorded.about("image-signature").verdict, Verdict::Problem);
    const QJsonObject entry{{QStringLiteral("signature"), QString::fromUtf8(Signatures::text("good"))}};
    const QJsonObject versions{{QStringLiteral("DevMaa"), entry}};
    server.write(QStringLiteral("Tessilonix/firmware/firmware-version-check-test.json"),
                 QJsonDocument(QJsonObject{{QStringLiteral("CurrentVersion"), versions}}).toJson());
    check("DevMaa");
    EXPECT_EQ(recorded.about("image-signature").verdict, Verdict::Ok);
    testFirmwareKeys().clear();
}

TEST_F(CheckCommandTest, AModelThatIsMissingInTheManifestIsAProblem)
{
    check("DevMab");
    EXPECT_EQ(recorded.about("manifest-entry").verdict, Verdict::Problem);
    EXPECT_EQ(recorded.about("image-sum").verdict, Verdict::Problem);
}

TEST_F(CheckCommandTest, AServerThatSendsAnotherPageIsFound)
{
    server.setFault(QStringLiteral("503"));
    check("DevMaa");
    EXPECT_EQ(recorded.about("server").verdict, Verdict::Ok);
    EXPECT_EQ(recorded.about("manifest").verdict, Verdict::Problem);
}

TEST_F(CheckCommandTest, AServerThatRefusesIsFound)
{
    server.setFault(QStringLiteral("refuse"));
    check("DevMaa");
    EXPECT_EQ(recorded.about("server").verdict, Verdict::Problem);
}

TEST_F(CheckCommandTest, ARequestToEndTheProgramEndsTheCheck)
{
    server.setFault(QStringLiteral("stall"));
    ShutdownFlag::instance().raise();
    EXPECT_EQ(check("DevMaa"), ExitCode::Interrupted);
}

} // namespace
