#pragma once

#include "simulator/time/RunningTime.h"
#include "tests/common/RecordingReporter.h"
#include "tests/faults/FaultRow.h"
#include "tests/update/OwnSession.h"

#include "download/FileDownloaderHTTP.h"
#include "download/ThreadFileDownloader.h"
#include "simulator/server/FirmwareServer.h"
#include "update/UpdateChoices.h"
#include "update/UpdatePaths.h"

#include <QTemporaryDir>

#include <functional>

/// A clock that can speed up waits that are known to end in a timeout: after hurry(), each sleep takes only a
/// few milliseconds but counts in full. Before that it uses running time, so that a busy or paused machine
/// cannot make a healthy server look slow.
class HurryingClock : public Clock
{
public:
    qint64 nowMs() const override { return m_real.elapsed() + m_skipped; }
    bool sleepMs(int milliseconds) override;
    bool isShuttingDown() const override { return m_isShuttingDown; }
    void hurry() { m_isHurried = true; }
    void shutDown() { m_isShuttingDown = true; }

    /// Called at the end of each sleep.
    std::function<void()> onSleep;

private:
    RunningTimer m_real;
    qint64 m_skipped = 0;
    bool m_isHurried = false;
    bool m_isShuttingDown = false;
};

/// A fetch as in the workflow, with the real downloaders but without a window, followed by the MD5 check.
class FaultyFetch
{
public:
    explicit FaultyFetch(const QStringList &faults);

    /// Runs the fetch. The clock is sped up only if an outcome with a time limit is correct; if waiting
    /// without a limit is correct, the fetch is ended by shutting down.
    Outcome run(unsigned right);
    /// Returns the log, which explains the outcome of a failed test.
    QString story() const { return m_reporter.logLines().join(QLatin1Char('\n')); }
    /// Returns the longest time between two log lines of the run before its segments start, in ms.
    qint64 longestWait() const { return m_longestWait; }

private:
    void watch(unsigned right);
    Outcome outcomeOf(const QString &path, const QJsonObject &manifest);
    QByteArray image() const;

    QTemporaryDir m_root;
    QTemporaryDir m_folder;
    FirmwareServer m_server{m_root.path()};
    HurryingClock m_clock;
    RecordingReporter m_reporter;
    UpdateChoices m_choices;
    OwnSession m_session;
    UpdatePaths m_paths;
    FileDownloaderHTTP m_downloader{nullptr, &m_reporter};
    ThreadFileDownloader m_segmentWorker{m_clock};
    int m_roundsWithSegments = 0;
    int m_lines = 0;
    qint64 m_lastStep = 0;
    qint64 m_longestWait = 0;
};
