#include "demo/CliDemo.h"

#include "demo/SlowTools.h"
#include "harness/BuildPaths.h"
#include "harness/session/ModelOnBus.h"
#include "simulator/files/WholeFile.h"
#include "simulator/server/FirmwareAddress.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTextStream>

namespace {

constexpr int imageBytes = 1024 * 1024 + 7;

QString programFile()
{
    return QFileInfo(BuildPaths::program()).path() + QLatin1String("/quillmarsh-cli");
}

} // namespace

CliDemo::CliDemo(const DemoOptions &options)
    : m_options(options),
      m_firmware(FirmwareAddress::server()),
      m_expectedImage(m_firmware.addModel(options.model, imageBytes)),
      m_program(programFile())
{
    m_program.addAllTools(BuildPaths::standIn());
    m_program.setScript(QStringLiteral("upgcmd.exe"), SlowTools::flasher());
    m_program.setScript(QStringLiteral("IAP_Programmer.exe"), SlowTools::programmer());
    m_program.setControlList({options.model}, {QStringLiteral("USB")});
    if (!options.localFile.isEmpty())
        m_expectedImage = WholeFile::read(options.localFile);
}

bool CliDemo::run()
{
    if (!open()) {
        print(m_program.errorText() + m_server.errorText() + m_bus.errorText());
        return false;
    }
    const bool succeeded = runProgram();
    return report() && succeeded;
}

bool CliDemo::open()
{
    const QString description = m_program.workingFolder() + QLatin1String("/../bus.json");
    const QJsonObject device = m_options.inBootloader ? ModelOnBus::bootloader(m_options.model)
                                                      : ModelOnBus::application(m_options.model);
    return m_program.isValid() && m_server.start(m_firmware.folder(), FirmwareAddress::port(), {}) &&
           WholeFile::write(description, ModelOnBus::describe({device})) &&
           m_bus.startController(m_program.system().busController(description, BusFile::Description));
}

QStringList CliDemo::arguments() const
{
    QStringList list{QStringLiteral("update"), QStringLiteral("--yes"), QStringLiteral("--wait"),
                     QStringLiteral("60")};
    if (m_options.inBootloader)
        list += QStringList{QStringLiteral("--model"), m_options.model};
    if (!m_options.localFile.isEmpty())
        list += QStringList{QStringLiteral("--file"), m_options.localFile};
    if (m_options.chinese)
        list += QStringList{QStringLiteral("--lang"), QStringLiteral("zh")};
    if (m_options.json)
        list.append(QStringLiteral("--json"));
    return list;
}

/// Runs the program directly instead of through the BusSession, so that it writes to this terminal.
bool CliDemo::runProgram()
{
    const Launch launch = m_program.launch(arguments());
    QProcessEnvironment environment = launch.environment;
    const QJsonObject &bus = m_bus.environment();
    for (auto variable = bus.begin(); variable != bus.end(); ++variable)
        environment.insert(variable.key(), variable.value().toString());
    print(QLatin1String("$ quillmarsh-cli ") + arguments().join(QLatin1Char(' ')));
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(launch.workingDirectory);
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.setInputChannelMode(QProcess::ForwardedInputChannel);
    process.start(launch.program, launch.arguments);
    process.waitForFinished(-1);
    return process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
}

bool CliDemo::report()
{
    const QString path = QDir::cleanPath(m_program.workingFolder() + QLatin1String("/../burned.img"));
    const QByteArray burned = m_bus.saveImage(m_options.model, path) ? WholeFile::read(path) : QByteArray();
    const bool sameBytes = burned == m_expectedImage;
    print(QStringLiteral("The device received %1 bytes, %2 the %3 %4.")
              .arg(burned.size())
              .arg(sameBytes ? QStringLiteral("the same as") : QStringLiteral("other than"),
                   m_options.localFile.isEmpty() ? QStringLiteral("server's") : QStringLiteral("file's"))
              .arg(m_expectedImage.size()));
    return sameBytes;
}

void CliDemo::print(const QString &line) const
{
    QTextStream(m_options.json ? stderr : stdout) << line << '\n';
}
