#include "update/FirmwareManifest.h"

#include <QJsonDocument>

namespace {

QJsonValue currentVersion(const QJsonObject &root)
{
    return root.value(QLatin1String("CurrentVersion"));
}

QString textOf(const QJsonObject &root, const QString &deviceKey, const char *field)
{
    return currentVersion(root).toObject().value(deviceKey).toObject().value(QLatin1String(field)).toString();
}

} // namespace

FirmwareManifest::Parsed FirmwareManifest::parse(const QByteArray &json)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError)
        return {{}, {"parse json Failed!", "解析json失败"}, false};
    if (!document.isObject())
        return {{}, {"JSON Failed1!", "无效的json格式"}, false};
    return {document.object(), {"parse json Success:", "解析json成功:"}, true};
}

FirmwareManifest::Address FirmwareManifest::fileAddress(const QJsonObject &root, const QString &deviceKey)
{
    Address address;
    const QJsonValue versions = currentVersion(root);
    if (!versions.isObject()) {
        address.messages.append(QStringLiteral("'CurrentVersion' is not an object."));
        return address;
    }
    address.messages.append(QLatin1String("Keys under 'CurrentVersion':") +
                            versions.toObject().keys().join(QLatin1String(", ")));

    const QJsonValue entry = versions.toObject().value(deviceKey);
    if (!entry.isObject()) {
        address.messages.append(QLatin1String("Value for key") + deviceKey +
                                QLatin1String("is not an object."));
        return address;
    }
    if (!entry.toObject().contains(QLatin1String("fileURL"))) {
        address.messages.append(deviceKey + QLatin1String("does not contain 'fileURL'."));
        return address;
    }
    address.messages.append(QLatin1String("Found fileURL for") + deviceKey);
    address.url = entry.toObject().value(QLatin1String("fileURL")).toString();
    return address;
}

QString FirmwareManifest::md5(const QJsonObject &root, const QString &deviceKey)
{
    return textOf(root, deviceKey, "md5");
}

QString FirmwareManifest::signature(const QJsonObject &root, const QString &deviceKey)
{
    return textOf(root, deviceKey, "signature");
}

QMap<QString, QString> FirmwareManifest::downloadUrls(const QJsonObject &root)
{
    QMap<QString, QString> urls;
    const QJsonObject versions = currentVersion(root).toObject();
    for (auto model = versions.begin(); model != versions.end(); ++model) {
        const QJsonValue url = model.value().toObject().value(QLatin1String("downloadURL"));
        urls.insert(model.key(), url.toString());
    }
    return urls;
}
