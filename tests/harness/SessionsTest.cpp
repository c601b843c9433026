#include "harness/BuildPaths.h"
#include "harness/process/Polling.h"
#include "harness/server/FirmwareRoot.h"
#include "harness/server/ServerSession.h"
#include "harness/session/BusSession.h"
#include "simulator/files/WholeFile.h"
#include "simulator/server/FirmwareAddress.h"
#include "tests/common/ProcessGone.h"
#include "tests/harness/RunningSubject.h"

#include <QCryptographicHash>

#include <gtest/gtest.h>

#include <csignal>

namespace {

QStringList shell(const char *commands)
{
    return {QStringLiteral("sh"), QStringLiteral("-c"), QLatin1String(commands)};
}

QStringList dies()
{
    return shell("echo 'giving up' >&2; exit 3");
}

TEST(ChildProcessTest, AProcessThatDiesAtOnceIsReportedWithTheEndOfItsErrors)
{
    ChildProcess child;
    ASSERT_TRUE(child.start(dies()));
    EXPECT_EQ(child.waitForPort(), 0);
    EXPECT_TRUE(child.errorText().contains(QLatin1String("ended without a line")));
    EXPECT_TRUE(child.errorText().contains(QLatin1String("giving up"))) << qPrintable(child.errorText());
}

TEST(ChildProcessTest, AProcessThatPrintsNothingTimesOut)
{
    ChildProcess child;
    ASSERT_TRUE(child.start({QStringLiteral("sleep"), QStringLiteral("60")}));
    EXPECT_TRUE(child.waitForFirstLine(100).isEmpty());
    EXPECT_TRUE(child.errorText().contains(QLatin1String("printed nothing in 100 ms")));
}

TEST(ChildProcessTest, AMissingExecutableIsReported)
{
    ChildProcess child;
    EXPECT_FALSE(child.start({QStringLiteral("/no/such/program")}));
    EXPECT_TRUE(child.errorText().contains(QLatin1String("/no/such/program")));
}

TEST(ChildProcessTest, AProcessThatRefusesToEndIsKilledTogetherWithItsChildren)
{
    qint64 stubborn = 0;
    qint64 grandchild = 0;
    {
        ChildProcess child;
        // Both the process and its child ignore SIGTERM and the end of the input.
        ASSERT_TRUE(child.start(shell("trap '' TERM; sleep 60 & echo $!; wait")));
        grandchild = child.waitForFirstLine().toLongLong();
        stubborn = child.processId();
        ASSERT_GT(grandchild, 0);
        ASSERT_FALSE(processIsGone(grandchild));
    }
    EXPECT_TRUE(processIsReaped(stubborn));
    EXPECT_TRUE(pollUntil([&] { return processIsGone(grandchild); }));
}

TEST(ChildProcessTest, ItEndsWhenItsParentIsKilled)
{
    const QTemporaryDir leftBehind; // A killed process cannot remove its temporary folders.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("TMPDIR"), leftBehind.path());
    ChildProcess parent;
    ASSERT_TRUE(parent.start({QStringLiteral(CHILD_STARTER)}, environment));
    const qint64 grandchild = parent.waitForFirstLine().toLongLong();
    ASSERT_GT(grandchild, 0);
    ASSERT_FALSE(processIsGone(grandchild));
    ASSERT_EQ(::kill(static_cast<pid_t>(parent.processId()), SIGKILL), 0);
    EXPECT_TRUE(pollUntil([&] { return processIsGone(grandchild); }));
}

class BusSessionTest : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(WholeFile::write(
            m_description, R"({"devices":[{"key":"panel","application":{"vendorId":1,"productId":2}}]})"));
        ASSERT_TRUE(m_bus.startController(controller())) << qPrintable(m_bus.errorText());
    }
    QStringList controller() const
    {
        return {BuildPaths::listedBusController(), QStringLiteral("--description"), m_description};
    }

    QTemporaryDir m_folder;
    const QString m_description = m_folder.filePath(QStringLiteral("bus.json"));
    BusSession m_bus;
};

