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

/// Downloads one file as parallel ranges, joins their part files and removes them.
///
/// Constructed once, on the GUI thread, and reused by every update. downloadInSegments() runs on a worker
/// thread and touches no widget.
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
    /// calling thread, processing its events. Returns true when the file is complete, and false when the
    /// download has failed or the program is leaving. Fails at once if the disk has no space for the parts
    /// and the file. There is no time limit: a segment that has given up keeps the run waiting, unless
    /// failWhenGivenUp is set.
    bool downloadInSegments(int segmentCount, Reporter *owner);

    /// Joins the files in list order into `targetPath`. Returns false if a file cannot be opened, read or
    /// written; what was written so far stays in the target.
    bool mergeFiles(const QStringList &partPaths, const QString &targetPath);

    /// Address and target of the download; set both before each run.
    QString url;
    QString savePath;
    /// The segments of all runs; never cleared. Each lives on the thread of its run.
    QList<FileDownloader *> segments;
    /// Passed to each segment: milliseconds without data after which it repeats its request.
    int stallTimeout = 30000;
    /// Whether the download fails as soon as a segment has given up. By default it goes on waiting, until the
    /// user closes the window. Set it where nobody can.
    bool failWhenGivenUp = false;
    /// Told of the progress in bytes, on the thread of the download; may be empty.
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
    /// Why the last merge failed, for the log.
    QString m_mergeProblem;
};
