#include "download/ThreadFileDownloader.h"

#include "download/DiskNeed.h"
#include "download/DownloadProgress.h"
#include "download/DownloadTitles.h"
#include "download/FileDownloader.h"
#include "download/FileSizeFetcher.h"
#include "download/SegmentRanges.h"
#include "download/WriteAll.h"
#include "support/LanguageUtilities.h"
#include "support/log/Reporter.h"

#include <QCoreApplication>
#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QStorageInfo>
#include <QThread>
#include <QUrl>
#include <algorithm>

namespace {

constexpr int roundMs = 100;
constexpr qint64 sizeLimitMs = 20000;
// Small enough for the processor's cache. Allocating a buffer for a whole part takes longer than copying it.
constexpr int mergeBlockBytes = 256 * 1024;

} // namespace

/// The state of one call of downloadInSegments().
struct ThreadFileDownloader::Run
{
    int segmentCount;
    Reporter *owner;
    std::unique_ptr<FileSizeFetcher> probe;
    qint64 size = 0;
    double percent = 0;
    QStringList parts;
    QList<const FileDownloader *> givenUp;
    bool fileProblemReported = false;
};

ThreadFileDownloader::ThreadFileDownloader(Clock &clock) : m_clock(clock) {}

ThreadFileDownloader::~ThreadFileDownloader()
{
    // Safe on this thread: each run has deleted the network access of its segments and its thread has ended.
    qDeleteAll(segments);
}

bool ThreadFileDownloader::downloadInSegments(int segmentCount, Reporter *owner)
{
    Run run{segmentCount, owner, nullptr, 0, 0, {}, {}, false};
    showState(DownloadTitles::preparingTask);
    qDebug() << "准备下载任务...";
    owner->log(QStringLiteral("Begin To Downloader Json: ") + url);
    if (url.isEmpty()) {
        showState(DownloadTitles::noAddress);
        qDebug() << "url is null";
        owner->log(QStringLiteral("ERR: Json url is null"));
        return false;
    }
    if (!waitForSize(run) || !checkDiskSpace(run))
        return false;
    startSegments(run);
    const bool isComplete = waitForSegments(run);
    const bool isMerged = isComplete && mergeSegments(run);
    dropNetworks();
    return isMerged;
}

void ThreadFileDownloader::showState(const TranslatableText &text)
{
    emit setStateLabel(LanguageUtilities::instance().lookup(text));
}

bool ThreadFileDownloader::waitForSize(Run &run)
{
    run.probe = std::make_unique<FileSizeFetcher>(QUrl(url));
    showState(DownloadTitles::waitingForServer);
    qDebug() << "等待服务器返回...";
    run.probe->fetchFileSize();
    qDebug() << "Wait Servier Return File Size...";
    run.owner->log(QStringLiteral("Wait Servier Return File Size..."));

    const qint64 startMs = m_clock.nowMs();
    while (run.probe->fileSize <= 0) {
        if (!m_clock.sleepMs(roundMs))
            return false;
        QCoreApplication::processEvents();
        if (m_clock.nowMs() - startMs >= sizeLimitMs) {
            qWarning() << "Timeout reached!";
            run.owner->log(QStringLiteral("wait server return timeout!"));
            // The request continues until its thread ends.
            FileSizeFetcher *probe = run.probe.release();
            connect(QThread::currentThread(), &QThread::finished, probe, &QObject::deleteLater);
            return false;
        }
    }
    run.size = run.probe->fileSize;
    qDebug().nospace() << "AllDownloadFileSize: " << run.size;
    run.owner->log(QStringLiteral("AllDownloadFileSize: ") + QString::number(run.size));
    return true;
}

bool ThreadFileDownloader::checkDiskSpace(const Run &run) const
{
    const QStorageInfo disk(QFileInfo(savePath).path());
    qint64 onDisk = 0;
    for (int i = 0; i < run.segmentCount; ++i)
        onDisk += QFileInfo(partPath(i)).size();
    const qint64 needed = bytesToReserve(run.size, onDisk);
    if (!disk.isValid() || !disk.isReady() || disk.bytesAvailable() < 0 || disk.bytesAvailable() >= needed)
        return true;
    run.owner->log(QStringLiteral("The disk is too full for the download: %1 needs %2 bytes, %3 are free.")
                       .arg(QFileInfo(savePath).path())
                       .arg(needed)
                       .arg(disk.bytesAvailable()));
    return false;
}

QString ThreadFileDownloader::partPath(int i) const
{
    return savePath + QStringLiteral("packet_") + QString::number(i);
}

void ThreadFileDownloader::startSegments(Run &run)
{
    showState(DownloadTitles::preparing);
    run.owner->log(QStringLiteral("Begin Download now..."));
    const QList<SegmentRange> ranges = cutIntoRanges(run.size, run.segmentCount);
    for (int i = 0; i < ranges.size(); ++i) {
        // Unsigned, to wrap like the ends. The line of the last segment is computed from its end as well.
        const quint32 partSize = static_cast<quint32>(run.size / run.segmentCount);
        qDebug() << "第" << i << "轮";
        qDebug().nospace() << "开始: "
                           << static_cast<qint32>(static_cast<quint32>(ranges.at(i).end) - partSize);
        qDebug().nospace() << "结束: " << ranges.at(i).end;
    }
    const QUrl address(url); // parsed once: the segments, which are never deleted, share it
    for (int i = 0; i < ranges.size(); ++i) {
        QString part = partPath(i);
        part.squeeze();
        auto *segment = new FileDownloader(address, part);
        run.parts.append(part);
        segments.append(segment);
        segment->wholeFileSize = run.size;
        segment->stallTimeout = stallTimeout;
        segment->startByte = ranges.at(i).start;
        segment->endByte = ranges.at(i).end;
        segment->startDownload();
    }
}

