#include "cli/CheckCommand.h"

#include "cli/CommandContext.h"
#include "cli/DeviceFindings.h"
#include "cli/DeviceSearch.h"
#include "cli/ManifestFindings.h"
#include "cli/ServerCheck.h"
#include "cli/SignatureFindings.h"
#include "cli/SystemFindings.h"
#include "cli/Texts.h"
#include "devices/Bootloader.h"
#include "devices/ControlledDeviceList.h"
#include "devices/RefusedDevice.h"
#include "support/LaunchOptions.h"
#include "support/ShutdownFlag.h"
#include "support/UpdateLock.h"
#include "update/FirmwareKeys.h"
#include "update/FirmwareManifest.h"
#include "update/FirmwareServerAddress.h"
#include "update/ProgramPaths.h"
#include "update/TemporaryFolder.h"

#include <QDir>
#include <QFileInfo>
#include <QSslSocket>
#include <QStorageInfo>

namespace {

/// Returns the file of a connected device, in its bootloader or not, that this user may not open.
QString refusedFile()
{
    const ModelTable table;
    return findRefusedDeviceFile([&table](quint32 vendorId, quint32 productId) {
        return Bootloader::hasIds(vendorId, productId) ||
               table.find(vendorId, productId, LaunchOptions()) != nullptr;
    });
}

/// Looks at the machine and at the server, and reports what it finds as it goes.
class Check
{
public:
    explicit Check(CommandContext &context) : m_context(context) {}

    ExitCode run()
    {
        lookAtMachine();
        const qint64 imageSize = lookAtServer();
        report(SystemFindings::diskSpace(QStorageInfo(folder()).bytesAvailable(), imageSize));
        if (ShutdownFlag::instance().isRaised())
            return ExitCode::Interrupted;
        return Findings::exitCodeOf(m_findings, ExitCode::NotPrepared);
    }

private:
    void lookAtMachine();
    void lookAtTools(const QString &model);
    qint64 lookAtServer();
    void report(const Finding &finding)
    {
        m_context.sink.finding(finding);
        m_findings.append(finding);
    }
    /// Where downloads lie: the private folder or, if that could not be made, the one around it.
    QString folder() const { return m_context.folder().isEmpty() ? QDir::tempPath() : m_context.folder(); }

    CommandContext &m_context;
    QVector<Finding> m_findings;
    QString m_model;
};

void Check::lookAtMachine()
{
    const QString &asked = m_context.options.model;
    const QString &list = m_context.tools.controlList;
    const QVector<DeviceInfo> devices = DeviceSearch(m_context.usb(), list).find();
    m_model = DeviceFindings::modelToCheck(asked, devices);
    report(DeviceFindings::devices(devices, asked));
    const std::optional<DriverState> driver = DriverState::ofThisSystem();
    // Where a driver opens devices there are no device files.
    report(DeviceFindings::deviceAccess(driver ? std::nullopt : std::optional<QString>(refusedFile())));
    report(SystemFindings::driver(driver));
    report(DeviceFindings::controlList(list, ControlledDeviceList::readWhole(list), m_model));
    lookAtTools(m_model);
    report(SystemFindings::temporaryFolder(folder(), TemporaryFolder::reasonNotToWriteIn(folder())));
    report(SystemFindings::updateLock(UpdateLock(ProgramPaths::updateLock()).isTakenElsewhere()));
}

void Check::lookAtTools(const QString &model)
{
    const ToolFiles &tools = m_context.tools;
    WriteType offered;
    ControlledDeviceList::readWriteType(tools.controlList, offered);
    const QString needed = DeviceFindings::neededTool(model, ControlledDeviceList::writeTypeItems(offered));
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
qint64 Check::lookAtServer()
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
    const ImageFindings::Image image = ServerCheck::lookAtImage(
        QStringLiteral("image"), FirmwareManifest::fileAddress(manifest.root, m_model).url);
    report(image.finding);
    return image.size;
}

} // namespace

ExitCode runCheckCommand(CommandContext &context)
{
    return Check(context).run();
}
