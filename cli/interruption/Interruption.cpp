#include "cli/interruption/Interruption.h"

#include "checks/Texts.h"
#include "cli/interruption/ForcedExit.h"
#include "cli/output/EventSink.h"
#include "session/UpdateSession.h"
#include "support/process/ShutdownFlag.h"

namespace {

constexpr qint64 secondRequestMs = 5000;
// The program has to end within two seconds. What this limit leaves is for the end of the process on a busy
// machine.
constexpr int exitLimitMs = 1500;

} // namespace

Interruption::Interruption(const UpdateSession &session, EventSink &sink) : m_session(session), m_sink(sink)
{
}

void Interruption::request()
{
    if (ShutdownFlag::instance().isRaised())
        return;
    if (!m_session.isWritingDevice()) {
        endProgram();
        return;
    }
    if (!m_sinceFirst.isValid() || m_sinceFirst.elapsed() > secondRequestMs) {
        m_sinceFirst.start();
        m_sink.message(
            Texts::pick("The device is being written; the update goes on. Interrupt again within five "
                        "seconds to stop it, which can leave the device unusable.",
                        "设备正在写入,升级将继续。如在五秒内再次中断则会停止写入,设备可能无法使用。"));
        return;
    }
    m_sink.message(
        Texts::pick("The writing was stopped. The device now waits in its bootloader: update it again "
                    "and name its model with --model.",
                    "写入已停止。设备现停留在 bootloader:请用 --model 指定型号重新升级。"));
    endProgram();
}

void Interruption::endProgram()
{
    ForcedExit::schedule(exitLimitMs);
    ShutdownFlag::instance().raise();
}
