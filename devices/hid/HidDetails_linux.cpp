#include "devices/hid/HidDetails.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

namespace {

/// Returns the folder of the interface's device in sysfs.
QString deviceFolder(const QByteArray &path)
{
    const QString node = QFileInfo(QFile::decodeName(path)).fileName();
    return QLatin1String("/sys/class/hidraw/") + node + QLatin1String("/device");
}

} // namespace

QByteArray HidDetails::reportDescriptor(const QByteArray &path)
{
    // What the kernel accepts at most.
    constexpr qint64 maximumBytes = 4096;
    QFile file(deviceFolder(path) + QLatin1String("/report_descriptor"));
    if (path.isNull() || !file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray bytes = file.read(maximumBytes);
    return bytes.isNull() ? QByteArray("") : bytes;
}

QString HidDetails::position(const QByteArray &path)
{
    if (path.isNull())
        return {};
    // …/1-2.3/1-2.3:1.0/0003:F100:A001.0004
    static const QRegularExpression usbInterface(QStringLiteral("/([0-9]+-[0-9.]+):[0-9]+\\.[0-9]+/"));
    const QString folder = QFileInfo(deviceFolder(path)).canonicalFilePath();
    return usbInterface.match(folder).captured(1);
}
