#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <QVector>

/// One row of the table. All members but the last are texts to show.
struct ResultRow
{
    QString what;
    QString ours;
    QString peer;
    QString ratio;
    /// Empty if there is no goal.
    QString goal;
    bool isMet = false;
};

/// The results of the benchmarks: a table to read, and a file with every single figure.
class Results
{
public:
    /// Writes "table.md" and "raw.json" into `folder`, and rewrites them with every addition.
    explicit Results(const QString &folder);

    void add(const ResultRow &row);
    /// Stores the single figures of a row in the order of the measurements.
    void addFigures(const QString &what, const QVector<double> &figures);
    /// Adds a text in Markdown below the table.
    void addText(const QString &text);
    /// Records that a subject could not be measured, and why.
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
