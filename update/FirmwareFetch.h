#pragma once

#include "support/Clock.h"
#include "support/Reporter.h"
#include "update/FirmwareSource.h"
#include "update/LiveState.h"
#include "update/UpdatePaths.h"

class ChosefirmwareWidget;
class FileDownloaderHTTP;
class ThreadFileDownloader;

/// Gets the image from the firmware server: manifest, address, ten ranges. Made for one run; runs
/// on the update's thread, while the chooser and the plain downloader live on the GUI thread.
class FirmwareFetch : public FirmwareSource
{
public:
    /// All references outlive the fetch; `chooser` may be null when there is none to show.
    FirmwareFetch(Reporter &reporter, LiveState &state, Clock &clock, const UpdatePaths &paths,
                  FileDownloaderHTTP &downloader, ThreadFileDownloader &segmentWorker,
                  ChosefirmwareWidget *chooser);

    QString fetchFirmware(QJsonObject *manifest) override;
    QString deviceKey() const override { return m_deviceKey; }

private:
    bool identifyDevice();
    bool downloadManifest();
    QString addressFromManifest(QJsonObject *manifest);
    QString downloadImage(const QString &address);
    QString giveControlsBack();

    Reporter &m_reporter;
    LiveState &m_state;
    Clock &m_clock;
    const UpdatePaths &m_paths;
    FileDownloaderHTTP &m_downloader;
    ThreadFileDownloader &m_segmentWorker;
    ChosefirmwareWidget *m_chooser;
    QString m_deviceKey;
};
