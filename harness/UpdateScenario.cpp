#include "harness/UpdateScenario.h"

#include "harness/session/ModelOnBus.h"
#include "simulator/files/WholeFile.h"
#include "simulator/server/FirmwareAddress.h"

#include <QDir>
#include <QFile>

namespace {

constexpr int imageBytes = 1024 * 1024 + 7;

} // namespace

UpdateScenario::UpdateScenario(const QString &model, std::unique_ptr<TargetSystem> system,
                               const QString &folderName)
    : devices{ModelOnBus::application(model)},
      firmware(FirmwareAddress::server()),
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
    if (withServer && !server.start(firmware.folder(), FirmwareAddress::port(), serverFaults))
        return fail(QStringLiteral("the firmware server"), server.errorText());
    const bool hasDisplay = !display.display().isEmpty();
    if (!hasDisplay && !(onExistingDisplay ? display.useExistingDisplay() : display.start(screen)))
        return fail(QStringLiteral("the display"), display.errorText());
    program.setDisplay(display.display());
    if (!display.authority().isEmpty())
        program.setVariable(QStringLiteral("XAUTHORITY"), display.authority());

    const QString description = program.workingFolder() + QLatin1String("/../bus.json");
    if (!WholeFile::write(description, ModelOnBus::describe(devices)))
        return fail(QStringLiteral("the bus description"), QStringLiteral("cannot write ") + description);
    const QStringList controller = report.isEmpty()
                                       ? program.system().busController(description, BusFile::Description)
                                       : program.system().busController(report, BusFile::Report);
    if (!bus.startController(controller))
        return fail(QStringLiteral("the bus"), bus.errorText());
    if (!bus.run(program.launch(arguments)))
        return fail(QStringLiteral("the program"), bus.errorText());
    // The probe does not answer while the program creates its window.
    probe.setAnswerLimit(eventLimitMs);
    if (!probe.connectThrough(program.probePortFile(), eventLimitMs))
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
    return WholeFile::read(path);
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
