#include "cli/commands/CheckCommand.h"

#include "checks/SystemCheck.h"
#include "cli/commands/CommandContext.h"
#include "support/process/ShutdownFlag.h"
#include "update/ProgramPaths.h"

ExitCode runCheckCommand(CommandContext &context)
{
    const UpdateLock lock(ProgramPaths::updateLock());
    SystemCheck check({context.usb(), lock, context.tools, context.downloadFolder()},
                      [&context](const Finding &finding) { context.sink.finding(finding); });
    const QVector<Finding> findings = check.run(context.options.model);
    if (ShutdownFlag::instance().isRaised())
        return ExitCode::Interrupted;
    return exitCodeOf(findings, ExitCode::NotPrepared);
}
