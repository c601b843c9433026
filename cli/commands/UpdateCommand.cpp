#include "cli/commands/UpdateCommand.h"

#include "checks/DeviceSearch.h"
#include "checks/Texts.h"
#include "cli/commands/CommandContext.h"
#include "cli/commands/DeviceWait.h"
#include "cli/commands/UpdateRun.h"
#include "cli/interruption/ForcedExit.h"
#include "cli/interruption/Interruption.h"
#include "cli/interruption/SystemSignals.h"
#include "cli/output/CliReporter.h"
#include "cli/output/Output.h"
#include "cli/output/Terminal.h"
#include "devices/ControlledDeviceList.h"
#include "support/process/ShutdownFlag.h"
#include "update/ProgramPaths.h"

namespace {

constexpr int questionIntervalMs = 50;

/// The command's state between its updates.
class UpdateCommand
{
public:
    explicit UpdateCommand(CommandContext &context)
        : m_context(context),
          m_reporter(context.sink, context.options.logFile),
          m_lock(ProgramPaths::updateLock()),
          m_session(m_lock),
          m_interruption(m_session, context.sink),
          m_signals([this] { m_interruption.request(); })
    {
    }

    ExitCode run()
    {
        if (m_context.folder().isEmpty())
            return endWithoutUpdate(UpdateReason::FolderUnusable, m_context.options.model).exitCode;
        if (m_context.options.repeat)
            return runRepeatedly();
        const qint64 limitMs = qint64{1000} * m_context.options.waitSeconds;
        if (limitMs > 0)
            m_context.sink.message(Texts::pick("Waiting for a device.", "正在等待设备。"));
        prepareForcedExit();
        return update(DeviceWait(m_context).wait(limitMs)).exitCode;
    }

private:
    ExitCode runRepeatedly();
    UpdateSummary update(const DeviceWait::Result &waited);
    void prepareForcedExit();
    void showResult(const UpdateSummary &summary);
    UpdateSummary endWithoutUpdate(UpdateReason reason, const QString &model);
    void showDevice(const MonitorOutcome &found);
    UpdateReason explain(DeviceWait::End end);
    bool confirmWriting(const MonitorOutcome &found) const;
    QString writeType() const;

