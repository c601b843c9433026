#include "session/AwakeWhileWriting.h"

AwakeWhileWriting::AwakeWhileWriting(const QString &reason, quintptr window, const KeepAwake::Log &log)
    : m_reason(reason),
      m_window(window),
      m_log(log)
{
}

void AwakeWhileWriting::onStageChanged(UpdateStage stage)
{
    const std::lock_guard<std::mutex> guard(m_mutex);
    switch (stage) {
    case UpdateStage::Flashing:
    case UpdateStage::Programming:
        if (!m_awake)
            m_awake = std::make_unique<KeepAwake>(m_reason, m_window, m_log);
        break;
    case UpdateStage::Idle:
    case UpdateStage::Blocked:
    case UpdateStage::ProgramClosed:
        m_awake.reset();
        break;
    default:
        break;
    }
}
