#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

/// What one run of a stand-in tool left in its record.
struct StandinRun
{
    QStringList arguments;
    QString workingDirectory;
    /// Milliseconds of the system's steady clock, comparable between processes.
    qint64 startMs = 0;
    /// -1 when the run was killed, crashed or still goes on.
    qint64 endMs = -1;
    int exitCode = -1;
};

/// The record of a stand-in tool: "<file>.runs.jsonl" beside the tool, one line when a run starts
/// and one when it ends.
namespace StandinRuns {

/// `tool` is the path of the stand-in's executable. In order of their starts; empty without a record.
QVector<StandinRun> read(const QString &tool);
/// Where that record is.
QString recordOf(const QString &tool);

} // namespace StandinRuns
