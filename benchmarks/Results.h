#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <QVector>

/// One line of the table; all but the last are shown as they are.
struct ResultRow
{
    QString what;
    QString ours;
    QString peer;
    QString ratio;
    /// Empty for a figure that has no goal.
    QString goal;
    bool isMet = false;
};

/// What was measured: the table for people, and every single figure beside it.
class Results
{
public:
    /// Writes "table.md" and "raw.json" into `folder`, again with every addition.
    explicit Results(const QString &folder);

    void add(const ResultRow &row);
    /// The figures that a row was made of, in the order in which they were taken.
    void keep(const QString &what, const QVector<double> &figures);
    /// A text of its own below the table, in Markdown.
    void addText(const QString &text);
    /// What could not be measured, and why.
    void fail(const QString &subject, const QString &why);

    bool hasFailures() const { return !m_failures.isEmpty(); }
    QString table() const;

private:
    void save() const;

    QString m_folder;
    QString m_start;
    QVector<ResultRow> m_rows;
    QStringList m_texts;
    QStringList m_failures;
    QJsonObject m_raw;
};
