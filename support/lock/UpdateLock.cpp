#include "support/lock/UpdateLock.h"

#include "support/lock/SystemLock.h"
#include "support/log/Reporter.h"

#include <mutex>
#include <utility>

struct UpdateLock::Shared
{
    explicit Shared(const QString &lockFile) : file(lockFile) {}

    const QString file;
    /// Guards the members below. It is held during the whole of taking and releasing, so that taking the lock
    /// never fails because of this copy's own last Hold.
    std::mutex mutex;
    int shares = 0;
    std::unique_ptr<SystemLock> lock;
    bool scopeReported = false;
};

class UpdateLock::Share
{
public:
    /// The caller must hold the mutex.
    explicit Share(const std::shared_ptr<Shared> &shared) : m_shared(shared) { ++m_shared->shares; }
    ~Share()
    {
        const std::lock_guard<std::mutex> guard(m_shared->mutex);
        if (--m_shared->shares == 0)
            m_shared->lock.reset();
    }
    Q_DISABLE_COPY(Share)

private:
    const std::shared_ptr<Shared> m_shared;
};

UpdateLock::UpdateLock(const QString &file) : m_shared(std::make_shared<Shared>(file)) {}

UpdateLock::Hold UpdateLock::take(Reporter &reporter)
{
    const Taken taken = tryTake();
    if (!taken.hold)
        reporter.log(QStringLiteral("Another copy of this program is updating a device. "
                                    "Start again when it has finished."));
    else if (taken.reportScope)
        reporter.log(QStringLiteral("Only your own copies of this program are kept from updating meanwhile, "
                                    "not those of other users."));
    return taken.hold;
}

UpdateLock::Taken UpdateLock::tryTake()
{
    const std::lock_guard<std::mutex> guard(m_shared->mutex);
    if (m_shared->shares > 0)
        return {std::make_shared<Share>(m_shared), false};
    SystemLockAttempt attempt = trySystemLock(m_shared->file);
    if (attempt.isTakenElsewhere)
        return {};
    m_shared->lock = std::move(attempt.lock);
    const bool isForThisUserOnly = m_shared->lock && m_shared->lock->isForThisUserOnly();
    const bool reportScope = isForThisUserOnly && !std::exchange(m_shared->scopeReported, true);
    return {std::make_shared<Share>(m_shared), reportScope};
}

bool UpdateLock::isTakenElsewhere() const
{
    const std::lock_guard<std::mutex> guard(m_shared->mutex);
    return m_shared->shares == 0 && isSystemLockTaken(m_shared->file);
}
