#include "devices/ControlledDeviceList.h"

#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonValue>

namespace {

QString idOf(const QJsonObject &entry)
{
    return entry.value(QLatin1String("id")).toString();
}

} // namespace

QString ControlledDeviceList::path(const QString &applicationFolder)
{
    return applicationFolder + QLatin1String("/qmake/ControlDevList.json");
}

std::optional<QByteArray> ControlledDeviceList::readWhole(const QString &filePath)
{
    // Opening a named pipe would block the GUI thread.
    if (!QFileInfo(filePath).isFile())
        return std::nullopt;
    QFile file(filePath);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    QByteArray contents = file.read(maximumBytes + 1);
    if (file.error() != QFileDevice::NoError || contents.size() > maximumBytes)
        return std::nullopt;
    return contents;
}

bool ControlledDeviceList::isDeviceOn(const QJsonObject &device)
{
    return device.value(QLatin1String("is_on")).toBool();
}

bool ControlledDeviceList::parseDevices(const QByteArray &jsonData, const QString &dev, Reporter &reporter)
{
    const QJsonDocument document = QJsonDocument::fromJson(jsonData);
    if (!document.isObject()) {
        qWarning("Invalid JSON format");
        reporter.log(QStringLiteral("Invalid JSON format!"));
        return false;
    }
    const QJsonValue devices = document.object().value(QLatin1String("devices"));
    if (!devices.isArray()) {
        qWarning("No devices found in the JSON data.");
        reporter.log(QStringLiteral("No devices found in the JSON data.!"));
        return false;
    }
    const QJsonArray entries = devices.toArray();
    for (const QJsonValue value : entries) {
        if (!value.isObject())
            continue;
        const QJsonObject entry = value.toObject();
        const QString id = idOf(entry);
        const bool on = isDeviceOn(entry);
        if (id == dev) {
            reporter.log(QLatin1String("Find dev for json dev: ") + dev);
            return on;
        }
        qDebug().noquote().nospace() << "Device ID:" << id << ", Status:" << on;
    }
    return false;
}

bool ControlledDeviceList::findDevForJson(const QString &filePath, const QString &dev, Reporter &reporter)
{
    const std::optional<QByteArray> contents = readWhole(filePath);
    if (!contents) {
        qWarning("Failed to open file");
        reporter.log(QStringLiteral("Failed to open file: dev json.!"));
        return false;
    }
    return parseDevices(*contents, dev, reporter);
}

void ControlledDeviceList::parseWriteType(const QByteArray &jsonData, WriteType &writeType)
{
    const QJsonObject list = QJsonDocument::fromJson(jsonData).object();
    const QJsonArray entries = list.value(QLatin1String("WriteType")).toArray();
    for (const QJsonValue value : entries) {
        const QJsonObject entry = value.toObject();
        const QString id = idOf(entry);
        if (id == QLatin1String("USB"))
            writeType.usb = isDeviceOn(entry);
        else if (id == QLatin1String("HID"))
            writeType.hid = isDeviceOn(entry);
    }
}

bool ControlledDeviceList::readWriteType(const QString &filePath, WriteType &writeType)
{
    qDebug("InitUseWirteType...");
    const std::optional<QByteArray> contents = readWhole(filePath);
    if (!contents) {
        qWarning("Failed to open file");
        qDebug("Failed to open file: dev json.!");
        return false;
    }
    parseWriteType(*contents, writeType);
    return true;
}

QStringList ControlledDeviceList::writeTypeItems(const WriteType &writeType)
{
    const QString usb = QStringLiteral("USB");
    const QString hid = QStringLiteral("HID");
    if (writeType.usb && writeType.hid)
        return {usb, hid};
    return {writeType.hid ? hid : usb};
}
