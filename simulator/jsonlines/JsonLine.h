#pragma once

#include <QByteArray>
#include <QJsonDocument>
#include <QJsonObject>

/// JSON objects on one line each. All messages between the simulator, the probe and the test harness have
/// this form.
namespace JsonLine {

/// Returns the line of an object, including the line feed.
inline QByteArray write(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}
/// Parses a line. Returns a null document if it is not an object.
inline QJsonDocument read(const QByteArray &line)
{
    const QJsonDocument document = QJsonDocument::fromJson(line);
    return document.isObject() ? document : QJsonDocument();
}

} // namespace JsonLine
