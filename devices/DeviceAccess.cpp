#include "devices/DeviceAccess.h"

#include <utility>

DeviceAccess::DeviceAccess(FindRefusedFile findRefusedFile) : m_findRefusedFile(std::move(findRefusedFile)) {}

QString DeviceAccess::checkSettled()
{
    m_refusedBefore = m_findRefusedFile();
    return check();
}

QString DeviceAccess::check()
{
    if (m_reported)
        return {};
    const QString refused = m_findRefusedFile();
    m_reported = !refused.isEmpty() && refused == m_refusedBefore;
    m_refusedBefore = refused;
    if (!m_reported)
        return {};
    return QStringLiteral("No permission to open the device at %1: install the udev rules "
                          "60-quillmarsh.rules in /etc/udev/rules.d and plug the device in again.")
        .arg(refused);
}