    CommandContext &m_context;
    CliReporter m_reporter;
    UpdateLock m_lock;
    UpdateSession m_session;
    Interruption m_interruption;
    SystemSignals m_signals;
};

/// Updates the device that was found, or ends the attempt if none was.
UpdateSummary UpdateCommand::update(const DeviceWait::Result &waited)
{
    prepareForcedExit();
    const QString model =
        waited.found.device.name.isEmpty() ? m_context.options.model : waited.found.device.name;
    if (waited.end != DeviceWait::End::Found)
        return endWithoutUpdate(explain(waited.end), model);
    showDevice(waited.found);
    if (!confirmWriting(waited.found))
        return endWithoutUpdate(UpdateReason::ProgramClosed, model);
    UpdateSummary summary = UpdateRun(m_context, m_session, m_reporter).run({waited.found, writeType()});
    showResult(summary);
    return summary;
}

/// Makes a forced exit show the result of an update that was interrupted but does not end.
void UpdateCommand::prepareForcedExit()
{
    ForcedExit::setFinalStep([this] {
        UpdateSummary summary;
        const UpdateStage stage = m_session.isRunning() ? m_session.stage() : m_session.lastResult().stage;
        summary.result = {UpdateResult::Outcome::Cancelled, stage, UpdateReason::ProgramClosed};
        summary.exitCode = exitCodeOf(summary.result);
        summary.model = m_context.options.model;
        m_context.sink.result(summary);
        return m_context.finalStep(summary.exitCode)();
    });
}

void UpdateCommand::showResult(const UpdateSummary &summary)
{
    ForcedExit::setFinalStep(m_context.finalStep(summary.exitCode));
    m_context.sink.result(summary);
}

/// Shows the device that will be updated, as the command "list" does.
void UpdateCommand::showDevice(const MonitorOutcome &found)
{
    DeviceSearch search(m_context.usb(), m_context.tools.controlList);
    for (const DeviceInfo &device : search.find()) {
        const bool isBootloader = device.state == DeviceInfo::State::InBootloader;
        const bool hasIds =
            device.vendorId == found.device.vendorId && device.productId == found.device.productId;
        if (found.bootloaderPresent ? isBootloader : hasIds) {
            m_context.sink.device(device);
            return;
        }
    }
}

/// Shows and returns the result of an attempt that ends before an update has begun.
UpdateSummary UpdateCommand::endWithoutUpdate(UpdateReason reason, const QString &model)
{
    UpdateSummary summary;
    summary.result = {outcomeOf(reason), UpdateStage::Idle, reason};
    summary.exitCode = exitCodeOf(summary.result);
    summary.model = model;
    showResult(summary);
    return summary;
}

/// Tells the user why no update can begin, where the reason alone does not say it, and returns the reason.
UpdateReason UpdateCommand::explain(DeviceWait::End end)
{
    switch (end) {
    case DeviceWait::End::ModelNeeded:
        m_context.sink.message(Texts::pick("A device waits in its bootloader: name its model with --model.",
                                           "设备停留在 bootloader:请用 --model 指定型号。"));
        return UpdateReason::NoModelChosen;
    case DeviceWait::End::SeveralBootloaders:
        m_context.sink.message(
            Texts::pick("More than one device waits in its bootloader: leave one connected.",
                        "有多个设备停留在 bootloader:请只连接一个。"));
        return UpdateReason::NoDevice;
    case DeviceWait::End::NoAccess:
        return UpdateReason::NoAccess;
    case DeviceWait::End::Interrupted:
        return UpdateReason::ProgramClosed;
    case DeviceWait::End::Found:
    case DeviceWait::End::TimedOut:
        break;
    }
    return UpdateReason::NoDevice;
}

/// Asks the user for permission if there is a terminal and --yes is not set. Returns whether to go on.
bool UpdateCommand::confirmWriting(const MonitorOutcome &found) const
{
    if (m_context.options.yes || m_context.options.json || !Terminal::canAsk())
        return true;
    const QString model = found.bootloaderPresent ? m_context.options.model : found.device.name;
    const QString question = Texts::pick("Update %1? [y/N] ", "升级 %1?[y/N] ").arg(model);
    Output::write(question.toUtf8());
    QByteArray answer;
    while (!answer.contains('\n')) {
        const std::optional<QByteArray> typed = Terminal::readTyped();
        if (!typed)
            return false;
        answer += *typed;
        if (typed->isEmpty() && !CommandContext::waitMs(questionIntervalMs))
            return false;
    }
    answer = answer.trimmed();
    return answer == "y" || answer == "Y" || answer == "yes";
}

QString UpdateCommand::writeType() const
{
    if (!m_context.options.writeType.isEmpty())
        return m_context.options.writeType;
    WriteType offered;
    ControlledDeviceList::readWriteType(m_context.tools.controlList, offered);
    return ControlledDeviceList::writeTypeItems(offered).value(0);
}

ExitCode UpdateCommand::runRepeatedly()
{
    using End = DeviceWait::End;
    int updated = 0;
    int failed = 0;
    ExitCode exitCode = ExitCode::Done;
    const qint64 limitMs =
        m_context.options.waitSeconds > 0 ? qint64{1000} * m_context.options.waitSeconds : -1;
    prepareForcedExit();
    for (;;) {
        m_context.sink.message(Texts::pick("Connect the next device.", "请连接下一个设备。"));
        const DeviceWait::Result waited = DeviceWait(m_context).wait(limitMs);
        const bool isOver = waited.end == End::TimedOut || waited.end == End::Interrupted;
        // Waiting in vain after the last device is not a failed update.
        if (isOver && updated + failed > 0)
            break;
        const UpdateSummary summary = update(waited);
        if (isOver || summary.exitCode == ExitCode::Interrupted)
            exitCode = summary.exitCode;
        else
            (summary.exitCode == ExitCode::Done ? updated : failed) += 1;
        if (isOver || ShutdownFlag::instance().isRaised())
            break;
        m_context.sink.message(Texts::pick("Disconnect the device.", "请断开设备。"));
        const bool restarts = summary.exitCode == ExitCode::Done && !m_context.options.noReset;
        if (!DeviceWait(m_context).waitForDisconnection(restarts))
            break;
    }
    m_context.sink.message(
        Texts::pick("%1 updated, %2 failed.", "已升级 %1 台,失败 %2 台。").arg(updated).arg(failed));
    return failed > 0 ? ExitCode::UpdateFailed : exitCode;
}

} // namespace

ExitCode runUpdateCommand(CommandContext &context)
{
    return UpdateCommand(context).run();
}
