#include "driver/DriverSequence.h"

#include "tests/common/RecordedDebugStream.h"
#include "tests/driver/FakeDriverSystem.h"

#include <gtest/gtest.h>

namespace {

const QString destinations[] = {QStringLiteral("C:/Windows/System32/libusb0.dll"),
                                QStringLiteral("C:/Windows/System32/libusbK.dll"),
                                QStringLiteral("C:/Windows/System32/drivers/libusbK.dll"),
                                QStringLiteral("C:/Windows/System32/WdfCoInstaller01009.dll"),
                                QStringLiteral("C:/Windows/System32/drivers/libusbK.sys")};

class DriverSequenceTest : public testing::Test
{
protected:
    void SetUp() override
    {
        for (const char *name : {"libusb0.dll", "libusbK.dll", "WdfCoInstaller01009.dll", "libusbK.sys"})
            m_system.files.insert(QStringLiteral("C:/App/amd64/") + QLatin1String(name));
    }

    void run() { runDriverSequence(QStringLiteral("C:/App"), m_system, m_system); }
    QStringList logged() const { return m_system.of("logged"); }
    /// Returns the logged lines about the copies.
    QStringList copyLines() const
    {
        QStringList found;
        for (const QString &line : logged()) {
            if (line.startsWith(QLatin1String("Begin Copy ")) ||
                line.startsWith(QLatin1String("Copy Success ")) ||
                line.startsWith(QLatin1String("Mov File ")))
                found.append(line);
        }
        return found;
    }
    void loadLibusbK() { m_system.drivers.append(QStringLiteral("libusbK.sys")); }

