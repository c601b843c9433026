#pragma once

#include <QString>
#include <QVector>

/// Returns the ids of the processes whose executable is in `folder` or below, in no particular order.
QVector<qint64> processesRunningFrom(const QString &folder);
/// Kills one of these processes, unless the id belongs to another process by now.
void killProcessRunningFrom(const QString &folder, qint64 processId);
