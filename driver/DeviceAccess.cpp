#include "driver/DeviceAccess.h"

#include <utility>

DeviceAccess::DeviceAccess(RefusedFile refusedFile) : m_refusedFile(std::move(refusedFile)) {}

void DeviceAccess::checkSettled(DriverLog &log)
{
    m_refusedBefore = m_refusedFile();
    check(log);
}

void DeviceAccess::check(DriverLog &log)
{
    if (m_told)
        return;
    const QString refused = m_refusedFile();
    m_told = !refused.isEmpty() && refused == m_refusedBefore;
    m_refusedBefore = refused;
    if (m_told)
        log.shown(QStringLiteral("No permission to open the device at %1: install the udev rules "
                                 "60-quillmarsh.rules in /etc/udev/rules.d and plug the device in again.")
                      .arg(refused));
}
