#pragma once

#include "session/UpdateStage.h"
#include "support/power/KeepAwake.h"

#include <QString>

#include <memory>
#include <mutex>

/// Keeps the system awake from the first start of a flasher, or of the IAP programmer, to the end of the
/// update. May be used from any thread.
class AwakeWhileWriting
{
public:
    /// `reason`, `window` and `log` are passed to KeepAwake.
    AwakeWhileWriting(const QString &reason, quintptr window, const KeepAwake::Log &log);

    /// Must be called for each new stage of the session.
    void onStageChanged(UpdateStage stage);

private:
    const QString m_reason;
    const quintptr m_window;
    const KeepAwake::Log m_log;
    std::mutex m_mutex;
    std::unique_ptr<KeepAwake> m_awake;
};
