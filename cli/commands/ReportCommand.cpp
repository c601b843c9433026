#include "cli/commands/ReportCommand.h"

#include "checks/Texts.h"
#include "checks/ToolFolders.h"
#include "cli/commands/CommandContext.h"
#include "cli/output/Output.h"
#include "report/ReportMaker.h"
#include "report/ReportText.h"
#include "support/log/LogFile.h"
#include "support/process/ShutdownFlag.h"
#include "update/ProgramPaths.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QFileInfo>

namespace {

/// Returns the newest log that the window program has left in one of the folders from which it is started.
QString newestLog()
{
    QFileInfo newest(LogFile::updateLogPath());
    for (const QString &folder : toolFolders(QCoreApplication::applicationDirPath())) {
        const QFileInfo log(folder + QLatin1Char('/') + LogFile::updateLogPath());
        if (log.exists() && (!newest.exists() || log.lastModified() > newest.lastModified()))
            newest = log;
    }
    return newest.absoluteFilePath();
}

QByteArray makeReport(CommandContext &context)
{
    const UpdateLock lock(ProgramPaths::updateLock());
    const Options &options = context.options;
    const bool isChinese = options.language == Texts::Language::Chinese;
    ReportMaker::Source source{
        context.usb(), context.hid(), lock, context.isUsbReady(), context.tools, {}, {}, {}, {}};
    source.temporaryFolder = ProgramPaths::update().temporaryFolder;
    source.logFile = options.logFile.isEmpty() ? newestLog() : options.logFile;
    source.language = isChinese ? QStringLiteral("zh") : QStringLiteral("en");
    return ReportMaker::make(source);
}

} // namespace

ExitCode runReportCommand(CommandContext &context)
{
    const QByteArray report = makeReport(context);
    if (ShutdownFlag::instance().isRaised())
        return ExitCode::Interrupted;
    if (context.options.reportFile == QLatin1String("-")) {
        Output::write(report);
        return ExitCode::Done;
    }
    const QString path = QFileInfo(context.options.reportFile.isEmpty() ? ReportText::proposedName()
                                                                        : context.options.reportFile)
                             .absoluteFilePath();
    const QString problem = ReportText::save(report, path);
    if (problem.isEmpty())
        context.sink.report(path);
    context.sink.message(ReportText::describeSaving(path, problem));
    return problem.isEmpty() ? ExitCode::Done : ExitCode::NotPrepared;
}
