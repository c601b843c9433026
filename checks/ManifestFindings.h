#pragma once

#include "checks/Finding.h"

#include <QJsonObject>
#include <QJsonValue>
#include <QString>
#include <QVector>

/// Findings about the contents of a firmware manifest.
namespace ManifestFindings {

/// Judges whether `json` is a manifest that names models. Stores its root object in `*root` if it has one.
Finding manifest(const QByteArray &json, QJsonObject *root);

/// Judges whether the manifest has an address for `model`, which an update needs.
Finding entryFor(const QJsonObject &root, const QString &model);

/// Judges one entry of "CurrentVersion" for its maker: keys, types, and the form of the sum. The findings'
/// names begin with the name of the model. `isKnownModel` says whether the model table has it.
QVector<Finding> entry(const QString &model, const QJsonValue &entry, bool isKnownModel);

} // namespace ManifestFindings
