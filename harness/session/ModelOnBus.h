#pragma once

#include <QJsonObject>
#include <QList>
#include <QString>

/// Creates entries of a bus description for models that the program knows, with the ids from its table.
namespace ModelOnBus {

/// Returns the model as a simulated device whose key is its name. A model that accepts the update-mode report
/// only on a marked HID interface has that one and a second, unmarked one. A model that is updated through
/// the IAP programmer is programmable.
QJsonObject application(const QString &model);

/// Returns the same device, but already in its bootloader when the bus starts.
QJsonObject bootloader(const QString &model);

/// Returns a bus description with these devices, in bus order.
QByteArray describe(const QList<QJsonObject> &devices);

} // namespace ModelOnBus
