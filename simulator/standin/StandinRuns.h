#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

/// A run of a stand-in tool, from its record.
struct StandinRun
{
    QStringList arguments;
    QString workingDirectory;
    /// Milliseconds of the system's monotonic clock, which is the same for all processes.
    qint64 startMs = 0;
    /// -1 if the run was killed, has crashed or is not finished.
    qint64 endMs = -1;
    int exitCode = -1;
};

/// Reads the record of a stand-in tool: "<file>.runs.jsonl" beside the tool, with a line for the start and
/// one for the end of each run.
namespace StandinRuns {

/// Returns the runs in the order of their starts; empty if there is no record. `tool` is the path of the
/// stand-in's executable.
QVector<StandinRun> read(const QString &tool);
/// Returns the path of the record.
QString recordOf(const QString &tool);

} // namespace StandinRuns
