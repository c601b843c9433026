#pragma once

#include "checks/DeviceInfo.h"
#include "checks/Finding.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

/// Decides on the connected devices and on what an update of their model needs. Nothing here looks at the
/// machine.
namespace DeviceFindings {

/// `contents` is nothing for a list that cannot be read. `model` may be empty: any.
Finding controlList(const QString &path, const std::optional<QByteArray> &contents, const QString &model);

/// A file that is a tool of the maker's.
struct Tool
{
    QString what;
    QString path;
    bool exists = false;
    bool executable = false;
};

/// `isNeeded` tells whether the update cannot do without it.
Finding tool(const Tool &tool, bool isNeeded);

/// Returns which of the tools "usb-flasher", "hid-flasher" and "iap-programmer" an update of `model` needs.
/// `writeTypes` are the control list's. An empty model is one of the SoC family.
QString neededTool(const QString &model, const QStringList &writeTypes);

/// Returns whether the model table has `model`.
bool isKnownModel(const QString &model);

/// Returns the model to check for: the one that was asked for, else that of the connected devices if they
/// are all of one model, else an empty text.
QString modelToCheck(const QString &asked, const QVector<DeviceInfo> &devices);

/// Decides on the connected devices. `asked` is the model that was asked for, or empty.
Finding devices(const QVector<DeviceInfo> &devices, const QString &asked);

/// `refusedFile` is the device file that this user may not open; empty if there is none, and nothing where
/// the system has no device files and so does not tell.
Finding deviceAccess(const std::optional<QString> &refusedFile);

} // namespace DeviceFindings
