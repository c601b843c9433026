#include "simulator/bus/BusServer.h"
#include "simulator/bus/UmockdevBus_linux.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSocketNotifier>

#include <csignal>
#include <cstdio>
#include <sys/signalfd.h>
#include <unistd.h>

namespace {

int fail(const QString &text)
{
    fprintf(stderr, "quillmarsh-sim-bus: %s\n", text.toUtf8().constData());
    return 2;
}

/// Signals arrive as something to read, so that the program under test and the testbed's folder
/// are cleared away.
int endSignals()
{
    sigset_t set;
    sigemptyset(&set);
    for (const int number : {SIGTERM, SIGINT, SIGHUP})
        sigaddset(&set, number);
    sigprocmask(SIG_BLOCK, &set, nullptr);
    return signalfd(-1, &set, SFD_CLOEXEC | SFD_NONBLOCK);
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addHelpOption();
    const QCommandLineOption descriptionOption(
        QStringLiteral("description"), QStringLiteral("The bus description."), QStringLiteral("file"));
    parser.addOption(descriptionOption);
    parser.process(application);

    QFile file(parser.value(descriptionOption));
    if (!file.open(QIODevice::ReadOnly))
        return fail(QStringLiteral("cannot read the description: ") + file.errorString());
    QString problem;
    const std::optional<BusDescription> description = BusDescription::parse(file.readAll(), &problem);
    if (!description)
        return fail(problem);

    UmockdevBus presenter(description->rootHub);
    if (!presenter.startError().isEmpty())
        return fail(presenter.startError());
    SimulatedBus bus(*description, presenter);
    if (!bus.error().isEmpty())
        return fail(bus.error());
    BusServer server(bus, [] { QCoreApplication::exit(0); });
    const quint16 port = server.listen();
    if (port == 0)
        return fail(QStringLiteral("no port to listen on"));

    const int signalDescriptor = endSignals();
    QSocketNotifier signalled(signalDescriptor, QSocketNotifier::Read);
    QObject::connect(&signalled, &QSocketNotifier::activated, [] { QCoreApplication::exit(0); });
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, [&input] {
        char dropped[4096];
        if (read(STDIN_FILENO, dropped, sizeof dropped) <= 0) {
            input.setEnabled(false);
            QCoreApplication::exit(0);
        }
    });

    // A program that is started with these variables finds itself on this bus.
    QJsonObject environment;
    for (const char *name : {"LD_PRELOAD", "UMOCKDEV_DIR"})
        environment.insert(QLatin1String(name), qEnvironmentVariable(name));
    environment.insert(QStringLiteral("QUILLMARSH_SIM_BUS"), QStringLiteral("127.0.0.1:%1").arg(port));
    const QJsonObject ready{{QStringLiteral("port"), port}, {QStringLiteral("environment"), environment}};
    printf("%s\n", QJsonDocument(ready).toJson(QJsonDocument::Compact).constData());
    fflush(stdout);
    const int code = QCoreApplication::exec();
    close(signalDescriptor);
    return code;
}
