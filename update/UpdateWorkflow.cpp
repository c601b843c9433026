#include "update/UpdateWorkflow.h"

#include "update/SignatureCheck.h"
#include "update/TemporaryFolder.h"
#include "update/UpdateTitles.h"
#include "update/md5Check.h"

#include <QCoreApplication>
#include <QDebug>
#include <QFile>

namespace {

UpdateReason reasonOf(BurnResult result)
{
    switch (result) {
    case BurnSucceeded:
        return UpdateReason::None;
    case BurnNotStarted:
        return UpdateReason::ToolNotStarted;
    case BurnDeviceNotReachable:
        return UpdateReason::DeviceNotReachable;
    case BurnWithoutSuccessLine:
        break;
    }
    return UpdateReason::WritingFailed;
}

} // namespace

UpdateWorkflow::UpdateWorkflow(const Dependencies &dependencies, const UpdateRequest &request)
    : m_d(dependencies),
      m_request(request)
{
}

void UpdateWorkflow::run()
{
    Ending ending = obtainImage();
    if (!ending)
        ending = m_request.isIap() ? handOverToIapPanel() : writeDevice();
    if (ending)
        end(*ending);
}

UpdateWorkflow::Ending UpdateWorkflow::obtainImage()
{
    if (m_request.localFileMode) {
        qDebug() << "Run LocalFile Update Model!";
        m_d.reporter.log(QStringLiteral("Run LocalFile Update Model!"));
        m_d.reporter.setStateTitle(UpdateTitles::localFile);
        return checkLocalImage();
    }

    if (!prepareFolders()) {
        m_d.reporter.log(QStringLiteral("ensurePath Failed!"));
        m_d.reporter.setStateTitle(UpdateTitles::folderFailure);
        return UpdateReason::FolderUnusable;
    }
    QJsonObject manifest;
    const QString path = m_d.source.fetchFirmware(m_request, &manifest);
    if (m_d.clock.isShuttingDown())
        return UpdateReason::ProgramClosed;
    // Also checked after a failed fetch: the check of an empty path fails, so that all failed runs end in the
    // same way.
    if (!md5Check(m_d.reporter).checkMd5(path, manifest, m_d.source.deviceKey())) {
        m_d.reporter.setStateTitle(UpdateTitles::md5Mismatch);
        return path.isEmpty() ? m_d.source.failure() : UpdateReason::ChecksumMismatch;
    }
    if (const Ending refused = checkServerSignature(path, manifest))
        return refused;
    m_d.choices.useServerImage(path, m_d.source.deviceKey());
    m_d.session.useImage(path);
    return {};
}

UpdateWorkflow::Ending UpdateWorkflow::checkLocalImage()
{
    const QString &image = m_request.image.path;
    const UpdateReason reason = SignatureCheck(m_d.reporter, m_d.clock, m_d.paths.firmwareKeys)
                                    .checkLocalImage(image, m_request.model(), m_request.requireSignature);
    if (reason == UpdateReason::None)
        m_d.session.useImage(image);
    return endingOf(reason);
}

UpdateWorkflow::Ending UpdateWorkflow::checkServerSignature(const QString &image, const QJsonObject &manifest)
{
    return endingOf(SignatureCheck(m_d.reporter, m_d.clock, m_d.paths.firmwareKeys)
                        .checkServerImage(image, manifest, m_d.source.deviceKey()));
}

/// Returns how the run ends after the check of the image's signature. A refused image ends it in the same way
/// as a wrong MD5.
UpdateWorkflow::Ending UpdateWorkflow::endingOf(UpdateReason reason)
{
    if (reason == UpdateReason::None)
        return {};
    if (reason == UpdateReason::SignatureRefused)
        m_d.reporter.setStateTitle(UpdateTitles::md5Mismatch);
    return reason;
}

bool UpdateWorkflow::prepareFolders()
{
    m_d.reporter.log(QLatin1String("usb tmpPath: ") + m_d.paths.temporaryFolder);
    return prepareFolder(m_d.paths.temporaryFolder) &&
           prepareFolder(m_d.paths.temporaryFolder + QLatin1String("/qmake")) &&
           prepareFolder(m_d.paths.temporaryFolder + QLatin1String("/tmp"));
}

bool UpdateWorkflow::prepareFolder(const QString &path)
{
    const QString reason = TemporaryFolder::create(path) ? TemporaryFolder::reasonNotToWriteIn(path)
                                                         : path + QStringLiteral(" cannot be created.");
    if (!reason.isEmpty())
        m_d.reporter.log(reason);
    return reason.isEmpty();
}

UpdateWorkflow::Ending UpdateWorkflow::handOverToIapPanel()
{
    m_d.reporter.log(QStringLiteral("IAP Dev - Run IAPUpDate Mode!"));
    // Entered before the panel starts, which may end the run before this thread continues.
    m_d.session.enter(UpdateStage::AskingProgrammer);
    if (m_d.host.startIapPanel())
        return {};
    return UpdateReason::NoPanel;
}

