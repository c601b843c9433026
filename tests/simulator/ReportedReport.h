#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

/// Reports as values, for tests of their reader.
namespace ReportedReport {

/// A device of the model DevMah.
inline QJsonObject usb(const char *position = "1-2")
{
    return {{QStringLiteral("vendorId"), QStringLiteral("f104")},
            {QStringLiteral("productId"), QStringLiteral("a009")},
            {QStringLiteral("class"), 0},
            {QStringLiteral("position"), QLatin1String(position)},
            {QStringLiteral("model"), QStringLiteral("DevMah")},
            {QStringLiteral("bootloader"), false},
            {QStringLiteral("iap"), false},
            {QStringLiteral("marker"), QStringLiteral("MI_00")},
            {QStringLiteral("descriptor"), QStringLiteral("120100020000004004f109a0000101020301")},
            {QStringLiteral("configurations"), QJsonArray{QStringLiteral("090209000001008032")}},
            {QStringLiteral("interfaces"), QJsonArray()}};
}

inline QJsonObject otherUsb(const char *vendorId = "046d", int deviceClass = 0)
{
    return {{QStringLiteral("vendorId"), QLatin1String(vendorId)},
            {QStringLiteral("productId"), QStringLiteral("0002")},
            {QStringLiteral("class"), deviceClass}};
}

inline QJsonObject hid(const QJsonValue &path, const char *markers = "", const char *position = "")
{
    return {{QStringLiteral("vendorId"), QStringLiteral("f104")},
            {QStringLiteral("productId"), QStringLiteral("a009")},
            {QStringLiteral("position"), QLatin1String(position)},
            {QStringLiteral("path"), path},
            {QStringLiteral("interface"), 0},
            {QStringLiteral("markers"), QLatin1String(markers)},
            {QStringLiteral("usagePage"), 0xFF00},
            {QStringLiteral("usage"), 1},
            {QStringLiteral("opens"), true},
            {QStringLiteral("reportDescriptor"), QJsonValue()}};
}

inline QJsonObject report(const QJsonArray &usb, const QJsonArray &hid = {})
{
    return {{QStringLiteral("about"), QJsonArray{QStringLiteral("…")}},
            {QStringLiteral("format"), QStringLiteral("quillmarsh-report")},
            {QStringLiteral("formatVersion"), 1},
            {QStringLiteral("locale"), QJsonObject{{QStringLiteral("name"), QStringLiteral("zh_CN")},
                                                   {QStringLiteral("language"), QStringLiteral("zh")}}},
            {QStringLiteral("files"),
             QJsonObject{{QStringLiteral("controlList"),
                          QJsonObject{{QStringLiteral("text"), QStringLiteral("{\"devices\":[]}")}}}}},
            {QStringLiteral("bus"), QJsonObject{{QStringLiteral("usbCount"), usb.size()},
                                                {QStringLiteral("usb"), usb},
                                                {QStringLiteral("hid"), hid},
                                                {QStringLiteral("otherHid"), 0},
                                                {QStringLiteral("decision"), QJsonObject()}}}};
}

inline QByteArray text(const QJsonObject &report)
{
    return QJsonDocument(report).toJson();
}

/// Returns the object with another value for a key.
inline QJsonObject with(QJsonObject object, const char *key, const QJsonValue &value)
{
    object.insert(QLatin1String(key), value);
    return object;
}

} // namespace ReportedReport
