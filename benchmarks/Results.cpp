#include "benchmarks/Results.h"

#include "simulator/files/WholeFile.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTextStream>

namespace {

void write(const QString &path, const QByteArray &contents)
{
    if (!WholeFile::write(path, contents))
        qWarning("cannot write %s", qUtf8Printable(path));
}

} // namespace

Results::Results(const QString &folder)
    : m_folder(folder),
      m_start(QDateTime::currentDateTime().toString(Qt::ISODate))
{
}

void Results::add(const ResultRow &row)
{
    m_rows.append(row);
    save();
    QTextStream(stdout) << row.what << ": " << row.ours << " | " << row.peer << " | " << row.ratio << " | "
                        << row.goal << " | "
                        << (row.goal.isEmpty() ? ""
                            : row.isMet        ? "met"
                                               : "MISSED")
                        << '\n';
}

void Results::addFigures(const QString &what, const QVector<double> &figures)
{
    QJsonArray list;
    for (const double figure : figures)
        list.append(figure);
    m_raw.insert(what, list);
    save();
}

void Results::addText(const QString &text)
{
    m_texts.append(text);
    save();
}

void Results::fail(const QString &subject, const QString &why)
{
    m_failures.append(subject + QLatin1String(": ") + why.trimmed());
    save();
    QTextStream(stdout) << "Not measured: " << m_failures.last() << '\n';
}

QString Results::table() const
{
    QString text;
    QTextStream stream(&text);
    stream << "Started " << m_start << "; medians of alternating rounds.\n\n"
           << "| what | ours | peer | ratio | goal | met? |\n|---|---|---|---|---|---|\n";
    for (const ResultRow &row : m_rows)
        stream << "| " << row.what << " | " << row.ours << " | " << row.peer << " | " << row.ratio << " | "
               << row.goal << " | "
               << (row.goal.isEmpty() ? ""
                   : row.isMet        ? "yes"
                                      : "**no**")
               << " |\n";
    for (const QString &below : m_texts)
        stream << '\n' << below << '\n';
    for (const QString &failure : m_failures)
        stream << "\nNot measured: " << failure << '\n';
    return text;
}

void Results::save() const
{
    write(m_folder + QLatin1String("/table.md"), table().toUtf8());
    write(m_folder + QLatin1String("/raw.json"), QJsonDocument(m_raw).toJson());
}