    FakeDriverSystem m_system;
    RecordedDebugStream m_debug;
};

TEST_F(DriverSequenceTest, IfTheDriverIsNotRunningEverythingIsInstalledInOrder)
{
    m_system.drivers = QStringList{QStringLiteral("ntoskrnl.exe")};
    m_system.files.insert(QStringLiteral("C:/App/Artinchip_SoC.cat"));
    run();
    const char *const expected[] = {
        "shown Check Driver Running State...",
        "logged Try Create Cat And Inf...",
        "remove C:/App/Artinchip_SoC.cat",
        "run C:/App/dpscat.exe|/PATH|C:/App",
        "logged Try Create Cat And Inf Success",
        "logged Try Install Inf...",
        "run pnputil|-i|-a|C:/App/Artinchip_SoC.inf",
        "shown driver libusbK Is Not Running!",
        "shown Try To Start Driver...",
        "logged Begin Copy 1!",
        "copy C:/App/amd64/libusb0.dll > C:/Windows/System32/libusb0.dll",
        "logged Copy Success 1",
        "logged Begin Copy 2!",
        "copy C:/App/amd64/libusbK.dll > C:/Windows/System32/libusbK.dll",
        "logged Copy Success 2",
        "logged Begin Copy 3!",
        "copy C:/App/amd64/libusbK.dll > C:/Windows/System32/drivers/libusbK.dll",
        "logged Copy Success 3",
        "logged Begin Copy 4!",
        "copy C:/App/amd64/WdfCoInstaller01009.dll > C:/Windows/System32/WdfCoInstaller01009.dll",
        "logged Copy Success 4",
        "logged Begin Copy 5!",
        "copy C:/App/amd64/libusbK.sys > C:/Windows/System32/drivers/libusbK.sys",
        "logged Copy Success 5",
        "logged Install DriverINFO...",
        "inf C:/App/Artinchip_SoC.inf",
        "logged devINFORET RET: 0",
        "logged Install Dev...",
        "create C:\\Windows\\System32\\drivers\\libusbK.sys as libusbK",
        "logged Install Dev Success",
        "logged Start Dev...",
        "start libusbK",
        "logged Start Dev Success",
    };
    QStringList wanted;
    for (const char *event : expected)
        wanted.append(QString::fromUtf8(event));
    EXPECT_EQ(m_system.events, wanted);
    EXPECT_EQ(m_debug.lines(),
              (QStringList{QStringLiteral("1:ntoskrnl.exe"), QStringLiteral("Process finished!"),
                           QStringLiteral("当前进程所在文件夹路径: C:/App"),
                           QStringLiteral("System32 Path: C:/Windows/System32"),
                           QStringLiteral("Drivers Path: C:/Windows/System32/drivers"),
                           QStringLiteral("Driver installed successfully!")}));
}

TEST_F(DriverSequenceTest, IfTheDriverIsRunningBothToolsRunAndNothingIsCopiedInstalledOrStarted)
{
    loadLibusbK();
    run();
    EXPECT_EQ(m_system.events, (QStringList{QStringLiteral("shown Check Driver Running State..."),
                                            QStringLiteral("logged Try Create Cat And Inf..."),
                                            QStringLiteral("remove C:/App/Artinchip_SoC.cat"),
                                            QStringLiteral("run C:/App/dpscat.exe|/PATH|C:/App"),
                                            QStringLiteral("logged Try Create Cat And Inf Success"),
                                            QStringLiteral("logged Try Install Inf..."),
                                            QStringLiteral("run pnputil|-i|-a|C:/App/Artinchip_SoC.inf"),
                                            QStringLiteral("shown driver libusbK Is Running")}));
}

TEST_F(DriverSequenceTest, ALoadedDriverInCapitalsCountsAsRunning)
{
    m_system.drivers = QStringList{QStringLiteral("NTOSKRNL.EXE"), QStringLiteral("LIBUSBK.SYS")};
    run();
    EXPECT_TRUE(m_system.has("shown driver libusbK Is Running"));
    EXPECT_TRUE(m_system.of("create").isEmpty());
}

TEST_F(DriverSequenceTest, MoreLoadedDriversThanTheBufferHoldsCountAsNotRunningAndEverythingIsInstalled)
{
    for (const quint32 bytes : {8192U, 8200U, 16384U}) {
        m_system.events.clear();
        m_system.services.clear();
        m_system.drivers = QStringList{QStringLiteral("libusbK.sys")};
        m_system.reportedBytes = bytes;
        run();
        EXPECT_TRUE(m_system.has("shown driver libusbK Is Not Running!")) << bytes;
        EXPECT_EQ(m_system.of("start"), (QStringList{QStringLiteral("libusbK")})) << bytes;
        EXPECT_TRUE(m_system.has("logged Install Dev Success")) << bytes;
    }
}

TEST_F(DriverSequenceTest, LibusbKAsTheLastOf1023DriversIsRunning)
{
    for (int i = 0; i < 1022; ++i)
        m_system.drivers.append(QStringLiteral("other.sys"));
    loadLibusbK();
    run();
    EXPECT_TRUE(m_system.has("shown driver libusbK Is Running"));
}

TEST_F(DriverSequenceTest, AnUnreadableListCountsAsNotRunning)
{
    loadLibusbK();
    m_system.listSucceeds = false;
    run();
    EXPECT_TRUE(m_system.has("shown driver libusbK Is Not Running!"));
}

TEST_F(DriverSequenceTest, ACatalogThatIsNotCreatedIsLoggedAsAFailureEvenIfThereWasAStaleOne)
{
    m_system.files.insert(QStringLiteral("C:/App/Artinchip_SoC.cat"));
    m_system.catalogToolMakesCatalog = false;
    run();
    EXPECT_TRUE(m_system.has("logged Try Create Cat And Inf Faild!"));
    EXPECT_FALSE(m_system.has("logged Try Create Cat And Inf Success"));
    EXPECT_TRUE(m_system.has("run pnputil|-i|-a|C:/App/Artinchip_SoC.inf"));
}

TEST_F(DriverSequenceTest, AMissingCatalogToolIsAFailedCatalogAndTheCheckGoesOn)
{
    m_system.catalogToolMakesCatalog = false;
    m_system.catalogToolEnd = ToolRun::NotStarted;
    run();
    EXPECT_TRUE(m_system.has("logged Try Create Cat And Inf Faild!"));
    EXPECT_EQ(m_system.of("start").size(), 1);
}

TEST_F(DriverSequenceTest, OnlyTheCatalogCountsAndNotTheResultOfItsTool)
{
    m_system.catalogToolEnd = ToolRun::Killed;
    run();
    EXPECT_TRUE(m_system.has("logged Try Create Cat And Inf Success"));
}

TEST_F(DriverSequenceTest, PnputilsOutputIsLoggedPieceByPieceAndItsErrorsWithAPrefix)
{
    m_system.infToolPrints = [](const ToolListener &listener) {
        listener.standardOutput("Microsoft PnP Utility\r\n\r\n");
        listener.standardError("失败\n");
        listener.standardOutput("<b>Total: 1</b>");
    };
    loadLibusbK();
    run();
    EXPECT_EQ(logged().mid(3),
              (QStringList{QStringLiteral("Microsoft PnP Utility\r\n\r\n"), QStringLiteral("ERR: 失败\n"),
                           QStringLiteral("<b>Total: 1</b>")}));
    EXPECT_EQ(m_debug.lines().mid(1),
              (QStringList{QStringLiteral("Standard Output: Microsoft PnP Utility\r\n\r\n"),
                           QStringLiteral("Standard Error: 失败\n"),
                           QStringLiteral("Standard Output: <b>Total: 1</b>"),
                           QStringLiteral("Process finished!")}));
}

TEST_F(DriverSequenceTest, ACharacterSplitBetweenPiecesIsDecoded)
{
    m_system.infToolPrints = [](const ToolListener &listener) {
        listener.standardError("\xE5\xA4");
        listener.standardError("\xB1!");
    };
    loadLibusbK();
    run();
    EXPECT_EQ(logged().mid(3), (QStringList{QStringLiteral("ERR: 失!")}));
}

TEST_F(DriverSequenceTest, PnputilThatDoesNotEndInTimeOrIsMissingIsAnErrorOnTheDebugStreamOnly)
{
    for (const ToolRun::End end : {ToolRun::NotStarted, ToolRun::Killed}) {
        m_system.events.clear();
        m_system.infToolEnd = end;
        run();
        EXPECT_EQ(logged().mid(1, 2), (QStringList{QStringLiteral("Try Create Cat And Inf Success"),
                                                   QStringLiteral("Try Install Inf...")}));
    }
    EXPECT_EQ(m_debug.count(QStringLiteral("Error occurred while executing the command!")), 2);
    EXPECT_EQ(m_debug.count(QStringLiteral("Process finished!")), 0);
}

TEST_F(DriverSequenceTest, IfAllFiveFilesExistNothingIsCopied)
{
    for (const QString &destination : destinations)
        m_system.files.insert(destination);
    run();
    EXPECT_TRUE(copyLines().isEmpty());
    EXPECT_TRUE(m_system.of("copy").isEmpty());
    EXPECT_TRUE(m_system.has("logged Install DriverINFO..."));
}

TEST_F(DriverSequenceTest, EachCopyIsSkippedIfItsFileExists)
{
    for (int there = 0; there < 5; ++there) {
        m_system.events.clear();
        for (const QString &destination : destinations)
            m_system.files.remove(destination);
        m_system.files.insert(destinations[there]);
        run();
        QStringList wanted;
        for (int i = 0; i < 5; ++i) {
            if (i != there)
                wanted += {QStringLiteral("Begin Copy %1!").arg(i + 1),
                           QStringLiteral("Copy Success %1").arg(i + 1)};
        }
        EXPECT_EQ(copyLines(), wanted) << there;
    }
}

TEST_F(DriverSequenceTest, AFailedCopyIsLoggedWithItsNumberAndTheOthersAreMade)
{
    for (int refused = 0; refused < 5; ++refused) {
        m_system.events.clear();
        for (const QString &destination : destinations)
            m_system.files.remove(destination);
        m_system.refusedCopies = {destinations[refused]};
        run();
        QStringList wanted;
        for (int i = 0; i < 5; ++i) {
            wanted.append(QStringLiteral("Begin Copy %1!").arg(i + 1));
            wanted.append(
                (i == refused ? QStringLiteral("Mov File ERROR%1!") : QStringLiteral("Copy Success %1"))
                    .arg(i + 1));
        }
        EXPECT_EQ(copyLines(), wanted) << refused;
        EXPECT_EQ(m_system.of("start").size(), 1);
    }
}

TEST_F(DriverSequenceTest, WithoutTheDriverPackageEveryCopyFailsAndTheServiceIsStillTried)
{
    m_system.files.clear();
    run();
    QStringList wanted;
    for (int i = 1; i <= 5; ++i)
        wanted += {QStringLiteral("Begin Copy %1!").arg(i), QStringLiteral("Mov File ERROR%1!").arg(i)};
    EXPECT_EQ(copyLines(), wanted);
    EXPECT_EQ(m_system.of("create").size(), 1);
}

TEST_F(DriverSequenceTest, AMissingWindirIsLoggedAndTheCopiesGoToPathsThatBeginWithSystem32)
{
    m_system.windir.clear();
    m_system.refusedCopies = {
        QStringLiteral("/System32/libusb0.dll"), QStringLiteral("/System32/libusbK.dll"),
        QStringLiteral("/System32/drivers/libusbK.dll"), QStringLiteral("/System32/WdfCoInstaller01009.dll"),
        QStringLiteral("/System32/drivers/libusbK.sys")};
    run();
    EXPECT_EQ(m_debug.warnings(), QStringList{QStringLiteral("无法找到 Windows 目录")});
    const QStringList lines = logged();
    EXPECT_EQ(lines.indexOf(QStringLiteral("cannot find Windows DIR")) + 1,
              lines.indexOf(QStringLiteral("Begin Copy 1!")));
    EXPECT_EQ(lines.filter(QStringLiteral("Mov File ERROR")).size(), 5);
    EXPECT_TRUE(m_system.has("copy C:/App/amd64/libusb0.dll > /System32/libusb0.dll"));
    EXPECT_TRUE(m_system.has("create \\System32\\drivers\\libusbK.sys as libusbK"));
}

TEST_F(DriverSequenceTest, AnInfThatIsRefusedIsLoggedWithItsCodeInDecimal)
{
    m_system.infCopy = {false, 0xE0000247};
    run();
    EXPECT_TRUE(m_system.has("logged devINFORET RET: 3758096967"));
    EXPECT_EQ(m_debug.countBeginning(QStringLiteral("Failed to install driver. Error: ")), 1);
    EXPECT_TRUE(m_debug.lines().last().contains(QStringLiteral("3758096967")));
    EXPECT_TRUE(m_system.has("logged Install Dev Success"));
}

TEST_F(DriverSequenceTest, AnExistingServiceIsAFailedInstallationAndIsStarted)
{
    m_system.services = {QStringLiteral("libusbK")};
    run();
    EXPECT_EQ(
        m_system.events.mid(m_system.events.indexOf(QStringLiteral("logged Install Dev..."))),
        (QStringList{QStringLiteral("logged Install Dev..."),
                     QStringLiteral("create C:\\Windows\\System32\\drivers\\libusbK.sys as libusbK"),
                     QStringLiteral("logged Install Dev Failed!"), QStringLiteral("logged Start Dev..."),
                     QStringLiteral("start libusbK"), QStringLiteral("logged Start Dev Success")}));
}

TEST_F(DriverSequenceTest, ARefusedStartIsLogged)
{
    m_system.startWorks = false;
    run();
    EXPECT_EQ(m_system.events.last(), QStringLiteral("logged Start Dev Failed!"));
}

TEST_F(DriverSequenceTest, TheCopiesUseTheFolderThatTheSystemReports)
{
    m_system.ownFolder = QStringLiteral("D:/Elsewhere");
    run();
    EXPECT_TRUE(m_system.has("run C:/App/dpscat.exe|/PATH|C:/App"));
    EXPECT_TRUE(m_system.has("run pnputil|-i|-a|C:/App/Artinchip_SoC.inf"));
    EXPECT_TRUE(m_system.has("copy D:/Elsewhere/amd64/libusb0.dll > C:/Windows/System32/libusb0.dll"));
    EXPECT_TRUE(m_system.has("inf D:/Elsewhere/Artinchip_SoC.inf"));
}

} // namespace
