#pragma once

#include <QJsonObject>
#include <QList>
#include <QString>

/// Entries of a bus description for models that the program knows, with its own ids for them.
namespace ModelOnBus {

/// The model as a simulated device whose key is its name. A model that takes the update-mode report
/// on a marked HID interface only has that one and a second, unmarked one. One that is updated through
/// the IAP programmer is programmable.
QJsonObject application(const QString &model);

/// The same device, found already in its bootloader when the bus starts.
QJsonObject bootloader(const QString &model);

/// The text of a bus description with these devices, in bus order.
QByteArray describe(const QList<QJsonObject> &devices);

} // namespace ModelOnBus
