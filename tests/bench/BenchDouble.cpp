// Plays the processes that the bench starts: a bus controller and a firmware server reduced to
// their protocol, and processes that misbehave.
#include "simulator/bench/ChildProcess.h"
#include "simulator/lifetime/EndOnRequest.h"

#include <QCoreApplication>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTcpServer>
#include <QTcpSocket>
#include <QThread>
#include <QTimer>

#include <csignal>
#include <cstdio>

namespace {

void printLine(const QByteArray &line)
{
    std::printf("%s\n", line.constData());
    std::fflush(stdout);
}

/// One device, "panel"; plugging and unplugging change its state.
class Controller
{
public:
    QJsonObject answer(const QJsonObject &request)
    {
        const QString operation = request.value(QLatin1String("op")).toString();
        if (operation == QLatin1String("state"))
            return state();
        if (operation == QLatin1String("plug"))
            m_device = QStringLiteral("application");
        else if (operation == QLatin1String("unplug"))
            m_device = QStringLiteral("absent");
        else if (operation == QLatin1String("saveImage"))
            return saveImage(request.value(QLatin1String("path")).toString());
        else if (operation == QLatin1String("quit"))
            QTimer::singleShot(0, qApp, &QCoreApplication::quit);
        else
            return {{QLatin1String("ok"), false}, {QLatin1String("error"), QLatin1String("unknown")}};
        return {{QLatin1String("ok"), true}};
    }

private:
    QJsonObject state() const
    {
        const QJsonObject device{{QLatin1String("key"), QLatin1String("panel")},
                                 {QLatin1String("state"), m_device}};
        return {{QLatin1String("ok"), true}, {QLatin1String("devices"), QJsonArray{device}}};
    }

    static QJsonObject saveImage(const QString &path)
    {
        QFile file(path);
        return {{QLatin1String("ok"), file.open(QIODevice::WriteOnly) && file.write("burned") == 6}};
    }

    QString m_device = QStringLiteral("application");
};

int controller()
{
    const EndOnRequest end;
    Controller bus;
    QTcpServer server;
    server.listen(QHostAddress::LocalHost);
    QObject::connect(&server, &QTcpServer::newConnection, &server, [&] {
        QTcpSocket *connection = server.nextPendingConnection();
        QObject::connect(connection, &QTcpSocket::readyRead, connection, [&bus, connection] {
            while (connection->canReadLine()) {
                const QJsonObject request = QJsonDocument::fromJson(connection->readLine()).object();
                connection->write(QJsonDocument(bus.answer(request)).toJson(QJsonDocument::Compact) + '\n');
                connection->flush();
            }
        });
    });
    printLine("{\"port\":" + QByteArray::number(server.serverPort()) + '}');
    return QCoreApplication::exec();
}

/// Holds a port for a while; another exit code when it is taken.
int hold(quint16 port, unsigned long milliseconds)
{
    QTcpServer server;
    if (!server.listen(QHostAddress::LocalHost, port))
        return 9;
    printLine("{\"port\":" + QByteArray::number(server.serverPort()) + '}');
    QThread::msleep(milliseconds);
    return 0;
}

/// Starts a helper, names it, and waits to be killed.
int parent()
{
    ChildProcess child;
    child.start({QStringLiteral("sleep"), QStringLiteral("60")});
    printLine(QByteArray::number(child.processId()));
    QThread::sleep(60);
    return 0;
}

/// Minds neither the end of its input nor being asked to end, and has a child that does not, too.
int stubborn()
{
    std::signal(SIGTERM, SIG_IGN);
    QProcess child;
    child.start(QStringLiteral("sleep"), {QStringLiteral("60")});
    child.waitForStarted();
    printLine(QByteArray::number(child.processId()));
    QThread::sleep(60);
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QString role = arguments.value(1);
    if (role == QLatin1String("controller"))
        return controller();
    if (role == QLatin1String("hold"))
        return hold(arguments.value(2).toUShort(), arguments.value(3).toULong());
    if (role == QLatin1String("parent"))
        return parent();
    if (role == QLatin1String("stubborn"))
        return stubborn();
    if (role == QLatin1String("mute"))
        QThread::sleep(60);
    std::fputs("bench double: giving up\n", stderr);
    return 3;
}
