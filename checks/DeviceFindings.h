#pragma once

#include "checks/DeviceInfo.h"
#include "checks/Finding.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

/// Findings about the connected devices and about what an update of their model needs. The functions only
/// judge the facts that they are given; nothing here looks at the machine.
namespace DeviceFindings {

/// Judges the control list. `contents` is nothing if the file cannot be read. `model` is empty if any model
/// will do.
Finding controlList(const QString &path, const std::optional<QByteArray> &contents, const QString &model);

/// One of the maker's tools, with what is known about its file.
struct Tool
{
    QString what;
    QString path;
    bool exists = false;
    bool executable = false;
};

/// Judges a tool. `isNeeded` says whether the update cannot do without it.
Finding tool(const Tool &tool, bool isNeeded);

/// Returns which of the tools "usb-flasher", "hid-flasher" and "iap-programmer" an update of `model` needs.
/// `writeTypes` are those of the control list. An empty model counts as one that a flasher writes.
QString neededTool(const QString &model, const QStringList &writeTypes);

/// Returns whether the model table has `model`.
bool isKnownModel(const QString &model);

/// Returns the model to check for: the requested one or else, if all connected devices are of one model, that
/// model. Returns an empty text otherwise.
QString modelToCheck(const QString &requestedModel, const QVector<DeviceInfo> &devices);

/// Judges the connected devices. `requestedModel` may be empty.
Finding devices(const QVector<DeviceInfo> &devices, const QString &requestedModel);

/// Judges the access to the devices. `refusedFile` is the device file that the user may not open; empty if
/// there is none, and nothing on a system without device files, where this is not known.
Finding deviceAccess(const std::optional<QString> &refusedFile);

} // namespace DeviceFindings
