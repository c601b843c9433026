#pragma once

#include <QJsonValue>
#include <QRegularExpression>
#include <QString>
#include <QStringList>

/// Replaces what tells who the user is: their home folder by "<home>", their name by "<user>". Names count as
/// whole words only; letter case counts where `sensitivity` says so.
class Redaction
{
public:
    /// `folders` are the ways in which the home folder can be written, with "/" or "\" between the parts;
    /// `names` those of the user. Empty ones, and the root of a file system, are left out.
    Redaction(const QStringList &folders, const QStringList &names, Qt::CaseSensitivity sensitivity);

    QString apply(const QString &text) const;
    /// Does the same to every text in a value. Keys stay.
    QJsonValue apply(const QJsonValue &value) const;

private:
    QRegularExpression m_expression;
    bool m_isEmpty = true;
};
