#include "harness/installed/KernelRun.h"

#include "harness/BuildPaths.h"
#include "harness/process/Polling.h"
#include "harness/session/ModelOnBus.h"
#include "simulator/files/WholeFile.h"

#include <QFile>
#include <QJsonArray>

namespace {

/// Report id 4, the command, and zeros up to 513 bytes.
QByteArray expectedReport()
{
    QByteArray report = QByteArray::fromHex("04") + "CRT" + QByteArray(2, '\0') + "APPNEW";
    return report.leftJustified(513, '\0');
}

} // namespace

KernelRun::KernelRun(const KernelCases::Place &place, QList<QJsonObject> devices)
    : m_place(place),
      m_devices(std::move(devices))
{
}

QString KernelRun::startBus()
{
    const QString description = inStage("bus.json");
    if (!WholeFile::write(description, ModelOnBus::describe(m_devices)))
        return QStringLiteral("cannot write ") + description;
    return bus.startController(
               {BuildPaths::gadgetBusController(), QStringLiteral("--description"), description})
               ? QString()
               : bus.errorText();
}

QString KernelRun::start(const QStringList &command)
{
    QProcessEnvironment environment;
    environment.insert(QStringLiteral("PATH"), QStringLiteral("/usr/sbin:/usr/bin:/sbin:/bin"));
    environment.insert(QStringLiteral("HOME"), m_place.home);
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("en_US.UTF-8"));
    environment.insert(QStringLiteral("DISPLAY"), m_display.display());
    environment.insert(QStringLiteral("QT_PLUGIN_PATH"), inStage("plugins"));
    environment.insert(QStringLiteral("QT_QPA_GENERIC_PLUGINS"), QStringLiteral("quillprobe"));
    environment.insert(QStringLiteral("QUILLMARSH_PROBE_PORT_FILE"), inStage("probe-port"));
    QFile::remove(inStage("probe-port"));
    const QStringList asUser{QStringLiteral("--reuid=") + m_place.user,
                             QStringLiteral("--regid=") + m_place.user, QStringLiteral("--init-groups")};
    return bus.run({QStringLiteral("/usr/bin/setpriv"), asUser + command, m_place.stage, environment,
                    inStage("stdout"), inStage("stderr")})
               ? QString()
               : bus.errorText();
}

QString KernelRun::startWindow()
{
    if (!m_display.start())
        return m_display.errorText();
    if (const QString problem = start({QStringLiteral("/usr/bin/quillmarsh")}); !problem.isEmpty())
        return problem;
    probe.setAnswerLimit(limitMs);
    if (!probe.connectThrough(inStage("probe-port"), limitMs))
        return probe.errorText() + QString::fromUtf8(WholeFile::read(inStage("stderr")));
    return {};
}

QString KernelRun::startCli(const QStringList &arguments)
{
    return start(QStringList{QStringLiteral("/usr/bin/quillmarsh-cli")} + arguments);
}

QString KernelRun::pressStart(const QString &model)
{
    const QString button = QStringLiteral("startButton");
    return probe.waitForText(QStringLiteral("deviceModelLabel"), model, limitMs) &&
                   probe.waitForEnabled(button, true, limitMs) && probe.click(button) &&
                   probe.waitForEnabled(button, false, limitMs)
               ? QString()
               : probe.errorText();
}

QString KernelRun::waitForTitle(const QString &title)
{
    if (!probe.waitForEnabled(QStringLiteral("startButton"), true, limitMs))
        return probe.errorText();
    const QString seen = probe.text(QStringLiteral("stateTitleLabel"));
    return seen == title ? QString() : QStringLiteral("the title is ") + seen;
}

QString KernelRun::waitForExitCode(int code)
{
    const std::optional<int> seen = bus.waitForExit(limitMs);
    if (seen == code)
        return {};
    return (seen ? QStringLiteral("the exit code is %1").arg(*seen) : QStringLiteral("it did not end")) +
           QLatin1Char('\n') + QString::fromUtf8(WholeFile::read(inStage("stdout")));
}

QString KernelRun::checkUpdated(const QString &model)
{
    if (!bus.waitForDevice(model, QStringLiteral("application"), limitMs))
        return bus.errorText();
    const QJsonArray reports = bus.device(model).value(QLatin1String("reports")).toArray();
    if (reports != QJsonArray{QString::fromLatin1(expectedReport().toHex())})
        return QStringLiteral("the device was sent %1 reports, and not the right one alone")
            .arg(reports.size());
    const QString burned = inStage("burned.img");
    QFile::remove(burned);
    const QByteArray image = WholeFile::read(inStage("image"));
    if (!bus.saveImage(model, burned) || image.isEmpty() || WholeFile::read(burned) != image)
        return QStringLiteral("the device has not received the server's image");
    return {};
}

QString KernelRun::closeWindow()
{
    return probe.close(QStringLiteral("BackgroundWidget")) && bus.waitForExit(limitMs) == 0
               ? QString()
               : QStringLiteral("the window's close did not end the program with 0");
}
