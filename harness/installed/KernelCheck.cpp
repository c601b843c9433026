#include "harness/installed/KernelCases.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTextStream>

// Runs inside the virtual machine, as root; see scripts/kernel-check.sh.
int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const auto option = [](const char *name, const char *description) {
        return QCommandLineOption(QLatin1String(name), QLatin1String(description), QStringLiteral("value"));
    };
    const auto stage = option("stage", "A folder of the user's, with the image, the probe and the tools.");
    const auto user = option("user", "The name of the user that the programs run as.");
    const auto home = option("home", "The user's home.");
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Updates devices on the kernel's bus with the installed programs."));
    parser.addOptions({stage, user, home});
    parser.process(application);

    KernelCases cases({parser.value(stage), parser.value(user), parser.value(home)});
    QTextStream out(stdout);
    int failures = 0;
    for (const KernelCases::Case &one : cases.all()) {
        const QString problem = one.play();
        failures += problem.isEmpty() ? 0 : 1;
        out << (problem.isEmpty() ? "ok      " : "FAILED  ") << one.name
            << (problem.isEmpty() ? QString() : QLatin1String(": ") + problem) << '\n';
        out.flush();
    }
    return failures == 0 ? 0 : 1;
}