UpdateReason UpdateWorkflow::writeDevice()
{
    m_d.reporter.setStateTitle(UpdateTitles::upgradeStart);
    m_d.session.enter(UpdateStage::EnteringBootloader);
    const bool bootloaderOk = enterBootloader();
    const QString writeType = m_d.choices.writeType();
    m_d.reporter.log(QLatin1String("Current writeType is: ") + writeType + QLatin1Char('.'));
    const UpdateReason reason = burn(writeType, bootloaderOk);
    if (m_d.clock.isShuttingDown())
        return UpdateReason::ProgramClosed;
    reportResult(reason == UpdateReason::None, writeType);
    if (!m_d.launch.isAutomatic()) {
        qDebug() << "删除临时固件文件";
        if (m_d.choices.image().path == m_d.paths.downloadedImage())
            m_d.choices.dropServerImage();
        QFile::remove(m_d.paths.downloadedImage());
    }
    return reason;
}

bool UpdateWorkflow::enterBootloader()
{
    m_d.reporter.log(QStringLiteral("try to bootloader..."));
    if (m_request.inBootloader) {
        m_d.reporter.log(QStringLiteral("Find BootloaderDev Skip try2Bootloader"));
        return true;
    }
    const bool sent = m_d.host.sendUpdateMode();
    m_d.reporter.log(sent ? QStringLiteral("TryToBootloader Success!")
                          : QStringLiteral("TryToBootloader Failed"));
    return sent;
}

UpdateReason UpdateWorkflow::burn(const QString &writeType, bool bootloaderOk)
{
    Flasher flasher = makeFlasher();
    if (writeType == QLatin1String("USB")) {
        m_d.reporter.log(QStringLiteral("in usb write mode.."));
        const UpdateReason reason = burnOverUsb(flasher, bootloaderOk);
        qDebug() << "usb write mode done";
        return reason;
    }
    if (writeType == QLatin1String("HID")) {
        m_d.reporter.log(QStringLiteral("in hid write mode.."));
        const UpdateReason reason = burnOverHid(flasher, bootloaderOk);
        qDebug() << "hid write mode done";
        return reason;
    }
    m_d.reporter.log(QStringLiteral("UnKnow write type.!"));
    return UpdateReason::UnknownWriteType;
}

UpdateReason UpdateWorkflow::burnOverUsb(Flasher &flasher, bool bootloaderOk)
{
    bool burned = false;
    flasher.burnWithRetry(&burned, bootloaderOk);
    if (burned)
        return UpdateReason::None;
    const auto result = flasher.lastResult();
    return result ? reasonOf(*result) : UpdateReason::BootloaderNotEntered;
}

UpdateReason UpdateWorkflow::burnOverHid(Flasher &flasher, bool bootloaderOk)
{
    qDebug().noquote() << "当前烧录的固件程序为:" << m_d.session.image();
    if (bootloaderOk) {
        flasher.burnOverHid();
        return reasonOf(flasher.lastResult().value_or(BurnNotStarted));
    }
    qDebug() << "try to bootloader err";
    m_d.reporter.log(QStringLiteral("try to bootloader err."));
    return UpdateReason::BootloaderNotEntered;
}

Flasher UpdateWorkflow::makeFlasher() const
{
    return {m_d.reporter, m_d.host,  m_d.session,
            m_d.clock,    m_d.paths, {m_request.device.name, m_d.session.image()}};
}

void UpdateWorkflow::reportResult(bool burned, const QString &writeType)
{
    if (!burned) {
        m_d.reporter.log(QStringLiteral("Burn Image Failed"));
        m_d.reporter.setStateTitle(UpdateTitles::burnFailure);
        return;
    }
    m_d.reporter.log(QStringLiteral("Burn Image Success"));
    m_d.reporter.setStateTitle(UpdateTitles::burnSuccess);
    // Intentional: "checkable", not "checked". The restart box is always checkable, so the reset always runs.
    if (m_d.choices.restartCheckable())
        resetDevice(writeType);
}

void UpdateWorkflow::resetDevice(const QString &writeType)
{
    m_d.session.enter(UpdateStage::Resetting);
    Flasher flasher = makeFlasher();
    if (writeType == QLatin1String("USB")) {
        m_d.reporter.log(QStringLiteral("run usb reset."));
        flasher.RunCmdReset(m_d.paths.usbFlasher);
    } else {
        m_d.reporter.log(QStringLiteral("run hid reset."));
        flasher.RunCmdReset(m_d.paths.hidFlasher);
    }
}

void UpdateWorkflow::end(UpdateReason reason)
{
    using Afterwards = UpdateSession::Afterwards;
    if (reason == UpdateReason::ProgramClosed) {
        m_d.session.end(reason, Afterwards::ProgramClosed, {});
        m_d.reporter.log(QStringLiteral("The program was closed before the update had ended."));
    } else if (mustBlock(reason)) {
        m_d.session.end(reason, Afterwards::Blocked, {});
        blockInLaunchMode();
    } else {
        m_d.session.end(reason, Afterwards::Idle, [this] {
            m_d.reporter.runDeviceCheck(true);
            m_d.reporter.enableStartButton(true);
        });
    }
}

/// Returns whether no other update may start after this one. An automatic launch mode allows another attempt
/// only if the update ended before it could do anything, for example because the folders could not be
/// created.
bool UpdateWorkflow::mustBlock(UpdateReason reason) const
{
    return m_d.launch.isAutomatic() && reason != UpdateReason::FolderUnusable &&
           reason != UpdateReason::NoPanel;
}

void UpdateWorkflow::blockInLaunchMode()
{
    m_d.reporter.log(
        QStringLiteral("Burn Program Done Now blocking Program because In ZN58|Tessilonix Mode.!"));
    while (m_d.clock.sleepMs(5))
        QCoreApplication::processEvents();
}
