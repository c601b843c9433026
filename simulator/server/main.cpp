// The firmware server as a separate program, for the demo and for end-to-end tests.

#include "simulator/lifetime/EndOnRequest.h"
#include "simulator/server/FirmwareAddress.h"
#include "simulator/server/FirmwareServer.h"
#include "simulator/standin/ByteStreams.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <cstdio>

int main(int argc, char *argv[])
{
    useByteStreams();
    const QCoreApplication application(argc, argv);
    const EndOnRequest end;

    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral(
            "Serves the files in a folder on 127.0.0.1, with faults.\n\n"
            "A fault is NAME[:key=value[,key=value...]]. These keys select the requests: path=PATTERN,\n"
            "range=I (the I-th, from 0, of=N equal parts of the file), whole=1 (only requests without a\n"
            "range), nth=K (from the K-th matching request on) and times=C (only C times). The names, their "
            "other keys and their effects:\n\n") +
        ServerFault::help());
    parser.addHelpOption();
    const QCommandLineOption portOption(QStringLiteral("port"),
                                        QStringLiteral("Port; 0 lets the system choose."),
                                        QStringLiteral("N"), QString::number(FirmwareAddress::port()));
    const QCommandLineOption rootOption(QStringLiteral("root"), QStringLiteral("Folder to serve."),
                                        QStringLiteral("DIR"), QStringLiteral("."));
    const QCommandLineOption faultOption(QStringLiteral("fault"),
                                         QStringLiteral("A fault to switch on; may be repeated."),
                                         QStringLiteral("FAULT"));
    parser.addOptions({portOption, rootOption, faultOption});
    parser.process(application);

    FirmwareServer server(parser.value(rootOption));
    const QStringList faults = parser.values(faultOption);
    for (const QString &fault : faults) {
        QString error;
        if (!server.addFault(fault, &error)) {
            std::fprintf(stderr, "%s\n", qPrintable(error));
            return 2;
        }
    }
    bool isPort = false;
    const quint16 port = parser.value(portOption).toUShort(&isPort);
    if (!isPort || !server.listen(port)) {
        std::fprintf(stderr, "cannot listen on port %s\n", qPrintable(parser.value(portOption)));
        return 1;
    }
    std::printf("{\"port\":%d}\n", int(server.port()));
    std::fflush(stdout);
    return QCoreApplication::exec();
}
