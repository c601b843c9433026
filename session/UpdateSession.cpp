#include "session/UpdateSession.h"

#include "support/log/Reporter.h"

UpdateStage UpdateSession::stage() const
{
    const std::lock_guard<std::mutex> guard(m_mutex);
    return m_stage;
}

bool UpdateSession::isRunning() const
{
    const std::lock_guard<std::mutex> guard(m_mutex);
    return isRunningLocked();
}

bool UpdateSession::isRunningLocked() const
{
    return m_stage != UpdateStage::Idle && m_stage != UpdateStage::Blocked &&
           m_stage != UpdateStage::ProgramClosed;
}

bool UpdateSession::isWritingDevice() const
{
    const UpdateStage now = stage();
    return now == UpdateStage::Flashing || now == UpdateStage::Programming;
}

QString UpdateSession::image() const
{
    const std::lock_guard<std::mutex> guard(m_mutex);
    return m_image;
}

UpdateResult UpdateSession::lastResult() const
{
    const std::lock_guard<std::mutex> guard(m_mutex);
    return m_lastResult;
}

QMap<UpdateStage, double> UpdateSession::lastSeconds() const
{
    const std::lock_guard<std::mutex> guard(m_mutex);
    return m_lastSeconds;
}

/// Adds the time since the last call to the current stage.
void UpdateSession::noteTimeLocked()
{
    constexpr double millisecondsInASecond = 1000;
    m_seconds[m_stage] += static_cast<double>(m_inStage.restart()) / millisecondsInASecond;
}

bool UpdateSession::begin(UpdateStage stage, Reporter &reporter)
{
    {
        const std::lock_guard<std::mutex> guard(m_mutex);
        if (m_stage != UpdateStage::Idle)
            return false;
        m_hold = m_lock.take(reporter);
        if (!m_hold)
            return false;
        m_stage = stage;
        m_image.clear();
        m_seconds.clear();
        m_inStage.start();
    }
    notifyWatcher(stage);
    return true;
}

void UpdateSession::enter(UpdateStage stage)
{
    {
        const std::lock_guard<std::mutex> guard(m_mutex);
        if (!isRunningLocked() || m_stage == stage)
            return;
        noteTimeLocked();
        m_stage = stage;
    }
    notifyWatcher(stage);
}

void UpdateSession::useImage(const QString &path)
{
    const std::lock_guard<std::mutex> guard(m_mutex);
    if (isRunningLocked())
        m_image = path;
}

void UpdateSession::end(UpdateReason reason, Afterwards afterwards,
                        const std::function<void()> &giveControlsBack)
{
    UpdateStage next = UpdateStage::Idle;
    if (afterwards != Afterwards::Idle)
        next = afterwards == Afterwards::Blocked ? UpdateStage::Blocked : UpdateStage::ProgramClosed;
    {
        const std::lock_guard<std::mutex> guard(m_mutex);
        if (!isRunningLocked())
            return;
        noteTimeLocked();
        m_lastSeconds = m_seconds;
        m_lastResult = {outcomeOf(reason), m_stage, reason};
        m_hold.reset();
        m_image.clear();
        m_stage = next;
    }
    notifyWatcher(next);
    if (next == UpdateStage::Idle && giveControlsBack)
        giveControlsBack();
}

void UpdateSession::notifyWatcher(UpdateStage stage) const
{
    if (m_watcher)
        m_watcher(stage);
}
