#include "simulator/bus/BusServer.h"
#include "simulator/bus/UmockdevBus_linux.h"
#include "simulator/lifetime/EndOnRequest.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include <cstdio>

namespace {

int fail(const QString &text)
{
    fprintf(stderr, "quillmarsh-sim-bus: %s\n", text.toUtf8().constData());
    return 2;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const EndOnRequest end;
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

    // A program that is started with these variables finds itself on this bus.
    QJsonObject environment;
    for (const char *name : {"LD_PRELOAD", "UMOCKDEV_DIR"})
        environment.insert(QLatin1String(name), qEnvironmentVariable(name));
    environment.insert(QStringLiteral("QUILLMARSH_SIM_BUS"), QStringLiteral("127.0.0.1:%1").arg(port));
    const QJsonObject ready{{QStringLiteral("port"), port}, {QStringLiteral("environment"), environment}};
    printf("%s\n", QJsonDocument(ready).toJson(QJsonDocument::Compact).constData());
    fflush(stdout);
    return QCoreApplication::exec();
}
