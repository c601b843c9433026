#include "cli/commands/CheckCommand.h"
#include "cli/commands/CommandContext.h"
#include "cli/commands/ListCommand.h"
#include "cli/commands/ManifestCommand.h"
#include "cli/commands/Options.h"
#include "cli/commands/ReportCommand.h"
#include "cli/commands/UpdateCommand.h"
#include "cli/interruption/ForcedExit.h"
#include "cli/interruption/Interruption.h"
#include "cli/interruption/SystemSignals.h"
#include "cli/output/ClosedStreams.h"
#include "cli/output/JsonEvents.h"
#include "cli/output/Output.h"
#include "cli/output/Terminal.h"
#include "cli/output/TextEvents.h"
#include "support/process/LibrarySearch.h"
#include "support/process/ProgramArguments.h"

#include <QCoreApplication>

namespace {

// How long the application object may take for its destruction.
constexpr int endLimitMs = 1000;

std::unique_ptr<EventSink> makeSink(const Options &options)
{
    if (options.json)
        return std::make_unique<JsonEvents>(QCoreApplication::applicationVersion(), &Output::write,
                                            &Output::writeError);
    const int width = Terminal::width();
    const bool colour = width > 0 && qEnvironmentVariableIsEmpty("NO_COLOR");
    return std::make_unique<TextEvents>(TextEvents::Style{width, colour}, &Output::write);
}

ExitCode run(CommandContext &context, const Options &options)
{
    if (options.command == Options::Command::Update)
        return runUpdateCommand(context);
    ForcedExit::setFinalStep([&context] { return context.finalStep(ExitCode::Interrupted)(); });
    const SystemSignals requests(&Interruption::endProgram);
    switch (options.command) {
    case Options::Command::Check:
        return runCheckCommand(context);
    case Options::Command::VerifyManifest:
        return runManifestCommand(context);
    case Options::Command::Report:
        return runReportCommand(context);
    case Options::Command::List:
    case Options::Command::Update:
        break;
    }
    return runListCommand(context);
}

ExitCode run(const Options &options)
{
    const std::unique_ptr<EventSink> sink = makeSink(options);
    CommandContext context(options, *sink);
    const ExitCode exitCode = run(context, options);
    ForcedExit::setFinalStep(context.finalStep(exitCode));
    return exitCode;
}

QStringList withoutProgramName(const ProgramArguments &arguments)
{
    QStringList texts;
    const std::vector<const char *> values = arguments.values();
    for (int i = 1; i < arguments.count(); ++i)
        texts.append(QString::fromUtf8(values[static_cast<std::size_t>(i)]));
    return texts;
}

} // namespace

int main(int argc, char *argv[])
{
    fillClosedStreams();
    LibrarySearch::excludeWorkingFolder();
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("quillmarsh-cli"));
    QCoreApplication::setApplicationVersion(QStringLiteral(QUILLMARSH_VERSION));

    const ParsedCommandLine parsed =
        parseOptions(withoutProgramName(ProgramArguments(argc, argv)), Texts::languageOfSystem(),
                     QCoreApplication::applicationVersion());
    Output::install(parsed.options && parsed.options->verbose);
    int exitCode = parsed.exitCode;
    if (parsed.options) {
        Texts::setLanguage(parsed.options->language);
        exitCode = static_cast<int>(run(*parsed.options));
    } else if (exitCode == 0) {
        Output::write(parsed.text.toUtf8());
    } else {
        Output::writeError(parsed.text.toUtf8());
    }
    Output::flush();
    ForcedExit::setFinalStep([exitCode] { return exitCode; });
    ForcedExit::schedule(endLimitMs);
    return exitCode;
}
