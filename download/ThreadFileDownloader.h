#pragma once

#include "support/Clock.h"
#include "support/TranslatableText.h"

#include <QList>
#include <QObject>
#include <QStringList>

#include <functional>
#include <memory>

class FileDownloader;
class FileSizeFetcher;
class QLabel;
class Reporter;

/// Downloads a file as parallel ranges, merges the part files and removes them.
///
/// Constructed once, on the GUI thread, and used for all updates. downloadInSegments() runs on a worker
/// thread and does not access any widget.
class ThreadFileDownloader : public QObject
{
    Q_OBJECT

public:
    /// Shows the status lines nowhere; they are still emitted.
    explicit ThreadFileDownloader(Clock &clock = Clock::real());
    /// `label` shows the status lines and may be null. `parentObject` is stored but not used as the QObject
    /// parent: the caller owns this object. Programs that use this constructor link download_label.
    ThreadFileDownloader(QObject *parentObject, QLabel *label, Clock &clock = Clock::real());
    ~ThreadFileDownloader() override;

    /// Downloads `url` to `savePath` in `segmentCount` (at least 1) ranges and logs to `owner`. Blocks the
    /// calling thread and processes its events. Returns true if the file is complete, false if the download
    /// has failed or the program is shutting down. Fails at once if the disk has no space for the parts and
    /// the file. There is no time limit: unless failWhenGivenUp is set, the download waits forever for a
    /// segment that has given up.
    bool downloadInSegments(int segmentCount, Reporter *owner);

    /// Concatenates the files in list order to `targetPath`. Returns false if a file cannot be opened, read
    /// or written; the target then keeps what has been written.
    bool mergeFiles(const QStringList &partPaths, const QString &targetPath);

    /// Address and target of the download; set both before each run.
    QString url;
    QString savePath;
    /// The segments of all runs; never cleared. Each lives on the thread of its run.
    QList<FileDownloader *> segments;
    /// Passed to each segment: milliseconds without data after which it repeats its request.
    int stallTimeout = 30000;
    /// Whether the download fails as soon as a segment has given up. By default it waits until the user
    /// closes the window. Set it if there is no window.
    bool failWhenGivenUp = false;
    /// Called with the progress in bytes, on the thread of the download; may be empty.
    std::function<void(qint64 bytes, qint64 total)> progressWatcher;
    QObject *parentArg = nullptr;
    QLabel *stateLabel = nullptr;

signals:
    void setProgressBarValue(int value);
    void setStateLabel(QString text);

private:
    struct Run;

    void showState(const TranslatableText &text);
    bool waitForSize(Run &run);
    bool checkDiskSpace(const Run &run) const;
    QString partPath(int i) const;
    void startSegments(Run &run);
    bool waitForSegments(Run &run);
    bool mergeSegments(Run &run);
    bool areAllDone() const;
    bool hasGivenUp() const;
    qint64 bytesOnDisk() const;
    void showProgress(Run &run);
    void reportFileProblem(Run &run);
    void reportGivenUp(Run &run);
    void dropNetworks();

    Clock &m_clock;
    /// The reason for the failure of the last merge, for the log.
    QString m_mergeProblem;
};