bool ThreadFileDownloader::waitForSegments(Run &run)
{
    bool isDone = false;
    while (!isDone) {
        if (!m_clock.sleepMs(roundMs))
            return false;
        // Processes events as long as data arrives: no data is read while this thread sleeps.
        QCoreApplication::processEvents(QEventLoop::AllEvents, roundMs);
        isDone = areAllDone();
        showProgress(run);
        reportFileProblem(run);
        reportGivenUp(run);
        if (failWhenGivenUp && hasGivenUp())
            return false;
    }
    run.probe.reset();
    qDebug().nospace() << "百分之: " << run.percent;
    showState(DownloadTitles::downloaded);
    return true;
}

bool ThreadFileDownloader::areAllDone() const
{
    for (const FileDownloader *segment : segments) {
        QCoreApplication::processEvents();
        if (segment->state != FileDownloader::Finished)
            return false;
    }
    return !segments.isEmpty();
}

bool ThreadFileDownloader::hasGivenUp() const
{
    return std::any_of(segments.begin(), segments.end(),
                       [](const FileDownloader *segment) { return segment->hasGivenUp(); });
}

qint64 ThreadFileDownloader::bytesOnDisk() const
{
    qint64 sum = 0;
    for (const FileDownloader *segment : segments) {
        QCoreApplication::processEvents();
        sum += segment->CurrentPackDownloadSize;
    }
    return sum;
}

void ThreadFileDownloader::showProgress(Run &run)
{
    const qint64 sum = bytesOnDisk();
    if (progressWatcher)
        progressWatcher(sum, run.size);
    run.percent = roundedPercent(sum, run.size);
    emit setProgressBarValue(barValue(run.percent));
    emit setStateLabel(LanguageUtilities::instance().lookup(DownloadTitles::downloading) +
                       megabytesOf(sum, run.size));
}

void ThreadFileDownloader::reportFileProblem(Run &run)
{
    for (const FileDownloader *segment : segments) {
        if (run.fileProblemReported || segment->fileProblem().isEmpty() ||
            segment->state == FileDownloader::Finished)
            continue;
        run.fileProblemReported = true;
        run.owner->log(QStringLiteral("The download cannot be stored and is tried again: ") +
                       segment->fileProblem());
    }
}

void ThreadFileDownloader::reportGivenUp(Run &run)
{
    for (const FileDownloader *segment : segments) {
        if (!segment->hasGivenUp() || run.givenUp.contains(segment))
            continue;
        run.givenUp.append(segment);
        run.owner->log(
            QStringLiteral("Download of %1 gave up after %2 retries (%3). Close the program and try again.")
                .arg(segment->filePath)
                .arg(segment->retryCount)
                .arg(segment->lastProblem()));
    }
}

bool ThreadFileDownloader::mergeSegments(Run &run)
{
    qDebug().nospace() << "file.size(): " << QFile(savePath).size();
    showState(DownloadTitles::merging);
    qDebug() << "开始合并文件";
    run.owner->log(QStringLiteral("Now merge Files..."));
    const bool isMerged = mergeFiles(run.parts, savePath);
    for (const FileDownloader *segment : segments)
        QFile::remove(segment->filePath);
    if (isMerged) {
        qDebug() << "合并完成";
        showState(DownloadTitles::completed);
        run.owner->log(QStringLiteral("merge Files Success"));
    } else {
        qDebug() << "合并失败";
        showState(DownloadTitles::mergeFailed);
        run.owner->log(QStringLiteral("merge Files Failed!"));
        run.owner->log(m_mergeProblem);
    }
    return isMerged;
}

bool ThreadFileDownloader::mergeFiles(const QStringList &partPaths, const QString &targetPath)
{
    const auto fail = [this](const QFile &file) {
        m_mergeProblem = file.fileName() + QStringLiteral(": ") + file.errorString();
        return false;
    };
    m_mergeProblem.clear();
    QFile target(targetPath);
    if (!target.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered)) {
        qWarning().noquote() << "Could not open target file for writing:" << targetPath;
        return fail(target);
    }
    QByteArray block(mergeBlockBytes, Qt::Uninitialized);
    for (const QString &partPath : partPaths) {
        QFile part(partPath);
        if (!part.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
            qWarning().noquote() << "Could not open source file for reading:" << partPath;
            return fail(part);
        }
        qint64 count = 0;
        while ((count = part.read(block.data(), block.size())) > 0) {
            if (writeAll(target, block.constData(), count) != count) {
                qWarning().noquote() << "Could not write target file:" << targetPath;
                return fail(target);
            }
        }
        if (count < 0 || part.error() != QFileDevice::NoError) {
            qWarning().noquote() << "Could not read source file:" << partPath;
            return fail(part);
        }
    }
    return true;
}

void ThreadFileDownloader::dropNetworks()
{
    for (FileDownloader *segment : qAsConst(segments))
        segment->dropNetwork();
}
