#include "checks/SystemCheck.h"

#include "checks/DeviceFindings.h"
#include "checks/DeviceSearch.h"
#include "checks/ManifestFindings.h"
#include "checks/ServerCheck.h"
#include "checks/SignatureFindings.h"
#include "checks/SystemFindings.h"
#include "devices/Bootloader.h"
#include "devices/ControlledDeviceList.h"
#include "devices/RefusedDevice.h"
#include "support/process/LaunchOptions.h"
#include "update/FirmwareKeys.h"
#include "update/FirmwareManifest.h"
#include "update/FirmwareServerAddress.h"
#include "update/TemporaryFolder.h"

#include <QFileInfo>
#include <QSslSocket>
#include <QStorageInfo>

namespace {

/// Returns the device file of a connected device, in its bootloader or not, that the user may not open.
QString refusedFile()
{
    const ModelTable table;
    return findRefusedDeviceFile([&table](quint32 vendorId, quint32 productId) {
        return Bootloader::hasIds(vendorId, productId) ||
               table.find(vendorId, productId, LaunchOptions()) != nullptr;
    });
}

} // namespace

SystemCheck::SystemCheck(const Dependencies &dependencies, OnFinding onFinding)
    : m_dependencies(dependencies),
      m_onFinding(std::move(onFinding))
{
}

QVector<Finding> SystemCheck::run(const QString &requestedModel)
{
    m_findings.clear();
    checkMachine(requestedModel);
    const qint64 imageSize = checkServer();
    report(SystemFindings::diskSpace(QStorageInfo(m_dependencies.folder).bytesAvailable(), imageSize));
    return m_findings;
}

void SystemCheck::report(const Finding &finding)
{
    if (m_onFinding)
        m_onFinding(finding);
    m_findings.append(finding);
}

void SystemCheck::checkMachine(const QString &requestedModel)
{
    const QString &list = m_dependencies.tools.controlList;
    const QString &folder = m_dependencies.folder;
    const QVector<DeviceInfo> devices = DeviceSearch(m_dependencies.usb, list).find();
    m_model = DeviceFindings::modelToCheck(requestedModel, devices);
    report(DeviceFindings::devices(devices, requestedModel));
    const std::optional<DriverState> driver = DriverState::ofThisSystem();
    // A system that opens devices through a driver has no device files.
    report(DeviceFindings::deviceAccess(driver ? std::nullopt : std::optional<QString>(refusedFile())));
    report(SystemFindings::driver(driver));
    report(DeviceFindings::controlList(list, ControlledDeviceList::readWhole(list), m_model));
    checkTools();
    report(SystemFindings::temporaryFolder(folder, TemporaryFolder::reasonNotToWriteIn(folder)));
    report(SystemFindings::updateLock(m_dependencies.lock.isTakenElsewhere()));
}

void SystemCheck::checkTools()
{
    const ToolFiles &tools = m_dependencies.tools;
    WriteType offered;
    ControlledDeviceList::readWriteType(tools.controlList, offered);
    const QString needed = DeviceFindings::neededTool(m_model, ControlledDeviceList::writeTypeItems(offered));
    const QPair<const char *, QString> files[] = {{"usb-flasher", tools.usbFlasher},
                                                  {"hid-flasher", tools.hidFlasher},
                                                  {"iap-programmer", tools.iapProgrammer}};
    for (const auto &file : files) {
        const QFileInfo info(file.second);
        const QString what = QLatin1String(file.first);
        report(DeviceFindings::tool({what, file.second, info.isFile(), info.isExecutable()}, what == needed));
    }
}

/// Returns the size of the model's image; 0 if it is not known.
qint64 SystemCheck::checkServer()
{
    const QString manifestUrl = firmwareManifestUrl();
    report(SystemFindings::tls(manifestUrl, QSslSocket::supportsSsl() ? QSslSocket::sslLibraryVersionString()
                                                                      : QString()));
    const ServerCheck::Manifest manifest = ServerCheck::fetchManifest(manifestUrl);
    for (const Finding &finding : manifest.findings)
        report(finding);
    if (manifest.root.isEmpty() || m_model.isEmpty())
        return 0;
    const Finding entry = ManifestFindings::entryFor(manifest.root, m_model);
    report(entry);
    report(ImageFindings::sum(QStringLiteral("image-sum"), FirmwareManifest::md5(manifest.root, m_model)));
    if (!firmwareKeys().isEmpty())
        report(SignatureFindings::signature(QStringLiteral("image-signature"),
                                            FirmwareManifest::signature(manifest.root, m_model), m_model,
                                            firmwareKeys()));
    if (entry.verdict != Finding::Verdict::Ok)
        return 0;
    const ImageFindings::Image image = ServerCheck::checkImage(
        QStringLiteral("image"), FirmwareManifest::fileAddress(manifest.root, m_model).url);
    report(image.finding);
    return image.size;
}
