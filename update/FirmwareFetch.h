#pragma once

#include "session/UpdateSession.h"
#include "support/Clock.h"
#include "support/log/Reporter.h"
#include "update/FirmwareSource.h"
#include "update/UpdateChoices.h"
#include "update/UpdatePaths.h"

class FileDownloaderHTTP;
class ModelChooser;
class ThreadFileDownloader;

/// Downloads the image of one run from the firmware server: the manifest, the address in it, then the image
/// in ten ranges. Runs on the update's thread; the chooser and the plain downloader live on the GUI thread.
class FirmwareFetch : public FirmwareSource
{
public:
    /// All references must outlive this object; `chooser` may be null.
    FirmwareFetch(Reporter &reporter, UpdateSession &session, UpdateChoices &choices, Clock &clock,
                  const UpdatePaths &paths, FileDownloaderHTTP &downloader,
                  ThreadFileDownloader &segmentWorker, ModelChooser *chooser);

    QString fetchFirmware(const UpdateRequest &request, QJsonObject *manifest) override;
    UpdateReason failure() const override { return m_failure; }
    QString deviceKey() const override { return m_deviceKey; }

private:
    bool identifyDevice(const UpdateRequest &request);
    bool downloadManifest();
    QString addressFromManifest(QJsonObject *manifest);
    QString downloadImage(const QString &address, bool isIap);
    /// Returns whether the folder is still the user's own; logs the reason otherwise.
    bool mayUse(const QString &folder);

    Reporter &m_reporter;
    UpdateSession &m_session;
    UpdateChoices &m_choices;
    Clock &m_clock;
    const UpdatePaths &m_paths;
    FileDownloaderHTTP &m_downloader;
    ThreadFileDownloader &m_segmentWorker;
    ModelChooser *m_chooser;
    QString m_deviceKey;
    UpdateReason m_failure = UpdateReason::None;
};
