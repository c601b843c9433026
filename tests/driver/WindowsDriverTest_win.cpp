#include "driver/DriverSequence.h"
#include "driver/LoadedDrivers.h"
#include "driver/WindowsDriverSystem.h"
#include "simulator/files/WholeFile.h"
#include "tests/common/ScriptedTools.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <windows.h>

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <thread>
#include <type_traits>

namespace {

struct ServiceHandleDeleter
{
    void operator()(SC_HANDLE handle) const { CloseServiceHandle(handle); }
};
using ServiceHandle = std::unique_ptr<std::remove_pointer_t<SC_HANDLE>, ServiceHandleDeleter>;

const QString serviceName = QStringLiteral("libusbK");

ServiceHandle openService(DWORD access)
{
    const ServiceHandle manager(OpenSCManagerW(nullptr, nullptr, SC_MANAGER_CONNECT));
    return ServiceHandle(OpenServiceA(manager.get(), "libusbK", access));
}

void deleteService()
{
    const ServiceHandle service = openService(DELETE);
    if (service)
        DeleteService(service.get());
}

/// The configuration of the service according to the service manager.
struct ServiceConfig
{
    bool isThere = false;
    DWORD type = 0;
    DWORD start = 0;
    DWORD errorControl = 0;
    QString binaryPath;
    QString displayName;
};

ServiceConfig readService()
{
    ServiceConfig config;
    const ServiceHandle service = openService(SERVICE_QUERY_CONFIG);
    alignas(QUERY_SERVICE_CONFIGW) char room[8192] = {};
    DWORD needed = 0;
    auto *raw = reinterpret_cast<QUERY_SERVICE_CONFIGW *>(room);
    if (!service || !QueryServiceConfigW(service.get(), raw, sizeof room, &needed))
        return config;
    config.isThere = true;
    config.type = raw->dwServiceType;
    config.start = raw->dwStartType;
    config.errorControl = raw->dwErrorControl;
    config.binaryPath = QString::fromWCharArray(raw->lpBinaryPathName);
    config.displayName = QString::fromWCharArray(raw->lpDisplayName);
    return config;
}

/// Returns the installed setup information files. Some versions of Windows rename installed files to a
/// number, others keep the name.
QStringList takenInfs()
{
    wchar_t windows[MAX_PATH] = {};
    GetWindowsDirectoryW(windows, MAX_PATH);
    const QDir folder(QString::fromWCharArray(windows) + QStringLiteral("/inf"));
    QStringList paths;
    for (const QString &name : folder.entryList({QStringLiteral("*.inf")}, QDir::Files, QDir::Name))
        paths.append(folder.filePath(name));
    return paths;
}

QString inSystemPage(const char *bytes)
{
    wchar_t text[256] = {};
    const int size = MultiByteToWideChar(CP_ACP, 0, bytes, -1, text, 256);
    return QString::fromWCharArray(text, size - 1);
}

/// The real Windows, except for the folder of the executable.
class StagedSystem : public WindowsDriverSystem
{
public:
    QString folder;
    QString applicationFolder() override { return folder; }
};

/// Tests the real functions with a separate Windows folder and application folder. The service and the
/// installed files belong to the machine, so these tests run one after the other and clean up.
class WindowsDriverTest : public testing::Test, protected DriverLog
{
protected:
    void SetUp() override
    {
        m_turn = CreateMutexW(nullptr, FALSE, L"quillmarsh-driver-tests");
        WaitForSingleObject(m_turn, INFINITE);
        removeTraces();
        m_pathBefore = qgetenv("PATH");
        m_windirBefore = qgetenv("WINDIR");
        m_system.folder = m_folder.filePath(QStringLiteral("app folder"));
        for (const char *name : {"app folder/amd64", "Windows/System32/drivers", "tools"})
            ASSERT_TRUE(QDir(m_folder.path()).mkpath(QLatin1String(name)));
        for (const char *name : {"libusb0.dll", "libusbK.dll", "WdfCoInstaller01009.dll", "libusbK.sys"})
            write(QStringLiteral("app folder/amd64/") + QLatin1String(name), name);
        write(QStringLiteral("app folder/Artinchip_SoC.inf"), inf);
        // The tool that creates the catalog in the given folder.
        addTool("app folder/dpscat.exe",
                ToolSteps({{QStringLiteral("leave"), QStringLiteral("Artinchip_SoC.cat")},
                           {QStringLiteral("contents"), QStringLiteral("catalog")}}));
        addTool("tools/pnputil.exe", {});
        qputenv("PATH", QDir::toNativeSeparators(inFolder("tools")).toLocal8Bit() + ';' + m_pathBefore);
        qputenv("WINDIR", QDir::toNativeSeparators(inFolder("Windows")).toLocal8Bit());
    }
    void TearDown() override
    {
        qputenv("PATH", m_pathBefore);
        qputenv("WINDIR", m_windirBefore);
        removeTraces();
        ReleaseMutex(m_turn);
        CloseHandle(m_turn);
    }

