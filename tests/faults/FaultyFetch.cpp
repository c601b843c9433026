#include "tests/faults/FaultyFetch.h"

#include "download/FileDownloader.h"
#include "simulator/files/WholeFile.h"
#include "update/FirmwareFetch.h"
#include "update/md5Check.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QThread>

#include <gtest/gtest.h>

namespace {

/// In rounds of 100 ms: far more than the 20 s to which the other waits are limited.
constexpr int roundsUntilShutdown = 400;
/// Ten segments of 20000 bytes, the last one longer by 3.
constexpr int imageBytes = 200003;
constexpr int aDayMs = 24 * 60 * 60 * 1000;

void write(const QString &path, const QByteArray &content)
{
    EXPECT_TRUE(WholeFile::write(path, content));
}

} // namespace

bool HurryingClock::sleepMs(int milliseconds)
{
    QThread::msleep(2);
    QCoreApplication::processEvents();
    if (m_isHurried)
        m_skipped += milliseconds;
    onSleep();
    return !m_isShuttingDown;
}

FaultyFetch::FaultyFetch(const QStringList &faults)
{
    EXPECT_TRUE(m_server.listen());
    m_paths.applicationDir = m_folder.filePath(QStringLiteral("app"));
    m_paths.savedManifest = m_paths.applicationDir + QStringLiteral("/qmake/dev.jn");
    m_paths.temporaryFolder = m_folder.filePath(QStringLiteral("temporary"));
    m_paths.manifestUrl = m_server.url(QStringLiteral("/manifest.json")).toString();
    QDir().mkpath(m_paths.temporaryFolder + QStringLiteral("/tmp"));
    ChosenDevice device;
    device.name = QStringLiteral("M1");
    m_choices.setFound(device, false);

    const QByteArray md5 = QCryptographicHash::hash(image(), QCryptographicHash::Md5).toHex();
    const QJsonObject entry{{QStringLiteral("fileURL"), m_server.url(QStringLiteral("/m1.img")).toString()},
                            {QStringLiteral("md5"), QString::fromLatin1(md5)}};
    const QByteArray manifest = QJsonDocument(QJsonObject{{QStringLiteral("CurrentVersion"),
                                                           QJsonObject{{QStringLiteral("M1"), entry}}}})
                                    .toJson(QJsonDocument::Compact);
    for (const char *name : {"manifest.json", "elsewhere.json"})
        write(m_root.filePath(QLatin1String(name)), manifest);
    for (const char *name : {"m1.img", "elsewhere.img"})
        write(m_root.filePath(QLatin1String(name)), image());

    for (QString fault : faults) {
        fault.replace(QLatin1String("=M"), QLatin1String("=/manifest.json"));
        fault.replace(QLatin1String("=P"), QLatin1String("=/m1.img,whole=1"));
        fault.replace(QLatin1String("=S"), QLatin1String("=/m1.img,range=5"));
        QString error;
        EXPECT_TRUE(m_server.addFault(fault, &error)) << error.toStdString();
    }
}

QByteArray FaultyFetch::image() const
{
    // No two pieces are equal, so that a shifted or duplicated one is noticed.
    QByteArray bytes(imageBytes, '\0');
    for (int i = 0; i < imageBytes; ++i)
        bytes[i] = static_cast<char>((i * 7 + (i >> 8) * 13 + (i >> 16) * 29) & 0xFF);
    return bytes;
}

void FaultyFetch::watch(unsigned right)
{
    const QStringList lines = m_reporter.logLines();
    if (right == NoAddress ||
        (right == NoSize && lines.contains(QStringLiteral("Wait Servier Return File Size..."))))
        m_clock.hurry();
    if (lines.size() != m_lines)
        m_lastStep = m_clock.nowMs();
    m_lines = lines.size();
    if (m_segmentWorker.segments.isEmpty()) {
        m_longestWait = std::max(m_longestWait, m_clock.nowMs() - m_lastStep);
        return;
    }
    for (FileDownloader *segment : qAsConst(m_segmentWorker.segments))
        segment->retryDelay = 1;
    if ((right & GoesOnWaiting) != 0 && ++m_roundsWithSegments == roundsUntilShutdown)
        m_clock.shutDown();
}

Outcome FaultyFetch::run(unsigned right)
{
    // The program shuts down before a stalled segment times out, however slow the machine is.
    if ((right & GoesOnWaiting) != 0)
        m_segmentWorker.stallTimeout = aDayMs;
    m_clock.onSleep = [this, right] {
        watch(right);
    };
    FirmwareFetch fetch(m_reporter, *m_session, m_choices, m_clock, m_paths, m_downloader, m_segmentWorker,
                        nullptr);
    QJsonObject manifest;
    const QString path = fetch.fetchFirmware(m_choices.request(), &manifest);
    return outcomeOf(path, manifest);
}

Outcome FaultyFetch::outcomeOf(const QString &path, const QJsonObject &manifest)
{
    const bool isAccepted = md5Check(m_reporter).checkMd5(path, manifest, QStringLiteral("M1"));
    const QStringList lines = m_reporter.logLines();
    if (isAccepted) {
        EXPECT_TRUE(WholeFile::read(path) == image()) << "the MD5 check accepts a wrong file";
        return Exact;
    }
    if (lines.contains(QStringLiteral("Get File Address Failed!")))
        return NoAddress;
    if (lines.contains(QStringLiteral("wait server return timeout!")))
        return NoSize;
    if (lines.contains(QStringLiteral("merge Files Failed!")))
        return MergeFailed;
    if (lines.contains(QStringLiteral("File MD5 mismatch.")))
        return SumMismatch;
    EXPECT_TRUE(m_clock.isShuttingDown()) << "ended by itself for an unknown reason";
    EXPECT_FALSE(QFile::exists(m_paths.downloadedImage()));
    return GoesOnWaiting;
}
