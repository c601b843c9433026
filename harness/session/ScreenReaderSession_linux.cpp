#include "harness/session/ScreenReaderSession.h"

#include "harness/process/Polling.h"

#include <QFile>
#include <QJsonDocument>

ScreenReaderSession::~ScreenReaderSession()
{
    m_reader.killAll();
    m_reader.kill();
    waitForEnd(m_reader);
    m_windowManager.end(0);
    m_launcher.end(0);
    m_bus.end(0);
}

bool ScreenReaderSession::start(const QString &display)
{
    m_environment = QProcessEnvironment::systemEnvironment();
    m_environment.insert(QStringLiteral("DISPLAY"), display);
    m_environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), m_folder.path());
    m_environment.insert(QStringLiteral("HOME"), m_folder.path());
    m_environment.insert(QStringLiteral("GSETTINGS_BACKEND"), QStringLiteral("memory"));
    m_environment.remove(QStringLiteral("AT_SPI_BUS_ADDRESS"));
    if (!m_bus.start({QStringLiteral("dbus-daemon"), QStringLiteral("--session"), QStringLiteral("--nofork"),
                      QStringLiteral("--print-address")},
                     m_environment))
        return fail(m_bus.errorText());
    const QByteArray address = m_bus.waitForFirstLine().trimmed();
    m_environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), QString::fromLatin1(address));
    if (address.isEmpty() ||
        !m_launcher.start(
            {QStringLiteral("/usr/libexec/at-spi-bus-launcher"), QStringLiteral("--launch-immediately")},
            m_environment) ||
        !m_windowManager.start({QStringLiteral("openbox"), QStringLiteral("--sm-disable")}, m_environment))
        return fail(m_bus.errorText() + m_launcher.errorText() + m_windowManager.errorText());

    m_reader.setProcessEnvironment(m_environment);
    m_reader.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    if (!m_reader.startAndWait(QStringLiteral("/usr/bin/python3"),
                               {QStringLiteral("-Wignore"), QStringLiteral(QUILLMARSH_SCREEN_READER)},
                               eventLimitMs))
        return fail(m_reader.errorString());
    return !ask({{QStringLiteral("op"), QStringLiteral("listen")}}).isEmpty();
}

void ScreenReaderSession::addTo(
    const std::function<void(const QString &name, const QString &value)> &setVariable) const
{
    const QString bus = QStringLiteral("DBUS_SESSION_BUS_ADDRESS");
    setVariable(bus, m_environment.value(bus));
    setVariable(QStringLiteral("QT_LINUX_ACCESSIBILITY_ALWAYS_ON"), QStringLiteral("1"));
}

QJsonArray ScreenReaderSession::objects(const QString &name)
{
    return ask({{QStringLiteral("op"), QStringLiteral("objects")}, {QStringLiteral("program"), name}})
        .value(QLatin1String("objects"))
        .toArray();
}

QJsonArray ScreenReaderSession::heard()
{
    return ask({{QStringLiteral("op"), QStringLiteral("heard")}}).value(QLatin1String("heard")).toArray();
}

bool ScreenReaderSession::press(const QStringList &keys)
{
    BoundProcess keyboard;
    keyboard.setProcessEnvironment(m_environment);
    if (!keyboard.startAndWait(
            QStringLiteral("xdotool"),
            QStringList{QStringLiteral("key"), QStringLiteral("--delay"), QStringLiteral("40")} + keys,
            eventLimitMs) ||
        !waitForEnd(keyboard) || keyboard.exitCode() != 0)
        return fail(QStringLiteral("xdotool: ") + QString::fromUtf8(keyboard.readAllStandardError()));
    return true;
}

QJsonObject ScreenReaderSession::ask(const QJsonObject &question)
{
    m_reader.write(QJsonDocument(question).toJson(QJsonDocument::Compact) + '\n');
    const bool answered = pollUntil([&] {
        m_reader.waitForReadyRead(10);
        return m_reader.canReadLine() || !m_reader.isRunning();
    });
    const QJsonObject answer = QJsonDocument::fromJson(m_reader.readLine()).object();
    if (!answered || answer.isEmpty())
        fail(QStringLiteral("the reader did not answer"));
    return answer;
}

bool ScreenReaderSession::fail(const QString &what)
{
    m_error = what;
    return false;
}