    void showLine(const QString &line) override { m_lines.append(QStringLiteral("shown ") + line); }
    void logLine(const QString &line) override { m_lines.append(QStringLiteral("logged ") + line); }

    QString inFolder(const char *path) const { return m_folder.filePath(QLatin1String(path)); }
    void write(const QString &path, const QByteArray &contents)
    {
        ASSERT_TRUE(WholeFile::write(m_folder.filePath(path), contents)) << path.toStdString();
    }
    void addTool(const char *path, const ToolSteps &steps)
    {
        ScriptedTools::place(inFolder(path), ScriptedTools::scriptOf(steps));
    }
    /// Returns the arguments of a tool's runs.
    QList<QStringList> argumentsOf(const char *tool) const
    {
        QList<QStringList> all;
        for (const StandinRun &each : StandinRuns::read(inFolder(tool)))
            all.append(each.arguments);
        return all;
    }
    QStringList run()
    {
        m_lines.clear();
        runDriverSequence(m_system.folder, m_system, *this);
        return m_lines;
    }
    QString servicePath() const
    {
        return QDir::toNativeSeparators(inFolder("Windows/System32/drivers/libusbK.sys"));
    }
    void removeTraces()
    {
        deleteService();
        for (const QString &path : takenInfs()) {
            if (WholeFile::read(path) != inf)
                continue;
            QFile::remove(path);
            // The file beside it, in which Windows stores its origin.
            QFile::remove(path.left(path.size() - 4) + QStringLiteral(".pnf"));
        }
    }
    /// Returns how many of the installed files belong to this test.
    static int infsOfOurs()
    {
        int count = 0;
        for (const QString &path : takenInfs())
            count += WholeFile::read(path) == inf ? 1 : 0;
        return count;
    }

