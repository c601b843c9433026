#include "tests/report/ReplayStage.h"

#include "devices/models/ModelTable.h"
#include "harness/BuildPaths.h"
#include "harness/process/Polling.h"
#include "simulator/files/WholeFile.h"

#include <QJsonDocument>
#include <QRegularExpression>

namespace {

constexpr int programLimitMs = 2 * eventLimitMs;

void setControlList(StagedProgram &program, const QByteArray &switchedOn)
{
    if (switchedOn == "?")
        program.setControlList("no list");
    else if (switchedOn != "-")
        program.setControlList(QString::fromUtf8(switchedOn).split(QLatin1Char(' ')),
                               {QStringLiteral("USB")});
}

/// Returns the lines that contain one of the words, without repetitions.
QStringList linesWith(const QStringList &lines, const QStringList &words)
{
    QStringList kept;
    for (const QString &line : lines) {
        for (const QString &word : words) {
            if (line.contains(word) && !kept.contains(line))
                kept.append(line);
        }
    }
    return kept;
}

} // namespace

QByteArray withIds(const QByteArray &description)
{
    QByteArray text = description;
    const ModelTable table;
    for (const ModelRow &row : table.rows())
        text.replace("$" + QByteArray(row.name.data(), row.name.size()),
                     "{\"vendorId\":" + QByteArray::number(row.vendorId) +
                         ",\"productId\":" + QByteArray::number(row.productId) + '}');
    return text;
}

QByteArray busOf(const QString &report)
{
    QJsonObject bus =
        QJsonDocument::fromJson(WholeFile::read(report)).object().value(QLatin1String("bus")).toObject();
    bus.remove(QStringLiteral("otherHid"));
    return bus.isEmpty() ? QByteArray() : QJsonDocument(bus).toJson();
}

ReplayStage::System ReplayStage::nativeSystem()
{
    return {[] { return makeNativeSystem(); }, BuildPaths::commandLineProgram(), false};
}

ReplayStage::ReplayStage(const char *switchedOn, const System &system)
    : m_needsDisplay(system.needsDisplay),
      m_commandLine(system.make(), QString(), system.commandLineProgram),
      m_window(system.make())
{
    for (StagedProgram *program : {&m_commandLine, &m_window})
        setControlList(*program, switchedOn);
    for (const char *name : {"QT_QPA_PLATFORM", "QT_QPA_GENERIC_PLUGINS", "QT_PLUGIN_PATH"})
        m_commandLine.unsetVariable(QLatin1String(name));
}

bool ReplayStage::open(const QString &file, BusFile kind)
{
    if (!m_commandLine.isValid() || !m_window.isValid())
        return fail(QStringLiteral("staging"), m_commandLine.errorText() + m_window.errorText());
    if (m_needsDisplay && !m_display.start(QSize(1280, 900)))
        return fail(QStringLiteral("the display"), m_display.errorText());
    if (m_needsDisplay) {
        m_commandLine.setDisplay(m_display.display());
        m_window.setDisplay(m_display.display());
    }
    return m_bus.startController(m_window.system().busController(file, kind)) ||
           fail(QStringLiteral("the bus"), m_bus.errorText());
}

bool ReplayStage::run(const QStringList &arguments)
{
    if (!m_bus.run(m_commandLine.launch(arguments)))
        return fail(QStringLiteral("quillmarsh-cli"), m_bus.errorText());
    const std::optional<int> exitCode = m_bus.waitForExit(programLimitMs);
    return exitCode == 0 || fail(arguments.join(QLatin1Char(' ')),
                                 QStringLiteral("ended with %1\n").arg(exitCode.value_or(-1)) +
                                     m_commandLine.standardOutput() + m_commandLine.standardError());
}

bool ReplayStage::writeReport(const QString &path)
{
    return run({QStringLiteral("report"), m_commandLine.toProgramPath(path)});
}

Seen ReplayStage::observe()
{
    Seen seen;
    if (run({QStringLiteral("list"), QStringLiteral("--json")})) {
        for (const QString &line : m_commandLine.standardOutput().split(QLatin1Char('\n'))) {
            QJsonObject event = QJsonDocument::fromJson(line.toUtf8()).object();
            event.remove(QStringLiteral("time"));
            if (event.value(QLatin1String("event")) == QLatin1String("device"))
                seen.devices.append(event);
        }
        observeWindow(seen);
    }
    return seen;
}

void ReplayStage::observeWindow(Seen &seen)
{
    if (!m_bus.run(m_window.launch())) {
        fail(QStringLiteral("the window"), m_bus.errorText());
        return;
    }
    m_probe.setAnswerLimit(programLimitMs);
    // A monitor tick lists the devices once or twice, so the third listing belongs to a second tick.
    const auto hasTickedTwice = [this] {
        return m_window.standardError().count(QStringLiteral("Device List Count:")) >= 3;
    };
    if (!m_probe.connectThrough(m_window.probePortFile(), programLimitMs) ||
        !pollUntil(hasTickedTwice, programLimitMs, 50)) {
        fail(QStringLiteral("the window's monitor ticks"),
             m_probe.errorText() + m_window.standardError().right(2000));
        return;
    }
    const QJsonObject connection = m_probe.read(QStringLiteral("statusLabel"));
    seen.window = QStringList{connection.value(QLatin1String("text")).toString(),
                              connection.value(QLatin1String("styleSheet")).toString(),
                              m_probe.text(QStringLiteral("deviceModelLabel")),
                              m_probe.text(QStringLiteral("stateTitleLabel"))};
    seen.decisions =
        linesWith(m_window.updateLogLines(),
                  {QStringLiteral("Find "), QStringLiteral("DuoDevices"), QStringLiteral("Run User"),
                   QStringLiteral("warnning"), QStringLiteral("JSON"), QStringLiteral("dev json")});
    // 0xF100 and above: the vendors of the table.
    seen.interfaces = linesWith(m_window.interfaceLog().split(QLatin1Char('\n')),
                                {QStringLiteral("VID: 61"), QStringLiteral("VID: 62")});
    m_bus.killProgram();
    m_bus.waitForExit(programLimitMs);
}

bool ReplayStage::fail(const QString &what, const QString &why)
{
    if (m_error.isEmpty())
        m_error = what + QLatin1String(": ") + why;
    return false;
}
