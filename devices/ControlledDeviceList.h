#pragma once

#include "support/log/Reporter.h"

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <optional>

/// The write types that the write-type selector offers.
struct WriteType
{
    bool usb = false;
    bool hid = false;
};

/// The file beside the program that switches single models on and lists the write types. It is read again for
/// every query, so changes take effect at once; it is opened read-only and without a lock. May be used from
/// any thread.
///
/// A file that is not regular, cannot be read or is larger than maximumBytes is treated as one that cannot be
/// opened, because the GUI thread reads it once a second and must not block.
namespace ControlledDeviceList {

constexpr qint64 maximumBytes = qint64{4} * 1024 * 1024;

/// Returns the path of the list in `applicationFolder`.
QString path(const QString &applicationFolder);

/// Returns the contents of the list, or nothing if it cannot be opened.
std::optional<QByteArray> readWhole(const QString &filePath);

/// Returns "is_on" of the entry; false if it is missing or not a boolean.
bool isDeviceOn(const QJsonObject &device);

/// Returns whether the list `jsonData` switches `dev` on. The first entry with that name counts.
bool parseDevices(const QByteArray &jsonData, const QString &dev, Reporter &reporter);
/// Like parseDevices(), but reads the file. A file that cannot be opened switches everything off.
bool findDevForJson(const QString &filePath, const QString &dev, Reporter &reporter);

/// Sets the write types that the list contains; the others keep their value. If a write type occurs twice,
/// the later entry counts.
void parseWriteType(const QByteArray &jsonData, WriteType &writeType);
/// Like parseWriteType(), but reads the file. Returns whether it could be read; reports errors to the debug
/// stream only.
bool readWriteType(const QString &filePath, WriteType &writeType);

/// Returns the items of the write-type selector, in order. The list contains at least "USB".
QStringList writeTypeItems(const WriteType &writeType);

} // namespace ControlledDeviceList
