#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>

/// The text of a report and its file.
namespace ReportText {

constexpr int formatVersion = 1;

/// Returns the text of a report. Its first lines tell the reader what it is and that nothing was sent.
/// `content` is the redacted content; `bus` is the part about the buses, which contains nothing that
/// identifies the user.
QByteArray of(QJsonObject content, const QJsonObject &bus);

/// Writes the report to a file, which is replaced as a whole or not changed at all. Returns what went wrong;
/// empty if nothing did.
QString save(const QByteArray &report, const QString &path);

/// Returns what the user is told after save(); `problem` is what it returned.
QString describeSaving(const QString &path, const QString &problem);

/// Returns a file name for a report that is made now.
QString proposedName();

} // namespace ReportText
