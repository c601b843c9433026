#pragma once

#include "support/BilingualText.h"

#include <QByteArray>
#include <QJsonObject>
#include <QMap>
#include <QString>
#include <QStringList>

/// Reading of the firmware manifest: root."CurrentVersion".(device key) with "fileURL" and "md5",
/// and, for the chooser, "downloadURL".
namespace FirmwareManifest {

struct Parsed
{
    QJsonObject root;
    /// What is to be said of it: English for the log, Chinese for the debug stream.
    BilingualText message;
    bool ok = false;
};

Parsed parse(const QByteArray &json);

struct Address
{
    /// Empty when the manifest names none.
    QString url;
    /// What the lookup has to say, in order.
    QStringList messages;
};

Address fileAddress(const QJsonObject &root, const QString &deviceKey);

/// The sum as the manifest gives it; empty when it gives none.
QString md5(const QJsonObject &root, const QString &deviceKey);

/// Model name to download URL, for every member of "CurrentVersion".
QMap<QString, QString> downloadUrls(const QJsonObject &root);

} // namespace FirmwareManifest
