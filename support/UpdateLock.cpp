#include "support/UpdateLock.h"

#include "support/Reporter.h"

#include <QLockFile>

UpdateLock::Hold UpdateLock::take(Reporter &reporter)
{
    Hold hold = tryTake();
    if (!hold)
        reporter.log(QStringLiteral("Another copy of this program is updating a device. "
                                    "Start again when it has finished."));
    return hold;
}

bool UpdateLock::isTakenElsewhere()
{
    return !tryTake();
}

UpdateLock::Hold UpdateLock::tryTake()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (Hold held = m_held.lock())
        return held;
    auto file = std::make_shared<QLockFile>(m_file);
    // Stale only when the copy that took it is gone, however long an update takes.
    file->setStaleLockTime(0);
    if (!file->tryLock() && file->error() == QLockFile::LockFailedError)
        return nullptr;
    m_held = file;
    return file;
}
