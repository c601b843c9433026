#pragma once

#include <QString>

/// Vendor and product ids as they are usually written.
namespace UsbId {

/// Returns the four hexadecimal digits of an id.
inline QString text(quint32 id)
{
    return QStringLiteral("%1").arg(id, 4, 16, QLatin1Char('0'));
}

} // namespace UsbId
