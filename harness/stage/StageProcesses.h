#pragma once

#include <QString>
#include <QVector>

/// The ids of the processes whose executable lies below `folder`, in no particular order.
QVector<qint64> processesRunningFrom(const QString &folder);
/// Kills one of them, unless it has become something else meanwhile.
void killProcessRunningFrom(const QString &folder, qint64 processId);
