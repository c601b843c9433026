#include "cli/commands/CommandContext.h"

#include "support/process/ShutdownFlag.h"

#include <QDir>
#include <QEventLoop>
#include <QTimer>

CommandContext::CommandContext(Options given, EventSink &events)
    : options(std::move(given)),
      sink(events),
      tools(ToolFiles::find())
{
}

UsbBus &CommandContext::usb()
{
    if (!m_usb) {
        m_libraries.initialiseUsb();
        m_usb = makeLibusbBus(m_libraries.usbReady());
    }
    return *m_usb;
}

HidPort &CommandContext::hid()
{
    if (!m_hid) {
        m_libraries.initialiseHid();
        m_hid = makeHidapiPort();
    }
    return *m_hid;
}

bool CommandContext::isUsbReady()
{
    usb();
    return m_libraries.usbReady();
}

QString CommandContext::folder()
{
    if (!m_folder)
        m_folder =
            std::make_unique<QTemporaryDir>(QDir::tempPath() + QLatin1String("/quillmarsh-cli-XXXXXX"));
    return m_folder->isValid() ? m_folder->path() : QString();
}

QString CommandContext::downloadFolder()
{
    return folder().isEmpty() ? QDir::tempPath() : folder();
}

std::function<int()> CommandContext::finalStep(ExitCode exitCode) const
{
    const QString path = m_folder ? m_folder->path() : QString();
    return [path, exitCode] {
        // QDir would take an empty path for the working folder.
        if (!path.isEmpty())
            QDir(path).removeRecursively();
        return static_cast<int>(exitCode);
    };
}

bool CommandContext::waitMs(int milliseconds)
{
    const ShutdownFlag &flag = ShutdownFlag::instance();
    QEventLoop loop;
    QObject::connect(&flag, &ShutdownFlag::raised, &loop, &QEventLoop::quit, Qt::QueuedConnection);
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    if (!flag.isRaised())
        loop.exec();
    return !flag.isRaised();
}