TEST_F(BusSessionTest, TheProgramRunsAndItsExitCodeIsReported)
{
    const StagedProgram stage(QStringLiteral(PROBE_SUBJECT));
    EXPECT_FALSE(m_bus.programState().running);
    ASSERT_TRUE(m_bus.run(stage.launch({QStringLiteral("ZN58UpDate")}))) << qPrintable(m_bus.errorText());
    ProbeClient probe;
    ASSERT_TRUE(probe.connectThrough(stage.probePortFile())) << qPrintable(probe.errorText());
    ASSERT_TRUE(probe.waitForVisible(QStringLiteral("subjectWindow"), true));
    EXPECT_TRUE(m_bus.programState().running);
    EXPECT_TRUE(stage.standardOutput().contains(QLatin1String("arguments ZN58UpDate\n")));
    EXPECT_TRUE(stage.standardOutput().contains(QLatin1String("working ") + stage.workingFolder()));
    ASSERT_TRUE(probe.close(QStringLiteral("subjectWindow")));
    ASSERT_TRUE(probe.waitForText(QStringLiteral("statusLabel"), QStringLiteral("refused")));
    ASSERT_TRUE(probe.close(QStringLiteral("subjectWindow")));
    EXPECT_EQ(m_bus.waitForExit(), 7) << qPrintable(stage.standardError());
}

TEST_F(BusSessionTest, TheProgramDoesNotInheritTheEnvironmentOfTheTest)
{
    const StagedProgram stage(QStringLiteral(PROBE_SUBJECT));
    qputenv("HARNESS_TEST_LEAK", "yes");
    BusSession bus;
    const bool started = bus.startController(controller()) && bus.run(stage.launch());
    qunsetenv("HARNESS_TEST_LEAK");
    ASSERT_TRUE(started) << qPrintable(bus.errorText());
    ProbeClient probe;
    ASSERT_TRUE(probe.connectThrough(stage.probePortFile())) << qPrintable(probe.errorText());
    ASSERT_TRUE(probe.waitForVisible(QStringLiteral("subjectWindow"), true));
    EXPECT_TRUE(stage.standardOutput().contains(QLatin1String("leak unset\n")));
}

TEST_F(BusSessionTest, AProgramThatIsKilledHasNoExitCode)
{
    const StagedProgram stage(QStringLiteral(PROBE_SUBJECT));
    ASSERT_TRUE(m_bus.run(stage.launch())) << qPrintable(m_bus.errorText());
    m_bus.killProgram();
    EXPECT_EQ(m_bus.waitForExit(), std::nullopt);
    EXPECT_TRUE(m_bus.programState().signalled);
}

TEST_F(BusSessionTest, DevicesArePluggedUnpluggedAndWaitedFor)
{
    EXPECT_TRUE(m_bus.waitForDevice(QStringLiteral("panel"), QStringLiteral("application")));
    ASSERT_TRUE(m_bus.unplug(QStringLiteral("panel")));
    EXPECT_EQ(m_bus.device(QStringLiteral("panel"))[QLatin1String("state")].toString(),
              QLatin1String("absent"));
    EXPECT_FALSE(m_bus.waitForDevice(QStringLiteral("panel"), QStringLiteral("bootloader"), 50));
    EXPECT_TRUE(m_bus.errorText().contains(QLatin1String("absent")));
    ASSERT_TRUE(m_bus.plug(QStringLiteral("panel")));
    EXPECT_TRUE(m_bus.waitForDevice(QStringLiteral("panel"), QStringLiteral("application")));
    EXPECT_TRUE(m_bus.device(QStringLiteral("nobody")).isEmpty());
}

