#include "simulator/demo/DemoScenario.h"

#include "simulator/bench/FileRow.h"
#include "simulator/bench/ModelOnBus.h"
#include "simulator/bench/WineSystem_linux.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

namespace {

QJsonObject step(const char *name, const QJsonValue &value)
{
    return {{QLatin1String(name), value}};
}

QJsonDocument unhurriedFlasher()
{
    QJsonArray burn;
    for (const char *partition : {"spl", "env", "os", "rodata", "data"}) {
        burn.append(
            step("print", QStringLiteral("Upgrade fwc: image.target.%1\n").arg(QLatin1String(partition))));
        burn.append(step("sleepMs", 400));
    }
    burn.append(step("burn", true));
    burn.append(step("success", true));
    const QJsonArray reset{step("reset", true)};
    return QJsonDocument(QJsonObject{{QStringLiteral("runs"), QJsonArray{burn, reset}}});
}

QJsonDocument unhurriedProgrammer()
{
    QJsonArray run;
    for (const int percent : {0, 16, 32, 48, 64, 80}) {
        run.append(step("print", QStringLiteral("SetProgress: %1\n").arg(percent)));
        run.append(step("sleepMs", 400));
    }
    run.append(step("program", true));
    run.append(step("print", QStringLiteral("SetProgress: 100\n")));
    // Asked what there is, it stays honest.
    return QJsonDocument(
        QJsonObject{{QStringLiteral("Start"), QJsonObject{{QStringLiteral("runs"), QJsonArray{run}}}}});
}

std::unique_ptr<TargetSystem> systemOf(const DemoOptions &options)
{
    return options.windowsBuild.isEmpty() ? makeNativeSystem()
                                          : makeWineSystem(options.windowsBuild, WindowsVersion::Windows10);
}

} // namespace

DemoScenario::DemoScenario(const DemoOptions &options)
    : UpdateScenario(options.model, systemOf(options)),
      m_options(options),
      m_rightImage(image())
{
    onExistingDisplay = !options.automatic;
    // The IAP panel stands beside the window.
    screen = QSize(options.throughIapPanel ? 1120 : 800, 490);
    arguments = options.programArguments;
    program.setLocale(options.chinese ? QStringLiteral("zh_CN.UTF-8") : QStringLiteral("en_US.UTF-8"));
    program.setScript(QStringLiteral("upgcmd.exe"), unhurriedFlasher());
    program.setScript(QStringLiteral("IAP_Programmer.exe"), unhurriedProgrammer());
    if (options.inBootloader) {
        devices = {ModelOnBus::bootloader(options.model)};
        // So that there is a choice to make.
        for (const char *other : {"DevMab", "DevMac", "DevMbr", "DevMbu", "DevMcb", "ZN58"})
            firmware.addModel(QLatin1String(other), 4096);
    }
    if (!options.localFile.isEmpty()) {
        QFile file(options.localFile);
        m_rightImage = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
}

bool DemoScenario::open()
{
    return start() &&
           (m_options.localFile.isEmpty() ||
            (FileRow::reveal(probe) && FileRow::choose(probe, program.nameOf(m_options.localFile))));
}

QString DemoScenario::successTitle() const
{
    if (m_options.throughIapPanel)
        return QStringLiteral("Current Status: Upgrade Successful"); // in every language
    return m_options.chinese ? QStringLiteral("当前状态: 升级成功")
                             : QStringLiteral("CurrentStatus: Upgrade Successful");
}

QString DemoScenario::failure() const
{
    return UpdateScenario::errorText() + probe.errorText();
}
