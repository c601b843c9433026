#pragma once

#include "support/BilingualText.h"
#include "support/Clock.h"

#include <QList>
#include <QObject>
#include <QStringList>

#include <memory>

class FileDownloader;
class FileSizeFetcher;
class QLabel;
class Reporter;

/// Fetches one file as ranges side by side, joins them and removes them.
///
/// Made once, on the GUI thread, and reused by every update. downloadInSegments runs on a worker
/// thread; nothing there touches a widget.
class ThreadFileDownloader : public QObject
{
    Q_OBJECT

public:
    /// `label` (may be null) shows the status lines. `parentObject` is only kept: this object is
    /// moved between no threads and has no parent, so its owner holds it by a smart pointer.
    ThreadFileDownloader(QObject *parentObject, QLabel *label, Clock &clock = Clock::real());
    ~ThreadFileDownloader() override;

    /// Fetches `url` to `savePath` in `segmentCount` (at least 1) ranges. Blocks the calling thread,
    /// processing its events, until the file is merged (true), or the run has failed or the program
    /// is leaving (false). A disk without room for parts and file fails the run before they are
    /// fetched. There is no other limit on the time: a segment that has given up keeps
    /// the run waiting. Log lines go to `owner`.
    bool downloadInSegments(int segmentCount, Reporter *owner);

    /// Joins the files, in list order, into `targetPath`. False when one of them cannot be opened,
    /// read or written; the target keeps what it got.
    bool mergeFiles(const QStringList &partPaths, const QString &targetPath);

    /// What to fetch and where to; set before each run.
    QString url;
    QString savePath;
    /// Those of every run; never cleared. They live on the thread of the run that made them.
    QList<FileDownloader *> segments;
    /// Handed to each segment: milliseconds without a byte after which its request is made again.
    int stallTimeout = 30000;
    QObject *parentArg;
    QLabel *stateLabel;

signals:
    void setProgressBarValue(int value);
    void setStateLabel(QString text);

private:
    struct Run;

    void showState(const BilingualText &text);
    bool waitForSize(Run &run);
    bool isSpaceEnough(const Run &run) const;
    QString partPath(int i) const;
    void startSegments(Run &run);
    bool waitForSegments(Run &run);
    bool mergeSegments(Run &run);
    bool areAllDone() const;
    qint64 bytesOnDisk() const;
    void showProgress(Run &run);
    void reportFileProblem(Run &run);
    void reportGivenUp(Run &run);
    void dropNetworks();

    Clock &m_clock;
    /// Why the last merge failed, which the status does not tell.
    QString m_mergeProblem;
};
