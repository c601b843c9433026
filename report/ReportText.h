#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>

/// The text of a report and its file.
namespace ReportText {

constexpr int formatVersion = 1;

/// Returns the report. Its first lines tell the reader what it is and that nothing was sent. `told` is what
/// was found out, without what tells who the user is; `bus` the buses, which hold nothing of that kind.
QByteArray of(QJsonObject told, const QJsonObject &bus);

/// Writes the report so that the file is either whole or as it was. Returns what went wrong; empty if nothing
/// did.
QString save(const QByteArray &report, const QString &path);

/// Returns the name that is proposed for the file of a report made now.
QString proposedName();

} // namespace ReportText
