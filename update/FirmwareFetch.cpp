#include "update/FirmwareFetch.h"

#include "download/FileDownloaderHTTP.h"
#include "download/ThreadFileDownloader.h"
#include "update/FirmwareManifest.h"
#include "update/LocalFiles.h"
#include "update/ModelChooser.h"
#include "update/TemporaryFolder.h"
#include "update/UpdateTitles.h"

#include <QDebug>
#include <QFile>
#include <QFileInfo>

namespace {

constexpr int manifestLimitMs = 20000;
constexpr int manifestPollMs = 100;
constexpr int segmentCount = 10;

} // namespace

FirmwareFetch::FirmwareFetch(Reporter &reporter, UpdateSession &session, UpdateChoices &choices, Clock &clock,
                             const UpdatePaths &paths, FileDownloaderHTTP &downloader,
                             ThreadFileDownloader &segmentWorker, ModelChooser *chooser)
    : m_reporter(reporter),
      m_session(session),
      m_choices(choices),
      m_clock(clock),
      m_paths(paths),
      m_downloader(downloader),
      m_segmentWorker(segmentWorker),
      m_chooser(chooser)
{
}

QString FirmwareFetch::fetchFirmware(const UpdateRequest &request, QJsonObject *manifest)
{
    if (!identifyDevice(request)) {
        m_failure = UpdateReason::NoModelChosen;
        return {};
    }
    m_session.enter(UpdateStage::Fetching);

    m_reporter.setStateTitle(UpdateTitles::parsingAddress);
    m_reporter.log(QStringLiteral("Try To Get File Address..."));
    const QString address = downloadManifest() ? addressFromManifest(manifest) : QString();
    if (m_clock.isShuttingDown())
        return {};
    if (address.isEmpty()) {
        m_reporter.setStateTitle(UpdateTitles::addressFailed);
        qDebug() << "解析img地址失败!";
        m_reporter.log(QStringLiteral("Get File Address Failed!"));
        m_failure = UpdateReason::AddressNotFound;
        return {};
    }
    m_reporter.setStateTitle(UpdateTitles::addressParsed);
    return downloadImage(address, request.isIap());
}

bool FirmwareFetch::identifyDevice(const UpdateRequest &request)
{
    m_deviceKey = request.device.name;
    if (!request.inBootloader)
        return true;

    m_session.enter(UpdateStage::AskingForModel);
    m_reporter.log(QStringLiteral("Find BootloaderMode.!, Show ChosefirmwareWidget."));
    m_deviceKey = m_chooser ? m_chooser->waitForChoice() : QString();
    m_reporter.log(QLatin1String("ChoseDev: ") + m_deviceKey);
    if (m_deviceKey.isEmpty())
        m_reporter.log(QStringLiteral("ChoseDev is null，return"));
    return !m_deviceKey.isEmpty();
}

bool FirmwareFetch::downloadManifest()
{
    LocalFiles::ensurePath(QFileInfo(m_paths.savedManifest).path());
    m_downloader.succeeded = false;
    emit m_downloader.sigDownloadFile(m_paths.manifestUrl, m_paths.savedManifest);

    const qint64 start = m_clock.nowMs();
    while (!m_downloader.succeeded) {
        if (!m_clock.sleepMs(manifestPollMs))
            return false;
        if (!m_downloader.succeeded && m_clock.nowMs() - start >= manifestLimitMs) {
            qWarning() << "Timeout reached!";
            qDebug() << "Download failed due to timeout.";
            m_reporter.log(QStringLiteral("Download failed due to timeout."));
            m_downloader.abandonDownload();
            return false;
        }
    }
    for (const char *text : {"Download succeeded.", "Json Download succeeded."}) {
        qDebug() << text;
        m_reporter.log(QLatin1String(text));
    }
    return true;
}

QString FirmwareFetch::addressFromManifest(QJsonObject *manifest)
{
    QFile file(m_paths.savedManifest);
    const QByteArray json = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    m_reporter.log(QLatin1String("devjson:") + QString::fromUtf8(json));
    qDebug() << "尝试解析json文件";
    m_reporter.log(QStringLiteral("Try To parse json..."));

    const FirmwareManifest::Parsed parsed = FirmwareManifest::parse(json);
    qDebug() << parsed.message.debugText;
    m_reporter.log(QString::fromUtf8(parsed.message.logText));
    if (!parsed.ok)
        return {};
    *manifest = parsed.root;

    const FirmwareManifest::Address address = FirmwareManifest::fileAddress(*manifest, m_deviceKey);
    for (const QString &message : address.messages) {
        qDebug().noquote() << message;
        m_reporter.log(message);
    }
    return address.url;
}

QString FirmwareFetch::downloadImage(const QString &address, bool isIap)
{
    const QString folder = m_paths.temporaryFolder + QLatin1String("/tmp");
    m_reporter.log(QStringLiteral("try to clear tmp dir/tmp"));
    if (!mayUse(m_paths.temporaryFolder) || !mayUse(folder)) {
        m_failure = UpdateReason::FolderUnusable;
        return {};
    }
    m_choices.dropServerImage();
    LocalFiles::clearDir(folder);
    m_reporter.log(QStringLiteral("try to download file..."));
    m_reporter.setStateTitle(UpdateTitles::retrieving);

    m_reporter.log(isIap ? QStringLiteral("is bin file type.") : QStringLiteral("is img file type."));
    QString path = isIap ? m_paths.downloadedIapImage() : m_paths.downloadedImage();
    m_segmentWorker.url = address;
    m_segmentWorker.savePath = path;
    if (!m_segmentWorker.downloadInSegments(segmentCount, &m_reporter)) {
        if (m_clock.isShuttingDown())
            return {};
        m_reporter.setStateTitle(UpdateTitles::downloadFailed);
        m_reporter.log(QStringLiteral("Download ERROR!"));
        m_failure = UpdateReason::DownloadFailed;
        return {};
    }
    m_reporter.setStateTitle(UpdateTitles::downloaded);
    m_reporter.log(QStringLiteral("Download Success"));
    return path;
}

bool FirmwareFetch::mayUse(const QString &folder)
{
    // Checked again, because picking a model may have taken minutes. From here on only this user can change
    // the contents of the folder, so the flasher gets the same image whose checksum is verified.
    const QString reason = TemporaryFolder::reasonNotToUse(folder);
    if (reason.isEmpty())
        return true;
    m_reporter.log(reason);
    m_reporter.log(QStringLiteral("ensurePath Failed!"));
    m_reporter.setStateTitle(UpdateTitles::folderFailure);
    return false;
}
