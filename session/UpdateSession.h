#pragma once

#include "session/UpdateResult.h"
#include "session/UpdateStage.h"
#include "support/lock/UpdateLock.h"

#include <QElapsedTimer>
#include <QMap>
#include <QString>

#include <functional>
#include <mutex>

class Reporter;

/// The owner of the state of updates in this copy of the program: whether one is running, its stage, the
/// image that it writes, and whether another may start. The start button, the IAP panel and the question
/// before the window is closed query it and keep no such state themselves.
///
/// May be used from any thread. The callbacks run on the calling thread, outside of the session's mutex.
class UpdateSession
{
public:
    /// `lock` keeps other copies of the program out during an update; it must outlive the session.
    explicit UpdateSession(UpdateLock &lock) : m_lock(lock) {}
    Q_DISABLE_COPY(UpdateSession)

    /// Sets a function that is called with each new stage. Call it before the first update.
    void watchStages(std::function<void(UpdateStage)> watcher) { m_watcher = std::move(watcher); }

    UpdateStage stage() const;
    /// Returns whether an update is running, that is, between begin() and end().
    bool isRunning() const;
    /// Returns whether begin() would succeed if no other copy of the program is updating a device.
    bool isStartAllowed() const { return stage() == UpdateStage::Idle; }
    /// Returns whether a device is being written, so that stopping now could leave it unusable.
    bool isWritingDevice() const;
    /// Returns the path of the image that the running update writes; empty if it is not known yet.
    QString image() const;
    /// Returns the result of the last update.
    UpdateResult lastResult() const;
    /// Returns the seconds that the last update spent in each stage that it reached; empty before the first
    /// has ended.
    QMap<UpdateStage, double> lastSeconds() const;
    UpdateLock &lock() { return m_lock; }

    /// Begins an update in `stage` and takes the lock. Returns false if no start is allowed, and, after
    /// logging a line, if another copy of the program is updating a device.
    bool begin(UpdateStage stage, Reporter &reporter);
    /// Enters the next stage of the running update. Does nothing without one.
    void enter(UpdateStage stage);
    /// Sets the image that the running update writes.
    void useImage(const QString &path);

    /// The stage that follows an update. Only after Idle can another update start.
    enum class Afterwards { Idle, Blocked, ProgramClosed };
    /// Ends the running update: stores the result, releases the lock, changes the stage and, with Idle, calls
    /// `giveControlsBack`, in this order. The stage in the result is the last one entered. Does nothing if no
    /// update is running, so `giveControlsBack` is called at most once for each update.
    void end(UpdateReason reason, Afterwards afterwards, const std::function<void()> &giveControlsBack);

private:
    bool isRunningLocked() const;
    void noteTimeLocked();
    void notifyWatcher(UpdateStage stage) const;

    UpdateLock &m_lock;
    std::function<void(UpdateStage)> m_watcher;
    mutable std::mutex m_mutex;
    UpdateStage m_stage = UpdateStage::Idle;
    UpdateLock::Hold m_hold;
    QString m_image;
    UpdateResult m_lastResult;
    QElapsedTimer m_inStage;
    QMap<UpdateStage, double> m_seconds;
    QMap<UpdateStage, double> m_lastSeconds;
};
