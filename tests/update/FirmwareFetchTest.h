#pragma once

#include "tests/common/ManualClock.h"
#include "tests/common/RecordingReporter.h"
#include "tests/update/ManifestServer.h"
#include "tests/update/OnWorkerThread.h"
#include "tests/update/OwnSession.h"

#include "download/FileDownloaderHTTP.h"
#include "download/ThreadFileDownloader.h"
#include "simulator/files/WholeFile.h"
#include "support/process/ShutdownFlag.h"
#include "update/ChosefirmwareWidget.h"
#include "update/FirmwareFetch.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QJsonObject>

/// A clock whose sleeps take 2 ms of real time, in which network events are processed.
class PumpingClock : public ManualClock
{
public:
    bool sleepMs(int milliseconds) override
    {
        QThread::msleep(2);
        QCoreApplication::processEvents();
        return ManualClock::sleepMs(milliseconds);
    }
};

/// A fetch with the real downloaders from a loopback server.
class FirmwareFetchTest : public testing::Test
{
protected:
    FirmwareFetchTest()
    {
        m_paths.applicationDir = m_folder.filePath(QStringLiteral("app"));
        m_paths.savedManifest = m_paths.applicationDir + QStringLiteral("/qmake/dev.jn");
        m_paths.temporaryFolder = m_folder.filePath(QStringLiteral("temporary"));
        m_paths.manifestUrl = m_rig.manifestUrl();
        QDir().mkpath(m_paths.temporaryFolder + QStringLiteral("/tmp"));
        setDevice(QStringLiteral("M1"), 0);
        m_rig.write(QStringLiteral("m1.img"), m_image);
        setEntry(QStringLiteral("M1"), m_rig.server.url(QStringLiteral("/m1.img")).toString());
    }
    void TearDown() override { ShutdownFlag::instance().lower(); }

    void setDevice(const QString &name, quint8 iapFlag)
    {
        ChosenDevice device;
        device.name = name;
        device.iapFlag = iapFlag;
        m_choices.setFound(device, false);
    }
    /// Sets a manifest with one device and this address of its image.
    void setEntry(const QString &key, const QString &url)
    {
        m_manifestText =
            QStringLiteral(R"({"CurrentVersion":{"%1":{"fileURL":"%2","downloadURL":"%2"}}})").arg(key, url);
        m_rig.setManifest(m_manifestText.toUtf8());
    }
    FirmwareFetch makeFetch(Clock &clock, ChosefirmwareWidget *chooser = nullptr)
    {
        return {m_reporter, *m_session, m_choices, clock, m_paths, m_downloader, m_segmentWorker, chooser};
    }
    /// Runs a fetch as in the program: on a separate thread, in real time.
    QString fetch(ChosefirmwareWidget *chooser = nullptr)
    {
        return onWorkerThread([this, chooser] {
            FirmwareFetch run = makeFetch(Clock::real(), chooser);
            const QString path = run.fetchFirmware(m_choices.request(), &m_manifest);
            m_key = run.deviceKey();
            m_failure = run.failure();
            return path;
        });
    }
    static QByteArray contentOf(const QString &path) { return WholeFile::read(path, "(no file)"); }

    const QStringList m_parsing{
        QStringLiteral("title Current Status: Trying to Parse Firmware Address from Server..."),
        QStringLiteral("log Try To Get File Address...")};
    QStringList manifestRead() const
    {
        return {QStringLiteral("log Download succeeded."), QStringLiteral("log Json Download succeeded."),
                QStringLiteral("log devjson:") + m_manifestText, QStringLiteral("log Try To parse json...")};
    }
    const QStringList m_noAddress{QStringLiteral("title Current Status: Failed to Parse File Address"),
                                  QStringLiteral("log Get File Address Failed!")};

    const QByteArray m_image = QByteArray("0123456789abcdef").repeated(4096) + "end";
    QString m_manifestText;
    ManifestServer m_rig;
    QTemporaryDir m_folder;
    UpdatePaths m_paths;
    UpdateChoices m_choices;
    OwnSession m_session;
    RecordingReporter m_reporter;
    /// The lines of the plain downloader. They are separate, because they are logged on another thread.
    RecordingReporter m_downloaderLog;
    FileDownloaderHTTP m_downloader{nullptr, &m_downloaderLog};
    ThreadFileDownloader m_segmentWorker;
    QJsonObject m_manifest;
    QString m_key;
    UpdateReason m_failure = UpdateReason::None;
};
