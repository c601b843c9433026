#include "tests/cli/CliTest.h"

namespace {

using namespace CliCases;

/// Each way to end that is no success, with its exit code.
class CliExitCodeTest : public CliTest
{
};

TEST_F(CliExitCodeTest, OneWhenTheFlasherFails)
{
    CliScenario &s = scenario();
    s.program.setScript(usbFlasher,
                        scriptFor(QStringLiteral("image"), {{step("progress"), step("exit", 1)}}));
    EXPECT_EQ(run({update}), 1);
    expectResult("failed", "flashing", "writing-failed", 1);
    EXPECT_TRUE(s.burned().isEmpty());
    EXPECT_EQ(s.bus.device(s.model()).value(QLatin1String("resets")).toInt(), 0);
}

TEST_F(CliExitCodeTest, OneWhenTheFlasherNeverReachesTheDevice)
{
    CliScenario &s = scenario();
    s.program.setScript(
        usbFlasher, script({{step("print", QStringLiteral("Open upg device failed\n")), step("exit", 1)}}));
    EXPECT_EQ(run({update}), 1);
    expectResult("failed", "entering-bootloader", "device-not-reachable", 1);
    EXPECT_EQ(scenario().program.runs(usbFlasher).size(), 10) << "ten tries";
}

TEST_F(CliExitCodeTest, OneWhenTheDeviceRefusesTheReportOverHid)
{
    CliScenario &s = scenario();
    s.devices[0].insert(QStringLiteral("writes"),
                        QJsonObject{{QStringLiteral("answer"), QStringLiteral("refused")}});
    EXPECT_EQ(run({update, QStringLiteral("--write-type"), QStringLiteral("hid")}), 1);
    expectResult("failed", "entering-bootloader", "bootloader-not-entered", 1);
    EXPECT_TRUE(s.program.runs(hidFlasher).isEmpty());
}

TEST_F(CliExitCodeTest, OneWhenTheProgrammerFails)
{
    CliScenario &s = scenario("DevMdq");
    s.program.setScript(iapProgrammer,
                        scriptFor(QStringLiteral("Start"),
                                  {{step("print", QStringLiteral("SetProgress: 42\n")), step("exit", 1)}}));
    EXPECT_EQ(run({update}), 1);
    expectResult("failed", "programming", "writing-failed", 1);
    EXPECT_TRUE(s.burned().isEmpty());
}

TEST_F(CliExitCodeTest, TwoForEachWrongCommandLine)
{
    CliScenario &s = scenario();
    const QList<QStringList> wrong{
        {},
        {QStringLiteral("upgrade")},
        {QStringLiteral("update"), QStringLiteral("--unknown")},
        {QStringLiteral("update"), QStringLiteral("DevMaa")},
        {QStringLiteral("update"), QStringLiteral("--wait"), QStringLiteral("soon")},
        {QStringLiteral("update"), QStringLiteral("--md5"), sumOf("x")},
        {QStringLiteral("list"), QStringLiteral("--yes")},
        {QStringLiteral("manifest")},
    };
    for (const QStringList &arguments : wrong) {
        EXPECT_EQ(runForPerson(arguments), 2) << arguments.join(QLatin1Char(' ')).toStdString();
        EXPECT_EQ(s.program.standardOutput(), QString());
        EXPECT_TRUE(s.program.standardError().contains(QLatin1String("Usage: quillmarsh-cli")));
    }
    expectUntouchedDevice();
}

TEST_F(CliExitCodeTest, FourWhenThereIsNoServer)
{
    scenario().withServer = false;
    EXPECT_EQ(run({update}), 4);
    expectResult("failed", "fetching", "address-not-found", 4);
    expectUntouchedDevice();
}

TEST_F(CliExitCodeTest, FourWhenTheServerHasNoFirmwareForTheModel)
{
    scenario().firmware.setManifest(R"({"CurrentVersion":{}})");
    EXPECT_EQ(run({update}), 4);
    expectResult("failed", "fetching", "address-not-found", 4);
    expectUntouchedDevice();
}

TEST_F(CliExitCodeTest, FourWhenTheSumIsWrong)
{
    scenario().firmware.setField(scenario().model(), QStringLiteral("md5"), sumOf("another"));
    EXPECT_EQ(run({update}), 4);
    expectResult("failed", "fetching", "checksum-mismatch", 4);
    expectUntouchedDevice();
}

TEST_F(CliExitCodeTest, FourWhenTheImageNeverArrivesWhole)
{
    scenario().serverFaults = QStringList{QStringLiteral("404:path=*.img,range=5")};
    EXPECT_EQ(run({update}), 4);
    expectResult("failed", "fetching", "download-failed", 4);
    expectUntouchedDevice();
}

TEST_F(CliExitCodeTest, FiveWhenTheFlasherIsMissing)
{
    CliScenario &s = scenario();
    ASSERT_TRUE(QFile::remove(s.program.applicationFolder() + QLatin1Char('/') + usbFlasher));
    EXPECT_EQ(run({update}), 5);
    expectResult("failed", "idle", "tool-missing", 5);
    expectUntouchedDevice();
    EXPECT_EQ(run({update, QStringLiteral("--write-type"), QStringLiteral("hid")}), 0);
}

TEST_F(CliExitCodeTest, FiveWhenTheProgrammerMayNotBeRun)
{
    CliScenario &s = scenario("DevMdq");
    ASSERT_TRUE(QFile::setPermissions(s.program.applicationFolder() + QLatin1Char('/') + iapProgrammer,
                                      QFile::ReadOwner | QFile::WriteOwner));
    EXPECT_EQ(run({update}), 5);
    expectResult("failed", "idle", "tool-missing", 5);
    expectUntouchedDevice();
}

TEST_F(CliExitCodeTest, FiveWhenTheTemporaryFolderCannotBeUsed)
{
    // A model whose interfaces are written down while it is looked for.
    CliScenario &s = scenario("DevMbu");
    // Nobody can make a folder in a file, whatever their rights are.
    const QString file = s.program.workingFolder() + QLatin1String("/../no-folder");
    ASSERT_TRUE(WholeFile::write(file, "a file"));
    s.program.setVariable(QStringLiteral("TMPDIR"), file);
    EXPECT_EQ(run({update}), 5);
    expectResult("failed", "idle", "folder-unusable", 5);
    expectUntouchedDevice();
    EXPECT_FALSE(QFile::exists(QStringLiteral("/interfaces.txt")));
}

} // namespace
