#pragma once

#include "support/Reporter.h"

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <optional>

/// The ways of flashing that the write-type selector offers.
struct WriteType
{
    bool usb = false;
    bool hid = false;
};

/// The file beside the program that switches single models on and names the write types. It is
/// read anew for every question, so an edit counts at once; it is opened read-only and without a
/// lock. GUI thread only.
///
/// What is no regular file, cannot be read, or is larger than maximumBytes counts as a file that
/// could not be opened: a mix-up must cost a look at the buses, not the window's response.
namespace ControlledDeviceList {

constexpr qint64 maximumBytes = qint64{4} * 1024 * 1024;

/// Where the list lies below `applicationFolder`.
QString path(const QString &applicationFolder);

/// Returns the contents of the list; nothing if it counts as a file that could not be opened.
std::optional<QByteArray> readWhole(const QString &filePath);

/// The entry's "is_on"; false where it is missing or no bool.
bool isDeviceOn(const QJsonObject &device);

/// Whether `dev` is switched on in the list `jsonData`. The first entry of that name counts.
bool parseDevices(const QByteArray &jsonData, const QString &dev, Reporter &reporter);
/// The same on the file; one that cannot be opened switches everything off.
bool findDevForJson(const QString &filePath, const QString &dev, Reporter &reporter);

/// Sets what the list says of the write types; an absent one keeps its value, and of two entries
/// the later one counts.
void parseWriteType(const QByteArray &jsonData, WriteType &writeType);
/// The same on the file; returns whether it could be read. Reports to the debug stream only.
bool readWriteType(const QString &filePath, WriteType &writeType);

/// The items of the write-type selector, in order: never empty, since "USB" is the least.
QStringList writeTypeItems(const WriteType &writeType);

} // namespace ControlledDeviceList
