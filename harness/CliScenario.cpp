#include "harness/CliScenario.h"

#include "harness/process/Polling.h"
#include "harness/session/ModelOnBus.h"
#include "simulator/files/WholeFile.h"
#include "simulator/server/FirmwareAddress.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>

#include <algorithm>

namespace {

constexpr int cliImageBytes = 1024 * 1024 + 7;

/// Returns whether this is a record or a script of the stand-in tools.
bool belongsToTools(const QString &name)
{
    return name.contains(QLatin1String(".exe."));
}

} // namespace

CliScenario::CliScenario(const QString &model, std::unique_ptr<TargetSystem> system,
                         const QString &folderName)
    : devices{ModelOnBus::application(model)},
      firmware(FirmwareAddress::server()),
      program(system ? std::move(system) : makeNativeSystem(BuildPaths::commandLineProgram()), folderName),
      m_model(model),
      m_image(firmware.addModel(model, cliImageBytes))
{
    program.addAllTools(program.system().standIn());
    program.setControlList({model}, {QStringLiteral("USB")});
    for (const char *name : {"DISPLAY", "QT_QPA_PLATFORM", "QT_QPA_GENERIC_PLUGINS", "QT_PLUGIN_PATH",
                             "WINEQT_QPA_PLATFORM", "WINEQT_QPA_GENERIC_PLUGINS"})
        program.unsetVariable(QLatin1String(name));
}

bool CliScenario::startServerAndBus()
{
    if (m_started)
        return true;
    if (!program.isValid())
        return fail(QStringLiteral("staging"), program.errorText());
    if (withServer && !server.start(firmware.folder(), FirmwareAddress::port(), serverFaults))
        return fail(QStringLiteral("the firmware server"), server.errorText());
    const QString description = program.workingFolder() + QLatin1String("/../bus.json");
    if (!WholeFile::write(description, ModelOnBus::describe(devices)))
        return fail(QStringLiteral("the bus description"), QStringLiteral("cannot write ") + description);
    const QStringList controller = report.isEmpty()
                                       ? program.system().busController(description, BusFile::Description)
                                       : program.system().busController(report, BusFile::Report);
    if (!bus.startController(controller))
        return fail(QStringLiteral("the bus"), bus.errorText());
    m_before = files();
    m_started = true;
    return true;
}

bool CliScenario::start(const QStringList &arguments)
{
    if (!startServerAndBus())
        return false;
    if (!bus.run(program.launch(arguments)))
        return fail(QStringLiteral("the program"), bus.errorText());
    return true;
}

std::optional<int> CliScenario::run(const QStringList &arguments, int limitMs)
{
    return start(arguments) ? bus.waitForExit(limitMs) : std::nullopt;
}

QList<QJsonObject> CliScenario::events() const
{
    QStringList lines = program.standardOutput().split(QLatin1Char('\n'));
    // The text after the last line feed is not a complete line yet.
    lines.removeLast();
    QList<QJsonObject> objects;
    for (const QString &line : qAsConst(lines))
        objects.append(QJsonDocument::fromJson(line.toUtf8()).object());
    return objects;
}

QList<QJsonObject> CliScenario::events(const QString &name) const
{
    QList<QJsonObject> some;
    for (const QJsonObject &event : events()) {
        if (event.value(QLatin1String("event")).toString() == name)
            some.append(event);
    }
    return some;
}

bool CliScenario::waitForEvent(const QJsonObject &wanted, int limitMs) const
{
    const auto agrees = [&wanted](const QJsonObject &event) {
        for (auto field = wanted.begin(); field != wanted.end(); ++field) {
            if (event.value(field.key()) != field.value())
                return false;
        }
        return true;
    };
    return pollUntil(
        [&] {
            const QList<QJsonObject> seen = events();
            return std::any_of(seen.begin(), seen.end(), agrees);
        },
        limitMs, 20);
}

QByteArray CliScenario::burned(const QString &key)
{
    const QString path = QDir::cleanPath(program.workingFolder() + QLatin1String("/../burned.img"));
    QFile::remove(path);
    if (!bus.saveImage(key.isEmpty() ? m_model : key, path))
        return {};
    return WholeFile::read(path);
}

QStringList CliScenario::files() const
{
    QStringList all;
    for (const QString &folder : {program.temporaryFolder(), program.workingFolder(), program.homeFolder(),
                                  program.applicationFolder()}) {
        const QDir::Filters filters = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
        QDirIterator entries(folder, filters, QDirIterator::Subdirectories);
        while (entries.hasNext())
            all.append(entries.next());
    }
    return all;
}

QStringList CliScenario::filesLeft() const
{
    QStringList left;
    for (const QString &path : files()) {
        if (!m_before.contains(path) && !belongsToTools(QFileInfo(path).fileName()))
            left.append(path);
    }
    return left;
}

bool CliScenario::fail(const QString &what, const QString &why)
{
    m_error = what + QLatin1String(": ") + why;
    return false;
}