TEST_F(BusSessionTest, TheBurnedImageIsSavedWhereAsked)
{
    const QString path = m_folder.filePath(QStringLiteral("burned.img"));
    ASSERT_TRUE(m_bus.unplug(QStringLiteral("panel")) && m_bus.plugBootloader(QStringLiteral("panel")));
    ASSERT_TRUE(m_bus.client().burn("burned")) << qPrintable(m_bus.errorText());
    ASSERT_TRUE(m_bus.saveImage(QStringLiteral("panel"), path)) << qPrintable(m_bus.errorText());
    EXPECT_EQ(QFileInfo(path).size(), 6);
    EXPECT_FALSE(m_bus.saveImage(QStringLiteral("panel"), QStringLiteral("/no/such/folder/burned.img")));
}

TEST(BusSessionStartTest, AControllerThatDiesIsReportedWithTheEndOfItsErrors)
{
    BusSession bus;
    EXPECT_FALSE(bus.startController(dies()));
    EXPECT_TRUE(bus.errorText().contains(QLatin1String("giving up"))) << qPrintable(bus.errorText());
    EXPECT_FALSE(bus.plug(QStringLiteral("panel")));
}

TEST(ServerSessionTest, ItKnowsItsPortAndEndsItsServer)
{
    qint64 server = 0;
    {
        ServerSession session;
        ASSERT_TRUE(session.start(QDir::tempPath(), 0)) << qPrintable(session.errorText());
        EXPECT_GT(session.port(), 0);
        server = session.processId();
        EXPECT_FALSE(processIsReaped(server));
    }
    EXPECT_TRUE(processIsReaped(server));
}

class FirmwareRootTest : public testing::Test
{
protected:
    QJsonObject entry(const char *model) const
    {
        const QJsonObject manifest = QJsonDocument::fromJson(WholeFile::read(m_root.manifestFile())).object();
        return manifest[QLatin1String("CurrentVersion")].toObject()[QLatin1String(model)].toObject();
    }

    FirmwareRoot m_root{FirmwareAddress::server()};
};

TEST_F(FirmwareRootTest, TheManifestNamesEachImageItsAddressAndItsHash)
{
    const QByteArray image = m_root.addModel(QStringLiteral("DevMaa"), 100000);
    m_root.addModel(QStringLiteral("DevMbr"), 10, 2);
    EXPECT_EQ(WholeFile::read(m_root.imageFile(QStringLiteral("DevMaa"))), image);
    EXPECT_EQ(image.size(), 100000);
    EXPECT_EQ(entry("DevMaa")[QLatin1String("fileURL")].toString(),
              FirmwareAddress::server() + QLatin1String("/Tessilonix/firmware/DevMaa.img"));
    EXPECT_EQ(entry("DevMaa")[QLatin1String("md5")].toString().toLatin1(),
              QCryptographicHash::hash(image, QCryptographicHash::Md5).toHex());
    EXPECT_FALSE(entry("DevMbr").isEmpty());
    EXPECT_TRUE(m_root.manifestFile().endsWith(
        QLatin1String("/Tessilonix/firmware/firmware-version-check-test.json")));
}

TEST_F(FirmwareRootTest, AnImageIsTheSameForTheSameSeedOnly)
{
    const QByteArray one = m_root.addModel(QStringLiteral("A"), 4096, 7);
    EXPECT_EQ(m_root.addModel(QStringLiteral("B"), 4096, 7), one);
    EXPECT_NE(m_root.addModel(QStringLiteral("C"), 4096, 8), one);
}

TEST_F(FirmwareRootTest, AFieldCanBeReplaced)
{
    m_root.addModel(QStringLiteral("DevMaa"), 10);
    m_root.setField(QStringLiteral("DevMaa"), QStringLiteral("md5"), QStringLiteral("0"));
    EXPECT_EQ(entry("DevMaa")[QLatin1String("md5")].toString(), QLatin1String("0"));
    m_root.setManifest("not json");
    EXPECT_TRUE(entry("DevMaa").isEmpty());
}

} // namespace
