// Plays the processes that the bench starts: a bus controller and a firmware server reduced to
// their protocol, and processes that misbehave.
#include "simulator/bench/ChildProcess.h"

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
#include <unistd.h>

namespace {

void printLine(const QByteArray &line)
{
    std::printf("%s\n", line.constData());
    std::fflush(stdout);
}

void quitAtEndOfInput()
{
    auto *watcher = QThread::create([] {
        char byte = 0;
        while (::read(STDIN_FILENO, &byte, 1) > 0) {
        }
        QMetaObject::invokeMethod(
            qApp, [] { QCoreApplication::quit(); }, Qt::QueuedConnection);
    });
    watcher->start();
}

/// One device, "panel"; plugging and unplugging change its state, and one program runs.
class Controller
{
public:
    QJsonObject answer(const QJsonObject &request)
    {
        const QString operation = request.value(QLatin1String("op")).toString();
        if (operation == QLatin1String("run"))
            return run(request);
        if (operation == QLatin1String("state"))
            return state();
        if (operation == QLatin1String("plug"))
            m_device = QStringLiteral("application");
        else if (operation == QLatin1String("unplug"))
            m_device = QStringLiteral("absent");
        else if (operation == QLatin1String("saveImage"))
            return saveImage(request.value(QLatin1String("path")).toString());
        else if (operation == QLatin1String("kill"))
            m_program.kill();
        else if (operation == QLatin1String("quit"))
            QTimer::singleShot(0, qApp, &QCoreApplication::quit);
        else
            return {{QLatin1String("ok"), false}, {QLatin1String("error"), QLatin1String("unknown")}};
        return {{QLatin1String("ok"), true}};
    }

private:
    QJsonObject run(const QJsonObject &request)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        const QJsonObject variables = request.value(QLatin1String("environment")).toObject();
        for (auto variable = variables.begin(); variable != variables.end(); ++variable) {
            if (variable.value().isNull())
                environment.remove(variable.key());
            else
                environment.insert(variable.key(), variable.value().toString());
        }
        m_program.setProcessEnvironment(environment);
        m_program.setWorkingDirectory(request.value(QLatin1String("workingDirectory")).toString());
        m_program.setStandardOutputFile(request.value(QLatin1String("stdout")).toString());
        m_program.setStandardErrorFile(request.value(QLatin1String("stderr")).toString());
        QStringList arguments;
        const QJsonArray given = request.value(QLatin1String("arguments")).toArray();
        for (const QJsonValue &argument : given)
            arguments << argument.toString();
        m_program.start(request.value(QLatin1String("program")).toString(), arguments);
        return {{QLatin1String("ok"), m_program.waitForStarted()},
                {QLatin1String("error"), m_program.errorString()}};
    }

    QJsonObject state() const
    {
        const bool running = m_program.state() != QProcess::NotRunning;
        const bool signalled = !running && m_program.exitStatus() == QProcess::CrashExit;
        const QJsonObject device{{QLatin1String("key"), QLatin1String("panel")},
                                 {QLatin1String("state"), m_device}};
        const QJsonObject program{
            {QLatin1String("running"), running},
            {QLatin1String("exitCode"), running || signalled ? QJsonValue() : m_program.exitCode()},
            {QLatin1String("signalled"), signalled}};
        return {{QLatin1String("ok"), true},
                {QLatin1String("devices"), QJsonArray{device}},
                {QLatin1String("program"), program}};
    }

    static QJsonObject saveImage(const QString &path)
    {
        QFile file(path);
        return {{QLatin1String("ok"), file.open(QIODevice::WriteOnly) && file.write("burned") == 6}};
    }

    QProcess m_program;
    QString m_device = QStringLiteral("application");
};

int controller()
{
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
    quitAtEndOfInput();
    const int code = QCoreApplication::exec();
    std::_Exit(code); // The watcher of the input may still be reading.
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
