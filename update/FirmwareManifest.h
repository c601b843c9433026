#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QMap>
#include <QString>
#include <QStringList>

/// Reads the firmware manifest: root."CurrentVersion".(device key) with "fileURL", "md5" and "signature", and
/// "downloadURL" for the chooser.
namespace FirmwareManifest {

/// What to report about the manifest. Both texts are UTF-8 literals with static storage.
struct Message
{
    /// For the log, in English.
    const char *logText;
    /// For the debug stream, in Chinese.
    const char *debugText;
};

struct Parsed
{
    QJsonObject root;
    Message message;
    bool ok = false;
};

/// Parses `json`, whose root must be an object.
Parsed parse(const QByteArray &json);

struct Address
{
    /// Empty if the manifest has no address for the device.
    QString url;
    /// Lines for the log and the debug stream, in order.
    QStringList messages;
};

/// Looks up the address of the device's image.
Address fileAddress(const QJsonObject &root, const QString &deviceKey);

/// Returns the MD5 of the image according to the manifest, or an empty string.
QString md5(const QJsonObject &root, const QString &deviceKey);

/// Returns the signature of the image according to the manifest, or an empty string.
QString signature(const QJsonObject &root, const QString &deviceKey);

/// Returns the download URL of every model in "CurrentVersion", by model name.
QMap<QString, QString> downloadUrls(const QJsonObject &root);

} // namespace FirmwareManifest
