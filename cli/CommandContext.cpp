#include "cli/CommandContext.h"

#include "support/ShutdownFlag.h"

#include <QDir>
#include <QEventLoop>
#include <QTimer>

CommandContext::CommandContext(Options given, EventSink &events)
    : options(std::move(given)),
      sink(events),
      tools(ToolFiles::find()),
      m_folder(QDir::tempPath() + QLatin1String("/quillmarsh-cli-XXXXXX"))
{
}

QString CommandContext::downloadFolder() const
{
    return folder().isEmpty() ? QDir::tempPath() : folder();
}

UsbBus &CommandContext::usb()
{
    initialise();
    return *m_usb;
}

HidPort &CommandContext::hid()
{
    initialise();
    return *m_hid;
}

bool CommandContext::isUsbReady()
{
    initialise();
    return m_libraries.usbReady();
}

void CommandContext::initialise()
{
    if (m_usb)
        return;
    m_libraries.initialiseUsb();
    m_libraries.initialiseHid();
    m_usb = makeLibusbBus(m_libraries.usbReady());
    m_hid = makeHidapiPort();
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
