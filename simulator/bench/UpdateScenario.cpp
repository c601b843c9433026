#include "simulator/bench/UpdateScenario.h"

#include "simulator/bench/ModelOnBus.h"

#include <QDir>
#include <QFile>

namespace {

// The program of a build with the rig fetches from here and from nowhere else.
constexpr quint16 firmwarePort = 18099;
// Longer than any system takes to start a program on a busy machine; while its window is made, it answers
// nothing.
constexpr int startLimitMs = 60000;
constexpr int imageBytes = 1024 * 1024 + 7;

} // namespace

UpdateScenario::UpdateScenario(const QString &model, std::unique_ptr<TargetSystem> system,
                               const QString &folderName)
    : devices{ModelOnBus::application(model)},
      firmware(QStringLiteral("http://127.0.0.1:%1").arg(firmwarePort)),
      program(std::move(system), folderName),
      m_model(model),
      m_image(firmware.addModel(model, imageBytes))
{
    program.addAllTools(program.system().standIn());
    program.setControlList({model}, {QStringLiteral("USB")});
}

bool UpdateScenario::start()
{
    if (!program.isValid())
        return fail(QStringLiteral("staging"), program.errorText());
    if (withServer && !server.start(firmware.folder(), firmwarePort, serverFaults))
        return fail(QStringLiteral("the firmware server"), server.errorText());
    if (!(onExistingDisplay ? display.useExistingDisplay() : display.start(screen)))
        return fail(QStringLiteral("the display"), display.errorText());
    program.setDisplay(display.display());

    QFile description(program.workingFolder() + QLatin1String("/../bus.json"));
    if (!description.open(QIODevice::WriteOnly) || description.write(ModelOnBus::describe(devices)) < 0)
        return fail(QStringLiteral("the bus description"), description.errorString());
    description.close();
    if (!bus.startController(program.system().busController(description.fileName())))
        return fail(QStringLiteral("the bus"), bus.errorText());
    if (!bus.run(program.launch(arguments)))
        return fail(QStringLiteral("the program"), bus.errorText());
    probe.setAnswerLimit(startLimitMs);
    if (!probe.connectThrough(program.probePortFile(), startLimitMs))
        return fail(QStringLiteral("the probe"), probe.errorText() + program.standardError());
    return true;
}

bool UpdateScenario::pressStart(int limitMs)
{
    if (!probe.waitForText(QStringLiteral("deviceModelLabel"), m_model, limitMs))
        return fail(QStringLiteral("waiting for the device"), probe.errorText());
    if (!probe.waitForEnabled(QStringLiteral("startButton"), true, limitMs))
        return fail(QStringLiteral("waiting for the start button"), probe.errorText());
    if (!probe.click(QStringLiteral("startButton")))
        return fail(QStringLiteral("pressing start"), probe.errorText());
    return true;
}

QByteArray UpdateScenario::burned(const QString &key)
{
    const QString path = QDir::cleanPath(program.workingFolder() + QLatin1String("/../burned.img"));
    QFile::remove(path);
    if (!bus.saveImage(key.isEmpty() ? m_model : key, path))
        return {};
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

std::optional<int> UpdateScenario::closeWindow(int limitMs)
{
    if (!probe.close(QStringLiteral("BackgroundWidget")))
        return std::nullopt;
    return bus.waitForExit(limitMs);
}

bool UpdateScenario::fail(const QString &what, const QString &why)
{
    m_error = what + QLatin1String(": ") + why;
    return false;
}
