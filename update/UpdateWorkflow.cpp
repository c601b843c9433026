#include "update/UpdateWorkflow.h"

#include "update/LocalFiles.h"
#include "update/UpdateTitles.h"
#include "update/md5Check.h"

#include <QCoreApplication>
#include <QDebug>
#include <QFile>

UpdateWorkflow::UpdateWorkflow(Reporter &reporter, LiveState &state, UpdateHost &host, Clock &clock,
                               const UpdatePaths &paths, const LaunchOptions &launch, FirmwareSource &source)
    : m_reporter(reporter),
      m_state(state),
      m_host(host),
      m_clock(clock),
      m_paths(paths),
      m_launch(launch),
      m_source(source),
      m_flasher(reporter, host, state, clock, paths)
{
}

UpdateWorkflow::Ending UpdateWorkflow::run()
{
    if (const auto early = obtainImage())
        return *early;
    if (isIapDevice())
        return handOverToIapPanel();

    m_reporter.setStateTitle(UpdateTitles::upgradeStart);
    const bool bootloaderOk = enterBootloader();
    const QString writeType = m_state.writeType();
    m_reporter.log(QLatin1String("Current writeType is: ") + writeType + QLatin1Char('.'));
    const bool burned = burn(writeType, bootloaderOk);
    if (m_clock.isLeaving())
        return Ending::Leaving;
    reportResult(burned, writeType);
    if (!m_launch.isAutomatic()) {
        qDebug() << "删除临时固件文件";
        QFile::remove(m_paths.downloadedImage());
    }
    return ending();
}

std::optional<UpdateWorkflow::Ending> UpdateWorkflow::obtainImage()
{
    if (m_state.localFileMode()) {
        qDebug() << "Run LocalFile Update Model!";
        m_reporter.log(QStringLiteral("Run LocalFile Update Model!"));
        m_reporter.setStateTitle(UpdateTitles::localFile);
        return std::nullopt;
    }

    if (!prepareFolders()) {
        m_reporter.log(QStringLiteral("ensurePath Failed!"));
        m_reporter.setStateTitle(UpdateTitles::folderFailure);
        return Ending::ControlsBack;
    }
    QJsonObject manifest;
    const QString path = m_source.fetchFirmware(&manifest);
    if (m_clock.isLeaving())
        return Ending::Leaving;
    // Also after a failed fetch, whose empty path cannot pass: every failed run ends the same way.
    if (md5Check(m_reporter).checkMd5(path, manifest, m_source.deviceKey()))
        return std::nullopt;
    m_reporter.setStateTitle(UpdateTitles::md5Mismatch);
    return ending();
}

bool UpdateWorkflow::prepareFolders()
{
    m_reporter.log(QLatin1String("usb tmpPath: ") + m_paths.temporaryFolder);
    return prepareFolder(m_paths.temporaryFolder) &&
           prepareFolder(m_paths.temporaryFolder + QLatin1String("/qmake")) &&
           prepareFolder(m_paths.temporaryFolder + QLatin1String("/tmp"));
}

bool UpdateWorkflow::prepareFolder(const QString &path)
{
    const QString reason = LocalFiles::ensurePath(path) ? LocalFiles::reasonNotToWriteIn(path)
                                                        : path + QStringLiteral(" cannot be created.");
    if (!reason.isEmpty())
        m_reporter.log(reason);
    return reason.isEmpty();
}

bool UpdateWorkflow::isIapDevice() const
{
    const ChosenDevice device = m_state.device();
    return !device.name.isEmpty() && device.iapFlag != 0;
}

UpdateWorkflow::Ending UpdateWorkflow::handOverToIapPanel()
{
    m_reporter.log(QStringLiteral("IAP Dev - Run IAPUpDate Mode!"));
    return m_host.startIapPanel() ? Ending::HandedOver : Ending::ControlsBack;
}

bool UpdateWorkflow::enterBootloader()
{
    m_reporter.log(QStringLiteral("try to bootloader..."));
    if (m_state.bootloaderPresent()) {
        m_reporter.log(QStringLiteral("Find BootloaderDev Skip try2Bootloader"));
        return true;
    }
    const bool sent = m_host.sendUpdateMode();
    m_reporter.log(sent ? QStringLiteral("TryToBootloader Success!")
                        : QStringLiteral("TryToBootloader Failed"));
    return sent;
}

bool UpdateWorkflow::burn(const QString &writeType, bool bootloaderOk)
{
    if (writeType == QLatin1String("USB")) {
        m_reporter.log(QStringLiteral("in usb write mode.."));
        bool burned = false;
        m_flasher.burnWithRetry(&burned, bootloaderOk);
        qDebug() << "usb write mode done";
        return burned;
    }
    if (writeType == QLatin1String("HID")) {
        m_reporter.log(QStringLiteral("in hid write mode.."));
        const bool burned = burnOverHid(bootloaderOk);
        qDebug() << "hid write mode done";
        return burned;
    }
    m_reporter.log(QStringLiteral("UnKnow write type.!"));
    return false;
}

bool UpdateWorkflow::burnOverHid(bool bootloaderOk)
{
    qDebug().noquote() << "当前烧录的固件程序为:" << m_state.imagePath();
    if (bootloaderOk)
        return m_flasher.burnOverHid();
    qDebug() << "try to bootloader err";
    m_reporter.log(QStringLiteral("try to bootloader err."));
    return false;
}

void UpdateWorkflow::reportResult(bool burned, const QString &writeType)
{
    if (!burned) {
        m_reporter.log(QStringLiteral("Burn Image Failed"));
        m_reporter.setStateTitle(UpdateTitles::burnFailure);
        return;
    }
    m_reporter.log(QStringLiteral("Burn Image Success"));
    m_reporter.setStateTitle(UpdateTitles::burnSuccess);
    // Checkable, not checked: with an ordinary check box the reset always runs, and is meant to.
    if (m_state.restartCheckable())
        resetDevice(writeType);
}

void UpdateWorkflow::resetDevice(const QString &writeType)
{
    if (writeType == QLatin1String("USB")) {
        m_reporter.log(QStringLiteral("run usb reset."));
        m_flasher.RunCmdReset(m_paths.usbFlasher);
    } else {
        m_reporter.log(QStringLiteral("run hid reset."));
        m_flasher.RunCmdReset(m_paths.hidFlasher);
    }
}

UpdateWorkflow::Ending UpdateWorkflow::ending() const
{
    return m_launch.isAutomatic() ? Ending::LaunchMode : Ending::ControlsBack;
}

void UpdateWorkflow::finish(Ending ending)
{
    switch (ending) {
    case Ending::ControlsBack:
        m_reporter.runDeviceCheck(true);
        m_reporter.enableStartButton(true);
        break;
    case Ending::LaunchMode:
        blockInLaunchMode();
        break;
    case Ending::HandedOver:
        break;
    case Ending::Leaving:
        m_reporter.log(QStringLiteral("The program was closed before the update had ended."));
        break;
    }
}

void UpdateWorkflow::blockInLaunchMode()
{
    // A failed fetch has just switched both on.
    m_reporter.runDeviceCheck(false);
    m_reporter.enableStartButton(false);
    m_reporter.log(
        QStringLiteral("Burn Program Done Now blocking Program because In ZN58|Tessilonix Mode.!"));
    while (m_clock.sleepMs(5))
        QCoreApplication::processEvents();
}
