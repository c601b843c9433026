#include "simulator/bus/BusController.h"

#include "simulator/jsonlines/JsonLine.h"
#include "simulator/report/ReportedBus.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>

#include <cstdio>

namespace {

std::optional<BusDescription> readReport(const QString &path)
{
    QString problem;
    const std::optional<ReportedBus> reported = ReportedBus::read(path, &problem);
    if (reported)
        return reported->bus;
    BusController::fail(problem);
    return std::nullopt;
}

} // namespace

int BusController::fail(const QString &text)
{
    fprintf(stderr, "bus controller: %s\n", text.toUtf8().constData());
    return 2;
}

std::optional<BusDescription> BusController::readDescription()
{
    QCommandLineParser parser;
    parser.addHelpOption();
    const QCommandLineOption descriptionOption(
        QStringLiteral("description"), QStringLiteral("The bus description."), QStringLiteral("file"));
    const QCommandLineOption reportOption(QStringLiteral("report"),
                                          QStringLiteral("A report of the program's; its bus is shown."),
                                          QStringLiteral("file"));
    parser.addOptions({descriptionOption, reportOption});
    parser.process(*QCoreApplication::instance());
    if (parser.isSet(reportOption))
        return readReport(parser.value(reportOption));

    QFile file(parser.value(descriptionOption));
    if (!file.open(QIODevice::ReadOnly)) {
        fail(QStringLiteral("cannot read the description: ") + file.errorString());
        return std::nullopt;
    }
    QString problem;
    std::optional<BusDescription> description = BusDescription::parse(file.readAll(), &problem);
    if (!description)
        fail(problem);
    return description;
}

int BusController::serve(const BusDescription &description, BusPresenter &presenter, QJsonObject environment,
                         BusServer::FurtherOperations further)
{
    SimulatedBus bus(description, presenter);
    if (!bus.error().isEmpty())
        return fail(bus.error());
    BusServer server(bus, [] { QCoreApplication::exit(0); });
    server.setFurtherOperations(std::move(further));
    const quint16 port = server.listen();
    if (port == 0)
        return fail(QStringLiteral("no port to listen on"));

    environment.insert(QStringLiteral("QUILLMARSH_SIM_BUS"), QStringLiteral("127.0.0.1:%1").arg(port));
    const QJsonObject ready{{QStringLiteral("port"), port}, {QStringLiteral("environment"), environment}};
    fputs(JsonLine::write(ready).constData(), stdout);
    fflush(stdout);
    return QCoreApplication::exec();
}
