#include "driver/WindowsDriverSystem.h"

#include "driver/WholeCopy.h"
#include "support/SystemCodec.h"
#include "support/process/SystemTool.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QProcessEnvironment>
#include <QTextCodec>

#include <windows.h>
// These headers need windows.h, so they come after it.
#include <psapi.h>
#include <setupapi.h>

#include <array>
#include <memory>
#include <type_traits>

namespace {

constexpr int toolLimitMs = 30000;

struct ServiceHandleDeleter
{
    void operator()(SC_HANDLE handle) const { CloseServiceHandle(handle); }
};
/// The service manager, or a service.
using ServiceHandle = std::unique_ptr<std::remove_pointer_t<SC_HANDLE>, ServiceHandleDeleter>;

void *pointerTo(quint64 address)
{
    return reinterpret_cast<void *>(static_cast<quintptr>(address));
}

ServiceHandle openManager(DWORD access)
{
    return ServiceHandle(OpenSCManagerW(nullptr, nullptr, access));
}

} // namespace

DriverSystem::LoadedDrivers WindowsDriverSystem::loadedDrivers()
{
    static_assert(sizeof(LPVOID) == sizeof(quint64), "load addresses have eight bytes");
    std::array<LPVOID, addressRoom> addresses{};
    DWORD bytes = 0;
    LoadedDrivers listed;
    listed.succeeded = K32EnumDeviceDrivers(addresses.data(), sizeof addresses, &bytes) != 0;
    listed.bytes = bytes;
    listed.addresses.reserve(addressRoom);
    for (const LPVOID address : addresses)
        listed.addresses.append(reinterpret_cast<quintptr>(address));
    return listed;
}

std::optional<QString> WindowsDriverSystem::driverBaseName(quint64 address)
{
    std::array<char, 128> name{};
    if (K32GetDeviceDriverBaseNameA(pointerTo(address), name.data(), static_cast<DWORD>(name.size())) == 0)
        return std::nullopt;
    std::array<char, 1024> file{};
    K32GetDeviceDriverFileNameA(pointerTo(address), file.data(), static_cast<DWORD>(file.size()));
    return systemCodec().toUnicode(name.data());
}

QString WindowsDriverSystem::applicationFolder()
{
    return QCoreApplication::applicationDirPath();
}

QString WindowsDriverSystem::environmentVariable(const QString &name)
{
    return QProcessEnvironment::systemEnvironment().value(name);
}

bool WindowsDriverSystem::exists(const QString &path)
{
    return QFile::exists(path);
}

bool WindowsDriverSystem::copy(const QString &source, const QString &destination)
{
    return copyWhole(source, destination);
}

bool WindowsDriverSystem::remove(const QString &path)
{
    return QFile::remove(path);
}

ToolRun WindowsDriverSystem::runTool(const QString &program, const QStringList &arguments,
                                     const ToolListener &listener)
{
    const bool isSystemTool = QFileInfo(program).fileName() == program;
    return runToolToEnd(isSystemTool ? SystemTool::path(program) : program, arguments, toolLimitMs,
                        OnShutdown::Kill, listener);
}

DriverSystem::InfCopy WindowsDriverSystem::copyOemInf(const QString &infPath)
{
    const QByteArray path = systemCodec().fromUnicode(infPath);
    std::array<char, MAX_PATH> fullPath{};
    GetFullPathNameA(path.constData(), static_cast<DWORD>(fullPath.size()), fullPath.data(), nullptr);
    if (SetupCopyOEMInfA(fullPath.data(), nullptr, SPOST_PATH, SP_COPY_NEWER_OR_SAME, nullptr, 0, nullptr,
                         nullptr))
        return {true, 0};
    return {false, GetLastError()};
}

bool WindowsDriverSystem::createService(const QString &binaryPath, const QString &name)
{
    const ServiceHandle manager = openManager(SC_MANAGER_CREATE_SERVICE);
    if (!manager)
        return false;
    const QByteArray path = systemCodec().fromUnicode(binaryPath);
    const QByteArray serviceName = systemCodec().fromUnicode(name);
    const ServiceHandle service(CreateServiceA(
        manager.get(), serviceName.constData(), "libusbK USB Driver",
        SERVICE_QUERY_STATUS | SERVICE_START | SERVICE_STOP, SERVICE_KERNEL_DRIVER, SERVICE_DEMAND_START,
        SERVICE_ERROR_NORMAL, path.constData(), nullptr, nullptr, nullptr, nullptr, nullptr));
    return service != nullptr;
}

bool WindowsDriverSystem::startService(const QString &name)
{
    const ServiceHandle manager = openManager(SC_MANAGER_ALL_ACCESS);
    if (!manager)
        return false;
    const QByteArray serviceName = systemCodec().fromUnicode(name);
    const ServiceHandle service(OpenServiceA(manager.get(), serviceName.constData(), SERVICE_START));
    return service && StartServiceW(service.get(), 0, nullptr) != 0;
}