    static inline const QByteArray inf = "[Version]\r\nSignature=\"$Windows NT$\"\r\nClass=libusbK\r\n"
                                         "CatalogFile=Artinchip_SoC.cat\r\n";
    HANDLE m_turn = nullptr;
    QByteArray m_pathBefore;
    QByteArray m_windirBefore;
    QTemporaryDir m_folder;
    StagedSystem m_system;
    QStringList m_lines;
};

TEST_F(WindowsDriverTest, TheListOfLoadedDriversIsReadAndNothingFollowsItsEnd)
{
    const DriverSystem::LoadedDrivers listed = m_system.loadedDrivers();
    ASSERT_TRUE(listed.succeeded);
    ASSERT_EQ(listed.addresses.size(), 1024);
    const int count = static_cast<int>(listed.bytes / 8);
    for (int i = count; i < 1024; ++i)
        ASSERT_EQ(listed.addresses.at(i), 0U) << i;
    EXPECT_LE(listLoadedDrivers(m_system).size(), count);
}

TEST_F(WindowsDriverTest, AnAddressWithoutADriverHasNoName)
{
    EXPECT_FALSE(m_system.driverBaseName(0x1000).has_value());
}

TEST_F(WindowsDriverTest, TheServiceIsRegisteredAsAKernelDriverThatStartsOnDemand)
{
    ASSERT_FALSE(readService().isThere);
    ASSERT_TRUE(m_system.createService(servicePath(), serviceName));
    const ServiceConfig config = readService();
    ASSERT_TRUE(config.isThere);
    EXPECT_EQ(config.type, static_cast<DWORD>(SERVICE_KERNEL_DRIVER));
    EXPECT_EQ(config.start, static_cast<DWORD>(SERVICE_DEMAND_START));
    EXPECT_EQ(config.errorControl, static_cast<DWORD>(SERVICE_ERROR_NORMAL));
    EXPECT_EQ(config.displayName, QStringLiteral("libusbK USB Driver"));
    EXPECT_EQ(config.binaryPath, servicePath());
}

TEST_F(WindowsDriverTest, ASecondRegistrationFailsAndChangesNothing)
{
    ASSERT_TRUE(m_system.createService(servicePath(), serviceName));
    EXPECT_FALSE(m_system.createService(QStringLiteral("C:\\elsewhere.sys"), serviceName));
    EXPECT_EQ(readService().binaryPath, servicePath());
}

TEST_F(WindowsDriverTest, AServiceThatIsNotRegisteredOrHasNoFileCannotBeStarted)
{
    EXPECT_FALSE(m_system.startService(serviceName));
    ASSERT_TRUE(m_system.createService(servicePath(), serviceName));
    EXPECT_FALSE(m_system.startService(serviceName));
}

TEST_F(WindowsDriverTest, AMissingInfIsRefusedWithACode)
{
    const DriverSystem::InfCopy copy = m_system.copyOemInf(inFolder("app folder/missing.inf"));
    EXPECT_FALSE(copy.succeeded);
    EXPECT_EQ(copy.errorCode, static_cast<quint32>(ERROR_FILE_NOT_FOUND));
}

TEST_F(WindowsDriverTest, AnInfBesideItsCatalogIsAccepted)
{
    write(QStringLiteral("app folder/Artinchip_SoC.cat"), "catalog");
    const DriverSystem::InfCopy copy = m_system.copyOemInf(inFolder("app folder/Artinchip_SoC.inf"));
    EXPECT_TRUE(copy.succeeded) << copy.errorCode;
    EXPECT_EQ(infsOfOurs(), 1);
}

TEST_F(WindowsDriverTest, TheOutputOfToolsIsDecodedWithTheEncodingOfEachStream)
{
    addTool("tools/pnputil.exe", ToolStep::print("\xE9t\xE9 <b>\r\n") + ToolStep::printError("失败"));
    run();
    EXPECT_TRUE(m_lines.contains(QStringLiteral("logged ") + inSystemPage("\xE9t\xE9 <b>\r\n")))
        << m_lines.join(QLatin1Char('\n')).toStdString();
    EXPECT_TRUE(m_lines.contains(QStringLiteral("logged ERR: 失败")));
}

TEST_F(WindowsDriverTest, TheFirstRunInstallsEverythingInOrder)
{
    const QStringList lines = run();
    QStringList expected{QStringLiteral("shown Check Driver Running State..."),
                         QStringLiteral("logged Try Create Cat And Inf..."),
                         QStringLiteral("logged Try Create Cat And Inf Success"),
                         QStringLiteral("logged Try Install Inf..."),
                         QStringLiteral("shown driver libusbK Is Not Running!"),
                         QStringLiteral("shown Try To Start Driver...")};
    for (int i = 1; i <= 5; ++i)
        expected +=
            {QStringLiteral("logged Begin Copy %1!").arg(i), QStringLiteral("logged Copy Success %1").arg(i)};
    expected += {QStringLiteral("logged Install DriverINFO..."), QStringLiteral("logged devINFORET RET: 0"),
                 QStringLiteral("logged Install Dev..."),        QStringLiteral("logged Install Dev Success"),
                 QStringLiteral("logged Start Dev..."),          QStringLiteral("logged Start Dev Failed!")};
    EXPECT_EQ(lines, expected);

    const QStringList catalogFor{QStringLiteral("/PATH"), m_system.folder};
    EXPECT_EQ(argumentsOf("app folder/dpscat.exe"), QList<QStringList>{catalogFor});
    const QStringList installation{QStringLiteral("-i"), QStringLiteral("-a"),
                                   m_system.folder + QStringLiteral("/Artinchip_SoC.inf")};
    EXPECT_EQ(argumentsOf("tools/pnputil.exe"), QList<QStringList>{installation});
    const char *const copied[][2] = {{"libusb0.dll", "libusb0.dll"},
                                     {"libusbK.dll", "libusbK.dll"},
                                     {"drivers/libusbK.dll", "libusbK.dll"},
                                     {"WdfCoInstaller01009.dll", "WdfCoInstaller01009.dll"},
                                     {"drivers/libusbK.sys", "libusbK.sys"}};
    for (const auto &file : copied)
        EXPECT_EQ(WholeFile::read(inFolder("Windows/System32/") + QLatin1String(file[0])), file[1]);
    EXPECT_EQ(infsOfOurs(), 1);
    EXPECT_EQ(readService().binaryPath, servicePath());
}

TEST_F(WindowsDriverTest, TheSecondRunOverwritesNothingAndStartsTheExistingService)
{
    run();
    const QString destination = QStringLiteral("Windows/System32/libusbK.dll");
    write(destination, "the user's own");
    const QStringList lines = run();
    EXPECT_TRUE(lines.filter(QStringLiteral("Copy")).isEmpty());
    EXPECT_EQ(WholeFile::read(m_folder.filePath(destination)), "the user's own");
    EXPECT_EQ(
        lines.mid(lines.indexOf(QStringLiteral("logged Install Dev..."))),
        (QStringList{QStringLiteral("logged Install Dev..."), QStringLiteral("logged Install Dev Failed!"),
                     QStringLiteral("logged Start Dev..."), QStringLiteral("logged Start Dev Failed!")}));
    EXPECT_EQ(argumentsOf("app folder/dpscat.exe").size(), 2);
}

TEST_F(WindowsDriverTest, APartialCopyIsNeverVisible)
{
    const qint64 bytes = 256 * 1024 * 1024;
    const QString source = inFolder("large");
    const QString destination = inFolder("Windows/System32/large");
    QFile large(source);
    ASSERT_TRUE(large.open(QIODevice::WriteOnly) && large.resize(bytes));
    large.close();
    std::atomic<bool> ended = false;
    QVector<qint64> sizes;
    std::thread watcher([&] {
        while (!ended) {
            const QFileInfo seen(destination);
            if (seen.exists() && (sizes.isEmpty() || sizes.last() != seen.size()))
                sizes.append(seen.size());
        }
    });
    const bool copied = m_system.copy(source, destination);
    ended = true;
    watcher.join();
    EXPECT_TRUE(copied);
    for (const qint64 size : qAsConst(sizes))
        EXPECT_EQ(size, bytes);
}

TEST_F(WindowsDriverTest, WithoutItsToolsTheCatalogFailsAndTheInfIsRefused)
{
    ASSERT_TRUE(QFile::remove(inFolder("app folder/dpscat.exe")));
    ASSERT_TRUE(QFile::remove(inFolder("tools/pnputil.exe")));
    const QStringList lines = run();
    EXPECT_TRUE(lines.contains(QStringLiteral("logged Try Create Cat And Inf Faild!")));
    EXPECT_EQ(lines.filter(QStringLiteral("devINFORET RET: ")).size(), 1);
    EXPECT_FALSE(lines.contains(QStringLiteral("logged devINFORET RET: 0")));
    EXPECT_EQ(infsOfOurs(), 0);
}

TEST_F(WindowsDriverTest, WithoutWindirTheCopiesGoToTheRootOfTheDriveAndFail)
{
    qunsetenv("WINDIR");
    const QStringList lines = run();
    EXPECT_TRUE(lines.contains(QStringLiteral("logged cannot find Windows DIR")));
    EXPECT_EQ(lines.filter(QStringLiteral("logged Mov File ERROR")).size(), 5);
    EXPECT_EQ(readService().binaryPath, QStringLiteral("\\System32\\drivers\\libusbK.sys"));
}

} // namespace
