#pragma once

#include "checks/Finding.h"

#include <QJsonObject>
#include <QJsonValue>
#include <QString>
#include <QVector>

/// Decides on what a firmware manifest says.
namespace ManifestFindings {

/// Decides whether `json` is a manifest that names models. `root` becomes its root object, or stays as it is.
Finding manifest(const QByteArray &json, QJsonObject *root);

/// Decides whether the manifest has an address and a sum for `model`: what an update needs.
Finding entryFor(const QJsonObject &root, const QString &model);

/// Decides on one entry of "CurrentVersion" as its maker wants it: keys, types and the form of the sum.
/// "what" begins with the name of the model. `isKnownModel` tells whether the model table has it.
QVector<Finding> entry(const QString &model, const QJsonValue &entry, bool isKnownModel);

} // namespace ManifestFindings
