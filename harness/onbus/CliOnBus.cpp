#include "harness/CliScenario.h"
#include "harness/stage/TargetSystem.h"
#include "simulator/files/WholeFile.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTextStream>

namespace {

/// The exit code for a program that did not end by itself.
constexpr int noExitCode = 125;

/// Runs the program and writes the image that the device received to a file. Returns the exit code of the
/// program.
int run(const QString &program, const QString &model, const QString &burned, const QStringList &arguments)
{
    CliScenario scenario(model, makeNativeSystem(program));
    // The script provides the firmware server.
    scenario.withServer = false;
    const std::optional<int> exitCode = scenario.run(arguments);
    QTextStream(stdout) << scenario.program.standardOutput();
    QTextStream(stderr) << scenario.program.standardError() << scenario.errorText();
    if (!WholeFile::write(burned, scenario.burned())) {
        QTextStream(stderr) << "cannot write " << burned << '\n';
        return noExitCode;
    }
    return exitCode.value_or(noExitCode);
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const auto option = [](const char *name, const char *description) {
        return QCommandLineOption(QLatin1String(name), QLatin1String(description), QStringLiteral("value"));
    };
    const auto program = option("program", "The quillmarsh-cli to run.");
    const auto model = option("model", "The model of the simulated device.");
    const auto burned = option("burned", "Where to write what the device has received; empty if nothing.");
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Runs quillmarsh-cli with a simulated device and ends with its exit code."));
    parser.addOptions({program, model, burned});
    parser.addPositionalArgument(QStringLiteral("ARGUMENT"), QStringLiteral("Arguments of quillmarsh-cli."));
    parser.process(application);
    return run(parser.value(program), parser.value(model), parser.value(burned),
               parser.positionalArguments());
}
