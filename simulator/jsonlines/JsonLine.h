#pragma once

#include <QByteArray>
#include <QJsonDocument>
#include <QJsonObject>

/// One JSON object on a line of its own, the form of every message between the simulated world, the probe
/// and the test harness.
namespace JsonLine {

/// Includes the line feed.
inline QByteArray write(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}
/// Null when the line holds no object.
inline QJsonDocument read(const QByteArray &line)
{
    const QJsonDocument document = QJsonDocument::fromJson(line);
    return document.isObject() ? document : QJsonDocument();
}

} // namespace JsonLine
