#include "demo/DemoScenario.h"

#include "demo/SlowTools.h"
#include "harness/session/ModelOnBus.h"
#include "harness/stage/WineSystem_linux.h"
#include "harness/window/FileRow.h"
#include "simulator/files/WholeFile.h"

#include <QFile>

namespace {

std::unique_ptr<TargetSystem> systemOf(const DemoOptions &options)
{
    if (options.windowsBuild.isEmpty())
        return makeNativeSystem();
    return makeWineSystem(options.windowsBuild, WindowsVersion::Windows10,
                          options.automatic ? WindowFrames::ByWine : WindowFrames::ByWindowManager);
}

} // namespace

DemoScenario::DemoScenario(const DemoOptions &options)
    : UpdateScenario(options.model, systemOf(options)),
      m_options(options),
      m_expectedImage(image())
{
    onExistingDisplay = !options.automatic;
    // The IAP panel opens beside the window.
    screen = QSize(options.throughIapPanel ? 1120 : 800, 490);
    arguments = options.programArguments;
    serverFaults = options.serverFaults;
    program.setLocale(options.chinese ? QStringLiteral("zh_CN.UTF-8") : QStringLiteral("en_US.UTF-8"));
    program.setScript(QStringLiteral("upgcmd.exe"), SlowTools::flasher());
    program.setScript(QStringLiteral("IAP_Programmer.exe"), SlowTools::programmer());
    if (options.inBootloader) {
        devices = {ModelOnBus::bootloader(options.model)};
        // Offer other models as well, so that there is a choice.
        for (const char *other : {"DevMab", "DevMac", "DevMbr", "DevMbu", "DevMcb", "ZN58"})
            firmware.addModel(QLatin1String(other), 4096);
    }
    if (!options.localFile.isEmpty())
        m_expectedImage = WholeFile::read(options.localFile);
    if (!options.report.isEmpty())
        showReport();
}

/// Shows the devices and the control list of the user's report instead of the model's device.
void DemoScenario::showReport()
{
    report = m_options.report;
    // Leave room for the log window, which opens below and shows the reasons.
    screen = QSize(800, 700);
    if (m_options.reported.controlList)
        program.setControlList(*m_options.reported.controlList);
    else
        QFile::remove(program.applicationFolder() + QLatin1String("/qmake/ControlDevList.json"));
}

bool DemoScenario::open()
{
    return start() &&
           (m_options.localFile.isEmpty() ||
            (FileRow::reveal(probe) && FileRow::choose(probe, program.toProgramPath(m_options.localFile))));
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
