#pragma once

#include "simulator/time/RunningTime.h"
#include "tests/faults/FaultRow.h"
#include "tests/support/RecordingReporter.h"
#include "tests/update/OwnSession.h"

#include "download/FileDownloaderHTTP.h"
#include "download/ThreadFileDownloader.h"
#include "simulator/server/FirmwareServer.h"
#include "update/UpdateChoices.h"
#include "update/UpdatePaths.h"

#include <QTemporaryDir>

#include <functional>

/// A clock on which a wait without hope passes quickly: from the time that hurry() is called every
/// sleep takes a few milliseconds and counts in full. Until then its time is running time, so that
/// neither a busy machine nor one that stands still can make a healthy server look slow.
class HurryingClock : public Clock
{
public:
    qint64 nowMs() const override { return m_real.elapsed() + m_skipped; }
    bool sleepMs(int milliseconds) override;
    bool isShuttingDown() const override { return m_isShuttingDown; }
    void hurry() { m_isHurried = true; }
    void leave() { m_isShuttingDown = true; }

    /// Called at the end of each sleep.
    std::function<void()> onSleep;

private:
    RunningTimer m_real;
    qint64 m_skipped = 0;
    bool m_isHurried = false;
    bool m_isShuttingDown = false;
};

/// A fetch as the workflow makes it, with the real downloaders and no window, followed by the check
/// of the sum.
class FaultyFetch
{
public:
    explicit FaultyFetch(const QStringList &faults);

    /// Fetches. Of the outcomes that are right, only those with a limit hurry the clock, and the one
    /// without is ended by leaving.
    Outcome run(unsigned right);
    /// Why the outcome is what it is, for a failed test.
    QString story() const { return m_reporter.logLines().join(QLatin1Char('\n')); }
    /// The longest time that passed between two log lines of the run before its segments, in ms.
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
