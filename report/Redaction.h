#pragma once

#include <QJsonValue>
#include <QRegularExpression>
#include <QString>
#include <QStringList>

/// Replaces texts that identify the user: the home folder by "<home>", the user's names by "<user>". Names
/// are replaced only where they are whole words.
class Redaction
{
public:
    /// `folders` are the spellings of the home folder, with "/" or "\" between the parts. `names` are the
    /// user's names. Empty texts and the root of a file system are ignored. `sensitivity` is that of the
    /// comparison.
    Redaction(const QStringList &folders, const QStringList &names, Qt::CaseSensitivity sensitivity);

    QString apply(const QString &text) const;
    /// Replaces them in every text in a value, but not in keys.
    QJsonValue apply(const QJsonValue &value) const;

private:
    QRegularExpression m_expression;
    bool m_isEmpty = true;
};
